//
// Notation.cpp
//
// Library: FastInfoset
// Package: Vocabulary
// Module:  Notation
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/Notation.h"


namespace Korvo {
namespace FastInfoset {


Notation::Notation()
{
}


Notation::Notation(const std::string& name, const std::string& publicId, const std::string& systemId):
	_name(name),
	_publicId(publicId),
	_systemId(systemId)
{
}


} } // namespace Korvo::FastInfoset
