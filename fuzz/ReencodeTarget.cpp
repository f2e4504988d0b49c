//
// ReencodeTarget.cpp
//
// Library: FastInfoset
// Package: Fuzz
// Module:  ReencodeTarget
//
// Arbitrary octets through a parser into FastInfosetWriter, and the
// document written back through a parser.
//
// The first octet chooses:
//
//     bits 0-1  the parser's tables: VOC_MAP, VOC_VECTOR, VOC_MAP, VOC_HASH
//     bit 2     initialize(writer): the writer also takes each document's
//               vocabulary (a VOC_VECTOR parser uses VOC_MAP then); else
//               the writer is only content, lexical and DTD handler
//     bit 3     the parser reads from an input stream
//     bits 4-5  the writer's maximum indexed string length: 16, 0, -1, 1
//     bits 6-7  the writer's own tables: VOC_HASH when both are set, else
//               VOC_MAP (hash tables are slow to make)
//
// A document the parser refuses is left there. One it accepts must be
// written, and the written document must read back with the same events
// (EventRecord), except for namespace declarations, which the writer may
// add: every declaration of an element must be among those written for
// it, unless the element's name uses the prefix itself (the writer binds
// it to the element's namespace) or the element has an attribute in a
// namespace (the writer binds a prefix to it, which may be any other).
// What the writer refuses by design is accepted as a refusal:
// an empty local name ("Tag mismatch", assertion "!localName.empty()"),
// and, when it takes the document's vocabulary, initial tables of
// encoded strings or names (the bit writer's assertion). Documents that
// the writer cannot write as they are are only written, not compared: an
// empty local name with a prefix (the writer takes the qualified name as
// the name) and, by design, initial tables of more than 128 entries
// (which do not read back).
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Targets.h"
#include "EventRecord.h"
#include "FuzzInput.h"
#include "Verdict.h"
#include "Korvo/FastInfoset/FastInfosetParser.h"
#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include "Korvo/FastInfoset/FISException.h"
#include "Poco/MemoryStream.h"
#include "Poco/SAX/InputSource.h"
#include <map>
#include <set>
#include <sstream>


namespace Korvo {
namespace FastInfoset {
namespace Fuzz {


namespace
{
	const DocumentVocabulary::VocabularyImpl PARSER_IMPLS[4] =
	{
		DocumentVocabulary::VOC_MAP, DocumentVocabulary::VOC_VECTOR, DocumentVocabulary::VOC_MAP, DocumentVocabulary::VOC_HASH
	};
	const int MAX_INDEXED_LENGTHS[4] = {16, 0, -1, 1};
	const std::size_t MAX_SEQUENCE = 128;

	const Assertions WRITER_ASSERTIONS =
	{
		"!localName.empty()",
		"checkInputParams(Utility::SIZEOFINT32INBIT, numOfBits)", // encoded or name tables in the header
	};

	struct Settings
	{
		explicit Settings(unsigned char octet):
			initialize((octet & 0x04) != 0),
			parserImpl(PARSER_IMPLS[octet & 3]),
			writerImpl((octet & 0xC0) == 0xC0 ? DocumentVocabulary::VOC_HASH : DocumentVocabulary::VOC_MAP),
			maxIndexedStringLength(MAX_INDEXED_LENGTHS[(octet >> 4) & 3]),
			fromStream((octet & 0x08) != 0)
		{
			if (initialize && parserImpl == DocumentVocabulary::VOC_VECTOR) parserImpl = DocumentVocabulary::VOC_MAP;
		}

		bool initialize;
		DocumentVocabulary::VocabularyImpl parserImpl;
		DocumentVocabulary::VocabularyImpl writerImpl;
		int maxIndexedStringLength;
		bool fromStream;
	};

	class HeaderTables: public FISDocumentHandler
		/// Notes whether the tables a document's header leaves are longer
		/// than a writer can announce so that they read back.
	{
	public:
		HeaderTables():
			longTables(false)
		{
		}

		void setDocumentVocabulary(const DocumentVocabulary& voc)
		{
			static const DocumentVocabulary fresh(DocumentVocabulary::VOC_MAP);
			for (unsigned id = DocumentVocabulary::PREFIX; id <= DocumentVocabulary::CHARACTER_CONTENT_CHUNK; ++id)
			{
				const DocumentVocabulary::ID table = static_cast<DocumentVocabulary::ID>(id);
				if (voc.vocabulary(table)->size() > fresh.vocabulary(table)->size() + MAX_SEQUENCE) longTables = true;
			}
			if (voc.restrictedAlphabets().alphabets().size() > fresh.restrictedAlphabets().alphabets().size() + MAX_SEQUENCE) longTables = true;
		}

		DocumentVocabulary& getDocumentVocabulary()
		{
			throw Korvo::NotImplementedException("HeaderTables::getDocumentVocabulary");
		}

		const DocumentVocabulary& getDocumentVocabulary() const
		{
			throw Korvo::NotImplementedException("HeaderTables::getDocumentVocabulary");
		}

		void setWriteXMLDeclaration(bool)
		{
		}

		void setExternalVocabulary(const Korvo::XML::XMLString&, const DocumentVocabulary&)
		{
		}

		bool longTables;
	};

	void parse(FastInfosetParser& parser, const char* pData, std::size_t size, bool fromStream)
	{
		if (fromStream)
		{
			Korvo::MemoryInputStream input(pData, size);
			Korvo::XML::InputSource source(input);
			parser.parse(&source);
		}
		else parser.parseMemoryNP(pData, size);
	}

