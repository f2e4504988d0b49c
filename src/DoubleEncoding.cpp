//
// DoubleEncoding.cpp
//
// Library: FastInfoset
// Package: Encodings
// Module:  DoubleEncoding
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/DoubleEncoding.h"
#include "Korvo/FastInfoset/EncodingAlgorithm.h"
#include "NumericEncodingImpl.h"


namespace Korvo {
namespace FastInfoset {


using Codec = NumericCodec<double>;


DoubleEncoding::DoubleEncoding()
{
}


DoubleEncoding::DoubleEncoding(double value):
	_data(1, value)
{
	createContent();
}


DoubleEncoding::DoubleEncoding(const std::vector<double>& data):
	_data(data)
{
	Codec::requireValues(_data);
	createContent();
}


DoubleEncoding::DoubleEncoding(const std::string& str)
{
	Codec::parseText(str, _data);
	createContent();
}


DoubleEncoding::~DoubleEncoding()
{
}


void DoubleEncoding::parse(const std::string& str, std::vector<double>& data)
{
	Codec::parse(str, data);
}


int DoubleEncoding::check(const std::string& str)
{
	return Codec::check(str);
}


void DoubleEncoding::encode(BitStreamWriter& writer, const std::string& str)
{
	DoubleEncoding(str).write(writer);
}


Korvo::AutoPtr<Encoding> DoubleEncoding::decode(BitStreamReader& reader)
{
	Ptr pEncoding(new DoubleEncoding);
	Codec::decode<FISEncodingException>(reader, pEncoding->_data);
	pEncoding->deferContent();
	return pEncoding;
}


void DoubleEncoding::decode(BitStreamReader& reader, std::string& result)
{
	Codec::decodeText(reader, result);
}


void DoubleEncoding::decode(BitStreamReader& reader, std::vector<double>& val)
{
	Codec::decode<FISEncodingException>(reader, val);
}


int DoubleEncoding::type() const
{
	return EncodingAlgorithm::DOUBLE_ENCODING;
}


bool DoubleEncoding::merge(const Encoding& enc)
{
	const DoubleEncoding* pOther = dynamic_cast<const DoubleEncoding*>(&enc);
	if (!pOther || enc.type() != type())
		return false;
	EncodingSupport::appendValues(_data, pOther->_data);
	return true;
}


void DoubleEncoding::write(BitStreamWriter& writer) const
{
	Codec::write(writer, _data);
}


Encoding::DecodeMethod DoubleEncoding::decodeMethod() const
{
	return &DoubleEncoding::decode;
}


Encoding::CheckMethod DoubleEncoding::checkMethod() const
{
	return &DoubleEncoding::check;
}


Encoding::EncodeMethod DoubleEncoding::encodeMethod() const
{
	return &DoubleEncoding::encode;
}


void DoubleEncoding::handle(FISContentHandler* pHandler) const
{
	Codec::handle(_data, pHandler);
}


void DoubleEncoding::createContent()
{
	_content.clear();
	Codec::appendText(_content, _data);
}


} } // namespace Korvo::FastInfoset
