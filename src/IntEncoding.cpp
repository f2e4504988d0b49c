//
// IntEncoding.cpp
//
// Library: FastInfoset
// Package: Encodings
// Module:  IntEncoding
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/IntEncoding.h"
#include "Korvo/FastInfoset/EncodingAlgorithm.h"
#include "NumericEncodingImpl.h"


namespace Korvo {
namespace FastInfoset {


using Codec = NumericCodec<int>;


IntEncoding::IntEncoding()
{
}


IntEncoding::IntEncoding(int value):
	_data(1, value)
{
	createContent();
}


IntEncoding::IntEncoding(const std::vector<int>& data):
	_data(data)
{
	Codec::requireValues(_data);
	createContent();
}


IntEncoding::IntEncoding(const std::string& str)
{
	Codec::parseText(str, _data);
	createContent();
}


IntEncoding::~IntEncoding()
{
}


void IntEncoding::parse(const std::string& str, std::vector<int>& data)
{
	Codec::parse(str, data);
}


int IntEncoding::check(const std::string& str)
{
	return Codec::check(str);
}


void IntEncoding::encode(BitStreamWriter& writer, const std::string& str)
{
	IntEncoding(str).write(writer);
}


Korvo::AutoPtr<Encoding> IntEncoding::decode(BitStreamReader& reader)
{
	Ptr pEncoding(new IntEncoding);
	Codec::decode<FISEncodingException>(reader, pEncoding->_data);
	pEncoding->deferContent();
	return pEncoding;
}


void IntEncoding::decode(BitStreamReader& reader, std::string& result)
{
	Codec::decodeText(reader, result);
}


void IntEncoding::decode(BitStreamReader& reader, std::vector<int>& val)
{
	Codec::decode<FISEncodingException>(reader, val);
}


int IntEncoding::type() const
{
	return EncodingAlgorithm::INT_ENCODING;
}


bool IntEncoding::merge(const Encoding& enc)
{
	const IntEncoding* pOther = dynamic_cast<const IntEncoding*>(&enc);
	if (!pOther || enc.type() != type())
		return false;
	EncodingSupport::appendValues(_data, pOther->_data);
	return true;
}


void IntEncoding::write(BitStreamWriter& writer) const
{
	Codec::write(writer, _data);
}


Encoding::DecodeMethod IntEncoding::decodeMethod() const
{
	return &IntEncoding::decode;
}


Encoding::CheckMethod IntEncoding::checkMethod() const
{
	return &IntEncoding::check;
}


Encoding::EncodeMethod IntEncoding::encodeMethod() const
{
	return &IntEncoding::encode;
}


void IntEncoding::handle(FISContentHandler* pHandler) const
{
	Codec::handle(_data, pHandler);
}


void IntEncoding::createContent()
{
	_content.clear();
	Codec::appendText(_content, _data);
}


} } // namespace Korvo::FastInfoset
