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


std::string preHeaderOf(BitStreamReader& reader)
{
	std::string declaration = "left over";
	Decoder::documentPreHeader(reader, declaration);
	return declaration;
}


} // namespace


TEST(DocumentHeaderTest, PreHeaderWrittenAndRead)
{
	const std::string declaration = "<?xml encoding='finf'?>";
	for (bool withDeclaration: {false, true})
	{
		std::ostringstream out;
		BitStreamWriter writer(out, true);
		Encoder::documentPreHeader(writer, withDeclaration);
		EXPECT_EQ(1, writer.bitPos());
		writer.complete(false);
		// identification E0 00, version 00 01, the '0' bit and seven clear flags
		EXPECT_EQ(toHex((withDeclaration ? declaration : "") + fromHex("E0000001 00")), toHex(out.str()));
	}

	// The pre-header ends with its '0' bit: the flags may be missing, which
	// only the header reader reports.
	for (const std::string& text: {std::string(), declaration, std::string("<?xml version='1.0' encoding='finf' standalone='yes'?>")})
	{
		for (const std::string& flags: {fromHex("00"), std::string()})
		{
			const std::string data = text + fromHex("E0000001") + flags;
			std::istringstream in(data);
			BitStreamReader stream(in);
			BitStreamReader memory(data.data(), static_cast<unsigned int>(data.size()));
			for (BitStreamReader* pReader: {&stream, &memory})
			{
				EXPECT_EQ(text, preHeaderOf(*pReader));
				DocumentVocabulary voc;
				if (flags.empty())
					EXPECT_THROW_EXACT(Decoder::documentHeader(*pReader, voc, nullptr), FISParseException, "Unexpected end of stream while reading document header");
				else
					EXPECT_NO_THROW(Decoder::documentHeader(*pReader, voc, nullptr));
			}
		}
	}
}


TEST(DocumentHeaderTest, BadIdentificationVersionOrTruncation)
{
	const char* const invalidHeader = "Not a valid Fast Infoset document (invalid header)";
	const char* const endOfHeader = "Unexpected end of stream while reading document header";
	const char* const endOfDeclaration = "Unexpected end of stream while parsing octet string";
	const struct
	{
		std::string data;
		bool structural; // FISException itself, else FISParseException
		const char* message;
	}
	cases[] =
	{
		{fromHex("00000001 00"), true, invalidHeader},
		{fromHex("E0010001 00"), true, invalidHeader},
		{"<?xml?>" + fromHex("00000001 00"), true, invalidHeader},
		{"", true, invalidHeader},
		{fromHex("E0"), true, invalidHeader},
		{fromHex("E0000002"), true, "Unsupported Fast Infoset document version"},
		{fromHex("E0000000 00"), true, "Unsupported Fast Infoset document version"},
		{fromHex("E000 00"), false, endOfHeader},
		{"<?xml version='1.0'", false, endOfDeclaration},
		{"<?" + std::string(1024*1024, 'x'), false, endOfDeclaration},
	};
	for (const auto& c: cases)
	{
		SCOPED_TRACE(toHex(c.data.substr(0, 8)));
		std::istringstream in(c.data);
		BitStreamReader stream(in);
		BitStreamReader memory(c.data.data(), static_cast<unsigned int>(c.data.size()));
		for (BitStreamReader* pReader: {&stream, &memory})
		{
			if (c.structural)
				EXPECT_THROW_EXACT(preHeaderOf(*pReader), FISException, c.message);
			else
				EXPECT_THROW_EXACT(preHeaderOf(*pReader), FISParseException, c.message);
		}
	}
}


TEST(DocumentHeaderTest, FlagsAreHandedBackAndTheVocabularyStartsFresh)
{
	// notations, unparsed entities, character encoding scheme, standalone, version
	const struct
	{
		const char* flags;
		Decoder::OpenHeaderParts parts;
	}
	cases[] =
	{
		{"00", {false, false, false, false, false}},
		{"10", {true, false, false, false, false}},
		{"08", {false, true, false, false, false}},
		{"04", {false, false, true, false, false}},
		{"02", {false, false, false, true, false}},
		{"01", {false, false, false, false, true}},
		{"1F", {true, true, true, true, true}},
		{"40 00 01 6964 01 6464", {}}, // additional data "id": "dd"
	};
	for (const auto& c: cases)
	{
		DocumentVocabulary voc(DocumentVocabulary::VOC_MAP);
		bool existed;
		voc.index(DocumentVocabulary::PREFIX, "left from the last document", existed);

		std::istringstream in(fromHex("E0000001") + fromHex(c.flags) + fromHex("AB"));
		BitStreamReader reader(in);
		preHeaderOf(reader);
		const Decoder::OpenHeaderParts parts = Decoder::documentHeader(reader, voc, nullptr);
		EXPECT_EQ(c.parts.hasNotations, parts.hasNotations) << c.flags;
		EXPECT_EQ(c.parts.hasUnparsedEntities, parts.hasUnparsedEntities) << c.flags;
		EXPECT_EQ(c.parts.hasCharacterEncodingScheme, parts.hasCharacterEncodingScheme) << c.flags;
		EXPECT_EQ(c.parts.standalone, parts.standalone) << c.flags;
		EXPECT_EQ(c.parts.hasVersion, parts.hasVersion) << c.flags;
		EXPECT_EQ(2u, voc.vocabulary(DocumentVocabulary::PREFIX)->size()) << c.flags;
		unsigned char next;
		EXPECT_TRUE(reader.read(next, 8) && next == 0xAB) << c.flags;
	}

	const char octet = 0;
	BitStreamReader reader(&octet, 1);
	DocumentVocabulary voc;
	EXPECT_ASSERTION(Decoder::documentHeader(reader, voc, nullptr), "aReader.bitPos() == 1");
}
