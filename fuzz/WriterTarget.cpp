//
// WriterTarget.cpp
//
// Library: FastInfoset
// Package: Fuzz
// Module:  WriterTarget
//
// Arbitrary octets as a sequence of calls on a FastInfosetWriter.
//
// The first octet configures the writer:
//
//     bits 0-1  its tables: VOC_HASH, VOC_MAP, VOC_VECTOR, VOC_MAP
//     bit 2     an XML declaration
//     bits 3-4  the maximum indexed string length: 16, 0, -1, 1
//
// Every further octet chooses a call (WriterCall), whose arguments come from
// the octets after it: names and values from a small pool or literal,
// typed values from raw octets. Nothing keeps the calls in order, so they
// include misuse: ends without starts, text before startDocument,
// declarations after it, empty names, anything after endDocument.
//
// Each call either returns or refuses with an exception; the first refusal
// ends the sequence, since the writer is then not repaired. A refusal must
// be an exception of the library or the platform (acceptRefusal), or one
// of the assertions the writer makes by design. When endDocument has
// returned, the document written so far must read back with the events
// the calls describe (EventRecord; namespace declarations, which the
// writer chooses, are not compared), and nothing may be written after it.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Targets.h"
#include "EventRecord.h"
#include "FuzzInput.h"
#include "Verdict.h"
#include "WriterCalls.h"
#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include "Korvo/FastInfoset/FastInfosetParser.h"
#include "Poco/SAX/AttributesImpl.h"
#include "Poco/XML/Name.h"
#include <algorithm>
#include <cstring>
#include <deque>
#include <functional>
#include <memory>
#include <sstream>


using Korvo::XML::AttributesImpl;
using Korvo::XML::XMLString;


namespace Korvo {
namespace FastInfoset {
namespace Fuzz {


namespace
{
	const DocumentVocabulary::VocabularyImpl IMPLS[4] =
	{
		DocumentVocabulary::VOC_HASH, DocumentVocabulary::VOC_MAP, DocumentVocabulary::VOC_VECTOR, DocumentVocabulary::VOC_MAP
	};
	const int MAX_INDEXED_LENGTHS[4] = {16, 0, -1, 1};

	const Assertions WRITER_ASSERTIONS =
	{
		"_states.back() == UNINITIALIZED", // a notation or unparsed entity after startDocument
		"!localName.empty()",              // an attribute without a name
		"!qneExists",                      // a qualified name entered twice
	};

	// Names and values that make the writer's choices interesting: prefixes
	// that clash, reserved prefixes and namespaces, qualified names.
	const char* const POOL[] =
	{
		"", "a", "b", "p", "q", "p:a", "q:b", "p:b", "xml", "xmlns", "xmlns:p", "xml:lang",
		"urn:a", "urn:b", "http://www.w3.org/XML/1998/namespace", "http://www.w3.org/2000/xmlns/",
		"ns1", "ns2", " ", "a b", "1", "-1.5", "true", "0A0B", "same", "same",
	};
	const unsigned POOL_SIZE = sizeof(POOL)/sizeof(POOL[0]);

	enum State
	{
		DOCUMENT,
		ELEMENT,
		CDATA,
		DTD
	};

	template <typename T>
	T valueOf(FuzzInput& input)
	{
		T value;
		const std::string octets = input.octets(sizeof(T));
		std::memset(&value, 0, sizeof(T));
		std::memcpy(&value, octets.data(), octets.size());
		return value;
	}

