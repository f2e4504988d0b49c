//
// Decoder.cpp
//
// Library: FastInfoset
// Package: Primitives
// Module:  Decoder
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/Decoder.h"
#include "Korvo/FastInfoset/Encoder.h"
#include "Korvo/FastInfoset/DocumentVocabulary.h"
#include "Korvo/FastInfoset/FISException.h"


namespace Korvo {
namespace FastInfoset {


namespace
{
	const char END_OF_INTEGER[] = "Unexpected end of stream while reading integer";
	const char END_OF_STRING_LENGTH[] = "Unexpected end of stream while parsing string length";
	const char END_OF_HEADER[] = "Unexpected end of stream while reading document header";
	const unsigned int ABSENT_INDEX = 0xFFFFFFFF;
	const unsigned short VERSION = 1;

	void expect(bool ok, const char* message)
	{
		if (!ok) throw FISParseException(message);
	}

	void skipPadding(BitStreamReader& aReader, int numBits, const char* message)
		/// Skips padding bits, reporting the end of the data with the message of
		/// the item that follows them (a plain skip would stop silently at the end).
	{
		unsigned char padding;
		expect(aReader.read(padding, numBits), message);
	}

	unsigned int readBits(BitStreamReader& aReader, int numBits)
	{
		unsigned int bits;
		expect(aReader.read(bits, numBits), END_OF_INTEGER);
		return bits;
	}

	unsigned int integerAtPos1(BitStreamReader& aReader)
	{
		unsigned int val = readBits(aReader, 7);
		if (val == 127)
			val = 0;
		else if (val < 64)
			val += 1;
		else if (val <= 95)
			val = ((val & 31) << 8 | readBits(aReader, 8)) + 65;
		else
		{
			val = ((val & 15) << 16 | readBits(aReader, 16)) + 8257;
			poco_assert (val <= Encoder::MAXINT20);
		}
		return val;
	}

	unsigned int integerAtPos2(BitStreamReader& aReader)
	{
		unsigned int val = readBits(aReader, 6);
		if (val < 32)
			val += 1;
		else if (val <= 39)
			val = ((val & 7) << 8 | readBits(aReader, 8)) + 33;
		else if (val <= 47)
			val = ((val & 7) << 16 | readBits(aReader, 16)) + 2081;
		else
		{
			poco_assert (val == 48);
			aReader.skip(4);
			val = readBits(aReader, 20) + 526369;
			poco_assert (val <= Encoder::MAXINT20);
		}
		return val;
	}

	unsigned int integerAtPos3(BitStreamReader& aReader)
	{
		unsigned int val = readBits(aReader, 5);
		if (val < 16)
			val += 1;
		else if (val <= 19)
			val = ((val & 3) << 8 | readBits(aReader, 8)) + 17;
		else if (val <= 23)
			val = ((val & 3) << 16 | readBits(aReader, 16)) + 1041;
		else
		{
			aReader.skip(4);
			val = readBits(aReader, 20) + 263185;
			poco_assert (val <= Encoder::MAXINT20);
		}
		return val;
	}

	unsigned int stringLength(BitStreamReader& aReader, int prefixBits, unsigned int shortLimit)
		/// The prefix holds length - 1 below shortLimit; shortLimit announces an
		/// 8-bit field, anything above it a 32-bit field.
	{
		unsigned int prefix;
		expect(aReader.read(prefix, prefixBits), END_OF_STRING_LENGTH);
		if (prefix < shortLimit) return prefix + 1;

		unsigned int field;
		if (prefix == shortLimit)
		{
			expect(aReader.read(field, 8), END_OF_STRING_LENGTH);
			return field + shortLimit + 1;
		}
		expect(aReader.read(field, 32), END_OF_STRING_LENGTH);
		Korvo::UInt64 length = Korvo::UInt64(field) + shortLimit + 1 + 256;
		if (length > 0xFFFFFFFFu) throw FISParseException("Octet string length exceeds 2^32 - 1");
		return static_cast<unsigned int>(length);
	}

