//
// AlphabetChooser.h
//
// Library: FastInfoset
// Package: Tools
// Module:  AlphabetChooser
//
// Picks restricted alphabets that make a document's literals shorter.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_AlphabetChooser_INCLUDED
#define FastInfoset_AlphabetChooser_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/DocumentVocabulary.h"
#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>


namespace Korvo {
namespace FastInfoset {
namespace Tool {


class AlphabetChooser
	/// Chooses up to a few alphabets of 2^k - 1 characters (k from 2 to 8)
	/// for the literal strings of a document, given as a sample: a string
	/// of an alphabet's characters takes k bits a character. Text in one
	/// script (Cyrillic, Thai, Greek, Hebrew, ...) takes two or three
	/// octets a character in UTF-8 and seven bits in an alphabet of its
	/// letters, digits and punctuation; identifiers and codes take five or
	/// six bits.
	///
	/// Each round takes, for every k, the most frequent characters of the
	/// sample (then of the strings that those nearly cover, while that
	/// gains), counts the octets the alphabet saves over the best form so
	/// far (UTF-8, UTF-16, the numeric and date-time alphabets, alphabets
	/// already chosen) less what announcing it costs, and keeps the best.
	/// The writer makes the same choice string by string.
{
public:
	AlphabetChooser();

	void add(const std::string& value, DocumentVocabulary::ID table);
		/// Adds a literal the writer will write once. Strings that are not
		/// well-formed UTF-8 are left out, as the writer writes them as they are.

	std::vector<std::string> choose(std::size_t maxAlphabets = 4);
		/// The alphabets, as UTF-8 strings of their characters in code point
		/// order; none when none saves anything.

private:
	using Members = std::vector<unsigned char>;
		/// By character number, 1 for the characters of an alphabet.

	struct Literal
	{
		std::size_t first;    // where its distinct characters start in _characters
		std::size_t distinct;
		std::size_t length;   // in characters
		int lengthPos;        // the bit its length starts on
		std::size_t cost;     // in bits, its shortest form so far
	};

	struct Candidate
	{
		Members members;
		int bits;
		long long gain;       // in bits
	};

	std::size_t numberOf(int codePoint);
		/// The character's number, given on its first occurrence.
	std::size_t packedCost(const Literal& literal, int bits) const;
	bool covers(const Literal& literal, const Members& members, std::size_t allowedMissing) const;
	Members mostFrequent(int bits, const Members* pNearlyCovered) const;
	long long gain(const Members& members, int bits) const;
	Candidate bestCandidate() const;
	std::string alphabetString(const Members& members, int bits) const;

	std::vector<int> _codePoints;          // by character number
	std::unordered_map<int, std::size_t> _numberOf;
	std::vector<std::size_t> _characters;  // each literal's distinct characters, by number
	std::vector<std::size_t> _occurrences; // and how often each occurs in it
	std::vector<std::size_t> _positionOf;  // scratch for add(): by number, position in the literal + 1
	std::vector<Literal> _literals;
	bool _chosen;
};


} } } // namespace Korvo::FastInfoset::Tool


#endif // FastInfoset_AlphabetChooser_INCLUDED
