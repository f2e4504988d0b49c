//
// WriterStructureTest.cpp
//
// FastInfosetWriter: document and element framing, names, attributes,
// namespace declarations, misnested calls and failing streams.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//

#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include "Korvo/FastInfoset/FISException.h"
#include "support/ExceptionMatchers.h"
#include "support/WriterTesting.h"
#include <gtest/gtest.h>
#include <functional>
#include <memory>
#include <sstream>
#include <streambuf>
#include <thread>
#include <vector>

using namespace Korvo::FastInfoset;
using Korvo::XML::AttributesImpl;
using Korvo::XML::NamespaceSupport;
using Tests::golden;
using Tests::hex;
using Tests::HEADER;


namespace {


const AttributesImpl NO_ATTRIBUTES;


AttributesImpl attributes(const std::string& uri, const std::string& localName, const std::string& qname, const std::string& value)
{
	AttributesImpl result;
	result.addAttribute(uri, localName, qname, "CDATA", value);
	return result;
}


struct StructureCase
{
	const char* name;
	std::function<void(FastInfosetWriter&)> events;
	const char* body; // the bytes after the header
};


void PrintTo(const StructureCase& c, std::ostream* pStream)
{
	*pStream << c.name;
}


const StructureCase STRUCTURE_CASES[] = {
	// header, then one terminator padded to an octet
	{"empty document", [](FastInfosetWriter&) {}, "F0"},
	// <a/>: 0 0 1111 00, literal local name "a", element end + document end
	{"one element", [](FastInfosetWriter& w) { w.startElement("", "a", "a", NO_ATTRIBUTES); w.endElement("", "a", "a"); },
		"3C 0061 FF"},
	// <a><b/></a>: the ends of b and a fill one octet, the document's end is padded
	{"nested elements", [](FastInfosetWriter& w) {
		w.startElement("", "a", "a", NO_ATTRIBUTES);
		w.startElement("", "b", "b", NO_ATTRIBUTES);
		w.endElement("", "b", "b");
		w.endElement("", "a", "a"); },
		"3C 0061 3C 0062 FF F0"},
	// <r><a/><a/></r>: the second a is element name index 2
	{"repeated element name as index", [](FastInfosetWriter& w) {
		w.startElement("", "r", "r", NO_ATTRIBUTES);
		w.emptyElement("", "a", "a");
		w.emptyElement("", "a", "a");
		w.endElement("", "r", "r"); },
		"3C 0072 3C 0061 F0 01 FF F0"},
	// a name given only as qualified name is written as it stands
	{"qualified name only", [](FastInfosetWriter& w) { w.emptyElement("", "", "a"); }, "3C 0061 FF"},
	// <r><a x="v"/><a x="v"/></r>: a is 0 1 1111 00 a, attribute 0 1111 0 00 x, value 0 1 00 +
	// length 1, 'v', the ends of attribute list and element; then element index 2, attribute name
	// index 1, value index 1
	{"attribute name and value as indices", [](FastInfosetWriter& w) {
		w.startElement("", "r", "r", NO_ATTRIBUTES);
		w.emptyElement("", "a", "a", attributes("", "x", "x", "v"));
		w.emptyElement("", "a", "a", attributes("", "x", "x", "v"));
		w.endElement("", "r", "r"); },
		"3C 0072 7C 0061 78 0078 40 76 FF 41 00 80 FF FF"},
	// <x x="1"/>: the attribute name is new in its own table, its local name is index 1
	{"attribute named like its element", [](FastInfosetWriter& w) { w.emptyElement("", "x", "x", attributes("", "x", "x", "1")); },
		"7C 0078 78 80 40 31 FF F0"},
	// <a x=""/>: the empty value is index 0 (1 + 1111111)
	{"empty attribute value", [](FastInfosetWriter& w) { w.emptyElement("", "a", "a", attributes("", "x", "x", "")); },
		"7C 0061 78 0078 FF FF F0"},
	// <a x="01234567890123456"/>: 17 octets, not indexed: 0 0 00 + length 1000 + 8
	{"long attribute value", [](FastInfosetWriter& w) { w.emptyElement("", "a", "a", attributes("", "x", "x", "01234567890123456")); },
		"7C 0061 78 0078 08 08 3031323334353637383930313233343536 FF F0"},
	// an unmapped namespace gets prefix ns1: namespace attributes 111000, 110011 11 ns1 urn:x, 1111 000000, then name 1111 11 by indices
	{"generated prefix", [](FastInfosetWriter& w) { w.emptyElement("urn:x", "a", ""); },
		"38 CF 02 6E7331 04 75726E3A78 F0 3F 81 81 0061 FF"},
	// the next unmapped namespace gets ns2
	{"second generated prefix", [](FastInfosetWriter& w) {
		w.startElement("urn:x", "a", "", NO_ATTRIBUTES);
		w.emptyElement("urn:y", "b", "");
		w.endElement("urn:x", "a", ""); },
		"38 CF 02 6E7331 04 75726E3A78 F0 3F 81 81 0061"
		"38 CF 02 6E7332 04 75726E3A79 F0 3F 82 82 0062 FF F0"},
	// a generated prefix is never one the application declared
	{"generated prefix skips declared ones", [](FastInfosetWriter& w) {
		w.startPrefixMapping("ns1", "urn:a");
		w.emptyElement("urn:b", "x", "");
		w.endPrefixMapping("ns1"); },
		"38 CF 02 6E7331 04 75726E3A61 CF 02 6E7332 04 75726E3A62 F0 3F 82 82 0078 FF"},
	// <p:a xmlns:p="urn:p"><p:b/></p:a>: the child's prefix and namespace are indices
	{"declared prefix", [](FastInfosetWriter& w) {
		w.startPrefixMapping("p", "urn:p");
		w.startElement("urn:p", "a", "p:a", NO_ATTRIBUTES);
		w.emptyElement("urn:p", "b", "p:b");
		w.endElement("urn:p", "a", "p:a");
		w.endPrefixMapping("p"); },
		"38 CF 0070 04 75726E3A70 F0 3F 81 81 0061 3F 81 81 0062 FF F0"},
	// <r><p:x xmlns:p="urn:a"/><p:y xmlns:p="urn:b"/></r>: p, declared for x by the writer, is declared anew for y
	{"prefix redeclared for a sibling", [](FastInfosetWriter& w) {
		w.startElement("", "r", "r", NO_ATTRIBUTES);
		w.emptyElement("urn:a", "x", "p:x");
		w.startPrefixMapping("p", "urn:b");
		w.emptyElement("urn:b", "y", "p:y");
		w.endPrefixMapping("p");
		w.endElement("", "r", "r"); },
		"3C 0072 38 CF 0070 04 75726E3A61 F0 3F 81 81 0078 F0 38 CF 81 04 75726E3A62 F0 3F 81 82 0079 FF F0"},
	// <a xmlns="urn:d"/>: namespace attribute 110011 01, name 1111 01
	{"default namespace", [](FastInfosetWriter& w) {
		w.startPrefixMapping("", "urn:d");
		w.emptyElement("urn:d", "a", "a");
		w.endPrefixMapping(""); },
		"38 CD 04 75726E3A64 F0 3D 81 0061 FF"},
	// the xml prefix is never declared
	{"xml prefix mapping ignored", [](FastInfosetWriter& w) {
		w.startPrefixMapping("xml", NamespaceSupport::XML_NAMESPACE);
		w.emptyElement("", "a", "a");
		w.endPrefixMapping("xml"); },
		"3C 0061 FF"},
	// <a xmlns:p="urn:p" p:x="v"/>: attribute 0 1111 0 11 with prefix and namespace indices
	{"prefixed attribute", [](FastInfosetWriter& w) {
		w.startPrefixMapping("p", "urn:p");
		w.emptyElement("", "a", "a", attributes("urn:p", "x", "p:x", "v"));
		w.endPrefixMapping("p"); },
		"78 CF 0070 04 75726E3A70 F0 3C 0061 7B 81 81 0078 40 76 FF F0"},
	// an attribute's namespace that nobody declared is declared for its own prefix
	{"attribute namespace declared", [](FastInfosetWriter& w) { w.emptyElement("", "a", "a", attributes("urn:q", "y", "q:y", "w")); },
		"78 CF 0071 04 75726E3A71 F0 3C 0061 7B 81 81 0079 40 77 FF F0"},
	// attributes given only by qualified name use its local part
	{"attribute without local name", [](FastInfosetWriter& w) { w.emptyElement("", "a", "a", attributes("", "", "x", "v")); },
		"7C 0061 78 0078 40 76 FF F0"},
	// locator, entities and skipped entities leave no trace
	{"ignored events", [](FastInfosetWriter& w) {
		w.setDocumentLocator(nullptr);
		w.startEntity("e");
		w.skippedEntity("e");
		w.endEntity("e"); },
		"F0"},
};


class StructureTest: public ::testing::TestWithParam<StructureCase>
{
};


INSTANTIATE_TEST_SUITE_P(WriterStructureTest, StructureTest, ::testing::ValuesIn(STRUCTURE_CASES), Tests::caseName<StructureCase>);


TEST_P(StructureTest, WritesGoldenBytes)
{
	// Writers hand their working storage on: the bytes are the same while
	// another writer is open and after it left prefixes and elements open.
	auto write = [](std::ostringstream& out) {
		FastInfosetWriter writer(out);
		writer.startDocument();
		GetParam().events(writer);
		writer.endDocument();
	};
	auto leaveOpen = [](const std::function<void()>& meanwhile) {
		std::ostringstream scratch;
		FastInfosetWriter open(scratch);
		open.startDocument();
		open.startPrefixMapping("p", "urn:other");
		open.startElement("urn:other", "x", "p:x", NO_ATTRIBUTES);
		open.emptyElement("urn:y", "y", "");
		meanwhile();
	};
	std::ostringstream beside;
	std::ostringstream after;
	leaveOpen([&] { write(beside); });
	leaveOpen([] {});
	write(after);
	EXPECT_EQ(golden(HEADER) + golden(GetParam().body), hex(beside.str()));
	EXPECT_EQ(hex(beside.str()), hex(after.str()));
}


class FailingBuffer: public std::streambuf
	/// Accepts a fixed number of octets, then fails every write.
{
public:
	explicit FailingBuffer(std::size_t capacity): _capacity(capacity)
	{
	}

protected:
	int_type overflow(int_type c) override
	{
		if (traits_type::eq_int_type(c, traits_type::eof()) || _written >= _capacity) return traits_type::eof();
		++_written;
		return c;
	}

private:
	std::size_t _capacity;
	std::size_t _written = 0;
};


} // namespace


