//
// StringDecoder.cpp
//
// Library: FastInfoset
// Package: Vocabulary
// Module:  StringDecoder
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/StringDecoder.h"
#include "Korvo/FastInfoset/FISException.h"
#include "Poco/TextConverter.h"
#include "Poco/UTF16Encoding.h"
#include "Poco/UTF8Encoding.h"


namespace Korvo {
namespace FastInfoset {


namespace
{
	const char REPLACEMENT_CHARACTER = '?';

	const std::size_t MAX_RUN_UNITS = 0x10000000;
		// Keeps the octet count of one conversion within an int.

	inline unsigned int unitAt(const unsigned char* pData, std::size_t i)
	{
		return (static_cast<unsigned int>(pData[2*i]) << 8) | pData[2*i + 1];
	}

	inline bool isHighSurrogate(unsigned int unit)
	{
		return unit >= 0xD800 && unit <= 0xDBFF;
	}

	inline bool isLowSurrogate(unsigned int unit)
	{
		return unit >= 0xDC00 && unit <= 0xDFFF;
	}

	void convertRun(Korvo::TextConverter& converter, const unsigned char* pData, std::size_t begin, std::size_t end, std::string& result)
	{
		if (end > begin) converter.convert(pData + 2*begin, static_cast<int>(2*(end - begin)), result);
	}

	void appendUTF8(int ch, Korvo::UTF8Encoding& utf8, std::string& result)
	{
		if (ch >= 0 && ch < 0x80)
		{
			result += static_cast<char>(ch);
			return;
		}
		unsigned char bytes[8];
		int n = utf8.convert(ch, bytes, sizeof(bytes));
		if (n > 0)
			result.append(reinterpret_cast<const char*>(bytes), n);
		else
			result += REPLACEMENT_CHARACTER;
	}
}


void StringDecoder::decodeUTF16(const std::string& utf16, std::string& result)
{
	result.clear();
	result.reserve(utf16.size() + utf16.size()/2);

	Korvo::UTF16Encoding utf16Encoding(Korvo::UTF16Encoding::BIG_ENDIAN_BYTE_ORDER);
	Korvo::UTF8Encoding utf8Encoding;
	Korvo::TextConverter converter(utf16Encoding, utf8Encoding, REPLACEMENT_CHARACTER);

	// The converter would pair a high surrogate with whatever follows it and
	// pass a lone low surrogate through, so surrogates are checked here: runs
	// of well-formed units go to the converter, each broken unit becomes '?'.
	const unsigned char* pData = reinterpret_cast<const unsigned char*>(utf16.data());
	std::size_t units = utf16.size()/2;
	std::size_t runStart = 0;
	std::size_t i = 0;
	while (i < units)
	{
		if (i - runStart >= MAX_RUN_UNITS)
		{
			convertRun(converter, pData, runStart, i, result);
			runStart = i;
		}
		unsigned int unit = unitAt(pData, i);
		if (!isHighSurrogate(unit) && !isLowSurrogate(unit))
		{
			++i;
		}
		else if (isHighSurrogate(unit) && i + 1 < units && isLowSurrogate(unitAt(pData, i + 1)))
		{
			i += 2;
		}
		else
		{
			convertRun(converter, pData, runStart, i, result);
			result += REPLACEMENT_CHARACTER;
			runStart = ++i;
		}
	}
	convertRun(converter, pData, runStart, units, result);
	if (utf16.size() % 2 != 0) result += REPLACEMENT_CHARACTER;
}


void StringDecoder::decodeAlphabet(const std::string& data, const RestrictedAlphabet& alphabet, std::string& result)
{
	const int bits = alphabet.bitSize();
	if (bits <= 0) throw FISParseException("Cannot decode a string with an empty restricted alphabet");

	result.clear();
	result.reserve((data.size() + 1)*8/bits);

	const std::vector<int>& characters = alphabet.characters();
	const Korvo::UInt64 mask = (Korvo::UInt64(1) << bits) - 1;
	Korvo::UTF8Encoding utf8;

	// Octets are shifted into pending, most significant bit first; whole
	// indices are taken from its top. Bits left over at the end are padding.
	Korvo::UInt64 pending = 0;
	int pendingBits = 0;
	for (unsigned char octet: data)
	{
		pending = (pending << 8) | octet;
		pendingBits += 8;
		while (pendingBits >= bits)
		{
			pendingBits -= bits;
			std::size_t index = static_cast<std::size_t>((pending >> pendingBits) & mask);
			if (index >= characters.size()) throw FISParseException("Restricted alphabet index out of range");
			if (alphabet.isEndOfString(static_cast<int>(index))) return;
			appendUTF8(characters[index], utf8, result);
		}
	}
}


} } // namespace Korvo::FastInfoset
