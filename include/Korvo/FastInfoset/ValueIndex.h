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
#include <type_traits>
#include <vector>


namespace Korvo {
namespace FastInfoset {


template <class T>
struct ValueHash;
	/// A well-mixed 32-bit hash of a value, for ValueIndex.


struct ShortValue
	/// A string of 1 to MAX_SIZE octets as two words that together hold
	/// every octet (overlapping, as ValueHash reads them) and its length:
	/// two such strings are equal exactly when these are. Made once, it
	/// gives the string's ValueHash and finds it in a ValueIndex without
	/// reading a stored string.
{
	enum
	{
		MAX_SIZE = 16
	};

	ShortValue():
		first(0),
		last(0),
		size(0)
	{
	}

	ShortValue(const char* p, std::size_t n);
		/// The key of the n (1 to MAX_SIZE) octets at p.

	bool hasNul() const
		/// True when one of the octets is 0.
	{
		// The low octets of a word that are part of the string; a borrow
		// out of a zero octet reaches only octets above it.
		const Korvo::UInt64 ones = size >= 8 ? 0x0101010101010101ull : size >= 4 ? 0x01010101ull : 0x010101ull;
		const Korvo::UInt64 highs = ones << 7;
		const Korvo::UInt64 second = size >= 4 ? last : first;
		return (((first - ones) & ~first) | ((second - ones) & ~second)) & highs;
	}

	bool operator == (const ShortValue& other) const
	{
		return first == other.first && last == other.last && size == other.size;
	}

	Korvo::UInt64 first;
	Korvo::UInt64 last;
	Korvo::UInt64 size;
		/// Longer strings, which have no key, keep only their size here.
};


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
		Korvo::UInt64 a;
		Korvo::UInt64 b;
		if (n <= 16)
		{
			shortWords(p, n, a, b);
		}
		else
		{
			const char* q = p;
			for (std::size_t rest = n; rest > 16; rest -= 16, q += 16) h = mix(word8(q) ^ K1, word8(q + 8) ^ h);
			a = word8(p + n - 16);
			b = word8(p + n - 8);
		}
		return withSize(mix(a ^ K1, b ^ h ^ K2), n);
	}

	Korvo::UInt32 operator () (const ShortValue& value) const
		/// The hash of the string value stands for.
	{
		return finish(withSize(mix(value.first ^ K1, value.last ^ K2), value.size));
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

	static Korvo::UInt64 withSize(Korvo::UInt64 h, std::size_t n)
		/// The length joins after the octets are mixed: mixed into a word of
		/// them, it could undo a difference in a last octet ("AF" and "AFG",
		/// "0x1000" and "0x10000").
	{
		return h + n*K3;
	}

	static Korvo::UInt32 finish(Korvo::UInt64 h)
	{
		return static_cast<Korvo::UInt32>(h ^ (h >> 32));
	}

	static inline __attribute__((always_inline)) void shortWords(const char* p, std::size_t n, Korvo::UInt64& a, Korvo::UInt64& b)
		/// The two words that stand for the n <= 16 octets at p: the first
		/// and last eight or four, which may overlap, or three of them.
	{
		a = 0;
		b = 0;
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
	static constexpr Korvo::UInt64 K3 = 0x8EBC6AF09C88C6E3ull;
};


inline ShortValue::ShortValue(const char* p, std::size_t n):
	size(n)
{
	// The words ValueHash<std::string> starts from.
	ValueHash<std::string>::shortWords(p, n, first, last);
}


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
	///
	/// For strings it keeps the ShortValue of every value as well, so that
	/// a short string is found by its key alone.
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
		_count(0),
		_keyed(false)
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
		return locate(hash, [&values, &value](Korvo::UInt32 index) { return same(*values.get(index), value); });
	}

	Probe probe(const VerbTable<T>& values, const ShortValue& value, Korvo::UInt32 hash)
		/// probe() for a short string by its key, whose ValueHash is hash:
		/// no stored string is read.
	{
		if (_count != values.size() || _slots.empty()) sync(values);
		if constexpr (HAS_KEYS)
			if (_keys.size() != _count) catchUpKeys(values);
		return locate(hash, [this, &value](Korvo::UInt32 index) { return _keys[index] == value; });
	}

