//
// NullRefEncoding.cpp
//
// Library: FastInfoset
// Package: Encodings
// Module:  NullRefEncoding
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/NullRefEncoding.h"
#include "Korvo/FastInfoset/Encoder.h"


namespace Korvo {
namespace FastInfoset {


namespace
{
	const char* const IMMUTABLE = "NullRefEncoding is immutable";
}


NullRefEncoding::NullRefEncoding(const std::string& ref):
	_data(&ref)
{
}


NullRefEncoding::~NullRefEncoding()
{
}


void NullRefEncoding::reset(const std::string& ref)
{
	_data = &ref;
}


bool NullRefEncoding::merge(const Encoding&)
{
	throw Korvo::InvalidAccessException(IMMUTABLE);
}


void NullRefEncoding::write(BitStreamWriter& writer) const
{
	poco_assert(_data && !_data->empty());
	Encoder::nonEmptyOctetString(writer, *_data);
}


const std::string& NullRefEncoding::content() const
{
	return *_data;
}


std::string& NullRefEncoding::content()
{
	throw Korvo::InvalidAccessException(IMMUTABLE);
}


} } // namespace Korvo::FastInfoset
