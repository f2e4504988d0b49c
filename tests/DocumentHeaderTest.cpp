//
// DocumentHeaderTest.cpp
//
// The start of a document: XML declaration, identification, version and
// header flags, written and read.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//

#include "Korvo/FastInfoset/Encoder.h"
#include "Korvo/FastInfoset/Decoder.h"
#include "Korvo/FastInfoset/DocumentVocabulary.h"
#include "Korvo/FastInfoset/FISException.h"
#include "support/BitTesting.h"
#include "support/ExceptionMatchers.h"
#include <gtest/gtest.h>
#include <sstream>


using namespace Korvo::FastInfoset;
using namespace Tests::Bits;


namespace {


const std::string DECLARATION = "<?xml encoding='finf'?>";


std::string preHeaderOf(BitStreamReader& reader)
{
	std::string declaration = "left over";
	Decoder::documentPreHeader(reader, declaration);
	return declaration;
}


struct HeaderReader
	/// A stream reader over a document, to read its header and what follows.
{
	explicit HeaderReader(const std::string& document):
		in(document),
		reader(in)
	{
	}

	Decoder::OpenHeaderParts header(DocumentVocabulary& voc)
	{
		preHeaderOf(reader);
		return Decoder::documentHeader(reader, voc, nullptr);
	}

	std::istringstream in;
	BitStreamReader reader;
};


} // namespace


TEST(DocumentHeaderTest, WriterPreHeader)
{
	for (bool withDeclaration: {false, true})
	{
		std::ostringstream out;
		BitStreamWriter writer(out, false);
		Encoder::documentPreHeader(writer, withDeclaration);
		EXPECT_EQ(1, writer.bitPos());
		writer.complete(false);
		// identification E0 00, version 00 01, the '0' bit and seven clear flags
		EXPECT_EQ(toHex((withDeclaration ? DECLARATION : "") + fromHex("E0000001 00")), toHex(out.str()));
	}
}


TEST(DocumentHeaderTest, DeclarationIsReturnedVerbatim)
{
	for (const std::string& declaration: {std::string(), DECLARATION,
		std::string("<?xml version='1.0' encoding='finf' standalone='yes'?>"), std::string("<?xml encoding=\"finf\"  ?>")})
	{
		const std::string data = declaration + fromHex("E0000001 00");
		std::istringstream in(data);
		BitStreamReader streamReader(in);
		BitStreamReader memoryReader(data.data(), static_cast<unsigned int>(data.size()));
		for (BitStreamReader* pReader: {&streamReader, &memoryReader})
		{
			EXPECT_EQ(declaration, preHeaderOf(*pReader));
			EXPECT_EQ(1, pReader->bitPos());
		}
	}
}


TEST(DocumentHeaderTest, BadIdentificationVersionOrTruncation)
{
	const char* const invalidHeader = "Not a valid Fast Infoset document (invalid header)";
	const char* const endOfHeader = "Unexpected end of stream while reading document header";
	const struct
	{
		std::string data;
		bool structural; // FISException rather than FISParseException
		const char* message;
	}
	cases[] =
	{
		{fromHex("00000001 00"), true, invalidHeader},
		{fromHex("E0010001 00"), true, invalidHeader},
		{fromHex("E0000002 00"), true, "Unsupported Fast Infoset document version"},
		{fromHex("E0000000 00"), true, "Unsupported Fast Infoset document version"},
		{"", true, invalidHeader},
		{fromHex("E0"), true, invalidHeader},
		{"<?xml?>" + fromHex("00000001 00"), true, invalidHeader},
		{"<?xml?>", true, invalidHeader},
		{fromHex("E000 00"), false, endOfHeader},
		{fromHex("E0000001"), false, endOfHeader},
		{"<?xml version='1.0'", false, "Unexpected end of stream while parsing octet string"},
	};
	for (const auto& c: cases)
	{
		SCOPED_TRACE(toHex(c.data));
		std::istringstream in(c.data);
		BitStreamReader reader(in);
		if (c.structural)
			EXPECT_THROW_EXACT(preHeaderOf(reader), FISException, c.message);
		else
			EXPECT_THROW_EXACT(preHeaderOf(reader), FISParseException, c.message);
	}
}


TEST(DocumentHeaderTest, UnterminatedDeclarationEndsAtTheEndOfTheData)
{
	const std::string data = "<?" + std::string(1024*1024, 'x');
	std::istringstream in(data);
	BitStreamReader streamReader(in);
	BitStreamReader memoryReader(data.data(), static_cast<unsigned int>(data.size()));
	for (BitStreamReader* pReader: {&streamReader, &memoryReader})
		EXPECT_THROW_EXACT(preHeaderOf(*pReader), FISParseException, "Unexpected end of stream while parsing octet string");
}


TEST(DocumentHeaderTest, FlagsAreHandedBackAndTheVocabularyStartsFresh)
{
	const struct
	{
		const char* flags;
		bool notations, unparsedEntities, characterEncodingScheme, standalone, version;
	}
	cases[] =
	{
		{"00", false, false, false, false, false},
		{"10", true, false, false, false, false},
		{"08", false, true, false, false, false},
		{"04", false, false, true, false, false},
		{"02", false, false, false, true, false},
		{"01", false, false, false, false, true},
		{"1F", true, true, true, true, true},
	};
	for (const auto& c: cases)
	{
		DocumentVocabulary voc(DocumentVocabulary::VOC_MAP);
		bool existed;
		voc.index(DocumentVocabulary::PREFIX, "left from the last document", existed);

		HeaderReader document(fromHex("E0000001") + fromHex(c.flags));
		Decoder::OpenHeaderParts parts = document.header(voc);
		EXPECT_EQ(c.notations, parts.hasNotations) << c.flags;
		EXPECT_EQ(c.unparsedEntities, parts.hasUnparsedEntities) << c.flags;
		EXPECT_EQ(c.characterEncodingScheme, parts.hasCharacterEncodingScheme) << c.flags;
		EXPECT_EQ(c.standalone, parts.standalone) << c.flags;
		EXPECT_EQ(c.version, parts.hasVersion) << c.flags;
		EXPECT_EQ(0, document.reader.bitPos());
		EXPECT_EQ(2u, voc.vocabulary(DocumentVocabulary::PREFIX)->size()) << c.flags;
	}
}


TEST(DocumentHeaderTest, AdditionalDataIsSkipped)
{
	// flags: additional data; one entry, identifier "id", data "dd"; then the octet AB
	HeaderReader document(fromHex("E0000001 40 00 01 6964 01 6464 AB"));
	DocumentVocabulary voc(DocumentVocabulary::VOC_MAP);
	document.header(voc);
	unsigned char next;
	ASSERT_TRUE(document.reader.read(next, 8));
	EXPECT_EQ(0xAB, next);
}


TEST(DocumentHeaderTest, HeaderFlagsMustFollowThePreHeader)
{
	const std::string data = fromHex("00 00");
	BitStreamReader reader(data.data(), 2);
	DocumentVocabulary voc;
	EXPECT_ASSERTION(Decoder::documentHeader(reader, voc, nullptr), "aReader.bitPos() == 1");
}
