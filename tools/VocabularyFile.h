//
// VocabularyFile.h
//
// Library: FastInfoset
// Package: Tools
// Module:  VocabularyFile
//
// A vocabulary stored as a Fast Infoset document, and the vocabulary that a
// document names.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_VocabularyFile_INCLUDED
#define FastInfoset_VocabularyFile_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/DocumentVocabulary.h"
#include <istream>
#include <ostream>
#include <string>


namespace Korvo {
namespace FastInfoset {
namespace Tool {


class VocabularyFile
	/// A vocabulary file is a Fast Infoset document whose tables, once it
	/// has been read, are the vocabulary: what FastInfosetParser::vocabulary()
	/// holds after parsing it with VOC_VECTOR tables, the way the library
	/// loads an external vocabulary.
	///
	/// The files written here carry every table in the document's initial
	/// vocabulary, which the parser enters in order, so that each entry gets
	/// the index it has in the vocabulary written; the document itself is one
	/// empty element named by index (the first element name), with its
	/// namespace declared by index: nothing is added to the tables after the
	/// header, and the file reads as XML too.
{
public:
	static void write(const DocumentVocabulary& vocabulary, std::ostream& output);
		/// Writes what vocabulary holds beyond a fresh vocabulary: its
		/// restricted alphabets and string and name tables.

	static DocumentVocabulary read(std::istream& input);
		/// The tables that the document in input leaves (VOC_VECTOR, no URI).
		/// Throws what the parser throws, and FISException when the document
		/// names an external vocabulary itself.

	static std::string namedVocabulary(std::istream& input);
		/// The URI of the external vocabulary that the document in input
		/// names, or an empty string. Reads no further than that URI; a
		/// document that breaks off or is no Fast Infoset document before it
		/// names none.
};


} } } // namespace Korvo::FastInfoset::Tool


#endif // FastInfoset_VocabularyFile_INCLUDED
