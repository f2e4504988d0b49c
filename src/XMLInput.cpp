//
// XMLInput.cpp
//
// Library: FastInfoset
// Package: Conversion
// Module:  XMLInput
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "XMLInput.h"
#include "InputEncodings.h"
#include "Poco/SAX/SAXException.h"
#include "Poco/Ascii.h"
#include "Poco/String.h"
#include <iconv.h>
#include <cstdint>


namespace Korvo {
namespace FastInfoset {


namespace
{
	const std::size_t HEAD_SIZE = 1024;

	enum Form
	{
		DECLARED,
			/// ASCII-compatible: the declaration names the encoding.
		EBCDIC,
			/// The declaration names the encoding, in EBCDIC.
		PARSER_DETECTED,
			/// UTF-8 with a byte order mark, or UTF-16: the parser knows.
		UTF32
			/// UTF-32, with or without a byte order mark.
	};

	bool startsWith(const std::string& text, const char* octets, std::size_t length)
	{
		return text.size() >= length && text.compare(0, length, octets, length) == 0;
	}

	Form formOf(const std::string& head, std::string& formName)
	{
		if (startsWith(head, "\x00\x00\xFE\xFF", 4) || startsWith(head, "\xFF\xFE\x00\x00", 4))
			formName = "UTF-32";
		else if (startsWith(head, "\x00\x00\x00\x3C", 4))
			formName = "UTF-32BE";
		else if (startsWith(head, "\x3C\x00\x00\x00", 4))
			formName = "UTF-32LE";
		if (!formName.empty()) return UTF32;

		if (startsWith(head, "\xEF\xBB\xBF", 3) || startsWith(head, "\xFE\xFF", 2) || startsWith(head, "\xFF\xFE", 2)
		 || startsWith(head, "\x00\x3C\x00\x3F", 4) || startsWith(head, "\x3C\x00\x3F\x00", 4))
			return PARSER_DETECTED;
		return startsWith(head, "\x4C\x6F\xA7\x94", 4) ? EBCDIC : DECLARED;
	}

	std::string ebcdicToASCII(const std::string& head)
		/// The head as far as IBM037 converts it; the declaration is written
		/// alike in the EBCDIC code pages.
	{
		std::string result(head.size(), '\0');
		iconv_t converter = iconv_open("US-ASCII", "IBM037");
		if (converter == reinterpret_cast<iconv_t>(static_cast<std::intptr_t>(-1))) return std::string();
		char* pIn = const_cast<char*>(head.data());
		std::size_t inLeft = head.size();
		char* pOut = &result[0];
		std::size_t outLeft = result.size();
		iconv(converter, &pIn, &inLeft, &pOut, &outLeft);
		iconv_close(converter);
		result.resize(result.size() - outLeft);
		return result;
	}

	bool isSpace(char c)
	{
		return c == ' ' || c == '\t' || c == '\r' || c == '\n';
	}

	bool isEncodingName(const std::string& name)
		/// Whether name has the form XML gives encoding names (no options
		/// such as iconv's "//IGNORE" can hide in it).
	{
		if (name.empty() || !Korvo::Ascii::isAlpha(name[0])) return false;
		for (char c: name)
		{
			if (!Korvo::Ascii::isAlphaNumeric(c) && c != '.' && c != '_' && c != '-') return false;
		}
		return true;
	}

	bool declaredEncoding(const std::string& text, std::string& name, std::size_t& offset)
		/// The value of the encoding pseudo-attribute of the XML declaration
		/// at the start of text, and where it begins. False without one, or
		/// when it is malformed: the parser says what is wrong then.
	{
		if (text.size() < 6 || text.compare(0, 5, "<?xml") != 0 || !isSpace(text[5])) return false;
		const std::size_t end = text.find("?>");
		std::size_t pos = text.find("encoding", 5);
		if (end == std::string::npos || pos == std::string::npos || pos > end) return false;
		pos += 8;
		while (pos < end && isSpace(text[pos])) ++pos;
		if (pos >= end || text[pos] != '=') return false;
		++pos;
		while (pos < end && isSpace(text[pos])) ++pos;
		if (pos >= end || (text[pos] != '"' && text[pos] != '\'')) return false;
		const std::size_t close = text.find(text[pos], pos + 1);
		if (close == std::string::npos || close > end) return false;
		offset = pos + 1;
		name = text.substr(offset, close - offset);
		return isEncodingName(name);
	}

