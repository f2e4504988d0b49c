//
// FastInfosetParser.cpp
//
// Library: FastInfoset
// Package: Parser
// Module:  FastInfosetParser
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/FastInfosetParser.h"
#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include "Korvo/FastInfoset/FISContentHandler.h"
#include "Korvo/FastInfoset/FISDocumentHandler.h"
#include "Korvo/FastInfoset/FISException.h"
#include "Korvo/FastInfoset/CDataEncoding.h"
#include "Korvo/FastInfoset/Encoder.h"
#include "Korvo/FastInfoset/EncodingAlgorithm.h"
#include "Korvo/FastInfoset/NullEncoding.h"
#include "Korvo/FastInfoset/NullRefEncoding.h"
#include "Korvo/FastInfoset/StringDecoder.h"
#include "Korvo/FastInfoset/Utility.h"
#include "Korvo/FastInfoset/VectorVocabulary.h"
#include "ChangedString.h"
#include "NewValueFilter.h"
#include "ThreadSpare.h"
#include "RecycledAttributes.h"
#include "VocabularyLimit.h"
#include "Poco/SAX/ContentHandler.h"
#include "Poco/SAX/LexicalHandler.h"
#include "Poco/SAX/DTDHandler.h"
#include "Poco/SAX/InputSource.h"
#include "Poco/SAX/EntityResolverImpl.h"
#include "Poco/SAX/SAXException.h"
#include "Poco/XML/XMLWriter.h"
#include "Poco/MemoryStream.h"
#include <climits>
#include <typeinfo>


using Korvo::XML::XMLString;
using Korvo::XML::XMLReader;
using Korvo::XML::AttributesImpl;


namespace Korvo {
namespace FastInfoset {


namespace
{
	const std::size_t NAMESPACE_ATTRIBUTES_CAPACITY = 4;
	const std::size_t ATTRIBUTE_LISTS = 128;
	const std::size_t OPEN_ELEMENTS_CAPACITY = 32;
	const std::size_t MADE_LISTS_CAPACITY = 8;
	const std::size_t NAMES_CAPACITY = 32;

	const unsigned char TERMINATOR = 0x0F;
	const unsigned char NAMESPACE_ATTRIBUTES = 0x38;
	const unsigned char NOTATION = 0x30;
	const unsigned char UNPARSED_ENTITY = 0x68;
	const unsigned char COMMENT = 0xE2;
	const unsigned char DOCUMENT_TYPE_PROCESSING_INSTRUCTION = 0x0E;

	const unsigned int ABSENT_INDEX = 0xFFFFFFFF;

	const unsigned int NOT_INDEXED = 0xFFFFFFFF;
		// The index given for a literal that a full table did not take.

	// A memory reader takes the size of its block as an unsigned int;
	// larger blocks are read through a stream instead.
	const std::size_t MAX_MEMORY_BLOCK = UINT_MAX;

	[[noreturn]] void __attribute__((noinline)) throwParseException(const char* pMessage)
		/// Kept apart so that the reads below stay small enough to inline.
	{
		throw FISParseException(pMessage);
	}

	template <class T>
	const T& __attribute__((noinline, cold)) valueOutOfRange(const Vocabulary<T>& table, unsigned index)
		/// An index past the table fails as the table's own value() does: an
		/// assertion for hash and map tables, std::out_of_range for vectors.
	{
		return table.value(index);
	}

	inline unsigned char readBits(BitStreamReader& aReader, int numBits, const char* pMessage)
	{
		unsigned char bits = 0;
		if (!aReader.read(bits, numBits)) throwParseException(pMessage);
		return bits;
	}

	inline bool readBit(BitStreamReader& aReader, const char* pMessage)
	{
		bool bit = false;
		if (!aReader.read(bit)) throwParseException(pMessage);
		return bit;
	}

	void skipBits(BitStreamReader& aReader, int numBits, const char* pMessage)
		/// For skips that may run past the end of the data, which a memory
		/// reader would otherwise refuse with an assertion.
	{
		if (!aReader.canRead(numBits)) throw FISParseException(pMessage);
		aReader.skip(numBits);
	}
}


namespace
{
	const std::size_t STRING_TABLES = DocumentVocabulary::CHARACTER_CONTENT_CHUNK - DocumentVocabulary::PREFIX + 1;

	const std::size_t MAX_SPARE_NAMES = 4096;
		// Parts that held more names than this are freed rather than kept.

