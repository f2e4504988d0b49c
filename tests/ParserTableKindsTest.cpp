//
// ParserTableKindsTest.cpp
//
// Real documents and messages written by an independent implementation
// (each NAME.fi with NAME.xml or NAME.xsl beside it), parsed with every kind
// of table, from memory and from a stream: the same events each time, the
// XML's content, and the same tables afterwards; a literal that repeats a
// table value, as each kind of table takes it.
//

#include "Korvo/FastInfoset/FastInfosetParser.h"
#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include "DocumentEvents.h"
#include "support/ParserTestSupport.h"
#include "support/SaxRecorder.h"
#include "Poco/Exception.h"
#include "Poco/SAX/DefaultHandler.h"
#include <gtest/gtest.h>
#include <algorithm>
#include <cctype>
#include <cstdio>
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


TEST(ParserTableKindsSequenceTest, ParsersReadEachDocumentAlikeWhateverCameBefore)
{
	// Every document after every other, with one parser for all and with one
	// made for each: what one document left in the parser's storage (or in
	// the storage a destroyed parser leaves to the next) never shows.
	const std::vector<Fixture> all = fixtures();
	if (all.front().fis.empty()) GTEST_SKIP() << "no documents in " << FIXTURES.string();
	std::vector<std::string> documents;
	for (const Fixture& fixture: all) documents.push_back(Korvo::FastInfoset::Test::readFileOctets(fixture.fis.string()));
	for (DV::VocabularyImpl impl: {DV::VOC_MAP, DV::VOC_VECTOR})
	{
		std::vector<Parsed> first;
		for (const std::string& fis: documents) first.push_back(parse(fis, impl));
		FastInfosetParser reused(impl);
		for (std::size_t step = 0; step < 2*documents.size(); ++step)
		{
			// Forwards, then backwards.
			const std::size_t i = step < documents.size() ? step : 2*documents.size() - 1 - step;
			SCOPED_TRACE(all[i].fis.string());
			Korvo::FastInfoset::Test::PlainSaxRecorder recorder;
			reused.setContentHandler(&recorder);
			reused.setProperty(Korvo::XML::XMLReader::PROPERTY_LEXICAL_HANDLER, static_cast<Korvo::XML::LexicalHandler*>(&recorder));
			reused.parseMemoryNP(documents[i].data(), documents[i].size());
			EXPECT_EQ(first[i].events, recorder.events());
			expectSameVocabulary(*first[i].pVocabulary, reused.vocabulary());
			const Parsed made = parse(documents[i], impl);
			EXPECT_EQ(first[i].events, made.events);
		}
	}
}


TEST(ParserTableKindsRepeatTest, ALiteralRepeatingATableValueIsFoundByIndexedTablesOnly)
{
	// n different chunks, one that repeats the first, then a new one: indexed
	// tables give the repeat the first one's index and the new one the next,
	// vector tables a new index to each. Small tables and tables that the
	// parser's set of hashes grows for, read by a parser made for each
	// document and by one parser for all, a small document after large ones.
	const auto chunk = [](int i)
	{
		char text[16];
		std::snprintf(text, sizeof(text), "c%03d", i);
		return std::string(text);
	};
	std::vector<std::string> documents;
	const int counts[] = {1, 30, 80, 700, 2};
	for (int distinct: counts)
	{
		std::ostringstream out;
		FastInfosetWriter writer(out, false, DV::VOC_MAP);
		const Korvo::XML::AttributesImpl none;
		writer.startDocument();
		writer.startElement("", "r", "", none);
		for (int i = 0; i <= distinct + 1; ++i)
		{
			const std::string text = chunk(i < distinct ? i : 999 + distinct - i);
			writer.startElement("", "e", "", none);
			writer.characters(text.data(), 0, 4);
			writer.endElement("", "e", "");
		}
		writer.endElement("", "r", "");
		writer.endDocument();
		documents.push_back(out.str());
		documents.back().replace(documents.back().rfind("c999"), 4, "c000");
	}
	for (DV::VocabularyImpl impl: {DV::VOC_MAP, DV::VOC_HASH, DV::VOC_VECTOR})
	{
		FastInfosetParser reused(impl);
		for (std::size_t d = 0; d < documents.size(); ++d)
		{
			SCOPED_TRACE(counts[d]);
			const Parsed parsed = parse(documents[d], impl);
			const Vocabulary<std::string>& chunks = *parsed.pVocabulary->vocabulary(DV::CHARACTER_CONTENT_CHUNK);
			const unsigned int expected = counts[d] + (impl == DV::VOC_VECTOR ? 3 : 2);
			ASSERT_EQ(expected, chunks.size()) << "impl " << impl;
			EXPECT_EQ("c000", chunks.value(1));
			EXPECT_EQ(chunk(impl == DV::VOC_VECTOR ? 0 : counts[d] - 1), chunks.value(expected - 2));
			EXPECT_EQ("c998", chunks.value(expected - 1));
			EXPECT_EQ(parse(documents[d], DV::VOC_VECTOR).events, parsed.events);
			reused.parseMemoryNP(documents[d].data(), documents[d].size());
			expectSameVocabulary(*parsed.pVocabulary, reused.vocabulary());
		}
	}
}


