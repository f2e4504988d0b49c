//
// BitStreamReader.cpp
//
// Library: FastInfoset
// Package: Streams
// Module:  BitStreamReader
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/BitStreamReader.h"
#include "Korvo/FastInfoset/FISException.h"
#include "Korvo/FastInfoset/Utility.h"
#include <algorithm>
#include <cstring>


namespace Korvo {
namespace FastInfoset {


BitStreamReader::BitStreamReader(std::istream& istr):
	_pStream(&istr),
	_cachedBits(0),
	_bitOffset(0),
	_pBuffer(0),
	_pOwnBuffer(new char[BUFFER_SIZE]),
	_pBlockEnd(0)
{
	_pBuffer = reinterpret_cast<const unsigned char*>(_pOwnBuffer);
}


BitStreamReader::BitStreamReader(const char* pBuffer, unsigned int size):
	_pStream(0),
	_cachedBits(0),
	_bitOffset(0),
	_pBuffer(reinterpret_cast<const unsigned char*>(pBuffer)),
	_pOwnBuffer(0),
	_pBlockEnd(reinterpret_cast<const unsigned char*>(pBuffer) + size)
{
	poco_assert (pBuffer || size == 0);

	_cachedBits = static_cast<int>(std::min<unsigned int>(size, MAX_WINDOW))*8;
}


BitStreamReader::~BitStreamReader()
{
	delete [] _pOwnBuffer;
}


bool BitStreamReader::read(unsigned long long& value, int numBits)
{
	poco_assert (checkInputParams(Utility::SIZEOFINT64INBIT, numBits));

	value = 0;
	if (!hasBits(numBits)) return false;
	if (numBits > Utility::SIZEOFINT32INBIT)
	{
		value = static_cast<unsigned long long>(take(numBits - Utility::SIZEOFINT32INBIT)) << 32;
		numBits = Utility::SIZEOFINT32INBIT;
	}
	value |= take(numBits);
	return true;
}


bool BitStreamReader::readOctetsSlow(std::string& str, unsigned int numCharacters)
{
	str.clear();
	if (numCharacters == 0) return true;

	// Reserve only what the data in hand can hold: a forged length must not
	// allocate; the string grows as further data arrives.
	str.reserve(std::min<std::size_t>(numCharacters, availableOctets()));
	if (bitPos() == 0)
		return readAlignedOctets(str, numCharacters);
	else
		return readUnalignedOctets(str, numCharacters);
}


void BitStreamReader::skipSlow(int bits)
{
	poco_assert (bits >= 0);

	if (!_pStream)
	{
		if (bits > cachedBits()) slideWindow();
		if (bits > cachedBits())
		{
			poco_assert (_pStream);
		}
		_bitOffset += bits;
		return;
	}
	int unread = cachedBits();
	while (bits >= unread)
	{
		bits -= unread;
		refillBuffer();
		unread = cachedBits();
		if (unread == 0) return; // end of data: stay at the end
	}
	_bitOffset += bits;
}


bool BitStreamReader::canRead(int numBits)
{
	if (cachedBits() >= numBits) return true;
	if (!_pStream)
	{
		slideWindow();
		return cachedBits() >= numBits;
	}
	return hasBits(numBits);
}


bool BitStreamReader::hasBitsSlow(int numBits)
{
	if (!_pStream) slideWindow();
	refillBufferIfLessThan(numBits);
	return cachedBits() >= numBits;
}


bool BitStreamReader::readAlignedOctets(std::string& str, unsigned int numCharacters)
{
	unsigned int remaining = numCharacters;
	for (;;)
	{
		unsigned int n = std::min<unsigned int>(remaining, cachedBits()/8);
		str.append(reinterpret_cast<const char*>(_pBuffer) + octetOffset(), n);
		_bitOffset += static_cast<int>(n)*8;
		remaining -= n;
		if (remaining == 0) return !eof();
		if (!nextBlock()) throw FISParseException("Unexpected end of stream while parsing octet string");
	}
}


bool BitStreamReader::readUnalignedOctets(std::string& str, unsigned int numCharacters)
{
	// Each octet is the low bits of one buffered octet and the high bits of
	// the next: shift whole octets rather than single bits.
	const int shift = bitPos();
	unsigned int remaining = numCharacters;
	while (remaining > 0)
	{
		unsigned int n = std::min<unsigned int>(remaining, cachedBits()/8);
		if (n == 0)
		{
			if (!hasBits(Utility::SIZEOFCHARINBIT)) return false;
			continue;
		}
		const unsigned char* p = _pBuffer + octetOffset();
		std::size_t oldSize = str.size();
		str.resize(oldSize + n);
		char* pOut = &str[oldSize];
		for (unsigned int i = 0; i < n; ++i)
		{
			pOut[i] = static_cast<char>((p[i] << shift) | (p[i + 1] >> (Utility::SIZEOFCHARINBIT - shift)));
		}
		_bitOffset += static_cast<int>(n)*8;
		remaining -= n;
	}
	return !eof();
}


bool BitStreamReader::nextBlock()
{
	// Only called when every buffered octet has been consumed.
	if (!_pStream) return slideWindow();
	refillBuffer();
	return _cachedBits > 0;
}


bool BitStreamReader::slideWindow()
{
	const unsigned char* pStart = _pBuffer + octetOffset();
	const unsigned char* pWindowEnd = _pBuffer + _cachedBits/8;
	if (pWindowEnd == _pBlockEnd) return false;

	std::size_t window = std::min<std::size_t>(_pBlockEnd - pStart, MAX_WINDOW);
	_pBuffer = pStart;
	_bitOffset &= 7;
	_cachedBits = static_cast<int>(window)*8;
	return true;
}


std::size_t BitStreamReader::availableOctets() const
{
	if (_pStream) return cachedBits()/8;
	return static_cast<std::size_t>(_pBlockEnd - _pBuffer) - octetOffset();
}


void BitStreamReader::refillBufferIfLessThanImpl(int unreadBits)
{
	poco_assert (unreadBits == cachedBits());
	poco_assert (unreadBits >= 0);
	poco_assert (_pStream);

	// The partly read octet moves to the front with the unread ones and keeps its bit position.
	int bytesToCopy = (unreadBits + 7)/8;
	if (unreadBits > 0)
	{
		poco_assert ((_cachedBits % Utility::SIZEOFCHARINBIT) == 0);
		std::memmove(_pOwnBuffer, _pOwnBuffer + _cachedBits/8 - bytesToCopy, bytesToCopy);
	}
	_bitOffset = _bitOffset % 8;
	int n = readFromStream(_pOwnBuffer + bytesToCopy, BUFFER_SIZE - bytesToCopy);
	_cachedBits = (n + bytesToCopy)*8;
}


void BitStreamReader::refillBuffer()
{
	poco_assert (_pStream);

	_cachedBits = readFromStream(_pOwnBuffer, BUFFER_SIZE)*8;
	_bitOffset = 0;
}


int BitStreamReader::readFromStream(char* pBuffer, int length)
{
	_pStream->read(pBuffer, length);
	int n = static_cast<int>(_pStream->gcount());
	if (n == 0 && !_pStream->good() && !_pStream->eof())
		throw Korvo::IOException("error reading stream while parsing Fast Infoset document");
	return n;
}


} } // namespace Korvo::FastInfoset
