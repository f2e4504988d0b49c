//
// InvalidDecoding.cpp
//
// Library: FastInfoset
// Package: Encodings
// Module:  InvalidDecoding
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/InvalidDecoding.h"
#include "Korvo/FastInfoset/FISException.h"


namespace Korvo {
namespace FastInfoset {


Korvo::AutoPtr<Encoding> InvalidDecoding::decode(BitStreamReader&)
{
	throw FISException("Invalid decoding defined");
}


} } // namespace Korvo::FastInfoset
