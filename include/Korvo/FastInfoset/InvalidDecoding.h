//
// InvalidDecoding.h
//
// Library: FastInfoset
// Package: Encodings
// Module:  InvalidDecoding
//
// Placeholder of the reserved decoding algorithm indices.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_InvalidDecoding_INCLUDED
#define FastInfoset_InvalidDecoding_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/Encoding.h"


namespace Korvo {
namespace FastInfoset {


class FastInfoset_API InvalidDecoding
	/// Fills the reserved entries of the decoding table.
{
public:
	static Korvo::AutoPtr<Encoding> decode(BitStreamReader& reader);
		/// Throws FISException "Invalid decoding defined".
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_InvalidDecoding_INCLUDED
