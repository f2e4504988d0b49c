//
// Converter.h
//
// Library: FastInfoset
// Package: Conversion
// Module:  Converter
//
// Whole-document conversion between textual XML and Fast Infoset.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_Converter_INCLUDED
#define FastInfoset_Converter_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include <istream>
#include <ostream>


namespace Korvo {
namespace FastInfoset {


class FastInfoset_API Converter
	/// One-call conversions between textual XML and Fast Infoset.
	/// Exceptions of the XML toolkit and of the library pass unchanged.
{
public:
	enum ConversionOptions
	{
		CONV_WRITE_XML_DECLARATION = 1,
			/// The XML output begins with an XML declaration.
		CONV_PRETTY_PRINT_XML = 2,
			/// The XML output is indented.
		CONV_REMOVE_IGNORABLE_WHITESPACE = 129
			/// Whitespace-only text is dropped before it is encoded. Includes
			/// bit 1, so CONV_WRITE_XML_DECLARATION given to convertToFIS also
			/// removes whitespace.
	};

	static void convertToFIS(std::istream& input, std::ostream& output, int maxIndexedStringLength = 16, int options = 0);
		/// Reads XML text from input and writes a Fast Infoset document, without
		/// XML declaration, to output. Attribute values and text chunks of at
		/// most maxIndexedStringLength octets are indexed (negative: all).
		/// Any option sharing a bit with CONV_REMOVE_IGNORABLE_WHITESPACE
		/// drops whitespace-only text. The XML may be in any encoding that
		/// the toolkit's parser, the platform or the C library's iconv
		/// decodes exactly. Notations and unparsed entities go into the
		/// header, comments of the internal subset after the document type
		/// declaration. XML syntax errors, unknown encodings and octets not
		/// valid in the encoding throw the toolkit's SAXParseException, with
		/// line and column.

	static void convertToXML(std::istream& input, std::ostream& output, int options = CONV_WRITE_XML_DECLARATION);
		/// Reads a Fast Infoset document from input and writes XML text to
		/// output, with an XML declaration and indentation as options say.
		/// A document type declaration is written with the root element's
		/// qualified name (the Fast Infoset form keeps none), notations,
		/// unparsed entities and processing instructions inside it as its
		/// internal subset. Elements and attributes keep their prefixes, and
		/// the XML is always well-formed: what XML cannot express (such as
		/// U+0001) throws FISEncodingException naming it. Faults of the
		/// document throw FISException and its subclasses.
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_Converter_INCLUDED
