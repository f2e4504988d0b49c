//
// Converter.cpp
//
// Library: FastInfoset
// Package: Conversion
// Module:  Converter
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/Converter.h"
#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include "Korvo/FastInfoset/FastInfosetParser.h"
#include "DoctypeDeferringWriter.h"
#include "PrologReorderer.h"
#include "XMLInput.h"
#include "Poco/SAX/SAXParser.h"
#include "Poco/SAX/WhitespaceFilter.h"
#include "Poco/SAX/InputSource.h"
#include "Poco/XML/XMLWriter.h"




namespace Korvo {
namespace FastInfoset {


namespace
{
	int xmlWriterOptions(int options)
		/// The converter's option bits in the toolkit writer's numbering,
		/// which differs from ours (its bit 1 selects canonical XML).
	{
		int result = Korvo::XML::XMLWriter::CANONICAL;
		if (options & Converter::CONV_WRITE_XML_DECLARATION)
			result |= Korvo::XML::XMLWriter::WRITE_XML_DECLARATION;
		if (options & Converter::CONV_PRETTY_PRINT_XML)
			result |= Korvo::XML::XMLWriter::PRETTY_PRINT;
		return result;
	}
}


void Converter::convertToFIS(std::istream& input, std::ostream& output, int maxIndexedStringLength, int options)
{
	FastInfosetWriter writer(output, false, DocumentVocabulary::VOC_MAP);
	writer.setMaxIndexedStringLength(maxIndexedStringLength);

	Korvo::XML::SAXParser parser;
	parser.setFeature(Korvo::XML::XMLReader::FEATURE_NAMESPACES, true);
	parser.setFeature(Korvo::XML::XMLReader::FEATURE_NAMESPACE_PREFIXES, true);

	XMLInput xmlInput(input, parser);
	// Tested against the whole constant on purpose: CONV_WRITE_XML_DECLARATION
	// switches whitespace removal on as well.
	if (options & CONV_REMOVE_IGNORABLE_WHITESPACE)
	{
		Korvo::XML::WhitespaceFilter filter(&parser);
		PrologReorderer reorderer(filter, writer);
		xmlInput.parse(filter);
	}
	else
	{
		PrologReorderer reorderer(parser, writer);
		xmlInput.parse(parser);
	}
}


void Converter::convertToXML(std::istream& input, std::ostream& output, int options)
{
	DoctypeDeferringWriter writer(output, xmlWriterOptions(options));
	FastInfosetParser parser(DocumentVocabulary::VOC_VECTOR);
	parser.initialize(static_cast<Korvo::XML::XMLWriter*>(&writer));
	// Attribute names then keep their prefixes as element names do.
	parser.setFeature(FastInfosetParser::FEATURE_ATTRIBUTE_QNAMES, true);

	Korvo::XML::InputSource source(input);
	parser.parse(&source);
}


} } // namespace Korvo::FastInfoset
