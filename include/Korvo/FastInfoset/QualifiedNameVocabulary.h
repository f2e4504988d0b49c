//
// QualifiedNameVocabulary.h
//
// Library: FastInfoset
// Package: Vocabulary
// Module:  QualifiedNameVocabulary
//
// The qualified-name record of the element and attribute name tables.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_QualifiedNameVocabulary_INCLUDED
#define FastInfoset_QualifiedNameVocabulary_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"


namespace Korvo {
namespace FastInfoset {


class FastInfoset_API QualifiedNameEntry
	/// A qualified name as three table indices: prefix (0 = no prefix),
	/// namespace name (0 = no namespace) and local name.
{
public:
	QualifiedNameEntry();
		/// All three indices 0.

	QualifiedNameEntry(unsigned int prefixId, unsigned int namespaceId, unsigned int localNameId);

	unsigned int prefixId() const;
	unsigned int namespaceId() const;
	unsigned int localNameId() const;

	bool operator == (const QualifiedNameEntry& other) const;
	bool operator != (const QualifiedNameEntry& other) const;
	bool operator < (const QualifiedNameEntry& other) const;
		/// Lexicographic on (prefixId, namespaceId, localNameId).

private:
	unsigned int _prefixId;
	unsigned int _namespaceId;
	unsigned int _localNameId;
};


//
// inlines
//
inline QualifiedNameEntry::QualifiedNameEntry(unsigned int prefixId, unsigned int namespaceId, unsigned int localNameId):
	_prefixId(prefixId),
	_namespaceId(namespaceId),
	_localNameId(localNameId)
{
}


inline unsigned int QualifiedNameEntry::prefixId() const
{
	return _prefixId;
}


inline unsigned int QualifiedNameEntry::namespaceId() const
{
	return _namespaceId;
}


inline unsigned int QualifiedNameEntry::localNameId() const
{
	return _localNameId;
}


inline bool QualifiedNameEntry::operator == (const QualifiedNameEntry& other) const
{
	return _localNameId == other._localNameId && _prefixId == other._prefixId && _namespaceId == other._namespaceId;
}


inline bool QualifiedNameEntry::operator != (const QualifiedNameEntry& other) const
{
	return !(*this == other);
}


inline bool QualifiedNameEntry::operator < (const QualifiedNameEntry& other) const
{
	if (_prefixId != other._prefixId) return _prefixId < other._prefixId;
	if (_namespaceId != other._namespaceId) return _namespaceId < other._namespaceId;
	return _localNameId < other._localNameId;
}


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_QualifiedNameVocabulary_INCLUDED
