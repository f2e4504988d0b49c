//
// FuzzerMain.cpp
//
// Library: FastInfoset
// Package: Fuzz
// Module:  FuzzerMain
//
// The libFuzzer entry point of one target, named by KORVO_FUZZ_TARGET at
// compile time. A finding ends the run with a message, so that libFuzzer
// keeps the input.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Targets.h"
#include "Verdict.h"
#include <cstdint>
#include <cstdio>
#include <cstdlib>


extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t size)
{
	using namespace Korvo::FastInfoset::Fuzz;
	try
	{
		KORVO_FUZZ_TARGET(reinterpret_cast<const char*>(pData), size);
	}
	catch (const Finding& finding)
	{
		std::fprintf(stderr, "==FINDING== %s\n", finding.what());
		std::abort();
	}
	catch (const std::exception& exc)
	{
		std::fprintf(stderr, "==FINDING== escaped: %s\n", describe(exc).c_str());
		std::abort();
	}
	catch (...)
	{
		std::fprintf(stderr, "==FINDING== escaped: exception of unknown type\n");
		std::abort();
	}
	return 0;
}