TEST(WriterStructureTest, NamesInDeclaredNamespaces)
{
	// <p:a xmlns="urn:d" xmlns:p="urn:p" p:x="v"><p:b p:x="v"/><c/><c/></p:a>: the names
	// give their prefix and namespace as indices, unless the tables find nothing.
	const struct
	{
		DocumentVocabulary::VocabularyImpl impl;
		const char* body;
	}
	cases[] =
	{
		{DocumentVocabulary::VOC_HASH, "78 CD 0475726E3A64 CF 0070 0475726E3A70 F0 3F 81 82 0061 79 82 00 78 40 76 F0"
			"7F 81 82 0062 00 80 FF 3D 81 0063 F0 02 FF F0"},
		{DocumentVocabulary::VOC_VECTOR, "78 CD 0475726E3A64 CF 0070 0475726E3A70 F0 3F 0070 0475726E3A70 0061 79 0475726E3A70 00 78 40 76 F0"
			"7F 0070 0475726E3A70 0062 00 40 76 FF 3D 0475726E3A64 0063 F0 02 FF F0"},
	};
	for (const auto& c: cases)
	{
		std::ostringstream out;
		{
			FastInfosetWriter writer(out, false, c.impl);
			const AttributesImpl prefixed = attributes("urn:p", "x", "p:x", "v");
			writer.startDocument();
			writer.startPrefixMapping("p", "urn:p");
			writer.startPrefixMapping("", "urn:d");
			writer.startElement("urn:p", "a", "p:a", prefixed);
			writer.emptyElement("urn:p", "b", "p:b", prefixed);
			writer.emptyElement("urn:d", "c", "c");
			writer.emptyElement("urn:d", "c", "c");
			writer.endElement("urn:p", "a", "p:a");
			writer.endPrefixMapping("");
			writer.endPrefixMapping("p");
			writer.endDocument();
		}
		EXPECT_EQ(golden(HEADER) + golden(c.body), hex(out.str())) << c.impl;
	}
}


