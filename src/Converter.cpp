//
// Converter.cpp
//
// Library: FastInfoset
// Package: Conversion
// Module:  Converter
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/Converter.h"


namespace Korvo {
namespace FastInfoset {


// Placeholder until the writer and the parser exist.
void Converter::convertToFIS(std::istream&, std::ostream&, int, int)
{
	throw Korvo::NotImplementedException("Converter::convertToFIS");
}


void Converter::convertToXML(std::istream&, std::ostream&, int)
{
	throw Korvo::NotImplementedException("Converter::convertToXML");
}


} } // namespace Korvo::FastInfoset
