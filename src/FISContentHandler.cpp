//
// FISContentHandler.cpp
//
// Library: FastInfoset
// Package: Handlers
// Module:  FISContentHandler
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/FISContentHandler.h"


namespace Korvo {
namespace FastInfoset {


FISContentHandler::FISContentHandler()
{
}


FISContentHandler::~FISContentHandler()
{
}


} } // namespace Korvo::FastInfoset
