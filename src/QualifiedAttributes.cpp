//
// QualifiedAttributes.cpp
//
// Library: FastInfoset
// Package: Conversion
// Module:  QualifiedAttributes
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "QualifiedAttributes.h"


using Korvo::XML::XMLString;


namespace Korvo {
namespace FastInfoset {


namespace
{
	const XMLString NONE;
	const XMLString CDATA("CDATA");
}


QualifiedAttributes::QualifiedAttributes():
	_length(0)
{
}


QualifiedAttributes::~QualifiedAttributes()
{
}


void QualifiedAttributes::clear()
{
	_length = 0;
}


void QualifiedAttributes::add(const std::string& qname, const std::string& value)
{
	if (static_cast<std::size_t>(_length) == _entries.size()) _entries.emplace_back();
	_entries[_length].first = qname;
	_entries[_length].second = value;
	++_length;
}


void QualifiedAttributes::setValue(int i, const std::string& value)
{
	_entries.at(static_cast<std::size_t>(i)).second = value;
}


int QualifiedAttributes::getIndex(const XMLString& name) const
{
	for (int i = 0; i < _length; ++i)
	{
		if (_entries[i].first == name) return i;
	}
	return -1;
}


int QualifiedAttributes::getIndex(const XMLString&, const XMLString&) const
{
	return -1;
}


int QualifiedAttributes::getLength() const
{
	return _length;
}


const XMLString& QualifiedAttributes::getLocalName(int) const
{
	return NONE;
}


const XMLString& QualifiedAttributes::getQName(int i) const
{
	return _entries.at(static_cast<std::size_t>(i)).first;
}


const XMLString& QualifiedAttributes::getType(int) const
{
	return CDATA;
}


const XMLString& QualifiedAttributes::getType(const XMLString& qname) const
{
	return getIndex(qname) < 0 ? NONE : CDATA;
}


const XMLString& QualifiedAttributes::getType(const XMLString&, const XMLString&) const
{
	return NONE;
}


const XMLString& QualifiedAttributes::getValue(int i) const
{
	return _entries.at(static_cast<std::size_t>(i)).second;
}


const XMLString& QualifiedAttributes::getValue(const XMLString& qname) const
{
	const int i = getIndex(qname);
	return i < 0 ? NONE : _entries[i].second;
}


const XMLString& QualifiedAttributes::getValue(const XMLString&, const XMLString&) const
{
	return NONE;
}


const XMLString& QualifiedAttributes::getURI(int) const
{
	return NONE;
}


} } // namespace Korvo::FastInfoset
