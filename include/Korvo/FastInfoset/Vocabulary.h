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


namespace Korvo {
namespace FastInfoset {


template <class T>
class Vocabulary
	/// One indexed table of a document (strings, or qualified names).
	/// Index 0 holds a placeholder; the first real value gets index 1.
	/// Tables only grow. Results of subtract() and clone() belong to the caller.
{
public:
	static const unsigned int NOT_FOUND = 0xFFFFFFFF;

	virtual ~Vocabulary()
	{
	}

	virtual unsigned int index(const T& value, bool& valueExisted) = 0;
		/// Returns the index of value, adding it when absent.
		/// valueExisted tells whether it was present before.

	virtual unsigned int exists(const T& value, bool& found) const = 0;
		/// Returns the index of value, or 0xFFFFFFFF (found false) when absent.

	virtual const T& value(unsigned int idx) const = 0;
		/// Returns the value at idx.

	virtual unsigned int size() const = 0;
		/// Number of entries, the placeholder included.

	virtual bool empty() const = 0;

	virtual Vocabulary* subtract(const Vocabulary& other) const = 0;
		/// Returns a new table of the same kind holding, in this table's order
		/// and renumbered from 0, the values that other does not have.

	virtual Vocabulary* clone() const = 0;
		/// Returns a copy of this table.

protected:
	VerbTable<T> _index;
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_Vocabulary_INCLUDED
