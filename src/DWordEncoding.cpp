//
// DWordEncoding.cpp
//
// Library: FastInfoset
// Package: Encodings
// Module:  DWordEncoding
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/DWordEncoding.h"
#include "Korvo/FastInfoset/EncodingAlgorithm.h"
#include "Korvo/FastInfoset/Encoder.h"
#include "Korvo/FastInfoset/FISContentHandler.h"
#include "Korvo/FastInfoset/FISException.h"
#include "EncodingSupport.h"
#include "Poco/Base64Decoder.h"
#include <climits>


namespace Korvo {
namespace FastInfoset {


namespace
{
	const char* const ZERO_LENGTH = "Zero-length data for dword encoding";
}


DWordEncoding::DWordEncoding()
{
}


DWordEncoding::DWordEncoding(const char* data, unsigned int length):
	Encoding(data, length)
{
	if (length == 0)
		throw FISEncodingException(ZERO_LENGTH);
}


DWordEncoding::DWordEncoding(const std::string& str)
{
	if (str.empty())
		throw FISEncodingException(ZERO_LENGTH);
	if (EncodingSupport::decodeText<Korvo::Base64Decoder>(str, &_content) < 0)
		throw FISEncodingException("Invalid base64-encoded data");
	if (_content.empty())
		throw FISEncodingException(ZERO_LENGTH);
}


DWordEncoding::~DWordEncoding()
{
}


int DWordEncoding::check(const std::string& str)
{
	if (str.empty())
		return -1;
	long count = EncodingSupport::decodeText<Korvo::Base64Decoder>(str, nullptr);
	return count > INT_MAX ? INT_MAX : static_cast<int>(count);
}


void DWordEncoding::encode(BitStreamWriter& writer, const std::string& str)
{
	DWordEncoding(str).write(writer);
}


Korvo::AutoPtr<Encoding> DWordEncoding::decode(BitStreamReader& reader)
{
	Ptr pEncoding(new DWordEncoding);
	EncodingSupport::readOctetString(reader, pEncoding->_content);
	return pEncoding;
}


void DWordEncoding::decode(BitStreamReader& reader, std::string& result)
{
	std::string octets;
	EncodingSupport::readOctetString(reader, octets);
	EncodingSupport::base64Text(octets, result);
}


std::string DWordEncoding::text() const
{
	std::string result;
	EncodingSupport::base64Text(_content, result);
	return result;
}


int DWordEncoding::type() const
{
	return EncodingAlgorithm::DWORD_ENCODING;
}


bool DWordEncoding::merge(const Encoding& enc)
{
	if (enc.type() != type() || !dynamic_cast<const DWordEncoding*>(&enc))
		return false;
	_content.append(enc.content());
	return true;
}


void DWordEncoding::write(BitStreamWriter& writer) const
{
	poco_assert(!_content.empty());
	Encoder::nonEmptyOctetString(writer, _content);
}


Encoding::DecodeMethod DWordEncoding::decodeMethod() const
{
	return &DWordEncoding::decode;
}


Encoding::CheckMethod DWordEncoding::checkMethod() const
{
	return &DWordEncoding::check;
}


Encoding::EncodeMethod DWordEncoding::encodeMethod() const
{
	return &DWordEncoding::encode;
}


void DWordEncoding::handle(Korvo::XML::ContentHandler* pHandler) const
{
	if (pHandler)
	{
		std::string str = text();
		pHandler->characters(str.data(), 0, static_cast<int>(str.length()));
	}
}


void DWordEncoding::handle(FISContentHandler* pHandler) const
{
	if (pHandler)
		pHandler->binaryData(_content.data(), static_cast<unsigned int>(_content.size()));
}


void DWordEncoding::createContent()
{
}


} } // namespace Korvo::FastInfoset
