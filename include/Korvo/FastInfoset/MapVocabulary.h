//
// MapVocabulary.h
//
// Library: FastInfoset
// Package: Vocabulary
// Module:  MapVocabulary
//
// A vocabulary table with an ordered-map index and no capacity limit.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_MapVocabulary_INCLUDED
#define FastInfoset_MapVocabulary_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/Vocabulary.h"
#include "Poco/ByteOrder.h"
#include <cstring>
#include <map>
#include <memory>
#include <memory_resource>
#include <string>


namespace Korvo {
namespace FastInfoset {


template <class T>
inline Poco::UInt64 leadingOctets(const T&)
	/// Values other than strings have no leading octets to compare first.
{
	return 0;
}


inline Poco::UInt64 leadingOctets(const std::string& value)
	/// The first eight octets as a big-endian number, zero-padded: comparing
	/// two such numbers orders strings byte-wise as far as they go.
{
	Poco::UInt64 word = 0;
	if (value.size() >= sizeof(word))
	{
		std::memcpy(&word, value.data(), sizeof(word));
		return Poco::ByteOrder::fromBigEndian(word);
	}
	for (char c: value) word = (word << 8) | static_cast<unsigned char>(c);
	return value.empty() ? 0 : word << 8*(sizeof(word) - value.size());
}


template <class T>
class MapVocabulary: public Vocabulary<T>
	/// A table that finds values through an ordered map (operator < of T),
	/// in logarithmic time and without a capacity limit.
{
public:
	enum DontInitialize
	{
		DONT_INITIALIZE = 0
	};

	explicit MapVocabulary(unsigned int size = 0)
		/// Creates a table holding the placeholder at index 0. The size is
		/// accepted for symmetry with HashVocabulary and ignored.
	{
		(void) size;
		bool existed;
		MapVocabulary::index(T(), existed);
	}

	explicit MapVocabulary(DontInitialize)
		/// Creates a bare table without the placeholder.
	{
	}

	MapVocabulary(const MapVocabulary& other):
		Vocabulary<T>(other)
	{
		// The map refers to the stored values, so it is rebuilt over the copies;
		// other's map is already in order, so every insertion goes at the end.
		for (const auto& entry: other._map)
		{
			_map.emplace_hint(_map.end(), Key{entry.first.lead, &this->_index[entry.second]}, entry.second);
		}
	}

	MapVocabulary& operator = (const MapVocabulary&) = delete;

	unsigned int index(const T& value, bool& valueExisted) override
	{
		Key key{leadingOctets(value), &value};
		auto it = _map.lower_bound(key);
		valueExisted = it != _map.end() && !Less()(key, it->first);
		if (valueExisted) return it->second;

		unsigned int newIndex = this->_index.size();
		this->_index.push_back(value);
		try
		{
			key.pValue = &this->_index[newIndex];
			_map.emplace_hint(it, key, newIndex);
		}
		catch (...)
		{
			this->_index.pop_back();
			throw;
		}
		return newIndex;
	}

	unsigned int exists(const T& value, bool& found) const override
	{
		auto it = _map.find(Key{leadingOctets(value), &value});
		found = it != _map.end();
		return found ? it->second : Vocabulary<T>::NOT_FOUND;
	}

	const T& value(unsigned int idx) const override
	{
		poco_assert (this->_index.size() > idx);
		return this->_index[idx];
	}

	unsigned int size() const override
	{
		return static_cast<unsigned int>(_map.size());
	}

	bool empty() const override
	{
		return _map.empty();
	}

	Vocabulary<T>* subtract(const Vocabulary<T>& other) const override
	{
		std::unique_ptr<MapVocabulary> pResult(new MapVocabulary(DONT_INITIALIZE));
		this->addMissing(*pResult, other);
		return pResult.release();
	}

	Vocabulary<T>* clone() const override
	{
		return new MapVocabulary(*this);
	}

private:
	struct Key
		/// Points at a stored value; the value's leading octets are kept
		/// beside the pointer, so that most comparisons need not follow it.
	{
		Poco::UInt64 lead;
		const T* pValue;
	};

	struct Less
	{
		bool operator () (const Key& left, const Key& right) const
		{
			if (left.lead != right.lead) return left.lead < right.lead;
			return *left.pValue < *right.pValue;
		}
	};

	std::pmr::monotonic_buffer_resource _nodes;
		/// The map's nodes: a table only grows, so none is freed before the table.
	std::pmr::map<Key, unsigned int, Less> _map{&_nodes};
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_MapVocabulary_INCLUDED