TEST(WriterStructureTest, TagMismatchWhenNoNameCanBeMade)
{
	std::ostringstream out;
	FastInfosetWriter writer(out);
	writer.startDocument();
	EXPECT_THROW_MESSAGE(writer.startElement("urn:x", "", "", NO_ATTRIBUTES), FISException, "Tag mismatch");
	EXPECT_THROW_MESSAGE(writer.startElement("urn:x", "", "p:a", NO_ATTRIBUTES), FISException, "Tag mismatch: p:a");
	EXPECT_THROW_MESSAGE(writer.startElement("", "", "", NO_ATTRIBUTES), FISException, "Tag mismatch");
	// an attribute without any name
	EXPECT_ASSERTION(writer.startElement("", "a", "a", attributes("", "", "", "v")), "!localName.empty()");
}


TEST(WriterStructureTest, FragmentsAreRefused)
{
	std::ostringstream out;
	FastInfosetWriter writer(out);
	EXPECT_THROW_MESSAGE(writer.startFragment(), FISException, "startFragment() not allowed");
	EXPECT_THROW_MESSAGE(writer.endFragment(), FISException, "endFragment() not allowed");
	EXPECT_EQ("", out.str());
}


TEST(WriterStructureTest, MisnestedCallsThrow)
{
	std::ostringstream out;
	FastInfosetWriter writer(out);
	EXPECT_THROW_MESSAGE(writer.endDocument(), FISException, "endDocument() without matching startDocument()");

	// Before the header and after the end nothing is written.
	const struct
	{
		std::function<void(FastInfosetWriter&)> call;
		const char* message;
	}
	outside[] =
	{
		{[](FastInfosetWriter& w) { w.startElement("", "a", "a", NO_ATTRIBUTES); }, "startElement() not allowed outside the document"},
		{[](FastInfosetWriter& w) { w.processingInstruction("t", "d"); }, "processingInstruction() not allowed outside the document"},
		{[](FastInfosetWriter& w) { w.comment("c", 0, 1); }, "comment() not allowed outside the document"},
		{[](FastInfosetWriter& w) { w.startDTD("a", "", "s"); }, "startDTD() not allowed outside the document"},
		{[](FastInfosetWriter& w) { w.startCDATA(); }, "startCDATA() not allowed outside the document"},
	};
	std::ostringstream ended;
	FastInfosetWriter endedWriter(ended);
	endedWriter.startDocument();
	endedWriter.endDocument();
	for (const auto& c: outside)
	{
		SCOPED_TRACE(c.message);
		EXPECT_THROW_MESSAGE(c.call(writer), FISException, c.message);
		EXPECT_THROW_MESSAGE(c.call(endedWriter), FISException, c.message);
	}
	EXPECT_EQ("", out.str());
	EXPECT_EQ(golden(HEADER + "F0"), hex(ended.str()));

	std::ostringstream out2;
	FastInfosetWriter writer2(out2);
	writer2.startDocument();
	writer2.startElement("", "a", "a", NO_ATTRIBUTES);
	writer2.endElement("", "a", "a");
	// Refused before anything is written, also in the middle of an octet.
	EXPECT_THROW_MESSAGE(writer2.endDTD(), FISException, "endDTD() without matching startDTD()");
	EXPECT_THROW_MESSAGE(writer2.endElement("", "a", "a"), FISException, "endElement() without matching startElement()");
	EXPECT_THROW_MESSAGE(writer2.endCDATA(), FISException, "endCDATA() without matching startCDATA()");
	writer2.startElement("", "a", "a", NO_ATTRIBUTES);
	writer2.startCDATA();
	EXPECT_THROW_MESSAGE(writer2.endElement("", "a", "a"), FISException, "endElement() without matching startElement()");
	writer2.endCDATA();
	writer2.endElement("", "a", "a");
	writer2.endDocument();

	// The refused calls wrote nothing.
	std::ostringstream expected;
	FastInfosetWriter writer3(expected);
	writer3.startDocument();
	writer3.emptyElement("", "a", "a");
	writer3.emptyElement("", "a", "a");
	writer3.endDocument();
	EXPECT_EQ(hex(expected.str()), hex(out2.str()));
}


