//
// ValueIndex.h
//
// Library: FastInfoset
// Package: Vocabulary
// Module:  ValueIndex
//
// Finds the values of a vocabulary table by content.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_ValueIndex_INCLUDED
#define FastInfoset_ValueIndex_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/VerbTable.h"
#include "Korvo/FastInfoset/QualifiedNameVocabulary.h"
#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>


namespace Korvo {
namespace FastInfoset {


template <class T>
struct ValueHash;
	/// A well-mixed 32-bit hash of a value, for ValueIndex.


template <>
struct ValueHash<std::string>
{
	Korvo::UInt32 operator () (std::string_view value) const
	{
		return finish(octets(0, value.data(), value.size()));
	}

	static Korvo::UInt64 octets(Korvo::UInt64 h, const char* p, std::size_t n)
		/// h continued with the n octets at p and their number: sixteen at a
		/// time, the last two words overlapping the ones before.
	{
		Korvo::UInt64 a = 0;
		Korvo::UInt64 b = 0;
		if (n <= 16)
		{
			if (n >= 8)
			{
				a = word8(p);
				b = word8(p + n - 8);
			}
			else if (n >= 4)
			{
				a = word4(p);
				b = word4(p + n - 4);
			}
			else if (n > 0)
			{
				const unsigned char* u = reinterpret_cast<const unsigned char*>(p);
				a = (Korvo::UInt64(u[0]) << 16) | (Korvo::UInt64(u[n >> 1]) << 8) | u[n - 1];
			}
		}
		else
		{
			const char* q = p;
			for (std::size_t rest = n; rest > 16; rest -= 16, q += 16) h = mix(word8(q) ^ K1, word8(q + 8) ^ h);
			a = word8(p + n - 16);
			b = word8(p + n - 8);
		}
		return mix(a ^ K1 ^ n, b ^ h ^ K2);
	}

	static bool sameOctets(const char* p, const char* q, std::size_t n)
		/// True when the n octets at p and at q are the same: names and
		/// short values are compared in words, without a call.
	{
		if (n > 16) return std::memcmp(p, q, n) == 0;
		if (n >= 8) return word8(p) == word8(q) && word8(p + n - 8) == word8(q + n - 8);
		if (n >= 4) return word4(p) == word4(q) && word4(p + n - 4) == word4(q + n - 4);
		for (std::size_t i = 0; i < n; ++i)
		{
			if (p[i] != q[i]) return false;
		}
		return true;
	}

	static Korvo::UInt64 mix(Korvo::UInt64 a, Korvo::UInt64 b)
		/// Both halves of the 128-bit product, folded: every bit of a and b
		/// reaches the middle bits.
	{
		unsigned __int128 product = static_cast<unsigned __int128>(a)*b;
		return static_cast<Korvo::UInt64>(product) ^ static_cast<Korvo::UInt64>(product >> 64);
	}

	static Korvo::UInt32 finish(Korvo::UInt64 h)
	{
		return static_cast<Korvo::UInt32>(h ^ (h >> 32));
	}

	static Korvo::UInt64 word8(const char* p)
	{
		Korvo::UInt64 word;
		std::memcpy(&word, p, sizeof(word));
		return word;
	}

	static Korvo::UInt32 word4(const char* p)
	{
		Korvo::UInt32 word;
		std::memcpy(&word, p, sizeof(word));
		return word;
	}

