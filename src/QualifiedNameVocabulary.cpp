//
// QualifiedNameVocabulary.cpp
//
// Library: FastInfoset
// Package: Vocabulary
// Module:  QualifiedNameVocabulary
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/QualifiedNameVocabulary.h"


namespace Korvo {
namespace FastInfoset {


QualifiedNameEntry::QualifiedNameEntry():
	_prefixId(0),
	_namespaceId(0),
	_localNameId(0)
{
}


} } // namespace Korvo::FastInfoset
