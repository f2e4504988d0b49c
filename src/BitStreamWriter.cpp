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
	_paddingBit(paddingBit),
	_cachedBits(0)
{
	std::memset(_cache, 0, sizeof(_cache));
}


BitStreamWriter::~BitStreamWriter()
{
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


void BitStreamWriter::write(bool value)
{
	if (value) curByte() |= Utility::pow2[curBitOffsetInByte()];
	++_cachedBits;
	writeFullBytes();
}


void BitStreamWriter::writeBits(int cnt, bool value)
{
	const Korvo::UInt64 bits = value ? ~Korvo::UInt64(0) : 0;
	while (cnt > 0)
	{
		int n = std::min(cnt, Utility::SIZEOFINT64INBIT);
		appendBits(bits, n);
		writeFullBytes();
		cnt -= n;
	}
}


void BitStreamWriter::write(unsigned char value, int numOfBits)
{
	write(static_cast<signed char>(value), numOfBits);
}


void BitStreamWriter::write(signed char value, int numOfBits)
{
	poco_assert (checkInputParams(Utility::SIZEOFCHARINBIT, numOfBits));

	if (_cachedBits == 0 && numOfBits == Utility::SIZEOFCHARINBIT)
	{
		writeToStream(reinterpret_cast<const char*>(&value), 1);
		return;
	}
	appendBits(static_cast<unsigned char>(value), numOfBits);
	writeFullBytes();
}


void BitStreamWriter::write(unsigned short value, int numOfBits)
{
	write(static_cast<short>(value), numOfBits);
}


void BitStreamWriter::write(short value, int numOfBits)
{
	poco_assert (checkInputParams(Utility::SIZEOFINT16INBIT, numOfBits));

	if (_cachedBits == 0 && numOfBits == Utility::SIZEOFINT16INBIT)
	{
		Korvo::Int16 bigEndian = Korvo::ByteOrder::toBigEndian(static_cast<Korvo::Int16>(value));
		writeToStream(reinterpret_cast<const char*>(&bigEndian), sizeof(bigEndian));
		return;
	}
	appendBits(static_cast<unsigned short>(value), numOfBits);
	writeFullBytes();
}


void BitStreamWriter::write(unsigned int value, int numOfBits)
{
	write(static_cast<int>(value), numOfBits);
}


void BitStreamWriter::write(int value, int numOfBits)
{
	poco_assert (checkInputParams(Utility::SIZEOFINT32INBIT, numOfBits));

	if (_cachedBits == 0 && numOfBits == Utility::SIZEOFINT32INBIT)
	{
		Korvo::Int32 bigEndian = Korvo::ByteOrder::toBigEndian(static_cast<Korvo::Int32>(value));
		writeToStream(reinterpret_cast<const char*>(&bigEndian), sizeof(bigEndian));
		return;
	}
	appendBits(static_cast<unsigned int>(value), numOfBits);
	writeFullBytes();
}


void BitStreamWriter::write(unsigned long long value, int numOfBits)
{
	write(static_cast<long long>(value), numOfBits);
}


void BitStreamWriter::write(long long value, int numOfBits)
{
	poco_assert (checkInputParams(Utility::SIZEOFINT64INBIT, numOfBits));

	if (_cachedBits == 0 && numOfBits == Utility::SIZEOFINT64INBIT)
	{
		Korvo::Int64 bigEndian = Korvo::ByteOrder::toBigEndian(static_cast<Korvo::Int64>(value));
		writeToStream(reinterpret_cast<const char*>(&bigEndian), sizeof(bigEndian));
		return;
	}
	appendBits(static_cast<unsigned long long>(value), numOfBits);
	writeFullBytes();
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


void BitStreamWriter::complete(bool paddingBit)
{
	if (_cachedBits != 0)
	{
		appendBits(paddingBit ? 0xFF : 0x00, Utility::SIZEOFCHARINBIT - _cachedBits);
		writeFullBytes();
	}
	_pStream->flush();
	if (!_pStream->good()) throw Korvo::IOException("error while writing Fast Infoset document to stream");
}


void BitStreamWriter::complete()
{
	complete(_paddingBit);
}


void BitStreamWriter::appendBits(Korvo::UInt64 value, int numOfBits)
{
	// Fills the open octet, then whole octets, most significant bits first.
	// The cache holds the at most 7 pending bits plus one 64-bit field.
	while (numOfBits > 0)
	{
		int freeBits = Utility::SIZEOFCHARINBIT - (_cachedBits & 7);
		int n = std::min(numOfBits, freeBits);
		numOfBits -= n;
		unsigned char field = static_cast<unsigned char>((value >> numOfBits) & Utility::lowBitMask[n]);
		curByte() |= static_cast<unsigned char>(field << (freeBits - n));
		_cachedBits += n;
	}
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


void BitStreamWriter::writeFullBytesImpl()
{
	poco_assert (_cachedBits >= Utility::SIZEOFCHARINBIT);

	int bytes = _cachedBits / 8;
	writeToStream(reinterpret_cast<const char*>(_cache), bytes);
	std::memset(_cache, 0, bytes);
	_cachedBits -= bytes*8;
	if (_cachedBits > 0)
	{
		_cache[0] = _cache[bytes];
		_cache[bytes] = 0;
	}
}


void BitStreamWriter::writeToStream(const char* buffer, int length)
{
	_pStream->write(buffer, length);
	if (!_pStream->good()) throw Korvo::IOException("error while writing Fast Infoset document to stream");
}


bool BitStreamWriter::checkInputParams(int size, int& numOfBits)
{
	return numOfBits >= 1 && numOfBits <= size;
}


} } // namespace Korvo::FastInfoset
