//
// MapVocabulary.h
//
// Library: FastInfoset
// Package: Vocabulary
// Module:  MapVocabulary
//
// A vocabulary table that finds values by hashing, without a capacity limit.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_MapVocabulary_INCLUDED
#define FastInfoset_MapVocabulary_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/Vocabulary.h"
#include "Korvo/FastInfoset/ValueIndex.h"
#include <memory>


namespace Korvo {
namespace FastInfoset {


template <class T>
class MapVocabulary: public Vocabulary<T>
	/// A table that finds values through a hash index, without a capacity
	/// limit. The index is built when a value is first looked up.
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

	MapVocabulary(const MapVocabulary& other) = default;

	MapVocabulary& operator = (const MapVocabulary&) = default;

	unsigned int index(const T& value, bool& valueExisted) override
	{
		typename ValueIndex<T>::Probe probe = _lookup.probe(this->_index, value);
		valueExisted = probe.found();
		if (valueExisted) return probe.index();
		unsigned int newIndex = this->_index.size();
		this->_index.push_back(value);
		_lookup.insert(this->_index, probe);
		return newIndex;
	}

	unsigned int exists(const T& value, bool& found) const override
	{
		typename ValueIndex<T>::Probe probe = _lookup.probe(this->_index, value);
		found = probe.found();
		return probe.index();
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
	{
		std::unique_ptr<MapVocabulary> pResult(new MapVocabulary(DONT_INITIALIZE));
		this->addMissing(*pResult, other);
		return pResult.release();
	}

	Vocabulary<T>* clone() const override
	{
		return new MapVocabulary(*this);
	}

	void truncate(unsigned int size) override
	{
		_lookup.truncate(this->_index, size);
		this->_index.truncate(size);
	}

private:
	mutable ValueIndex<T> _lookup;
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_MapVocabulary_INCLUDED
