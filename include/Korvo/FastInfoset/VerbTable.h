//
// VerbTable.h
//
// Library: FastInfoset
// Package: Vocabulary
// Module:  VerbTable
//
// Index-to-value store of a vocabulary table, in chunks that never move.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_VerbTable_INCLUDED
#define FastInfoset_VerbTable_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>


namespace Korvo {
namespace FastInfoset {


template <class T>
class VerbTable
	/// Stores the values of one vocabulary table in index order. Values live
	/// in chunks of 16, 32, 64, ... reserved slots; a chunk is never
	/// reallocated, so a reference to a stored value stays valid until the
	/// table drops it.
	///
	/// Dropped values (truncate(), pop_back()) keep their storage: the values
	/// added next are assigned into it, so that a table that is emptied and
	/// filled again, document after document, does not allocate again.
{
public:
	enum
	{
		INITIAL_CHUNK_SIZE = 16
	};

	VerbTable():
		_chunkCount(0),
		_size(0),
		_made(0)
	{
		_chunks[0] = &_first;
	}

	VerbTable(const VerbTable& other):
		_chunkCount(0),
		_size(0),
		_made(0)
	{
		_chunks[0] = &_first;
		append(other);
	}

	VerbTable& operator = (const VerbTable& other)
	{
		if (this != &other)
		{
			VerbTable tmp(other);
			// The first chunk is a member: its storage moves, its place stays.
			_first.swap(tmp._first);
			for (std::size_t k = 1; k < MAX_CHUNKS; ++k) std::swap(_chunks[k], tmp._chunks[k]);
			std::swap(_chunkCount, tmp._chunkCount);
			std::swap(_size, tmp._size);
			std::swap(_made, tmp._made);
			for (std::size_t k = 0; k < _chunkCount; ++k) _values[k] = _chunks[k]->data();
		}
		return *this;
	}

	~VerbTable()
	{
		deleteChunks();
	}

	void push_back(const T& value)
		/// Appends value; it gets index size() - 1. Appending the object that
		/// spare() returned stores it without a copy.
	{
		T& slot = spare();
		if (&slot != &value) slot = value;
		++_size;
	}

	T& spare()
		/// The object that the next appended value will occupy: a value built
		/// in it and then appended is stored in place. Its content is left
		/// over from earlier use.
	{
		if (_size < _made)
		{
			const std::size_t k = chunkOf(_size);
			return _values[k][_size - chunkStart(k)];
		}
		return newSpare();
	}

	void appendSpare()
		/// Appends the object spare() returned last, as it is.
	{
		poco_assert_dbg (_size < _made);
		++_size;
	}

	bool appendSpares(unsigned int n)
		/// Appends the next n objects as they are, as n calls of appendSpare()
		/// after spare() would, where all of them exist already (left by
		/// values dropped earlier); returns false, changing nothing, where
		/// they do not.
	{
		if (n == 0) return true;
		const unsigned int last = _size + n - 1;
		if (last < _size) return false;
		if (last >= _made) return false;
		_size = last + 1;
		return true;
	}

	unsigned int size() const
		/// Number of stored values.
	{
		return _size;
	}

	std::size_t storage() const
		/// Number of values the table has room for without allocating.
	{
		return chunkStart(_chunkCount);
	}

	bool empty() const
	{
		return _size == 0;
	}

	const T& at(unsigned int idx) const
		/// The value at idx; throws std::out_of_range "index out of range"
		/// past the end.
	{
		const T* pValue = get(idx);
		if (!pValue) throw std::out_of_range("index out of range");
		return *pValue;
	}

	const T* get(unsigned int idx) const
		/// The value at idx, or null past the end.
	{
		if (idx >= _size) return nullptr;
		std::size_t k = chunkOf(idx);
		return _values[k] + (idx - chunkStart(k));
	}

	const T& operator [] (unsigned int idx) const
		/// Same as at().
	{
		return at(idx);
	}

	void pop_back()
		/// Drops the last value, so that a table can undo an append it
		/// could not complete.
	{
		poco_assert (!empty());
		--_size;
	}

	void truncate(unsigned int size)
		/// Drops the values from index size on (none when size is not
		/// below size()).
	{
		if (size < _size) _size = size;
	}

private:
	static std::size_t chunkCapacity(std::size_t k)
	{
		return std::size_t(INITIAL_CHUNK_SIZE) << k;
	}

	static std::size_t chunkStart(std::size_t k)
	{
		return chunkCapacity(k) - INITIAL_CHUNK_SIZE;
	}

	static std::size_t chunkOf(unsigned int idx)
	{
		// Chunk k starts at 16 * (2^k - 1): find it directly instead of walking.
		unsigned int q = idx/INITIAL_CHUNK_SIZE + 1;
		return 31 - static_cast<unsigned int>(__builtin_clz(q));
	}

	T& __attribute__((noinline)) newSpare()
		/// spare() where the object is still to be made.
	{
		std::size_t k = chunkOf(_size);
		if (k == _chunkCount) addChunk();
		std::vector<T>& chunk = *_chunks[k];
		chunk.emplace_back();
		++_made;
		return chunk.back();
	}

	void addChunk()
	{
		poco_assert (_chunkCount < MAX_CHUNKS);
		if (_chunkCount == 0)
		{
			_first.reserve(chunkCapacity(0));
		}
		else
		{
			std::unique_ptr<std::vector<T>> pChunk(new std::vector<T>);
			pChunk->reserve(chunkCapacity(_chunkCount));
			_chunks[_chunkCount] = pChunk.release();
		}
		// Reserved whole, a chunk never moves its values.
		_values[_chunkCount] = _chunks[_chunkCount]->data();
		++_chunkCount;
	}

	void deleteChunks()
	{
		for (std::size_t k = 1; k < _chunkCount; ++k) delete _chunks[k];
		_first.clear();
		_chunkCount = 0;
		_made = 0;
	}

	void append(const VerbTable& other)
	{
		try
		{
			for (unsigned int i = 0; i < other._size; ++i) push_back(*other.get(i));
		}
		catch (...)
		{
			deleteChunks();
			throw;
		}
	}

	enum
	{
		MAX_CHUNKS = 29
			/// Enough for 2^32 values.
	};

	std::vector<T>  _first;
	std::vector<T>* _chunks[MAX_CHUNKS];
		/// Chunk k holds constructed objects up to its size(); those past
		/// the table's size are spares. Chunk 0 is _first.
	T*              _values[MAX_CHUNKS];
		/// The first value of each chunk: a look-up reads no chunk.
	std::size_t     _chunkCount;
	unsigned int    _size;
	unsigned int    _made;
		/// Objects made so far, all at the end: values and spares.
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_VerbTable_INCLUDED
