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
#include "Korvo/FastInfoset/Encoder.h"
#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include "Korvo/FastInfoset/DocumentVocabulary.h"
#include "Korvo/FastInfoset/FISDocumentHandler.h"
#include "Korvo/FastInfoset/FISException.h"
#include "support/BitTesting.h"
#include "support/ExceptionMatchers.h"
#include "Poco/TemporaryFile.h"
#include <gtest/gtest.h>
#include <fstream>
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
	ExternalVocabularyRecorder(): vocabulary(DocumentVocabulary::DONT_INITIALIZE) {}
	void setDocumentVocabulary(const DocumentVocabulary&) override {}
	DocumentVocabulary& getDocumentVocabulary() override { return vocabulary; }
	const DocumentVocabulary& getDocumentVocabulary() const override { return vocabulary; }
	void setWriteXMLDeclaration(bool) override {}

	void setExternalVocabulary(const Korvo::XML::XMLString& uri, const DocumentVocabulary& voc) override
	{
		uris.push_back(uri);
		vocabulary = voc;
	}

	std::vector<std::string> uris;
	DocumentVocabulary vocabulary;
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


std::string externalVocabulary(const std::string& uri)
	/// An initial vocabulary that names only the external vocabulary uri.
{
	std::ostringstream out;
	BitStreamWriter writer(out, false);
	writer.write(0x1000u, 16);
	writer.write(false);
	Encoder::nonEmptyOctetString(writer, uri);
	return out.str();
}


std::string temporaryFile(const std::string& extension, const std::string& content = "")
{
	std::string path = Korvo::TemporaryFile::tempName() + extension;
	Korvo::TemporaryFile::registerForDeletion(path);
	std::ofstream(path, std::ios::binary) << content;
	return path;
}


std::string documentNaming(const std::string& uri)
	/// A Fast Infoset document <v/> whose initial vocabulary names uri.
{
	std::ostringstream out;
	FastInfosetWriter writer(out);
	writer.startDocument();
	writer.startElement("", "v", "v", Korvo::XML::AttributesImpl());
	writer.endElement("", "v", "v");
	writer.endDocument();
	return fromHex("E0000001 20") + externalVocabulary(uri) + out.str().substr(5);
}


// Four encoded character strings: UTF-8 "hi"; UTF-16 "h\u00E9"; "12" in the
// numeric alphabet (an unused index, then alphabet 1); the int algorithm (an
// unused index, then algorithm 4) with the value 7.
const char ENCODED_STRINGS[] = "03  01 6869  13 006800E9  20 00 00 12  30 30 33 00000007";


} // namespace


TEST(InitialVocabularyReaderTest, StringTables)
{
	const struct
	{
		const char* section; // flags, then the section
		DocumentVocabulary::ID table;
		std::vector<std::string> values; // from index 1
	}
	cases[] =
	{
		{"0200 01 01 6162 00 63", DocumentVocabulary::PREFIX, {"xml", "ab", "c"}},
		{"0100 01 01 6162 00 63", DocumentVocabulary::NAMESPACE_NAME, {"http://www.w3.org/XML/1998/namespace", "ab", "c"}},
		{"0080 01 01 6162 00 63", DocumentVocabulary::LOCAL_NAME, {"ab", "c"}},
		{"0040 01 01 6162 00 63", DocumentVocabulary::OTHER_NCNAME, {"ab", "c"}},
		{"0020 01 01 6162 00 63", DocumentVocabulary::OTHER_URI, {"ab", "c"}},
		{"0010", DocumentVocabulary::ATTRIBUTE_VALUE, {"hi", "h\xC3\xA9", "12", "7"}},
		{"0008", DocumentVocabulary::CHARACTER_CONTENT_CHUNK, {"hi", "h\xC3\xA9", "12", "7"}},
		{"0004", DocumentVocabulary::OTHER_STRING, {"hi", "h\xC3\xA9", "12", "7"}},
	};
	for (const auto& c: cases)
	{
		DocumentVocabulary voc(DocumentVocabulary::VOC_MAP);
		bool existed;
		voc.index(c.table, "from an earlier document", existed);

		std::string data = fromHex(c.section);
		if (data.size() == 2) data += fromHex(ENCODED_STRINGS);
		readInitialVocabulary(data, voc);
		const Vocabulary<std::string>& table = *voc.vocabulary(c.table);
		ASSERT_EQ(c.values.size() + 1, table.size()) << c.section;
		for (std::size_t i = 0; i < c.values.size(); ++i) EXPECT_EQ(c.values[i], table.value(i + 1)) << c.section;
	}
}


