//
// NamespaceScope.h
//
// Library: FastInfoset
// Package: Conversion
// Module:  NamespaceScope
//
// The names under which elements and attributes are written as XML text.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_NamespaceScope_INCLUDED
#define FastInfoset_NamespaceScope_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "QualifiedAttributes.h"
#include <string>
#include <vector>


namespace Korvo {
namespace FastInfoset {


class NamespaceScope
	/// Works out, element by element, the qualified names and namespace
	/// declarations under which a document is written as XML text.
	///
	/// Each element and attribute keeps the prefix that its qualified name
	/// brings, and each declaration the document makes is written. Where
	/// the declarations in force do not bind a prefix as a name needs, the
	/// element declares it; where a prefix cannot be used (an attribute in a
	/// namespace without one, a prefix the element already binds otherwise)
	/// another prefix bound to the namespace is taken, the element's own
	/// first, else a new one (ns1, ns2, ...). An element in no namespace
	/// below a default namespace, or declaring one itself, undeclares it
	/// (xmlns=""). The text is thus namespace-well-formed and says the
	/// namespace of every name, whatever the document says.
	///
	/// The end of an element closes its declarations, whatever
	/// endPrefixMapping events say.
{
public:
	NamespaceScope();

	void declare(const std::string& prefix, const std::string& uri);
		/// A namespace declaration of the next element. Declarations XML
		/// cannot write (of the xml and xmlns prefixes, of a prefix to no
		/// namespace) are left out.

	void startElement(const std::string& uri, const std::string& localName, const std::string& qname, const Korvo::XML::Attributes& attributes);
		/// Opens an element: afterwards name() and attributes() tell how to
		/// write it. Throws FISEncodingException for names that are not XML
		/// names, attribute values with characters XML cannot hold, and
		/// attributes that would be written twice.

	const std::string& name() const;
		/// The qualified name of the innermost open element.

	const Korvo::XML::Attributes& attributes() const;
		/// The namespace declarations and attributes of the element opened
		/// last, each given by its qualified name only.

	void endElement();
		/// Closes the innermost open element.

private:
	struct Binding
	{
		std::string prefix;
		std::string uri;
	};

	const std::string& uriOf(const std::string& prefix) const;
	bool isDeclaredHere(const std::string& prefix) const;
	bool canBind(const std::string& prefix) const;
	void bind(const std::string& prefix, const std::string& uri);
	void undeclareDefault();
		/// Makes the default namespace none from the element on.
	std::string prefixFor(const std::string& uri, bool allowDefault);
		/// A prefix bound to uri in scope or, failing that, a new one.
	void attributeName(const std::string& uri, const std::string& localName, const std::string& qname);
		/// Works out an attribute's qualified name into _name.

	std::vector<Binding>       _bindings;
	std::vector<std::size_t>   _scopes;
		/// Where each open element's bindings begin.
	std::vector<std::string>   _names;
		/// The open elements' names, kept beyond their depth for reuse.
	std::vector<Binding>       _declared;
	QualifiedAttributes        _attributes;
	std::string                _elementPrefix;
	std::string                _prefix;
	std::string                _localPart;
	std::string                _name;
	int                        _generated;
};


//
// inlines
//
inline const std::string& NamespaceScope::name() const
{
	return _names[_scopes.size() - 1];
}


inline const Korvo::XML::Attributes& NamespaceScope::attributes() const
{
	return _attributes;
}


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_NamespaceScope_INCLUDED
