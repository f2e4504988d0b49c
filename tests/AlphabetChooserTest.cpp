//
// AlphabetChooserTest.cpp
//
// The alphabets the fastinfoset tool chooses for a document's literals.
//

#include "AlphabetChooser.h"
#include "Poco/TextIterator.h"
#include "Poco/UTF8Encoding.h"
#include <gtest/gtest.h>
#include <algorithm>
#include <vector>

using namespace Korvo::FastInfoset;
using Korvo::FastInfoset::Tool::AlphabetChooser;


namespace {


std::vector<int> codePoints(const std::string& utf8)
{
	Poco::UTF8Encoding encoding;
	std::vector<int> result;
	for (Poco::TextIterator it(utf8, encoding), end(utf8); it != end; ++it) result.push_back(*it);
	return result;
}


TEST(AlphabetChooserTest, ChoosesAlphabetsReadersAgreeOn)
{
	// Cyrillic text takes two octets a character in UTF-8 and UTF-16
	const std::string words[] = {"\xD0\xBC\xD0\xB8\xD1\x80", "\xD0\xB4\xD0\xBE\xD0\xBC", "\xD0\xBA\xD0\xBE\xD1\x82", "\xD1\x81\xD0\xBE\xD0\xBD"};
	AlphabetChooser chooser;
	for (int i = 0; i < 60; ++i)
		chooser.add(words[i % 4] + " " + words[(i/4) % 4] + " " + words[(i/16) % 4] + "-" + std::to_string(i), DocumentVocabulary::CHARACTER_CONTENT_CHUNK);
	const std::vector<std::string> alphabets = chooser.choose();
	ASSERT_FALSE(alphabets.empty());
	for (const std::string& alphabet: alphabets)
	{
		// 2^k - 1 characters, each once, in code point order
		const std::vector<int> characters = codePoints(alphabet);
		EXPECT_TRUE(characters.size() == 7 || characters.size() == 15 || characters.size() == 31 || characters.size() == 63) << alphabet;
		for (std::size_t i = 1; i < characters.size(); ++i) EXPECT_LT(characters[i - 1], characters[i]) << alphabet;
	}
	// the first one covers the text
	const std::vector<int> first = codePoints(alphabets[0]);
	for (int c: codePoints(words[0] + words[1] + words[2] + words[3] + " -0123456789"))
		EXPECT_NE(first.end(), std::find(first.begin(), first.end(), c)) << c << " " << alphabets[0];
}


TEST(AlphabetChooserTest, NoneWhereNothingIsSaved)
{
	struct Case { const char* name; std::vector<std::string> literals; };
	const Case cases[] = {
		{"short values", {"a", "b", "cd"}},
		{"numbers take the numeric alphabet", {"123456789", "-12.5e3", "3.14159"}},
		{"dates take the date-time alphabet", {"2024-01-31T12:00Z", "1999-12-31T23:59Z"}},
		{"malformed", {std::string("\xD0\xBC\xD0", 3), std::string("\xFF\xFE\xFD\xFC\xFB\xFA\xF9\xF8\xF7", 9)}},
	};
	for (const Case& c: cases)
	{
		AlphabetChooser chooser;
		for (const std::string& literal: c.literals) chooser.add(literal, DocumentVocabulary::ATTRIBUTE_VALUE);
		EXPECT_TRUE(chooser.choose().empty()) << c.name;
	}
}


} // namespace
