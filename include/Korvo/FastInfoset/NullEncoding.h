//
// NullEncoding.h
//
// Library: FastInfoset
// Package: Encodings
// Module:  NullEncoding
//
// Plain text carried through the typed-value path unchanged.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_NullEncoding_INCLUDED
#define FastInfoset_NullEncoding_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/Encoding.h"
#include <string>


namespace Korvo {
namespace FastInfoset {


class FastInfoset_API NullEncoding: public Encoding
	/// Text that is no algorithm's value (type() 0): it travels as its
	/// octets and reaches every handler as characters. Not in the algorithm
	/// tables; the parser reuses one instance for every text it reads.
{
public:
	using Ptr = Korvo::AutoPtr<NullEncoding>;

	NullEncoding();
		/// Empty text, to be filled through content().

	explicit NullEncoding(const std::string& str);
		/// Throws FISEncodingException "Illegal empty string for NullEncoding"
		/// when str is empty.

	~NullEncoding();

	static int check(const std::string& str);
		/// The length of str in octets.

	static void encode(BitStreamWriter& writer, const std::string& str);
		/// Writes str as a non-empty octet string; throws as the text constructor.

	static Korvo::AutoPtr<Encoding> decode(BitStreamReader& reader);
		/// Reads a non-empty octet string; truncated data throws FISParseException.

	static void decode(BitStreamReader& reader, std::string& result);
		/// Reads a non-empty octet string into result.

	int type() const;
		/// 0: no algorithm.

	bool merge(const Encoding& enc);
		/// Appends enc's text when its type() is 0 too.

	void write(BitStreamWriter& writer) const;
		/// Writes the text as a non-empty octet string; the text must not be empty.

	DecodeMethod decodeMethod() const;
	CheckMethod checkMethod() const;
	EncodeMethod encodeMethod() const;

	void handle(FISContentHandler* pHandler) const;
		/// Reports the text as characters.

	using Encoding::handle;

	void createContent();
		/// Nothing to do: the content is the text itself.
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_NullEncoding_INCLUDED


#include "Korvo/FastInfoset/NullRefEncoding.h"
