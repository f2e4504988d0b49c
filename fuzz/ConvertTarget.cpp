//
// ConvertTarget.cpp
//
// Library: FastInfoset
// Package: Fuzz
// Module:  ConvertTarget
//
// Arbitrary octets as XML text through Converter::convertToFIS and back
// through Converter::convertToXML.
//
// The first octet chooses the maximum indexed string length (bits 0-1:
// 16, 0, -1, 1) and whether whitespace-only text is dropped (bit 2,
// CONV_REMOVE_IGNORABLE_WHITESPACE); the rest is the XML text.
//
// Text that the platform's XML parser refuses may be refused by
// convertToFIS too, with any exception of the library or the platform.
// Well-formed text must convert, its Fast Infoset form must read back with
// the events of the text (DocumentEvents; document type names and skipped
// entities left out, since Fast Infoset keeps neither), and convertToXML
// must turn the form into well-formed XML text with the same events again.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Targets.h"
#include "DocumentEvents.h"
#include "EventRecord.h"
#include "FuzzInput.h"
#include "Verdict.h"
#include "Korvo/FastInfoset/Converter.h"
#include <sstream>


namespace Korvo {
namespace FastInfoset {
namespace Fuzz {


namespace
{
	const int MAX_INDEXED_LENGTHS[4] = {16, 0, -1, 1};

	using Tool::DocumentEvents;

	DocumentEvents::Options comparison()
	{
		// A Fast Infoset document type declaration has no name; the converter
		// names it after the root element, which XML need not.
		DocumentEvents::Options options;
		options.recordDoctypeName = false;
		return options;
	}

	template <typename Read>
	std::string differenceTo(const std::string& xml, bool dropWhitespace, Read read)
	{
		// Dropping whitespace, the converter reads the text through the
		// platform's whitespace filter, and so does the expectation.
		DocumentEvents::Options filtered = comparison();
		filtered.whitespaceFilter = dropWhitespace;
		DocumentEvents expected(filtered);
		DocumentEvents actual(comparison());
		std::istringstream input(xml);
		expected.readXML(input);
		read(actual);
		// An entity the XML parser skipped leaves no trace in the writer, and
		// the text around it becomes one.
		std::vector<std::string> kept;
		for (const std::string& line: expected.lines())
		{
			if (line.compare(0, 8, "skipped ") == 0) continue;
			if (!kept.empty() && kept.back().compare(0, 5, "text ") == 0 && line.compare(0, 5, "text ") == 0)
				kept.back() += line.substr(5);
			else
				kept.push_back(line);
		}
		return EventRecord::firstDifference(kept, actual.lines());
	}
}


void convertTarget(const char* pData, std::size_t size)
{
	FuzzInput input(pData, size);
	const unsigned char settings = input.octet();
	const int maxIndexedStringLength = MAX_INDEXED_LENGTHS[settings & 3];
	const bool dropWhitespace = (settings & 0x04) != 0;
	const std::string xml = input.rest();

	// Only well-formed text has to convert.
	try
	{
		DocumentEvents events;
		std::istringstream text(xml);
		events.readXML(text);
	}
	catch (...)
	{
		acceptRefusal(Assertions());
		std::istringstream text(xml);
		std::ostringstream ignored;
		try
		{
			Converter::convertToFIS(text, ignored, maxIndexedStringLength, dropWhitespace ? Converter::CONV_REMOVE_IGNORABLE_WHITESPACE : 0);
		}
		catch (...)
		{
			acceptRefusal(Assertions());
		}
		return;
	}

	std::string fis;
	std::string back;
	try
	{
		std::istringstream text(xml);
		std::ostringstream output;
		Converter::convertToFIS(text, output, maxIndexedStringLength, dropWhitespace ? Converter::CONV_REMOVE_IGNORABLE_WHITESPACE : 0);
		fis = output.str();
	}
	catch (const std::exception& exc)
	{
		fail("convertToFIS refuses well-formed XML: " + describe(exc));
	}

	std::string difference;
	try
	{
		difference = differenceTo(xml, dropWhitespace, [&](DocumentEvents& events)
		{
			std::istringstream document(fis);
			events.readFastInfoset(document);
		});
	}
	catch (const std::exception& exc)
	{
		fail("the parser refuses what convertToFIS wrote: " + describe(exc));
	}
	if (!difference.empty()) fail("the Fast Infoset form differs from the XML text: " + difference);

	try
	{
		std::istringstream document(fis);
		std::ostringstream output;
		Converter::convertToXML(document, output, Converter::CONV_WRITE_XML_DECLARATION);
		back = output.str();
	}
	catch (const std::exception& exc)
	{
		fail("convertToXML refuses what convertToFIS wrote: " + describe(exc));
	}

	try
	{
		difference = differenceTo(xml, dropWhitespace, [&](DocumentEvents& events)
		{
			std::istringstream text(back);
			events.readXML(text);
		});
	}
	catch (const std::exception& exc)
	{
		fail("convertToXML writes XML that is not well-formed: " + describe(exc) + "\n" + back);
	}
	if (!difference.empty()) fail("the XML written back differs from the XML text: " + difference + "\n" + back);
}


} } } // namespace Korvo::FastInfoset::Fuzz
