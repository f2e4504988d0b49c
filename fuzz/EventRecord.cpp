//
// EventRecord.cpp
//
// Library: FastInfoset
// Package: Fuzz
// Module:  EventRecord
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "EventRecord.h"
#include "Poco/SAX/Attributes.h"
#include <algorithm>
#include <limits>
#include <cstring>


using Korvo::XML::XMLString;
using Korvo::XML::XMLChar;


namespace Korvo {
namespace FastInfoset {
namespace Fuzz {


namespace
{
	std::string expandedName(const XMLString& uri, const XMLString& localName)
	{
		return "{" + uri + "}" + localName;
	}

	std::string hexOf(const char* pData, std::size_t length)
	{
		static const char DIGITS[] = "0123456789ABCDEF";
		std::string hex;
		hex.reserve(2*length);
		for (std::size_t i = 0; i < length; ++i)
		{
			const unsigned char octet = static_cast<unsigned char>(pData[i]);
			hex += DIGITS[octet >> 4];
			hex += DIGITS[octet & 0x0F];
		}
		return hex;
	}

	template <typename T>
	std::string bitsOf(T value)
	{
		char octets[sizeof(T)];
		std::memcpy(octets, &value, sizeof(T));
		return hexOf(octets, sizeof(T));
	}

	std::string orEmpty(const XMLString* pString)
	{
		return pString ? *pString : std::string();
	}
}


EventRecord::EventRecord():
	_pending(NOTHING),
	_cutTextAtNul(false),
	_volume(0),
	_volumeLimit(std::numeric_limits<std::size_t>::max()),
	_touched(0),
	_emptyLocalName(false)
{
}


void EventRecord::clear()
{
	_lines.clear();
	_elements.clear();
	_pending = NOTHING;
	_data.clear();
	_volume = 0;
	_emptyLocalName = false;
}


const std::vector<std::string>& EventRecord::lines()
{
	flush();
	return _lines;
}


std::string EventRecord::firstDifference(const std::vector<std::string>& expected, const std::vector<std::string>& actual)
{
	auto mismatch = std::mismatch(expected.begin(), expected.end(), actual.begin(), actual.end());
	if (mismatch.first == expected.end() && mismatch.second == actual.end()) return std::string();

	const std::string where = "event " + std::to_string(mismatch.first - expected.begin() + 1) + ": ";
	if (mismatch.first == expected.end()) return where + "unexpected '" + *mismatch.second + "'";
	if (mismatch.second == actual.end()) return where + "missing '" + *mismatch.first + "'";
	return where + "expected '" + *mismatch.first + "', got '" + *mismatch.second + "'";
}


bool EventRecord::counts(std::size_t length)
{
	_volume += length;
	return !overflowed();
}


bool EventRecord::counts(std::initializer_list<const std::string*> strings)
{
	std::size_t length = 0;
	for (const std::string* pString: strings) length += pString->size();
	if (counts(length)) return true;
	for (const std::string* pString: strings) touch(pString->data(), pString->size());
	return false;
}


void EventRecord::touch(const char* pData, std::size_t length)
{
	if (length > 0) _touched ^= static_cast<unsigned char>(pData[0] ^ pData[length - 1]);
}


void EventRecord::add(Pending kind, const char* pData, std::size_t length)
{
	if (length == 0) return;
	if (!counts(length))
	{
		touch(pData, length);
		return;
	}
	if (_pending != kind) flush();
	_pending = kind;
	_data.append(pData, length);
}


void EventRecord::flush()
{
	if (_pending == TEXT)
		_lines.push_back("text " + _data);
	else if (_pending == BINARY)
		_lines.push_back("binary " + hexOf(_data.data(), _data.size()));
	_pending = NOTHING;
	_data.clear();
}


void EventRecord::record(const std::string& line)
{
	// Every event counts, so that many small ones are limited too.
	if (!counts(sizeof(void*))) return;
	flush();
	_lines.push_back(line);
}


void EventRecord::setDocumentLocator(const Korvo::XML::Locator*)
{
}


void EventRecord::startDocument()
{
	record("startDocument");
}


void EventRecord::endDocument()
{
	record("endDocument");
}


void EventRecord::startElement(const XMLString& uri, const XMLString& localName, const XMLString& qname, const Korvo::XML::Attributes& attributes)
{
	const std::size_t colon = qname.find(':');
	Element element;
	element.prefix = colon == std::string::npos ? std::string() : qname.substr(0, colon);
	element.namespacedAttribute = false;
	for (int i = 0; i < attributes.getLength(); ++i)
		element.namespacedAttribute = element.namespacedAttribute || !attributes.getURI(i).empty();
	_elements.push_back(element);
	bool keep = counts({&uri, &localName});
	_emptyLocalName = _emptyLocalName || localName.empty();
	for (int i = 0; i < attributes.getLength(); ++i)
	{
		keep = counts({&attributes.getURI(i), &attributes.getLocalName(i), &attributes.getValue(i)}) && keep;
		_emptyLocalName = _emptyLocalName || attributes.getLocalName(i).empty();
	}
	if (!keep) return;
	std::string line = "start " + expandedName(uri, localName);
	for (int i = 0; i < attributes.getLength(); ++i)
		line += " @" + expandedName(attributes.getURI(i), attributes.getLocalName(i)) + "=" + attributes.getValue(i);
	record(line);
}


void EventRecord::endElement(const XMLString& uri, const XMLString& localName, const XMLString&)
{
	if (counts({&uri, &localName})) record("end " + expandedName(uri, localName));
}


void EventRecord::characters(const XMLChar ch[], int start, int length)
{
	const char* pText = ch + start;
	std::size_t n = static_cast<std::size_t>(length);
	if (_cutTextAtNul)
	{
		const void* pNul = std::memchr(pText, '\0', n);
		if (pNul) n = static_cast<std::size_t>(static_cast<const char*>(pNul) - pText);
	}
	add(TEXT, pText, n);
}


void EventRecord::ignorableWhitespace(const XMLChar ch[], int start, int length)
{
	characters(ch, start, length);
}


void EventRecord::processingInstruction(const XMLString& target, const XMLString& data)
{
	if (counts({&target, &data})) record("pi " + target + " " + data);
}


void EventRecord::startPrefixMapping(const XMLString& prefix, const XMLString& uri)
{
	// The prefix's length first, since any octet may be in a prefix.
	if (counts({&prefix, &uri})) record("ns " + std::to_string(prefix.size()) + " " + prefix + "=" + uri);
}


void EventRecord::endPrefixMapping(const XMLString&)
{
}


void EventRecord::skippedEntity(const XMLString& name)
{
	if (counts({&name})) record("skipped " + name);
}


void EventRecord::binaryData(const char* buffer, unsigned int size)
{
	add(BINARY, buffer, size);
}


void EventRecord::encodedData(short value)
{
	record("short " + std::to_string(value));
}


void EventRecord::encodedData(int value)
{
	record("int " + std::to_string(value));
}


void EventRecord::encodedData(long long value)
{
	record("long " + std::to_string(value));
}


void EventRecord::encodedData(bool value)
{
	record(value ? "bool true" : "bool false");
}


void EventRecord::encodedData(float value)
{
	record("float " + bitsOf(value));
}


void EventRecord::encodedData(double value)
{
	record("double " + bitsOf(value));
}


void EventRecord::encodedData(const Korvo::UUID& uuid)
{
	char octets[16];
	uuid.copyTo(octets);
	record("uuid " + hexOf(octets, sizeof(octets)));
}


void EventRecord::startDTD(const XMLString&, const XMLString& publicId, const XMLString& systemId)
{
	if (counts({&publicId, &systemId})) record("doctype " + publicId + "|" + systemId);
}


void EventRecord::endDTD()
{
	record("enddoctype");
}


void EventRecord::startEntity(const XMLString&)
{
}


void EventRecord::endEntity(const XMLString&)
{
}


void EventRecord::startCDATA()
{
}


void EventRecord::endCDATA()
{
}


void EventRecord::comment(const XMLChar ch[], int start, int length)
{
	const std::size_t n = static_cast<std::size_t>(length);
	if (counts(n))
		record("comment " + std::string(ch + start, n));
	else
		touch(ch + start, n);
}


void EventRecord::notationDecl(const XMLString& name, const XMLString* pPublicId, const XMLString* pSystemId)
{
	const std::string publicId = orEmpty(pPublicId);
	const std::string systemId = orEmpty(pSystemId);
	if (counts({&name, &publicId, &systemId})) record("notation " + name + "|" + publicId + "|" + systemId);
}


void EventRecord::unparsedEntityDecl(const XMLString& name, const XMLString* pPublicId, const XMLString& systemId, const XMLString& notationName)
{
	const std::string publicId = orEmpty(pPublicId);
	if (counts({&name, &publicId, &systemId, &notationName})) record("entity " + name + "|" + publicId + "|" + systemId + "|" + notationName);
}


} } } // namespace Korvo::FastInfoset::Fuzz
