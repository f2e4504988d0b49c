//
// ParserInterfaceTest.cpp
//
// FastInfosetParser as an XMLReader: handlers, features, properties and
// entry points.
//

#include "support/ParserTestSupport.h"
#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include "Korvo/FastInfoset/FISException.h"
#include "support/ExceptionMatchers.h"
#include "Poco/SAX/InputSource.h"
#include "Poco/SAX/SAXException.h"
#include "Poco/XML/XMLWriter.h"
#include "Poco/TemporaryFile.h"
#include "Poco/Path.h"
#include <gtest/gtest.h>
#include <algorithm>
#include <fstream>
#include <sstream>

using namespace Korvo::FastInfoset;
using namespace Korvo::FastInfoset::Test;
using Korvo::XML::XMLReader;


namespace
{
	// <root>8C 0E 05 ...</root>: one int chunk holding 1 and -1.
	const std::string TYPED_DOCUMENT = bytesOf(FIS_HEADER + "3C 03 72 6F 6F 74 8C 0E 05 00 00 00 01 FF FF FF FF FF");

	const std::vector<std::string> TYPED_EVENTS = documentEvents({"startElement(|root|)", "encodedData(int:1)", "encodedData(int:-1)", "endElement(|root|)"});
	const std::vector<std::string> PLAIN_EVENTS = documentEvents({"startElement(|root|)", "characters(1 -1)", "endElement(|root|)"});
}


TEST(ParserInterfaceTest, FreshParser)
{
	FastInfosetParser parser;
	EXPECT_TRUE(parser.getFeature(XMLReader::FEATURE_NAMESPACES));
	EXPECT_TRUE(parser.getFeature(XMLReader::FEATURE_NAMESPACE_PREFIXES));
	EXPECT_FALSE(parser.getFeature(FastInfosetParser::FEATURE_ATTRIBUTE_QNAMES));
	EXPECT_EQ(nullptr, parser.getContentHandler());
	EXPECT_EQ(nullptr, parser.getDTDHandler());
	EXPECT_EQ(nullptr, parser.getEntityResolver());
	EXPECT_EQ(nullptr, parser.getErrorHandler());
	EXPECT_EQ(nullptr, parser.getDocumentHandler());
	EXPECT_EQ(nullptr, parser.getProperty(XMLReader::PROPERTY_LEXICAL_HANDLER));
	EXPECT_EQ(nullptr, parser.getProperty(XMLReader::PROPERTY_DECLARATION_HANDLER));
	EXPECT_EQ(DocumentVocabulary::VOC_MAP, parser.vocabulary().impl());
	EXPECT_EQ(DocumentVocabulary::VOC_VECTOR, FastInfosetParser(DocumentVocabulary::VOC_VECTOR).vocabulary().impl());
	EXPECT_EQ("", FastInfosetParser::EMPTY_STRING);
	EXPECT_EQ("xmlns", FastInfosetParser::XMLNS);

	DocumentVocabulary external("urn:voc", DocumentVocabulary::VOC_HASH);
	FastInfosetParser copying(external);
	EXPECT_EQ("urn:voc", copying.vocabulary().getURI());
	EXPECT_EQ(DocumentVocabulary::VOC_HASH, copying.vocabulary().impl());
}


