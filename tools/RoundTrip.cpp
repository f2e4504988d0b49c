//
// RoundTrip.cpp
//
// Library: FastInfoset
// Package: Tools
// Module:  RoundTrip
//
// The roundtrip command: XML to Fast Infoset and back, in memory, with a
// comparison of what the document says before and after.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Tool.h"
#include "DocumentEvents.h"
#include "Korvo/FastInfoset/Converter.h"
#include <algorithm>
#include <iomanip>
#include <sstream>


namespace Korvo {
namespace FastInfoset {
namespace Tool {


namespace
{
	struct Outcome
	{
		std::size_t xmlSize = 0;
		std::size_t fisSize = 0;
		std::string difference;
			/// Empty when the document was kept.
	};

	DocumentEvents::Options comparison(const EncodeSettings& settings, bool withDoctypeName)
	{
		// Stripping whitespace, the encoder reads the text through the
		// platform's whitespace filter, and so does the expectation.
		DocumentEvents::Options options;
		options.whitespaceFilter = settings.stripWhitespace;
		options.recordDoctypeName = withDoctypeName;
		return options;
	}

	DocumentEvents::Options unfiltered(DocumentEvents::Options options)
	{
		options.whitespaceFilter = false;
		return options;
	}

	std::string compareXML(const std::string& expectedXML, const std::string& actualXML, const DocumentEvents::Options& options)
	{
		DocumentEvents expected(options);
		DocumentEvents actual(unfiltered(options));
		std::istringstream expectedInput(expectedXML);
		expected.readXML(expectedInput);
		std::istringstream actualInput(actualXML);
		actual.readXML(actualInput);
		return DocumentEvents::firstDifference(expected, actual);
	}

	std::string compareFastInfoset(const std::string& expectedXML, const std::string& fis, const DocumentEvents::Options& options)
	{
		DocumentEvents expected(options);
		DocumentEvents actual(unfiltered(options));
		std::istringstream expectedInput(expectedXML);
		expected.readXML(expectedInput);
		std::istringstream actualInput(fis);
		actual.readFastInfoset(actualInput);
		return DocumentEvents::firstDifference(expected, actual);
	}

	Outcome roundTrip(const std::string& path, const EncodeSettings& settings)
		/// Checks the Fast Infoset form as read by the parser (which knows no
		/// document type name) and the XML written back from it.
	{
		InputFile input(path);
		const std::string xml = input.readAll();

		std::istringstream xmlInput(xml);
		std::ostringstream fisOutput;
		encodeXML(xmlInput, fisOutput, settings);
		const std::string fis = fisOutput.str();

		std::istringstream fisInput(fis);
		std::ostringstream xmlOutput;
		Converter::convertToXML(fisInput, xmlOutput, Converter::CONV_WRITE_XML_DECLARATION);

		Outcome outcome;
		outcome.xmlSize = xml.size();
		outcome.fisSize = fis.size();
		const std::string fisDifference = compareFastInfoset(xml, fis, comparison(settings, false));
		const std::string xmlDifference = compareXML(xml, xmlOutput.str(), comparison(settings, true));
		if (!fisDifference.empty())
			outcome.difference = "Fast Infoset form, " + fisDifference;
		else if (!xmlDifference.empty())
			outcome.difference = "XML written back, " + xmlDifference;
		return outcome;
	}

	std::string percentage(std::size_t part, std::size_t whole)
	{
		if (whole == 0) return "-";
		std::ostringstream text;
		text << std::fixed << std::setprecision(1) << 100.0 * static_cast<double>(part) / static_cast<double>(whole) << "%";
		return text.str();
	}
}


int roundTripCommand(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err)
{
	EncodeSettings settings;
	std::vector<std::string> files;
	ArgumentReader reader("roundtrip", arguments);
	while (reader.next())
	{
		if (settings.readOption(reader)) continue;
		if (reader.isOption()) reader.unknownOption();
		files.push_back(reader.current());
	}
	if (files.empty()) throw UsageException("roundtrip: expects at least one FILE");

	std::size_t nameWidth = 8;
	for (const auto& file: files) nameWidth = std::max(nameWidth, file.size());

	out << std::left << std::setw(static_cast<int>(nameWidth)) << "document" << std::right
	    << std::setw(12) << "XML octets" << std::setw(12) << "FI octets" << std::setw(9) << "FI/XML" << "  round trip" << std::endl;

	std::size_t kept = 0, changed = 0, failed = 0;
	for (const auto& file: files)
	{
		out << std::left << std::setw(static_cast<int>(nameWidth)) << file << std::right;
		try
		{
			const Outcome outcome = roundTrip(file, settings);
			out << std::setw(12) << outcome.xmlSize << std::setw(12) << outcome.fisSize
			    << std::setw(9) << percentage(outcome.fisSize, outcome.xmlSize);
			if (outcome.difference.empty())
			{
				out << "  kept" << std::endl;
				++kept;
			}
			else
			{
				out << "  CHANGED: " << outcome.difference << std::endl;
				++changed;
			}
		}
		catch (const std::exception& exc)
		{
			out << "  FAILED" << std::endl;
			err << "fastinfoset: " << file << ": " << describe(exc) << std::endl;
			++failed;
		}
	}
	out << files.size() << " document(s): " << kept << " kept, " << changed << " changed, " << failed << " failed" << std::endl;
	return changed + failed == 0 ? EXIT_OK : EXIT_FAILED;
}


} } } // namespace Korvo::FastInfoset::Tool
