//
// BitStreamTest.cpp
//
// BitStreamWriter and BitStreamReader: bit layouts, refills, end of data, misuse.
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


using namespace Korvo::FastInfoset;
using namespace Tests::Bits;


namespace {


std::string pattern(std::size_t size)
{
	std::string result(size, '\0');
	for (std::size_t i = 0; i < size; ++i) result[i] = static_cast<char>(i*7 + i/256);
	return result;
}


struct Item
	/// A field of 1 to 64 bits, or an octet string when width is 0.
{
	int width;
	unsigned long long value;
	std::string octets;
};


void write(BitStreamWriter& w, const Item& item)
{
	// Odd values take the signed overload of their width, even ones the unsigned.
	bool s = item.value & 1;
	if (item.width == 0) w.write(item.octets);
	else if (item.width == 1) w.write(item.value != 0);
	else if (item.width <= 8) s ? w.write(static_cast<signed char>(item.value), item.width) : w.write(static_cast<unsigned char>(item.value), item.width);
	else if (item.width <= 16) s ? w.write(static_cast<short>(item.value), item.width) : w.write(static_cast<unsigned short>(item.value), item.width);
	else if (item.width <= 32) s ? w.write(static_cast<int>(item.value), item.width) : w.write(static_cast<unsigned int>(item.value), item.width);
	else s ? w.write(static_cast<long long>(item.value), item.width) : w.write(static_cast<unsigned long long>(item.value), item.width);
}


template <class T>
unsigned long long readAs(BitStreamReader& r, int width)
{
	T v = 0;
	EXPECT_TRUE(r.read(v, width));
	return v;
}


unsigned long long read(BitStreamReader& r, const Item& item)
{
	if (item.width == 0)
	{
		std::string octets;
		EXPECT_TRUE(r.read(octets, static_cast<unsigned int>(item.octets.size())));
		EXPECT_TRUE(octets == item.octets);
		return item.value;
	}
	if (item.width == 1)
	{
		bool bit = false;
		EXPECT_TRUE(r.read(bit));
		return bit;
	}
	if (item.width <= 8) return readAs<unsigned char>(r, item.width);
	if (item.width <= 16) return readAs<unsigned short>(r, item.width);
	if (item.width <= 32) return readAs<unsigned int>(r, item.width);
	return readAs<unsigned long long>(r, item.width);
}


class NarrowBuffer: public std::streambuf
	/// A put area of 5 octets, emptied into data when full.
{
public:
	NarrowBuffer()
	{
		setp(_area, _area + sizeof(_area));
	}

	std::string data;

protected:
	int_type overflow(int_type c) override
	{
		sync();
		if (!traits_type::eq_int_type(c, traits_type::eof())) sputc(traits_type::to_char_type(c));
		return traits_type::not_eof(c);
	}

	int sync() override
	{
		data.append(pbase(), pptr());
		setp(_area, _area + sizeof(_area));
		return 0;
	}

private:
	char _area[5];
};


} // namespace


