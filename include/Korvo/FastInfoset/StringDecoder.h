//
// StringDecoder.h
//
// Library: FastInfoset
// Package: Vocabulary
// Module:  StringDecoder
//
// Decodes UTF-16 and restricted-alphabet strings into UTF-8.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_StringDecoder_INCLUDED
#define FastInfoset_StringDecoder_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/RestrictedAlphabet.h"
#include <string>


namespace Korvo {
namespace FastInfoset {


class FastInfoset_API StringDecoder
	/// Decoders of the two non-UTF-8 character string forms.
{
public:
	static void decodeUTF16(const std::string& utf16, std::string& result);
		/// Converts big-endian UTF-16 octets into UTF-8; a sequence that
		/// cannot be converted yields "?".

	static void decodeAlphabet(const std::string& data, const RestrictedAlphabet& alphabet, std::string& result);
		/// Unpacks data, alphabet.bitSize() bits per character, into UTF-8,
		/// up to the terminator or the last whole index.
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_StringDecoder_INCLUDED
