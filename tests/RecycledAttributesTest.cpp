//
// RecycledAttributesTest.cpp
//
// The parser's reused attribute lists: each fill shows exactly its own
// attributes, however the one before it looked.
//

#include "RecycledAttributes.h"
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace Korvo::FastInfoset;


namespace
{
	struct Attribute
	{
		const std::string* pURI;
		const std::string* pLocalName;
		std::string value;
	};

	std::string describe(const Korvo::XML::AttributesImpl& attrs)
	{
		std::string text;
		for (int i = 0; i < attrs.getLength(); ++i)
		{
			text += "[" + attrs.getURI(i) + "|" + attrs.getLocalName(i) + "|" + attrs.getQName(i) + "|" + attrs.getType(i) + "|" + attrs.getValue(i) + "]";
			EXPECT_TRUE(attrs.isSpecified(i));
		}
		return text;
	}

	void fill(RecycledAttributes& list, const std::vector<Attribute>& attributes)
	{
		list.restart();
		for (const Attribute& a: attributes) list.add(a.pURI, a.pLocalName, a.value);
		list.finish();
	}
}


TEST(RecycledAttributesTest, EachFillShowsOnlyItsOwnAttributes)
{
	const std::string none, ns("urn:n"), a("a"), b("b"), c("c");
	struct Fill
	{
		std::vector<Attribute> attributes;
		const char* expected;
	};
	const Fill fills[] =
	{
		{{{&none, &a, "1"}, {&none, &b, "2"}}, "[|a|||1][|b|||2]"},
		{{{&none, &a, "3"}, {&none, &b, "4"}}, "[|a|||3][|b|||4]"},
		{{{&none, &b, "5"}}, "[|b|||5]"},
		{{{&ns, &b, "6"}, {&none, &c, "7"}, {&ns, &a, ""}}, "[urn:n|b|||6][|c|||7][urn:n|a|||]"},
		{{}, ""},
		{{{&none, &a, "8"}}, "[|a|||8]"},
	};
	RecycledAttributes list;
	for (const Fill& f: fills)
	{
		fill(list, f.attributes);
		EXPECT_EQ(f.expected, describe(list.attributes()));
	}
}


TEST(RecycledAttributesTest, ForgottenSourcesAreCopiedAgain)
{
	// The same string objects with new contents stand for tables rebuilt
	// at the same addresses: only forgetSources() makes the list look again.
	std::string uri, name("x");
	RecycledAttributes list;
	fill(list, {{&uri, &name, "v"}});
	uri = "urn:u";
	name = "y";
	fill(list, {{&uri, &name, "v"}});
	EXPECT_EQ("[|x|||v]", describe(list.attributes()));
	list.forgetSources();
	fill(list, {{&uri, &name, "v"}});
	EXPECT_EQ("[urn:u|y|||v]", describe(list.attributes()));
}


TEST(RecycledAttributesTest, AnUnfinishedFillIsCleanedUpByTheNext)
{
	// A parse that fails inside an element leaves the list part-filled.
	const std::string none, a("a"), b("b");
	RecycledAttributes list;
	fill(list, {{&none, &a, "1"}, {&none, &b, "2"}});
	list.restart();
	list.add(&none, &b, "3");
	fill(list, {{&none, &a, "4"}});
	EXPECT_EQ("[|a|||4]", describe(list.attributes()));
}


TEST(RecycledAttributesTest, ValuesOfEveryLengthReplaceEachOther)
{
	// Longer and shorter values in turn, across the lengths copied in words.
	const std::string none, a("a");
	const std::size_t lengths[] = {3, 0, 1, 4, 7, 8, 9, 16, 17, 40, 12, 5, 2, 33, 16, 15, 0, 8};
	RecycledAttributes list;
	std::size_t round = 0;
	for (std::size_t n: lengths)
	{
		std::string value;
		for (std::size_t i = 0; i < n; ++i) value += static_cast<char>('a' + (i + round) % 26);
		++round;
		fill(list, {{&none, &a, value}});
		EXPECT_EQ(value, list.attributes().getValue(0)) << n;
		EXPECT_EQ(n, list.attributes().getValue(0).size());
	}
}
