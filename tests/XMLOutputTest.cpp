//
// XMLOutputTest.cpp
//
// What a Fast Infoset document may say and XML text cannot say literally:
// the names NamespaceScope chooses, and the XML convertToXML writes (or the
// exception it throws) for text, comments, instructions and declarations.
//

#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include "Korvo/FastInfoset/FISException.h"
#include "NamespaceScope.h"
#include "support/ConversionTesting.h"
#include "support/ExceptionMatchers.h"
#include <gtest/gtest.h>
#include <functional>
#include <sstream>

using namespace Korvo::FastInfoset;
using Korvo::XML::AttributesImpl;
using Korvo::XML::NamespaceSupport;


namespace {


struct Name
{
	const char* uri;
	const char* localName;
	const char* qname;
};


struct Element
{
	std::vector<std::pair<const char*, const char*>> declarations;
	Name name;
	std::vector<Name> attributes;
};


std::string start(NamespaceScope& scope, const Element& element)
	/// The element's name and attributes as the scope writes them.
{
	AttributesImpl attributes;
	for (const Name& attribute: element.attributes)
		attributes.addAttribute(attribute.uri, attribute.localName, attribute.qname, "", "v");
	for (const auto& declaration: element.declarations)
		scope.declare(declaration.first, declaration.second);
	scope.startElement(element.name.uri, element.name.localName, element.name.qname, attributes);

	std::string result = scope.name();
	for (int i = 0; i < scope.attributes().getLength(); ++i)
		result += " " + scope.attributes().getQName(i) + "=" + scope.attributes().getValue(i);
	return result;
}


void text(FastInfosetWriter& writer, const std::string& characters)
{
	writer.characters(characters.data(), 0, static_cast<int>(characters.size()));
}


void comment(FastInfosetWriter& writer, const std::string& characters)
{
	writer.comment(characters.data(), 0, static_cast<int>(characters.size()));
}


using Drive = std::function<void (FastInfosetWriter&)>;


std::string xmlOf(const Drive& content, const Drive& declare = Drive(), const Drive& prolog = Drive())
	/// The XML written for a document of one element "r" with content, the
	/// header declarations and the prolog before it.
{
	std::ostringstream fis;
	FastInfosetWriter writer(fis, false, DocumentVocabulary::VOC_MAP);
	if (declare) declare(writer);
	writer.startDocument();
	if (prolog) prolog(writer);
	writer.startElement("", "r", "r", AttributesImpl());
	content(writer);
	writer.endElement("", "r", "r");
	writer.endDocument();
	return Tests::toXML(fis.str(), 0);
}


const std::string XML_NS = NamespaceSupport::XML_NAMESPACE;


} // namespace


TEST(XMLOutputTest, EachNameKeepsItsPrefixWherePossible)
{
	struct Case { const char* what; std::vector<Element> path; const char* expected; };
	const Case cases[] =
	{
		{"two prefixes, one namespace", {
			{{{"", "urn:a"}, {"w", "urn:a"}}, {"urn:a", "res", ""}, {}},
			{{}, {"urn:a", "res", "w:res"}, {}}},
			"w:res"},
		{"the default, beside a prefix", {
			{{{"", "urn:a"}, {"w", "urn:a"}}, {"urn:a", "res", "w:res"}, {}},
			{{}, {"urn:a", "res", ""}, {}}},
			"res"},
		{"a prefix bound anew in a child", {
			{{{"p", "urn:1"}}, {"urn:1", "a", "p:a"}, {}},
			{{{"p", "urn:2"}}, {"urn:2", "b", "p:b"}, {{"urn:1", "x", ""}}}},
			"p:b xmlns:p=urn:2 xmlns:ns1=urn:1 ns1:x=v"},
		{"no namespace below a default one", {
			{{{"", "urn:d"}}, {"urn:d", "r", ""}, {}},
			{{}, {"", "c", ""}, {}}},
			"c xmlns="},
		{"no namespace, declaring a default one", {{{{"", "urn:d"}}, {"", "c", ""}, {}}}, "c xmlns="},
		{"an attribute in the element's namespace without prefix", {{{{"p", "urn:p"}}, {"urn:p", "a", "p:a"}, {{"urn:p", "x", ""}}}}, "p:a xmlns:p=urn:p p:x=v"},
		{"an attribute in an unbound namespace", {{{}, {"", "a", ""}, {{"urn:z", "k", ""}}}}, "a xmlns:ns1=urn:z ns1:k=v"},
		{"an attribute's prefix is the element's", {{{{"p", "urn:1"}}, {"urn:1", "a", "p:a"}, {{"urn:2", "x", "p:x"}}}}, "p:a xmlns:p=urn:1 xmlns:ns1=urn:2 ns1:x=v"},
		{"an undeclared prefix", {{{}, {"urn:q", "a", "q:a"}, {{"urn:r", "x", "r:x"}}}}, "q:a xmlns:q=urn:q xmlns:r=urn:r r:x=v"},
		{"the element's prefix bound otherwise by itself", {{{{"p", "urn:1"}}, {"urn:2", "a", "p:a"}, {}}}, "ns1:a xmlns:p=urn:1 xmlns:ns1=urn:2"},
		{"the xml prefix", {{{{"xml", XML_NS.c_str()}, {"p", ""}}, {"", "a", ""}, {{XML_NS.c_str(), "lang", "xml:lang"}}}}, "a xml:lang=v"},
		{"an attribute given by qualified name only", {{{}, {"", "a", ""}, {{"", "", "plain"}}}}, "a plain=v"},
		{"a prefix that is not a name", {{{{"a b", "urn:1"}}, {"urn:1", "e", "a b:e"}, {}}}, "ns1:e xmlns:ns1=urn:1"},
	};
	for (const auto& c: cases)
	{
		NamespaceScope scope;
		std::string written;
		for (const Element& element: c.path) written = start(scope, element);
		EXPECT_EQ(c.expected, written) << c.what;
	}
}


