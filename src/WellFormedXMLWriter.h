//
// WellFormedXMLWriter.h
//
// Library: FastInfoset
// Package: Conversion
// Module:  WellFormedXMLWriter
//
// The toolkit's XML writer, made to write only well-formed XML whatever
// the events of a Fast Infoset document say.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_WellFormedXMLWriter_INCLUDED
#define FastInfoset_WellFormedXMLWriter_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "NamespaceScope.h"
#include "Poco/XML/XMLWriter.h"
#include <string>


namespace Korvo {
namespace FastInfoset {


class WellFormedXMLWriter: public Korvo::XML::XMLWriter
	/// An XMLWriter for documents that may say what XML text cannot say
	/// literally, such as those a Fast Infoset parser reports.
	///
	/// The toolkit writer picks an end tag's prefix from the namespace alone,
	/// which gives <w:a>...</a> when two prefixes name one namespace; here a
	/// NamespaceScope works out every name and declaration, and the toolkit
	/// writer writes them as given. A carriage return in text, which the
	/// toolkit writes raw and a parser would read as a line feed, becomes a
	/// character reference (in attribute values the toolkit already writes
	/// tab, line feed and carriage return so). A CDATA section whose text
	/// holds "]]>" or a carriage return is written as text. Characters,
	/// names, comments and processing instructions that XML cannot express,
	/// and text outside the root element, throw FISEncodingException instead
	/// of becoming malformed text.
{
public:
	WellFormedXMLWriter(std::ostream& output, int options);
		/// options are the toolkit writer's.

	~WellFormedXMLWriter();

	// ContentHandler
	void startElement(const Korvo::XML::XMLString& namespaceURI, const Korvo::XML::XMLString& localName, const Korvo::XML::XMLString& qname, const Korvo::XML::Attributes& attributes);
	void endElement(const Korvo::XML::XMLString& namespaceURI, const Korvo::XML::XMLString& localName, const Korvo::XML::XMLString& qname);
	void characters(const Korvo::XML::XMLChar ch[], int start, int length);
	void ignorableWhitespace(const Korvo::XML::XMLChar ch[], int start, int length);
	void processingInstruction(const Korvo::XML::XMLString& target, const Korvo::XML::XMLString& data);
	void startPrefixMapping(const Korvo::XML::XMLString& prefix, const Korvo::XML::XMLString& namespaceURI);
	void endPrefixMapping(const Korvo::XML::XMLString& prefix);

	// LexicalHandler
	void startCDATA();
	void endCDATA();
	void comment(const Korvo::XML::XMLChar ch[], int start, int length);

	using Korvo::XML::XMLWriter::startElement;
	using Korvo::XML::XMLWriter::endElement;
	using Korvo::XML::XMLWriter::characters;

protected:
	virtual void writeStartTag(const Korvo::XML::XMLString& name, const Korvo::XML::Attributes& attributes);
		/// Writes a start tag as startElement() worked it out.

private:
	void writeText(const char* text, std::size_t length);

	NamespaceScope _scope;
	bool           _inCDATA;
	std::string    _cdata;
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_WellFormedXMLWriter_INCLUDED
