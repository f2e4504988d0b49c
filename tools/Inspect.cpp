//
// Inspect.cpp
//
// Library: FastInfoset
// Package: Tools
// Module:  Inspect
//
// The inspect command: what a Fast Infoset document holds and how it is
// stored.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Tool.h"
#include "VocabularyFile.h"
#include "VocabularyOptions.h"
#include "Korvo/FastInfoset/Converter.h"
#include "Korvo/FastInfoset/FastInfosetParser.h"
#include "Korvo/FastInfoset/FISContentHandler.h"
#include "Korvo/FastInfoset/FISDocumentHandler.h"
#include "Korvo/FastInfoset/DocumentVocabulary.h"
#include "Poco/CountingStream.h"
#include "Poco/MemoryStream.h"
#include "Poco/SAX/InputSource.h"
#include <iomanip>
#include <memory>
#include <sstream>


using Korvo::XML::XMLString;
using Korvo::XML::XMLChar;


namespace Korvo {
namespace FastInfoset {
namespace Tool {


namespace
{
	class Census: public FISContentHandler, public Korvo::XML::LexicalHandler, public Korvo::XML::DTDHandler, public FISDocumentHandler
		/// Counts the items of a document while it is parsed, and keeps the
		/// vocabulary that its header set up.
	{
	public:
		struct Counts
		{
			std::size_t elements = 0;
			std::size_t attributes = 0;
			std::size_t attributeOctets = 0;
			std::size_t namespaceDeclarations = 0;
			std::size_t textChunks = 0;
			std::size_t textOctets = 0;
			std::size_t typedChunks = 0;
			std::size_t typedValues = 0;
			std::size_t comments = 0;
			std::size_t instructions = 0;
			std::size_t doctypes = 0;
			std::size_t notations = 0;
			std::size_t unparsedEntities = 0;
			std::size_t maxDepth = 0;
		};

		Census():
			_headerVocabulary(DocumentVocabulary::VOC_MAP)
		{
		}

		const Counts& counts() const { return _counts; }

		// ContentHandler
		void setDocumentLocator(const Korvo::XML::Locator*) override {}
		void startDocument() override {}
		void endDocument() override {}

		void startElement(const XMLString&, const XMLString&, const XMLString&, const Korvo::XML::Attributes& attributes) override
		{
			endTypedRun();
			++_counts.elements;
			_counts.attributes += static_cast<std::size_t>(attributes.getLength());
			for (int i = 0; i < attributes.getLength(); ++i) _counts.attributeOctets += attributes.getValue(i).size();
			if (++_depth > _counts.maxDepth) _counts.maxDepth = _depth;
		}

		void endElement(const XMLString&, const XMLString&, const XMLString&) override
		{
			endTypedRun();
			--_depth;
		}

		void characters(const XMLChar[], int, int length) override
		{
			endTypedRun();
			++_counts.textChunks;
			_counts.textOctets += static_cast<std::size_t>(length);
		}

		void ignorableWhitespace(const XMLChar ch[], int start, int length) override
		{
			characters(ch, start, length);
		}

		void processingInstruction(const XMLString&, const XMLString&) override
		{
			endTypedRun();
			++_counts.instructions;
		}

		void startPrefixMapping(const XMLString&, const XMLString&) override { ++_counts.namespaceDeclarations; }
		void endPrefixMapping(const XMLString&) override {}
		void skippedEntity(const XMLString&) override {}

		// FISContentHandler: one call per value; a run of one kind is one chunk.
		void binaryData(const char*, unsigned int) override { typedValue(BINARY); }
		void encodedData(short) override { typedValue(SHORT); }
		void encodedData(int) override { typedValue(INT); }
		void encodedData(long long) override { typedValue(LONG); }
		void encodedData(bool) override { typedValue(BOOLEAN); }
		void encodedData(float) override { typedValue(FLOAT); }
		void encodedData(double) override { typedValue(DOUBLE); }
		void encodedData(const Korvo::UUID&) override { typedValue(UUID); }

		// LexicalHandler
		void startDTD(const XMLString&, const XMLString&, const XMLString&) override { ++_counts.doctypes; }
		void endDTD() override {}
		void startEntity(const XMLString&) override {}
		void endEntity(const XMLString&) override {}
		void startCDATA() override {}
		void endCDATA() override {}

		void comment(const XMLChar[], int, int) override
		{
			endTypedRun();
			++_counts.comments;
		}

		// DTDHandler
		void notationDecl(const XMLString&, const XMLString*, const XMLString*) override { ++_counts.notations; }
		void unparsedEntityDecl(const XMLString&, const XMLString*, const XMLString&, const XMLString&) override { ++_counts.unparsedEntities; }

		// FISDocumentHandler
		void setDocumentVocabulary(const DocumentVocabulary& voc) override { _headerVocabulary = voc; }
		DocumentVocabulary& getDocumentVocabulary() override { return _headerVocabulary; }
		const DocumentVocabulary& getDocumentVocabulary() const override { return _headerVocabulary; }
		void setWriteXMLDeclaration(bool) override {}
		void setExternalVocabulary(const XMLString&, const DocumentVocabulary&) override {}

	private:
		enum ValueKind { NO_VALUE, BINARY, SHORT, INT, LONG, BOOLEAN, FLOAT, DOUBLE, UUID };

		void typedValue(ValueKind kind)
		{
			if (kind != _lastKind) ++_counts.typedChunks;
			_lastKind = kind;
			++_counts.typedValues;
		}

		void endTypedRun()
		{
			_lastKind = NO_VALUE;
		}

		Counts _counts;
		std::size_t _depth = 0;
		ValueKind _lastKind = NO_VALUE;
		DocumentVocabulary _headerVocabulary;
	};


