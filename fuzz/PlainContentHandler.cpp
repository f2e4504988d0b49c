//
// PlainContentHandler.cpp
//
// Library: FastInfoset
// Package: Fuzz
// Module:  PlainContentHandler
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "PlainContentHandler.h"


using Korvo::XML::XMLString;
using Korvo::XML::XMLChar;


namespace Korvo {
namespace FastInfoset {
namespace Fuzz {


PlainContentHandler::PlainContentHandler(Korvo::XML::ContentHandler& target):
	_target(target)
{
}


void PlainContentHandler::setDocumentLocator(const Korvo::XML::Locator* pLocator)
{
	_target.setDocumentLocator(pLocator);
}


void PlainContentHandler::startDocument()
{
	_target.startDocument();
}


void PlainContentHandler::endDocument()
{
	_target.endDocument();
}


void PlainContentHandler::startElement(const XMLString& uri, const XMLString& localName, const XMLString& qname, const Korvo::XML::Attributes& attributes)
{
	_target.startElement(uri, localName, qname, attributes);
}


void PlainContentHandler::endElement(const XMLString& uri, const XMLString& localName, const XMLString& qname)
{
	_target.endElement(uri, localName, qname);
}


void PlainContentHandler::characters(const XMLChar ch[], int start, int length)
{
	_target.characters(ch, start, length);
}


void PlainContentHandler::ignorableWhitespace(const XMLChar ch[], int start, int length)
{
	_target.ignorableWhitespace(ch, start, length);
}


void PlainContentHandler::processingInstruction(const XMLString& target, const XMLString& data)
{
	_target.processingInstruction(target, data);
}


void PlainContentHandler::startPrefixMapping(const XMLString& prefix, const XMLString& uri)
{
	_target.startPrefixMapping(prefix, uri);
}


void PlainContentHandler::endPrefixMapping(const XMLString& prefix)
{
	_target.endPrefixMapping(prefix);
}


void PlainContentHandler::skippedEntity(const XMLString& name)
{
	_target.skippedEntity(name);
}


} } } // namespace Korvo::FastInfoset::Fuzz