TEST(ParserTableKindsRepeatTest, AReusedParserReadsDocumentsThatRepeatTheLastOnesValuesAlike)
{
	// Text and attribute values as literals (a vector writer repeats them
	// literally), in documents that repeat the one before in whole or in
	// part, repeat a value of their own, or break off: one parser for all
	// takes each as a parser made for it does.
	const auto document = [](const std::vector<int>& values)
	{
		std::ostringstream out;
		FastInfosetWriter writer(out, false, DV::VOC_VECTOR);
		writer.startDocument();
		writer.startElement("", "r", "", Korvo::XML::AttributesImpl());
		for (int v: values)
		{
			const std::string text = "value " + std::to_string(v);
			Korvo::XML::AttributesImpl attributes;
			attributes.addAttribute("", "a", "a", "CDATA", "attribute " + std::to_string(v % 7 ? v : 0));
			writer.startElement("", "e", "", attributes);
			writer.characters(text.data(), 0, static_cast<int>(text.size()));
			writer.endElement("", "e", "");
		}
		writer.endElement("", "r", "");
		writer.endDocument();
		return out.str();
	};
	std::vector<int> base;
	for (int v = 1; v <= 40; ++v) base.push_back(v);
	std::vector<int> repeats = base, departs = base, shifted = base, longer = base;
	repeats[30] = 5;
	departs[10] = 99;
	shifted.insert(shifted.begin(), 77);
	for (int v = 41; v <= 300; ++v) longer.push_back(v);
	const std::string a = document(base), b = document(repeats), c = document(departs), d = document(shifted), e = document(longer);
	const std::string broken = a.substr(0, a.size()*2/3);
	const std::string* sequence[] = {&a, &a, &b, &a, &c, &a, &broken, &a, &d, &a, &e, &a, &e, &b, &b, &broken, &b};
	for (DV::VocabularyImpl impl: {DV::VOC_MAP, DV::VOC_HASH})
	{
		FastInfosetParser reused(impl);
		for (std::size_t i = 0; i < sizeof(sequence)/sizeof(sequence[0]); ++i)
		{
			SCOPED_TRACE(i);
			const std::string& fis = *sequence[i];
			Korvo::FastInfoset::Test::PlainSaxRecorder recorder;
			reused.setContentHandler(&recorder);
			if (&fis == &broken)
			{
				EXPECT_THROW(reused.parseMemoryNP(fis.data(), fis.size()), Korvo::Exception);
				continue;
			}
			reused.parseMemoryNP(fis.data(), fis.size());
			const Parsed made = parse(fis, impl);
			EXPECT_EQ(made.events, recorder.events());
			expectSameVocabulary(*made.pVocabulary, reused.vocabulary());
		}
	}
}


