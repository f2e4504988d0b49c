//
// DocumentVocabularyTest.cpp
//
// The complete set of tables of a document: predefined entries, variants,
// capacities, copies, reset and the difference of two vocabularies.
//

#include "Korvo/FastInfoset/DocumentVocabulary.h"
#include "Korvo/FastInfoset/HashVocabulary.h"
#include "Korvo/FastInfoset/MapVocabulary.h"
#include "Korvo/FastInfoset/VectorVocabulary.h"
#include "support/ExceptionMatchers.h"
#include <gtest/gtest.h>
#include <string>

using namespace Korvo::FastInfoset;
using DV = DocumentVocabulary;


namespace {


const char XML_NAMESPACE[] = "http://www.w3.org/XML/1998/namespace";
const DV::ID STRING_TABLES[] = {DV::PREFIX, DV::NAMESPACE_NAME, DV::LOCAL_NAME, DV::OTHER_NCNAME,
	DV::OTHER_URI, DV::ATTRIBUTE_VALUE, DV::OTHER_STRING, DV::CHARACTER_CONTENT_CHUNK};


unsigned int add(DV& voc, DV::ID id, const std::string& value)
{
	bool existed;
	return voc.index(id, value, existed);
}


template <class T>
void expectEqualCopy(const Vocabulary<T>* pLeft, const Vocabulary<T>* pRight)
{
	ASSERT_NE(pLeft, pRight);
	ASSERT_EQ(pLeft->size(), pRight->size());
	for (unsigned int i = 0; i < pLeft->size(); ++i) EXPECT_EQ(pLeft->value(i), pRight->value(i)) << i;
}


void expectSameTables(const DV& left, const DV& right)
{
	for (DV::ID id: STRING_TABLES) expectEqualCopy(left.vocabulary(id), right.vocabulary(id));
	expectEqualCopy(left.elementVocabulary(), right.elementVocabulary());
	expectEqualCopy(left.attributeVocabulary(), right.attributeVocabulary());
}


class DocumentVocabularyTest: public testing::TestWithParam<DV::VocabularyImpl>
{
};


TEST_P(DocumentVocabularyTest, NewVocabularyHoldsThePredefinedEntries)
{
	DV voc(GetParam());
	EXPECT_EQ(GetParam(), voc.impl());
	EXPECT_EQ("", voc.getURI());
	EXPECT_EQ(2u, voc.vocabulary(DV::PREFIX)->size());
	EXPECT_EQ("xml", voc.value(DV::PREFIX, 1));
	EXPECT_EQ(XML_NAMESPACE, voc.value(DV::NAMESPACE_NAME, 1));
	for (DV::ID id: STRING_TABLES)
	{
		unsigned int predefined = id == DV::PREFIX || id == DV::NAMESPACE_NAME;
		EXPECT_EQ(1 + predefined, voc.vocabulary(id)->size()) << id;
		EXPECT_EQ("", voc.value(id, 0)) << id;
	}
	EXPECT_EQ(1u, voc.elementVocabulary()->size());
	EXPECT_EQ(1u, voc.attributeVocabulary()->size());
	EXPECT_EQ(15u, voc.restrictedAlphabets().alphabets().size());
	EXPECT_EQ(1u, add(voc, DV::LOCAL_NAME, "a"));
	bool found;
	EXPECT_EQ(1u, voc.exists(DV::LOCAL_NAME, "a", found));
	EXPECT_EQ(0xFFFFFFFF, voc.exists(DV::OTHER_NCNAME, "a", found));
	EXPECT_FALSE(found);

	DV external("urn:x", GetParam());
	EXPECT_EQ("urn:x", external.getURI());
	EXPECT_EQ(2u, external.vocabulary(DV::NAMESPACE_NAME)->size());
}


TEST_P(DocumentVocabularyTest, CopiesShareNoTable)
{
	DV source("urn:source", GetParam());
	add(source, DV::LOCAL_NAME, "a");
	add(source, DV::CHARACTER_CONTENT_CHUNK, "text");
	bool existed;
	source.elementVocabulary()->index(QualifiedNameEntry(0, 0, 1), existed);
	source.restrictedAlphabets().add("abc");

	{
		// Spare tables that vocabularies with other values left: the copy fills one.
		DV left(GetParam()), right(GetParam());
		for (DV* pLeft: {&left, &right})
		{
			add(*pLeft, DV::LOCAL_NAME, "x");
			add(*pLeft, DV::LOCAL_NAME, "y");
			add(*pLeft, DV::CHARACTER_CONTENT_CHUNK, "x");
		}
	}
	DV copy(source);
	bool found = false;
	copy.vocabulary(DV::LOCAL_NAME)->exists("y", found);
	EXPECT_FALSE(found);
	EXPECT_EQ("urn:source", copy.getURI());
	EXPECT_EQ(GetParam(), copy.impl());
	expectSameTables(source, copy);
	EXPECT_EQ(16u, copy.restrictedAlphabets().alphabets().size());

	DV assigned(DV::VOC_MAP);
	assigned = source;
	assigned = assigned;
	EXPECT_EQ(GetParam(), assigned.impl());
	expectSameTables(source, assigned);

	add(copy, DV::LOCAL_NAME, "only in the copy");
	EXPECT_EQ(2u, source.vocabulary(DV::LOCAL_NAME)->size());
	EXPECT_EQ(3u, copy.vocabulary(DV::LOCAL_NAME)->size());
}


TEST_P(DocumentVocabularyTest, VocabularyMinusItselfIsEmpty)
{
	DV voc(GetParam());
	add(voc, DV::OTHER_URI, "urn:a");
	voc.restrictedAlphabets().add("abc");
	DV difference = voc - DV(voc);
	EXPECT_EQ(GetParam(), difference.impl());
	for (DV::ID id: STRING_TABLES) EXPECT_TRUE(difference.vocabulary(id)->empty()) << id;
	EXPECT_TRUE(difference.elementVocabulary()->empty());
	EXPECT_TRUE(difference.attributeVocabulary()->empty());
	EXPECT_TRUE(difference.restrictedAlphabets().alphabets().empty());
}


TEST_P(DocumentVocabularyTest, DifferenceKeepsOrderAndRenumbersFromZero)
{
	DV voc("urn:voc", GetParam());
	for (const char* name: {"c", "a", "b"}) add(voc, DV::LOCAL_NAME, name);
	bool existed;
	voc.attributeVocabulary()->index(QualifiedNameEntry(1, 1, 3), existed);
	voc.restrictedAlphabets().add("xyz");
	voc.encodings().add(&InvalidEncoding::encode, &InvalidEncoding::check);

	DV difference = voc - DV(DV::VOC_HASH);
	EXPECT_EQ("", difference.getURI());
	Vocabulary<std::string>* pLocalNames = difference.vocabulary(DV::LOCAL_NAME);
	ASSERT_EQ(3u, pLocalNames->size());
	EXPECT_EQ("c", pLocalNames->value(0));
	EXPECT_EQ("a", pLocalNames->value(1));
	EXPECT_EQ("b", pLocalNames->value(2));
	EXPECT_TRUE(difference.vocabulary(DV::PREFIX)->empty());
	EXPECT_TRUE(difference.elementVocabulary()->empty());
	ASSERT_EQ(1u, difference.attributeVocabulary()->size());
	EXPECT_EQ(QualifiedNameEntry(1, 1, 3), difference.attributeVocabulary()->value(0));
	ASSERT_EQ(1u, difference.restrictedAlphabets().alphabets().size());
	EXPECT_EQ("xyz", difference.restrictedAlphabets().alphabet(1).alphabet());
	EXPECT_EQ(32u, difference.encodings().size());
}


TEST_P(DocumentVocabularyTest, ResetReturnsToTheFreshState)
{
	DV voc("urn:voc", GetParam());
	add(voc, DV::PREFIX, "p");
	bool existed;
	voc.elementVocabulary()->index(QualifiedNameEntry(0, 0, 1), existed);
	voc.restrictedAlphabets().add("abc");
	voc.reset();
	EXPECT_EQ("urn:voc", voc.getURI());
	EXPECT_EQ(GetParam(), voc.impl());
	EXPECT_EQ(2u, voc.vocabulary(DV::PREFIX)->size());
	EXPECT_EQ(1u, voc.elementVocabulary()->size());
	EXPECT_EQ(15u, voc.restrictedAlphabets().alphabets().size());
	EXPECT_EQ(2u, add(voc, DV::PREFIX, "p"));
}


TEST_P(DocumentVocabularyTest, ResetEmptiesTablesInPlace)
{
	DV voc(GetParam());
	Vocabulary<std::string>* pLocalNames = voc.vocabulary(DV::LOCAL_NAME);
	for (int i = 0; i < 40; ++i) add(voc, DV::LOCAL_NAME, "n" + std::to_string(i));
	voc.reset();
	EXPECT_EQ(pLocalNames, voc.vocabulary(DV::LOCAL_NAME));
	EXPECT_EQ(1u, pLocalNames->size());
	EXPECT_EQ(1u, add(voc, DV::LOCAL_NAME, "n39"));

	// A difference has no placeholders: reset gives it fresh tables.
	DV difference = voc - DV(GetParam());
	difference.reset();
	EXPECT_EQ(2u, difference.vocabulary(DV::PREFIX)->size());
	EXPECT_EQ("", difference.vocabulary(DV::LOCAL_NAME)->value(0));
	EXPECT_EQ(1u, add(difference, DV::LOCAL_NAME, "x"));
}


TEST_P(DocumentVocabularyTest, NextVocabularyStartsFreshWhereTheLastOneEnded)
{
	// Tables of a destroyed vocabulary may serve the next one of its kind.
	for (int round = 0; round < 2; ++round)
	{
		DV used(GetParam());
		for (int i = 0; i < 40; ++i) add(used, DV::LOCAL_NAME, "n" + std::to_string(i));
		for (int i = 1; i < 19; ++i) add(used, DV::OTHER_URI, "urn:" + std::to_string(i));
		bool existed;
		used.elementVocabulary()->index(QualifiedNameEntry(0, 0, 1), existed);
	}
	DV voc(GetParam());
	EXPECT_EQ(2u, voc.vocabulary(DV::PREFIX)->size());
	EXPECT_EQ(XML_NAMESPACE, voc.value(DV::NAMESPACE_NAME, 1));
	EXPECT_EQ(1u, voc.vocabulary(DV::LOCAL_NAME)->size());
	EXPECT_EQ(1u, voc.elementVocabulary()->size());
	EXPECT_EQ(1u, add(voc, DV::LOCAL_NAME, "n39"));
	for (int i = 1; i < 19; ++i) add(voc, DV::OTHER_URI, "urn:" + std::to_string(i));
	if (GetParam() == DV::VOC_HASH)
		EXPECT_THROW_MESSAGE(add(voc, DV::OTHER_URI, "urn:19"), Korvo::PoolOverflowException, "Vocabulary hash table full");
	else
		EXPECT_EQ(19u, add(voc, DV::OTHER_URI, "urn:19"));
}


INSTANTIATE_TEST_SUITE_P(Variants, DocumentVocabularyTest, testing::Values(DV::VOC_HASH, DV::VOC_MAP, DV::VOC_VECTOR));


TEST(DocumentVocabularyTableTest, VariantsAndHashCapacities)
{
	DV hashed(DV::VOC_HASH);
	const unsigned int sizes[] = {251, 251, 40009, 40009, 19, 40009, 19, 65521};
	for (unsigned int i = 0; i < 8; ++i)
	{
		auto pTable = dynamic_cast<HashVocabulary<std::string>*>(hashed.vocabulary(STRING_TABLES[i]));
		ASSERT_TRUE(pTable);
		EXPECT_EQ(sizes[i], pTable->tableSize()) << STRING_TABLES[i];
	}
	for (auto pNames: {hashed.elementVocabulary(), hashed.attributeVocabulary()})
	{
		auto pTable = dynamic_cast<HashVocabulary<QualifiedNameEntry>*>(pNames);
		ASSERT_TRUE(pTable);
		EXPECT_EQ(10009u, pTable->tableSize());
	}

	DV mapped(DV::VOC_MAP);
	EXPECT_TRUE(dynamic_cast<MapVocabulary<std::string>*>(mapped.vocabulary(DV::OTHER_URI)));
	EXPECT_TRUE(dynamic_cast<MapVocabulary<QualifiedNameEntry>*>(mapped.elementVocabulary()));
	DV listed(DV::VOC_VECTOR);
	EXPECT_TRUE(dynamic_cast<VectorVocabulary<std::string>*>(listed.vocabulary(DV::OTHER_URI)));
	EXPECT_TRUE(dynamic_cast<VectorVocabulary<QualifiedNameEntry>*>(listed.attributeVocabulary()));
}


TEST(DocumentVocabularyTableTest, FullHashTableLeavesTheVocabularyAsItWas)
{
	DV voc(DV::VOC_HASH);
	for (int i = 1; i < 19; ++i) add(voc, DV::OTHER_URI, "urn:" + std::to_string(i));
	EXPECT_THROW_MESSAGE(add(voc, DV::OTHER_URI, "urn:19"), Korvo::PoolOverflowException, "Vocabulary hash table full");
	EXPECT_EQ(19u, voc.vocabulary(DV::OTHER_URI)->size());
	EXPECT_EQ(18u, add(voc, DV::OTHER_URI, "urn:18"));

	DV unlimited(DV::VOC_MAP);
	for (int i = 1; i < 30; ++i) EXPECT_EQ(static_cast<unsigned int>(i), add(unlimited, DV::OTHER_URI, std::to_string(i)));
}


TEST(DocumentVocabularyTableTest, AssertionsOnIdentifiersAndMissingTables)
{
	DV voc;
	const char* range = "voc > DocumentVocabulary::ENCODING_ALGORITHM && voc < DocumentVocabulary::ELEMENT_NAME";
	EXPECT_ASSERTION(voc.vocabulary(DV::ENCODING_ALGORITHM), range);
	EXPECT_ASSERTION(voc.vocabulary(DV::ELEMENT_NAME), range);
	EXPECT_ASSERTION(voc.vocabulary(DV::RESTRICTED_ALPHABET), range);
	EXPECT_ASSERTION(voc.vocabulary(DV::INVALID), range);
	EXPECT_ASSERTION(voc.initialize(DV::ATTRIBUTE_NAME, new MapVocabulary<std::string>(0)),
		"vocabulary > DocumentVocabulary::ENCODING_ALGORITHM && vocabulary < DocumentVocabulary::ELEMENT_NAME");

	voc.clear();
	EXPECT_EQ(nullptr, voc.vocabulary(DV::PREFIX));
	EXPECT_THROW(add(voc, DV::PREFIX, "p"), Korvo::NullPointerException);
	EXPECT_ASSERTION(voc.elementVocabulary(), "_pElementVocabulary");
	EXPECT_ASSERTION(voc.attributeVocabulary(), "_pAttributeVocabulary");

	DV bare(DV::DONT_INITIALIZE);
	EXPECT_EQ(nullptr, bare.vocabulary(DV::CHARACTER_CONTENT_CHUNK));
	EXPECT_ASSERTION(DV() - bare, "itDoc != doc._vocabularies.end()");
	EXPECT_THROW(DV(static_cast<DV::VocabularyImpl>(3)), Korvo::InvalidArgumentException);
}


TEST(DocumentVocabularyTableTest, InitializeReplacesATable)
{
	DV voc(DV::VOC_HASH);
	auto pTable = new VectorVocabulary<std::string>(0);
	voc.initialize(DV::OTHER_NCNAME, pTable);
	EXPECT_EQ(pTable, voc.vocabulary(DV::OTHER_NCNAME));
	add(voc, DV::OTHER_NCNAME, "n");
	EXPECT_EQ(2u, add(voc, DV::OTHER_NCNAME, "n"));
	voc.initialize(DV::OTHER_NCNAME, pTable);
	EXPECT_EQ(3u, pTable->size());

	DV bare(DV::DONT_INITIALIZE);
	bare.initialize(DV::LOCAL_NAME, new MapVocabulary<std::string>(0));
	EXPECT_EQ(1u, add(bare, DV::LOCAL_NAME, "x"));
	EXPECT_EQ(nullptr, bare.vocabulary(DV::PREFIX));
}


TEST(DocumentVocabularyTableTest, CopyTakesEncodingsButNotDecodings)
{
	DV voc;
	voc.encodings().add(&InvalidEncoding::encode, &InvalidEncoding::check);
	voc.decodings().add(&InvalidDecoding::decode);
	DV copy(voc);
	EXPECT_EQ(33u, copy.encodings().size());
	EXPECT_EQ(32u, copy.decodings().size());

	DV assigned;
	assigned.decodings().add(&InvalidDecoding::decode);
	assigned.decodings().add(&InvalidDecoding::decode);
	assigned = voc;
	EXPECT_EQ(33u, assigned.encodings().size());
	EXPECT_EQ(34u, assigned.decodings().size());

	// Reset keeps what the application registered.
	voc.reset();
	EXPECT_EQ(33u, voc.encodings().size());
	EXPECT_EQ(33u, voc.decodings().size());
}


} // namespace
