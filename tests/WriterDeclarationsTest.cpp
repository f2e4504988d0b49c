//
// WriterDeclarationsTest.cpp
//
// FastInfosetWriter: comments, processing instructions, the document type
// declaration, the XML declaration and the notations and unparsed entities
// of the header.
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
#include <functional>
#include <sstream>

using namespace Korvo::FastInfoset;
using Korvo::XML::AttributesImpl;
using Korvo::XML::XMLString;
using Tests::golden;
using Tests::hex;
using Tests::HEADER;


namespace {


const AttributesImpl NO_ATTRIBUTES;


void comment(FastInfosetWriter& writer, const std::string& text)
{
	writer.comment(text.data(), 0, static_cast<int>(text.size()));
}


struct DeclarationCase
{
	const char* name;
	std::function<void(FastInfosetWriter&)> beforeDocument;
	std::function<void(FastInfosetWriter&)> inDocument;
	const char* golden; // the whole document
};


void PrintTo(const DeclarationCase& c, std::ostream* pStream)
{
	*pStream << c.name;
}


const XMLString PUBLIC_ID = "p";
const XMLString SYSTEM_ID = "s";


const DeclarationCase DECLARATION_CASES[] = {
	// after <a/> the pending terminator is padded; 11100010, then 0 1 00 + length 3, "abc"; the second is index 1
	{"comment literal then index", nullptr, [](FastInfosetWriter& w) {
		w.emptyElement("", "a", "a");
		comment(w, "abc");
		comment(w, "abc"); },
		"E0000001 00 3C 0061 F0 E2 42 616263 E2 80 F0"},
	// the empty comment is index 0
	{"empty comment", nullptr, [](FastInfosetWriter& w) { comment(w, ""); }, "E0000001 00 E2 FF F0"},
	// 11100001, target as identifying string, data as non-identifying string; repeated both as indices
	{"processing instruction", nullptr, [](FastInfosetWriter& w) {
		w.processingInstruction("t", "d");
		w.processingInstruction("t", "d"); },
		"E0000001 00 E1 0074 40 64 E1 80 80 F0"},
	// comments and processing-instruction data share one table
	{"comment after instruction data", nullptr, [](FastInfosetWriter& w) {
		w.processingInstruction("t", "d");
		comment(w, "d"); },
		"E0000001 00 E1 0074 40 64 E2 80 F0"},
	// 110001 00, then 1111; the name is not written
	{"doctype without identifiers", nullptr, [](FastInfosetWriter& w) {
		w.startDTD("r", "", "");
		w.endDTD();
		w.emptyElement("", "r", "r"); },
		"E0000001 00 C4 F0 3C 0072 FF"},
	// 110001 1 1, system identifier, then public identifier
	{"doctype with identifiers", nullptr, [](FastInfosetWriter& w) {
		w.startDTD("r", "-//P", "x.dtd");
		w.endDTD();
		w.emptyElement("", "r", "r"); },
		"E0000001 00 C7 04 782E647464 03 2D2F2F50 F0 3C 0072 FF"},
	// header flag notations; 110000 1 1, name, system identifier, public identifier, list end F0
	{"notation with both identifiers", [](FastInfosetWriter& w) { w.notationDecl("n", &PUBLIC_ID, &SYSTEM_ID); }, nullptr,
		"E0000001 10 C3 006E 0073 0070 F0 F0"},
	// empty identifiers count as absent
	{"notation with empty identifiers", [](FastInfosetWriter& w) { const XMLString empty; w.notationDecl("n", &empty, &empty); }, nullptr,
		"E0000001 10 C0 006E F0 F0"},
	// header flag unparsed entities; 1101000 1, name, system and public identifiers, notation name, list end
	{"unparsed entity with public identifier", [](FastInfosetWriter& w) { w.unparsedEntityDecl("e", &PUBLIC_ID, "s", "n"); }, nullptr,
		"E0000001 08 D1 0065 0073 0070 006E F0 F0"},
	// notations (110000 1 0) come first; names and identifiers seen before are indices
	{"notations and unparsed entities", [](FastInfosetWriter& w) {
		w.unparsedEntityDecl("e", nullptr, "s", "n");
		w.notationDecl("n", nullptr, &SYSTEM_ID); }, nullptr,
		"E0000001 18 C2 006E 0073 F0 D0 0065 80 80 F0 F0"},
	// the XML declaration precedes the identification
	{"xml declaration", [](FastInfosetWriter& w) { w.setWriteXMLDeclaration(true); }, nullptr,
		"3C3F786D6C20656E636F64696E673D2766696E66273F3E E0000001 00 F0"},
};


class DeclarationTest: public ::testing::TestWithParam<DeclarationCase>
{
};


INSTANTIATE_TEST_SUITE_P(WriterDeclarationsTest, DeclarationTest, ::testing::ValuesIn(DECLARATION_CASES), Tests::caseName<DeclarationCase>);


TEST_P(DeclarationTest, WritesGoldenBytes)
{
	std::ostringstream out;
	FastInfosetWriter writer(out);
	if (GetParam().beforeDocument) GetParam().beforeDocument(writer);
	writer.startDocument();
	if (GetParam().inDocument) GetParam().inDocument(writer);
	writer.endDocument();
	EXPECT_EQ(golden(GetParam().golden), hex(out.str()));
}


} // namespace


TEST(WriterDeclarationsTest, XMLDeclarationByConstructor)
{
	std::ostringstream out;
	FastInfosetWriter writer(out, true, DocumentVocabulary::VOC_MAP);
	EXPECT_TRUE(writer.getWriteXMLDeclaration());
	writer.startDocument();
	writer.endDocument();
	EXPECT_EQ("<?xml encoding='finf'?>" + std::string("\xE0\x00\x00\x01\x00\xF0", 6), out.str());
}


TEST(WriterDeclarationsTest, DeclarationsAfterStartDocumentAssert)
{
	std::ostringstream out;
	FastInfosetWriter writer(out);
	writer.startDocument();
	EXPECT_ASSERTION(writer.notationDecl("n", nullptr, &SYSTEM_ID), "_states.back() == UNINITIALIZED");
	EXPECT_ASSERTION(writer.unparsedEntityDecl("e", nullptr, "s", "n"), "_states.back() == UNINITIALIZED");
}


TEST(WriterDeclarationsTest, OnlyInstructionsInsideADoctype)
{
	std::ostringstream out;
	FastInfosetWriter writer(out);
	writer.startDocument();
	writer.startDTD("r", "", "");
	EXPECT_THROW_MESSAGE(writer.emptyElement("", "a", "a"), FISException, "startElement() not allowed inside a document type declaration");
	EXPECT_THROW_MESSAGE(writer.startDTD("r", "", ""), FISException, "startDTD() not allowed inside a document type declaration");
	EXPECT_THROW_MESSAGE(writer.startCDATA(), FISException, "startCDATA() not allowed inside a document type declaration");
	writer.processingInstruction("t", "d");
	writer.endDTD();
	writer.endDocument();
	// 110001 00, the instruction, then the ends of the declaration and the document
	EXPECT_EQ(golden("E0000001 00 C4 E1 0074 40 64 FF"), hex(out.str()));
}
