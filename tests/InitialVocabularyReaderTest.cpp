//
// InitialVocabularyReaderTest.cpp
//
// Reading the initial vocabulary of a document header: each table, the
// encoded character string forms, name surrogates, external vocabularies
// and broken input.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//

#include "Korvo/FastInfoset/Decoder.h"
#include "Korvo/FastInfoset/DocumentVocabulary.h"
#include "Korvo/FastInfoset/FISDocumentHandler.h"
#include "Korvo/FastInfoset/FISException.h"
#include "support/BitTesting.h"
#include "support/ExceptionMatchers.h"
#include <gtest/gtest.h>
#include <sstream>
#include <vector>


using namespace Korvo::FastInfoset;
using namespace Tests::Bits;


namespace {


const unsigned int ABSENT = 0xFFFFFFFF;


class ExternalVocabularyRecorder: public FISDocumentHandler
	/// Records the external vocabularies announced to a document handler.
{
public:
	ExternalVocabularyRecorder():
		_vocabulary(DocumentVocabulary::DONT_INITIALIZE)
	{
	}

	void setDocumentVocabulary(const DocumentVocabulary&) override
	{
	}

	DocumentVocabulary& getDocumentVocabulary() override
	{
		return _vocabulary;
	}

	const DocumentVocabulary& getDocumentVocabulary() const override
	{
		return _vocabulary;
	}

	void setWriteXMLDeclaration(bool) override
	{
	}

	void setExternalVocabulary(const Korvo::XML::XMLString& uri, const DocumentVocabulary& voc) override
	{
		uris.push_back(uri);
		_vocabulary = voc;
	}

	std::vector<std::string> uris;

private:
	DocumentVocabulary _vocabulary;
};


void readInitialVocabulary(const std::string& data, DocumentVocabulary& voc, FISDocumentHandler* pHandler = nullptr)
	/// Reads data as an initial vocabulary, which must use it up exactly.
{
	std::istringstream in(data);
	BitStreamReader reader(in);
	Decoder::parseInitialVocabulary(reader, voc, pHandler);
	bool bit;
	EXPECT_FALSE(reader.read(bit)) << "data left after the initial vocabulary";
}


const std::string& value(const DocumentVocabulary& voc, DocumentVocabulary::ID id, unsigned int index)
{
	return voc.vocabulary(id)->value(index);
}


} // namespace


TEST(InitialVocabularyReaderTest, IdentifierTables)
{
	const struct
	{
		const char* flags;
		DocumentVocabulary::ID table;
		unsigned int firstIndex; // after the predefined entry, if any
	}
	cases[] =
	{
		{"0200", DocumentVocabulary::PREFIX, 2},
		{"0100", DocumentVocabulary::NAMESPACE_NAME, 2},
		{"0080", DocumentVocabulary::LOCAL_NAME, 1},
		{"0040", DocumentVocabulary::OTHER_NCNAME, 1},
		{"0020", DocumentVocabulary::OTHER_URI, 1},
	};
	for (const auto& c: cases)
	{
		DocumentVocabulary voc(DocumentVocabulary::VOC_MAP);
		bool existed;
		voc.index(c.table, "from an earlier document", existed);

		// the flag; two entries: "ab", "c"
		readInitialVocabulary(fromHex(c.flags) + fromHex("01 01 6162 00 63"), voc);
		Vocabulary<std::string>& table = *voc.vocabulary(c.table);
		ASSERT_EQ(c.firstIndex + 2, table.size()) << c.flags;
		EXPECT_EQ("ab", table.value(c.firstIndex));
		EXPECT_EQ("c", table.value(c.firstIndex + 1));
	}
}


