//
// NamespaceContext.cpp
//
// Library: FastInfoset
// Package: Serializer
// Module:  NamespaceContext
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "NamespaceContext.h"
#include "Korvo/FastInfoset/ValueIndex.h"
#include <algorithm>


using Korvo::XML::NamespaceSupport;


namespace Korvo {
namespace FastInfoset {


namespace
{
	const std::string EMPTY;
}


NamespaceContext::NamespaceContext():
	_size(0),
	_changes(0),
	_reserved(false),
	_lastPosition(0),
	_lastChanges(0),
	_lastSize(NOT_FOUND)
{
	reset();
}


void NamespaceContext::reset()
{
	_lastSize = NOT_FOUND;
	_size = 0;
	_marks.clear();
	pushContext();
	// Usually the first two declarations are still these from the last
	// reset, strings and all.
	if (_reserved)
	{
		_bindings[0].indexed = false;
		_bindings[1].indexed = false;
		_size = 2;
		return;
	}
	declarePrefix(NamespaceSupport::XML_NAMESPACE_PREFIX, NamespaceSupport::XML_NAMESPACE);
	declarePrefix(NamespaceSupport::XMLNS_NAMESPACE_PREFIX, NamespaceSupport::XMLNS_NAMESPACE);
	_reserved = true;
}


inline bool NamespaceContext::equal(std::string_view left, std::string_view right)
{
	return left.size() == right.size() && ValueHash<std::string>::sameOctets(left.data(), right.data(), left.size());
}


inline std::size_t NamespaceContext::currentMark() const
{
	poco_assert (!_marks.empty());
	return _marks.back();
}


bool NamespaceContext::declarePrefix(std::string_view prefix, std::string_view uri)
{
	for (std::size_t i = currentMark(); i < _size; ++i)
	{
		if (equal(_bindings[i].prefix, prefix)) return false;
	}
	if (_size == _bindings.size()) _bindings.emplace_back();
	if (_size < 2) _reserved = false;
	Binding& binding = _bindings[_size++];
	binding.prefix.assign(prefix);
	binding.uri.assign(uri);
	binding.indexed = false;
	++_changes;
	return true;
}


bool NamespaceContext::undeclarePrefix(std::string_view prefix)
{
	for (std::size_t i = _size; i-- > 0; )
	{
		if (!equal(_bindings[i].prefix, prefix)) continue;
		// The binding's strings move to the spare end; the contexts above
		// its own start one place earlier.
		if (i < 2) _reserved = false;
		std::rotate(_bindings.begin() + i, _bindings.begin() + i + 1, _bindings.begin() + _size);
		--_size;
		++_changes;
		for (std::size_t& mark: _marks)
		{
			if (mark > i) --mark;
		}
		return true;
	}
	return false;
}


const std::string& NamespaceContext::getURI(std::string_view prefix) const
{
	const std::size_t position = find(prefix);
	return position == NOT_FOUND ? EMPTY : _bindings[position].uri;
}


std::size_t NamespaceContext::find(std::string_view prefix) const
{
	// A context declares a prefix once: the last declaration is the innermost.
	for (std::size_t i = _size; i-- > 0; )
	{
		if (equal(_bindings[i].prefix, prefix)) return i;
	}
	return NOT_FOUND;
}


const std::string& NamespaceContext::getPrefix(const std::string& uri) const
{
	const std::size_t position = prefixPosition(uri);
	return position == NOT_FOUND ? EMPTY : _bindings[position].prefix;
}


std::size_t NamespaceContext::prefixPosition(std::string_view uri) const
{
	// Names of one namespace come one after another: the last answer holds
	// while no declaration has come or gone and none has left with its
	// context, and a context opened since declares nothing.
	if (_lastChanges == _changes && _lastSize == _size && equal(_bindings[_lastPosition].uri, uri)) return _lastPosition;
	std::size_t end = _size;
	for (std::size_t k = _marks.size(); k-- > 0; )
	{
		std::size_t found = NOT_FOUND;
		for (std::size_t i = _marks[k]; i < end; ++i)
		{
			if (equal(_bindings[i].uri, uri) && (found == NOT_FOUND || _bindings[i].prefix < _bindings[found].prefix)) found = i;
		}
		if (found != NOT_FOUND)
		{
			_lastPosition = found;
			_lastChanges = _changes;
			_lastSize = _size;
			return found;
		}
		end = _marks[k];
	}
	return NOT_FOUND;
}


bool NamespaceContext::isMapped(const std::string& uri) const
{
	for (std::size_t i = 0; i < _size; ++i)
	{
		if (equal(_bindings[i].uri, uri)) return true;
	}
	return false;
}


void NamespaceContext::getDeclaredPrefixes(NamespaceSupport::PrefixSet& prefixes) const
{
	prefixes.clear();
	for (std::size_t i = currentMark(); i < _size; ++i) prefixes.insert(_bindings[i].prefix);
}


void NamespaceContext::declaredBindings(std::vector<std::size_t>& positions) const
{
	positions.clear();
	for (std::size_t i = currentMark(); i < _size; ++i) positions.push_back(i);
	std::sort(positions.begin(), positions.end(), [this](std::size_t left, std::size_t right) { return _bindings[left].prefix < _bindings[right].prefix; });
}


} } // namespace Korvo::FastInfoset
