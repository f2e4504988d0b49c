//
// ParserContentTest.cpp
//
// Character content and attribute values in every string form, delivered
// to typed and to plain handlers.
//

#include "support/ParserTestSupport.h"
#include "Korvo/FastInfoset/FISException.h"
#include <gtest/gtest.h>

using namespace Korvo::FastInfoset;
using namespace Korvo::FastInfoset::Test;


namespace
{
	// <root> as a literal qualified name.
	const std::string ROOT = "3C 03 72 6F 6F 74";

	std::vector<std::string> inRoot(const std::vector<std::string>& events)
	{
		std::vector<std::string> result = {"startDocument()", "startElement(|root|)"};
		result.insert(result.end(), events.begin(), events.end());
		result.push_back("endElement(|root|)");
		result.push_back("endDocument()");
		return result;
	}

	struct ChunkCase
	{
		const char* name;
		const char* hex;                 // the chunks inside <root>
		std::vector<std::string> typed;  // events for a FISContentHandler
		std::vector<std::string> plain;  // events for a plain ContentHandler
	};
}


TEST(ParserContentTest, CharacterChunksInEveryForm)
{
	const ChunkCase cases[] =
	{
		// UTF-8 "hi" added to the table (10 0 1 00 01), then the chunk index 1 (10 1 0 0000).
		{"utf-8 literal and index", "91 68 69 A0",
			{"characters(hi)", "characters(hi)"}, {"characters(hi)", "characters(hi)"}},
		// UTF-16 "hi": 10 0 0 01, length 4 (10 + 8 bits), 00 68 00 69.
		{"utf-16", "86 01 00 68 00 69", {"characters(hi)"}, {"characters(hi)"}},
		// Numeric alphabet (1): "123" packed as 12 3F.
		{"numeric alphabet", "88 01 12 3F", {"characters(123)"}, {"characters(123)"}},
		// Date-time alphabet (2): "12:30" packed as 12 B3 0F.
		{"date-time alphabet", "88 06 00 12 B3 0F", {"characters(12:30)"}, {"characters(12:30)"}},
		// int algorithm (4): 1 and -1.
		{"int", "8C 0E 05 00 00 00 01 FF FF FF FF",
			{"encodedData(int:1)", "encodedData(int:-1)"}, {"characters(1 -1)"}},
		// short algorithm (3): -5.
		{"short", "8C 09 FF FB", {"encodedData(short:-5)"}, {"characters(-5)"}},
		// long algorithm (5): 7.
		{"long", "8C 12 05 00 00 00 00 00 00 00 07", {"encodedData(long:7)"}, {"characters(7)"}},
		// boolean algorithm (6): true false true in one octet (unused count 1).
		{"boolean", "8C 14 1A",
			{"encodedData(bool:true)", "encodedData(bool:false)", "encodedData(bool:true)"}, {"characters(true false true)"}},
		// float algorithm (7): 1.5.
		{"float", "8C 1A 01 3F C0 00 00", {"encodedData(float:1.5)"}, {"characters(1.5)"}},
		// double algorithm (8): 2.25.
		{"double", "8C 1E 05 40 02 00 00 00 00 00 00", {"encodedData(double:2.25)"}, {"characters(2.25)"}},
		// UUID algorithm (9).
		{"uuid", "8C 22 0D 6B A7 B8 10 9D AD 11 D1 80 B4 00 C0 4F D4 30 C8",
			{"encodedData(uuid:6ba7b810-9dad-11d1-80b4-00c04fd430c8)"}, {"characters(6ba7b810-9dad-11d1-80b4-00c04fd430c8)"}},
		// base64 algorithm (2): octets 01 02 03.
		{"base64", "8C 06 00 01 02 03", {"binaryData(010203)"}, {"characters(AQID)"}},
		// hexadecimal algorithm (1): octets 01 02 03.
		{"hex", "8C 02 00 01 02 03", {"binaryData(010203)"}, {"characters(010203)"}},
		// CDATA algorithm (10): "x<y", bracketed for the lexical handler.
		{"cdata", "8C 26 00 78 3C 79",
			{"startCDATA()", "characters(x<y)", "endCDATA()"}, {"startCDATA()", "characters(x<y)", "endCDATA()"}},
		// CDATA of one and of two octets, in the short length forms.
		{"cdata, short", "8C 24 78 8C 25 78 79",
			{"startCDATA()", "characters(x)", "endCDATA()", "startCDATA()", "characters(xy)", "endCDATA()"},
			{"startCDATA()", "characters(x)", "endCDATA()", "startCDATA()", "characters(xy)", "endCDATA()"}},
		// The same added to the table, then its index: plain text.
		{"cdata added", "9C 26 00 78 3C 79 A0",
			{"startCDATA()", "characters(x<y)", "endCDATA()", "characters(x<y)"}, {"startCDATA()", "characters(x<y)", "endCDATA()", "characters(x<y)"}},
	};
	for (const auto& c: cases)
	{
		SCOPED_TRACE(c.name);
		const std::string hex = FIS_HEADER + ROOT + c.hex + "FF";
		EXPECT_EQ(inRoot(c.typed), parseHex(hex, TYPED_HANDLER));
		EXPECT_EQ(inRoot(c.plain), parseHex(hex, PLAIN_HANDLER));
	}
}


