//
// XMLCharacters.cpp
//
// Library: FastInfoset
// Package: Conversion
// Module:  XMLCharacters
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "XMLCharacters.h"
#include "Korvo/FastInfoset/FISException.h"
#include "Poco/String.h"
#include <cstdio>
#include <cstring>


namespace Korvo {
namespace FastInfoset {


namespace
{
	const unsigned INVALID = 0xFFFFFFFF;

	unsigned decode(const unsigned char*& p, const unsigned char* end)
		/// The character at p, which moves past it; INVALID for octets that
		/// are not UTF-8 (overlong forms and surrogates included).
	{
		const unsigned char lead = *p;
		if (lead < 0x80)
		{
			++p;
			return lead;
		}
		std::size_t length;
		unsigned value, minimum;
		if (lead >= 0xC2 && lead <= 0xDF) { length = 2; value = lead & 0x1F; minimum = 0x80; }
		else if (lead >= 0xE0 && lead <= 0xEF) { length = 3; value = lead & 0x0F; minimum = 0x800; }
		else if (lead >= 0xF0 && lead <= 0xF4) { length = 4; value = lead & 0x07; minimum = 0x10000; }
		else return INVALID;
		if (static_cast<std::size_t>(end - p) < length) return INVALID;
		for (std::size_t i = 1; i < length; ++i)
		{
			if ((p[i] & 0xC0) != 0x80) return INVALID;
			value = (value << 6) | (p[i] & 0x3F);
		}
		if (value < minimum || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF)) return INVALID;
		p += length;
		return value;
	}

	bool isXMLChar(unsigned c)
	{
		return c == 0x9 || c == 0xA || c == 0xD || (c >= 0x20 && c <= 0xD7FF) || (c >= 0xE000 && c <= 0xFFFD) || (c >= 0x10000 && c <= 0x10FFFF);
	}

	bool isNameStartChar(unsigned c)
	{
		return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'
		    || (c >= 0xC0 && c <= 0xD6) || (c >= 0xD8 && c <= 0xF6) || (c >= 0xF8 && c <= 0x2FF)
		    || (c >= 0x370 && c <= 0x37D) || (c >= 0x37F && c <= 0x1FFF) || (c >= 0x200C && c <= 0x200D)
		    || (c >= 0x2070 && c <= 0x218F) || (c >= 0x2C00 && c <= 0x2FEF) || (c >= 0x3001 && c <= 0xD7FF)
		    || (c >= 0xF900 && c <= 0xFDCF) || (c >= 0xFDF0 && c <= 0xFFFD) || (c >= 0x10000 && c <= 0xEFFFF);
	}

	bool isNameChar(unsigned c)
	{
		return isNameStartChar(c) || c == '-' || c == '.' || (c >= '0' && c <= '9') || c == 0xB7
		    || (c >= 0x300 && c <= 0x36F) || (c >= 0x203F && c <= 0x2040);
	}

	bool isPublicIdChar(char c)
	{
		return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')
		    || std::strchr(" \r\n-'()+,./:=?;!*#@$_%", c) != nullptr;
	}

	std::string describe(const char* what, const std::string& value)
	{
		return std::string(what) + " \"" + value + "\" cannot be written in XML";
	}
}


void XMLCharacters::checkText(const char* text, std::size_t length)
{
	const unsigned char* p = reinterpret_cast<const unsigned char*>(text);
	const unsigned char* end = p + length;
	while (p != end)
	{
		if (*p >= 0x20 && *p < 0x80)
		{
			++p;
			continue;
		}
		const unsigned char* pStart = p;
		const unsigned c = decode(p, end);
		if (c == INVALID)
		{
			char message[64];
			std::snprintf(message, sizeof(message), "Octet 0x%02X is not UTF-8 and cannot be written in XML", *pStart);
			throw FISEncodingException(message);
		}
		if (!isXMLChar(c))
		{
			char message[64];
			std::snprintf(message, sizeof(message), "Character U+%04X cannot be written in XML 1.0", c);
			throw FISEncodingException(message);
		}
	}
}


bool XMLCharacters::isNCName(const std::string& name)
{
	const unsigned char* p = reinterpret_cast<const unsigned char*>(name.data());
	const unsigned char* end = p + name.size();
	bool first = true;
	while (p != end)
	{
		const unsigned c = *p < 0x80 ? *p++ : decode(p, end);
		if (c == INVALID || !(first ? isNameStartChar(c) : isNameChar(c))) return false;
		first = false;
	}
	return !first;
}


void XMLCharacters::checkNCName(const std::string& name)
{
	if (!isNCName(name)) throw FISEncodingException(describe("Name", name));
}


std::string XMLCharacters::quoted(const std::string& literal)
{
	checkText(literal);
	if (literal.find('"') == std::string::npos) return '"' + literal + '"';
	if (literal.find('\'') == std::string::npos) return '\'' + literal + '\'';
	throw FISEncodingException(describe("Literal", literal));
}


std::string XMLCharacters::quotedPublicId(const std::string& publicId)
{
	for (char c: publicId)
	{
		if (!isPublicIdChar(c)) throw FISEncodingException(describe("Public identifier", publicId));
	}
	return '"' + publicId + '"';
}


void XMLCharacters::checkComment(const std::string& text)
{
	checkText(text);
	if (text.find("--") != std::string::npos || (!text.empty() && text.back() == '-'))
		throw FISEncodingException(describe("Comment", text));
}


void XMLCharacters::checkProcessingInstruction(const std::string& target, const std::string& data)
{
	checkNCName(target);
	if (Korvo::icompare(target, "xml") == 0) throw FISEncodingException(describe("Processing instruction target", target));
	checkText(data);
	if (data.find("?>") != std::string::npos) throw FISEncodingException(describe("Processing instruction data", data));
}


} } // namespace Korvo::FastInfoset
