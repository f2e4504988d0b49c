//
// BitStreamWriter.cpp
//
// Library: FastInfoset
// Package: Streams
// Module:  BitStreamWriter
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/BitStreamWriter.h"
#include "Korvo/FastInfoset/Utility.h"
#include <algorithm>
#include <climits>
#include <cstring>


namespace Korvo {
namespace FastInfoset {


namespace
{
	const std::size_t UNALIGNED_CHUNK = 512;
		// Octets shifted into a stack buffer per stream write.

	const std::size_t MAX_STREAM_WRITE = INT_MAX;
		// writeToStream() takes an int length.
}


BitStreamWriter::BitStreamWriter(std::ostream& str, bool paddingBit):
	_pStream(&str),
	_pIos(&str),
	_paddingBit(paddingBit),
	_finished(false),
	_cachedBits(0)
{
	std::memset(_cache, 0, sizeof(_cache));
}


BitStreamWriter::~BitStreamWriter()
{
	// A flush costs a call into the stream even with nothing to pass.
	if (_finished && _cachedBits == 0) return;
	try
	{
		complete();
	}
	catch (...)
	{
		poco_unexpected();
	}
}


void BitStreamWriter::discardPending()
{
	// Flushed octets are zero already; only the unfinished one holds bits.
	curByte() = 0;
	_cachedBits = 0;
}


__attribute__((noinline)) void BitStreamWriter::passWord(std::streambuf* pBuffer, Korvo::UInt64 word, int total)
{
	const int octets = total >> 3;
	passOctets(pBuffer, word, octets);
	_cache[0] = static_cast<unsigned char>(word >> (56 - 8*octets));
	_cachedBits = total & 7;
}


void BitStreamWriter::passOctets(std::streambuf* pBuffer, Korvo::UInt64 word, int octets)
{
	int i = 0;
	if (pBuffer)
	{
		while (i < octets && !std::streambuf::traits_type::eq_int_type(pBuffer->sputc(static_cast<char>(word >> (56 - 8*i))), std::streambuf::traits_type::eof())) ++i;
	}
	if (i < octets)
	{
		char bytes[8];
		for (int j = i; j < octets; ++j) bytes[j - i] = static_cast<char>(word >> (56 - 8*j));
		writeToStreamSlow(bytes, octets - i);
	}
}


void BitStreamWriter::writeBits(int cnt, bool value)
{
	const Korvo::UInt64 bits = value ? ~Korvo::UInt64(0) : 0;
	while (cnt > 0)
	{
		int n = std::min<int>(cnt, MAX_APPEND);
		appendBits(bits, n);
		cnt -= n;
	}
}


void BitStreamWriter::write(long long value, int numOfBits)
{
	poco_assert (checkInputParams(Utility::SIZEOFINT64INBIT, numOfBits));
	const Korvo::UInt64 bits = static_cast<Korvo::UInt64>(value);
	if (numOfBits > Utility::SIZEOFINT32INBIT)
	{
		appendBits(bits >> 32, numOfBits - Utility::SIZEOFINT32INBIT);
		numOfBits = Utility::SIZEOFINT32INBIT;
	}
	appendBits(bits & 0xFFFFFFFFu, numOfBits);
}


void BitStreamWriter::write(const std::string& str)
{
	writeOctets(str.data(), str.size());
}


void BitStreamWriter::write(const char* str)
{
	if (str) writeOctets(str, std::strlen(str));
}


void BitStreamWriter::write(const char* str, unsigned int numBytes)
{
	if (str) writeOctets(str, numBytes);
}


void BitStreamWriter::writeJoined(Korvo::UInt64 value, int numOfBits, const char* str, std::size_t numBytes)
{
	const int total = _cachedBits + numOfBits;
	if ((total & 7) != 0 || !str || numBytes > JOINED_WRITE)
	{
		appendBits(value, numOfBits);
		if (str) writeOctets(str, numBytes);
		return;
	}
	const Korvo::UInt64 word = (Korvo::UInt64(_cache[0]) << 56) | ((value << (64 - numOfBits)) >> _cachedBits);
	const int fieldOctets = total >> 3;
	char octets[MAX_APPEND / 8 + 1 + JOINED_WRITE];
	for (int i = 0; i < fieldOctets; ++i) octets[i] = static_cast<char>(word >> (56 - 8*i));
	std::memcpy(octets + fieldOctets, str, numBytes);
	writeToStream(octets, fieldOctets + static_cast<int>(numBytes));
	_cache[0] = 0;
	_cachedBits = 0;
}


void BitStreamWriter::complete(bool paddingBit)
{
	if (_cachedBits != 0)
	{
		appendBits(paddingBit ? 0xFF : 0x00, Utility::SIZEOFCHARINBIT - _cachedBits);
	}
	_pStream->flush();
	if (!_pStream->good()) throw Korvo::IOException("error while writing Fast Infoset document to stream");
}


void BitStreamWriter::complete()
{
	complete(_paddingBit);
}


void BitStreamWriter::finish()
{
	complete(_paddingBit);
	_finished = true;
}


void BitStreamWriter::writeOctets(const char* str, std::size_t numBytes)
{
	if (numBytes == 0) return;

	if (_cachedBits != 0)
	{
		writeUnalignedOctets(str, numBytes);
		return;
	}
	while (numBytes > 0)
	{
		std::size_t n = std::min(numBytes, MAX_STREAM_WRITE);
		writeToStream(str, static_cast<int>(n));
		str += n;
		numBytes -= n;
	}
}


void BitStreamWriter::writeUnalignedOctets(const char* str, std::size_t numBytes)
{
	// Every octet straddles the open octet: each output octet is the pending
	// high bits plus the top of the next input octet.
	const int shift = _cachedBits;
	unsigned char pending = _cache[0];
	char chunk[UNALIGNED_CHUNK];
	while (numBytes > 0)
	{
		std::size_t n = std::min(numBytes, UNALIGNED_CHUNK);
		for (std::size_t i = 0; i < n; ++i)
		{
			unsigned char octet = static_cast<unsigned char>(str[i]);
			chunk[i] = static_cast<char>(pending | (octet >> shift));
			pending = static_cast<unsigned char>(octet << (Utility::SIZEOFCHARINBIT - shift));
		}
		writeToStream(chunk, static_cast<int>(n));
		_cache[0] = pending;
		str += n;
		numBytes -= n;
	}
}


void BitStreamWriter::writeToStreamSlow(const char* buffer, int length)
{
	_pStream->write(buffer, length);
	if (!_pStream->good()) throw Korvo::IOException("error while writing Fast Infoset document to stream");
}


} } // namespace Korvo::FastInfoset