	void listen(FastInfosetParser& parser, EventRecord& record)
	{
		parser.setContentHandler(&record);
		parser.setDTDHandler(&record);
		parser.setProperty(Korvo::XML::XMLReader::PROPERTY_LEXICAL_HANDLER, static_cast<Korvo::XML::LexicalHandler*>(&record));
		// A writer takes text as C strings.
		record.cutTextAtNul(true);
	}

	bool write(const Settings& settings, const char* pData, std::size_t size, std::ostream& output)
		/// False when the writer refuses the document by design.
	{
		FastInfosetParser parser(settings.parserImpl);
		FastInfosetWriter writer(output, false, settings.writerImpl);
		writer.setMaxIndexedStringLength(settings.maxIndexedStringLength);
		if (settings.initialize)
		{
			parser.initialize(&writer);
		}
		else
		{
			parser.setContentHandler(&writer);
			parser.setDTDHandler(&writer);
			parser.setProperty(Korvo::XML::XMLReader::PROPERTY_LEXICAL_HANDLER, static_cast<Korvo::XML::LexicalHandler*>(&writer));
		}
		try
		{
			parse(parser, pData, size, settings.fromStream);
		}
		catch (const FISException& exc)
		{
			if (exc.message().compare(0, 12, "Tag mismatch") != 0) fail("the writer refuses a document the parser accepts: " + exc.displayText());
			return false;
		}
		catch (const Korvo::AssertionViolationException&)
		{
			acceptRefusal(WRITER_ASSERTIONS);
			return false;
		}
		catch (const std::exception& exc)
		{
			fail("the writer refuses a document the parser accepts: " + describe(exc));
		}
		return true;
	}

	struct ElementDeclarations
	{
		std::string start;
			/// The element's start line.
		std::map<std::string, std::set<std::string>> namespaces;
			/// The namespaces declared for each prefix ("xml" and "xmlns"
			/// are never declared).
	};

	std::vector<ElementDeclarations> declarationsByElement(const std::vector<std::string>& lines)
	{
		std::vector<ElementDeclarations> result;
		ElementDeclarations pending;
		for (const std::string& line: lines)
		{
			if (line.compare(0, 3, "ns ") == 0)
			{
				const std::size_t space = line.find(' ', 3);
				const std::size_t length = std::stoul(line.substr(3, space - 3));
				const std::string prefix = line.substr(space + 1, length);
				if (prefix != "xml" && prefix != "xmlns") pending.namespaces[prefix].insert(line.substr(space + 1 + length + 1));
			}
			else if (line.compare(0, 6, "start ") == 0)
			{
				pending.start = line;
				result.push_back(pending);
				pending = ElementDeclarations();
			}
		}
		return result;
	}

	std::vector<std::string> withoutDeclarations(const std::vector<std::string>& lines)
	{
		std::vector<std::string> result;
		for (const std::string& line: lines)
		{
			if (line.compare(0, 3, "ns ") != 0) result.push_back(line);
		}
		return result;
	}

	void compare(EventRecord& original, EventRecord& written)
	{
		const std::string difference = EventRecord::firstDifference(withoutDeclarations(original.lines()), withoutDeclarations(written.lines()));
		if (!difference.empty()) fail("the written document reads back differently: " + difference);

		// A prefix declared twice on one element keeps one of its namespaces.
		const auto expected = declarationsByElement(original.lines());
		const auto actual = declarationsByElement(written.lines());
		for (std::size_t i = 0; i < expected.size(); ++i)
		{
			for (const auto& declaration: expected[i].namespaces)
			{
				const std::string& prefix = declaration.first;
				const EventRecord::Element& element = original.elements()[i];
				if (prefix == element.prefix || element.namespacedAttribute) continue;
				auto it = actual[i].namespaces.find(prefix);
				if (it == actual[i].namespaces.end() || it->second.size() != 1 || declaration.second.count(*it->second.begin()) == 0)
					fail("the written document loses the declaration of '" + prefix + "' on '" + expected[i].start + "'");
			}
		}
	}
}


void reencodeTarget(const char* pData, std::size_t size)
{
	FuzzInput input(pData, size);
	const Settings settings(input.octet());
	const char* pDocument = input.position();
	const std::size_t documentSize = input.remaining();

	EventRecord original;
	original.limitVolume(4*size + 4096);
	HeaderTables header;
	{
		FastInfosetParser parser(settings.parserImpl);
		listen(parser, original);
		parser.setDocumentHandler(&header);
		try
		{
			parse(parser, pDocument, documentSize, settings.fromStream);
		}
		catch (...)
		{
			acceptRefusal(PARSER_ASSERTIONS);
			return;
		}
	}
	// Events far larger than the document would make the writer's output so.
	if (original.overflowed()) return;

	std::ostringstream output;
	if (!write(settings, pDocument, documentSize, output)) return;
	if (original.hasEmptyLocalName() || (settings.initialize && header.longTables)) return;

	const std::string document = output.str();
	EventRecord written;
	FastInfosetParser parser(DocumentVocabulary::VOC_MAP);
	listen(parser, written);
	try
	{
		parser.parseMemoryNP(document.data(), document.size());
	}
	catch (const std::exception& exc)
	{
		fail("the parser refuses what the writer wrote: " + describe(exc));
	}
	compare(original, written);
}


} } } // namespace Korvo::FastInfoset::Fuzz
