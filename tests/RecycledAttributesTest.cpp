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
