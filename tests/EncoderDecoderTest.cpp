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


struct Form
{
	int position;
	unsigned int value;
	std::string bits; // the form's own bits, after `position` leading bits
};


std::string writtenBits(int position, const std::function<void(BitStreamWriter&)>& write, int& endPos)
	/// The bits a writer emits after `position` leading '1' bits, with '0' padding at the end.
{
	std::ostringstream out;
	BitStreamWriter writer(out, false);
	writer.writeBits(position, true);
	write(writer);
	endPos = writer.bitPos();
	writer.complete(false);
	return toBits(out.str()).substr(position);
}


void expectWritten(const Form& form, const std::function<void(BitStreamWriter&)>& write, const char* what)
{
	int endPos;
	std::string bits = writtenBits(form.position, write, endPos);
	EXPECT_EQ(form.bits, bits.substr(0, form.bits.size())) << what << " " << form.value << " at " << form.position;
	EXPECT_EQ(static_cast<int>(form.position + form.bits.size()) % 8, endPos) << what << " " << form.value << " at " << form.position;
}


std::string document(const Form& form)
	/// The form behind `position` leading '1' bits, padded to an octet.
{
	return fromBits(std::string(form.position, '1') + form.bits);
}


void expectNothingWritten(int position, const std::function<void(BitStreamWriter&)>& write)
{
	std::ostringstream out;
	BitStreamWriter writer(out, false);
	writer.writeBits(position, true);
	try
	{
		write(writer);
	}
	catch (...)
	{
		EXPECT_EQ(position, writer.bitPos());
		writer.complete(false);
		EXPECT_EQ(fromBits(std::string(position, '1')), out.str());
		throw;
	}
}


const Form INTEGER_FORMS[] =
{
	{1, 0, "1111111"},
	{1, 1, "0" + bin(0, 6)},
	{1, 64, "0" + bin(63, 6)},
	{1, 65, "10" + bin(0, 13)},
	{1, 8256, "10" + bin(8191, 13)},
	{1, 8257, "110" + bin(0, 20)},
	{1, MAX, "110" + bin(0xFDFBF, 20)},
	{2, 1, "0" + bin(0, 5)},
	{2, 32, "0" + bin(31, 5)},
	{2, 33, "100" + bin(0, 11)},
	{2, 2080, "100" + bin(2047, 11)},
	{2, 2081, "101" + bin(0, 19)},
	{2, 526368, "101" + bin(524287, 19)},
	{2, 526369, "110" "0000000" + bin(0, 20)},
	{2, MAX, "110" "0000000" + bin(MAX - 526369, 20)},
	{3, 1, "0" + bin(0, 4)},
	{3, 16, "0" + bin(15, 4)},
	{3, 17, "100" + bin(0, 10)},
	{3, 1040, "100" + bin(1023, 10)},
	{3, 1041, "101" + bin(0, 18)},
	{3, 263184, "101" + bin(262143, 18)},
	{3, 263185, "110" "000000" + bin(0, 20)},
	{3, MAX, "110" "000000" + bin(MAX - 263185, 20)},
	{4, 1, bin(0, 8)},
	{4, 256, bin(255, 8)},
	{6, 1, bin(0, 8)},
	{6, 256, bin(255, 8)},
};


unsigned int decodedInteger(BitStreamReader& reader, int position)
{
	reader.skip(position);
	unsigned int value = 12345;
	Decoder::integer(reader, value);
	return value;
}


} // namespace


TEST(EncoderDecoderTest, IntegerFormsAtEveryPosition)
{
	for (const Form& form: INTEGER_FORMS)
	{
		expectWritten(form, [&](BitStreamWriter& w) { Encoder::integer(w, form.value); }, "integer");

		const std::string data = document(form);
		std::istringstream in(data);
		BitStreamReader streamReader(in);
		BitStreamReader memoryReader(data.data(), static_cast<unsigned int>(data.size()));
		for (BitStreamReader* pReader: {&streamReader, &memoryReader})
		{
			EXPECT_EQ(form.value, decodedInteger(*pReader, form.position)) << "at " << form.position;
			EXPECT_EQ(static_cast<int>(form.position + form.bits.size()) % 8, pReader->bitPos()) << form.value;
		}
	}
}