	const std::size_t MAX_SPARE_REPEAT_OCTETS = 65536;
		// Records of more literal octets than this are not handed on.
}


struct FastInfosetParser::SpareParts
	/// The working storage of a destroyed parser (attribute lists, filters,
	/// resolved and qualified names, stacks), kept for the next parser made on the
	/// same thread: a parser made for each message then allocates little.
{
	bool held = false;
	std::vector<std::unique_ptr<RecycledAttributes>> attributeLists;
	std::vector<RecycledAttributes*> madeLists;
	std::unique_ptr<std::deque<std::string>> pQualifiedNames;
	std::vector<ResolvedQualName> elementNames;
	std::vector<ResolvedQualName> attributeNames;
	std::unique_ptr<NewValueFilter<std::string>[]> pStringFilters;
	std::unique_ptr<NewValueFilter<QualifiedNameEntry>[]> pNameFilters;
	std::vector<ResolvedQualName> openElements;
	std::vector<const std::string*> prefixMappings;
	std::vector<RepeatRecord> repeats;
	std::string repeatOctets;
	std::vector<std::pair<const std::string*, const std::string*>> repeatDeclarations;
	Korvo::UInt64 repeatsSerial = 0;
		/// The tablesSerial() of the vocabulary whose tables the records
		/// describe, or 0 where they describe none.
	const void* pRepeatTables[REPEAT_TABLES] = {};
	bool repeatQNames = true;
};


const XMLString FastInfosetParser::EMPTY_STRING;
const XMLString FastInfosetParser::XMLNS("xmlns");
const XMLString FastInfosetParser::FEATURE_ATTRIBUTE_QNAMES("http://korvo.org/fastinfoset/features/attribute-qnames");


FastInfosetParser::FastInfosetParser(DocumentVocabulary::VocabularyImpl impl):
	_pEntityResolver(0),
	_pDTDHandler(0),
	_pContentHandler(0),
	_pErrorHandler(0),
	_pDeclHandler(0),
	_pLexicalHandler(0),
	_pDocumentHandler(0),
	_pFISContentHandler(0),
	_fisContentHandlerKnown(true),
	_namespacePrefixes(true),
	_attributeQNames(false),
	_vocabulary(impl),
	_vocabularyAsNew(true)
{
	findTables();
	if (!takeSpareParts()) reserveBuffers();
}


FastInfosetParser::FastInfosetParser(const DocumentVocabulary& vocabulary):
	_pEntityResolver(0),
	_pDTDHandler(0),
	_pContentHandler(0),
	_pErrorHandler(0),
	_pDeclHandler(0),
	_pLexicalHandler(0),
	_pDocumentHandler(0),
	_pFISContentHandler(0),
	_fisContentHandlerKnown(true),
	_namespacePrefixes(true),
	_attributeQNames(false),
	_vocabulary(vocabulary)
{
	findTables();
	if (!takeSpareParts()) reserveBuffers();
	if (!vocabulary.getURI().empty() && vocabulary.vocabulary(DocumentVocabulary::PREFIX))
		_externalVocabularies.add(vocabulary.getURI(), vocabulary);
}


FastInfosetParser::~FastInfosetParser()
{
	giveSpareParts();
}


bool FastInfosetParser::takeSpareParts()
{
	SpareParts* pSpare = ThreadSpare<SpareParts>::get();
	if (!pSpare || !pSpare->held) return false;
	// Moves and swaps of what is there: nothing here can throw.
	_attributeLists.swap(pSpare->attributeLists);
	_madeLists.swap(pSpare->madeLists);
	_pQualifiedNames.swap(pSpare->pQualifiedNames);
	_elementNames.swap(pSpare->elementNames);
	_attributeNames.swap(pSpare->attributeNames);
	_pStringFilters = std::move(pSpare->pStringFilters);
	_pNameFilters = std::move(pSpare->pNameFilters);
	_openElements.swap(pSpare->openElements);
	_prefixMappings.swap(pSpare->prefixMappings);
	_repeats.swap(pSpare->repeats);
	_repeatOctets.swap(pSpare->repeatOctets);
	_repeatDeclarations.swap(pSpare->repeatDeclarations);
	pSpare->held = false;
	// Nothing of the other parser's tables may be trusted, except where
	// this parser's vocabulary took the very tables that the records
	// describe, straight from the vocabulary of the parser that made them:
	// then the records hold as they would have for that parser.
	forgetSources();
	forgetFilters();
	_openElements.clear();
	_prefixMappings.clear();
	if (pSpare->repeatsSerial != 0 && pSpare->repeatsSerial == _vocabulary.tablesFrom())
	{
		std::copy(pSpare->pRepeatTables, pSpare->pRepeatTables + REPEAT_TABLES, _pRepeatTables);
		_repeatQNames = pSpare->repeatQNames;
		tableSizes(_repeatEndSizes);
		_repeatsUsable = true;
	}
	else
		clearRepeats();
	pSpare->repeatsSerial = 0;
	return true;
}


void FastInfosetParser::giveSpareParts()
{
	SpareParts* pSpare = ThreadSpare<SpareParts>::get();
	if (!pSpare || pSpare->held || _attributeLists.size() != ATTRIBUTE_LISTS || !_pStringFilters) return;
	if ((_pQualifiedNames && _pQualifiedNames->size() > MAX_SPARE_NAMES) || _elementNames.capacity() > MAX_SPARE_NAMES || _attributeNames.capacity() > MAX_SPARE_NAMES
		|| _openElements.capacity() > MAX_SPARE_NAMES) return;
	// What the next parser finds here is storage only: it makes every
	// list copy its names again, and forgets every filter, before its
	// first document. A filter grown large for a document is not kept.
	for (std::size_t i = 0; i < STRING_TABLES; ++i) _pStringFilters[i].trim();
	_pNameFilters[0].trim();
	_pNameFilters[1].trim();
	_attributeLists.swap(pSpare->attributeLists);
	_madeLists.swap(pSpare->madeLists);
	_pQualifiedNames.swap(pSpare->pQualifiedNames);
	_elementNames.swap(pSpare->elementNames);
	_attributeNames.swap(pSpare->attributeNames);
	pSpare->pStringFilters = std::move(_pStringFilters);
	pSpare->pNameFilters = std::move(_pNameFilters);
	_openElements.swap(pSpare->openElements);
	_prefixMappings.swap(pSpare->prefixMappings);
	// The records of a document that ended go with the tables it left, as
	// they stand; the next parser uses them only if its vocabulary takes
	// these tables as they are given.
	bool records = _repeatsUsable && !_repeats.empty() && _repeatOctets.size() <= MAX_SPARE_REPEAT_OCTETS;
	if (records)
	{
		unsigned sizes[REPEAT_TABLES];
		tableSizes(sizes);
		records = std::equal(sizes, sizes + REPEAT_TABLES, _repeatEndSizes);
	}
	if (!records)
	{
		clearRepeats();
		if (_repeatOctets.capacity() > MAX_SPARE_REPEAT_OCTETS)
		{
			std::string().swap(_repeatOctets);
			std::vector<RepeatRecord>().swap(_repeats);
			std::vector<std::pair<const std::string*, const std::string*>>().swap(_repeatDeclarations);
		}
	}
	_repeats.swap(pSpare->repeats);
	_repeatOctets.swap(pSpare->repeatOctets);
	_repeatDeclarations.swap(pSpare->repeatDeclarations);
	pSpare->repeatsSerial = records ? _vocabulary.tablesSerial() : 0;
	std::copy(_pRepeatTables, _pRepeatTables + REPEAT_TABLES, pSpare->pRepeatTables);
	pSpare->repeatQNames = _repeatQNames;
	pSpare->held = true;
}


void FastInfosetParser::reserveBuffers()
{
	_attributeLists.resize(ATTRIBUTE_LISTS);
	// What every document with elements needs; the scratch strings, which
	// many messages never use, grow when used and keep their storage.
	_prefixMappings.reserve(NAMESPACE_ATTRIBUTES_CAPACITY);
	_openElements.reserve(OPEN_ELEMENTS_CAPACITY);
	_elementNames.reserve(NAMES_CAPACITY);
	_attributeNames.reserve(NAMES_CAPACITY);
}


//
// Wiring and handlers
//


void FastInfosetParser::initialize(FastInfosetWriter* pWriter)
{
	if (!pWriter) return;
	setContentHandler(pWriter);
	setDocumentHandler(pWriter);
	setDTDHandler(pWriter);
	setProperty(XMLReader::PROPERTY_LEXICAL_HANDLER, static_cast<Korvo::XML::LexicalHandler*>(pWriter));
}


void FastInfosetParser::initialize(Korvo::XML::XMLWriter* pWriter)
{
	if (!pWriter) return;
	setContentHandler(pWriter);
	FastInfosetWriter* pFastInfosetWriter = dynamic_cast<FastInfosetWriter*>(pWriter);
	setDocumentHandler(pFastInfosetWriter ? static_cast<FISDocumentHandler*>(pFastInfosetWriter) : 0);
	setDTDHandler(pWriter);
	setProperty(XMLReader::PROPERTY_LEXICAL_HANDLER, static_cast<Korvo::XML::LexicalHandler*>(pWriter));
}


void FastInfosetParser::addExternalVocabulary(const std::string& uri, const DocumentVocabulary& vocabulary)
{
	_externalVocabularies.add(uri, vocabulary);
}


void FastInfosetParser::setDocumentHandler(FISDocumentHandler* pDocumentHandler)
{
	_pDocumentHandler = pDocumentHandler;
}


Vocabulary<QualifiedNameEntry>& FastInfosetParser::getQNameVocabulary(bool inElement)
{
	growPending();
	// Whoever holds the table may change it: the next document resolves its names afresh.
	_namesKeepable = false;
	return inElement ? *_vocabulary.elementVocabulary() : *_vocabulary.attributeVocabulary();
}


void FastInfosetParser::setEntityResolver(Korvo::XML::EntityResolver* pResolver)
{
	_pEntityResolver = pResolver;
}


Korvo::XML::EntityResolver* FastInfosetParser::getEntityResolver() const
{
	return _pEntityResolver;
}


void FastInfosetParser::setDTDHandler(Korvo::XML::DTDHandler* pDTDHandler)
{
	_pDTDHandler = pDTDHandler;
}


Korvo::XML::DTDHandler* FastInfosetParser::getDTDHandler() const
{
	return _pDTDHandler;
}


void FastInfosetParser::setContentHandler(Korvo::XML::ContentHandler* pContentHandler)
{
	// Whether it takes typed values is asked when the first one comes: the
	// cast costs more than a small message's other setup.
	_pContentHandler = pContentHandler;
	_pFISContentHandler = nullptr;
	_fisContentHandlerKnown = pContentHandler == nullptr;
}


Korvo::XML::ContentHandler* FastInfosetParser::getContentHandler() const
{
	return _pContentHandler;
}


void FastInfosetParser::setErrorHandler(Korvo::XML::ErrorHandler* pErrorHandler)
{
	_pErrorHandler = pErrorHandler;
}


Korvo::XML::ErrorHandler* FastInfosetParser::getErrorHandler() const
{
	return _pErrorHandler;
}


void FastInfosetParser::setFeature(const XMLString& featureId, bool state)
{
	if (featureId == XMLReader::FEATURE_NAMESPACES)
	{
		if (!state) throw Korvo::XML::SAXNotSupportedException(featureId, "namespace support cannot be disabled");
	}
	else if (featureId == XMLReader::FEATURE_NAMESPACE_PREFIXES)
	{
		_namespacePrefixes = state;
	}
	else if (featureId == FEATURE_ATTRIBUTE_QNAMES)
	{
		_attributeQNames = state;
	}
	else throw Korvo::XML::SAXNotRecognizedException(featureId);
}


bool FastInfosetParser::getFeature(const XMLString& featureId) const
{
	if (featureId == XMLReader::FEATURE_NAMESPACES) return true;
	if (featureId == XMLReader::FEATURE_NAMESPACE_PREFIXES) return _namespacePrefixes;
	if (featureId == FEATURE_ATTRIBUTE_QNAMES) return _attributeQNames;
	throw Korvo::XML::SAXNotRecognizedException(featureId);
}


void FastInfosetParser::setProperty(const XMLString& propertyId, const XMLString&)
{
	if (propertyId == XMLReader::PROPERTY_DECLARATION_HANDLER || propertyId == XMLReader::PROPERTY_LEXICAL_HANDLER)
		throw Korvo::XML::SAXNotSupportedException("property does not take a string value: " + propertyId);
	throw Korvo::XML::SAXNotRecognizedException(propertyId);
}


void FastInfosetParser::setProperty(const XMLString& propertyId, void* value)
{
	if (propertyId == XMLReader::PROPERTY_DECLARATION_HANDLER)
		_pDeclHandler = static_cast<Korvo::XML::DeclHandler*>(value);
	else if (propertyId == XMLReader::PROPERTY_LEXICAL_HANDLER)
		_pLexicalHandler = static_cast<Korvo::XML::LexicalHandler*>(value);
	else
		throw Korvo::XML::SAXNotRecognizedException(propertyId);
}


void* FastInfosetParser::getProperty(const XMLString& propertyId) const
{
	if (propertyId == XMLReader::PROPERTY_DECLARATION_HANDLER) return _pDeclHandler;
	if (propertyId == XMLReader::PROPERTY_LEXICAL_HANDLER) return _pLexicalHandler;
	throw Korvo::XML::SAXNotRecognizedException(propertyId);
}


//
// Entry points
//


void FastInfosetParser::parse(Korvo::XML::InputSource* pSource)
{
	poco_check_ptr (pSource);

	if (pSource->getByteStream())
	{
		BitStreamReader reader(*pSource->getByteStream());
		parseDocument(reader);
	}
	else if (pSource->getCharacterStream())
	{
		BitStreamReader reader(*pSource->getCharacterStream());
		parseDocument(reader);
	}
	else parse(pSource->getSystemId());
}


void FastInfosetParser::parse(const XMLString& systemId)
{
	Korvo::XML::EntityResolverImpl resolver;
	Korvo::XML::InputSource* pSource = nullptr;
	try
	{
		pSource = resolver.resolveEntity(nullptr, systemId);
	}
	catch (const Korvo::Exception&)
	{
		// The toolkit's resolver throws, rather than return no source, for
		// an identifier it cannot open.
	}
	if (!pSource) throw FISParseException("Cannot resolve system identifier", systemId);
	try
	{
		parse(pSource);
	}
	catch (...)
	{
		resolver.releaseInputSource(pSource);
		throw;
	}
	resolver.releaseInputSource(pSource);
}


void FastInfosetParser::parseMemoryNP(const char* xml, std::size_t size)
{
	if (size <= MAX_MEMORY_BLOCK)
	{
		BitStreamReader reader(xml, static_cast<unsigned int>(size));
		parseDocument(reader);
	}
	else
	{
		Korvo::MemoryInputStream istr(xml, size);
		BitStreamReader reader(istr);
		parseDocument(reader);
	}
}


void FastInfosetParser::parseDocument(BitStreamReader& aReader)
{
	_openElements.clear();
	_unindexedStrings.clear();
	// The last document's records hold only if its tables ended as they
	// stand now: nothing was added to them since.
	bool usable = _repeatsUsable && !_repeats.empty();
	_repeatsUsable = false;
	_repeatable = false;
	_repeating = false;
	_recording = false;
	_repeatCursor = 0;
	_growthPending = false;
	if (usable)
	{
		unsigned sizes[REPEAT_TABLES];
		tableSizes(sizes);
		usable = std::equal(sizes, sizes + REPEAT_TABLES, _repeatEndSizes);
	}
	if (!usable) clearRepeats();
	Decoder::documentPreHeader(aReader, _literalBuffer);
	if (_pDocumentHandler) _pDocumentHandler->setWriteXMLDeclaration(!_literalBuffer.empty());
	// The flags that follow tell whether the header brings tables of its own.
	unsigned char flags = 0;
	const bool hasInitialVocabulary = !aReader.canRead(7) || !aReader.peek(flags, 7) || (flags & 0x20) != 0;
	_externalVocabularies.beginDocument();
	// The tables of a vocabulary just made need no emptying, unless
	// something was put in them since.
	const bool asNew = _vocabularyAsNew && tablesAsNew();
	_vocabularyAsNew = false;
	Decoder::OpenHeaderParts parts;
	try
	{
		parts = Decoder::documentHeader(aReader, _vocabulary, _pDocumentHandler, &_externalVocabularies, !asNew);
	}
	catch (...)
	{
		_externalVocabularies.endHeader();
		findTables();
		_elementNames.clear();
		_attributeNames.clear();
		throw;
	}
	_externalVocabularies.endHeader();
	keepSameNames();
	forgetTables();
	beginRepeats(hasInitialVocabulary);
	// The tables have been rebuilt: no list may trust the strings it copied
	// from, unless the document grows them back over the same strings.
	if (!_repeating) forgetSources();
	if (_pDocumentHandler) _pDocumentHandler->setDocumentVocabulary(_vocabulary);
	try
	{
		parseDocumentChildren(aReader, parts);
		if (_pContentHandler) _pContentHandler->startDocument();
		parseElementChildren(aReader);
		if (_pContentHandler) _pContentHandler->endDocument();
	}
	catch (...)
	{
		// A document that broke off leaves its tables as they were read.
		growPending();
		throw;
	}
	endRepeats();
}


void FastInfosetParser::keepSameNames()
{
	// Names resolved by index point at table entries. Where the document
	// starts from the external vocabulary the last one read, below its
	// sizes those are the very entries, so the names stay resolved.
	unsigned elementNames = 0;
	unsigned attributeNames = 0;
	if (!_namesKeepable || _namesPrefixed != _namespacePrefixes || !_externalVocabularies.sameNames(elementNames, attributeNames))
	{
		elementNames = 0;
		attributeNames = 0;
	}
	if (_elementNames.size() > elementNames) _elementNames.resize(elementNames);
	if (_attributeNames.size() > attributeNames) _attributeNames.resize(attributeNames);
	_namesKeepable = true;
	_namesPrefixed = _namespacePrefixes;
}


//
// Repeated literal names and declarations
//


namespace
{
	const unsigned RESET_SIZES[] = {2, 2, 1, 1, 1};
		// The tables of a document without tables of its own: the built-in
		// prefix and namespace name, and the placeholders.

	template <class T>
	void growTo(Vocabulary<T>& table, unsigned from, unsigned to)
		/// Appends the table's spare entries, which hold what it held before,
		/// from size from to size to, as the table's own operation would
		/// have added them.
	{
		const std::type_info* pType = &typeid(table);
		bool existed;
		if (pType == &typeid(MapVocabulary<T>) || pType == &typeid(HashVocabulary<T>))
		{
			IndexedVocabulary<T>& indexed = static_cast<IndexedVocabulary<T>&>(table);
			for (unsigned size = from; size < to; ++size) indexed.append(indexed.spare());
		}
		else if (pType == &typeid(VectorVocabulary<T>))
		{
			VectorVocabulary<T>& vector = static_cast<VectorVocabulary<T>&>(table);
			for (unsigned size = from; size < to; ++size) vector.VectorVocabulary<T>::index(vector.spare(), existed);
		}
		else
		{
			for (unsigned size = from; size < to; ++size) table.index(table.spare(), existed);
		}
	}

	template <class T>
	bool isIndexed(const Vocabulary<T>& table)
	{
		const std::type_info* pType = &typeid(table);
		return pType == &typeid(MapVocabulary<T>) || pType == &typeid(HashVocabulary<T>);
	}

