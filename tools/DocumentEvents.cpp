//
// DocumentEvents.cpp
//
// Library: FastInfoset
// Package: Tools
// Module:  DocumentEvents
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "DocumentEvents.h"
#include "Korvo/FastInfoset/FastInfosetParser.h"
#include "Poco/SAX/SAXParser.h"
#include "Poco/SAX/WhitespaceFilter.h"
#include "Poco/SAX/InputSource.h"
#include "XMLInput.h"
#include <algorithm>


using Korvo::XML::XMLString;
using Korvo::XML::XMLChar;


namespace Korvo {
namespace FastInfoset {
namespace Tool {


namespace
{
	std::string expandedName(const XMLString& uri, const XMLString& localName, const XMLString& qname, bool withQName)
	{
		const XMLString& local = localName.empty() ? qname : localName;
		return "{" + uri + "}" + local + (withQName ? " as " + qname : std::string());
	}

	bool isWhitespace(const std::string& text)
	{
		return text.find_first_not_of(" \t\r\n") == std::string::npos;
	}

	std::string orNull(const XMLString* pString)
	{
		return pString ? *pString : std::string("<null>");
	}

	void listenTo(Korvo::XML::XMLReader& reader, DocumentEvents& events)
	{
		reader.setContentHandler(&events);
		reader.setDTDHandler(&events);
		reader.setProperty(Korvo::XML::XMLReader::PROPERTY_LEXICAL_HANDLER, static_cast<Korvo::XML::LexicalHandler*>(&events));
	}
}


DocumentEvents::DocumentEvents():
	_inDTD(false)
{
}


DocumentEvents::DocumentEvents(const Options& options):
	_options(options),
	_inDTD(false)
{
}


void DocumentEvents::clear()
{
	_lines.clear();
	_text.clear();
	_declarations.clear();
	_dtdDeclarations.clear();
	_dtdComments.clear();
	_inDTD = false;
}


void DocumentEvents::readXML(std::istream& input)
{
	Korvo::XML::SAXParser parser;
	parser.setFeature(Korvo::XML::XMLReader::FEATURE_NAMESPACES, true);
	parser.setFeature(Korvo::XML::XMLReader::FEATURE_NAMESPACE_PREFIXES, true);
	XMLInput xmlInput(input, parser);
	if (_options.whitespaceFilter)
	{
		Korvo::XML::WhitespaceFilter filter(&parser);
		listenTo(filter, *this);
		xmlInput.parse(filter);
	}
	else
	{
		listenTo(parser, *this);
		xmlInput.parse(parser);
	}
}


void DocumentEvents::readFastInfoset(std::istream& input)
{
	FastInfosetParser parser(DocumentVocabulary::VOC_VECTOR);
	listenTo(parser, *this);
	Korvo::XML::InputSource source(input);
	parser.parse(&source);
}


std::string DocumentEvents::firstDifference(const DocumentEvents& expected, const DocumentEvents& actual)
{
	const auto& want = expected.lines();
	const auto& got = actual.lines();
	auto mismatch = std::mismatch(want.begin(), want.end(), got.begin(), got.end());
	if (mismatch.first == want.end() && mismatch.second == got.end()) return std::string();

	std::string where = "event " + std::to_string(mismatch.first - want.begin() + 1) + ": ";
	if (mismatch.first == want.end()) return where + "unexpected '" + *mismatch.second + "'";
	if (mismatch.second == got.end()) return where + "missing '" + *mismatch.first + "'";
	return where + "expected '" + *mismatch.first + "', got '" + *mismatch.second + "'";
}


void DocumentEvents::flushText()
{
	if (_text.empty()) return;
	if (!(_options.dropWhitespaceText && isWhitespace(_text))) _lines.push_back("text " + _text);
	_text.clear();
}


void DocumentEvents::record(const std::string& line)
{
	flushText();
	_lines.push_back(line);
}


void DocumentEvents::setDocumentLocator(const Korvo::XML::Locator*)
{
}


void DocumentEvents::startDocument()
{
}


void DocumentEvents::endDocument()
{
	flushText();
	_lines.insert(_lines.begin(), _dtdDeclarations.begin(), _dtdDeclarations.end());
	_dtdDeclarations.clear();
}


void DocumentEvents::startElement(const XMLString& uri, const XMLString& localName, const XMLString& qname, const Korvo::XML::Attributes& attributes)
{
	std::string line = "start " + expandedName(uri, localName, qname, _options.recordPrefixes);

	std::sort(_declarations.begin(), _declarations.end());
	for (const auto& declaration: _declarations)
		line += " ns(" + declaration.first + "=" + declaration.second + ")";
	_declarations.clear();

	_attributes.clear();
	for (int i = 0; i < attributes.getLength(); ++i)
	{
		if (attributes.getURI(i) == Korvo::XML::NamespaceSupport::XMLNS_NAMESPACE) continue;
		_attributes.push_back("@" + expandedName(attributes.getURI(i), attributes.getLocalName(i), attributes.getQName(i), _options.recordPrefixes) + "=" + attributes.getValue(i));
	}
	std::sort(_attributes.begin(), _attributes.end());
	for (const auto& attribute: _attributes) line += " " + attribute;

	record(line);
}


void DocumentEvents::endElement(const XMLString& uri, const XMLString& localName, const XMLString& qname)
{
	record("end " + expandedName(uri, localName, qname, _options.recordPrefixes));
}


void DocumentEvents::characters(const XMLChar ch[], int start, int length)
{
	_text.append(ch + start, length);
}


void DocumentEvents::ignorableWhitespace(const XMLChar ch[], int start, int length)
{
	_text.append(ch + start, length);
}


void DocumentEvents::processingInstruction(const XMLString& target, const XMLString& data)
{
	record("pi " + target + " " + data);
}


void DocumentEvents::startPrefixMapping(const XMLString& prefix, const XMLString& uri)
{
	if (prefix == Korvo::XML::NamespaceSupport::XML_NAMESPACE_PREFIX) return;
	_declarations.emplace_back(prefix, uri);
}


void DocumentEvents::endPrefixMapping(const XMLString&)
{
}


void DocumentEvents::skippedEntity(const XMLString& name)
{
	record("skipped " + name);
}


void DocumentEvents::startDTD(const XMLString& name, const XMLString& publicId, const XMLString& systemId)
{
	_inDTD = true;
	if (!_options.recordDoctype) return;
	record("doctype " + (_options.recordDoctypeName ? name : std::string()) + "|" + publicId + "|" + systemId);
}


void DocumentEvents::endDTD()
{
	_inDTD = false;
	for (const auto& line: _dtdComments) record(line);
	_dtdComments.clear();
}


void DocumentEvents::startEntity(const XMLString&)
{
}


void DocumentEvents::endEntity(const XMLString&)
{
}


void DocumentEvents::startCDATA()
{
}


void DocumentEvents::endCDATA()
{
}


void DocumentEvents::comment(const XMLChar ch[], int start, int length)
{
	if (_inDTD)
		_dtdComments.push_back("comment " + std::string(ch + start, length));
	else
		record("comment " + std::string(ch + start, length));
}


void DocumentEvents::notationDecl(const XMLString& name, const XMLString* pPublicId, const XMLString* pSystemId)
{
	_dtdDeclarations.push_back("notation " + name + "|" + orNull(pPublicId) + "|" + orNull(pSystemId));
}


void DocumentEvents::unparsedEntityDecl(const XMLString& name, const XMLString* pPublicId, const XMLString& systemId, const XMLString& notationName)
{
	_dtdDeclarations.push_back("entity " + name + "|" + orNull(pPublicId) + "|" + systemId + "|" + notationName);
}


} } } // namespace Korvo::FastInfoset::Tool
