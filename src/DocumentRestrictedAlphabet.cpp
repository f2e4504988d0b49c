//
// DocumentRestrictedAlphabet.cpp
//
// Library: FastInfoset
// Package: Vocabulary
// Module:  DocumentRestrictedAlphabet
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/DocumentRestrictedAlphabet.h"


namespace Korvo {
namespace FastInfoset {


namespace
{
	// Literals rather than the static strings, so that a list can be built
	// while other translation units are still being initialised.
	const char NUMERIC[] = "0123456789-+.e ";
	const char DATE_TIME[] = "0123456789-:TZ ";

	const int RESERVED_ALPHABETS = 13;
		// Numbers 3 to 15.
}


const std::string DocumentRestrictedAlphabet::NUMERIC_CHARACTERS(NUMERIC);
const std::string DocumentRestrictedAlphabet::DATE_TIME_CHARACTERS(DATE_TIME);


DocumentRestrictedAlphabet::DocumentRestrictedAlphabet():
	_builtInsOnly(true)
{
}


const std::vector<RestrictedAlphabet>& DocumentRestrictedAlphabet::builtIns()
{
	// Made once and shared: every vocabulary, so every writer and parser,
	// starts with these.
	static const std::vector<RestrictedAlphabet> BUILT_INS = []
	{
		std::vector<RestrictedAlphabet> alphabets;
		alphabets.reserve(15);
		alphabets.push_back(RestrictedAlphabet(NUMERIC));
		alphabets.push_back(RestrictedAlphabet(DATE_TIME));
		for (int i = 0; i < RESERVED_ALPHABETS; ++i) alphabets.push_back(RestrictedAlphabet());
		return alphabets;
	}();
	return BUILT_INS;
}


DocumentRestrictedAlphabet::DocumentRestrictedAlphabet(bool):
	_builtInsOnly(false)
{
}


void DocumentRestrictedAlphabet::own()
{
	if (_builtInsOnly)
	{
		_alphabets.reserve(builtIns().size() + 1);
		_alphabets = builtIns();
		_builtInsOnly = false;
	}
}


unsigned int DocumentRestrictedAlphabet::add(const std::string& str)
{
	own();
	unsigned int position = static_cast<unsigned int>(_alphabets.size());
	_alphabets.push_back(RestrictedAlphabet(str));
	return position;
}


void DocumentRestrictedAlphabet::addDummy()
{
	own();
	_alphabets.push_back(RestrictedAlphabet());
}


void DocumentRestrictedAlphabet::truncate(std::size_t size)
{
	if (size >= alphabets().size()) return;
	own();
	_alphabets.resize(size);
}


const RestrictedAlphabet& DocumentRestrictedAlphabet::alphabet(unsigned int vocabulary) const
{
	// The whole list under the member's name: the assertion's text is its message.
	const std::vector<RestrictedAlphabet>& _alphabets = alphabets();
	poco_assert (vocabulary > 0 && vocabulary <= _alphabets.size());
	return _alphabets[vocabulary - 1];
}


DocumentRestrictedAlphabet DocumentRestrictedAlphabet::operator - (const DocumentRestrictedAlphabet& other) const
{
	{
		// The whole list under the member's name: the assertion's text is its message.
		const std::vector<RestrictedAlphabet>& _alphabets = alphabets();
		poco_assert (other.alphabets().size() <= _alphabets.size());
	}
	DocumentRestrictedAlphabet difference(true);
	const std::vector<RestrictedAlphabet>& list = alphabets();
	difference._alphabets.assign(list.begin() + other.alphabets().size(), list.end());
	return difference;
}


} } // namespace Korvo::FastInfoset
