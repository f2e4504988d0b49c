//
// ExceptionTest.cpp
//
// Exception classes: names, hierarchy, clone and rethrow.
//

#include "Korvo/FastInfoset/FISException.h"
#include <gtest/gtest.h>
#include <memory>

using namespace Korvo::FastInfoset;


TEST(ExceptionTest, NamesAreFixed)
{
	EXPECT_STREQ("FastInfoset Exception", FISException("m").name());
	EXPECT_STREQ("FastInfoset Parse Exception", FISParseException("m").name());
	EXPECT_STREQ("FastInfoset Encoding Exception", FISEncodingException("m").name());
}


TEST(ExceptionTest, ParseExceptionIsCaughtAsBaseClasses)
{
	EXPECT_THROW(throw FISParseException("x"), FISException);
	EXPECT_THROW(throw FISParseException("x"), Korvo::RuntimeException);
	EXPECT_THROW(throw FISEncodingException("x"), FISException);
}


TEST(ExceptionTest, MessageCodeAndArgument)
{
	FISException e("Tag mismatch", "a:b", 7);
	EXPECT_EQ("Tag mismatch: a:b", e.message());
	EXPECT_EQ(7, e.code());
	EXPECT_EQ("FastInfoset Exception: Tag mismatch: a:b", e.displayText());
}


TEST(ExceptionTest, CloneKeepsClassAndMessage)
{
	FISEncodingException e("bad value");
	std::unique_ptr<Korvo::Exception> pClone(e.clone());
	EXPECT_STREQ("FastInfoset Encoding Exception", pClone->name());
	EXPECT_EQ("bad value", pClone->message());
	EXPECT_NE(nullptr, dynamic_cast<FISEncodingException*>(pClone.get()));
}


TEST(ExceptionTest, RethrowKeepsMostDerivedClass)
{
	FISParseException parse("truncated");
	const FISException& base = parse;
	EXPECT_THROW(base.rethrow(), FISParseException);
}


TEST(ExceptionTest, NestedException)
{
	FISParseException inner("inner");
	FISException outer("outer", inner);
	ASSERT_NE(nullptr, outer.nested());
	EXPECT_EQ("inner", outer.nested()->message());
}
