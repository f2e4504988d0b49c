//
// NamespaceContextTest.cpp
//
// The writer's namespace context answers as the platform's namespace
// support does, whatever the sequence of declarations and contexts.
//

#include "NamespaceContext.h"
#include "Poco/SAX/NamespaceSupport.h"
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

using namespace Korvo::FastInfoset;
using Korvo::XML::NamespaceSupport;


TEST(NamespaceContextTest, AnswersAsThePlatformDoes)
{
	// Few prefixes and namespaces, so that declarations collide, shadow
	// each other and share namespaces, the reserved ones included.
	const std::string prefixes[] = {"", "a", "b", "ns1", "xml", "xmlns"};
	const std::string uris[] = {"", "urn:1", "urn:2", NamespaceSupport::XML_NAMESPACE, NamespaceSupport::XMLNS_NAMESPACE};
	std::mt19937 random(7);
	auto pick = [&random](const auto& values) -> const std::string& { return values[random() % std::size(values)]; };
	// One context for all sequences: reset() must forget everything.
	NamespaceContext context;
	for (int sequence = 0; sequence < 200; ++sequence)
	{
		NamespaceSupport expected;
		int depth = 0;
		for (int step = 0; step < 60; ++step)
		{
			const std::string& prefix = pick(prefixes);
			const std::string& uri = pick(uris);
			switch (random() % 6)
			{
			case 0:
			case 1:
			{
				const bool declared = context.declarePrefix(prefix, uri);
				ASSERT_EQ(expected.declarePrefix(prefix, uri), declared);
				// A new declaration has no table indices, whatever its place held before.
				const std::size_t position = context.find(prefix);
				unsigned int prefixIndex;
				unsigned int uriIndex;
				if (declared)
				{
					ASSERT_FALSE(context.tableIndices(position, prefixIndex, uriIndex));
				}
				context.setTableIndices(position, 1, 2);
				break;
			}
			case 2:
				ASSERT_EQ(expected.undeclarePrefix(prefix), context.undeclarePrefix(prefix));
				break;
			case 3:
				expected.pushContext();
				context.pushContext();
				++depth;
				break;
			case 4:
				if (depth == 0) break;
				expected.popContext();
				context.popContext();
				--depth;
				break;
			default:
				break;
			}
			for (const std::string& p: prefixes) ASSERT_EQ(expected.getURI(p), context.getURI(p)) << p;
			for (const std::string& u: uris)
			{
				ASSERT_EQ(expected.getPrefix(u), context.getPrefix(u)) << u;
				ASSERT_EQ(expected.isMapped(u), context.isMapped(u)) << u;
			}
			NamespaceSupport::PrefixSet declared;
			NamespaceSupport::PrefixSet found;
			expected.getDeclaredPrefixes(declared);
			context.getDeclaredPrefixes(found);
			ASSERT_EQ(declared, found);
			std::vector<std::size_t> positions;
			context.declaredBindings(positions);
			std::vector<std::string> inOrder;
			for (std::size_t position: positions)
			{
				inOrder.push_back(context.prefixAt(position));
				ASSERT_EQ(expected.getURI(context.prefixAt(position)), context.uriAt(position));
			}
			ASSERT_EQ(std::vector<std::string>(declared.begin(), declared.end()), inOrder);
		}
		context.reset();
		EXPECT_EQ(NamespaceSupport::XML_NAMESPACE, context.getURI("xml"));
		EXPECT_TRUE(context.getURI("a").empty());
		unsigned int prefixIndex;
		unsigned int uriIndex;
		EXPECT_FALSE(context.tableIndices(context.find("xml"), prefixIndex, uriIndex));
		EXPECT_FALSE(context.tableIndices(context.find("xmlns"), prefixIndex, uriIndex));
	}
}
