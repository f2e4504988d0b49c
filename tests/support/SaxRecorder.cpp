//
// SaxRecorder.cpp
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "support/SaxRecorder.h"
#include "Poco/NumberFormatter.h"


using Korvo::XML::XMLString;
using Korvo::XML::XMLChar;


namespace Korvo {
namespace FastInfoset {
namespace Test {


namespace
{
	std::string orNull(const XMLString* pString)
	{
		return pString ? *pString : std::string("<null>");
	}
}


template <class Base>
const std::vector<std::string>& BasicSaxRecorder<Base>::events() const
{
	return _events;
}


template <class Base>
std::string BasicSaxRecorder<Base>::str() const
{
	std::string result;
	for (const auto& event: _events)
	{
		result += event;
		result += '\n';
	}
	return result;
}


template <class Base>
std::vector<std::string> BasicSaxRecorder<Base>::contentEvents() const
{
	std::vector<std::string> result;
	bool inside = false;
	for (const auto& event: _events)
	{
		if (event == "endDocument()") break;
		if (inside) result.push_back(event);
		if (event == "startDocument()") inside = true;
	}
	return result;
}


template <class Base>
void BasicSaxRecorder<Base>::clear()
{
	_events.clear();
}


template <class Base>
void BasicSaxRecorder<Base>::record(const std::string& event)
{
	_events.push_back(event);
}


template <class Base>
void BasicSaxRecorder<Base>::setDocumentLocator(const Korvo::XML::Locator*)
{
	record("setDocumentLocator()");
}


template <class Base>
void BasicSaxRecorder<Base>::startDocument()
{
	record("startDocument()");
}


template <class Base>
void BasicSaxRecorder<Base>::endDocument()
{
	record("endDocument()");
}


template <class Base>
void BasicSaxRecorder<Base>::startElement(const XMLString& uri, const XMLString& localName, const XMLString& qname, const Korvo::XML::Attributes& attributes)
{
	std::string event = "startElement(" + uri + "|" + localName + "|" + qname;
	for (int i = 0; i < attributes.getLength(); ++i)
	{
		event += "|attr(" + attributes.getURI(i) + "|" + attributes.getLocalName(i) + "|" + attributes.getQName(i)
			+ "|" + attributes.getType(i) + "|" + attributes.getValue(i) + ")";
	}
	record(event + ")");
}


template <class Base>
void BasicSaxRecorder<Base>::endElement(const XMLString& uri, const XMLString& localName, const XMLString& qname)
{
	record("endElement(" + uri + "|" + localName + "|" + qname + ")");
}


template <class Base>
void BasicSaxRecorder<Base>::characters(const XMLChar ch[], int start, int length)
{
	record("characters(" + std::string(ch + start, length) + ")");
}


template <class Base>
void BasicSaxRecorder<Base>::ignorableWhitespace(const XMLChar ch[], int start, int length)
{
	record("ignorableWhitespace(" + std::string(ch + start, length) + ")");
}


template <class Base>
void BasicSaxRecorder<Base>::processingInstruction(const XMLString& target, const XMLString& data)
{
	record("processingInstruction(" + target + "|" + data + ")");
}


template <class Base>
void BasicSaxRecorder<Base>::startPrefixMapping(const XMLString& prefix, const XMLString& uri)
{
	record("startPrefixMapping(" + prefix + "|" + uri + ")");
}


template <class Base>
void BasicSaxRecorder<Base>::endPrefixMapping(const XMLString& prefix)
{
	record("endPrefixMapping(" + prefix + ")");
}


template <class Base>
void BasicSaxRecorder<Base>::skippedEntity(const XMLString& name)
{
	record("skippedEntity(" + name + ")");
}


template <class Base>
void BasicSaxRecorder<Base>::startDTD(const XMLString& name, const XMLString& publicId, const XMLString& systemId)
{
	record("startDTD(" + name + "|" + publicId + "|" + systemId + ")");
}


template <class Base>
void BasicSaxRecorder<Base>::endDTD()
{
	record("endDTD()");
}


template <class Base>
void BasicSaxRecorder<Base>::startEntity(const XMLString& name)
{
	record("startEntity(" + name + ")");
}


template <class Base>
void BasicSaxRecorder<Base>::endEntity(const XMLString& name)
{
	record("endEntity(" + name + ")");
}


template <class Base>
void BasicSaxRecorder<Base>::startCDATA()
{
	record("startCDATA()");
}


template <class Base>
void BasicSaxRecorder<Base>::endCDATA()
{
	record("endCDATA()");
}


template <class Base>
void BasicSaxRecorder<Base>::comment(const XMLChar ch[], int start, int length)
{
	record("comment(" + std::string(ch + start, length) + ")");
}


template <class Base>
void BasicSaxRecorder<Base>::notationDecl(const XMLString& name, const XMLString* pPublicId, const XMLString* pSystemId)
{
	record("notationDecl(" + name + "|" + orNull(pPublicId) + "|" + orNull(pSystemId) + ")");
}


template <class Base>
void BasicSaxRecorder<Base>::unparsedEntityDecl(const XMLString& name, const XMLString* pPublicId, const XMLString& systemId, const XMLString& notationName)
{
	record("unparsedEntityDecl(" + name + "|" + orNull(pPublicId) + "|" + systemId + "|" + notationName + ")");
}


template class BasicSaxRecorder<FISContentHandler>;
template class BasicSaxRecorder<Korvo::XML::ContentHandler>;


void SaxRecorder::binaryData(const char* buffer, unsigned int size)
{
	static const char DIGITS[] = "0123456789abcdef";
	std::string hex;
	for (unsigned int i = 0; i < size; ++i)
	{
		unsigned char octet = static_cast<unsigned char>(buffer[i]);
		hex += DIGITS[octet >> 4];
		hex += DIGITS[octet & 0x0F];
	}
	record("binaryData(" + hex + ")");
}


void SaxRecorder::encodedData(short value)
{
	record("encodedData(short:" + Korvo::NumberFormatter::format(static_cast<int>(value)) + ")");
}


void SaxRecorder::encodedData(int value)
{
	record("encodedData(int:" + Korvo::NumberFormatter::format(value) + ")");
}


void SaxRecorder::encodedData(long long value)
{
	record("encodedData(long:" + Korvo::NumberFormatter::format(static_cast<Korvo::Int64>(value)) + ")");
}


void SaxRecorder::encodedData(bool value)
{
	record(std::string("encodedData(bool:") + (value ? "true" : "false") + ")");
}


void SaxRecorder::encodedData(float value)
{
	record("encodedData(float:" + Korvo::NumberFormatter::format(value) + ")");
}


void SaxRecorder::encodedData(double value)
{
	record("encodedData(double:" + Korvo::NumberFormatter::format(value) + ")");
}


void SaxRecorder::encodedData(const Korvo::UUID& uuid)
{
	record("encodedData(uuid:" + uuid.toString() + ")");
}


} } } // namespace Korvo::FastInfoset::Test