	class CallSequence
		/// Makes the calls and keeps the events they describe.
	{
	public:
		CallSequence(FuzzInput& input, FastInfosetWriter& writer, std::ostringstream& output):
			_input(input),
			_writer(writer),
			_output(output),
			_ended(false),
			_outOfRangeExpected(false)
		{
		}

		void run()
		{
			while (!_input.atEnd())
			{
				const bool endedBefore = _ended;
				const std::streamoff before = _output.tellp();
				_outOfRangeExpected = false;
				try
				{
					call(static_cast<WriterCall>(_input.number(WRITER_CALLS)));
				}
				catch (const std::out_of_range& exc)
				{
					if (!_outOfRangeExpected) fail(std::string("std::out_of_range: ") + exc.what());
					return;
				}
				catch (...)
				{
					acceptRefusal(WRITER_ASSERTIONS);
					return;
				}
				if (_outOfRangeExpected) fail("characters() takes a start beyond the end of the text");
				if (endedBefore && _output.tellp() != before) fail("the writer writes after the end of the document");
			}
		}

		bool ended() const
		{
			return _ended;
		}

		const std::string& document() const
		{
			return _document;
		}

		EventRecord& expected()
		{
			return _expected;
		}

	private:
		using Event = std::function<void(EventRecord&)>;

		std::string text()
		{
			const unsigned char choice = _input.octet();
			if (choice < 0xC0) return POOL[choice % POOL_SIZE];
			return _input.octets(choice - 0xC0);
		}

		const std::string* optionalText()
		{
			if (_input.octet() & 1) return nullptr;
			_optional.push_back(text());
			return &_optional.back();
		}

		struct Names
		{
			std::string uri;
			std::string localName;
			std::string qname;

			std::string elementName() const
				/// Without a local name an element is named by its whole qualified name.
			{
				return localName.empty() ? qname : localName;
			}
		};

		Names names()
		{
			Names result;
			result.uri = text();
			result.localName = text();
			result.qname = text();
			return result;
		}

		static std::string localPart(const std::string& qname)
		{
			XMLString prefix;
			XMLString local;
			Korvo::XML::Name::split(qname, prefix, local);
			return local;
		}

		void attributes(AttributesImpl& given, AttributesImpl& expected)
		{
			const unsigned count = _input.number(4);
			for (unsigned i = 0; i < count; ++i)
			{
				const std::string uri = text();
				const std::string localName = text();
				const std::string qname = text();
				const std::string value = text();
				given.addAttribute(uri, localName, qname, "CDATA", value);
				// Without a local name an attribute is named by its qualified name's local part.
				expected.addAttribute(uri, localName.empty() ? localPart(qname) : localName, "", "CDATA", value);
			}
		}

		void startElement(const Names& element, const AttributesImpl& given, const AttributesImpl& expected)
		{
			_writer.startElement(element.uri, element.localName, element.qname, given);
			flushTyped();
			_expected.startElement(element.uri, element.elementName(), "", expected);
			_elements.emplace_back(element.uri, element.elementName());
			_states.push_back(ELEMENT);
		}

		void endElement(const Names& element)
		{
			// The writer ends the element that is open, whatever the names say.
			_writer.endElement(element.uri, element.localName, element.qname);
			if (_elements.empty()) fail("the writer ends an element that was never started");
			flushTyped();
			_expected.endElement(_elements.back().first, _elements.back().second, "");
			_elements.pop_back();
			pop();
		}

		void characters(const std::string& str)
		{
			flushTyped();
			_expected.characters(str.data(), 0, static_cast<int>(str.size()));
		}

		void someCharacters(bool ignorable)
		{
			// The text is the substring of the NUL-terminated string; a start
			// beyond its end is refused with std::out_of_range.
			const std::string str = text();
			const std::string terminated(str.c_str());
			const int start = static_cast<int>(_input.number(static_cast<unsigned>(str.size()) + 2));
			const int length = static_cast<int>(_input.octet()) - 1;
			_outOfRangeExpected = static_cast<std::size_t>(start) > terminated.size() && !(start == 0 && length == 0);
			if (ignorable)
				_writer.ignorableWhitespace(str.c_str(), start, length);
			else
				_writer.characters(str.c_str(), start, length);
			if (!_outOfRangeExpected) characters(terminated.substr(start, length < 0 ? std::string::npos : length));
		}

		void typed(const Event& event)
		{
			_typed.push_back(event);
		}

		template <typename T>
		void encoded(const T& value)
		{
			_writer.encodedData(value);
			typed([=](EventRecord& record) { record.encodedData(value); });
		}

		void flushTyped()
			/// Queued typed values are written at the next structural event.
		{
			for (const Event& event: _typed) event(_expected);
			_typed.clear();
		}

		void pop()
		{
			if (!_states.empty()) _states.pop_back();
		}

		bool inDTD() const
		{
			return !_states.empty() && _states.back() == DTD;
		}

		void call(WriterCall what);

		FuzzInput& _input;
		FastInfosetWriter& _writer;
		std::ostringstream& _output;
		EventRecord _expected;
		std::vector<Event> _typed;
		std::vector<Event> _notations;
		std::vector<Event> _entities;
		std::vector<std::pair<std::string, std::string>> _elements;
		std::vector<State> _states;
		std::deque<std::string> _optional;
		std::vector<std::string> _dtdComments;
		bool _ended;
		bool _outOfRangeExpected;
		std::string _document;
	};

