//
// BitStreamTest.cpp
//
// BitStreamWriter and BitStreamReader: bit layouts, fast paths, refills,
// end of data and misuse.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//

#include "Korvo/FastInfoset/BitStreamWriter.h"
#include "Korvo/FastInfoset/BitStreamReader.h"
#include "Korvo/FastInfoset/FISException.h"
#include "support/BitTesting.h"
#include "support/ExceptionMatchers.h"
#include <gtest/gtest.h>
#include <functional>
#include <random>
#include <sstream>
#include <vector>


using namespace Korvo::FastInfoset;
using namespace Tests::Bits;


namespace {


std::string written(const std::function<void(BitStreamWriter&)>& writes, bool padding = false)
	/// The octets a fresh writer emits for writes, completed with padding.
{
	std::ostringstream out;
	{
		BitStreamWriter writer(out, padding);
		writes(writer);
		writer.complete(padding);
	}
	return out.str();
}


std::string pattern(std::size_t size)
	/// size octets that differ from their neighbours and cover all values.
{
	std::string result(size, '\0');
	for (std::size_t i = 0; i < size; ++i) result[i] = static_cast<char>(i*7 + i/256);
	return result;
}


// One step of a random write/read sequence: a field of up to 64 bits or an octet string.
struct Item
{
	int width;                 // 0 for a string
	unsigned long long value;
	std::string octets;
};


std::vector<Item> randomItems(unsigned seed, int count)
{
	std::mt19937 random(seed);
	std::vector<Item> items;
	for (int i = 0; i < count; ++i)
	{
		Item item;
		if (random() % 10 == 0)
		{
			item.width = 0;
			item.octets = pattern(random() % 1500 + 1);
		}
		else
		{
			item.width = static_cast<int>(random() % 64) + 1;
			unsigned long long value = (static_cast<unsigned long long>(random()) << 32) | random();
			item.value = item.width == 64 ? value : value & ((1ULL << item.width) - 1);
		}
		items.push_back(item);
	}
	return items;
}


void writeItem(BitStreamWriter& writer, const Item& item)
{
	// Alternate between the signed and the unsigned overloads of each width.
	bool useSigned = item.value & 1;
	if (item.width == 0)
		writer.write(item.octets);
	else if (item.width == 1)
		writer.write(item.value != 0);
	else if (item.width <= 8)
		useSigned ? writer.write(static_cast<signed char>(item.value), item.width) : writer.write(static_cast<unsigned char>(item.value), item.width);
	else if (item.width <= 16)
		useSigned ? writer.write(static_cast<short>(item.value), item.width) : writer.write(static_cast<unsigned short>(item.value), item.width);
	else if (item.width <= 32)
		useSigned ? writer.write(static_cast<int>(item.value), item.width) : writer.write(static_cast<unsigned int>(item.value), item.width);
	else
		useSigned ? writer.write(static_cast<long long>(item.value), item.width) : writer.write(static_cast<unsigned long long>(item.value), item.width);
}


void expectItem(BitStreamReader& reader, const Item& item, int index)
{
	bool ok = false;
	unsigned long long value = 0;
	if (item.width == 0)
	{
		std::string octets;
		ok = reader.read(octets, static_cast<unsigned int>(item.octets.size()));
		EXPECT_TRUE(octets == item.octets) << "item " << index;
		value = item.value;
	}
	else if (item.width == 1)
	{
		bool bit;
		ok = reader.read(bit);
		value = bit;
	}
	else if (item.width <= 8)
	{
		unsigned char v;
		ok = reader.read(v, item.width);
		value = v;
	}
	else if (item.width <= 16)
	{
		unsigned short v;
		ok = reader.read(v, item.width);
		value = v;
	}
	else if (item.width <= 32)
	{
		unsigned int v;
		ok = reader.read(v, item.width);
		value = v;
	}
	else
	{
		ok = reader.read(value, item.width);
	}
	EXPECT_TRUE(ok) << "item " << index;
	EXPECT_EQ(item.value, value) << "item " << index << " of width " << item.width;
}


} // namespace


//
// Writer
//


