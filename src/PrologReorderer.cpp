//
// PrologReorderer.cpp
//
// Library: FastInfoset
// Package: Conversion
// Module:  PrologReorderer
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "PrologReorderer.h"
#include "Korvo/FastInfoset/FastInfosetWriter.h"


using Korvo::XML::XMLString;
using Korvo::XML::XMLChar;
using Korvo::XML::XMLReader;


namespace Korvo {
namespace FastInfoset {


namespace
{
	void attach(XMLReader& reader, Korvo::XML::ContentHandler* pContentHandler, Korvo::XML::LexicalHandler* pLexicalHandler)
	{
		reader.setContentHandler(pContentHandler);
		reader.setProperty(XMLReader::PROPERTY_LEXICAL_HANDLER, pLexicalHandler);
	}
}


PrologReorderer::PrologReorderer(XMLReader& reader, FastInfosetWriter& writer):
	_reader(reader),
	_writer(writer),
	_released(false)
{
	attach(_reader, this, this);
	_reader.setDTDHandler(&_writer);
}


void PrologReorderer::hold(Kind kind, const std::string& first, const std::string& second, const std::string& third)
{
	_held.push_back(Event{kind, first, second, third});
}


void PrologReorderer::release()
{
	_released = true;
	for (const Event& event: _held)
	{
		switch (event.kind)
		{
		case START_DOCUMENT:
			_writer.startDocument();
			break;
		case PROCESSING_INSTRUCTION:
			_writer.processingInstruction(event.first, event.second);
			break;
		case COMMENT:
			_writer.comment(event.first.data(), 0, static_cast<int>(event.first.size()));
			break;
		case START_DTD:
			_writer.startDTD(event.first, event.second, event.third);
			break;
		case END_DTD:
			_writer.endDTD();
			break;
		}
	}
	_held.clear();
	attach(_reader, &_writer, &_writer);
}


void PrologReorderer::setDocumentLocator(const Korvo::XML::Locator* pLocator)
{
	_writer.setDocumentLocator(pLocator);
}


void PrologReorderer::startDocument()
{
	hold(START_DOCUMENT);
}


void PrologReorderer::endDocument()
{
	if (!_released) release();
	_writer.endDocument();
}


void PrologReorderer::startElement(const XMLString& uri, const XMLString& localName, const XMLString& qname, const Korvo::XML::Attributes& attributes)
{
	if (!_released) release();
	_writer.startElement(uri, localName, qname, attributes);
}


void PrologReorderer::endElement(const XMLString& uri, const XMLString& localName, const XMLString& qname)
{
	_writer.endElement(uri, localName, qname);
}


void PrologReorderer::characters(const XMLChar ch[], int start, int length)
{
	if (!_released) release();
	_writer.characters(ch, start, length);
}


void PrologReorderer::ignorableWhitespace(const XMLChar ch[], int start, int length)
{
	if (!_released) release();
	_writer.ignorableWhitespace(ch, start, length);
}


void PrologReorderer::processingInstruction(const XMLString& target, const XMLString& data)
{
	if (_released)
		_writer.processingInstruction(target, data);
	else
		hold(PROCESSING_INSTRUCTION, target, data);
}


void PrologReorderer::startPrefixMapping(const XMLString& prefix, const XMLString& uri)
{
	if (!_released) release();
	_writer.startPrefixMapping(prefix, uri);
}


void PrologReorderer::endPrefixMapping(const XMLString& prefix)
{
	_writer.endPrefixMapping(prefix);
}


void PrologReorderer::skippedEntity(const XMLString& name)
{
	_writer.skippedEntity(name);
}


void PrologReorderer::startDTD(const XMLString& name, const XMLString& publicId, const XMLString& systemId)
{
	if (_released)
		_writer.startDTD(name, publicId, systemId);
	else
		hold(START_DTD, name, publicId, systemId);
}


void PrologReorderer::endDTD()
{
	if (_released)
		_writer.endDTD();
	else
		hold(END_DTD);
}


void PrologReorderer::startEntity(const XMLString& name)
{
	_writer.startEntity(name);
}


void PrologReorderer::endEntity(const XMLString& name)
{
	_writer.endEntity(name);
}


void PrologReorderer::startCDATA()
{
	if (!_released) release();
	_writer.startCDATA();
}


void PrologReorderer::endCDATA()
{
	_writer.endCDATA();
}


void PrologReorderer::comment(const XMLChar ch[], int start, int length)
{
	if (_released)
		_writer.comment(ch, start, length);
	else
		hold(COMMENT, std::string(ch + start, length));
}


} } // namespace Korvo::FastInfoset
