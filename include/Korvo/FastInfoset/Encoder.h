//
// Encoder.h
//
// Library: FastInfoset
// Package: Primitives
// Module:  Encoder
//
// Writes the primitive wire forms: integers, lengths and octet strings.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_Encoder_INCLUDED
#define FastInfoset_Encoder_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/BitStreamWriter.h"
#include <string>


namespace Korvo {
namespace FastInfoset {


class FastInfoset_API Encoder
	/// Static functions that write the primitive wire forms of a document.
	/// The form is chosen by the writer's bit position; a value or position
	/// that has no form throws FISEncodingException before any bit is written.
{
public:
	static const unsigned int MAXINT20 = 1048576;
		/// 2^20, the largest index.
	static const unsigned short DOCUMENTSTART = 0xE000;
		/// The identification octets E0 00.
	static const unsigned short XMLDECLARATION = 0x3C3F;
		/// The octets "<?" read as one big-endian 16-bit value.

	static void integer(BitStreamWriter& aWriter, unsigned int val);
		/// Writes an index or small integer (0 to 2^20) in the form that
		/// starts at the writer's bit position (1, 2, 3, 4 or 6).

	static void indexReference(BitStreamWriter& aWriter, unsigned int val);
		/// Writes one '1' bit followed by integer(val): a reference to a
		/// table entry, in one field where the forms allow.

	static void pad0ThenInteger(BitStreamWriter& aWriter, unsigned int val);
		/// Writes one '0' bit followed by integer(val).

	static void nonEmptyStringLength(BitStreamWriter& aWriter, unsigned int strLen);
		/// Writes the length of a non-empty octet string at position 1, 4 or 6.

	static int stringLengthBits(unsigned int strLen, int prefixBits, Korvo::UInt64& bits);
		/// The length form of a non-empty octet string whose length starts
		/// with prefixBits (7, 4 or 2) bits: its bits, low in bits, and their
		/// number, which the function returns.

	static void nonEmptyOctetString(BitStreamWriter& aWriter, const std::string& str);
		/// Writes the length of str and its octets.

	static void lengthOfSequence(BitStreamWriter& aWriter, unsigned int len);
		/// Writes the length of a sequence at an octet boundary.

	static void documentPreHeader(BitStreamWriter& aWriter, bool writeXMLDeclaration);
		/// Writes the optional XML declaration, the identification, the
		/// version and the '0' bit that precedes the header flags.

private:
	static void integerForms(BitStreamWriter& aWriter, unsigned int val);
		/// integer() for the forms not written inline.
};


//
// inlines
//
inline int Encoder::stringLengthBits(unsigned int strLen, int prefixBits, Korvo::UInt64& bits)
{
	// prefixBits bits (len - 1) for short lengths, then a '10' prefix and
	// 8 bits, or a '11' prefix and 32 bits.
	const unsigned int shortLimit = 1u << (prefixBits - 1);
	const unsigned int mediumLimit = shortLimit + 256;
	if (strLen <= shortLimit)
	{
		bits = strLen - 1;
		return prefixBits;
	}
	if (strLen <= mediumLimit)
	{
		bits = (Korvo::UInt64(2u << (prefixBits - 2)) << 8) | (strLen - shortLimit - 1);
		return prefixBits + 8;
	}
	bits = (Korvo::UInt64(3u << (prefixBits - 2)) << 32) | (strLen - mediumLimit - 1);
	return prefixBits + 32;
}


inline void Encoder::integer(BitStreamWriter& aWriter, unsigned int val)
{
	// The one-octet forms from the second to the fourth bit, which most
	// indices take: '0' and val - 1 in the rest of the octet.
	const int pos = aWriter.bitPos();
	const int restOfOctet = 8 - pos;
	if (pos >= 1 && pos <= 3 && val >= 1 && val <= (1u << (restOfOctet - 1)))
	{
		aWriter.write(val - 1, restOfOctet);
		return;
	}
	// The two-octet forms of indices in larger tables: '1' and the value
	// less the one-octet ones in the rest of two octets, below a limit.
	static const unsigned int TWO_OCTET_LIMITS[] = {0, 8256, 2080, 1040};
	if (pos >= 1 && pos <= 3 && val > (1u << (restOfOctet - 1)) && val <= TWO_OCTET_LIMITS[pos])
		aWriter.write((1u << (restOfOctet + 7)) | (val - (1u << (restOfOctet - 1)) - 1), restOfOctet + 8);
	else
		integerForms(aWriter, val);
}


inline void Encoder::indexReference(BitStreamWriter& aWriter, unsigned int val)
{
	// The '1' and integer()'s inline forms, which start one bit later,
	// joined, so that the reference reaches the stream in one step.
	const int pos = aWriter.bitPos() + 1;
	const int restOfOctet = 8 - pos;
	static const unsigned int TWO_OCTET_LIMITS[] = {0, 8256, 2080, 1040};
	if (pos <= 3 && val >= 1 && val <= (1u << (restOfOctet - 1)))
		aWriter.write((1u << restOfOctet) | (val - 1), restOfOctet + 1);
	else if (pos <= 3 && val > (1u << (restOfOctet - 1)) && val <= TWO_OCTET_LIMITS[pos])
		aWriter.write((3u << (restOfOctet + 7)) | (val - (1u << (restOfOctet - 1)) - 1), restOfOctet + 9);
	else
	{
		aWriter.write(true);
		integerForms(aWriter, val);
	}
}


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_Encoder_INCLUDED
