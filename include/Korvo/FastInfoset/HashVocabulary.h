//
// HashVocabulary.h
//
// Library: FastInfoset
// Package: Vocabulary
// Module:  HashVocabulary
//
// A vocabulary table of fixed capacity that finds values by hashing.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_HashVocabulary_INCLUDED
#define FastInfoset_HashVocabulary_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/IndexedVocabulary.h"
#include "Korvo/FastInfoset/QualifiedNameVocabulary.h"
#include "Poco/Hash.h"
#include <memory>
#include <string>


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
class HashVocabulary: public IndexedVocabulary<T>
	/// A table that finds values by hashing and holds at most as many
	/// values as its fixed size (placeholder included): adding one more
	/// throws PoolOverflowException "Vocabulary hash table full" and leaves
	/// the table unchanged.
	///
	/// The hash index is built when a value is first looked up, and only as
	/// large as the values need, so a large size costs nothing until it is
	/// used.
{
public:
	enum DontInitialize
	{
		DONT_INITIALIZE = 0
	};

	explicit HashVocabulary(unsigned int size):
		IndexedVocabulary<T>(size)
		/// Creates a table of size holding the placeholder at index 0.
	{
		this->addPlaceholder();
	}

	explicit HashVocabulary(DontInitialize):
		IndexedVocabulary<T>(0)
		/// Creates a bare table of size 0: it can hold no value.
	{
	}

	HashVocabulary(DontInitialize, unsigned int size):
		IndexedVocabulary<T>(size)
		/// Creates a table of size without the placeholder.
	{
	}

	HashVocabulary(const HashVocabulary& other) = default;

	HashVocabulary& operator = (const HashVocabulary& other) = default;

	Vocabulary<T>* subtract(const Vocabulary<T>& other) const override
		/// The result has the size of this table, enough for every value.
	{
		std::unique_ptr<HashVocabulary> pResult(new HashVocabulary(DONT_INITIALIZE, tableSize()));
		this->addMissing(*pResult, other);
		return pResult.release();
	}

	Vocabulary<T>* clone() const override
	{
		return new HashVocabulary(*this);
	}

	unsigned int tableSize() const
		/// The most values the table holds.
	{
		return this->capacity();
	}

protected:
	unsigned int insert(const T& value, unsigned int newIndex, bool& valueExisted)
		/// Finds value, or appends it to the table under newIndex, which is
		/// the table's size.
	{
		poco_assert_dbg (newIndex == this->size());
		(void) newIndex;
		return this->add(value, valueExisted);
	}
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_HashVocabulary_INCLUDED