TEST(InitialVocabularyReaderTest, AlphabetsAlgorithmsAndNameSurrogates)
{
	const std::string data = fromHex(
		"0E13"                     // alphabets, algorithms, prefixes, attribute values, both surrogate tables
		"01 02 616263 01 7879"     // alphabets "abc" (16) and "xy" (17)
		"00 09") + "http://x/a" +  // one algorithm URI, skipped
		fromHex("00 00 70"         // prefix "p"
		"00 20 00 F0 87"           // "cab" in alphabet 16, two bits a character
		"01 00 04 03 00 00 01"     // elements: local name 5; prefix 1, namespace 1, local name 2
		"00 02 02 00");            // attributes: prefix 3, local name 1
	DocumentVocabulary voc(DocumentVocabulary::VOC_MAP);
	readInitialVocabulary(data, voc);

	ASSERT_EQ(17u, voc.restrictedAlphabets().alphabets().size());
	EXPECT_EQ("abc", voc.restrictedAlphabets().alphabet(16).alphabet());
	EXPECT_EQ("xy", voc.restrictedAlphabets().alphabet(17).alphabet());
	EXPECT_EQ("p", voc.value(DocumentVocabulary::PREFIX, 2));
	EXPECT_EQ("cab", voc.value(DocumentVocabulary::ATTRIBUTE_VALUE, 1));
	ASSERT_EQ(3u, voc.elementVocabulary()->size());
	EXPECT_TRUE(QualifiedNameEntry(ABSENT, ABSENT, 5) == voc.elementVocabulary()->value(1));
	EXPECT_TRUE(QualifiedNameEntry(1, 1, 2) == voc.elementVocabulary()->value(2));
	ASSERT_EQ(2u, voc.attributeVocabulary()->size());
	EXPECT_TRUE(QualifiedNameEntry(3, ABSENT, 1) == voc.attributeVocabulary()->value(1));
}


TEST(InitialVocabularyReaderTest, FromTheHeaderAndWithoutAnyTable)
{
	// header with an initial vocabulary of one prefix "p", then the octet AB
	std::istringstream in(fromHex("E0000001 20 0200 00 00 70 AB"));
	BitStreamReader reader(in);
	std::string declaration;
	Decoder::documentPreHeader(reader, declaration);
	DocumentVocabulary voc(DocumentVocabulary::VOC_MAP);
	Decoder::documentHeader(reader, voc, nullptr);
	EXPECT_EQ("p", voc.value(DocumentVocabulary::PREFIX, 2));
	unsigned char next;
	EXPECT_TRUE(reader.read(next, 8) && next == 0xAB);

	for (const char* flags: {"0000", "E000"}) // padding bits do not count
	{
		std::istringstream empty(fromHex(flags));
		BitStreamReader emptyReader(empty);
		EXPECT_THROW_EXACT(Decoder::parseInitialVocabulary(emptyReader, voc, nullptr), FISException,
			"Initial Vocabulary detected with zero information in it - at least one dictionary required");
	}
}


TEST(InitialVocabularyReaderTest, TruncatedOrForged)
{
	// Every section but the external vocabulary.
	const std::string data = fromHex("0FFF 00 02 616263 00 09") + "http://x/a" +
		fromHex("00 00 70  00 00 6E  00 00 6C  00 00 63  00 00 75") + fromHex(ENCODED_STRINGS) +
		fromHex("00 01 6869  00 01 6869  00 00 04  00 02 02 00");
	DocumentVocabulary complete(DocumentVocabulary::VOC_MAP);
	readInitialVocabulary(data, complete);
	EXPECT_EQ("hi", complete.value(DocumentVocabulary::OTHER_STRING, 1));
	for (std::size_t size = 0; size < data.size(); ++size)
	{
		DocumentVocabulary voc(DocumentVocabulary::VOC_MAP);
		std::istringstream in(data.substr(0, size));
		BitStreamReader reader(in);
		EXPECT_THROW(Decoder::parseInitialVocabulary(reader, voc, nullptr), FISException) << "cut after " << size << " octets";
	}

	// 2^20 + 128 prefixes announced, one present: read one at a time, nothing reserved.
	std::istringstream in(fromHex("0200 8FFFFF 00 70"));
	BitStreamReader reader(in);
	DocumentVocabulary voc(DocumentVocabulary::VOC_MAP);
	EXPECT_THROW_EXACT(Decoder::parseInitialVocabulary(reader, voc, nullptr), FISParseException,
		"Unexpected end of stream while parsing string length");

	for (const char* duplicates: {
		"0200 00 02 786D6C",     // prefix "xml", already predefined
		"0080 01 00 61 00 61",   // local names "a", "a"
		"0010 01 00 61 00 61",   // attribute values "a", "a"
		"0002 01 00 04 00 04"})  // element names with local name 5, twice
	{
		std::istringstream dupIn(fromHex(duplicates));
		BitStreamReader dupReader(dupIn);
		EXPECT_ASSERTION(Decoder::parseInitialVocabulary(dupReader, voc, nullptr), "!existed");
	}
}


