//
// Seeds.h
//
// Library: FastInfoset
// Package: Fuzz
// Module:  Seeds
//
// The seed corpus of each fuzz target.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_Seeds_INCLUDED
#define FastInfoset_Seeds_INCLUDED


#include <string>
#include <utility>
#include <vector>


namespace Korvo {
namespace FastInfoset {
namespace Fuzz {


using Seed = std::pair<std::string, std::string>;
	/// A file name and the octets.


std::vector<Seed> seedsOf(const std::string& target);
	/// A few small valid inputs: the sample documents behind settings that
	/// vary the tables, readers and handlers; call sequences that write
	/// whole documents; small XML texts; and values of every algorithm.


} } } // namespace Korvo::FastInfoset::Fuzz


#endif // FastInfoset_Seeds_INCLUDED
