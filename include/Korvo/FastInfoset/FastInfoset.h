//
// FastInfoset.h
//
// Library: FastInfoset
// Package: FastInfoset
// Module:  FastInfoset
//
// Basic definitions for the Korvo FastInfoset library.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_FastInfoset_INCLUDED
#define FastInfoset_FastInfoset_INCLUDED


#include "Korvo/FastInfoset/Platform.h"


#if !defined(FastInfoset_API)
	#if defined(__GNUC__) && (__GNUC__ >= 4)
		#define FastInfoset_API __attribute__ ((visibility ("default")))
	#else
		#define FastInfoset_API
	#endif
#endif


#endif // FastInfoset_FastInfoset_INCLUDED
