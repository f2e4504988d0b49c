//
// FloatEncoding.cpp
//
// Library: FastInfoset
// Package: Encodings
// Module:  FloatEncoding
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/FloatEncoding.h"
#include "Korvo/FastInfoset/EncodingAlgorithm.h"
#include "NumericEncodingImpl.h"


namespace Korvo {
namespace FastInfoset {


using Codec = NumericCodec<float>;


FloatEncoding::FloatEncoding()
{
}


FloatEncoding::FloatEncoding(float value):
	_data(1, value)
{
	createContent();
}


FloatEncoding::FloatEncoding(const std::vector<float>& data):
	_data(data)
{
	Codec::requireValues(_data);
	createContent();
}


FloatEncoding::FloatEncoding(const std::string& str)
{
	Codec::parseText(str, _data);
	createContent();
}


FloatEncoding::~FloatEncoding()
{
}


void FloatEncoding::parse(const std::string& str, std::vector<float>& data)
{
	Codec::parse(str, data);
}


int FloatEncoding::check(const std::string& str)
{
	return Codec::check(str);
}


void FloatEncoding::encode(BitStreamWriter& writer, const std::string& str)
{
	FloatEncoding(str).write(writer);
}


Korvo::AutoPtr<Encoding> FloatEncoding::decode(BitStreamReader& reader)
{
	Ptr pEncoding(new FloatEncoding);
	Codec::decode<FISEncodingException>(reader, pEncoding->_data);
	pEncoding->deferContent();
	return pEncoding;
}


void FloatEncoding::decode(BitStreamReader& reader, std::string& result)
{
	Codec::decodeText(reader, result);
}


void FloatEncoding::decode(BitStreamReader& reader, std::vector<float>& val)
{
	Codec::decode<FISEncodingException>(reader, val);
}


int FloatEncoding::type() const
{
	return EncodingAlgorithm::FLOAT_ENCODING;
}


bool FloatEncoding::merge(const Encoding& enc)
{
	const FloatEncoding* pOther = dynamic_cast<const FloatEncoding*>(&enc);
	if (!pOther || enc.type() != type())
		return false;
	EncodingSupport::appendValues(_data, pOther->_data);
	return true;
}


void FloatEncoding::write(BitStreamWriter& writer) const
{
	Codec::write(writer, _data);
}


Encoding::DecodeMethod FloatEncoding::decodeMethod() const
{
	return &FloatEncoding::decode;
}


Encoding::CheckMethod FloatEncoding::checkMethod() const
{
	return &FloatEncoding::check;
}


Encoding::EncodeMethod FloatEncoding::encodeMethod() const
{
	return &FloatEncoding::encode;
}


void FloatEncoding::handle(FISContentHandler* pHandler) const
{
	Codec::handle(_data, pHandler);
}


void FloatEncoding::createContent()
{
	_content.clear();
	Codec::appendText(_content, _data);
}


} } // namespace Korvo::FastInfoset