TEST(InitialVocabularyReaderTest, ExternalVocabularyInHandOrMissing)
{
	// The vocabulary in hand is named: nothing is loaded or reset, the prefix "p" adds to it.
	DocumentVocabulary voc("urn:v", DocumentVocabulary::VOC_MAP);
	bool existed;
	voc.index(DocumentVocabulary::PREFIX, "kept", existed);
	ExternalVocabularyRecorder handler;
	readInitialVocabulary(fromHex("1200 04 75726E3A76 00 00 70"), voc, &handler);
	EXPECT_EQ("kept", voc.value(DocumentVocabulary::PREFIX, 2));
	EXPECT_EQ("p", voc.value(DocumentVocabulary::PREFIX, 3));

	const std::string missing = "/nonexistent-korvo/v.fi";
	std::istringstream in(fromHex("1000 16") + missing);
	BitStreamReader reader(in);
	EXPECT_THROW_EXACT(Decoder::parseInitialVocabulary(reader, voc, &handler), Korvo::FileNotFoundException, missing);
	EXPECT_TRUE(handler.uris.empty());
}


TEST(InitialVocabularyReaderTest, ExternalVocabularyFromXMLOrFastInfoset)
{
	const std::string xml = temporaryFile(".XML", "<voc xmlns:p='urn:p'><p:item/></voc>");
	std::ostringstream fis;
	{
		FastInfosetWriter writer(fis);
		writer.startDocument();
		writer.startElement("", "fromFis", "fromFis", Korvo::XML::AttributesImpl());
		writer.endElement("", "fromFis", "fromFis");
		writer.endDocument();
	}
	const std::string fastInfoset = temporaryFile("", fis.str());

	for (const std::string& uri: {xml, fastInfoset})
	{
		DocumentVocabulary voc(DocumentVocabulary::VOC_MAP);
		ExternalVocabularyRecorder handler;
		readInitialVocabulary(externalVocabulary(uri), voc, &handler);
		ASSERT_EQ(std::vector<std::string>{uri}, handler.uris);
		bool found;
		const std::vector<std::string> localNames = uri == xml ? std::vector<std::string>{"voc", "item"} : std::vector<std::string>{"fromFis"};
		for (const std::string& name: localNames)
		{
			voc.exists(DocumentVocabulary::LOCAL_NAME, name, found);
			EXPECT_TRUE(found) << name << " from " << uri;
			handler.vocabulary.exists(DocumentVocabulary::LOCAL_NAME, name, found);
			EXPECT_TRUE(found) << name << " announced from " << uri;
		}
	}
}


TEST(InitialVocabularyReaderTest, ExternalVocabulariesThatNameThemselves)
{
	// a names a; b names c names b; d0 names d1 ... names d9
	const std::string a = temporaryFile(".fi");
	std::ofstream(a, std::ios::binary) << documentNaming(a);
	const std::string b = temporaryFile(".fi"), c = temporaryFile(".fi");
	std::ofstream(b, std::ios::binary) << documentNaming(c);
	std::ofstream(c, std::ios::binary) << documentNaming(b);
	std::vector<std::string> chain;
	for (int i = 0; i < 10; ++i) chain.push_back(temporaryFile(".fi"));
	for (int i = 0; i + 1 < 10; ++i) std::ofstream(chain[i], std::ios::binary) << documentNaming(chain[i + 1]);

	const struct { std::string uri; std::string message; } cases[] =
	{
		{a, "FastInfoset Exception: External vocabulary refers back to itself: " + a},
		{b, "FastInfoset Exception: External vocabulary refers back to itself: " + b},
		{chain[0], "FastInfoset Exception: External vocabularies nested too deeply: " + chain[8]},
	};
	for (const auto& c: cases)
	{
		DocumentVocabulary voc(DocumentVocabulary::VOC_MAP);
		std::istringstream in(externalVocabulary(c.uri));
		BitStreamReader reader(in);
		try
		{
			Decoder::parseInitialVocabulary(reader, voc, nullptr);
			ADD_FAILURE() << c.uri << " was loaded";
		}
		catch (const FISException& exc)
		{
			EXPECT_EQ(c.message, exc.displayText());
		}
	}
}