	Korvo::XML::SAXParseException unknownEncoding(const std::string& name, const std::string& text, std::size_t offset)
	{
		// Line and column as the parser counts them.
		int line = 1, column = 0;
		for (std::size_t i = 0; i < offset; ++i)
		{
			if (text[i] == '\n' && i > 0 && text[i - 1] == '\r') continue;
			if (text[i] == '\n' || text[i] == '\r')
			{
				++line;
				column = 0;
			}
			else ++column;
		}
		return Korvo::XML::SAXParseException("Unknown encoding \"" + name + "\"", Korvo::XML::XMLString(), Korvo::XML::XMLString(), line, column);
	}
}


XMLInput::XMLInput(std::istream& input, Korvo::XML::SAXParser& parser):
	_prefixed(input, HEAD_SIZE)
{
	std::string formName;
	const Form form = formOf(_prefixed.head(), formName);
	if (form == PARSER_DETECTED)
	{
		readAsItIs(input);
		return;
	}
	if (form == UTF32)
	{
		decodeWithIconv(parser, formName);
		return;
	}

	const std::string ebcdicHead = form == EBCDIC ? ebcdicToASCII(_prefixed.head()) : std::string();
	const std::string& text = form == EBCDIC ? ebcdicHead : _prefixed.head();
	std::string name;
	std::size_t offset = 0;
	if (!declaredEncoding(text, name, offset))
	{
		if (form == EBCDIC)
			decodeWithIconv(parser, "IBM037");
		else
			readAsItIs(input);
		return;
	}

	std::string canonicalName;
	const InputEncodings::Decoder decoder = InputEncodings::find(name, canonicalName);
	if (decoder == InputEncodings::ICONV || form == EBCDIC)
	{
		if (!IconvStreamBuf::isKnown(canonicalName)) throw unknownEncoding(name, text, offset);
		decodeWithIconv(parser, canonicalName);
	}
	else
	{
		if (decoder == InputEncodings::PLATFORM)
		{
			_pPlatformEncoding = InputEncodings::platformEncoding(canonicalName);
			parser.addEncoding(name, _pPlatformEncoding.get());
		}
		else if (Korvo::icompare(name, canonicalName) != 0)
		{
			parser.setEncoding(canonicalName);
		}
		readAsItIs(input);
	}
}


XMLInput::~XMLInput()
{
}


void XMLInput::decodeWithIconv(Korvo::XML::SAXParser& parser, const std::string& encoding)
{
	_pConverter.reset(new IconvStreamBuf(_prefixed, encoding));
	readFrom(_pConverter.get());
	parser.setEncoding("UTF-8");
}


void XMLInput::readAsItIs(std::istream& input)
{
	if (_prefixed.rewind())
		_source.setByteStream(input);
	else
		readFrom(&_prefixed);
}


void XMLInput::readFrom(std::streambuf* pBuffer)
{
	_pStream.reset(new std::istream(pBuffer));
	_source.setByteStream(*_pStream);
}


void XMLInput::parse(Korvo::XML::XMLReader& reader)
{
	try
	{
		reader.parse(&_source);
	}
	catch (...)
	{
		// The parser saw the text end where the octets went wrong; the
		// octets are the reason.
		if (_pConverter) _pConverter->throwIfFailed();
		throw;
	}
	if (_pConverter) _pConverter->throwIfFailed();
}


} } // namespace Korvo::FastInfoset