namespace {


std::string repeatingMessage(const std::string& prefix, const std::string& attribute, bool longName = false, bool numeric = false)
	/// A message of literal names, with a namespace declaration.
{
	std::ostringstream out;
	FastInfosetWriter writer(out, false, DV::VOC_MAP);
	writer.setShortestLiterals(numeric);
	Korvo::XML::AttributesImpl attributes;
	attributes.addAttribute("", "id", "id", "", numeric ? "12345678" : "7");
	attributes.addAttribute("urn:a", attribute, prefix + ":" + attribute, "", "v");
	const Korvo::XML::AttributesImpl none;
	writer.startDocument();
	writer.startPrefixMapping(prefix, "urn:a");
	writer.startElement("urn:a", "m", prefix + ":m", none);
	const std::string x = longName ? std::string(100, 'x') : std::string("x");
	writer.emptyElement("urn:a", x, prefix + ":" + x, attributes);
	if (!numeric) writer.emptyElement("", "y", "y", attributes);
	writer.endElement("urn:a", "m", prefix + ":m");
	writer.endPrefixMapping(prefix);
	writer.endDocument();
	return out.str();
}


void parseInto(FastInfosetParser& parser, Korvo::FastInfoset::Test::PlainSaxRecorder& recorder, const std::string& fis, bool prefixes)
{
	parser.setFeature(Korvo::XML::XMLReader::FEATURE_NAMESPACE_PREFIXES, prefixes);
	parser.setContentHandler(&recorder);
	parser.parseMemoryNP(fis.data(), fis.size());
}


} // namespace


TEST(ParserTableKindsRepeatTest, ANameRepeatingTheLastOneAddedKeepsItsText)
{
	// <x1><x2><x9><x8/></x9></x2></x1> with x9 turned into a repeat of x2,
	// the local name added last: the element it names still ends as x2
	// after x8 is read, whatever the tables.
	std::ostringstream out;
	FastInfosetWriter writer(out, false, DV::VOC_MAP);
	const Korvo::XML::AttributesImpl none;
	writer.startDocument();
	for (const char* name: {"x1", "x2", "x9", "x8"}) writer.startElement("", name, "", none);
	for (const char* name: {"x8", "x9", "x2", "x1"}) writer.endElement("", name, "");
	writer.endDocument();
	std::string fis = out.str();
	fis.replace(fis.rfind("x9"), 2, "x2");
	const std::vector<std::string> expected = parse(fis, DV::VOC_VECTOR).events;
	ASSERT_EQ(std::string::npos, expected.back().find("x9"));
	for (DV::VocabularyImpl impl: {DV::VOC_MAP, DV::VOC_HASH}) EXPECT_EQ(expected, parse(fis, impl).events) << impl;
}


TEST(ParserTableKindsRepeatTest, AReusedParserReadsDocumentsThatRepeatTheLastOnesNamesAlike)
{
	// Documents that repeat the one before, in part or whole, or break off,
	// or have a long name where the one before had a short one, or end with
	// names that are not read in place (after a value in a restricted
	// alphabet), through one parser: the events and tables of a parser whose
	// tables were made for the document, with either setting of the
	// qualified names.
	struct Message
	{
		const char* prefix;
		const char* attribute;
		bool truncated;
		bool longName;
		bool numeric;
	};
	const Message messages[] = {{"p", "n", false, false, false}, {"p", "n", false, false, false}, {"p", "n", false, false, false},
		{"p", "k", false, false, false}, {"p", "k", false, false, false}, {"p", "n", false, false, false}, {"q", "n", false, false, false},
		{"p", "n", false, false, false}, {"p", "n", true, false, false}, {"p", "n", false, false, false}, {"p", "n", false, false, false},
		{"p", "n", false, true, false}, {"p", "n", false, false, false}, {"p", "k", false, false, true}, {"p", "n", false, false, false}};
	for (DV::VocabularyImpl impl: {DV::VOC_MAP, DV::VOC_HASH, DV::VOC_VECTOR})
	{
		const DV empty(impl);
		FastInfosetParser reused(impl);
		for (std::size_t i = 0; i < sizeof(messages)/sizeof(messages[0]); ++i)
		{
			SCOPED_TRACE(i);
			const Message& message = messages[i];
			std::string fis = repeatingMessage(message.prefix, message.attribute, message.longName, message.numeric);
			if (message.truncated) fis.resize(fis.size() - 4);

			const bool prefixes = i != 7;
			Korvo::FastInfoset::Test::PlainSaxRecorder expected;
			FastInfosetParser made(empty);
			Korvo::FastInfoset::Test::PlainSaxRecorder recorder;
			if (message.truncated)
			{
				EXPECT_THROW(parseInto(made, expected, fis, prefixes), Korvo::Exception);
				EXPECT_THROW(parseInto(reused, recorder, fis, prefixes), Korvo::Exception);
			}
			else
			{
				parseInto(made, expected, fis, prefixes);
				parseInto(reused, recorder, fis, prefixes);
			}
			EXPECT_EQ(expected.events(), recorder.events());
			expectSameVocabulary(made.vocabulary(), reused.vocabulary());
		}
	}
}


