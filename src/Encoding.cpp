//
// Encoding.cpp
//
// Library: FastInfoset
// Package: Encodings
// Module:  Encoding
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/Encoding.h"


namespace Korvo {
namespace FastInfoset {


Encoding::Encoding():
	_contentDeferred(false)
{
}


Encoding::Encoding(const std::string& content):
	_content(content),
	_contentDeferred(false)
{
}


Encoding::Encoding(const char* data, std::size_t length):
	_content(data, length),
	_contentDeferred(false)
{
}


Encoding::~Encoding()
{
}


void Encoding::handle(Korvo::XML::ContentHandler* pHandler) const
{
	if (pHandler)
	{
		const std::string& text = content();
		pHandler->characters(text.data(), 0, static_cast<int>(text.length()));
	}
}


const std::string& Encoding::content() const
{
	if (_contentDeferred)
	{
		// Only decoded values defer their text, and those are never const
		// objects, so building it here changes no object defined const.
		Encoding* pSelf = const_cast<Encoding*>(this);
		pSelf->_contentDeferred = false;
		pSelf->createContent();
	}
	return _content;
}


std::string& Encoding::content()
{
	if (_contentDeferred)
	{
		_contentDeferred = false;
		createContent();
	}
	return _content;
}


void Encoding::deferContent()
{
	_contentDeferred = true;
}


} } // namespace Korvo::FastInfoset
