//
// PeerDocumentsTest.cpp
//
// Documents written by an independent Fast Infoset implementation: each
// NAME.fi in the peer fixture directory must parse, and it and the XML
// converted from it must say what NAME.xml beside it says.
//
// That implementation swaps the two identifiers of a document type
// declaration; its declarations are therefore checked for exactly that swap
// instead of being compared with the XML.
//

#include "Korvo/FastInfoset/Converter.h"
#include "Korvo/FastInfoset/FastInfosetParser.h"
#include "DocumentEvents.h"
#include "support/SaxRecorder.h"
#include "Poco/SAX/SAXParser.h"
#include "Poco/SAX/InputSource.h"
#include <gtest/gtest.h>
#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <sstream>

using namespace Korvo::FastInfoset;
using Korvo::FastInfoset::Tool::DocumentEvents;
namespace fs = std::filesystem;


namespace {


const fs::path FIXTURES(KORVO_PEER_FIXTURES);


std::vector<std::string> fixtureNames()
	/// The NAME of every NAME.fi that has a NAME.xml beside it, or one empty
	/// name when there are none (that test then skips).
{
	std::vector<std::string> names;
	std::error_code error;
	for (fs::directory_iterator it(FIXTURES, error), end; !error && it != end; it.increment(error))
	{
		const fs::path& path = it->path();
		if (path.extension() == ".fi" && fs::exists(fs::path(path).replace_extension(".xml")))
			names.push_back(path.stem().string());
	}
	std::sort(names.begin(), names.end());
	if (names.empty()) names.push_back(std::string());
	return names;
}


std::string readFile(const fs::path& path)
{
	std::ifstream input(path, std::ios::binary);
	std::ostringstream content;
	content << input.rdbuf();
	return content.str();
}


DocumentEvents::Options withoutDoctype()
{
	DocumentEvents::Options options;
	options.recordDoctype = false;
	return options;
}


std::vector<std::string> xmlEvents(const std::string& xml)
{
	DocumentEvents events(withoutDoctype());
	std::istringstream input(xml);
	events.readXML(input);
	return events.lines();
}


std::vector<std::string> doctypeEvents(const Test::PlainSaxRecorder& recorder)
{
	std::vector<std::string> result;
	for (const auto& event: recorder.events())
		if (event.rfind("startDTD(", 0) == 0) result.push_back(event);
	return result;
}


std::vector<std::string> xmlDoctype(const std::string& xml)
{
	Test::PlainSaxRecorder recorder;
	Korvo::XML::SAXParser parser;
	parser.setFeature(Korvo::XML::XMLReader::FEATURE_NAMESPACES, true);
	parser.setProperty(Korvo::XML::XMLReader::PROPERTY_LEXICAL_HANDLER, static_cast<Korvo::XML::LexicalHandler*>(&recorder));
	std::istringstream input(xml);
	Korvo::XML::InputSource source(input);
	parser.parse(&source);
	return doctypeEvents(recorder);
}


std::vector<std::string> fisDoctype(const std::string& fis)
{
	Test::PlainSaxRecorder recorder;
	FastInfosetParser parser;
	parser.setProperty(Korvo::XML::XMLReader::PROPERTY_LEXICAL_HANDLER, static_cast<Korvo::XML::LexicalHandler*>(&recorder));
	parser.parseMemoryNP(fis.data(), fis.size());
	return doctypeEvents(recorder);
}


std::string swappedIdentifiers(const std::string& event)
	/// startDTD(name|publicId|systemId) as the peer writes it: no name, and
	/// the system identifier in the public identifier's place and vice versa.
{
	const std::string::size_type first = event.find('|');
	const std::string::size_type second = event.find('|', first + 1);
	const std::string publicId = event.substr(first + 1, second - first - 1);
	const std::string systemId = event.substr(second + 1, event.size() - second - 2);
	return "startDTD(|" + systemId + "|" + publicId + ")";
}


class PeerDocumentsTest: public ::testing::TestWithParam<std::string>
{
protected:
	void SetUp() override
	{
		if (GetParam().empty())
			GTEST_SKIP() << "no peer documents (NAME.xml beside NAME.fi) in " << FIXTURES.string();
		xml = readFile(FIXTURES / (GetParam() + ".xml"));
		fis = readFile(FIXTURES / (GetParam() + ".fi"));
	}

	std::string xml;
	std::string fis;
};


} // namespace


TEST_P(PeerDocumentsTest, ParsedEventsMatchTheXML)
{
	DocumentEvents events(withoutDoctype());
	std::istringstream input(fis);
	ASSERT_NO_THROW(events.readFastInfoset(input));
	const std::vector<std::string> expected = xmlEvents(xml);
	ASSERT_FALSE(expected.empty());
	EXPECT_EQ(expected, events.lines());
}


TEST_P(PeerDocumentsTest, ConvertedXMLMatchesTheXML)
{
	std::istringstream input(fis);
	std::ostringstream converted;
	ASSERT_NO_THROW(Converter::convertToXML(input, converted, Converter::CONV_WRITE_XML_DECLARATION));
	EXPECT_EQ(xmlEvents(xml), xmlEvents(converted.str()));
}


TEST_P(PeerDocumentsTest, DoctypeIsReadAsWritten)
{
	const std::vector<std::string> expected = xmlDoctype(xml);
	const std::vector<std::string> read = fisDoctype(fis);
	ASSERT_EQ(expected.size(), read.size());
	if (expected.empty()) return;

	EXPECT_EQ(swappedIdentifiers(expected.front()), read.front());

	// The XML written back names the declaration after its root element.
	std::istringstream input(fis);
	std::ostringstream converted;
	Converter::convertToXML(input, converted, 0);
	const std::vector<std::string> written = xmlDoctype(converted.str());
	ASSERT_EQ(1u, written.size());
	EXPECT_EQ(expected.front().substr(0, expected.front().find('|')), written.front().substr(0, written.front().find('|')));
}


INSTANTIATE_TEST_SUITE_P(Fixtures, PeerDocumentsTest, ::testing::ValuesIn(fixtureNames()),
	[](const ::testing::TestParamInfo<std::string>& info)
	{
		std::string name = info.param.empty() ? std::string("none") : info.param;
		std::replace_if(name.begin(), name.end(), [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); }, '_');
		return name;
	});
