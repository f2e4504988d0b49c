//
// Targets.h
//
// Library: FastInfoset
// Package: Fuzz
// Module:  Targets
//
// The fuzz targets. Each takes arbitrary octets and throws Finding (or
// crashes, under the sanitizers) when the library misbehaves on them; see
// each target's source for what it checks. The same code runs under
// libFuzzer and in the replay of the kept corpus by the test suite.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_Targets_INCLUDED
#define FastInfoset_Targets_INCLUDED


#include <cstddef>


namespace Korvo {
namespace FastInfoset {
namespace Fuzz {


void parseTarget(const char* pData, std::size_t size);
void reencodeTarget(const char* pData, std::size_t size);
void writerTarget(const char* pData, std::size_t size);
void convertTarget(const char* pData, std::size_t size);
void algorithmsTarget(const char* pData, std::size_t size);


struct Target
{
	const char* name;
	void (*run)(const char* pData, std::size_t size);
};


const Target TARGETS[] =
{
	{"parse", parseTarget},
	{"reencode", reencodeTarget},
	{"writer", writerTarget},
	{"convert", convertTarget},
	{"algorithms", algorithmsTarget},
};


} } } // namespace Korvo::FastInfoset::Fuzz


#endif // FastInfoset_Targets_INCLUDED
