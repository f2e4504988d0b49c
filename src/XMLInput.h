//
// XMLInput.h
//
// Library: FastInfoset
// Package: Conversion
// Module:  XMLInput
//
// XML text in whatever encoding it declares, made readable for the
// toolkit's XML parser.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_XMLInput_INCLUDED
#define FastInfoset_XMLInput_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "PrefixedStreamBuf.h"
#include "IconvStreamBuf.h"
#include "Poco/SAX/SAXParser.h"
#include "Poco/TextEncoding.h"
#include <istream>
#include <memory>


namespace Korvo {
namespace FastInfoset {


class XMLInput
	/// The XML text that a conversion reads, in any encoding that the parser,
	/// the platform or the C library's iconv decodes exactly.
	///
	/// The first octets tell the form of the text and the encoding it
	/// declares; InputEncodings tells which decoder reads that encoding.
	/// UTF-8 and UTF-16 go to the parser as they are, and so do the other
	/// encodings it knows: straight from the input stream when it can seek
	/// back over the octets looked at. A platform encoding is registered with the parser
	/// under the declared name. Anything else, UTF-32 and EBCDIC included,
	/// is converted to UTF-8 by iconv in front of the parser, which is told
	/// to take the text as UTF-8 whatever it declares.
{
public:
	XMLInput(std::istream& input, Korvo::XML::SAXParser& parser);
		/// Reads the start of input and prepares parser for its encoding.
		/// Throws SAXParseException "Unknown encoding "NAME"" with the line
		/// and column of the name when no decoder knows the encoding.

	~XMLInput();

	void parse(Korvo::XML::XMLReader& reader);
		/// Parses the text through reader: the parser given to the
		/// constructor or a filter over it. Octets that are not valid in the
		/// encoding throw SAXParseException with their line and column.

private:
	XMLInput(const XMLInput&);
	XMLInput& operator = (const XMLInput&);

	void decodeWithIconv(Korvo::XML::SAXParser& parser, const std::string& encoding);
	void readAsItIs(std::istream& input);
	void readFrom(std::streambuf* pBuffer);

	PrefixedStreamBuf                    _prefixed;
	std::unique_ptr<Korvo::TextEncoding> _pPlatformEncoding;
	std::unique_ptr<IconvStreamBuf>      _pConverter;
	std::unique_ptr<std::istream>        _pStream;
	Korvo::XML::InputSource              _source;
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_XMLInput_INCLUDED
