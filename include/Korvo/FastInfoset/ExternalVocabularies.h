//
// ExternalVocabularies.h
//
// Library: FastInfoset
// Package: Header
// Module:  ExternalVocabularies
//
// The external vocabularies an application gives a parser, by URI.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_ExternalVocabularies_INCLUDED
#define FastInfoset_ExternalVocabularies_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include <memory>
#include <string>
#include <vector>


namespace Korvo {
namespace FastInfoset {


class DocumentVocabulary;


class FastInfoset_API ExternalVocabularies
	/// The vocabularies an application gave for URIs, so that a document
	/// naming one of them as its external vocabulary is read against it
	/// without opening anything.
	///
	/// Documents of one kind usually follow one another. The tables that
	/// received a vocabulary keep it, and the next document that names the
	/// same URI gets back exactly the given content by dropping what the
	/// document before added: the vocabulary is neither loaded nor copied
	/// again.
{
public:
	ExternalVocabularies();
	~ExternalVocabularies();

	void add(const std::string& uri, const DocumentVocabulary& vocabulary);
		/// Gives a copy of vocabulary for uri, in place of any given before.

	const DocumentVocabulary* find(const std::string& uri) const;
		/// The vocabulary given for uri, or null.

	bool install(const std::string& uri, DocumentVocabulary& voc);
		/// When a vocabulary was given for uri, makes voc hold exactly its
		/// content and returns true; else returns false and leaves voc alone.

	void beginDocument();
		/// Starts a document: install() has not yet been asked.

	void endHeader();
		/// Ends the header of a document: unless install() was asked since
		/// beginDocument(), the tables no longer hold a given vocabulary.

	bool sameNames(unsigned int& elementNames, unsigned int& attributeNames) const;
		/// True when this document's install() found the tables still
		/// holding the vocabulary and only dropped what the document before
		/// added, and the vocabulary's names use none of the strings that a
		/// document adds. The names below elementNames and attributeNames,
		/// the sizes of its name tables, and the strings they use are then
		/// the very entries the document before read.

private:
	ExternalVocabularies(const ExternalVocabularies&);
	ExternalVocabularies& operator = (const ExternalVocabularies&);

	struct Entry
	{
		std::string uri;
		std::unique_ptr<DocumentVocabulary> pVocabulary;
		bool namesWithin;
			/// Whether each of its names uses only strings of its own tables.
	};

	static bool hasNamesWithin(const DocumentVocabulary& vocabulary);

	bool holds(const Entry& entry, const DocumentVocabulary& voc) const;
	void rewind(const Entry& entry, DocumentVocabulary& voc) const;
	void copy(const Entry& entry, DocumentVocabulary& voc);

	std::vector<Entry>        _entries;
	const Entry*              _pInstalled;
		/// The entry whose content _pHolder holds, below _marks.
	const DocumentVocabulary* _pHolder;
	std::vector<unsigned int> _marks;
		/// The sizes of the string tables, then of the element and attribute name tables.
	bool                      _installedNow;
	bool                      _rewoundNow;
		/// Whether install() found the tables holding the vocabulary.
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_ExternalVocabularies_INCLUDED
