//
// QualifiedNameCache.cpp
//
// Library: FastInfoset
// Package: Serializer
// Module:  QualifiedNameCache
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "QualifiedNameCache.h"
#include "Korvo/FastInfoset/ValueIndex.h"
#include <algorithm>


namespace Korvo {
namespace FastInfoset {


namespace
{
	const std::size_t INITIAL_SLOTS = 64;

	const std::string EMPTY;
		// What an absent prefix or namespace name stands for.
}


QualifiedNameCache::QualifiedNameCache():
	_pPrefixes(nullptr),
	_pNamespaces(nullptr),
	_pLocalNames(nullptr),
	_epoch(0),
	_current(0),
	_added(0),
	_carry(false),
	_replaying(false),
	_carriedImpl(DocumentVocabulary::VOC_MAP),
	_pTables(),
	_synced()
{
}


void QualifiedNameCache::reset(const DocumentVocabulary& vocabulary)
{
	_carry = false;
	renew(vocabulary);
}


void QualifiedNameCache::renew(const DocumentVocabulary& vocabulary)
{
	if (!_carry) clear();
	++_epoch;
	_current = 0;
	_added = 0;
	_replaying = false;
	std::fill(std::begin(_pTables), std::end(_pTables), nullptr);
	std::fill(std::begin(_synced), std::end(_synced), 0u);
	_pPrefixes = vocabulary.vocabulary(DocumentVocabulary::PREFIX);
	_pNamespaces = vocabulary.vocabulary(DocumentVocabulary::NAMESPACE_NAME);
	_pLocalNames = vocabulary.vocabulary(DocumentVocabulary::LOCAL_NAME);
}


void QualifiedNameCache::clear()
{
	// Slots are only taken by entries: without entries they are empty.
	if (!_entries.empty()) std::fill(_slots.begin(), _slots.end(), 0u);
	_entries.clear();
	_carry = false;
}


void QualifiedNameCache::startReplay(DocumentVocabulary::VocabularyImpl impl, StringTables tables)
{
	// Fresh tables of one kind hold the same values: those the copies
	// start with.
	_replaying = _carry && impl == _carriedImpl;
	for (std::size_t t = 0; t < STRING_TABLES; ++t)
	{
		_pTables[t] = tables[t];
		_synced[t] = tables[t]->IndexedVocabulary<std::string>::size();
		if (_synced[t] > _copies[t].size()) _replaying = false;
	}
	// Otherwise nothing is known to be the copy's.
	if (!_replaying) std::fill(std::begin(_synced), std::end(_synced), 0u);
}


void QualifiedNameCache::stopReplay()
{
	_replaying = false;
}


void QualifiedNameCache::drop()
{
	// The entries point into tables that are about to go.
	_carry = false;
	_replaying = false;
}


bool QualifiedNameCache::replayable(const Entry& entry, const unsigned int sizes[TABLES])
{
	// All five compared at once, without a branch for each.
	unsigned int differ = 0;
	for (std::size_t t = 0; t < TABLES; ++t) differ |= sizes[t] ^ entry.sizes[t];
	if (differ) return false;
	// Usually nothing but replayed names has been added since the last.
	if (_synced[PREFIXES] == sizes[PREFIXES] && _synced[NAMESPACES] == sizes[NAMESPACES] && _synced[LOCAL_NAMES] == sizes[LOCAL_NAMES]) return true;
	return catchUp(PREFIXES, sizes[PREFIXES]) && catchUp(NAMESPACES, sizes[NAMESPACES]) && catchUp(LOCAL_NAMES, sizes[LOCAL_NAMES]);
}


bool QualifiedNameCache::catchUp(Table table, unsigned int size)
{
	// Whatever added the values since the last check, they must be the
	// copy's: then every look-up finds what it found the last time.
	const IndexedVocabulary<std::string>& values = *_pTables[table];
	const VerbTable<std::string>& copy = _copies[table];
	for (unsigned int& i = _synced[table]; i < size; ++i)
	{
		if (i >= copy.size() || !equal(values.IndexedVocabulary<std::string>::value(i), *copy.get(i)))
		{
			_replaying = false;
			return false;
		}
	}
	return true;
}


void QualifiedNameCache::keep(DocumentVocabulary::VocabularyImpl impl, StringTables tables)
{
	_replaying = false;
	_carry = false;
	for (std::size_t t = 0; t < STRING_TABLES; ++t)
	{
		if (tables[t]->IndexedVocabulary<std::string>::size() > MAX_KEPT_VALUES) return;
	}
	try
	{
		// The copies change from the first value that differs: the carried
		// names that this document wrote point below it.
		for (std::size_t t = 0; t < STRING_TABLES; ++t)
		{
			const IndexedVocabulary<std::string>& table = *tables[t];
			VerbTable<std::string>& copy = _copies[t];
			const unsigned int size = table.IndexedVocabulary<std::string>::size();
			unsigned int i = _pTables[t] == tables[t] ? std::min({_synced[t], size, copy.size()}) : 0;
			while (i < size && i < copy.size() && equal(table.IndexedVocabulary<std::string>::value(i), *copy.get(i))) ++i;
			copy.truncate(i);
			for (; i < size; ++i)
			{
				const std::string& value = table.IndexedVocabulary<std::string>::value(i);
				// Not worth the memory it would hold.
				if (value.size() > MAX_KEPT_SIZE) return;
				copy.push_back(value);
			}
		}
	}
	catch (...)
	{
		return;
	}
	keepNames();
	_carriedImpl = impl;
	_carry = true;
}


void QualifiedNameCache::keepNames()
{
	// Names of earlier documents go; this document's point at the copies,
	// as the replayed ones do already.
	if (_added == 0 && _current == _entries.size()) return;
	std::size_t kept = 0;
	for (std::size_t e = 0; e < _entries.size(); ++e)
	{
		Entry& entry = _entries[e];
		if (entry.epoch != _epoch) continue;
		entry.pPrefix = entry.name.prefixId() ? _copies[PREFIXES].get(entry.name.prefixId()) : &EMPTY;
		entry.pNamespace = entry.name.namespaceId() ? _copies[NAMESPACES].get(entry.name.namespaceId()) : &EMPTY;
		entry.pLocalName = _copies[LOCAL_NAMES].get(entry.name.localNameId());
		if (kept != e) _entries[kept] = entry;
		++kept;
	}
	if (kept == _entries.size()) return;
	_entries.resize(kept);
	rebuildSlots();
}


void QualifiedNameCache::rebuildSlots()
{
	std::fill(_slots.begin(), _slots.end(), 0u);
	const std::size_t mask = _slots.size() - 1;
	for (std::size_t e = 0; e < _entries.size(); ++e)
	{
		std::size_t i = _entries[e].hash & mask;
		while (_slots[i]) i = (i + 1) & mask;
		_slots[i] = static_cast<unsigned int>(e + 1);
	}
}


inline const std::string* QualifiedNameCache::string(const Vocabulary<std::string>* pTable, unsigned int id)
{
	// An absent prefix or namespace name has index 0, the empty placeholder.
	const std::string* pString = pTable && id != 0 ? pTable->lookup(id) : nullptr;
	return pString ? pString : &EMPTY;
}


void QualifiedNameCache::add(std::size_t slot, Korvo::UInt32 hash, std::string_view prefix, std::string_view ns, std::string_view localName, bool inElement, const QualifiedNameEntry& name, unsigned int index, const unsigned int sizes[TABLES])
{
	if (2*(_entries.size() + 1) > _slots.size())
	{
		grow();
		slot = slotOf(hash, prefix, ns, localName, inElement);
	}
	Entry entry{hash, index, string(_pPrefixes, name.prefixId()), string(_pNamespaces, name.namespaceId()), string(_pLocalNames, name.localNameId()), inElement, _epoch, name, {}};
	std::copy(sizes, sizes + TABLES, entry.sizes);
	if (const unsigned int position = _slots[slot])
	{
		// A carried name that could not be replayed: written anew.
		Entry& old = _entries[position - 1];
		if (old.epoch == _epoch) return;
		old = entry;
	}
	else
	{
		_entries.push_back(entry);
		_slots[slot] = static_cast<unsigned int>(_entries.size());
	}
	++_current;
	++_added;
}


std::size_t QualifiedNameCache::storage() const
{
	return _slots.size();
}


void QualifiedNameCache::grow()
{
	std::vector<unsigned int> slots(_slots.empty() ? INITIAL_SLOTS : 2*_slots.size(), 0u);
	_entries.reserve(slots.size()/2);
	const std::size_t mask = slots.size() - 1;
	for (std::size_t e = 0; e < _entries.size(); ++e)
	{
		std::size_t i = _entries[e].hash & mask;
		while (slots[i]) i = (i + 1) & mask;
		slots[i] = static_cast<unsigned int>(e + 1);
	}
	_slots.swap(slots);
}


} } // namespace Korvo::FastInfoset
