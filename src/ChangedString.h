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


inline bool sameOctets(const char* pLeft, const char* pRight, std::size_t length)
	/// Whether the length octets at pLeft and at pRight are equal: short
	/// strings, most names and values, without a call.
{
	if (length > 16) return std::memcmp(pLeft, pRight, length) == 0;
	if (length >= 8)
	{
		// Two words, the second one overlapping the first where shorter than 16.
		Korvo::UInt64 a, b, c, d;
		std::memcpy(&a, pLeft, 8);
		std::memcpy(&b, pRight, 8);
		std::memcpy(&c, pLeft + length - 8, 8);
		std::memcpy(&d, pRight + length - 8, 8);
		return ((a ^ b) | (c ^ d)) == 0;
	}
	if (length >= 4)
	{
		Korvo::UInt32 a, b, c, d;
		std::memcpy(&a, pLeft, 4);
		std::memcpy(&b, pRight, 4);
		std::memcpy(&c, pLeft + length - 4, 4);
		std::memcpy(&d, pRight + length - 4, 4);
		return ((a ^ b) | (c ^ d)) == 0;
	}
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
