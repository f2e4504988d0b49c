//
// BinaryEncodingTest.cpp
//
// BoolEncoding, UUIDEncoding, HexEncoding, DWordEncoding, CDataEncoding,
// NullEncoding and NullRefEncoding.
//

#include "Korvo/FastInfoset/BoolEncoding.h"
#include "Korvo/FastInfoset/UUIDEncoding.h"
#include "Korvo/FastInfoset/HexEncoding.h"
#include "Korvo/FastInfoset/DWordEncoding.h"
#include "Korvo/FastInfoset/CDataEncoding.h"
#include "Korvo/FastInfoset/NullEncoding.h"
#include "Korvo/FastInfoset/Encoder.h"
#include "support/EncodingTestSupport.h"
#include "support/ExceptionMatchers.h"
#include "support/SaxRecorder.h"
#include <gtest/gtest.h>
#include <functional>
#include <string>
#include <vector>

using namespace Korvo::FastInfoset;
using namespace Korvo::FastInfoset::Test;


namespace {


using TextDecodeMethod = void (*)(BitStreamReader& reader, std::string& result);


struct Algorithm
{
	const char* name;
	Encoding::EncodeMethod encode;
	Encoding::DecodeMethod decode;
	TextDecodeMethod decodeText;
};


template <class E>
Algorithm algorithm(const char* name)
{
	return Algorithm{name, &E::encode, &E::decode, &E::decode};
}


const Algorithm BOOL = algorithm<BoolEncoding>("BoolEncoding");
const Algorithm UUID = algorithm<UUIDEncoding>("UUIDEncoding");
const Algorithm HEX = algorithm<HexEncoding>("HexEncoding");
const Algorithm DWORD = algorithm<DWordEncoding>("DWordEncoding");
const Algorithm CDATA = algorithm<CDataEncoding>("CDataEncoding");
const Algorithm NUL = algorithm<NullEncoding>("NullEncoding");
const Algorithm ALL[] = {BOOL, UUID, HEX, DWORD, CDATA, NUL};

const std::string UUID_TEXT("6ba7b810-9dad-11d1-80b4-00c04fd430c8");
const std::string UUID_OCTETS("6BA7B8109DAD11D180B400C04FD430C8");


std::string encodeAt(const Algorithm& a, const std::string& text, int position = 4)
{
	return writeAt(position, [&](BitStreamWriter& writer) { a.encode(writer, text); });
}


std::string writeValue(const Encoding& value)
{
	return writeAt(4, [&](BitStreamWriter& writer) { value.write(writer); });
}


std::string lengthPrefix(unsigned int length)
{
	return writeAt(4, [&](BitStreamWriter& writer) { Encoder::nonEmptyStringLength(writer, length); });
}


TEST(BinaryEncodingTest, WritesTheOctetsOfEachAlgorithm)
{
	struct Case
	{
		Algorithm algorithm;
		std::string text;
		std::string octets;
	};
	const Case cases[] = {
		{BOOL, "true false true", "00 1A"},          // length 1; unused 1, bits 101, one pad bit
		{BOOL, "true true false true", "00 0D"},     // four values fill the octet: unused 0
		{BOOL, "true true true true true", "01 7F 80"}, // length 2, unused 7
		{BOOL, "false", "00 30"},                    // unused 3
		{UUID, UUID_TEXT, "08 07" + UUID_OCTETS},    // length 16: '1000' + (16 - 9)
		{UUID, UUID_TEXT + " " + UUID_TEXT, "08 17" + UUID_OCTETS + UUID_OCTETS},
		{HEX, "0A0B", "01 0A0B"},
		{HEX, "0a0b ff", "02 0A0BFF"},
		{DWORD, "AAEC", "02 000102"},
		{CDATA, "abc", "02 616263"},
		{NUL, "abc", "02 616263"},
	};
	for (const auto& c: cases)
		EXPECT_EQ(fromHex(c.octets), fromHex(encodeAt(c.algorithm, c.text))) << c.algorithm.name << " " << c.text;
}


TEST(BinaryEncodingTest, TextRoundTripsThroughOctets)
{
	struct Case
	{
		Algorithm algorithm;
		std::string text;
	};
	const Case cases[] = {
		{BOOL, "true"},
		{BOOL, "true false true false false true true false true"},
		{UUID, UUID_TEXT + " 00000000-0000-0000-0000-000000000000"},
		{HEX, "00FF10AB"},
		{DWORD, "AAECAw=="},
		{CDATA, "a <b> & ]]"},
		{NUL, "plain text"},
	};
	for (const auto& c: cases)
	{
		const std::string octets = encodeAt(c.algorithm, c.text);

		Input text(octets);
		std::string result("stale");
		c.algorithm.decodeText(text.reader(), result);
		EXPECT_EQ(c.text, result) << c.algorithm.name;

		Input typed(octets);
		Korvo::AutoPtr<Encoding> pValue = c.algorithm.decode(typed.reader());
		PlainSaxRecorder plain;
		pValue->handle(&plain);
		EXPECT_EQ(std::vector<std::string>{"characters(" + c.text + ")"}, plain.events()) << c.algorithm.name;
		EXPECT_EQ(octets, writeValue(*pValue)) << c.algorithm.name;
	}
}


TEST(BinaryEncodingTest, TypedOverloadsFillArrays)
{
	std::vector<bool> bools;
	Input boolInput(encodeAt(BOOL, "true false true"));
	BoolEncoding::decode(boolInput.reader(), bools);
	EXPECT_EQ((std::vector<bool>{true, false, true}), bools);

	std::vector<Korvo::UUID> uuids;
	Input uuidInput(encodeAt(UUID, UUID_TEXT));
	UUIDEncoding::decode(uuidInput.reader(), uuids);
	EXPECT_EQ(std::vector<Korvo::UUID>{Korvo::UUID(UUID_TEXT)}, uuids);
}


TEST(BinaryEncodingTest, CheckScores)
{
	EXPECT_EQ(1, BoolEncoding::check("true false true"));
	EXPECT_EQ(2, BoolEncoding::check("true true true true true true true true true"));
	EXPECT_EQ(0, BoolEncoding::check("true maybe"));
	EXPECT_EQ(0, BoolEncoding::check("true  false"));
	EXPECT_EQ(0, BoolEncoding::check("True"));
	EXPECT_EQ(0, BoolEncoding::check(""));

	EXPECT_EQ(32, UUIDEncoding::check(UUID_TEXT + " " + UUID_TEXT));
	EXPECT_EQ(0, UUIDEncoding::check(UUID_TEXT + " x"));
	EXPECT_EQ(0, UUIDEncoding::check(""));

	EXPECT_EQ(-1, HexEncoding::check(""));
	EXPECT_EQ(2, HexEncoding::check("0A0B"));
	EXPECT_EQ(-1, HexEncoding::check("0A0"));
	EXPECT_EQ(-1, HexEncoding::check("zz"));

	EXPECT_EQ(-1, DWordEncoding::check(""));
	EXPECT_EQ(3, DWordEncoding::check("AAEC"));
	EXPECT_EQ(-1, DWordEncoding::check("A=="));
	EXPECT_EQ(-1, DWordEncoding::check("!!!!"));

	EXPECT_EQ(3, CDataEncoding::check("abc"));
	EXPECT_EQ(0, CDataEncoding::check(""));
	EXPECT_EQ(5, NullEncoding::check("hello"));
}


TEST(BinaryEncodingTest, EveryMessageAndClass)
{
	struct Case
	{
		const char* what;
		std::function<void()> call;
		Failure failure;
	};
	const Case cases[] = {
		{"bool text empty", [] { BoolEncoding(""); }, encodingFailure("Illegal (empty) data for BoolEncoding")},
		{"bool list empty", [] { BoolEncoding(std::vector<bool>()); }, encodingFailure("Illegal (empty) data for BoolEncoding")},
		{"bool text bad", [] { BoolEncoding("true maybe"); }, encodingFailure("Illegal value string for BoolEncoding")},
		{"uuid text empty", [] { UUIDEncoding(""); }, encodingFailure("Illegal (empty) data for UUIDEncoding")},
		{"uuid list empty", [] { UUIDEncoding(std::vector<Korvo::UUID>()); }, encodingFailure("Illegal (empty) data for UUIDEncoding")},
		{"uuid text bad", [] { UUIDEncoding("6ba7b810"); }, encodingFailure("Illegal value string for UUIDEncoding")},
		{"hex text empty", [] { HexEncoding(""); }, encodingFailure("Zero-length data for hex encoding")},
		{"hex octets empty", [] { HexEncoding("x", 0); }, encodingFailure("Zero-length data for hex encoding")},
		{"hex text bad", [] { HexEncoding("0A0"); }, encodingFailure("Invalid hex-encoded data")},
		{"hex text blank", [] { HexEncoding(" "); }, encodingFailure("Zero-length data for hex encoding")},
		{"dword text empty", [] { DWordEncoding(""); }, encodingFailure("Zero-length data for dword encoding")},
		{"dword octets empty", [] { DWordEncoding("x", 0); }, encodingFailure("Zero-length data for dword encoding")},
		{"dword text bad", [] { DWordEncoding("A=="); }, encodingFailure("Invalid base64-encoded data")},
		{"cdata empty", [] { CDataEncoding(""); }, encodingFailure("Illegal empty string for CDataEncoding")},
		{"null empty", [] { NullEncoding(""); }, encodingFailure("Illegal empty string for NullEncoding")},
		{"hex encode bad", [] { encodeAt(HEX, "zz"); }, encodingFailure("Invalid hex-encoded data")},
		{"bool encode bad", [] { encodeAt(BOOL, "1"); }, encodingFailure("Illegal value string for BoolEncoding")},
		{"cdata encode empty", [] { encodeAt(CDATA, ""); }, encodingFailure("Illegal empty string for CDataEncoding")},
	};
	for (const auto& c: cases)
		EXPECT_EQ(c.failure, failureOf(c.call)) << c.what;
}


TEST(BinaryEncodingTest, UUIDLengthNotAMultipleOf16FailsDifferentlyPerOverload)
{
	const std::string octets = lengthPrefix(17) + UUID_OCTETS + "00";
	const char* message = "Illegal size entry for Korvo::UUID value";
	std::string text;
	std::vector<Korvo::UUID> uuids;
	EXPECT_EQ(fisFailure(message), failureOf([&] { Input in(octets); UUIDEncoding::decode(in.reader(), text); }));
	EXPECT_EQ(encodingFailure(message), failureOf([&] { Input in(octets); UUIDEncoding::decode(in.reader(), uuids); }));
	EXPECT_EQ(encodingFailure(message), failureOf([&] { Input in(octets); UUIDEncoding::decode(in.reader()); }));
}


TEST(BinaryEncodingTest, BoolUnusedCountMustFitTheData)
{
	const char* message = "Illegal count of unused bits for BoolEncoding";
	std::string text;
	EXPECT_EQ(parseFailure(message), failureOf([&] { Input in("00 50"); BoolEncoding::decode(in.reader(), text); })); // 5 > 4 bits left
	EXPECT_EQ(parseFailure(message), failureOf([&] { Input in("01 80 00"); BoolEncoding::decode(in.reader()); }));  // 8 is never written

	// Four unused bits in one octet: an empty list, which writes back the same.
	Input empty("00 40");
	Korvo::AutoPtr<Encoding> pValue = BOOL.decode(empty.reader());
	EXPECT_EQ("", pValue->content());
	EXPECT_EQ("0040", writeValue(*pValue));
}


TEST(BinaryEncodingTest, TruncatedOrForgedLengthsFail)
{
	const std::string forged = lengthPrefix(0xFFFF0000u) + std::string(64, 'A'); // ~4 GB stated, 32 octets present
	const std::string truncated = lengthPrefix(32) + "00112233";
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
}


TEST(BinaryEncodingTest, LargeValuesCrossEveryBufferBoundary)
{
	std::string octets(100000, '\0');
	for (std::size_t i = 0; i < octets.size(); ++i)
		octets[i] = static_cast<char>(i*131 + (i >> 8));
	const DWordEncoding binary(octets.data(), static_cast<unsigned int>(octets.size()));
	Input binaryInput(writeValue(binary));
	EXPECT_EQ(octets, DWORD.decode(binaryInput.reader())->content());

	std::vector<bool> bools(70001);
	for (std::size_t i = 0; i < bools.size(); ++i)
		bools[i] = (i*7 % 3) == 0;
	Input boolInput(writeValue(BoolEncoding(bools)));
	std::vector<bool> decoded;
	BoolEncoding::decode(boolInput.reader(), decoded);
	EXPECT_EQ(bools, decoded);
}


TEST(BinaryEncodingTest, TypedHandlersGetTypedCallsPlainOnesText)
{
	struct Case
	{
		Algorithm algorithm;
		std::string text;
		std::vector<std::string> typed;
		std::string plain;
	};
	const Case cases[] = {
		{BOOL, "true false", {"encodedData(bool:true)", "encodedData(bool:false)"}, "true false"},
		{UUID, UUID_TEXT, {"encodedData(uuid:" + UUID_TEXT + ")"}, UUID_TEXT},
		{HEX, "0a0b", {"binaryData(0a0b)"}, "0A0B"},
		{DWORD, "AAEC", {"binaryData(000102)"}, "AAEC"},
		{CDATA, "x<y", {"characters(x<y)"}, "x<y"},
		{NUL, "text", {"characters(text)"}, "text"},
	};
	for (const auto& c: cases)
	{
		const std::string octets = encodeAt(c.algorithm, c.text);
		Input first(octets);
		SaxRecorder typed;
		c.algorithm.decode(first.reader())->handle(&typed);
		EXPECT_EQ(c.typed, typed.events()) << c.algorithm.name;

		Input second(octets);
		PlainSaxRecorder plain;
		c.algorithm.decode(second.reader())->handle(&plain);
		EXPECT_EQ(std::vector<std::string>{"characters(" + c.plain + ")"}, plain.events()) << c.algorithm.name;
	}
}


TEST(BinaryEncodingTest, MergeAppendsSameKindOnly)
{
	BoolEncoding bools(true);
	EXPECT_TRUE(bools.merge(BoolEncoding("false true")));
	EXPECT_FALSE(bools.merge(HexEncoding("00")));
	bools.createContent();
	EXPECT_EQ("true false true", bools.content());

	HexEncoding hex("0A");
	EXPECT_TRUE(hex.merge(HexEncoding("0B")));
	EXPECT_FALSE(hex.merge(DWordEncoding("AAEC")));
	EXPECT_TRUE(hex.merge(hex));
	EXPECT_EQ("0A0B0A0B", hex.text());

	UUIDEncoding uuids{Korvo::UUID(UUID_TEXT)};
	EXPECT_TRUE(uuids.merge(UUIDEncoding(UUID_TEXT)));
	EXPECT_EQ(2u, uuids.data().size());

	CDataEncoding cdata("a");
	EXPECT_FALSE(cdata.merge(NullEncoding("b")));
	EXPECT_TRUE(cdata.merge(CDataEncoding("c")));
	EXPECT_EQ("ac", cdata.content());

	const std::string table("d");
	NullEncoding text("a");
	EXPECT_TRUE(text.merge(NullRefEncoding(table)));
	EXPECT_FALSE(text.merge(CDataEncoding("x")));
	EXPECT_EQ("ad", text.content());
}


TEST(BinaryEncodingTest, NullRefEncodingRefersWithoutCopying)
{
	const std::string first("first");
	const std::string second("second");
	NullRefEncoding ref(first);
	const NullRefEncoding& constRef = ref;
	EXPECT_EQ(&first, &constRef.content());
	EXPECT_EQ(0, ref.type());

	ref.reset(second);
	EXPECT_EQ(&second, &constRef.content());
	EXPECT_EQ(fromHex("05 7365636F6E64"), fromHex(writeValue(ref))); // length 6, "second"

	SaxRecorder typed;
	ref.handle(&typed);
	EXPECT_EQ(std::vector<std::string>{"characters(second)"}, typed.events());

	EXPECT_THROW_MESSAGE(ref.merge(NullEncoding("x")), Korvo::InvalidAccessException, "NullRefEncoding is immutable");
	EXPECT_THROW_MESSAGE(ref.content(), Korvo::InvalidAccessException, "NullRefEncoding is immutable");
	EXPECT_EQ(&NullEncoding::check, ref.checkMethod());
}


TEST(BinaryEncodingTest, WritingEmptyTextIsAProgrammingError)
{
	const std::string empty;
	NullRefEncoding ref(empty);
	EXPECT_ASSERTION(writeValue(ref), "_data && !_data->empty()");
	NullEncoding text;
	EXPECT_ASSERTION(writeValue(text), "!_content.empty()");
}


} // namespace
