//
// VocabularyOptions.cpp
//
// Library: FastInfoset
// Package: Tools
// Module:  VocabularyOptions
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "VocabularyOptions.h"
#include "Tool.h"
#include "VocabularyFile.h"
#include "Korvo/FastInfoset/Converter.h"
#include "Poco/MemoryStream.h"
#include "Poco/StreamCopier.h"


namespace Korvo {
namespace FastInfoset {
namespace Tool {


namespace
{
	void convert(const VocabularyOptions& vocabularies, const std::string& uri, std::istream& input, std::ostream& output, int options)
	{
		if (uri.empty())
			Converter::convertToXML(input, output, options);
		else
			vocabularies.find(uri).decode(input, output, options);
	}
}


VocabularyOptions::VocabularyOptions(bool several):
	_several(several)
{
}


bool VocabularyOptions::readOption(ArgumentReader& reader)
{
	if (reader.is("--vocabulary", "--vocabulary"))
	{
		if (!_several && !_given.empty()) throw UsageException("--vocabulary may be given once");
		_given.push_back(Given{reader.stringValue(), std::string()});
	}
	else if (reader.is("--vocabulary-uri", "--vocabulary-uri"))
	{
		if (_given.empty() || !_given.back().uri.empty()) throw UsageException("--vocabulary-uri must follow the --vocabulary it names");
		_given.back().uri = reader.stringValue();
		if (_given.back().uri.empty()) throw UsageException("--vocabulary-uri needs a URI");
	}
	else return false;
	return true;
}


void VocabularyOptions::load()
{
	for (const Given& given: _given)
	{
		std::unique_ptr<SharedVocabulary> pVocabulary(new SharedVocabulary(given.path, given.uri));
		for (const auto& pOther: _vocabularies)
		{
			if (pOther->uri() == pVocabulary->uri())
				throw UsageException("two vocabularies are named " + pVocabulary->uri() + " (--vocabulary-uri tells them apart)");
		}
		_vocabularies.push_back(std::move(pVocabulary));
	}
}


const SharedVocabulary* VocabularyOptions::first() const
{
	return _vocabularies.empty() ? nullptr : _vocabularies.front().get();
}


const SharedVocabulary& VocabularyOptions::find(const std::string& uri) const
{
	for (const auto& pVocabulary: _vocabularies)
	{
		if (pVocabulary->uri() == uri) return *pVocabulary;
	}
	std::string given;
	for (const auto& pVocabulary: _vocabularies) given += (given.empty() ? "; given: " : ", ") + pVocabulary->uri();
	throw VocabularyException("the document names the vocabulary " + uri + ", which was not given (--vocabulary FILE [--vocabulary-uri URI]" + given + ")");
}


void VocabularyOptions::decode(std::istream& input, std::ostream& output, int options) const
{
	// The vocabulary's URI is read ahead, then the document from its start:
	// from memory when the stream cannot go back.
	const std::streampos start = input.tellg();
	if (start != std::streampos(-1))
	{
		const std::string uri = VocabularyFile::namedVocabulary(input);
		input.clear();
		if (!input.seekg(start)) throw Korvo::ReadFileException("cannot go back to the start of the document");
		convert(*this, uri, input, output, options);
	}
	else
	{
		input.clear();
		std::string document;
		Korvo::StreamCopier::copyToString(input, document);
		Korvo::MemoryInputStream header(document.data(), document.size());
		const std::string uri = VocabularyFile::namedVocabulary(header);
		Korvo::MemoryInputStream content(document.data(), document.size());
		convert(*this, uri, content, output, options);
	}
}


} } } // namespace Korvo::FastInfoset::Tool