TEST(XMLOutputTest, NamesXMLCannotWriteThrow)
{
	struct Case { Element element; const char* message; };
	const Case cases[] =
	{
		{{{}, {"", "a b", ""}, {}}, "Name \"a b\" cannot be written in XML"},
		{{{}, {"", "a", ""}, {{"", "1x", ""}}}, "Name \"1x\" cannot be written in XML"},
		{{{}, {"", "a", ""}, {{"", "x", ""}, {"", "x", ""}}}, "Attribute \"x\" cannot be written twice in one element"},
		{{{}, {"", "a", ""}, {{"", "xmlns", ""}}}, "Attribute \"xmlns\" in no namespace cannot be written in XML"},
		{{{{"p", "urn:\x01"}}, {"", "a", ""}, {}}, "Character U+0001 cannot be written in XML 1.0"},
	};
	for (const auto& c: cases)
	{
		NamespaceScope scope;
		EXPECT_THROW_MESSAGE(start(scope, c.element), FISEncodingException, c.message);
	}
}


TEST(XMLOutputTest, ContentIsWrittenSoThatItReadsBack)
{
	struct Case { const char* what; Drive content; const char* expected; };
	const Case cases[] =
	{
		{"carriage returns", [](FastInfosetWriter& w) { text(w, "a\rb\r\nc"); }, "<r>a&#13;b&#13;\nc</r>"},
		{"a CDATA section", [](FastInfosetWriter& w) { w.startCDATA(); text(w, "<x>"); w.endCDATA(); }, "<r><![CDATA[<x>]]></r>"},
		{"a CDATA section that cannot hold its text", [](FastInfosetWriter& w) { w.startCDATA(); text(w, "a]]>b\r"); w.endCDATA(); }, "<r>a]]&gt;b&#13;</r>"},
	};
	for (const auto& c: cases)
	{
		EXPECT_EQ(c.expected, xmlOf(c.content)) << c.what;
	}
}


TEST(XMLOutputTest, ContentXMLCannotHoldThrows)
{
	struct Case { Drive content; const char* message; };
	const Case cases[] =
	{
		{[](FastInfosetWriter& w) { text(w, "a\x01"); }, "Character U+0001 cannot be written in XML 1.0"},
		{[](FastInfosetWriter& w) { text(w, "\xEF\xBF\xBE"); }, "Character U+FFFE cannot be written in XML 1.0"},
		{[](FastInfosetWriter& w) { text(w, "\xED\xA0\x80"); }, "Octet 0xED is not UTF-8 and cannot be written in XML"},
		{[](FastInfosetWriter& w) { AttributesImpl a; a.addAttribute("", "k", "k", "", "\x1F"); w.emptyElement("", "e", "e", a); }, "Character U+001F cannot be written in XML 1.0"},
		{[](FastInfosetWriter& w) { comment(w, "a--b"); }, "Comment \"a--b\" cannot be written in XML"},
		{[](FastInfosetWriter& w) { comment(w, "a-"); }, "Comment \"a-\" cannot be written in XML"},
		{[](FastInfosetWriter& w) { w.processingInstruction("XML", "d"); }, "Processing instruction target \"XML\" cannot be written in XML"},
		{[](FastInfosetWriter& w) { w.processingInstruction("t", "a?>b"); }, "Processing instruction data \"a?>b\" cannot be written in XML"},
	};
	for (const auto& c: cases)
		EXPECT_THROW_MESSAGE(xmlOf(c.content), FISEncodingException, c.message);

	EXPECT_THROW_MESSAGE(xmlOf([](FastInfosetWriter&) {}, Drive(), [](FastInfosetWriter& w) { text(w, "x"); }),
		FISEncodingException, "Text outside the root element cannot be written in XML");
}


TEST(XMLOutputTest, DeclarationsGoIntoTheInternalSubset)
{
	struct Case { const char* what; Drive declare; const char* expected; };
	const Korvo::XML::XMLString publicId("-//K//N"), systemId("n.exe"), quoted("say \"n\"");
	const Case cases[] =
	{
		{"a notation without a declaration", [&](FastInfosetWriter& w) { w.notationDecl("n", &publicId, &systemId); },
			"<!DOCTYPE r [<!NOTATION n PUBLIC \"-//K//N\" \"n.exe\">]><r/>"},
		{"a notation without identifiers", [&](FastInfosetWriter& w) { w.notationDecl("n", nullptr, nullptr); },
			"<!DOCTYPE r [<!NOTATION n SYSTEM \"\">]><r/>"},
		{"a system identifier with quotes", [&](FastInfosetWriter& w) { w.unparsedEntityDecl("e", nullptr, quoted, "n"); },
			"<!DOCTYPE r [<!ENTITY e SYSTEM 'say \"n\"' NDATA n>]><r/>"},
	};
	for (const auto& c: cases)
	{
		const std::string xml = xmlOf([](FastInfosetWriter&) {}, c.declare);
		EXPECT_EQ(c.expected, xml) << c.what;
		EXPECT_NO_THROW(Tests::xmlEvents(xml)) << xml;
	}

	const Korvo::XML::XMLString badPublicId("{}");
	EXPECT_THROW_MESSAGE(xmlOf([](FastInfosetWriter&) {}, [&](FastInfosetWriter& w) { w.notationDecl("n", &badPublicId, nullptr); }),
		FISEncodingException, "Public identifier \"{}\" cannot be written in XML");
}
