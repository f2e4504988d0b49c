//
// SampleDocuments.h
//
// Library: FastInfoset
// Package: Fuzz
// Module:  SampleDocuments
//
// Small valid documents, written by FastInfosetWriter, that seed the fuzz
// targets and check that a parser still works after a bad document.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_SampleDocuments_INCLUDED
#define FastInfoset_SampleDocuments_INCLUDED


#include <string>
#include <vector>


namespace Korvo {
namespace FastInfoset {
namespace Fuzz {


struct SampleDocument
{
	std::string name;
	std::string octets;
};


std::vector<SampleDocument> sampleDocuments();
	/// Each kind of item at least once: elements, attributes and namespaces;
	/// text, repeated names and strings (written as indices); every typed
	/// value; comments, processing instructions, a document type
	/// declaration, CDATA, notations and unparsed entities; an XML
	/// declaration and an initial vocabulary. A few hand-made documents add
	/// the forms that the writer never produces (UTF-16 and
	/// restricted-alphabet strings, additional data).


const std::string& referenceDocument();
	/// A document with a little of everything, for checking that a parser
	/// reads it correctly after whatever came before.


std::string octetsOfHex(const std::string& hex);
	/// "E0 00 01" as octets; blanks are ignored.


} } } // namespace Korvo::FastInfoset::Fuzz


#endif // FastInfoset_SampleDocuments_INCLUDED
