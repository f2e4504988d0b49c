//
// EncodeSettings.cpp
//
// Library: FastInfoset
// Package: Tools
// Module:  EncodeSettings
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Tool.h"
#include "CompactEncoder.h"
#include "Korvo/FastInfoset/Converter.h"
#include <limits>


namespace Korvo {
namespace FastInfoset {
namespace Tool {


const int EncodeSettings::NOT_GIVEN = std::numeric_limits<int>::min();


EncodeSettings::EncodeSettings():
	maxIndexedStringLength(NOT_GIVEN),
	stripWhitespace(false),
	plain(false)
{
}


bool EncodeSettings::readOption(ArgumentReader& reader)
{
	if (reader.is("-m", "--max-indexed-length")) maxIndexedStringLength = reader.intValue();
	else if (reader.is("-w", "--strip-whitespace")) stripWhitespace = true;
	else if (reader.is("--plain", "--plain")) plain = true;
	else return false;
	return true;
}


void encodeXML(std::istream& input, std::ostream& output, const EncodeSettings& settings)
{
	if (settings.plain)
	{
		const int length = settings.maxIndexedStringLength == EncodeSettings::NOT_GIVEN ? 16 : settings.maxIndexedStringLength;
		Converter::convertToFIS(input, output, length, settings.stripWhitespace ? Converter::CONV_REMOVE_IGNORABLE_WHITESPACE : 0);
	}
	else
	{
		CompactEncoder encoder;
		if (settings.maxIndexedStringLength != EncodeSettings::NOT_GIVEN) encoder.setMaxIndexedStringLength(settings.maxIndexedStringLength);
		encoder.setStripWhitespace(settings.stripWhitespace);
		encoder.encode(input, output);
	}
}


} } } // namespace Korvo::FastInfoset::Tool
