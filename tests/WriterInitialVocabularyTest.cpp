//
// WriterInitialVocabularyTest.cpp
//
// FastInfosetWriter: the initial vocabulary of the header, announcing what
// the document vocabulary adds to a fresh one or to an external vocabulary.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//

#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include "Korvo/FastInfoset/FISException.h"
#include "support/ExceptionMatchers.h"
#include "support/WriterTesting.h"
#include <gtest/gtest.h>
#include <sstream>

using namespace Korvo::FastInfoset;
using Korvo::XML::AttributesImpl;
using Tests::golden;
using Tests::hex;
using Tests::HEADER;


namespace {


void add(DocumentVocabulary& voc, DocumentVocabulary::ID id, const std::string& value)
{
	bool existed;
	voc.index(id, value, existed);
}


std::string writeEmptyDocument(const DocumentVocabulary& voc)
{
	std::ostringstream out;
	FastInfosetWriter writer(out, false, voc);
	writer.startDocument();
	writer.endDocument();
	return hex(out.str());
}


} // namespace


TEST(WriterInitialVocabularyTest, FreshVocabularyIsNotAnnounced)
{
	EXPECT_EQ(golden(HEADER + "F0"), writeEmptyDocument(DocumentVocabulary(DocumentVocabulary::VOC_MAP)));
	EXPECT_EQ(golden(HEADER + "F0"), writeEmptyDocument(DocumentVocabulary(DocumentVocabulary::VOC_HASH)));
}


TEST(WriterInitialVocabularyTest, OneExtraPrefix)
{
	// header flag initial vocabulary; 000 + 13 flags with only prefixes set;
	// one entry: 0 + length 1, "p"
	DocumentVocabulary voc(DocumentVocabulary::VOC_HASH);
	add(voc, DocumentVocabulary::PREFIX, "p");
	EXPECT_EQ(golden("E0000001 20 0200 00 00 70 F0"), writeEmptyDocument(voc));
}


TEST(WriterInitialVocabularyTest, AnnouncedPrefixIsUsedAsIndex)
{
	DocumentVocabulary voc(DocumentVocabulary::VOC_MAP);
	add(voc, DocumentVocabulary::PREFIX, "p");
	std::ostringstream out;
	FastInfosetWriter writer(out);
	writer.setDocumentVocabulary(voc);
	writer.startDocument();
	writer.startPrefixMapping("p", "urn:p");
	writer.emptyElement("urn:p", "a", "p:a");
	writer.endPrefixMapping("p");
	writer.endDocument();
	// prefix p is index 2 wherever it appears
	EXPECT_EQ(golden("E0000001 20 0200 00 00 70  38 CF 81 04 75726E3A70 F0 3F 81 81 0061 FF"), hex(out.str()));
}


TEST(WriterInitialVocabularyTest, LongSequenceLength)
{
	// 129 entries take the 24-bit form ((129 | 0x80000) - 129) = 08 00 00
	DocumentVocabulary voc(DocumentVocabulary::VOC_HASH);
	for (int i = 0; i < 129; ++i) add(voc, DocumentVocabulary::LOCAL_NAME, "n" + std::to_string(i));
	const std::string bytes = writeEmptyDocument(voc);
	// local names only: 000 00000 | 1 0000000; first entry 0 + length 2, "n0"
	EXPECT_EQ(golden("E0000001 20 00 80 080000 01 6E30 01 6E31"), bytes.substr(0, 32));
	// last entry "n128", then the document's end
	EXPECT_EQ(golden("03 6E313238 F0"), bytes.substr(bytes.size() - 12));
}


TEST(WriterInitialVocabularyTest, ExternalVocabulary)
{
	// external vocabulary flag alone: 000 1 0000 | 00000000, 0 + length 7, the URI
	std::ostringstream out;
	FastInfosetWriter writer(out);
	FISDocumentHandler& handler = writer;
	handler.setExternalVocabulary("urn:ext", DocumentVocabulary(DocumentVocabulary::VOC_MAP));
	EXPECT_EQ("urn:ext", writer.getExternalVocabularyURI());
	writer.startDocument();
	writer.endDocument();
	EXPECT_EQ(golden("E0000001 20 1000 06 75726E3A657874 F0"), hex(out.str()));
}


