//
// EncodingAlgorithmTest.cpp
//
// The encoding and decoding registries: their reserved entries, the choice
// of the best algorithm, application algorithms and round trips through both.
//

#include "Korvo/FastInfoset/EncodingAlgorithm.h"
#include "Korvo/FastInfoset/DecodingAlgorithm.h"
#include "Korvo/FastInfoset/NullEncoding.h"
#include "support/EncodingTestSupport.h"
#include "support/ExceptionMatchers.h"
#include "support/SaxRecorder.h"
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace Korvo::FastInfoset;
using namespace Korvo::FastInfoset::Test;


namespace {


void writeMarker(BitStreamWriter& writer, const std::string& str)
{
	writer.write(static_cast<unsigned char>(0x0F), 4);
	writer.write(str);
}


int scoreOne(const std::string&)
{
	return 1;
}


int scoreThree(const std::string&)
{
	return 3;
}


Korvo::AutoPtr<Encoding> decodeMarker(BitStreamReader& reader)
{
	unsigned char marker = 0;
	reader.read(marker, 8);
	return new NullEncoding(std::string(1, static_cast<char>(marker)));
}


TEST(EncodingAlgorithmTest, TablesHoldTheBuiltInsAndReservedIndices)
{
	EncodingAlgorithm encodings;
	DecodingAlgorithm decodings;
	EXPECT_EQ(32u, encodings.size());
	EXPECT_EQ(32u, decodings.size());

	for (unsigned int index: {0u, 11u, 31u, 32u, 1000u})
	{
		EXPECT_EQ(fisFailure("Invalid encoding defined"), failureOf([&] { writeAt(4, [&](BitStreamWriter& writer) { encodings.encode(index, writer, "1"); }); }))
			<< index;
	}
	for (int index: {0, 11, 31, 32, -1, 1000})
	{
		EXPECT_EQ(fisFailure("Invalid decoding defined"), failureOf([&] { Input in("00"); decodings.read(index, in.reader()); }))
			<< index;
	}
}


TEST(EncodingAlgorithmTest, EveryBuiltInRoundTripsThroughBothTables)
{
	struct Case
	{
		unsigned int index;
		std::string text;
		std::string textForm; // what a plain handler receives
	};
	const Case cases[] = {
		{EncodingAlgorithm::HEX_ENCODING, "0a0b", "0A0B"},
		{EncodingAlgorithm::DWORD_ENCODING, "AAEC", "AAEC"},
		{EncodingAlgorithm::SHORT_ENCODING, "-5 5", "-5 5"},
		{EncodingAlgorithm::INT_ENCODING, "1 -1", "1 -1"},
		{EncodingAlgorithm::LONG_ENCODING, "-9223372036854775808", "-9223372036854775808"},
		{EncodingAlgorithm::BOOL_ENCODING, "true false true", "true false true"},
		{EncodingAlgorithm::FLOAT_ENCODING, "1.5 0.1", "1.5 0.1"},
		{EncodingAlgorithm::DOUBLE_ENCODING, "-0.1", "-0.1"},
		{EncodingAlgorithm::UUID_ENCODING, "6ba7b810-9dad-11d1-80b4-00c04fd430c8", "6ba7b810-9dad-11d1-80b4-00c04fd430c8"},
		{EncodingAlgorithm::CDATA_ENCODING, "x < y", "x < y"},
	};
	const EncodingAlgorithm encodings;
	const DecodingAlgorithm decodings;
	for (const auto& c: cases)
	{
		for (int position: {1, 4, 6})
		{
			Input in(writeAt(position, [&](BitStreamWriter& writer) { encodings.encode(c.index, writer, c.text); }), position);
			Korvo::AutoPtr<Encoding> pValue = decodings.read(c.index, in.reader());
			EXPECT_EQ(static_cast<int>(c.index), pValue->type());
			EXPECT_EQ(0, in.reader().bitPos());
			PlainSaxRecorder plain;
			pValue->handle(&plain);
			EXPECT_EQ(std::vector<std::string>{"characters(" + c.textForm + ")"}, plain.events()) << c.index << " at " << position;
		}
	}
}


TEST(EncodingAlgorithmTest, FindEncodingPicksTheSmallestPositiveScore)
{
	struct Case
	{
		std::string text;
		unsigned int index;
	};
	const Case cases[] = {
		{"", 0},                                  // nothing accepts empty text
		{"abc", EncodingAlgorithm::CDATA_ENCODING},  // only CDATA takes any text
		{"0A0B", EncodingAlgorithm::HEX_ENCODING},   // 2 octets beat base64's 3 and CDATA's 4
		{"true false true false true false true false true", EncodingAlgorithm::BOOL_ENCODING},
		{"12345678", EncodingAlgorithm::HEX_ENCODING}, // hex and int both score 4: the lower index wins
		{"1 2 3", EncodingAlgorithm::CDATA_ENCODING},   // 5 text octets beat 6 short octets
		{"32767 -32768 100", EncodingAlgorithm::SHORT_ENCODING},
		{"-100000 100000", EncodingAlgorithm::INT_ENCODING},
		{"-10000000000", EncodingAlgorithm::LONG_ENCODING},
		{"-1.23456789", EncodingAlgorithm::DOUBLE_ENCODING},
		{"6ba7b810-9dad-11d1-80b4-00c04fd430c8", EncodingAlgorithm::UUID_ENCODING},
	};
	const EncodingAlgorithm encodings;
	for (const auto& c: cases)
		EXPECT_EQ(c.index, encodings.findEncoding(c.text)) << "'" << c.text << "'";
}


TEST(EncodingAlgorithmTest, ApplicationAlgorithmsStartAt32AndLoseTies)
{
	EncodingAlgorithm encodings;
	encodings.add(&writeMarker, &scoreOne);
	EXPECT_EQ(33u, encodings.size());
	EXPECT_EQ(32u, encodings.findEncoding(""));
	EXPECT_EQ(32u, encodings.findEncoding("abc"));
	EXPECT_EQ("F4", writeAt(0, [&](BitStreamWriter& writer) { encodings.encode(32, writer, "A"); }).substr(0, 2));

	EncodingAlgorithm tied;
	tied.add(&writeMarker, &scoreThree);
	EXPECT_EQ(EncodingAlgorithm::CDATA_ENCODING, tied.findEncoding("abc"));
	EXPECT_EQ(32u, tied.findEncoding("x-yz"));

	EncodingAlgorithm copy;
	copy = encodings;
	EXPECT_EQ(33u, copy.size());
	EXPECT_EQ(32u, copy.findEncoding("abc"));

	DecodingAlgorithm decodings;
	decodings.add(&decodeMarker);
	EXPECT_EQ(33u, decodings.size());
	Input in("41", 0);
	EXPECT_EQ("A", decodings.read(32, in.reader())->content());
	EXPECT_EQ(fisFailure("Invalid decoding defined"), failureOf([&] { Input again("41", 0); decodings.read(33, again.reader()); }));
}


TEST(EncodingAlgorithmTest, TablesEndAtTheLastUserDefinedIndex)
{
	EncodingAlgorithm encodings;
	DecodingAlgorithm decodings;
	for (int index = EncodingAlgorithm::USER_DEFINED; index <= EncodingAlgorithm::LAST_USER_DEFINED; ++index)
	{
		encodings.add(&writeMarker, &scoreOne);
		decodings.add(&decodeMarker);
	}
	EXPECT_EQ(257u, encodings.size());
	EXPECT_ASSERTION(encodings.add(&writeMarker, &scoreOne), "_encodings.size() <= LAST_USER_DEFINED");
	EXPECT_ASSERTION(decodings.add(&decodeMarker), "_decodings.size() <= EncodingAlgorithm::LAST_USER_DEFINED");
}


} // namespace
