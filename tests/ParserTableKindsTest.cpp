//
// ParserTableKindsTest.cpp
//
// Real documents and messages written by an independent implementation
// (each NAME.fi with NAME.xml or NAME.xsl beside it), parsed with every kind
// of table, from memory and from a stream: the same events each time, the
// XML's content, and the same tables afterwards.
//

#include "Korvo/FastInfoset/FastInfosetParser.h"
#include "DocumentEvents.h"
#include "support/ParserTestSupport.h"
#include "support/SaxRecorder.h"
#include "Poco/Exception.h"
#include <gtest/gtest.h>
#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <sstream>

using namespace Korvo::FastInfoset;
using Korvo::FastInfoset::Tool::DocumentEvents;
namespace fs = std::filesystem;
using DV = DocumentVocabulary;


namespace {


const fs::path FIXTURES = fs::path(KORVO_SOURCE_DIR) / ".." / "shared" / "fixtures";


struct Fixture
{
	fs::path fis;
	fs::path xml;
};


void PrintTo(const Fixture& fixture, std::ostream* pStream)
{
	*pStream << fixture.fis.string();
}


std::vector<Fixture> fixtures()
	/// One empty entry when there are none: that test then skips.
{
	std::vector<Fixture> result;
	for (const char* directory: {"real", "messages"})
	{
		std::error_code error;
		for (fs::directory_iterator it(FIXTURES / directory, error), end; !error && it != end; it.increment(error))
		{
			if (it->path().extension() != ".fi") continue;
			for (const char* extension: {".xml", ".xsl"})
			{
				fs::path xml = fs::path(it->path()).replace_extension(extension);
				if (fs::exists(xml)) result.push_back(Fixture{it->path(), xml});
			}
		}
	}
	std::sort(result.begin(), result.end(), [](const Fixture& a, const Fixture& b) { return a.fis < b.fis; });
	if (result.empty()) result.push_back(Fixture());
	return result;
}


struct Parsed
{
	std::vector<std::string> events;
	std::unique_ptr<DV> pVocabulary;
};


Parsed parse(const std::string& fis, DV::VocabularyImpl impl)
{
	Korvo::FastInfoset::Test::PlainSaxRecorder recorder;
	FastInfosetParser parser(impl);
	parser.setContentHandler(&recorder);
	parser.setProperty(Korvo::XML::XMLReader::PROPERTY_LEXICAL_HANDLER, static_cast<Korvo::XML::LexicalHandler*>(&recorder));
	parser.parseMemoryNP(fis.data(), fis.size());
	return Parsed{recorder.events(), std::unique_ptr<DV>(new DV(parser.vocabulary()))};
}


template <class T>
void expectSameTable(const Vocabulary<T>& expected, const Vocabulary<T>& actual, int table)
{
	ASSERT_EQ(expected.size(), actual.size()) << "table " << table;
	for (unsigned int i = 0; i < expected.size(); ++i) ASSERT_EQ(expected.value(i), actual.value(i)) << "table " << table << " index " << i;
}


void expectSameVocabulary(const DV& expected, const DV& actual)
{
	for (int id = DV::PREFIX; id <= int(DV::CHARACTER_CONTENT_CHUNK); ++id)
		expectSameTable(*expected.vocabulary(DV::ID(id)), *actual.vocabulary(DV::ID(id)), id);
	expectSameTable(*expected.elementVocabulary(), *actual.elementVocabulary(), DV::ELEMENT_NAME);
	expectSameTable(*expected.attributeVocabulary(), *actual.attributeVocabulary(), DV::ATTRIBUTE_NAME);
}


class ParserTableKindsTest: public ::testing::TestWithParam<Fixture>
{
};


} // namespace


TEST_P(ParserTableKindsTest, EveryKindReadsTheSameEventsAndTables)
{
	if (GetParam().fis.empty()) GTEST_SKIP() << "no documents in " << FIXTURES.string();
	const std::string fis = Korvo::FastInfoset::Test::readFileOctets(GetParam().fis.string());

	const Parsed mapped = parse(fis, DV::VOC_MAP);
	const Parsed listed = parse(fis, DV::VOC_VECTOR);
	EXPECT_EQ(mapped.events, listed.events);
	expectSameVocabulary(*mapped.pVocabulary, *listed.pVocabulary);
	EXPECT_EQ(mapped.events, Korvo::FastInfoset::Test::parseToEvents(fis, Korvo::FastInfoset::Test::PLAIN_HANDLER));
	try
	{
		const Parsed hashed = parse(fis, DV::VOC_HASH);
		EXPECT_EQ(mapped.events, hashed.events);
		expectSameVocabulary(*mapped.pVocabulary, *hashed.pVocabulary);
	}
	catch (Korvo::PoolOverflowException&)
	{
		// A document with more values of a kind than its fixed tables hold.
	}

	// That implementation writes document types differently (see PeerDocumentsTest).
	DocumentEvents::Options options;
	options.recordDoctype = false;
	DocumentEvents xmlEvents(options);
	std::ifstream xml(GetParam().xml, std::ios::binary);
	xmlEvents.readXML(xml);
	DocumentEvents fisEvents(options);
	std::istringstream input(fis);
	fisEvents.readFastInfoset(input);
	EXPECT_EQ("", DocumentEvents::firstDifference(xmlEvents, fisEvents));
}


INSTANTIATE_TEST_SUITE_P(Fixtures, ParserTableKindsTest, ::testing::ValuesIn(fixtures()),
	[](const ::testing::TestParamInfo<Fixture>& info)
	{
		std::string name = info.param.fis.empty() ? std::string("none") : info.param.fis.stem().string();
		std::replace_if(name.begin(), name.end(), [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); }, '_');
		return name;
	});