TEST(WriterStructureTest, OneDocumentPerWriter)
{
	std::ostringstream out;
	FastInfosetWriter writer(out);
	writer.startDocument();
	writer.endDocument();
	EXPECT_THROW_MESSAGE(writer.startDocument(), FISException, "startDocument() not allowed: a writer writes one document");
	EXPECT_EQ(golden(HEADER + "F0"), hex(out.str()));
}


TEST(WriterStructureTest, WritersOnOneThreadWriteAsOnAFreshThread)
{
	// A writer takes over storage and tables that the thread's last writer
	// left: whatever that one wrote, set or threw, the bytes are those of
	// a writer on a thread that never wrote.
	struct Case
	{
		std::function<FastInfosetWriter*(std::ostream&)> make;
		std::function<void(FastInfosetWriter&)> write;
	};
	const AttributesImpl ATTRIBUTES = [] {
		AttributesImpl a;
		a.addAttribute("", "a", "a", "CDATA", "v");
		a.addAttribute("", "b", "b", "CDATA", "");
		a.addAttribute("urn:x", "c", "x:c", "CDATA", "a value of over sixteen octets");
		return a;
	}();
	const std::string LONG_NAME(70, 'n');
	const auto document = [&](const std::string& ns, const std::string& name) {
		return [=](FastInfosetWriter& w) {
			w.startDocument();
			w.startPrefixMapping("p", ns);
			w.startElement(ns, name, "p:" + name, ATTRIBUTES);
			for (int i = 0; i < 3; ++i) w.emptyElement("", name, name, ATTRIBUTES);
			w.emptyElement(ns, "a", "p:a", ATTRIBUTES);
			w.endElement(ns, name, "p:" + name);
			w.endDocument();
		};
	};
	// Names and values the next writer finds where the last one added them,
	// in part, in another order, or not at all; and the tables looked at
	// midway.
	const auto values = [](std::vector<std::string> texts, bool look) {
		return [=](FastInfosetWriter& w) {
			w.startDocument();
			w.startElement("", "r", "r", AttributesImpl());
			for (const std::string& text: texts)
			{
				AttributesImpl a;
				a.addAttribute("", "k", "k", "CDATA", text);
				w.characters(std::string("\n  "));
				const std::string name = text.size() <= 8 ? "e" + text : "long";
				w.emptyElement("", name, name, a);
				w.characters(text);
				const FastInfosetWriter& seen = w;
				if (look && &text == &texts.front())
				{
					EXPECT_EQ(2u, seen.getDocumentVocabulary().vocabulary(DocumentVocabulary::ATTRIBUTE_VALUE)->size());
					EXPECT_EQ(3u, seen.getDocumentVocabulary().vocabulary(DocumentVocabulary::CHARACTER_CONTENT_CHUNK)->size());
				}
			}
			w.endElement("", "r", "r");
			w.endDocument();
		};
	};
	const std::vector<std::string> texts = {"a", "b", "a", "c", "sixteen octets!!", "a value of over sixteen octets"};
	const auto hash = [](std::ostream& out) { return new FastInfosetWriter(out); };
	const auto map = [](std::ostream& out) { return new FastInfosetWriter(out, false, DocumentVocabulary::VOC_MAP); };
	const Case cases[] = {
		{hash, values(texts, false)},
		{[](std::ostream& out) {
			FastInfosetWriter* pWriter = new FastInfosetWriter(out);
			pWriter->setExternalVocabulary("urn:v", DocumentVocabulary());
			return pWriter;
		}, values(texts, false)},
		{hash, values({"a", "c", "b"}, false)},
		{hash, values({"a"}, false)},
		{hash, values({"x", "a", "b"}, false)},
		{hash, values(texts, true)},
		{[](std::ostream& out) {
			FastInfosetWriter* pWriter = new FastInfosetWriter(out);
			pWriter->setMaxIndexedStringLength(-1);
			pWriter->setShortestLiterals(true);
			return pWriter;
		}, values(texts, false)},
		{map, values(texts, false)},
		{map, values({"b", "a"}, false)},
		{[](std::ostream& out) { return new FastInfosetWriter(out); }, document("urn:a", "r")},
		{[](std::ostream& out) { return new FastInfosetWriter(out, false, DocumentVocabulary::VOC_MAP); }, document("urn:b", LONG_NAME)},
		{[](std::ostream& out) {
			FastInfosetWriter* pWriter = new FastInfosetWriter(out, false, DocumentVocabulary::VOC_MAP);
			bool existed;
			pWriter->getDocumentVocabulary().index(DocumentVocabulary::LOCAL_NAME, "a", existed);
			return pWriter;
		}, document("urn:a", "a")},
		{[](std::ostream& out) { return new FastInfosetWriter(out); }, [&](FastInfosetWriter& w) {
			w.startDocument();
			w.startElement("urn:c", "r", "r", ATTRIBUTES);
			EXPECT_THROW(w.endDTD(), FISException);
		}},
	};
	std::vector<std::string> fresh;
	for (const Case& c: cases)
	{
		std::thread([&] {
			std::ostringstream out;
			std::unique_ptr<FastInfosetWriter> pWriter(c.make(out));
			c.write(*pWriter);
			pWriter.reset();
			fresh.push_back(hex(out.str()));
		}).join();
	}
	for (int pass = 0; pass < 2; ++pass)
	{
		for (std::size_t k = 0; k < fresh.size(); ++k)
		{
			const std::size_t i = pass == 0 ? k : fresh.size() - 1 - k;
			SCOPED_TRACE(i);
			std::ostringstream out;
			std::unique_ptr<FastInfosetWriter> pWriter(cases[i].make(out));
			cases[i].write(*pWriter);
			pWriter.reset();
			EXPECT_EQ(fresh[i], hex(out.str()));
		}
	}
}