TEST(ParserInterfaceTest, FeaturesAndProperties)
{
	FastInfosetParser parser;
	parser.setFeature(XMLReader::FEATURE_NAMESPACES, true);
	parser.setFeature(XMLReader::FEATURE_NAMESPACE_PREFIXES, false);
	EXPECT_FALSE(parser.getFeature(XMLReader::FEATURE_NAMESPACE_PREFIXES));

	try
	{
		parser.setFeature(XMLReader::FEATURE_NAMESPACES, false);
		FAIL() << "namespaces switched off";
	}
	catch (const Korvo::XML::SAXNotSupportedException& exc)
	{
		EXPECT_EQ(XMLReader::FEATURE_NAMESPACES + ": namespace support cannot be disabled", exc.message());
	}
	for (const auto& name: {XMLReader::FEATURE_VALIDATION, std::string("urn:unknown")})
	{
		SCOPED_TRACE(name);
		try
		{
			parser.getFeature(name);
			FAIL() << "feature recognized";
		}
		catch (const Korvo::XML::SAXNotRecognizedException& exc)
		{
			EXPECT_EQ(name, exc.message());
		}
		EXPECT_THROW(parser.setFeature(name, true), Korvo::XML::SAXNotRecognizedException);
		EXPECT_THROW(parser.getProperty(name), Korvo::XML::SAXNotRecognizedException);
		EXPECT_THROW(parser.setProperty(name, "x"), Korvo::XML::SAXNotRecognizedException);
		EXPECT_THROW(parser.setProperty(name, static_cast<void*>(0)), Korvo::XML::SAXNotRecognizedException);
	}
	for (const auto& name: {XMLReader::PROPERTY_LEXICAL_HANDLER, XMLReader::PROPERTY_DECLARATION_HANDLER})
	{
		SCOPED_TRACE(name);
		try
		{
			parser.setProperty(name, Korvo::XML::XMLString("x"));
			FAIL() << "string value accepted";
		}
		catch (const Korvo::XML::SAXNotSupportedException& exc)
		{
			EXPECT_EQ("property does not take a string value: " + name, exc.message());
		}
		int handler = 0;
		parser.setProperty(name, &handler);
		EXPECT_EQ(&handler, parser.getProperty(name));
	}
}


TEST(ParserInterfaceTest, AttributesCarryQualifiedNamesOnRequest)
{
	std::ostringstream out;
	FastInfosetWriter writer(out);
	Korvo::XML::AttributesImpl attributes;
	attributes.addAttribute("urn:p", "x", "p:x", "", "1");
	attributes.addAttribute("", "y", "y", "", "2");
	writer.startDocument();
	writer.startPrefixMapping("p", "urn:p");
	writer.emptyElement("", "e", "e", attributes);
	writer.endDocument();

	// One parser for all, so that lists filled with names are refilled without.
	FastInfosetParser parser;
	for (const bool qualified: {false, true, false})
	{
		parser.setFeature(FastInfosetParser::FEATURE_ATTRIBUTE_QNAMES, qualified);
		EXPECT_EQ(qualified, parser.getFeature(FastInfosetParser::FEATURE_ATTRIBUTE_QNAMES));
		const std::vector<std::string> events = parseToEvents(out.str(), PLAIN_HANDLER, &parser);
		const std::string expected = qualified ? "startElement(|e||attr(urn:p|x|p:x||1)|attr(|y|y||2))" : "startElement(|e||attr(urn:p|x|||1)|attr(|y|||2))";
		EXPECT_NE(events.end(), std::find(events.begin(), events.end(), expected)) << qualified;
	}
}


TEST(ParserInterfaceTest, TypedDeliveryFollowsTheLastContentHandler)
{
	FastInfosetParser parser;
	SaxRecorder typed;
	PlainSaxRecorder plain;

	parser.setContentHandler(&typed);
	parser.parseMemoryNP(TYPED_DOCUMENT.data(), TYPED_DOCUMENT.size());
	EXPECT_EQ(TYPED_EVENTS, typed.events());

	parser.setContentHandler(&plain);
	EXPECT_EQ(&plain, parser.getContentHandler());
	parser.parseMemoryNP(TYPED_DOCUMENT.data(), TYPED_DOCUMENT.size());
	EXPECT_EQ(PLAIN_EVENTS, plain.events());

	// The typed recorder seen as a plain handler is still typed.
	typed.clear();
	parser.setContentHandler(static_cast<Korvo::XML::ContentHandler*>(&typed));
	parser.parseMemoryNP(TYPED_DOCUMENT.data(), TYPED_DOCUMENT.size());
	EXPECT_EQ(TYPED_EVENTS, typed.events());
}


