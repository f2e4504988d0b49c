//
// ChangedString.h
//
// Library: FastInfoset
// Package: Parser
// Module:  ChangedString
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_ChangedString_INCLUDED
#define FastInfoset_ChangedString_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include <cstring>
#include <string>


namespace Korvo {
namespace FastInfoset {


template <class Word>
inline bool sameEnds(const char* pLeft, const char* pRight, std::size_t length)
	/// Whether the first and the last Word of the length octets (at least
	/// one Word, at most two) are equal at pLeft and at pRight.
{
	Word a, b, c, d;
	std::memcpy(&a, pLeft, sizeof(Word));
	std::memcpy(&b, pRight, sizeof(Word));
	std::memcpy(&c, pLeft + length - sizeof(Word), sizeof(Word));
	std::memcpy(&d, pRight + length - sizeof(Word), sizeof(Word));
	return ((a ^ b) | (c ^ d)) == 0;
}


inline bool sameOctets(const char* pLeft, const char* pRight, std::size_t length)
	/// Whether the length octets at pLeft and at pRight are equal: short
	/// strings, most names and values, without a call.
{
	if (length > 16) return std::memcmp(pLeft, pRight, length) == 0;
	if (length >= 8) return sameEnds<Korvo::UInt64>(pLeft, pRight, length);
	if (length >= 4) return sameEnds<Korvo::UInt32>(pLeft, pRight, length);
	for (std::size_t i = 0; i < length; ++i)
	{
		if (pLeft[i] != pRight[i]) return false;
	}
	return true;
}


inline void assignChanged(std::string& target, const char* pText, std::size_t length)
	/// Assigns the length octets at pText to target unless it holds them
	/// already. A parser reused for messages of one kind finds most strings
	/// where the message before left them, and a comparison costs less than
	/// a copy.
{
	if (target.size() != length || !sameOctets(target.data(), pText, length)) target.assign(pText, length);
}


inline void assignChanged(std::string& target, const std::string& value)
{
	assignChanged(target, value.data(), value.size());
}


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_ChangedString_INCLUDED