TEST(InitialVocabularyReaderTest, ValueTablesWithEachEncodedCharacterStringForm)
{
	// Four entries: UTF-8 "hi"; UTF-16 "h\u00E9"; "12" in the numeric
	// alphabet (an unused index, then alphabet 1); the int algorithm (an
	// unused index, then algorithm 4) with the value 7.
	const std::string entries = fromHex("03  01 6869  13 006800E9  20 00 00 12  30 30 33 00000007");
	const struct
	{
		const char* flags;
		DocumentVocabulary::ID table;
	}
	cases[] =
	{
		{"0010", DocumentVocabulary::ATTRIBUTE_VALUE},
		{"0008", DocumentVocabulary::CHARACTER_CONTENT_CHUNK},
		{"0004", DocumentVocabulary::OTHER_STRING},
	};
	for (const auto& c: cases)
	{
		DocumentVocabulary voc(DocumentVocabulary::VOC_MAP);
		readInitialVocabulary(fromHex(c.flags) + entries, voc);
		ASSERT_EQ(5u, voc.vocabulary(c.table)->size()) << c.flags;
		EXPECT_EQ("hi", value(voc, c.table, 1));
		EXPECT_EQ("h\xC3\xA9", value(voc, c.table, 2));
		EXPECT_EQ("12", value(voc, c.table, 3));
		EXPECT_EQ("7", value(voc, c.table, 4));
	}
}


TEST(InitialVocabularyReaderTest, RestrictedAlphabetsAndEncodingAlgorithms)
{
	const std::string data = fromHex(
		"0E10"                     // alphabets, algorithms, prefixes, attribute values
		"01 02 616263 01 7879"     // alphabets "abc" (16) and "xy" (17)
		"00 09") + "http://x/a" +  // one algorithm URI, skipped
		fromHex("00 00 70"         // prefix "p"
		"00 20 00 F0 87");         // "cab" in alphabet 16, two bits a character
	DocumentVocabulary voc(DocumentVocabulary::VOC_MAP);
	readInitialVocabulary(data, voc);

	ASSERT_EQ(17u, voc.restrictedAlphabets().alphabets().size());
	EXPECT_EQ("abc", voc.restrictedAlphabets().alphabet(16).alphabet());
	EXPECT_EQ("xy", voc.restrictedAlphabets().alphabet(17).alphabet());
	EXPECT_EQ("p", value(voc, DocumentVocabulary::PREFIX, 2));
	EXPECT_EQ("cab", value(voc, DocumentVocabulary::ATTRIBUTE_VALUE, 1));
}


TEST(InitialVocabularyReaderTest, NameSurrogates)
{
	const std::string data = fromHex(
		"0003"
		"01 00 04 03 00 00 01"   // elements: local name 5; prefix 1, namespace 1, local name 2
		"00 02 02 00");          // attributes: prefix 3, local name 1
	DocumentVocabulary voc(DocumentVocabulary::VOC_MAP);
	readInitialVocabulary(data, voc);

	const Vocabulary<QualifiedNameEntry>& elements = *voc.elementVocabulary();
	const Vocabulary<QualifiedNameEntry>& attributes = *voc.attributeVocabulary();
	ASSERT_EQ(3u, elements.size());
	EXPECT_TRUE(QualifiedNameEntry(ABSENT, ABSENT, 5) == elements.value(1));
	EXPECT_TRUE(QualifiedNameEntry(1, 1, 2) == elements.value(2));
	ASSERT_EQ(2u, attributes.size());
	EXPECT_TRUE(QualifiedNameEntry(3, ABSENT, 1) == attributes.value(1));
}


TEST(InitialVocabularyReaderTest, WithoutAnyTableIsRefused)
{
	const char* const message = "Initial Vocabulary detected with zero information in it - at least one dictionary required";
	for (const char* flags: {"0000", "E000"})
	{
		DocumentVocabulary voc(DocumentVocabulary::VOC_MAP);
		std::istringstream in(fromHex(flags));
		BitStreamReader reader(in);
		EXPECT_THROW_EXACT(Decoder::parseInitialVocabulary(reader, voc, nullptr), FISException, message);
	}

	// The same, reached from the header flags.
	std::istringstream in(fromHex("E0000001 20 0000"));
	BitStreamReader reader(in);
	std::string declaration;
	Decoder::documentPreHeader(reader, declaration);
	DocumentVocabulary voc(DocumentVocabulary::VOC_MAP);
	EXPECT_THROW_EXACT(Decoder::documentHeader(reader, voc, nullptr), FISException, message);
}


