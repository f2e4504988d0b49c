//
// WriterContentTest.cpp
//
// FastInfosetWriter: character chunks and their indexing limit, typed
// values gathered into arrays, CDATA sections and dataElement.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//

#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include "Korvo/FastInfoset/FISException.h"
#include "support/ExceptionMatchers.h"
#include "support/WriterTesting.h"
#include <gtest/gtest.h>
#include <cstring>
#include <functional>
#include <memory>
#include <sstream>
#include <stdexcept>

using namespace Korvo::FastInfoset;
using Korvo::XML::AttributesImpl;
using Tests::golden;
using Tests::hex;
using Tests::HEADER;


namespace {


const std::string TEXT_16 = "0123456789abcdef";
const std::string TEXT_17 = "0123456789abcdefg";


struct ContentCase
{
	const char* name;
	std::function<void(FastInfosetWriter&)> content;
	const char* body; // the bytes inside <a>...</a>, followed by the two ends
};


void PrintTo(const ContentCase& c, std::ostream* pStream)
{
	*pStream << c.name;
}


const ContentCase CONTENT_CASES[] = {
	// 10, not found 0, add 1, UTF-8 00, length 2 as 01: 1001 0001, then "hi";
	// the second one is index 1 of the chunk table: 10 1 + 0 0000
	{"chunk repeated as index", [](FastInfosetWriter& w) { w.characters("hi"); w.characters("hi"); }, "91 6869 A0 FF"},
	// 16 octets are still indexed: length 10 + 13
	{"chunk at the limit", [](FastInfosetWriter& w) { w.characters(TEXT_16); w.characters(TEXT_16); },
		"92 0D 30313233343536373839616263646566 A0 FF"},
	// 17 octets are written literally each time, add-to-table bit 0
	{"chunk over the limit", [](FastInfosetWriter& w) { w.characters(TEXT_17); w.characters(TEXT_17); },
		"82 0E 3031323334353637383961626364656667 82 0E 3031323334353637383961626364656667 FF"},
	{"negative limit indexes all", [](FastInfosetWriter& w) { w.setMaxIndexedStringLength(-1); w.characters(TEXT_17); w.characters(TEXT_17); },
		"92 0E 3031323334353637383961626364656667 A0 FF"},
	{"empty text writes nothing", [](FastInfosetWriter& w) { w.characters(""); w.characters(nullptr, 0, 0); }, "FF"},
	// three ints, one chunk: 10 0 0 11 + algorithm 4 (00000011) + length 12 (10 + 9)
	{"ints merged", [](FastInfosetWriter& w) { w.encodedData(1); w.encodedData(2); w.encodedData(3); },
		"8C 0E 09 00000001 00000002 00000003 FF"},
	// an int and then a float: two chunks in call order (float is algorithm 7)
	{"two kinds in call order", [](FastInfosetWriter& w) { w.encodedData(1); w.encodedData(1.5f); },
		"8C 0E 01 00000001 8C 1A 01 3FC00000 FF"},
	// booleans: algorithm 6, length 1 (00), unused bits 1, 101, pad 0
	{"booleans", [](FastInfosetWriter& w) { w.encodedData(true); w.encodedData(false); w.encodedData(true); }, "8C 14 1A FF"},
	// binary data gathered into one base64 value: algorithm 2, length 3 (10 + 0)
	{"binary data merged", [](FastInfosetWriter& w) { w.binaryData("\x01\x02", 2); w.binaryData("\x03", 1); w.binaryData("", 0); },
		"8C 06 00 010203 FF"},
	// typed values are written before the text that follows them
	{"typed then text", [](FastInfosetWriter& w) { w.encodedData(7); w.characters("x"); }, "8C 0E 01 00000007 90 78 FF"},
	// and before a child element
	{"typed then element", [](FastInfosetWriter& w) { w.encodedData(short(5)); w.emptyElement("", "b", "b"); },
		"8C 09 0005 3C 0062 FF F0"},
	// and before a document type declaration, whose instructions would otherwise write them inside it
	{"typed then doctype", [](FastInfosetWriter& w) { w.encodedData(short(5)); w.startDTD("r", "", ""); w.processingInstruction("t", "d"); w.endDTD(); },
		"8C 09 0005 C4 E1 0074 40 64 FF F0"},
	// CDATA: 10 0 1, then 11 + algorithm 10 (00001001), length 3 (10 + 0);
	// found in the table, a CDATA chunk is an index and loses its marking
	{"cdata repeated as index", [](FastInfosetWriter& w) {
		w.startCDATA(); w.characters("x<y"); w.endCDATA();
		w.startCDATA(); w.characters("x<y"); w.endCDATA(); },
		"9C 26 00 783C79 A0 FF"},
	{"cdata over the limit", [](FastInfosetWriter& w) { w.startCDATA(); w.characters(TEXT_17); w.endCDATA(); },
		"8C 26 0E 3031323334353637383961626364656667 FF"},
	// endCDATA writes the typed values gathered inside the section
	{"typed inside cdata", [](FastInfosetWriter& w) { w.startCDATA(); w.encodedData(1); w.endCDATA(); w.characters("x"); },
		"8C 0E 01 00000001 90 78 FF"},
};


class ContentTest: public ::testing::TestWithParam<ContentCase>
{
};


INSTANTIATE_TEST_SUITE_P(WriterContentTest, ContentTest, ::testing::ValuesIn(CONTENT_CASES), Tests::caseName<ContentCase>);


TEST_P(ContentTest, WritesGoldenBytes)
{
	std::ostringstream out;
	FastInfosetWriter writer(out);
	writer.startDocument();
	writer.startElement("", "a", "a", AttributesImpl());
	GetParam().content(writer);
	writer.endElement("", "a", "a");
	writer.endDocument();
	// <a> is 3C 0061
	EXPECT_EQ(golden(HEADER + "3C 0061") + golden(GetParam().body), hex(out.str()));
}


std::string writeElement(const std::function<void(FastInfosetWriter&)>& content)
{
	std::ostringstream out;
	FastInfosetWriter writer(out);
	writer.startDocument();
	writer.startElement("", "a", "a", AttributesImpl());
	content(writer);
	writer.endElement("", "a", "a");
	writer.endDocument();
	return hex(out.str());
}


} // namespace


