//
// ShortEncoding.h
//
// Library: FastInfoset
// Package: Encodings
// Module:  ShortEncoding
//
// A list of signed 16-bit integers (built-in algorithm SHORT_ENCODING).
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_ShortEncoding_INCLUDED
#define FastInfoset_ShortEncoding_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/Encoding.h"
#include <string>
#include <vector>


namespace Korvo {
namespace FastInfoset {


class FastInfoset_API ShortEncoding: public Encoding
	/// A list of signed 16-bit integers. On the wire each value takes 2 octets,
	/// big-endian, after the octet length; as text the values are written
	/// in decimal, separated by one space.
	///
	/// Text is accepted only in the canonical form that content() produces:
	/// '+5', '007' and '1,000' are refused.
{
public:
	using Ptr = Korvo::AutoPtr<ShortEncoding>;

	explicit ShortEncoding(short value);
		/// A list of one value.

	explicit ShortEncoding(const std::vector<short>& data);
		/// Throws FISEncodingException "Illegal (empty) data for ShortEncoding"
		/// when data is empty.

	explicit ShortEncoding(const std::string& str);
		/// Parses str. Throws FISEncodingException "Illegal (empty) data for
		/// ShortEncoding" for an empty text and "Illegal value string for
		/// ShortEncoding" for one that does not parse.

	~ShortEncoding();

	static void parse(const std::string& str, std::vector<short>& data);
		/// Fills data with the values of str, or leaves it empty when str
		/// does not parse.

	static int check(const std::string& str);
		/// 2 times the number of values in str, or 0 when it does not parse.

	static void encode(BitStreamWriter& writer, const std::string& str);
		/// Writes the values of str; throws as the text constructor.

	static Korvo::AutoPtr<Encoding> decode(BitStreamReader& reader);
		/// Reads a value list. A length that is not a multiple of 2 throws
		/// FISEncodingException with the size message; truncated data throws
		/// FISParseException.

	static void decode(BitStreamReader& reader, std::string& result);
		/// Reads a value list into its text form. Here a length that is not a
		/// multiple of 2 throws the size message as FISException.

	static void decode(BitStreamReader& reader, std::vector<short>& val);
		/// Reads a value list into val; fails as decode(reader).

	const std::vector<short>& data() const;
		/// The values, in document order.

	int type() const;
		/// EncodingAlgorithm::SHORT_ENCODING.

	bool merge(const Encoding& enc);
		/// Appends enc's values when it is a ShortEncoding too.

	void write(BitStreamWriter& writer) const;
	DecodeMethod decodeMethod() const;
	CheckMethod checkMethod() const;
	EncodeMethod encodeMethod() const;

	void handle(FISContentHandler* pHandler) const;
		/// Calls pHandler->encodedData(short) once per value, in order.

	using Encoding::handle;

	void createContent();

private:
	ShortEncoding();

	std::vector<short> _data;
};


//
// inlines
//
inline const std::vector<short>& ShortEncoding::data() const
{
	return _data;
}


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_ShortEncoding_INCLUDED
