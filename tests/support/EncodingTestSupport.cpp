//
// EncodingTestSupport.cpp
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "support/EncodingTestSupport.h"
#include <ostream>


namespace Korvo {
namespace FastInfoset {
namespace Test {


std::string toHex(const std::string& octets)
{
	static const char DIGITS[] = "0123456789ABCDEF";
	std::string hex;
	hex.reserve(octets.size()*2);
	for (unsigned char c: octets)
	{
		hex += DIGITS[c >> 4];
		hex += DIGITS[c & 0x0F];
	}
	return hex;
}


std::string fromHex(const std::string& hex)
{
	std::string octets;
	octets.reserve(hex.size()/2);
	int pending = -1;
	for (char c: hex)
	{
		if (c == ' ')
			continue;
		int digit = c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10;
		if (pending < 0)
			pending = digit;
		else
		{
			octets += static_cast<char>(pending*16 + digit);
			pending = -1;
		}
	}
	return octets;
}


Input::Input(const std::string& hex, int position):
	_stream(fromHex(hex)),
	_reader(_stream)
{
	if (position > 0)
	{
		unsigned char skipped = 0;
		_reader.read(skipped, position);
	}
}


BitStreamReader& Input::reader()
{
	return _reader;
}


std::ostream& operator << (std::ostream& ostr, const Failure& failure)
{
	return ostr << failure.name << ": " << failure.message;
}


Failure fisFailure(const std::string& message)
{
	return Failure{FISException().name(), message};
}


Failure encodingFailure(const std::string& message)
{
	return Failure{FISEncodingException().name(), message};
}


Failure parseFailure(const std::string& message)
{
	return Failure{FISParseException().name(), message};
}


} } } // namespace Korvo::FastInfoset::Test