	template <class T>
	bool isVector(const Vocabulary<T>& table)
	{
		return &typeid(table) == &typeid(VectorVocabulary<T>);
	}

	template <template <class> class V>
	struct RepeatTables
		/// The five tables of the repeat records, all of kind V: sizes read
		/// and tables grown without a virtual call, and a table grown in one
		/// step where its spare entries are all there.
	{
		static void sizes(Vocabulary<std::string>* const* pTables, Vocabulary<QualifiedNameEntry>* const* pNameTables, unsigned sizes[])
		{
			sizes[0] = sizeOf(*pTables[DocumentVocabulary::PREFIX]);
			sizes[1] = sizeOf(*pTables[DocumentVocabulary::NAMESPACE_NAME]);
			sizes[2] = sizeOf(*pTables[DocumentVocabulary::LOCAL_NAME]);
			sizes[3] = sizeOf(*pNameTables[1]);
			sizes[4] = sizeOf(*pNameTables[0]);
		}

		static bool at(Vocabulary<std::string>* const* pTables, Vocabulary<QualifiedNameEntry>* const* pNameTables, const unsigned sizes[])
			/// Whether the tables have the given sizes.
		{
			return sizeOf(*pTables[DocumentVocabulary::LOCAL_NAME]) == sizes[2] && sizeOf(*pNameTables[1]) == sizes[3]
				&& sizeOf(*pNameTables[0]) == sizes[4] && sizeOf(*pTables[DocumentVocabulary::PREFIX]) == sizes[0]
				&& sizeOf(*pTables[DocumentVocabulary::NAMESPACE_NAME]) == sizes[1];
		}

		template <class T>
		static unsigned sizeOf(const Vocabulary<T>& table)
		{
			return static_cast<const V<T>&>(table).V<T>::size();
		}

		template <class T>
		static void grow(Vocabulary<T>& table, unsigned from, unsigned to)
		{
			if (!static_cast<V<T>&>(table).appendSpares(to - from)) growTo(table, from, to);
		}
	};
}


namespace
{
	template <template <class> class V>
	inline void growAs(Vocabulary<std::string>* const* pTables, Vocabulary<QualifiedNameEntry>* const* pNameTables, unsigned grown, const unsigned* from, const unsigned* to)
	{
		// Mostly a local name and an element or attribute name.
		if (grown & 4) RepeatTables<V>::grow(*pTables[DocumentVocabulary::LOCAL_NAME], from[2], to[2]);
		if (grown & 8) RepeatTables<V>::grow(*pNameTables[1], from[3], to[3]);
		if (grown & 16) RepeatTables<V>::grow(*pNameTables[0], from[4], to[4]);
		if (grown & 3)
		{
			if (grown & 1) RepeatTables<V>::grow(*pTables[DocumentVocabulary::PREFIX], from[0], to[0]);
			if (grown & 2) RepeatTables<V>::grow(*pTables[DocumentVocabulary::NAMESPACE_NAME], from[1], to[1]);
		}
	}
}


bool FastInfosetParser::tablesAsNew() const
{
	for (unsigned id = DocumentVocabulary::PREFIX; id <= DocumentVocabulary::CHARACTER_CONTENT_CHUNK; ++id)
	{
		if (_pTables[id]->size() != (id <= DocumentVocabulary::NAMESPACE_NAME ? 2u : 1u)) return false;
	}
	return _pNameTables[0]->size() == 1 && _pNameTables[1]->size() == 1;
}


inline void FastInfosetParser::tableSizes(unsigned sizes[REPEAT_TABLES]) const
{
	if (_repeatStore == REPEAT_INDEXED)
		RepeatTables<IndexedVocabulary>::sizes(_pTables, _pNameTables, sizes);
	else if (_repeatStore == REPEAT_VECTOR)
		RepeatTables<VectorVocabulary>::sizes(_pTables, _pNameTables, sizes);
	else
	{
		sizes[0] = _pTables[DocumentVocabulary::PREFIX]->size();
		sizes[1] = _pTables[DocumentVocabulary::NAMESPACE_NAME]->size();
		sizes[2] = _pTables[DocumentVocabulary::LOCAL_NAME]->size();
		sizes[3] = _pNameTables[1]->size();
		sizes[4] = _pNameTables[0]->size();
	}
}


void FastInfosetParser::clearRepeats()
{
	_repeats.clear();
	_repeatOctets.clear();
	_repeatDeclarations.clear();
}


void FastInfosetParser::beginRepeats(bool hasInitialVocabulary)
{
	// Only a document that starts from the built-in tables, as the one that
	// made the records did, in the same tables, may repeat them.
	Vocabulary<std::string>& prefixes = *_pTables[DocumentVocabulary::PREFIX];
	Vocabulary<std::string>& namespaceNames = *_pTables[DocumentVocabulary::NAMESPACE_NAME];
	Vocabulary<std::string>& localNames = *_pTables[DocumentVocabulary::LOCAL_NAME];
	if (isIndexed(prefixes) && isIndexed(namespaceNames) && isIndexed(localNames) && isIndexed(*_pNameTables[0]) && isIndexed(*_pNameTables[1]))
		_repeatStore = REPEAT_INDEXED;
	else if (isVector(prefixes) && isVector(namespaceNames) && isVector(localNames) && isVector(*_pNameTables[0]) && isVector(*_pNameTables[1]))
		_repeatStore = REPEAT_VECTOR;
	else
		_repeatStore = REPEAT_ANY;
	unsigned sizes[REPEAT_TABLES];
	tableSizes(sizes);
	if (hasInitialVocabulary || !std::equal(sizes, sizes + REPEAT_TABLES, RESET_SIZES))
	{
		clearRepeats();
		return;
	}
	const void* tables[REPEAT_TABLES] = {_pTables[DocumentVocabulary::PREFIX], _pTables[DocumentVocabulary::NAMESPACE_NAME],
		_pTables[DocumentVocabulary::LOCAL_NAME], _pNameTables[1], _pNameTables[0]};
	if (!std::equal(tables, tables + REPEAT_TABLES, _pRepeatTables) || _repeatQNames != _namespacePrefixes)
	{
		clearRepeats();
		std::copy(tables, tables + REPEAT_TABLES, _pRepeatTables);
		_repeatQNames = _namespacePrefixes;
	}
	_repeating = !_repeats.empty();
	_recording = true;
	_repeatable = true;
	// A document handler holds the vocabulary and may look at its tables
	// at any event.
	_deferGrowth = _pDocumentHandler == nullptr;
}


void FastInfosetParser::endRepeats()
{
	// Records this document did not repeat may name entries that it filled
	// otherwise, past the ones it repeated.
	// A document that broke off leaves none: what it filled is unknown.
	growPending();
	if (_repeating) keepRepeats(_repeatCursor);
	_repeatsUsable = _repeatable;
	if (_repeatsUsable) tableSizes(_repeatEndSizes);
}


void FastInfosetParser::keepRepeats(std::size_t count)
{
	_repeats.resize(count);
	_repeatOctets.resize(_repeats.empty() ? 0 : _repeats.back().offset + _repeats.back().length);
	_repeatDeclarations.resize(_repeats.empty() ? 0 : _repeats.back().firstDeclaration + _repeats.back().declarations);
}


const FastInfosetParser::RepeatRecord* FastInfosetParser::repeated(RepeatKind kind, unsigned char head, const unsigned char* p, const unsigned char* pEnd)
{
	if (!_repeating) return nullptr;
	if (_repeatCursor < _repeats.size())
	{
		const RepeatRecord& record = _repeats[_repeatCursor];
		if (record.kind == kind && record.head == head && static_cast<std::size_t>(pEnd - p) >= record.length
			&& sameOctets(reinterpret_cast<const char*>(p), _repeatOctets.data() + record.offset, record.length))
		{
			// Pending growth leaves the tables where the first record it
			// covers found them; the records chain on from there.
			if (_growthPending) return &record;
			if (_repeatStore == REPEAT_INDEXED)
			{
				if (RepeatTables<IndexedVocabulary>::at(_pTables, _pNameTables, record.sizesBefore)) return &record;
			}
			else if (_repeatStore == REPEAT_VECTOR)
			{
				if (RepeatTables<VectorVocabulary>::at(_pTables, _pNameTables, record.sizesBefore)) return &record;
			}
			else
			{
				unsigned sizes[REPEAT_TABLES];
				tableSizes(sizes);
				if (std::equal(sizes, sizes + REPEAT_TABLES, record.sizesBefore)) return &record;
			}
		}
	}
	stopRepeating();
	return nullptr;
}


void FastInfosetParser::stopRepeating()
{
	// From here on this document makes its own records, and its names may
	// go where the last document's went.
	growPending();
	_repeating = false;
	keepRepeats(_repeatCursor);
	forgetSources();
}


void FastInfosetParser::forgetSources()
{
	for (RecycledAttributes* pList: _madeLists) pList->forgetSources();
}


inline __attribute__((always_inline)) void FastInfosetParser::takeRepeat()
{
	// The tables grow once, to where the last record repeated left them,
	// when something else needs them (see growPending()).
	if (!_growthPending)
	{
		_growthPending = true;
		_pendingFrom = _repeatCursor;
	}
	++_repeatCursor;
	if (!_deferGrowth) growPending();
}


void FastInfosetParser::growPending() const
{
	if (!_growthPending) return;
	_growthPending = false;
	// The records chain: each starts from the sizes the one before left.
	const unsigned* from = _repeats[_pendingFrom].sizesBefore;
	const unsigned* to = _repeats[_repeatCursor - 1].sizesAfter;
	unsigned grown = 0;
	for (unsigned i = 0; i < REPEAT_TABLES; ++i) grown |= to[i] != from[i] ? 1u << i : 0u;
	if (_repeatStore == REPEAT_INDEXED)
		growAs<IndexedVocabulary>(_pTables, _pNameTables, grown, from, to);
	else if (_repeatStore == REPEAT_VECTOR)
		growAs<VectorVocabulary>(_pTables, _pNameTables, grown, from, to);
	else
	{
		if (to[0] != from[0]) growTo(*_pTables[DocumentVocabulary::PREFIX], from[0], to[0]);
		if (to[1] != from[1]) growTo(*_pTables[DocumentVocabulary::NAMESPACE_NAME], from[1], to[1]);
		if (to[2] != from[2]) growTo(*_pTables[DocumentVocabulary::LOCAL_NAME], from[2], to[2]);
		if (to[3] != from[3]) growTo(*_pNameTables[1], from[3], to[3]);
		if (to[4] != from[4]) growTo(*_pNameTables[0], from[4], to[4]);
	}
}


FastInfosetParser::RepeatRecord* FastInfosetParser::recordRepeat(RepeatKind kind, unsigned char head, const unsigned char* p, const unsigned char* pEnd, const unsigned sizesBefore[REPEAT_TABLES])
{
	if (!_recording || _repeating) return nullptr;
	// Anything else that added to the tables since the last record breaks the chain.
	const unsigned* pLast = _repeats.empty() ? RESET_SIZES : _repeats.back().sizesAfter;
	RepeatRecord record;
	tableSizes(record.sizesAfter);
	bool full = false;
	for (unsigned size: record.sizesAfter) full = full || size > Encoder::MAXINT20;
	if (full || !std::equal(sizesBefore, sizesBefore + REPEAT_TABLES, pLast))
	{
		_recording = false;
		return nullptr;
	}
	record.kind = kind;
	record.head = head;
	record.offset = _repeatOctets.size();
	record.length = static_cast<std::size_t>(pEnd - p);
	std::copy(sizesBefore, sizesBefore + REPEAT_TABLES, record.sizesBefore);
	record.nameIndex = 0;
	record.firstDeclaration = _repeatDeclarations.size();
	record.declarations = 0;
	_repeatOctets.append(reinterpret_cast<const char*>(p), record.length);
	_repeats.push_back(record);
	return &_repeats.back();
}


void FastInfosetParser::recordName(RepeatKind kind, unsigned char head, const unsigned char* p, const unsigned char* pEnd, const unsigned sizesBefore[REPEAT_TABLES], const ResolvedQualName& name, unsigned nameIndex)
{
	// A name that no table took is not repeated: its strings go with the document.
	if (nameIndex == 0)
	{
		_recording = false;
		return;
	}
	RepeatRecord* pRecord = recordRepeat(kind, head, p, pEnd, sizesBefore);
	if (!pRecord) return;
	pRecord->name = name;
	pRecord->nameIndex = nameIndex;
}


inline __attribute__((always_inline)) void FastInfosetParser::rememberRepeatedName(const RepeatRecord& record, bool isElement)
{
	std::vector<ResolvedQualName>& names = isElement ? _elementNames : _attributeNames;
	const unsigned index = record.nameIndex;
	if (index == names.size())
		names.push_back(record.name);
	else
	{
		if (index > names.size()) names.resize(index + 1);
		names[index] = record.name;
	}
}


//
// Document and element structure
//


void FastInfosetParser::parseDocumentChildren(BitStreamReader& aReader, const Decoder::OpenHeaderParts& parts)
{
	if (parts.hasNotations)
	{
		const char* pMessage = "Unexpected end of stream while parsing notation";
		unsigned char id = readBits(aReader, 6, pMessage);
		while (id == NOTATION)
		{
			parseNotation(aReader);
			id = readBits(aReader, 6, pMessage);
		}
		poco_assert (id == 60);
		aReader.skip(2);
	}
	if (parts.hasUnparsedEntities)
	{
		const char* pMessage = "Unexpected end of stream while parsing unparsed entity";
		unsigned char id = readBits(aReader, 7, pMessage);
		while (id == UNPARSED_ENTITY)
		{
			parseUnparsedEntity(aReader);
			id = readBits(aReader, 7, pMessage);
		}
		poco_assert (id == 120);
		aReader.skip(1);
	}
	if (parts.hasCharacterEncodingScheme)
	{
		skipBits(aReader, 1, "Unexpected end of stream while parsing character encoding scheme");
		Decoder::nonEmptyOctetString(aReader, _literalBuffer);
	}
	if (parts.standalone)
	{
		// Seven padding bits, then the flag.
		readBits(aReader, 8, "Unexpected end of stream while parsing standalone");
	}
	if (parts.hasVersion)
	{
		unsigned type = 0;
		parseNonIdentifyingStringOrIndexXML(aReader, DocumentVocabulary::OTHER_STRING, type);
	}
}


void FastInfosetParser::parseElementChildren(BitStreamReader& aReader)
{
	// Elements are opened by parseElement() and closed here, so that the
	// walk needs no recursion however deep the document is.
	const std::size_t depth = _openElements.size();
	for (;;)
	{
		if (aReader.bitPos() == 0) readBufferedChildren(aReader, depth);
		unsigned char bits = 0;
		if (!aReader.peek(bits, 4)) throw FISParseException("Unexpected end of stream while parsing element children");
		if (bits != TERMINATOR)
			parseElementChild(aReader);
		else if (_openElements.size() > depth)
			parseElementEnd(aReader);
		else
			return;
	}
}


//
// Children in their usual forms, read in place
//
// Most children of a document are elements named by index, their ends, and
// character chunks given by index or as UTF-8 literals, all in their short
// integer and length forms. Those are decoded here straight from the
// buffered octets, and text that is not added to a table is handed to the
// handler where it lies. Any other form, or a child that is not whole in
// the buffer, is left to the general path above, which reads it from its
// first octet: nothing here consumes a child it cannot finish, so faults
// are reported there, as always.
//


namespace
{
	const std::size_t WINDOW = 64;
		// Octets asked for before each child: enough for its head.

