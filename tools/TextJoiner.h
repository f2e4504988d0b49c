//
// TextJoiner.h
//
// Library: FastInfoset
// Package: Tools
// Module:  TextJoiner
//
// A SAX filter that hands on adjacent character data as one call.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_TextJoiner_INCLUDED
#define FastInfoset_TextJoiner_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Poco/SAX/XMLFilterImpl.h"
#include "Poco/SAX/LexicalHandler.h"
#include <string>


namespace Korvo {
namespace FastInfoset {
namespace Tool {


class TextJoiner: public Korvo::XML::XMLFilterImpl, public Korvo::XML::LexicalHandler
	/// The XML parser reports the text of an element in pieces (each line,
	/// each entity reference on its own), and a Fast Infoset writer makes a
	/// chunk of every piece: more octets, and pieces that repeat less often
	/// than whole texts. The filter gathers the pieces and passes them on at
	/// the next event, as one characters() call. Entity boundaries do not
	/// end a text: startEntity() and endEntity() are passed on at once.
{
public:
	explicit TextJoiner(Korvo::XML::XMLReader* pParent);

	// XMLReader
	void setProperty(const Korvo::XML::XMLString& propertyId, const Korvo::XML::XMLString& value);
	void setProperty(const Korvo::XML::XMLString& propertyId, void* value);
	void* getProperty(const Korvo::XML::XMLString& propertyId) const;

	// ContentHandler
	void endDocument();
	void startElement(const Korvo::XML::XMLString& uri, const Korvo::XML::XMLString& localName, const Korvo::XML::XMLString& qname, const Korvo::XML::Attributes& attributes);
	void endElement(const Korvo::XML::XMLString& uri, const Korvo::XML::XMLString& localName, const Korvo::XML::XMLString& qname);
	void characters(const Korvo::XML::XMLChar ch[], int start, int length);
	void ignorableWhitespace(const Korvo::XML::XMLChar ch[], int start, int length);
	void processingInstruction(const Korvo::XML::XMLString& target, const Korvo::XML::XMLString& data);
	void startPrefixMapping(const Korvo::XML::XMLString& prefix, const Korvo::XML::XMLString& uri);
	void endPrefixMapping(const Korvo::XML::XMLString& prefix);
	void skippedEntity(const Korvo::XML::XMLString& name);

	// LexicalHandler
	void startDTD(const Korvo::XML::XMLString& name, const Korvo::XML::XMLString& publicId, const Korvo::XML::XMLString& systemId);
	void endDTD();
	void startEntity(const Korvo::XML::XMLString& name);
	void endEntity(const Korvo::XML::XMLString& name);
	void startCDATA();
	void endCDATA();
	void comment(const Korvo::XML::XMLChar ch[], int start, int length);

protected:
	void setupParse();

private:
	void flush();

	Korvo::XML::LexicalHandler* _pLexicalHandler;
	std::string _text;
};


} } } // namespace Korvo::FastInfoset::Tool


#endif // FastInfoset_TextJoiner_INCLUDED
