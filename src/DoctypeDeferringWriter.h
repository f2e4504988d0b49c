//
// DoctypeDeferringWriter.h
//
// Library: FastInfoset
// Package: Conversion
// Module:  DoctypeDeferringWriter
//
// The XML writer of convertToXML: writes the document type declaration
// when the root element's name is known.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_DoctypeDeferringWriter_INCLUDED
#define FastInfoset_DoctypeDeferringWriter_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "WellFormedXMLWriter.h"
#include <string>
#include <vector>


namespace Korvo {
namespace FastInfoset {


class DoctypeDeferringWriter: public WellFormedXMLWriter
	/// A WellFormedXMLWriter that holds back the document type declaration
	/// until the root element starts, and writes the declarations that a
	/// Fast Infoset document keeps apart into its internal subset.
	///
	/// A Fast Infoset document type declaration carries no name, so the
	/// parser reports startDTD with an empty one, and the plain writer
	/// would write "<!DOCTYPE  SYSTEM ...>", which no XML parser accepts.
	/// The root element's qualified name is the right name, and it is known
	/// only when the root starts. Notations and unparsed entities, which the
	/// document keeps in its header, and the processing instructions inside
	/// the declaration become its internal subset; a document with notations
	/// or unparsed entities and no declaration gets one, before the root.
	/// Comments and processing instructions between the declaration and the
	/// root are held back too, so that the prolog keeps its order.
	///
	/// A declaration reported after the root has started cannot be written
	/// well-formed and is dropped; processing instructions inside it are
	/// written where they occur.
{
public:
	DoctypeDeferringWriter(std::ostream& output, int options);

	~DoctypeDeferringWriter();

	// LexicalHandler
	void startDTD(const Korvo::XML::XMLString& name, const Korvo::XML::XMLString& publicId, const Korvo::XML::XMLString& systemId);
	void endDTD();
	void comment(const Korvo::XML::XMLChar ch[], int start, int length);

	// DTDHandler
	void notationDecl(const Korvo::XML::XMLString& name, const Korvo::XML::XMLString* publicId, const Korvo::XML::XMLString* systemId);
	void unparsedEntityDecl(const Korvo::XML::XMLString& name, const Korvo::XML::XMLString* publicId, const Korvo::XML::XMLString& systemId, const Korvo::XML::XMLString& notationName);

	// ContentHandler
	void processingInstruction(const Korvo::XML::XMLString& target, const Korvo::XML::XMLString& data);
	void endDocument();

protected:
	void writeStartTag(const Korvo::XML::XMLString& name, const Korvo::XML::Attributes& attributes);

private:
	struct PrologItem
	{
		bool isInstruction;
		Korvo::XML::XMLString target;
		Korvo::XML::XMLString text;
	};

	bool isHolding() const;
		/// Whether a declaration waits for the root's name, and the prolog
		/// items after it with it.
	void writeDoctype(const Korvo::XML::XMLString& name);
	void writeHeldProlog();

	bool                       _rootStarted;
	bool                       _inDoctype;
	bool                       _doctypeSeen;
	Korvo::XML::XMLString      _publicId;
	Korvo::XML::XMLString      _systemId;
	std::string                _internalSubset;
	std::vector<PrologItem>    _heldProlog;
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_DoctypeDeferringWriter_INCLUDED
