//
// BenchSupport.h
//
// What the benchmarks share: files of the fixtures, an output buffer that
// keeps its capacity, and a record of a document's SAX2 events that can be
// replayed into any writer.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//

#ifndef Bench_BenchSupport_INCLUDED
#define Bench_BenchSupport_INCLUDED

#include "Korvo/FastInfoset/FastInfoset.h"
#include "Poco/SAX/AttributesImpl.h"
#include "Poco/SAX/ContentHandler.h"
#include "Poco/SAX/DTDHandler.h"
#include "Poco/SAX/InputSource.h"
#include "Poco/SAX/LexicalHandler.h"
#include "Poco/SAX/SAXParser.h"
#include "Poco/MemoryStream.h"
#include <algorithm>
#include <cstring>
#include <dirent.h>
#include <fstream>
#include <sstream>
#include <streambuf>
#include <string>
#include <vector>


namespace Bench {


inline bool readFile(const std::string& path, std::string& content)
	/// False when the file cannot be opened.
{
	std::ifstream input(path, std::ios::binary);
	if (!input) return false;
	std::ostringstream buffer;
	buffer << input.rdbuf();
	content = buffer.str();
	return true;
}


inline std::vector<std::string> filesIn(const std::string& directory, const std::string& extension)
	/// The names of the files in directory that end in extension, sorted;
	/// none when the directory is absent.
{
	std::vector<std::string> names;
	if (DIR* pDir = opendir(directory.c_str()))
	{
		while (dirent* pEntry = readdir(pDir))
		{
			std::string name = pEntry->d_name;
			if (name.size() > extension.size() && name.compare(name.size() - extension.size(), extension.size(), extension) == 0)
				names.push_back(name);
		}
		closedir(pDir);
	}
	std::sort(names.begin(), names.end());
	return names;
}


inline std::string baseName(const std::string& fileName)
	/// The name without its extension.
{
	return fileName.substr(0, fileName.rfind('.'));
}


class MemoryBuffer: public std::streambuf
	/// Collects output in one buffer that keeps its capacity between runs,
	/// so that the stream costs the same for every writer.
{
public:
	MemoryBuffer():
		_data(4096, '\0')
	{
		clear();
	}

	void clear()
	{
		setp(&_data[0], &_data[0] + _data.size());
	}

	std::string data() const
	{
		return std::string(pbase(), pptr());
	}

	std::size_t size() const
	{
		return static_cast<std::size_t>(pptr() - pbase());
	}

protected:
	int_type overflow(int_type c) override
	{
		if (!traits_type::eq_int_type(c, traits_type::eof()))
		{
			reserve(1);
			*pptr() = traits_type::to_char_type(c);
			pbump(1);
		}
		return traits_type::not_eof(c);
	}

	std::streamsize xsputn(const char* s, std::streamsize n) override
	{
		reserve(static_cast<std::size_t>(n));
		std::memcpy(pptr(), s, static_cast<std::size_t>(n));
		pbump(static_cast<int>(n));
		return n;
	}

private:
	void reserve(std::size_t n)
	{
		if (static_cast<std::size_t>(epptr() - pptr()) >= n) return;
		std::size_t used = size();
		_data.resize(std::max(2*_data.size(), used + n));
		setp(&_data[0], &_data[0] + _data.size());
		pbump(static_cast<int>(used));
	}

	std::string _data;
};


class RecordedEvents: public Korvo::XML::ContentHandler, public Korvo::XML::LexicalHandler, public Korvo::XML::DTDHandler
	/// The SAX2 events of one document, kept so that writers can be timed
	/// on them without the parser that produced them.
{
public:
	void readXML(const std::string& xml)
		/// Records the events of the XML document, parsed as the converter
		/// parses it (namespaces and their prefixes on).
	{
		Korvo::XML::SAXParser parser;
		parser.setFeature(Korvo::XML::XMLReader::FEATURE_NAMESPACES, true);
		parser.setFeature(Korvo::XML::XMLReader::FEATURE_NAMESPACE_PREFIXES, true);
		parser.setContentHandler(this);
		parser.setDTDHandler(this);
		parser.setProperty(Korvo::XML::XMLReader::PROPERTY_LEXICAL_HANDLER, static_cast<Korvo::XML::LexicalHandler*>(this));
		parser.parseMemoryNP(xml.data(), xml.size());
	}

	template <class Writer>
	void replay(Writer& writer) const
		/// Delivers the events to a writer that is a content, lexical and DTD handler.
	{
		for (const Event& event: _events)
		{
			switch (event.kind)
			{
			case START_DOCUMENT: writer.startDocument(); break;
			case END_DOCUMENT: writer.endDocument(); break;
			case START_ELEMENT: writer.startElement(event.a, event.b, event.c, _attributes[event.attributes]); break;
			case END_ELEMENT: writer.endElement(event.a, event.b, event.c); break;
			case CHARACTERS: writer.characters(event.a.data(), 0, static_cast<int>(event.a.size())); break;
			case IGNORABLE_WHITESPACE: writer.ignorableWhitespace(event.a.data(), 0, static_cast<int>(event.a.size())); break;
			case PROCESSING_INSTRUCTION: writer.processingInstruction(event.a, event.b); break;
			case START_PREFIX_MAPPING: writer.startPrefixMapping(event.a, event.b); break;
			case END_PREFIX_MAPPING: writer.endPrefixMapping(event.a); break;
			case START_DTD: writer.startDTD(event.a, event.b, event.c); break;
			case END_DTD: writer.endDTD(); break;
			case START_CDATA: writer.startCDATA(); break;
			case END_CDATA: writer.endCDATA(); break;
			case COMMENT: writer.comment(event.a.data(), 0, static_cast<int>(event.a.size())); break;
			}
		}
	}

	// ContentHandler
	void setDocumentLocator(const Korvo::XML::Locator*) override {}
	void startDocument() override { add(START_DOCUMENT); }
	void endDocument() override { add(END_DOCUMENT); }
	void startElement(const Korvo::XML::XMLString& uri, const Korvo::XML::XMLString& localName, const Korvo::XML::XMLString& qname, const Korvo::XML::Attributes& attributes) override
	{
		add(START_ELEMENT, uri, localName, qname).attributes = _attributes.size();
		_attributes.emplace_back(attributes);
	}
	void endElement(const Korvo::XML::XMLString& uri, const Korvo::XML::XMLString& localName, const Korvo::XML::XMLString& qname) override { add(END_ELEMENT, uri, localName, qname); }
	void characters(const Korvo::XML::XMLChar ch[], int start, int length) override { add(CHARACTERS, std::string(ch + start, length)); }
	void ignorableWhitespace(const Korvo::XML::XMLChar ch[], int start, int length) override { add(IGNORABLE_WHITESPACE, std::string(ch + start, length)); }
	void processingInstruction(const Korvo::XML::XMLString& target, const Korvo::XML::XMLString& data) override { add(PROCESSING_INSTRUCTION, target, data); }
	void startPrefixMapping(const Korvo::XML::XMLString& prefix, const Korvo::XML::XMLString& uri) override { add(START_PREFIX_MAPPING, prefix, uri); }
	void endPrefixMapping(const Korvo::XML::XMLString& prefix) override { add(END_PREFIX_MAPPING, prefix); }
	void skippedEntity(const Korvo::XML::XMLString&) override {}

	// LexicalHandler
	void startDTD(const Korvo::XML::XMLString& name, const Korvo::XML::XMLString& publicId, const Korvo::XML::XMLString& systemId) override { add(START_DTD, name, publicId, systemId); }
	void endDTD() override { add(END_DTD); }
	void startEntity(const Korvo::XML::XMLString&) override {}
	void endEntity(const Korvo::XML::XMLString&) override {}
	void startCDATA() override { add(START_CDATA); }
	void endCDATA() override { add(END_CDATA); }
	void comment(const Korvo::XML::XMLChar ch[], int start, int length) override { add(COMMENT, std::string(ch + start, length)); }

	// DTDHandler: declarations are left out, a writer takes them only before the document.
	void notationDecl(const Korvo::XML::XMLString&, const Korvo::XML::XMLString*, const Korvo::XML::XMLString*) override {}
	void unparsedEntityDecl(const Korvo::XML::XMLString&, const Korvo::XML::XMLString*, const Korvo::XML::XMLString&, const Korvo::XML::XMLString&) override {}

private:
	enum Kind
	{
		START_DOCUMENT, END_DOCUMENT, START_ELEMENT, END_ELEMENT, CHARACTERS, IGNORABLE_WHITESPACE,
		PROCESSING_INSTRUCTION, START_PREFIX_MAPPING, END_PREFIX_MAPPING, START_DTD, END_DTD,
		START_CDATA, END_CDATA, COMMENT
	};

	struct Event
	{
		Kind kind;
		std::string a;
		std::string b;
		std::string c;
		std::size_t attributes;
	};

	Event& add(Kind kind, const std::string& a = std::string(), const std::string& b = std::string(), const std::string& c = std::string())
	{
		_events.push_back(Event{kind, a, b, c, 0});
		return _events.back();
	}

	std::vector<Event> _events;
	std::vector<Korvo::XML::AttributesImpl> _attributes;
};


} // namespace Bench


#endif // Bench_BenchSupport_INCLUDED