TEST(WriterContentTest, CharactersTakeASubstringOfTheGivenRangeOnly)
{
	// Each text lies in a heap buffer of exactly its size, so that reading
	// past it is caught under the address sanitizer.
	const struct
	{
		std::string text;
		int start;
		int length;
		const char* body; // null: std::out_of_range
	}
	cases[] =
	{
		{std::string("abc"), 1, 2, "91 6263"},                // no NUL: the range only
		{std::string("abc\0", 4), 1, 10, "91 6263"},          // cut at the NUL
		{std::string("ab\0cd\0", 6), 0, 5, "91 6162"},        // an embedded NUL ends the text
		{std::string("a\0c", 3), 0, 3, "90 61"},              // ... in short texts of every word size
		{std::string("abcde\0g", 7), 0, 7, "92 02 6162636465"},
		{std::string("abcdefghij\0k", 12), 0, 12, "92 07 6162636465666768696A"},
		{std::string("abc\0", 4), 0, -1, "92 00 616263"},     // the rest of the text
		{std::string("abc\0", 4), 3, 5, ""},                  // start at the end: nothing
		{std::string("abc\0", 4), 4, 0, nullptr},
		{std::string("ab\0cd\0", 6), 3, 1, nullptr},
		{std::string("abc\0", 4), -1, 1, nullptr},
	};
	for (const auto& c: cases)
	{
		SCOPED_TRACE(::testing::Message() << c.start << ", " << c.length);
		std::unique_ptr<char[]> buffer(new char[c.text.size()]);
		std::memcpy(buffer.get(), c.text.data(), c.text.size());
		const auto content = [&](FastInfosetWriter& w) { w.characters(buffer.get(), c.start, c.length); };
		if (c.body)
			EXPECT_EQ(golden(HEADER + "3C 0061" + c.body + "FF"), writeElement(content));
		else
			EXPECT_THROW(writeElement(content), std::out_of_range);
	}

	std::unique_ptr<char[]> buffer(new char[3]);
	std::memcpy(buffer.get(), "abc", 3);
	EXPECT_EQ(golden(HEADER + "3C 0061 E2 42 616263 FF"),
		writeElement([&](FastInfosetWriter& w) { w.comment(buffer.get(), 0, 3); }));
}


TEST(WriterContentTest, NegativeCommentRangeThrowsOutOfRange)
{
	std::ostringstream out;
	FastInfosetWriter writer(out);
	writer.startDocument();
	writer.startElement("", "a", "a", AttributesImpl());
	EXPECT_THROW(writer.comment("abc", -1, 2), std::out_of_range);
	EXPECT_THROW(writer.comment("abc", 1, -1), std::out_of_range);
}


TEST(WriterContentTest, CDATASectionsDoNotNest)
{
	std::ostringstream out;
	FastInfosetWriter writer(out);
	writer.startDocument();
	writer.startElement("", "a", "a", AttributesImpl());
	writer.startCDATA();
	EXPECT_THROW_MESSAGE(writer.startCDATA(), FISException, "Cannot nest CDATA sections");
}


