//
// Converter.cpp
//
// Library: FastInfoset
// Package: Conversion
// Module:  Converter
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/Converter.h"
#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include "Korvo/FastInfoset/FastInfosetParser.h"
#include "Poco/SAX/SAXParser.h"
#include "Poco/SAX/WhitespaceFilter.h"
#include "Poco/SAX/InputSource.h"
#include "Poco/XML/XMLWriter.h"
#include <string>
#include <utility>
#include <vector>


using Korvo::XML::XMLString;
using Korvo::XML::XMLChar;


namespace Korvo {
namespace FastInfoset {


namespace
{
	int xmlWriterOptions(int options)
		/// The converter's option bits in the toolkit writer's numbering,
		/// which differs from ours (its bit 1 selects canonical XML).
	{
		int result = Korvo::XML::XMLWriter::CANONICAL;
		if (options & Converter::CONV_WRITE_XML_DECLARATION)
			result |= Korvo::XML::XMLWriter::WRITE_XML_DECLARATION;
		if (options & Converter::CONV_PRETTY_PRINT_XML)
			result |= Korvo::XML::XMLWriter::PRETTY_PRINT;
		return result;
	}


	class DoctypeDeferringWriter: public Korvo::XML::XMLWriter
		/// An XMLWriter that holds back a document type declaration until
		/// the root element starts.
		///
		/// A Fast Infoset document type declaration carries no name, so the
		/// parser reports startDTD with an empty one, and the plain writer
		/// would write "<!DOCTYPE  SYSTEM ...>", which no XML parser accepts.
		/// The root element's qualified name is the right name, and it is
		/// known only when the root starts. Processing instructions inside
		/// the declaration become its internal subset; comments and
		/// processing instructions between it and the root are held back
		/// too, so that the prolog keeps its order.
		///
		/// A declaration reported after the root has started cannot be
		/// written well-formed and is dropped; processing instructions inside
		/// it are written where they occur.
	{
	public:
		DoctypeDeferringWriter(std::ostream& output, int options):
			Korvo::XML::XMLWriter(output, options),
			_rootStarted(false),
			_inDoctype(false),
			_doctypePending(false)
		{
		}

		using Korvo::XML::XMLWriter::startElement;

		void startDTD(const XMLString&, const XMLString& publicId, const XMLString& systemId) override
		{
			_inDoctype = true;
			if (_rootStarted || _doctypePending) return;
			_doctypePending = true;
			_publicId = publicId;
			_systemId = systemId;
		}

		void endDTD() override
		{
			_inDoctype = false;
		}

		void processingInstruction(const XMLString& target, const XMLString& data) override
		{
			if (!_doctypePending)
				Korvo::XML::XMLWriter::processingInstruction(target, data);
			else if (_inDoctype)
				_internalSubset.push_back(PrologItem{true, target, data});
			else
				_heldProlog.push_back(PrologItem{true, target, data});
		}

		void comment(const XMLChar ch[], int start, int length) override
		{
			if (_doctypePending)
				_heldProlog.push_back(PrologItem{false, XMLString(), XMLString(ch + start, length)});
			else
				Korvo::XML::XMLWriter::comment(ch, start, length);
		}

		void startPrefixMapping(const XMLString& prefix, const XMLString& namespaceURI) override
		{
			if (!_rootStarted) _rootMappings.emplace_back(prefix, namespaceURI);
			Korvo::XML::XMLWriter::startPrefixMapping(prefix, namespaceURI);
		}

		void startElement(const XMLString& namespaceURI, const XMLString& localName, const XMLString& qname, const Korvo::XML::Attributes& attributes) override
		{
			if (!_rootStarted)
			{
				_rootStarted = true;
				if (_doctypePending) writeDoctype(rootName(namespaceURI, localName, qname));
			}
			Korvo::XML::XMLWriter::startElement(namespaceURI, localName, qname, attributes);
		}

		void endDocument() override
		{
			// Without a root element the document cannot be well-formed (the
			// base class says so); the held items are written all the same.
			if (_doctypePending)
			{
				_doctypePending = false;
				write(_internalSubset);
				write(_heldProlog);
			}
			Korvo::XML::XMLWriter::endDocument();
		}

	private:
		struct PrologItem
		{
			bool isInstruction;
			XMLString target;
			XMLString text;
		};

		XMLString rootName(const XMLString& namespaceURI, const XMLString& localName, const XMLString& qname) const
			/// The name under which the base class writes the root element:
			/// qname when given, else localName behind the prefix declared
			/// for namespaceURI just before the root.
		{
			if (!qname.empty()) return qname;
			if (namespaceURI.empty()) return localName;
			for (const auto& mapping: _rootMappings)
			{
				if (mapping.second == namespaceURI)
					return mapping.first.empty() ? localName : mapping.first + ':' + localName;
			}
			return localName;
		}

		void writeDoctype(const XMLString& name)
		{
			_doctypePending = false;
			Korvo::XML::XMLWriter::startDTD(name, _publicId, _systemId);
			// A public identifier needs a system literal behind it; an empty
			// one is well-formed.
			if (!_publicId.empty() && _systemId.empty()) rawCharacters(" \"\"");
			if (!_internalSubset.empty())
			{
				rawCharacters(" [");
				write(_internalSubset);
				rawCharacters("]");
			}
			Korvo::XML::XMLWriter::endDTD();
			write(_heldProlog);
		}

		void write(std::vector<PrologItem>& items)
		{
			for (const auto& item: items)
			{
				if (item.isInstruction)
					Korvo::XML::XMLWriter::processingInstruction(item.target, item.text);
				else
					Korvo::XML::XMLWriter::comment(item.text.data(), 0, static_cast<int>(item.text.size()));
			}
			items.clear();
		}

		bool _rootStarted;
		bool _inDoctype;
		bool _doctypePending;
		XMLString _publicId;
		XMLString _systemId;
		std::vector<PrologItem> _internalSubset;
		std::vector<PrologItem> _heldProlog;
		std::vector<std::pair<XMLString, XMLString>> _rootMappings;
	};


