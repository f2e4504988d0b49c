//
// VocabularyFile.cpp
//
// Library: FastInfoset
// Package: Tools
// Module:  VocabularyFile
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "VocabularyFile.h"
#include "Korvo/FastInfoset/BitStreamReader.h"
#include "Korvo/FastInfoset/BitStreamWriter.h"
#include "Korvo/FastInfoset/Decoder.h"
#include "Korvo/FastInfoset/Encoder.h"
#include "Korvo/FastInfoset/FastInfosetParser.h"
#include "Korvo/FastInfoset/FISException.h"
#include "Korvo/FastInfoset/QualifiedNameVocabulary.h"
#include "Poco/MemoryStream.h"
#include "Poco/SAX/InputSource.h"
#include "Poco/StreamCopier.h"


namespace Korvo {
namespace FastInfoset {
namespace Tool {


namespace
{
	// Header flags (seven bits) and initial-vocabulary flags (three padding
	// bits and thirteen flags).
	const unsigned int HAS_ADDITIONAL_DATA = 0x40;
	const unsigned int HAS_INITIAL_VOCABULARY = 0x20;
	const unsigned int EXTERNAL_VOCABULARY = 0x1000;
	const unsigned int RESTRICTED_ALPHABETS = 0x0800;

	// Element items.
	const unsigned int NAMESPACE_ATTRIBUTES = 0x38; // 111000
	const unsigned int NAMESPACE_ATTRIBUTE = 0x33;  // 110011
	const unsigned int TERMINATOR = 0xF;            // 1111
	const unsigned int ABSENT_INDEX = 0xFFFFFFFF;   // as a parsed name surrogate marks it

	enum EntryForm
	{
		IDENTIFIER,
		VALUE,
		NAME
	};

	struct Section
	{
		unsigned int flag;
		DocumentVocabulary::ID table;
		EntryForm form;
	};

	// The tables in the order of their flags; the name tables are not
	// string tables and are told apart by their ID.
	const Section SECTIONS[] =
	{
		{0x0200, DocumentVocabulary::PREFIX, IDENTIFIER},
		{0x0100, DocumentVocabulary::NAMESPACE_NAME, IDENTIFIER},
		{0x0080, DocumentVocabulary::LOCAL_NAME, IDENTIFIER},
		{0x0040, DocumentVocabulary::OTHER_NCNAME, IDENTIFIER},
		{0x0020, DocumentVocabulary::OTHER_URI, IDENTIFIER},
		{0x0010, DocumentVocabulary::ATTRIBUTE_VALUE, VALUE},
		{0x0008, DocumentVocabulary::CHARACTER_CONTENT_CHUNK, VALUE},
		{0x0004, DocumentVocabulary::OTHER_STRING, VALUE},
		{0x0002, DocumentVocabulary::ELEMENT_NAME, NAME},
		{0x0001, DocumentVocabulary::ATTRIBUTE_NAME, NAME}
	};

	unsigned int tableSize(const DocumentVocabulary& vocabulary, DocumentVocabulary::ID table)
	{
		if (table == DocumentVocabulary::ELEMENT_NAME) return vocabulary.elementVocabulary()->size();
		if (table == DocumentVocabulary::ATTRIBUTE_NAME) return vocabulary.attributeVocabulary()->size();
		return vocabulary.vocabulary(table)->size();
	}

	bool isPresent(unsigned int index)
	{
		return index != 0 && index != ABSENT_INDEX;
	}

	void writeSequenceLength(BitStreamWriter& writer, unsigned int length)
	{
		// Encoder::lengthOfSequence writes longer sequences in a form of its
		// own; this is the one every reader takes: '1000' and 20 bits.
		if (length <= 128)
			Encoder::lengthOfSequence(writer, length);
		else
			writer.write(0x800000u | (length - 129), 24);
	}

	void writeNameSurrogate(BitStreamWriter& writer, const QualifiedNameEntry& name)
	{
		writer.write(0, 6);
		writer.write(isPresent(name.prefixId()));
		writer.write(isPresent(name.namespaceId()));
		if (isPresent(name.prefixId())) Encoder::pad0ThenInteger(writer, name.prefixId());
		if (isPresent(name.namespaceId())) Encoder::pad0ThenInteger(writer, name.namespaceId());
		Encoder::pad0ThenInteger(writer, name.localNameId());
	}