	void insert(const VerbTable<T>& values, const Probe& probe)
		/// Enters the value just appended to values (the one probe did not
		/// find) under its index. Nothing may have changed in between.
	{
		poco_assert_dbg (!probe.found() && _count + 1 == values.size());
		// Until a look-up by key asks for keys (a parser never does), they
		// wait.
		enterNew(values, probe);
		if constexpr (HAS_KEYS)
			if (_keyed && _keys.size() + 1 == _count) _keys.push_back(keyOf(*values.get(_count - 1)));
	}

	void insert(const VerbTable<T>& values, const Probe& probe, const ShortValue& value)
		/// insert() for the short string value.
	{
		poco_assert_dbg (!probe.found() && _count + 1 == values.size());
		if constexpr (HAS_KEYS)
		{
			_keyed = true;
			if (_keys.size() != _count) catchUpKeys(values);
		}
		enterNew(values, probe);
		// Refused, the key is made again when asked.
		if constexpr (HAS_KEYS) _keys.push_back(value);
		else (void) value;
	}

	void truncate(const VerbTable<T>& values, unsigned int size)
		/// Forgets the values from index size on, which values is about to
		/// drop: it must still hold them.
	{
		if (_slots.empty() || size >= _count) return;
		if (_count - size > size)
		{
			// Most of it goes. Slots that were many for what was in them go
			// too, as in clear(), and the rest is indexed when asked;
			// otherwise the rest is entered again at once, with the hashes
			// it came with, so that a table emptied for the next document
			// need not catch up.
			if (_slots.size() > LARGE_SLOTS && 8*_count < _slots.size())
			{
				clear();
				return;
			}
			std::fill(_slots.begin(), _slots.end(), Korvo::UInt64(EMPTY));
			_hashes.resize(size);
			if constexpr (HAS_KEYS) dropKeysFrom(size);
			_count = size;
			for (unsigned int i = 0; i < size; ++i) enter(values, i);
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
		if constexpr (HAS_KEYS) dropKeysFrom(_count);
	}

private:
	static constexpr bool HAS_KEYS = std::is_same<T, std::string>::value;

	static ShortValue keyOf(const std::string& value)
	{
		if (value.empty() || value.size() > ShortValue::MAX_SIZE)
		{
			ShortValue none;
			none.size = value.size();
			return none;
		}
		return ShortValue(value.data(), value.size());
	}

	void __attribute__((noinline)) catchUpKeys(const VerbTable<T>& values)
		/// Keys for the indexed values that have none yet.
	{
		_keyed = true;
		while (_keys.size() < _count) _keys.push_back(keyOf(*values.get(static_cast<unsigned int>(_keys.size()))));
	}

	void dropKeysFrom(unsigned int size)
	{
		if (_keys.size() > size) _keys.resize(size);
	}

	void enterNew(const VerbTable<T>& values, const Probe& probe)
	{
		_hashes.push_back(probe._hash);
		_slots[probe._slot] = slotValue(probe._hash, _count);
		++_count;
		if (2*_count > _slots.size()) rebuild(values, 2*_slots.size());
	}

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

	template <class Matches>
	Probe locate(Korvo::UInt32 hash, Matches matches) const
		/// Where the value whose hash is hash is, matches(index) telling
		/// whether the value at index is it, or where it would go.
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
				if (matches(index))
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
			std::vector<ShortValue>().swap(_keys);
		}
		else
		{
			std::fill(_slots.begin(), _slots.end(), Korvo::UInt64(EMPTY));
			_hashes.clear();
			_keys.clear();
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
			_hashes.push_back(_hash(*values.get(_count)));
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
	std::vector<ShortValue>    _keys;
		/// The key of each string from index 0, as far as look-ups by key
		/// have needed them (never past _count); empty for other values.
	unsigned int               _count;
		/// The values from index 0 below _count are indexed.
	bool                       _keyed;
		/// Whether values have been looked up by key: keys are then made as
		/// values come.
	ValueHash<T>               _hash;
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_ValueIndex_INCLUDED
