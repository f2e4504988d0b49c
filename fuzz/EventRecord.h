//
// EventRecord.h
//
// Library: FastInfoset
// Package: Fuzz
// Module:  EventRecord
//
// The events of one document, typed values included, as comparable lines.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_EventRecord_INCLUDED
#define FastInfoset_EventRecord_INCLUDED


#include "Korvo/FastInfoset/FISContentHandler.h"
#include "Poco/SAX/LexicalHandler.h"
#include "Poco/SAX/DTDHandler.h"
#include <initializer_list>
#include <string>
#include <vector>


namespace Korvo {
namespace FastInfoset {
namespace Fuzz {


class EventRecord: public FISContentHandler, public Korvo::XML::LexicalHandler, public Korvo::XML::DTDHandler
	/// Records what a document says, in a form that does not depend on how
	/// it was written:
	///
	///     start {urn:x}item @{}id=42
	///     ns 1 p=urn:x          (the length of the prefix, the prefix and
	///                           the namespace, before the start of its element)
	///     text Hello
	///     int 42
	///     binary 0A0B
	///     end {urn:x}item
	///
	/// Adjacent text is joined, and so are adjacent binary values (a writer
	/// merges them into one); CDATA boundaries vanish; floating-point values
	/// are recorded by their bits. Qualified names and the ends of prefix
	/// mappings are not recorded: a writer may choose other prefixes.
	/// Absent and empty identifiers of notations and entities are alike.
	///
	/// A document can refer to one long string many times, so its events
	/// may be far larger than the document. Past a limit on their volume
	/// the record stops recording and only reads the first and last octet
	/// of what it is given, which is enough for the sanitizers to check it.
{
public:
	EventRecord();

	void clear();

	const std::vector<std::string>& lines();
		/// The events recorded so far, pending text included.

	void limitVolume(std::size_t octets);
		/// Stops recording once the events hold more than octets octets.

	bool overflowed() const;
		/// True when the events went past the volume limit.

	struct Element
	{
		std::string prefix;
			/// The prefix of its qualified name.
		bool namespacedAttribute;
			/// True when it has an attribute in a namespace.
	};

	const std::vector<Element>& elements() const;
		/// What each element, in document order, says besides the lines: a
		/// writer may choose other prefixes.

	bool hasEmptyLocalName() const;
		/// True when an element or attribute had an empty local name, which
		/// a Fast Infoset document can give (the string at index 0) and a
		/// writer cannot write.

	void cutTextAtNul(bool cut);
		/// Keeps only what precedes the first NUL of each characters() call,
		/// as much as a writer that reads the text as a C string takes.

	static std::string firstDifference(const std::vector<std::string>& expected, const std::vector<std::string>& actual);
		/// Empty when both are equal, else where they first differ.

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

	// FISContentHandler
	void binaryData(const char* buffer, unsigned int size);
	void encodedData(short value);
	void encodedData(int value);
	void encodedData(long long value);
	void encodedData(bool value);
	void encodedData(float value);
	void encodedData(double value);
	void encodedData(const Korvo::UUID& uuid);

	// LexicalHandler
	void startDTD(const Korvo::XML::XMLString& name, const Korvo::XML::XMLString& publicId, const Korvo::XML::XMLString& systemId);
	void endDTD();
	void startEntity(const Korvo::XML::XMLString& name);
	void endEntity(const Korvo::XML::XMLString& name);
	void startCDATA();
	void endCDATA();
	void comment(const Korvo::XML::XMLChar ch[], int start, int length);

	// DTDHandler
	void notationDecl(const Korvo::XML::XMLString& name, const Korvo::XML::XMLString* pPublicId, const Korvo::XML::XMLString* pSystemId);
	void unparsedEntityDecl(const Korvo::XML::XMLString& name, const Korvo::XML::XMLString* pPublicId, const Korvo::XML::XMLString& systemId, const Korvo::XML::XMLString& notationName);

private:
	enum Pending
	{
		NOTHING,
		TEXT,
		BINARY
	};

	void add(Pending kind, const char* pData, std::size_t length);
	void flush();
	void record(const std::string& line);
	bool counts(std::size_t length);
	bool counts(std::initializer_list<const std::string*> strings);
	void touch(const char* pData, std::size_t length);

	std::vector<std::string> _lines;
	std::vector<Element> _elements;
	Pending _pending;
	std::string _data;
	bool _cutTextAtNul;
	std::size_t _volume;
	std::size_t _volumeLimit;
	unsigned char _touched;
	bool _emptyLocalName;
};


//
// inlines
//
inline bool EventRecord::overflowed() const
{
	return _volume > _volumeLimit;
}


inline const std::vector<EventRecord::Element>& EventRecord::elements() const
{
	return _elements;
}


inline bool EventRecord::hasEmptyLocalName() const
{
	return _emptyLocalName;
}


inline void EventRecord::limitVolume(std::size_t octets)
{
	_volumeLimit = octets;
}


inline void EventRecord::cutTextAtNul(bool cut)
{
	_cutTextAtNul = cut;
}


} } } // namespace Korvo::FastInfoset::Fuzz


#endif // FastInfoset_EventRecord_INCLUDED
