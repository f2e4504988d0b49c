//
// EncodingSupport.h
//
// Library: FastInfoset
// Package: Encodings
// Module:  EncodingSupport
//
// Private helpers that the built-in encodings share: bounded bulk reads of
// octets whose length comes from the document, and appending one value list
// to another.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_EncodingSupport_INCLUDED
#define FastInfoset_EncodingSupport_INCLUDED


#include "Korvo/FastInfoset/BitStreamReader.h"
#include "Korvo/FastInfoset/FISException.h"
#include "Poco/MemoryStream.h"
#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>


namespace Korvo {
namespace FastInfoset {
namespace EncodingSupport {


const unsigned int CHUNK_SIZE = 4096;
	/// Octets read from the stream at a time; a multiple of every value width.

const std::size_t MAX_RESERVE = 65536;
	/// The most octets reserved up front for data whose length a document
	/// states: a forged length then costs memory only as data really arrives.


inline std::size_t boundedReserve(std::size_t count, std::size_t width)
	/// The number of values of width octets worth reserving for count values.
{
	return std::min(count, MAX_RESERVE / width);
}


unsigned int octetLength(std::size_t count, std::size_t width);
	/// count values of width octets in octets; throws FISEncodingException
	/// when that is more than one encoded octet string can state.


template <class Sink>
void readChunks(BitStreamReader& reader, unsigned int length, Sink sink)
	/// Reads length octets (the reader being on an octet boundary) in chunks
	/// of at most CHUNK_SIZE and hands each to sink(const char*, unsigned int).
	/// Running out of data throws FISParseException.
{
	std::string chunk;
	while (length > 0)
	{
		unsigned int n = std::min(length, CHUNK_SIZE);
		if (!reader.read(chunk, n) || chunk.size() != n)
			throw FISParseException("Unexpected end of stream while reading octet string");
		sink(chunk.data(), n);
		length -= n;
	}
}


void readOctets(BitStreamReader& reader, unsigned int length, std::string& octets);
	/// Replaces octets by the next length octets, growing only as they arrive.


void readOctetString(BitStreamReader& reader, std::string& octets);
	/// Reads a non-empty octet string (its length, then its octets).


template <class StreamDecoder>
long decodeText(const std::string& text, std::string* pOctets)
	/// Runs text through StreamDecoder (hexadecimal or base64). Returns the
	/// number of octets it decodes to, or -1 when the text is malformed;
	/// appends the octets to *pOctets when pOctets is given.
{
	Korvo::MemoryInputStream input(text.data(), text.size());
	StreamDecoder decoder(input);
	long count = 0;
	try
	{
		char buffer[512];
		do
		{
			decoder.read(buffer, sizeof(buffer));
			std::streamsize n = decoder.gcount();
			count += static_cast<long>(n);
			if (pOctets)
				pOctets->append(buffer, static_cast<std::size_t>(n));
		}
		while (decoder);
	}
	catch (Korvo::DataFormatException&)
	{
		return -1;
	}
	return decoder.eof() && !decoder.bad() ? count : -1;
}


void hexText(const std::string& octets, std::string& text);
	/// Replaces text by the octets in upper-case hexadecimal, on one line.


void base64Text(const std::string& octets, std::string& text);
	/// Replaces text by the octets in base64, on one line.


template <class T>
void appendValues(std::vector<T>& values, const std::vector<T>& more)
	/// Appends more to values; more may be values itself.
{
	if (&values != &more)
	{
		values.insert(values.end(), more.begin(), more.end());
		return;
	}
	// Doubling in place: reserve first so that no element moves while it is copied.
	const std::size_t n = values.size();
	values.reserve(2*n);
	for (std::size_t i = 0; i < n; ++i)
		values.push_back(values[i]);
}


} } } // namespace Korvo::FastInfoset::EncodingSupport


#endif // FastInfoset_EncodingSupport_INCLUDED
