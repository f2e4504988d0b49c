//
// NewValueFilter.h
//
// Library: FastInfoset
// Package: Parser
// Module:  NewValueFilter
//
// Lets the parser append a literal to an indexed table without searching it
// where the literal is surely new.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_NewValueFilter_INCLUDED
#define FastInfoset_NewValueFilter_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/HashVocabulary.h"
#include "Korvo/FastInfoset/IndexedVocabulary.h"
#include "Korvo/FastInfoset/MapVocabulary.h"
#include "Korvo/FastInfoset/ValueIndex.h"
#include "Korvo/FastInfoset/Vocabulary.h"
#include <cstring>
#include <typeinfo>
#include <vector>


namespace Korvo {
namespace FastInfoset {


template <class T>
class NewValueFilter
	/// Adds the literals of a document to one table as its index-or-add
	/// operation does, but without building the table's value index: a set
	/// of the full hashes of the values the table holds tells when a value
	/// cannot be there, and such a value is appended without a search. Only
	/// a value whose hash is in the set (a repeated value, or one of the
	/// rare values that share a hash) takes the table's own operation, which
	/// indexes the table then. A table nobody searches keeps no index, and
	/// gets exactly the values and indices its own operation would give.
	///
	/// The set follows the table through the values added here; forget()
	/// makes it start again from the table's content, as it must whenever
	/// the table may have changed otherwise (a new document). A table that
	/// holds many values when the set starts, or one without value lookup,
	/// takes its own operation throughout.
	///
	/// The filter also keeps the hashes of the values it appended, in order,
	/// as long as each was appended without a search. A table that starts
	/// from values of the same hashes as the recorded ones, and then takes
	/// values of the recorded hashes in the recorded order (a document like
	/// the one before), gets each appended as it was then, with no set at
	/// all: the set then held exactly the hashes of the values before, and
	/// none was the new one's. The set is built from the record only when a
	/// value departs from it.
{
public:
	NewValueFilter():
		_pTable(nullptr),
		_pIndexed(nullptr),
		_covered(0),
		_found(false),
		_replaying(false),
		_room(0),
		_mask(0),
		_historyStart(0),
		_historyValid(0)
	{
	}

	void forget()
	{
		_pTable = nullptr;
	}

	void trim()
		/// forget(), dropping a set grown large: for a filter kept for
		/// another parser.
	{
		forget();
		if (_slots.size() > LARGE_SLOTS) std::vector<Korvo::UInt32>().swap(_slots);
		if (_history.size() > LARGE_SLOTS)
		{
			std::vector<Korvo::UInt32>().swap(_history);
			_historyStart = 0;
			_historyValid = 0;
		}
	}

	inline __attribute__((always_inline)) unsigned int add(Vocabulary<T>& table, const T& value)
		/// What table.index(value, existed) returns.
	{
		return add(table, value, false);
	}

	inline __attribute__((always_inline)) const T& addSpare(Vocabulary<T>& table, const T& value, unsigned int& index)
		/// add() for the value built in table.spare(): gives the index and
		/// returns the stored value.
	{
		if (&table == _pTable && !_pIndexed)
		{
			bool existed;
			index = table.index(value, existed);
			return *table.lookup(index);
		}
		index = add(table, value, true);
		// A new value, appended here or by the table, stays where it was built.
		return _pIndexed && !_found && index + 1 == _covered ? value : *table.lookup(index);
	}

private:
	inline __attribute__((always_inline)) unsigned int add(Vocabulary<T>& table, const T& value, bool isSpare)
	{
		if (&table == _pTable)
		{
			if (!_pIndexed)
			{
				bool existed;
				return table.index(value, existed);
			}
			if (_pIndexed->IndexedVocabulary<T>::size() != _covered) return filter(table, value, isSpare);
			// The common case, inline: a new value, appended without a search.
			const Korvo::UInt32 hash = entryOf(hashOf(value));
			if (_replaying)
			{
				if (_covered < _historyValid && _history[_covered] == hash)
				{
					// New, as the value of this hash was at this place before.
					append(value, isSpare);
					_found = false;
					return _covered++;
				}
				stopReplaying();
			}
			std::size_t i = hash & _mask;
			for (;;)
			{
				const Korvo::UInt32 entry = _slots[i];
				if (entry == EMPTY) break;
				if (entry == hash) return search(table, value);
				i = (i + 1) & _mask;
			}
			if (_room != 0)
			{
				// The table refuses a value beyond its capacity before the set takes it.
				append(value, isSpare);
				_slots[i] = hash;
				--_room;
				_found = false;
				if (_covered == _historyValid) record(hash);
				return _covered++;
			}
		}
		return filter(table, value, isSpare);
	}

	enum
	{
		LIMIT = 64,
			/// Tables holding more than this when the set starts use their own index.
		MIN_SLOTS = 128,
		LARGE_SLOTS = 4096,
			/// A set larger than this shrinks when a document fills little of it.
		EMPTY = 0
	};

	unsigned int __attribute__((noinline)) filter(Vocabulary<T>& table, const T& value, bool isSpare)
	{
		// Whatever added to the table other than here makes the set start again.
		if (&table != _pTable || !holdsCovered()) cover(table);
		if (!_pIndexed)
		{
			bool existed;
			return table.index(value, existed);
		}
		if (!_replaying && _room == 0) grow();
		return add(table, value, isSpare);
	}

	inline __attribute__((always_inline)) void append(const T& value, bool isSpare)
	{
		if (isSpare)
			_pIndexed->appendSpare();
		else
			_pIndexed->append(value);
	}

	inline __attribute__((always_inline)) void record(Korvo::UInt32 hash)
		/// Adds the hash of a value appended without a search to the record.
	{
		if (_historyValid < _history.size())
			_history[_historyValid] = hash;
		else
			_history.push_back(hash);
		++_historyValid;
	}

	void __attribute__((noinline)) stopReplaying()
		/// The set, from the record of the values the table holds now; the
		/// rest of the record belongs to a document this one has left.
	{
		_replaying = false;
		_historyValid = _covered;
		rebuild();
	}

	unsigned int __attribute__((noinline)) search(Vocabulary<T>& table, const T& value)
		/// The table's own operation, for a value whose hash the set holds.
	{
		bool existed;
		const unsigned int index = table.index(value, existed);
		// A value added there shares its hash with one in the set already.
		_covered = table.size();
		_found = existed;
		return index;
	}

	static inline __attribute__((always_inline)) Korvo::UInt32 hashOf(const std::string& value)
		/// The value index's hash; short strings, the usual names and values,
		/// without a call.
	{
		using Hash = ValueHash<std::string>;
		const std::size_t n = value.size();
		if (n > 16) return Hash()(value);
		Korvo::UInt64 a;
		Korvo::UInt64 b;
		Hash::shortWords(value.data(), n, a, b);
		return Hash::finish(Hash::withSize(Hash::mix(a ^ Hash::K1, b ^ Hash::K2), n));
	}

	static Korvo::UInt32 hashOf(const QualifiedNameEntry& value)
	{
		return ValueHash<QualifiedNameEntry>()(value);
	}

	static Korvo::UInt32 entryOf(Korvo::UInt32 hash)
		/// The set's entry for hash: never EMPTY, at the price of one more
		/// shared hash.
	{
		return hash == EMPTY ? 1 : hash;
	}

	bool holdsCovered() const
		/// Whether the set is used and the table's size is still the one covered.
	{
		return _pIndexed && _pIndexed->IndexedVocabulary<T>::size() == _covered;
	}

	void cover(Vocabulary<T>& table)
	{
		// The table kinds that append without a search: others, and tables
		// that hold many values already, add through their own operation.
		_pTable = &table;
		_pIndexed = nullptr;
		_replaying = false;
		_covered = table.size();
		const std::type_info* pType = &typeid(table);
		if (_covered <= LIMIT)
		{
			// The type descriptions' addresses: no name comparison, and at worst
			// a table that could have been filtered is not.
			if (pType == &typeid(MapVocabulary<T>))
				_pIndexed = static_cast<MapVocabulary<T>*>(&table);
			else if (pType == &typeid(HashVocabulary<T>))
				_pIndexed = static_cast<HashVocabulary<T>*>(&table);
		}
		if (!_pIndexed)
		{
			_historyStart = 0;
			_historyValid = 0;
			return;
		}
		// A table that starts as the recorded one did follows the record;
		// any other starts a record of its own.
		bool replay = _covered == _historyStart && _covered <= _historyValid;
		if (_history.size() < _covered) _history.resize(_covered);
		for (unsigned int i = 0; i < _covered; ++i)
		{
			const Korvo::UInt32 hash = entryOf(hashOf(*table.lookup(i)));
			if (replay && _history[i] != hash) replay = false;
			_history[i] = hash;
		}
		if (replay)
		{
			_replaying = true;
			return;
		}
		_historyStart = _covered;
		_historyValid = _covered;
		rebuild();
	}

	void rebuild()
		/// The set of the first _covered hashes of the record. It stays as
		/// large as the last document needed, unless that was much less than
		/// it has.
	{
		std::size_t size = _slots.size();
		if (size == 0 || (size > LARGE_SLOTS && 8*(size/2 - _room) < size)) size = MIN_SLOTS;
		while (size/2 <= _covered) size *= 2;
		if (size != _slots.size())
			std::vector<Korvo::UInt32>(size, Korvo::UInt32(EMPTY)).swap(_slots);
		else
			std::memset(_slots.data(), EMPTY, _slots.size()*sizeof(Korvo::UInt32));
		_mask = _slots.size() - 1;
		_room = _slots.size()/2;
		for (unsigned int i = 0; i < _covered; ++i) enter(_history[i]);
	}

	void grow()
	{
		std::vector<Korvo::UInt32> old(2*_slots.size(), Korvo::UInt32(EMPTY));
		old.swap(_slots);
		_mask = _slots.size() - 1;
		_room = _slots.size()/2;
		for (Korvo::UInt32 entry: old)
		{
			if (entry != EMPTY) enter(entry);
		}
	}

	void enter(Korvo::UInt32 entry)
	{
		std::size_t i = entry & _mask;
		for (;;)
		{
			if (_slots[i] == entry) return;
			if (_slots[i] == EMPTY) break;
			i = (i + 1) & _mask;
		}
		_slots[i] = entry;
		--_room;
	}

	Vocabulary<T>*             _pTable;
	IndexedVocabulary<T>*      _pIndexed;
		/// Null where the set is not used.
	unsigned int               _covered;
		/// The table's size when the set last matched it.
	bool                       _found;
		/// Whether the table's own operation found the last value added.
	bool                       _replaying;
		/// Whether the table follows the record, with no set.
	std::size_t                _room;
		/// Entries the set takes before it grows.
	std::size_t                _mask;
	std::vector<Korvo::UInt32> _slots;
		/// Open addressing, probed linearly, at most half full.
	std::vector<Korvo::UInt32> _history;
		/// The set's entries for the table's values by index: the first
		/// _historyStart were there when the record began, the others up
		/// to _historyValid were appended without a search, in this order.
	unsigned int               _historyStart;
	unsigned int               _historyValid;
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_NewValueFilter_INCLUDED
