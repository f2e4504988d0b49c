//
// CompactEncoder.cpp
//
// Library: FastInfoset
// Package: Tools
// Module:  CompactEncoder
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "CompactEncoder.h"
#include "AlphabetChooser.h"
#include "SharedVocabulary.h"
#include "StringSurvey.h"
#include "TextJoiner.h"
#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include "PrologReorderer.h"
#include "XMLInput.h"
#include "Poco/MemoryStream.h"
#include "Poco/SAX/SAXParser.h"
#include "Poco/SAX/WhitespaceFilter.h"
#include <iterator>
#include <memory>


using Korvo::XML::XMLReader;


namespace Korvo {
namespace FastInfoset {
namespace Tool {


namespace
{
	void parse(std::istream& input, bool stripWhitespace, Korvo::XML::ContentHandler* pContentHandler,
	           Korvo::XML::LexicalHandler* pLexicalHandler, FastInfosetWriter* pWriter = nullptr)
		/// Parses as Converter::convertToFIS does (any encoding; a writer
		/// gets the declarations before the document), with the text of an
		/// element joined.
	{
		Korvo::XML::SAXParser parser;
		parser.setFeature(XMLReader::FEATURE_NAMESPACES, true);
		parser.setFeature(XMLReader::FEATURE_NAMESPACE_PREFIXES, true);
		XMLInput xmlInput(input, parser);
		std::unique_ptr<Korvo::XML::WhitespaceFilter> pFilter;
		if (stripWhitespace) pFilter.reset(new Korvo::XML::WhitespaceFilter(&parser));
		TextJoiner joiner(pFilter ? static_cast<XMLReader*>(pFilter.get()) : &parser);
		if (pWriter)
		{
			PrologReorderer reorderer(joiner, *pWriter);
			xmlInput.parse(joiner);
		}
		else
		{
			joiner.setContentHandler(pContentHandler);
			joiner.setProperty(XMLReader::PROPERTY_LEXICAL_HANDLER, static_cast<void*>(pLexicalHandler));
			xmlInput.parse(joiner);
		}
	}
}


CompactEncoder::CompactEncoder():
	_maxIndexedStringLength(-1),
	_stripWhitespace(false),
	_pSharedVocabulary(nullptr)
{
}


void CompactEncoder::setMaxIndexedStringLength(int length)
{
	_maxIndexedStringLength = length;
}


void CompactEncoder::setStripWhitespace(bool flag)
{
	_stripWhitespace = flag;
}


void CompactEncoder::setSharedVocabulary(const SharedVocabulary* pVocabulary)
{
	_pSharedVocabulary = pVocabulary;
}


const std::vector<std::string>& CompactEncoder::alphabets() const
{
	return _alphabets;
}


void CompactEncoder::read(std::istream& input, Korvo::XML::ContentHandler* pContentHandler, Korvo::XML::LexicalHandler* pLexicalHandler)
{
	parse(input, false, pContentHandler, pLexicalHandler);
}


void CompactEncoder::encode(std::istream& input, std::ostream& output)
{
	const std::streampos start = input.tellg();
	if (start != std::streampos(-1) && input.seekg(0, std::ios::end))
	{
		const std::streampos end = input.tellg();
		if (input.seekg(start) && end != std::streampos(-1))
		{
			StringSurvey survey(static_cast<std::size_t>(end - start), _maxIndexedStringLength);
			parse(input, _stripWhitespace, &survey, &survey);
			input.clear();
			input.seekg(start);
			write(survey, input, output);
			return;
		}
	}
	input.clear();
	const std::string document((std::istreambuf_iterator<char>(input)), std::istreambuf_iterator<char>());
	StringSurvey survey(document.size(), _maxIndexedStringLength);
	Poco::MemoryInputStream first(document.data(), document.size());
	parse(first, _stripWhitespace, &survey, &survey);
	Poco::MemoryInputStream second(document.data(), document.size());
	write(survey, second, output);
}


void CompactEncoder::write(StringSurvey& survey, std::istream& input, std::ostream& output)
{
	AlphabetChooser chooser;
	for (const StringSurvey::Literal& literal: survey.sample()) chooser.add(literal.value, literal.table);
	_alphabets = chooser.choose();

	FastInfosetWriter writer(output, false, DocumentVocabulary::VOC_MAP);
	if (_pSharedVocabulary) _pSharedVocabulary->useIn(writer);
	for (const std::string& alphabet: _alphabets) writer.getDocumentVocabulary().restrictedAlphabets().add(alphabet);
	survey.setSharedVocabulary(_pSharedVocabulary);
	writer.setIndexingPolicy(&survey);
	writer.setShortestLiterals(true);
	parse(input, _stripWhitespace, nullptr, nullptr, &writer);
}


} } } // namespace Korvo::FastInfoset::Tool
