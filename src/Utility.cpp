//
// Utility.cpp
//
// Library: FastInfoset
// Package: Core
// Module:  Utility
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/Utility.h"
#include "Korvo/FastInfoset/Converter.h"


namespace Korvo {
namespace FastInfoset {


const int Utility::SIZEOFCHARINBIT;
const int Utility::SIZEOFINT16INBIT;
const int Utility::SIZEOFINT32INBIT;
const int Utility::SIZEOFINT64INBIT;

const unsigned char Utility::pow2[8] = {0x01, 0x02, 0x04, 0x08, 0x10, 0x20, 0x40, 0x80};
const unsigned char Utility::revertedPow2[8] = {0x80, 0x40, 0x20, 0x10, 0x08, 0x04, 0x02, 0x01};
const unsigned char Utility::highBitMask[9] = {0x00, 0x80, 0xC0, 0xE0, 0xF0, 0xF8, 0xFC, 0xFE, 0xFF};
const unsigned char Utility::lowBitMask[9] = {0x00, 0x01, 0x03, 0x07, 0x0F, 0x1F, 0x3F, 0x7F, 0xFF};


void Utility::convertToFIS(std::istream& input, std::ostream& output, int maxIndexedStringLength)
{
	Converter::convertToFIS(input, output, maxIndexedStringLength, 0);
}


void Utility::convertToXML(std::istream& input, std::ostream& output)
{
	Converter::convertToXML(input, output, Converter::CONV_WRITE_XML_DECLARATION);
}


} } // namespace Korvo::FastInfoset