	const unsigned int LARGEST_INDEX = Encoder::MAXINT20;

	inline bool indexFromSecondBit(const unsigned char*& p, const unsigned char* pEnd, unsigned& index)
		/// The integer that starts at the second bit of *p, in its one-,
		/// two- and three-octet forms (including 0, all ones).
	{
		const unsigned x = *p & 0x7F;
		if (x < 64 || x == 127)
		{
			index = x == 127 ? 0 : x + 1;
			p += 1;
			return true;
		}
		if (x < 96)
		{
			if (pEnd - p < 2) return false;
			index = ((x & 0x1F) << 8 | p[1]) + 65;
			p += 2;
			return true;
		}
		if (x >= 112 || pEnd - p < 3) return false;
		index = ((x & 0x0F) << 16 | p[1] << 8 | p[2]) + 8257;
		p += 3;
		return index <= LARGEST_INDEX;
	}

	template <int BITS>
	inline bool indexInOctet(const unsigned char*& p, const unsigned char* pEnd, unsigned& index)
		/// The integer whose form starts in the last BITS bits of *p (6 from
		/// the third bit, 5 from the fourth), in its one-, two- and
		/// three-octet forms: '0' and the value less one, or '100' and '101'
		/// with one or two octets more.
	{
		const unsigned SHORT = 1u << (BITS - 1);
		const unsigned WIDE = 1u << (BITS - 3);
		const unsigned x = *p & ((1u << BITS) - 1);
		if (x < SHORT)
		{
			index = x + 1;
			p += 1;
			return true;
		}
		if (x >= SHORT + 2*WIDE || pEnd - p < 2 + (x >= SHORT + WIDE)) return false;
		if (x < SHORT + WIDE)
		{
			index = ((x & (WIDE - 1)) << 8 | p[1]) + SHORT + 1;
			p += 2;
		}
		else
		{
			index = ((x & (WIDE - 1)) << 16 | p[1] << 8 | p[2]) + SHORT + 1 + (WIDE << 8);
			p += 3;
		}
		return true;
	}

	inline bool indexFromThirdBit(const unsigned char*& p, const unsigned char* pEnd, unsigned& index)
	{
		return indexInOctet<6>(p, pEnd, index);
	}

	inline bool indexFromFourthBit(const unsigned char*& p, const unsigned char* pEnd, unsigned& index)
	{
		return indexInOctet<5>(p, pEnd, index);
	}

