//
// TextJoiner.cpp
//
// Library: FastInfoset
// Package: Tools
// Module:  TextJoiner
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "TextJoiner.h"
#include "Poco/SAX/XMLReader.h"


using Korvo::XML::XMLString;
using Korvo::XML::XMLChar;
using Korvo::XML::XMLReader;


namespace Korvo {
namespace FastInfoset {
namespace Tool {


TextJoiner::TextJoiner(XMLReader* pParent):
	XMLFilterImpl(pParent),
	_pLexicalHandler(nullptr)
{
}


void TextJoiner::setProperty(const XMLString& propertyId, const XMLString& value)
{
	XMLFilterImpl::setProperty(propertyId, value);
}


void TextJoiner::setProperty(const XMLString& propertyId, void* value)
{
	if (propertyId == XMLReader::PROPERTY_LEXICAL_HANDLER)
		_pLexicalHandler = static_cast<Korvo::XML::LexicalHandler*>(value);
	else
		XMLFilterImpl::setProperty(propertyId, value);
}


void* TextJoiner::getProperty(const XMLString& propertyId) const
{
	if (propertyId == XMLReader::PROPERTY_LEXICAL_HANDLER) return _pLexicalHandler;
	return XMLFilterImpl::getProperty(propertyId);
}


void TextJoiner::setupParse()
{
	XMLFilterImpl::setupParse();
	parent()->setProperty(XMLReader::PROPERTY_LEXICAL_HANDLER, static_cast<Korvo::XML::LexicalHandler*>(this));
	_text.clear();
}


void TextJoiner::flush()
{
	if (_text.empty()) return;
	XMLFilterImpl::characters(_text.data(), 0, static_cast<int>(_text.size()));
	_text.clear();
}


void TextJoiner::endDocument()
{
	flush();
	XMLFilterImpl::endDocument();
}


void TextJoiner::startElement(const XMLString& uri, const XMLString& localName, const XMLString& qname, const Korvo::XML::Attributes& attributes)
{
	flush();
	XMLFilterImpl::startElement(uri, localName, qname, attributes);
}


void TextJoiner::endElement(const XMLString& uri, const XMLString& localName, const XMLString& qname)
{
	flush();
	XMLFilterImpl::endElement(uri, localName, qname);
}


void TextJoiner::characters(const XMLChar ch[], int start, int length)
{
	_text.append(ch + start, static_cast<std::size_t>(length));
}


void TextJoiner::ignorableWhitespace(const XMLChar ch[], int start, int length)
{
	_text.append(ch + start, static_cast<std::size_t>(length));
}


void TextJoiner::processingInstruction(const XMLString& target, const XMLString& data)
{
	flush();
	XMLFilterImpl::processingInstruction(target, data);
}


void TextJoiner::startPrefixMapping(const XMLString& prefix, const XMLString& uri)
{
	flush();
	XMLFilterImpl::startPrefixMapping(prefix, uri);
}


void TextJoiner::endPrefixMapping(const XMLString& prefix)
{
	flush();
	XMLFilterImpl::endPrefixMapping(prefix);
}


void TextJoiner::skippedEntity(const XMLString& name)
{
	flush();
	XMLFilterImpl::skippedEntity(name);
}


void TextJoiner::startDTD(const XMLString& name, const XMLString& publicId, const XMLString& systemId)
{
	flush();
	if (_pLexicalHandler) _pLexicalHandler->startDTD(name, publicId, systemId);
}


void TextJoiner::endDTD()
{
	flush();
	if (_pLexicalHandler) _pLexicalHandler->endDTD();
}


void TextJoiner::startEntity(const XMLString& name)
{
	if (_pLexicalHandler) _pLexicalHandler->startEntity(name);
}


void TextJoiner::endEntity(const XMLString& name)
{
	if (_pLexicalHandler) _pLexicalHandler->endEntity(name);
}


void TextJoiner::startCDATA()
{
	flush();
	if (_pLexicalHandler) _pLexicalHandler->startCDATA();
}


void TextJoiner::endCDATA()
{
	flush();
	if (_pLexicalHandler) _pLexicalHandler->endCDATA();
}


void TextJoiner::comment(const XMLChar ch[], int start, int length)
{
	flush();
	if (_pLexicalHandler) _pLexicalHandler->comment(ch, start, length);
}


} } } // namespace Korvo::FastInfoset::Tool
