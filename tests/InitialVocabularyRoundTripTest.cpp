//
// InitialVocabularyRoundTripTest.cpp
//
// A vocabulary the application prepares travels in the document header and
// comes back table by table; the document then refers to it by index.
//

#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include "Korvo/FastInfoset/FastInfosetParser.h"
#include "Korvo/FastInfoset/DocumentVocabulary.h"
#include "support/SaxRecorder.h"
#include <gtest/gtest.h>
#include <sstream>

using namespace Korvo::FastInfoset;
using Korvo::FastInfoset::Test::SaxRecorder;


namespace
{
	using ID = DocumentVocabulary::ID;

	const ID IDENTIFIER_TABLES[] =
	{
		DocumentVocabulary::PREFIX, DocumentVocabulary::NAMESPACE_NAME, DocumentVocabulary::LOCAL_NAME,
		DocumentVocabulary::OTHER_NCNAME, DocumentVocabulary::OTHER_URI
	};

	DocumentVocabulary preparedVocabulary()
	{
		DocumentVocabulary voc(DocumentVocabulary::VOC_MAP);
		bool existed;
		voc.index(DocumentVocabulary::PREFIX, "p", existed);
		voc.index(DocumentVocabulary::PREFIX, "q", existed);
		voc.index(DocumentVocabulary::NAMESPACE_NAME, "urn:p", existed);
		voc.index(DocumentVocabulary::LOCAL_NAME, "order", existed);
		voc.index(DocumentVocabulary::LOCAL_NAME, "line", existed);
		voc.index(DocumentVocabulary::OTHER_NCNAME, "target", existed);
		voc.index(DocumentVocabulary::OTHER_URI, "http://example.com/x.dtd", existed);
		voc.restrictedAlphabets().add("abc");
		return voc;
	}

	std::string writeWith(const DocumentVocabulary& voc)
	{
		std::ostringstream out;
		FastInfosetWriter writer(out, false, voc);
		writer.startDocument();
		writer.startPrefixMapping("p", "urn:p");
		writer.startElement("urn:p", "order", "p:order", Korvo::XML::AttributesImpl());
		writer.emptyElement("", "line", "line");
		writer.endElement("urn:p", "order", "p:order");
		writer.endPrefixMapping("p");
		writer.endDocument();
		return out.str();
	}
}


TEST(InitialVocabularyRoundTripTest, TablesComeBackEntryByEntry)
{
	const DocumentVocabulary prepared = preparedVocabulary();
	const std::string document = writeWith(prepared);

	FastInfosetParser parser(DocumentVocabulary::VOC_MAP);
	parser.parseMemoryNP(document.data(), document.size());
	const DocumentVocabulary& read = parser.vocabulary();

	for (ID id: IDENTIFIER_TABLES)
	{
		const Vocabulary<std::string>& expected = *prepared.vocabulary(id);
		const Vocabulary<std::string>& actual = *read.vocabulary(id);
		SCOPED_TRACE(id);
		ASSERT_LE(expected.size(), actual.size());
		for (unsigned i = 0; i < expected.size(); ++i) EXPECT_EQ(expected.value(i), actual.value(i));
	}
	ASSERT_EQ(16u, read.restrictedAlphabets().alphabets().size());
	EXPECT_EQ("abc", read.restrictedAlphabets().alphabet(16).alphabet());
}


TEST(InitialVocabularyRoundTripTest, DocumentUsesIndicesFromTheFirstOccurrence)
{
	const std::string plain = writeWith(DocumentVocabulary(DocumentVocabulary::VOC_MAP));
	const std::string prepared = writeWith(preparedVocabulary());

	// With the names announced, "urn:p", "p", "order" and "line" are written
	// as indices in the body: the body is shorter than the plain document's.
	const std::size_t header = prepared.find(std::string("\x38\xCF", 2));
	ASSERT_NE(std::string::npos, header);
	EXPECT_LT(prepared.size() - header, plain.size() - 5);
	EXPECT_EQ(std::string::npos, prepared.find("order", header));
	EXPECT_EQ(std::string::npos, prepared.find("urn:p", header));

	// And both read back as the same events.
	SaxRecorder fromPlain, fromPrepared;
	FastInfosetParser parser;
	parser.setContentHandler(&fromPlain);
	parser.parseMemoryNP(plain.data(), plain.size());
	parser.setContentHandler(&fromPrepared);
	parser.parseMemoryNP(prepared.data(), prepared.size());
	EXPECT_EQ(fromPlain.events(), fromPrepared.events());
}
