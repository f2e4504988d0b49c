//
// QualifiedNameEntry.h
//
// Library: FastInfoset
// Package: Vocabulary
// Module:  QualifiedNameEntry
//
// Convenience header for QualifiedNameEntry.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_QualifiedNameEntry_INCLUDED
#define FastInfoset_QualifiedNameEntry_INCLUDED


#include "Korvo/FastInfoset/QualifiedNameVocabulary.h"


#endif // FastInfoset_QualifiedNameEntry_INCLUDED