	void writeSection(BitStreamWriter& writer, const DocumentVocabulary& vocabulary, const Section& section, unsigned int first)
	{
		const unsigned int end = tableSize(vocabulary, section.table);
		writeSequenceLength(writer, end - first);
		for (unsigned int i = first; i < end; ++i)
		{
			switch (section.form)
			{
			case IDENTIFIER:
				writer.write(false);
				Encoder::nonEmptyOctetString(writer, vocabulary.value(section.table, i));
				break;
			case VALUE:
				writer.write(0, 4); // padding, then UTF-8
				Encoder::nonEmptyOctetString(writer, vocabulary.value(section.table, i));
				break;
			case NAME:
				writeNameSurrogate(writer, section.table == DocumentVocabulary::ELEMENT_NAME ?
					vocabulary.elementVocabulary()->value(i) : vocabulary.attributeVocabulary()->value(i));
				break;
			}
		}
	}

	void writeIndexedIdentifier(BitStreamWriter& writer, unsigned int index)
	{
		writer.write(true);
		Encoder::integer(writer, index);
	}

	void writeElement(BitStreamWriter& writer, const QualifiedNameEntry& name)
		/// An empty element, without attributes, that declares the
		/// namespace of its name: all by index.
	{
		writer.write(0, 2);
		if (isPresent(name.namespaceId()))
		{
			writer.write(NAMESPACE_ATTRIBUTES, 6);
			writer.write(NAMESPACE_ATTRIBUTE, 6);
			writer.write(isPresent(name.prefixId()));
			writer.write(true);
			if (isPresent(name.prefixId())) writeIndexedIdentifier(writer, name.prefixId());
			writeIndexedIdentifier(writer, name.namespaceId());
			writer.write(TERMINATOR, 4);
			writer.write(0, 6);
		}
		Encoder::integer(writer, 1);
		writer.write(TERMINATOR, 4);
	}
}


void VocabularyFile::write(const DocumentVocabulary& vocabulary, std::ostream& output)
{
	const DocumentVocabulary fresh(DocumentVocabulary::VOC_MAP);
	const auto& alphabets = vocabulary.restrictedAlphabets().alphabets();
	const std::size_t firstAlphabet = fresh.restrictedAlphabets().alphabets().size();
	unsigned int flags = alphabets.size() > firstAlphabet ? RESTRICTED_ALPHABETS : 0;
	for (const Section& section: SECTIONS)
	{
		if (tableSize(vocabulary, section.table) > tableSize(fresh, section.table)) flags |= section.flag;
	}

	BitStreamWriter writer(output, false);
	Encoder::documentPreHeader(writer, false);
	writer.write(flags ? HAS_INITIAL_VOCABULARY : 0, 7);
	if (flags)
	{
		writer.write(flags, 16);
		if (flags & RESTRICTED_ALPHABETS)
		{
			writeSequenceLength(writer, static_cast<unsigned int>(alphabets.size() - firstAlphabet));
			for (std::size_t i = firstAlphabet; i < alphabets.size(); ++i)
			{
				writer.write(false);
				Encoder::nonEmptyOctetString(writer, alphabets[i].alphabet());
			}
		}
		for (const Section& section: SECTIONS)
		{
			if (flags & section.flag) writeSection(writer, vocabulary, section, tableSize(fresh, section.table));
		}
	}
	if (vocabulary.elementVocabulary()->size() > 1) writeElement(writer, vocabulary.elementVocabulary()->value(1));
	writer.write(TERMINATOR, 4);
	writer.complete();
}


DocumentVocabulary VocabularyFile::read(std::istream& input)
{
	std::string document;
	Korvo::StreamCopier::copyToString(input, document);
	Korvo::MemoryInputStream header(document.data(), document.size());
	const std::string uri = namedVocabulary(header);
	if (!uri.empty()) throw FISException("A vocabulary file cannot name a vocabulary itself", uri);

	FastInfosetParser parser(DocumentVocabulary::VOC_VECTOR);
	Korvo::MemoryInputStream content(document.data(), document.size());
	Korvo::XML::InputSource source(content);
	parser.parse(&source);
	return parser.vocabulary();
}


std::string VocabularyFile::namedVocabulary(std::istream& input)
{
	try
	{
		BitStreamReader reader(input);
		std::string declaration;
		Decoder::documentPreHeader(reader, declaration);
		unsigned int flags;
		if (!reader.read(flags, 7) || !(flags & HAS_INITIAL_VOCABULARY)) return std::string();
		if (flags & HAS_ADDITIONAL_DATA) Decoder::skipAdditionalData(reader);
		bool padding;
		if (!reader.read(flags, 16) || !(flags & EXTERNAL_VOCABULARY) || !reader.read(padding)) return std::string();
		std::string uri;
		Decoder::nonEmptyOctetString(reader, uri);
		return uri;
	}
	catch (const Korvo::Exception&)
	{
		// The parser will say what is wrong.
		return std::string();
	}
}


} } } // namespace Korvo::FastInfoset::Tool
