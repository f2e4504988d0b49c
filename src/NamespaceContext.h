//
// NamespaceContext.h
//
// Library: FastInfoset
// Package: Serializer
// Module:  NamespaceContext
//
// The prefix declarations in force while a writer writes a document.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_NamespaceContext_INCLUDED
#define FastInfoset_NamespaceContext_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Poco/SAX/NamespaceSupport.h"
#include <string>
#include <string_view>
#include <vector>


namespace Korvo {
namespace FastInfoset {


class NamespaceContext
	/// Answers as the platform's NamespaceSupport does, for the operations a
	/// writer uses, from one flat list of declarations: a context is the
	/// part of the list from its mark on, and the list keeps the strings of
	/// declarations that have gone, so that declaring again allocates
	/// nothing once a document of the same shape has been written.
	///
	/// Where several prefixes of one context map to a namespace, the one
	/// found for it is the first in prefix order, as with the platform's.
	/// References to strings stay valid until the next declaration or
	/// removal.
{
public:
	NamespaceContext();

	void reset();
		/// One context that declares the xml and xmlns prefixes.

	void pushContext();
	void popContext();

	static constexpr std::size_t NOT_FOUND = static_cast<std::size_t>(-1);

	bool declarePrefix(std::string_view prefix, std::string_view uri);
		/// Declares prefix in the current context; false, changing nothing,
		/// when the context declares it already.

	bool undeclarePrefix(std::string_view prefix);
		/// Removes the innermost declaration of prefix; false when there is none.

	const std::string& getURI(std::string_view prefix) const;
		/// The namespace of the innermost declaration of prefix, or an empty string.

	std::size_t find(std::string_view prefix) const;
		/// The position of the innermost declaration of prefix, or NOT_FOUND.

	const std::string& getPrefix(const std::string& uri) const;
		/// A prefix of the innermost context that maps one to uri, or an empty string.

	std::size_t prefixPosition(std::string_view uri) const;
		/// The position of the declaration whose prefix getPrefix() gives,
		/// or NOT_FOUND when no context maps a prefix to uri.

	bool isMapped(const std::string& uri) const;
		/// True when a context maps a prefix to uri.

	void getDeclaredPrefixes(Korvo::XML::NamespaceSupport::PrefixSet& prefixes) const;
		/// The prefixes the current context declares.

	unsigned int changes() const;
		/// A count of the declarations and removals so far: positions
		/// found before stay valid while it stays the same.

	bool declaresAny() const;
		/// True when the current context declares a prefix.

	void declaredBindings(std::vector<std::size_t>& positions) const;
		/// The positions of the current context's declarations, in prefix order.

	const std::string& prefixAt(std::size_t position) const;
	const std::string& uriAt(std::size_t position) const;

	bool tableIndices(std::size_t position, unsigned int& prefixIndex, unsigned int& uriIndex) const;
		/// The indices of the declaration's prefix and namespace in the
		/// writer's tables, once setTableIndices() has noted them.

	void setTableIndices(std::size_t position, unsigned int prefixIndex, unsigned int uriIndex);

private:
	struct Binding
	{
		std::string  prefix;
		std::string  uri;
		unsigned int prefixIndex = 0;
		unsigned int uriIndex = 0;
		bool         indexed = false;
			/// The table indices are known: names in this namespace need
			/// not look their prefix and namespace up.
	};

	static bool equal(std::string_view left, std::string_view right);
	std::size_t currentMark() const;

	std::vector<Binding>     _bindings;
		/// Those from _size on are spare.
	std::size_t              _size;
	unsigned int             _changes;
	bool                     _reserved;
		/// True while the first two declarations are the xml and xmlns
		/// prefixes that reset() made.
	std::vector<std::size_t> _marks;
		/// Where each context starts.
	mutable std::size_t      _lastPosition;
	mutable unsigned int     _lastChanges;
	mutable std::size_t      _lastSize;
		/// The last position prefixPosition() found, and the count of
		/// changes and the size it was found at.
};


//
// inlines
//
inline void NamespaceContext::pushContext()
{
	_marks.push_back(_size);
}


inline void NamespaceContext::popContext()
{
	poco_assert (!_marks.empty());
	_size = _marks.back();
	_marks.pop_back();
}


inline const std::string& NamespaceContext::prefixAt(std::size_t position) const
{
	return _bindings[position].prefix;
}


inline const std::string& NamespaceContext::uriAt(std::size_t position) const
{
	return _bindings[position].uri;
}


inline unsigned int NamespaceContext::changes() const
{
	return _changes;
}


inline bool NamespaceContext::declaresAny() const
{
	return !_marks.empty() && _marks.back() < _size;
}


inline bool NamespaceContext::tableIndices(std::size_t position, unsigned int& prefixIndex, unsigned int& uriIndex) const
{
	const Binding& binding = _bindings[position];
	prefixIndex = binding.prefixIndex;
	uriIndex = binding.uriIndex;
	return binding.indexed;
}


inline void NamespaceContext::setTableIndices(std::size_t position, unsigned int prefixIndex, unsigned int uriIndex)
{
	Binding& binding = _bindings[position];
	binding.prefixIndex = prefixIndex;
	binding.uriIndex = uriIndex;
	binding.indexed = true;
}


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_NamespaceContext_INCLUDED
