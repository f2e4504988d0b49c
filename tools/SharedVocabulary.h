//
// SharedVocabulary.h
//
// Library: FastInfoset
// Package: Tools
// Module:  SharedVocabulary
//
// A vocabulary that documents name instead of carrying it.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_SharedVocabulary_INCLUDED
#define FastInfoset_SharedVocabulary_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/DocumentVocabulary.h"
#include <istream>
#include <memory>
#include <ostream>
#include <string>
#include <unordered_set>


namespace Korvo {
namespace FastInfoset {


class FastInfosetParser;
class FastInfosetWriter;


namespace Tool {


POCO_DECLARE_EXCEPTION(, VocabularyException, Korvo::Exception)
	/// A vocabulary file that cannot be used, or a document that names a
	/// vocabulary that was not given.


class SharedVocabulary
	/// The vocabulary of a vocabulary file (see VocabularyFile), named by a
	/// URI: the documents written with it name the URI and write what it
	/// holds by index, and the documents that name the URI are read against
	/// it, without opening anything.
	///
	/// Every use of the vocabulary by a writer or a parser goes through
	/// this class. A const object may be used by several threads at once.
{
public:
	SharedVocabulary(const std::string& path, const std::string& uri);
		/// Reads the vocabulary file at path ("-": standard input). An empty
		/// uri names the vocabulary after the file: its name without the
		/// directory. Throws VocabularyException naming the file.

	const std::string& uri() const;

	bool holds(DocumentVocabulary::ID table, const std::string& value) const;
		/// Whether value is in the vocabulary's ATTRIBUTE_VALUE,
		/// CHARACTER_CONTENT_CHUNK or OTHER_STRING table.

	void useIn(FastInfosetWriter& writer) const;
		/// Makes writer write names and values that the vocabulary holds by
		/// index, and its document name the vocabulary. Call it before
		/// anything else changes the writer's vocabulary. Throws
		/// VocabularyException when a table holds a value twice: a writer
		/// cannot refer to the second one.

	std::unique_ptr<FastInfosetParser> newParser() const;
		/// A parser for one document that names the vocabulary.

	void decode(std::istream& input, std::ostream& output, int options) const;
		/// Converter::convertToXML() of a document that names the vocabulary.

private:
	std::string _uri;
	DocumentVocabulary _reading;
		/// As the library loads an external vocabulary (VOC_VECTOR).
	DocumentVocabulary _writing;
		/// The same entries in VOC_MAP tables, which a writer can search.
	std::string _notWritable;
		/// Why no writer can use the vocabulary, or empty.
	std::unordered_set<std::string> _values[3];
		/// The entries of the value tables, for holds(): their own look-up
		/// structures are not to be shared between threads.
};


//
// inlines
//
inline const std::string& SharedVocabulary::uri() const
{
	return _uri;
}


} } } // namespace Korvo::FastInfoset::Tool


#endif // FastInfoset_SharedVocabulary_INCLUDED
