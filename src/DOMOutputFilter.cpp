//
// DOMOutputFilter.cpp
//
// Library: FastInfoset
// Package: Conversion
// Module:  DOMOutputFilter
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "DOMOutputFilter.h"
#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include "Poco/NumberFormatter.h"


using Korvo::XML::XMLString;
using Korvo::XML::XMLChar;
using Korvo::XML::Name;
using Korvo::XML::NamespaceSupport;


namespace Korvo {
namespace FastInfoset {


namespace
{
	const XMLString XMLNS("xmlns");

	bool isDeclaration(const XMLString& uri, const XMLString& qname)
	{
		return uri == NamespaceSupport::XMLNS_NAMESPACE || qname == XMLNS || qname.compare(0, 6, "xmlns:") == 0;
	}
}


DOMOutputFilter::DOMOutputFilter(FastInfosetWriter& writer):
	_writer(writer),
	_documentHeld(false),
	_hasDocumentType(false),
	_generatedPrefixes(0)
{
}


DOMOutputFilter::~DOMOutputFilter()
{
}


void DOMOutputFilter::setDocumentLocator(const Korvo::XML::Locator*)
{
}


void DOMOutputFilter::startDocument()
{
	_documentHeld = true;
}


void DOMOutputFilter::endDocument()
{
	startWriting();
	_writer.endDocument();
}


void DOMOutputFilter::startWriting()
{
	if (!_documentHeld) return;
	_documentHeld = false;
	_writer.startDocument();
	if (_hasDocumentType)
	{
		_hasDocumentType = false;
		_writer.startDTD(_documentTypeName, _publicId, _systemId);
		_writer.endDTD();
	}
}


void DOMOutputFilter::startElement(const XMLString& uri, const XMLString& localName, const XMLString& qname, const Korvo::XML::Attributes& attributes)
{
	startWriting();
	_namespaces.pushContext();
	_declaredCounts.push_back(0);

	const int count = attributes.getLength();
	for (int i = 0; i < count; ++i)
	{
		const XMLString& name = attributes.getQName(i).empty() ? attributes.getLocalName(i) : attributes.getQName(i);
		if (!isDeclaration(attributes.getURI(i), name)) continue;
		Name::split(name, _prefix, _localName);
		declare(_prefix.empty() ? XMLString() : _localName, attributes.getValue(i));
	}

	Name::split(qname.empty() ? localName : qname, _prefix, _localName);
	if (_namespaces.getURI(_prefix) != uri && (!uri.empty() || _prefix.empty())) declare(_prefix, uri);

	_attributes.clear();
	for (int i = 0; i < count; ++i)
	{
		const XMLString& attributeURI = attributes.getURI(i);
		const XMLString& name = attributes.getQName(i).empty() ? attributes.getLocalName(i) : attributes.getQName(i);
		if (isDeclaration(attributeURI, name)) continue;
		Name::split(name, _prefix, _localName);
		if (!attributeURI.empty())
		{
			// An attribute cannot take the default namespace: it needs a prefix.
			if (_prefix.empty()) _prefix = prefixFor(attributeURI);
			if (_namespaces.getURI(_prefix) != attributeURI) declare(_prefix, attributeURI);
			_qname.assign(_prefix).append(1, ':').append(_localName);
		}
		else
		{
			_qname = name;
		}
		_attributes.addAttribute(attributeURI, _localName, _qname, attributes.getType(i), attributes.getValue(i));
	}
	_writer.startElement(uri, localName, qname, _attributes);
}


void DOMOutputFilter::endElement(const XMLString& uri, const XMLString& localName, const XMLString& qname)
{
	_writer.endElement(uri, localName, qname);
	for (std::size_t n = _declaredCounts.back(); n > 0; --n)
	{
		_writer.endPrefixMapping(_declared.back());
		_declared.pop_back();
	}
	_declaredCounts.pop_back();
	_namespaces.popContext();
}


void DOMOutputFilter::declare(const XMLString& prefix, const XMLString& uri)
{
	_namespaces.declarePrefix(prefix, uri);
	_declared.push_back(prefix);
	++_declaredCounts.back();
	_writer.startPrefixMapping(prefix, uri);
}


XMLString DOMOutputFilter::prefixFor(const XMLString& uri)
{
	NamespaceSupport::PrefixSet prefixes;
	_namespaces.getPrefixes(uri, prefixes);
	for (const auto& prefix: prefixes)
	{
		if (!prefix.empty()) return prefix;
	}
	XMLString prefix;
	do prefix = "ns" + Korvo::NumberFormatter::format(++_generatedPrefixes);
	while (!_namespaces.getURI(prefix).empty());
	return prefix;
}


void DOMOutputFilter::characters(const XMLChar ch[], int start, int length)
{
	startWriting();
	_writer.characters(ch, start, length);
}


void DOMOutputFilter::ignorableWhitespace(const XMLChar ch[], int start, int length)
{
	startWriting();
	_writer.ignorableWhitespace(ch, start, length);
}


void DOMOutputFilter::processingInstruction(const XMLString& target, const XMLString& data)
{
	startWriting();
	_writer.processingInstruction(target, data);
}


void DOMOutputFilter::startPrefixMapping(const XMLString&, const XMLString&)
{
	// Declarations are worked out from the names in startElement().
}


void DOMOutputFilter::endPrefixMapping(const XMLString&)
{
}


void DOMOutputFilter::skippedEntity(const XMLString&)
{
}


void DOMOutputFilter::startDTD(const XMLString& name, const XMLString& publicId, const XMLString& systemId)
{
	_hasDocumentType = true;
	_documentTypeName = name;
	_publicId = publicId;
	_systemId = systemId;
}


void DOMOutputFilter::endDTD()
{
	startWriting();
}


void DOMOutputFilter::startEntity(const XMLString&)
{
}


void DOMOutputFilter::endEntity(const XMLString&)
{
}


void DOMOutputFilter::startCDATA()
{
	startWriting();
	_writer.startCDATA();
}


void DOMOutputFilter::endCDATA()
{
	_writer.endCDATA();
}


void DOMOutputFilter::comment(const XMLChar ch[], int start, int length)
{
	startWriting();
	_writer.comment(ch, start, length);
}


void DOMOutputFilter::notationDecl(const XMLString& name, const XMLString* pPublicId, const XMLString* pSystemId)
{
	// The header is written when the document starts: later declarations have no place.
	if (_documentHeld) _writer.notationDecl(name, pPublicId, pSystemId);
}


void DOMOutputFilter::unparsedEntityDecl(const XMLString& name, const XMLString* pPublicId, const XMLString& systemId, const XMLString& notationName)
{
	if (_documentHeld) _writer.unparsedEntityDecl(name, pPublicId, systemId, notationName);
}


} } // namespace Korvo::FastInfoset
