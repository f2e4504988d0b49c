//
// UUIDEncoding.h
//
// Library: FastInfoset
// Package: Encodings
// Module:  UUIDEncoding
//
// A list of UUIDs (built-in algorithm UUID_ENCODING).
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_UUIDEncoding_INCLUDED
#define FastInfoset_UUIDEncoding_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/Encoding.h"
#include <string>
#include <vector>


namespace Korvo {
namespace FastInfoset {


class FastInfoset_API UUIDEncoding: public Encoding
	/// A list of UUIDs. On the wire: the octet length, then 16 octets per
	/// UUID in network byte order. As text: the UUIDs' usual hexadecimal
	/// form (groups joined by "-"), separated by one space.
{
public:
	using Ptr = Korvo::AutoPtr<UUIDEncoding>;

	explicit UUIDEncoding(const Korvo::UUID& value);
		/// A list of one UUID.

	explicit UUIDEncoding(const std::vector<Korvo::UUID>& data);
		/// Throws FISEncodingException "Illegal (empty) data for UUIDEncoding"
		/// when data is empty.

	explicit UUIDEncoding(const std::string& str);
		/// Parses str. Throws FISEncodingException "Illegal (empty) data for
		/// UUIDEncoding" for an empty text and "Illegal value string for
		/// UUIDEncoding" for one that does not parse.

	~UUIDEncoding();

	static void parse(const std::string& str, std::vector<Korvo::UUID>& data);
		/// Fills data with the UUIDs of str, or leaves it empty when a token
		/// is not a UUID.

	static int check(const std::string& str);
		/// 16 times the number of UUIDs in str, or 0 when it does not parse.

	static void encode(BitStreamWriter& writer, const std::string& str);
		/// Writes the UUIDs of str; throws as the text constructor.

	static Korvo::AutoPtr<Encoding> decode(BitStreamReader& reader);
		/// Reads a UUID list. A length that is not a multiple of 16 throws
		/// FISEncodingException "Illegal size entry for Korvo::UUID value";
		/// truncated data throws FISParseException.

	static void decode(BitStreamReader& reader, std::string& result);
		/// Reads a UUID list into its text form. Here a length that is not a
		/// multiple of 16 throws the size message as FISException.

	static void decode(BitStreamReader& reader, std::vector<Korvo::UUID>& val);
		/// Reads a UUID list into val; fails as decode(reader).

	const std::vector<Korvo::UUID>& data() const;
		/// The UUIDs, in document order.

	int type() const;
		/// EncodingAlgorithm::UUID_ENCODING.

	bool merge(const Encoding& enc);
		/// Appends enc's UUIDs when it is a UUIDEncoding too.

	void write(BitStreamWriter& writer) const;
	DecodeMethod decodeMethod() const;
	CheckMethod checkMethod() const;
	EncodeMethod encodeMethod() const;

	void handle(FISContentHandler* pHandler) const;
		/// Calls pHandler->encodedData(const UUID&) once per UUID, in order.

	using Encoding::handle;

	void createContent();

private:
	UUIDEncoding();

	std::vector<Korvo::UUID> _data;
};


//
// inlines
//
inline const std::vector<Korvo::UUID>& UUIDEncoding::data() const
{
	return _data;
}


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_UUIDEncoding_INCLUDED