	struct Header
	{
		std::string xmlDeclaration;
		unsigned char flags = 0;
	};


	Header readHeader(const std::string& document)
		/// The optional XML declaration and the flag octet behind the
		/// identification and version, of a document that parsed.
	{
		Header header;
		std::string::size_type position = 0;
		if (document.compare(0, 2, "<?") == 0)
		{
			position = document.find('>');
			position = position == std::string::npos ? document.size() : position + 1;
			header.xmlDeclaration = document.substr(0, position);
		}
		position += 4;
		if (position < document.size()) header.flags = static_cast<unsigned char>(document[position]);
		return header;
	}


	const char* yesNo(bool value)
	{
		return value ? "yes" : "no";
	}


	unsigned int tableSize(const DocumentVocabulary& voc, DocumentVocabulary::ID id)
	{
		if (id == DocumentVocabulary::ELEMENT_NAME) return voc.elementVocabulary()->size();
		if (id == DocumentVocabulary::ATTRIBUTE_NAME) return voc.attributeVocabulary()->size();
		const Vocabulary<std::string>* pTable = voc.vocabulary(id);
		return pTable ? pTable->size() : 0;
	}


	unsigned int added(const DocumentVocabulary& after, const DocumentVocabulary& before, DocumentVocabulary::ID id)
	{
		const unsigned int sizeAfter = tableSize(after, id);
		const unsigned int sizeBefore = tableSize(before, id);
		return sizeAfter > sizeBefore ? sizeAfter - sizeBefore : 0;
	}


	struct TableName
	{
		DocumentVocabulary::ID id;
		const char* name;
	};


	const TableName TABLES[] =
	{
		{DocumentVocabulary::PREFIX, "prefixes"},
		{DocumentVocabulary::NAMESPACE_NAME, "namespace names"},
		{DocumentVocabulary::LOCAL_NAME, "local names"},
		{DocumentVocabulary::OTHER_NCNAME, "other NCNames"},
		{DocumentVocabulary::OTHER_URI, "other URIs"},
		{DocumentVocabulary::ATTRIBUTE_VALUE, "attribute values"},
		{DocumentVocabulary::CHARACTER_CONTENT_CHUNK, "character chunks"},
		{DocumentVocabulary::OTHER_STRING, "other strings"},
		{DocumentVocabulary::ELEMENT_NAME, "element names"},
		{DocumentVocabulary::ATTRIBUTE_NAME, "attribute names"}
	};


