//
// DOMInputFilter.h
//
// Library: FastInfoset
// Package: Conversion
// Module:  DOMInputFilter
//
// The events of a Fast Infoset parser as the toolkit's DOMBuilder needs them.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_DOMInputFilter_INCLUDED
#define FastInfoset_DOMInputFilter_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/Notation.h"
#include "Korvo/FastInfoset/UnparsedEntity.h"
#include "Poco/SAX/XMLFilterImpl.h"
#include <string>
#include <vector>


namespace Korvo {
namespace FastInfoset {


class DOMInputFilter: public Korvo::XML::XMLFilterImpl, public Korvo::XML::LexicalHandler
	/// Sits between a FastInfosetParser and a DOMBuilder and mends what the
	/// builder would otherwise get wrong:
	///
	///   - attributes arrive without qualified names, which the builder
	///     makes the attribute nodes' names: each gets its prefix from the
	///     namespace declarations in scope;
	///   - the document type declaration has no name and the notations and
	///     unparsed entities come before the document starts, where the
	///     builder has no document type to put them in: the declaration is
	///     held back until the root element starts, then passed on with the
	///     root's name and the declarations inside it.
	///
	/// The lexical handler property is kept here; everything else passes
	/// to the parser.
{
public:
	explicit DOMInputFilter(Korvo::XML::XMLReader* pParser);
	~DOMInputFilter();

	// XMLReader
	void setProperty(const Korvo::XML::XMLString& propertyId, void* value) override;
	void* getProperty(const Korvo::XML::XMLString& propertyId) const override;

	// DTDHandler
	void notationDecl(const Korvo::XML::XMLString& name, const Korvo::XML::XMLString* pPublicId, const Korvo::XML::XMLString* pSystemId) override;
	void unparsedEntityDecl(const Korvo::XML::XMLString& name, const Korvo::XML::XMLString* pPublicId, const Korvo::XML::XMLString& systemId, const Korvo::XML::XMLString& notationName) override;

	// ContentHandler
	void endDocument() override;
	void startElement(const Korvo::XML::XMLString& uri, const Korvo::XML::XMLString& localName, const Korvo::XML::XMLString& qname, const Korvo::XML::Attributes& attributes) override;
	void endElement(const Korvo::XML::XMLString& uri, const Korvo::XML::XMLString& localName, const Korvo::XML::XMLString& qname) override;
	void startPrefixMapping(const Korvo::XML::XMLString& prefix, const Korvo::XML::XMLString& uri) override;

	// LexicalHandler
	void startDTD(const Korvo::XML::XMLString& name, const Korvo::XML::XMLString& publicId, const Korvo::XML::XMLString& systemId) override;
	void endDTD() override;
	void startEntity(const Korvo::XML::XMLString& name) override;
	void endEntity(const Korvo::XML::XMLString& name) override;
	void startCDATA() override;
	void endCDATA() override;
	void comment(const Korvo::XML::XMLChar ch[], int start, int length) override;

protected:
	void setupParse() override;

private:
	void passDocumentType(const Korvo::XML::XMLString& name);
	const Korvo::XML::XMLString& attributePrefix(const Korvo::XML::XMLString& uri);

	Korvo::XML::LexicalHandler*   _pLexicalHandler;
	Korvo::XML::NamespaceSupport  _namespaces;
	bool                          _contextOpen;
		/// Whether the next element's context was opened by its declarations.
	int                           _depth;
	Korvo::XML::AttributesImpl    _attributes;
	Korvo::XML::XMLString         _qname;
	bool                          _hasDocumentType;
	std::string                   _publicId;
	std::string                   _systemId;
	std::vector<Notation>         _notations;
	std::vector<UnparsedEntity>   _unparsedEntities;
	Korvo::XML::NamespaceSupport::PrefixSet _prefixes;
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_DOMInputFilter_INCLUDED
