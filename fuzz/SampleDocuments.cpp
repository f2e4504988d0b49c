//
// SampleDocuments.cpp
//
// Library: FastInfoset
// Package: Fuzz
// Module:  SampleDocuments
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "SampleDocuments.h"
#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include "Poco/SAX/AttributesImpl.h"
#include <cctype>
#include <functional>
#include <sstream>


using Korvo::XML::AttributesImpl;
using Korvo::XML::XMLString;


namespace Korvo {
namespace FastInfoset {
namespace Fuzz {


namespace
{
	const XMLString NONE;

	std::string written(const std::function<void(FastInfosetWriter&)>& events, DocumentVocabulary::VocabularyImpl impl = DocumentVocabulary::VOC_MAP)
	{
		std::ostringstream output;
		FastInfosetWriter writer(output, false, impl);
		events(writer);
		return output.str();
	}

	void plainElements(FastInfosetWriter& writer)
	{
		writer.startDocument();
		AttributesImpl attributes;
		attributes.addAttribute(NONE, "a", "a", "CDATA", "1");
		attributes.addAttribute(NONE, "b", "b", "CDATA", "two");
		writer.startElement(NONE, "root", NONE, attributes);
		writer.characters("Hello");
		for (int i = 0; i < 3; ++i)
		{
			// The second and third items are written by index.
			writer.startElement(NONE, "item", NONE, attributes);
			writer.characters("same text");
			writer.endElement(NONE, "item", NONE);
		}
		writer.emptyElement(NONE, "empty", NONE);
		writer.endElement(NONE, "root", NONE);
		writer.endDocument();
	}

	void namespaces(FastInfosetWriter& writer)
	{
		writer.startDocument();
		writer.startPrefixMapping("p", "urn:p");
		writer.startPrefixMapping("", "urn:d");
		AttributesImpl attributes;
		attributes.addAttribute("urn:p", "at", "p:at", "CDATA", "v");
		attributes.addAttribute(NONE, "plain", "plain", "CDATA", "w");
		writer.startElement("urn:d", "root", "root", attributes);
		writer.startElement("urn:p", "c", "p:c", AttributesImpl());
		writer.endElement("urn:p", "c", "p:c");
		// A namespace nobody declared gets a generated prefix.
		writer.emptyElement("urn:new", "n", NONE);
		writer.emptyElement("http://www.w3.org/XML/1998/namespace", "lang", "xml:lang");
		writer.endElement("urn:d", "root", "root");
		writer.endPrefixMapping("");
		writer.endPrefixMapping("p");
		writer.endDocument();
	}

	void typedValues(FastInfosetWriter& writer)
	{
		writer.startDocument();
		writer.startElement(NONE, "values", NONE, AttributesImpl());
		writer.binaryData("\x00\x01\xFE\xFF", 4);
		writer.characters("|");
		writer.encodedData(static_cast<short>(-2));
		writer.encodedData(static_cast<short>(300));
		writer.characters("|");
		writer.encodedData(-70000);
		writer.characters("|");
		writer.encodedData(-5000000000LL);
		writer.characters("|");
		writer.encodedData(true);
		writer.encodedData(false);
		writer.encodedData(true);
		writer.characters("|");
		writer.encodedData(1.5f);
		writer.characters("|");
		writer.encodedData(-0.25);
		writer.characters("|");
		writer.encodedData(Korvo::UUID("6ba7b810-9dad-11d1-80b4-00c04fd430c8"));
		writer.endElement(NONE, "values", NONE);
		writer.endDocument();
	}

	void lexicalItems(FastInfosetWriter& writer)
	{
		const XMLString publicId("-//P");
		const XMLString systemId("logo.png");
		writer.notationDecl("png", &publicId, nullptr);
		writer.unparsedEntityDecl("logo", nullptr, systemId, "png");
		writer.startDocument();
		writer.startDTD("root", "-//D", "root.dtd");
		writer.processingInstruction("inside", "the declaration");
		writer.endDTD();
		writer.comment("c", 0, 1);
		writer.processingInstruction("pi", "data");
		writer.startElement(NONE, "root", NONE, AttributesImpl());
		writer.startCDATA();
		writer.characters("a < b");
		writer.endCDATA();
		writer.comment(" inner ", 0, 7);
		writer.endElement(NONE, "root", NONE);
		writer.comment("c", 0, 1);
		writer.endDocument();
	}

	void initialVocabulary(FastInfosetWriter& writer)
	{
		DocumentVocabulary vocabulary(DocumentVocabulary::VOC_MAP);
		bool existed;
		vocabulary.index(DocumentVocabulary::PREFIX, "q", existed);
		vocabulary.index(DocumentVocabulary::NAMESPACE_NAME, "urn:q", existed);
		vocabulary.index(DocumentVocabulary::LOCAL_NAME, "known", existed);
		vocabulary.index(DocumentVocabulary::OTHER_NCNAME, "target", existed);
		vocabulary.index(DocumentVocabulary::OTHER_URI, "urn:other", existed);
		vocabulary.restrictedAlphabets().add("abc");
		writer.setDocumentVocabulary(vocabulary);
		writer.setWriteXMLDeclaration(true);
		writer.startDocument();
		writer.startPrefixMapping("q", "urn:q");
		writer.startElement("urn:q", "known", "q:known", AttributesImpl());
		writer.processingInstruction("target", "x");
		writer.endElement("urn:q", "known", "q:known");
		writer.endDocument();
	}

