//
// HeadersTest.cpp
//
// Every public header compiles on its own and the platform names resolve.
//

#include "Korvo/FastInfoset/BitStreamReader.h"
#include "Korvo/FastInfoset/BitStreamWriter.h"
#include "Korvo/FastInfoset/Converter.h"
#include "Korvo/FastInfoset/Decoder.h"
#include "Korvo/FastInfoset/DocumentVocabulary.h"
#include "Korvo/FastInfoset/Encoder.h"
#include "Korvo/FastInfoset/FISContentHandler.h"
#include "Korvo/FastInfoset/FISDocumentHandler.h"
#include "Korvo/FastInfoset/FISException.h"
#include "Korvo/FastInfoset/Notation.h"
#include "Korvo/FastInfoset/UnparsedEntity.h"
#include "Korvo/FastInfoset/StringDecoder.h"
#include "Korvo/FastInfoset/Utility.h"
#include <gtest/gtest.h>
#include <type_traits>

using namespace Korvo::FastInfoset;


TEST(HeadersTest, PlatformNamesLiveUnderKorvo)
{
	EXPECT_TRUE((std::is_base_of<Korvo::RuntimeException, FISException>::value));
	EXPECT_TRUE((std::is_base_of<Korvo::XML::ContentHandler, FISContentHandler>::value));
	Korvo::XML::AttributesImpl attributes;
	EXPECT_EQ(0, attributes.getLength());
	Korvo::AutoPtr<Korvo::RefCountedObject> p(new Korvo::RefCountedObject);
	EXPECT_EQ(1, p->referenceCount());
}


TEST(HeadersTest, UtilityTables)
{
	for (int i = 0; i < 8; ++i)
	{
		EXPECT_EQ(1 << i, Utility::pow2[i]);
		EXPECT_EQ(0x80 >> i, Utility::revertedPow2[i]);
	}
	for (int n = 0; n <= 8; ++n)
	{
		EXPECT_EQ((1 << n) - 1, Utility::lowBitMask[n]);
		EXPECT_EQ((0xFF00 >> n) & 0xFF, Utility::highBitMask[n]);
	}
	EXPECT_EQ(1048576u, Encoder::MAXINT20);
}


TEST(HeadersTest, DeclarationRecords)
{
	Notation n("png", "", "image/png");
	EXPECT_EQ("png", n.getName());
	EXPECT_EQ("image/png", n.getSystemId());
	UnparsedEntity e("logo", "pub", "logo.png", "png");
	EXPECT_EQ("logo.png", e.getSystemId());
	EXPECT_EQ("png", e.getNotationName());
	EXPECT_EQ("pub", e.getPublicId());
	QualifiedNameEntry a(1, 2, 3), b(1, 2, 4);
	EXPECT_TRUE(a < b);
	EXPECT_FALSE(a == b);
	EXPECT_EQ(QualifiedNameEntry(0, 0, 0), QualifiedNameEntry());
}
