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
#include <string>
#include <vector>


namespace Korvo {
namespace FastInfoset {


class QualifiedNameCache
	/// Finds the name-table index of a qualified name by its prefix,
	/// namespace name, local name and role (element or attribute), without
	/// building a key: one look-up in place of four table look-ups for a
	/// name written before.
{
public:
	QualifiedNameCache();

	unsigned int find(const std::string& prefix, const std::string& ns, const std::string& localName, bool inElement) const;
		/// The index of the name, or 0 when it is not known (no name has index 0).

	void add(const std::string& prefix, const std::string& ns, const std::string& localName, bool inElement, unsigned int index);
		/// Remembers the index of a name that find() did not know.

	void clear();

private:
	struct Entry
	{
		Korvo::UInt32 hash;
		unsigned int  index;
		std::string   prefix;
		std::string   ns;
		std::string   localName;
		bool          inElement;
	};

	static Korvo::UInt32 hashOf(const std::string& prefix, const std::string& ns, const std::string& localName, bool inElement);
	std::size_t slotOf(Korvo::UInt32 hash, const std::string& prefix, const std::string& ns, const std::string& localName, bool inElement) const;
		/// The slot that holds the name, or the empty slot where it would go.
	void grow();

	std::vector<Entry>        _entries;
	std::vector<unsigned int> _slots;
		/// Position in _entries plus one; 0 for an empty slot.
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_QualifiedNameCache_INCLUDED