TEST(EncoderDecoderTest, IntegersWithoutAFormAreRefusedBeforeAnyBitIsWritten)
{
	const std::string tooLarge = "Cannot encode integer value: too large, must be smaller than 2^20";
	const std::string zero = "Value zero must start on the second bit of a byte";
	const std::string position0 = "Illegal bit position 0: Integers can never start there";
	const std::string over256 = "Illegal bit position: Only Integers <= 256 can start at pos 4 or 6.";
	const std::string position5or7 = "Illegal bit position: No Integers are allowed to be written to pos 5 or 7.";
	struct Case
	{
		int position;
		unsigned int value;
		std::string message;
	};
	std::vector<Case> cases =
	{
		{0, 1, position0}, {0, 0, zero}, {2, 0, zero}, {3, 0, zero}, {4, 0, zero}, {6, 0, zero},
		{4, 257, over256}, {6, 257, over256}, {4, MAX, over256},
		{5, 1, position5or7}, {7, 1, position5or7}, {5, 0, zero}, {7, 0, zero},
	};
	for (int position = 0; position < 8; ++position) cases.push_back({position, MAX + 1, tooLarge});

	for (const Case& c: cases)
	{
		SCOPED_TRACE("value " + std::to_string(c.value) + " at " + std::to_string(c.position));
		EXPECT_THROW_EXACT(expectNothingWritten(c.position, [&](BitStreamWriter& w) { Encoder::integer(w, c.value); }),
			FISEncodingException, c.message);
	}
}


TEST(EncoderDecoderTest, IntegersReadWhereNoFormStartsOrPastTheEnd)
{
	const std::string data = fromHex("00 00 00 00");
	for (int position: {0, 5, 7})
	{
		BitStreamReader reader(data.data(), 4);
		EXPECT_THROW_EXACT(decodedInteger(reader, position), FISEncodingException, position == 0
			? "Illegal bit position 0: Integers can never start there"
			: "Illegal bit position: No Integers are allowed to be read from pos 5 or 7.");
	}

	// Every form that reaches into a further octet, without its last octet.
	for (const Form& form: INTEGER_FORMS)
	{
		std::string truncated = document(form);
		truncated.pop_back();
		if (truncated.empty()) continue;
		std::istringstream in(truncated);
		BitStreamReader reader(in);
		EXPECT_THROW_EXACT(decodedInteger(reader, form.position), FISParseException, "Unexpected end of stream while reading integer");
	}
}


TEST(EncoderDecoderTest, IntegerFieldsBeyond2To20FailAssertions)
{
	const struct
	{
		int position;
		std::string bits;
		const char* assertion;
	}
	cases[] =
	{
		{1, "1101111" + bin(0xFFFF, 16), "val <= Encoder::MAXINT20"},
		{2, "110001" + bin(0, 24), "val == 48"},
		{2, "110000" "0000" + bin(0xFFFFF, 20), "val <= Encoder::MAXINT20"},
		{3, "11000" "0000" + bin(0xFFFFF, 20), "val <= Encoder::MAXINT20"},
	};
	for (const auto& c: cases)
	{
		const std::string data = fromBits(std::string(c.position, '0') + c.bits);
		BitStreamReader reader(data.data(), static_cast<unsigned int>(data.size()));
		EXPECT_ASSERTION(decodedInteger(reader, c.position), c.assertion);
	}
}


