//
// LongEncoding.cpp
//
// Library: FastInfoset
// Package: Encodings
// Module:  LongEncoding
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/LongEncoding.h"
#include "Korvo/FastInfoset/EncodingAlgorithm.h"
#include "NumericEncodingImpl.h"


namespace Korvo {
namespace FastInfoset {


using Codec = NumericCodec<long long>;


LongEncoding::LongEncoding()
{
}


LongEncoding::LongEncoding(long long value):
	_data(1, value)
{
	createContent();
}


LongEncoding::LongEncoding(const std::vector<long long>& data):
	_data(data)
{
	Codec::requireValues(_data);
	createContent();
}


LongEncoding::LongEncoding(const std::string& str)
{
	Codec::parseText(str, _data);
	createContent();
}


LongEncoding::~LongEncoding()
{
}


void LongEncoding::parse(const std::string& str, std::vector<long long>& data)
{
	Codec::parse(str, data);
}


int LongEncoding::check(const std::string& str)
{
	return Codec::check(str);
}


void LongEncoding::encode(BitStreamWriter& writer, const std::string& str)
{
	LongEncoding(str).write(writer);
}


Korvo::AutoPtr<Encoding> LongEncoding::decode(BitStreamReader& reader)
{
	Ptr pEncoding(new LongEncoding);
	Codec::decode<FISEncodingException>(reader, pEncoding->_data);
	pEncoding->deferContent();
	return pEncoding;
}


void LongEncoding::decode(BitStreamReader& reader, std::string& result)
{
	Codec::decodeText(reader, result);
}


void LongEncoding::decode(BitStreamReader& reader, std::vector<long long>& val)
{
	Codec::decode<FISEncodingException>(reader, val);
}


int LongEncoding::type() const
{
	return EncodingAlgorithm::LONG_ENCODING;
}


bool LongEncoding::merge(const Encoding& enc)
{
	const LongEncoding* pOther = dynamic_cast<const LongEncoding*>(&enc);
	if (!pOther || enc.type() != type())
		return false;
	EncodingSupport::appendValues(_data, pOther->_data);
	return true;
}


void LongEncoding::write(BitStreamWriter& writer) const
{
	Codec::write(writer, _data);
}


Encoding::DecodeMethod LongEncoding::decodeMethod() const
{
	return &LongEncoding::decode;
}


Encoding::CheckMethod LongEncoding::checkMethod() const
{
	return &LongEncoding::check;
}


Encoding::EncodeMethod LongEncoding::encodeMethod() const
{
	return &LongEncoding::encode;
}


void LongEncoding::handle(FISContentHandler* pHandler) const
{
	Codec::handle(_data, pHandler);
}


void LongEncoding::createContent()
{
	_content.clear();
	Codec::appendText(_content, _data);
}


} } // namespace Korvo::FastInfoset
