//
// PrologReorderer.h
//
// Library: FastInfoset
// Package: Conversion
// Module:  PrologReorderer
//
// Puts the prolog events of an XML parser into the order in which a
// FastInfosetWriter takes them.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_PrologReorderer_INCLUDED
#define FastInfoset_PrologReorderer_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include <string>
#include <vector>


namespace Korvo {
namespace FastInfoset {


class FastInfosetWriter;


class PrologReorderer: public Korvo::XML::ContentHandler, public Korvo::XML::LexicalHandler
	/// Stands between an XML reader and a FastInfosetWriter until the root
	/// element starts.
	///
	/// The writer keeps notations and unparsed entities in the document
	/// header, so it takes their declarations only before startDocument; the
	/// toolkit's parser reports them inside the DTD, after startDocument.
	/// This handler therefore holds back startDocument and the rest of the
	/// prolog (comments, processing instructions, the DTD) while the
	/// declarations go straight to the writer, and replays the prolog when
	/// the root element begins. From then on the reader talks to the writer
	/// directly.
{
public:
	PrologReorderer(Korvo::XML::XMLReader& reader, FastInfosetWriter& writer);
		/// Registers itself with reader as content and lexical handler and
		/// the writer as DTD handler.

	// ContentHandler
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

	// LexicalHandler
	void startDTD(const Korvo::XML::XMLString& name, const Korvo::XML::XMLString& publicId, const Korvo::XML::XMLString& systemId);
	void endDTD();
	void startEntity(const Korvo::XML::XMLString& name);
	void endEntity(const Korvo::XML::XMLString& name);
	void startCDATA();
	void endCDATA();
	void comment(const Korvo::XML::XMLChar ch[], int start, int length);

private:
	PrologReorderer(const PrologReorderer&);
	PrologReorderer& operator = (const PrologReorderer&);

	enum Kind
	{
		START_DOCUMENT,
		PROCESSING_INSTRUCTION,
		COMMENT,
		START_DTD,
		END_DTD
	};

	struct Event
	{
		Kind kind;
		std::string first;
		std::string second;
		std::string third;
	};

	void hold(Kind kind, const std::string& first = std::string(), const std::string& second = std::string(), const std::string& third = std::string());
	void release();
		/// Replays the held events and hands the reader over to the writer.

	Korvo::XML::XMLReader& _reader;
	FastInfosetWriter&     _writer;
	std::vector<Event>     _held;
	bool                   _released;
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_PrologReorderer_INCLUDED
