//
// IndexedVocabulary.h
//
// Library: FastInfoset
// Package: Vocabulary
// Module:  IndexedVocabulary
//
// The base of the vocabulary tables that find values by content.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_IndexedVocabulary_INCLUDED
#define FastInfoset_IndexedVocabulary_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/Vocabulary.h"
#include "Korvo/FastInfoset/ValueIndex.h"


namespace Korvo {
namespace FastInfoset {


template <class T>
class IndexedVocabulary: public Vocabulary<T>
	/// A table that finds its values through a ValueIndex, built when a
	/// value is first looked up, and holds at most a given number of values
	/// (placeholder included): adding one more throws PoolOverflowException
	/// "Vocabulary hash table full" and leaves the table unchanged.
	///
	/// Besides the table interface, find() and add() take anything that
	/// compares and hashes like a T (a std::string_view for strings), and
	/// are not virtual: a writer looks its values up through them.
{
public:
	template <class K>
	unsigned int find(const K& value) const
		/// The index of value, or NOT_FOUND.
	{
		return _lookup.probe(this->_index, value).index();
	}

	template <class K>
	unsigned int find(const K& value, Korvo::UInt32 hash) const
		/// find() for a value whose ValueHash is hash.
	{
		return _lookup.probe(this->_index, value, hash).index();
	}

	template <class K>
	unsigned int add(const K& value, bool& valueExisted)
		/// The index of value, added when absent.
	{
		return add(value, ValueHash<T>()(value), valueExisted);
	}

	template <class K>
	unsigned int add(const K& value, Korvo::UInt32 hash, bool& valueExisted)
		/// add() for a value whose ValueHash is hash.
	{
		typename ValueIndex<T>::Probe probe = _lookup.probe(this->_index, value, hash);
		valueExisted = probe.found();
		if (valueExisted) return probe.index();
		const unsigned int newIndex = this->_index.size();
		if (newIndex >= _capacity) full();
		T& slot = this->_index.spare();
		if (static_cast<const void*>(&slot) != static_cast<const void*>(&value)) store(slot, value);
		this->_index.appendSpare();
		_lookup.insert(this->_index, probe);
		return newIndex;
	}

	unsigned int addShort(const ShortValue& key, std::string_view value, bool& valueExisted)
		/// add() for the string value of at most ShortValue::MAX_SIZE octets
		/// whose key is key: found by the key alone.
	{
		const Korvo::UInt32 hash = ValueHash<std::string>()(key);
		typename ValueIndex<T>::Probe probe = _lookup.probe(this->_index, key, hash);
		valueExisted = probe.found();
		if (valueExisted) return probe.index();
		const unsigned int newIndex = this->_index.size();
		if (newIndex >= _capacity) full();
		store(this->_index.spare(), value);
		this->_index.appendSpare();
		_lookup.insert(this->_index, probe, key);
		return newIndex;
	}

	void append(const T& value)
		/// Appends value even when an equal one is stored (find() gives the
		/// first of equal values): for copying a table whose indices must
		/// not change.
	{
		if (this->_index.size() >= _capacity) full();
		this->_index.push_back(value);
	}

	template <class K>
	void appendAbsent(const K& value)
		/// Appends value, known to be absent, without a look-up, stored as
		/// add() stores it; the index takes it in when next asked.
	{
		if (this->_index.size() >= _capacity) full();
		store(this->_index.spare(), value);
		this->_index.appendSpare();
	}

	bool appendSpares(unsigned int n)
		/// Makes the next n spare values part of the table as they are, as n
		/// calls of append(spare()) would, where all of them exist (a table
		/// grown back over what it held before) and the table has room for
		/// them; returns false, changing nothing, otherwise.
	{
		if (Korvo::UInt64(this->_index.size()) + n > _capacity) return false;
		return this->_index.appendSpares(n);
	}

	void appendSpare()
		/// append() for the object that spare() returned last, stored where
		/// it was built.
	{
		if (this->_index.size() >= _capacity) full();
		this->_index.appendSpare();
	}

	unsigned int index(const T& value, bool& valueExisted) override
	{
		return add(value, valueExisted);
	}

	unsigned int exists(const T& value, bool& found) const override
	{
		unsigned int idx = find(value);
		found = idx != Vocabulary<T>::NOT_FOUND;
		return idx;
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

	void truncate(unsigned int size) override
	{
		_lookup.truncate(this->_index, size);
		this->_index.truncate(size);
	}

protected:
	template <class K>
	static void store(T& slot, const K& value)
	{
		slot = value;
	}

	static void store(std::string& slot, std::string_view value)
		/// A spare that holds the value already (the document before added
		/// it at the same index, as documents of one kind do) keeps it;
		/// into another, appending to the emptied spare takes fewer steps
		/// than assigning.
	{
		if (slot.size() == value.size() && ValueHash<std::string>::sameOctets(slot.data(), value.data(), value.size())) return;
		slot.clear();
		slot.append(value.data(), value.size());
	}

	explicit IndexedVocabulary(unsigned int capacity):
		_capacity(capacity)
	{
	}

	IndexedVocabulary(const IndexedVocabulary& other) = default;

	IndexedVocabulary& operator = (const IndexedVocabulary& other) = default;

	unsigned int capacity() const
	{
		return _capacity;
	}

	[[noreturn]] static void __attribute__((noinline, cold)) full()
		/// Kept apart, so that adding stays small enough to inline.
	{
		throw Korvo::PoolOverflowException("Vocabulary hash table full");
	}

	void addPlaceholder()
		/// Stores T() at index 0 without a look-up: the index takes it in
		/// when it is first asked, so that a table nobody searches builds none.
	{
		if (_capacity == 0) throw Korvo::PoolOverflowException("Vocabulary hash table full");
		this->_index.push_back(T());
	}

private:
	unsigned int          _capacity;
	mutable ValueIndex<T> _lookup;
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_IndexedVocabulary_INCLUDED
