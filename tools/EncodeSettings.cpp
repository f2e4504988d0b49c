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
#include "SharedVocabulary.h"
#include "Korvo/FastInfoset/Converter.h"
#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include "PrologReorderer.h"
#include "XMLInput.h"
#include "Poco/SAX/SAXParser.h"
#include "Poco/SAX/WhitespaceFilter.h"
#include <limits>


namespace Korvo {
namespace FastInfoset {
namespace Tool {


namespace
{
	class SharedOrShortValues: public StringIndexingPolicy
		/// Indexes what the shared vocabulary holds, and the values of at
		/// most a length besides (any length when it is negative).
	{
	public:
		SharedOrShortValues(const SharedVocabulary& vocabulary, int maxLength):
			_vocabulary(vocabulary),
			_maxLength(maxLength)
		{
		}

		bool isIndexed(DocumentVocabulary::ID table, const std::string& value) override
		{
			return _maxLength < 0 || value.size() <= static_cast<std::size_t>(_maxLength) || _vocabulary.holds(table, value);
		}

	private:
		const SharedVocabulary& _vocabulary;
		int _maxLength;
	};

	void encodePlain(std::istream& input, std::ostream& output, int maxIndexedStringLength, bool stripWhitespace, const SharedVocabulary& vocabulary)
		/// Converter::convertToFIS() with a shared vocabulary.
	{
		FastInfosetWriter writer(output, false, DocumentVocabulary::VOC_MAP);
		vocabulary.useIn(writer);
		SharedOrShortValues policy(vocabulary, maxIndexedStringLength);
		writer.setIndexingPolicy(&policy);

		Korvo::XML::SAXParser parser;
		parser.setFeature(Korvo::XML::XMLReader::FEATURE_NAMESPACES, true);
		parser.setFeature(Korvo::XML::XMLReader::FEATURE_NAMESPACE_PREFIXES, true);
		XMLInput xmlInput(input, parser);
		Korvo::XML::WhitespaceFilter filter(&parser);
		Korvo::XML::XMLReader& reader = stripWhitespace ? static_cast<Korvo::XML::XMLReader&>(filter) : parser;
		PrologReorderer reorderer(reader, writer);
		xmlInput.parse(reader);
	}
}


const int EncodeSettings::NOT_GIVEN = std::numeric_limits<int>::min();


EncodeSettings::EncodeSettings():
	maxIndexedStringLength(NOT_GIVEN),
	stripWhitespace(false),
	plain(false),
	pVocabulary(nullptr)
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
		if (settings.pVocabulary)
			encodePlain(input, output, length, settings.stripWhitespace, *settings.pVocabulary);
		else
			Converter::convertToFIS(input, output, length, settings.stripWhitespace ? Converter::CONV_REMOVE_IGNORABLE_WHITESPACE : 0);
	}
	else
	{
		CompactEncoder encoder;
		if (settings.maxIndexedStringLength != EncodeSettings::NOT_GIVEN) encoder.setMaxIndexedStringLength(settings.maxIndexedStringLength);
		encoder.setStripWhitespace(settings.stripWhitespace);
		encoder.setSharedVocabulary(settings.pVocabulary);
		encoder.encode(input, output);
	}
}


} } } // namespace Korvo::FastInfoset::Tool