	void printHeader(std::ostream& out, const Header& header, const std::string& externalVocabulary, const DocumentVocabulary* pInitial, const DocumentVocabulary& before)
		/// The flags, and what the initial vocabulary adds to the tables
		/// before it (a fresh vocabulary or the external one): all but the
		/// external vocabulary's URI only when pInitial is given.
	{
		out << "header\n"
		    << "  XML declaration           " << (header.xmlDeclaration.empty() ? std::string("none") : header.xmlDeclaration) << "\n"
		    << "  additional data           " << yesNo(header.flags & 0x40) << "\n"
		    << "  initial vocabulary        " << yesNo(header.flags & 0x20) << "\n"
		    << "  notations                 " << yesNo(header.flags & 0x10) << "\n"
		    << "  unparsed entities         " << yesNo(header.flags & 0x08) << "\n"
		    << "  character encoding scheme " << yesNo(header.flags & 0x04) << "\n"
		    << "  standalone                " << yesNo(header.flags & 0x02) << "\n"
		    << "  version                   " << yesNo(header.flags & 0x01) << "\n";

		if (!(header.flags & 0x20)) return;
		out << "initial vocabulary\n";
		if (!externalVocabulary.empty())
			out << "  external vocabulary       " << externalVocabulary << "\n";
		if (!pInitial) return;
		const std::size_t alphabets = pInitial->restrictedAlphabets().alphabets().size();
		const std::size_t alphabetsBefore = before.restrictedAlphabets().alphabets().size();
		if (alphabets > alphabetsBefore)
			out << "  restricted alphabets      " << alphabets - alphabetsBefore << "\n";
		for (const auto& table: TABLES)
		{
			const unsigned int entries = added(*pInitial, before, table.id);
			if (entries > 0) out << "  " << std::left << std::setw(26) << table.name << std::right << entries << "\n";
		}
	}


	void printStringRow(std::ostream& out, const char* name, std::size_t read, std::size_t entered)
	{
		out << "  " << std::left << std::setw(20) << name << std::right
		    << std::setw(10) << read << std::setw(10) << entered << std::setw(10) << (read > entered ? read - entered : 0) << "\n";
	}


	void printContent(std::ostream& out, const Census::Counts& counts, const DocumentVocabulary& after, const DocumentVocabulary& before)
	{
		out << "content\n"
		    << "  elements                  " << counts.elements << " (deepest nesting " << counts.maxDepth << ")\n"
		    << "  attributes                " << counts.attributes << "\n"
		    << "  namespace declarations    " << counts.namespaceDeclarations << "\n"
		    << "  text chunks               " << counts.textChunks << "\n"
		    << "  typed chunks              " << counts.typedChunks << " (" << counts.typedValues << " values)\n"
		    << "  comments                  " << counts.comments << "\n"
		    << "  processing instructions   " << counts.instructions << "\n"
		    << "  document type declaration " << yesNo(counts.doctypes > 0) << "\n";
		if (counts.notations + counts.unparsedEntities > 0)
			out << "  notations                 " << counts.notations << "\n"
			    << "  unparsed entities         " << counts.unparsedEntities << "\n";

		out << std::left << std::setw(22) << "strings" << std::right
		    << std::setw(10) << "read" << std::setw(10) << "added" << std::setw(10) << "not added" << "\n";
		printStringRow(out, "element names", counts.elements, added(after, before, DocumentVocabulary::ELEMENT_NAME));
		printStringRow(out, "attribute names", counts.attributes, added(after, before, DocumentVocabulary::ATTRIBUTE_NAME));
		printStringRow(out, "attribute values", counts.attributes, added(after, before, DocumentVocabulary::ATTRIBUTE_VALUE));
		printStringRow(out, "text chunks", counts.textChunks + counts.typedChunks, added(after, before, DocumentVocabulary::CHARACTER_CONTENT_CHUNK));
		printStringRow(out, "comments and PI data", counts.comments + counts.instructions, added(after, before, DocumentVocabulary::OTHER_STRING));
		out << "  A name that was not added was read as an index. A value that was not\n"
		       "  added was read as an index, or was a literal not marked for indexing\n"
		       "  (longer than the writer's maximum indexed string length).\n"
		    << "  new prefixes " << added(after, before, DocumentVocabulary::PREFIX)
		    << ", namespace names " << added(after, before, DocumentVocabulary::NAMESPACE_NAME)
		    << ", local names " << added(after, before, DocumentVocabulary::LOCAL_NAME) << "\n";
	}


