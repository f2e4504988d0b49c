//
// StringSurvey.cpp
//
// Library: FastInfoset
// Package: Tools
// Module:  StringSurvey
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "StringSurvey.h"
#include "SharedVocabulary.h"
#include "Poco/SAX/Attributes.h"
#include <functional>
#include <limits>


using Korvo::XML::XMLString;
using Korvo::XML::XMLChar;


namespace Korvo {
namespace FastInfoset {
namespace Tool {


namespace
{
	const std::size_t MIN_SLOTS = std::size_t(1) << 12;
	const std::size_t MAX_SLOTS = std::size_t(1) << 26; // 16 MB of counters
	const std::size_t SAMPLE_OCTETS = 1 << 20;

	bool isNamespaceDeclaration(const XMLString& qname)
	{
		return qname.compare(0, 5, "xmlns") == 0 && (qname.size() == 5 || qname[5] == ':');
	}
}


StringSurvey::StringSurvey(std::size_t documentSize, int maxIndexedStringLength):
	_maxIndexedLength(maxIndexedStringLength < 0 ? std::numeric_limits<std::size_t>::max() : static_cast<std::size_t>(maxIndexedStringLength)),
	_pSharedVocabulary(nullptr),
	_sampleOctets(0),
	_inCDATA(false),
	_inDTD(false)
{
	// A slot for every two octets of the document keeps values apart: a
	// value takes a few octets of markup besides its own.
	std::size_t slots = MIN_SLOTS;
	while (slots < MAX_SLOTS && slots < documentSize/2) slots <<= 1;
	_counts.assign(slots/4, 0);
	_slotMask = slots - 1;
}


const std::vector<StringSurvey::Literal>& StringSurvey::sample() const
{
	return _sample;
}


std::size_t StringSurvey::slot(DocumentVocabulary::ID table, const std::string& value) const
{
	std::size_t hash = std::hash<std::string>()(value);
	hash ^= static_cast<std::size_t>(table) * 0x9E3779B9u;
	hash ^= hash >> 16;
	return hash & _slotMask;
}


StringSurvey::Count StringSurvey::count(std::size_t slot) const
{
	return static_cast<Count>((_counts[slot >> 2] >> ((slot & 3)*2)) & 3);
}


void StringSurvey::setCount(std::size_t slot, Count count)
{
	const int shift = static_cast<int>(slot & 3)*2;
	unsigned char& counters = _counts[slot >> 2];
	counters = static_cast<unsigned char>((counters & ~(3 << shift)) | (count << shift));
}


void StringSurvey::setSharedVocabulary(const SharedVocabulary* pVocabulary)
{
	_pSharedVocabulary = pVocabulary;
}


bool StringSurvey::isIndexed(DocumentVocabulary::ID table, const std::string& value)
{
	const Count seen = count(slot(table, value));
	if (seen == NEVER) return false;
	if (_pSharedVocabulary && _pSharedVocabulary->holds(table, value)) return true;
	return value.size() <= _maxIndexedLength && seen == AGAIN;
}


void StringSurvey::see(DocumentVocabulary::ID table, const std::string& value)
{
	if (value.empty()) return;
	const std::size_t where = slot(table, value);
	const Count seen = count(where);
	if (_inCDATA && table == DocumentVocabulary::CHARACTER_CONTENT_CHUNK)
	{
		setCount(where, NEVER);
	}
	else if (seen == UNSEEN)
	{
		setCount(where, ONCE);
		if (_sampleOctets < SAMPLE_OCTETS)
		{
			_sample.push_back(Literal{value, table});
			_sampleOctets += value.size();
		}
	}
	else if (seen == ONCE)
	{
		setCount(where, AGAIN);
	}
}


void StringSurvey::setDocumentLocator(const Korvo::XML::Locator*)
{
}


void StringSurvey::startDocument()
{
}


void StringSurvey::endDocument()
{
}


void StringSurvey::startElement(const XMLString&, const XMLString&, const XMLString&, const Korvo::XML::Attributes& attributes)
{
	for (int i = 0; i < attributes.getLength(); ++i)
	{
		if (!isNamespaceDeclaration(attributes.getQName(i)))
			see(DocumentVocabulary::ATTRIBUTE_VALUE, attributes.getValue(i));
	}
}


void StringSurvey::endElement(const XMLString&, const XMLString&, const XMLString&)
{
}


void StringSurvey::characters(const XMLChar ch[], int start, int length)
{
	_text.assign(ch + start, static_cast<std::size_t>(length));
	see(DocumentVocabulary::CHARACTER_CONTENT_CHUNK, _text);
}


void StringSurvey::ignorableWhitespace(const XMLChar ch[], int start, int length)
{
	characters(ch, start, length);
}


void StringSurvey::processingInstruction(const XMLString&, const XMLString& data)
{
	see(DocumentVocabulary::OTHER_STRING, data);
}


void StringSurvey::startPrefixMapping(const XMLString&, const XMLString&)
{
}


void StringSurvey::endPrefixMapping(const XMLString&)
{
}


void StringSurvey::skippedEntity(const XMLString&)
{
}


void StringSurvey::startDTD(const XMLString&, const XMLString&, const XMLString&)
{
	_inDTD = true;
}


void StringSurvey::endDTD()
{
	_inDTD = false;
}


void StringSurvey::startEntity(const XMLString&)
{
}


void StringSurvey::endEntity(const XMLString&)
{
}


void StringSurvey::startCDATA()
{
	_inCDATA = true;
}


void StringSurvey::endCDATA()
{
	_inCDATA = false;
}


void StringSurvey::comment(const XMLChar ch[], int start, int length)
{
	// The writer drops the comments of a document type declaration.
	if (_inDTD) return;
	_text.assign(ch + start, static_cast<std::size_t>(length));
	see(DocumentVocabulary::OTHER_STRING, _text);
}


} } } // namespace Korvo::FastInfoset::Tool
