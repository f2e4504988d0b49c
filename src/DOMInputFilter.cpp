//
// DOMInputFilter.cpp
//
// Library: FastInfoset
// Package: Conversion
// Module:  DOMInputFilter
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "DOMInputFilter.h"


using Korvo::XML::XMLString;
using Korvo::XML::XMLReader;


namespace Korvo {
namespace FastInfoset {


DOMInputFilter::DOMInputFilter(XMLReader* pParser):
	XMLFilterImpl(pParser),
	_pLexicalHandler(0),
	_contextOpen(false),
	_depth(0),
	_hasDocumentType(false)
{
}


DOMInputFilter::~DOMInputFilter()
{
}


void DOMInputFilter::setProperty(const XMLString& propertyId, void* value)
{
	if (propertyId == XMLReader::PROPERTY_LEXICAL_HANDLER)
		_pLexicalHandler = static_cast<Korvo::XML::LexicalHandler*>(value);
	else
		XMLFilterImpl::setProperty(propertyId, value);
}


void* DOMInputFilter::getProperty(const XMLString& propertyId) const
{
	if (propertyId == XMLReader::PROPERTY_LEXICAL_HANDLER) return _pLexicalHandler;
	return XMLFilterImpl::getProperty(propertyId);
}


void DOMInputFilter::setupParse()
{
	XMLFilterImpl::setupParse();
	parent()->setProperty(XMLReader::PROPERTY_LEXICAL_HANDLER, static_cast<Korvo::XML::LexicalHandler*>(this));
	_namespaces.reset();
	_contextOpen = false;
	_depth = 0;
	_hasDocumentType = false;
	_notations.clear();
	_unparsedEntities.clear();
}


void DOMInputFilter::notationDecl(const XMLString& name, const XMLString* pPublicId, const XMLString* pSystemId)
{
	_notations.push_back(Notation(name, pPublicId ? *pPublicId : XMLString(), pSystemId ? *pSystemId : XMLString()));
}


void DOMInputFilter::unparsedEntityDecl(const XMLString& name, const XMLString* pPublicId, const XMLString& systemId, const XMLString& notationName)
{
	_unparsedEntities.push_back(UnparsedEntity(name, pPublicId ? *pPublicId : XMLString(), systemId, notationName));
}


void DOMInputFilter::endDocument()
{
	// A document without elements still gets its declaration.
	if (_hasDocumentType) passDocumentType(XMLString());
	XMLFilterImpl::endDocument();
}


void DOMInputFilter::startPrefixMapping(const XMLString& prefix, const XMLString& uri)
{
	if (!_contextOpen)
	{
		_namespaces.pushContext();
		_contextOpen = true;
	}
	_namespaces.declarePrefix(prefix, uri);
	XMLFilterImpl::startPrefixMapping(prefix, uri);
}


void DOMInputFilter::startElement(const XMLString& uri, const XMLString& localName, const XMLString& qname, const Korvo::XML::Attributes& attributes)
{
	if (!_contextOpen) _namespaces.pushContext();
	_contextOpen = false;
	if (_depth++ == 0 && _hasDocumentType) passDocumentType(qname.empty() ? localName : qname);

	_attributes.clear();
	const int count = attributes.getLength();
	for (int i = 0; i < count; ++i)
	{
		const XMLString& attributeName = attributes.getLocalName(i);
		const XMLString& prefix = attributePrefix(attributes.getURI(i));
		_qname.assign(prefix);
		if (!prefix.empty()) _qname += ':';
		_qname += attributeName;
		_attributes.addAttribute(attributes.getURI(i), attributeName, _qname, attributes.getType(i), attributes.getValue(i));
	}
	XMLFilterImpl::startElement(uri, localName, qname, _attributes);
}


void DOMInputFilter::endElement(const XMLString& uri, const XMLString& localName, const XMLString& qname)
{
	XMLFilterImpl::endElement(uri, localName, qname);
	_namespaces.popContext();
	--_depth;
}


const XMLString& DOMInputFilter::attributePrefix(const XMLString& uri)
{
	static const XMLString NONE;
	if (uri.empty()) return NONE;
	// An attribute cannot take the default namespace: only a named prefix will do.
	const XMLString& prefix = _namespaces.getPrefix(uri);
	if (!prefix.empty()) return prefix;
	_prefixes.clear();
	_namespaces.getPrefixes(uri, _prefixes);
	for (const auto& candidate: _prefixes)
	{
		if (!candidate.empty()) return candidate;
	}
	return NONE;
}


void DOMInputFilter::passDocumentType(const XMLString& name)
{
	_hasDocumentType = false;
	if (_pLexicalHandler) _pLexicalHandler->startDTD(name, _publicId, _systemId);
	for (const auto& notation: _notations)
		XMLFilterImpl::notationDecl(notation.getName(), &notation.getPublicId(), &notation.getSystemId());
	for (const auto& entity: _unparsedEntities)
		XMLFilterImpl::unparsedEntityDecl(entity.getName(), &entity.getPublicId(), entity.getSystemId(), entity.getNotationName());
	if (_pLexicalHandler) _pLexicalHandler->endDTD();
}


void DOMInputFilter::startDTD(const XMLString&, const XMLString& publicId, const XMLString& systemId)
{
	_hasDocumentType = true;
	_publicId = publicId;
	_systemId = systemId;
}


void DOMInputFilter::endDTD()
{
}


void DOMInputFilter::startEntity(const XMLString& name)
{
	if (_pLexicalHandler) _pLexicalHandler->startEntity(name);
}


void DOMInputFilter::endEntity(const XMLString& name)
{
	if (_pLexicalHandler) _pLexicalHandler->endEntity(name);
}


void DOMInputFilter::startCDATA()
{
	if (_pLexicalHandler) _pLexicalHandler->startCDATA();
}


void DOMInputFilter::endCDATA()
{
	if (_pLexicalHandler) _pLexicalHandler->endCDATA();
}


void DOMInputFilter::comment(const Korvo::XML::XMLChar ch[], int start, int length)
{
	if (_pLexicalHandler) _pLexicalHandler->comment(ch, start, length);
}


} } // namespace Korvo::FastInfoset
