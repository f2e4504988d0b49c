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

	bool declarePrefix(const std::string& prefix, const std::string& uri);
		/// Declares prefix in the current context; false, changing nothing,
		/// when the context declares it already.

	bool undeclarePrefix(const std::string& prefix);
		/// Removes the innermost declaration of prefix; false when there is none.

	const std::string& getURI(const std::string& prefix) const;
		/// The namespace of the innermost declaration of prefix, or an empty string.

	const std::string& getPrefix(const std::string& uri) const;
		/// A prefix of the innermost context that maps one to uri, or an empty string.

	bool isMapped(const std::string& uri) const;
		/// True when a context maps a prefix to uri.

	void getDeclaredPrefixes(Korvo::XML::NamespaceSupport::PrefixSet& prefixes) const;
		/// The prefixes the current context declares.

	void declaredBindings(std::vector<std::size_t>& positions) const;
		/// The positions of the current context's declarations, in prefix order.

	const std::string& prefixAt(std::size_t position) const;
	const std::string& uriAt(std::size_t position) const;

private:
	struct Binding
	{
		std::string prefix;
		std::string uri;
	};

	static bool equal(const std::string& left, const std::string& right);
	std::size_t currentMark() const;

	std::vector<Binding>     _bindings;
		/// Those from _size on are spare.
	std::size_t              _size;
	std::vector<std::size_t> _marks;
		/// Where each context starts.
};


//
// inlines
//
inline const std::string& NamespaceContext::prefixAt(std::size_t position) const
{
	return _bindings[position].prefix;
}


inline const std::string& NamespaceContext::uriAt(std::size_t position) const
{
	return _bindings[position].uri;
}


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_NamespaceContext_INCLUDED
