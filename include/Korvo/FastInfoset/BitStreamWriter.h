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
#include "Korvo/FastInfoset/Utility.h"
#include <cstddef>
#include <cstring>
#include <ios>
#include <streambuf>
#include <ostream>
#include <string>


namespace Korvo {
namespace FastInfoset {


class FastInfoset_API BitStreamWriter
	/// Writes a Fast Infoset document bit by bit, most significant bit of
	/// each octet first, onto a borrowed output stream. Fewer than eight
	/// bits stay pending between calls; every call passes the octets it
	/// completes to the stream before it returns.
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

	void write(Korvo::UInt64 value, int numOfBits, const char* str, std::size_t numBytes);
		/// Appends the low numOfBits (1 to 56) bits of value, then numBytes
		/// octets of str: a field and the string it introduces. When the
		/// field ends on an octet boundary and the string is short, both
		/// reach the stream in one write.

	void complete(bool paddingBit);
		/// Pads the current octet with paddingBit and flushes the stream.

	void complete();
		/// complete() with the padding bit given to the constructor.

	void finish();
		/// complete() for the end of the document: the destructor then
		/// leaves the stream alone unless an octet was left open since.

	int bitPos() const;
		/// Number of bits already used in the current octet (0 = octet boundary).

	void discardPending();
		/// Drops the bits of the unfinished octet, so that neither complete()
		/// nor the destructor writes them. The next bit starts a new octet.

private:
	BitStreamWriter(const BitStreamWriter&);
	BitStreamWriter& operator = (const BitStreamWriter&);

	void appendBits(Korvo::UInt64 value, int numOfBits);
		/// Appends the low numOfBits (0 to 56) bits of value and passes the
		/// octets this completes to the stream.
	void appendOctets(Korvo::UInt64 value, int numOfBits);
		/// appendBits() when the bits complete at least one octet.
	void passWord(std::streambuf* pBuffer, Korvo::UInt64 word, int total);
		/// appendOctets() for a buffer without room or a stream that is not
		/// plain: passes the whole octets of the total bits of word and keeps
		/// the rest. Apart, so that the inline path saves few registers.
	void passOctets(std::streambuf* pBuffer, Korvo::UInt64 word, int octets);
		/// Passes the first octets octets of word, most significant first,
		/// into pBuffer when it is not null (a plain buffer), and those it
		/// refuses, or all, through the stream.
	void writeJoined(Korvo::UInt64 value, int numOfBits, const char* str, std::size_t numBytes);
		/// write() of a field and its string where the put area cannot take
		/// them at once.
	void writeOctets(const char* str, std::size_t numBytes);
	void writeUnalignedOctets(const char* str, std::size_t numBytes);
	std::streambuf* plainBuffer() const;
	char* room(std::streambuf*& pBuffer, std::size_t count) const;
		/// Where count octets can go straight into the memory of a plain
		/// buffer (pBuffer, null when the stream is not plain), or null
		/// when its put area has no room for them.
	static void copyOctets(char* dest, const char* src, std::size_t count);
	void writeToStream(const char* buffer, int length);
	void writeToStreamSlow(const char* buffer, int length);
	static bool checkInputParams(int size, int& numOfBits);
	unsigned char& curByte();
	int curBitOffsetInByte() const;

	class PutArea: public std::streambuf
		/// Reaches the put area of any stream buffer, whose pointers are
		/// protected: octets that fit are stored there as sputc() and
		/// sputn() would store them, without a call per octet.
	{
	public:
		static char* next(std::streambuf& buffer)
		{
			return (buffer.*&PutArea::pptr)();
		}

		static char* end(std::streambuf& buffer)
		{
			return (buffer.*&PutArea::epptr)();
		}

		static void bump(std::streambuf& buffer, int count)
		{
			(buffer.*&PutArea::pbump)(count);
		}
	};

	enum
	{
		CACHE_SIZE = 10,
		MAX_APPEND = 56,
		SHORT_WRITE = 8,
			/// Octets passed one at a time into the stream buffer.
		JOINED_WRITE = 64,
			/// Longest string written together with its field through the stream.
		DIRECT_WRITE = 0x3FFFFFFF
			/// Longest string stored straight into the put area.
	};

