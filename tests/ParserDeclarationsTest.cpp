//
// ParserDeclarationsTest.cpp
//
// Notations, unparsed entities, document type declarations, processing
// instructions, comments, unexpanded entity references and the optional
// parts of the document header.
//

#include "support/ParserTestSupport.h"
#include "Korvo/FastInfoset/FISDocumentHandler.h"
#include "Korvo/FastInfoset/FISException.h"
#include <gtest/gtest.h>

using namespace Korvo::FastInfoset;
using namespace Korvo::FastInfoset::Test;


namespace
{
	// <root/> as a literal qualified name, element end and document end in FF.
	const std::string ROOT_DOCUMENT = "3C 03 72 6F 6F 74 FF";

	const std::vector<std::string> ROOT_EVENTS = {"startDocument()", "startElement(|root|)", "endElement(|root|)", "endDocument()"};

	std::vector<std::string> concat(std::vector<std::string> first, const std::vector<std::string>& second)
	{
		first.insert(first.end(), second.begin(), second.end());
		return first;
	}

	struct DocumentHandlerLog: public FISDocumentHandler
	{
		std::vector<std::string> calls;
		DocumentVocabulary voc;

		void setDocumentVocabulary(const DocumentVocabulary& v) override
		{
			calls.push_back("setDocumentVocabulary");
			voc = v;
		}
		DocumentVocabulary& getDocumentVocabulary() override { return voc; }
		const DocumentVocabulary& getDocumentVocabulary() const override { return voc; }
		void setWriteXMLDeclaration(bool val) override
		{
			calls.push_back(val ? "setWriteXMLDeclaration(true)" : "setWriteXMLDeclaration(false)");
		}
		void setExternalVocabulary(const Korvo::XML::XMLString& uri, const DocumentVocabulary&) override
		{
			calls.push_back("setExternalVocabulary(" + uri + ")");
		}
	};
}


TEST(ParserDeclarationsTest, DeclarationsAndItems)
{
	const struct
	{
		const char* name;
		std::string hex;
		std::vector<std::string> events;
	}
	cases[] =
	{
		// Notations (header flag 10): png with a system identifier, gif with a public one,
		// png again by index with neither; list end F0.
		{"notations", "E0 00 00 01 10 C2 02 70 6E 67 08 69 6D 61 67 65 2F 70 6E 67 C1 02 67 69 66 02 70 75 62 C0 80 F0" + ROOT_DOCUMENT,
			concat({"notationDecl(png|<null>|image/png)", "notationDecl(gif|pub|<null>)", "notationDecl(png|<null>|<null>)"}, ROOT_EVENTS)},
		// Unparsed entities (header flag 08): logo with the public bit set but index 0 (empty),
		// pic without a public identifier, x with public identifier "pub"; list end F0.
		{"unparsed entities", "E0 00 00 01 08 D1 03 6C 6F 67 6F 07 6C 6F 67 6F 2E 70 6E 67 FF 02 70 6E 67"
			"D0 02 70 69 63 80 81 D1 00 78 80 02 70 75 62 81 F0" + ROOT_DOCUMENT,
			concat({"unparsedEntityDecl(logo|<null>|logo.png|png)", "unparsedEntityDecl(pic|<null>|logo.png|png)",
				"unparsedEntityDecl(x|pub|logo.png|png)"}, ROOT_EVENTS)},
		// Both lists (flags 18): notation "n", then entity "e" with system "s" and notation "n" by index.
		{"both lists", "E0 00 00 01 18 C0 00 6E F0 D0 00 65 00 73 80 F0" + ROOT_DOCUMENT,
			concat({"notationDecl(n|<null>|<null>)", "unparsedEntityDecl(e|<null>|s|n)"}, ROOT_EVENTS)},
		// Character encoding scheme "UTF-8", standalone, version "1.0" (flags 07): read, no events.
		{"encoding, standalone, version", "E0 00 00 01 07 04 55 54 46 2D 38 01 02 31 2E 30" + ROOT_DOCUMENT, ROOT_EVENTS},
		// XML declaration with extra pseudo-attributes before the identification.
		{"xml declaration", "3C 3F 78 6D 6C 20 76 65 72 73 69 6F 6E 3D 27 31 2E 30 27 20 73 74 61 6E 64 61 6C 6F 6E 65 3D 27 6E 6F 27 3F 3E"
			+ FIS_HEADER + ROOT_DOCUMENT, ROOT_EVENTS},
		// Document type declaration with system identifier note.dtd and one processing instruction.
		{"document type declaration", FIS_HEADER + "C6 07 6E 6F 74 65 2E 64 74 64 E1 01 70 69 00 78 F0" + ROOT_DOCUMENT,
			concat({"startDocument()", "startDTD(||note.dtd)", "processingInstruction(pi|x)", "endDTD()"},
				std::vector<std::string>(ROOT_EVENTS.begin() + 1, ROOT_EVENTS.end()))},
		// Document type declaration with system and public identifier, no processing instruction.
		{"doctype with public identifier", FIS_HEADER + "C7 00 73 00 70 F0" + ROOT_DOCUMENT,
			concat({"startDocument()", "startDTD(|p|s)", "endDTD()"}, std::vector<std::string>(ROOT_EVENTS.begin() + 1, ROOT_EVENTS.end()))},
		// A document type declaration inside an element; its 1111 and the element end share FF.
		{"doctype inside an element", FIS_HEADER + "3C 03 72 6F 6F 74 C4 FF F0",
			documentEvents({"startElement(|root|)", "startDTD(||)", "endDTD()", "endElement(|root|)"})},
		// Processing instruction pi "x", comment "hey" (added), the same comment by index.
		{"processing instruction and comments", FIS_HEADER + "E1 01 70 69 00 78 E2 42 68 65 79 E2 80" + ROOT_DOCUMENT,
			concat({"startDocument()", "processingInstruction(pi|x)", "comment(hey)", "comment(hey)"},
				std::vector<std::string>(ROOT_EVENTS.begin() + 1, ROOT_EVENTS.end()))},
		// Comments inside an element: "hey" added, by index, "no" not added, "hi" in UTF-16.
		{"comments inside an element", FIS_HEADER + "3C 03 72 6F 6F 74 E2 42 68 65 79 E2 80 E2 01 6E 6F E2 13 00 68 00 69 FF",
			documentEvents({"startElement(|root|)", "comment(hey)", "comment(hey)", "comment(no)", "comment(hi)", "endElement(|root|)"})},
		// Unexpanded entity reference "ent" with system identifier "e.xml": no event.
		{"unexpanded entity reference", FIS_HEADER + "3C 03 72 6F 6F 74 CA 02 65 6E 74 04 65 2E 78 6D 6C FF", ROOT_EVENTS},
	};
	for (const auto& c: cases)
	{
		SCOPED_TRACE(c.name);
		EXPECT_EQ(c.events, parseHex(c.hex));
	}
}


