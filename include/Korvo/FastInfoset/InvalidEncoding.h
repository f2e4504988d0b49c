//
// InvalidEncoding.h
//
// Library: FastInfoset
// Package: Encodings
// Module:  InvalidEncoding
//
// Placeholder of the reserved encoding algorithm indices.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_InvalidEncoding_INCLUDED
#define FastInfoset_InvalidEncoding_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/Encoding.h"
#include <string>


namespace Korvo {
namespace FastInfoset {


class FastInfoset_API InvalidEncoding
	/// Fills the reserved entries of the encoding table.
{
public:
	static int check(const std::string& str);
		/// Always 0: never chosen.

	static void encode(BitStreamWriter& writer, const std::string& str);
		/// Throws FISException "Invalid encoding defined".
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_InvalidEncoding_INCLUDED
