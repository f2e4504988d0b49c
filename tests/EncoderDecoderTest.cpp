//
// EncoderDecoderTest.cpp
//
// The primitive wire forms: integers at every start position, string and
// sequence lengths, octet strings, name surrogates and additional data.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//

#include "Korvo/FastInfoset/Encoder.h"
#include "Korvo/FastInfoset/Decoder.h"
#include "Korvo/FastInfoset/FISException.h"
#include "support/BitTesting.h"
#include "support/ExceptionMatchers.h"
#include <gtest/gtest.h>
#include <functional>
#include <sstream>


using namespace Korvo::FastInfoset;
using namespace Tests::Bits;


namespace {


const unsigned int MAX = Encoder::MAXINT20;

typedef std::function<void(BitStreamWriter&, unsigned int)> WriteForm;
typedef std::function<unsigned int(BitStreamReader&)> ReadForm;


struct Form
{
	int position;       // bits before the form
	unsigned int value;
	std::string bits;   // the form itself
};


std::string writtenAfter(int position, const std::function<void(BitStreamWriter&)>& write)
	/// What a writer emits after position '1' bits; nothing may be written when write throws.
{
	std::ostringstream out;
	BitStreamWriter writer(out, false);
	writer.writeBits(position, true);
	try
	{
		write(writer);
	}
	catch (const FISException&)
	{
		EXPECT_EQ(position, writer.bitPos());
		writer.complete(false);
		EXPECT_EQ(fromBits(std::string(position, '1')), out.str()) << "partly written";
		throw;
	}
	writer.write(true); // marks the end of the form
	writer.complete(false);
	return toBits(out.str()).substr(position);
}


void checkForm(const Form& form, const WriteForm& write, const ReadForm& read, const char* endOfData)
	/// Exact bits written; read back from a stream and a memory block; and
	/// without its last octet, when the form goes beyond the first.
{
	SCOPED_TRACE(std::to_string(form.value) + " at " + std::to_string(form.position));
	std::string bits = writtenAfter(form.position, [&](BitStreamWriter& w) { write(w, form.value); });
	EXPECT_EQ(form.bits + "1", bits.substr(0, form.bits.size() + 1));

	const std::string data = fromBits(std::string(form.position, '1') + form.bits);
	std::istringstream in(data);
	BitStreamReader stream(in);
	BitStreamReader memory(data.data(), static_cast<unsigned int>(data.size()));
	for (BitStreamReader* pReader: {&stream, &memory})
	{
		pReader->skip(form.position);
		EXPECT_EQ(form.value, read(*pReader));
		EXPECT_EQ(static_cast<int>(form.position + form.bits.size()) % 8, pReader->bitPos());
	}
	if (data.size() < 2) return;
	std::istringstream truncated(data.substr(0, data.size() - 1));
	BitStreamReader truncatedReader(truncated);
	truncatedReader.skip(form.position);
	EXPECT_THROW_EXACT(read(truncatedReader), FISParseException, endOfData);
}


unsigned int readInteger(BitStreamReader& r)
{
	unsigned int value = 12345;
	Decoder::integer(r, value);
	return value;
}


unsigned int readStringLength(BitStreamReader& r)
{
	unsigned int value = 0;
	Decoder::nonEmptyStringLength(r, value);
	return value;
}


BitStreamReader& at(BitStreamReader& reader, int position)
{
	reader.skip(position);
	return reader;
}


const std::string ZEROS = fromHex("00000000 00000000");


} // namespace


