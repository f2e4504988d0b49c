//
// VocabularyTest.cpp
//
// VerbTable and the hash, map and vector vocabulary tables, for strings and
// qualified names alike.
//

#include "Korvo/FastInfoset/HashVocabulary.h"
#include "Korvo/FastInfoset/MapVocabulary.h"
#include "Korvo/FastInfoset/VectorVocabulary.h"
#include "support/ExceptionMatchers.h"
#include <gtest/gtest.h>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

using namespace Korvo::FastInfoset;


namespace {


const unsigned int NOT_FOUND = 0xFFFFFFFF;


template <class T> T make(int i);

template <> std::string make<std::string>(int i)
{
	return "v" + std::to_string(i);
}

template <> QualifiedNameEntry make<QualifiedNameEntry>(int i)
{
	return QualifiedNameEntry(i % 3, i % 5, i);
}


// How each variant is built and what it promises.
template <class V> struct Variant;

template <class T> struct Variant<HashVocabulary<T>>
{
	static HashVocabulary<T>* create() { return new HashVocabulary<T>(4099); }
	static const bool FINDS_DUPLICATES = true;
};

template <class T> struct Variant<MapVocabulary<T>>
{
	static MapVocabulary<T>* create() { return new MapVocabulary<T>(4099); }
	static const bool FINDS_DUPLICATES = true;
};

template <class T> struct Variant<VectorVocabulary<T>>
{
	static VectorVocabulary<T>* create() { return new VectorVocabulary<T>(4099); }
	static const bool FINDS_DUPLICATES = false;
};


template <class V>
class VocabularyTest: public testing::Test
{
protected:
	using T = typename std::remove_cv<typename std::remove_reference<decltype(std::declval<V>().value(0))>::type>::type;

	VocabularyTest(): _pTable(Variant<V>::create())
	{
	}

	unsigned int add(const T& value, bool expectNew = true)
	{
		bool existed = !expectNew;
		unsigned int idx = _pTable->index(value, existed);
		EXPECT_EQ(!expectNew, existed);
		return idx;
	}

	unsigned int find(const Vocabulary<T>& table, const T& value)
	{
		bool found = false;
		unsigned int idx = table.exists(value, found);
		EXPECT_EQ(idx != NOT_FOUND, found);
		return idx;
	}

