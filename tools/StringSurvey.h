//
// StringSurvey.h
//
// Library: FastInfoset
// Package: Tools
// Module:  StringSurvey
//
// A first pass over a document that finds the values worth indexing.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_StringSurvey_INCLUDED
#define FastInfoset_StringSurvey_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/DocumentVocabulary.h"
#include "Korvo/FastInfoset/StringIndexingPolicy.h"
#include "Poco/SAX/ContentHandler.h"
#include "Poco/SAX/LexicalHandler.h"
#include <cstddef>
#include <string>
#include <vector>


namespace Korvo {
namespace FastInfoset {
namespace Tool {


class SharedVocabulary;


class StringSurvey: public Korvo::XML::ContentHandler, public Korvo::XML::LexicalHandler, public StringIndexingPolicy
	/// Watches the events of a document, as its writer will receive them,
	/// and counts how often each attribute value, text, comment and
	/// processing-instruction data occurs. As the writer's indexing policy
	/// it then indexes the values that occur more than once: a value seen
	/// once would only make the later indices longer.
	///
	/// The counters are two bits a slot, found by the value's hash, so that
	/// memory stays fixed however long the document is; two values that
	/// share a slot are taken for one, which costs a few octets at worst.
	/// Text inside CDATA sections is never indexed, since a chunk found in
	/// the table would lose its CDATA marking.
	///
	/// The survey also keeps the first occurrence of each value, up to a
	/// limit, as the sample its literals are drawn from.
{
public:
	struct Literal
	{
		std::string value;
		DocumentVocabulary::ID table;
	};

	StringSurvey(std::size_t documentSize, int maxIndexedStringLength);
		/// Sizes the counters for a document of about documentSize octets.
		/// Values longer than maxIndexedStringLength octets are not indexed
		/// (a negative length: no limit).

	void setSharedVocabulary(const SharedVocabulary* pVocabulary);
		/// Indexes the values that pVocabulary holds (unless null) even when
		/// they occur once or are long: they are found there, never added.

	const std::vector<Literal>& sample() const;
		/// The distinct values in order of their first occurrence, as many
		/// as fit into a megabyte, CDATA text excepted.

	// StringIndexingPolicy
	bool isIndexed(DocumentVocabulary::ID table, const std::string& value);

	// ContentHandler
	void setDocumentLocator(const Korvo::XML::Locator* loc);
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
	enum Count
	{
		UNSEEN = 0,
		ONCE = 1,
		AGAIN = 2,
		NEVER = 3
	};

	std::size_t slot(DocumentVocabulary::ID table, const std::string& value) const;
	Count count(std::size_t slot) const;
	void setCount(std::size_t slot, Count count);
	void see(DocumentVocabulary::ID table, const std::string& value);

	std::vector<unsigned char> _counts;
	std::size_t _slotMask;
	std::size_t _maxIndexedLength;
	const SharedVocabulary* _pSharedVocabulary;
	std::vector<Literal> _sample;
	std::size_t _sampleOctets;
	bool _inCDATA;
	bool _inDTD;
	std::string _text;
};


} } } // namespace Korvo::FastInfoset::Tool


#endif // FastInfoset_StringSurvey_INCLUDED