TEST(BitStreamWriterTest, EdgeCases)
{
	const struct
	{
		std::function<void(BitStreamWriter&)> writes;
		const char* octets; // completed with '0' bits
		int bitPos;
	}
	cases[] =
	{
		{[](BitStreamWriter& w) { for (int i = 0; i < 8; ++i) w.write(true); }, "FF", 0},
		{[](BitStreamWriter& w) { w.write(0x05u, 3); w.write(0x1Fu, 5); }, "BF", 0},
		{[](BitStreamWriter& w) { w.write(static_cast<unsigned char>(0xFA), 3); }, "40", 3},
		{[](BitStreamWriter& w) { w.write(static_cast<short>(0x1234), 16); }, "1234", 0},
		{[](BitStreamWriter& w) { w.write(true); w.write(static_cast<short>(0x1234), 16); }, "891A00", 1},
		{[](BitStreamWriter& w) { w.write(0x7Fu, 7); w.write(0x8000000000000001ULL, 64); }, "FF0000000000000002", 7},
		{[](BitStreamWriter& w) { w.writeBits(10, true); w.writeBits(-3, true); }, "FFC0", 2},
		{[](BitStreamWriter& w) { w.write(0x5u, 3); w.write("ab"); }, "AC2C40", 3},
		{[](BitStreamWriter& w) { w.write(std::string()); w.write(static_cast<const char*>(nullptr)); w.write("abc", 0u); }, "", 0},
		// A field and its string: joined when the field ends an octet, in turn otherwise.
		{[](BitStreamWriter& w) { w.write(true); w.write(Korvo::UInt64(0x1234), 15, "ab", 2); }, "92346162", 0},
		{[](BitStreamWriter& w) { w.write(Korvo::UInt64(0x5), 3, "ab", 2); }, "AC2C40", 3},
		{[](BitStreamWriter& w) { w.write(Korvo::UInt64(0x3), 2, nullptr, 4); }, "C0", 2},
	};
	for (const auto& c: cases)
	{
		std::ostringstream out;
		BitStreamWriter writer(out, true);
		c.writes(writer);
		EXPECT_EQ(c.bitPos, writer.bitPos()) << c.octets;
		writer.complete(false);
		EXPECT_EQ(c.octets, toHex(out.str()));
	}
	// Longer than a joined write takes.
	std::ostringstream out;
	BitStreamWriter writer(out, false);
	writer.write(Korvo::UInt64(0xC1), 8, std::string(65, 'a').c_str(), 65);
	EXPECT_EQ("\xC1" + std::string(65, 'a'), out.str());
}


TEST(BitStreamWriterTest, PaddingOfCompleteAndDestructor)
{
	for (bool padding: {false, true})
	{
		std::ostringstream out;
		{
			BitStreamWriter writer(out, !padding);
			writer.write(true);
			writer.write(false);
			writer.write(true);
			writer.complete(padding);
			writer.complete(!padding); // nothing pending: only flushes
			writer.write(true);
			EXPECT_EQ(1u, out.str().size());
		}
		// 101 + padding; 1 + the constructor's padding
		EXPECT_EQ(padding ? "BF80" : "A0FF", toHex(out.str()));
	}
}


TEST(BitStreamWriterTest, FailedStreamAndBadBitCounts)
{
	const char* const message = "error while writing Fast Infoset document to stream";
	std::ostringstream out;
	out.setstate(std::ios::badbit);
	BitStreamWriter* pWriter = new BitStreamWriter(out, false);
	pWriter->write(0x7Fu, 7);
	EXPECT_THROW_EXACT(pWriter->write(true), Korvo::IOException, message);
	EXPECT_THROW_EXACT(pWriter->write(std::string("x")), Korvo::IOException, message);
	EXPECT_THROW_EXACT(pWriter->complete(), Korvo::IOException, message);
	EXPECT_NO_THROW(delete pWriter);

	BitStreamWriter w(out, false);
	EXPECT_ASSERTION(w.write(static_cast<unsigned char>(1), 0), "checkInputParams(Utility::SIZEOFCHARINBIT, numOfBits)");
	EXPECT_ASSERTION(w.write(static_cast<signed char>(1), 9), "checkInputParams(Utility::SIZEOFCHARINBIT, numOfBits)");
	EXPECT_ASSERTION(w.write(static_cast<short>(1), 17), "checkInputParams(Utility::SIZEOFINT16INBIT, numOfBits)");
	EXPECT_ASSERTION(w.write(1u, 33), "checkInputParams(Utility::SIZEOFINT32INBIT, numOfBits)");
	EXPECT_ASSERTION(w.write(1LL, 65), "checkInputParams(Utility::SIZEOFINT64INBIT, numOfBits)");
	EXPECT_EQ(0, w.bitPos());
}


