//
// InvalidEncoding.cpp
//
// Library: FastInfoset
// Package: Encodings
// Module:  InvalidEncoding
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/InvalidEncoding.h"
#include "Korvo/FastInfoset/FISException.h"


namespace Korvo {
namespace FastInfoset {


int InvalidEncoding::check(const std::string&)
{
	return 0;
}


void InvalidEncoding::encode(BitStreamWriter&, const std::string&)
{
	throw FISException("Invalid encoding defined");
}


} } // namespace Korvo::FastInfoset