TEST(EncoderDecoderTest, Pad0ThenInteger)
{
	const Form forms[] =
	{
		{0, 0, "01111111"},
		{0, 1, "00000000"},
		{0, 64, "00111111"},
		{0, 65, "010" + bin(0, 13)},
		{0, 8256, "010" + bin(8191, 13)},
		{0, 8257, "0110" + bin(0, 20)},
		{0, MAX, "0110" + bin(0xFDFBF, 20)},
		{1, 33, "0" "100" + bin(0, 11)},
		{2, 17, "0" "100" + bin(0, 10)},
		{3, 256, "0" + bin(255, 8)},
		{5, 256, "0" + bin(255, 8)},
	};
	for (const Form& form: forms)
	{
		expectWritten(form, [&](BitStreamWriter& w) { Encoder::pad0ThenInteger(w, form.value); }, "pad0ThenInteger");
		const std::string data = document(form);
		BitStreamReader reader(data.data(), static_cast<unsigned int>(data.size()));
		EXPECT_EQ(form.value, decodedInteger(reader, form.position + 1));
	}

	EXPECT_THROW_EXACT(expectNothingWritten(3, [](BitStreamWriter& w) { Encoder::pad0ThenInteger(w, 257); }),
		FISEncodingException, "Illegal bit position: Only Integers <= 256 can start at pos 4 or 6.");
	EXPECT_THROW_EXACT(expectNothingWritten(4, [](BitStreamWriter& w) { Encoder::pad0ThenInteger(w, 1); }),
		FISEncodingException, "Illegal bit position: No Integers are allowed to be written to pos 5 or 7.");
	EXPECT_THROW_EXACT(expectNothingWritten(7, [](BitStreamWriter& w) { Encoder::pad0ThenInteger(w, 1); }),
		FISEncodingException, "Illegal bit position 0: Integers can never start there");
	EXPECT_THROW_EXACT(expectNothingWritten(1, [](BitStreamWriter& w) { Encoder::pad0ThenInteger(w, MAX + 1); }),
		FISEncodingException, "Cannot encode integer value: too large, must be smaller than 2^20");
	std::ostringstream out;
	BitStreamWriter writer(out, false);
	EXPECT_ASSERTION(Encoder::pad0ThenInteger(writer, MAX + 1), "val <= MAXINT20");
}


TEST(EncoderDecoderTest, NonEmptyStringLengthForms)
{
	const Form forms[] =
	{
		{1, 1, bin(0, 7)},
		{1, 64, bin(63, 7)},
		{1, 65, "1000000" + bin(0, 8)},
		{1, 320, "1000000" + bin(255, 8)},
		{1, 321, "1100000" + bin(0, 32)},
		{1, 0xFFFFFFFF, "1100000" + bin(0xFFFFFFFF - 321, 32)},
		{4, 1, bin(0, 4)},
		{4, 8, bin(7, 4)},
		{4, 9, "1000" + bin(0, 8)},
		{4, 264, "1000" + bin(255, 8)},
		{4, 265, "1100" + bin(0, 32)},
		{6, 1, "00"},
		{6, 2, "01"},
		{6, 3, "10" + bin(0, 8)},
		{6, 258, "10" + bin(255, 8)},
		{6, 259, "11" + bin(0, 32)},
	};
	for (const Form& form: forms)
	{
		expectWritten(form, [&](BitStreamWriter& w) { Encoder::nonEmptyStringLength(w, form.value); }, "length");
		const std::string data = document(form);
		std::istringstream in(data);
		BitStreamReader reader(in);
		reader.skip(form.position);
		unsigned int length = 0;
		Decoder::nonEmptyStringLength(reader, length);
		EXPECT_EQ(form.value, length);
		EXPECT_EQ(0, reader.bitPos());

		if (data.size() == 1) continue;
		std::string truncated = data;
		truncated.pop_back();
		std::istringstream truncatedIn(truncated);
		BitStreamReader truncatedReader(truncatedIn);
		truncatedReader.skip(form.position);
		EXPECT_THROW_EXACT(Decoder::nonEmptyStringLength(truncatedReader, length), FISParseException,
			"Unexpected end of stream while parsing string length");
	}
}


TEST(EncoderDecoderTest, NonEmptyStringLengthReaderExtremes)
{
	const Form forms[] =
	{
		{1, 321 + 5, "1111111" + bin(5, 32)}, // any prefix above 64 announces 32 bits
		{4, 265 + 5, "1111" + bin(5, 32)},
		{1, 0, "1100000" + bin(0xFFFFFFFF, 32)}, // would pass 2^32
		{4, 0, "1100" + bin(0xFFFFFFFF - 264, 32)},
		{6, 0, "11" + bin(0xFFFFFFFF - 258, 32)},
	};
	for (const Form& form: forms)
	{
		const std::string data = document(form);
		BitStreamReader reader(data.data(), static_cast<unsigned int>(data.size()));
		reader.skip(form.position);
		unsigned int length = 0;
		if (form.value)
		{
			Decoder::nonEmptyStringLength(reader, length);
			EXPECT_EQ(form.value, length);
		}
		else
			EXPECT_THROW_EXACT(Decoder::nonEmptyStringLength(reader, length), FISParseException, "Octet string length exceeds 2^32 - 1");
	}
}