TEST(InitialVocabularyReaderTest, ReachedFromTheHeader)
{
	// header with an initial vocabulary of one prefix "p", then the octet AB
	std::istringstream in(fromHex("E0000001 20 0200 00 00 70 AB"));
	BitStreamReader reader(in);
	std::string declaration;
	Decoder::documentPreHeader(reader, declaration);
	DocumentVocabulary voc(DocumentVocabulary::VOC_MAP);
	Decoder::documentHeader(reader, voc, nullptr);
	EXPECT_EQ("p", value(voc, DocumentVocabulary::PREFIX, 2));
	unsigned char next;
	ASSERT_TRUE(reader.read(next, 8));
	EXPECT_EQ(0xAB, next);
}


TEST(InitialVocabularyReaderTest, TruncatedAnywhere)
{
	// Every section but the external vocabulary, as in the tests above.
	const std::string data = fromHex("0FFF 00 02 616263 00 09") + "http://x/a" + fromHex(
		"00 00 70  00 00 6E  00 00 6C  00 00 63  00 00 75"
		"03 01 6869 13 006800E9 20 00 00 12 30 30 33 00000007"
		"00 01 6869  00 01 6869"
		"00 00 04  00 02 02 00");
	{
		DocumentVocabulary voc(DocumentVocabulary::VOC_MAP);
		readInitialVocabulary(data, voc);
		EXPECT_EQ("u", value(voc, DocumentVocabulary::OTHER_URI, 1));
		EXPECT_EQ("hi", value(voc, DocumentVocabulary::OTHER_STRING, 1));
	}
	for (std::size_t size = 0; size < data.size(); ++size)
	{
		DocumentVocabulary voc(DocumentVocabulary::VOC_MAP);
		std::istringstream in(data.substr(0, size));
		BitStreamReader reader(in);
		EXPECT_THROW(Decoder::parseInitialVocabulary(reader, voc, nullptr), FISException) << "cut after " << size << " octets";
	}
}


TEST(InitialVocabularyReaderTest, ForgedSequenceLengthsEndWithTheData)
{
	// 2^20 + 128 prefixes announced, one present.
	std::istringstream in(fromHex("0200 8FFFFF 00 70"));
	BitStreamReader reader(in);
	DocumentVocabulary voc(DocumentVocabulary::VOC_MAP);
	EXPECT_THROW_EXACT(Decoder::parseInitialVocabulary(reader, voc, nullptr), FISParseException,
		"Unexpected end of stream while parsing string length");
}


TEST(InitialVocabularyReaderTest, DuplicateEntriesFailTheAssertion)
{
	for (const char* data: {
		"0200 00 02 786D6C",     // prefix "xml", already predefined
		"0080 01 00 61 00 61",   // local names "a", "a"
		"0010 01 00 61 00 61",   // attribute values "a", "a"
		"0002 01 00 04 00 04"})  // element names with local name 5, twice
	{
		DocumentVocabulary voc(DocumentVocabulary::VOC_MAP);
		std::istringstream in(fromHex(data));
		BitStreamReader reader(in);
		EXPECT_ASSERTION(Decoder::parseInitialVocabulary(reader, voc, nullptr), "!existed");
	}
}


TEST(InitialVocabularyReaderTest, ExternalVocabularyAlreadyInHandIsNotLoadedAgain)
{
	DocumentVocabulary voc("urn:v", DocumentVocabulary::VOC_MAP);
	bool existed;
	voc.index(DocumentVocabulary::PREFIX, "kept", existed);
	ExternalVocabularyRecorder handler;

	// external vocabulary "urn:v" (no opener knows the scheme), then prefix "p"
	readInitialVocabulary(fromHex("1200 04 75726E3A76 00 00 70"), voc, &handler);
	EXPECT_EQ("kept", value(voc, DocumentVocabulary::PREFIX, 2));
	EXPECT_EQ("p", value(voc, DocumentVocabulary::PREFIX, 3));
	EXPECT_TRUE(handler.uris.empty());
}


TEST(InitialVocabularyReaderTest, ExternalVocabularyThatCannotBeOpened)
{
	const std::string uri = "/nonexistent-korvo/v.fi";
	DocumentVocabulary voc(DocumentVocabulary::VOC_MAP);
	ExternalVocabularyRecorder handler;
	std::istringstream in(fromHex("1000 16") + uri);
	BitStreamReader reader(in);
	EXPECT_THROW_EXACT(Decoder::parseInitialVocabulary(reader, voc, &handler), Korvo::FileNotFoundException, uri);
	EXPECT_TRUE(handler.uris.empty());
}
