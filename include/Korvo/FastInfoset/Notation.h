//
// Notation.h
//
// Library: FastInfoset
// Package: Vocabulary
// Module:  Notation
//
// A notation declaration, gathered for and read from the document header.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_Notation_INCLUDED
#define FastInfoset_Notation_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include <string>


namespace Korvo {
namespace FastInfoset {


class FastInfoset_API Notation
	/// A notation declaration: name, public identifier and system identifier.
{
public:
	Notation();
	Notation(const std::string& name, const std::string& publicId, const std::string& systemId);

	const std::string& getName() const;
	const std::string& getPublicId() const;
	const std::string& getSystemId() const;

private:
	std::string _name;
	std::string _publicId;
	std::string _systemId;
};


//
// inlines
//
inline const std::string& Notation::getName() const
{
	return _name;
}


inline const std::string& Notation::getPublicId() const
{
	return _publicId;
}


inline const std::string& Notation::getSystemId() const
{
	return _systemId;
}


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_Notation_INCLUDED
