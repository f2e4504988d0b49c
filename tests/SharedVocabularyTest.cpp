//
// SharedVocabularyTest.cpp
//
// Messages written against an external vocabulary in one call and read by a
// parser that was given that vocabulary: exact bytes, events, and tables that
// start from the vocabulary for every message.
//

#include "Korvo/FastInfoset/Decoder.h"
#include "Korvo/FastInfoset/FISException.h"
#include "Korvo/FastInfoset/FastInfosetParser.h"
#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include "Korvo/FastInfoset/MapVocabulary.h"
#include "support/ParserTestSupport.h"
#include "support/SaxRecorder.h"
#include "support/ExceptionMatchers.h"
#include "Poco/SAX/AttributesImpl.h"
#include <gtest/gtest.h>
#include <sstream>
#include <thread>

using namespace Korvo::FastInfoset;
using DV = DocumentVocabulary;
namespace T = Korvo::FastInfoset::Test;


namespace {


const std::string URI = "urn:v";


DV sharedVocabulary(DV::VocabularyImpl impl, const std::string& uri = std::string())
	/// The local names a and b, the element a and the value "v".
{
	DV voc(uri, impl);
	bool existed;
	voc.vocabulary(DV::LOCAL_NAME)->index("a", existed);
	voc.vocabulary(DV::LOCAL_NAME)->index("b", existed);
	voc.elementVocabulary()->index(QualifiedNameEntry(0, 0, 1), existed);
	voc.vocabulary(DV::CHARACTER_CONTENT_CHUNK)->index("v", existed);
	return voc;
}


std::string message(const std::string& child, const DV* pVocabulary)
	/// <a><child>v</child></a>, against pVocabulary when given.
{
	std::ostringstream out;
	FastInfosetWriter writer(out);
	if (pVocabulary) writer.useExternalVocabulary(URI, *pVocabulary);
	Korvo::XML::AttributesImpl none;
	writer.startDocument();
	writer.startElement("", "a", "", none);
	writer.startElement("", child, "", none);
	writer.characters(std::string("v"));
	writer.endElement("", child, "");
	writer.endElement("", "a", "");
	writer.endDocument();
	return out.str();
}


std::vector<std::string> parse(FastInfosetParser& parser, const std::string& document)
{
	T::PlainSaxRecorder recorder;
	parser.setContentHandler(&recorder);
	parser.parseMemoryNP(document.data(), document.size());
	return recorder.contentEvents();
}


} // namespace


TEST(SharedVocabularyTest, WriterNamesTheVocabularyAndWritesItsEntriesAsIndices)
{
	const DV voc = sharedVocabulary(DV::VOC_MAP);
	// Header with an initial vocabulary that only names urn:v, then <a> by
	// index, <b> with its local name by index, "v" by index, the ends.
	EXPECT_EQ(T::hexOf(T::bytesOf("E0 00 00 01 20 10 00 04 75 72 6E 3A 76 00 3C 81 A0 FF F0")), T::hexOf(message("b", &voc)));
	// Vector tables are copied into tables that find values, index for index.
	const DV listed(voc, DV::VOC_VECTOR);
	EXPECT_EQ(message("b", &voc), message("b", &listed));

	// What is added to the document vocabulary before the document is announced.
	std::ostringstream out;
	FastInfosetWriter extended(out);
	extended.useExternalVocabulary(URI, voc);
	bool existed;
	extended.getDocumentVocabulary().vocabulary(DV::PREFIX)->index("p", existed);
	extended.startDocument();
	EXPECT_EQ("E0 00 00 01 20 12 00 04 75 72 6E 3A 76 00 00 70", T::hexOf(out.str()));

	FastInfosetWriter writer(std::cout);
	EXPECT_THROW_MESSAGE(writer.useExternalVocabulary("", voc), Korvo::InvalidArgumentException, "An external vocabulary needs a URI");
	EXPECT_THROW(writer.useExternalVocabulary(URI, DV(DV::DONT_INITIALIZE)), Korvo::InvalidArgumentException);
}


