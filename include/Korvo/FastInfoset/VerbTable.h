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
#include <vector>
#include <stdexcept>


namespace Korvo {
namespace FastInfoset {


template <class T>
class VerbTable
	/// Stores the values of one vocabulary table in index order. Values live
	/// in chunks of 256, 512, 1024, ... reserved slots; a chunk is never
	/// reallocated, so a reference to a stored value stays valid for the
	/// life of the table.
{
public:
	enum
	{
		INITIAL_CHUNK_SIZE = 256
	};

	VerbTable()
	{
	}

	VerbTable(const VerbTable& other)
	{
		append(other);
	}

	VerbTable& operator = (const VerbTable& other)
	{
		if (this != &other)
		{
			VerbTable tmp(other);
			_chunks.swap(tmp._chunks);
		}
		return *this;
	}

	~VerbTable()
	{
		for (auto pChunk: _chunks) delete pChunk;
	}

	void push_back(const T& value)
		/// Appends value; it gets index size() - 1.
	{
		std::size_t n = _chunks.size();
		if (n == 0 || _chunks.back()->size() == chunkCapacity(n - 1))
		{
			std::vector<T>* pChunk = new std::vector<T>;
			try
			{
				pChunk->reserve(chunkCapacity(n));
				_chunks.push_back(pChunk);
			}
			catch (...)
			{
				delete pChunk;
				throw;
			}
		}
		_chunks.back()->push_back(value);
	}

	unsigned int size() const
		/// Number of stored values.
	{
		if (_chunks.empty()) return 0;
		// Every chunk but the last is full, so the last one starts at chunkStart(n - 1).
		std::size_t n = _chunks.size();
		return static_cast<unsigned int>(chunkStart(n - 1) + _chunks.back()->size());
	}

	bool empty() const
	{
		return size() == 0;
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
		// Chunk k starts at 256 * (2^k - 1): find it directly instead of walking.
		unsigned int q = idx/INITIAL_CHUNK_SIZE + 1;
		std::size_t k = 31 - static_cast<unsigned int>(__builtin_clz(q));
		if (k < _chunks.size())
		{
			std::size_t offset = idx - chunkStart(k);
			const std::vector<T>& chunk = *_chunks[k];
			if (offset < chunk.size()) return &chunk[offset];
		}
		return nullptr;
	}

	const T& operator [] (unsigned int idx) const
		/// Same as at().
	{
		return at(idx);
	}

	void pop_back()
		/// Removes the last value, so that a table can undo an append it
		/// could not complete. An emptied chunk is kept for the next value.
	{
		poco_assert (!empty());
		if (_chunks.back()->empty())
		{
			delete _chunks.back();
			_chunks.pop_back();
		}
		_chunks.back()->pop_back();
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

	void append(const VerbTable& other)
	{
		try
		{
			for (auto pChunk: other._chunks)
			{
				for (const auto& value: *pChunk) push_back(value);
			}
		}
		catch (...)
		{
			for (auto pChunk: _chunks) delete pChunk;
			_chunks.clear();
			throw;
		}
	}

	std::vector<std::vector<T>*> _chunks;
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_VerbTable_INCLUDED
