//
// RestrictedAlphabet.h
//
// Library: FastInfoset
// Package: Vocabulary
// Module:  RestrictedAlphabet
//
// One restricted alphabet: an ordered list of characters packed by index.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_RestrictedAlphabet_INCLUDED
#define FastInfoset_RestrictedAlphabet_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include <string>
#include <vector>


namespace Korvo {
namespace FastInfoset {


class FastInfoset_API RestrictedAlphabet
	/// An ordered list of characters; a packed string stores each character
	/// as its position in the list, bitSize() bits wide. The entry after the
	/// last character stands for the terminator.
{
public:
	RestrictedAlphabet();
		/// Creates an empty placeholder alphabet (no characters, bit size 0).

	explicit RestrictedAlphabet(const std::string& utf8Characters);
		/// Creates the alphabet of the characters of a non-empty UTF-8 string.

	int indexToChar(int index) const;
		/// The code point at index (not range-checked).

	bool isEndOfString(int index) const;
		/// True when index is the terminator's position (the number of characters).

	int bitSize() const;
		/// Bits per packed character.

	const std::vector<int>& characters() const;
		/// The code points in order, followed by one 0 for the terminator.

	const std::string& alphabet() const;
		/// The alphabet as given, UTF-8.

private:
	std::string      _alphabet;
	std::vector<int> _characters;
	int              _bitSize;
};


//
// inlines
//
inline int RestrictedAlphabet::indexToChar(int index) const
{
	return _characters[index];
}


inline bool RestrictedAlphabet::isEndOfString(int index) const
{
	// A placeholder has no terminator entry: its strings end at 0.
	const int count = _characters.empty() ? 0 : static_cast<int>(_characters.size()) - 1;
	return index == count;
}


inline int RestrictedAlphabet::bitSize() const
{
	return _bitSize;
}


inline const std::vector<int>& RestrictedAlphabet::characters() const
{
	return _characters;
}


inline const std::string& RestrictedAlphabet::alphabet() const
{
	return _alphabet;
}


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_RestrictedAlphabet_INCLUDED