TEST(ParserDeclarationsTest, UnreportedItemsStillFillTheTables)
{
	FastInfosetParser parser;
	// No lexical handler: the comment is read and dropped, but entered in OTHER_STRING.
	SaxRecorder recorder;
	parser.setContentHandler(&recorder);
	const std::string doc = bytesOf(FIS_HEADER + "E2 42 68 65 79 3C 03 72 6F 6F 74 CA 02 65 6E 74 04 65 2E 78 6D 6C FF");
	parser.parseMemoryNP(doc.data(), doc.size());
	EXPECT_EQ(ROOT_EVENTS, recorder.events());
	const DocumentVocabulary& voc = parser.vocabulary();
	EXPECT_EQ("hey", voc.value(DocumentVocabulary::OTHER_STRING, 1));
	EXPECT_EQ("ent", voc.value(DocumentVocabulary::OTHER_NCNAME, 1));
	EXPECT_EQ("e.xml", voc.value(DocumentVocabulary::OTHER_URI, 1));
}


TEST(ParserDeclarationsTest, DocumentHandlerLearnsTheHeader)
{
	const struct
	{
		std::string hex;
		const char* declarationCall;
	}
	cases[] =
	{
		{"3C 3F 78 6D 6C 20 65 6E 63 6F 64 69 6E 67 3D 27 66 69 6E 66 27 3F 3E" + FIS_HEADER + ROOT_DOCUMENT, "setWriteXMLDeclaration(true)"},
		{FIS_HEADER + ROOT_DOCUMENT, "setWriteXMLDeclaration(false)"},
	};
	for (const auto& c: cases)
	{
		FastInfosetParser parser;
		DocumentHandlerLog handler;
		parser.setDocumentHandler(&handler);
		const std::string doc = bytesOf(c.hex);
		parser.parseMemoryNP(doc.data(), doc.size());
		EXPECT_EQ(eventList({c.declarationCall, "setDocumentVocabulary"}), handler.calls);
		EXPECT_EQ(1u, handler.voc.vocabulary(DocumentVocabulary::LOCAL_NAME)->size());   // as the header left it
	}
}


TEST(ParserDeclarationsTest, BadListEndsAreAssertions)
{
	const struct
	{
		const char* name;
		std::string hex;
		const char* condition;
	}
	cases[] =
	{
		// Notation list followed by 100000 instead of 111100.
		{"notation list", "E0 00 00 01 10 C0 00 61 80" + ROOT_DOCUMENT, "id == 60"},
		// Unparsed-entity list followed by 1000000 instead of 1111000.
		{"unparsed-entity list", "E0 00 00 01 08 D0 00 61 00 62 00 63 80" + ROOT_DOCUMENT, "id == 120"},
		// Document type declaration followed by 0101 instead of 1110 or 1111.
		{"document type declaration", FIS_HEADER + "C4 50" + ROOT_DOCUMENT, "stat == 0x0f"},
	};
	for (const auto& c: cases)
	{
		SCOPED_TRACE(c.name);
		try
		{
			parseHex(c.hex);
			FAIL() << "accepted";
		}
		catch (const Korvo::AssertionViolationException& exc)
		{
			EXPECT_EQ(0u, exc.message().find(c.condition)) << exc.message();
		}
	}
}
