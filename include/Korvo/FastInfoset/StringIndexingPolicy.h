//
// StringIndexingPolicy.h
//
// Library: FastInfoset
// Package: Serializer
// Module:  StringIndexingPolicy
//
// Decides which values a FastInfosetWriter adds to its tables.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_StringIndexingPolicy_INCLUDED
#define FastInfoset_StringIndexingPolicy_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/DocumentVocabulary.h"
#include <string>


namespace Korvo {
namespace FastInfoset {


class FastInfoset_API StringIndexingPolicy
	/// Chooses the attribute values, character chunks, comments and
	/// processing-instruction data that a FastInfosetWriter indexes, in
	/// place of its maximum indexed string length.
	///
	/// An indexed value costs nothing more the first time it is written and
	/// only its index afterwards, but every entry makes the later indices of
	/// its table longer. A policy that knows the document, for instance
	/// from a first pass over it, can index exactly the values that come
	/// again.
{
public:
	virtual bool isIndexed(DocumentVocabulary::ID table, const std::string& value) = 0;
		/// Whether value, which is not empty, is looked up in table
		/// (ATTRIBUTE_VALUE, CHARACTER_CONTENT_CHUNK or OTHER_STRING) and
		/// added to it when absent. A value not indexed is written literally
		/// even when the table holds it.

	virtual ~StringIndexingPolicy();

protected:
	StringIndexingPolicy();
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_StringIndexingPolicy_INCLUDED