	std::ostream* _pStream;
	std::ios*     _pIos;
		/// The stream's state and buffer, reached without the virtual base's offset.
	bool          _paddingBit;
	bool          _finished;
		/// Set by finish(): the stream has every octet, flushed.
	int           _cachedBits;
		/// Pending bits, 0 to 7 between calls, in the high bits of _cache[0].
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


inline bool BitStreamWriter::checkInputParams(int size, int& numOfBits)
{
	return numOfBits >= 1 && numOfBits <= size;
}


inline __attribute__((always_inline)) std::streambuf* BitStreamWriter::plainBuffer() const
{
	// A stream that is good, tied to nothing and not unit-buffered can take
	// octets straight into its buffer; ostream::write would build a sentry
	// and make a virtual call for each of them.
	std::streambuf* pBuffer = _pIos->rdbuf();
	return pBuffer && _pIos->rdstate() == std::ios_base::goodbit && !_pIos->tie() && !(_pIos->flags() & std::ios_base::unitbuf) ? pBuffer : nullptr;
}


inline __attribute__((always_inline)) char* BitStreamWriter::room(std::streambuf*& pBuffer, std::size_t count) const
{
	pBuffer = plainBuffer();
	if (!pBuffer) return nullptr;
	char* p = PutArea::next(*pBuffer);
	return static_cast<std::size_t>(PutArea::end(*pBuffer) - p) >= count ? p : nullptr;
}


inline void BitStreamWriter::copyOctets(char* dest, const char* src, std::size_t count)
{
	// Short strings, the usual ones, as two words that may overlap, never
	// touching an octet beyond dest + count: a buffer may show what lies there.
	if (count > 16)
	{
		std::memcpy(dest, src, count);
	}
	else if (count >= 8)
	{
		Korvo::UInt64 a, b;
		std::memcpy(&a, src, 8);
		std::memcpy(&b, src + count - 8, 8);
		std::memcpy(dest, &a, 8);
		std::memcpy(dest + count - 8, &b, 8);
	}
	else if (count >= 4)
	{
		Korvo::UInt32 a, b;
		std::memcpy(&a, src, 4);
		std::memcpy(&b, src + count - 4, 4);
		std::memcpy(dest, &a, 4);
		std::memcpy(dest + count - 4, &b, 4);
	}
	else
	{
		for (std::size_t i = 0; i < count; ++i) dest[i] = src[i];
	}
}


inline void BitStreamWriter::writeToStream(const char* buffer, int length)
{
	std::streambuf* pBuffer;
	if (char* p = room(pBuffer, static_cast<std::size_t>(length)))
	{
		copyOctets(p, buffer, static_cast<std::size_t>(length));
		PutArea::bump(*pBuffer, length);
		return;
	}
	if (pBuffer)
	{
		// What ostream::write would do for such a stream, without its sentry.
		int i = 0;
		if (length <= SHORT_WRITE)
		{
			while (i < length && !std::streambuf::traits_type::eq_int_type(pBuffer->sputc(buffer[i]), std::streambuf::traits_type::eof())) ++i;
		}
		else i = static_cast<int>(pBuffer->sputn(buffer, length));
		if (i == length) return;
		buffer += i;
		length -= i;
	}
	writeToStreamSlow(buffer, length);
}


inline __attribute__((always_inline)) void BitStreamWriter::appendOctets(Korvo::UInt64 value, int numOfBits)
{
	// The pending bits and the new ones in one word, most significant
	// first; the whole octets of it go to the stream, the rest stays.
	// A plain buffer with room takes them straight into its memory.
	const int total = _cachedBits + numOfBits;
	const Korvo::UInt64 word = (Korvo::UInt64(_cache[0]) << 56) | ((value << (64 - numOfBits)) >> _cachedBits);
	const int octets = total >> 3;
	std::streambuf* pBuffer;
	if (char* p = room(pBuffer, static_cast<std::size_t>(octets)))
	{
		for (int i = 0; i < octets; ++i) p[i] = static_cast<char>(word >> (56 - 8*i));
		PutArea::bump(*pBuffer, octets);
		_cache[0] = static_cast<unsigned char>(word >> (56 - 8*octets));
		_cachedBits = total & 7;
		return;
	}
	passWord(pBuffer, word, total);
}


inline __attribute__((always_inline)) void BitStreamWriter::appendBits(Korvo::UInt64 value, int numOfBits)
{
	// Always inline: most fields leave the octet open or end it, and a call
	// would cost more than either.
	// Bits that leave the open octet unfinished are only put into it.
	const int total = _cachedBits + numOfBits;
	if (total < Utility::SIZEOFCHARINBIT)
	{
		_cache[0] = static_cast<unsigned char>(_cache[0] | ((value & ((Korvo::UInt64(1) << numOfBits) - 1)) << (Utility::SIZEOFCHARINBIT - total)));
		_cachedBits = total;
	}
	else appendOctets(value, numOfBits);
}


inline __attribute__((always_inline)) void BitStreamWriter::write(Korvo::UInt64 value, int numOfBits, const char* str, std::size_t numBytes)
{
	poco_assert (numOfBits >= 1 && numOfBits <= MAX_APPEND);
	// A field that ends an octet and its string, straight into the put area.
	const int total = _cachedBits + numOfBits;
	std::streambuf* pBuffer;
	char* p = (total & 7) == 0 && str && numBytes <= DIRECT_WRITE ? room(pBuffer, static_cast<std::size_t>(total >> 3) + numBytes) : nullptr;
	if (!p)
	{
		writeJoined(value, numOfBits, str, numBytes);
		return;
	}
	const Korvo::UInt64 word = (Korvo::UInt64(_cache[0]) << 56) | ((value << (64 - numOfBits)) >> _cachedBits);
	const int fieldOctets = total >> 3;
	if (static_cast<std::size_t>(fieldOctets) + numBytes >= 8)
	{
		// The field as one word, most significant octet first: the string
		// then covers what lies beyond the field's octets.
#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
		const Korvo::UInt64 octets = __builtin_bswap64(word);
#else
		const Korvo::UInt64 octets = word;
#endif
		std::memcpy(p, &octets, 8);
	}
	else
	{
		for (int i = 0; i < fieldOctets; ++i) p[i] = static_cast<char>(word >> (56 - 8*i));
	}
	copyOctets(p + fieldOctets, str, numBytes);
	PutArea::bump(*pBuffer, fieldOctets + static_cast<int>(numBytes));
	_cache[0] = 0;
	_cachedBits = 0;
}


inline __attribute__((always_inline)) void BitStreamWriter::write(bool value)
{
	appendBits(value ? 1 : 0, 1);
}


inline __attribute__((always_inline)) void BitStreamWriter::write(unsigned char value, int numOfBits)
{
	write(static_cast<signed char>(value), numOfBits);
}


inline __attribute__((always_inline)) void BitStreamWriter::write(signed char value, int numOfBits)
{
	poco_assert (checkInputParams(Utility::SIZEOFCHARINBIT, numOfBits));
	appendBits(static_cast<unsigned char>(value), numOfBits);
}


inline __attribute__((always_inline)) void BitStreamWriter::write(unsigned short value, int numOfBits)
{
	write(static_cast<short>(value), numOfBits);
}


inline __attribute__((always_inline)) void BitStreamWriter::write(short value, int numOfBits)
{
	poco_assert (checkInputParams(Utility::SIZEOFINT16INBIT, numOfBits));
	appendBits(static_cast<unsigned short>(value), numOfBits);
}


inline __attribute__((always_inline)) void BitStreamWriter::write(unsigned int value, int numOfBits)
{
	write(static_cast<int>(value), numOfBits);
}


inline __attribute__((always_inline)) void BitStreamWriter::write(int value, int numOfBits)
{
	poco_assert (checkInputParams(Utility::SIZEOFINT32INBIT, numOfBits));
	appendBits(static_cast<unsigned int>(value), numOfBits);
}


inline void BitStreamWriter::write(unsigned long long value, int numOfBits)
{
	write(static_cast<long long>(value), numOfBits);
}


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_BitStreamWriter_INCLUDED
