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
#include "Korvo/FastInfoset/IndexedVocabulary.h"
#include "Korvo/FastInfoset/ValueIndex.h"
#include "Korvo/FastInfoset/VerbTable.h"
#include <string>
#include <string_view>
#include <vector>


namespace Korvo {
namespace FastInfoset {


struct QualifiedNameCacheEntry
	/// A name that a QualifiedNameCache knows.
{
	Korvo::UInt32      hash;
	unsigned int       index;
	const std::string* pPrefix;
	const std::string* pNamespace;
	const std::string* pLocalName;
	bool               inElement;
	unsigned int       epoch;
		/// The document that wrote the name.
	QualifiedNameEntry name;
		/// The indices of its parts.
	unsigned int       sizes[5];
		/// The tables' sizes just before the name was introduced, by
		/// QualifiedNameCache::Table.
};


class QualifiedNameCache
	/// Finds the name-table index of a qualified name by its prefix,
	/// namespace name, local name and role (element or attribute), without
	/// building a key: one look-up in place of four table look-ups for a
	/// name written before. The strings are not copied: an entry points at
	/// them in the tables, where they stay until the tables are emptied.
	///
	/// A cache can also carry the names of one writer over to the next on
	/// the thread (see keep()): a name that the next document introduces
	/// while its tables are exactly what the last document's were at that
	/// name's introduction is written from what the cache knows, without
	/// looking its parts up.
{
public:
	enum Table
		/// The tables whose sizes decide how a new name is written.
	{
		PREFIXES,
		NAMESPACES,
		LOCAL_NAMES,
		ATTRIBUTE_NAMES,
		ELEMENT_NAMES,
		TABLES
	};

	enum
	{
		STRING_TABLES = LOCAL_NAMES + 1
	};

	static_assert(sizeof(QualifiedNameCacheEntry::sizes) == TABLES*sizeof(unsigned int), "A size for every table");

	using StringTables = const IndexedVocabulary<std::string>* const*;
		/// The STRING_TABLES tables of the name parts, in Table order.

	using Entry = QualifiedNameCacheEntry;

	QualifiedNameCache();

	void reset(const DocumentVocabulary& vocabulary);
		/// Forgets every name, the carried ones included; names are then taken
		/// from the string tables of vocabulary, which must keep their values
		/// until the next reset.

	void renew(const DocumentVocabulary& vocabulary);
		/// reset() for a new writer, except that the names the last one kept
		/// stay as carried names, known only to replay().

	void startReplay(DocumentVocabulary::VocabularyImpl impl, StringTables tables);
		/// Lets carried names be replayed into tables of kind impl, which hold
		/// a fresh vocabulary's values: a cache kept from tables of the same
		/// kind.

	void stopReplay();
		/// No more carried names in this document.

	void keep(DocumentVocabulary::VocabularyImpl impl, StringTables tables);
		/// At the end of a writer whose tables (of kind impl, with tables as
		/// the string tables) were fresh when its document started and changed
		/// only through writing: keeps its names, with copies of its string
		/// tables, for the next renew(). Never throws: what it cannot keep it
		/// forgets.

	void drop();
		/// At the end of any other writer: the next renew() keeps nothing.

	static Korvo::UInt32 hashOf(Korvo::UInt32 localNameHash, std::string_view prefix, std::string_view ns, bool inElement);
		/// The hash that find() and add() take, computed once for both from
		/// the ValueHash of the local name, which the local-name table takes.

	unsigned int find(Korvo::UInt32 hash, std::string_view prefix, std::string_view ns, std::string_view localName, bool inElement, std::size_t& slot) const;
		/// The index of the name, or 0 when it is not known (no name has
		/// index 0). slot tells add() where an unknown name goes.

	Entry* carried(std::size_t slot);
		/// The carried name at slot, where find() did not find the name,
		/// when it may be replayed; null otherwise.

	bool replayable(const Entry& entry, const unsigned int sizes[TABLES]);
		/// True when the tables, whose sizes are sizes, are what they were
		/// when entry was introduced: writing it again adds to them exactly
		/// what it added then. The first difference in the string tables
		/// ends replaying for the document.

	bool continues(Table table, unsigned int size, std::string_view value);
		/// True when value, added to the string table of that Table whose
		/// size is size, is the value the last document added at that
		/// point: the table does not hold it then. It is taken as added.

	void replayed(Entry& entry, const unsigned int added[STRING_TABLES]);
		/// The name of entry has been written as before, adding added[t]
		/// values to string table t.

	void add(std::size_t slot, Korvo::UInt32 hash, std::string_view prefix, std::string_view ns, std::string_view localName, bool inElement, const QualifiedNameEntry& name, unsigned int index, const unsigned int sizes[TABLES]);
		/// Remembers that the name, whose table entry is name, has index:
		/// right after find() did not find it and gave slot. sizes are the
		/// tables' sizes before it was introduced.

	std::size_t storage() const;
		/// The number of names the cache has room for.

private:
	enum
	{
		MAX_KEPT_VALUES = 1024,
			/// Larger tables are not copied for the next writer,
		MAX_KEPT_SIZE = 128
			/// nor tables with longer values.
	};

	std::size_t slotOf(Korvo::UInt32 hash, std::string_view prefix, std::string_view ns, std::string_view localName, bool inElement) const;
		/// The slot that holds the name, or the empty slot where it would go.
	static const std::string* string(const Vocabulary<std::string>* pTable, unsigned int id);
	static bool equal(const std::string& left, std::string_view right);
	bool catchUp(Table table, unsigned int size);
		/// Checks the values of the table, whose size is size, added since
		/// the last check: false, ending replaying, where they are not the
		/// copy's.
	void grow();
	void clear();
	void keepNames();
	void rebuildSlots();

	std::vector<Entry>        _entries;
	std::vector<unsigned int> _slots;
		/// Position in _entries plus one; 0 for an empty slot.
	const Vocabulary<std::string>* _pPrefixes;
	const Vocabulary<std::string>* _pNamespaces;
	const Vocabulary<std::string>* _pLocalNames;
	unsigned int              _epoch;
		/// Counts documents: entries of an earlier one are carried.
	std::size_t               _current;
		/// The entries of this document.
	std::size_t               _added;
		/// Those of them added rather than replayed.
	bool                      _carry;
		/// Whether renew() keeps the entries.
	bool                      _replaying;
	DocumentVocabulary::VocabularyImpl _carriedImpl;
	const IndexedVocabulary<std::string>* _pTables[STRING_TABLES];
	unsigned int              _synced[STRING_TABLES];
		/// The values of each string table known to equal its copy.
	VerbTable<std::string>    _copies[STRING_TABLES];
		/// The string tables as the last writer left them: carried entries
		/// point at their values.
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
	return position && _entries[position - 1].epoch == _epoch ? _entries[position - 1].index : 0;
}


inline QualifiedNameCache::Entry* QualifiedNameCache::carried(std::size_t slot)
{
	if (!_replaying || _slots.empty()) return nullptr;
	const unsigned int position = _slots[slot];
	return position ? &_entries[position - 1] : nullptr;
}


inline bool QualifiedNameCache::continues(Table table, unsigned int size, std::string_view value)
{
	// The copy holds each value once: what it has at size it lacks below.
	if (!_replaying || size >= _copies[table].size() || !equal(*_copies[table].get(size), value)) return false;
	if (_synced[table] != size && !catchUp(table, size)) return false;
	++_synced[table];
	return true;
}


inline void QualifiedNameCache::replayed(Entry& entry, const unsigned int added[STRING_TABLES])
{
	// The values added are the copy's at the same indices.
	for (std::size_t t = 0; t < STRING_TABLES; ++t) _synced[t] += added[t];
	entry.epoch = _epoch;
	++_current;
}


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_QualifiedNameCache_INCLUDED