TEST(BitStreamWriterTest, EmitsFieldsMostSignificantBitFirst)
{
	struct Case
	{
		const char* what;
		std::function<void(BitStreamWriter&)> writes;
		const char* octets;
		int bitPos;
	};
	const Case cases[] =
	{
		{"eight one bits", [](BitStreamWriter& w) { for (int i = 0; i < 8; ++i) w.write(true); }, "FF", 0},
		{"3 bits 101, 5 bits 11111", [](BitStreamWriter& w) { w.write(static_cast<unsigned char>(0x05), 3); w.write(static_cast<unsigned char>(0x1F), 5); }, "BF", 0},
		{"only the low bits of a char count", [](BitStreamWriter& w) { w.write(static_cast<unsigned char>(0xFA), 3); }, "40", 3},
		{"signed char -1 in 4 bits", [](BitStreamWriter& w) { w.write(static_cast<signed char>(-1), 4); }, "F0", 4},
		{"short 0x1234 aligned", [](BitStreamWriter& w) { w.write(static_cast<short>(0x1234), 16); }, "1234", 0},
		{"one bit, then short 0x1234", [](BitStreamWriter& w) { w.write(true); w.write(static_cast<short>(0x1234), 16); }, "891A00", 1},
		{"unsigned short 0xFFFF in 9 bits", [](BitStreamWriter& w) { w.write(static_cast<unsigned short>(0xFFFF), 9); }, "FF80", 1},
		{"int aligned", [](BitStreamWriter& w) { w.write(static_cast<int>(0x89ABCDEF), 32); }, "89ABCDEF", 0},
		{"3 zero bits, int 0x1FFFF in 17 bits", [](BitStreamWriter& w) { w.write(0u, 3); w.write(0x1FFFFu, 17); }, "1FFFF0", 4},
		{"long long aligned", [](BitStreamWriter& w) { w.write(0x0123456789ABCDEFLL, 64); }, "0123456789ABCDEF", 0},
		{"7 one bits, then 64 bits", [](BitStreamWriter& w) { w.write(0x7Fu, 7); w.write(0x8000000000000001ULL, 64); }, "FF0000000000000002", 7},
		{"writeBits 10 ones", [](BitStreamWriter& w) { w.writeBits(10, true); }, "FFC0", 2},
		{"writeBits 70 zeros after one bit", [](BitStreamWriter& w) { w.write(true); w.writeBits(70, false); w.write(true); }, "800000000000000001", 0},
		{"writeBits 0 and -3", [](BitStreamWriter& w) { w.writeBits(0, true); w.writeBits(-3, true); }, "", 0},
		{"aligned string", [](BitStreamWriter& w) { w.write(std::string("abc")); }, "616263", 0},
		{"string after 3 bits 101", [](BitStreamWriter& w) { w.write(0x5u, 3); w.write("ab"); }, "AC2C40", 3},
		{"counted string after one bit", [](BitStreamWriter& w) { w.write(true); w.write("\xFF\x01xyz", 2); }, "FF8080", 1},
		{"empty strings write nothing", [](BitStreamWriter& w) { w.write(std::string()); w.write(static_cast<const char*>(nullptr)); w.write("abc", 0u); w.write(nullptr, 5u); }, "", 0},
	};
	for (const Case& c: cases)
	{
		std::ostringstream out;
		BitStreamWriter writer(out, false);
		c.writes(writer);
		EXPECT_EQ(c.bitPos, writer.bitPos()) << c.what;
		writer.complete(false);
		EXPECT_EQ(c.octets, toHex(out.str())) << c.what;
	}
}


TEST(BitStreamWriterTest, CompletePadsWithTheGivenBitAndContinuesOnANewOctet)
{
	auto bits101 = [](BitStreamWriter& w) { w.write(true); w.write(false); w.write(true); };
	EXPECT_EQ("A0", toHex(written(bits101, false)));
	EXPECT_EQ("BF", toHex(written(bits101, true)));

	std::ostringstream out;
	BitStreamWriter writer(out, false);
	writer.write(true);
	writer.complete(true);
	writer.complete(false); // nothing pending: only flushes
	writer.write(true);
	writer.complete();
	EXPECT_EQ("FF80", toHex(out.str()));
}


TEST(BitStreamWriterTest, DestructorPadsWithTheConstructorsBit)
{
	for (bool padding: {false, true})
	{
		std::ostringstream out;
		{
			BitStreamWriter writer(out, padding);
			writer.write(0x2u, 2);
			EXPECT_EQ("", out.str());
		}
		EXPECT_EQ(padding ? "BF" : "80", toHex(out.str()));
	}
}


TEST(BitStreamWriterTest, LongUnalignedStringsMatchTheBitwiseForm)
{
	const std::string octets = pattern(2000);
	for (int lead = 1; lead < 8; ++lead)
	{
		std::string expected = fromBits(std::string(lead, '1') + toBits(octets) + "1");
		std::string actual = written([&](BitStreamWriter& w) { w.writeBits(lead, true); w.write(octets); w.write(true); });
		EXPECT_TRUE(expected == actual) << "after " << lead << " bits";
	}
}