TEST(WriterInitialVocabularyTest, OnlyWhatGoesBeyondTheExternalVocabulary)
{
	DocumentVocabulary external("urn:ext", DocumentVocabulary::VOC_MAP);
	add(external, DocumentVocabulary::PREFIX, "p");
	DocumentVocabulary voc(external);
	add(voc, DocumentVocabulary::PREFIX, "q");

	std::ostringstream out;
	FastInfosetWriter writer(out, false, voc);
	writer.setExternalVocabulary("urn:ext", external);
	writer.startDocument();
	writer.endDocument();
	// external vocabulary and prefix flags: 000 1 0 0 1 0 | 00000000; one prefix "q"
	EXPECT_EQ(golden("E0000001 20 1200 06 75726E3A657874 00 0071 F0"), hex(out.str()));
}


TEST(WriterInitialVocabularyTest, ValueAndNameTablesCannotBeAnnounced)
{
	// The padding before each entry of these tables is a 0-bit write, which
	// the bit writer refuses once the table's length has been written.
	struct Case
	{
		const char* flags;
		void (*fill)(DocumentVocabulary& voc);
	};
	const Case cases[] = {
		{"0010", [](DocumentVocabulary& v) { add(v, DocumentVocabulary::ATTRIBUTE_VALUE, "v"); }},
		{"0008", [](DocumentVocabulary& v) { add(v, DocumentVocabulary::CHARACTER_CONTENT_CHUNK, "t"); }},
		{"0004", [](DocumentVocabulary& v) { add(v, DocumentVocabulary::OTHER_STRING, "o"); }},
		{"0002", [](DocumentVocabulary& v) { bool e; v.elementVocabulary()->index(QualifiedNameEntry(0, 0, 1), e); }},
		{"0001", [](DocumentVocabulary& v) { bool e; v.attributeVocabulary()->index(QualifiedNameEntry(0, 0, 1), e); }},
	};
	for (const Case& c: cases)
	{
		DocumentVocabulary voc(DocumentVocabulary::VOC_HASH);
		c.fill(voc);
		std::ostringstream out;
		FastInfosetWriter writer(out, false, voc);
		EXPECT_ASSERTION(writer.startDocument(), "checkInputParams(Utility::SIZEOFINT32INBIT, numOfBits)");
		// everything up to the table's length was written
		EXPECT_EQ(golden("E0000001 20") + c.flags + "00", hex(out.str()));
	}
}


TEST(WriterInitialVocabularyTest, AllTablesStopAtTheFirstValueTable)
{
	DocumentVocabulary voc(DocumentVocabulary::VOC_HASH);
	voc.restrictedAlphabets().add("ab");
	add(voc, DocumentVocabulary::PREFIX, "p");
	add(voc, DocumentVocabulary::NAMESPACE_NAME, "urn:n");
	add(voc, DocumentVocabulary::LOCAL_NAME, "l");
	add(voc, DocumentVocabulary::OTHER_NCNAME, "c");
	add(voc, DocumentVocabulary::OTHER_URI, "u");
	add(voc, DocumentVocabulary::ATTRIBUTE_VALUE, "v");
	add(voc, DocumentVocabulary::CHARACTER_CONTENT_CHUNK, "t");
	add(voc, DocumentVocabulary::OTHER_STRING, "o");
	bool existed;
	voc.elementVocabulary()->index(QualifiedNameEntry(1, 1, 1), existed);
	voc.attributeVocabulary()->index(QualifiedNameEntry(0, 0, 1), existed);

	std::ostringstream out;
	FastInfosetWriter writer(out, false, voc);
	EXPECT_ASSERTION(writer.startDocument(), "checkInputParams(Utility::SIZEOFINT32INBIT, numOfBits)");
	// all flags but external vocabulary and encoding algorithms; sections up
	// to the length of the attribute values
	EXPECT_EQ(golden("E0000001 20 0B FF 00 01 6162 00 00 70 00 04 75726E3A6E 00 00 6C 00 00 63 00 00 75 00"), hex(out.str()));
}
