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
	/// Each slot has a one-octet tag, taken from the value's hash (0 for an
	/// empty slot), and the value's index: a probe runs along the compact
	/// tags and looks at an index, and the value behind it, only where the
	/// tag matches.
	///
	/// The index covers the table's values from index 0 up to a count. It is
	/// built when it is first asked about a table of more than a few values,
	/// which are searched one by one, and catches up with values appended
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
		unsigned char _tag;
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
		if (_tags.empty() && values.size() <= SMALL) return scan(values, value);
		sync(values);
		return locate(values, value, _hash(value));
	}

	void insert(const VerbTable<T>& values, const Probe& probe)
		/// Enters the value just appended to values (the one probe did not
		/// find) under its index. Nothing may have changed in between.
	{
		if (_tags.empty()) return;
		poco_assert_dbg (!probe.found() && _count + 1 == values.size());
		_tags[probe._slot] = probe._tag;
		_indices[probe._slot] = _count++;
		if (2*_count > _tags.size()) rebuild(values, 2*_tags.size());
	}

	void truncate(const VerbTable<T>& values, unsigned int size)
		/// Forgets the values from index size on, which values is about to
		/// drop: it must still hold them.
	{
		if (_tags.empty() || size >= _count) return;
		if (_count - size > size)
		{
			// Most of it goes: start again, and index the rest when asked.
			clear();
			return;
		}
		// Entries leave in the reverse of the order they came in, which
		// leaves every probe sequence as it was before they came.
		const std::size_t mask = _tags.size() - 1;
		while (_count > size)
		{
			--_count;
			for (std::size_t i = _hash(*values.get(_count)) & mask; _tags[i] != EMPTY; i = (i + 1) & mask)
			{
				if (_indices[i] == _count)
				{
					_tags[i] = EMPTY;
					break;
				}
			}
		}
	}

private:
	enum
	{
		EMPTY = 0,
		SMALL = 24,
			/// Tables up to this size are searched from the start, with no index.
		MIN_SLOTS = 64,
		LARGE_SLOTS = 4096
	};

	template <class K>
	Probe scan(const VerbTable<T>& values, const K& value) const
	{
		Probe result;
		result._slot = 0;
		result._tag = EMPTY;
		result._index = NOT_FOUND;
		for (unsigned int i = 0; i < values.size(); ++i)
		{
			if (same(*values.get(i), value))
			{
				result._index = i;
				break;
			}
		}
		return result;
	}

	template <class K>
	static bool same(const T& entry, const K& value)
	{
		return entry == value;
	}

	static bool same(const std::string& entry, std::string_view value)
	{
		// Most names differ in length or first octet: no call for those.
		return entry.size() == value.size() && (value.empty() || (entry[0] == value[0] && std::memcmp(entry.data(), value.data(), value.size()) == 0));
	}

	static unsigned char tagOf(Korvo::UInt32 hash)
		/// The top octet of the hash (the slot comes from the bottom ones), never EMPTY.
	{
		unsigned char tag = static_cast<unsigned char>(hash >> 24);
		return tag == EMPTY ? 1 : tag;
	}

	template <class K>
	Probe locate(const VerbTable<T>& values, const K& value, Korvo::UInt32 hash) const
	{
		Probe result;
		result._tag = tagOf(hash);
		const std::size_t mask = _tags.size() - 1;
		std::size_t i = hash & mask;
		for (;;)
		{
			const unsigned char tag = _tags[i];
			if (tag == EMPTY)
			{
				result._index = NOT_FOUND;
				break;
			}
			if (tag == result._tag && *values.get(_indices[i]) == value)
			{
				result._index = _indices[i];
				break;
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
		if (_tags.size() > LARGE_SLOTS && 8*_count < _tags.size())
		{
			std::vector<unsigned char>().swap(_tags);
			std::vector<Korvo::UInt32>().swap(_indices);
		}
		else std::fill(_tags.begin(), _tags.end(), static_cast<unsigned char>(EMPTY));
		_count = 0;
	}

	void sync(const VerbTable<T>& values)
	{
		// Values dropped without telling the index: it can only start again.
		if (_count > values.size()) clear();
		if (_tags.empty()) rebuild(values, MIN_SLOTS);
		while (_count < values.size())
		{
			enter(values, _count++);
			if (2*_count > _tags.size()) rebuild(values, 2*_tags.size());
		}
	}

	void enter(const VerbTable<T>& values, unsigned int index)
		/// Enters the value at index, unless an equal one is there.
	{
		const T& value = *values.get(index);
		Probe probe = locate(values, value, _hash(value));
		if (!probe.found())
		{
			_tags[probe._slot] = probe._tag;
			_indices[probe._slot] = index;
		}
	}

	void rebuild(const VerbTable<T>& values, std::size_t slots)
		/// Re-enters the indexed values, in index order, into slots slots.
	{
		std::vector<unsigned char>(slots, static_cast<unsigned char>(EMPTY)).swap(_tags);
		std::vector<Korvo::UInt32>(slots).swap(_indices);
		for (unsigned int i = 0; i < _count; ++i) enter(values, i);
	}

	std::vector<unsigned char> _tags;
	std::vector<Korvo::UInt32> _indices;
	unsigned int               _count;
		/// The values from index 0 below _count are indexed.
	ValueHash<T>               _hash;
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_ValueIndex_INCLUDED
