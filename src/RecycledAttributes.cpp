//
// RecycledAttributes.cpp
//
// Library: FastInfoset
// Package: Parser
// Module:  RecycledAttributes
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "RecycledAttributes.h"


using Korvo::XML::AttributesImpl;


namespace Korvo {
namespace FastInfoset {


namespace
{
	const std::size_t INITIAL_CAPACITY = 8;
}


RecycledAttributes::RecycledAttributes():
	_count(0)
{
	_attributes.reserve(INITIAL_CAPACITY);
	_sources.reserve(INITIAL_CAPACITY);
}


void RecycledAttributes::add(const std::string* pURI, const std::string* pLocalName, const std::string& value)
{
	if (_count == _attributes.getLength()) grow();

	Source& source = _sources[_count];
	if (source.pURI != pURI)
	{
		_attributes.setURI(_count, *pURI);
		source.pURI = pURI;
	}
	if (source.pLocalName != pLocalName)
	{
		_attributes.setLocalName(_count, *pLocalName);
		source.pLocalName = pLocalName;
	}
	_attributes.setValue(_count, value);
	++_count;
}


void RecycledAttributes::grow()
{
	_sources.push_back(Source{nullptr, nullptr});
	try
	{
		AttributesImpl::Attribute& attr = _attributes.addAttribute();
		// A new entry comes with the type CDATA; the document carries no types.
		attr.type.clear();
		attr.specified = true;
	}
	catch (...)
	{
		_sources.pop_back();
		throw;
	}
}


void RecycledAttributes::dropUnused()
{
	while (_attributes.getLength() > _count)
	{
		_attributes.removeAttribute(_attributes.getLength() - 1);
		_sources.pop_back();
	}
}


void RecycledAttributes::forgetSources()
{
	for (Source& source: _sources) source = Source{nullptr, nullptr};
}


} } // namespace Korvo::FastInfoset
