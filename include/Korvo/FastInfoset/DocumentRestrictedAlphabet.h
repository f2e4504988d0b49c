//
// DocumentRestrictedAlphabet.h
//
// Library: FastInfoset
// Package: Vocabulary
// Module:  DocumentRestrictedAlphabet
//
// The numbered list of restricted alphabets of a document.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_DocumentRestrictedAlphabet_INCLUDED
#define FastInfoset_DocumentRestrictedAlphabet_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/RestrictedAlphabet.h"
#include <string>
#include <vector>


namespace Korvo {
namespace FastInfoset {


class FastInfoset_API DocumentRestrictedAlphabet
	/// The restricted alphabets of a document. Alphabet number n is at
	/// position n - 1: 1 is numeric, 2 date-time, 3 to 15 are reserved
	/// placeholders, and alphabets a document declares start at 16.
{
public:
	static const std::string NUMERIC_CHARACTERS;
		/// "0123456789-+.e "
	static const std::string DATE_TIME_CHARACTERS;
		/// "0123456789-:TZ "

	DocumentRestrictedAlphabet();
		/// Creates the list of the 15 numbered entries.

	explicit DocumentRestrictedAlphabet(bool);
		/// Creates an empty list (no built-ins, no placeholders).

	unsigned int add(const std::string& str);
		/// Appends the alphabet of str; returns its zero-based position
		/// (its alphabet number minus one).

	void addDummy();
		/// Appends an empty placeholder alphabet.

	void truncate(std::size_t size);
		/// Keeps the first size alphabets.

	const RestrictedAlphabet& alphabet(unsigned int vocabulary) const;
		/// Returns alphabet number vocabulary (1-based).

	const std::vector<RestrictedAlphabet>& alphabets() const;

	DocumentRestrictedAlphabet operator - (const DocumentRestrictedAlphabet& other) const;
		/// The alphabets of this list beyond the length of other.

private:
	static const std::vector<RestrictedAlphabet>& builtIns();
	void own();
		/// Takes a copy of the built-ins before the list changes.

	std::vector<RestrictedAlphabet> _alphabets;
	bool                            _builtInsOnly;
		// The list is the shared built-ins and _alphabets is empty: most
		// documents declare no alphabet, so most vocabularies copy nothing.
};


//
// inlines
//
inline const std::vector<RestrictedAlphabet>& DocumentRestrictedAlphabet::alphabets() const
{
	return _builtInsOnly ? builtIns() : _alphabets;
}


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_DocumentRestrictedAlphabet_INCLUDED
