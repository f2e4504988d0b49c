//
// WriterRoundTripTest.cpp
//
// Documents written by FastInfosetWriter and read back by FastInfosetParser:
// these events in, these events back.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//

#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include "Korvo/FastInfoset/FastInfosetParser.h"
#include "support/SaxRecorder.h"
#include "support/WriterTesting.h"
#include <gtest/gtest.h>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

using namespace Korvo::FastInfoset;
using Korvo::XML::AttributesImpl;
using Korvo::XML::XMLString;


namespace {


struct RoundTripCase
{
	const char* name;
	std::function<void(FastInfosetWriter&)> beforeDocument;
	std::function<void(FastInfosetWriter&)> inDocument;
	std::vector<std::string> events;
};


void PrintTo(const RoundTripCase& c, std::ostream* pStream)
{
	*pStream << c.name;
}


AttributesImpl attributes(const std::vector<std::vector<std::string>>& list)
{
	AttributesImpl result;
	for (const std::vector<std::string>& a: list) result.addAttribute(a[0], a[1], a[2], "CDATA", a[3]);
	return result;
}


const XMLString SYSTEM_ID = "s";


const RoundTripCase ROUND_TRIP_CASES[] = {
	{"elements attributes and text", nullptr, [](FastInfosetWriter& w) {
		w.startElement("", "r", "r", attributes({{"", "x", "x", "v"}, {"", "y", "y", "01234567890123456"}}));
		w.characters("hi");
		w.emptyElement("", "a", "a", attributes({{"", "x", "x", "v"}, {"", "z", "z", ""}}));
		w.characters("hi");
		w.endElement("", "r", "r"); },
		{"startElement(|r||attr(|x|||v)|attr(|y|||01234567890123456))", "characters(hi)",
		 "startElement(|a||attr(|x|||v)|attr(|z|||))", "endElement(|a|)", "characters(hi)", "endElement(|r|)"}},
	{"namespaces", nullptr, [](FastInfosetWriter& w) {
		w.startPrefixMapping("p", "urn:p");
		w.startElement("urn:p", "a", "p:a", attributes({{"urn:p", "x", "p:x", "v"}, {"", "y", "y", "w"}}));
		w.emptyElement("urn:p", "b", "p:b");
		w.endElement("urn:p", "a", "p:a");
		w.endPrefixMapping("p"); },
		// the parser ends the declarations of the last element begun inside a, which has none
		{"startPrefixMapping(p|urn:p)", "startElement(urn:p|a|p:a|attr(urn:p|x|||v)|attr(|y|||w))",
		 "startElement(urn:p|b|p:b)", "endElement(urn:p|b|p:b)", "endElement(urn:p|a|p:a)"}},
	{"generated prefix", nullptr, [](FastInfosetWriter& w) { w.emptyElement("urn:q", "a", ""); },
		{"startPrefixMapping(ns1|urn:q)", "startElement(urn:q|a|ns1:a)", "endElement(urn:q|a|ns1:a)", "endPrefixMapping(ns1)"}},
	{"typed values", nullptr, [](FastInfosetWriter& w) {
		w.startElement("", "a", "a", AttributesImpl());
		w.encodedData(1);
		w.encodedData(-2);
		w.encodedData(1.5f);
		w.encodedData(true);
		w.encodedData(false);
		w.binaryData("\x0a\x0b", 2);
		w.encodedData(Korvo::UUID("6ba7b810-9dad-11d1-80b4-00c04fd430c8"));
		w.encodedData(short(-5));
		w.encodedData(-7LL);
		w.encodedData(0.25);
		w.endElement("", "a", "a"); },
		{"startElement(|a|)", "encodedData(int:1)", "encodedData(int:-2)", "encodedData(float:1.5)",
		 "encodedData(bool:true)", "encodedData(bool:false)", "binaryData(0a0b)",
		 "encodedData(uuid:6ba7b810-9dad-11d1-80b4-00c04fd430c8)", "encodedData(short:-5)",
		 "encodedData(long:-7)", "encodedData(double:0.25)", "endElement(|a|)"}},
	{"cdata", nullptr, [](FastInfosetWriter& w) {
		w.startElement("", "a", "a", AttributesImpl());
		w.startCDATA();
		w.characters("x<y");
		w.endCDATA();
		w.endElement("", "a", "a"); },
		{"startElement(|a|)", "startCDATA()", "characters(x<y)", "endCDATA()", "endElement(|a|)"}},
	{"comments and instructions", nullptr, [](FastInfosetWriter& w) {
		w.processingInstruction("t", "d");
		w.startElement("", "a", "a", AttributesImpl());
		w.comment("abc", 0, 3);
		w.comment("abc", 0, 3);
		w.processingInstruction("t", "d");
		w.endElement("", "a", "a");
		w.comment("", 0, 0); },
		{"processingInstruction(t|d)", "startElement(|a|)", "comment(abc)", "comment(abc)",
		 "processingInstruction(t|d)", "endElement(|a|)", "comment()"}},
	{"declarations", [](FastInfosetWriter& w) {
		w.notationDecl("n", nullptr, &SYSTEM_ID);
		w.unparsedEntityDecl("e", nullptr, "s", "n"); },
		[](FastInfosetWriter& w) {
		w.startDTD("r", "", "x.dtd");
		w.endDTD();
		w.emptyElement("", "r", "r"); },
		{"notationDecl(n|<null>|s)", "unparsedEntityDecl(e|<null>|s|n)", "startDocument()",
		 "startDTD(||x.dtd)", "endDTD()", "startElement(|r|)", "endElement(|r|)", "endDocument()"}},
};


class RoundTripTest: public ::testing::TestWithParam<RoundTripCase>
{
};


INSTANTIATE_TEST_SUITE_P(WriterRoundTripTest, RoundTripTest, ::testing::ValuesIn(ROUND_TRIP_CASES), Tests::caseName<RoundTripCase>);


TEST_P(RoundTripTest, ParserReportsTheWrittenEvents)
{
	// Vector tables find nothing, so that writer repeats every string literally.
	for (DocumentVocabulary::VocabularyImpl impl: {DocumentVocabulary::VOC_HASH, DocumentVocabulary::VOC_VECTOR})
	{
		std::ostringstream out;
		{
			FastInfosetWriter writer(out, false, impl);
			if (GetParam().beforeDocument) GetParam().beforeDocument(writer);
			writer.startDocument();
			GetParam().inDocument(writer);
			writer.endDocument();
		}
		const std::string document = out.str();

		Korvo::FastInfoset::Test::SaxRecorder recorder;
		FastInfosetParser parser;
		parser.setContentHandler(&recorder);
		parser.setDTDHandler(&recorder);
		parser.setProperty(Korvo::XML::XMLReader::PROPERTY_LEXICAL_HANDLER, static_cast<Korvo::XML::LexicalHandler*>(&recorder));
		parser.parseMemoryNP(document.data(), document.size());
		if (GetParam().beforeDocument)
			EXPECT_EQ(GetParam().events, recorder.events()) << impl;
		else
			EXPECT_EQ(GetParam().events, recorder.contentEvents()) << impl;
	}
}


TEST(WriterRoundTripTest, ReferencesOfEveryForm)
{
	// Values written twice, so that the second time refers to indices on
	// both sides of each reference form (one octet, two, more) of chunks
	// and of attribute values.
	std::vector<std::string> expected;
	const auto write = [&expected](FastInfosetWriter& w)
	{
		for (int round = 0; round < 2; ++round)
		{
			for (int i = 0; i < 8300; ++i)
			{
				const std::string value = "v" + std::to_string(i);
				w.emptyElement("", "e", "e", attributes({{"", "a", "a", value}}));
				expected.push_back("startElement(|e||attr(|a|||" + value + "))");
				expected.push_back("endElement(|e|)");
				if (i >= 1100) continue;
				w.characters("t" + std::to_string(i));
				expected.push_back("characters(t" + std::to_string(i) + ")");
			}
		}
	};
	for (DocumentVocabulary::VocabularyImpl impl: {DocumentVocabulary::VOC_HASH, DocumentVocabulary::VOC_MAP})
	{
		expected.assign(1, "startElement(|r|)");
		std::ostringstream out;
		{
			FastInfosetWriter writer(out, false, impl);
			writer.startDocument();
			writer.startElement("", "r", "r", AttributesImpl());
			write(writer);
			writer.endElement("", "r", "r");
			writer.endDocument();
		}
		expected.push_back("endElement(|r|)");
		const std::string document = out.str();
		Korvo::FastInfoset::Test::SaxRecorder recorder;
		FastInfosetParser parser;
		parser.setContentHandler(&recorder);
		parser.parseMemoryNP(document.data(), document.size());
		EXPECT_EQ(expected, recorder.contentEvents()) << impl;
	}
}


} // namespace
