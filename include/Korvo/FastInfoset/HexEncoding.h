//
// HexEncoding.h
//
// Library: FastInfoset
// Package: Encodings
// Module:  HexEncoding
//
// A block of octets written as hexadecimal text (built-in algorithm HEX_ENCODING).
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_HexEncoding_INCLUDED
#define FastInfoset_HexEncoding_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/Encoding.h"
#include <string>


namespace Korvo {
namespace FastInfoset {


class FastInfoset_API HexEncoding: public Encoding
	/// A block of octets. content() holds the raw octets, which go on the
	/// wire as they are; text handlers receive them as hexadecimal text (upper-case digits, no line breaks).
{
public:
	using Ptr = Korvo::AutoPtr<HexEncoding>;

	HexEncoding(const char* data, unsigned int length);
		/// Copies length octets. Throws FISEncodingException "Zero-length
		/// data for hex encoding" when length is 0.

	explicit HexEncoding(const std::string& str);
		/// Decodes the hexadecimal text str. Throws FISEncodingException
		/// "Zero-length data for hex encoding" when it holds no octets
		/// and "Invalid hex-encoded data" when it is malformed.

	~HexEncoding();

	static int check(const std::string& str);
		/// The number of octets str decodes to; -1 when str is empty or malformed.

	static void encode(BitStreamWriter& writer, const std::string& str);
		/// Writes the octets of the hexadecimal text str; throws as the text constructor.

	static Korvo::AutoPtr<Encoding> decode(BitStreamReader& reader);
		/// Reads a non-empty octet string; truncated data throws FISParseException.

	static void decode(BitStreamReader& reader, std::string& result);
		/// Reads a non-empty octet string into its hexadecimal text.

	std::string text() const;
		/// The octets as hexadecimal text (upper-case digits, no line breaks).

	int type() const;
		/// EncodingAlgorithm::HEX_ENCODING.

	bool merge(const Encoding& enc);
		/// Appends enc's octets when it is a HexEncoding too.

	void write(BitStreamWriter& writer) const;
	DecodeMethod decodeMethod() const;
	CheckMethod checkMethod() const;
	EncodeMethod encodeMethod() const;

	void handle(Korvo::XML::ContentHandler* pHandler) const;
		/// Reports text() as characters.

	void handle(FISContentHandler* pHandler) const;
		/// Reports the octets with one binaryData() call.

	void createContent();
		/// Nothing to do: the content is the octets themselves.

private:
	HexEncoding();
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_HexEncoding_INCLUDED