TEST(ParserTableKindsRepeatTest, AParserMadeAfterAnotherReadsAsAFreshOneWhateverCameBetween)
{
	// A parser made for each message takes over the names its predecessor
	// on the thread recorded, with that parser's tables. Whatever came in
	// between (another vocabulary using those tables, a document that broke
	// off, another setting, other names, a predecessor with copied tables),
	// it reads as a parser whose tables were made for the message.
	enum Between { NOTHING, OTHER_VOCABULARY, BROKE_OFF, NO_PREFIXES, OTHER_NAMES, COPIED_TABLES };
	const Between steps[] = {NOTHING, NOTHING, OTHER_VOCABULARY, NOTHING, BROKE_OFF, NOTHING, NO_PREFIXES, NOTHING,
		OTHER_NAMES, NOTHING, COPIED_TABLES, NOTHING};
	const std::string fis = repeatingMessage("p", "n");
	for (DV::VocabularyImpl impl: {DV::VOC_MAP, DV::VOC_HASH, DV::VOC_VECTOR})
	{
		const DV empty(impl);
		for (std::size_t i = 0; i < sizeof(steps)/sizeof(steps[0]); ++i)
		{
			SCOPED_TRACE(i);
			const Between between = steps[i];
			const std::string next = between == OTHER_NAMES ? repeatingMessage("q", "k", true) : fis;
			const bool prefixes = between != NO_PREFIXES;
			Korvo::FastInfoset::Test::PlainSaxRecorder expected;
			FastInfosetParser reference(empty);
			parseInto(reference, expected, next, prefixes);
			{
				std::unique_ptr<FastInfosetParser> pBefore(between == COPIED_TABLES ? new FastInfosetParser(empty) : new FastInfosetParser(impl));
				Korvo::FastInfoset::Test::PlainSaxRecorder ignored;
				parseInto(*pBefore, ignored, fis, true);
				if (between == BROKE_OFF)
				{
					EXPECT_THROW(parseInto(*pBefore, ignored, fis.substr(0, fis.size() - 4), true), Korvo::Exception);
				}
			}
			if (between == OTHER_VOCABULARY)
			{
				// Takes the tables just left and writes other names where the message's were.
				DV other(impl);
				bool existed;
				for (DV::ID id: {DV::PREFIX, DV::NAMESPACE_NAME, DV::LOCAL_NAME})
				{
					for (const char* value: {"zz", "urn:z", "zzz", "z"}) other.index(id, value, existed);
				}
				for (unsigned int local = 1; local < 4; ++local) other.elementVocabulary()->index(QualifiedNameEntry(2, 2, local), existed);
			}
			Korvo::FastInfoset::Test::PlainSaxRecorder recorder;
			FastInfosetParser made(impl);
			parseInto(made, recorder, next, prefixes);
			EXPECT_EQ(expected.events(), recorder.events());
			expectSameVocabulary(reference.vocabulary(), made.vocabulary());
		}
	}
}


TEST(ParserTableKindsRepeatTest, ANewParsersFirstDocumentStartsFromNewTablesWhateverWasAddedBefore)
{
	// A new parser's first document skips emptying the tables that its
	// vocabulary has just made, unless something was added to them since.
	const std::string fis = repeatingMessage("p", "n");
	for (DV::VocabularyImpl impl: {DV::VOC_MAP, DV::VOC_HASH, DV::VOC_VECTOR})
	{
		const DV empty(impl);
		for (int added = 0; added < 3; ++added)
		{
			SCOPED_TRACE(added);
			Korvo::FastInfoset::Test::PlainSaxRecorder expected;
			FastInfosetParser reference(empty);
			parseInto(reference, expected, fis, true);
			FastInfosetParser parser(impl);
			bool existed;
			if (added == 1) parser.vocabulary().vocabulary(DV::LOCAL_NAME)->index("stale", existed);
			if (added == 2) parser.getQNameVocabulary(true).index(QualifiedNameEntry(0, 0, 1), existed);
			Korvo::FastInfoset::Test::PlainSaxRecorder recorder;
			parseInto(parser, recorder, fis, true);
			EXPECT_EQ(expected.events(), recorder.events());
			expectSameVocabulary(reference.vocabulary(), parser.vocabulary());
		}
	}
}