TEST(BitStreamTest, RandomFieldsAndStringsRoundTrip)
{
	// Every width at every bit position, strings aligned and not, over many refills.
	std::mt19937 random(20260101u);
	std::vector<Item> items(3000);
	std::string expectedBits;
	for (Item& item: items)
	{
		item.width = random() % 10 ? static_cast<int>(random() % 64) + 1 : 0;
		item.value = (static_cast<unsigned long long>(random()) << 32 | random()) >> (64 - std::max(item.width, 1));
		if (item.width == 0) item.octets = pattern(random() % 3000 + 1);
		expectedBits += item.width ? bin(item.value, item.width) : toBits(item.octets);
	}
	// Into a buffer with room, one whose put area takes 5 octets at a time,
	// and one over older content that the writer must leave past its octets.
	const std::string older((expectedBits.size() + 7)/8 + 100, '~');
	std::string data;
	for (int sink = 0; sink < 3; ++sink)
	{
		std::ostringstream out(sink == 2 ? older : std::string());
		NarrowBuffer narrow;
		std::ostream narrowOut(&narrow);
		{
			BitStreamWriter writer(sink == 1 ? narrowOut : out, false);
			for (const Item& item: items) write(writer, item);
		}
		data = sink == 1 ? narrow.data : out.str();
		if (sink == 2)
		{
			ASSERT_EQ(older.substr(data.size() - 100), data.substr(data.size() - 100)) << "octets past the end";
			data.resize(data.size() - 100);
		}
		ASSERT_TRUE(fromBits(expectedBits) == data) << "sink " << sink;
	}

	std::istringstream in(data);
	BitStreamReader streamReader(in);
	BitStreamReader memoryReader(data.data(), static_cast<unsigned int>(data.size()));
	for (BitStreamReader* pReader: {&streamReader, &memoryReader})
	{
		for (std::size_t i = 0; i < items.size(); ++i)
			ASSERT_EQ(items[i].value, read(*pReader, items[i])) << "item " << i << " of width " << items[i].width;
		EXPECT_EQ(static_cast<int>(expectedBits.size() % 8), pReader->bitPos());
	}
}


TEST(BitStreamReaderTest, PeekAndSkip)
{
	const std::string data = pattern(3000);
	std::istringstream in(fromHex("A5 F0") + data);
	BitStreamReader reader(in);
	unsigned char a, b;
	char c;
	EXPECT_TRUE(reader.read(a, 3));
	EXPECT_TRUE(reader.read(b, 7));
	EXPECT_EQ(5, a);
	EXPECT_EQ(0x17, b);
	EXPECT_TRUE(reader.peek(a, 4));
	EXPECT_TRUE(reader.peek(c, 6));
	EXPECT_EQ(0xC, a);
	EXPECT_EQ(0x30, c);
	EXPECT_EQ(2, reader.bitPos());
	unsigned int wide = 0;
	EXPECT_TRUE(reader.peek(wide, 30));   // 110000 and the first three octets of data
	EXPECT_EQ(toBits(fromHex("F0") + data).substr(2, 30), bin(wide, 30));
	EXPECT_EQ(2, reader.bitPos());

	reader.skipToByteStart();
	reader.skipToByteStart();
	EXPECT_EQ(0, reader.bitPos());
	reader.skip(8*1024 + 3); // across a refill
	EXPECT_TRUE(reader.read(a, 8));
	EXPECT_EQ(toBits(data).substr(8*1024 + 3, 8), bin(a, 8));

	reader.skip(8*5000); // beyond the end: stays there
	EXPECT_FALSE(reader.read(a, 1));
	EXPECT_TRUE(reader.eof());
}


