//
// ConversionTesting.h
//
// Whole documents in memory: conversions both ways and the events a
// document says, for the converter and real-world tests.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//

#ifndef Tests_ConversionTesting_INCLUDED
#define Tests_ConversionTesting_INCLUDED

#include "Korvo/FastInfoset/Converter.h"
#include "DocumentEvents.h"
#include <fstream>
#include <sstream>
#include <string>
#include <vector>


namespace Tests {


inline std::string toFIS(const std::string& xml, int maxIndexedStringLength = 16, int options = 0)
{
	std::istringstream input(xml);
	std::ostringstream output;
	Korvo::FastInfoset::Converter::convertToFIS(input, output, maxIndexedStringLength, options);
	return output.str();
}


inline std::string toXML(const std::string& fis, int options = Korvo::FastInfoset::Converter::CONV_WRITE_XML_DECLARATION)
{
	std::istringstream input(fis);
	std::ostringstream output;
	Korvo::FastInfoset::Converter::convertToXML(input, output, options);
	return output.str();
}


inline std::vector<std::string> xmlEvents(const std::string& xml, const Korvo::FastInfoset::Tool::DocumentEvents::Options& options = {})
	/// The events of XML text in any encoding the converter reads.
{
	Korvo::FastInfoset::Tool::DocumentEvents events(options);
	std::istringstream input(xml);
	events.readXML(input);
	return events.lines();
}


inline std::vector<std::string> fisEvents(const std::string& fis, const Korvo::FastInfoset::Tool::DocumentEvents::Options& options = {})
{
	Korvo::FastInfoset::Tool::DocumentEvents events(options);
	std::istringstream input(fis);
	events.readFastInfoset(input);
	return events.lines();
}


inline std::string readFile(const std::string& path)
{
	std::ifstream input(path, std::ios::binary);
	std::ostringstream content;
	content << input.rdbuf();
	return content.str();
}


} // namespace Tests


#endif // Tests_ConversionTesting_INCLUDED