TEST(BitStreamWriterTest, FailedStreamThrowsIOException)
{
	const char* const message = "error while writing Fast Infoset document to stream";
	std::ostringstream out;
	out.setstate(std::ios::badbit);
	BitStreamWriter writer(out, false);

	writer.write(0x7Fu, 7); // still pending
	EXPECT_THROW_EXACT(writer.write(true), Korvo::IOException, message);
	EXPECT_THROW_EXACT(writer.write(std::string("x")), Korvo::IOException, message);
	EXPECT_THROW_EXACT(writer.complete(), Korvo::IOException, message);

	// The destructor swallows the same failure.
	BitStreamWriter* pWriter = new BitStreamWriter(out, true);
	pWriter->write(true);
	EXPECT_NO_THROW(delete pWriter);
}


TEST(BitStreamWriterTest, BitCountsOutsideTheWidthFailAssertions)
{
	std::ostringstream out;
	BitStreamWriter w(out, false);
	EXPECT_ASSERTION(w.write(static_cast<unsigned char>(1), 0), "checkInputParams(Utility::SIZEOFCHARINBIT, numOfBits)");
	EXPECT_ASSERTION(w.write(static_cast<signed char>(1), 9), "checkInputParams(Utility::SIZEOFCHARINBIT, numOfBits)");
	EXPECT_ASSERTION(w.write(static_cast<unsigned short>(1), 0), "checkInputParams(Utility::SIZEOFINT16INBIT, numOfBits)");
	EXPECT_ASSERTION(w.write(static_cast<short>(1), 17), "checkInputParams(Utility::SIZEOFINT16INBIT, numOfBits)");
	EXPECT_ASSERTION(w.write(1u, 0), "checkInputParams(Utility::SIZEOFINT32INBIT, numOfBits)");
	EXPECT_ASSERTION(w.write(1, 33), "checkInputParams(Utility::SIZEOFINT32INBIT, numOfBits)");
	EXPECT_ASSERTION(w.write(1ULL, -1), "checkInputParams(Utility::SIZEOFINT64INBIT, numOfBits)");
	EXPECT_ASSERTION(w.write(1LL, 65), "checkInputParams(Utility::SIZEOFINT64INBIT, numOfBits)");
	w.complete();
	EXPECT_EQ("", out.str());
}


//
// Reader
//


TEST(BitStreamReaderTest, ReadsFieldsRightAligned)
{
	const std::string data = fromHex("A5 F0");
	BitStreamReader reader(data.data(), static_cast<unsigned int>(data.size()));
	unsigned char first, second;
	EXPECT_TRUE(reader.read(first, 3));
	EXPECT_TRUE(reader.read(second, 7));
	EXPECT_EQ(5, first);
	EXPECT_EQ(0x17, second);
	EXPECT_EQ(2, reader.bitPos());
	EXPECT_EQ(6, reader.cachedBits());
}


TEST(BitStreamReaderTest, PeekDoesNotAdvance)
{
	std::istringstream in(fromHex("5A"));
	BitStreamReader reader(in);
	unsigned char a, b;
	char c;
	bool bit;
	EXPECT_TRUE(reader.read(bit));
	EXPECT_TRUE(reader.peek(a, 4));
	EXPECT_TRUE(reader.peek(b, 4));
	EXPECT_EQ(1, reader.bitPos());
	EXPECT_EQ(0xB, a);
	EXPECT_EQ(a, b);
	EXPECT_TRUE(reader.peek(c, 7));
	EXPECT_EQ(0x5A, c);
}


TEST(BitStreamReaderTest, RandomFieldsAndStringsRoundTripThroughStreamAndMemory)
{
	// Enough data for many refills, with strings and fields crossing them at every offset.
	const std::vector<Item> items = randomItems(20260101u, 3000);
	std::string expectedBits;
	for (const Item& item: items)
		expectedBits += item.width ? bin(item.value, item.width) : toBits(item.octets);

	const std::string data = written([&](BitStreamWriter& w) { for (const Item& item: items) writeItem(w, item); });
	ASSERT_TRUE(fromBits(expectedBits) == data);
	ASSERT_GT(data.size(), 20u*BitStreamReader::BUFFER_SIZE);

	std::istringstream in(data);
	BitStreamReader streamReader(in);
	BitStreamReader memoryReader(data.data(), static_cast<unsigned int>(data.size()));
	for (BitStreamReader* pReader: {&streamReader, &memoryReader})
	{
		for (std::size_t i = 0; i < items.size(); ++i) expectItem(*pReader, items[i], static_cast<int>(i));
		EXPECT_EQ(static_cast<int>(expectedBits.size() % 8), pReader->bitPos());
	}
}


