//
// Vocabulary.h
//
// Library: FastInfoset
// Package: Vocabulary
// Module:  Vocabulary
//
// The abstract interface of one indexed vocabulary table.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_Vocabulary_INCLUDED
#define FastInfoset_Vocabulary_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/VerbTable.h"
#include <algorithm>
#include <vector>


namespace Korvo {
namespace FastInfoset {


template <class T>
class Vocabulary
	/// One indexed table of a document (strings, or qualified names).
	/// Index 0 holds a placeholder; the first real value gets index 1.
	/// Tables only grow. Results of subtract() and clone() belong to the caller.
{
public:
	static constexpr unsigned int NOT_FOUND = 0xFFFFFFFF;
		/// What exists() returns for an absent value.

	virtual ~Vocabulary()
	{
	}

	virtual unsigned int index(const T& value, bool& valueExisted) = 0;
		/// Returns the index of value, adding it when absent.
		/// valueExisted tells whether it was present before.

	virtual unsigned int exists(const T& value, bool& found) const = 0;
		/// Returns the index of value, or 0xFFFFFFFF (found false) when absent.

	virtual const T& value(unsigned int idx) const = 0;
		/// Returns the value at idx. The reference stays valid for the
		/// life of the table.

	const T* lookup(unsigned int idx) const
		/// The value at idx, or null past the end: the reader's fast path,
		/// which reports a bad index itself.
	{
		return _index.get(idx);
	}

	T& spare()
		/// Storage for building the next value to add: passed to index()
		/// when it is new, it is stored where it is, without a copy. Its
		/// content is left over from earlier use.
	{
		return _index.spare();
	}

	virtual unsigned int size() const = 0;
		/// Number of entries, the placeholder included.

	std::size_t storage() const
		/// Number of entries the table has room for without allocating.
	{
		return _index.storage();
	}

	virtual bool empty() const = 0;

	virtual Vocabulary* subtract(const Vocabulary& other) const = 0;
		/// Returns a new table of the same kind holding, in this table's order
		/// and renumbered from 0, the values that other does not have.

	virtual Vocabulary* clone() const = 0;
		/// Returns a copy of this table.

	virtual void truncate(unsigned int size)
		/// Drops the values from index size on, returning the table to the
		/// state it had when it held size values. Their storage is kept for
		/// the values added next.
	{
		_index.truncate(size);
	}

protected:
	virtual bool hasValueLookup() const
		/// False for a table whose exists() has to scan every entry.
	{
		return true;
	}

	void addMissing(Vocabulary& result, const Vocabulary& other) const
		/// Adds to result, in index order, every value of this table that
		/// other does not have.
	{
		unsigned int n = _index.size();
		if (other.hasValueLookup())
		{
			for (unsigned int i = 0; i < n; ++i)
			{
				bool found;
				other.exists(_index[i], found);
				if (!found) add(result, _index[i]);
			}
		}
		else
		{
			// Asking other would scan it once per value: sort its values once instead.
			std::vector<const T*> sorted = other.sortedValues();
			auto less = [](const T* pLeft, const T* pRight) { return *pLeft < *pRight; };
			for (unsigned int i = 0; i < n; ++i)
			{
				if (!std::binary_search(sorted.begin(), sorted.end(), &_index[i], less)) add(result, _index[i]);
			}
		}
	}

	VerbTable<T> _index;

private:
	static void add(Vocabulary& result, const T& value)
	{
		bool existed;
		result.index(value, existed);
	}

	std::vector<const T*> sortedValues() const
	{
		std::vector<const T*> values;
		unsigned int n = _index.size();
		values.reserve(n);
		for (unsigned int i = 0; i < n; ++i) values.push_back(&_index[i]);
		std::sort(values.begin(), values.end(), [](const T* pLeft, const T* pRight) { return *pLeft < *pRight; });
		return values;
	}
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_Vocabulary_INCLUDED
