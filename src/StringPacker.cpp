//
// StringPacker.cpp
//
// Library: FastInfoset
// Package: Serializer
// Module:  StringPacker
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "StringPacker.h"
#include "Korvo/FastInfoset/DocumentVocabulary.h"
#include "Korvo/FastInfoset/Encoder.h"
#include <algorithm>


namespace Korvo {
namespace FastInfoset {


namespace
{
	const unsigned int MAX_ALPHABET_NUMBER = 256; // the largest an 8-bit index holds

	std::size_t costInBits(std::size_t octets, int lengthPos)
		/// The octets of a literal and the length in front of them, which
		/// starts on the fifth or the seventh bit.
	{
		std::size_t lengthBits;
		if (lengthPos == 4)
			lengthBits = octets <= 8 ? 4 : octets <= 264 ? 12 : 36;
		else
			lengthBits = octets <= 2 ? 2 : octets <= 258 ? 10 : 34;
		return lengthBits + 8*octets;
	}

	bool isContinuation(unsigned char c)
	{
		return (c & 0xC0) == 0x80;
	}
}


inline unsigned char StringPacker::Alphabet::position(int codePoint) const
{
	const std::size_t page = static_cast<std::size_t>(codePoint) >> 8;
	if (page >= pageOf.size() || pageOf[page] == 0) return NONE;
	return pages[pageOf[page] - 1][codePoint & 0xFF];
}


StringPacker::StringPacker()
{
}


void StringPacker::setAlphabets(const DocumentRestrictedAlphabet& alphabets)
{
	_alphabets.clear();
	const std::vector<RestrictedAlphabet>& list = alphabets.alphabets();
	for (std::size_t i = 0; i < list.size() && i < MAX_ALPHABET_NUMBER; ++i)
	{
		// characters() ends with the terminator's entry.
		const std::vector<int>& characters = list[i].characters();
		const std::size_t count = characters.empty() ? 0 : characters.size() - 1;
		int bits = 2;
		while (bits <= 8 && (std::size_t(1) << bits) - 1 != count) ++bits;
		if (bits > 8) continue;

		Alphabet alphabet;
		alphabet.number = static_cast<unsigned int>(i + 1);
		alphabet.bits = bits;
		for (std::size_t position = count; position-- > 0;)
		{
			// Backwards, so that a character listed twice gets its first position.
			const int codePoint = characters[position];
			if (codePoint < 0 || codePoint > 0x10FFFF) continue;
			const std::size_t page = static_cast<std::size_t>(codePoint) >> 8;
			if (page >= alphabet.pageOf.size()) alphabet.pageOf.resize(page + 1, 0);
			if (alphabet.pageOf[page] == 0)
			{
				alphabet.pages.emplace_back();
				alphabet.pages.back().fill(NONE);
				alphabet.pageOf[page] = static_cast<unsigned short>(alphabet.pages.size());
			}
			alphabet.pages[alphabet.pageOf[page] - 1][codePoint & 0xFF] = static_cast<unsigned char>(position);
		}
		_alphabets.push_back(std::move(alphabet));
	}
	std::stable_sort(_alphabets.begin(), _alphabets.end(), [](const Alphabet& a, const Alphabet& b) { return a.bits < b.bits; });
}


bool StringPacker::write(BitStreamWriter& aWriter, const std::string& str)
{
	if (!decode(str)) return false;
	const int lengthPos = aWriter.bitPos() + 2;
	const std::size_t utf8Cost = costInBits(str.size(), lengthPos);

	std::size_t utf16Octets = 0;
	for (int codePoint: _codePoints) utf16Octets += codePoint > 0xFFFF ? 4 : 2;
	std::size_t bestCost = std::min(utf8Cost, costInBits(utf16Octets, lengthPos));

	for (const Alphabet& alphabet: _alphabets)
	{
		// The alphabet's number takes another octet.
		const std::size_t packedOctets = (_codePoints.size()*alphabet.bits + 7)/8;
		if (costInBits(packedOctets, lengthPos) + 8 >= bestCost) break;
		if (covers(alphabet))
		{
			writePacked(aWriter, alphabet);
			return true;
		}
	}
	if (bestCost == utf8Cost) return false;
	writeUTF16(aWriter);
	return true;
}


bool StringPacker::decode(const std::string& str)
{
	_codePoints.clear();
	const unsigned char* p = reinterpret_cast<const unsigned char*>(str.data());
	const unsigned char* end = p + str.size();
	while (p < end)
	{
		const unsigned char c = *p;
		int codePoint;
		int length;
		if (c < 0x80) { codePoint = c; length = 1; }
		else if (c >= 0xC2 && c <= 0xDF) { codePoint = c & 0x1F; length = 2; }
		else if (c >= 0xE0 && c <= 0xEF) { codePoint = c & 0x0F; length = 3; }
		else if (c >= 0xF0 && c <= 0xF4) { codePoint = c & 0x07; length = 4; }
		else return false;
		if (end - p < length) return false;
		for (int i = 1; i < length; ++i)
		{
			if (!isContinuation(p[i])) return false;
			codePoint = (codePoint << 6) | (p[i] & 0x3F);
		}
		// Overlong forms, surrogates and values beyond Unicode would not
		// come back as the same octets.
		if ((length == 3 && (codePoint < 0x800 || (codePoint >= 0xD800 && codePoint <= 0xDFFF)))
		 || (length == 4 && (codePoint < 0x10000 || codePoint > 0x10FFFF)))
			return false;
		_codePoints.push_back(codePoint);
		p += length;
	}
	return true;
}


bool StringPacker::covers(const Alphabet& alphabet) const
{
	for (int codePoint: _codePoints)
	{
		if (alphabet.position(codePoint) == NONE) return false;
	}
	return true;
}


void StringPacker::writeUTF16(BitStreamWriter& aWriter)
{
	_octets.clear();
	for (int codePoint: _codePoints)
	{
		if (codePoint > 0xFFFF)
		{
			const int offset = codePoint - 0x10000;
			const int high = 0xD800 | (offset >> 10);
			const int low = 0xDC00 | (offset & 0x3FF);
			_octets.push_back(static_cast<char>(high >> 8));
			_octets.push_back(static_cast<char>(high & 0xFF));
			_octets.push_back(static_cast<char>(low >> 8));
			_octets.push_back(static_cast<char>(low & 0xFF));
		}
		else
		{
			_octets.push_back(static_cast<char>(codePoint >> 8));
			_octets.push_back(static_cast<char>(codePoint & 0xFF));
		}
	}
	aWriter.write(static_cast<unsigned char>(DocumentVocabulary::UTF16), 2);
	Encoder::nonEmptyOctetString(aWriter, _octets);
}


void StringPacker::writePacked(BitStreamWriter& aWriter, const Alphabet& alphabet)
{
	_octets.clear();
	unsigned int pending = 0;
	int pendingBits = 0;
	for (int codePoint: _codePoints)
	{
		pending = (pending << alphabet.bits) | alphabet.position(codePoint);
		pendingBits += alphabet.bits;
		if (pendingBits >= 8)
		{
			pendingBits -= 8;
			_octets.push_back(static_cast<char>(pending >> pendingBits));
			pending &= (1u << pendingBits) - 1;
		}
	}
	// One bits fill the last octet: a reader takes a whole group of them
	// for the end of the string.
	if (pendingBits > 0)
	{
		const int fill = 8 - pendingBits;
		_octets.push_back(static_cast<char>((pending << fill) | ((1u << fill) - 1)));
	}
	aWriter.write(static_cast<unsigned char>(DocumentVocabulary::RESTRICTEDALPHABET), 2);
	Encoder::integer(aWriter, alphabet.number);
	Encoder::nonEmptyOctetString(aWriter, _octets);
}


} } // namespace Korvo::FastInfoset
