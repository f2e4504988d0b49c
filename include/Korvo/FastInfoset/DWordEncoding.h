//
// DWordEncoding.h
//
// Library: FastInfoset
// Package: Encodings
// Module:  DWordEncoding
//
// A block of octets written as base64 text (built-in algorithm DWORD_ENCODING).
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_DWordEncoding_INCLUDED
#define FastInfoset_DWordEncoding_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/Encoding.h"
#include <string>


namespace Korvo {
namespace FastInfoset {


class FastInfoset_API DWordEncoding: public Encoding
	/// A block of octets. content() holds the raw octets, which go on the
	/// wire as they are; text handlers receive them as base64 text (no line breaks).
{
public:
	using Ptr = Korvo::AutoPtr<DWordEncoding>;

	DWordEncoding(const char* data, unsigned int length);
		/// Copies length octets. Throws FISEncodingException "Zero-length
		/// data for dword encoding" when length is 0.

	explicit DWordEncoding(const std::string& str);
		/// Decodes the base64 text str. Throws FISEncodingException
		/// "Zero-length data for dword encoding" when it holds no octets
		/// and "Invalid base64-encoded data" when it is malformed.

	~DWordEncoding();

	static int check(const std::string& str);
		/// The number of octets str decodes to; -1 when str is empty or malformed.

	static void encode(BitStreamWriter& writer, const std::string& str);
		/// Writes the octets of the base64 text str; throws as the text constructor.

	static Korvo::AutoPtr<Encoding> decode(BitStreamReader& reader);
		/// Reads a non-empty octet string; truncated data throws FISParseException.

	static void decode(BitStreamReader& reader, std::string& result);
		/// Reads a non-empty octet string into its base64 text.

	std::string text() const;
		/// The octets as base64 text (no line breaks).

	int type() const;
		/// EncodingAlgorithm::DWORD_ENCODING.

	bool merge(const Encoding& enc);
		/// Appends enc's octets when it is a DWordEncoding too.

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
	DWordEncoding();
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_DWordEncoding_INCLUDED
