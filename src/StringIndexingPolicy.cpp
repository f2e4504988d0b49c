//
// StringIndexingPolicy.cpp
//
// Library: FastInfoset
// Package: Serializer
// Module:  StringIndexingPolicy
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/StringIndexingPolicy.h"


namespace Korvo {
namespace FastInfoset {


StringIndexingPolicy::StringIndexingPolicy()
{
}


StringIndexingPolicy::~StringIndexingPolicy()
{
}


} } // namespace Korvo::FastInfoset
