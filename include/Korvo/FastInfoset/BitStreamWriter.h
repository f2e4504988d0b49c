//
// BitStreamWriter.h
//
// Library: FastInfoset
// Package: Streams
// Module:  BitStreamWriter
//
// Writes bits, most significant first, onto an output stream.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_BitStreamWriter_INCLUDED
#define FastInfoset_BitStreamWriter_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include <cstddef>
#include <ostream>
#include <string>


namespace Korvo {
namespace FastInfoset {


class FastInfoset_API BitStreamWriter
	/// Writes a Fast Infoset document bit by bit, most significant bit of
	/// each octet first, onto a borrowed output stream. Fewer than eight
	/// bits stay pending between calls; whole octets written at an octet
	/// boundary bypass the bit cache.
	///
	/// A failed write or flush throws IOException.
{
public:
	BitStreamWriter(std::ostream& str, bool paddingBit);
		/// Creates a writer on str. paddingBit fills the last octet in complete()
		/// and in the destructor. The stream must outlive the writer.

	virtual ~BitStreamWriter();
		/// Completes the last octet. Never throws.

	void write(bool value);
		/// Appends one bit.

	void writeBits(int cnt, bool value);
		/// Appends cnt copies of value (nothing when cnt <= 0).

	void write(unsigned char value, int numOfBits);
	void write(signed char value, int numOfBits);
		/// Appends the low numOfBits (1 to 8) bits of value, most significant first.

	void write(unsigned short value, int numOfBits);
	void write(short value, int numOfBits);
		/// Appends the low numOfBits (1 to 16) bits of value.

	void write(unsigned int value, int numOfBits);
	void write(int value, int numOfBits);
		/// Appends the low numOfBits (1 to 32) bits of value.

	void write(unsigned long long value, int numOfBits);
	void write(long long value, int numOfBits);
		/// Appends the low numOfBits (1 to 64) bits of value.

	void write(const std::string& str);
	void write(const char* str);
	void write(const char* str, unsigned int numBytes);
		/// Appends octets; in bulk when the writer is on an octet boundary.

	void complete(bool paddingBit);
		/// Pads the current octet with paddingBit and flushes the stream.

	void complete();
		/// complete() with the padding bit given to the constructor.

	int bitPos() const;
		/// Number of bits already used in the current octet (0 = octet boundary).

	void discardPending();
		/// Drops the bits of the unfinished octet, so that neither complete()
		/// nor the destructor writes them. The next bit starts a new octet.

private:
	BitStreamWriter(const BitStreamWriter&);
	BitStreamWriter& operator = (const BitStreamWriter&);

	void appendBits(Korvo::UInt64 value, int numOfBits);
	void writeOctets(const char* str, std::size_t numBytes);
	void writeUnalignedOctets(const char* str, std::size_t numBytes);
	void writeFullBytes();
	void writeFullBytesImpl();
	void writeToStream(const char* buffer, int length);
	static bool checkInputParams(int size, int& numOfBits);
	unsigned char& curByte();
	int curBitOffsetInByte() const;

	enum
	{
		CACHE_SIZE = 10
	};

	std::ostream* _pStream;
	bool          _paddingBit;
	int           _cachedBits;
	unsigned char _cache[CACHE_SIZE];
};


//
// inlines
//
inline int BitStreamWriter::bitPos() const
{
	return _cachedBits & 7;
}


inline unsigned char& BitStreamWriter::curByte()
{
	return _cache[_cachedBits / 8];
}


inline int BitStreamWriter::curBitOffsetInByte() const
{
	return ~_cachedBits & 7;
}


inline void BitStreamWriter::writeFullBytes()
{
	if (_cachedBits > 7) writeFullBytesImpl();
}


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_BitStreamWriter_INCLUDED
