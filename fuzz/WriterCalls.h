//
// WriterCalls.h
//
// Library: FastInfoset
// Package: Fuzz
// Module:  WriterCalls
//
// The calls of the writer target, by the octet that chooses them.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_WriterCalls_INCLUDED
#define FastInfoset_WriterCalls_INCLUDED


namespace Korvo {
namespace FastInfoset {
namespace Fuzz {


enum WriterCall
	/// An octet chooses the call numbered by its value modulo WRITER_CALLS.
	/// The arguments follow: a text is one octet, below 0xC0 an index into
	/// a pool of names and values, else the count (octet - 0xC0) of literal
	/// octets that follow; typed values are their raw octets.
{
	START_DOCUMENT,
	END_DOCUMENT,
	START_ELEMENT,           // uri, local name, qualified name, attributes
	END_ELEMENT,             // uri, local name, qualified name
	CHARACTERS,              // text, start (modulo its size + 2), length + 1
	CHARACTER_STRING,        // text
	IGNORABLE_WHITESPACE,    // as CHARACTERS
	PROCESSING_INSTRUCTION,  // target, data
	START_PREFIX_MAPPING,    // prefix, uri
	END_PREFIX_MAPPING,      // prefix
	COMMENT,                 // text
	START_CDATA,
	END_CDATA,
	START_DTD,               // name, public id, system id
	END_DTD,
	NOTATION,                // name, optional public id, optional system id
	UNPARSED_ENTITY,         // name, optional public id, system id, notation
	BINARY,                  // count (modulo 40), octets
	SHORT,                   // 2 octets
	INT,                     // 4 octets
	LONG,                    // 8 octets
	BOOL,                    // 1 octet, its lowest bit
	FLOAT,                   // 4 octets
	DOUBLE,                  // 8 octets
	UUID_VALUE,              // 16 octets
	EMPTY_ELEMENT,           // as START_ELEMENT
	DATA_ELEMENT,            // uri, local name, qualified name, data, three (name, value)
	MAX_INDEXED_LENGTH,      // 1 octet: 16, 0, -1, 1
	XML_DECLARATION,         // 1 octet, its lowest bit
	ENTITY_EVENTS,           // name
	FRAGMENT,                // 1 octet: startFragment when odd, else endFragment
	WRITER_CALLS
};


} } } // namespace Korvo::FastInfoset::Fuzz


#endif // FastInfoset_WriterCalls_INCLUDED
