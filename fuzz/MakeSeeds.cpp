//
// MakeSeeds.cpp
//
// Library: FastInfoset
// Package: Fuzz
// Module:  MakeSeeds
//
// Writes the seed corpus of every fuzz target: MakeSeeds DIRECTORY makes
// DIRECTORY/<target>/<seed> and checks that each seed passes its target.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Seeds.h"
#include "Targets.h"
#include "Verdict.h"
#include "Korvo/FastInfoset/FastInfoset.h"
#include "Poco/File.h"
#include <fstream>
#include <iostream>


using namespace Korvo::FastInfoset::Fuzz;


int main(int argc, char** argv)
{
	if (argc != 2)
	{
		std::cerr << "usage: MakeSeeds DIRECTORY" << std::endl;
		return 2;
	}
	int failed = 0;
	for (const Target& target: TARGETS)
	{
		const std::string directory = std::string(argv[1]) + "/" + target.name;
		Korvo::File(directory).createDirectories();
		for (const Seed& seed: seedsOf(target.name))
		{
			try
			{
				target.run(seed.second.data(), seed.second.size());
			}
			catch (const std::exception& exc)
			{
				std::cerr << target.name << "/" << seed.first << ": " << describe(exc) << std::endl;
				++failed;
			}
			std::ofstream(directory + "/" + seed.first, std::ios::binary) << seed.second;
		}
	}
	return failed == 0 ? 0 : 1;
}
