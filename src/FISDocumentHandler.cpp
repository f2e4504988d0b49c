//
// FISDocumentHandler.cpp
//
// Library: FastInfoset
// Package: Handlers
// Module:  FISDocumentHandler
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/FISDocumentHandler.h"


namespace Korvo {
namespace FastInfoset {


FISDocumentHandler::FISDocumentHandler()
{
}


FISDocumentHandler::~FISDocumentHandler()
{
}


} } // namespace Korvo::FastInfoset