TEST(EncoderDecoderTest, StringLengthsAtIllegalPositions)
{
	const std::string data = fromHex("00 00 00 00 00 00");
	for (int position: {0, 2, 3, 5, 7})
	{
		EXPECT_THROW_EXACT(expectNothingWritten(position, [](BitStreamWriter& w) { Encoder::nonEmptyStringLength(w, 1); }),
			FISEncodingException, "illegal position for nonEmptyOctetString encoding");
		EXPECT_THROW_EXACT(expectNothingWritten(position, [](BitStreamWriter& w) { Encoder::nonEmptyOctetString(w, "x"); }),
			FISEncodingException, "illegal position for nonEmptyOctetString encoding");

		BitStreamReader reader(data.data(), 6);
		reader.skip(position);
		unsigned int length;
		EXPECT_THROW_EXACT(Decoder::nonEmptyStringLength(reader, length), FISEncodingException, "illegal position for nonEmptyOctetString encoding");
	}
	std::ostringstream out;
	BitStreamWriter writer(out, false);
	writer.write(false);
	EXPECT_ASSERTION(Encoder::nonEmptyStringLength(writer, 0), "strLen > 0");
}


TEST(EncoderDecoderTest, NonEmptyOctetStrings)
{
	int endPos;
	EXPECT_EQ(toBits(fromHex("02 616263")), "0" + writtenBits(1, [](BitStreamWriter& w) { Encoder::nonEmptyOctetString(w, "abc"); }, endPos));

	for (int position: {1, 4, 6})
	{
		for (unsigned int size: {1u, 2u, 3u, 8u, 9u, 64u, 65u, 258u, 259u, 264u, 265u, 320u, 321u, 5000u})
		{
			std::string value;
			for (unsigned int i = 0; i < size; ++i) value += static_cast<char>('a' + i % 26);

			std::ostringstream out;
			{
				BitStreamWriter writer(out, false);
				writer.writeBits(position, true);
				Encoder::nonEmptyOctetString(writer, value);
				EXPECT_EQ(0, writer.bitPos());
			}
			std::istringstream in(out.str());
			BitStreamReader reader(in);
			reader.skip(position);
			std::string read;
			Decoder::nonEmptyOctetString(reader, read);
			EXPECT_TRUE(read == value) << size << " octets at " << position;

			std::string truncated = out.str();
			truncated.pop_back();
			std::istringstream truncatedIn(truncated);
			BitStreamReader truncatedReader(truncatedIn);
			truncatedReader.skip(position);
			EXPECT_THROW_EXACT(Decoder::nonEmptyOctetString(truncatedReader, read), FISParseException,
				"Unexpected end of stream while parsing octet string");
		}
	}

	std::ostringstream out;
	BitStreamWriter writer(out, false);
	writer.write(false);
	EXPECT_THROW_EXACT(Encoder::nonEmptyOctetString(writer, ""), FISEncodingException, "Encoder::nonEmptyOctetString cannot encode empty strings");
}


TEST(EncoderDecoderTest, LengthOfSequence)
{
	const struct
	{
		unsigned int length;
		const char* octets;
	}
	written[] =
	{
		{1, "00"},
		{128, "7F"},
		{129, "080000"},     // the long form as this library writes it (first bit 0)
		{MAX, "17FF7F"},
	};
	for (const auto& c: written)
	{
		std::ostringstream out;
		BitStreamWriter writer(out, false);
		Encoder::lengthOfSequence(writer, c.length);
		EXPECT_EQ(c.octets, toHex(out.str())) << c.length;
	}

	const struct
	{
		const char* octets;
		unsigned int length;
	}
	read[] =
	{
		{"00", 1},
		{"7F", 128},
		{"080000", 9},       // what 129 as written above reads back as
		{"800000", 129},
		{"8FFFFF", 0xFFFFF + 129},
		{"F00000", 129},     // only the low 20 bits count
	};
	for (const auto& c: read)
	{
		const std::string data = fromHex(c.octets);
		BitStreamReader reader(data.data(), static_cast<unsigned int>(data.size()));
		unsigned int length = 0;
		Decoder::lengthOfSequence(reader, length);
		EXPECT_EQ(c.length, length) << c.octets;
	}
}


