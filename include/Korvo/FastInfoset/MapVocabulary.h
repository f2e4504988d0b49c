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
#include "Korvo/FastInfoset/IndexedVocabulary.h"
#include <memory>


namespace Korvo {
namespace FastInfoset {


template <class T>
class MapVocabulary: public IndexedVocabulary<T>
	/// A table that finds values by hashing, without a capacity limit. The
	/// hash index is built when a value is first looked up.
{
public:
	enum DontInitialize
	{
		DONT_INITIALIZE = 0
	};

	explicit MapVocabulary(unsigned int size = 0):
		IndexedVocabulary<T>(UNLIMITED)
		/// Creates a table holding the placeholder at index 0. The size is
		/// accepted for symmetry with HashVocabulary and ignored.
	{
		(void) size;
		this->addPlaceholder();
	}

	explicit MapVocabulary(DontInitialize):
		IndexedVocabulary<T>(UNLIMITED)
		/// Creates a bare table without the placeholder.
	{
	}

	MapVocabulary(const MapVocabulary& other) = default;

	MapVocabulary& operator = (const MapVocabulary&) = default;

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
	static constexpr unsigned int UNLIMITED = 0xFFFFFFFF;
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_MapVocabulary_INCLUDED