	std::unique_ptr<V> _pTable;
};


using Variants = testing::Types<
	HashVocabulary<std::string>, MapVocabulary<std::string>, VectorVocabulary<std::string>,
	HashVocabulary<QualifiedNameEntry>, MapVocabulary<QualifiedNameEntry>, VectorVocabulary<QualifiedNameEntry>>;
TYPED_TEST_SUITE(VocabularyTest, Variants);


TYPED_TEST(VocabularyTest, FreshTableHoldsThePlaceholderAtZero)
{
	using T = typename TestFixture::T;
	auto& table = *this->_pTable;
	EXPECT_EQ(1u, table.size());
	EXPECT_FALSE(table.empty());
	EXPECT_EQ(T(), table.value(0));
	EXPECT_EQ(0u, this->find(table, T()));
	EXPECT_EQ(1u, this->add(make<T>(1)));
	EXPECT_EQ(2u, table.size());
	EXPECT_EQ(make<T>(1), table.value(1));
}


TYPED_TEST(VocabularyTest, DuplicatesAreFoundOnlyByIndexedVariants)
{
	using T = typename TestFixture::T;
	bool finds = Variant<TypeParam>::FINDS_DUPLICATES;
	EXPECT_EQ(finds ? 0u : 1u, this->add(T(), !finds));
	unsigned int first = this->add(make<T>(7));
	unsigned int second = this->add(make<T>(7), !finds);
	EXPECT_EQ(finds ? first : first + 1, second);
	// A scan finds the first of equal values.
	EXPECT_EQ(first, this->find(*this->_pTable, make<T>(7)));
	EXPECT_EQ(NOT_FOUND, this->find(*this->_pTable, make<T>(8)));
}


TYPED_TEST(VocabularyTest, ValuesAcrossChunkBoundariesStayInPlace)
{
	using T = typename TestFixture::T;
	auto& table = *this->_pTable;
	this->add(make<T>(1));
	const T* pFirst = &table.value(1);
	for (int i = 2; i <= 1800; ++i) ASSERT_EQ(static_cast<unsigned int>(i), this->add(make<T>(i)));
	EXPECT_EQ(pFirst, &table.value(1));
	for (int i: {255, 256, 257, 767, 768, 769, 1791, 1792, 1800})
	{
		EXPECT_EQ(make<T>(i), table.value(i)) << i;
		EXPECT_EQ(static_cast<unsigned int>(i), this->find(table, make<T>(i))) << i;
	}
	EXPECT_EQ(1801u, table.size());
}


TYPED_TEST(VocabularyTest, ValuePastTheEndFails)
{
	auto& table = *this->_pTable;
	if (Variant<TypeParam>::FINDS_DUPLICATES)
		EXPECT_ASSERTION(table.value(table.size()), "this->_index.size() > idx");
	else
		EXPECT_THROW_MESSAGE(table.value(table.size()), std::out_of_range, "index out of range");
}


TYPED_TEST(VocabularyTest, CloneSharesNothingAndSubtractsToNothing)
{
	using T = typename TestFixture::T;
	this->add(make<T>(1));
	this->add(make<T>(2));
	std::unique_ptr<Vocabulary<T>> pClone(this->_pTable->clone());
	ASSERT_TRUE(dynamic_cast<TypeParam*>(pClone.get()));
	this->add(make<T>(3));
	bool existed;
	EXPECT_EQ(3u, pClone->index(make<T>(4), existed));
	this->_pTable.reset();

	EXPECT_EQ(4u, pClone->size());
	EXPECT_EQ(2u, this->find(*pClone, make<T>(2)));
	EXPECT_EQ(NOT_FOUND, this->find(*pClone, make<T>(3)));
	EXPECT_EQ(make<T>(4), pClone->value(3));

	std::unique_ptr<Vocabulary<T>> pSame(pClone->clone());
	std::unique_ptr<Vocabulary<T>> pDiff(pClone->subtract(*pSame));
	EXPECT_TRUE(pDiff->empty());
}


TYPED_TEST(VocabularyTest, SubtractKeepsOrderAgainstEveryVariant)
{
	using T = typename TestFixture::T;
	bool finds = Variant<TypeParam>::FINDS_DUPLICATES;
	for (int i = 1; i <= 6; ++i) this->add(make<T>(i));

	std::vector<std::function<Vocabulary<T>*()>> others = {
		[] { return new HashVocabulary<T>(17); },
		[] { return new MapVocabulary<T>(17); },
		[] { return new VectorVocabulary<T>(17); }};
	for (auto& createOther: others)
	{
		std::unique_ptr<Vocabulary<T>> pOther(createOther());
		bool existed;
		pOther->index(make<T>(5), existed);
		pOther->index(make<T>(2), existed);
		pOther->index(make<T>(99), existed);

		std::unique_ptr<Vocabulary<T>> pDiff(this->_pTable->subtract(*pOther));
		ASSERT_TRUE(dynamic_cast<TypeParam*>(pDiff.get()));
		ASSERT_EQ(4u, pDiff->size());
		int expected[] = {1, 3, 4, 6};
		for (unsigned int i = 0; i < 4; ++i) EXPECT_EQ(make<T>(expected[i]), pDiff->value(i));
		EXPECT_EQ(1u, this->find(*pDiff, make<T>(3)));

		// The result goes on working as a table of its kind.
		EXPECT_EQ(4u, pDiff->index(make<T>(7), existed));
		EXPECT_EQ(finds ? 0u : 5u, pDiff->index(make<T>(1), existed));
		EXPECT_EQ(finds, existed);
	}
}


TYPED_TEST(VocabularyTest, TruncateForgetsValuesAndSpareStoresInPlace)
{
	using T = typename TestFixture::T;
	auto& table = *this->_pTable;
	for (int i = 1; i <= 300; ++i) this->add(make<T>(i));
	EXPECT_EQ(7u, this->find(table, make<T>(7)));
	table.truncate(5);
	EXPECT_EQ(5u, table.size());
	EXPECT_EQ(make<T>(4), table.value(4));
	EXPECT_EQ(4u, this->find(table, make<T>(4)));
	EXPECT_EQ(NOT_FOUND, this->find(table, make<T>(5)));
	EXPECT_EQ(NOT_FOUND, this->find(table, make<T>(299)));
	EXPECT_EQ(nullptr, table.lookup(5));

	// A value built in the spare storage is stored there.
	T& spare = table.spare();
	spare = make<T>(299);
	EXPECT_EQ(5u, this->add(spare));
	EXPECT_EQ(&spare, &table.value(5));
	EXPECT_EQ(5u, this->find(table, make<T>(299)));
	table.truncate(1);
	EXPECT_EQ(1u, this->add(make<T>(4)));
}


TEST(HashVocabularyTest, FullTableThrowsAndStaysUnchanged)
{
	HashVocabulary<std::string> table(5);
	bool existed;
	for (unsigned int i = 1; i <= 4; ++i) EXPECT_EQ(i, table.index(make<std::string>(i), existed));

	EXPECT_THROW_MESSAGE(table.index("new", existed), Korvo::PoolOverflowException, "Vocabulary hash table full");
	EXPECT_EQ(5u, table.size());
	EXPECT_EQ(NOT_FOUND, table.exists("new", existed));
	EXPECT_FALSE(existed);
	for (unsigned int i = 1; i <= 4; ++i)
	{
		EXPECT_EQ(i, table.index(make<std::string>(i), existed));
		EXPECT_TRUE(existed);
	}
	EXPECT_EQ("v4", table.value(4));
}


TEST(HashVocabularyTest, StringsAddedAgainOverWhatTheLastDocumentLeft)
{
	// The spares keep the values of the document before: one that holds
	// the value stays, any other takes it, found as usual either way.
	HashVocabulary<std::string> table(8);
	bool existed;
	for (const char* value: {"ab", "cd", "efghijklmnopq"}) table.add(std::string_view(value), existed);
	table.truncate(1);
	const struct { std::string value; unsigned int index; } adds[] = {{"ab", 1}, {"cx", 2}, {"efghijklmnopq", 3}, {"ab", 1}};
	for (const auto& a: adds)
	{
		EXPECT_EQ(a.index, a.value.size() == 2 ? table.addShort(ShortValue(a.value.data(), 2), a.value, existed) : table.add(std::string_view(a.value), existed));
		EXPECT_EQ(a.value, table.value(a.index));
	}
	EXPECT_EQ(4u, table.size());
	EXPECT_EQ(2u, table.find(std::string_view("cx")));
}


TEST(HashVocabularyTest, CollidingNamesProbeAroundTheTable)
{
	// The six orders of (1, 2, 3) hash alike: with the placeholder they fill all 7 slots.
	std::vector<QualifiedNameEntry> names = {{1, 2, 3}, {1, 3, 2}, {2, 1, 3}, {2, 3, 1}, {3, 1, 2}, {3, 2, 1}};
	HashFunction<QualifiedNameEntry> hash;
	HashVocabulary<QualifiedNameEntry> table(7);
	bool existed;
	for (const auto& name: names)
	{
		EXPECT_EQ(5u, hash(name, 7));
		table.index(name, existed);
	}
	EXPECT_THROW_MESSAGE(table.index(QualifiedNameEntry(0, 0, 9), existed), Korvo::PoolOverflowException, "Vocabulary hash table full");
	for (unsigned int i = 0; i < names.size(); ++i) EXPECT_EQ(i + 1, table.exists(names[i], existed));
	EXPECT_EQ(0u, table.exists(QualifiedNameEntry(), existed));
	EXPECT_EQ(NOT_FOUND, table.exists(QualifiedNameEntry(0, 0, 9), existed));
	EXPECT_EQ(1250u, hash(QualifiedNameEntry(), 10009));
	EXPECT_EQ(3892u, hash(names[0], 10009));
}


TEST(HashVocabularyTest, BareTableHasNoSlots)
{
	HashVocabulary<std::string> table(HashVocabulary<std::string>::DONT_INITIALIZE);
	bool existed;
	EXPECT_EQ(NOT_FOUND, table.exists("", existed));
	EXPECT_THROW(table.index("a", existed), Korvo::PoolOverflowException);
	EXPECT_TRUE(table.empty());
}


TYPED_TEST(VocabularyTest, LookupIsNullPastTheEnd)
{
	using T = typename TestFixture::T;
	auto& table = *this->_pTable;
	this->add(make<T>(1));
	ASSERT_NE(nullptr, table.lookup(1));
	EXPECT_EQ(make<T>(1), *table.lookup(1));
	EXPECT_EQ(&table.value(1), table.lookup(1));
	EXPECT_EQ(nullptr, table.lookup(2));
	EXPECT_EQ(nullptr, table.lookup(0xFFFFFFFF));
}


TEST(MapVocabularyTest, StringsAlikeInTheirFirstOctets)
{
	// Keys are compared by their first eight octets before the rest: these
	// agree there, or run out before it, or differ only past it.
	const std::vector<std::string> values =
	{
		"a", std::string("a\0", 2), std::string("a\0\0", 3), "ab", "abcdefg", "abcdefgh", std::string("abcdefgh\0", 9), "abcdefghi",
		"abcdefghij", "abcdefgi", "abcdefgg\xFF", "\xFF", "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF", "Item i0000017: a", "Item i0000018: a",
		std::string(8, '\0'), std::string(9, '\0'),
	};
	MapVocabulary<std::string> table;
	for (std::size_t i = 0; i < values.size(); ++i)
	{
		bool existed = true;
		EXPECT_EQ(i + 1, table.index(values[i], existed)) << i;
		EXPECT_FALSE(existed) << i;
	}
	for (std::size_t i = 0; i < values.size(); ++i)
	{
		bool existed = false;
		EXPECT_EQ(i + 1, table.index(values[i], existed)) << i;
		EXPECT_TRUE(existed) << i;
		bool found = false;
		EXPECT_EQ(i + 1, table.exists(values[i], found)) << i;
	}
	for (const std::string& absent: {std::string("abcdefgh\0\0", 10), std::string("abcdefgj"), std::string("\0", 1), std::string("Item i0000019")})
	{
		bool found = true;
		EXPECT_EQ(0xFFFFFFFFu, table.exists(absent, found));
		EXPECT_FALSE(found);
	}
	bool found = false;
	EXPECT_EQ(0u, table.exists("", found));
	EXPECT_TRUE(found);

	// Short values found by their key agree with the look-up by content,
	// both ways.
	for (std::size_t i = 0; i < values.size(); ++i)
	{
		if (values[i].size() > ShortValue::MAX_SIZE) continue;
		bool existed = false;
		EXPECT_EQ(i + 1, table.addShort(ShortValue(values[i].data(), values[i].size()), values[i], existed)) << i;
		EXPECT_TRUE(existed) << i;
	}
	unsigned int next = table.size();
	for (const std::string& absent: {std::string("abcdefgh\0\0", 10), std::string("abcdefgj"), std::string("\0", 1), std::string("Item i0000019")})
	{
		bool existed = true;
		EXPECT_EQ(next, table.addShort(ShortValue(absent.data(), absent.size()), absent, existed)) << absent;
		EXPECT_FALSE(existed);
		EXPECT_EQ(next++, table.exists(absent, found));
	}

	// A copy finds every value in its own storage.
	std::unique_ptr<Vocabulary<std::string>> pCopy(table.clone());
	for (std::size_t i = 0; i < values.size(); ++i)
	{
		EXPECT_EQ(i + 1, pCopy->exists(values[i], found)) << i;
		EXPECT_NE(&table.value(static_cast<unsigned>(i + 1)), &pCopy->value(static_cast<unsigned>(i + 1)));
	}
}


TEST(VerbTableTest, ChunkBoundaries)
{
	VerbTable<int> table;
	EXPECT_TRUE(table.empty());
	EXPECT_THROW_MESSAGE(table.at(0), std::out_of_range, "index out of range");
	for (int i = 0; i < 257; ++i) table.push_back(i);
	EXPECT_EQ(256, table.at(256));
	EXPECT_EQ(255, table[255]);
	EXPECT_THROW_MESSAGE(table.at(table.size()), std::out_of_range, "index out of range");
	EXPECT_THROW(table.at(0xFFFFFFFF), std::out_of_range);

	// Undoing appends across a chunk boundary; a copy keeps its own values.
	VerbTable<int> copy(table);
	table.pop_back();
	table.pop_back();
	EXPECT_EQ(255u, table.size());
	table.push_back(-1);
	table.push_back(-2);
	EXPECT_EQ(-2, table.at(256));
	EXPECT_EQ(256, copy.at(256));
}


} // namespace
