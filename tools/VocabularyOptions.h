//
// VocabularyOptions.h
//
// Library: FastInfoset
// Package: Tools
// Module:  VocabularyOptions
//
// The shared vocabularies given to a command.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_VocabularyOptions_INCLUDED
#define FastInfoset_VocabularyOptions_INCLUDED


#include "SharedVocabulary.h"
#include <istream>
#include <memory>
#include <ostream>
#include <string>
#include <vector>


namespace Korvo {
namespace FastInfoset {
namespace Tool {


class ArgumentReader;


class VocabularyOptions
	/// The vocabularies of "--vocabulary FILE [--vocabulary-uri URI]",
	/// where each --vocabulary-uri names the vocabulary given just before it.
{
public:
	explicit VocabularyOptions(bool several);
		/// Whether --vocabulary may be given more than once.

	bool readOption(ArgumentReader& reader);
		/// Takes the reader's current option when it is one of the two.
		/// Throws UsageException for a URI that follows no vocabulary, or a
		/// second vocabulary where only one is taken.

	void load();
		/// Reads the vocabulary files. Throws VocabularyException, and
		/// UsageException for two vocabularies of one URI.

	const SharedVocabulary* first() const;
		/// The first vocabulary, or null when none was given.

	const SharedVocabulary& find(const std::string& uri) const;
		/// Throws VocabularyException naming the URI when none has it.

	void decode(std::istream& input, std::ostream& output, int options) const;
		/// Converter::convertToXML() of a document that may name one of the
		/// vocabularies; a document naming another fails with find()'s
		/// exception before anything is written.

private:
	struct Given
	{
		std::string path;
		std::string uri;
	};

	bool _several;
	std::vector<Given> _given;
	std::vector<std::unique_ptr<SharedVocabulary>> _vocabularies;
};


} } } // namespace Korvo::FastInfoset::Tool


#endif // FastInfoset_VocabularyOptions_INCLUDED
