//
// DOMOutputFilter.h
//
// Library: FastInfoset
// Package: Conversion
// Module:  DOMOutputFilter
//
// The events of the toolkit's DOMSerializer as a FastInfosetWriter needs them.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_DOMOutputFilter_INCLUDED
#define FastInfoset_DOMOutputFilter_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include <string>
#include <vector>


namespace Korvo {
namespace FastInfoset {


class FastInfosetWriter;


class DOMOutputFilter: public Korvo::XML::ContentHandler, public Korvo::XML::LexicalHandler, public Korvo::XML::DTDHandler
	/// Sits between a DOMSerializer and a FastInfosetWriter and adds what
	/// the serializer leaves out or sends too late:
	///
	///   - a tree holds names, not namespace declarations, and the
	///     serializer reports none: each element declares the prefixes its
	///     name and its attributes' names use where they are not in scope
	///     (the default namespace too, and its undeclaring by an element in
	///     no namespace), and attributes in the xmlns namespace become
	///     declarations;
	///   - notations and unparsed entities come inside the document type,
	///     after the document has started, but belong in the document's
	///     header: the start of the document is held back until the
	///     document type has been reported.
{
public:
	explicit DOMOutputFilter(FastInfosetWriter& writer);
	~DOMOutputFilter();

	// ContentHandler
	void setDocumentLocator(const Korvo::XML::Locator* pLocator) override;
	void startDocument() override;
	void endDocument() override;
	void startElement(const Korvo::XML::XMLString& uri, const Korvo::XML::XMLString& localName, const Korvo::XML::XMLString& qname, const Korvo::XML::Attributes& attributes) override;
	void endElement(const Korvo::XML::XMLString& uri, const Korvo::XML::XMLString& localName, const Korvo::XML::XMLString& qname) override;
	void characters(const Korvo::XML::XMLChar ch[], int start, int length) override;
	void ignorableWhitespace(const Korvo::XML::XMLChar ch[], int start, int length) override;
	void processingInstruction(const Korvo::XML::XMLString& target, const Korvo::XML::XMLString& data) override;
	void startPrefixMapping(const Korvo::XML::XMLString& prefix, const Korvo::XML::XMLString& uri) override;
	void endPrefixMapping(const Korvo::XML::XMLString& prefix) override;
	void skippedEntity(const Korvo::XML::XMLString& name) override;

	// LexicalHandler
	void startDTD(const Korvo::XML::XMLString& name, const Korvo::XML::XMLString& publicId, const Korvo::XML::XMLString& systemId) override;
	void endDTD() override;
	void startEntity(const Korvo::XML::XMLString& name) override;
	void endEntity(const Korvo::XML::XMLString& name) override;
	void startCDATA() override;
	void endCDATA() override;
	void comment(const Korvo::XML::XMLChar ch[], int start, int length) override;

	// DTDHandler
	void notationDecl(const Korvo::XML::XMLString& name, const Korvo::XML::XMLString* pPublicId, const Korvo::XML::XMLString* pSystemId) override;
	void unparsedEntityDecl(const Korvo::XML::XMLString& name, const Korvo::XML::XMLString* pPublicId, const Korvo::XML::XMLString& systemId, const Korvo::XML::XMLString& notationName) override;

private:
	DOMOutputFilter(const DOMOutputFilter&);
	DOMOutputFilter& operator = (const DOMOutputFilter&);

	void startWriting();
	void declare(const Korvo::XML::XMLString& prefix, const Korvo::XML::XMLString& uri);
	Korvo::XML::XMLString prefixFor(const Korvo::XML::XMLString& uri);

	FastInfosetWriter&               _writer;
	bool                             _documentHeld;
	bool                             _hasDocumentType;
	Korvo::XML::XMLString            _documentTypeName;
	Korvo::XML::XMLString            _publicId;
	Korvo::XML::XMLString            _systemId;
	Korvo::XML::NamespaceSupport     _namespaces;
	std::vector<Korvo::XML::XMLString> _declared;
		/// The prefixes declared by the open elements, innermost last.
	std::vector<std::size_t>         _declaredCounts;
		/// How many of them each open element declared.
	Korvo::XML::AttributesImpl       _attributes;
	Korvo::XML::XMLString            _prefix;
	Korvo::XML::XMLString            _localName;
	Korvo::XML::XMLString            _qname;
	int                              _generatedPrefixes;
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_DOMOutputFilter_INCLUDED