	void xmlDeclarationRest(BitStreamReader& aReader, std::string& xmlDeclaration)
		/// Appends octets up to and including the closing '>'. Octet-string reads
		/// end any reader, a memory reader too, with FISParseException at the
		/// end of the data.
	{
		std::string octet;
		do
		{
			aReader.read(octet, 1);
			xmlDeclaration += octet;
		}
		while (octet != ">");
	}
}


void Decoder::integer(BitStreamReader& aReader, unsigned int& val)
{
	val = 0;
	switch (aReader.bitPos())
	{
	case 0:
		throw FISEncodingException("Illegal bit position 0: Integers can never start there");
	case 1:
		val = integerAtPos1(aReader);
		break;
	case 2:
		val = integerAtPos2(aReader);
		break;
	case 3:
		val = integerAtPos3(aReader);
		break;
	case 4:
	case 6:
		val = readBits(aReader, 8) + 1;
		return;
	default:
		throw FISEncodingException("Illegal bit position: No Integers are allowed to be read from pos 5 or 7.");
	}
	poco_assert (aReader.bitPos() == 0);
}


void Decoder::nonEmptyStringLength(BitStreamReader& aReader, unsigned int& strLen)
{
	switch (aReader.bitPos())
	{
	case 1:
		strLen = stringLength(aReader, 7, 64);
		break;
	case 4:
		strLen = stringLength(aReader, 4, 8);
		break;
	case 6:
		strLen = stringLength(aReader, 2, 2);
		break;
	default:
		throw FISEncodingException("illegal position for nonEmptyOctetString encoding");
	}
	poco_assert (aReader.bitPos() == 0);
	poco_assert (strLen > 0);
}


void Decoder::nonEmptyOctetString(BitStreamReader& aReader, std::string& str)
{
	unsigned int strLen;
	nonEmptyStringLength(aReader, strLen);
	expect(aReader.read(str, strLen), "Unexpected end of stream while reading octet string");
}


void Decoder::lengthOfSequence(BitStreamReader& aReader, unsigned int& len)
{
	if (aReader.bitPos() != 0)
		throw FISEncodingException("Illegal startposition for a lengthOfSequence value");

	const char* const END_OF_LENGTH = "Unexpected end of stream while parsing sequence length";
	unsigned char firstBit;
	expect(aReader.peek(firstBit, 1), END_OF_LENGTH);
	unsigned int field;
	if (firstBit)
	{
		expect(aReader.read(field, 24), END_OF_LENGTH);
		len = (field & 0xFFFFF) + 129;
	}
	else
	{
		expect(aReader.read(field, 8), END_OF_LENGTH);
		len = field + 1;
	}
	if (len == 0)
		throw FISEncodingException("Illegal value zero for lengthOfSequence");
}


QualifiedNameEntry Decoder::nameSurrogate(BitStreamReader& aReader)
{
	if (aReader.bitPos() != 6)
		throw FISEncodingException("Illegal startposition for a nameSurrogate value");

	bool hasPrefixIndex = false;
	bool hasNamespaceIndex = false;
	expect(aReader.read(hasPrefixIndex) && aReader.read(hasNamespaceIndex), "Unexpected end of stream while reading surrogate");

	unsigned int prefixIndex = ABSENT_INDEX;
	unsigned int namespaceIndex = ABSENT_INDEX;
	unsigned int localNameIndex = ABSENT_INDEX;
	if (hasPrefixIndex)
	{
		skipPadding(aReader, 1, END_OF_INTEGER);
		integer(aReader, prefixIndex);
	}
	if (hasNamespaceIndex)
	{
		skipPadding(aReader, 1, END_OF_INTEGER);
		integer(aReader, namespaceIndex);
	}
	skipPadding(aReader, 1, END_OF_INTEGER);
	integer(aReader, localNameIndex);
	return QualifiedNameEntry(prefixIndex, namespaceIndex, localNameIndex);
}


void Decoder::skipAdditionalData(BitStreamReader& aReader)
{
	unsigned int entries;
	lengthOfSequence(aReader, entries);
	std::string discarded;
	for (unsigned int i = 0; i < entries; ++i)
	{
		skipPadding(aReader, 1, END_OF_STRING_LENGTH);
		nonEmptyOctetString(aReader, discarded); // identifier
		skipPadding(aReader, 1, END_OF_STRING_LENGTH);
		nonEmptyOctetString(aReader, discarded); // data
	}
}


void Decoder::documentPreHeader(BitStreamReader& aReader, std::string& xmlDeclaration)
{
	xmlDeclaration.clear();

	// Data too short to hold the identification is not a document either.
	unsigned short identification;
	if (!aReader.read(identification, 16)) identification = 0;
	if (identification == Encoder::XMLDECLARATION)
	{
		xmlDeclaration = "<?";
		xmlDeclarationRest(aReader, xmlDeclaration);
		if (!aReader.read(identification, 16)) identification = 0;
	}
	if (identification != Encoder::DOCUMENTSTART)
		throw FISException("Not a valid Fast Infoset document (invalid header)");

	unsigned short version;
	expect(aReader.read(version, 16), END_OF_HEADER);
	if (version != VERSION)
		throw FISException("Unsupported Fast Infoset document version");
	skipPadding(aReader, 1, END_OF_HEADER);
}


Decoder::OpenHeaderParts Decoder::documentHeader(BitStreamReader& aReader, DocumentVocabulary& voc, FISDocumentHandler* pHandler)
{
	poco_assert (aReader.bitPos() == 1);

	unsigned int flags;
	expect(aReader.read(flags, 7), END_OF_HEADER);
	const bool hasAdditionalData = (flags & 0x40) != 0;
	const bool hasInitialVocabulary = (flags & 0x20) != 0;

	OpenHeaderParts openParts;
	openParts.hasNotations = (flags & 0x10) != 0;
	openParts.hasUnparsedEntities = (flags & 0x08) != 0;
	openParts.hasCharacterEncodingScheme = (flags & 0x04) != 0;
	openParts.standalone = (flags & 0x02) != 0;
	openParts.hasVersion = (flags & 0x01) != 0;

	if (hasAdditionalData) skipAdditionalData(aReader);
	if (hasInitialVocabulary)
		parseInitialVocabulary(aReader, voc, pHandler);
	else
		voc.reset();
	return openParts;
}


void Decoder::parseInitialVocabulary(BitStreamReader&, DocumentVocabulary&, FISDocumentHandler*)
{
	throw FISException("Documents with an initial vocabulary are not supported yet");
}


void Decoder::handleExternalVocabulary(BitStreamReader&, DocumentVocabulary&, FISDocumentHandler*)
{
	throw FISException("Documents with an initial vocabulary are not supported yet");
}


void Decoder::handleRestrictedAlphabet(BitStreamReader&, DocumentVocabulary&)
{
	throw FISException("Documents with an initial vocabulary are not supported yet");
}


void Decoder::skipEncodingAlgos(BitStreamReader&, DocumentVocabulary&)
{
	throw FISException("Documents with an initial vocabulary are not supported yet");
}


void Decoder::handleVocabulary(BitStreamReader&, Vocabulary<std::string>&)
{
	throw FISException("Documents with an initial vocabulary are not supported yet");
}


void Decoder::handleEncodedCharacterStringVoc(BitStreamReader&, Vocabulary<std::string>&, DocumentVocabulary&)
{
	throw FISException("Documents with an initial vocabulary are not supported yet");
}


void Decoder::encodedCharacterString(BitStreamReader&, std::string&, DocumentVocabulary&)
{
	throw FISException("Documents with an initial vocabulary are not supported yet");
}


void Decoder::handleNameSurrogatesVoc(BitStreamReader&, Vocabulary<QualifiedNameEntry>&)
{
	throw FISException("Documents with an initial vocabulary are not supported yet");
}


} } // namespace Korvo::FastInfoset
