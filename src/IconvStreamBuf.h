//
// IconvStreamBuf.h
//
// Library: FastInfoset
// Package: Conversion
// Module:  IconvStreamBuf
//
// A stream buffer that converts text to UTF-8 with the C library's iconv.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_IconvStreamBuf_INCLUDED
#define FastInfoset_IconvStreamBuf_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include <iconv.h>
#include <streambuf>
#include <string>
#include <vector>


namespace Korvo {
namespace FastInfoset {


class IconvStreamBuf: public std::streambuf
	/// Gives out in UTF-8 the text that it reads, in another encoding, from
	/// a source stream buffer, a block at a time.
	///
	/// Octets that are not valid in the encoding end the text there, without
	/// an exception (the reader of the text would turn it into one of its
	/// own): throwIfFailed() then says which octets they were and where, as
	/// a line and column of the text like an XML parser counts them.
{
public:
	IconvStreamBuf(std::streambuf& source, const std::string& encoding);
		/// Throws InvalidArgumentException when iconv does not know the
		/// encoding.

	~IconvStreamBuf();

	static bool isKnown(const std::string& encoding);
		/// Whether iconv converts from the encoding to UTF-8.

	void throwIfFailed() const;
		/// Throws SAXParseException naming the encoding, the octets that are
		/// not valid in it and their line and column, when the text ended at
		/// such octets.

protected:
	int_type underflow();

private:
	IconvStreamBuf(const IconvStreamBuf&);
	IconvStreamBuf& operator = (const IconvStreamBuf&);

	bool readSource();
		/// Moves the unconverted rest to the front and reads more; false at
		/// the end of the source.
	void count(const char* begin, const char* end);
		/// Advances the line and column over converted text.
	void fail(const char* what, const char* octets, std::size_t length);

	std::streambuf&   _source;
	std::string       _encoding;
	iconv_t           _converter;
	std::vector<char> _in;
	std::size_t       _inBegin;
	std::size_t       _inEnd;
	bool              _sourceEnded;
	std::vector<char> _out;
	int               _line;
	int               _column;
	bool              _afterCR;
	std::string       _failure;
	int               _failureLine;
	int               _failureColumn;
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_IconvStreamBuf_INCLUDED
