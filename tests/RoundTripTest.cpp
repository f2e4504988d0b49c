//
// RoundTripTest.cpp
//
// Writer to parser: the events that drove a FastInfosetWriter come back
// from the parser; parser to writer: a parsed document re-encodes to the
// same octets; documents of an independent implementation read to the end
// (their content is compared with the XML beside them by PeerDocumentsTest).
//

#include "support/ParserTestSupport.h"
#include "support/ConversionTesting.h"
#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include "Korvo/FastInfoset/FISException.h"
#include "Poco/DirectoryIterator.h"
#include "Poco/Path.h"
#include "Poco/UUID.h"
#include <gtest/gtest.h>
#include <fstream>
#include <functional>
#include <sstream>

using namespace Korvo::FastInfoset;
using namespace Korvo::FastInfoset::Test;
using Korvo::XML::XMLString;
using Korvo::XML::AttributesImpl;


namespace
{
	using Script = std::function<void(FastInfosetWriter&)>;

	std::string write(const Script& script, bool xmlDeclaration = false)
	{
		std::ostringstream ostr;
		FastInfosetWriter writer(ostr, xmlDeclaration, DocumentVocabulary::VOC_HASH);
		script(writer);
		return ostr.str();
	}

	AttributesImpl attributes(std::initializer_list<std::pair<const char*, const char*>> localNamesAndValues, const char* uri = "")
	{
		AttributesImpl attrs;
		for (const auto& a: localNamesAndValues) attrs.addAttribute(uri, a.first, "", "CDATA", a.second);
		return attrs;
	}

	const AttributesImpl NO_ATTRIBUTES;

	struct RoundTripCase
	{
		const char* name;
		Script script;
		std::vector<std::string> typed;
		std::vector<std::string> plain;   // empty: as typed
	};
}


TEST(ParserRoundTripTest, WriterEventsComeBack)
{
	const Korvo::UUID uuid("6ba7b810-9dad-11d1-80b4-00c04fd430c8");
	const RoundTripCase cases[] =
	{
		{"elements, attributes, text",
			[](FastInfosetWriter& w)
			{
				w.startDocument();
				w.startElement("", "root", "", NO_ATTRIBUTES);
				w.characters("hello");
				for (int i = 0; i < 2; ++i)
				{
					w.startElement("", "item", "item", attributes({{"id", "1"}, {"kind", "a value longer than sixteen octets"}}));
					w.characters("hello");
					w.endElement("", "item", "item");
				}
				w.endElement("", "root", "");
				w.endDocument();
			},
			documentEvents({"startElement(|root|)", "characters(hello)",
				"startElement(|item||attr(|id|||1)|attr(|kind|||a value longer than sixteen octets))", "characters(hello)", "endElement(|item|)",
				"startElement(|item||attr(|id|||1)|attr(|kind|||a value longer than sixteen octets))", "characters(hello)", "endElement(|item|)",
				"endElement(|root|)"}), {}},
		{"namespaces",
			[](FastInfosetWriter& w)
			{
				w.startDocument();
				w.startPrefixMapping("p", "urn:p");
				w.startPrefixMapping("", "urn:d");
				AttributesImpl attrs;
				attrs.addAttribute("urn:p", "a", "p:a", "CDATA", "1");
				w.startElement("urn:p", "e", "p:e", attrs);
				w.startElement("urn:g", "f", "", NO_ATTRIBUTES);    // no prefix yet: the writer declares ns1
				w.endElement("urn:g", "f", "");
				w.endElement("urn:p", "e", "p:e");
				w.endPrefixMapping("p");
				w.endPrefixMapping("");
				w.endDocument();
			},
			documentEvents({"startPrefixMapping(|urn:d)", "startPrefixMapping(p|urn:p)", "startElement(urn:p|e|p:e|attr(urn:p|a|||1))",
				"startPrefixMapping(ns1|urn:g)", "startElement(urn:g|f|ns1:f)", "endElement(urn:g|f|ns1:f)", "endPrefixMapping(ns1)",
				"endElement(urn:p|e|p:e)", "endPrefixMapping(ns1)"}), {}},   // one shared list: the child's declarations
		{"cdata, comments, processing instructions, doctype",
			[](FastInfosetWriter& w)
			{
				w.startDocument();
				w.startDTD("root", "-//pub", "root.dtd");
				w.endDTD();
				w.comment("note", 0, 4);
				w.processingInstruction("target", "some data");
				w.startElement("", "root", "", NO_ATTRIBUTES);
				w.startCDATA();
				w.characters("a<b");
				w.endCDATA();
				w.comment("note", 0, 4);
				w.endElement("", "root", "");
				w.endDocument();
			},
			documentEvents({"startDTD(|-//pub|root.dtd)", "endDTD()", "comment(note)", "processingInstruction(target|some data)",
				"startElement(|root|)", "startCDATA()", "characters(a<b)", "endCDATA()", "comment(note)", "endElement(|root|)"}), {}},
		{"typed values",
			[&uuid](FastInfosetWriter& w)
			{
				w.startDocument();
				w.startElement("", "root", "", NO_ATTRIBUTES);
				w.encodedData(1);
				w.encodedData(-2);
				w.encodedData(1.5f);
				w.encodedData(static_cast<short>(7));
				w.encodedData(static_cast<long long>(-9000000000LL));
				w.encodedData(true);
				w.encodedData(false);
				w.encodedData(0.25);
				w.encodedData(uuid);
				w.binaryData("\x01\x02\xFF", 3);
				w.endElement("", "root", "");
				w.endDocument();
			},
			documentEvents({"startElement(|root|)", "encodedData(int:1)", "encodedData(int:-2)", "encodedData(float:1.5)", "encodedData(short:7)",
				"encodedData(long:-9000000000)", "encodedData(bool:true)", "encodedData(bool:false)", "encodedData(double:0.25)",
				"encodedData(uuid:6ba7b810-9dad-11d1-80b4-00c04fd430c8)", "binaryData(0102ff)", "endElement(|root|)"}),
			documentEvents({"startElement(|root|)", "characters(1 -2)", "characters(1.5)", "characters(7)", "characters(-9000000000)",
				"characters(true false)", "characters(0.25)", "characters(6ba7b810-9dad-11d1-80b4-00c04fd430c8)", "characters(AQL/)",
				"endElement(|root|)"})},
		{"notations and unparsed entities",
			[](FastInfosetWriter& w)
			{
				const XMLString pub("-//pub"), sys("image.png");
				w.notationDecl("png", 0, &sys);
				w.notationDecl("gif", &pub, 0);
				w.unparsedEntityDecl("logo", 0, "logo.png", "png");
				w.unparsedEntityDecl("icon", &pub, "icon.gif", "gif");
				w.startDocument();
				w.startElement("", "root", "", NO_ATTRIBUTES);
				w.endElement("", "root", "");
				w.endDocument();
			},
			{"notationDecl(png|<null>|image.png)", "notationDecl(gif|-//pub|<null>)", "unparsedEntityDecl(logo|<null>|logo.png|png)",
				"unparsedEntityDecl(icon|-//pub|icon.gif|gif)", "startDocument()", "startElement(|root|)", "endElement(|root|)", "endDocument()"}, {}},
	};
	for (const auto& c: cases)
	{
		SCOPED_TRACE(c.name);
		const std::string fis = write(c.script);
		EXPECT_EQ(c.typed, parseToEvents(fis, TYPED_HANDLER)) << hexOf(fis);
		EXPECT_EQ(c.plain.empty() ? c.typed : c.plain, parseToEvents(fis, PLAIN_HANDLER));
	}
}


