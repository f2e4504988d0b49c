//
// PrefixedStreamBuf.h
//
// Library: FastInfoset
// Package: Conversion
// Module:  PrefixedStreamBuf
//
// A stream buffer that gives out octets already read from a stream, then
// the rest of that stream.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_PrefixedStreamBuf_INCLUDED
#define FastInfoset_PrefixedStreamBuf_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include <istream>
#include <streambuf>
#include <string>


namespace Korvo {
namespace FastInfoset {


class PrefixedStreamBuf: public std::streambuf
	/// Reads the first octets of a stream so that they can be looked at, and
	/// then gives out the whole stream as if nothing had been read.
	///
	/// After the head, reads go to the stream itself, as large as the
	/// reader asks for, so the buffer adds no copy.
{
public:
	PrefixedStreamBuf(std::istream& input, std::size_t headSize);
		/// Reads up to headSize octets from input.

	const std::string& head() const;
		/// The octets read so far: headSize of them, or fewer when the
		/// stream is shorter.

	bool rewind();
		/// Puts the stream back where it was before the head was read, so
		/// that it can be read directly instead of through this buffer.
		/// False when the stream cannot seek; call before any read.

protected:
	int_type underflow();
	std::streamsize xsgetn(char* s, std::streamsize n);

private:
	std::streamsize readInput(char* s, std::streamsize n);

	std::istream&  _input;
	std::streampos _start;
	std::string    _head;
	bool           _headGiven;
	char           _buffer[4096];
};


//
// inlines
//
inline const std::string& PrefixedStreamBuf::head() const
{
	return _head;
}


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_PrefixedStreamBuf_INCLUDED