TEST(WriterStructureTest, NamesOfTheLastWriterOnTheThreadWriteAsNew)
{
	// A writer replays the names the thread's last writer introduced where
	// its tables are what they were then. After any document, written twice
	// (the second time replayed), any other is written as on a fresh thread.
	using Write = std::function<void(FastInfosetWriter&)>;
	struct Case
	{
		DocumentVocabulary::VocabularyImpl impl;
		std::vector<std::string> names;
			/// Elements in document order, "-" ending one; "p:" in the urn:p namespace.
		Write prepare;
		Write inside;
			/// Called after startDocument().
	};
	const auto none = [](FastInfosetWriter&) {};
	const auto write = [](const Case& c, FastInfosetWriter& w) {
		c.prepare(w);
		w.startDocument();
		c.inside(w);
		w.startPrefixMapping("p", "urn:p");
		std::vector<std::string> open;
		for (const std::string& name: c.names)
		{
			if (name == "-")
			{
				w.endElement("", "", open.back());
				open.pop_back();
				continue;
			}
			const bool prefixed = name.compare(0, 2, "p:") == 0;
			AttributesImpl attributes;
			attributes.addAttribute("", "id", "id", "CDATA", "1");
			attributes.addAttribute("urn:q", "id", "q:id", "CDATA", "2");
			w.startElement(prefixed ? "urn:p" : "", prefixed ? name.substr(2) : name, name, attributes);
			open.push_back(name);
		}
		while (!open.empty())
		{
			w.endElement("", "", open.back());
			open.pop_back();
		}
		w.endDocument();
	};
	const std::vector<std::string> BASE = {"p:env", "head", "-", "body", "p:item", "id", "-", "-", "p:item", "-", "-", "p:tail"};
	const auto with = [&](std::size_t at, std::size_t drop, std::vector<std::string> names) {
		std::vector<std::string> result = BASE;
		result.erase(result.begin() + at, result.begin() + at + drop);
		result.insert(result.begin() + at, names.begin(), names.end());
		return result;
	};
	const Case cases[] = {
		{DocumentVocabulary::VOC_HASH, BASE, none, none},
		{DocumentVocabulary::VOC_MAP, BASE, none, none},
		{DocumentVocabulary::VOC_HASH, with(3, 1, {"Body"}), none, none},
		{DocumentVocabulary::VOC_HASH, with(0, 0, {"pre", "-"}), none, none},
		{DocumentVocabulary::VOC_HASH, with(4, 0, {"p:id", "-", std::string(70, 'n'), "-", std::string(200, 'm'), "-"}), none, none},
		{DocumentVocabulary::VOC_HASH, {"body", "head", "-", "p:env", "p:item", "-", "p:tail"}, none, none},
		{DocumentVocabulary::VOC_HASH, BASE, none, [](FastInfosetWriter& w) {
			w.startPrefixMapping("q", "urn:q");
			w.emptyElement("", "q", "q");
		}},
		{DocumentVocabulary::VOC_HASH, BASE, [](FastInfosetWriter& w) {
			w.setMaxIndexedStringLength(-1);
			w.setShortestLiterals(true);
		}, none},
		{DocumentVocabulary::VOC_MAP, BASE, none, [](FastInfosetWriter& w) {
			bool existed;
			w.getDocumentVocabulary().index(DocumentVocabulary::LOCAL_NAME, "body", existed);
		}},
		{DocumentVocabulary::VOC_HASH, BASE, none, [](FastInfosetWriter& w) {
			// The prefix table fills up, and throws, within the document.
			for (int i = 0; i < 260; ++i) w.emptyElement("urn:x" + std::to_string(i), "id", "x" + std::to_string(i) + ":id");
		}},
		{DocumentVocabulary::VOC_HASH, {"p:env", "head", ""}, none, none},
	};
	const auto run = [&](const Case& c) {
		std::ostringstream out;
		FastInfosetWriter writer(out, false, c.impl);
		try
		{
			write(c, writer);
		}
		catch (const Korvo::Exception& exc)
		{
			return hex(out.str()) + " " + exc.displayText();
		}
		return hex(out.str());
	};
	std::vector<std::string> fresh;
	for (const Case& c: cases) std::thread([&] { fresh.push_back(run(c)); }).join();
	EXPECT_NE(std::string::npos, fresh[9].find("Vocabulary hash table full"));
	EXPECT_NE(std::string::npos, fresh.back().find("Tag mismatch"));
	for (std::size_t i = 0; i < fresh.size(); ++i)
	{
		for (std::size_t j = 0; j < fresh.size(); ++j)
		{
			SCOPED_TRACE(std::to_string(i) + " then " + std::to_string(j));
			EXPECT_EQ(fresh[i], run(cases[i]));
			EXPECT_EQ(fresh[i], run(cases[i]));
			EXPECT_EQ(fresh[j], run(cases[j]));
		}
	}
}


