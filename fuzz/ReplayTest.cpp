//
// ReplayTest.cpp
//
// Library: FastInfoset
// Package: Fuzz
// Module:  ReplayTest
//
// Runs every kept input of every fuzz target (seeds and regressions)
// through the target's own code, in the ordinary test build.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Targets.h"
#include "Verdict.h"
#include "Korvo/FastInfoset/FastInfoset.h"
#include "Poco/DirectoryIterator.h"
#include "Poco/File.h"
#include <gtest/gtest.h>
#include <fstream>
#include <sstream>


using namespace Korvo::FastInfoset::Fuzz;


namespace Korvo {
namespace FastInfoset {
namespace Fuzz {


void PrintTo(const Target& target, std::ostream* pStream)
{
	*pStream << target.name;
}


} } } // namespace Korvo::FastInfoset::Fuzz


namespace
{
	std::string contentOf(const std::string& path)
	{
		std::ifstream input(path, std::ios::binary);
		std::ostringstream content;
		content << input.rdbuf();
		return content.str();
	}

	class ReplayTest: public testing::TestWithParam<Target>
	{
	};
}


TEST_P(ReplayTest, KeptInputs)
{
	const Target& target = GetParam();
	int inputs = 0;
	for (const char* pKind: {"corpus", "regressions"})
	{
		const std::string directory = std::string(KORVO_FUZZ_DIR) + "/" + pKind + "/" + target.name;
		if (!Korvo::File(directory).exists()) continue;
		for (Korvo::DirectoryIterator it(directory), end; it != end; ++it)
		{
			const std::string input = contentOf(it.path().toString());
			++inputs;
			try
			{
				target.run(input.data(), input.size());
			}
			catch (const std::exception& exc)
			{
				ADD_FAILURE() << it.path().toString() << ": " << describe(exc);
			}
		}
	}
	EXPECT_GT(inputs, 0) << "no kept inputs for " << target.name;
}


INSTANTIATE_TEST_SUITE_P(Fuzz, ReplayTest, testing::ValuesIn(TARGETS),
	[](const testing::TestParamInfo<Target>& info) { return std::string(info.param.name); });


#if defined(__SANITIZE_ADDRESS__)
TEST(ReplayMemoryTest, AllocationsAreWatched)
{
	// Under AddressSanitizer the parse target holds the library to its memory limit.
	AllocationWatch watch;
	std::string block(1000, 'x');
	EXPECT_GE(watch.peak(), 1000u);
}
#endif
