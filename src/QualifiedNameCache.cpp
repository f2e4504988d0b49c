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
	_pLocalNames(nullptr)
{
}


void QualifiedNameCache::reset(const DocumentVocabulary& vocabulary)
{
	// Slots are only taken by entries: without entries they are empty.
	if (!_entries.empty()) std::fill(_slots.begin(), _slots.end(), 0u);
	_entries.clear();
	_pPrefixes = vocabulary.vocabulary(DocumentVocabulary::PREFIX);
	_pNamespaces = vocabulary.vocabulary(DocumentVocabulary::NAMESPACE_NAME);
	_pLocalNames = vocabulary.vocabulary(DocumentVocabulary::LOCAL_NAME);
}


inline const std::string* QualifiedNameCache::string(const Vocabulary<std::string>* pTable, unsigned int id)
{
	// An absent prefix or namespace name has index 0, the empty placeholder.
	const std::string* pString = pTable && id != 0 ? pTable->lookup(id) : nullptr;
	return pString ? pString : &EMPTY;
}


void QualifiedNameCache::add(std::size_t slot, Korvo::UInt32 hash, std::string_view prefix, std::string_view ns, std::string_view localName, bool inElement, const QualifiedNameEntry& name, unsigned int index)
{
	if (2*(_entries.size() + 1) > _slots.size())
	{
		grow();
		slot = slotOf(hash, prefix, ns, localName, inElement);
	}
	if (_slots[slot]) return;
	_entries.push_back(Entry{hash, index, string(_pPrefixes, name.prefixId()), string(_pNamespaces, name.namespaceId()), string(_pLocalNames, name.localNameId()), inElement});
	_slots[slot] = static_cast<unsigned int>(_entries.size());
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
