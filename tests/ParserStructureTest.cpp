//
// ParserStructureTest.cpp
//
// Elements, attributes, namespace declarations and qualified names read
// from documents built octet by octet.
//

#include "support/ParserTestSupport.h"
#include "Korvo/FastInfoset/FISException.h"
#include <gtest/gtest.h>
#include <sstream>

using namespace Korvo::FastInfoset;
using namespace Korvo::FastInfoset::Test;


namespace
{
	struct DocumentCase
	{
		const char* name;
		std::string hex;
		std::vector<std::string> events;
	};

	// <root> as a literal qualified name: 0 0 1111 00, local name "root" (literal).
	const std::string ROOT = "3C 03 72 6F 6F 74";
}


TEST(ParserStructureTest, DocumentsBuiltOctetByOctet)
{
	const DocumentCase cases[] =
	{
		// <root/>; element end and document end share the octet FF.
		{"empty root", FIS_HEADER + ROOT + "FF",
			documentEvents({"startElement(|root|)", "endElement(|root|)"})},
		// <root><a/><a/></root>: "a" literal first (element 2), then as index 2 from the third bit (01).
		{"indexed element name", FIS_HEADER + ROOT + "3C 00 61 F0 01 FF F0",
			documentEvents({"startElement(|root|)", "startElement(|a|)", "endElement(|a|)", "startElement(|a|)", "endElement(|a|)", "endElement(|root|)"})},
		// <root><a id="42"/><a id="42"/></root>: literal attribute name and value, then
		// element index 2 with attributes (41), attribute name index 1 from the second bit (00), value index 1 (80).
		{"attributes literal and indexed", FIS_HEADER + ROOT + "7C 00 61 78 01 69 64 41 34 32 FF 41 00 80 FF FF",
			documentEvents({"startElement(|root|)", "startElement(|a||attr(|id|||42))", "endElement(|a|)",
				"startElement(|a||attr(|id|||42))", "endElement(|a|)", "endElement(|root|)"})},
		// <p:e xmlns:p="urn:x"/>: namespace attribute 110011 11, literal prefix and name, F0, then
		// the qualified name from the third bit with prefix index 2 and namespace index 2.
		{"namespace declaration", FIS_HEADER + "38 CF 00 70 04 75 72 6E 3A 78 F0 3F 81 81 00 65 FF",
			documentEvents({"startPrefixMapping(p|urn:x)", "startElement(urn:x|e|p:e)", "endElement(urn:x|e|p:e)", "endPrefixMapping(p)"})},
		// The same with 1000 instead of 1100 before the presence bits: still a namespace attribute.
		{"lenient namespace attribute", FIS_HEADER + "38 8F 00 70 04 75 72 6E 3A 78 F0 3F 81 81 00 65 FF",
			documentEvents({"startPrefixMapping(p|urn:x)", "startElement(urn:x|e|p:e)", "endElement(urn:x|e|p:e)", "endPrefixMapping(p)"})},
		// <p:e xmlns:p="urn:x"><q:e xmlns:q="urn:y"/></p:e>: the outer element's endPrefixMapping
		// reports the inner element's declaration (one shared list).
		{"shared namespace attribute list", FIS_HEADER + "38 CF 00 70 04 75 72 6E 3A 78 F0 3F 81 81 00 65"
			"38 CF 00 71 04 75 72 6E 3A 79 F0 3F 82 82 80 FF F0",
			documentEvents({"startPrefixMapping(p|urn:x)", "startElement(urn:x|e|p:e)",
				"startPrefixMapping(q|urn:y)", "startElement(urn:y|e|q:e)", "endElement(urn:y|e|q:e)", "endPrefixMapping(q)",
				"endElement(urn:x|e|p:e)", "endPrefixMapping(q)"})},
		// <p:e xmlns:p="urn:x"><e/></p:e>: the child declares nothing, so the parent reports nothing.
		{"child without declarations", FIS_HEADER + "38 CF 00 70 04 75 72 6E 3A 78 F0 3F 81 81 00 65 3C 80 FF F0",
			documentEvents({"startPrefixMapping(p|urn:x)", "startElement(urn:x|e|p:e)", "startElement(|e|)", "endElement(|e|)",
				"endElement(urn:x|e|p:e)"})},
		// Text and an unexpanded entity reference at document level, before the root: one dispatcher for both levels.
		{"document-level children", FIS_HEADER + "91 68 69 C8 00 78" + ROOT + "FF",
			documentEvents({"characters(hi)", "startElement(|root|)", "endElement(|root|)"})},
	};
	for (const auto& c: cases)
	{
		SCOPED_TRACE(c.name);
		EXPECT_EQ(c.events, parseHex(c.hex));
	}
}


