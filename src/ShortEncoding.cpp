//
// ShortEncoding.cpp
//
// Library: FastInfoset
// Package: Encodings
// Module:  ShortEncoding
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/ShortEncoding.h"
#include "Korvo/FastInfoset/EncodingAlgorithm.h"
#include "NumericEncodingImpl.h"


namespace Korvo {
namespace FastInfoset {


using Codec = NumericCodec<short>;


ShortEncoding::ShortEncoding()
{
}


ShortEncoding::ShortEncoding(short value):
	_data(1, value)
{
	createContent();
}


ShortEncoding::ShortEncoding(const std::vector<short>& data):
	_data(data)
{
	Codec::requireValues(_data);
	createContent();
}


ShortEncoding::ShortEncoding(const std::string& str)
{
	Codec::parseText(str, _data);
	createContent();
}


ShortEncoding::~ShortEncoding()
{
}


void ShortEncoding::parse(const std::string& str, std::vector<short>& data)
{
	Codec::parse(str, data);
}


int ShortEncoding::check(const std::string& str)
{
	return Codec::check(str);
}


void ShortEncoding::encode(BitStreamWriter& writer, const std::string& str)
{
	ShortEncoding(str).write(writer);
}


Korvo::AutoPtr<Encoding> ShortEncoding::decode(BitStreamReader& reader)
{
	Ptr pEncoding(new ShortEncoding);
	Codec::decode<FISEncodingException>(reader, pEncoding->_data);
	pEncoding->deferContent();
	return pEncoding;
}


void ShortEncoding::decode(BitStreamReader& reader, std::string& result)
{
	Codec::decodeText(reader, result);
}


void ShortEncoding::decode(BitStreamReader& reader, std::vector<short>& val)
{
	Codec::decode<FISEncodingException>(reader, val);
}


int ShortEncoding::type() const
{
	return EncodingAlgorithm::SHORT_ENCODING;
}


bool ShortEncoding::merge(const Encoding& enc)
{
	const ShortEncoding* pOther = dynamic_cast<const ShortEncoding*>(&enc);
	if (!pOther || enc.type() != type())
		return false;
	EncodingSupport::appendValues(_data, pOther->_data);
	return true;
}


void ShortEncoding::write(BitStreamWriter& writer) const
{
	Codec::write(writer, _data);
}


Encoding::DecodeMethod ShortEncoding::decodeMethod() const
{
	return &ShortEncoding::decode;
}


Encoding::CheckMethod ShortEncoding::checkMethod() const
{
	return &ShortEncoding::check;
}


Encoding::EncodeMethod ShortEncoding::encodeMethod() const
{
	return &ShortEncoding::encode;
}


void ShortEncoding::handle(FISContentHandler* pHandler) const
{
	Codec::handle(_data, pHandler);
}


void ShortEncoding::createContent()
{
	_content.clear();
	Codec::appendText(_content, _data);
}


} } // namespace Korvo::FastInfoset