	static constexpr Korvo::UInt64 K1 = 0xA0761D6478BD642Full;
	static constexpr Korvo::UInt64 K2 = 0xE7037ED1A0B428DBull;
};


template <>
struct ValueHash<QualifiedNameEntry>
{
	Korvo::UInt32 operator () (const QualifiedNameEntry& value) const
	{
		using Strings = ValueHash<std::string>;
		const Korvo::UInt64 h = Strings::mix((Korvo::UInt64(value.prefixId()) << 32 | value.namespaceId()) ^ Strings::K1, value.localNameId() ^ Strings::K2);
		return Strings::finish(h);
	}
};


template <class T>
class ValueIndex
	/// Finds the index of a value among the values of a VerbTable: an open
	/// addressing hash table, probed linearly and kept at most half full.
	/// Each slot holds a value's full hash and its index, and the hash of
	/// every indexed value is kept by index as well: a probe compares a
	/// value only where the whole hash matches, and growing or shrinking
	/// the table never hashes or compares a value again.
	///
	/// The index covers the table's values from index 0 up to a count. It is
	/// built when it is first asked, and catches up with values appended
	/// since whenever it is asked again; so a table that nobody searches
	/// never builds one. Values equal to an earlier one are not indexed:
	/// the first index of a value is the one found.
{
public:
	static constexpr Korvo::UInt32 NOT_FOUND = 0xFFFFFFFF;

	class Probe
		/// Where a value is, or would go.
	{
	public:
		bool found() const
		{
			return _index != NOT_FOUND;
		}

		unsigned int index() const
		{
			return _index;
		}

	private:
		friend class ValueIndex;

		std::size_t   _slot;
		Korvo::UInt32 _index;
		Korvo::UInt32 _hash;
	};

	ValueIndex():
		_count(0)
	{
	}

	template <class K>
	Probe probe(const VerbTable<T>& values, const K& value)
		/// Looks value up among values, indexing the values appended since
		/// the last call first. A K compares and hashes as the T it stands
		/// for (a std::string_view for a std::string).
	{
		return probe(values, value, _hash(value));
	}

	template <class K>
	Probe probe(const VerbTable<T>& values, const K& value, Korvo::UInt32 hash)
		/// probe() for a value whose ValueHash the caller has at hand.
	{
		if (_count != values.size() || _slots.empty()) sync(values);
		return locate(values, value, hash);
	}

	void insert(const VerbTable<T>& values, const Probe& probe)
		/// Enters the value just appended to values (the one probe did not
		/// find) under its index. Nothing may have changed in between.
	{
		poco_assert_dbg (!probe.found() && _count + 1 == values.size());
		_slots[probe._slot] = slotValue(probe._hash, _count);
		_hashes.push_back(probe._hash);
		++_count;
		if (2*_count > _slots.size()) rebuild(values, 2*_slots.size());
	}

	void truncate(const VerbTable<T>& values, unsigned int size)
		/// Forgets the values from index size on, which values is about to
		/// drop: it must still hold them.
	{
		(void) values;
		if (_slots.empty() || size >= _count) return;
		if (_count - size > size)
		{
			// Most of it goes: start again, and index the rest when asked.
			clear();
			return;
		}
		// Entries leave in the reverse of the order they came in, which
		// leaves every probe sequence as it was before they came.
		const std::size_t mask = _slots.size() - 1;
		while (_count > size)
		{
			--_count;
			const Korvo::UInt64 entry = slotValue(_hashes[_count], _count);
			for (std::size_t i = _hashes[_count] & mask; _slots[i] != EMPTY; i = (i + 1) & mask)
			{
				if (_slots[i] == entry)
				{
					_slots[i] = EMPTY;
					break;
				}
			}
		}
		_hashes.resize(_count);
	}

private:
	enum
	{
		EMPTY = 0,
		MIN_SLOTS = 32,
		LARGE_SLOTS = 4096
	};

	static Korvo::UInt64 slotValue(Korvo::UInt32 hash, Korvo::UInt32 index)
		/// The hash above the index plus one, so that no entry is EMPTY.
	{
		return (Korvo::UInt64(hash) << 32) | (Korvo::UInt64(index) + 1);
	}

	template <class K>
	static bool same(const T& entry, const K& value)
	{
		return entry == value;
	}

	static bool same(const std::string& entry, std::string_view value)
	{
		return entry.size() == value.size() && ValueHash<std::string>::sameOctets(entry.data(), value.data(), value.size());
	}

	template <class K>
	Probe locate(const VerbTable<T>& values, const K& value, Korvo::UInt32 hash) const
	{
		Probe result;
		result._hash = hash;
		result._index = NOT_FOUND;
		const std::size_t mask = _slots.size() - 1;
		std::size_t i = hash & mask;
		for (;;)
		{
			const Korvo::UInt64 slot = _slots[i];
			if (slot == EMPTY) break;
			if (static_cast<Korvo::UInt32>(slot >> 32) == hash)
			{
				const Korvo::UInt32 index = static_cast<Korvo::UInt32>(slot) - 1;
				if (same(*values.get(index), value))
				{
					result._index = index;
					break;
				}
			}
			i = (i + 1) & mask;
		}
		result._slot = i;
		return result;
	}

	void clear()
	{
		// The slots stay for a table that fills up alike again, unless they
		// are many for what was in them.
		if (_slots.size() > LARGE_SLOTS && 8*_count < _slots.size())
		{
			std::vector<Korvo::UInt64>().swap(_slots);
			std::vector<Korvo::UInt32>().swap(_hashes);
		}
		else
		{
			std::fill(_slots.begin(), _slots.end(), Korvo::UInt64(EMPTY));
			_hashes.clear();
		}
		_count = 0;
	}

	void sync(const VerbTable<T>& values)
	{
		// Values dropped without telling the index: it can only start again.
		if (_count > values.size()) clear();
		if (_slots.empty()) _slots.assign(MIN_SLOTS, Korvo::UInt64(EMPTY));
		while (_count < values.size())
		{
			const T& value = *values.get(_count);
			_hashes.push_back(_hash(value));
			enter(values, _count++);
			if (2*_count > _slots.size()) rebuild(values, 2*_slots.size());
		}
	}

	void enter(const VerbTable<T>& values, unsigned int index)
		/// Enters the value at index, whose hash is known, unless an equal
		/// one is there.
	{
		const Korvo::UInt32 hash = _hashes[index];
		const std::size_t mask = _slots.size() - 1;
		std::size_t i = hash & mask;
		for (;;)
		{
			const Korvo::UInt64 slot = _slots[i];
			if (slot == EMPTY) break;
			if (static_cast<Korvo::UInt32>(slot >> 32) == hash && *values.get(static_cast<Korvo::UInt32>(slot) - 1) == *values.get(index)) return;
			i = (i + 1) & mask;
		}
		_slots[i] = slotValue(hash, index);
	}

	void rebuild(const VerbTable<T>& values, std::size_t slots)
		/// Re-enters the indexed values, in index order, into slots slots,
		/// with the hashes they came with.
	{
		std::vector<Korvo::UInt64>(slots, Korvo::UInt64(EMPTY)).swap(_slots);
		for (unsigned int i = 0; i < _count; ++i) enter(values, i);
	}

	std::vector<Korvo::UInt64> _slots;
	std::vector<Korvo::UInt32> _hashes;
		/// The hash of each value below _count, by index.
	unsigned int               _count;
		/// The values from index 0 below _count are indexed.
	ValueHash<T>               _hash;
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_ValueIndex_INCLUDED
