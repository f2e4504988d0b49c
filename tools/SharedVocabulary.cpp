//
// SharedVocabulary.cpp
//
// Library: FastInfoset
// Package: Tools
// Module:  SharedVocabulary
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "SharedVocabulary.h"
#include "Tool.h"
#include "VocabularyFile.h"
#include "Korvo/FastInfoset/Converter.h"
#include "Korvo/FastInfoset/FastInfosetParser.h"
#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include "Korvo/FastInfoset/QualifiedNameVocabulary.h"
#include "DoctypeDeferringWriter.h"
#include "Poco/Path.h"
#include "Poco/SAX/InputSource.h"
#include "Poco/XML/XMLWriter.h"


namespace Korvo {
namespace FastInfoset {
namespace Tool {


POCO_IMPLEMENT_EXCEPTION(VocabularyException, Korvo::Exception, "Vocabulary error")


namespace
{
	const DocumentVocabulary::ID STRING_TABLES[] =
	{
		DocumentVocabulary::PREFIX,
		DocumentVocabulary::NAMESPACE_NAME,
		DocumentVocabulary::LOCAL_NAME,
		DocumentVocabulary::OTHER_NCNAME,
		DocumentVocabulary::OTHER_URI,
		DocumentVocabulary::ATTRIBUTE_VALUE,
		DocumentVocabulary::OTHER_STRING,
		DocumentVocabulary::CHARACTER_CONTENT_CHUNK
	};

	const unsigned int ABSENT_INDEX = 0xFFFFFFFF;

	unsigned int presentOrZero(unsigned int index)
	{
		return index == ABSENT_INDEX ? 0 : index;
	}

	std::string copyNames(const Vocabulary<QualifiedNameEntry>& from, Vocabulary<QualifiedNameEntry>& to)
		/// Appends the names of from after its placeholder, an absent prefix
		/// or namespace name as 0 (where a writer looks for it, not all ones
		/// as a parsed name surrogate has it). Returns the index of the first
		/// name that to held already, or an empty string.
	{
		std::string duplicate;
		for (unsigned int i = 1; i < from.size(); ++i)
		{
			const QualifiedNameEntry& name = from.value(i);
			bool existed;
			to.index(QualifiedNameEntry(presentOrZero(name.prefixId()), presentOrZero(name.namespaceId()), name.localNameId()), existed);
			if (existed && duplicate.empty()) duplicate = std::to_string(i);
		}
		return duplicate;
	}

	std::string copyEntries(const DocumentVocabulary& from, DocumentVocabulary& to)
		/// Appends the entries of from beyond the predefined ones to the
		/// fresh vocabulary to. Returns a description of the first entry that
		/// to held already, or an empty string.
	{
		const DocumentVocabulary fresh(DocumentVocabulary::VOC_MAP);
		std::string duplicate;
		for (DocumentVocabulary::ID id: STRING_TABLES)
		{
			const Vocabulary<std::string>& table = *from.vocabulary(id);
			for (unsigned int i = fresh.vocabulary(id)->size(); i < table.size(); ++i)
			{
				bool existed;
				to.index(id, table.value(i), existed);
				if (existed && duplicate.empty()) duplicate = "'" + table.value(i) + "'";
			}
		}
		const std::string element = copyNames(*from.elementVocabulary(), *to.elementVocabulary());
		const std::string attribute = copyNames(*from.attributeVocabulary(), *to.attributeVocabulary());
		if (duplicate.empty() && !element.empty()) duplicate = "element name " + element;
		if (duplicate.empty() && !attribute.empty()) duplicate = "attribute name " + attribute;

		const auto& alphabets = from.restrictedAlphabets().alphabets();
		for (std::size_t i = fresh.restrictedAlphabets().alphabets().size(); i < alphabets.size(); ++i)
			to.restrictedAlphabets().add(alphabets[i].alphabet());
		return duplicate;
	}

	int xmlWriterOptions(int options)
		/// Converter's option bits in the toolkit writer's numbering.
	{
		int result = Korvo::XML::XMLWriter::CANONICAL;
		if (options & Converter::CONV_WRITE_XML_DECLARATION) result |= Korvo::XML::XMLWriter::WRITE_XML_DECLARATION;
		if (options & Converter::CONV_PRETTY_PRINT_XML) result |= Korvo::XML::XMLWriter::PRETTY_PRINT;
		return result;
	}

	std::string fileName(const std::string& path)
	{
		return path == "-" ? std::string("-") : Korvo::Path(path).getFileName();
	}
}


SharedVocabulary::SharedVocabulary(const std::string& path, const std::string& uri):
	_uri(uri.empty() ? fileName(path) : uri),
	_reading(_uri, DocumentVocabulary::VOC_VECTOR),
	_writing(_uri, DocumentVocabulary::VOC_MAP)
{
	const std::string name = path == "-" ? std::string("<stdin>") : path;
	DocumentVocabulary loaded(DocumentVocabulary::VOC_VECTOR);
	try
	{
		InputFile input(path);
		loaded = VocabularyFile::read(input.stream());
	}
	catch (const std::exception& exc)
	{
		throw VocabularyException("cannot read " + name + ": " + describe(exc));
	}
	copyEntries(loaded, _reading);
	const std::string duplicate = copyEntries(loaded, _writing);
	if (!duplicate.empty())
		_notWritable = name + " holds " + duplicate + " twice: documents cannot be written with it";

	const DocumentVocabulary::ID VALUE_TABLES[] = {DocumentVocabulary::ATTRIBUTE_VALUE, DocumentVocabulary::OTHER_STRING, DocumentVocabulary::CHARACTER_CONTENT_CHUNK};
	for (DocumentVocabulary::ID id: VALUE_TABLES)
	{
		const Vocabulary<std::string>& table = *_reading.vocabulary(id);
		for (unsigned int i = 1; i < table.size(); ++i) _values[id - DocumentVocabulary::ATTRIBUTE_VALUE].insert(table.value(i));
	}
}


bool SharedVocabulary::holds(DocumentVocabulary::ID table, const std::string& value) const
{
	if (table < DocumentVocabulary::ATTRIBUTE_VALUE || table > DocumentVocabulary::CHARACTER_CONTENT_CHUNK) return false;
	const std::unordered_set<std::string>& values = _values[table - DocumentVocabulary::ATTRIBUTE_VALUE];
	return values.find(value) != values.end();
}


void SharedVocabulary::useIn(FastInfosetWriter& writer) const
{
	if (!_notWritable.empty()) throw VocabularyException(_notWritable);
	writer.useExternalVocabulary(_uri, _writing);
}


std::unique_ptr<FastInfosetParser> SharedVocabulary::newParser() const
{
	// The parser starts every document that names the URI from the
	// vocabulary's content, so one parser could serve many documents.
	std::unique_ptr<FastInfosetParser> pParser(new FastInfosetParser);
	pParser->addExternalVocabulary(_uri, _reading);
	return pParser;
}


void SharedVocabulary::decode(std::istream& input, std::ostream& output, int options) const
{
	// As Converter::convertToXML(), with a parser that has the vocabulary.
	DoctypeDeferringWriter writer(output, xmlWriterOptions(options));
	std::unique_ptr<FastInfosetParser> pParser = newParser();
	pParser->initialize(static_cast<Korvo::XML::XMLWriter*>(&writer));
	pParser->setFeature(FastInfosetParser::FEATURE_ATTRIBUTE_QNAMES, true);
	Korvo::XML::InputSource source(input);
	pParser->parse(&source);
}


} } } // namespace Korvo::FastInfoset::Tool
