//
// UnparsedEntity.cpp
//
// Library: FastInfoset
// Package: Vocabulary
// Module:  UnparsedEntity
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/UnparsedEntity.h"


namespace Korvo {
namespace FastInfoset {


UnparsedEntity::UnparsedEntity()
{
}


UnparsedEntity::UnparsedEntity(const std::string& name, const std::string& publicId, const std::string& systemId, const std::string& notationName):
	_name(name),
	_publicId(publicId),
	_systemId(systemId),
	_notationName(notationName)
{
}


} } // namespace Korvo::FastInfoset