TEST(BitStreamReaderTest, ReadCrossingARefillMidOctetKeepsItsBits)
{
	const std::string data = pattern(2*BitStreamReader::BUFFER_SIZE);
	std::istringstream in(data);
	BitStreamReader reader(in);
	std::string skipped;
	ASSERT_TRUE(reader.read(skipped, BitStreamReader::BUFFER_SIZE - 3));
	unsigned char lead;
	ASSERT_TRUE(reader.read(lead, 5));

	unsigned long long value;
	ASSERT_TRUE(reader.read(value, 64)); // 19 bits before the refill, 45 after
	std::string expected = toBits(data).substr((BitStreamReader::BUFFER_SIZE - 3)*8 + 5, 64);
	EXPECT_EQ(expected, bin(value, 64));

	std::string rest;
	ASSERT_TRUE(reader.read(rest, 1000)); // unaligned, across the next refill
	EXPECT_EQ(toBits(data).substr((BitStreamReader::BUFFER_SIZE - 3)*8 + 69, 8000), toBits(rest));
}


TEST(BitStreamReaderTest, AlignedStringReadCrossesSeveralRefills)
{
	const std::string data = pattern(3100);
	std::istringstream in(data);
	BitStreamReader reader(in);
	unsigned char first;
	ASSERT_TRUE(reader.read(first, 8));
	std::string str;
	EXPECT_TRUE(reader.read(str, 3000));
	EXPECT_TRUE(str == data.substr(1, 3000));
	EXPECT_TRUE(reader.read(str, 99));
	EXPECT_TRUE(str == data.substr(3001));
	EXPECT_TRUE(reader.read(str, 0));
	EXPECT_EQ("", str);
}


TEST(BitStreamReaderTest, StreamOfExactlyOneBufferEndsAfterItsLastBit)
{
	const std::string data(BitStreamReader::BUFFER_SIZE, '\x81');
	std::istringstream in(data);
	BitStreamReader reader(in);
	EXPECT_FALSE(reader.eof());
	bool bit = false;
	for (int i = 0; i < BitStreamReader::BUFFER_SIZE*8; ++i)
		ASSERT_TRUE(reader.read(bit)) << "bit " << i;
	EXPECT_TRUE(bit);
	EXPECT_FALSE(reader.eof()); // the consumed buffer still counts as data
	EXPECT_FALSE(reader.read(bit));
	EXPECT_TRUE(reader.eof());
}


TEST(BitStreamReaderTest, StreamEndingEarlyFailsReadsWithoutHandingOutOldBytes)
{
	// 0x0F then the end: wider reads than the remaining bits fail, narrower ones still succeed.
	std::istringstream in(fromHex("FF 0F"));
	BitStreamReader reader(in);
	unsigned char octet;
	ASSERT_TRUE(reader.read(octet, 8));
	unsigned short wide = 1;
	unsigned int wider = 1;
	unsigned long long widest = 1;
	EXPECT_FALSE(reader.read(wide, 9));
	EXPECT_EQ(0, wide);
	EXPECT_FALSE(reader.read(wider, 20));
	EXPECT_FALSE(reader.read(widest, 64));
	EXPECT_EQ(0, reader.bitPos());
	EXPECT_TRUE(reader.read(octet, 4));
	EXPECT_EQ(0, octet);
	EXPECT_FALSE(reader.peek(octet, 5));
	EXPECT_TRUE(reader.read(octet, 4));
	EXPECT_EQ(0xF, octet);
	bool bit;
	EXPECT_FALSE(reader.read(bit));
	EXPECT_TRUE(reader.eof());
}


