//
// PrefixedStreamBuf.cpp
//
// Library: FastInfoset
// Package: Conversion
// Module:  PrefixedStreamBuf
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "PrefixedStreamBuf.h"
#include <algorithm>
#include <cstring>


namespace Korvo {
namespace FastInfoset {


PrefixedStreamBuf::PrefixedStreamBuf(std::istream& input, std::size_t headSize):
	_input(input),
	_start(input.good() ? input.tellg() : std::streampos(-1)),
	_headGiven(false)
{
	_head.resize(headSize);
	_head.resize(static_cast<std::size_t>(readInput(&_head[0], static_cast<std::streamsize>(headSize))));
}


bool PrefixedStreamBuf::rewind()
{
	if (_start == std::streampos(-1)) return false;
	const std::ios::iostate state = _input.rdstate();
	_input.clear();
	_input.seekg(_start);
	if (!_input.fail()) return true;
	// Read on through this buffer, as if no seek had been tried.
	_input.clear(state);
	return false;
}


std::streamsize PrefixedStreamBuf::readInput(char* s, std::streamsize n)
{
	// Through the stream, so that its state and exception mask count as
	// they would for a direct reader.
	if (!_input.good()) return 0;
	_input.read(s, n);
	return _input.gcount();
}


PrefixedStreamBuf::int_type PrefixedStreamBuf::underflow()
{
	if (gptr() < egptr()) return traits_type::to_int_type(*gptr());
	if (!_headGiven)
	{
		_headGiven = true;
		if (!_head.empty())
		{
			setg(&_head[0], &_head[0], &_head[0] + _head.size());
			return traits_type::to_int_type(*gptr());
		}
	}
	const std::streamsize n = readInput(_buffer, sizeof(_buffer));
	if (n <= 0) return traits_type::eof();
	setg(_buffer, _buffer, _buffer + n);
	return traits_type::to_int_type(*gptr());
}


std::streamsize PrefixedStreamBuf::xsgetn(char* s, std::streamsize n)
{
	std::streamsize copied = 0;
	if (!_headGiven || gptr() < egptr())
	{
		if (gptr() == egptr() && underflow() == traits_type::eof()) return 0;
		copied = std::min<std::streamsize>(n, egptr() - gptr());
		std::memcpy(s, gptr(), static_cast<std::size_t>(copied));
		gbump(static_cast<int>(copied));
	}
	if (copied < n && gptr() == egptr() && _headGiven) copied += readInput(s + copied, n - copied);
	return copied;
}


} } // namespace Korvo::FastInfoset
