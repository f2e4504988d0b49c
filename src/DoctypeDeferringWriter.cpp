//
// DoctypeDeferringWriter.cpp
//
// Library: FastInfoset
// Package: Conversion
// Module:  DoctypeDeferringWriter
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "DoctypeDeferringWriter.h"
#include "XMLCharacters.h"


using Korvo::XML::XMLString;
using Korvo::XML::XMLChar;
using Korvo::XML::XMLWriter;


namespace Korvo {
namespace FastInfoset {


namespace
{
	bool isGiven(const XMLString* pIdentifier)
	{
		return pIdentifier && !pIdentifier->empty();
	}
}


DoctypeDeferringWriter::DoctypeDeferringWriter(std::ostream& output, int options):
	WellFormedXMLWriter(output, options),
	_rootStarted(false),
	_inDoctype(false),
	_doctypeSeen(false)
{
}


DoctypeDeferringWriter::~DoctypeDeferringWriter()
{
}


bool DoctypeDeferringWriter::isHolding() const
{
	return _doctypeSeen && !_rootStarted;
}


void DoctypeDeferringWriter::startDTD(const XMLString&, const XMLString& publicId, const XMLString& systemId)
{
	_inDoctype = true;
	if (_rootStarted || _doctypeSeen) return;
	_doctypeSeen = true;
	_publicId = publicId;
	_systemId = systemId;
}


void DoctypeDeferringWriter::endDTD()
{
	_inDoctype = false;
}


void DoctypeDeferringWriter::notationDecl(const XMLString& name, const XMLString* publicId, const XMLString* systemId)
{
	XMLCharacters::checkNCName(name);
	_internalSubset += "<!NOTATION " + name;
	if (isGiven(publicId))
	{
		_internalSubset += " PUBLIC " + XMLCharacters::quotedPublicId(*publicId);
		if (isGiven(systemId)) _internalSubset += ' ' + XMLCharacters::quoted(*systemId);
	}
	else
	{
		// XML has no notation without an identifier; an empty one is closest.
		_internalSubset += " SYSTEM " + XMLCharacters::quoted(isGiven(systemId) ? *systemId : XMLString());
	}
	_internalSubset += '>';
}


void DoctypeDeferringWriter::unparsedEntityDecl(const XMLString& name, const XMLString* publicId, const XMLString& systemId, const XMLString& notationName)
{
	XMLCharacters::checkNCName(name);
	XMLCharacters::checkNCName(notationName);
	_internalSubset += "<!ENTITY " + name;
	if (isGiven(publicId))
		_internalSubset += " PUBLIC " + XMLCharacters::quotedPublicId(*publicId) + ' ';
	else
		_internalSubset += " SYSTEM ";
	_internalSubset += XMLCharacters::quoted(systemId) + " NDATA " + notationName + '>';
}


void DoctypeDeferringWriter::processingInstruction(const XMLString& target, const XMLString& data)
{
	if (!isHolding())
	{
		WellFormedXMLWriter::processingInstruction(target, data);
	}
	else if (_inDoctype)
	{
		XMLCharacters::checkProcessingInstruction(target, data);
		_internalSubset += "<?" + target + (data.empty() ? XMLString() : ' ' + data) + "?>";
	}
	else
	{
		_heldProlog.push_back(PrologItem{true, target, data});
	}
}


void DoctypeDeferringWriter::comment(const XMLChar ch[], int start, int length)
{
	if (isHolding())
		_heldProlog.push_back(PrologItem{false, XMLString(), XMLString(ch + start, length)});
	else
		WellFormedXMLWriter::comment(ch, start, length);
}


void DoctypeDeferringWriter::writeStartTag(const XMLString& name, const Korvo::XML::Attributes& attributes)
{
	if (!_rootStarted && (_doctypeSeen || !_internalSubset.empty())) writeDoctype(name);
	_rootStarted = true;
	WellFormedXMLWriter::writeStartTag(name, attributes);
}


void DoctypeDeferringWriter::endDocument()
{
	// Without a root element the document cannot be well-formed (the base
	// class says so); the held items are written all the same.
	_rootStarted = true;
	writeHeldProlog();
	WellFormedXMLWriter::endDocument();
}


void DoctypeDeferringWriter::writeDoctype(const XMLString& name)
{
	XMLWriter::startDTD(name, XMLString(), XMLString());
	// A public identifier needs a system literal behind it; an empty one is
	// well-formed.
	if (!_publicId.empty())
		rawCharacters(" PUBLIC " + XMLCharacters::quotedPublicId(_publicId) + ' ' + XMLCharacters::quoted(_systemId));
	else if (!_systemId.empty())
		rawCharacters(" SYSTEM " + XMLCharacters::quoted(_systemId));
	if (!_internalSubset.empty()) rawCharacters(" [" + _internalSubset + "]");
	XMLWriter::endDTD();
	_rootStarted = true;
	writeHeldProlog();
}


void DoctypeDeferringWriter::writeHeldProlog()
{
	for (const auto& item: _heldProlog)
	{
		if (item.isInstruction)
			WellFormedXMLWriter::processingInstruction(item.target, item.text);
		else
			WellFormedXMLWriter::comment(item.text.data(), 0, static_cast<int>(item.text.size()));
	}
	_heldProlog.clear();
}


} } // namespace Korvo::FastInfoset