TEST(SharedVocabularyTest, ParserStartsEveryMessageFromTheGivenVocabulary)
{
	const DV voc = sharedVocabulary(DV::VOC_MAP);
	for (DV::VocabularyImpl impl: {DV::VOC_MAP, DV::VOC_VECTOR, DV::VOC_HASH})
	{
		FastInfosetParser parser(impl);
		parser.addExternalVocabulary(URI, DV(voc, impl));
		const std::string withB = message("b", &voc);
		const std::string withC = message("c", &voc);
		const std::vector<std::string> eventsB = parse(parser, withB);
		EXPECT_EQ(T::eventList({"startElement(|a|)", "startElement(|b|)", "characters(v)", "endElement(|b|)", "endElement(|a|)"}), eventsB) << impl;

		// c is added to the tables, and gone again for the next message; a
		// document without the vocabulary in between makes no difference.
		for (const std::string* pDocument: {&withC, &withB, &withC})
		{
			parse(parser, *pDocument);
			const unsigned int localNames = pDocument == &withC ? 4 : 3;
			EXPECT_EQ(localNames, parser.vocabulary().vocabulary(DV::LOCAL_NAME)->size()) << impl;
			EXPECT_EQ(2u, parser.vocabulary().vocabulary(DV::CHARACTER_CONTENT_CHUNK)->size()) << impl;
		}
		parse(parser, message("b", nullptr));
		EXPECT_EQ(eventsB, parse(parser, withB)) << impl;
		EXPECT_EQ("b", parser.vocabulary().vocabulary(DV::LOCAL_NAME)->value(2)) << impl;
		EXPECT_EQ(3u, parser.vocabulary().vocabulary(DV::LOCAL_NAME)->size()) << impl;
	}
}


TEST(SharedVocabularyTest, ReusedParserResolvesNamesAsAFreshOne)
{
	// Names of the vocabulary stay resolved from one message to the next
	// only while the tables hold them as they were: the same vocabulary,
	// read into the same tables, with the same features.
	const DV voc = sharedVocabulary(DV::VOC_MAP);
	DV swapped(DV::VOC_MAP);
	bool existed;
	swapped.vocabulary(DV::LOCAL_NAME)->index("b", existed);
	swapped.vocabulary(DV::LOCAL_NAME)->index("a", existed);
	swapped.elementVocabulary()->index(QualifiedNameEntry(0, 0, 1), existed);
	swapped.vocabulary(DV::CHARACTER_CONTENT_CHUNK)->index("v", existed);
	const std::string withB = message("b", &voc);
	const std::string withC = message("c", &voc);
	const std::string plain = message("a", nullptr);
	enum Change { NONE, SWAP, PREFIXES };
	const struct { Change change; const std::string* pDocument; } steps[] = {
		{NONE, &withB}, {NONE, &withC}, {NONE, &withB}, {SWAP, &withB}, {NONE, &withC},
		{NONE, &plain}, {NONE, &withB}, {PREFIXES, &withB}, {NONE, &withC}, {SWAP, &withC}};
	for (DV::VocabularyImpl impl: {DV::VOC_MAP, DV::VOC_VECTOR, DV::VOC_HASH})
	{
		FastInfosetParser reused(impl);
		const DV* pGiven = &voc;
		bool prefixes = false;
		reused.addExternalVocabulary(URI, DV(*pGiven, impl));
		for (std::size_t i = 0; i < sizeof(steps)/sizeof(steps[0]); ++i)
		{
			if (steps[i].change == SWAP)
			{
				pGiven = pGiven == &voc ? &swapped : &voc;
				reused.addExternalVocabulary(URI, DV(*pGiven, impl));
			}
			if (steps[i].change == PREFIXES) prefixes = !prefixes;
			reused.setFeature(Korvo::XML::XMLReader::FEATURE_NAMESPACE_PREFIXES, prefixes);
			FastInfosetParser fresh(impl);
			fresh.addExternalVocabulary(URI, DV(*pGiven, impl));
			fresh.setFeature(Korvo::XML::XMLReader::FEATURE_NAMESPACE_PREFIXES, prefixes);
			EXPECT_EQ(parse(fresh, *steps[i].pDocument), parse(reused, *steps[i].pDocument)) << impl << " step " << i;
		}
	}
}


TEST(SharedVocabularyTest, VocabularyOfTheConstructorCountsAsGiven)
{
	const DV voc = sharedVocabulary(DV::VOC_MAP, URI);
	FastInfosetParser parser(voc);
	for (const char* child: {"c", "b", "c"})
	{
		parse(parser, message(child, &voc));
		EXPECT_EQ(child[0] == 'c' ? 4u : 3u, parser.vocabulary().vocabulary(DV::LOCAL_NAME)->size()) << child;
	}

	// A parser that was not given the vocabulary looks for it at its URI.
	FastInfosetParser other;
	EXPECT_THROW(parse(other, message("b", &voc)), Korvo::Exception);
}


TEST(SharedVocabularyTest, HeaderTellsTheURI)
{
	const DV voc = sharedVocabulary(DV::VOC_HASH);
	for (const auto& expected: {std::make_pair(message("b", &voc), URI), std::make_pair(message("b", nullptr), std::string())})
	{
		BitStreamReader reader(expected.first.data(), static_cast<unsigned int>(expected.first.size()));
		EXPECT_EQ(expected.second, Decoder::externalVocabularyURI(reader));
	}
}


