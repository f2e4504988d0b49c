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
#include <typeinfo>


namespace Korvo {
namespace FastInfoset {


template <class T>
class NewValueFilter
	/// Adds the literals of a document to one table as its index-or-add
	/// operation does, but cheaper while the table is small: a bit of a
	/// 2048-bit set per value the table holds tells when a value cannot be
	/// there, and such a value is appended without a search. A value that
	/// may be there, a table without value lookup or a large table takes
	/// the table's own operation.
	///
	/// The set follows the table through the values added here; forget()
	/// makes it start again from the table's content, as it must whenever
	/// the table may have changed otherwise (a new document).
{
public:
	NewValueFilter():
		_pTable(nullptr),
		_pIndexed(nullptr),
		_covered(0)
	{
	}

	void forget()
	{
		_pTable = nullptr;
	}

	inline __attribute__((always_inline)) unsigned int add(Vocabulary<T>& table, const T& value)
		/// What table.index(value, existed) returns.
	{
		if (&table == _pTable)
		{
			if (!_pIndexed)
			{
				bool existed;
				return table.index(value, existed);
			}
			// The common case, inline: a new value, appended without a search.
			if (holdsCovered())
			{
				const Korvo::UInt32 hash = hashOf(value);
				if (!mayHold(hash) && _covered < LIMIT)
				{
					_pIndexed->append(value);
					mark(hash);
					return _covered++;
				}
			}
		}
		return filter(table, value);
	}

private:
	enum
	{
		LIMIT = 64,
			/// Tables beyond this size use their own index.
		WORDS = 32
	};

	unsigned int __attribute__((noinline)) filter(Vocabulary<T>& table, const T& value)
	{
		// Whatever added to the table other than here makes the set start again.
		if (&table != _pTable || !holdsCovered()) cover(table);
		if (!_pIndexed)
		{
			bool existed;
			return table.index(value, existed);
		}
		const Korvo::UInt32 hash = hashOf(value);
		if (mayHold(hash))
		{
			bool existed;
			const unsigned int index = table.index(value, existed);
			mark(hash);
			_covered = table.size();
			if (_covered > LIMIT) _pIndexed = nullptr;
			return index;
		}
		_pIndexed->append(value);
		mark(hash);
		if (_covered == LIMIT) _pIndexed = nullptr;
		return _covered++;
	}

	static inline __attribute__((always_inline)) Korvo::UInt32 hashOf(const std::string& value)
		/// The value index's hash; short strings, the usual names and values,
		/// without a call.
	{
		using Hash = ValueHash<std::string>;
		const std::size_t n = value.size();
		if (n > 16) return Hash()(value);
		const char* p = value.data();
		Korvo::UInt64 a = 0;
		Korvo::UInt64 b = 0;
		if (n >= 8)
		{
			a = Hash::word8(p);
			b = Hash::word8(p + n - 8);
		}
		else if (n >= 4)
		{
			a = Hash::word4(p);
			b = Hash::word4(p + n - 4);
		}
		else if (n > 0)
		{
			const unsigned char* u = reinterpret_cast<const unsigned char*>(p);
			a = (Korvo::UInt64(u[0]) << 16) | (Korvo::UInt64(u[n >> 1]) << 8) | u[n - 1];
		}
		return Hash::finish(Hash::mix(a ^ Hash::K1 ^ n, b ^ Hash::K2));
	}

	static Korvo::UInt32 hashOf(const QualifiedNameEntry& value)
	{
		return ValueHash<QualifiedNameEntry>()(value);
	}

	bool holdsCovered() const
		/// Whether the table's size is still the one covered.
	{
		return _pIndexed && _pIndexed->IndexedVocabulary<T>::size() == _covered;
	}

	void cover(Vocabulary<T>& table)
	{
		// The table kinds that append without a search: others, and tables
		// beyond the limit, add through their own operation.
		_pTable = &table;
		_pIndexed = nullptr;
		_covered = table.size();
		if (_covered > LIMIT) return;
		// The type descriptions' addresses: no name comparison, and at worst
		// a table that could have been filtered is not.
		const std::type_info* pType = &typeid(table);
		if (pType == &typeid(MapVocabulary<T>))
			_pIndexed = static_cast<MapVocabulary<T>*>(&table);
		else if (pType == &typeid(HashVocabulary<T>))
			_pIndexed = static_cast<HashVocabulary<T>*>(&table);
		else
			return;
		for (Korvo::UInt64& word: _bits) word = 0;
		for (unsigned int i = 0; i < _covered; ++i) mark(hashOf(*table.lookup(i)));
	}

	bool mayHold(Korvo::UInt32 hash) const
	{
		return (_bits[(hash >> 6) & (WORDS - 1)] & bit(hash)) != 0;
	}

	void mark(Korvo::UInt32 hash)
	{
		_bits[(hash >> 6) & (WORDS - 1)] |= bit(hash);
	}

	static Korvo::UInt64 bit(Korvo::UInt32 hash)
	{
		return Korvo::UInt64(1) << (hash & 63);
	}

	Vocabulary<T>*         _pTable;
	IndexedVocabulary<T>*  _pIndexed;
		/// Null where the set is not used.
	unsigned int           _covered;
		/// The table's size when the set last matched it.
	Korvo::UInt64          _bits[WORDS];
	ValueHash<T>           _hash;
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_NewValueFilter_INCLUDED
