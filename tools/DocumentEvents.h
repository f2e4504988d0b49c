//
// DocumentEvents.h
//
// Library: FastInfoset
// Package: Tools
// Module:  DocumentEvents
//
// A normalised record of what a document says, for comparing two documents
// (an XML original with its Fast Infoset form or its round trip).
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_DocumentEvents_INCLUDED
#define FastInfoset_DocumentEvents_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include <istream>
#include <string>
#include <utility>
#include <vector>


namespace Korvo {
namespace FastInfoset {
namespace Tool {


class DocumentEvents: public Korvo::XML::ContentHandler, public Korvo::XML::LexicalHandler, public Korvo::XML::DTDHandler
	/// Records the events of one document as lines that do not depend on how
	/// the document was written:
	///
	///     start {urn:x}item ns(p=urn:x) @{}id=42 @{urn:y}n=v
	///     text Hello
	///     end {urn:x}item
	///     comment text
	///     pi target data
	///     doctype name|publicId|systemId
	///
	/// Adjacent text is joined (CDATA boundaries and chunking vanish),
	/// attributes and the namespace declarations of an element are sorted,
	/// the end of a prefix mapping is not recorded (the declarations belong
	/// to their element), and the "xml" prefix is never a declaration.
	/// Notation and unparsed-entity declarations are recorded as "notation"
	/// and "entity" lines at the start, in declaration order, wherever the
	/// reader reports them (an XML parser inside the DTD, a Fast Infoset
	/// parser before the document). Comments inside the document type
	/// declaration are recorded at its end, where a Fast Infoset document
	/// keeps them. XML is read in any encoding that the converter reads.
{
public:
	struct Options
	{
		Options():
			dropWhitespaceText(false),
			whitespaceFilter(false),
			recordDoctype(true),
			recordDoctypeName(true),
			recordPrefixes(false)
		{
		}

		bool dropWhitespaceText;
			/// Leave out text that is whitespace only.
		bool whitespaceFilter;
			/// Read XML through the platform's whitespace filter, as the
			/// converter does with CONV_REMOVE_IGNORABLE_WHITESPACE: it drops
			/// the whitespace-only pieces of text between markup, and keeps
			/// those inside CDATA sections.
		bool recordDoctype;
			/// Record the document type declaration at all.
		bool recordDoctypeName;
			/// Record its name (a Fast Infoset document carries none).
		bool recordPrefixes;
			/// Record the qualified names of elements and attributes too,
			/// as "start {urn:x}item as p:item".
	};

	DocumentEvents();
	explicit DocumentEvents(const Options& options);

	const std::vector<std::string>& lines() const;
		/// The events recorded so far.

	void clear();

	void readXML(std::istream& input);
		/// Parses XML text (namespace-aware, with lexical events) into this record.

	void readFastInfoset(std::istream& input);
		/// Parses a Fast Infoset document into this record.

	static std::string firstDifference(const DocumentEvents& expected, const DocumentEvents& actual);
		/// Empty when both records are equal, else a one-line description
		/// of the first event that differs.

	// ContentHandler
	void setDocumentLocator(const Korvo::XML::Locator* pLocator) override;
	void startDocument() override;
	void endDocument() override;
	void startElement(const Korvo::XML::XMLString& uri, const Korvo::XML::XMLString& localName, const Korvo::XML::XMLString& qname, const Korvo::XML::Attributes& attributes) override;
	void endElement(const Korvo::XML::XMLString& uri, const Korvo::XML::XMLString& localName, const Korvo::XML::XMLString& qname) override;
	void characters(const Korvo::XML::XMLChar ch[], int start, int length) override;
	void ignorableWhitespace(const Korvo::XML::XMLChar ch[], int start, int length) override;
	void processingInstruction(const Korvo::XML::XMLString& target, const Korvo::XML::XMLString& data) override;
	void startPrefixMapping(const Korvo::XML::XMLString& prefix, const Korvo::XML::XMLString& uri) override;
	void endPrefixMapping(const Korvo::XML::XMLString& prefix) override;
	void skippedEntity(const Korvo::XML::XMLString& name) override;

	// LexicalHandler
	void startDTD(const Korvo::XML::XMLString& name, const Korvo::XML::XMLString& publicId, const Korvo::XML::XMLString& systemId) override;
	void endDTD() override;
	void startEntity(const Korvo::XML::XMLString& name) override;
	void endEntity(const Korvo::XML::XMLString& name) override;
	void startCDATA() override;
	void endCDATA() override;
	void comment(const Korvo::XML::XMLChar ch[], int start, int length) override;

	// DTDHandler
	void notationDecl(const Korvo::XML::XMLString& name, const Korvo::XML::XMLString* pPublicId, const Korvo::XML::XMLString* pSystemId) override;
	void unparsedEntityDecl(const Korvo::XML::XMLString& name, const Korvo::XML::XMLString* pPublicId, const Korvo::XML::XMLString& systemId, const Korvo::XML::XMLString& notationName) override;

private:
	void flushText();
	void record(const std::string& line);

	Options _options;
	std::vector<std::string> _lines;
	std::string _text;
	std::vector<std::pair<std::string, std::string>> _declarations;
	std::vector<std::string> _attributes;
	std::vector<std::string> _dtdDeclarations;
	std::vector<std::string> _dtdComments;
	bool                     _inDTD;
};


//
// inlines
//
inline const std::vector<std::string>& DocumentEvents::lines() const
{
	return _lines;
}


} } } // namespace Korvo::FastInfoset::Tool


#endif // FastInfoset_DocumentEvents_INCLUDED