	template <int BITS>
	inline bool lengthInOctet(const unsigned char*& p, const unsigned char* pEnd, std::size_t& length)
		/// The octet-string length whose form starts in the last BITS bits of
		/// *p (7 from the second bit, 4 from the fifth, 2 from the seventh):
		/// the length less one, or a prefix and one octet or four more. p
		/// then points at the octets, which must all lie before pEnd.
	{
		const unsigned SHORT = 1u << (BITS - 1);
		const unsigned x = *p & ((1u << BITS) - 1);
		if (x < SHORT)
		{
			length = x + 1;
			p += 1;
		}
		else if (x == SHORT && pEnd - p >= 2)
		{
			length = p[1] + SHORT + 1;
			p += 2;
		}
		else if (x > SHORT && pEnd - p >= 5)
		{
			length = (std::size_t(p[1]) << 24 | std::size_t(p[2]) << 16 | std::size_t(p[3]) << 8 | p[4]) + SHORT + 1 + 256;
			p += 5;
		}
		else return false;
		return static_cast<std::size_t>(pEnd - p) >= length;
	}
}


void FastInfosetParser::readBufferedChildren(BitStreamReader& aReader, std::size_t depth)
{
	for (;;)
	{
		std::size_t available = 0;
		const unsigned char* const pStart = aReader.octets(WINDOW, available);
		const unsigned char* const pEnd = pStart + available;
		// Children are read while a whole head fits, or up to the end of the data.
		const unsigned char* const pLast = available <= WINDOW ? pEnd : pEnd - WINDOW;
		const unsigned char* p = pStart;
		bool more = true;
		bool resumed = false;
		while (more && p < pLast)
		{
			const unsigned char* pChild = p;
			const unsigned char selector = *p;
			if (selector < 0x80)
			{
				const BufferedRead read = readBufferedElement(aReader, pStart, p, pEnd);
				if (read == BUFFERED_RESUMED)
				{
					// The general path has read the rest of the element from
					// the reader, which is where it left it.
					resumed = true;
					break;
				}
				more = read == BUFFERED_DONE;
			}
			else if (selector < 0xC0)
			{
				more = readBufferedCharacters(p, pEnd);
			}
			else if (selector == COMMENT)
			{
				more = readBufferedComment(p, pEnd);
			}
			else if (selector >= 0xF0 && _openElements.size() > depth)
			{
				// An end, and in the same octet either padding or the end of the
				// parent, unless that is the end of the children read here.
				const bool parentEnds = (selector & TERMINATOR) == TERMINATOR;
				more = !parentEnds || _openElements.size() > depth + 1;
				if (more)
				{
					endElement();
					if (parentEnds) endElement();
					p += 1;
				}
			}
			else more = false;
			if (!more) p = pChild;
		}
		if (resumed) return;
		aReader.skipOctets(static_cast<std::size_t>(p - pStart));
		if (!more || available < WINDOW) return;
	}
}


FastInfosetParser::BufferedRead FastInfosetParser::readBufferedElement(BitStreamReader& aReader, const unsigned char* pStart, const unsigned char*& p, const unsigned char* pEnd)
{
	const bool hasAttributes = (*p & 0x40) != 0;
	_prefixMappings.clear();
	const bool declares = (*p & 0x3F) == NAMESPACE_ATTRIBUTES;
	if (declares)
	{
		// Namespace declarations (111000), whole in the window or all left
		// to the general path; the name follows in the octet after their end.
		if (!declarationsInPlace(p + 1, pEnd)) return BUFFERED_NONE;
		++p;
		readBufferedDeclarations(p, pEnd);
	}

	// The name from the third bit: an index, or 1111, the presence bits of
	// prefix and namespace name, and the identifying strings.
	const unsigned char* const pName = p;
	ResolvedQualName name;
	unsigned nameIndex = 0;
	bool named = false;
	if ((*p & 0x3C) == 0x3C)
	{
		named = readLiteralElementName(p, pEnd, name, nameIndex);
	}
	else if (indexFromThirdBit(p, pEnd, nameIndex))
	{
		const ResolvedQualName* pKnown = knownName(nameIndex, true);
		named = pKnown != nullptr;
		if (named) name = *pKnown;
	}
	if (!named)
	{
		if (!declares) return BUFFERED_NONE;
		// The declarations are made: the general path goes on from the name.
		aReader.skipOctets(static_cast<std::size_t>(pName - pStart));
		aReader.skip(2);
		parseElementFromName(aReader, hasAttributes);
		return BUFFERED_RESUMED;
	}

	const AttributesImpl* pAttributes = &_noAttributes;
	bool endsAtOnce = false;
	if (hasAttributes)
	{
		RecycledAttributes& list = attributeList(nameIndex);
		list.restart();
		// Each attribute is read whole before its name and value enter their
		// tables; from one that cannot be read here the general path goes on.
		for (;;)
		{
			const unsigned char* const pAttribute = p;
			BufferedAttribute attribute;
			if (p == pEnd || (!(*p & 0x80) && !readBufferedAttribute(p, pEnd, attribute)))
			{
				aReader.skipOctets(static_cast<std::size_t>(pAttribute - pStart));
				finishElement(aReader, name, &list);
				return BUFFERED_RESUMED;
			}
			if (*pAttribute & 0x80) break;
			ResolvedQualName attributeName;
			if (attribute.pName)
				attributeName = *attribute.pName;
			else
				addAttributeName(attribute, pAttribute, attributeName);
			const std::string* pPrefix = _attributeQNames ? attributeName.pPrefix : nullptr;
			if (attribute.pIndexed)
				list.add(attributeName.pUri, attributeName.pLocalName, *attribute.pIndexed, pPrefix);
			else if (attribute.addToTable)
				list.add(attributeName.pUri, attributeName.pLocalName, addValue(DocumentVocabulary::ATTRIBUTE_VALUE, attribute.pText, attribute.length), pPrefix);
			else
				list.add(attributeName.pUri, attributeName.pLocalName, attribute.pText, attribute.length, pPrefix);
		}
		// The list ends with 1111; the next four bits end the element at
		// once or are padding before its first child.
		endsAtOnce = (*p & TERMINATOR) == TERMINATOR;
		p += 1;
		list.finish();
		pAttributes = &list.attributes();
	}

	if (_pContentHandler) _pContentHandler->startElement(*name.pUri, *name.pLocalName, qualifiedName(name), *pAttributes);
	_openElements.push_back(name);
	if (endsAtOnce) endElement();
	return BUFFERED_DONE;
}


void FastInfosetParser::readBufferedDeclarations(const unsigned char*& p, const unsigned char* pEnd)
{
	// The declarations, which declarationsInPlace() checked, and the octet that ends them.
	const unsigned char* const pDeclarations = p;
	if (const RepeatRecord* pRepeat = _repeating ? repeated(REPEAT_DECLARATIONS, 0, p, pEnd) : nullptr)
	{
		takeRepeat();
		for (std::size_t i = 0; i < pRepeat->declarations; ++i)
		{
			const std::pair<const std::string*, const std::string*>& declaration = _repeatDeclarations[pRepeat->firstDeclaration + i];
			_prefixMappings.push_back(declaration.first);
			if (_pContentHandler) _pContentHandler->startPrefixMapping(*declaration.first, *declaration.second);
		}
		p += pRepeat->length;
	}
	else
	{
		unsigned sizes[REPEAT_TABLES];
		if (_recording) tableSizes(sizes);
		const std::size_t firstDeclaration = _repeatDeclarations.size();
		while ((*p >> 4) != TERMINATOR)
		{
			const std::string* pNamespaceName = nullptr;
			readBufferedDeclaration(p, pEnd, pNamespaceName);
			if (_recording) _repeatDeclarations.emplace_back(_prefixMappings.back(), pNamespaceName);
		}
		++p;
		if (_recording)
		{
			RepeatRecord* pRecord = recordRepeat(REPEAT_DECLARATIONS, 0, pDeclarations, p, sizes);
			if (pRecord)
			{
				pRecord->firstDeclaration = firstDeclaration;
				pRecord->declarations = _repeatDeclarations.size() - firstDeclaration;
			}
			else
				_repeatDeclarations.resize(firstDeclaration);
		}
	}
}


inline __attribute__((always_inline)) bool FastInfosetParser::readLiteralElementName(const unsigned char*& p, const unsigned char* pEnd, ResolvedQualName& name, unsigned& nameIndex)
{
	// 1111, the presence bits, then the strings from the next octet.
	BufferedName literal;
	const unsigned char head = *p & 0x03;
	literal.hasPrefix = (head & 0x02) != 0;
	literal.hasNamespace = (head & 0x01) != 0;
	++p;
	if (const RepeatRecord* pRepeat = _repeating ? repeated(REPEAT_ELEMENT_NAME, head, p, pEnd) : nullptr)
	{
		takeRepeat();
		rememberRepeatedName(*pRepeat, true);
		name = pRepeat->name;
		nameIndex = pRepeat->nameIndex;
		p += pRepeat->length;
		return true;
	}
	const unsigned char* const pLiteral = p;
	if (!readBufferedName(p, pEnd, literal)) return false;
	unsigned sizes[REPEAT_TABLES];
	if (_recording) tableSizes(sizes);
	nameIndex = addName(literal, true, name);
	if (_recording) recordName(REPEAT_ELEMENT_NAME, head, pLiteral, p, sizes, name, nameIndex);
	return true;
}


inline __attribute__((always_inline)) void FastInfosetParser::addAttributeName(const BufferedAttribute& attribute, const unsigned char* pAttribute, ResolvedQualName& name)
{
	if (attribute.pRepeat)
	{
		takeRepeat();
		rememberRepeatedName(*attribute.pRepeat, false);
		name = attribute.pRepeat->name;
		return;
	}
	unsigned sizes[REPEAT_TABLES];
	if (_recording) tableSizes(sizes);
	const unsigned index = addName(attribute.literalName, false, name);
	if (_recording) recordName(REPEAT_ATTRIBUTE_NAME, *pAttribute & 0x03, pAttribute + 1, attribute.pNameEnd, sizes, name, index);
}


bool FastInfosetParser::readBufferedAttribute(const unsigned char*& p, const unsigned char* pEnd, BufferedAttribute& attribute)
{
	// '0', then the name from the second bit: an index, or 1111, a padding
	// bit and the presence bits; then the value from the next octet.
	attribute.pName = nullptr;
	if ((*p & 0x78) == 0x78)
	{
		const unsigned char head = *p & 0x03;
		attribute.literalName.hasPrefix = (head & 0x02) != 0;
		attribute.literalName.hasNamespace = (head & 0x01) != 0;
		++p;
		// A repeated name enters its tables only once the whole attribute is read.
		attribute.pRepeat = _repeating ? repeated(REPEAT_ATTRIBUTE_NAME, head, p, pEnd) : nullptr;
		if (attribute.pRepeat)
			p += attribute.pRepeat->length;
		else if (!readBufferedName(p, pEnd, attribute.literalName))
			return false;
		attribute.pNameEnd = p;
	}
	else
	{
		unsigned index = 0;
		if (!indexFromSecondBit(p, pEnd, index)) return false;
		attribute.pName = knownName(index, false);
		if (!attribute.pName) return false;
	}
	return p != pEnd && readBufferedValue(p, pEnd, attribute);
}


bool FastInfosetParser::readBufferedName(const unsigned char*& p, const unsigned char* pEnd, BufferedName& name)
{
	return (!name.hasPrefix || readBufferedString(p, pEnd, DocumentVocabulary::PREFIX, name.prefix))
		&& (!name.hasNamespace || readBufferedString(p, pEnd, DocumentVocabulary::NAMESPACE_NAME, name.namespaceName))
		&& readBufferedString(p, pEnd, DocumentVocabulary::LOCAL_NAME, name.localName);
}


bool FastInfosetParser::readBufferedString(const unsigned char*& p, const unsigned char* pEnd, DocumentVocabulary::ID id, BufferedString& string)
{
	// '1' and an index from the second bit, or '0' and a length from the
	// second bit, in its one- and two-octet forms, then the octets.
	if (p == pEnd) return false;
	string.pText = nullptr;
	if (*p & 0x80)
	{
		if (!indexFromSecondBit(p, pEnd, string.index)) return false;
		return _pTables[id]->lookup(string.index) != nullptr;
	}
	if (!lengthInOctet<7>(p, pEnd, string.length)) return false;
	string.pText = reinterpret_cast<const char*>(p);
	p += string.length;
	return true;
}


bool FastInfosetParser::skipBufferedString(const unsigned char*& p, const unsigned char* pEnd, BufferedString& string)
{
	// As readBufferedString(), without asking the table about an index.
	if (p == pEnd) return false;
	string.pText = nullptr;
	if (*p & 0x80) return indexFromSecondBit(p, pEnd, string.index);
	if (!lengthInOctet<7>(p, pEnd, string.length)) return false;
	string.pText = reinterpret_cast<const char*>(p);
	p += string.length;
	return true;
}


const std::string& FastInfosetParser::addString(DocumentVocabulary::ID id, const BufferedString& string, unsigned& index)
{
	Vocabulary<std::string>& table = *_pTables[id];
	if (!string.pText)
	{
		index = string.index;
		return *table.lookup(index);
	}
	std::string& value = table.spare();
	assignChanged(value, string.pText, string.length);
	return enterLiteral(id, table, value, index);
}


const std::string& FastInfosetParser::enterLiteral(DocumentVocabulary::ID id, Vocabulary<std::string>& table, std::string& value, unsigned& index)
{
	if (isFull(table))
	{
		// Kept apart for as long as the document may still name it.
		index = NOT_INDEXED;
		_unindexedStrings.push_back(value);
		return _unindexedStrings.back();
	}
	return _pStringFilters[id - DocumentVocabulary::PREFIX].addSpare(table, value, index);
}


unsigned FastInfosetParser::addName(const BufferedName& literal, bool isElement, ResolvedQualName& qualName)
{
	// As readLiteralQualifiedName() adds a literal name.
	unsigned prefixIndex = 0;
	unsigned namespaceIndex = 0;
	unsigned localNameIndex = 0;
	qualName.pQName = nullptr;
	qualName.pPrefix = literal.hasPrefix ? &addString(DocumentVocabulary::PREFIX, literal.prefix, prefixIndex) : &EMPTY_STRING;
	qualName.pUri = literal.hasNamespace ? &addString(DocumentVocabulary::NAMESPACE_NAME, literal.namespaceName, namespaceIndex) : &EMPTY_STRING;
	qualName.pLocalName = &addString(DocumentVocabulary::LOCAL_NAME, literal.localName, localNameIndex);
	return enterName(QualifiedNameEntry(prefixIndex, namespaceIndex, localNameIndex), isElement, qualName);
}


unsigned FastInfosetParser::enterName(const QualifiedNameEntry& name, bool isElement, ResolvedQualName& qualName)
{
	// A name with a part that no table holds, or a full name table, is not
	// indexed: the writer adds nothing either.
	Vocabulary<QualifiedNameEntry>& names = *_pNameTables[isElement];
	if (name.prefixId() == NOT_INDEXED || name.namespaceId() == NOT_INDEXED || name.localNameId() == NOT_INDEXED || isFull(names)) return 0;
	unsigned index = _pNameFilters[isElement ? 0 : 1].add(names, name);
	rememberName(index, isElement, qualName);
	if (isElement) qualName.pQName = _elementNames[index].pQName;
	return index;
}


inline void FastInfosetParser::deliverText(const std::string& text)
{
	if (_pContentHandler) _pContentHandler->characters(text.data(), 0, static_cast<int>(text.size()));
}


inline __attribute__((always_inline)) bool FastInfosetParser::readBufferedValue(const unsigned char*& p, const unsigned char* pEnd, BufferedAttribute& attribute)
{
	// Read through a copy of p, which the caller keeps in memory.
	const unsigned char* q = p;
	const unsigned char head = *q;
	attribute.pIndexed = nullptr;
	if (head & 0x80)
	{
		unsigned index = 0;
		if (!indexFromSecondBit(q, pEnd, index)) return false;
		attribute.pIndexed = _pTables[DocumentVocabulary::ATTRIBUTE_VALUE]->lookup(index);
		p = q;
		return attribute.pIndexed != nullptr;
	}
	// '0', add-to-table, 00 for UTF-8, then the length from the fifth bit.
	if (head & 0x30) return false;
	attribute.addToTable = (head & 0x40) != 0;
	std::size_t length = 0;
	if (!lengthInOctet<4>(q, pEnd, length)) return false;
	attribute.length = length;
	attribute.pText = reinterpret_cast<const char*>(q);
	p = q + length;
	return true;
}


inline __attribute__((always_inline)) bool FastInfosetParser::readBufferedCharacters(const unsigned char*& p, const unsigned char* pEnd)
{
	// '10', then '1' and an index from the fourth bit, or '0', add-to-table,
	// 00 for UTF-8 and the length from the seventh bit. Read through a copy
	// of p, which the caller keeps in memory.
	const unsigned char* q = p;
	const unsigned char head = *q;
	if (head & 0x20)
	{
		unsigned index = 0;
		if (!indexFromFourthBit(q, pEnd, index)) return false;
		const std::string* pText = _pTables[DocumentVocabulary::CHARACTER_CONTENT_CHUNK]->lookup(index);
		if (!pText) return false;
		p = q;
		deliverText(*pText);
		return true;
	}
	if (head & 0x0C) return (head & 0x0C) == 0x0C && readBufferedCData(p, pEnd);
	std::size_t length = 0;
	if (!lengthInOctet<2>(q, pEnd, length)) return false;
	const char* pText = reinterpret_cast<const char*>(q);
	p = q + length;
	if (head & 0x10)
		deliverText(addValue(DocumentVocabulary::CHARACTER_CONTENT_CHUNK, pText, length));
	else if (_pContentHandler)
		_pContentHandler->characters(pText, 0, static_cast<int>(length));
	return true;
}


bool FastInfosetParser::readBufferedCData(const unsigned char*& p, const unsigned char* pEnd)
{
	// A CDATA section: '10', '0', add-to-table, 11 for an algorithm and its
	// index less one in the next eight bits, then the length from the
	// seventh bit of the second octet. Its text enters the table before the
	// section begins, as on the general path.
	const unsigned char* q = p;
	const unsigned char head = *q++;
	if (q == pEnd || ((head & 0x03) << 6 | *q >> 2) != EncodingAlgorithm::CDATA_ENCODING - 1) return false;
	std::size_t length = 0;
	if (!lengthInOctet<2>(q, pEnd, length)) return false;
	const char* pText = reinterpret_cast<const char*>(q);
	p = q + length;
	int size = static_cast<int>(length);
	if (head & 0x10)
	{
		const std::string& text = addValue(DocumentVocabulary::CHARACTER_CONTENT_CHUNK, pText, length);
		pText = text.data();
	}
	if (_pLexicalHandler) _pLexicalHandler->startCDATA();
	if (_pContentHandler) _pContentHandler->characters(pText, 0, size);
	if (_pLexicalHandler) _pLexicalHandler->endCDATA();
	return true;
}


inline __attribute__((always_inline)) bool FastInfosetParser::readBufferedComment(const unsigned char*& p, const unsigned char* pEnd)
{
	// 11100010, then from the next octet '1' and an index from the second
	// bit, or '0', add-to-table, 00 for UTF-8 and the length from the fifth
	// bit, as an attribute value.
	const unsigned char* q = p + 1;
	if (q == pEnd) return false;
	const unsigned char head = *q;
	if (head & 0x80)
	{
		unsigned index = 0;
		if (!indexFromSecondBit(q, pEnd, index)) return false;
		const std::string* pText = _pTables[DocumentVocabulary::OTHER_STRING]->lookup(index);
		if (!pText) return false;
		p = q;
		if (_pLexicalHandler) _pLexicalHandler->comment(pText->data(), 0, static_cast<int>(pText->size()));
		return true;
	}
	if (head & 0x30) return false;
	std::size_t length = 0;
	if (!lengthInOctet<4>(q, pEnd, length)) return false;
	const char* pText = reinterpret_cast<const char*>(q);
	p = q + length;
	if (head & 0x40)
	{
		const std::string& text = addValue(DocumentVocabulary::OTHER_STRING, pText, length);
		if (_pLexicalHandler) _pLexicalHandler->comment(text.data(), 0, static_cast<int>(text.size()));
	}
	else if (_pLexicalHandler)
		_pLexicalHandler->comment(pText, 0, static_cast<int>(length));
	return true;
}


void FastInfosetParser::findTables()
{
	_pTables[DocumentVocabulary::RESTRICTED_ALPHABET] = nullptr;
	_pTables[DocumentVocabulary::ENCODING_ALGORITHM] = nullptr;
	for (unsigned id = DocumentVocabulary::PREFIX; id <= DocumentVocabulary::CHARACTER_CONTENT_CHUNK; ++id)
		_pTables[id] = _vocabulary.vocabulary(static_cast<DocumentVocabulary::ID>(id));
	_pNameTables[0] = _vocabulary.attributeVocabulary();
	_pNameTables[1] = _vocabulary.elementVocabulary();
}


void FastInfosetParser::forgetTables()
{
	findTables();
	if (!_pStringFilters)
	{
		_pStringFilters.reset(new NewValueFilter<std::string>[STRING_TABLES]);
		_pNameFilters.reset(new NewValueFilter<QualifiedNameEntry>[2]);
	}
	forgetFilters();
}


void FastInfosetParser::forgetFilters()
{
	if (!_pStringFilters) return;
	for (std::size_t i = 0; i < STRING_TABLES; ++i) _pStringFilters[i].forget();
	_pNameFilters[0].forget();
	_pNameFilters[1].forget();
}


inline __attribute__((always_inline)) unsigned FastInfosetParser::addLiteral(DocumentVocabulary::ID id, Vocabulary<std::string>& table, const std::string& value)
{
	return _pStringFilters[id - DocumentVocabulary::PREFIX].add(table, value);
}


void FastInfosetParser::addToItsTable(DocumentVocabulary::ID id, const std::string& value)
{
	Vocabulary<std::string>& table = *_pTables[id];
	if (!isFull(table)) addLiteral(id, table, value);
}


const std::string& FastInfosetParser::addValue(DocumentVocabulary::ID id, const char* pText, std::size_t length)
{
	// The value is built where the table keeps its next value, so that a
	// new one is stored without a copy. A full table takes no more.
	Vocabulary<std::string>& table = *_pTables[id];
	std::string& value = table.spare();
	assignChanged(value, pText, length);
	if (isFull(table)) return value;
	unsigned index = 0;
	return _pStringFilters[id - DocumentVocabulary::PREFIX].addSpare(table, value, index);
}


inline const FastInfosetParser::ResolvedQualName* FastInfosetParser::knownName(unsigned index, bool isElement)
{
	// The names already resolved; others are resolved here unless the index
	// lies past the table, which the general path reports.
	const std::vector<ResolvedQualName>& names = isElement ? _elementNames : _attributeNames;
	if (index < names.size() && names[index].pLocalName) return &names[index];
	if (!_pNameTables[isElement]->lookup(index)) return nullptr;
	return &resolvedName(index, isElement);
}


inline __attribute__((always_inline)) void FastInfosetParser::endElement()
{
	ResolvedQualName qualName = _openElements.back();
	_openElements.pop_back();
	if (_pContentHandler)
	{
		_pContentHandler->endElement(*qualName.pUri, *qualName.pLocalName, qualifiedName(qualName));
		// The shared list holds the declarations of the element that began last.
		for (const std::string* pPrefix: _prefixMappings) _pContentHandler->endPrefixMapping(*pPrefix);
	}
}


bool FastInfosetParser::parseElementChild(BitStreamReader& aReader)
{
	// The children of the document and of elements share this dispatcher:
	// a document type declaration inside an element, or text beside the
	// root element, is read rather than refused.
	aReader.skipToByteStart();
	unsigned char selector = 0;
	if (!aReader.peek(selector, 8)) throw FISParseException("Unexpected end of stream while parsing element children");

	if (selector < 0x80)
	{
		aReader.skip(1);
		parseElement(aReader);
	}
	else if (selector < 0xC0)
	{
		aReader.skip(2);
		parseCharacterChunk(aReader);
	}
	else if (selector < 0xE0)
	{
		aReader.skip(6);
		switch (selector & 0xFC)
		{
		case 0xC4:
			parseDocumentTypeDeclaration(aReader);
			break;
		case 0xC8:
			parseUnexpandedEntityReference(aReader);
			break;
		default:
			throw FISEncodingException("Invalid child element");
		}
	}
	else if (selector < 0xF0)
	{
		aReader.skip(8);
		switch (selector)
		{
		case 0xE1:
			parseProcessingInstruction(aReader);
			break;
		case 0xE2:
			parseComment(aReader);
			break;
		default:
			throw FISEncodingException("Parse error: unknown element child code");
		}
	}
	else throw FISEncodingException("Parse error: unknown element child code");
	return true;
}


void FastInfosetParser::parseElement(BitStreamReader& aReader)
{
	if (aReader.bitPos() != 1) throw FISEncodingException("Illegal startposition for an Element value");

	const char* pMessage = "Unexpected end of stream while parsing element";
	bool hasAttributes = readBit(aReader, pMessage);
	_prefixMappings.clear();
	unsigned char bits = 0;
	if (!aReader.peek(bits, 6)) throw FISParseException(pMessage);
	if (bits == NAMESPACE_ATTRIBUTES)
	{
		aReader.skip(6);
		// Each declaration is meant to start with 1100; any value but the
		// terminator is taken as one.
		unsigned char ns = readBits(aReader, 4, pMessage);
		while (ns != TERMINATOR)
		{
			aReader.skip(2);
			const std::string* pNamespaceName = nullptr;
			_prefixMappings.push_back(&declareNamespace(aReader, pNamespaceName));
			ns = readBits(aReader, 4, pMessage);
		}
		skipBits(aReader, 6, pMessage);
	}
	parseElementFromName(aReader, hasAttributes);
}


void FastInfosetParser::parseElementFromName(BitStreamReader& aReader, bool hasAttributes)
{
	ResolvedQualName qualName;
	const unsigned nameIndex = readQualifiedName(aReader, qualName, true);
	RecycledAttributes* pList = nullptr;
	if (hasAttributes)
	{
		pList = &attributeList(nameIndex);
		pList->restart();
	}
	finishElement(aReader, qualName, pList);
}


void FastInfosetParser::finishElement(BitStreamReader& aReader, const ResolvedQualName& qualName, RecycledAttributes* pList)
{
	const AttributesImpl* pAttributes = &_noAttributes;
	if (pList)
	{
		while (!readBit(aReader, "Unexpected end of stream while parsing element"))
		{
			ResolvedQualName attributeName;
			const std::string& value = readAttribute(aReader, attributeName);
			pList->add(attributeName.pUri, attributeName.pLocalName, value, _attributeQNames ? attributeName.pPrefix : nullptr);
		}
		pList->finish();
		aReader.skip(3);
		pAttributes = &pList->attributes();
	}

	if (_pContentHandler) _pContentHandler->startElement(*qualName.pUri, *qualName.pLocalName, qualifiedName(qualName), *pAttributes);
	_openElements.push_back(qualName);
}


void FastInfosetParser::parseElementEnd(BitStreamReader& aReader)
{
	unsigned char bits = readBits(aReader, 4, "Unexpected end of stream while parsing element");
	if (bits != TERMINATOR) throw FISEncodingException("Termination flag not found");
	endElement();
}


inline const XMLString& FastInfosetParser::qualifiedName(const ResolvedQualName& qualName)
{
	if (_namespacePrefixes)
	{
		if (qualName.pQName) return *qualName.pQName;
		if (qualName.pPrefix->empty())
		{
			_qualifiedName.clear();
		}
		else
		{
			_qualifiedName.assign(*qualName.pPrefix);
			_qualifiedName += ':';
			_qualifiedName += *qualName.pLocalName;
		}
	}
	return _qualifiedName;
}


void FastInfosetParser::parseNamespaceAttribute(BitStreamReader& aReader, AttributesImpl& attrs)
{
	const std::string* pNamespaceName = nullptr;
	const std::string& prefix = declareNamespace(aReader, pNamespaceName);
	AttributesImpl::Attribute& attr = attrs.addAttribute();
	attr.namespaceURI = *pNamespaceName;
	attr.qname = prefix;
	attr.type.clear();
	attr.specified = true;
}


const std::string& FastInfosetParser::declareNamespace(BitStreamReader& aReader, const std::string*& pNamespaceName)
{
	if (aReader.bitPos() != 6) throw FISEncodingException("Illegal startposition for a NamespaceAttribute value");

	const char* pMessage = "Unexpected end of stream while parsing namespace attribute";
	if (_repeating) stopRepeating();
	bool prefixPresent = readBit(aReader, pMessage);
	bool namespacePresent = readBit(aReader, pMessage);
	const std::string& prefix = parseCondIdentifyingStringOrIndex(aReader, prefixPresent, DocumentVocabulary::PREFIX);
	pNamespaceName = &parseCondIdentifyingStringOrIndex(aReader, namespacePresent, DocumentVocabulary::NAMESPACE_NAME);
	if (_pContentHandler) _pContentHandler->startPrefixMapping(prefix, *pNamespaceName);
	return prefix;
}


bool FastInfosetParser::declarationsInPlace(const unsigned char* p, const unsigned char* pEnd)
{
	// Each declaration: 1100, two padding bits and the presence bits of
	// prefix and namespace name, then the strings; 1111 and padding end the
	// list, and the name begins in the next octet.
	BufferedString string;
	for (;;)
	{
		if (p == pEnd) return false;
		const unsigned char head = *p++;
		if ((head >> 4) == TERMINATOR) return p != pEnd;
		if ((head & 0x02) && !skipBufferedString(p, pEnd, string)) return false;
		if ((head & 0x01) && !skipBufferedString(p, pEnd, string)) return false;
	}
}


void FastInfosetParser::readBufferedDeclaration(const unsigned char*& p, const unsigned char* pEnd, const std::string*& pNamespaceNameOut)
{
	// As declareNamespace(), on a declaration that declarationsInPlace() has checked.
	const unsigned char head = *p++;
	const std::string* pPrefix = &EMPTY_STRING;
	const std::string* pNamespaceName = &EMPTY_STRING;
	BufferedString string;
	unsigned index = 0;
	if (head & 0x02)
	{
		skipBufferedString(p, pEnd, string);
		pPrefix = &placeString(DocumentVocabulary::PREFIX, string, index);
	}
	if (head & 0x01)
	{
		skipBufferedString(p, pEnd, string);
		pNamespaceName = &placeString(DocumentVocabulary::NAMESPACE_NAME, string, index);
	}
	_prefixMappings.push_back(pPrefix);
	pNamespaceNameOut = pNamespaceName;
	if (_pContentHandler) _pContentHandler->startPrefixMapping(*pPrefix, *pNamespaceName);
}


const std::string& FastInfosetParser::placeString(DocumentVocabulary::ID id, const BufferedString& string, unsigned& index)
{
	// An index past the table fails as it does on the general path.
	if (!string.pText) return tableString(id, string.index);
	return addString(id, string, index);
}


RecycledAttributes& FastInfosetParser::attributeList(unsigned elementIndex)
{
	std::unique_ptr<RecycledAttributes>& pList = _attributeLists[elementIndex < _attributeLists.size() ? elementIndex : 0];
	if (!pList)
	{
		// Room first, so that a list once made is always listed.
		if (_madeLists.size() == _madeLists.capacity()) _madeLists.reserve(2*_madeLists.size() + MADE_LISTS_CAPACITY);
		pList.reset(new RecycledAttributes);
		_madeLists.push_back(pList.get());
	}
	return *pList;
}


void FastInfosetParser::parseAttribute(BitStreamReader& aReader, AttributesImpl& attrs)
{
	ResolvedQualName qualName;
	const std::string& value = readAttribute(aReader, qualName);

	// A new entry comes with the type CDATA; the document carries no types.
	AttributesImpl::Attribute& attr = attrs.addAttribute();
	attr.type.clear();
	attr.namespaceURI = *qualName.pUri;
	attr.localName = *qualName.pLocalName;
	attr.value = value;
	attr.specified = true;
}


inline const std::string& FastInfosetParser::readAttribute(BitStreamReader& aReader, ResolvedQualName& qualName)
{
	if (aReader.bitPos() != 1) throw FISEncodingException("Illegal startposition for a Attribute value");

	readQualifiedName(aReader, qualName, false);
	unsigned type = 0;
	return parseNonIdentifyingStringOrIndexXML(aReader, DocumentVocabulary::ATTRIBUTE_VALUE, type);
}


void FastInfosetParser::parseQualifiedNameOrIndex(BitStreamReader& aReader, ResolvedQualName& qualName, bool isElement)
{
	readQualifiedName(aReader, qualName, isElement);
}


inline unsigned FastInfosetParser::readQualifiedName(BitStreamReader& aReader, ResolvedQualName& qualName, bool isElement)
{
	const int startPosition = aReader.bitPos();
	if (startPosition != 1 && startPosition != 2) throw FISEncodingException("Illegal startposition for a parseQualifiedNameOrIndex value");

	// The rest of the octet tells a literal (1111...) from an index; the
	// one-octet index form ('0' and the index less one), by far the most
	// common, is decoded from it directly.
	const int restOfOctet = 8 - startPosition;
	unsigned char bits = 0;
	if (!aReader.peek(bits, restOfOctet)) throwParseException("Unexpected end of stream while parsing qualified name or index");
	if ((bits >> (restOfOctet - 4)) == TERMINATOR) return readLiteralQualifiedName(aReader, qualName, isElement);

	unsigned index = 0;
	if (bits >> (restOfOctet - 1))
	{
		Decoder::integer(aReader, index);
	}
	else
	{
		index = (bits & Utility::lowBitMask[restOfOctet - 1]) + 1u;
		aReader.skip(restOfOctet);
	}
	qualName = resolvedName(index, isElement);
	return index;
}


unsigned FastInfosetParser::readLiteralQualifiedName(BitStreamReader& aReader, ResolvedQualName& qualName, bool isElement)
{
	aReader.skip(aReader.bitPos() == 1 ? 5 : 4);
	const char* pMessage = "Unexpected end of stream while parsing qualified name";
	if (_repeating) stopRepeating();
	bool prefixPresent = readBit(aReader, pMessage);
	bool namespacePresent = readBit(aReader, pMessage);
	unsigned prefixIndex = 0;
	unsigned namespaceIndex = 0;
	unsigned localNameIndex = 0;
	qualName.pQName = nullptr;
	qualName.pPrefix = prefixPresent ? &parseIdentifyingStringOrIndex(aReader, DocumentVocabulary::PREFIX, prefixIndex) : &EMPTY_STRING;
	qualName.pUri = namespacePresent ? &parseIdentifyingStringOrIndex(aReader, DocumentVocabulary::NAMESPACE_NAME, namespaceIndex) : &EMPTY_STRING;
	qualName.pLocalName = &parseIdentifyingStringOrIndex(aReader, DocumentVocabulary::LOCAL_NAME, localNameIndex);
	poco_assert (qualName.pPrefix != 0);
	poco_assert (qualName.pUri != 0);
	poco_assert (qualName.pLocalName != 0);
	return enterName(QualifiedNameEntry(prefixIndex, namespaceIndex, localNameIndex), isElement, qualName);
}


inline const FastInfosetParser::ResolvedQualName& FastInfosetParser::resolvedName(unsigned index, bool isElement)
{
	// Names given by index are resolved once per document; the strings they
	// point at never move while the document is read.
	const std::vector<ResolvedQualName>& names = isElement ? _elementNames : _attributeNames;
	if (index < names.size() && names[index].pLocalName) return names[index];
	return resolveName(index, isElement);
}


const FastInfosetParser::ResolvedQualName& FastInfosetParser::resolveName(unsigned index, bool isElement)
{
	growPending();
	ResolvedQualName qualName;
	resolve(getQualifiedNameEntry(index, isElement), qualName);
	rememberName(index, isElement, qualName);
	return (isElement ? _elementNames : _attributeNames)[index];
}


void FastInfosetParser::rememberName(unsigned index, bool isElement, const ResolvedQualName& qualName)
{
	std::vector<ResolvedQualName>& names = isElement ? _elementNames : _attributeNames;
	// New names mostly come in table order.
	if (index == names.size())
		names.push_back(qualName);
	else
	{
		if (index > names.size()) names.resize(index + 1);
		names[index] = qualName;
	}
	if (isElement && _namespacePrefixes)
	{
		// The qualified name of a prefixed element is made once, not for each start and end.
		ResolvedQualName& name = names[index];
		if (name.pPrefix->empty())
		{
			name.pQName = &EMPTY_STRING;
		}
		else
		{
			if (!_pQualifiedNames) _pQualifiedNames.reset(new std::deque<std::string>);
			if (index >= _pQualifiedNames->size()) _pQualifiedNames->resize(index + 1);
			std::string& qname = (*_pQualifiedNames)[index];
			const std::string& prefix = *name.pPrefix;
			const std::string& localName = *name.pLocalName;
			// Mostly the name this index had in the message before.
			const std::size_t n = prefix.size();
			if (qname.size() != n + 1 + localName.size() || qname[n] != ':'
				|| !sameOctets(qname.data(), prefix.data(), n) || !sameOctets(qname.data() + n + 1, localName.data(), localName.size()))
			{
				qname.reserve(prefix.size() + 1 + localName.size());
				qname.assign(prefix);
				qname += ':';
				qname += localName;
			}
			name.pQName = &qname;
		}
	}
}


const QualifiedNameEntry& FastInfosetParser::getQualifiedNameEntry(unsigned idx, bool isElement)
{
	const Vocabulary<QualifiedNameEntry>& names = *_pNameTables[isElement];
	const QualifiedNameEntry* pEntry = names.lookup(idx);
	return pEntry ? *pEntry : valueOutOfRange(names, idx);
}


void FastInfosetParser::resolve(const QualifiedNameEntry& entry, ResolvedQualName& qualName) const
{
	qualName.pPrefix = &nameString(DocumentVocabulary::PREFIX, entry.prefixId());
	qualName.pUri = &nameString(DocumentVocabulary::NAMESPACE_NAME, entry.namespaceId());
	qualName.pLocalName = &nameString(DocumentVocabulary::LOCAL_NAME, entry.localNameId());
}


const std::string& FastInfosetParser::nameString(DocumentVocabulary::ID id, unsigned index) const
{
	// Name surrogates of an initial vocabulary mark an absent prefix or
	// namespace name with all ones.
	return index == ABSENT_INDEX ? EMPTY_STRING : tableString(id, index);
}


inline const std::string& FastInfosetParser::tableString(DocumentVocabulary::ID id, unsigned index) const
{
	const Vocabulary<std::string>& table = *_pTables[id];
	const std::string* pValue = table.lookup(index);
	return pValue ? *pValue : valueOutOfRange(table, index);
}


//
// Strings, names and character content
//


const std::string& FastInfosetParser::parseIdentifyingStringOrIndex(BitStreamReader& aReader, DocumentVocabulary::ID id, unsigned& index)
{
	if (aReader.bitPos() != 0) throw FISEncodingException("Illegal startposition for an parseIdentifyingStringOrIndex");

	if (!readBit(aReader, "Unexpected end of stream while parsing identifying string or index"))
	{
		// Read where the table keeps its next value, so that a new one is
		// stored without a copy.
		Vocabulary<std::string>& table = *_pTables[id];
		std::string& value = table.spare();
		Decoder::nonEmptyOctetString(aReader, value);
		return enterLiteral(id, table, value, index);
	}
	else
	{
		Decoder::integer(aReader, index);
	}
	return tableString(id, index);
}


const std::string& FastInfosetParser::parseIdentifyingStringOrIndex(BitStreamReader& aReader, DocumentVocabulary::ID id)
{
	unsigned index = 0;
	return parseIdentifyingStringOrIndex(aReader, id, index);
}


const std::string& FastInfosetParser::parseCondIdentifyingStringOrIndex(BitStreamReader& aReader, bool retData, DocumentVocabulary::ID id)
{
	return retData ? parseIdentifyingStringOrIndex(aReader, id) : EMPTY_STRING;
}


Korvo::AutoPtr<Encoding> FastInfosetParser::parseNonIdentifyingStringOrIndex(BitStreamReader& aReader, DocumentVocabulary::ID id)
{
	const int startPosition = aReader.bitPos();
	if (startPosition != 0 && startPosition != 2) throw FISEncodingException("Illegal startposition for a NonIdentifyingStringOrIndex value");

	if (!readBit(aReader, "Unexpected end of stream whil parsing non identifying string or index"))
	{
		bool addToTable = readBit(aReader, "Unexpected end of stream whil parsing encoded character string");
		Korvo::AutoPtr<Encoding> pValue = parseEncodedCharacterString(aReader);
		if (addToTable) addToItsTable(id, pValue->content());
		return pValue;
	}
	unsigned index = 0;
	Decoder::integer(aReader, index);
	if (!_pNullRefEncoding) _pNullRefEncoding = new NullRefEncoding(EMPTY_STRING);
	_pNullRefEncoding->reset(tableString(id, index));
	return _pNullRefEncoding;
}


const std::string& FastInfosetParser::parseNonIdentifyingStringOrIndexXML(BitStreamReader& aReader, DocumentVocabulary::ID id, unsigned& type)
{
	const int startPosition = aReader.bitPos();
	if (startPosition != 0 && startPosition != 2) throw FISEncodingException("Illegal startposition for a NonIdentifyingStringOrIndex value");

	if (!readBit(aReader, "Unexpected end of stream while parsing non identifying string or index"))
	{
		bool addToTable = readBit(aReader, "Unexpected end of stream while parsing encoded character string");
		const std::string& value = parseEncodedCharacterStringXML(aReader, type);
		if (addToTable) addToItsTable(id, value);
		return value;
	}
	unsigned index = 0;
	Decoder::integer(aReader, index);
	return tableString(id, index);
}


Encoding& FastInfosetParser::nullEncoding()
{
	// Made when first needed: the text of most documents never takes it.
	if (!_pNullEncoding) _pNullEncoding = new NullEncoding;
	return *_pNullEncoding;
}


Korvo::AutoPtr<Encoding> FastInfosetParser::parseEncodedCharacterString(BitStreamReader& aReader)
{
	const int startPosition = aReader.bitPos();
	if (startPosition != 2 && startPosition != 4) throw FISEncodingException("Illegal startposition for an encodedCharacterString");

	_octetBuffer.clear();
	_textBuffer.clear();
	unsigned char enc = readBits(aReader, 2, "Unexpected end of stream whil parsing encoded character string");
	std::string& text = nullEncoding().content();
	switch (enc)
	{
	case DocumentVocabulary::UTF8:
		Decoder::nonEmptyOctetString(aReader, text);
		return _pNullEncoding;
	case DocumentVocabulary::UTF16:
		Decoder::nonEmptyOctetString(aReader, _octetBuffer);
		text.clear();
		StringDecoder::decodeUTF16(_octetBuffer, text);
		return _pNullEncoding;
	case DocumentVocabulary::RESTRICTEDALPHABET:
		{
			unsigned index = 0;
			Decoder::integer(aReader, index);
			const RestrictedAlphabet& alphabet = _vocabulary.restrictedAlphabets().alphabet(index);
			Decoder::nonEmptyOctetString(aReader, _octetBuffer);
			text.clear();
			StringDecoder::decodeAlphabet(_octetBuffer, alphabet, text);
			return _pNullEncoding;
		}
	default:
		{
			unsigned index = 0;
			Decoder::integer(aReader, index);
			return decodeAlgorithm(aReader, index);
		}
	}
}


const std::string& FastInfosetParser::parseEncodedCharacterStringXML(BitStreamReader& aReader, unsigned& type)
{
	const int startPosition = aReader.bitPos();
	if (startPosition != 2 && startPosition != 4) throw FISEncodingException("Illegal startposition for an encodedCharacterString");

	type = 0;
	_octetBuffer.clear();
	_textBuffer.clear();
	unsigned char enc = readBits(aReader, 2, "Unexpected end of stream while parsing encoded character string");
	if (enc == DocumentVocabulary::UTF8)
	{
		Decoder::nonEmptyOctetString(aReader, _octetBuffer);
		return _octetBuffer;
	}
	if (enc == DocumentVocabulary::UTF16)
	{
		Decoder::nonEmptyOctetString(aReader, _octetBuffer);
		StringDecoder::decodeUTF16(_octetBuffer, _textBuffer);
		return _textBuffer;
	}
	unsigned index = 0;
	Decoder::integer(aReader, index);
	if (enc == DocumentVocabulary::RESTRICTEDALPHABET)
	{
		const RestrictedAlphabet& alphabet = _vocabulary.restrictedAlphabets().alphabet(index);
		Decoder::nonEmptyOctetString(aReader, _octetBuffer);
		StringDecoder::decodeAlphabet(_octetBuffer, alphabet, _textBuffer);
		return _textBuffer;
	}
	poco_assert (enc == DocumentVocabulary::ENCODINGALGORITHM);
	_pAlgorithmValue = decodeAlgorithm(aReader, index);
	type = _pAlgorithmValue->type();
	return _pAlgorithmValue->content();
}


Korvo::AutoPtr<Encoding> FastInfosetParser::decodeAlgorithm(BitStreamReader& aReader, unsigned index)
{
	const DecodingAlgorithm& decodings = _vocabulary.decodings();
	if (index >= decodings.size()) throw FISException("Invalid decoding defined");
	return decodings.read(static_cast<int>(index), aReader);
}


void FastInfosetParser::parseCharacterChunk(BitStreamReader& aReader)
{
	if (aReader.bitPos() != 2) throw FISEncodingException("Illegal startposition for a CharacterChunk value");

	// Text given by index or as UTF-8, the usual chunks, reaches either kind
	// of handler as characters(): it skips the typed value. Every other
	// form, and data that ends early, takes the general path below.
	unsigned char head = 0;
	if (aReader.peek(head, 4))
	{
		if (head & 0x08)
		{
			aReader.skip(1);
			unsigned index = 0;
			Decoder::integer(aReader, index);
			deliverText(tableString(DocumentVocabulary::CHARACTER_CONTENT_CHUNK, index));
			return;
		}
		if ((head & 0x03) == DocumentVocabulary::UTF8)
		{
			aReader.skip(4);
			_octetBuffer.clear();
			_textBuffer.clear();
			std::string& text = nullEncoding().content();
			Decoder::nonEmptyOctetString(aReader, text);
			if (head & 0x04) addToItsTable(DocumentVocabulary::CHARACTER_CONTENT_CHUNK, text);
			deliverText(text);
			return;
		}
		// A CDATA section (a literal of the built-in algorithm, whose index
		// no application can take) is read into the same reused string
		// instead of a value made for it.
		unsigned headAndAlgorithm = 0;
		if ((head & 0x0B) == 0x03 && aReader.peek(headAndAlgorithm, 12) && (headAndAlgorithm & 0xFF) == EncodingAlgorithm::CDATA_ENCODING - 1)
		{
			aReader.skip(12);
			std::string& text = nullEncoding().content();
			CDataEncoding::decode(aReader, text);
			if (head & 0x04) addToItsTable(DocumentVocabulary::CHARACTER_CONTENT_CHUNK, text);
			if (_pLexicalHandler) _pLexicalHandler->startCDATA();
			deliverText(text);
			if (_pLexicalHandler) _pLexicalHandler->endCDATA();
			return;
		}
	}

	Korvo::AutoPtr<Encoding> pValue = parseNonIdentifyingStringOrIndex(aReader, DocumentVocabulary::CHARACTER_CONTENT_CHUNK);
	deliver(*pValue);
}


void FastInfosetParser::deliver(const Encoding& value)
{
	const bool isCData = _pLexicalHandler && value.type() == EncodingAlgorithm::CDATA_ENCODING;
	if (isCData) _pLexicalHandler->startCDATA();
	if (!_fisContentHandlerKnown)
	{
		_pFISContentHandler = dynamic_cast<FISContentHandler*>(_pContentHandler);
		_fisContentHandlerKnown = true;
	}
	if (_pFISContentHandler)
		value.handle(_pFISContentHandler);
	else if (_pContentHandler)
		value.handle(_pContentHandler);
	if (isCData) _pLexicalHandler->endCDATA();
}


//
// DTD, notations, entities, comments and processing instructions
//


void FastInfosetParser::parseNotation(BitStreamReader& aReader)
{
	if (aReader.bitPos() != 6) throw FISEncodingException("Illegal startposition for a Notation value");

	const char* pMessage = "Unexpected end of stream while parsing notation";
	bool systemPresent = readBit(aReader, pMessage);
	bool publicPresent = readBit(aReader, pMessage);
	const std::string& name = parseIdentifyingStringOrIndex(aReader, DocumentVocabulary::OTHER_NCNAME);
	const std::string& systemId = parseCondIdentifyingStringOrIndex(aReader, systemPresent, DocumentVocabulary::OTHER_URI);
	const std::string& publicId = parseCondIdentifyingStringOrIndex(aReader, publicPresent, DocumentVocabulary::OTHER_URI);
	if (_pDTDHandler) _pDTDHandler->notationDecl(name, publicPresent ? &publicId : 0, systemPresent ? &systemId : 0);
}


void FastInfosetParser::parseUnparsedEntity(BitStreamReader& aReader)
{
	if (aReader.bitPos() != 7) throw FISEncodingException("Illegal startposition for an UnparsedEntity value");

	bool publicPresent = readBit(aReader, "Unexpected end of stream while parsing unparsed entity");
	const std::string& name = parseIdentifyingStringOrIndex(aReader, DocumentVocabulary::OTHER_NCNAME);
	const std::string& systemId = parseIdentifyingStringOrIndex(aReader, DocumentVocabulary::OTHER_URI);
	const std::string& publicId = parseCondIdentifyingStringOrIndex(aReader, publicPresent, DocumentVocabulary::OTHER_URI);
	const std::string& notationName = parseIdentifyingStringOrIndex(aReader, DocumentVocabulary::OTHER_NCNAME);
	if (_pDTDHandler) _pDTDHandler->unparsedEntityDecl(name, publicId.empty() ? 0 : &publicId, systemId, notationName);
}


void FastInfosetParser::parseDocumentTypeDeclaration(BitStreamReader& aReader)
{
	if (aReader.bitPos() != 6) throw FISEncodingException("Illegal startposition for a DocumentTypeDeclaration value");

	const char* pMessage = "Unexpected end of stream while parsing document type declaration";
	bool systemPresent = readBit(aReader, pMessage);
	bool publicPresent = readBit(aReader, pMessage);
	const std::string& systemId = parseCondIdentifyingStringOrIndex(aReader, systemPresent, DocumentVocabulary::OTHER_URI);
	const std::string& publicId = parseCondIdentifyingStringOrIndex(aReader, publicPresent, DocumentVocabulary::OTHER_URI);
	if (_pLexicalHandler) _pLexicalHandler->startDTD(EMPTY_STRING, publicId, systemId);

	unsigned char stat = readBits(aReader, 4, pMessage);
	if (stat == DOCUMENT_TYPE_PROCESSING_INSTRUCTION)
	{
		// Every value but the terminator that follows a processing
		// instruction is taken as the start of another one.
		do
		{
			aReader.skip(4);
			parseProcessingInstruction(aReader);
			stat = readBits(aReader, 4, pMessage);
		}
		while (stat != TERMINATOR);
	}
	poco_assert (stat == 0x0f);

	if (_pLexicalHandler) _pLexicalHandler->endDTD();
}


void FastInfosetParser::parseProcessingInstruction(BitStreamReader& aReader)
{
	const std::string& target = parseIdentifyingStringOrIndex(aReader, DocumentVocabulary::OTHER_NCNAME);
	unsigned type = 0;
	const std::string& data = parseNonIdentifyingStringOrIndexXML(aReader, DocumentVocabulary::OTHER_STRING, type);
	if (_pContentHandler) _pContentHandler->processingInstruction(target, data);
}


void FastInfosetParser::parseComment(BitStreamReader& aReader)
{
	if (aReader.bitPos() != 0) throw FISEncodingException("Illegal startposition for a Comment value");

	unsigned type = 0;
	const std::string& text = parseNonIdentifyingStringOrIndexXML(aReader, DocumentVocabulary::OTHER_STRING, type);
	if (_pLexicalHandler) _pLexicalHandler->comment(text.data(), 0, static_cast<int>(text.size()));
}


void FastInfosetParser::parseUnexpandedEntityReference(BitStreamReader& aReader)
{
	// The notation's message is the one this item has always reported.
	if (aReader.bitPos() != 6) throw FISEncodingException("Illegal startposition for a Notation value");

	const char* pMessage = "Unexpected end of stream while parsing unexpanded entity reference";
	bool systemPresent = readBit(aReader, pMessage);
	bool publicPresent = readBit(aReader, pMessage);
	parseIdentifyingStringOrIndex(aReader, DocumentVocabulary::OTHER_NCNAME);
	parseCondIdentifyingStringOrIndex(aReader, systemPresent, DocumentVocabulary::OTHER_URI);
	parseCondIdentifyingStringOrIndex(aReader, publicPresent, DocumentVocabulary::OTHER_URI);
}


} } // namespace Korvo::FastInfoset
