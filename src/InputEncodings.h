//
// InputEncodings.h
//
// Library: FastInfoset
// Package: Conversion
// Module:  InputEncodings
//
// Which decoder reads XML text in each encoding a document may declare.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_InputEncodings_INCLUDED
#define FastInfoset_InputEncodings_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Poco/TextEncoding.h"
#include <memory>
#include <string>
#include <vector>


namespace Korvo {
namespace FastInfoset {


class InputEncodings
	/// Chooses the decoder for the encoding an XML document declares.
	///
	/// The XML parser decodes UTF-8, UTF-16, US-ASCII and ISO-8859-1 itself.
	/// Next come the platform's text encodings, but only those whose tables
	/// decode exactly what the encoding defines: the platform's "Shift_JIS",
	/// "GB2312" and "Big5", for instance, are the Windows code pages 932, 936
	/// and 950, which decode some octets differently and accept octets the
	/// standards do not, so those names go to iconv. Everything else goes to
	/// the C library's iconv, which knows the standard definitions.
{
public:
	enum Decoder
	{
		PARSER,
			/// The XML parser's own decoding, under the canonical name.
		PLATFORM,
			/// A platform TextEncoding (platformEncoding()).
		ICONV
			/// The C library's iconv, under the canonical name.
	};

	struct PlatformEntry
	{
		const char* names;
			/// The names it is declared under, separated by '|'; the first
			/// is canonical.
		const char* iconvName;
			/// iconv's name of the same encoding, which decodes alike.
		Korvo::TextEncoding* (*create)();
	};

	static Decoder find(const std::string& name, std::string& canonicalName);
		/// The decoder of the encoding called name (case does not matter),
		/// and the name to give it. Names that neither the parser nor the
		/// platform decode are left to iconv, which may not know them either.

	static std::unique_ptr<Korvo::TextEncoding> platformEncoding(const std::string& canonicalName);
		/// A new platform decoder for a name that find() gave for PLATFORM.

	static const std::vector<PlatformEntry>& platformEntries();
		/// The encodings taken from the platform.
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_InputEncodings_INCLUDED
