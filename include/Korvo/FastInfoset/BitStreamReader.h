//
// BitStreamReader.h
//
// Library: FastInfoset
// Package: Streams
// Module:  BitStreamReader
//
// Reads bits, most significant first, from a stream or a memory block.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_BitStreamReader_INCLUDED
#define FastInfoset_BitStreamReader_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/Utility.h"
#include <algorithm>
#include <cstddef>
#include <istream>
#include <string>


namespace Korvo {
namespace FastInfoset {


class FastInfoset_API BitStreamReader
	/// Delivers a Fast Infoset document bit by bit, most significant bit of
	/// each octet first, either from an input stream through a 1024-octet
	/// refillable buffer or from a caller's memory block read in place.
	///
	/// Reads report running out of a stream's data by returning false and
	/// consume nothing then; a memory reader asked for more than its block
	/// fails the assertion "_pStream". A stream error throws IOException.
{
public:
	enum
	{
		BUFFER_SIZE = 1024
	};

	explicit BitStreamReader(std::istream& istr);
		/// Creates a reader on istr. Nothing is read until the first read.

	BitStreamReader(const char* pBuffer, unsigned int size);
		/// Creates a reader over a memory block, which is neither copied nor owned.

	~BitStreamReader();

	bool read(bool& value);
		/// Reads one bit.

	bool peek(unsigned char& value, int numBits);
	bool peek(char& value, int numBits);
		/// Returns the next numBits (1 to 8) bits without consuming them.

	bool peek(unsigned int& value, int numBits);
		/// Returns the next numBits (1 to 32) bits without consuming them.

	bool read(unsigned char& value, int numBits);
	bool read(char& value, int numBits);
		/// Reads 1 to 8 bits, right-aligned.

	bool read(unsigned short& value, int numBits);
	bool read(short& value, int numBits);
		/// Reads 1 to 16 bits, right-aligned.

	bool read(unsigned int& value, int numBits);
		/// Reads 1 to 32 bits, right-aligned.

	bool read(unsigned long long& value, int numBits);
		/// Reads 1 to 64 bits, right-aligned.

	bool read(std::string& str, unsigned int numCharacters);
		/// Reads numCharacters octets into str; in bulk at an octet boundary.
		/// At an octet boundary, data that ends early throws FISParseException;
		/// elsewhere the octets that exist are read and the result is false.

	void skip(int bits);
		/// Skips bits; at the end of the data the reader stays at the end.
	void skipToByteStart();
		/// Skips the rest of a partly read octet.

	bool canRead(int numBits);
		/// True when numBits (up to 64) more bits can be read; refills a stream reader
		/// when needed. Unlike a read, it never fails an assertion on a
		/// memory reader, so a caller can tell short data from bad data.

	const unsigned char* octets(std::size_t wanted, std::size_t& available);
		/// At an octet boundary: the buffered octets from the next one on, to
		/// be read in place, and their number. A stream reader first refills
		/// its buffer when fewer than wanted (at most BUFFER_SIZE) are
		/// buffered; fewer are available only at the end of the data.

	void skipOctets(std::size_t count);
		/// Skips count of the octets that octets() made available.

	bool eof() const;
		/// True when no data is buffered and none can follow. A buffer whose
		/// bits have all been read still counts as data.
	int bitPos() const;
		/// Number of bits already consumed in the current octet.
	int cachedBits() const;
		/// Number of buffered bits not yet read.

private:
	BitStreamReader(const BitStreamReader&);
	BitStreamReader& operator = (const BitStreamReader&);

	enum
	{
		MAX_WINDOW = 1 << 27
			/// A large memory block is read through windows of at most this
			/// many octets, so that bit offsets always fit in an int.
	};

	bool hasBits(int numBits);
		/// Refills when fewer than numBits are buffered; true when numBits are.
	bool hasBitsSlow(int numBits);
		/// hasBits once the buffered bits have been found too few.
	void skipSlow(int bits);
		/// skip when the bits reach the end of the buffered data.
	Korvo::UInt32 look(int numBits) const;
	Korvo::UInt32 take(int numBits);
		/// The next numBits (1 to 32) buffered bits, right-aligned.
	bool readOctetsSlow(std::string& str, unsigned int numCharacters);
		/// read(str, numCharacters) when the octets are not all buffered at an octet boundary.
	bool readAlignedOctets(std::string& str, unsigned int numCharacters);
	bool readUnalignedOctets(std::string& str, unsigned int numCharacters);
	bool nextBlock();
	bool slideWindow();
	std::size_t availableOctets() const;

	void refillBufferIfLessThan(int bits);
	void refillBufferIfLessThanImpl(int unreadBits);
	void refillBuffer();
	int readFromStream(char* pBuffer, int length);
	bool checkInputParams(int size, int& numOfBits) const;
	unsigned char curByte() const;
	std::size_t octetOffset() const;
		/// The buffered octet that holds the next bit.

	std::istream*        _pStream;
	int                  _cachedBits;
	int                  _bitOffset;
	const unsigned char* _pBuffer;
		/// The own buffer of a stream reader, or the window of a memory reader.
	char*                _pOwnBuffer;
	const unsigned char* _pBlockEnd;
		/// End of the caller's block (memory reader only).
};


//
// inlines
//
inline int BitStreamReader::bitPos() const
{
	return _bitOffset & 7;
}


inline int BitStreamReader::cachedBits() const
{
	return _cachedBits - _bitOffset;
}


inline bool BitStreamReader::eof() const
{
	return _cachedBits == 0 && (!_pStream || _pStream->eof());
}


inline std::size_t BitStreamReader::octetOffset() const
{
	// The offset is never negative: a shift divides it.
	return static_cast<unsigned int>(_bitOffset) >> 3;
}


inline unsigned char BitStreamReader::curByte() const
{
	return _pBuffer[octetOffset()];
}


inline void BitStreamReader::refillBufferIfLessThan(int bits)
{
	if (cachedBits() < bits) refillBufferIfLessThanImpl(cachedBits());
}


inline void BitStreamReader::skip(int bits)
{
	// Bits that stay inside the buffer need no refill and no window move.
	if (bits >= 0 && bits < cachedBits())
		_bitOffset += bits;
	else
		skipSlow(bits);
}


inline void BitStreamReader::skipToByteStart()
{
	int modVal = _bitOffset & 7;
	if (modVal != 0) _bitOffset += 8 - modVal;

	poco_assert (cachedBits() >= 0);
	poco_assert (_bitOffset % Utility::SIZEOFCHARINBIT == 0);
}


inline bool BitStreamReader::checkInputParams(int size, int& numOfBits) const
{
	return numOfBits >= 1 && numOfBits <= size;
}


inline bool BitStreamReader::hasBits(int numBits)
{
	return cachedBits() >= numBits || hasBitsSlow(numBits);
}


inline Korvo::UInt32 BitStreamReader::look(int numBits) const
{
	// The bits span at most five octets; the first is masked to its unread part.
	const unsigned char* p = _pBuffer + octetOffset();
	const int used = _bitOffset & 7;
	int have = Utility::SIZEOFCHARINBIT - used;
	Korvo::UInt64 bits = *p & (0xFFu >> used);
	while (have < numBits)
	{
		bits = (bits << 8) | *++p;
		have += Utility::SIZEOFCHARINBIT;
	}
	return static_cast<Korvo::UInt32>(bits >> (have - numBits));
}


inline Korvo::UInt32 BitStreamReader::take(int numBits)
{
	Korvo::UInt32 bits = look(numBits);
	_bitOffset += numBits;
	return bits;
}


inline bool BitStreamReader::read(bool& value)
{
	if (!hasBits(1))
	{
		value = false;
		return false;
	}
	value = (curByte() & Utility::revertedPow2[_bitOffset & 7]) != 0;
	++_bitOffset;
	return true;
}


inline bool BitStreamReader::peek(unsigned char& value, int numBits)
{
	poco_assert (checkInputParams(Utility::SIZEOFCHARINBIT, numBits));

	bool ok = hasBits(numBits);
	value = ok ? static_cast<unsigned char>(look(numBits)) : 0;
	return ok;
}


inline bool BitStreamReader::peek(char& value, int numBits)
{
	return peek(reinterpret_cast<unsigned char&>(value), numBits);
}


inline bool BitStreamReader::peek(unsigned int& value, int numBits)
{
	poco_assert (checkInputParams(Utility::SIZEOFINT32INBIT, numBits));

	bool ok = hasBits(numBits);
	value = ok ? look(numBits) : 0;
	return ok;
}


inline bool BitStreamReader::read(unsigned char& value, int numBits)
{
	bool ok = peek(value, numBits);
	if (ok) _bitOffset += numBits;
	return ok;
}


inline bool BitStreamReader::read(char& value, int numBits)
{
	return read(reinterpret_cast<unsigned char&>(value), numBits);
}


inline bool BitStreamReader::read(unsigned short& value, int numBits)
{
	poco_assert (checkInputParams(Utility::SIZEOFINT16INBIT, numBits));

	bool ok = hasBits(numBits);
	value = ok ? static_cast<unsigned short>(take(numBits)) : 0;
	return ok;
}


inline bool BitStreamReader::read(short& value, int numBits)
{
	return read(reinterpret_cast<unsigned short&>(value), numBits);
}


inline bool BitStreamReader::read(unsigned int& value, int numBits)
{
	poco_assert (checkInputParams(Utility::SIZEOFINT32INBIT, numBits));

	bool ok = hasBits(numBits);
	value = ok ? take(numBits) : 0;
	return ok;
}


inline const unsigned char* BitStreamReader::octets(std::size_t wanted, std::size_t& available)
{
	poco_assert_dbg (bitPos() == 0);
	if (static_cast<std::size_t>(cachedBits()/8) < wanted)
	{
		if (_pStream)
			refillBufferIfLessThan(static_cast<int>(std::min<std::size_t>(wanted, BUFFER_SIZE))*8);
		else
			slideWindow();
	}
	available = static_cast<std::size_t>(cachedBits()/8);
	return _pBuffer + octetOffset();
}


inline void BitStreamReader::skipOctets(std::size_t count)
{
	poco_assert_dbg (count <= static_cast<std::size_t>(cachedBits()/8));
	_bitOffset += static_cast<int>(count)*8;
}


inline bool BitStreamReader::read(std::string& str, unsigned int numCharacters)
{
	// A string that lies whole in the buffer at an octet boundary, the
	// usual case, is copied in one go.
	if (bitPos() == 0 && numCharacters - 1 < static_cast<unsigned int>(cachedBits()/8))
	{
		str.assign(reinterpret_cast<const char*>(_pBuffer) + octetOffset(), numCharacters);
		_bitOffset += static_cast<int>(numCharacters)*8;
		return true;
	}
	return readOctetsSlow(str, numCharacters);
}


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_BitStreamReader_INCLUDED
