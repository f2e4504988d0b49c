//
// HashVocabulary.h
//
// Library: FastInfoset
// Package: Vocabulary
// Module:  HashVocabulary
//
// A vocabulary table with a fixed-size open-addressing hash index.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_HashVocabulary_INCLUDED
#define FastInfoset_HashVocabulary_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/Vocabulary.h"
#include "Korvo/FastInfoset/QualifiedNameVocabulary.h"
#include "Poco/Hash.h"
#include <memory>
#include <string>
#include <vector>


namespace Korvo {
namespace FastInfoset {


template <class T>
struct HashFunction;
	/// Maps a value to a slot of a hash table: operator () (value, size)
	/// returns a number below size.


template <>
struct HashFunction<std::string>
	/// The foundation library's string hash.
{
	unsigned int operator () (const std::string& value, unsigned int size) const
	{
		// The hash is as wide as std::size_t: reduce it before narrowing.
		return static_cast<unsigned int>(Korvo::hash(value) % size);
	}
};


template <>
struct HashFunction<QualifiedNameEntry>
	/// The product of the three indices, each XOR-ed with 1000003, in
	/// wrapping 32-bit arithmetic.
{
	unsigned int operator () (const QualifiedNameEntry& value, unsigned int size) const
	{
		Korvo::UInt32 h = (value.prefixId() ^ SEED)*(value.namespaceId() ^ SEED)*(value.localNameId() ^ SEED);
		return h % size;
	}

	static constexpr Korvo::UInt32 SEED = 0xF4243;
};


template <class T>
class HashVocabulary: public Vocabulary<T>
	/// A table that finds values through a hash index of a fixed number of
	/// slots, probed linearly. It holds at most as many values as it has
	/// slots (placeholder included); adding one more throws
	/// PoolOverflowException "Vocabulary hash table full" and leaves the
	/// table unchanged.
{
public:
	enum DontInitialize
	{
		DONT_INITIALIZE = 0
	};

	explicit HashVocabulary(unsigned int size):
		_slots(size, EMPTY_SLOT),
		_tableSize(size)
		/// Creates a table of size slots holding the placeholder at index 0.
	{
		bool existed;
		HashVocabulary::index(T(), existed);
	}

	explicit HashVocabulary(DontInitialize):
		_tableSize(0)
		/// Creates a bare table without slots: it can hold no value.
	{
	}

	HashVocabulary(DontInitialize, unsigned int size):
		_slots(size, EMPTY_SLOT),
		_tableSize(size)
		/// Creates a table of size slots without the placeholder.
	{
	}

	HashVocabulary(const HashVocabulary& other) = default;

	HashVocabulary& operator = (const HashVocabulary& other) = default;

	unsigned int index(const T& value, bool& valueExisted) override
	{
		return insert(value, this->_index.size(), valueExisted);
	}

	unsigned int exists(const T& value, bool& found) const override
	{
		std::size_t freeSlot;
		int idx = probe(value, freeSlot);
		found = idx != EMPTY_SLOT;
		return found ? static_cast<unsigned int>(idx) : Vocabulary<T>::NOT_FOUND;
	}

	const T& value(unsigned int idx) const override
	{
		poco_assert (this->_index.size() > idx);
		return this->_index[idx];
	}

	unsigned int size() const override
	{
		return this->_index.size();
	}

	bool empty() const override
	{
		return this->_index.empty();
	}

	Vocabulary<T>* subtract(const Vocabulary<T>& other) const override
		/// The result has as many slots as this table, enough for every value.
	{
		std::unique_ptr<HashVocabulary> pResult(new HashVocabulary(DONT_INITIALIZE, _tableSize));
		this->addMissing(*pResult, other);
		return pResult.release();
	}

	Vocabulary<T>* clone() const override
	{
		return new HashVocabulary(*this);
	}

	unsigned int tableSize() const
		/// The number of slots.
	{
		return _tableSize;
	}

protected:
	unsigned int insert(const T& value, unsigned int newIndex, bool& valueExisted)
		/// Finds value, or appends it to the table under newIndex.
	{
		std::size_t freeSlot;
		int idx = probe(value, freeSlot);
		valueExisted = idx != EMPTY_SLOT;
		if (valueExisted) return static_cast<unsigned int>(idx);
		if (freeSlot == NO_SLOT) throw Korvo::PoolOverflowException("Vocabulary hash table full");
		this->_index.push_back(value);
		_slots[freeSlot] = static_cast<int>(newIndex);
		return newIndex;
	}

	int probe(const T& value, std::size_t& freeSlot) const
		/// Returns the index stored for value, or EMPTY_SLOT. freeSlot is then
		/// the slot that value would take, or NO_SLOT when the table is full.
		/// Gives up only after more probes than there are slots: the limit is
		/// loose on purpose, and a table is full only when every slot is taken.
	{
		freeSlot = NO_SLOT;
		if (_tableSize == 0) return EMPTY_SLOT;
		std::size_t slot = _hash(value, _tableSize);
		for (Korvo::UInt64 distance = 0; ; ++distance)
		{
			int idx = _slots[slot];
			if (idx == EMPTY_SLOT)
			{
				freeSlot = slot;
				return EMPTY_SLOT;
			}
			if (this->_index[static_cast<unsigned int>(idx)] == value) return idx;
			if (distance > _tableSize) return EMPTY_SLOT;
			if (++slot == _tableSize) slot = 0;
		}
	}

private:
	static constexpr int EMPTY_SLOT = -1;
	static constexpr std::size_t NO_SLOT = ~std::size_t(0);

	std::vector<int>  _slots;
	unsigned int      _tableSize;
	HashFunction<T>   _hash;
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_HashVocabulary_INCLUDED