namespace {


struct HeldVocabulary: public FISDocumentHandler
	/// Keeps the vocabulary it is given, as a handler that reads its tables
	/// during the document may.
{
	const DV* pHeld = nullptr;
	DV own;

	void setDocumentVocabulary(const DV& vocabulary) override { pHeld = &vocabulary; }
	DV& getDocumentVocabulary() override { return own; }
	const DV& getDocumentVocabulary() const override { return own; }
	void setWriteXMLDeclaration(bool) override {}
	void setExternalVocabulary(const Korvo::XML::XMLString&, const DV&) override {}
};


class TableProbe: public Korvo::XML::DefaultHandler
	/// Notes the sizes of the name tables at each element start, as
	/// vocabulary() or a document handler holding them sees them, and throws
	/// at the given element instead.
{
public:
	TableProbe(const FastInfosetParser& parser, const HeldVocabulary* pHandler, int throwAt): _parser(parser), _pHandler(pHandler), _throwAt(throwAt)
	{
	}

	void startElement(const Korvo::XML::XMLString&, const Korvo::XML::XMLString& localName, const Korvo::XML::XMLString&, const Korvo::XML::Attributes&) override
	{
		if (int(sizes.size()) + 1 == _throwAt) throw std::runtime_error("stop");
		const DV& vocabulary = _pHandler ? *_pHandler->pHeld : _parser.vocabulary();
		std::ostringstream line;
		line << localName;
		for (DV::ID id: {DV::PREFIX, DV::NAMESPACE_NAME, DV::LOCAL_NAME}) line << ' ' << vocabulary.vocabulary(id)->size();
		line << ' ' << vocabulary.elementVocabulary()->size() << ' ' << vocabulary.attributeVocabulary()->size();
		sizes.push_back(line.str());
	}

	std::vector<std::string> sizes;

private:
	const FastInfosetParser& _parser;
	const HeldVocabulary* _pHandler;
	int _throwAt;
};


} // namespace


TEST(ParserTableKindsRepeatTest, TablesLookedAtDuringADocumentStandAsEachNameIsRead)
{
	// A reused parser grows the tables for the names that repeat the last
	// document's only when something needs them: a handler that reads
	// vocabulary() at each element, or a document handler that holds the
	// tables, or a throw that stops the document, finds them as in a parser
	// whose tables were made for the document, and the next document reads
	// alike. Each throw follows a whole document, whose names it repeats.
	const std::string fis = repeatingMessage("p", "n");
	for (DV::VocabularyImpl impl: {DV::VOC_MAP, DV::VOC_HASH, DV::VOC_VECTOR})
	{
		for (bool held: {false, true})
		{
			const DV empty(impl);
			FastInfosetParser reused(impl);
			HeldVocabulary reusedHandler;
			if (held) reused.setDocumentHandler(&reusedHandler);
			for (int throwAt: {0, 0, 1, 0, 2, 0, 3, 0})
			{
				SCOPED_TRACE(std::to_string(impl) + (held ? " held " : " ") + std::to_string(throwAt));
				FastInfosetParser made(empty);
				HeldVocabulary madeHandler;
				if (held) made.setDocumentHandler(&madeHandler);
				TableProbe expected(made, held ? &madeHandler : nullptr, throwAt);
				TableProbe probe(reused, held ? &reusedHandler : nullptr, throwAt);
				made.setContentHandler(&expected);
				reused.setContentHandler(&probe);
				if (throwAt)
				{
					EXPECT_THROW(made.parseMemoryNP(fis.data(), fis.size()), std::runtime_error);
					EXPECT_THROW(reused.parseMemoryNP(fis.data(), fis.size()), std::runtime_error);
				}
				else
				{
					made.parseMemoryNP(fis.data(), fis.size());
					reused.parseMemoryNP(fis.data(), fis.size());
				}
				EXPECT_EQ(expected.sizes, probe.sizes);
				expectSameVocabulary(made.vocabulary(), reused.vocabulary());
			}
		}
	}
}
