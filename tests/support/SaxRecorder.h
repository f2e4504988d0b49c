//
// SaxRecorder.h
//
// Test helper: records every SAX2 event as one readable line.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_SaxRecorder_INCLUDED
#define FastInfoset_SaxRecorder_INCLUDED


#include "Korvo/FastInfoset/FISContentHandler.h"
#include <string>
#include <vector>


namespace Korvo {
namespace FastInfoset {
namespace Test {


template <class Base>
class BasicSaxRecorder: public Base, public Korvo::XML::LexicalHandler, public Korvo::XML::DTDHandler
	/// Records content, lexical and DTD events, one line each:
	///
	///     startDocument()
	///     startPrefixMapping(p|urn:x)
	///     startElement(urn:x|item|p:item|attr(|id|||42)|attr(urn:y|n|||v))
	///     characters(text)
	///     endElement(urn:x|item|p:item)
	///     endPrefixMapping(p)
	///     processingInstruction(target|data)
	///     comment(text)
	///     startCDATA() / endCDATA()
	///     startDTD(name|publicId|systemId) / endDTD()
	///     notationDecl(name|publicId|systemId)     a null pointer shows as <null>
	///     unparsedEntityDecl(name|publicId|systemId|notation)
	///
	/// An attribute shows as attr(uri|local|qname|type|value).
{
public:
	const std::vector<std::string>& events() const;
		/// All events recorded so far, in order.

	std::string str() const;
		/// The events joined by newlines (one trailing newline per event).

	std::vector<std::string> contentEvents() const;
		/// The events between startDocument() and endDocument(), both excluded.

	void clear();

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

protected:
	void record(const std::string& event);

private:
	std::vector<std::string> _events;
};


class SaxRecorder: public BasicSaxRecorder<FISContentHandler>
	/// A typed recorder: values stored with an encoding algorithm arrive as
	///
	///     binaryData(0a0bff)          the octets in lower-case hexadecimal
	///     encodedData(short:-5)       likewise int:, long:, bool:true
	///     encodedData(float:1.5)      shortest text that reads back, double: too
	///     encodedData(uuid:6ba7b810-9dad-11d1-80b4-00c04fd430c8)
{
public:
	void binaryData(const char* buffer, unsigned int size) override;
	void encodedData(short value) override;
	void encodedData(int value) override;
	void encodedData(long long value) override;
	void encodedData(bool value) override;
	void encodedData(float value) override;
	void encodedData(double value) override;
	void encodedData(const Korvo::UUID& uuid) override;
};


class PlainSaxRecorder: public BasicSaxRecorder<Korvo::XML::ContentHandler>
	/// The same recorder as a plain ContentHandler: typed values reach it as text.
{
};


} } } // namespace Korvo::FastInfoset::Test


#endif // FastInfoset_SaxRecorder_INCLUDED
