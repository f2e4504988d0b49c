//
// VocabularyLimit.h
//
// Library: FastInfoset
// Package: Vocabulary
// Module:  VocabularyLimit
//
// The largest index a document can refer to, which both sides respect.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_VocabularyLimit_INCLUDED
#define FastInfoset_VocabularyLimit_INCLUDED


#include "Korvo/FastInfoset/Encoder.h"
#include "Korvo/FastInfoset/Vocabulary.h"


namespace Korvo {
namespace FastInfoset {


template <class T>
inline bool isFull(const Vocabulary<T>& table)
	/// True when the table holds a value at index 2^20, the largest index
	/// the format can write. The writer and the parser then add nothing more
	/// to it, so that both number their entries alike: the writer writes
	/// later values literally, unindexed.
{
	return table.lookup(Encoder::MAXINT20) != nullptr;
}


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_VocabularyLimit_INCLUDED
