//
// QualifiedAttributes.h
//
// Library: FastInfoset
// Package: Conversion
// Module:  QualifiedAttributes
//
// An attribute list of qualified names and values, refilled for every
// element.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_QualifiedAttributes_INCLUDED
#define FastInfoset_QualifiedAttributes_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include <string>
#include <utility>
#include <vector>


namespace Korvo {
namespace FastInfoset {


class QualifiedAttributes: public Korvo::XML::Attributes
	/// The attributes of one element at a time, each a qualified name and a
	/// value (no namespace URI or local name; type CDATA), as an XML writer
	/// takes them when it is to write the names as given.
	///
	/// clear() keeps the entries' strings, so that refilling the list for
	/// the next element does not allocate.
{
public:
	QualifiedAttributes();
	~QualifiedAttributes();

	void clear();
		/// Empties the list.

	void add(const std::string& qname, const std::string& value);

	void setValue(int i, const std::string& value);

	// Attributes
	int getIndex(const Korvo::XML::XMLString& name) const;
	int getIndex(const Korvo::XML::XMLString& namespaceURI, const Korvo::XML::XMLString& localName) const;
	int getLength() const;
	const Korvo::XML::XMLString& getLocalName(int i) const;
	const Korvo::XML::XMLString& getQName(int i) const;
	const Korvo::XML::XMLString& getType(int i) const;
	const Korvo::XML::XMLString& getType(const Korvo::XML::XMLString& qname) const;
	const Korvo::XML::XMLString& getType(const Korvo::XML::XMLString& namespaceURI, const Korvo::XML::XMLString& localName) const;
	const Korvo::XML::XMLString& getValue(int i) const;
	const Korvo::XML::XMLString& getValue(const Korvo::XML::XMLString& qname) const;
	const Korvo::XML::XMLString& getValue(const Korvo::XML::XMLString& uri, const Korvo::XML::XMLString& localName) const;
	const Korvo::XML::XMLString& getURI(int i) const;

private:
	std::vector<std::pair<std::string, std::string>> _entries;
	int _length;
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_QualifiedAttributes_INCLUDED
