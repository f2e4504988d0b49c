//
// NamespaceScope.cpp
//
// Library: FastInfoset
// Package: Conversion
// Module:  NamespaceScope
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "NamespaceScope.h"
#include "XMLCharacters.h"
#include "Korvo/FastInfoset/FISException.h"


using Korvo::XML::NamespaceSupport;


namespace Korvo {
namespace FastInfoset {


namespace
{
	const std::string NO_URI;
	const std::string XML_PREFIX("xml");
	const std::string XMLNS_PREFIX("xmlns");

	void splitQName(const std::string& qname, std::string& prefix, std::string& localPart)
	{
		const std::string::size_type colon = qname.find(':');
		if (colon == std::string::npos)
		{
			prefix.clear();
			localPart = qname;
		}
		else
		{
			prefix.assign(qname, 0, colon);
			localPart.assign(qname, colon + 1, std::string::npos);
		}
	}

	void join(const std::string& prefix, const std::string& localName, std::string& qname)
	{
		qname = prefix;
		if (!prefix.empty()) qname += ':';
		qname += localName;
	}
}


NamespaceScope::NamespaceScope():
	_generated(0)
{
}


void NamespaceScope::declare(const std::string& prefix, const std::string& uri)
{
	if (prefix == XML_PREFIX || prefix == XMLNS_PREFIX || (!prefix.empty() && !XMLCharacters::isNCName(prefix))) return;
	if (!prefix.empty() && uri.empty()) return;
	if (uri == NamespaceSupport::XML_NAMESPACE || uri == NamespaceSupport::XMLNS_NAMESPACE) return;
	_declared.push_back(Binding{prefix, uri});
}


void NamespaceScope::startElement(const std::string& uri, const std::string& localName, const std::string& qname, const Korvo::XML::Attributes& attributes)
{
	_scopes.push_back(_bindings.size());
	_attributes.clear();
	for (const Binding& declaration: _declared)
	{
		if (!isDeclaredHere(declaration.prefix)) bind(declaration.prefix, declaration.uri);
	}
	_declared.clear();

	XMLCharacters::checkNCName(localName);
	splitQName(qname, _elementPrefix, _localPart);
	if (uri.empty())
	{
		_elementPrefix.clear();
		if (!uriOf(_elementPrefix).empty()) undeclareDefault();
	}
	else if (uri == NamespaceSupport::XML_NAMESPACE)
	{
		_elementPrefix = XML_PREFIX;
	}
	else
	{
		if (uriOf(_elementPrefix) != uri && !canBind(_elementPrefix)) _elementPrefix = prefixFor(uri, true);
		if (uriOf(_elementPrefix) != uri) bind(_elementPrefix, uri);
	}
	if (_names.size() == _scopes.size() - 1) _names.emplace_back();
	join(_elementPrefix, localName, _names[_scopes.size() - 1]);

	for (int i = 0; i < attributes.getLength(); ++i)
	{
		attributeName(attributes.getURI(i), attributes.getLocalName(i), attributes.getQName(i));
		const std::string& value = attributes.getValue(i);
		XMLCharacters::checkText(value);
		if (_attributes.getIndex(_name) >= 0) throw FISEncodingException("Attribute \"" + _name + "\" cannot be written twice in one element");
		_attributes.add(_name, value);
	}
}


void NamespaceScope::attributeName(const std::string& uri, const std::string& localName, const std::string& qname)
{
	splitQName(qname, _prefix, _localPart);
	const std::string& local = localName.empty() ? _localPart : localName;
	XMLCharacters::checkNCName(local);
	if (uri.empty())
	{
		// Written as xmlns="...", it would be a declaration.
		if (local == XMLNS_PREFIX) throw FISEncodingException("Attribute \"xmlns\" in no namespace cannot be written in XML");
		_name = local;
		return;
	}
	if (uri == NamespaceSupport::XML_NAMESPACE)
	{
		join(XML_PREFIX, local, _name);
		return;
	}
	if (uri == NamespaceSupport::XMLNS_NAMESPACE) throw FISEncodingException("Attribute \"" + local + "\" in the namespace of declarations cannot be written in XML");

	// An attribute without a prefix is in no namespace, so one is needed;
	// one the element itself uses is not bound anew.
	if (_prefix.empty() || (uriOf(_prefix) != uri && (!canBind(_prefix) || _prefix == _elementPrefix)))
		_prefix = !_elementPrefix.empty() && uriOf(_elementPrefix) == uri ? _elementPrefix : prefixFor(uri, false);
	if (uriOf(_prefix) != uri) bind(_prefix, uri);
	join(_prefix, local, _name);
}


void NamespaceScope::undeclareDefault()
{
	// A default namespace that the element itself declares contradicts its
	// name; its children get the declarations they need anyway.
	for (std::size_t i = _scopes.back(); i < _bindings.size(); ++i)
	{
		if (_bindings[i].prefix.empty())
		{
			_bindings[i].uri.clear();
			_attributes.setValue(_attributes.getIndex(XMLNS_PREFIX), NO_URI);
			return;
		}
	}
	bind(NO_URI, NO_URI);
}


void NamespaceScope::endElement()
{
	_bindings.resize(_scopes.back());
	_scopes.pop_back();
}


const std::string& NamespaceScope::uriOf(const std::string& prefix) const
{
	for (auto it = _bindings.rbegin(); it != _bindings.rend(); ++it)
	{
		if (it->prefix == prefix) return it->uri;
	}
	return prefix == XML_PREFIX ? NamespaceSupport::XML_NAMESPACE : NO_URI;
}


bool NamespaceScope::isDeclaredHere(const std::string& prefix) const
{
	for (std::size_t i = _scopes.back(); i < _bindings.size(); ++i)
	{
		if (_bindings[i].prefix == prefix) return true;
	}
	return false;
}


bool NamespaceScope::canBind(const std::string& prefix) const
{
	return prefix != XML_PREFIX && prefix != XMLNS_PREFIX && !isDeclaredHere(prefix) && (prefix.empty() || XMLCharacters::isNCName(prefix));
}


void NamespaceScope::bind(const std::string& prefix, const std::string& uri)
{
	XMLCharacters::checkText(uri);
	_bindings.push_back(Binding{prefix, uri});
	_attributes.add(prefix.empty() ? XMLNS_PREFIX : XMLNS_PREFIX + ':' + prefix, uri);
}


std::string NamespaceScope::prefixFor(const std::string& uri, bool allowDefault)
{
	for (auto it = _bindings.rbegin(); it != _bindings.rend(); ++it)
	{
		if (it->uri == uri && (allowDefault || !it->prefix.empty()) && uriOf(it->prefix) == uri) return it->prefix;
	}
	std::string prefix;
	do prefix = "ns" + std::to_string(++_generated);
	while (!uriOf(prefix).empty() || !canBind(prefix) || prefix == _elementPrefix);
	return prefix;
}


} } // namespace Korvo::FastInfoset
