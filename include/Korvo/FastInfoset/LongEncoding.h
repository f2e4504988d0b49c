//
// LongEncoding.h
//
// Library: FastInfoset
// Package: Encodings
// Module:  LongEncoding
//
// A list of signed 64-bit integers (built-in algorithm LONG_ENCODING).
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_LongEncoding_INCLUDED
#define FastInfoset_LongEncoding_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/Encoding.h"
#include <string>
#include <vector>


namespace Korvo {
namespace FastInfoset {


class FastInfoset_API LongEncoding: public Encoding
	/// A list of signed 64-bit integers. On the wire each value takes 8 octets,
	/// big-endian, after the octet length; as text the values are written
	/// in decimal, separated by one space.
	///
	/// Text is accepted only in the canonical form that content() produces:
	/// '+5', '007' and '1,000' are refused.
{
public:
	using Ptr = Korvo::AutoPtr<LongEncoding>;

	explicit LongEncoding(long long value);
		/// A list of one value.

	explicit LongEncoding(const std::vector<long long>& data);
		/// Throws FISEncodingException "Illegal (empty) data for LongEncoding"
		/// when data is empty.

	explicit LongEncoding(const std::string& str);
		/// Parses str. Throws FISEncodingException "Illegal (empty) data for
		/// LongEncoding" for an empty text and "Illegal value string for
		/// LongEncoding" for one that does not parse.

	~LongEncoding();

	static void parse(const std::string& str, std::vector<long long>& data);
		/// Fills data with the values of str, or leaves it empty when str
		/// does not parse.

	static int check(const std::string& str);
		/// 8 times the number of values in str, or 0 when it does not parse.

	static void encode(BitStreamWriter& writer, const std::string& str);
		/// Writes the values of str; throws as the text constructor.

	static Korvo::AutoPtr<Encoding> decode(BitStreamReader& reader);
		/// Reads a value list. A length that is not a multiple of 8 throws
		/// FISEncodingException with the size message; truncated data throws
		/// FISParseException.

	static void decode(BitStreamReader& reader, std::string& result);
		/// Reads a value list into its text form. Here a length that is not a
		/// multiple of 8 throws the size message as FISException.

	static void decode(BitStreamReader& reader, std::vector<long long>& val);
		/// Reads a value list into val; fails as decode(reader).

	const std::vector<long long>& data() const;
		/// The values, in document order.

	int type() const;
		/// EncodingAlgorithm::LONG_ENCODING.

	bool merge(const Encoding& enc);
		/// Appends enc's values when it is a LongEncoding too.

	void write(BitStreamWriter& writer) const;
	DecodeMethod decodeMethod() const;
	CheckMethod checkMethod() const;
	EncodeMethod encodeMethod() const;

	void handle(FISContentHandler* pHandler) const;
		/// Calls pHandler->encodedData(long long) once per value, in order.

	using Encoding::handle;

	void createContent();

private:
	LongEncoding();

	std::vector<long long> _data;
};


//
// inlines
//
inline const std::vector<long long>& LongEncoding::data() const
{
	return _data;
}


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_LongEncoding_INCLUDED