TEST(EncoderDecoderTest, LengthOfSequenceErrors)
{
	const char* const illegalStart = "Illegal startposition for a lengthOfSequence value";
	const std::string data = fromHex("00 00");
	unsigned int length;
	for (int position = 1; position < 8; ++position)
	{
		EXPECT_THROW_EXACT(expectNothingWritten(position, [](BitStreamWriter& w) { Encoder::lengthOfSequence(w, 1); }),
			FISEncodingException, illegalStart);
		BitStreamReader reader(data.data(), 2);
		reader.skip(position);
		EXPECT_THROW_EXACT(Decoder::lengthOfSequence(reader, length), FISEncodingException, illegalStart);
	}
	EXPECT_THROW_EXACT(expectNothingWritten(0, [](BitStreamWriter& w) { Encoder::lengthOfSequence(w, 0); }),
		FISEncodingException, "Illegal value zero for lengthOfSequence");
	EXPECT_THROW_EXACT(expectNothingWritten(0, [](BitStreamWriter& w) { Encoder::lengthOfSequence(w, MAX + 1); }),
		FISEncodingException, "Illegal value for lengthOfSequence: larger than 2^20");

	for (const char* octets: {"", "80 00"})
	{
		std::istringstream in(fromHex(octets));
		BitStreamReader reader(in);
		EXPECT_THROW_EXACT(Decoder::lengthOfSequence(reader, length), FISParseException, "Unexpected end of stream while parsing sequence length");
	}
}


TEST(EncoderDecoderTest, NameSurrogates)
{
	const unsigned int ABSENT = 0xFFFFFFFF;
	const struct
	{
		std::string bits; // after six padding bits
		QualifiedNameEntry name;
	}
	cases[] =
	{
		// flags, then each index as a '0' bit and the integer form of position 1
		{"00" "0" "0" + bin(4, 6), QualifiedNameEntry(ABSENT, ABSENT, 5)},
		{"11" "0" "0" + bin(0, 6) + "0" "10" + bin(0, 13) + "0" "110" + bin(0, 20), QualifiedNameEntry(1, 65, 8257)},
		{"10" "0" "0" + bin(1, 6) + "0" "1111111", QualifiedNameEntry(2, ABSENT, 0)},
		{"01" "0" "0" + bin(6, 6) + "0" "0" + bin(0, 6), QualifiedNameEntry(ABSENT, 7, 1)},
	};
	for (const auto& c: cases)
	{
		const std::string data = fromBits("000000" + c.bits);
		std::istringstream in(data);
		BitStreamReader reader(in);
		reader.skip(6);
		EXPECT_TRUE(c.name == Decoder::nameSurrogate(reader)) << c.bits;
		EXPECT_EQ(0, reader.bitPos());

		std::istringstream truncatedIn(data.substr(0, data.size() - 1));
		BitStreamReader truncatedReader(truncatedIn);
		truncatedReader.skip(6);
		EXPECT_THROW_EXACT(Decoder::nameSurrogate(truncatedReader), FISParseException, "Unexpected end of stream while reading integer");
	}

	const std::string data = fromHex("00 00 00");
	for (int position: {0, 1, 2, 3, 4, 5, 7})
	{
		BitStreamReader reader(data.data(), 3);
		reader.skip(position);
		EXPECT_THROW_EXACT(Decoder::nameSurrogate(reader), FISEncodingException, "Illegal startposition for a nameSurrogate value");
	}
}


TEST(EncoderDecoderTest, SkipAdditionalData)
{
	// Two entries of identifier "id" and data "data", then an octet that follows the block.
	const std::string data = fromHex("01 01 6964 03 64617461 01 6964 03 64617461 AB");
	{
		BitStreamReader reader(data.data(), static_cast<unsigned int>(data.size()));
		Decoder::skipAdditionalData(reader);
		unsigned char next;
		ASSERT_TRUE(reader.read(next, 8));
		EXPECT_EQ(0xAB, next);
	}
	const struct
	{
		std::size_t size;
		const char* message;
	}
	truncations[] =
	{
		{data.size() - 3, "Unexpected end of stream while parsing octet string"},
		{4, "Unexpected end of stream while parsing string length"},
		{1, "Unexpected end of stream while parsing string length"},
	};
	for (const auto& t: truncations)
	{
		std::istringstream in(data.substr(0, t.size));
		BitStreamReader reader(in);
		EXPECT_THROW_EXACT(Decoder::skipAdditionalData(reader), FISParseException, t.message);
	}
}