	void attachWriter(Korvo::XML::XMLReader& reader, FastInfosetWriter& writer)
	{
		reader.setContentHandler(&writer);
		reader.setDTDHandler(&writer);
		reader.setProperty(Korvo::XML::XMLReader::PROPERTY_LEXICAL_HANDLER, static_cast<Korvo::XML::LexicalHandler*>(&writer));
	}
}


void Converter::convertToFIS(std::istream& input, std::ostream& output, int maxIndexedStringLength, int options)
{
	FastInfosetWriter writer(output, false, DocumentVocabulary::VOC_MAP);
	writer.setMaxIndexedStringLength(maxIndexedStringLength);

	Korvo::XML::SAXParser parser;
	parser.setFeature(Korvo::XML::XMLReader::FEATURE_NAMESPACES, true);
	parser.setFeature(Korvo::XML::XMLReader::FEATURE_NAMESPACE_PREFIXES, true);

	Korvo::XML::InputSource source(input);
	// Tested against the whole constant on purpose: CONV_WRITE_XML_DECLARATION
	// switches whitespace removal on as well.
	if (options & CONV_REMOVE_IGNORABLE_WHITESPACE)
	{
		Korvo::XML::WhitespaceFilter filter(&parser);
		attachWriter(filter, writer);
		filter.parse(&source);
	}
	else
	{
		attachWriter(parser, writer);
		parser.parse(&source);
	}
}


void Converter::convertToXML(std::istream& input, std::ostream& output, int options)
{
	DoctypeDeferringWriter writer(output, xmlWriterOptions(options));
	FastInfosetParser parser(DocumentVocabulary::VOC_VECTOR);
	parser.initialize(static_cast<Korvo::XML::XMLWriter*>(&writer));

	Korvo::XML::InputSource source(input);
	parser.parse(&source);
}


} } // namespace Korvo::FastInfoset