TEST(BitStreamReaderTest, OctetStringsEndingEarly)
{
	const char* const message = "Unexpected end of stream while parsing octet string";
	std::string str;
	{
		std::istringstream in(pattern(2000));
		BitStreamReader reader(in);
		EXPECT_THROW_EXACT(reader.read(str, 2001), FISParseException, message);
	}
	{
		// A forged length of 4 GB must not reserve 4 GB.
		std::istringstream in(pattern(10));
		BitStreamReader reader(in);
		EXPECT_THROW_EXACT(reader.read(str, 0xFFFFFFFFu), FISParseException, message);
		EXPECT_LT(str.capacity(), 100000u);
	}
	{
		const std::string data = pattern(10);
		BitStreamReader reader(data.data(), 10);
		EXPECT_THROW_EXACT(reader.read(str, 11), FISParseException, message);
		EXPECT_LT(str.capacity(), 100000u);
	}
	{
		// Unaligned on a stream: the octets that exist, then false.
		std::istringstream in(fromHex("FF 41 42 43"));
		BitStreamReader reader(in);
		unsigned char lead;
		reader.read(lead, 4);
		EXPECT_FALSE(reader.read(str, 4));
		EXPECT_EQ("F41424", toHex(str));
	}
}


TEST(BitStreamReaderTest, SkipAndSkipToByteStart)
{
	const std::string data = pattern(3000);
	std::istringstream in(data);
	BitStreamReader reader(in);
	reader.skipToByteStart();
	EXPECT_EQ(0, reader.bitPos());
	reader.skip(3);
	reader.skipToByteStart();
	unsigned char octet;
	ASSERT_TRUE(reader.read(octet, 8));
	EXPECT_EQ(static_cast<unsigned char>(data[1]), octet);

	reader.skip(8*(BitStreamReader::BUFFER_SIZE - 2) + 3); // to bit 3 of octet 1024, across the refill
	ASSERT_TRUE(reader.read(octet, 8));
	EXPECT_EQ(bin(octet, 8), toBits(data).substr(8*1024 + 3, 8));

	reader.skip(8*5000); // beyond the end: stays at the end
	EXPECT_FALSE(reader.read(octet, 1));
	EXPECT_TRUE(reader.eof());
}


TEST(BitStreamReaderTest, MemoryReader)
{
	BitStreamReader empty(nullptr, 0);
	EXPECT_TRUE(empty.eof());

	const std::string data = fromHex("F0 0F");
	BitStreamReader reader(data.data(), 2);
	EXPECT_FALSE(reader.eof());
	reader.skip(12);
	unsigned char octet;
	EXPECT_TRUE(reader.read(octet, 4));
	EXPECT_EQ(0xF, octet);
	EXPECT_FALSE(reader.eof()); // a consumed block still counts as data

	// Asked for more than its block, a memory reader fails the assertion.
	EXPECT_ASSERTION(reader.read(octet, 1), "_pStream");
	EXPECT_ASSERTION(reader.skip(1), "_pStream");
	BitStreamReader unaligned(data.data(), 2);
	unaligned.skip(1);
	std::string str;
	EXPECT_ASSERTION(unaligned.read(str, 2), "_pStream");
}


TEST(BitStreamReaderTest, StreamErrorThrowsIOException)
{
	std::istream broken(nullptr);
	BitStreamReader reader(broken);
	bool bit;
	EXPECT_THROW_EXACT(reader.read(bit), Korvo::IOException, "error reading stream while parsing Fast Infoset document");
}


TEST(BitStreamReaderTest, BitCountsOutsideTheWidthFailAssertions)
{
	const std::string data(16, '\0');
	BitStreamReader r(data.data(), 16);
	unsigned char uc;
	char c;
	unsigned short us;
	short s;
	unsigned int ui;
	unsigned long long ull;
	EXPECT_ASSERTION(r.peek(uc, 0), "checkInputParams(Utility::SIZEOFCHARINBIT, numBits)");
	EXPECT_ASSERTION(r.peek(c, 9), "checkInputParams(Utility::SIZEOFCHARINBIT, numBits)");
	EXPECT_ASSERTION(r.read(uc, 9), "checkInputParams(Utility::SIZEOFCHARINBIT, numBits)");
	EXPECT_ASSERTION(r.read(c, 0), "checkInputParams(Utility::SIZEOFCHARINBIT, numBits)");
	EXPECT_ASSERTION(r.read(us, 17), "checkInputParams(Utility::SIZEOFINT16INBIT, numBits)");
	EXPECT_ASSERTION(r.read(s, 0), "checkInputParams(Utility::SIZEOFINT16INBIT, numBits)");
	EXPECT_ASSERTION(r.read(ui, 33), "checkInputParams(Utility::SIZEOFINT32INBIT, numBits)");
	EXPECT_ASSERTION(r.read(ull, 65), "checkInputParams(Utility::SIZEOFINT64INBIT, numBits)");
	EXPECT_EQ(128, r.cachedBits());
}