TEST(BitStreamReaderTest, EndOfStream)
{
	// Exactly one buffer: the read after the last bit finds nothing and eof() turns true.
	std::istringstream full(std::string(BitStreamReader::BUFFER_SIZE, '\x81'));
	BitStreamReader reader(full);
	std::string str;
	ASSERT_TRUE(reader.read(str, BitStreamReader::BUFFER_SIZE - 1));
	bool bit = false;
	for (int i = 0; i < 8; ++i) ASSERT_TRUE(reader.read(bit));
	EXPECT_TRUE(bit);
	EXPECT_FALSE(reader.eof()); // consumed data still counts
	EXPECT_FALSE(reader.read(bit));
	EXPECT_TRUE(reader.eof());

	// Reads wider than the rest fail and consume nothing, never showing older buffer octets.
	std::istringstream shortIn(fromHex("0F"));
	BitStreamReader shortReader(shortIn);
	EXPECT_TRUE(shortReader.canRead(8));
	EXPECT_FALSE(shortReader.canRead(9));
	unsigned short wide = 1;
	unsigned long long widest = 1;
	unsigned char octet;
	EXPECT_FALSE(shortReader.read(wide, 9));
	EXPECT_FALSE(shortReader.read(widest, 64));
	EXPECT_EQ(0u, wide + widest);
	EXPECT_TRUE(shortReader.read(octet, 8));
	EXPECT_EQ(0x0F, octet);

	// Unaligned octet strings deliver what exists, then false.
	std::istringstream unaligned(fromHex("FF 41 42 43"));
	BitStreamReader unalignedReader(unaligned);
	unalignedReader.read(octet, 4);
	EXPECT_FALSE(unalignedReader.read(str, 4));
	EXPECT_EQ("F41424", toHex(str));
}


TEST(BitStreamReaderTest, AlignedOctetStringsEndingEarly)
{
	const char* const message = "Unexpected end of stream while parsing octet string";
	const std::string data = pattern(2000);
	std::istringstream in(data), small(data.substr(0, 10));
	BitStreamReader stream(in), smallStream(small);
	BitStreamReader memory(data.data(), 10);
	std::string str;
	EXPECT_THROW_EXACT(stream.read(str, 2001), FISParseException, message);
	// A forged length of 4 GB must not reserve 4 GB.
	for (BitStreamReader* pReader: {&smallStream, &memory})
	{
		EXPECT_THROW_EXACT(pReader->read(str, 0xFFFFFFFFu), FISParseException, message);
		EXPECT_LT(str.capacity(), 100000u);
	}
}


TEST(BitStreamReaderTest, MemoryReaderMisuseAndStreamErrors)
{
	BitStreamReader empty(nullptr, 0);
	EXPECT_TRUE(empty.eof());

	const std::string data = fromHex("F0 0F");
	BitStreamReader reader(data.data(), 2);
	unsigned char octet;
	reader.skip(12);
	EXPECT_TRUE(reader.read(octet, 4));
	EXPECT_FALSE(reader.eof());
	EXPECT_FALSE(reader.canRead(1)); // asks without failing
	EXPECT_ASSERTION(reader.read(octet, 1), "_pStream");
	EXPECT_ASSERTION(reader.skip(1), "_pStream");
	BitStreamReader unaligned(data.data(), 2);
	unaligned.skip(1);
	std::string str;
	EXPECT_ASSERTION(unaligned.read(str, 2), "_pStream");

	unsigned short s;
	unsigned int i;
	unsigned long long l;
	EXPECT_ASSERTION(unaligned.peek(octet, 0), "checkInputParams(Utility::SIZEOFCHARINBIT, numBits)");
	EXPECT_ASSERTION(unaligned.read(octet, 9), "checkInputParams(Utility::SIZEOFCHARINBIT, numBits)");
	EXPECT_ASSERTION(unaligned.read(s, 17), "checkInputParams(Utility::SIZEOFINT16INBIT, numBits)");
	EXPECT_ASSERTION(unaligned.read(i, 0), "checkInputParams(Utility::SIZEOFINT32INBIT, numBits)");
	EXPECT_ASSERTION(unaligned.peek(i, 33), "checkInputParams(Utility::SIZEOFINT32INBIT, numBits)");
	EXPECT_ASSERTION(unaligned.read(l, 65), "checkInputParams(Utility::SIZEOFINT64INBIT, numBits)");

	std::istream broken(nullptr);
	BitStreamReader brokenReader(broken);
	bool bit;
	EXPECT_THROW_EXACT(brokenReader.read(bit), Korvo::IOException, "error reading stream while parsing Fast Infoset document");
}
