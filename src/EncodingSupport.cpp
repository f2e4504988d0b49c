//
// EncodingSupport.cpp
//
// Library: FastInfoset
// Package: Encodings
// Module:  EncodingSupport
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "EncodingSupport.h"
#include "Korvo/FastInfoset/Decoder.h"
#include "Poco/Base64Encoder.h"
#include "Poco/HexBinaryEncoder.h"
#include <climits>
#include <sstream>


namespace Korvo {
namespace FastInfoset {
namespace EncodingSupport {


unsigned int octetLength(std::size_t count, std::size_t width)
{
	if (count > UINT_MAX / width)
		throw FISEncodingException("Too many values for one encoded octet string");
	return static_cast<unsigned int>(count*width);
}


void readOctets(BitStreamReader& reader, unsigned int length, std::string& octets)
{
	octets.clear();
	if (length <= MAX_RESERVE)
	{
		if (!reader.read(octets, length) || octets.size() != length)
			throw FISParseException("Unexpected end of stream while reading octet string");
		return;
	}
	octets.reserve(MAX_RESERVE);
	readChunks(reader, length, [&octets](const char* pData, unsigned int n)
	{
		octets.append(pData, n);
	});
}


void readOctetString(BitStreamReader& reader, std::string& octets)
{
	unsigned int length = 0;
	Decoder::nonEmptyStringLength(reader, length);
	readOctets(reader, length, octets);
}


void hexText(const std::string& octets, std::string& text)
{
	std::ostringstream stream;
	Korvo::HexBinaryEncoder encoder(stream);
	encoder.rdbuf()->setLineLength(0);
	encoder.rdbuf()->setUppercase(true);
	encoder.write(octets.data(), static_cast<std::streamsize>(octets.size()));
	encoder.close();
	text = stream.str();
}


void base64Text(const std::string& octets, std::string& text)
{
	std::ostringstream stream;
	Korvo::Base64Encoder encoder(stream);
	encoder.rdbuf()->setLineLength(0);
	encoder.write(octets.data(), static_cast<std::streamsize>(octets.size()));
	encoder.close();
	text = stream.str();
}


} } } // namespace Korvo::FastInfoset::EncodingSupport