	std::streamsize xmlSize(const std::string& document, const VocabularyOptions& vocabularies)
	{
		std::istringstream input(document);
		Korvo::CountingOutputStream counter;
		vocabularies.decode(input, counter, Converter::CONV_WRITE_XML_DECLARATION);
		return counter.chars();
	}


	void printSizes(std::ostream& out, const std::string& document, const Census::Counts& counts, const VocabularyOptions& vocabularies)
	{
		const std::streamsize asXML = xmlSize(document, vocabularies);
		out << "sizes\n"
		    << "  document                  " << document.size() << " octets\n"
		    << "  text                      " << counts.textOctets << " octets\n"
		    << "  attribute values          " << counts.attributeOctets << " octets\n"
		    << "  as XML text               " << asXML << " octets";
		if (asXML > 0)
			out << " (the document is " << std::fixed << std::setprecision(1)
			    << 100.0 * static_cast<double>(document.size()) / static_cast<double>(asXML) << "% of it)";
		out << "\n";
	}
}


int inspectCommand(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err)
{
	VocabularyOptions vocabularies(true);
	std::vector<std::string> operands;
	ArgumentReader reader("inspect", arguments);
	while (reader.next())
	{
		if (vocabularies.readOption(reader)) continue;
		if (reader.isOption()) reader.unknownOption();
		operands.push_back(reader.current());
	}
	if (operands.size() != 1) throw UsageException("inspect: expects one INPUT");
	vocabularies.load();

	std::string culprit = operands[0] == "-" ? "<stdin>" : operands[0];
	try
	{
		InputFile input(operands[0]);
		const std::string document = input.readAll();
		Korvo::MemoryInputStream header(document.data(), document.size());
		const std::string externalVocabulary = VocabularyFile::namedVocabulary(header);
		std::unique_ptr<FastInfosetParser> pParser(new FastInfosetParser(DocumentVocabulary::VOC_MAP));
		if (!externalVocabulary.empty())
		{
			try
			{
				pParser = vocabularies.find(externalVocabulary).newParser();
			}
			catch (const VocabularyException&)
			{
				// What can be known without the vocabulary, then why no more.
				out << "file " << input.name() << "\n";
				printHeader(out, readHeader(document), externalVocabulary, nullptr, pParser->vocabulary());
				out.flush();
				throw;
			}
		}
		const DocumentVocabulary before(pParser->vocabulary());

		Census census;
		pParser->setContentHandler(&census);
		pParser->setDTDHandler(&census);
		pParser->setProperty(Korvo::XML::XMLReader::PROPERTY_LEXICAL_HANDLER, static_cast<Korvo::XML::LexicalHandler*>(&census));
		pParser->setDocumentHandler(&census);
		// Read as a stream, not with parseMemoryNP: a memory block that ends
		// early fails an assertion, a stream with a message saying what was
		// being read.
		Korvo::MemoryInputStream stream(document.data(), document.size());
		Korvo::XML::InputSource source(stream);
		pParser->parse(&source);

		out << "file " << input.name() << "\n";
		printHeader(out, readHeader(document), externalVocabulary, &census.getDocumentVocabulary(), before);
		printContent(out, census.counts(), pParser->vocabulary(), census.getDocumentVocabulary());
		printSizes(out, document, census.counts(), vocabularies);
		out.flush();
		return EXIT_OK;
	}
	catch (const std::exception& exc)
	{
		err << "fastinfoset: " << culprit << ": " << describe(exc) << std::endl;
		return EXIT_FAILED;
	}
}


} } } // namespace Korvo::FastInfoset::Tool
