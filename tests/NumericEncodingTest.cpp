//
// NumericEncodingTest.cpp
//
// ShortEncoding, IntEncoding, LongEncoding, FloatEncoding and DoubleEncoding:
// octets, text round trips, refused texts, size checks, merging and delivery.
//

#include "Korvo/FastInfoset/ShortEncoding.h"
#include "Korvo/FastInfoset/IntEncoding.h"
#include "Korvo/FastInfoset/LongEncoding.h"
#include "Korvo/FastInfoset/FloatEncoding.h"
#include "Korvo/FastInfoset/DoubleEncoding.h"
#include "Korvo/FastInfoset/Encoder.h"
#include "support/EncodingTestSupport.h"
#include "support/ExceptionMatchers.h"
#include "support/SaxRecorder.h"
#include <gtest/gtest.h>
#include <climits>
#include <string>
#include <vector>

using namespace Korvo::FastInfoset;
using namespace Korvo::FastInfoset::Test;


namespace {


using TextDecodeMethod = void (*)(BitStreamReader& reader, std::string& result);


struct Algorithm
	/// The static functions of one numeric class, as the tables hold them.
{
	const char* name;
	int type;
	Encoding::EncodeMethod encode;
	Encoding::DecodeMethod decode;
	TextDecodeMethod decodeText;
	Encoding::CheckMethod check;
	const char* sizeMessage;
	unsigned int width;
};


template <class E>
Algorithm algorithm(const char* name, int type, const char* sizeMessage, unsigned int width)
{
	return Algorithm{name, type, &E::encode, &E::decode, &E::decode, &E::check, sizeMessage, width};
}


const Algorithm SHORT = algorithm<ShortEncoding>("ShortEncoding", 3, "Illegal size entry for Korvo::Int16 value", 2);
const Algorithm INT = algorithm<IntEncoding>("IntEncoding", 4, "Illegal size entry for Korvo::Int32 value", 4);
const Algorithm LONG = algorithm<LongEncoding>("LongEncoding", 5, "Illegal size entry for Korvo::Int64 value", 8);
const Algorithm FLOAT = algorithm<FloatEncoding>("FloatEncoding", 7, "Illegal size entry for float value", 4);
const Algorithm DOUBLE = algorithm<DoubleEncoding>("DoubleEncoding", 8, "Illegal size entry for double value", 8);
const Algorithm ALL[] = {SHORT, INT, LONG, FLOAT, DOUBLE};


std::string encodeAt(const Algorithm& a, const std::string& text, int position = 4)
{
	return writeAt(position, [&](BitStreamWriter& writer) { a.encode(writer, text); });
}


std::string lengthPrefix(unsigned int length)
	/// The hexadecimal octets of a length written at bit position 4.
{
	return writeAt(4, [&](BitStreamWriter& writer) { Encoder::nonEmptyStringLength(writer, length); });
}


TEST(NumericEncodingTest, WritesLengthThenBigEndianValues)
{
	struct Case
	{
		Algorithm algorithm;
		std::string text;
		int position;
		std::string octets;
	};
	const Case cases[] = {
		{INT, "1 -1", 4, "07 00000001 FFFFFFFF"},     // length 8 in 4 bits, then two ints
		{INT, "1 -1", 1, "07 00000001 FFFFFFFF"},     // the same length in 7 bits
		{INT, "1 -1", 6, "02 05 00000001 FFFFFFFF"},  // '10' + 8 bits (8 - 3) at position 6
		{SHORT, "1 -2", 4, "03 0001 FFFE"},
		{SHORT, "-32768 32767", 4, "03 8000 7FFF"},
		{LONG, "-9223372036854775808 1", 4, "08 07 8000000000000000 0000000000000001"}, // 16: '1000' + (16 - 9)
		{FLOAT, "1.5", 4, "03 3FC00000"},
		{FLOAT, "3.4028235e+38", 4, "03 7F7FFFFF"},
		{DOUBLE, "1.5", 4, "07 3FF8000000000000"},
		{DOUBLE, "-0.1", 4, "07 BFB999999999999A"},
	};
	for (const auto& c: cases)
		EXPECT_EQ(fromHex(c.octets), fromHex(encodeAt(c.algorithm, c.text, c.position))) << c.algorithm.name << " " << c.text;
}


TEST(NumericEncodingTest, TextRoundTripsThroughOctets)
{
	struct Case
	{
		Algorithm algorithm;
		std::string text;
	};
	const Case cases[] = {
		{SHORT, "0"},
		{SHORT, "-32768 32767 1 -1 0"},
		{INT, "-2147483648 2147483647 0 42"},
		{LONG, "-9223372036854775808 9223372036854775807 0"},
		{FLOAT, "1.5 0.1 1e+10 1.1754944e-38 3.4028235e+38 1.2345679e+8"},
		{DOUBLE, "0.1 -2.5 1e+100 0 -1e-300 123456789012"},
	};
	for (const auto& c: cases)
	{
		const std::string octets = encodeAt(c.algorithm, c.text);

		Input typed(octets);
		Korvo::AutoPtr<Encoding> pValue = c.algorithm.decode(typed.reader());
		EXPECT_EQ(c.algorithm.type, pValue->type()) << c.text;
		EXPECT_EQ(c.text, pValue->content()) << c.algorithm.name;

		Input text(octets);
		std::string result("stale");
		c.algorithm.decodeText(text.reader(), result);
		EXPECT_EQ(c.text, result) << c.algorithm.name;

		EXPECT_EQ(octets, writeAt(4, [&](BitStreamWriter& writer) { pValue->write(writer); })) << c.text;
	}
}


TEST(NumericEncodingTest, TypedOverloadsFillArrays)
{
	std::vector<short> shorts{7};
	Input shortInput(encodeAt(SHORT, "-1 300"));
	ShortEncoding::decode(shortInput.reader(), shorts);
	EXPECT_EQ((std::vector<short>{-1, 300}), shorts);

	std::vector<int> ints;
	Input intInput(encodeAt(INT, "1 -1"));
	IntEncoding::decode(intInput.reader(), ints);
	EXPECT_EQ((std::vector<int>{1, -1}), ints);

	std::vector<long long> longs;
	Input longInput(encodeAt(LONG, "-9223372036854775808"));
	LongEncoding::decode(longInput.reader(), longs);
	EXPECT_EQ((std::vector<long long>{LLONG_MIN}), longs);

	std::vector<float> floats;
	Input floatInput(encodeAt(FLOAT, "0.1 2"));
	FloatEncoding::decode(floatInput.reader(), floats);
	EXPECT_EQ((std::vector<float>{0.1f, 2.0f}), floats);

	std::vector<double> doubles;
	Input doubleInput(encodeAt(DOUBLE, "0.1"));
	DoubleEncoding::decode(doubleInput.reader(), doubles);
	EXPECT_EQ((std::vector<double>{0.1}), doubles);
}


TEST(NumericEncodingTest, CheckScoresWidthTimesCountOrZero)
{
	struct Case
	{
		Algorithm algorithm;
		std::string text;
		int score;
	};
	const Case cases[] = {
		{INT, "1 2 3", 12},
		{INT, "1  2", 0},         // the empty token between two spaces
		{INT, "007", 0},
		{INT, "+7", 0},
		{INT, "1,000", 0},
		{INT, "2147483648", 0},
		{INT, "-2147483649", 0},
		{INT, "1.0", 0},
		{INT, "-", 0},
		{INT, "", 0},
		{INT, " 1", 0},
		{INT, "1 ", 0},
		{INT, "-0", 0},
		{SHORT, "32767", 2},
		{SHORT, "32768", 0},
		{SHORT, "-32769", 0},
		{SHORT, "+5", 0},
		{LONG, "9223372036854775807 1", 16},
		{LONG, "9223372036854775808", 0},
		{LONG, "007", 0},
		{FLOAT, "1.5", 4},
		{FLOAT, "0.1 0.2", 8},
		{FLOAT, "0", 0},               // below the smallest positive normal float
		{FLOAT, "-1.5", 0},            // negative numbers too
		{FLOAT, "1e-39", 0},           // subnormal
		{FLOAT, "3.5e+38", 0},         // beyond the largest float
		{FLOAT, "1.50", 0},            // parses, but is not the canonical text
		{FLOAT, "1.17549435e-38", 0},  // just below the smallest normal float
		{FLOAT, "1.1754944e-38", 4},
		{DOUBLE, "0.1 -2.5", 16},
		{DOUBLE, "-1.5", 8},
		{DOUBLE, "1.50", 0},
		{DOUBLE, "1e10", 0},           // renders as 10000000000
		{DOUBLE, "1e400", 0},
		{DOUBLE, "nan", 0},
		{DOUBLE, "1,000.5", 0},
	};
	for (const auto& c: cases)
		EXPECT_EQ(c.score, c.algorithm.check(c.text)) << c.algorithm.name << " '" << c.text << "'";
}


TEST(NumericEncodingTest, ParseGivesAllValuesOrNone)
{
	std::vector<int> data{9, 9};
	IntEncoding::parse("1 2 3", data);
	EXPECT_EQ((std::vector<int>{1, 2, 3}), data);
	IntEncoding::parse("1 2 x", data);
	EXPECT_TRUE(data.empty());

	std::vector<float> floats;
	FloatEncoding::parse("1.5 -1.5", floats);
	EXPECT_TRUE(floats.empty());
}


TEST(NumericEncodingTest, ConstructorsRefuseEmptyAndMalformedData)
{
	for (const Algorithm& a: ALL)
	{
		const std::string name(a.name);
		EXPECT_EQ(encodingFailure("Illegal (empty) data for " + name), failureOf([&] { encodeAt(a, ""); }));
		for (const char* text: {"+5", "007", "1,000", "1  2", "x", " "})
			EXPECT_EQ(encodingFailure("Illegal value string for " + name), failureOf([&] { encodeAt(a, text); })) << text;
	}
	EXPECT_EQ(encodingFailure("Illegal value string for ShortEncoding"), failureOf([] { ShortEncoding("32768"); }));
	EXPECT_EQ(encodingFailure("Illegal value string for FloatEncoding"), failureOf([] { FloatEncoding("0"); }));
	EXPECT_EQ(encodingFailure("Illegal value string for FloatEncoding"), failureOf([] { FloatEncoding("-1.5"); }));

	EXPECT_EQ(encodingFailure("Illegal (empty) data for ShortEncoding"), failureOf([] { ShortEncoding(std::vector<short>()); }));
	EXPECT_EQ(encodingFailure("Illegal (empty) data for IntEncoding"), failureOf([] { IntEncoding(std::vector<int>()); }));
	EXPECT_EQ(encodingFailure("Illegal (empty) data for LongEncoding"), failureOf([] { LongEncoding(std::vector<long long>()); }));
	EXPECT_EQ(encodingFailure("Illegal (empty) data for FloatEncoding"), failureOf([] { FloatEncoding(std::vector<float>()); }));
	EXPECT_EQ(encodingFailure("Illegal (empty) data for DoubleEncoding"), failureOf([] { DoubleEncoding(std::vector<double>()); }));
}


TEST(NumericEncodingTest, ContentOfEveryConstructorIsAcceptedAgain)
{
	EXPECT_EQ("-5", ShortEncoding(short(-5)).content());
	EXPECT_EQ("1 -1", IntEncoding(std::vector<int>{1, -1}).content());
	EXPECT_EQ("-9223372036854775808", LongEncoding(LLONG_MIN).content());

	const FloatEncoding floats(std::vector<float>{0.1f, 1e10f, 123456789.0f, 1.17549435e-38f});
	EXPECT_EQ("0.1 1e+10 1.2345679e+8 1.1754944e-38", floats.content());
	EXPECT_EQ(floats.data(), FloatEncoding(floats.content()).data());

	const DoubleEncoding doubles(std::vector<double>{0.1, 1.0/3, 1e21});
	EXPECT_EQ(doubles.data(), DoubleEncoding(doubles.content()).data());
}


TEST(NumericEncodingTest, LengthNotAMultipleOfTheWidthFailsDifferentlyPerOverload)
{
	for (const Algorithm& a: ALL)
	{
		// One octet more than a whole number of values.
		const std::string octets = lengthPrefix(a.width + 1) + std::string(2*(a.width + 1), '0');
		std::string text;
		EXPECT_EQ(fisFailure(a.sizeMessage), failureOf([&] { Input in(octets); a.decodeText(in.reader(), text); })) << a.name;
		EXPECT_EQ(encodingFailure(a.sizeMessage), failureOf([&] { Input in(octets); a.decode(in.reader()); })) << a.name;
	}
	const std::string sixOctets = lengthPrefix(6) + "000000010000";
	std::vector<int> ints;
	EXPECT_EQ(encodingFailure("Illegal size entry for Korvo::Int32 value"), failureOf([&] { Input in(sixOctets); IntEncoding::decode(in.reader(), ints); }));
	std::vector<double> doubles;
	EXPECT_EQ(encodingFailure("Illegal size entry for double value"), failureOf([&] { Input in(sixOctets); DoubleEncoding::decode(in.reader(), doubles); }));
}


TEST(NumericEncodingTest, TruncatedOrForgedLengthsFailWithoutHugeAllocations)
{
	const std::string forged = lengthPrefix(0xFFFF0000u) + std::string(64, 'A'); // ~4 GB stated, 32 octets present
	const std::string truncated = lengthPrefix(16) + "00000001";
	const std::string parseExceptionName = FISParseException().name();
	for (const Algorithm& a: ALL)
	{
		for (const std::string& octets: {forged, truncated})
		{
			std::string text;
			EXPECT_EQ(parseExceptionName, failureOf([&] { Input in(octets); a.decode(in.reader()); }).name) << a.name;
			EXPECT_EQ(parseExceptionName, failureOf([&] { Input in(octets); a.decodeText(in.reader(), text); }).name) << a.name;
		}
	}

	std::vector<int> ints;
	EXPECT_EQ(parseExceptionName, failureOf([&] { Input in(forged); IntEncoding::decode(in.reader(), ints); }).name);
	EXPECT_LE(ints.capacity()*sizeof(int), 65536u);

	// A memory block ends the same way.
	const std::string block = fromHex(forged);
	EXPECT_EQ(parseExceptionName, failureOf([&]
	{
		BitStreamReader reader(block.data(), static_cast<unsigned int>(block.size()));
		unsigned char prefix;
		reader.read(prefix, 4);
		IntEncoding::decode(reader, ints);
	}).name);
}


TEST(NumericEncodingTest, LongArraysCrossEveryBufferBoundary)
{
	std::vector<int> values(100000);
	for (std::size_t i = 0; i < values.size(); ++i)
		values[i] = static_cast<int>(i*2654435761u);
	const IntEncoding encoding(values);
	const std::string octets = writeAt(4, [&](BitStreamWriter& writer) { encoding.write(writer); });

	std::vector<int> decoded;
	Input typed(octets);
	IntEncoding::decode(typed.reader(), decoded);
	EXPECT_EQ(values, decoded);

	std::string text;
	Input textual(octets);
	IntEncoding::decode(textual.reader(), text);
	EXPECT_EQ(encoding.content(), text);
}


TEST(NumericEncodingTest, MergeAppendsValuesOfTheSameClassOnly)
{
	IntEncoding ints(1);
	EXPECT_TRUE(ints.merge(IntEncoding(std::vector<int>{2, 3})));
	EXPECT_EQ((std::vector<int>{1, 2, 3}), ints.data());
	EXPECT_EQ("1", ints.content()); // the text follows only on request
	ints.createContent();
	EXPECT_EQ("1 2 3", ints.content());

	EXPECT_FALSE(ints.merge(ShortEncoding(short(4))));
	EXPECT_FALSE(ints.merge(LongEncoding(4LL)));
	EXPECT_EQ((std::vector<int>{1, 2, 3}), ints.data());

	EXPECT_TRUE(ints.merge(ints));
	EXPECT_EQ((std::vector<int>{1, 2, 3, 1, 2, 3}), ints.data());

	DoubleEncoding doubles(0.5);
	EXPECT_FALSE(doubles.merge(FloatEncoding(0.5f)));
	EXPECT_TRUE(doubles.merge(DoubleEncoding(1.5)));
	doubles.createContent();
	EXPECT_EQ("0.5 1.5", doubles.content());
}


TEST(NumericEncodingTest, TypedHandlersGetOneCallPerValuePlainOnesText)
{
	struct Case
	{
		Algorithm algorithm;
		std::string text;
		std::vector<std::string> typed;
	};
	const Case cases[] = {
		{SHORT, "-5 6", {"encodedData(short:-5)", "encodedData(short:6)"}},
		{INT, "1 -1", {"encodedData(int:1)", "encodedData(int:-1)"}},
		{LONG, "9223372036854775807", {"encodedData(long:9223372036854775807)"}},
		{FLOAT, "1.5 0.1", {"encodedData(float:1.5)", "encodedData(float:0.1)"}},
		{DOUBLE, "1.5 2.5 3.5", {"encodedData(double:1.5)", "encodedData(double:2.5)", "encodedData(double:3.5)"}},
	};
	for (const auto& c: cases)
	{
		const std::string octets = encodeAt(c.algorithm, c.text);
		Input first(octets);
		Korvo::AutoPtr<Encoding> pValue = c.algorithm.decode(first.reader());
		SaxRecorder typed;
		pValue->handle(&typed);
		EXPECT_EQ(c.typed, typed.events());

		Input second(octets);
		pValue = c.algorithm.decode(second.reader());
		PlainSaxRecorder plain;
		pValue->handle(&plain);
		EXPECT_EQ(std::vector<std::string>{"characters(" + c.text + ")"}, plain.events());
	}
	IntEncoding ints(1);
	ints.handle(static_cast<FISContentHandler*>(nullptr));
	ints.handle(static_cast<Korvo::XML::ContentHandler*>(nullptr));
}


} // namespace
