//
// CDataEncoding.h
//
// Library: FastInfoset
// Package: Encodings
// Module:  CDataEncoding
//
// Character content that came from a CDATA section (built-in algorithm CDATA_ENCODING).
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_CDataEncoding_INCLUDED
#define FastInfoset_CDataEncoding_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/Encoding.h"
#include <string>


namespace Korvo {
namespace FastInfoset {


class FastInfoset_API CDataEncoding: public Encoding
	/// Text marked as a CDATA section, so that a reader can restore the
	/// section. The text's UTF-8 octets go on the wire unchanged.
{
public:
	using Ptr = Korvo::AutoPtr<CDataEncoding>;

	explicit CDataEncoding(const std::string& str);
		/// Throws FISEncodingException "Illegal empty string for CDataEncoding"
		/// when str is empty.

	~CDataEncoding();

	static int check(const std::string& str);
		/// The length of str in octets: any non-empty text qualifies.

	static void encode(BitStreamWriter& writer, const std::string& str);
		/// Writes str's octets; throws as the constructor.

	static Korvo::AutoPtr<Encoding> decode(BitStreamReader& reader);
		/// Reads a non-empty octet string; truncated data throws FISParseException.

	static void decode(BitStreamReader& reader, std::string& result);
		/// Reads a non-empty octet string into result.

	int type() const;
		/// EncodingAlgorithm::CDATA_ENCODING.

	bool merge(const Encoding& enc);
		/// Appends enc's text when it is CDATA text too.

	void write(BitStreamWriter& writer) const;
	DecodeMethod decodeMethod() const;
	CheckMethod checkMethod() const;
	EncodeMethod encodeMethod() const;

	void handle(FISContentHandler* pHandler) const;
		/// Reports the text as characters.

	using Encoding::handle;

	void createContent();
		/// Nothing to do: the content is the text itself.

private:
	CDataEncoding();
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_CDataEncoding_INCLUDED
