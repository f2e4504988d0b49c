//
// NullEncoding.cpp
//
// Library: FastInfoset
// Package: Encodings
// Module:  NullEncoding
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/NullEncoding.h"
#include "Korvo/FastInfoset/Encoder.h"
#include "Korvo/FastInfoset/FISContentHandler.h"
#include "Korvo/FastInfoset/FISException.h"
#include "EncodingSupport.h"
#include <climits>


namespace Korvo {
namespace FastInfoset {


NullEncoding::NullEncoding()
{
}


NullEncoding::NullEncoding(const std::string& str):
	Encoding(str)
{
	if (str.empty())
		throw FISEncodingException("Illegal empty string for NullEncoding");
}


NullEncoding::~NullEncoding()
{
}


int NullEncoding::check(const std::string& str)
{
	return static_cast<int>(std::min<std::size_t>(str.length(), INT_MAX));
}


void NullEncoding::encode(BitStreamWriter& writer, const std::string& str)
{
	NullEncoding(str).write(writer);
}


Korvo::AutoPtr<Encoding> NullEncoding::decode(BitStreamReader& reader)
{
	Ptr pEncoding(new NullEncoding);
	EncodingSupport::readOctetString(reader, pEncoding->_content);
	return pEncoding;
}


void NullEncoding::decode(BitStreamReader& reader, std::string& result)
{
	EncodingSupport::readOctetString(reader, result);
}


int NullEncoding::type() const
{
	return 0;
}


bool NullEncoding::merge(const Encoding& enc)
{
	if (enc.type() != type())
		return false;
	_content.append(enc.content());
	return true;
}


void NullEncoding::write(BitStreamWriter& writer) const
{
	poco_assert(!_content.empty());
	Encoder::nonEmptyOctetString(writer, _content);
}


Encoding::DecodeMethod NullEncoding::decodeMethod() const
{
	return &NullEncoding::decode;
}


Encoding::CheckMethod NullEncoding::checkMethod() const
{
	return &NullEncoding::check;
}


Encoding::EncodeMethod NullEncoding::encodeMethod() const
{
	return &NullEncoding::encode;
}


void NullEncoding::handle(FISContentHandler* pHandler) const
{
	Encoding::handle(static_cast<Korvo::XML::ContentHandler*>(pHandler));
}


void NullEncoding::createContent()
{
}


} } // namespace Korvo::FastInfoset
