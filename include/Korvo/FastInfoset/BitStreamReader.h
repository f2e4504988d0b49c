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
#include <istream>
#include <string>


namespace Korvo {
namespace FastInfoset {


class FastInfoset_API BitStreamReader
	/// Delivers a Fast Infoset document bit by bit, most significant bit of
	/// each octet first, either from an input stream through a 1024-octet
	/// refillable buffer or from a caller's memory block read in place.
	///
	/// Reads report running out of data by returning false.
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

	bool peek(unsigned char& value, int numBits);
	bool peek(char& value, int numBits);
		/// Returns the next numBits (1 to 8) bits without consuming them.

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

	void skip(int bits);
	void skipToByteStart();

	bool eof() const;
	int bitPos() const;
		/// Number of bits already consumed in the current octet.
	int cachedBits() const;
		/// Number of buffered bits not yet read.

private:
	BitStreamReader(const BitStreamReader&);
	BitStreamReader& operator = (const BitStreamReader&);

	void refillBufferIfLessThan(int bits);
	void refillBufferIfLessThanImpl(int unreadBits);
	void refillBuffer();
	int readFromStream(char* pBuffer, int length);
	bool checkInputParams(int size, int& numOfBits) const;
	unsigned char curByte() const;

	std::istream* _pStream;
	int           _cachedBits;
	int           _bitOffset;
	char*         _pBuffer;
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


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_BitStreamReader_INCLUDED