TEST(EncoderDecoderTest, IntegerForms)
{
	const Form forms[] =
	{
		{1, 0, "1111111"}, {1, 1, "0" + bin(0, 6)}, {1, 64, "0" + bin(63, 6)},
		{1, 65, "10" + bin(0, 13)}, {1, 8256, "10" + bin(8191, 13)},
		{1, 8257, "110" + bin(0, 20)}, {1, MAX, "110" + bin(0xFDFBF, 20)},
		{2, 1, "0" + bin(0, 5)}, {2, 32, "0" + bin(31, 5)},
		{2, 33, "100" + bin(0, 11)}, {2, 2080, "100" + bin(2047, 11)},
		{2, 2081, "101" + bin(0, 19)}, {2, 526368, "101" + bin(524287, 19)},
		{2, 526369, "1100000000" + bin(0, 20)}, {2, MAX, "1100000000" + bin(MAX - 526369, 20)},
		{3, 1, "0" + bin(0, 4)}, {3, 16, "0" + bin(15, 4)},
		{3, 17, "100" + bin(0, 10)}, {3, 1040, "100" + bin(1023, 10)},
		{3, 1041, "101" + bin(0, 18)}, {3, 263184, "101" + bin(262143, 18)},
		{3, 263185, "110000000" + bin(0, 20)}, {3, MAX, "110000000" + bin(MAX - 263185, 20)},
		{4, 1, bin(0, 8)}, {4, 256, bin(255, 8)}, {6, 1, bin(0, 8)}, {6, 256, bin(255, 8)},
	};
	for (const Form& form: forms)
		checkForm(form, &Encoder::integer, readInteger, "Unexpected end of stream while reading integer");

	// Padded with one '0' bit: one field at an octet boundary, else '0' and the form that follows.
	const Form padded[] =
	{
		{0, 0, "01111111"}, {0, 64, "00111111"}, {0, 65, "010" + bin(0, 13)},
		{0, 8257, "0110" + bin(0, 20)}, {0, MAX, "0110" + bin(0xFDFBF, 20)},
		{1, 33, "0100" + bin(0, 11)}, {3, 256, "0" + bin(255, 8)},
	};
	for (const Form& form: padded)
		checkForm(form, &Encoder::pad0ThenInteger, [](BitStreamReader& r) { r.skip(1); return readInteger(r); }, "Unexpected end of stream while reading integer");
}


TEST(EncoderDecoderTest, IntegersWithoutAForm)
{
	const std::string zero = "Value zero must start on the second bit of a byte";
	const std::string position0 = "Illegal bit position 0: Integers can never start there";
	const std::string over256 = "Illegal bit position: Only Integers <= 256 can start at pos 4 or 6.";
	const std::string position5or7 = "Illegal bit position: No Integers are allowed to be written to pos 5 or 7.";
	const struct
	{
		int position;
		unsigned int value;
		std::string message;
	}
	cases[] =
	{
		{0, 1, position0}, {0, 0, zero}, {2, 0, zero}, {6, 0, zero}, {7, 0, zero},
		{4, 257, over256}, {6, MAX, over256}, {5, 1, position5or7}, {7, 1, position5or7},
	};
	for (const auto& c: cases)
		EXPECT_THROW_EXACT(writtenAfter(c.position, [&](BitStreamWriter& w) { Encoder::integer(w, c.value); }), FISEncodingException, c.message);
	for (int position = 0; position < 8; ++position)
		EXPECT_THROW_EXACT(writtenAfter(position, [](BitStreamWriter& w) { Encoder::integer(w, MAX + 1); }),
			FISEncodingException, "Cannot encode integer value: too large, must be smaller than 2^20");

	// The pad bit is not written either when the integer that follows it cannot be.
	EXPECT_THROW_EXACT(writtenAfter(3, [](BitStreamWriter& w) { Encoder::pad0ThenInteger(w, 257); }), FISEncodingException, over256);
	EXPECT_THROW_EXACT(writtenAfter(4, [](BitStreamWriter& w) { Encoder::pad0ThenInteger(w, 1); }), FISEncodingException, position5or7);
	EXPECT_THROW_EXACT(writtenAfter(7, [](BitStreamWriter& w) { Encoder::pad0ThenInteger(w, 1); }), FISEncodingException, position0);
	EXPECT_ASSERTION(writtenAfter(0, [](BitStreamWriter& w) { Encoder::pad0ThenInteger(w, MAX + 1); }), "val <= MAXINT20");

	for (int position: {0, 5, 7})
	{
		BitStreamReader reader(ZEROS.data(), 8);
		EXPECT_THROW_EXACT(readInteger(at(reader, position)), FISEncodingException, position == 0 ? position0 :
			"Illegal bit position: No Integers are allowed to be read from pos 5 or 7.");
	}

	// Fields the writer never produces: values beyond 2^20, a bad prefix.
	const struct
	{
		int position;
		std::string bits;
		const char* assertion;
	}
	fields[] =
	{
		{1, "1101111" + bin(0xFFFF, 16), "val <= Encoder::MAXINT20"},
		{2, "110001" + bin(0, 24), "val == 48"},
		{2, "1100000000" + bin(0xFFFFF, 20), "val <= Encoder::MAXINT20"},
		{3, "110000000" + bin(0xFFFFF, 20), "val <= Encoder::MAXINT20"},
	};
	for (const auto& f: fields)
	{
		const std::string data = fromBits(std::string(f.position, '0') + f.bits);
		BitStreamReader reader(data.data(), static_cast<unsigned int>(data.size()));
		EXPECT_ASSERTION(readInteger(at(reader, f.position)), f.assertion);
	}
}


