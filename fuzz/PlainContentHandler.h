//
// PlainContentHandler.h
//
// Library: FastInfoset
// Package: Fuzz
// Module:  PlainContentHandler
//
// A content handler that is not a FISContentHandler.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_PlainContentHandler_INCLUDED
#define FastInfoset_PlainContentHandler_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Poco/SAX/ContentHandler.h"


namespace Korvo {
namespace FastInfoset {
namespace Fuzz {


class PlainContentHandler: public Korvo::XML::ContentHandler
	/// Passes the content events on to another handler. A parser sees a
	/// plain SAX2 handler and delivers typed values as text.
{
public:
	explicit PlainContentHandler(Korvo::XML::ContentHandler& target);

	void setDocumentLocator(const Korvo::XML::Locator* pLocator);
	void startDocument();
	void endDocument();
	void startElement(const Korvo::XML::XMLString& uri, const Korvo::XML::XMLString& localName, const Korvo::XML::XMLString& qname, const Korvo::XML::Attributes& attributes);
	void endElement(const Korvo::XML::XMLString& uri, const Korvo::XML::XMLString& localName, const Korvo::XML::XMLString& qname);
	void characters(const Korvo::XML::XMLChar ch[], int start, int length);
	void ignorableWhitespace(const Korvo::XML::XMLChar ch[], int start, int length);
	void processingInstruction(const Korvo::XML::XMLString& target, const Korvo::XML::XMLString& data);
	void startPrefixMapping(const Korvo::XML::XMLString& prefix, const Korvo::XML::XMLString& uri);
	void endPrefixMapping(const Korvo::XML::XMLString& prefix);
	void skippedEntity(const Korvo::XML::XMLString& name);

private:
	Korvo::XML::ContentHandler& _target;
};


} } } // namespace Korvo::FastInfoset::Fuzz


#endif // FastInfoset_PlainContentHandler_INCLUDED
