//
// HexEncoding.cpp
//
// Library: FastInfoset
// Package: Encodings
// Module:  HexEncoding
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/HexEncoding.h"
#include "Korvo/FastInfoset/EncodingAlgorithm.h"
#include "Korvo/FastInfoset/Encoder.h"
#include "Korvo/FastInfoset/FISContentHandler.h"
#include "Korvo/FastInfoset/FISException.h"
#include "EncodingSupport.h"
#include "Poco/HexBinaryDecoder.h"
#include <climits>


namespace Korvo {
namespace FastInfoset {


namespace
{
	const char* const ZERO_LENGTH = "Zero-length data for hex encoding";
}


HexEncoding::HexEncoding()
{
}


HexEncoding::HexEncoding(const char* data, unsigned int length):
	Encoding(data, length)
{
	if (length == 0)
		throw FISEncodingException(ZERO_LENGTH);
}


HexEncoding::HexEncoding(const std::string& str)
{
	if (str.empty())
		throw FISEncodingException(ZERO_LENGTH);
	if (EncodingSupport::decodeText<Korvo::HexBinaryDecoder>(str, &_content) < 0)
		throw FISEncodingException("Invalid hex-encoded data");
	if (_content.empty())
		throw FISEncodingException(ZERO_LENGTH);
}


HexEncoding::~HexEncoding()
{
}


int HexEncoding::check(const std::string& str)
{
	if (str.empty())
		return -1;
	long count = EncodingSupport::decodeText<Korvo::HexBinaryDecoder>(str, nullptr);
	return count > INT_MAX ? INT_MAX : static_cast<int>(count);
}


void HexEncoding::encode(BitStreamWriter& writer, const std::string& str)
{
	HexEncoding(str).write(writer);
}


Korvo::AutoPtr<Encoding> HexEncoding::decode(BitStreamReader& reader)
{
	Ptr pEncoding(new HexEncoding);
	EncodingSupport::readOctetString(reader, pEncoding->_content);
	return pEncoding;
}


void HexEncoding::decode(BitStreamReader& reader, std::string& result)
{
	std::string octets;
	EncodingSupport::readOctetString(reader, octets);
	EncodingSupport::hexText(octets, result);
}


std::string HexEncoding::text() const
{
	std::string result;
	EncodingSupport::hexText(_content, result);
	return result;
}


int HexEncoding::type() const
{
	return EncodingAlgorithm::HEX_ENCODING;
}


bool HexEncoding::merge(const Encoding& enc)
{
	if (enc.type() != type() || !dynamic_cast<const HexEncoding*>(&enc))
		return false;
	_content.append(enc.content());
	return true;
}


void HexEncoding::write(BitStreamWriter& writer) const
{
	poco_assert(!_content.empty());
	Encoder::nonEmptyOctetString(writer, _content);
}


Encoding::DecodeMethod HexEncoding::decodeMethod() const
{
	return &HexEncoding::decode;
}


Encoding::CheckMethod HexEncoding::checkMethod() const
{
	return &HexEncoding::check;
}


Encoding::EncodeMethod HexEncoding::encodeMethod() const
{
	return &HexEncoding::encode;
}


void HexEncoding::handle(Korvo::XML::ContentHandler* pHandler) const
{
	if (pHandler)
	{
		std::string str = text();
		pHandler->characters(str.data(), 0, static_cast<int>(str.length()));
	}
}


void HexEncoding::handle(FISContentHandler* pHandler) const
{
	if (pHandler)
		pHandler->binaryData(_content.data(), static_cast<unsigned int>(_content.size()));
}


void HexEncoding::createContent()
{
}


} } // namespace Korvo::FastInfoset
