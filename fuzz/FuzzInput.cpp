//
// FuzzInput.cpp
//
// Library: FastInfoset
// Package: Fuzz
// Module:  FuzzInput
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "FuzzInput.h"
#include <algorithm>


namespace Korvo {
namespace FastInfoset {
namespace Fuzz {


FuzzInput::FuzzInput(const char* pData, std::size_t size):
	_pData(pData),
	_pEnd(pData + size)
{
}


unsigned char FuzzInput::octet()
{
	return atEnd() ? 0 : static_cast<unsigned char>(*_pData++);
}


unsigned int FuzzInput::number(unsigned int limit)
{
	return octet() % limit;
}


std::string FuzzInput::octets(std::size_t count)
{
	const std::size_t n = std::min(count, remaining());
	std::string result(_pData, n);
	_pData += n;
	return result;
}


std::string FuzzInput::rest()
{
	return octets(remaining());
}


} } } // namespace Korvo::FastInfoset::Fuzz
