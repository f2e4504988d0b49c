//
// XMLCharacters.h
//
// Library: FastInfoset
// Package: Conversion
// Module:  XMLCharacters
//
// What XML 1.0 text can carry: checks of the strings about to be written.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_XMLCharacters_INCLUDED
#define FastInfoset_XMLCharacters_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include <cstddef>
#include <string>


namespace Korvo {
namespace FastInfoset {


class XMLCharacters
	/// Checks of UTF-8 strings that a Fast Infoset document carries and XML
	/// text may not: characters outside XML 1.0, octets that are not UTF-8,
	/// names that are not names, literals that no quote can enclose.
	///
	/// Each check throws FISEncodingException with a message that names the
	/// culprit, so that a document XML cannot express is refused instead of
	/// being written malformed.
{
public:
	static void checkText(const char* text, std::size_t length);
		/// Throws for the first character that XML 1.0 cannot represent, as
		/// "Character U+0001 cannot be written in XML 1.0", or for octets
		/// that are not UTF-8.

	static void checkText(const std::string& text);

	static bool isNCName(const std::string& name);
		/// Whether name is an XML name without a colon.

	static void checkNCName(const std::string& name);
		/// Throws "Name "NAME" cannot be written in XML" unless isNCName().

	static std::string quoted(const std::string& literal);
		/// The literal in double quotes, or in single quotes when it holds a
		/// double quote; throws when it holds both. Checks its characters.

	static std::string quotedPublicId(const std::string& publicId);
		/// The public identifier in double quotes; throws for a character
		/// that a public identifier may not hold.

	static void checkComment(const std::string& text);
		/// Checks the characters and throws when the text holds "--" or
		/// ends with "-", which no comment can enclose.

	static void checkProcessingInstruction(const std::string& target, const std::string& data);
		/// Throws unless target is a name other than "xml" (in any case) and
		/// data does not hold "?>".
};


//
// inlines
//
inline void XMLCharacters::checkText(const std::string& text)
{
	checkText(text.data(), text.size());
}


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_XMLCharacters_INCLUDED