	void longStrings(FastInfosetWriter& writer)
	{
		writer.setMaxIndexedStringLength(-1);
		writer.startDocument();
		AttributesImpl attributes;
		attributes.addAttribute(NONE, "long", "long", "CDATA", std::string(70, 'v'));
		writer.startElement(NONE, std::string(65, 'n'), NONE, attributes);
		writer.characters(std::string(330, 't'));
		writer.characters(std::string(330, 't'));
		writer.endElement(NONE, std::string(65, 'n'), NONE);
		writer.endDocument();
	}

	void beyondOneBuffer(FastInfosetWriter& writer)
	{
		// Past the 1024 octets a stream reader reads at a time, with a
		// string and a typed value across the boundaries.
		writer.startDocument();
		writer.startElement(NONE, "big", NONE, AttributesImpl());
		for (int i = 0; i < 20; ++i)
		{
			AttributesImpl attributes;
			attributes.addAttribute(NONE, "n", "n", "CDATA", std::to_string(i));
			writer.emptyElement(NONE, "e" + std::to_string(i % 7), NONE, attributes);
		}
		writer.characters(std::string(1100, 'x'));
		const std::string octets(700, '\x5A');
		writer.binaryData(octets.data(), static_cast<unsigned>(octets.size()));
		writer.endElement(NONE, "big", NONE);
		writer.endDocument();
	}

	void hashTables(FastInfosetWriter& writer)
	{
		writer.startDocument();
		writer.startElement(NONE, "h", NONE, AttributesImpl());
		writer.characters("hash");
		writer.endElement(NONE, "h", NONE);
		writer.endDocument();
	}
}


std::vector<SampleDocument> sampleDocuments()
{
	// Documents of our own parser tests, for the forms the writer never uses.
	const std::string root = "3C 03 72 6F 6F 74";
	return {
		{"elements", written(plainElements)},
		{"namespaces", written(namespaces)},
		{"typed", written(typedValues)},
		{"lexical", written(lexicalItems)},
		{"vocabulary", written(initialVocabulary)},
		{"long", written(longStrings)},
		{"large", written(beyondOneBuffer)},
		{"hash", written(hashTables, DocumentVocabulary::VOC_HASH)},
		{"strings", octetsOfHex("E0 00 00 01 00" + root + "91 68 69 A0 86 01 00 68 00 69 88 01 12 3F 88 06 00 12 B3 0F"
			"8C 0E 05 00 00 00 01 FF FF FF FF 8C 14 1A 8C 22 0D 6B A7 B8 10 9D AD 11 D1 80 B4 00 C0 4F D4 30 C8"
			"8C 06 00 01 02 03 8C 26 00 78 3C 79 FF")},
		{"declarations", octetsOfHex("E0 00 00 01 18 C2 02 70 6E 67 08 69 6D 61 67 65 2F 70 6E 67 F0 D1 03 6C 6F 67 6F 07 6C 6F 67 6F 2E 70 6E 67 FF 02 70 6E 67 F0"
			"C6 07 6E 6F 74 65 2E 64 74 64 E1 01 70 69 00 78 F0 E2 42 68 65 79 3C 03 72 6F 6F 74 CA 02 65 6E 74 04 65 2E 78 6D 6C E2 80 FF")},
		{"alphabet", octetsOfHex("E0 00 00 01 20 08 00 00 02 61 62 63" + root + "88 3C 87 FF")},
		{"additional", octetsOfHex("E0 00 00 01 40 01 02 61 62 63 01 78 79 00 7A 00 7A" + root + "FF")},
	};
}


const std::string& referenceDocument()
{
	static const std::string document = written([](FastInfosetWriter& writer)
	{
		writer.startDocument();
		writer.comment("before", 0, 6);
		writer.startPrefixMapping("p", "urn:p");
		AttributesImpl attributes;
		attributes.addAttribute("urn:p", "id", "p:id", "CDATA", "42");
		writer.startElement("urn:p", "root", "p:root", attributes);
		writer.characters("text");
		writer.encodedData(7);
		writer.startCDATA();
		writer.characters("cdata");
		writer.endCDATA();
		writer.processingInstruction("pi", "data");
		writer.endElement("urn:p", "root", "p:root");
		writer.endPrefixMapping("p");
		writer.endDocument();
	});
	return document;
}


std::string octetsOfHex(const std::string& hex)
{
	std::string octets;
	int digits = 0;
	int value = 0;
	for (char c: hex)
	{
		if (!std::isxdigit(static_cast<unsigned char>(c))) continue;
		value = 16*value + (std::isdigit(static_cast<unsigned char>(c)) ? c - '0' : std::toupper(static_cast<unsigned char>(c)) - 'A' + 10);
		if (++digits == 2)
		{
			octets += static_cast<char>(value);
			digits = 0;
			value = 0;
		}
	}
	return octets;
}


} } } // namespace Korvo::FastInfoset::Fuzz
