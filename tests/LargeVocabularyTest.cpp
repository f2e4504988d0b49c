//
// LargeVocabularyTest.cpp
//
// Documents with more distinct values or names than a table can number
// (2^20): the writer stops adding to a full table and the parser adds
// nothing to one either, so the documents read back whole, through the
// parser and through the converter both ways.
//

#include "Korvo/FastInfoset/Converter.h"
#include "Korvo/FastInfoset/Encoder.h"
#include "Korvo/FastInfoset/FastInfosetParser.h"
#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include "Poco/SAX/AttributesImpl.h"
#include "Poco/SAX/DefaultHandler.h"
#include "Poco/SAX/SAXParser.h"
#include "Poco/XML/XMLWriter.h"
#include <gtest/gtest.h>
#include <sstream>
#include <string>

using namespace Korvo::FastInfoset;
using DV = DocumentVocabulary;


namespace {


const unsigned int DISTINCT = 1100000;
const unsigned int FULL_TABLE = Encoder::MAXINT20 + 1;
	// Index 0 and the 2^20 indices a document can write.


class EventDigest: public Korvo::XML::DefaultHandler
	/// Folds the element and text events into one number; adjacent text is
	/// joined, as an XML parser may split it anywhere.
{
public:
	std::size_t digest = 0;

	void startElement(const Korvo::XML::XMLString&, const Korvo::XML::XMLString& localName, const Korvo::XML::XMLString&, const Korvo::XML::Attributes&) override
	{
		add('<', localName);
	}

	void endElement(const Korvo::XML::XMLString&, const Korvo::XML::XMLString& localName, const Korvo::XML::XMLString&) override
	{
		add('>', localName);
	}

	void characters(const Korvo::XML::XMLChar ch[], int start, int length) override
	{
		_text.append(ch + start, length);
	}

private:
	void add(char kind, const std::string& name)
	{
		if (!_text.empty()) digest = digest*1000003 ^ std::hash<std::string>()('"' + _text);
		_text.clear();
		digest = digest*1000003 ^ std::hash<std::string>()(kind + name);
	}

	std::string _text;
};


std::string name(unsigned int i)
{
	return "n" + std::to_string(i);
}


void writeDocument(Korvo::XML::ContentHandler& handler, bool distinctNames)
	/// DISTINCT distinct texts or element names, then some of them again:
	/// from the start, the end of the full table and past it.
{
	static const std::string EMPTY;
	Korvo::XML::AttributesImpl none;
	handler.startDocument();
	handler.startElement(EMPTY, "r", EMPTY, none);
	auto item = [&](unsigned int i)
	{
		const std::string text = name(i);
		const std::string& element = distinctNames ? text : std::string("e");
		handler.startElement(EMPTY, element, EMPTY, none);
		if (!distinctNames) handler.characters(text.data(), 0, static_cast<int>(text.size()));
		handler.endElement(EMPTY, element, EMPTY);
	};
	for (unsigned int i = 0; i < DISTINCT; ++i) item(i);
	for (unsigned int i: {0u, 1u, FULL_TABLE - 3, FULL_TABLE - 2, FULL_TABLE - 1, DISTINCT - 1}) item(i);
	handler.endElement(EMPTY, "r", EMPTY);
	handler.endDocument();
}


class LargeVocabularyTest: public ::testing::TestWithParam<bool>
{
};


} // namespace


TEST_P(LargeVocabularyTest, FullTablesNumberAlikeOnBothSides)
{
	const bool distinctNames = GetParam();
	const DV::ID table = distinctNames ? DV::LOCAL_NAME : DV::CHARACTER_CONTENT_CHUNK;
	EventDigest expected;
	writeDocument(expected, distinctNames);

	std::ostringstream out;
	FastInfosetWriter writer(out, false, DV::VOC_MAP);
	writeDocument(writer, distinctNames);
	EXPECT_EQ(FULL_TABLE, writer.getDocumentVocabulary().vocabulary(table)->size());
	if (distinctNames)
	{
		EXPECT_EQ(FULL_TABLE, writer.getDocumentVocabulary().elementVocabulary()->size());
	}
	const std::string document = out.str();

	for (DV::VocabularyImpl impl: {DV::VOC_MAP, DV::VOC_VECTOR})
	{
		EventDigest read;
		FastInfosetParser parser(impl);
		parser.setContentHandler(&read);
		parser.parseMemoryNP(document.data(), document.size());
		EXPECT_EQ(expected.digest, read.digest) << impl;
		EXPECT_EQ(FULL_TABLE, parser.vocabulary().vocabulary(table)->size()) << impl;
	}
}


TEST_P(LargeVocabularyTest, ConvertedBothWays)
{
#if defined(__SANITIZE_ADDRESS__)
	GTEST_SKIP() << "twenty megabytes of XML take too long under the sanitizers; the test above covers the tables";
#endif
	std::ostringstream xml;
	{
		Korvo::XML::XMLWriter xmlWriter(xml, 0);
		writeDocument(xmlWriter, GetParam());
	}
	EventDigest expected;
	writeDocument(expected, GetParam());

	std::istringstream xmlInput(xml.str());
	std::ostringstream fis;
	Converter::convertToFIS(xmlInput, fis, 16, 0);
	std::istringstream fisInput(fis.str());
	std::ostringstream back;
	Converter::convertToXML(fisInput, back, 0);

	EventDigest read;
	Korvo::XML::SAXParser parser;
	parser.setFeature(Korvo::XML::XMLReader::FEATURE_NAMESPACES, true);
	parser.setContentHandler(&read);
	const std::string backXML = back.str();
	parser.parseMemoryNP(backXML.data(), backXML.size());
	EXPECT_EQ(expected.digest, read.digest);
}


INSTANTIATE_TEST_SUITE_P(Tables, LargeVocabularyTest, ::testing::Values(false, true),
	[](const ::testing::TestParamInfo<bool>& info) { return info.param ? std::string("DistinctNames") : std::string("DistinctTexts"); });
