//
// DecodingAlgorithm.h
//
// Library: FastInfoset
// Package: Encodings
// Module:  DecodingAlgorithm
//
// The parser-side registry of encoding algorithms.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_DecodingAlgorithm_INCLUDED
#define FastInfoset_DecodingAlgorithm_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/Encoding.h"
#include "Korvo/FastInfoset/InvalidDecoding.h"
#include <vector>


namespace Korvo {
namespace FastInfoset {


class FastInfoset_API DecodingAlgorithm
	/// Maps an algorithm index to the function that decodes its octets.
{
public:
	DecodingAlgorithm();
		/// Creates the table of the built-in algorithms (indices 0 to 31).

	void add(Encoding::DecodeMethod decode);
		/// Appends an application algorithm: the first gets index 32.

	Korvo::AutoPtr<Encoding> read(int index, BitStreamReader& reader) const;
		/// Decodes a value with the algorithm at index. A reserved or
		/// undefined index throws FISException "Invalid decoding defined".

	unsigned int size() const;
		/// Number of entries, reserved ones included.

private:
	std::vector<Encoding::DecodeMethod> _decodings;
		// Empty while the table holds the built-in algorithms only, which
		// are shared: a table costs nothing until an application adds one.
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_DecodingAlgorithm_INCLUDED
