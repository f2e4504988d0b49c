//
// IconvStreamBuf.cpp
//
// Library: FastInfoset
// Package: Conversion
// Module:  IconvStreamBuf
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "IconvStreamBuf.h"
#include "Poco/SAX/SAXException.h"
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>


namespace Korvo {
namespace FastInfoset {


namespace
{
	const std::size_t INPUT_SIZE = 16384;
	const std::size_t OUTPUT_SIZE = 4 * INPUT_SIZE;
	const iconv_t NO_CONVERTER = reinterpret_cast<iconv_t>(static_cast<std::intptr_t>(-1));
	const std::size_t FAILED = static_cast<std::size_t>(-1);
	const std::size_t SHOWN_OCTETS = 2;
}


IconvStreamBuf::IconvStreamBuf(std::streambuf& source, const std::string& encoding):
	_source(source),
	_encoding(encoding),
	_converter(iconv_open("UTF-8", encoding.c_str())),
	_in(INPUT_SIZE),
	_inBegin(0),
	_inEnd(0),
	_sourceEnded(false),
	_out(OUTPUT_SIZE),
	_line(1),
	_column(0),
	_afterCR(false),
	_failureLine(0),
	_failureColumn(0)
{
	if (_converter == NO_CONVERTER) throw Korvo::InvalidArgumentException("Unknown encoding", encoding);
}


IconvStreamBuf::~IconvStreamBuf()
{
	iconv_close(_converter);
}


bool IconvStreamBuf::isKnown(const std::string& encoding)
{
	iconv_t converter = iconv_open("UTF-8", encoding.c_str());
	if (converter == NO_CONVERTER) return false;
	iconv_close(converter);
	return true;
}


IconvStreamBuf::int_type IconvStreamBuf::underflow()
{
	if (gptr() < egptr()) return traits_type::to_int_type(*gptr());
	if (!_failure.empty()) return traits_type::eof();

	for (;;)
	{
		char* pOut = _out.data();
		std::size_t outLeft = _out.size();
		std::size_t result = 0;
		int error = 0;
		if (_inBegin < _inEnd)
		{
			char* pIn = _in.data() + _inBegin;
			std::size_t inLeft = _inEnd - _inBegin;
			result = iconv(_converter, &pIn, &inLeft, &pOut, &outLeft);
			error = errno;
			_inBegin = _inEnd - inLeft;
		}
		else if (_sourceEnded)
		{
			// A stateful encoding may hold back a character until its end.
			result = iconv(_converter, nullptr, nullptr, &pOut, &outLeft);
			error = errno;
		}

		count(_out.data(), pOut);
		if (result == FAILED && error == EILSEQ)
			fail("Invalid octets for encoding", _in.data() + _inBegin, _inEnd - _inBegin);

		if (pOut > _out.data())
		{
			setg(_out.data(), _out.data(), pOut);
			return traits_type::to_int_type(*gptr());
		}
		if (!_failure.empty() || (_sourceEnded && _inBegin == _inEnd)) return traits_type::eof();
		if (!readSource())
		{
			// What is left is the start of a character that never ends.
			if (_inBegin < _inEnd) fail("Incomplete character at the end of the input in encoding", _in.data() + _inBegin, _inEnd - _inBegin);
			if (!_failure.empty()) return traits_type::eof();
		}
	}
}


bool IconvStreamBuf::readSource()
{
	if (_sourceEnded) return false;
	const std::size_t rest = _inEnd - _inBegin;
	std::memmove(_in.data(), _in.data() + _inBegin, rest);
	_inBegin = 0;
	_inEnd = rest;
	const std::streamsize n = _source.sgetn(_in.data() + _inEnd, static_cast<std::streamsize>(_in.size() - _inEnd));
	if (n <= 0)
	{
		_sourceEnded = true;
		return false;
	}
	_inEnd += static_cast<std::size_t>(n);
	return true;
}


void IconvStreamBuf::count(const char* begin, const char* end)
{
	// As expat counts: CR LF, CR and LF each end a line; a column is a
	// character, whatever the number of its octets.
	for (const char* p = begin; p != end; ++p)
	{
		const char c = *p;
		if (c == '\n')
		{
			if (!_afterCR) ++_line;
			_column = 0;
		}
		else if (c == '\r')
		{
			++_line;
			_column = 0;
		}
		else if ((static_cast<unsigned char>(c) & 0xC0) != 0x80)
		{
			++_column;
		}
		_afterCR = c == '\r';
	}
}


void IconvStreamBuf::fail(const char* what, const char* octets, std::size_t length)
{
	std::string message = std::string(what) + " \"" + _encoding + "\":";
	for (std::size_t i = 0; i < length && i < SHOWN_OCTETS; ++i)
	{
		char hex[8];
		std::snprintf(hex, sizeof(hex), " 0x%02X", static_cast<unsigned char>(octets[i]));
		message += hex;
	}
	_failure = message;
	_failureLine = _line;
	_failureColumn = _column;
}


void IconvStreamBuf::throwIfFailed() const
{
	if (!_failure.empty())
		throw Korvo::XML::SAXParseException(_failure, Korvo::XML::XMLString(), Korvo::XML::XMLString(), _failureLine, _failureColumn);
}


} } // namespace Korvo::FastInfoset
