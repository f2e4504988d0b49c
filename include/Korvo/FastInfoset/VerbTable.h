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
	{
		if (_chunks.empty() || _chunks.back()->size() == _chunks.back()->capacity())
		{
			std::size_t capacity = _chunks.empty() ? INITIAL_CHUNK_SIZE : 2*_chunks.back()->capacity();
			std::vector<T>* pChunk = new std::vector<T>;
			try
			{
				pChunk->reserve(capacity);
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
	{
		if (_chunks.empty()) return 0;
		// Every chunk but the last is full: 256 * (2^(n-1) - 1) values before the last.
		std::size_t n = _chunks.size();
		return static_cast<unsigned int>(INITIAL_CHUNK_SIZE*((std::size_t(1) << (n - 1)) - 1) + _chunks.back()->size());
	}

	bool empty() const
	{
		return _chunks.empty();
	}

	const T& at(unsigned int idx) const
	{
		// Chunk k starts at 256 * (2^k - 1): find it directly instead of walking.
		unsigned int q = idx/INITIAL_CHUNK_SIZE + 1;
		unsigned int k = 31 - static_cast<unsigned int>(__builtin_clz(q));
		if (k < _chunks.size())
		{
			std::size_t offset = idx - INITIAL_CHUNK_SIZE*((std::size_t(1) << k) - 1);
			const std::vector<T>& chunk = *_chunks[k];
			if (offset < chunk.size()) return chunk[offset];
		}
		throw std::out_of_range("index out of range");
	}

	const T& operator [] (unsigned int idx) const
	{
		return at(idx);
	}

private:
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