TEST(ParserContentTest, AttributeValuesAreText)
{
	const struct
	{
		const char* name;
		const char* hex;      // the value of attribute id on <a>
		const char* value;
	}
	cases[] =
	{
		// 0 0 11 + algorithm 4 + length 8: the int values as text.
		{"int algorithm", "30 37 00 00 00 01 FF FF FF FF", "1 -1"},
		// 0 0 10 + alphabet 1 + length 2.
		{"numeric alphabet", "20 01 12 3F", "123"},
		// 0 0 01 + length 4.
		{"utf-16", "13 00 68 00 69", "hi"},
	};
	for (const auto& c: cases)
	{
		SCOPED_TRACE(c.name);
		// <a id="..."/>: attribute list end and element end share FF.
		std::vector<std::string> events = parseHex(FIS_HEADER + "7C 00 61 78 01 69 64" + c.hex + "FF F0");
		EXPECT_EQ(std::string("startElement(|a||attr(|id|||") + c.value + "))", events.at(1));
	}
}


TEST(ParserContentTest, AddToTableDecidesIndexing)
{
	FastInfosetParser parser;
	// "hi" without the add-to-table bit (10 0 0 00 01), then "yo" with it.
	parseToEvents(bytesOf(FIS_HEADER + ROOT + "81 68 69 91 79 6F FF"), TYPED_HANDLER, &parser);
	const Vocabulary<std::string>& chunks = *parser.vocabulary().vocabulary(DocumentVocabulary::CHARACTER_CONTENT_CHUNK);
	ASSERT_EQ(2u, chunks.size());
	EXPECT_EQ("yo", chunks.value(1));

	// An algorithm value with the add-to-table bit: its text is entered.
	parseToEvents(bytesOf(FIS_HEADER + ROOT + "9C 0E 05 00 00 00 01 FF FF FF FF FF"), TYPED_HANDLER, &parser);
	const Vocabulary<std::string>& chunks2 = *parser.vocabulary().vocabulary(DocumentVocabulary::CHARACTER_CONTENT_CHUNK);
	ASSERT_EQ(2u, chunks2.size());
	EXPECT_EQ("1 -1", chunks2.value(1));
}


TEST(ParserContentTest, CDataWithoutLexicalHandlerIsPlainText)
{
	FastInfosetParser parser;
	SaxRecorder recorder;
	parser.setContentHandler(&recorder);
	const std::string doc = bytesOf(FIS_HEADER + ROOT + "8C 26 00 78 3C 79 FF");
	parser.parseMemoryNP(doc.data(), doc.size());
	EXPECT_EQ(inRoot({"characters(x<y)"}), recorder.events());
}


TEST(ParserContentTest, RestrictedAlphabetFromTheInitialVocabulary)
{
	// Header with an initial vocabulary holding one restricted alphabet "abc" (number 16,
	// 2 bits a character); the chunk "cab" packed as 10 00 01 11.
	const std::string hex = "E0 00 00 01 20 08 00 00 02 61 62 63" + ROOT + "88 3C 87 FF";
	EXPECT_EQ(inRoot({"characters(cab)"}), parseHex(hex));
}


TEST(ParserContentTest, UnknownAlphabetsAndAlgorithmsAreRefused)
{
	// Alphabet 3 is a reserved placeholder.
	try
	{
		parseHex(FIS_HEADER + ROOT + "88 08 12 FF");
		FAIL() << "placeholder alphabet accepted";
	}
	catch (const FISParseException& exc)
	{
		EXPECT_EQ("Cannot decode a string with an empty restricted alphabet", exc.message());
	}
	// Alphabet 17 does not exist.
	try
	{
		parseHex(FIS_HEADER + ROOT + "88 40 12 FF");
		FAIL() << "alphabet 17 accepted";
	}
	catch (const Korvo::AssertionViolationException& exc)
	{
		EXPECT_EQ(0u, exc.message().find("vocabulary > 0 && vocabulary <= _alphabets.size()"));
	}
	// Algorithm 11 is reserved, algorithm 40 is not defined.
	for (const char* hex: {"8C 28 00 FF", "8C 9C 00 FF"})
	{
		SCOPED_TRACE(hex);
		try
		{
			parseHex(FIS_HEADER + ROOT + hex);
			FAIL() << "algorithm accepted";
		}
		catch (const FISException& exc)
		{
			EXPECT_STREQ("FastInfoset Exception", exc.name());
			EXPECT_EQ("Invalid decoding defined", exc.message());
		}
	}
}
