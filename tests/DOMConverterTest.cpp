//
// DOMConverterTest.cpp
//
// Fast Infoset into and out of DOM trees: a tree loaded from a Fast Infoset
// document is the tree the toolkit builds from the XML text, and it comes
// back the same after being written as Fast Infoset, and after that as XML.
//

#include "Korvo/FastInfoset/DOMConverter.h"
#include "Korvo/FastInfoset/Converter.h"
#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include "Korvo/FastInfoset/FISException.h"
#include "support/SaxRecorder.h"
#include "Poco/DOM/DOMParser.h"
#include "Poco/DOM/DOMSerializer.h"
#include "Poco/DOM/Element.h"
#include "Poco/DOM/Text.h"
#include <gtest/gtest.h>
#include <sstream>

using namespace Korvo::FastInfoset;
using Korvo::XML::AutoPtr;
using Korvo::XML::Document;


namespace {


std::vector<std::string> eventsOf(const Korvo::XML::Node* pNode)
{
	Test::SaxRecorder recorder;
	Korvo::XML::DOMSerializer serializer;
	serializer.setContentHandler(&recorder);
	serializer.setDTDHandler(&recorder);
	serializer.setProperty(Korvo::XML::XMLReader::PROPERTY_LEXICAL_HANDLER, static_cast<Korvo::XML::LexicalHandler*>(&recorder));
	serializer.serialize(pNode);
	return recorder.events();
}


AutoPtr<Document> fromXML(const std::string& xml)
{
	Korvo::XML::DOMParser parser;
	return parser.parseString(xml);
}


std::string toFIS(const std::string& xml)
{
	std::istringstream input(xml);
	std::ostringstream output;
	Converter::convertToFIS(input, output);
	return output.str();
}


AutoPtr<Document> fromFIS(const std::string& fis)
{
	std::istringstream input(fis);
	return DOMConverter::parse(input);
}


std::string written(const Korvo::XML::Node* pNode)
{
	std::ostringstream output;
	DOMConverter::write(pNode, output);
	return output.str();
}


std::string toXML(const std::string& fis)
{
	std::istringstream input(fis);
	std::ostringstream output;
	Converter::convertToXML(input, output);
	return output.str();
}


} // namespace


TEST(DOMConverterTest, SameTreeBothWays)
{
	const char* documents[] =
	{
		"<r/>",
		"<!-- before --><?setup x=1?><r a='1' b=''>text<![CDATA[<raw>]]>more<!--in--><?pi data?></r><!-- after -->",
		"<p:r xmlns:p='urn:p' xmlns='urn:d' p:x='1' y='2'><a xmlns:q='urn:q' q:z='3'><b xmlns=''/></a><p:c xml:lang='en'/></p:r>",
		"<r xmlns:a='urn:same' xmlns:b='urn:same'><a:x a:v='1'/><b:x/></r>",
		"<!DOCTYPE doc SYSTEM 'doc.dtd'><doc><p>T\xc3\xa9xt &amp; \xe2\x82\xac</p></doc>",
	};
	for (const char* xml: documents)
	{
		SCOPED_TRACE(xml);
		const std::vector<std::string> expected = eventsOf(fromXML(xml));

		const AutoPtr<Document> pLoaded = fromFIS(toFIS(xml));
		EXPECT_EQ(expected, eventsOf(pLoaded));

		const std::string fis = written(pLoaded);
		EXPECT_EQ(expected, eventsOf(fromFIS(fis)));
		EXPECT_EQ(expected, eventsOf(fromXML(toXML(fis))));
	}
}


TEST(DOMConverterTest, DocumentTypeTakesNotationsAndUnparsedEntities)
{
	std::ostringstream original;
	{
		FastInfosetWriter writer(original);
		const std::string publicId = "-//Example//Images", systemId = "image/gif";
		writer.notationDecl("gif", &publicId, &systemId);
		writer.unparsedEntityDecl("logo", 0, "logo.gif", "gif");
		writer.startDocument();
		writer.startDTD("", "", "r.dtd");
		writer.endDTD();
		writer.comment("c", 0, 1);
		writer.emptyElement("", "r", "");
		writer.endDocument();
	}
	const AutoPtr<Document> pLoaded = fromFIS(original.str());
	const std::vector<std::string> expected =
	{
		"startDocument()",
		"startDTD(r||r.dtd)",
		"notationDecl(gif|-//Example//Images|image/gif)",
		"unparsedEntityDecl(logo||logo.gif|gif)",
		"endDTD()",
		"comment(c)",
		"startElement(|r|r)",
		"endElement(|r|r)",
		"endDocument()",
	};
	EXPECT_EQ(expected, eventsOf(pLoaded));
	EXPECT_EQ(original.str(), written(pLoaded));
}


TEST(DOMConverterTest, WritesTreesBuiltInCode)
{
	// Declarations held as attributes, an attribute in a namespace without
	// a prefix, and an element written on its own.
	AutoPtr<Document> pDocument = new Document;
	AutoPtr<Korvo::XML::Element> pRoot = pDocument->createElementNS("urn:d", "r");
	pRoot->setAttributeNS(Korvo::XML::NamespaceSupport::XMLNS_NAMESPACE, "xmlns:p", "urn:p");
	AutoPtr<Korvo::XML::Element> pChild = pDocument->createElementNS("urn:p", "p:c");
	pChild->setAttributeNS("urn:q", "v", "1");
	pRoot->appendChild(pChild);
	pDocument->appendChild(pRoot);

	const std::string fis = written(pRoot);
	EXPECT_EQ(eventsOf(fromXML("<r xmlns='urn:d' xmlns:p='urn:p'><p:c xmlns:ns1='urn:q' ns1:v='1'/></r>")), eventsOf(fromXML(toXML(fis))));
	EXPECT_EQ(fis, written(pDocument));
}


TEST(DOMConverterTest, BrokenDocumentThrows)
{
	const std::string fis = toFIS("<r><a>text</a></r>");
	EXPECT_THROW(fromFIS(fis.substr(0, fis.size() - 4)), FISParseException);
	EXPECT_THROW(fromFIS("<r/>"), FISException);
}
