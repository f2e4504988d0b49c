//
// EncodingAlgorithm.h
//
// Library: FastInfoset
// Package: Encodings
// Module:  EncodingAlgorithm
//
// The writer-side registry of encoding algorithms.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_EncodingAlgorithm_INCLUDED
#define FastInfoset_EncodingAlgorithm_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/Encoding.h"
#include "Korvo/FastInfoset/InvalidEncoding.h"
#include <string>
#include <vector>


namespace Korvo {
namespace FastInfoset {


class FastInfoset_API EncodingAlgorithm
	/// Maps an algorithm index to its encode and check functions, and picks
	/// the best algorithm for a text.
{
public:
	enum Algorithm
	{
		INVALID = 0,
		HEX_ENCODING = 1,
		DWORD_ENCODING = 2,
		SHORT_ENCODING = 3,
		INT_ENCODING = 4,
		LONG_ENCODING = 5,
		BOOL_ENCODING = 6,
		FLOAT_ENCODING = 7,
		DOUBLE_ENCODING = 8,
		UUID_ENCODING = 9,
		CDATA_ENCODING = 10,
		RESERVED = 11,
		LAST_RESERVED = 31,
		USER_DEFINED = 32,
		LAST_USER_DEFINED = 256
	};

	EncodingAlgorithm();
		/// Creates the table of the built-in algorithms (indices 0 to 31).

	void add(Encoding::EncodeMethod encode, Encoding::CheckMethod check);
		/// Appends an application algorithm: the first gets index 32.

	void encode(unsigned int index, BitStreamWriter& writer, const std::string& str) const;
		/// Writes str with the algorithm at index.

	unsigned int findEncoding(const std::string& str) const;
		/// The index whose check gives the smallest positive score (the lower
		/// index on ties), or 0 when no algorithm accepts str.

	unsigned int size() const;
		/// Number of entries, reserved ones included.

private:
	std::vector<Encoding::EncodeMethod> _encodings;
	std::vector<Encoding::CheckMethod>  _checks;
		// Empty while the table holds the built-in algorithms only, which
		// are shared: a table costs nothing until an application adds one.
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_EncodingAlgorithm_INCLUDED
