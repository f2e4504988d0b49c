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
#include "Korvo/FastInfoset/ValueIndex.h"
#include <cstring>
#include <string>


namespace Korvo {
namespace FastInfoset {


inline bool sameOctets(const char* pLeft, const char* pRight, std::size_t length)
	/// Whether the length octets at pLeft and at pRight are equal, compared
	/// as the value index compares them.
{
	return ValueHash<std::string>::sameOctets(pLeft, pRight, length);
}


inline void copyOctets(char* pTarget, const char* pSource, std::size_t length)
	/// Copies length octets between places that do not overlap; names and
	/// short values in words, without a call.
{
	if (length > 16)
		std::memcpy(pTarget, pSource, length);
	else if (length >= 8)
	{
		const Korvo::UInt64 first = ValueHash<std::string>::word8(pSource);
		const Korvo::UInt64 last = ValueHash<std::string>::word8(pSource + length - 8);
		std::memcpy(pTarget, &first, 8);
		std::memcpy(pTarget + length - 8, &last, 8);
	}
	else if (length >= 4)
	{
		const Korvo::UInt32 first = ValueHash<std::string>::word4(pSource);
		const Korvo::UInt32 last = ValueHash<std::string>::word4(pSource + length - 4);
		std::memcpy(pTarget, &first, 4);
		std::memcpy(pTarget + length - 4, &last, 4);
	}
	else
	{
		for (std::size_t i = 0; i < length; ++i) pTarget[i] = pSource[i];
	}
}


inline __attribute__((always_inline)) void assignChanged(std::string& target, const char* pText, std::size_t length)
	/// Assigns the length octets at pText to target unless it holds them
	/// already. A parser reused for messages of one kind finds most strings
	/// where the message before left them, and a comparison costs less than
	/// a copy.
{
	const std::size_t size = target.size();
	if (length <= size)
	{
		if (length == size && sameOctets(target.data(), pText, length)) return;
		// In place, without a call into the string: the octets, then the end.
		copyOctets(target.data(), pText, length);
		target.erase(length);
	}
	else
	{
		// Appending to the emptied string takes fewer steps than assigning.
		target.clear();
		target.append(pText, length);
	}
}


inline void assignChanged(std::string& target, const std::string& value)
{
	assignChanged(target, value.data(), value.size());
}


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_ChangedString_INCLUDED
