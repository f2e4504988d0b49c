//
// ParseTarget.cpp
//
// Library: FastInfoset
// Package: Fuzz
// Module:  ParseTarget
//
// Arbitrary octets as a Fast Infoset document.
//
// The first octet chooses how the rest is read:
//
//     bits 0-2  the tables: VOC_HASH when 0 (their fixed size makes them
//               slow to reset), else VOC_MAP when odd, VOC_VECTOR when even
//     bit 3     an input stream (parse(InputSource*)) instead of parseMemoryNP
//     bits 4-5  the handlers: typed content, lexical and DTD handlers; a plain
//               content handler with lexical and DTD handlers; a typed
//               content handler alone; none
//     bit 6     namespace-prefixes feature off
//     bit 7     a document handler, which copies each document's vocabulary
//
// The parse must end normally or with a refusal (see acceptRefusal) and
// stay within memoryLimit() where the build can measure it. Then the same
// parser reads the reference document and must report exactly what a
// fresh parser reports.
//
// As an application would, the target keeps one parser for each settings
// octet and parses every input with it. Since each input ends with the
// reference document, each starts from the same state.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Targets.h"
#include "EventRecord.h"
#include "FuzzInput.h"
#include "PlainContentHandler.h"
#include "SampleDocuments.h"
#include "Verdict.h"
#include "Korvo/FastInfoset/FastInfosetParser.h"
#include "Korvo/FastInfoset/FISDocumentHandler.h"
#include "Poco/MemoryStream.h"
#include "Poco/SAX/InputSource.h"
#include <map>
#include <memory>


namespace Korvo {
namespace FastInfoset {
namespace Fuzz {


namespace
{
	enum Handlers
	{
		TYPED_HANDLERS = 0,
		PLAIN_HANDLERS = 1,
		TYPED_CONTENT_HANDLER = 2,
		NO_HANDLERS = 3
	};

	struct Settings
	{
		explicit Settings(unsigned char octet):
			impl((octet & 7) == 0 ? DocumentVocabulary::VOC_HASH : (octet & 1) ? DocumentVocabulary::VOC_MAP : DocumentVocabulary::VOC_VECTOR),
			fromStream((octet & 0x08) != 0),
			handlers(static_cast<Handlers>((octet >> 4) & 3)),
			namespacePrefixes((octet & 0x40) == 0),
			documentHandler((octet & 0x80) != 0)
		{
		}

		DocumentVocabulary::VocabularyImpl impl;
		bool fromStream;
		Handlers handlers;
		bool namespacePrefixes;
		bool documentHandler;
	};

	class VocabularyCopy: public FISDocumentHandler
		/// Takes what a parser hands to a document handler.
	{
	public:
		VocabularyCopy():
			_vocabulary(DocumentVocabulary::DONT_INITIALIZE)
		{
		}

		void setDocumentVocabulary(const DocumentVocabulary& voc)
		{
			_vocabulary = voc;
		}

		DocumentVocabulary& getDocumentVocabulary()
		{
			return _vocabulary;
		}

		const DocumentVocabulary& getDocumentVocabulary() const
		{
			return _vocabulary;
		}

		void setWriteXMLDeclaration(bool)
		{
		}

		void setExternalVocabulary(const Korvo::XML::XMLString&, const DocumentVocabulary&)
		{
		}

	private:
		DocumentVocabulary _vocabulary;
	};

	class ConfiguredParser
		/// A parser with the handlers of the settings.
	{
	public:
		explicit ConfiguredParser(const Settings& settings):
			_settings(settings),
			_parser(settings.impl),
			_plain(_record)
		{
			if (settings.handlers != NO_HANDLERS)
			{
				if (settings.handlers == PLAIN_HANDLERS)
					_parser.setContentHandler(&_plain);
				else
					_parser.setContentHandler(&_record);
			}
			if (settings.handlers == TYPED_HANDLERS || settings.handlers == PLAIN_HANDLERS)
			{
				_parser.setDTDHandler(&_record);
				_parser.setProperty(Korvo::XML::XMLReader::PROPERTY_LEXICAL_HANDLER, static_cast<Korvo::XML::LexicalHandler*>(&_record));
			}
			if (!settings.namespacePrefixes) _parser.setFeature(Korvo::XML::XMLReader::FEATURE_NAMESPACE_PREFIXES, false);
			if (settings.documentHandler) _parser.setDocumentHandler(&_documentHandler);
		}

		void parse(const char* pData, std::size_t size)
		{
			_record.clear();
			if (_settings.fromStream)
			{
				Korvo::MemoryInputStream input(pData, size);
				Korvo::XML::InputSource source(input);
				_parser.parse(&source);
			}
			else _parser.parseMemoryNP(pData, size);
		}

		EventRecord& record()
		{
			return _record;
		}

	private:
		Settings _settings;
		FastInfosetParser _parser;
		EventRecord _record;
		PlainContentHandler _plain;
		VocabularyCopy _documentHandler;
	};

	struct Reused
	{
		std::unique_ptr<ConfiguredParser> pParser;
		std::vector<std::string> referenceEvents;
			/// What a fresh parser reports for the reference document.
	};

	Reused& reused(unsigned char settings)
	{
		static std::map<unsigned char, Reused> parsers;
		Reused& entry = parsers[settings];
		if (!entry.pParser)
		{
			entry.pParser.reset(new ConfiguredParser(Settings(settings)));
			entry.pParser->parse(referenceDocument().data(), referenceDocument().size());
			entry.referenceEvents = entry.pParser->record().lines();
		}
		return entry;
	}
}


void parseTarget(const char* pData, std::size_t size)
{
	FuzzInput input(pData, size);
	Reused& entry = reused(input.octet());
	ConfiguredParser& parser = *entry.pParser;
	parser.record().limitVolume(4*size + 4096);
	{
		AllocationWatch watch;
		try
		{
			parser.parse(input.position(), input.remaining());
		}
		catch (...)
		{
			acceptRefusal(PARSER_ASSERTIONS);
		}
		watch.expectAtMost(memoryLimit(size), "parsing");
	}

	parser.record().limitVolume(static_cast<std::size_t>(-1));
	try
	{
		parser.parse(referenceDocument().data(), referenceDocument().size());
	}
	catch (const std::exception& exc)
	{
		fail("the parser refuses the reference document after this one: " + describe(exc));
	}
	const std::string difference = EventRecord::firstDifference(entry.referenceEvents, parser.record().lines());
	if (!difference.empty()) fail("the parser reads the reference document differently after this one: " + difference);
}


} } } // namespace Korvo::FastInfoset::Fuzz
