//
// BoolEncoding.h
//
// Library: FastInfoset
// Package: Encodings
// Module:  BoolEncoding
//
// A list of booleans packed one bit each (built-in algorithm BOOL_ENCODING).
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_BoolEncoding_INCLUDED
#define FastInfoset_BoolEncoding_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/Encoding.h"
#include <string>
#include <vector>


namespace Korvo {
namespace FastInfoset {


class FastInfoset_API BoolEncoding: public Encoding
	/// A list of booleans. On the wire: the octet length, a 4-bit count of
	/// the unused bits at the end, then one bit per value (1 = true). As
	/// text: the words "true" and "false", separated by one space.
{
public:
	using Ptr = Korvo::AutoPtr<BoolEncoding>;

	static const std::string VAL_TRUE;
		/// "true"
	static const std::string VAL_FALSE;
		/// "false"

	explicit BoolEncoding(bool value);
		/// A list of one value.

	explicit BoolEncoding(const std::vector<bool>& data);
		/// Throws FISEncodingException "Illegal (empty) data for BoolEncoding"
		/// when data is empty.

	explicit BoolEncoding(const std::string& str);
		/// Parses str. Throws FISEncodingException "Illegal (empty) data for
		/// BoolEncoding" for an empty text and "Illegal value string for
		/// BoolEncoding" for one that does not parse.

	explicit BoolEncoding(const char* str);
		/// As BoolEncoding(std::string(str)); without it a literal text
		/// would turn into the single value true.

	~BoolEncoding();

	static void parse(const std::string& str, std::vector<bool>& data);
		/// Fills data with the values of str, or leaves it empty when a token
		/// is neither "true" nor "false".

	static int check(const std::string& str);
		/// (number of values + 7) / 8, or 0 when str does not parse. This
		/// leaves out the 4-bit header, so it can be one octet less than
		/// write() produces: it only ranks algorithms.

	static void encode(BitStreamWriter& writer, const std::string& str);
		/// Writes the values of str; throws as the text constructor.

	static Korvo::AutoPtr<Encoding> decode(BitStreamReader& reader);
		/// Reads a value list. Truncated data, or an unused-bit count above 7
		/// or beyond the data, throws FISParseException.

	static void decode(BitStreamReader& reader, std::string& result);
		/// Reads a value list into its text form; fails as decode(reader).

	static void decode(BitStreamReader& reader, std::vector<bool>& val);
		/// Reads a value list into val; fails as decode(reader).

	const std::vector<bool>& data() const;
		/// The values, in document order.

	int type() const;
		/// EncodingAlgorithm::BOOL_ENCODING.

	bool merge(const Encoding& enc);
		/// Appends enc's values when it is a BoolEncoding too.

	void write(BitStreamWriter& writer) const;
	DecodeMethod decodeMethod() const;
	CheckMethod checkMethod() const;
	EncodeMethod encodeMethod() const;

	void handle(FISContentHandler* pHandler) const;
		/// Calls pHandler->encodedData(bool) once per value, in order.

	using Encoding::handle;

	void createContent();

private:
	BoolEncoding();

	std::vector<bool> _data;
};


//
// inlines
//
inline const std::vector<bool>& BoolEncoding::data() const
{
	return _data;
}


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_BoolEncoding_INCLUDED
