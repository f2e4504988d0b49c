//
// MapVocabulary.h
//
// Library: FastInfoset
// Package: Vocabulary
// Module:  MapVocabulary
//
// A vocabulary table with an ordered-map index and no capacity limit.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_MapVocabulary_INCLUDED
#define FastInfoset_MapVocabulary_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/Vocabulary.h"
#include <map>
#include <memory>


namespace Korvo {
namespace FastInfoset {


template <class T>
class MapVocabulary: public Vocabulary<T>
	/// A table that finds values through an ordered map (operator < of T),
	/// in logarithmic time and without a capacity limit.
{
public:
	enum DontInitialize
	{
		DONT_INITIALIZE = 0
	};

	explicit MapVocabulary(unsigned int size = 0)
		/// Creates a table holding the placeholder at index 0. The size is
		/// accepted for symmetry with HashVocabulary and ignored.
	{
		(void) size;
		bool existed;
		MapVocabulary::index(T(), existed);
	}

	explicit MapVocabulary(DontInitialize)
		/// Creates a bare table without the placeholder.
	{
	}

	MapVocabulary(const MapVocabulary& other):
		Vocabulary<T>(other)
	{
		// The map refers to the stored values, so it is rebuilt over the copies;
		// other's map is already in order, so every insertion goes at the end.
		for (const auto& entry: other._map)
		{
			_map.emplace_hint(_map.end(), &this->_index[entry.second], entry.second);
		}
	}

	MapVocabulary& operator = (const MapVocabulary&) = delete;

	unsigned int index(const T& value, bool& valueExisted) override
	{
		auto it = _map.lower_bound(value);
		valueExisted = it != _map.end() && !(value < *it->first);
		if (valueExisted) return it->second;

		unsigned int newIndex = this->_index.size();
		this->_index.push_back(value);
		try
		{
			_map.emplace_hint(it, &this->_index[newIndex], newIndex);
		}
		catch (...)
		{
			this->_index.pop_back();
			throw;
		}
		return newIndex;
	}

	unsigned int exists(const T& value, bool& found) const override
	{
		auto it = _map.find(value);
		found = it != _map.end();
		return found ? it->second : Vocabulary<T>::NOT_FOUND;
	}

	const T& value(unsigned int idx) const override
	{
		poco_assert (this->_index.size() > idx);
		return this->_index[idx];
	}

	unsigned int size() const override
	{
		return static_cast<unsigned int>(_map.size());
	}

	bool empty() const override
	{
		return _map.empty();
	}

	Vocabulary<T>* subtract(const Vocabulary<T>& other) const override
	{
		std::unique_ptr<MapVocabulary> pResult(new MapVocabulary(DONT_INITIALIZE));
		this->addMissing(*pResult, other);
		return pResult.release();
	}

	Vocabulary<T>* clone() const override
	{
		return new MapVocabulary(*this);
	}

private:
	struct Less
		/// Orders the keys, which point at the stored values, by value; also
		/// compares a key with a plain value, so that look-ups need no copy.
	{
		using is_transparent = void;

		bool operator () (const T* pLeft, const T* pRight) const
		{
			return *pLeft < *pRight;
		}

		bool operator () (const T* pLeft, const T& right) const
		{
			return *pLeft < right;
		}

		bool operator () (const T& left, const T* pRight) const
		{
			return left < *pRight;
		}
	};

	std::map<const T*, unsigned int, Less> _map;
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_MapVocabulary_INCLUDED
