//
// RestrictedAlphabetTest.cpp
//
// RestrictedAlphabet and the numbered alphabet list of a document.
//

#include "Korvo/FastInfoset/DocumentRestrictedAlphabet.h"
#include "support/ExceptionMatchers.h"
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace Korvo::FastInfoset;


namespace {


TEST(RestrictedAlphabetTest, BitSizeIsFloorLog2OfCharactersPlusTerminator)
{
	struct Case
	{
		std::string characters;
		int bitSize;
	};
	const Case cases[] = {
		{"a", 1},                  // 2 entries
		{"ab", 1},                 // 3: one bit short, kept so
		{"abc", 2},                // 4
		{"abcd", 2},               // 5
		{"abcdefg", 3},            // 8
		{"0123456789-+.e ", 4},    // 16
		{"0123456789abcdef", 4},   // 17
		{std::string(255, 'x'), 8} // 256
	};
	for (const auto& c: cases)
	{
		RestrictedAlphabet alphabet(c.characters);
		EXPECT_EQ(c.bitSize, alphabet.bitSize()) << c.characters;
		EXPECT_EQ(c.characters.size() + 1, alphabet.characters().size()) << c.characters;
		EXPECT_EQ(0, alphabet.characters().back());
		EXPECT_TRUE(alphabet.isEndOfString(static_cast<int>(c.characters.size())));
		EXPECT_FALSE(alphabet.isEndOfString(static_cast<int>(c.characters.size()) - 1));
	}
}


TEST(RestrictedAlphabetTest, CharactersAreCodePoints)
{
	RestrictedAlphabet greek("\xCE\xB1\xCE\xB2\xF0\x9F\x98\x80");  // alpha, beta, U+1F600
	EXPECT_EQ((std::vector<int>{0x3B1, 0x3B2, 0x1F600, 0}), greek.characters());
	EXPECT_EQ(2, greek.bitSize());
	EXPECT_EQ(0x3B2, greek.indexToChar(1));

	// Bytes that are not UTF-8 stand for '?', one per broken sequence.
	RestrictedAlphabet broken("a\xFF" "b\xC3");
	EXPECT_EQ((std::vector<int>{'a', '?', 'b', '?', 0}), broken.characters());
}


TEST(RestrictedAlphabetTest, PlaceholderAndEmptyString)
{
	RestrictedAlphabet placeholder;
	EXPECT_EQ(0, placeholder.bitSize());
	EXPECT_TRUE(placeholder.characters().empty());
	EXPECT_TRUE(placeholder.isEndOfString(0));
	EXPECT_FALSE(placeholder.isEndOfString(-1));
	EXPECT_ASSERTION(RestrictedAlphabet(""), "!utf8Characters.empty()");
}


TEST(DocumentRestrictedAlphabetTest, NewListHasFifteenNumberedEntries)
{
	DocumentRestrictedAlphabet list;
	ASSERT_EQ(15u, list.alphabets().size());
	EXPECT_EQ("0123456789-+.e ", DocumentRestrictedAlphabet::NUMERIC_CHARACTERS);
	EXPECT_EQ("0123456789-:TZ ", DocumentRestrictedAlphabet::DATE_TIME_CHARACTERS);
	EXPECT_EQ(DocumentRestrictedAlphabet::NUMERIC_CHARACTERS, list.alphabet(1).alphabet());
	EXPECT_EQ(4, list.alphabet(1).bitSize());
	EXPECT_EQ(16u, list.alphabet(1).characters().size());
	EXPECT_EQ(DocumentRestrictedAlphabet::DATE_TIME_CHARACTERS, list.alphabet(2).alphabet());
	EXPECT_EQ('T', list.alphabet(2).indexToChar(12));
	for (unsigned int number = 3; number <= 15; ++number)
	{
		EXPECT_EQ(0, list.alphabet(number).bitSize()) << number;
	}
	EXPECT_ASSERTION(list.alphabet(16), "vocabulary > 0 && vocabulary <= _alphabets.size()");
	EXPECT_ASSERTION(list.alphabet(0), "vocabulary > 0 && vocabulary <= _alphabets.size()");
	EXPECT_TRUE(DocumentRestrictedAlphabet(true).alphabets().empty());
}


TEST(DocumentRestrictedAlphabetTest, UserAlphabetsStartAtSixteen)
{
	DocumentRestrictedAlphabet list;
	EXPECT_EQ(15u, list.add("abc"));
	EXPECT_EQ(16u, list.add("xyz0"));
	EXPECT_EQ(2, list.alphabet(16).bitSize());
	EXPECT_EQ('c', list.alphabet(16).indexToChar(2));
	EXPECT_EQ("xyz0", list.alphabet(17).alphabet());
	list.addDummy();
	EXPECT_EQ(0, list.alphabet(18).bitSize());
}


TEST(DocumentRestrictedAlphabetTest, DifferenceIsTheTailBeyondTheOtherList)
{
	DocumentRestrictedAlphabet list;
	list.add("abc");
	list.add("def");
	DocumentRestrictedAlphabet tail = list - DocumentRestrictedAlphabet();
	ASSERT_EQ(2u, tail.alphabets().size());
	EXPECT_EQ("abc", tail.alphabet(1).alphabet());
	EXPECT_EQ("def", tail.alphabet(2).alphabet());

	// Positional: contents are not compared.
	DocumentRestrictedAlphabet other(true);
	other.add("zzz");
	EXPECT_EQ(16u, (list - other).alphabets().size());
	EXPECT_TRUE((list - list).alphabets().empty());
	EXPECT_ASSERTION(DocumentRestrictedAlphabet() - list, "other.alphabets().size() <= _alphabets.size()");
}


} // namespace
