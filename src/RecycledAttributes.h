//
// RecycledAttributes.h
//
// Library: FastInfoset
// Package: Parser
// Module:  RecycledAttributes
//
// An attribute list that the parser fills again for every element of one
// name, rewriting only what changed.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_RecycledAttributes_INCLUDED
#define FastInfoset_RecycledAttributes_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Poco/SAX/AttributesImpl.h"
#include <string>
#include <vector>


namespace Korvo {
namespace FastInfoset {


class RecycledAttributes
	/// The attributes of one element at a time, as startElement receives
	/// them: namespace URI, local name and value; qualified name empty
	/// unless asked for, type empty.
	///
	/// Elements of one name usually repeat their attribute names, so an
	/// entry keeps its strings from one element to the next and copies a
	/// name only when it is not the table string it was last copied from.
	/// The table strings must stay where they are while the list is in use;
	/// forgetSources() is for when they may not.
{
public:
	RecycledAttributes();

	void restart();
		/// Begins the attributes of the next element.

	void add(const std::string* pURI, const std::string* pLocalName, const std::string& value, const std::string* pPrefix = nullptr);
		/// Appends an attribute. pURI, pLocalName and pPrefix point at table
		/// strings. With a prefix, the attribute carries its qualified name.

	void add(const std::string* pURI, const std::string* pLocalName, const char* pValue, std::size_t length, const std::string* pPrefix = nullptr);
		/// Appends an attribute whose value is the length octets at pValue.

	void finish();
		/// Drops the entries that the element before had beyond this one's.

	void forgetSources();
		/// Makes the next fill copy every name: the strings it was made
		/// from may have gone.

	const Korvo::XML::AttributesImpl& attributes() const;

private:
	Korvo::XML::AttributesImpl::Attribute& next(const std::string* pURI, const std::string* pLocalName, const std::string* pPrefix);
		/// The entry for the next attribute, with its names set.
	static void setQName(Korvo::XML::AttributesImpl::Attribute& attr, const std::string* pPrefix, const std::string& localName);
		/// The entry's qualified name: empty without a prefix.
	void grow();
		/// Appends an empty entry with no source.
	void dropUnused();

	struct Source
	{
		const std::string* pURI;
		const std::string* pLocalName;
		const std::string* pPrefix;
	};

	Korvo::XML::AttributesImpl _attributes;
	std::vector<Source>        _sources;
		/// The table strings each entry's names were copied from, one per entry.
	int                        _count;
		/// Entries filled for the current element.
};


//
// inlines
//
inline void RecycledAttributes::restart()
{
	_count = 0;
}


inline void RecycledAttributes::finish()
{
	if (_count < _attributes.getLength()) dropUnused();
}


inline const Korvo::XML::AttributesImpl& RecycledAttributes::attributes() const
{
	return _attributes;
}


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_RecycledAttributes_INCLUDED
