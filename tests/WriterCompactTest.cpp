//
// WriterCompactTest.cpp
//
// FastInfosetWriter's size settings: an indexing policy in place of the
// length limit, and literals in their shortest encoding.
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
#include <set>
#include <sstream>
#include <string>
#include <vector>

using namespace Korvo::FastInfoset;
using Korvo::XML::AttributesImpl;
using Tests::golden;
using Tests::hex;
using Tests::HEADER;


namespace {


class ListedStrings: public StringIndexingPolicy
	/// Indexes the strings it lists and records the tables it was asked about.
{
public:
	explicit ListedStrings(std::set<std::string> strings): _strings(std::move(strings))
	{
	}

	bool isIndexed(DocumentVocabulary::ID table, const std::string& value) override
	{
		_tables.insert(table);
		return _strings.count(value) > 0;
	}

	const std::set<DocumentVocabulary::ID>& tables() const
	{
		return _tables;
	}

private:
	std::set<std::string> _strings;
	std::set<DocumentVocabulary::ID> _tables;
};


const std::string TEXT_17 = "0123456789abcdefg";
const std::string CJK = "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E"; // three characters, two octets each in UTF-16


struct CompactCase
{
	const char* name;
	bool policy;   // index TEXT_17 only
	bool shortest; // shortest literals
	std::function<void(FastInfosetWriter&)> content;
	const char* body; // the bytes inside <a>...</a>, followed by the two ends
};


void PrintTo(const CompactCase& c, std::ostream* pStream)
{
	*pStream << c.name;
}


const CompactCase COMPACT_CASES[] = {
	// the policy indexes a 17-octet chunk (10 0 1 00 + length 10 + 14) and it comes back as index 1
	{"listed chunk indexed", true, false, [](FastInfosetWriter& w) { w.characters(TEXT_17); w.characters(TEXT_17); },
		"92 0E 3031323334353637383961626364656667 A0 FF"},
	// a short chunk it does not list is literal each time, add-to-table bit 0: 10 0 0 00 01
	{"unlisted chunk literal", true, false, [](FastInfosetWriter& w) { w.characters("hi"); w.characters("hi"); },
		"81 6869 81 6869 FF"},
	// the empty comment is index 0 (1 + 1111111) whatever the policy says
	{"empty string index 0", true, false, [](FastInfosetWriter& w) { w.comment("", 0, 0); }, "E2 FF FF"},
	// UTF-16 (01) takes 6 octets where UTF-8 takes 9: 10 0 1 01 + length 10 + 3
	{"cjk as utf-16", false, true, [](FastInfosetWriter& w) { w.characters(CJK); }, "96 03 65E5 672C 8A9E FF"},
	// a character beyond 16 bits is a surrogate pair, as long as in UTF-8: with one
	// CJK character UTF-16 wins by one octet
	{"surrogate pair", false, true, [](FastInfosetWriter& w) { w.characters("\xF0\x9F\x98\x80\xE6\x97\xA5"); },
		"96 03 D83D DE00 65E5 FF"},
	// digits take the numeric alphabet (10, number 1 as 8 bits 00000000), four bits
	// each: 1001 10 00, 000000 + length 10 + 1, then 1234 5678
	{"digits in the numeric alphabet", false, true, [](FastInfosetWriter& w) { w.characters("12345678"); },
		"98 02 01 12345678 FF"},
	// an odd count leaves half an octet, filled with ones (the terminator)
	{"odd digits padded", false, true, [](FastInfosetWriter& w) { w.characters("12345"); }, "98 02 00 12345F FF"},
	// a date with its separators takes the date-time alphabet (number 2); 17
	// characters are over the length limit: add-to-table bit 0
	{"date in the date-time alphabet", false, true, [](FastInfosetWriter& w) { w.characters("2024-01-31T12:00Z"); },
		"88 06 06 2024 A01A 31C1 2B00 DF FF"},
	{"ascii stays utf-8", false, true, [](FastInfosetWriter& w) { w.characters("hello"); }, "92 02 68656C6C6F FF"},
	// malformed UTF-8 (a character cut short) is written as it is
	{"malformed stays utf-8", false, true, [](FastInfosetWriter& w) { w.characters(CJK.substr(0, 8)); },
		"92 05 E697A5E69CACE8AA FF"},
	{"cdata stays cdata", false, true, [](FastInfosetWriter& w) { w.startCDATA(); w.characters("123"); w.endCDATA(); },
		"9C 26 00 313233 FF"},
};


class CompactTest: public ::testing::TestWithParam<CompactCase>
{
};


INSTANTIATE_TEST_SUITE_P(WriterCompactTest, CompactTest, ::testing::ValuesIn(COMPACT_CASES), Tests::caseName<CompactCase>);


TEST_P(CompactTest, WritesGoldenBytes)
{
	ListedStrings listed({TEXT_17});
	std::ostringstream out;
	FastInfosetWriter writer(out);
	if (GetParam().policy) writer.setIndexingPolicy(&listed);
	writer.setShortestLiterals(GetParam().shortest);
	writer.startDocument();
	writer.startElement("", "a", "a", AttributesImpl());
	GetParam().content(writer);
	writer.endElement("", "a", "a");
	writer.endDocument();
	EXPECT_EQ(golden(HEADER + "3C 0061") + golden(GetParam().body), hex(out.str()));
}


TEST(WriterCompactTest, DocumentAlphabetsAreAnnouncedAndUsed)
{
	DocumentVocabulary vocabulary(DocumentVocabulary::VOC_HASH);
	vocabulary.restrictedAlphabets().add("abc");  // number 16, two bits a character
	vocabulary.restrictedAlphabets().add("abcd"); // number 17, a count no reader agrees on: not used
	std::ostringstream out;
	FastInfosetWriter writer(out, false, vocabulary);
	writer.setShortestLiterals(true);
	writer.startDocument();
	writer.startElement("", "a", "a", AttributesImpl());
	writer.characters("abcabcab");
	writer.characters("abcdabcd");
	writer.endElement("", "a", "a");
	writer.endDocument();
	// initial vocabulary with alphabets only (0000 1000 0000 0000), two of them;
	// then 10 0 1 10 + number 16 as 00001111 + length 01, a b c a b c a b as 2 bits each
	EXPECT_EQ(golden("E0000001 20 0800 01 02 616263 03 61626364 3C 0061"
	                 "98 3D 1861 92 05 6162636461626364 FF"), hex(out.str()));
}


const std::string LONG_CJK = [] { std::string s; for (int i = 0; i < 150; ++i) s += CJK; return s; }();
const std::string LONG_DIGITS(600, '7');
const std::string VALUES[] = {
	"v", CJK, "\xF0\x9F\x98\x80\xE6\x97\xA5", "0123456789", "2024-01-31", "xyzzy xyzzy", "abcabcabcabc", LONG_CJK, LONG_DIGITS
};


TEST(WriterCompactTest, ParserReadsBackEventsAndTables)
{
	DocumentVocabulary vocabulary(DocumentVocabulary::VOC_MAP);
	vocabulary.restrictedAlphabets().add("abc");
	vocabulary.restrictedAlphabets().add(" xyzXYZ");
	ListedStrings listed({CJK, "0123456789", "abcabcabcabc", LONG_CJK});
	std::ostringstream out;
	FastInfosetWriter writer(out, false, vocabulary);
	writer.setIndexingPolicy(&listed);
	writer.setShortestLiterals(true);
	std::vector<std::string> expected;
	writer.startDocument();
	writer.startElement("", "r", "r", AttributesImpl());
	expected.push_back("startElement(|r|)");
	for (int round = 0; round < 2; ++round)
	{
		for (const std::string& value: VALUES)
		{
			AttributesImpl attributes;
			attributes.addAttribute("", "x", "x", "CDATA", value);
			writer.emptyElement("", "e", "e", attributes);
			writer.characters(value);
			writer.comment(value.data(), 0, static_cast<int>(value.size()));
			writer.processingInstruction("t", value);
			expected.insert(expected.end(), {"startElement(|e||attr(|x|||" + value + "))", "endElement(|e|)",
				"characters(" + value + ")", "comment(" + value + ")", "processingInstruction(t|" + value + ")"});
		}
	}
	writer.endElement("", "r", "r");
	writer.endDocument();
	expected.push_back("endElement(|r|)");
	EXPECT_EQ((std::set<DocumentVocabulary::ID>{DocumentVocabulary::ATTRIBUTE_VALUE, DocumentVocabulary::CHARACTER_CONTENT_CHUNK, DocumentVocabulary::OTHER_STRING}), listed.tables());

	Korvo::FastInfoset::Test::SaxRecorder recorder;
	FastInfosetParser parser;
	parser.setContentHandler(&recorder);
	parser.setProperty(Korvo::XML::XMLReader::PROPERTY_LEXICAL_HANDLER, static_cast<Korvo::XML::LexicalHandler*>(&recorder));
	const std::string document = out.str();
	parser.parseMemoryNP(document.data(), document.size());
	EXPECT_EQ(expected, recorder.contentEvents());
	for (DocumentVocabulary::ID id: {DocumentVocabulary::ATTRIBUTE_VALUE, DocumentVocabulary::CHARACTER_CONTENT_CHUNK, DocumentVocabulary::OTHER_STRING})
	{
		const Vocabulary<std::string>& written = *writer.getDocumentVocabulary().vocabulary(id);
		const Vocabulary<std::string>& read = *parser.vocabulary().vocabulary(id);
		ASSERT_EQ(written.size(), read.size()) << id;
		for (unsigned int i = 0; i < written.size(); ++i) EXPECT_EQ(written.value(i), read.value(i)) << id << " " << i;
	}
}


} // namespace