TEST(EncoderDecoderTest, NonEmptyStringLengths)
{
	const Form forms[] =
	{
		{1, 1, bin(0, 7)}, {1, 64, bin(63, 7)}, {1, 65, "1000000" + bin(0, 8)}, {1, 320, "1000000" + bin(255, 8)},
		{1, 321, "1100000" + bin(0, 32)}, {1, 0xFFFFFFFF, "1100000" + bin(0xFFFFFFFF - 321, 32)},
		{4, 1, bin(0, 4)}, {4, 8, bin(7, 4)}, {4, 9, "1000" + bin(0, 8)}, {4, 264, "1000" + bin(255, 8)}, {4, 265, "1100" + bin(0, 32)},
		{6, 1, "00"}, {6, 2, "01"}, {6, 3, "10" + bin(0, 8)}, {6, 258, "10" + bin(255, 8)}, {6, 259, "11" + bin(0, 32)},
	};
	for (const Form& form: forms)
		checkForm(form, &Encoder::nonEmptyStringLength, readStringLength, "Unexpected end of stream while parsing string length");

	// Any prefix above the 8-bit one announces 32 bits; a sum beyond 32 bits is refused.
	const Form read[] =
	{
		{1, 326, "1111111" + bin(5, 32)}, {4, 270, "1111" + bin(5, 32)},
		{1, 0, "1100000" + bin(0xFFFFFFFF, 32)}, {4, 0, "1100" + bin(0xFFFFFFFF - 264, 32)}, {6, 0, "11" + bin(0xFFFFFFFF - 258, 32)},
	};
	for (const Form& form: read)
	{
		const std::string data = fromBits(std::string(form.position, '0') + form.bits);
		BitStreamReader reader(data.data(), static_cast<unsigned int>(data.size()));
		if (form.value)
			EXPECT_EQ(form.value, readStringLength(at(reader, form.position)));
		else
			EXPECT_THROW_EXACT(readStringLength(at(reader, form.position)), FISParseException, "Octet string length exceeds 2^32 - 1");
	}

	const char* const illegal = "illegal position for nonEmptyOctetString encoding";
	for (int position: {0, 2, 3, 5, 7})
	{
		EXPECT_THROW_EXACT(writtenAfter(position, [](BitStreamWriter& w) { Encoder::nonEmptyOctetString(w, "x"); }), FISEncodingException, illegal);
		BitStreamReader reader(ZEROS.data(), 8);
		EXPECT_THROW_EXACT(readStringLength(at(reader, position)), FISEncodingException, illegal);
	}
	EXPECT_ASSERTION(writtenAfter(1, [](BitStreamWriter& w) { Encoder::nonEmptyStringLength(w, 0); }), "strLen > 0");
}


TEST(EncoderDecoderTest, NonEmptyOctetStrings)
{
	// '0' + length 3, "abc"
	EXPECT_EQ(toBits(fromHex("02 616263")), "0" + writtenAfter(1, [](BitStreamWriter& w) { Encoder::nonEmptyOctetString(w, "abc"); }).substr(0, 31));
	EXPECT_THROW_EXACT(writtenAfter(1, [](BitStreamWriter& w) { Encoder::nonEmptyOctetString(w, ""); }),
		FISEncodingException, "Encoder::nonEmptyOctetString cannot encode empty strings");

	for (int position: {1, 4, 6})
	{
		for (unsigned int size: {1u, 9u, 259u, 321u, 5000u})
		{
			const std::string value(size, static_cast<char>('a' + size % 26));
			std::ostringstream out;
			{
				BitStreamWriter writer(out, false);
				writer.writeBits(position, true);
				Encoder::nonEmptyOctetString(writer, value);
			}
			std::istringstream in(out.str()), truncated(out.str().substr(0, out.str().size() - 1));
			BitStreamReader reader(in), truncatedReader(truncated);
			std::string read;
			Decoder::nonEmptyOctetString(at(reader, position), read);
			EXPECT_TRUE(read == value) << size << " octets at " << position;
			EXPECT_THROW_EXACT(Decoder::nonEmptyOctetString(at(truncatedReader, position), read), FISParseException,
				"Unexpected end of stream while parsing octet string");
		}
	}
}