TEST(SharedVocabularyTest, CopyIntoOtherTablesKeepsEveryIndex)
{
	DV listed(DV::VOC_VECTOR);
	bool existed;
	for (const char* name: {"a", "b", "a", "c"}) listed.vocabulary(DV::LOCAL_NAME)->index(name, existed);
	const DV mapped(listed, DV::VOC_MAP);
	const Vocabulary<std::string>& names = *mapped.vocabulary(DV::LOCAL_NAME);
	ASSERT_EQ(5u, names.size());
	EXPECT_EQ("a", names.value(3));
	EXPECT_EQ("c", names.value(4));
	EXPECT_EQ(1u, names.exists("a", existed));
	EXPECT_TRUE(dynamic_cast<const MapVocabulary<std::string>*>(&names));
}


TEST(SharedVocabularyTest, WriterReusesTheLastWritersCopyOnlyWhereItIsEqual)
{
	// A writer leaves its copy of the external vocabulary to the next one on
	// the thread, which takes it only where it equals the vocabulary given.
	// Each case written after the others gives the bytes of a writer on a
	// fresh thread.
	const DV learnt = [] {
		std::ostringstream out;
		FastInfosetWriter writer(out);
		Korvo::XML::AttributesImpl attributes;
		attributes.addAttribute("", "k", "k", "CDATA", "v1");
		writer.startDocument();
		writer.startElement("urn:n", "a", "p:a", attributes);
		writer.characters(std::string("\n  "));
		writer.endElement("urn:n", "a", "p:a");
		writer.endDocument();
		return DV(writer.getDocumentVocabulary());
	}();
	DV larger(learnt);
	bool existed;
	larger.vocabulary(DV::CHARACTER_CONTENT_CHUNK)->index("extra", existed);
	DV full(learnt);
	for (int i = 1; i < 19; ++i) full.vocabulary(DV::OTHER_STRING)->index("c" + std::to_string(i), existed);
	const DV listed(learnt, DV::VOC_VECTOR);
	DV shared(learnt);
	const auto document = [](FastInfosetWriter& w, const std::string& value, bool fail, bool full) {
		Korvo::XML::AttributesImpl attributes;
		attributes.addAttribute("", "k", "k", "CDATA", value);
		w.startDocument();
		w.startElement("urn:n", "a", "p:a", attributes);
		w.characters(std::string("\n  "));
		w.emptyElement("", value, value, attributes);
		const std::string note = "note " + value;
		if (full)
		{
			// No room for the comment in the fixed table: the writer stops there.
			EXPECT_THROW_MESSAGE(w.comment(note.c_str(), 0, static_cast<int>(note.size())), Korvo::PoolOverflowException, "Vocabulary hash table full");
			return;
		}
		w.comment(note.c_str(), 0, static_cast<int>(note.size()));
		if (fail)
		{
			// Abandoned after the throw, in the middle of the document.
			EXPECT_THROW(w.endDTD(), FISException);
			return;
		}
		w.characters(std::string("extra"));
		w.endElement("urn:n", "a", "p:a");
		w.endDocument();
	};
	struct Case
	{
		const DV* pVocabulary;
		std::string value;
		bool fail;
		bool damage;
			/// Truncates the document vocabulary once the document is written.
	};
	const Case cases[] = {
		{&learnt, "v1", false, false}, {&learnt, "v2", false, false}, {&learnt, "v1", true, false},
		{&learnt, "v1", false, true}, {&learnt, "v1", false, false}, {&larger, "v1", false, false},
		{&listed, "v2", false, false}, {&full, "v1", false, false}, {&shared, "v1", false, false},
	};
	const auto write = [&](const Case& c) {
		std::ostringstream out;
		{
			FastInfosetWriter writer(out);
			writer.useExternalVocabulary(URI, *c.pVocabulary);
			document(writer, c.value, c.fail, c.pVocabulary == &full);
			if (c.damage) writer.getDocumentVocabulary().vocabulary(DV::LOCAL_NAME)->truncate(1);
		}
		return T::hexOf(out.str());
	};
	std::vector<std::string> fresh;
	for (const Case& c: cases) std::thread([&] { fresh.push_back(write(c)); }).join();
	for (int pass = 0; pass < 2; ++pass)
	{
		// The shared vocabulary changes in place between the passes.
		shared = pass == 0 ? learnt : larger;
		if (pass == 1) std::thread([&] { fresh.back() = write(cases[8]); }).join();
		for (std::size_t k = 0; k < std::size(cases); ++k)
		{
			const std::size_t i = pass == 0 ? k : std::size(cases) - 1 - k;
			SCOPED_TRACE(i);
			EXPECT_EQ(fresh[i], write(cases[i]));
		}
	}
}