TEST(ParserStructureTest, NamesAndValuesAreEnteredInTheTables)
{
	FastInfosetParser parser;
	parseToEvents(bytesOf(FIS_HEADER + ROOT + "7C 00 61 78 01 69 64 41 34 32 FF FF"), TYPED_HANDLER, &parser);
	const DocumentVocabulary& voc = parser.vocabulary();
	EXPECT_EQ(4u, voc.vocabulary(DocumentVocabulary::LOCAL_NAME)->size());   // placeholder, root, a, id
	EXPECT_EQ("id", voc.vocabulary(DocumentVocabulary::LOCAL_NAME)->value(3));
	EXPECT_EQ(3u, voc.elementVocabulary()->size());
	EXPECT_EQ(2u, voc.attributeVocabulary()->size());
	EXPECT_EQ(QualifiedNameEntry(0, 0, 3), voc.attributeVocabulary()->value(1));
	EXPECT_EQ("42", voc.vocabulary(DocumentVocabulary::ATTRIBUTE_VALUE)->value(1));
}


TEST(ParserStructureTest, LargeIndicesAtBothNamePositions)
{
	// <e a1="v" ... a70="v"/> with literal attribute names, then <x1/> ... <x40/>, then
	// <x39 a66="v"/> by index: element 40 needs the 100 form from the third bit,
	// attribute 66 the 10 form from the second bit.
	auto literalName = [](const std::string& name) { return std::string(1, static_cast<char>(name.size() - 1)) + name; };
	std::string doc = bytesOf(FIS_HEADER + "7C 00 65");
	for (int k = 1; k <= 70; ++k)
	{
		doc += bytesOf("78") + literalName("a" + std::to_string(k));
		doc += bytesOf(k == 1 ? "40 76" : "80");       // value "v" literal and added, then index 1
	}
	doc += bytesOf("FF");
	for (int k = 1; k <= 40; ++k)
	{
		doc += bytesOf("3C") + literalName("x" + std::to_string(k)) + bytesOf("F0");
	}
	doc += bytesOf("60 07");    // 0 1 100 + 11 bits (40 - 33): element 40 with attributes
	doc += bytesOf("40 01");    // 0 10 + 13 bits (66 - 65): attribute 66
	doc += bytesOf("80 FF F0"); // value index 1; attribute end, element end; document end

	std::vector<std::string> events = parseToEvents(doc);
	ASSERT_EQ(2u + 2*42, events.size());
	EXPECT_EQ("startElement(|x39||attr(|a66|||v))", events[events.size() - 3]);
	EXPECT_EQ("endElement(|x39|)", events[events.size() - 2]);
}


TEST(ParserStructureTest, NamespacePrefixesFeature)
{
	const std::string doc = bytesOf(FIS_HEADER + "38 CF 00 70 04 75 72 6E 3A 78 F0 3F 81 81 00 65 FF");
	FastInfosetParser parser;
	parser.setFeature(Korvo::XML::XMLReader::FEATURE_NAMESPACE_PREFIXES, false);
	std::vector<std::string> events = parseToEvents(doc, TYPED_HANDLER, &parser);
	EXPECT_EQ("startElement(urn:x|e|)", events[2]);
	EXPECT_EQ("endElement(urn:x|e|)", events[3]);
}


TEST(ParserStructureTest, DeepNestingNeedsNoMachineStack)
{
	const int depth = 1000000;
	std::string doc = bytesOf(FIS_HEADER + "3C 00 61");     // <a> literal
	doc.append(depth - 1, '\0');                         // <a> as element index 1, 999,999 times
	doc.append(depth/2, '\xFF');                         // two terminators per octet
	doc += bytesOf("F0");                                // document end

	struct Counter: public PlainSaxRecorder
	{
		int open = 0;
		int maxDepth = 0;
		int ends = 0;
		void startElement(const Korvo::XML::XMLString&, const Korvo::XML::XMLString&, const Korvo::XML::XMLString&, const Korvo::XML::Attributes&) override
		{
			if (++open > maxDepth) maxDepth = open;
		}
		void endElement(const Korvo::XML::XMLString&, const Korvo::XML::XMLString&, const Korvo::XML::XMLString&) override
		{
			--open;
			++ends;
		}
	} counter;
	FastInfosetParser parser;
	parser.setContentHandler(&counter);
	parser.parseMemoryNP(doc.data(), doc.size());
	EXPECT_EQ(depth, counter.maxDepth);
	EXPECT_EQ(depth, counter.ends);
	EXPECT_EQ(0, counter.open);
}
