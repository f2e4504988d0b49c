//
// CDataEncoding.cpp
//
// Library: FastInfoset
// Package: Encodings
// Module:  CDataEncoding
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/CDataEncoding.h"
#include "Korvo/FastInfoset/EncodingAlgorithm.h"
#include "Korvo/FastInfoset/Encoder.h"
#include "Korvo/FastInfoset/FISContentHandler.h"
#include "Korvo/FastInfoset/FISException.h"
#include "EncodingSupport.h"
#include <climits>


namespace Korvo {
namespace FastInfoset {


CDataEncoding::CDataEncoding()
{
}


CDataEncoding::CDataEncoding(const std::string& str):
	Encoding(str)
{
	if (str.empty())
		throw FISEncodingException("Illegal empty string for CDataEncoding");
}


CDataEncoding::~CDataEncoding()
{
}


int CDataEncoding::check(const std::string& str)
{
	return static_cast<int>(std::min<std::size_t>(str.length(), INT_MAX));
}


void CDataEncoding::encode(BitStreamWriter& writer, const std::string& str)
{
	CDataEncoding(str).write(writer);
}


Korvo::AutoPtr<Encoding> CDataEncoding::decode(BitStreamReader& reader)
{
	Ptr pEncoding(new CDataEncoding);
	EncodingSupport::readOctetString(reader, pEncoding->_content);
	return pEncoding;
}


void CDataEncoding::decode(BitStreamReader& reader, std::string& result)
{
	EncodingSupport::readOctetString(reader, result);
}


int CDataEncoding::type() const
{
	return EncodingAlgorithm::CDATA_ENCODING;
}


bool CDataEncoding::merge(const Encoding& enc)
{
	if (enc.type() != type())
		return false;
	_content.append(enc.content());
	return true;
}


void CDataEncoding::write(BitStreamWriter& writer) const
{
	poco_assert(!_content.empty());
	Encoder::nonEmptyOctetString(writer, _content);
}


Encoding::DecodeMethod CDataEncoding::decodeMethod() const
{
	return &CDataEncoding::decode;
}


Encoding::CheckMethod CDataEncoding::checkMethod() const
{
	return &CDataEncoding::check;
}


Encoding::EncodeMethod CDataEncoding::encodeMethod() const
{
	return &CDataEncoding::encode;
}


void CDataEncoding::handle(FISContentHandler* pHandler) const
{
	Encoding::handle(static_cast<Korvo::XML::ContentHandler*>(pHandler));
}


void CDataEncoding::createContent()
{
}


} } // namespace Korvo::FastInfoset