TEST(WriterStructureTest, DestructionWritesNothing)
{
	// Without endDocument the element's end stays pending: it is not padded into an octet.
	std::ostringstream ended;
	std::ostringstream abandoned;
	for (std::ostringstream* pOut: {&ended, &abandoned})
	{
		FastInfosetWriter writer(*pOut);
		writer.startDocument();
		writer.startElement("", "a", "a", NO_ATTRIBUTES);
		writer.endElement("", "a", "a");
		if (pOut == &ended) writer.endDocument();
	}
	const std::string complete = ended.str();
	EXPECT_EQ("FF", hex(complete.substr(complete.size() - 1))); // the element's and the document's end
	EXPECT_EQ(hex(complete.substr(0, complete.size() - 1)), hex(abandoned.str()));
}


TEST(WriterStructureTest, VectorVocabularyIsRefusedOnlyAsReplacement)
{
	const std::string message = "A DocumentVocabulary with VOC_VECTOR implementation cannot be used by FastInfosetWriter";
	std::ostringstream out;
	DocumentVocabulary vector(DocumentVocabulary::VOC_VECTOR);
	EXPECT_EQ(DocumentVocabulary::VOC_VECTOR, FastInfosetWriter(out, false, DocumentVocabulary::VOC_VECTOR).getDocumentVocabulary().impl());
	EXPECT_EQ(DocumentVocabulary::VOC_VECTOR, FastInfosetWriter(out, false, vector).getDocumentVocabulary().impl());

	DocumentVocabulary map(DocumentVocabulary::VOC_MAP);
	bool existed;
	map.index(DocumentVocabulary::LOCAL_NAME, "kept", existed);
	FastInfosetWriter writer(out, false, map);
	FISDocumentHandler& handler = writer;
	EXPECT_THROW_MESSAGE(handler.setDocumentVocabulary(vector), Korvo::InvalidArgumentException, message);
	EXPECT_EQ(DocumentVocabulary::VOC_MAP, writer.getDocumentVocabulary().impl());
	bool found;
	EXPECT_EQ(1u, writer.getDocumentVocabulary().exists(DocumentVocabulary::LOCAL_NAME, "kept", found));
	EXPECT_TRUE(found);
}