	void CallSequence::call(WriterCall what)
	{
		switch (what)
		{
		case START_DOCUMENT:
			_writer.startDocument();
			// The header carries the notations, then the unparsed entities.
			for (const Event& event: _notations) event(_expected);
			for (const Event& event: _entities) event(_expected);
			_expected.startDocument();
			_states.push_back(DOCUMENT);
			break;
		case END_DOCUMENT:
			_writer.endDocument();
			flushTyped();
			_expected.endDocument();
			pop();
			_ended = true;
			_document = _output.str();
			break;
		case START_ELEMENT:
			{
				const Names element = names();
				AttributesImpl given;
				AttributesImpl expected;
				attributes(given, expected);
				startElement(element, given, expected);
			}
			break;
		case END_ELEMENT:
			endElement(names());
			break;
		case CHARACTERS:
			someCharacters(false);
			break;
		case IGNORABLE_WHITESPACE:
			someCharacters(true);
			break;
		case CHARACTER_STRING:
			{
				const std::string str = text();
				_writer.characters(str);
				characters(str);
			}
			break;
		case PROCESSING_INSTRUCTION:
			{
				const std::string target = text();
				const std::string data = text();
				_writer.processingInstruction(target, data);
				flushTyped();
				_expected.processingInstruction(target, data);
			}
			break;
		case START_PREFIX_MAPPING:
			{
				const std::string prefix = text();
				const std::string uri = text();
				_writer.startPrefixMapping(prefix, uri);
			}
			break;
		case END_PREFIX_MAPPING:
			_writer.endPrefixMapping(text());
			break;
		case COMMENT:
			{
				const std::string str = text();
				const bool inDeclaration = inDTD();
				_writer.comment(str.data(), 0, static_cast<int>(str.size()));
				// A document type declaration holds no comments: they follow it.
				if (inDeclaration)
				{
					_dtdComments.push_back(str);
				}
				else
				{
					flushTyped();
					_expected.comment(str.data(), 0, static_cast<int>(str.size()));
				}
			}
			break;
		case START_CDATA:
			_writer.startCDATA();
			_states.push_back(CDATA);
			break;
		case END_CDATA:
			_writer.endCDATA();
			flushTyped();
			pop();
			break;
		case START_DTD:
			{
				const std::string name = text();
				const std::string publicId = text();
				const std::string systemId = text();
				_writer.startDTD(name, publicId, systemId);
				flushTyped();
				_expected.startDTD(name, publicId, systemId);
				_states.push_back(DTD);
			}
			break;
		case END_DTD:
			_writer.endDTD();
			_expected.endDTD();
			for (const std::string& str: _dtdComments) _expected.comment(str.data(), 0, static_cast<int>(str.size()));
			_dtdComments.clear();
			pop();
			break;
		case NOTATION:
			{
				const std::string name = text();
				const std::string* pPublicId = optionalText();
				const std::string* pSystemId = optionalText();
				_writer.notationDecl(name, pPublicId, pSystemId);
				_notations.push_back([=](EventRecord& record) { record.notationDecl(name, pPublicId, pSystemId); });
			}
			break;
		case UNPARSED_ENTITY:
			{
				const std::string name = text();
				const std::string* pPublicId = optionalText();
				const std::string systemId = text();
				const std::string notationName = text();
				_writer.unparsedEntityDecl(name, pPublicId, systemId, notationName);
				_entities.push_back([=](EventRecord& record) { record.unparsedEntityDecl(name, pPublicId, systemId, notationName); });
			}
			break;
		case BINARY:
			{
				const std::string octets = _input.octets(_input.number(40));
				_writer.binaryData(octets.data(), static_cast<unsigned>(octets.size()));
				typed([=](EventRecord& record) { record.binaryData(octets.data(), static_cast<unsigned>(octets.size())); });
			}
			break;
		case SHORT:
			encoded(valueOf<short>(_input));
			break;
		case INT:
			encoded(valueOf<int>(_input));
			break;
		case LONG:
			encoded(valueOf<long long>(_input));
			break;
		case BOOL:
			encoded((_input.octet() & 1) != 0);
			break;
		case FLOAT:
			encoded(valueOf<float>(_input));
			break;
		case DOUBLE:
			encoded(valueOf<double>(_input));
			break;
		case UUID_VALUE:
			{
				std::string octets = _input.octets(16);
				octets.resize(16);
				Korvo::UUID value;
				value.copyFrom(octets.data());
				encoded(value);
			}
			break;
		case EMPTY_ELEMENT:
			{
				const Names element = names();
				AttributesImpl given;
				AttributesImpl expected;
				attributes(given, expected);
				if (given.getLength() == 0)
					_writer.emptyElement(element.uri, element.localName, element.qname);
				else
					_writer.emptyElement(element.uri, element.localName, element.qname, given);
				flushTyped();
				_expected.startElement(element.uri, element.elementName(), "", expected);
				_expected.endElement(element.uri, element.elementName(), "");
			}
			break;
		case DATA_ELEMENT:
			{
				const Names element = names();
				const std::string data = text();
				std::string attributeNames[3];
				std::string values[3];
				AttributesImpl expected;
				for (int i = 0; i < 3; ++i)
				{
					attributeNames[i] = text();
					values[i] = text();
					if (!attributeNames[i].empty()) expected.addAttribute("", localPart(attributeNames[i]), "", "CDATA", values[i]);
				}
				_writer.dataElement(element.uri, element.localName, element.qname, data,
					attributeNames[0], values[0], attributeNames[1], values[1], attributeNames[2], values[2]);
				flushTyped();
				_expected.startElement(element.uri, element.elementName(), "", expected);
				characters(data);
				_expected.endElement(element.uri, element.elementName(), "");
			}
			break;
		case MAX_INDEXED_LENGTH:
			_writer.setMaxIndexedStringLength(MAX_INDEXED_LENGTHS[_input.number(4)]);
			break;
		case XML_DECLARATION:
			_writer.setWriteXMLDeclaration((_input.octet() & 1) != 0);
			break;
		case ENTITY_EVENTS:
			{
				const std::string name = text();
				_writer.startEntity(name);
				_writer.skippedEntity(name);
				_writer.endEntity(name);
			}
			break;
		case FRAGMENT:
			if (_input.octet() & 1)
				_writer.startFragment();
			else
				_writer.endFragment();
			fail("startFragment() or endFragment() accepted");
		default:
			break;
		}
	}

