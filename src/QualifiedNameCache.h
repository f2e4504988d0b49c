//
// QualifiedNameCache.h
//
// Library: FastInfoset
// Package: Serializer
// Module:  QualifiedNameCache
//
// The table indices of the qualified names a writer has written.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_QualifiedNameCache_INCLUDED
#define FastInfoset_QualifiedNameCache_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/DocumentVocabulary.h"
#include "Korvo/FastInfoset/QualifiedNameVocabulary.h"
#include "Korvo/FastInfoset/ValueIndex.h"
#include <string>
#include <string_view>
#include <vector>


namespace Korvo {
namespace FastInfoset {


class QualifiedNameCache
	/// Finds the name-table index of a qualified name by its prefix,
	/// namespace name, local name and role (element or attribute), without
	/// building a key: one look-up in place of four table look-ups for a
	/// name written before. The strings are not copied: an entry points at
	/// them in the tables, where they stay until the tables are emptied.
{
public:
	QualifiedNameCache();

	void reset(const DocumentVocabulary& vocabulary);
		/// Forgets every name; names are then taken from the string tables of
		/// vocabulary, which must keep their values until the next reset.

	static Korvo::UInt32 hashOf(Korvo::UInt32 localNameHash, std::string_view prefix, std::string_view ns, bool inElement);
		/// The hash that find() and add() take, computed once for both from
		/// the ValueHash of the local name, which the local-name table takes.

	unsigned int find(Korvo::UInt32 hash, std::string_view prefix, std::string_view ns, std::string_view localName, bool inElement, std::size_t& slot) const;
		/// The index of the name, or 0 when it is not known (no name has
		/// index 0). slot tells add() where an unknown name goes.

	void add(std::size_t slot, Korvo::UInt32 hash, std::string_view prefix, std::string_view ns, std::string_view localName, bool inElement, const QualifiedNameEntry& name, unsigned int index);
		/// Remembers that the name, whose table entry is name, has index:
		/// right after find() did not find it and gave slot.

	std::size_t storage() const;
		/// The number of names the cache has room for.

private:
	struct Entry
	{
		Korvo::UInt32      hash;
		unsigned int       index;
		const std::string* pPrefix;
		const std::string* pNamespace;
		const std::string* pLocalName;
		bool               inElement;
	};

	std::size_t slotOf(Korvo::UInt32 hash, std::string_view prefix, std::string_view ns, std::string_view localName, bool inElement) const;
		/// The slot that holds the name, or the empty slot where it would go.
	static const std::string* string(const Vocabulary<std::string>* pTable, unsigned int id);
	static bool equal(const std::string& left, std::string_view right);
	void grow();

	std::vector<Entry>        _entries;
	std::vector<unsigned int> _slots;
		/// Position in _entries plus one; 0 for an empty slot.
	const Vocabulary<std::string>* _pPrefixes;
	const Vocabulary<std::string>* _pNamespaces;
	const Vocabulary<std::string>* _pLocalNames;
};


//
// inlines
//
inline Korvo::UInt32 QualifiedNameCache::hashOf(Korvo::UInt32 localNameHash, std::string_view prefix, std::string_view ns, bool inElement)
{
	// The local name tells most names apart; of the rest only the lengths,
	// spread over the bits the slot is taken from.
	const Korvo::UInt32 extra = (static_cast<Korvo::UInt32>(prefix.size()) << 16) ^ (static_cast<Korvo::UInt32>(ns.size()) << 1) ^ (inElement ? 1u : 0u);
	return localNameHash ^ (extra*0x9E3779B1u);
}


inline bool QualifiedNameCache::equal(const std::string& left, std::string_view right)
{
	return left.size() == right.size() && ValueHash<std::string>::sameOctets(left.data(), right.data(), left.size());
}


inline std::size_t QualifiedNameCache::slotOf(Korvo::UInt32 hash, std::string_view prefix, std::string_view ns, std::string_view localName, bool inElement) const
{
	const std::size_t mask = _slots.size() - 1;
	for (std::size_t i = hash & mask; ; i = (i + 1) & mask)
	{
		const unsigned int slot = _slots[i];
		if (!slot) return i;
		const Entry& entry = _entries[slot - 1];
		if (entry.hash == hash && entry.inElement == inElement
			&& equal(*entry.pLocalName, localName) && equal(*entry.pPrefix, prefix) && equal(*entry.pNamespace, ns)) return i;
	}
}


inline unsigned int QualifiedNameCache::find(Korvo::UInt32 hash, std::string_view prefix, std::string_view ns, std::string_view localName, bool inElement, std::size_t& slot) const
{
	if (_slots.empty())
	{
		slot = 0;
		return 0;
	}
	slot = slotOf(hash, prefix, ns, localName, inElement);
	const unsigned int position = _slots[slot];
	return position ? _entries[position - 1].index : 0;
}


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_QualifiedNameCache_INCLUDED
