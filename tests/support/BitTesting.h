//
// BitTesting.h
//
// Helpers for tests of the bit streams and wire forms: octets written as
// hexadecimal or as bit text, and an expectation on the exact class and
// message of an exception.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//

#ifndef Tests_BitTesting_INCLUDED
#define Tests_BitTesting_INCLUDED

#include "Korvo/FastInfoset/FastInfoset.h"
#include <gtest/gtest.h>
#include <cctype>
#include <string>
#include <typeinfo>


namespace Tests {
namespace Bits {


inline std::string fromHex(const std::string& text)
	/// Octets from hexadecimal digits; spaces are ignored.
{
	std::string digits;
	for (char c: text)
	{
		if (!std::isspace(static_cast<unsigned char>(c))) digits += c;
	}
	std::string result;
	for (std::size_t i = 0; i + 1 < digits.size(); i += 2)
		result += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
	return result;
}


inline std::string toHex(const std::string& octets)
	/// Upper-case hexadecimal, two digits an octet, no separators.
{
	static const char DIGITS[] = "0123456789ABCDEF";
	std::string result;
	for (unsigned char c: octets)
	{
		result += DIGITS[c >> 4];
		result += DIGITS[c & 0xF];
	}
	return result;
}


inline std::string bin(unsigned long long value, int width)
	/// value as width binary digits, most significant first.
{
	std::string result;
	for (int i = width - 1; i >= 0; --i) result += ((value >> i) & 1) ? '1' : '0';
	return result;
}


inline std::string fromBits(const std::string& text)
	/// Octets from '0'/'1' digits (spaces ignored), the last octet padded with '0'.
{
	std::string result;
	int count = 0;
	unsigned char octet = 0;
	for (char c: text)
	{
		if (c != '0' && c != '1') continue;
		octet = static_cast<unsigned char>(octet << 1 | (c == '1'));
		if (++count % 8 == 0)
		{
			result += static_cast<char>(octet);
			octet = 0;
		}
	}
	if (count % 8) result += static_cast<char>(octet << (8 - count % 8));
	return result;
}


inline std::string toBits(const std::string& octets)
	/// '0'/'1' digits of octets, most significant bit first.
{
	std::string result;
	for (unsigned char c: octets) result += bin(c, 8);
	return result;
}


} } // namespace Tests::Bits


#define EXPECT_THROW_EXACT(statement, ExceptionClass, text) \
	do \
	{ \
		try \
		{ \
			statement; \
			ADD_FAILURE() << #statement " threw nothing"; \
		} \
		catch (const Korvo::Exception& exc) \
		{ \
			EXPECT_EQ(std::string(typeid(ExceptionClass).name()), std::string(typeid(exc).name())) \
				<< #statement << " threw " << exc.className() << ": " << exc.message(); \
			EXPECT_EQ(std::string(text), exc.message()) << #statement; \
		} \
	} while (0)


#endif // Tests_BitTesting_INCLUDED