TEST(WriterStructureTest, FailingStreamThrowsIOException)
{
	const std::string message = "error while writing Fast Infoset document to stream";
	{
		std::ostringstream out;
		out.setstate(std::ios::badbit);
		FastInfosetWriter writer(out);
		EXPECT_THROW_MESSAGE(writer.startDocument(), Korvo::IOException, message);
	}
	{
		// the header fits, the element's second octet does not
		FailingBuffer buffer(6);
		std::ostream out(&buffer);
		FastInfosetWriter writer(out);
		writer.startDocument();
		EXPECT_THROW_MESSAGE(writer.startElement("", "a", "a", NO_ATTRIBUTES), Korvo::IOException, message);
	}
}


TEST(WriterStructureTest, ItemWritersRefuseWrongBitPositions)
{
	using Tests::WriterProbe;
	const WriterProbe::AttributeVec noAttributes;
	const WriterProbe::PrefixSet noPrefixes;
	struct Case
	{
		int bitsBefore;
		std::function<void(WriterProbe&)> call;
		const char* message;
	};
	const Case cases[] = {
		{0, [&](WriterProbe& w) { w.writeElement("", "", "a", noAttributes, noPrefixes); }, "Illegal startposition for an Element value"},
		{0, [](WriterProbe& w) { w.writeAttribute("", "", "a", "v"); }, "Illegal startposition for a Attribute value"},
		{0, [](WriterProbe& w) { w.writeNamespaceAttribute("p", "urn:p"); }, "Illegal startposition for a NamespaceAttribute value"},
		{0, [](WriterProbe& w) { w.writeQualifiedNameOrIndex("", "", "a", true); }, "Illegal startposition for a writeQualifiedNameOrIndex value"},
		{3, [](WriterProbe& w) { w.writeQualifiedNameOrIndex("", "", "a", false); }, "Illegal startposition for a writeQualifiedNameOrIndex value"},
		{1, [](WriterProbe& w) { w.writeIdentifyingString("a", DocumentVocabulary::LOCAL_NAME); }, "Illegal startposition for an writeIdentifyingString"},
		{1, [](WriterProbe& w) { w.writeIdentifyingStringIndex(1); }, "Illegal startposition for an writeIdentifyingStringIndex"},
		{0, [](WriterProbe& w) { w.writeCharacterChunk("text"); }, "Illegal startposition for a CharacterChunk value"},
		{1, [](WriterProbe& w) { w.writeNonIdentifyingStringOrIndex(std::string("v"), DocumentVocabulary::ATTRIBUTE_VALUE); }, "Illegal startposition for a NonIdentifyingStringOrIndex value"},
		{0, [](WriterProbe& w) { w.writeEncodedCharacterString("v", 0); }, "Illegal startposition for a writeEncodedCharacterString"},
		{1, [](WriterProbe& w) { w.writeComment("c"); }, "Illegal startposition for a Comment value"},
		{0, [](WriterProbe& w) { w.writeDocumentTypeDeclaration("", "x.dtd"); }, "Illegal startposition for a DocumentTypeDeclaration value"},
		{0, [](WriterProbe& w) { w.writeNotation("n", nullptr, nullptr); }, "Illegal startposition for a Notation value"},
		{6, [](WriterProbe& w) { w.writeUnparsedEntity("e", nullptr, "s", "n"); }, "Illegal startposition for an UnparsedEntity value"},
		{0, [](WriterProbe& w) { w.writeUnexpandedEntityReference("e", nullptr, nullptr); }, "Illegal startposition for a UnexpandedEntityReference value"},
	};
	for (const Case& c: cases)
	{
		std::ostringstream out;
		WriterProbe writer(out);
		if (c.bitsBefore > 0) writer.writeBits(0, c.bitsBefore);
		EXPECT_THROW_MESSAGE(c.call(writer), FISEncodingException, c.message);
	}
}


TEST(WriterStructureTest, UnexpandedEntityReferenceLayout)
{
	// no event writes it: 110010 then system present, public absent, "e", "s"
	std::ostringstream out;
	Tests::WriterProbe writer(out);
	writer.writeBits(0x32, 6);
	const std::string systemId = "s";
	writer.writeUnexpandedEntityReference("e", nullptr, &systemId);
	EXPECT_EQ(0, writer.bitPos());
	EXPECT_EQ(golden("CA 0065 0073"), hex(out.str()));
}