	std::vector<std::string> withoutDeclarations(const std::vector<std::string>& lines)
	{
		std::vector<std::string> result;
		for (const std::string& line: lines)
		{
			if (line.compare(0, 3, "ns ") != 0) result.push_back(line);
		}
		return result;
	}
}


void writerTarget(const char* pData, std::size_t size)
{
	FuzzInput input(pData, size);
	const unsigned char settings = input.octet();
	std::ostringstream output;
	std::unique_ptr<FastInfosetWriter> pWriter;
	try
	{
		pWriter.reset(new FastInfosetWriter(output, (settings & 0x04) != 0, IMPLS[settings & 3]));
	}
	catch (...)
	{
		acceptRefusal(WRITER_ASSERTIONS);
		return;
	}
	pWriter->setMaxIndexedStringLength(MAX_INDEXED_LENGTHS[(settings >> 3) & 3]);

	CallSequence calls(input, *pWriter, output);
	calls.run();
	if (!calls.ended()) return;

	EventRecord actual;
	FastInfosetParser parser(DocumentVocabulary::VOC_MAP);
	parser.setContentHandler(&actual);
	parser.setDTDHandler(&actual);
	parser.setProperty(Korvo::XML::XMLReader::PROPERTY_LEXICAL_HANDLER, static_cast<Korvo::XML::LexicalHandler*>(&actual));
	try
	{
		parser.parseMemoryNP(calls.document().data(), calls.document().size());
	}
	catch (const std::exception& exc)
	{
		fail("the parser refuses what the writer wrote: " + describe(exc));
	}
	const std::string difference = EventRecord::firstDifference(calls.expected().lines(), withoutDeclarations(actual.lines()));
	if (!difference.empty()) fail("the written document reads back differently: " + difference);
}


} } } // namespace Korvo::FastInfoset::Fuzz
