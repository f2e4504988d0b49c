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
#include <string>


namespace Korvo {
namespace FastInfoset {


inline bool sameOctets(const char* pLeft, const char* pRight, std::size_t length)
	/// Whether the length octets at pLeft and at pRight are equal, compared
	/// as the value index compares them.
{
	return ValueHash<std::string>::sameOctets(pLeft, pRight, length);
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
