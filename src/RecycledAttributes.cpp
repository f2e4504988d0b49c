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
	const std::string NO_NAME;
}


RecycledAttributes::RecycledAttributes():
	_count(0)
{
	_attributes.reserve(INITIAL_CAPACITY);
	_sources.reserve(INITIAL_CAPACITY);
}


void RecycledAttributes::add(const std::string* pURI, const std::string* pLocalName, const std::string& value, const std::string* pPrefix)
{
	if (_count == _attributes.getLength()) grow();

	Source& source = _sources[_count];
	if (source.pPrefix != pPrefix || (pPrefix && source.pLocalName != pLocalName))
	{
		setQName(pPrefix, *pLocalName);
		source.pPrefix = pPrefix;
	}
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


void RecycledAttributes::setQName(const std::string* pPrefix, const std::string& localName)
{
	if (!pPrefix)
		_attributes.setQName(_count, NO_NAME);
	else if (pPrefix->empty())
		_attributes.setQName(_count, localName);
	else
		_attributes.setQName(_count, *pPrefix + ':' + localName);
}


void RecycledAttributes::grow()
{
	_sources.push_back(Source{nullptr, nullptr, nullptr});
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
	// No table string is NO_NAME, so the next fill rewrites the
	// qualified name too.
	for (Source& source: _sources) source = Source{nullptr, nullptr, &NO_NAME};
}


} } // namespace Korvo::FastInfoset