TEST(WriterContentTest, DataElement)
{
	std::ostringstream out;
	FastInfosetWriter writer(out);
	writer.startDocument();
	writer.startElement("", "r", "r", AttributesImpl());
	// <a x="v">hi</a>
	writer.dataElement("", "a", "a", "hi", "x", "v");
	// <a x="v"/>: no data makes an empty element
	writer.dataElement("", "a", "a", "", "x", "v");
	// <b x="1" y="2" z="3">t</b>
	writer.dataElement("", "b", "b", "t", "x", "1", "y", "2", "z", "3");
	writer.endElement("", "r", "r");
	writer.endDocument();
	EXPECT_EQ(golden(HEADER + "3C 0072"
		"7C 0061 78 0078 40 76 F0 91 6869 F0"
		"41 00 80 FF"
		"7C 0062 00 40 31 78 0079 40 32 78 007A 40 33 F0 90 74 FF F0"),
		hex(out.str()));
}


TEST(WriterContentTest, FullChunkTableThrowsPoolOverflow)
{
	// OTHER_STRING holds 19 values with its placeholder; comments index into it
	std::ostringstream out;
	FastInfosetWriter writer(out);
	writer.startDocument();
	for (int i = 0; i < 18; ++i)
	{
		const std::string text = "c" + std::to_string(i);
		writer.comment(text.data(), 0, static_cast<int>(text.size()));
	}
	EXPECT_THROW_MESSAGE(writer.comment("new", 0, 3), Korvo::PoolOverflowException, "Vocabulary hash table full");
	writer.comment("c0", 0, 2);
}


TEST(WriterContentTest, CharacterDataOnlyInsideTheDocument)
{
	const std::string message = "Character data not allowed outside the document";
	std::ostringstream out;
	FastInfosetWriter writer(out);
	EXPECT_THROW_MESSAGE(writer.characters("x"), FISException, message);
	EXPECT_THROW_MESSAGE(writer.encodedData(1), FISException, message);
	EXPECT_THROW_MESSAGE(writer.binaryData("x", 1), FISException, message);
	writer.startDocument();
	writer.startDTD("r", "", "");
	EXPECT_THROW_MESSAGE(writer.characters("x"), FISException, message);
	// a comment of the internal subset follows the declaration: E2, literal "c"
	writer.comment("c", 0, 1);
	writer.endDTD();
	// text at document level: 10, literal, add, UTF-8, length 1, "x"
	writer.characters("x");
	writer.endDocument();
	EXPECT_EQ(golden(HEADER + "C4 F0 E2 40 63 90 78 F0"), hex(out.str()));
}


TEST(WriterContentTest, IndentationRepeatedTakesTheBytesOfOtherText)
{
	// Indentation written again is a reference the writer remembers; given
	// as strings, the same texts take the general way. After each change
	// that alters how they are written, both ways must still agree.
	const std::string texts[] = {"\n", "  ", "\n  ", "\t\t", "\n\t", " ", std::string(31, ' '), std::string(32, ' '),
		"\n" + std::string(31, '\t'), " \t", "\n\n", "x"};
	const struct
	{
		const char* name;
		std::function<void(FastInfosetWriter&)> change;
		std::function<void(FastInfosetWriter&)> undo;
	}
	changes[] =
	{
		{"none", [](FastInfosetWriter&) {}, [](FastInfosetWriter&) {}},
		{"unindexed", [](FastInfosetWriter& w) { w.setMaxIndexedStringLength(0); }, [](FastInfosetWriter&) {}},
		{"CDATA", [](FastInfosetWriter& w) { w.startCDATA(); }, [](FastInfosetWriter& w) { w.endCDATA(); }},
		{"typed value", [](FastInfosetWriter& w) { w.encodedData(7); }, [](FastInfosetWriter&) {}},
		{"document level", [](FastInfosetWriter& w) { w.endElement("", "a", "a"); }, [](FastInfosetWriter& w) { w.startElement("", "a", "a", AttributesImpl()); }},
		{"table emptied", [](FastInfosetWriter& w) { w.getDocumentVocabulary().vocabulary(DocumentVocabulary::CHARACTER_CONTENT_CHUNK)->truncate(1); },
			[](FastInfosetWriter&) {}},
	};
	for (DocumentVocabulary::VocabularyImpl impl: {DocumentVocabulary::VOC_HASH, DocumentVocabulary::VOC_MAP, DocumentVocabulary::VOC_VECTOR})
	{
		for (const auto& c: changes)
		{
			SCOPED_TRACE(::testing::Message() << c.name << ", tables " << impl);
			std::string written[2];
			for (int asStrings = 0; asStrings < 2; ++asStrings)
			{
				std::ostringstream out;
				FastInfosetWriter writer(out, false, impl);
				writer.startDocument();
				writer.startElement("", "a", "a", AttributesImpl());
				for (int round = 0; round < 3; ++round)
				{
					if (round == 1) c.change(writer);
					if (round == 2) c.undo(writer);
					for (const std::string& text: texts)
						asStrings ? writer.characters(text) : writer.characters(text.data(), 0, static_cast<int>(text.size()));
				}
				writer.endElement("", "a", "a");
				writer.endDocument();
				written[asStrings] = hex(out.str());
			}
			EXPECT_EQ(written[1], written[0]);
		}
	}
}