TEST(ParserInterfaceTest, InitializeWiresWriters)
{
	FastInfosetParser parser;
	parser.initialize(static_cast<FastInfosetWriter*>(0));
	parser.initialize(static_cast<Korvo::XML::XMLWriter*>(0));
	EXPECT_EQ(nullptr, parser.getContentHandler());
	EXPECT_EQ(nullptr, parser.getDTDHandler());
	EXPECT_EQ(nullptr, parser.getDocumentHandler());
	EXPECT_EQ(nullptr, parser.getProperty(XMLReader::PROPERTY_LEXICAL_HANDLER));

	std::ostringstream fis;
	FastInfosetWriter fisWriter(fis);
	parser.initialize(&fisWriter);
	EXPECT_EQ(static_cast<Korvo::XML::ContentHandler*>(&fisWriter), parser.getContentHandler());
	EXPECT_EQ(static_cast<FISDocumentHandler*>(&fisWriter), parser.getDocumentHandler());
	EXPECT_EQ(static_cast<Korvo::XML::DTDHandler*>(&fisWriter), parser.getDTDHandler());
	EXPECT_EQ(static_cast<Korvo::XML::LexicalHandler*>(&fisWriter), parser.getProperty(XMLReader::PROPERTY_LEXICAL_HANDLER));

	std::ostringstream xml;
	Korvo::XML::XMLWriter xmlWriter(xml, 0);
	parser.initialize(&xmlWriter);
	EXPECT_EQ(static_cast<Korvo::XML::ContentHandler*>(&xmlWriter), parser.getContentHandler());
	EXPECT_EQ(nullptr, parser.getDocumentHandler());
	EXPECT_EQ(static_cast<Korvo::XML::DTDHandler*>(&xmlWriter), parser.getDTDHandler());
	EXPECT_EQ(static_cast<Korvo::XML::LexicalHandler*>(&xmlWriter), parser.getProperty(XMLReader::PROPERTY_LEXICAL_HANDLER));
}


TEST(ParserInterfaceTest, EntryPoints)
{
	FastInfosetParser parser;
	SaxRecorder recorder;
	parser.setContentHandler(&recorder);

	{
		std::istringstream istr(TYPED_DOCUMENT);
		Korvo::XML::InputSource source(istr);
		parser.parse(&source);
	}
	{
		std::istringstream istr(TYPED_DOCUMENT);
		Korvo::XML::InputSource source;
		source.setCharacterStream(istr);
		parser.parse(&source);
	}
	Korvo::TemporaryFile file;
	{
		std::ofstream ostr(file.path(), std::ios::binary);
		ostr << TYPED_DOCUMENT;
	}
	{
		Korvo::XML::InputSource source(file.path());
		parser.parse(&source);
	}
	parser.parse(file.path());
	parser.parseMemoryNP(TYPED_DOCUMENT.data(), TYPED_DOCUMENT.size());

	std::vector<std::string> expected;
	for (int i = 0; i < 5; ++i) expected.insert(expected.end(), TYPED_EVENTS.begin(), TYPED_EVENTS.end());
	EXPECT_EQ(expected, recorder.events());

	// A missing file, directly or as the only part of a source, and a scheme nobody opens.
	const std::string missing = file.path() + ".missing";
	Korvo::XML::InputSource source(missing);
	EXPECT_THROW_MESSAGE(parser.parse(missing), FISParseException, "Cannot resolve system identifier: " + missing);
	EXPECT_THROW_MESSAGE(parser.parse(&source), FISParseException, "Cannot resolve system identifier: " + missing);
	EXPECT_THROW_MESSAGE(parser.parse("nosuchscheme:x"), FISParseException, "Cannot resolve system identifier: nosuchscheme:x");
}


TEST(ParserInterfaceTest, EveryDocumentStartsFromFreshTables)
{
	FastInfosetParser parser;
	// <root><a/></root>, then a document that uses element index 2 without defining it.
	parseToEvents(bytesOf(FIS_HEADER + "3C 03 72 6F 6F 74 3C 00 61 FF F0"), TYPED_HANDLER, &parser);
	EXPECT_EQ(3u, parser.vocabulary().elementVocabulary()->size());
	EXPECT_ASSERTION(parseToEvents(bytesOf(FIS_HEADER + "01 F0"), TYPED_HANDLER, &parser), "this->_index.size() > idx");
	EXPECT_EQ(1u, parser.vocabulary().elementVocabulary()->size());
	EXPECT_EQ(1u, parser.vocabulary().vocabulary(DocumentVocabulary::LOCAL_NAME)->size());
	EXPECT_EQ("xml", parser.vocabulary().value(DocumentVocabulary::PREFIX, 1));
}
