//
// PeerDocumentsTest.cpp
//
// Documents written by an independent Fast Infoset implementation, in the
// shared fixture directories peer, encodings (feeds in legacy encodings) and
// real: each NAME.fi must parse and say what the NAME.xml (or .xsl) beside
// it says, the XML converted from it must read back the same, and the XML
// converted here must give the same events as the .fi (text compared as
// Unicode, whatever the encoding of the XML).
//
// That implementation swaps the two identifiers of a document type
// declaration; its declarations are therefore checked for exactly that swap
// instead of being compared with the XML.
//
// One feed declares Shift_JIS but holds octets of code page 932 that
// Shift_JIS does not define: that implementation made them U+FFFD, here
// they are refused with their position.
//

#include "Korvo/FastInfoset/Converter.h"
#include "Korvo/FastInfoset/FastInfosetParser.h"
#include "XMLInput.h"
#include "support/ConversionTesting.h"
#include "support/ExceptionMatchers.h"
#include "support/SaxRecorder.h"
#include "Poco/SAX/SAXParser.h"
#include <gtest/gtest.h>
#include <algorithm>
#include <cctype>
#include <filesystem>
#include <map>
#include <sstream>

using namespace Korvo::FastInfoset;
using Korvo::FastInfoset::Tool::DocumentEvents;
using namespace Tests;
namespace fs = std::filesystem;


namespace {


const fs::path FIXTURES = fs::path(KORVO_PEER_FIXTURES).parent_path();
const char* const DIRECTORIES[] = {"peer", "encodings", "real"};


const std::map<std::string, std::string> REFUSED =
{
	{"CP932-y-moto.com", "Invalid octets for encoding \"Shift_JIS\": 0x87 0x40 in line 237 column 4"}
};


std::vector<std::string> fixtureNames()
	/// "DIRECTORY/NAME" of every NAME.fi that has the document beside it,
	/// or one empty name when there are none (that test then skips).
{
	std::vector<std::string> names;
	for (const char* directory: DIRECTORIES)
	{
		std::error_code error;
		for (fs::directory_iterator it(FIXTURES / directory, error), end; !error && it != end; it.increment(error))
		{
			const fs::path& path = it->path();
			if (path.extension() == ".fi") names.push_back(std::string(directory) + "/" + path.stem().string());
		}
	}
	std::sort(names.begin(), names.end());
	if (names.empty()) names.push_back(std::string());
	return names;
}


DocumentEvents::Options withoutDoctype()
{
	DocumentEvents::Options options;
	options.recordDoctype = false;
	return options;
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
	XMLInput xmlInput(input, parser);
	xmlInput.parse(parser);
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
			GTEST_SKIP() << "no peer documents (NAME.fi beside NAME.xml) in " << FIXTURES.string();
		// Names hold dots: the extensions are appended, not replaced.
		const std::string base = (FIXTURES / GetParam()).string();
		xml = readFile(fs::exists(base + ".xml") ? base + ".xml" : base + ".xsl");
		fis = readFile(base + ".fi");
		const auto refused = REFUSED.find(GetParam().substr(GetParam().find('/') + 1));
		if (refused != REFUSED.end()) refusal = refused->second;
	}

	std::string xml;
	std::string fis;
	std::string refusal;
		/// The message that refuses the XML, if it is refused.
};


} // namespace


TEST_P(PeerDocumentsTest, FastInfosetSaysWhatTheXMLSays)
{
	const std::vector<std::string> parsed = fisEvents(fis, withoutDoctype());
	ASSERT_FALSE(parsed.empty());
	// The XML converted from it reads back the same.
	EXPECT_EQ(parsed, xmlEvents(toXML(fis), withoutDoctype()));
	if (refusal.empty())
	{
		EXPECT_EQ(xmlEvents(xml, withoutDoctype()), parsed);
	}
}


TEST_P(PeerDocumentsTest, XMLConvertsToTheSameEvents)
{
	if (!refusal.empty())
	{
		EXPECT_THROW_MESSAGE(toFIS(xml), Korvo::XML::SAXParseException, refusal);
		return;
	}
	const std::string converted = toFIS(xml);
	EXPECT_EQ(fisEvents(fis, withoutDoctype()), fisEvents(converted, withoutDoctype()));

	// And back, with the document type declaration and its name.
	EXPECT_EQ(xmlEvents(xml), xmlEvents(toXML(converted)));
}


TEST_P(PeerDocumentsTest, DoctypeIsReadAsWritten)
{
	if (!refusal.empty()) return;
	const std::vector<std::string> expected = xmlDoctype(xml);
	const std::vector<std::string> read = fisDoctype(fis);
	ASSERT_EQ(expected.size(), read.size());
	if (expected.empty()) return;

	EXPECT_EQ(swappedIdentifiers(expected.front()), read.front());

	// The XML written back names the declaration after its root element.
	const std::vector<std::string> written = xmlDoctype(toXML(fis, 0));
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
