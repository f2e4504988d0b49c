//
// Utility.h
//
// Library: FastInfoset
// Package: Core
// Module:  Utility
//
// Width constants, bit tables and whole-document conversion shortcuts.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_Utility_INCLUDED
#define FastInfoset_Utility_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include <istream>
#include <ostream>


namespace Korvo {
namespace FastInfoset {


class FastInfoset_API Utility
	/// Constants and bit tables shared by the bit streams, and one-call
	/// conversions between textual XML and Fast Infoset.
{
public:
	static const int SIZEOFCHARINBIT = 8;
	static const int SIZEOFINT16INBIT = 16;
	static const int SIZEOFINT32INBIT = 32;
	static const int SIZEOFINT64INBIT = 64;

	static const unsigned char pow2[8];
		/// Entry i is 2^i.
	static const unsigned char revertedPow2[8];
		/// Entry i is 2^(7-i): the mask of bit i counted from the most significant.
	static const unsigned char highBitMask[9];
		/// Entry n has the n high bits set.
	static const unsigned char lowBitMask[9];
		/// Entry n has the n low bits set.

	static void convertToFIS(std::istream& input, std::ostream& output, int maxIndexedStringLength);
		/// Converts the XML document read from input into a Fast Infoset
		/// document written to output (Converter::convertToFIS with no options).

	static void convertToXML(std::istream& input, std::ostream& output);
		/// Converts the Fast Infoset document read from input into XML text
		/// with an XML declaration and without indentation.
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_Utility_INCLUDED