TEST(ParserRoundTripTest, BothSidesNumberTheTablesAlike)
{
	// A parser that feeds a writer re-encodes a document to the same octets only
	// if both number every name and string alike.
	const std::string original = write([](FastInfosetWriter& w)
	{
		w.startDocument();
		w.comment("c", 0, 1);
		w.startPrefixMapping("p", "urn:p");
		w.startElement("urn:p", "root", "p:root", attributes({{"a", "x"}}));
		for (int i = 0; i < 3; ++i)
		{
			w.startElement("", "row", "", attributes({{"n", i == 1 ? "1" : "0"}, {"long", "a value longer than sixteen octets"}}));
			w.characters(i == 2 ? "other text" : "text");
			w.encodedData(i);
			w.startCDATA();
			w.characters("cdata");
			w.endCDATA();
			w.processingInstruction("pi", "data");
			w.endElement("", "row", "");
		}
		w.endElement("urn:p", "root", "p:root");
		w.endPrefixMapping("p");
		w.endDocument();
	}, true);

	std::ostringstream copy;
	FastInfosetWriter writer(copy);
	FastInfosetParser parser;
	parser.initialize(&writer);
	parser.parseMemoryNP(original.data(), original.size());
	EXPECT_EQ(hexOf(original), hexOf(copy.str()));
}


TEST(ParserRoundTripTest, DeclarationsEndWithTheirElement)
{
	// The parser ends the prefixes of the element that began last, none at
	// </p:i> here: the writer must drop xmlns='urn:d' there all the same.
	const std::string original = Tests::toFIS("<p:r xmlns:p='urn:p'><p:i xmlns='urn:d'>xx<j/></p:i><i>yy</i></p:r>");
	std::ostringstream copy;
	FastInfosetWriter writer(copy);
	FastInfosetParser parser;
	parser.initialize(&writer);
	parser.parseMemoryNP(original.data(), original.size());
	EXPECT_EQ(hexOf(original), hexOf(copy.str()));
}


