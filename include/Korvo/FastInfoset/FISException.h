//
// FISException.h
//
// Library: FastInfoset
// Package: FastInfoset
// Module:  FISException
//
// The library's exception classes.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_FISException_INCLUDED
#define FastInfoset_FISException_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"


namespace Korvo {
namespace FastInfoset {


POCO_DECLARE_EXCEPTION(FastInfoset_API, FISException, Korvo::RuntimeException)
	/// Structural errors in a document (bad identification, unsupported
	/// version, empty initial vocabulary); base of the two classes below.

POCO_DECLARE_EXCEPTION(FastInfoset_API, FISParseException, FISException)
	/// The input ended or was malformed while a value was read.

POCO_DECLARE_EXCEPTION(FastInfoset_API, FISEncodingException, FISException)
	/// A value cannot be written in the requested form, or a value was
	/// found at a bit position where no form exists.


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_FISException_INCLUDED
