//
// VectorVocabulary.h
//
// Library: FastInfoset
// Package: Vocabulary
// Module:  VectorVocabulary
//
// A vocabulary table without a value index, for reading documents.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_VectorVocabulary_INCLUDED
#define FastInfoset_VectorVocabulary_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/Vocabulary.h"
#include <memory>


namespace Korvo {
namespace FastInfoset {


template <class T>
class VectorVocabulary: public Vocabulary<T>
	/// A table that only appends: index() never finds a value, so equal
	/// values get new indices, and exists() scans every entry. Meant for a
	/// parser, which looks values up by index only.
{
public:
	enum DontInitialize
	{
		DONT_INITIALIZE = 0
	};

	explicit VectorVocabulary(unsigned int size = 0)
		/// Creates a table holding the placeholder at index 0. The size is
		/// accepted for symmetry with HashVocabulary and ignored.
	{
		(void) size;
		bool existed;
		VectorVocabulary::index(T(), existed);
	}

	explicit VectorVocabulary(DontInitialize)
		/// Creates a bare table without the placeholder.
	{
	}

	VectorVocabulary(const VectorVocabulary& other) = default;

	VectorVocabulary& operator = (const VectorVocabulary& other) = default;

	unsigned int index(const T& value, bool& valueExisted) override
		/// Appends value, even when it is present already.
	{
		this->_index.push_back(value);
		valueExisted = false;
		return this->_index.size() - 1;
	}

	bool appendSpares(unsigned int n)
		/// Makes the next n spare values part of the table as they are, as n
		/// appends of spare() would, where all of them exist (a table grown
		/// back over what it held before); returns false, changing nothing,
		/// otherwise.
	{
		return this->_index.appendSpares(n);
	}

	unsigned int exists(const T& value, bool& found) const override
		/// The first index holding value, found by a scan from index 0.
	{
		unsigned int n = this->_index.size();
		for (unsigned int i = 0; i < n; ++i)
		{
			if (this->_index[i] == value)
			{
				found = true;
				return i;
			}
		}
		found = false;
		return Vocabulary<T>::NOT_FOUND;
	}

	const T& value(unsigned int idx) const override
		/// Throws std::out_of_range "index out of range" past the end.
	{
		return this->_index.at(idx);
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
		std::unique_ptr<VectorVocabulary> pResult(new VectorVocabulary(DONT_INITIALIZE));
		this->addMissing(*pResult, other);
		return pResult.release();
	}

	Vocabulary<T>* clone() const override
	{
		return new VectorVocabulary(*this);
	}

protected:
	bool hasValueLookup() const override
	{
		return false;
	}
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_VectorVocabulary_INCLUDED
