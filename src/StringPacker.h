//
// StringPacker.h
//
// Library: FastInfoset
// Package: Serializer
// Module:  StringPacker
//
// Writes a literal string in the shortest character encoding that a
// reader decodes on its own.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_StringPacker_INCLUDED
#define FastInfoset_StringPacker_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/BitStreamWriter.h"
#include "Korvo/FastInfoset/DocumentRestrictedAlphabet.h"
#include <array>
#include <string>
#include <vector>


namespace Korvo {
namespace FastInfoset {


class StringPacker
	/// Chooses between UTF-8, UTF-16 and the document's restricted alphabets
	/// for one literal at a time. CJK text takes two octets a character in
	/// UTF-16 where UTF-8 needs three; a string of the few characters of an
	/// alphabet takes a few bits each.
	///
	/// Only alphabets of 2^k - 1 characters (k from 2 to 8, numbers up to
	/// 256) are used: for them every reader agrees on k bits a character,
	/// with the all-ones value left for the padding.
{
public:
	StringPacker();

	void setAlphabets(const DocumentRestrictedAlphabet& alphabets);
		/// The alphabets strings may be packed with, by their numbers.

	bool write(BitStreamWriter& aWriter, const std::string& str);
		/// At bit position 2 or 4, writes the encoding bits and the octets of
		/// str when UTF-16 or an alphabet is shorter than UTF-8 and returns
		/// true. Returns false and writes nothing when UTF-8 is the shortest
		/// or str is not well-formed UTF-8.

private:
	struct Alphabet
	{
		unsigned int number;
		int bits;
		std::vector<unsigned short> pageOf;
			/// Code point / 256 to page number + 1; 0 where no character is.
		std::vector<std::array<unsigned char, 256>> pages;
			/// Character positions, NONE for characters not in the alphabet.

		unsigned char position(int codePoint) const;
	};

	static constexpr unsigned char NONE = 0xFF;

	bool decode(const std::string& str);
	bool covers(const Alphabet& alphabet) const;
	void writeUTF16(BitStreamWriter& aWriter);
	void writePacked(BitStreamWriter& aWriter, const Alphabet& alphabet);

	std::vector<Alphabet> _alphabets;
		/// Fewest bits first, so that the first one that covers a string is
		/// its shortest packing.
	std::vector<int> _codePoints;
	std::string _octets;
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_StringPacker_INCLUDED
