//
// CompactEncoder.h
//
// Library: FastInfoset
// Package: Tools
// Module:  CompactEncoder
//
// XML to Fast Infoset with the writer settings that make documents small.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_CompactEncoder_INCLUDED
#define FastInfoset_CompactEncoder_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include <istream>
#include <ostream>
#include <string>
#include <vector>


namespace Korvo {
namespace FastInfoset {
namespace Tool {


class SharedVocabulary;
class StringSurvey;


class CompactEncoder
	/// Converts an XML document to Fast Infoset in two passes. The first
	/// (StringSurvey) finds the values that occur more than once and the
	/// characters of the others; the second writes the document with
	///   - the text of an element as one chunk (TextJoiner), not one per line;
	///   - only the values that occur again indexed (the survey as indexing
	///     policy), so that the indices of those that do stay short;
	///   - every literal in its shortest encoding: UTF-8, UTF-16 (CJK text)
	///     or a restricted alphabet: the numeric and date-time ones, and up
	///     to four of the document's own (AlphabetChooser), announced in the
	///     document's header.
	/// The input is read twice: a stream that cannot seek back is read into
	/// memory first.
{
public:
	CompactEncoder();

	void setMaxIndexedStringLength(int length);
		/// Values longer than length octets are not indexed even when they
		/// occur again; negative (the default): no limit.

	void setStripWhitespace(bool flag);
		/// Drops whitespace-only text, as Converter's
		/// CONV_REMOVE_IGNORABLE_WHITESPACE does.

	void setSharedVocabulary(const SharedVocabulary* pVocabulary);
		/// Documents name pVocabulary (unless null, the default) and write
		/// the names and values that it holds by index, whatever their length
		/// and however often they occur. The vocabulary is borrowed.

	void encode(std::istream& input, std::ostream& output);
		/// Throws what the XML parser and the writer throw.

	const std::vector<std::string>& alphabets() const;
		/// The alphabets of the last document encoded.

	static void read(std::istream& input, Korvo::XML::ContentHandler* pContentHandler, Korvo::XML::LexicalHandler* pLexicalHandler);
		/// Parses XML as the encoder does (see Converter::convertToFIS), the
		/// text of an element joined into one characters() call.

private:
	void write(StringSurvey& survey, std::istream& input, std::ostream& output);
		/// The second pass.

	int _maxIndexedStringLength;
	bool _stripWhitespace;
	const SharedVocabulary* _pSharedVocabulary;
	std::vector<std::string> _alphabets;
};


} } } // namespace Korvo::FastInfoset::Tool


#endif // FastInfoset_CompactEncoder_INCLUDED