TEST(ParserRoundTripTest, SecondDocumentOnTheSameParser)
{
	const std::string first = write([](FastInfosetWriter& w)
	{
		w.startDocument();
		w.startElement("", "a", "", NO_ATTRIBUTES);
		w.startElement("", "b", "", NO_ATTRIBUTES);
		w.endElement("", "b", "");
		w.endElement("", "a", "");
		w.endDocument();
	});
	const std::string second = write([](FastInfosetWriter& w)
	{
		w.startDocument();
		w.startElement("", "b", "", NO_ATTRIBUTES);
		w.endElement("", "b", "");
		w.endDocument();
	});
	FastInfosetParser parser;
	parseToEvents(first, TYPED_HANDLER, &parser);
	EXPECT_EQ(documentEvents({"startElement(|b|)", "endElement(|b|)"}), parseToEvents(second, TYPED_HANDLER, &parser));
	EXPECT_EQ(2u, parser.vocabulary().elementVocabulary()->size());
}


TEST(ParserRoundTripTest, AttributeListsFollowEachElement)
{
	// Elements of one name with more, fewer, other and no attributes, and
	// other elements between them: each startElement sees exactly its own.
	using Attributes = std::vector<std::pair<const char*, const char*>>;
	const std::vector<std::pair<const char*, Attributes>> elements =
	{
		{"e", {{"a", "1"}, {"b", "2"}}},
		{"e", {{"b", "3"}}},
		{"e", {{"a", "4"}, {"b", "5"}, {"c", "6"}}},
		{"e", {}},
		{"f", {{"a", "7"}}},
		{"e", {{"c", "8"}, {"a", "9"}}},
		{"e", {{"a", "1"}, {"b", "2"}}},
	};
	const std::string doc = write([&elements](FastInfosetWriter& w)
	{
		w.startDocument();
		w.startElement("", "r", "", NO_ATTRIBUTES);
		for (const auto& element: elements)
		{
			AttributesImpl attrs;
			for (const auto& a: element.second) attrs.addAttribute("", a.first, "", "CDATA", a.second);
			w.startElement("", element.first, "", attrs);
			w.endElement("", element.first, "");
		}
		w.endElement("", "r", "");
		w.endDocument();
	});
	EXPECT_EQ(documentEvents({"startElement(|r|)",
		"startElement(|e||attr(|a|||1)|attr(|b|||2))", "endElement(|e|)",
		"startElement(|e||attr(|b|||3))", "endElement(|e|)",
		"startElement(|e||attr(|a|||4)|attr(|b|||5)|attr(|c|||6))", "endElement(|e|)",
		"startElement(|e|)", "endElement(|e|)",
		"startElement(|f||attr(|a|||7))", "endElement(|f|)",
		"startElement(|e||attr(|c|||8)|attr(|a|||9))", "endElement(|e|)",
		"startElement(|e||attr(|a|||1)|attr(|b|||2))", "endElement(|e|)",
		"endElement(|r|)"}), parseToEvents(doc));
}


TEST(ParserRoundTripTest, AttributeNamesOfAnEarlierDocumentAreNotReused)
{
	// The same element and attribute indices name other strings in the
	// second document, whose tables may reuse the first one's memory.
	auto document = [](const char* attributeName)
	{
		return write([attributeName](FastInfosetWriter& w)
		{
			w.startDocument();
			w.startElement("", "e", "", attributes({{attributeName, "v"}}));
			w.endElement("", "e", "");
			w.endDocument();
		});
	};
	FastInfosetParser parser;
	EXPECT_EQ(documentEvents({"startElement(|e||attr(|x|||v))", "endElement(|e|)"}), parseToEvents(document("x"), TYPED_HANDLER, &parser));
	EXPECT_EQ(documentEvents({"startElement(|e||attr(|y|||v))", "endElement(|e|)"}), parseToEvents(document("y"), TYPED_HANDLER, &parser));
	EXPECT_EQ(documentEvents({"startElement(|e||attr(|x|||v))", "endElement(|e|)"}), parseToEvents(document("x"), TYPED_HANDLER, &parser));
}


TEST(ParserRoundTripTest, PeerDocumentsReadCompletely)
{
	if (!Korvo::File(KORVO_PEER_FIXTURES).exists()) GTEST_SKIP() << "no peer documents at " << KORVO_PEER_FIXTURES;
	int documents = 0;
	for (Korvo::DirectoryIterator it(std::string(KORVO_PEER_FIXTURES)), end; it != end; ++it)
	{
		Korvo::Path path(it.path());
		if (path.getExtension() != "fi") continue;
		SCOPED_TRACE(path.getFileName());
		++documents;
		const std::string fis = readFileOctets(path.toString());

		// Into a typed and into a plain handler, to the end.
		std::vector<std::string> typed, plain;
		ASSERT_NO_THROW(typed = parseToEvents(fis, TYPED_HANDLER));
		ASSERT_NO_THROW(plain = parseToEvents(fis, PLAIN_HANDLER));
		EXPECT_EQ("endDocument()", typed.back());
		EXPECT_EQ("endDocument()", plain.back());
	}
	EXPECT_GE(documents, 6);
}
