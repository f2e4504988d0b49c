//
// Encoder.cpp
//
// Library: FastInfoset
// Package: Primitives
// Module:  Encoder
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/Encoder.h"
#include "Korvo/FastInfoset/FISException.h"


namespace Korvo {
namespace FastInfoset {


const unsigned int Encoder::MAXINT20;
const unsigned short Encoder::DOCUMENTSTART;
const unsigned short Encoder::XMLDECLARATION;


namespace
{
	const char XML_DECLARATION[] = "<?xml encoding='finf'?>";
	const unsigned short VERSION = 1;
	const unsigned int MAXINT20 = Encoder::MAXINT20;

	void checkInteger(unsigned int val, int position)
		/// Throws when val has no form at position; every check precedes the first bit written.
	{
		if (val > Encoder::MAXINT20)
			throw FISEncodingException("Cannot encode integer value: too large, must be smaller than 2^20");
		if (val == 0 && position != 1)
			throw FISEncodingException("Value zero must start on the second bit of a byte");

		switch (position)
		{
		case 0:
			throw FISEncodingException("Illegal bit position 0: Integers can never start there");
		case 4:
		case 6:
			if (val > 256) throw FISEncodingException("Illegal bit position: Only Integers <= 256 can start at pos 4 or 6.");
			break;
		case 5:
		case 7:
			throw FISEncodingException("Illegal bit position: No Integers are allowed to be written to pos 5 or 7.");
		default:
			break;
		}
	}

	void integerAtPos1(BitStreamWriter& aWriter, unsigned int val)
	{
		if (val == 0)
			aWriter.write(0x7Fu, 7);
		else if (val <= 64)
			aWriter.write(val - 1, 7);
		else if (val <= 8256)
			aWriter.write(0x4000u | (val - 65), 15);
		else
		{
			poco_assert (val <= MAXINT20);
			aWriter.write(0x600000u | (val - 8257), 23);
		}
	}

	void integerAtPos2(BitStreamWriter& aWriter, unsigned int val)
	{
		poco_assert (val != 0);
		if (val <= 32)
			aWriter.write(val - 1, 6);
		else if (val <= 2080)
			aWriter.write(0x2000u | (val - 33), 14);
		else if (val <= 526368)
			aWriter.write(0x280000u | (val - 2081), 22);
		else
		{
			poco_assert (val <= MAXINT20);
			aWriter.write(0x30000000u | (val - 526369), 30);
		}
	}

	void integerAtPos3(BitStreamWriter& aWriter, unsigned int val)
	{
		poco_assert (val != 0);
		if (val <= 16)
			aWriter.write(val - 1, 5);
		else if (val <= 1040)
			aWriter.write(0x1000u | (val - 17), 13);
		else if (val <= 263184)
			aWriter.write(0x140000u | (val - 1041), 21);
		else
		{
			poco_assert (val <= MAXINT20);
			aWriter.write(0x18000000u | (val - 263185), 29);
		}
	}
}


void Encoder::integerForms(BitStreamWriter& aWriter, unsigned int val)
{
	const int position = aWriter.bitPos();
	checkInteger(val, position);

	switch (position)
	{
	case 1:
		integerAtPos1(aWriter, val);
		break;
	case 2:
		integerAtPos2(aWriter, val);
		break;
	case 3:
		integerAtPos3(aWriter, val);
		break;
	default: // 4 or 6: ends in the middle of the next octet
		aWriter.write(val - 1, 8);
		return;
	}
	poco_assert (aWriter.bitPos() == 0);
}


void Encoder::pad0ThenInteger(BitStreamWriter& aWriter, unsigned int val)
{
	const int position = aWriter.bitPos();
	if (position != 0)
	{
		checkInteger(val, (position + 1) & 7);
		aWriter.write(false);
		integer(aWriter, val);
		return;
	}

	// The '0' bit and the position-1 form as one field.
	if (val == 0)
		aWriter.write(0x7Fu, 8);
	else if (val <= 64)
		aWriter.write(val - 1, 8);
	else if (val <= 8256)
		aWriter.write(0x4000u | (val - 65), 16);
	else
	{
		poco_assert (val <= MAXINT20);
		aWriter.write(0x600000u | (val - 8257), 24);
	}
}


namespace
{
	void writeStringLength(BitStreamWriter& aWriter, unsigned int strLen, int prefixBits)
		/// Writes one of the three length forms that fill the rest of the octet.
	{
		Korvo::UInt64 bits;
		const int numOfBits = Encoder::stringLengthBits(strLen, prefixBits, bits);
		aWriter.write(static_cast<long long>(bits), numOfBits);
	}
}


void Encoder::nonEmptyStringLength(BitStreamWriter& aWriter, unsigned int strLen)
{
	poco_assert (strLen > 0);

	switch (aWriter.bitPos())
	{
	case 1:
		writeStringLength(aWriter, strLen, 7);
		break;
	case 4:
		writeStringLength(aWriter, strLen, 4);
		break;
	case 6:
		writeStringLength(aWriter, strLen, 2);
		break;
	default:
		throw FISEncodingException("illegal position for nonEmptyOctetString encoding");
	}
}


void Encoder::nonEmptyOctetString(BitStreamWriter& aWriter, const std::string& str)
{
	if (str.empty())
		throw FISEncodingException("Encoder::nonEmptyOctetString cannot encode empty strings");
	if (str.size() > 0xFFFFFFFFu)
		throw FISEncodingException("Encoder::nonEmptyOctetString cannot encode strings of 2^32 octets or more");

	nonEmptyStringLength(aWriter, static_cast<unsigned int>(str.size()));
	aWriter.write(str);
}


void Encoder::lengthOfSequence(BitStreamWriter& aWriter, unsigned int len)
{
	if (aWriter.bitPos() != 0)
		throw FISEncodingException("Illegal startposition for a lengthOfSequence value");
	if (len == 0)
		throw FISEncodingException("Illegal value zero for lengthOfSequence");

	if (len <= 128)
		aWriter.write(len - 1, 8);
	else if (len > MAXINT20)
		throw FISEncodingException("Illegal value for lengthOfSequence: larger than 2^20");
	else
		// The long form as this library has always written it: 0x80000 is
		// OR-ed in before the subtraction, so its first bit is 0.
		aWriter.write((len | 0x80000u) - 129, 24);
}


void Encoder::documentPreHeader(BitStreamWriter& aWriter, bool writeXMLDeclaration)
{
	if (writeXMLDeclaration) aWriter.write(XML_DECLARATION);
	aWriter.write(DOCUMENTSTART, 16);
	aWriter.write(VERSION, 16);
	aWriter.write(false);
}


} } // namespace Korvo::FastInfoset
