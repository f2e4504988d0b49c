//
// FISDocumentHandler.h
//
// Library: FastInfoset
// Package: Handlers
// Module:  FISDocumentHandler
//
// Receives and hands out the vocabulary of a whole document.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_FISDocumentHandler_INCLUDED
#define FastInfoset_FISDocumentHandler_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Poco/XML/XMLString.h"


namespace Korvo {
namespace FastInfoset {


class DocumentVocabulary;


class FastInfoset_API FISDocumentHandler
	/// Document-level events: the vocabulary a document starts from, the
	/// external vocabulary it names, and whether it carries an XML declaration.
{
public:
	virtual void setDocumentVocabulary(const DocumentVocabulary& voc) = 0;
		/// The receiver uses a copy of voc as the document's initial vocabulary.

	virtual DocumentVocabulary& getDocumentVocabulary() = 0;
	virtual const DocumentVocabulary& getDocumentVocabulary() const = 0;

	virtual void setWriteXMLDeclaration(bool val) = 0;
		/// Whether the document the receiver produces carries an XML declaration.

	virtual void setExternalVocabulary(const Korvo::XML::XMLString& uri, const DocumentVocabulary& voc) = 0;
		/// The document refers to the external vocabulary uri, whose content is voc.

	virtual ~FISDocumentHandler();

protected:
	FISDocumentHandler();
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_FISDocumentHandler_INCLUDED
