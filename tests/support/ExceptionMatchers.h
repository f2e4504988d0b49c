//
// ExceptionMatchers.h
//
// Expectations on the class and exact message of an exception, and on
// assertion failures (whose message starts with the condition's text).
//

#ifndef Tests_ExceptionMatchers_INCLUDED
#define Tests_ExceptionMatchers_INCLUDED

#include "Korvo/FastInfoset/FastInfoset.h"
#include <gtest/gtest.h>
#include <exception>
#include <string>


namespace Tests {


inline std::string messageOf(const Korvo::Exception& e)
{
	return e.message();
}


inline std::string messageOf(const std::exception& e)
{
	return e.what();
}


} // namespace Tests


#define EXPECT_THROW_MESSAGE(statement, ExceptionClass, text) \
	do \
	{ \
		try \
		{ \
			statement; \
			ADD_FAILURE() << #statement " threw nothing"; \
		} \
		catch (const ExceptionClass& exc) \
		{ \
			EXPECT_EQ(std::string(text), Tests::messageOf(exc)) << #statement; \
		} \
	} while (0)


#define EXPECT_ASSERTION(statement, condition) \
	do \
	{ \
		try \
		{ \
			statement; \
			ADD_FAILURE() << #statement " threw nothing"; \
		} \
		catch (const Korvo::AssertionViolationException& exc) \
		{ \
			EXPECT_EQ(0u, exc.message().rfind(std::string(condition) + " in file \"", 0)) \
				<< #statement << ": " << exc.message(); \
		} \
	} while (0)


#endif // Tests_ExceptionMatchers_INCLUDED
