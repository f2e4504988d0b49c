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
#include "ChangedString.h"


using Korvo::XML::AttributesImpl;


namespace Korvo {
namespace FastInfoset {


namespace
{
	const std::size_t INITIAL_CAPACITY = 4;
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
	assignChanged(next(pURI, pLocalName, pPrefix).value, value);
}


void RecycledAttributes::add(const std::string* pURI, const std::string* pLocalName, const char* pValue, std::size_t length, const std::string* pPrefix)
{
	assignChanged(next(pURI, pLocalName, pPrefix).value, pValue, length);
}


AttributesImpl::Attribute& RecycledAttributes::next(const std::string* pURI, const std::string* pLocalName, const std::string* pPrefix)
{
	if (_count == _attributes.getLength()) grow();

	// The list offers its entries read-only only; they are this object's own,
	// and writing them directly spares a call per name and value.
	AttributesImpl::Attribute& attr = const_cast<AttributesImpl::Attribute&>(_attributes.begin()[_count]);
	Source& source = _sources[_count];
	if (source.pPrefix != pPrefix || (pPrefix && source.pLocalName != pLocalName))
	{
		setQName(attr, pPrefix, *pLocalName);
		source.pPrefix = pPrefix;
	}
	if (source.pURI != pURI)
	{
		assignChanged(attr.namespaceURI, *pURI);
		source.pURI = pURI;
	}
	if (source.pLocalName != pLocalName)
	{
		assignChanged(attr.localName, *pLocalName);
		source.pLocalName = pLocalName;
	}
	++_count;
	return attr;
}


void RecycledAttributes::setQName(AttributesImpl::Attribute& attr, const std::string* pPrefix, const std::string& localName)
{
	if (!pPrefix)
		attr.qname.clear();
	else if (pPrefix->empty())
		attr.qname = localName;
	else
	{
		attr.qname = *pPrefix;
		attr.qname += ':';
		attr.qname += localName;
	}
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
