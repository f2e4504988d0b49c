//
// WellFormedXMLWriter.cpp
//
// Library: FastInfoset
// Package: Conversion
// Module:  WellFormedXMLWriter
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "WellFormedXMLWriter.h"
#include "XMLCharacters.h"
#include "Korvo/FastInfoset/FISException.h"
#include <cstring>


using Korvo::XML::XMLString;
using Korvo::XML::XMLChar;
using Korvo::XML::XMLWriter;


namespace Korvo {
namespace FastInfoset {


namespace
{
	const XMLString NONE;
	const XMLString CARRIAGE_RETURN("&#13;");

	bool isWhitespace(const char* text, std::size_t length)
	{
		for (std::size_t i = 0; i < length; ++i)
		{
			const char c = text[i];
			if (c != ' ' && c != '\t' && c != '\r' && c != '\n') return false;
		}
		return true;
	}
}


WellFormedXMLWriter::WellFormedXMLWriter(std::ostream& output, int options):
	XMLWriter(output, options),
	_inCDATA(false)
{
}


WellFormedXMLWriter::~WellFormedXMLWriter()
{
}


void WellFormedXMLWriter::startElement(const XMLString& namespaceURI, const XMLString& localName, const XMLString& qname, const Korvo::XML::Attributes& attributes)
{
	_scope.startElement(namespaceURI, localName, qname, attributes);
	writeStartTag(_scope.name(), _scope.attributes());
}


void WellFormedXMLWriter::writeStartTag(const XMLString& name, const Korvo::XML::Attributes& attributes)
{
	// Given the qualified name only, the toolkit writer adds no namespace
	// handling of its own.
	XMLWriter::startElement(NONE, NONE, name, attributes);
}


void WellFormedXMLWriter::endElement(const XMLString&, const XMLString&, const XMLString&)
{
	XMLWriter::endElement(NONE, NONE, _scope.name());
	_scope.endElement();
}


void WellFormedXMLWriter::characters(const XMLChar ch[], int start, int length)
{
	if (_inCDATA)
		_cdata.append(ch + start, length);
	else
		writeText(ch + start, static_cast<std::size_t>(length));
}


void WellFormedXMLWriter::ignorableWhitespace(const XMLChar ch[], int start, int length)
{
	characters(ch, start, length);
}


void WellFormedXMLWriter::writeText(const char* text, std::size_t length)
{
	XMLCharacters::checkText(text, length);
	if (depth() < 1 && !isWhitespace(text, length))
		throw FISEncodingException("Text outside the root element cannot be written in XML");

	const char* p = text;
	const char* end = text + length;
	for (;;)
	{
		const char* pReturn = static_cast<const char*>(std::memchr(p, '\r', static_cast<std::size_t>(end - p)));
		XMLWriter::characters(p, 0, static_cast<int>((pReturn ? pReturn : end) - p));
		if (!pReturn) break;
		rawCharacters(CARRIAGE_RETURN);
		p = pReturn + 1;
	}
}


void WellFormedXMLWriter::processingInstruction(const XMLString& target, const XMLString& data)
{
	XMLCharacters::checkProcessingInstruction(target, data);
	XMLWriter::processingInstruction(target, data);
}


void WellFormedXMLWriter::startPrefixMapping(const XMLString& prefix, const XMLString& namespaceURI)
{
	_scope.declare(prefix, namespaceURI);
}


void WellFormedXMLWriter::endPrefixMapping(const XMLString&)
{
}


void WellFormedXMLWriter::startCDATA()
{
	// The text is held until the end: only then is it known whether a CDATA
	// section can hold it.
	_inCDATA = true;
	_cdata.clear();
}


void WellFormedXMLWriter::endCDATA()
{
	_inCDATA = false;
	if (_cdata.find("]]>") != std::string::npos || _cdata.find('\r') != std::string::npos || depth() < 1)
	{
		writeText(_cdata.data(), _cdata.size());
		return;
	}
	XMLCharacters::checkText(_cdata);
	XMLWriter::startCDATA();
	XMLWriter::characters(_cdata.data(), 0, static_cast<int>(_cdata.size()));
	XMLWriter::endCDATA();
}


void WellFormedXMLWriter::comment(const XMLChar ch[], int start, int length)
{
	XMLCharacters::checkComment(std::string(ch + start, length));
	XMLWriter::comment(ch, start, length);
}


} } // namespace Korvo::FastInfoset
