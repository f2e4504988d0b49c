//
// EncodingTestSupport.h
//
// Test helpers for typed values: hexadecimal golden bytes, writing a value
// at a chosen bit position, reading it back through a stream reader, and
// capturing the class and message of a failure.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_EncodingTestSupport_INCLUDED
#define FastInfoset_EncodingTestSupport_INCLUDED


#include "Korvo/FastInfoset/BitStreamReader.h"
#include "Korvo/FastInfoset/BitStreamWriter.h"
#include "Korvo/FastInfoset/FISException.h"
#include <sstream>
#include <string>


namespace Korvo {
namespace FastInfoset {
namespace Test {


std::string toHex(const std::string& octets);
	/// Upper-case hexadecimal, two digits per octet, no separators.


std::string fromHex(const std::string& hex);
	/// The octets of hex; spaces are ignored.


template <class Fn>
std::string writeAt(int position, Fn fn)
	/// Writes position zero bits, then calls fn(writer); returns the octets
	/// written (the last one padded with zero bits) in hexadecimal.
{
	std::ostringstream stream;
	{
		BitStreamWriter writer(stream, false);
		if (position > 0)
			writer.write(0u, position);
		fn(writer);
		writer.complete(false);
	}
	return toHex(stream.str());
}


class Input
	/// A stream reader over golden bytes given in hexadecimal, placed after
	/// position leading bits.
{
public:
	explicit Input(const std::string& hex, int position = 4);

	BitStreamReader& reader();

private:
	std::istringstream _stream;
	BitStreamReader _reader;
};


struct Failure
	/// What a call threw: the exception's name() and message(), or "none".
{
	std::string name;
	std::string message;
};


template <class Fn>
Failure failureOf(Fn fn)
{
	try
	{
		fn();
	}
	catch (const Korvo::Exception& exc)
	{
		return Failure{exc.name(), exc.message()};
	}
	return Failure{"none", ""};
}


inline bool operator == (const Failure& a, const Failure& b)
{
	return a.name == b.name && a.message == b.message;
}


std::ostream& operator << (std::ostream& ostr, const Failure& failure);


Failure fisFailure(const std::string& message);
Failure encodingFailure(const std::string& message);
Failure parseFailure(const std::string& message);
	/// The expected failure of each library exception class.


} } } // namespace Korvo::FastInfoset::Test


#endif // FastInfoset_EncodingTestSupport_INCLUDED