TEST(EncoderDecoderTest, LengthOfSequence)
{
	// 129 and up as this library writes them: the first bit stays 0.
	const struct { unsigned int length; const char* octets; } written[] =
		{{1, "00"}, {128, "7F"}, {129, "080000"}, {MAX, "17FF7F"}};
	for (const auto& c: written)
	{
		std::string bits = writtenAfter(0, [&](BitStreamWriter& w) { Encoder::lengthOfSequence(w, c.length); });
		EXPECT_EQ(c.octets, toHex(fromBits(bits.substr(0, bits.size() - 8))));
	}

	const struct { const char* octets; unsigned int length; } read[] =
		{{"00", 1}, {"7F", 128}, {"080000", 9}, {"800000", 129}, {"F00000", 129}, {"8FFFFF", 0xFFFFF + 129}};
	for (const auto& c: read)
	{
		const std::string data = fromHex(c.octets);
		BitStreamReader reader(data.data(), static_cast<unsigned int>(data.size()));
		unsigned int length = 0;
		Decoder::lengthOfSequence(reader, length);
		EXPECT_EQ(c.length, length) << c.octets;
	}

	unsigned int length;
	const char* const illegalStart = "Illegal startposition for a lengthOfSequence value";
	for (int position = 1; position < 8; ++position)
	{
		EXPECT_THROW_EXACT(writtenAfter(position, [](BitStreamWriter& w) { Encoder::lengthOfSequence(w, 1); }), FISEncodingException, illegalStart);
		BitStreamReader reader(ZEROS.data(), 8);
		EXPECT_THROW_EXACT(Decoder::lengthOfSequence(at(reader, position), length), FISEncodingException, illegalStart);
	}
	EXPECT_THROW_EXACT(writtenAfter(0, [](BitStreamWriter& w) { Encoder::lengthOfSequence(w, 0); }),
		FISEncodingException, "Illegal value zero for lengthOfSequence");
	EXPECT_THROW_EXACT(writtenAfter(0, [](BitStreamWriter& w) { Encoder::lengthOfSequence(w, MAX + 1); }),
		FISEncodingException, "Illegal value for lengthOfSequence: larger than 2^20");
	for (const char* octets: {"", "80 00"})
	{
		std::istringstream in(fromHex(octets));
		BitStreamReader reader(in);
		EXPECT_THROW_EXACT(Decoder::lengthOfSequence(reader, length), FISParseException, "Unexpected end of stream while parsing sequence length");
	}
}


TEST(EncoderDecoderTest, NameSurrogatesAndAdditionalData)
{
	const unsigned int ABSENT = 0xFFFFFFFF;
	const struct { std::string bits; QualifiedNameEntry name; } surrogates[] =
	{
		// after six padding bits: two flags, then per index '0' and the integer form of position 1
		{"00" "0" "0" + bin(4, 6), QualifiedNameEntry(ABSENT, ABSENT, 5)},
		{"11" "0" "0" + bin(0, 6) + "0" "10" + bin(0, 13) + "0" "110" + bin(0, 20), QualifiedNameEntry(1, 65, 8257)},
		{"10" "0" "0" + bin(1, 6) + "0" "1111111", QualifiedNameEntry(2, ABSENT, 0)},
		{"01" "0" "0" + bin(6, 6) + "0" "0" + bin(0, 6), QualifiedNameEntry(ABSENT, 7, 1)},
	};
	for (const auto& c: surrogates)
	{
		const std::string data = fromBits("000000" + c.bits);
		std::istringstream in(data), truncated(data.substr(0, data.size() - 1));
		BitStreamReader reader(in), truncatedReader(truncated);
		EXPECT_TRUE(c.name == Decoder::nameSurrogate(at(reader, 6))) << c.bits;
		EXPECT_EQ(0, reader.bitPos());
		EXPECT_THROW_EXACT(Decoder::nameSurrogate(at(truncatedReader, 6)), FISParseException, "Unexpected end of stream while reading integer");
	}
	for (int position: {0, 1, 5, 7})
	{
		BitStreamReader reader(ZEROS.data(), 8);
		EXPECT_THROW_EXACT(Decoder::nameSurrogate(at(reader, position)), FISEncodingException, "Illegal startposition for a nameSurrogate value");
	}

	// Two entries of identifier "id" and data "data", then the octet AB.
	const std::string data = fromHex("01 01 6964 03 64617461 01 6964 03 64617461 AB");
	BitStreamReader reader(data.data(), static_cast<unsigned int>(data.size()));
	Decoder::skipAdditionalData(reader);
	unsigned char next;
	ASSERT_TRUE(reader.read(next, 8));
	EXPECT_EQ(0xAB, next);
	for (std::size_t size: {1, 4, 14})
	{
		std::istringstream in(data.substr(0, size));
		BitStreamReader truncated(in);
		EXPECT_THROW(Decoder::skipAdditionalData(truncated), FISParseException) << size;
	}
}
