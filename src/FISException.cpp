//
// FISException.cpp
//
// Library: FastInfoset
// Package: FastInfoset
// Module:  FISException
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/FISException.h"
#include <typeinfo>


namespace Korvo {
namespace FastInfoset {


POCO_IMPLEMENT_EXCEPTION(FISException, Korvo::RuntimeException, "FastInfoset Exception")
POCO_IMPLEMENT_EXCEPTION(FISParseException, FISException, "FastInfoset Parse Exception")
POCO_IMPLEMENT_EXCEPTION(FISEncodingException, FISException, "FastInfoset Encoding Exception")


} } // namespace Korvo::FastInfoset
