//
// StringDecoderTest.cpp
//
// Decoding of UTF-16 and restricted-alphabet strings into UTF-8.
//

#include "Korvo/FastInfoset/StringDecoder.h"
#include "Korvo/FastInfoset/DocumentRestrictedAlphabet.h"
#include "Korvo/FastInfoset/FISException.h"
#include "support/ExceptionMatchers.h"
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace Korvo::FastInfoset;


namespace {


std::string fromHex(const std::string& hex)
{
	std::string octets;
	for (std::size_t i = 0; i + 1 < hex.size(); )
	{
		if (hex[i] == ' ')
		{
			++i;
			continue;
		}
		octets += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
		i += 2;
	}
	return octets;
}


std::string pack(const std::vector<int>& indices, int bits)
	/// Packs indices most significant bit first, padding the last octet with ones.
{
	std::string octets;
	unsigned int pending = 0;
	int pendingBits = 0;
	for (int index: indices)
	{
		pending = (pending << bits) | static_cast<unsigned int>(index);
		pendingBits += bits;
		while (pendingBits >= 8)
		{
			pendingBits -= 8;
			octets += static_cast<char>((pending >> pendingBits) & 0xFF);
		}
	}
	if (pendingBits > 0) octets += static_cast<char>(((pending << (8 - pendingBits)) | (0xFF >> pendingBits)) & 0xFF);
	return octets;
}


TEST(StringDecoderTest, AlphabetExamples)
{
	DocumentRestrictedAlphabet list;
	list.add("abc");                                   // 16: two bits
	list.add("\xCE\xB1\xCE\xB2\xCE\xB3");              // 17: alpha, beta, gamma
	struct Case
	{
		unsigned int alphabet;
		std::string hex;
		std::string text;
	};
	const Case cases[] = {
		{1, "12 3F", "123"},          // 1, 2, 3, terminator
		{1, "1F", "1"},               // 1, terminator
		{1, "BD 0F", "+e0"},
		{1, "BD 0A", "+e0-"},         // no terminator: every whole index counts
		{1, "", ""},
		{1, "F0 12", ""},             // terminator first: the rest is ignored
		{2, "B0 DA", ":0Z-"},
		{2, "2C 3F", "2T3"},
		{16, "1B", "abc"},            // 0 1 2, then 3 = terminator
		{16, "24", "acba"},
		{17, "1B", "\xCE\xB1\xCE\xB2\xCE\xB3"}
	};
	for (const auto& c: cases)
	{
		std::string result = "stale";
		StringDecoder::decodeAlphabet(fromHex(c.hex), list.alphabet(c.alphabet), result);
		EXPECT_EQ(c.text, result) << c.hex;
	}
}


TEST(StringDecoderTest, AlphabetIndicesCrossOctets)
{
	// 31 characters and the terminator: five bits an index.
	std::string characters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcde";
	RestrictedAlphabet alphabet(characters);
	ASSERT_EQ(5, alphabet.bitSize());
	std::vector<int> indices;
	std::string expected;
	for (int i = 0; i < 40; ++i)
	{
		indices.push_back((i*7) % 31);
		expected += characters[(i*7) % 31];
	}
	std::string result;
	StringDecoder::decodeAlphabet(pack(indices, 5), alphabet, result);
	EXPECT_EQ(expected, result);

	// Without a terminator, bits short of one index are padding.
	StringDecoder::decodeAlphabet(pack({0, 1, 2}, 5), alphabet, result);
	EXPECT_EQ("ABC", result);
}


TEST(StringDecoderTest, PlaceholderAlphabetCannotDecode)
{
	DocumentRestrictedAlphabet list;
	std::string result;
	EXPECT_THROW_MESSAGE(StringDecoder::decodeAlphabet(fromHex("12"), list.alphabet(3), result),
		FISParseException, "Cannot decode a string with an empty restricted alphabet");
}


TEST(StringDecoderTest, UTF16)
{
	struct Case
	{
		std::string hex;
		std::string utf8;
	};
	const Case cases[] = {
		{"", ""},
		{"00 41 00 62", "Ab"},
		{"00 E9 20 AC", "\xC3\xA9\xE2\x82\xAC"},   // e acute, euro sign
		{"D8 3D DE 00 00 21", "\xF0\x9F\x98\x80!"}, // U+1F600 as a surrogate pair
		{"DB FF DF FF", "\xF4\x8F\xBF\xBF"},        // U+10FFFF
		{"00 41 00", "A?"},                          // odd length
		{"41", "?"},
		{"D8 3D", "?"},                              // high surrogate at the end
		{"D8 3D 00 41", "?A"},                       // high surrogate before a plain unit
		{"DE 00 00 41", "?A"},                       // lone low surrogate
		{"DE 00 D8 3D", "??"},                       // pair in the wrong order
		{"D8 3D D8 3D DE 00", "?\xF0\x9F\x98\x80"},  // two highs, then one low
		{"D8 3D DE", "??"}                           // high surrogate, then a stray octet
	};
	for (const auto& c: cases)
	{
		std::string result = "stale";
		StringDecoder::decodeUTF16(fromHex(c.hex), result);
		EXPECT_EQ(c.utf8, result) << c.hex;
	}
}


} // namespace
