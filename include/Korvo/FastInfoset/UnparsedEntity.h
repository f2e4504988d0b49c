//
// UnparsedEntity.h
//
// Library: FastInfoset
// Package: Vocabulary
// Module:  UnparsedEntity
//
// An unparsed entity declaration, gathered for and read from the document header.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_UnparsedEntity_INCLUDED
#define FastInfoset_UnparsedEntity_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include <string>


namespace Korvo {
namespace FastInfoset {


class FastInfoset_API UnparsedEntity
	/// An unparsed entity declaration: name, public identifier, system
	/// identifier and notation name.
{
public:
	UnparsedEntity();
	UnparsedEntity(const std::string& name, const std::string& publicId, const std::string& systemId, const std::string& notationName);

	const std::string& getName() const;
	const std::string& getPublicId() const;
	const std::string& getSystemId() const;
	const std::string& getNotationName() const;

private:
	std::string _name;
	std::string _publicId;
	std::string _systemId;
	std::string _notationName;
};


//
// inlines
//
inline const std::string& UnparsedEntity::getName() const
{
	return _name;
}


inline const std::string& UnparsedEntity::getPublicId() const
{
	return _publicId;
}


inline const std::string& UnparsedEntity::getSystemId() const
{
	return _systemId;
}


inline const std::string& UnparsedEntity::getNotationName() const
{
	return _notationName;
}


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_UnparsedEntity_INCLUDED
