//
// FastInfosetWriter.cpp
//
// Library: FastInfoset
// Package: Serializer
// Module:  FastInfosetWriter
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include "Korvo/FastInfoset/Encoder.h"
#include "Korvo/FastInfoset/FISException.h"
#include "Korvo/FastInfoset/ShortEncoding.h"
#include "Korvo/FastInfoset/IntEncoding.h"
#include "Korvo/FastInfoset/LongEncoding.h"
#include "Korvo/FastInfoset/BoolEncoding.h"
#include "Korvo/FastInfoset/FloatEncoding.h"
#include "Korvo/FastInfoset/DoubleEncoding.h"
#include "Korvo/FastInfoset/UUIDEncoding.h"
#include "Korvo/FastInfoset/DWordEncoding.h"
#include "Korvo/FastInfoset/HashVocabulary.h"
#include "Korvo/FastInfoset/MapVocabulary.h"
#include "WriterState.h"
#include "VocabularyLimit.h"
#include "StringPacker.h"
#include "Poco/NumberFormatter.h"
#include <algorithm>
#include <cstring>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <typeinfo>


using Korvo::XML::XMLString;
using Korvo::XML::XMLChar;
using Korvo::XML::Attributes;
using Korvo::XML::AttributesImpl;
using Korvo::XML::NamespaceSupport;


namespace Korvo {
namespace FastInfoset {


namespace
{
	// Leading bits of the items, as many bits as each constant's comment shows.
	const int TERMINATOR                = 0xF;  // 1111
	const int CHARACTER_CHUNK           = 0x2;  // 10
	const int NAMESPACE_ATTRIBUTES      = 0x38; // 111000
	const int NAMESPACE_ATTRIBUTE       = 0x33; // 110011
	const int DOCUMENT_TYPE_DECLARATION = 0x31; // 110001
	const int PROCESSING_INSTRUCTION    = 0xE1; // 11100001
	const int COMMENT                   = 0xE2; // 11100010
	const int NOTATION                  = 0x30; // 110000
	const int UNPARSED_ENTITY           = 0x68; // 1101000
	const int END_OF_LIST               = 0xF0; // 1111 0000
	const int UTF8_STRING               = 0x0;  // 00
	const int ALGORITHM_STRING          = 0x3;  // 11

	const XMLString EMPTY;

	inline bool sameName(const XMLString& left, const XMLString& right)
		/// Names compared without a call: they are short.
	{
		return left.size() == right.size() && ValueHash<std::string>::sameOctets(left.data(), right.data(), left.size());
	}

	const XMLString* pointerIfPresent(const XMLString& str)
		/// Null for an absent (empty) identifier, as the item writers expect.
	{
		return str.empty() ? nullptr : &str;
	}

	const DocumentVocabulary::ID STRING_TABLES[] = {
		DocumentVocabulary::PREFIX, DocumentVocabulary::NAMESPACE_NAME, DocumentVocabulary::LOCAL_NAME,
		DocumentVocabulary::OTHER_NCNAME, DocumentVocabulary::OTHER_URI, DocumentVocabulary::ATTRIBUTE_VALUE,
		DocumentVocabulary::OTHER_STRING, DocumentVocabulary::CHARACTER_CONTENT_CHUNK
	};

	bool hasEntries(const Vocabulary<std::string>* pVoc)
	{
		return pVoc && !pVoc->empty();
	}

	void prefixOf(const XMLString& qname, XMLString& prefix)
		/// What comes before the first colon, as Name::split() has it,
		/// without building the local part.
	{
		const std::size_t colon = qname.find(':');
		if (colon == XMLString::npos)
			prefix.clear();
		else
			prefix.assign(qname, 0, colon);
	}

	void localPartOf(const XMLString& qname, XMLString& localName)
	{
		const std::size_t colon = qname.find(':');
		if (colon == XMLString::npos)
			localName.assign(qname);
		else
			localName.assign(qname, colon + 1, XMLString::npos);
	}

	template <class T>
	IndexedVocabulary<T>* indexedTable(Vocabulary<T>* pTable)
		/// The table as one that finds values by itself, or null. The
		/// library's own kinds are told by their type, without a search
		/// of the class tree.
	{
		if (!pTable) return nullptr;
		const std::type_info& type = typeid(*pTable);
		if (type == typeid(HashVocabulary<T>)) return static_cast<HashVocabulary<T>*>(pTable);
		if (type == typeid(MapVocabulary<T>)) return static_cast<MapVocabulary<T>*>(pTable);
		return dynamic_cast<IndexedVocabulary<T>*>(pTable);
	}

	class ListAccess
		/// Any attribute list, through its virtual functions.
	{
	public:
		explicit ListAccess(const Attributes& attributes): _attributes(attributes) {}
		int length() const { return _attributes.getLength(); }
		const XMLString& uri(int i) const { return _attributes.getURI(i); }
		const XMLString& localName(int i) const { return _attributes.getLocalName(i); }
		const XMLString& qname(int i) const { return _attributes.getQName(i); }
		const XMLString& value(int i) const { return _attributes.getValue(i); }

	private:
		const Attributes& _attributes;
	};

	class ImplAccess
		/// The platform's own attribute list, whose entries are read directly.
	{
	public:
		explicit ImplAccess(const AttributesImpl& attributes): _pFirst(&*attributes.begin()), _length(attributes.getLength()) {}
		int length() const { return _length; }
		const XMLString& uri(int i) const { return _pFirst[i].namespaceURI; }
		const XMLString& localName(int i) const { return _pFirst[i].localName; }
		const XMLString& qname(int i) const { return _pFirst[i].qname; }
		const XMLString& value(int i) const { return _pFirst[i].value; }

	private:
		const AttributesImpl::Attribute* _pFirst;
		int _length;
	};

	bool referenceField(int pos, unsigned int idx, unsigned int& field, int& bits)
		/// A reference to idx at pos (0 or 2): the '1' and the index in one
		/// field of one or two octets, as Encoder::indexReference() writes
		/// it; false for the longer forms.
	{
		const int restOfOctet = 7 - pos;
		const unsigned int oneOctet = 1u << (restOfOctet - 1);
		const unsigned int twoOctets = pos == 0 ? 8256 : 1040;
		if (idx >= 1 && idx <= oneOctet)
		{
			field = (1u << restOfOctet) | (idx - 1);
			bits = restOfOctet + 1;
			return true;
		}
		if (idx > oneOctet && idx <= twoOctets)
		{
			field = (3u << (restOfOctet + 7)) | (idx - oneOctet - 1);
			bits = restOfOctet + 9;
			return true;
		}
		return false;
	}

	template <class Vocabulary, class Function>
	void forEachTable(Vocabulary& voc, Function function)
		/// Calls function with each string table, then the element and the attribute name table.
	{
		for (DocumentVocabulary::ID id: STRING_TABLES) function(*voc.vocabulary(id));
		function(*voc.elementVocabulary());
		function(*voc.attributeVocabulary());
	}
}


// The external vocabulary is made only when setExternalVocabulary() or
// useExternalVocabulary() needs it.
FastInfosetWriter::FastInfosetWriter(std::ostream& ostr):
	FastInfosetWriter(ostr, false, DocumentVocabulary::VOC_HASH)
{
}


FastInfosetWriter::FastInfosetWriter(std::ostream& ostr, bool writeXMLDeclaration, DocumentVocabulary::VocabularyImpl impl):
	_writer(ostr, false),
	_writeXMLDeclaration(writeXMLDeclaration),
	_vocabulary(DocumentVocabulary::DONT_INITIALIZE),
	_prefixCounter(0),
	_maxIndexedStringLength(16),
	_pIndexingPolicy(nullptr),
	_shortestLiterals(false),
	_documentStarted(false),
	_pState(nullptr),
	_knownNamesComplete(false),
	_vocabularyFresh(true),
	_vocabularyIsExternal(false),
	_pendingPrefixes(0),
	_prefixesEnded(false)
{
	_pState = WriterState::take();
	try
	{
		takeVocabulary(impl);
	}
	catch (...)
	{
		WriterState::give(_pState);
		throw;
	}
	init();
}


FastInfosetWriter::FastInfosetWriter(std::ostream& ostr, bool writeXMLDeclaration, const DocumentVocabulary& voc):
	_writer(ostr, false),
	_writeXMLDeclaration(writeXMLDeclaration),
	_vocabulary(voc),
	_prefixCounter(0),
	_maxIndexedStringLength(16),
	_pIndexingPolicy(nullptr),
	_shortestLiterals(false),
	_documentStarted(false),
	_pState(nullptr),
	_knownNamesComplete(false),
	_vocabularyFresh(false),
	_vocabularyIsExternal(false),
	_pendingPrefixes(0),
	_prefixesEnded(false)
{
	_pState = WriterState::take();
	init();
}


void FastInfosetWriter::takeVocabulary(DocumentVocabulary::VocabularyImpl impl)
{
	// The thread's last writer of the kind left its vocabulary emptied, its
	// storage grown: it is taken as it is, in place of a new one.
	// Both are as new but for the tables: only these change places.
	if (impl <= DocumentVocabulary::VOC_MAP)
	{
		std::unique_ptr<DocumentVocabulary>& pKept = _pState->vocabularies[impl];
		if (pKept && pKept->vocabulary(DocumentVocabulary::CHARACTER_CONTENT_CHUNK))
		{
			_vocabulary.swapTables(*pKept);
			for (DocumentVocabulary::ID id: REPLAYED_TABLES) startReplay(id);
			return;
		}
	}
	DocumentVocabulary made(impl);
	_vocabulary.swapTables(made);
}


void FastInfosetWriter::keepVocabulary() noexcept
{
	// Emptied, a vocabulary that holds only tables of its kind, the built-in
	// algorithms and no URI is what a new one of its kind would be.
	const DocumentVocabulary::VocabularyImpl impl = _vocabulary.impl();
	if (impl > DocumentVocabulary::VOC_MAP || !_vocabulary.hasOnlyBuiltIns() || !_vocabulary.canBeSpare()) return;
	std::unique_ptr<DocumentVocabulary>& pKept = _pState->vocabularies[impl];
	if (pKept && pKept->vocabulary(DocumentVocabulary::CHARACTER_CONTENT_CHUNK)) return;
	try
	{
		if (!pKept) pKept.reset(new DocumentVocabulary(DocumentVocabulary::DONT_INITIALIZE));
		// The value tables stay as they are: the next writer's replay.
		if (!_vocabulary.emptyTables(false)) return;
		_vocabulary.init();
		_vocabulary.swapTables(*pKept);
	}
	catch (...)
	{
	}
}


void FastInfosetWriter::startReplay(DocumentVocabulary::ID id)
{
	// A table that holds more than its placeholder is the last writer's; it
	// counts as empty until its values are met again in order.
	Vocabulary<std::string>& table = *_vocabulary.vocabulary(id);
	const std::string* pFirst = table.lookup(0);
	if (!pFirst || !pFirst->empty())
	{
		table.truncate(0);
		bool existed;
		table.index(std::string(), existed);
	}
	_replaySize[id] = 1;
	_replayEnd[id] = table.size() > 1 ? table.size() : 0;
}


void FastInfosetWriter::settleTables() const
{
	// Before anyone looks at the tables, those still replayed are cut to
	// what the document put in them.
	for (DocumentVocabulary::ID id: REPLAYED_TABLES)
	{
		if (_replayEnd[id] == 0) continue;
		_vocabulary.vocabulary(id)->truncate(_replaySize[id]);
		_replayEnd[id] = 0;
	}
}


inline __attribute__((always_inline)) unsigned int FastInfosetWriter::replay(DocumentVocabulary::ID id, unsigned int idx)
{
	// idx is where the table holds the value, NOT_FOUND when it does not.
	// Below the document's part of the table the value is there; at its end
	// it is the one the last writer added next, which this document adds
	// at the same index: the table is grown back over it. Anything else
	// ends the replay (NOT_INDEXED: the caller adds it as usual).
	unsigned int& size = _replaySize[id];
	if (idx < size) return idx;
	if (idx == size)
	{
		if (++size == _replayEnd[id]) _replayEnd[id] = 0;
		return idx;
	}
	_vocabulary.vocabulary(id)->truncate(size);
	_replayEnd[id] = 0;
	return NOT_INDEXED;
}


void FastInfosetWriter::init()
{
	std::fill(std::begin(_pIndexedTables), std::end(_pIndexedTables), nullptr);
	std::fill(std::begin(_pIndexedNames), std::end(_pIndexedNames), nullptr);
	_bindingIndices = false;
	_pState->knownNames.renew(_vocabulary);
	// The stacks' storage comes with the state; room for the usual nesting
	// and attribute counts, so that a small message grows nothing.
	_states.swap(_pState->states);
	_prefixMarks.swap(_pState->prefixMarks);
	_ownPrefixes.swap(_pState->ownPrefixes);
	_attributeValues.swap(_pState->attributeValues);
	_attributeLocalNames.swap(_pState->attributeLocalNames);
	_states.reserve(16);
	_prefixMarks.reserve(16);
	_attributeValues.reserve(8);
	_states.push_back(UNINITIALIZED);
}


FastInfosetWriter::~FastInfosetWriter()
{
	// A document that was never ended stays as far as it got: its last
	// octet is not padded out.
	_writer.discardPending();
	_states.clear();
	_prefixMarks.clear();
	_ownPrefixes.clear();
	_attributeValues.clear();
	_states.swap(_pState->states);
	_prefixMarks.swap(_pState->prefixMarks);
	_ownPrefixes.swap(_pState->ownPrefixes);
	_attributeValues.swap(_pState->attributeValues);
	_attributeLocalNames.swap(_pState->attributeLocalNames);
	keepNames();
	if (_vocabularyIsExternal)
		keepExternalCopy();
	else
		keepVocabulary();
	WriterState::give(_pState);
}


void FastInfosetWriter::keepExternalCopy() noexcept
{
	// Back at the external vocabulary's content, the document vocabulary is
	// a copy of it that the next writer may take. Only small ones are kept.
	std::unique_ptr<DocumentVocabulary>& pKept = _pState->externalCopy;
	try
	{
		std::size_t values = 0;
		for (unsigned int size: _externalSizes) values += size;
		if (values > MAX_KEPT_EXTERNAL)
		{
			pKept.reset();
			return;
		}
		std::size_t i = 0;
		forEachTable(_vocabulary, [this, &i](auto& table) { table.truncate(_externalSizes[i++]); });
		_vocabulary.restrictedAlphabets().truncate(_externalSizes[i]);
		if (!pKept) pKept.reset(new DocumentVocabulary(DocumentVocabulary::DONT_INITIALIZE));
		_vocabulary.swap(*pKept);
	}
	catch (...)
	{
		pKept.reset();
	}
}


//
// Configuration
//


void FastInfosetWriter::setMaxIndexedStringLength(int length)
{
	_maxIndexedStringLength = length;
}


void FastInfosetWriter::setIndexingPolicy(StringIndexingPolicy* pPolicy)
{
	_pIndexingPolicy = pPolicy;
}


void FastInfosetWriter::setShortestLiterals(bool flag)
{
	_shortestLiterals = flag;
}


void FastInfosetWriter::setWriteXMLDeclaration(bool val)
{
	_writeXMLDeclaration = val;
}


void FastInfosetWriter::setDocumentVocabulary(const DocumentVocabulary& voc)
{
	// A vector table cannot find a value's index, and the writer looks up every name and string.
	if (voc.impl() == DocumentVocabulary::VOC_VECTOR)
		throw Korvo::InvalidArgumentException("A DocumentVocabulary with VOC_VECTOR implementation cannot be used by FastInfosetWriter");
	settleTables();
	_vocabularyFresh = false;
	keepExternalVocabulary();
	if (&voc != &_vocabulary) _vocabulary = voc;
	forgetNames();
}


void FastInfosetWriter::forgetNames()
{
	_pState->knownNames.reset(_vocabulary);
	findTables();
	// With name tables that hold nothing yet, every name in them will be
	// one the writer put there and remembered.
	_knownNamesComplete = getQNameVocabulary(true).size() <= 1 && getQNameVocabulary(false).size() <= 1;
}


void FastInfosetWriter::findTables()
{
	if (_vocabularyFresh && _vocabulary.impl() != DocumentVocabulary::VOC_VECTOR)
	{
		// A fresh vocabulary's tables are all of its kind, which finds values.
		for (unsigned int id = DocumentVocabulary::PREFIX; id <= DocumentVocabulary::CHARACTER_CONTENT_CHUNK; ++id)
			_pIndexedTables[id] = static_cast<IndexedVocabulary<std::string>*>(_vocabulary.vocabulary(DocumentVocabulary::ID(id)));
		_pIndexedNames[0] = static_cast<IndexedVocabulary<QualifiedNameEntry>*>(_vocabulary.attributeVocabulary());
		_pIndexedNames[1] = static_cast<IndexedVocabulary<QualifiedNameEntry>*>(_vocabulary.elementVocabulary());
		_bindingIndices = true;
		return;
	}
	// Tables of the other kinds, a vector table or one an application made,
	// are asked through their virtual functions.
	for (unsigned int id = DocumentVocabulary::PREFIX; id <= DocumentVocabulary::CHARACTER_CONTENT_CHUNK; ++id)
		_pIndexedTables[id] = indexedTable(_vocabulary.vocabulary(DocumentVocabulary::ID(id)));
	std::fill(std::begin(_indentIndices), std::end(_indentIndices), 0u);
	_pIndexedNames[0] = indexedTable(&getQNameVocabulary(false));
	_pIndexedNames[1] = indexedTable(&getQNameVocabulary(true));
	_bindingIndices = _pIndexedTables[DocumentVocabulary::PREFIX] && _pIndexedTables[DocumentVocabulary::NAMESPACE_NAME];
}


DocumentVocabulary& FastInfosetWriter::getDocumentVocabulary()
{
	settleTables();
	_vocabularyFresh = false;
	// The caller may change the tables.
	std::fill(std::begin(_indentIndices), std::end(_indentIndices), 0u);
	_pState->knownNames.stopReplay();
	return _vocabulary;
}


const DocumentVocabulary& FastInfosetWriter::getDocumentVocabulary() const
{
	settleTables();
	return _vocabulary;
}


void FastInfosetWriter::setExternalVocabulary(const XMLString& uri, const DocumentVocabulary& voc)
{
	if (&voc != _pExternalVocabulary.get()) externalVocabulary() = voc;
	_externalVocabularyURI = uri;
	_vocabularyIsExternal = false;
}


void FastInfosetWriter::useExternalVocabulary(const XMLString& uri, const DocumentVocabulary& voc)
{
	if (uri.empty()) throw Korvo::InvalidArgumentException("An external vocabulary needs a URI");
	if (!voc.vocabulary(DocumentVocabulary::PREFIX)) throw Korvo::InvalidArgumentException("An external vocabulary needs its tables", uri);
	settleTables();
	_vocabularyFresh = false;
	// The thread's last writer may have left a copy of an equal vocabulary,
	// its index built: comparing costs less than copying. The tables the
	// writer had wait in its place until the writer ends.
	const DocumentVocabulary::VocabularyImpl impl = voc.impl() == DocumentVocabulary::VOC_VECTOR ? DocumentVocabulary::VOC_MAP : voc.impl();
	std::unique_ptr<DocumentVocabulary>& pKept = _pState->externalCopy;
	if (pKept && &voc != &_vocabulary && pKept->holdsCopyOf(voc, impl))
		_vocabulary.swap(*pKept);
	else if (voc.impl() == DocumentVocabulary::VOC_VECTOR)
		_vocabulary = DocumentVocabulary(voc, DocumentVocabulary::VOC_MAP);
	else
		_vocabulary = voc;
	_externalVocabularyURI = uri;
	forgetNames();
	// The external vocabulary is the document vocabulary up to these sizes:
	// it is copied out only if something asks for it.
	_externalSizes.clear();
	forEachTable(_vocabulary, [this](const auto& table) { _externalSizes.push_back(table.size()); });
	_externalSizes.push_back(static_cast<unsigned int>(_vocabulary.restrictedAlphabets().alphabets().size()));
	_vocabularyIsExternal = true;
}


void FastInfosetWriter::keepExternalVocabulary()
{
	// The document vocabulary as useExternalVocabulary() gave it.
	if (!_vocabularyIsExternal) return;
	DocumentVocabulary& external = externalVocabulary();
	external = _vocabulary;
	std::size_t i = 0;
	forEachTable(external, [this, &i](auto& table) { table.truncate(_externalSizes[i++]); });
	external.restrictedAlphabets().truncate(_externalSizes[i]);
	_vocabularyIsExternal = false;
}


DocumentVocabulary& FastInfosetWriter::externalVocabulary()
{
	// Without tables: they are only read once a vocabulary has replaced them.
	if (!_pExternalVocabulary) _pExternalVocabulary.reset(new DocumentVocabulary(DocumentVocabulary::DONT_INITIALIZE));
	return *_pExternalVocabulary;
}


Vocabulary<QualifiedNameEntry>& FastInfosetWriter::getQNameVocabulary(bool inElement)
{
	return inElement ? *_vocabulary.elementVocabulary() : *_vocabulary.attributeVocabulary();
}


//
// Document and element framing
//


void FastInfosetWriter::setDocumentLocator(const Korvo::XML::Locator*)
{
}


void FastInfosetWriter::startDocument()
{
	// The tables go on from where the first document left them, so a
	// second document could not be read on its own.
	if (_documentStarted) throw FISException("startDocument() not allowed: a writer writes one document");
	requireState(UNINITIALIZED, "startDocument() not allowed inside an element");
	_documentStarted = true;
	// The tables may have been changed in place since the names were learnt,
	// unless the vocabulary is still the constructor's, which the state's
	// names were reset for.
	if (_vocabularyFresh)
	{
		findTables();
		_knownNamesComplete = getQNameVocabulary(true).size() <= 1 && getQNameVocabulary(false).size() <= 1;
		if (namesKept()) _pState->knownNames.startReplay(_vocabulary.impl(), stringTables());
	}
	else forgetNames();
	writeHeader();
	if (_shortestLiterals)
	{
		_pPacker.reset(new StringPacker);
		_pPacker->setAlphabets(_vocabulary.restrictedAlphabets());
	}
	_states.push_back(IN_DOCUMENT);
	// Prefixes declared before the document do not count; a writer that
	// declared none has nothing to forget.
	if (!_ownPrefixes.empty())
	{
		_pState->namespaces.reset();
		_ownPrefixes.clear();
	}
	_pState->namespaces.pushContext();
}


void FastInfosetWriter::endDocument()
{
	requireState(IN_DOCUMENT, "endDocument() without matching startDocument()");
	handleEncodedData();
	writeTerminator();
	_writer.finish();
	_states.pop_back();
}


void FastInfosetWriter::startElement(const XMLString& namespaceURI, const XMLString& localName, const XMLString& qname, const Attributes& attributes)
{
	const State state = _states.back();
	if (state == UNINITIALIZED || state == IN_DTD)
	{
		requireDocument("startElement() not allowed outside the document");
		requireOutsideDTD("startElement() not allowed inside a document type declaration");
	}
	std::string_view prefix;
	const XMLString* pLocalName = &localName;
	std::size_t binding = NamespaceContext::NOT_FOUND;
	// A name without namespace, the usual case, is taken as it is.
	if (!namespaceURI.empty() || localName.empty() || !(qname.empty() || sameName(qname, localName)))
		elementName(namespaceURI, localName, qname, prefix, pLocalName, binding);
	NamespaceContext& namespaces = _pState->namespaces;
	const unsigned int changes = namespaces.changes();

	if (!_encodings.empty()) handleEncodedData();
	// handleNamespaces() and writeElement(), with the element's declarations
	// taken from the context by position instead of gathered into a set.
	_attributeValues.clear();
	if (typeid(attributes) == typeid(AttributesImpl))
	{
		const AttributesImpl& list = static_cast<const AttributesImpl&>(attributes);
		if (list.getLength() > 0)
		{
			declareNamespacesOf(ImplAccess(list));
			appendAttributes(_attributeValues, ImplAccess(list), namespaceURI);
		}
	}
	else
	{
		declareNamespacesOf(ListAccess(attributes));
		appendAttributes(_attributeValues, ListAccess(attributes), namespaceURI);
	}
	bool declaring = false;
	if (namespaces.declaresAny())
	{
		namespaces.declaredBindings(_pState->declarations);
		declaring = !_pState->declarations.empty();
	}
	NameLookup name;
	lookUpName(prefix, namespaceURI, *pLocalName, true, name);
	const unsigned int attributeBit = _attributeValues.empty() ? 0u : 1u;
	const int pos = _writer.bitPos();
	const int padding = pos == 0 ? 0 : 8 - pos;
	if (!declaring && name.index >= 1 && name.index <= 32)
	{
		// The padding of the open octet, the element's '0', its attribute
		// bit and the name's index in its one-octet form, in one field.
		_writer.write((attributeBit << 6) | (name.index - 1), padding + 8);
	}
	else
	{
		// The padding, the '0' and the attribute bit in one field, written
		// with the name where they can be.
		unsigned int pending = attributeBit;
		int pendingBits = padding + 2;
		if (declaring)
		{
			_writer.write(pending, pendingBits);
			pending = 0;
			pendingBits = 0;
			_writer.write(NAMESPACE_ATTRIBUTES, 6);
			for (std::size_t position: _pState->declarations) writeNamespaceBinding(position);
			writeTerminator();
			_writer.write(0, 6);
		}
		// The declaration the name is written in, whose indices spare the
		// look-ups of its prefix and namespace; found again when the
		// attributes' declarations may have moved it.
		if (!_bindingIndices)
		{
			binding = NamespaceContext::NOT_FOUND;
		}
		else if (binding != NamespaceContext::NOT_FOUND && namespaces.changes() != changes)
		{
			binding = namespaces.find(prefix);
			if (binding != NamespaceContext::NOT_FOUND && namespaces.uriAt(binding) != namespaceURI) binding = NamespaceContext::NOT_FOUND;
		}
		writeName(prefix, namespaceURI, *pLocalName, true, binding, &name, pending, pendingBits);
	}
	if (!_attributeValues.empty()) writeAttributeItems();
	// The children's context is opened only now: the names gathered above
	// point into the current one.
	namespaces.pushContext();
	_states.push_back(IN_ELEMENT);
	forgetEndedPrefixes();
	_prefixMarks.push_back(_pendingPrefixes);
	_pendingPrefixes = _ownPrefixes.size();
}


void FastInfosetWriter::elementName(const XMLString& namespaceURI, const XMLString& localName, const XMLString& qname, std::string_view& prefix, const XMLString*& pLocalName, std::size_t& binding)
{
	prefix = std::string_view();
	pLocalName = &localName;
	binding = NamespaceContext::NOT_FOUND;
	if (!localName.empty() && (qname.empty() || sameName(qname, localName)))
	{
		if (!namespaceURI.empty())
		{
			NamespaceContext& namespaces = _pState->namespaces;
			std::size_t position = namespaces.prefixPosition(namespaceURI);
			if (position == NamespaceContext::NOT_FOUND)
			{
				declarePrefix(unusedPrefix(), namespaceURI);
				position = namespaces.prefixPosition(namespaceURI);
			}
			// A copy: declaring the attributes' prefixes may replace the entry.
			if (position != NamespaceContext::NOT_FOUND && !namespaces.prefixAt(position).empty())
			{
				_namePrefix = namespaces.prefixAt(position);
				prefix = _namePrefix;
			}
			binding = position;
		}
	}
	else if (namespaceURI.empty() && localName.empty() && !qname.empty())
	{
		pLocalName = &qname;
	}
	else if (!localName.empty() && !qname.empty())
	{
		// What comes before the first colon, as Name::split() has it.
		const void* pColon = std::memchr(qname.data(), ':', qname.size());
		if (pColon)
		{
			prefix = std::string_view(qname.data(), static_cast<std::size_t>(static_cast<const char*>(pColon) - qname.data()));
		}
		else
		{
			_namePrefix = _pState->namespaces.getPrefix(namespaceURI);
			prefix = _namePrefix;
		}
		if (!namespaceURI.empty())
		{
			NamespaceContext& namespaces = _pState->namespaces;
			binding = namespaces.find(prefix);
			if (binding == NamespaceContext::NOT_FOUND || namespaces.uriAt(binding) != namespaceURI)
			{
				declarePrefix(prefix, namespaceURI);
				binding = namespaces.find(prefix);
			}
		}
	}
	else throw FISException("Tag mismatch", nameToString(localName, qname));
}


void FastInfosetWriter::endElement(const XMLString&, const XMLString&, const XMLString&)
{
	if (_states.back() != IN_ELEMENT) requireState(IN_ELEMENT, "endElement() without matching startElement()");
	if (!_encodings.empty()) handleEncodedData();
	writeTerminator();
	_states.pop_back();
	_pState->namespaces.popContext();
	if (_ownPrefixes.empty())
	{
		// dropOwnPrefixes() when no prefix was declared.
		_prefixMarks.pop_back();
		_prefixesEnded = true;
	}
	else dropOwnPrefixes();
}


void FastInfosetWriter::emptyElement(const XMLString& namespaceURI, const XMLString& localName, const XMLString& qname)
{
	emptyElement(namespaceURI, localName, qname, _emptyAttributes);
}


void FastInfosetWriter::emptyElement(const XMLString& namespaceURI, const XMLString& localName, const XMLString& qname, const Attributes& attributes)
{
	startElement(namespaceURI, localName, qname, attributes);
	endElement(namespaceURI, localName, qname);
}


void FastInfosetWriter::dataElement(const XMLString& namespaceURI, const XMLString& localName, const XMLString& qname,
                                    const XMLString& data,
                                    const XMLString& attr1, const XMLString& value1,
                                    const XMLString& attr2, const XMLString& value2,
                                    const XMLString& attr3, const XMLString& value3)
{
	static const XMLString CDATA("CDATA");
	AttributesImpl attributes;
	if (!attr1.empty()) attributes.addAttribute(EMPTY, EMPTY, attr1, CDATA, value1);
	if (!attr2.empty()) attributes.addAttribute(EMPTY, EMPTY, attr2, CDATA, value2);
	if (!attr3.empty()) attributes.addAttribute(EMPTY, EMPTY, attr3, CDATA, value3);
	if (!data.empty())
	{
		startElement(namespaceURI, localName, qname, attributes);
		characters(data);
		endElement(namespaceURI, localName, qname);
	}
	else emptyElement(namespaceURI, localName, qname, attributes);
}


void FastInfosetWriter::startFragment()
{
	throw FISException("startFragment() not allowed");
}


void FastInfosetWriter::endFragment()
{
	throw FISException("endFragment() not allowed");
}


void FastInfosetWriter::requireState(State state, const char* message) const
{
	if (_states.back() != state) throw FISException(message);
}


void FastInfosetWriter::requireDocument(const char* message) const
{
	// Before the header or after the end an item would leave a stream that
	// no parser reads.
	if (_states.back() == UNINITIALIZED) throw FISException(message);
}


void FastInfosetWriter::requireOutsideDTD(const char* message) const
{
	// A document type declaration holds processing instructions only.
	if (_states.back() == IN_DTD) throw FISException(message);
}


void FastInfosetWriter::requireElementContent() const
{
	// Character chunks are children of the document or of an element, in a
	// CDATA section or not; before the header or inside a document type
	// declaration they would break the stream.
	std::size_t top = _states.size() - 1;
	if (_states[top] == IN_CDATA && top > 0) --top;
	if (_states[top] != IN_ELEMENT && _states[top] != IN_DOCUMENT)
		throw FISException("Character data not allowed outside the document");
}


void FastInfosetWriter::padToOctet()
{
	// Closes a pending terminator with '0' bits. Unlike complete(false) it
	// does not flush the stream, which would cost a system call per item.
	const int pos = _writer.bitPos();
	if (pos != 0) _writer.write(0, 8 - pos);
}


inline __attribute__((always_inline)) void FastInfosetWriter::writeTerminator()
{
	_writer.write(TERMINATOR, 4);
}


//
// Names, namespaces and attributes
//


void FastInfosetWriter::startPrefixMapping(const XMLString& prefix, const XMLString& uri)
{
	if (prefix == NamespaceSupport::XML_NAMESPACE_PREFIX) return;
	forgetEndedPrefixes();
	declarePrefix(prefix, uri);
	// It belongs to the element that starts next.
	_ownPrefixes.push_back(prefix);
}


void FastInfosetWriter::declarePrefix(std::string_view prefix, std::string_view uri)
{
	// The namespace support keeps the first declaration of a prefix in a
	// context. The last must count: a prefix that the writer declared for an
	// element stays in the context of its siblings, which may declare it anew.
	// Refused, the prefix is in this context, where undeclaring it removes it.
	if (!_pState->namespaces.declarePrefix(prefix, uri) && _pState->namespaces.undeclarePrefix(prefix))
		_pState->namespaces.declarePrefix(prefix, uri);
}


void FastInfosetWriter::endPrefixMapping(const XMLString& prefix)
{
	if (prefix == NamespaceSupport::XML_NAMESPACE_PREFIX) return;
	if (_prefixesEnded)
	{
		// Right after an element: its own declarations are gone already, and
		// undeclaring again would remove an outer declaration of the prefix.
		auto it = std::find(_ownPrefixes.begin() + _pendingPrefixes, _ownPrefixes.end(), prefix);
		if (it != _ownPrefixes.end()) _ownPrefixes.erase(it);
		return;
	}
	const std::size_t first = _prefixMarks.empty() ? 0 : _prefixMarks.back();
	auto it = std::find(_ownPrefixes.begin() + first, _ownPrefixes.end(), prefix);
	if (it != _ownPrefixes.end())
	{
		if (static_cast<std::size_t>(it - _ownPrefixes.begin()) < _pendingPrefixes) --_pendingPrefixes;
		_ownPrefixes.erase(it);
	}
	_pState->namespaces.undeclarePrefix(prefix);
}


void FastInfosetWriter::dropOwnPrefixes()
{
	// The declarations that came before an element's start end with it,
	// whether or not endPrefixMapping() follows (a producer may send it for
	// another element). Those made while it was open left with its context.
	forgetEndedPrefixes();
	const std::size_t first = _prefixMarks.back();
	_prefixMarks.pop_back();
	_prefixesEnded = true;
	if (first == _ownPrefixes.size()) return;
	_ownPrefixes.resize(_pendingPrefixes);
	// Each prefix once, the last declared first: it is the innermost
	// declaration, which goes without moving the others.
	for (std::size_t i = _pendingPrefixes; i-- > first; )
	{
		if (std::find(_ownPrefixes.begin() + i + 1, _ownPrefixes.begin() + _pendingPrefixes, _ownPrefixes[i]) == _ownPrefixes.begin() + _pendingPrefixes)
			_pState->namespaces.undeclarePrefix(_ownPrefixes[i]);
	}
	_pendingPrefixes = first;
}


inline void FastInfosetWriter::forgetEndedPrefixes()
{
	if (!_prefixesEnded) return;
	if (_ownPrefixes.size() != _pendingPrefixes) _ownPrefixes.resize(_pendingPrefixes);
	_prefixesEnded = false;
}


std::string FastInfosetWriter::newPrefix()
{
	return "ns" + Korvo::NumberFormatter::format(++_prefixCounter);
}


std::string FastInfosetWriter::unusedPrefix()
{
	// Skips generated prefixes that the application has declared itself.
	std::string prefix = newPrefix();
	while (!_pState->namespaces.getURI(prefix).empty()) prefix = newPrefix();
	return prefix;
}


const XMLString& FastInfosetWriter::nameToString(const XMLString& localName, const XMLString& qname)
{
	return qname.empty() ? localName : qname;
}


void FastInfosetWriter::handleNamespaces(const Attributes& attributes, const XMLString& elementNamespaceURI, PrefixSet& nsPrefixes, AttributeVec& attributeVec)
{
	declareAttributeNamespaces(attributes);
	addNamespaceAttributes(nsPrefixes);
	addAttributes(attributeVec, attributes, elementNamespaceURI);
}


void FastInfosetWriter::declareAttributeNamespaces(const Attributes& attributes)
{
	declareNamespacesOf(ListAccess(attributes));
}


template <class Access>
void FastInfosetWriter::declareNamespacesOf(const Access& attributes)
{
	const int n = attributes.length();
	for (int i = 0; i < n; ++i)
	{
		const XMLString& uri = attributes.uri(i);
		// Nothing is declared for an attribute without namespace.
		if (uri.empty() || attributes.localName(i).empty()) continue;
		prefixOf(attributes.qname(i), _scratchPrefix);
		if (_scratchPrefix.empty()) _scratchPrefix = _pState->namespaces.getPrefix(uri);
		if (_pState->namespaces.getURI(_scratchPrefix) != uri) declarePrefix(_scratchPrefix, uri);
	}
}


void FastInfosetWriter::addNamespaceAttributes(PrefixSet& nsPrefixes)
{
	nsPrefixes.clear();
	_pState->namespaces.getDeclaredPrefixes(nsPrefixes);
}


void FastInfosetWriter::addAttributes(AttributeVec& attributeVec, const Attributes& attributes, const XMLString& elementNamespaceURI)
{
	attributeVec.clear();
	appendAttributes(attributeVec, ListAccess(attributes), elementNamespaceURI);
}


template <class Access>
void FastInfosetWriter::appendAttributes(AttributeVec& attributeVec, const Access& attributes, const XMLString& elementNamespaceURI)
{
	const int n = attributes.length();
	if (_attributeLocalNames.size() < static_cast<std::size_t>(n)) _attributeLocalNames.resize(n);
	for (int i = 0; i < n; ++i)
	{
		AttributeValue attribute;
		attribute.pNamespaceURI = &attributes.uri(i);
		attribute.pLocalName = &attributes.localName(i);
		if (attribute.pLocalName->empty())
		{
			localPartOf(attributes.qname(i), _attributeLocalNames[i]);
			attribute.pLocalName = &_attributeLocalNames[i];
		}
		// An attribute in the element's own namespace keeps an empty prefix;
		// so does one without namespace, which no prefix can name.
		const bool ownPrefix = !attribute.pNamespaceURI->empty() && *attribute.pNamespaceURI != elementNamespaceURI;
		attribute.pPrefix = ownPrefix ? &_pState->namespaces.getPrefix(*attribute.pNamespaceURI) : &EMPTY;
		attribute.pValue = &attributes.value(i);
		attributeVec.push_back(attribute);
	}
}


void FastInfosetWriter::writeElement(const XMLString& prefix, const XMLString& ns, const XMLString& localName, const AttributeVec& attributes, const PrefixSet& nsPrefixes)
{
	if (_writer.bitPos() != 1) throw FISEncodingException("Illegal startposition for an Element value");
	_writer.write(!attributes.empty());
	if (!nsPrefixes.empty())
	{
		_writer.write(NAMESPACE_ATTRIBUTES, 6);
		for (const XMLString& nsPrefix: nsPrefixes)
		{
			_writer.write(NAMESPACE_ATTRIBUTE, 6);
			writeNamespaceAttribute(nsPrefix, _pState->namespaces.getURI(nsPrefix));
		}
		writeTerminator();
		_writer.write(0, 6);
	}
	writeElementContent(prefix, ns, localName, attributes);
}


void FastInfosetWriter::writeElementContent(const XMLString& prefix, const XMLString& ns, const XMLString& localName, const AttributeVec& attributes)
{
	writeQualifiedNameOrIndex(prefix, ns, localName, true);
	if (!attributes.empty())
	{
		for (const AttributeValue& attribute: attributes)
		{
			_writer.write(false);
			writeAttribute(*attribute.pPrefix, *attribute.pNamespaceURI, *attribute.pLocalName, *attribute.pValue);
		}
		writeTerminator();
	}
}


void FastInfosetWriter::writeAttribute(const XMLString& prefix, const XMLString& ns, const XMLString& localName, const XMLString& normalizedValue)
{
	if (_writer.bitPos() != 1) throw FISEncodingException("Illegal startposition for a Attribute value");
	writeQualifiedNameOrIndex(prefix, ns, localName, false);
	writeAttributeValue(normalizedValue);
	poco_assert (_writer.bitPos() == 0);
}


void __attribute__((noinline)) FastInfosetWriter::writeAttributeItems()
{
	// Apart, so that an element without attributes keeps fewer registers.
	for (const AttributeValue& attribute: _attributeValues)
		writeAttributeItem(*attribute.pPrefix, *attribute.pNamespaceURI, *attribute.pLocalName, *attribute.pValue);
	writeTerminator();
}


inline void FastInfosetWriter::writeAttributeItem(const XMLString& prefix, const XMLString& ns, const XMLString& localName, const XMLString& value)
{
	poco_assert (!localName.empty());
	NameLookup name;
	lookUpName(prefix, ns, localName, false, name);
	if (name.index >= 1 && name.index <= 64 && !value.empty())
	{
		// The item's '0', the name's '0' and its index make one octet, which
		// goes out with the value.
		if (value.size() <= ShortValue::MAX_SIZE)
			writeShortValue(value, ShortValue(value.data(), value.size()), DocumentVocabulary::ATTRIBUTE_VALUE, name.index - 1, 8);
		else
			writeValueOrIndex(value, DocumentVocabulary::ATTRIBUTE_VALUE, name.index - 1, 8);
		return;
	}
	// The item's '0' goes out with the name.
	writeName(prefix, ns, localName, false, NamespaceContext::NOT_FOUND, &name, 0, 1);
	writeAttributeValue(value);
}


void __attribute__((noinline)) FastInfosetWriter::writeNamespaceBinding(std::size_t position)
{
	// The item's leading bits and those of its parts end an octet: they go
	// out with the parts, as a new name's do.
	NamespaceContext& namespaces = _pState->namespaces;
	const XMLString& prefix = namespaces.prefixAt(position);
	const XMLString& ns = namespaces.uriAt(position);
	NameField field{(NAMESPACE_ATTRIBUTE << 2) | (prefix.empty() ? 0u : 2u) | (ns.empty() ? 0u : 1u), 8};
	if (_writer.bitPos() != 0) flush(field);
	unsigned int prefixIdx;
	unsigned int nsIdx;
	appendPrefixAndNamespace(field, prefix, ns, prefixIdx, nsIdx);
	flush(field);
	if (_bindingIndices && prefixIdx != NOT_INDEXED && nsIdx != NOT_INDEXED) namespaces.setTableIndices(position, prefixIdx, nsIdx);
}


void FastInfosetWriter::writeNamespaceAttribute(const XMLString& prefix, const XMLString& ns)
{
	if (_writer.bitPos() != 6) throw FISEncodingException("Illegal startposition for a NamespaceAttribute value");
	_writer.write(!prefix.empty());
	_writer.write(!ns.empty());
	if (!prefix.empty()) writeIdentifyingStringOrIndex(prefix, DocumentVocabulary::PREFIX);
	if (!ns.empty()) writeIdentifyingStringOrIndex(ns, DocumentVocabulary::NAMESPACE_NAME);
}


unsigned int FastInfosetWriter::writeQualifiedNameOrIndex(const XMLString& prefix, const XMLString& ns, const XMLString& localName, bool inElement)
{
	const int startPos = _writer.bitPos();
	if (startPos != 1 && startPos != 2) throw FISEncodingException("Illegal startposition for a writeQualifiedNameOrIndex value");
	poco_assert (!localName.empty());
	return writeName(prefix, ns, localName, inElement, NamespaceContext::NOT_FOUND);
}


inline __attribute__((always_inline)) void FastInfosetWriter::lookUpName(std::string_view prefix, const XMLString& ns, const XMLString& localName, bool inElement, NameLookup& lookup) const
{
	// Names repeat: one look-up of the whole name replaces four table
	// look-ups once a name has been seen. The local name's hash serves
	// the local-name table as well.
	lookup.localNameHash = ValueHash<std::string>()(localName);
	lookup.hash = QualifiedNameCache::hashOf(lookup.localNameHash, prefix, ns, inElement);
	lookup.index = _pState->knownNames.find(lookup.hash, prefix, ns, localName, inElement, lookup.slot);
}


unsigned int FastInfosetWriter::writeName(std::string_view prefix, const XMLString& ns, const XMLString& localName, bool inElement, std::size_t binding, const NameLookup* pLookup, unsigned int pending, int pendingBits)
{
	const int startPos = (_writer.bitPos() + pendingBits) & 7;
	NameLookup own;
	if (!pLookup)
	{
		lookUpName(prefix, ns, localName, inElement, own);
		pLookup = &own;
	}
	const Korvo::UInt32 localNameHash = pLookup->localNameHash;
	const Korvo::UInt32 hash = pLookup->hash;
	const std::size_t slot = pLookup->slot;
	QualifiedNameCache& knownNames = _pState->knownNames;
	unsigned int idx = pLookup->index;
	unsigned int foundIdx = 0;
	if (!idx && !_knownNamesComplete && findQualifiedName(_scratchPrefix.assign(prefix.data(), prefix.size()), ns, localName, inElement, foundIdx))
	{
		idx = foundIdx;
		const unsigned int none[QualifiedNameCache::TABLES] = {};
		knownNames.add(slot, hash, prefix, ns, localName, inElement, getQNameVocabulary(inElement).value(idx), idx, none);
	}

	if (idx)
	{
		if (pendingBits) _writer.write(pending, pendingBits);
		Encoder::integer(_writer, idx);
	}
	else
	{
		// '1111', and the '0' of a name at the second bit, go out with the
		// name's parts.
		unsigned int lead = startPos == 1 ? 0x1E : 0xF;
		int leadBits = startPos == 1 ? 5 : 4;
		unsigned int sizes[QualifiedNameCache::TABLES] = {};
		const bool sized = tableSizes(sizes);
		QualifiedNameCache::Entry* pCarried = knownNames.carried(slot);
		if (pCarried && sized && knownNames.replayable(*pCarried, sizes))
		{
			// Nothing throws before the pending bits go out with the name.
			idx = replayName(*pCarried, prefix, ns, localName, inElement, binding, (pending << leadBits) | lead, pendingBits + leadBits, sizes);
		}
		else
		{
			if (pendingBits) _writer.write(pending, pendingBits);
			QualifiedNameEntry qne;
			idx = writeNewQualifiedName(prefix, ns, localName, localNameHash, inElement, binding, qne, lead, leadBits);
			if (idx) knownNames.add(slot, hash, prefix, ns, localName, inElement, qne, idx, sizes);
		}
	}
	poco_assert (_writer.bitPos() == 0);
	return idx;
}


bool FastInfosetWriter::namesKept() const
{
	// Fresh tables of a kind that finds values, changed only by writing.
	return _vocabularyFresh && _vocabulary.impl() != DocumentVocabulary::VOC_VECTOR;
}


const IndexedVocabulary<std::string>* const* FastInfosetWriter::stringTables() const
{
	static_assert(DocumentVocabulary::NAMESPACE_NAME == DocumentVocabulary::PREFIX + 1 && DocumentVocabulary::LOCAL_NAME == DocumentVocabulary::PREFIX + 2, "The name parts' tables follow each other");
	static_assert(QualifiedNameCache::TABLES == 5 && QualifiedNameCache::STRING_TABLES == 3, "The sizes the header declares");
	return _pIndexedTables + DocumentVocabulary::PREFIX;
}


void FastInfosetWriter::keepNames()
{
	// Only a writer whose document started from fresh tables knows what
	// each name added to them.
	if (_documentStarted && namesKept())
		_pState->knownNames.keep(_vocabulary.impl(), stringTables());
	else
		_pState->knownNames.drop();
}


inline bool FastInfosetWriter::tableSizes(unsigned int sizes[QualifiedNameCache::TABLES]) const
{
	const IndexedVocabulary<std::string>* pPrefixes = _pIndexedTables[DocumentVocabulary::PREFIX];
	const IndexedVocabulary<std::string>* pNamespaces = _pIndexedTables[DocumentVocabulary::NAMESPACE_NAME];
	const IndexedVocabulary<std::string>* pLocalNames = _pIndexedTables[DocumentVocabulary::LOCAL_NAME];
	if (!pPrefixes || !pNamespaces || !pLocalNames || !_pIndexedNames[0] || !_pIndexedNames[1]) return false;
	sizes[QualifiedNameCache::PREFIXES] = pPrefixes->IndexedVocabulary<std::string>::size();
	sizes[QualifiedNameCache::NAMESPACES] = pNamespaces->IndexedVocabulary<std::string>::size();
	sizes[QualifiedNameCache::LOCAL_NAMES] = pLocalNames->IndexedVocabulary<std::string>::size();
	sizes[QualifiedNameCache::ATTRIBUTE_NAMES] = _pIndexedNames[0]->IndexedVocabulary<QualifiedNameEntry>::size();
	sizes[QualifiedNameCache::ELEMENT_NAMES] = _pIndexedNames[1]->IndexedVocabulary<QualifiedNameEntry>::size();
	return true;
}


inline __attribute__((always_inline)) void FastInfosetWriter::replayPart(NameField& field, int table, const std::string& value, unsigned int idx, const unsigned int sizes[QualifiedNameCache::TABLES], unsigned int added[QualifiedNameCache::STRING_TABLES])
{
	if (idx != sizes[table])
	{
		appendIndex(field, idx);
		return;
	}
	// Appended unindexed: the table's index takes it in when next asked.
	_pIndexedTables[DocumentVocabulary::PREFIX + table]->appendAbsent(std::string_view(value));
	added[table] = 1;
	appendLiteral(field, value);
}


unsigned int FastInfosetWriter::replayName(QualifiedNameCache::Entry& entry, std::string_view prefix, const XMLString& ns, const XMLString& localName, bool inElement, std::size_t binding, unsigned int lead, int leadBits, const unsigned int sizes[QualifiedNameCache::TABLES])
{
	// writeNewQualifiedName() with the look-ups' results known: a part
	// with the index of the table's next value was new and is appended,
	// any other is at that index.
	unsigned int added[QualifiedNameCache::STRING_TABLES] = {};
	const QualifiedNameEntry& name = entry.name;
	NameField field{(Korvo::UInt64(lead) << 2) | (prefix.empty() ? 0u : 2u) | (ns.empty() ? 0u : 1u), leadBits + 2};
	if (((_writer.bitPos() + field.bits) & 7) != 0) flush(field);
	if (!prefix.empty()) replayPart(field, QualifiedNameCache::PREFIXES, *entry.pPrefix, name.prefixId(), sizes, added);
	if (!ns.empty()) replayPart(field, QualifiedNameCache::NAMESPACES, ns, name.namespaceId(), sizes, added);
	replayPart(field, QualifiedNameCache::LOCAL_NAMES, localName, name.localNameId(), sizes, added);
	flush(field);
	unsigned int prefixIdx;
	unsigned int nsIdx;
	if (binding != NamespaceContext::NOT_FOUND && !_pState->namespaces.tableIndices(binding, prefixIdx, nsIdx))
		_pState->namespaces.setTableIndices(binding, name.prefixId(), name.namespaceId());
	_pIndexedNames[inElement]->append(name);
	_pState->knownNames.replayed(entry, added);
	return entry.index;
}


bool FastInfosetWriter::findQualifiedName(const XMLString& prefix, const XMLString& ns, const XMLString& localName, bool inElement, unsigned int& idx) const
{
	bool prefixFound;
	bool nsFound;
	bool localNameFound;
	const unsigned int prefixIdx = _vocabulary.exists(DocumentVocabulary::PREFIX, prefix, prefixFound);
	const unsigned int nsIdx = _vocabulary.exists(DocumentVocabulary::NAMESPACE_NAME, ns, nsFound);
	const unsigned int localNameIdx = _vocabulary.exists(DocumentVocabulary::LOCAL_NAME, localName, localNameFound);
	if (!prefixFound || !nsFound || !localNameFound) return false;

	const Vocabulary<QualifiedNameEntry>& names = inElement ? *_vocabulary.elementVocabulary() : *_vocabulary.attributeVocabulary();
	bool qneFound;
	idx = names.exists(QualifiedNameEntry(prefixIdx, nsIdx, localNameIdx), qneFound);
	return qneFound;
}


unsigned int FastInfosetWriter::writeQualifiedName(const XMLString& prefix, const XMLString& ns, const XMLString& localName, bool inElement)
{
	poco_assert (!localName.empty());
	QualifiedNameEntry qne;
	if (!writeNameParts(prefix, ns, localName, ValueHash<std::string>()(localName), inElement, NamespaceContext::NOT_FOUND, qne, 0, 0)) return 0;
	return insertQualifiedName(qne, inElement);
}


inline __attribute__((always_inline)) unsigned int FastInfosetWriter::writeNewQualifiedName(std::string_view prefix, const XMLString& ns, const XMLString& localName, Korvo::UInt32 localNameHash, bool inElement, std::size_t binding, QualifiedNameEntry& qne, unsigned int lead, int leadBits)
{
	if (!writeNameParts(prefix, ns, localName, localNameHash, inElement, binding, qne, lead, leadBits)) return 0;
	// Known to be absent, it is appended without a look-up; the table's
	// index, if it has one, takes it in when next asked.
	if (IndexedVocabulary<QualifiedNameEntry>* pNames = _pIndexedNames[inElement])
	{
		const unsigned int idx = pNames->size();
		pNames->append(qne);
		return idx;
	}
	return insertQualifiedName(qne, inElement);
}


inline __attribute__((always_inline)) bool FastInfosetWriter::writeNameParts(std::string_view prefix, const XMLString& ns, const XMLString& localName, Korvo::UInt32 localNameHash, bool inElement, std::size_t binding, QualifiedNameEntry& qne, unsigned int lead, int leadBits)
{
	// The bits up to the end of the octet, the indices of the parts and the
	// length of a literal part are gathered into one field, which goes out
	// with the literal's octets.
	NameField field{(Korvo::UInt64(lead) << 2) | (prefix.empty() ? 0u : 2u) | (ns.empty() ? 0u : 1u), leadBits + 2};
	// Elsewhere each part checks its own position.
	if (((_writer.bitPos() + field.bits) & 7) != 0) flush(field);
	unsigned int prefixIdx;
	unsigned int nsIdx;
	if (binding != NamespaceContext::NOT_FOUND && _pState->namespaces.tableIndices(binding, prefixIdx, nsIdx))
	{
		// Both are in their tables since the declaration was written.
		if (!prefix.empty()) appendIndex(field, prefixIdx);
		appendIndex(field, nsIdx);
	}
	else
	{
		appendPrefixAndNamespace(field, prefix, ns, prefixIdx, nsIdx);
		if (binding != NamespaceContext::NOT_FOUND && prefixIdx != NOT_INDEXED && nsIdx != NOT_INDEXED) _pState->namespaces.setTableIndices(binding, prefixIdx, nsIdx);
	}
	bool exists;
	const unsigned int localNameIdx = indexString(DocumentVocabulary::LOCAL_NAME, localName, localNameHash, exists);
	if (exists) appendIndex(field, localNameIdx); else appendLiteral(field, localName);
	flush(field);
	// A name with a part that no table holds, or a full name table, is not
	// indexed: the reader adds nothing either.
	if (prefixIdx == NOT_INDEXED || nsIdx == NOT_INDEXED || localNameIdx == NOT_INDEXED) return false;
	const Vocabulary<QualifiedNameEntry>* pNames = _pIndexedNames[inElement];
	if (isFull(pNames ? *pNames : getQNameVocabulary(inElement))) return false;
	qne = QualifiedNameEntry(prefixIdx, nsIdx, localNameIdx);
	return true;
}


inline __attribute__((always_inline)) void FastInfosetWriter::flush(NameField& field)
{
	if (field.bits == 0) return;
	_writer.write(field.value, field.bits, nullptr, 0);
	field.bits = 0;
}


unsigned int __attribute__((noinline)) FastInfosetWriter::indexNamePart(int table, std::string_view str, bool& exists)
{
	const DocumentVocabulary::ID id = DocumentVocabulary::ID(DocumentVocabulary::PREFIX + table);
	if (IndexedVocabulary<std::string>* pTable = _pIndexedTables[id])
	{
		// What the last document added here needs no look-up.
		const unsigned int size = pTable->IndexedVocabulary<std::string>::size();
		if (_pState->knownNames.continues(QualifiedNameCache::Table(table), size, str))
		{
			pTable->appendAbsent(str);
			exists = false;
			return size;
		}
	}
	return indexString(id, str, exists);
}


inline __attribute__((always_inline)) void FastInfosetWriter::appendPrefixAndNamespace(NameField& field, std::string_view prefix, std::string_view ns, unsigned int& prefixIdx, unsigned int& nsIdx)
{
	bool exists;
	prefixIdx = 0;
	nsIdx = 0;
	if (!prefix.empty())
	{
		prefixIdx = indexNamePart(QualifiedNameCache::PREFIXES, prefix, exists);
		if (exists) appendIndex(field, prefixIdx); else appendLiteral(field, prefix);
	}
	if (!ns.empty())
	{
		nsIdx = indexNamePart(QualifiedNameCache::NAMESPACES, ns, exists);
		if (exists) appendIndex(field, nsIdx); else appendLiteral(field, ns);
	}
}


inline __attribute__((always_inline)) void FastInfosetWriter::appendIndex(NameField& field, unsigned int idx)
{
	// Nothing gathered: the writer is not known to be at an octet's start.
	unsigned int reference;
	int bits;
	if (field.bits != 0 && referenceField(0, idx, reference, bits) && field.bits + bits <= MAX_NAME_FIELD)
	{
		field.value = (field.value << bits) | reference;
		field.bits += bits;
		return;
	}
	flush(field);
	writeIdentifyingStringIndex(idx);
}


inline __attribute__((always_inline)) void FastInfosetWriter::appendLiteral(NameField& field, std::string_view str)
{
	if (field.bits != 0 && !str.empty() && str.size() <= SHORT_LITERAL && field.bits + 8 <= MAX_NAME_FIELD)
	{
		// The '0' and the length make one octet.
		_writer.write((field.value << 8) | (str.size() - 1), field.bits + 8, str.data(), str.size());
		field.bits = 0;
		return;
	}
	flush(field);
	writeIdentifyingLiteral(str);
}


unsigned int FastInfosetWriter::insertQualifiedName(const QualifiedNameEntry& qne, bool inElement)
{
	bool qneExists;
	IndexedVocabulary<QualifiedNameEntry>* pNames = _pIndexedNames[inElement];
	const unsigned int idx = pNames ? pNames->add(qne, qneExists) : getQNameVocabulary(inElement).index(qne, qneExists);
	poco_assert (!qneExists);
	return idx;
}


inline unsigned int FastInfosetWriter::indexString(DocumentVocabulary::ID id, std::string_view str, bool& exists)
{
	if (IndexedVocabulary<std::string>* pTable = _pIndexedTables[id])
	{
		// The usual case without a call in between.
		const Korvo::UInt32 hash = ValueHash<std::string>()(str);
		if (!isFull(*pTable) && _replayEnd[id] == 0) return pTable->add(str, hash, exists);
		return indexString(id, str, hash, exists);
	}
	Vocabulary<std::string>& table = *_vocabulary.vocabulary(id);
	exists = false;
	return isFull(table) ? NOT_INDEXED : table.index(std::string(str), exists);
}


unsigned int FastInfosetWriter::indexString(DocumentVocabulary::ID id, std::string_view str, Korvo::UInt32 hash, bool& exists)
{
	IndexedVocabulary<std::string>* pTable = _pIndexedTables[id];
	if (pTable && _replayEnd[id] != 0)
	{
		const unsigned int size = _replaySize[id];
		const unsigned int idx = replay(id, pTable->find(str, hash));
		exists = idx < size;
		if (idx != NOT_INDEXED) return idx;
	}
	if (pTable && !isFull(*pTable)) return pTable->add(str, hash, exists);
	if (pTable)
	{
		const unsigned int idx = pTable->find(str, hash);
		exists = idx != Vocabulary<std::string>::NOT_FOUND;
		return exists ? idx : NOT_INDEXED;
	}
	Vocabulary<std::string>& table = *_vocabulary.vocabulary(id);
	exists = false;
	return isFull(table) ? NOT_INDEXED : table.index(std::string(str), exists);
}


unsigned int FastInfosetWriter::writeIdentifyingStringOrIndex(const std::string& str, DocumentVocabulary::ID id)
{
	bool exists;
	const unsigned int idx = indexString(id, str, exists);
	if (exists)
		writeIdentifyingStringIndex(idx);
	else
		writeIdentifyingString(str, id);
	return idx;
}


void FastInfosetWriter::writeIdentifyingString(const std::string& str, DocumentVocabulary::ID)
{
	writeIdentifyingLiteral(str);
}


void FastInfosetWriter::writeIdentifyingLiteral(std::string_view str)
{
	if (_writer.bitPos() != 0) throw FISEncodingException("Illegal startposition for an writeIdentifyingString");
	if (str.empty() || str.size() > 0xFFFFFFFFu)
	{
		// The encoder's messages for strings that have no form.
		_writer.write(false);
		Encoder::nonEmptyOctetString(_writer, std::string(str));
		return;
	}
	if (str.size() <= SHORT_LITERAL)
	{
		// The '0' bit and the length make one octet: it goes out with the
		// octets in one write.
		_writer.write(str.size() - 1, 8, str.data(), str.size());
		return;
	}
	// The '0' bit and the length in one field, then the octets.
	Korvo::UInt64 length;
	const int lengthBits = Encoder::stringLengthBits(static_cast<unsigned int>(str.size()), 7, length);
	_writer.write(length, 1 + lengthBits, str.data(), str.size());
}


void FastInfosetWriter::writeIdentifyingStringIndex(unsigned int strIdx)
{
	if (_writer.bitPos() != 0) throw FISEncodingException("Illegal startposition for an writeIdentifyingStringIndex");
	Encoder::indexReference(_writer, strIdx);
}


//
// Character content and typed values
//


void FastInfosetWriter::characters(const XMLChar ch[], int start, int length)
{
	// Indentation, most of a document's text, first and without the frame
	// the rest needs.
	if (start == 0 && length > 0 && ch && static_cast<unsigned char>(ch[0]) <= ' ')
	{
		const int slot = indentSlot(ch, static_cast<std::size_t>(length));
		if (slot >= 0)
		{
			if (!writeKnownIndent(slot, static_cast<std::size_t>(length))) writeIndent(std::string_view(ch, static_cast<std::size_t>(length)), slot);
			return;
		}
	}
	writeRange(ch, start, length);
}


void FastInfosetWriter::writeRange(const XMLChar ch[], int start, int length)
{
	// The text is taken as a substring of the NUL-terminated ch. The NUL is
	// looked for only up to start + length, so a SAX parser's buffer, which
	// need not be terminated, is never read past the range.
	if (start == 0 && length == 0) return;
	poco_check_ptr (ch);
	if (start == 0 && length > 0 && length <= ShortValue::MAX_SIZE)
	{
		// Short text, the usual case: the words that key it show a NUL too,
		// so that it is read once.
		const ShortValue key(ch, static_cast<std::size_t>(length));
		if (!key.hasNul())
		{
			writeChunk(std::string_view(ch, static_cast<std::size_t>(length)), &key);
			return;
		}
	}
	if (start < 0) throw std::out_of_range("characters(): start beyond the end of the text");
	const std::size_t begin = static_cast<std::size_t>(start);
	std::size_t end;
	if (length < 0)
	{
		end = std::strlen(ch);
	}
	else
	{
		end = begin + static_cast<std::size_t>(length);
		const void* pNul = std::memchr(ch, 0, end);
		if (pNul) end = static_cast<std::size_t>(static_cast<const XMLChar*>(pNul) - ch);
	}
	if (begin > end) throw std::out_of_range("characters(): start beyond the end of the text");
	writeCharacters(std::string_view(ch + begin, end - begin));
}


void FastInfosetWriter::characters(const XMLString& str)
{
	writeCharacters(str);
}


void FastInfosetWriter::writeCharacters(std::string_view text)
{
	// No chunk can hold an empty string, and zero characters are no content.
	if (text.empty()) return;
	if (text.size() <= ShortValue::MAX_SIZE)
	{
		const ShortValue key(text.data(), text.size());
		writeChunk(text, &key);
	}
	else writeChunk(text, nullptr);
}


inline __attribute__((always_inline)) unsigned int FastInfosetWriter::writeChunk(std::string_view text, const ShortValue* pKey)
{
	if (_states.back() != IN_ELEMENT) requireElementContent();
	if (!_encodings.empty()) handleEncodedData();
	// The padding of the open octet and the chunk's two bits go out with the value.
	const int pos = _writer.bitPos();
	const int leadBits = pos == 0 ? 2 : 10 - pos;
	if (pKey)
		return writeShortValue(text, *pKey, DocumentVocabulary::CHARACTER_CONTENT_CHUNK, CHARACTER_CHUNK, leadBits);
	else
		return writeValueOrIndex(text, DocumentVocabulary::CHARACTER_CONTENT_CHUNK, CHARACTER_CHUNK, leadBits);
}


inline __attribute__((always_inline)) int FastInfosetWriter::indentSlot(const XMLChar* ch, std::size_t length)
{
	// A SAX parser reports the line break and the spaces after it apart or
	// together; each shape has its group of slots.
	std::size_t group = 0;
	if (ch[0] == '\n')
	{
		if (length == 1) return 2*MAX_INDENT;
		++ch;
		--length;
		group = 2;
	}
	if (length >= MAX_INDENT) return -1;
	const XMLChar c = ch[0];
	if (c == '\t') ++group;
	else if (c != ' ') return -1;
	// The rest compared with c in words, the last one overlapping.
	if (length >= 8)
	{
		const Korvo::UInt64 spread = 0x0101010101010101ull*static_cast<unsigned char>(c);
		for (std::size_t i = 0; i + 8 < length; i += 8)
		{
			if (ValueHash<std::string>::word8(ch + i) != spread) return -1;
		}
		if (ValueHash<std::string>::word8(ch + length - 8) != spread) return -1;
	}
	else if (length >= 4)
	{
		const Korvo::UInt32 spread = 0x01010101u*static_cast<unsigned char>(c);
		if (ValueHash<std::string>::word4(ch) != spread || ValueHash<std::string>::word4(ch + length - 4) != spread) return -1;
	}
	else
	{
		for (std::size_t i = 1; i < length; ++i)
		{
			if (ch[i] != c) return -1;
		}
	}
	return static_cast<int>(group*MAX_INDENT + length);
}


inline __attribute__((always_inline)) bool FastInfosetWriter::writeKnownIndent(int slot, std::size_t length)
{
	// What writeShortValue() writes for a value it finds: chunks start at
	// bit 2 once their lead bits are out.
	const unsigned int idx = _indentIndices[slot];
	unsigned int field;
	int bits;
	if (idx == 0 || _states.back() != IN_ELEMENT || !_encodings.empty() || _pIndexingPolicy || _pPacker
		|| !isIndexable(length) || !referenceField(2, idx, field, bits))
		return false;
	const int pos = _writer.bitPos();
	const int leadBits = pos == 0 ? 2 : 10 - pos;
	_writer.write(static_cast<int>((CHARACTER_CHUNK << bits) | field), leadBits + bits);
	return true;
}


void FastInfosetWriter::writeIndent(std::string_view text, int slot)
{
	unsigned int written;
	if (text.size() <= ShortValue::MAX_SIZE)
	{
		const ShortValue key(text.data(), text.size());
		written = writeChunk(text, &key);
	}
	else written = writeChunk(text, nullptr);
	// Only a table that finds values gives the index an equal text gets.
	if (_pIndexedTables[DocumentVocabulary::CHARACTER_CONTENT_CHUNK]) _indentIndices[slot] = written;
}


void FastInfosetWriter::ignorableWhitespace(const XMLChar ch[], int start, int length)
{
	characters(ch, start, length);
}


void FastInfosetWriter::binaryData(const char* buffer, unsigned int size)
{
	// Zero octets add nothing to the data gathered so far.
	if (size == 0) return;
	poco_check_ptr (buffer);
	insertEncoding(new DWordEncoding(buffer, size));
}


void FastInfosetWriter::encodedData(short value)
{
	insertEncoding(new ShortEncoding(value));
}


void FastInfosetWriter::encodedData(int value)
{
	insertEncoding(new IntEncoding(value));
}


void FastInfosetWriter::encodedData(long long value)
{
	insertEncoding(new LongEncoding(value));
}


void FastInfosetWriter::encodedData(bool value)
{
	insertEncoding(new BoolEncoding(value));
}


void FastInfosetWriter::encodedData(float value)
{
	insertEncoding(new FloatEncoding(value));
}


void FastInfosetWriter::encodedData(double value)
{
	insertEncoding(new DoubleEncoding(value));
}


void FastInfosetWriter::encodedData(const Korvo::UUID& uuid)
{
	insertEncoding(new UUIDEncoding(uuid));
}


void FastInfosetWriter::insertEncoding(const Encoding::Ptr& pEncoding)
{
	requireElementContent();
	if (_encodings.empty() || !_encodings.back()->merge(*pEncoding)) _encodings.push_back(pEncoding);
}


void FastInfosetWriter::handleEncodedData()
{
	if (_encodings.empty()) return;
	padToOctet();
	for (Encoding::Ptr& pEncoding: _encodings)
	{
		_writer.write(CHARACTER_CHUNK, 2);
		if (pEncoding->type() == EncodingAlgorithm::CDATA_ENCODING)
		{
			pEncoding->createContent();
			writeCharacterChunk(pEncoding->content());
		}
		else
		{
			// Only a plain text value is written from its text form; the
			// others write their typed data, so their text is not built.
			if (pEncoding->type() == EncodingAlgorithm::INVALID) pEncoding->createContent();
			writeNonIdentifyingStringOrIndex(*pEncoding, DocumentVocabulary::CHARACTER_CONTENT_CHUNK);
		}
	}
	_encodings.clear();
}


void FastInfosetWriter::writeCharacterChunk(const std::string& str)
{
	if (_writer.bitPos() != 2) throw FISEncodingException("Illegal startposition for a CharacterChunk value");
	writeNonIdentifyingStringOrIndex(str, DocumentVocabulary::CHARACTER_CONTENT_CHUNK);
}


inline bool FastInfosetWriter::isIndexable(std::size_t length) const
{
	// A negative limit indexes every string.
	return _maxIndexedStringLength < 0 || length <= static_cast<std::size_t>(_maxIndexedStringLength);
}


inline bool FastInfosetWriter::isIndexed(const std::string& str, DocumentVocabulary::ID voc)
{
	// The empty string is always index 0: it has no literal form.
	if (_pIndexingPolicy && !str.empty()) return _pIndexingPolicy->isIndexed(voc, str);
	return isIndexable(str.size());
}


unsigned int FastInfosetWriter::writeNonIdentifyingStringOrIndex(const std::string& str, DocumentVocabulary::ID voc)
{
	// Text indexed by length takes the direct path; the rest, and strings
	// the encoder refuses, the general one.
	if (!str.empty() && str.size() <= 0xFFFFFFFFu && !_pIndexingPolicy && !_pPacker) return writeValueOrIndex(str, voc);
	const int pos = _writer.bitPos();
	if (pos != 0 && pos != 2) throw FISEncodingException("Illegal startposition for a NonIdentifyingStringOrIndex value");
	bool indexed = isIndexed(str, voc);
	bool exists = false;
	unsigned int idx = 0;
	if (indexed && !str.empty())
	{
		idx = indexString(voc, str, exists);
		indexed = idx != NOT_INDEXED;
	}
	else exists = indexed; // the empty string, always at index 0
	_writer.write(exists);
	if (exists)
	{
		Encoder::integer(_writer, idx);
	}
	else
	{
		_writer.write(indexed);
		writeEncodedCharacterString(str, 0);
	}
	return indexed ? idx : 0;
}


void FastInfosetWriter::writeAttributeValue(const XMLString& value)
{
	if (value.empty())
		writeNonIdentifyingStringOrIndex(value, DocumentVocabulary::ATTRIBUTE_VALUE);
	else if (value.size() <= ShortValue::MAX_SIZE)
		writeShortValue(value, ShortValue(value.data(), value.size()), DocumentVocabulary::ATTRIBUTE_VALUE, 0, 0);
	else
		writeValueOrIndex(value, DocumentVocabulary::ATTRIBUTE_VALUE);
}


unsigned int FastInfosetWriter::writeShortValue(std::string_view str, const ShortValue& key, DocumentVocabulary::ID voc, unsigned int lead, int leadBits)
{
	IndexedVocabulary<std::string>* pTable = _pIndexedTables[voc];
	if (!pTable || !isIndexable(str.size()) || isFull(*pTable) || _pIndexingPolicy || _pPacker)
		return writeValueOrIndex(str, voc, lead, leadBits);
	const int pos = (_writer.bitPos() + leadBits) & 7;
	if (pos != 0 && pos != 2) throw FISEncodingException("Illegal startposition for a NonIdentifyingStringOrIndex value");
	bool exists;
	unsigned int idx = NOT_INDEXED;
	if (_replayEnd[voc] != 0)
	{
		const unsigned int size = _replaySize[voc];
		idx = replay(voc, pTable->find(key, ValueHash<std::string>()(key)));
		exists = idx < size;
	}
	if (idx == NOT_INDEXED) idx = pTable->addShort(key, str, exists);
	if (exists)
	{
		unsigned int field;
		int bits;
		if (referenceField(pos, idx, field, bits))
		{
			_writer.write((lead << bits) | field, leadBits + bits);
		}
		else
		{
			if (leadBits) _writer.write(lead, leadBits);
			Encoder::indexReference(_writer, idx);
		}
		return idx;
	}
	writeLiteral(str, pos, true, lead, leadBits);
	return idx;
}


inline __attribute__((always_inline)) void FastInfosetWriter::writeLiteral(std::string_view str, int pos, bool indexed, unsigned int lead, int leadBits)
{
	// The lead, the '0' bit, the add-to-table bit, the discriminant and the
	// length that fills the rest of the octet, as one field written with the
	// octets. In a CDATA section the algorithm's index comes before the
	// length: one octet's worth of bits, from bit 4 or 6.
	Korvo::UInt64 length;
	const int lengthBits = Encoder::stringLengthBits(static_cast<unsigned int>(str.size()), 4 - pos, length);
	Korvo::UInt64 head = (Korvo::UInt64(lead) << 4) | (indexed ? 4u : 0u) | UTF8_STRING;
	int headBits = leadBits + 4;
	if (_states.back() == IN_CDATA)
	{
		head = ((head | ALGORITHM_STRING) << 8) | (EncodingAlgorithm::CDATA_ENCODING - 1);
		headBits += 8;
	}
	_writer.write((head << lengthBits) | length, headBits + lengthBits, str.data(), str.size());
}


unsigned int FastInfosetWriter::writeValueOrIndex(std::string_view str, DocumentVocabulary::ID voc, unsigned int lead, int leadBits)
{
	// Text indexed by length, the usual case, needs no string of its own;
	// the rest takes the general path.
	if (_pIndexingPolicy || _pPacker || str.size() > 0xFFFFFFFFu)
	{
		if (leadBits) _writer.write(lead, leadBits);
		_scratchText.assign(str.data(), str.size());
		return writeNonIdentifyingStringOrIndex(_scratchText, voc);
	}
	const int pos = (_writer.bitPos() + leadBits) & 7;
	if (pos != 0 && pos != 2) throw FISEncodingException("Illegal startposition for a NonIdentifyingStringOrIndex value");
	bool indexed = isIndexable(str.size());
	bool exists = false;
	unsigned int idx = 0;
	if (indexed)
	{
		idx = indexString(voc, str, exists);
		indexed = idx != NOT_INDEXED;
	}
	if (exists)
	{
		if (leadBits) _writer.write(lead, leadBits);
		Encoder::indexReference(_writer, idx);
		return idx;
	}
	writeLiteral(str, pos, indexed, lead, leadBits);
	return indexed ? idx : 0;
}


unsigned int FastInfosetWriter::writeNonIdentifyingStringOrIndex(const Encoding& encoding, DocumentVocabulary::ID voc)
{
	const int pos = _writer.bitPos();
	if (pos != 0 && pos != 2) throw FISEncodingException("Illegal startposition for a NonIdentifyingStringOrIndex value");
	const int type = encoding.type();
	const bool textual = type == EncodingAlgorithm::INVALID || type == EncodingAlgorithm::CDATA_ENCODING;
	bool indexed = textual && isIndexed(encoding.content(), voc);
	bool exists = false;
	unsigned int idx = 0;
	if (indexed && !encoding.content().empty())
	{
		idx = indexString(voc, encoding.content(), exists);
		indexed = idx != NOT_INDEXED;
	}
	else exists = indexed; // the empty string, always at index 0
	_writer.write(exists);
	if (exists)
	{
		Encoder::integer(_writer, idx);
	}
	else
	{
		_writer.write(indexed);
		writeEncodedCharacterString(encoding);
	}
	return indexed ? idx : 0;
}


void FastInfosetWriter::writeEncodedCharacterString(const std::string& str, unsigned int enc)
{
	const int pos = _writer.bitPos();
	if (pos != 2 && pos != 4) throw FISEncodingException("Illegal startposition for a writeEncodedCharacterString");
	if (_states.back() == IN_CDATA)
	{
		_writer.write(ALGORITHM_STRING, 2);
		Encoder::integer(_writer, EncodingAlgorithm::CDATA_ENCODING);
		Encoder::nonEmptyOctetString(_writer, str);
	}
	else if (enc != EncodingAlgorithm::INVALID && enc != EncodingAlgorithm::CDATA_ENCODING)
	{
		_writer.write(ALGORITHM_STRING, 2);
		Encoder::integer(_writer, enc);
		static const EncodingAlgorithm ALGORITHMS;
		ALGORITHMS.encode(enc, _writer, str);
	}
	else if (!_pPacker || !_pPacker->write(_writer, str))
	{
		_writer.write(UTF8_STRING, 2);
		Encoder::nonEmptyOctetString(_writer, str);
	}
}


void FastInfosetWriter::writeEncodedCharacterString(const Encoding& encoding)
{
	const int pos = _writer.bitPos();
	if (pos != 2 && pos != 4) throw FISEncodingException("Illegal startposition for a writeEncodedCharacterString");
	if (encoding.type() != EncodingAlgorithm::INVALID)
	{
		_writer.write(ALGORITHM_STRING, 2);
		Encoder::integer(_writer, encoding.type());
		encoding.write(_writer);
	}
	else if (!_pPacker || !_pPacker->write(_writer, encoding.content()))
	{
		_writer.write(UTF8_STRING, 2);
		Encoder::nonEmptyOctetString(_writer, encoding.content());
	}
}


void FastInfosetWriter::startCDATA()
{
	if (_states.back() == IN_CDATA) throw FISException("Cannot nest CDATA sections");
	requireDocument("startCDATA() not allowed outside the document");
	requireOutsideDTD("startCDATA() not allowed inside a document type declaration");
	_states.push_back(IN_CDATA);
}


void FastInfosetWriter::endCDATA()
{
	requireState(IN_CDATA, "endCDATA() without matching startCDATA()");
	handleEncodedData();
	_states.pop_back();
}


//
// DTD, comments and processing instructions
//


void FastInfosetWriter::processingInstruction(const XMLString& target, const XMLString& data)
{
	requireDocument("processingInstruction() not allowed outside the document");
	handleEncodedData();
	padToOctet();
	_writer.write(PROCESSING_INSTRUCTION, 8);
	writeProcessingInstruction(target, data);
}


void FastInfosetWriter::writeProcessingInstruction(const XMLString& target, const XMLString& data)
{
	writeIdentifyingStringOrIndex(target, DocumentVocabulary::OTHER_NCNAME);
	writeNonIdentifyingStringOrIndex(data, DocumentVocabulary::OTHER_STRING);
}


void FastInfosetWriter::comment(const XMLChar ch[], int start, int length)
{
	if (start < 0 || length < 0) throw std::out_of_range("comment(): negative start or length");
	if (length > 0)
	{
		poco_check_ptr (ch);
	}
	// A document type declaration holds processing instructions only: the
	// comments of an internal subset follow the declaration instead.
	if (_states.back() == IN_DTD)
	{
		_dtdComments.emplace_back(ch + start, length);
		return;
	}
	requireDocument("comment() not allowed outside the document");
	if (length > 0)
		_textBuffer.assign(ch + start, length);
	else
		_textBuffer.clear();
	writeCommentItem(_textBuffer);
}


void FastInfosetWriter::writeCommentItem(const XMLString& text)
{
	handleEncodedData();
	padToOctet();
	_writer.write(COMMENT, 8);
	writeComment(text);
}


void FastInfosetWriter::writeComment(const XMLString& str)
{
	if (_writer.bitPos() != 0) throw FISEncodingException("Illegal startposition for a Comment value");
	writeNonIdentifyingStringOrIndex(str, DocumentVocabulary::OTHER_STRING);
}


void FastInfosetWriter::startDTD(const XMLString&, const XMLString& publicId, const XMLString& systemId)
{
	requireDocument("startDTD() not allowed outside the document");
	requireOutsideDTD("startDTD() not allowed inside a document type declaration");
	// Typed values cannot follow it: its processing instructions would write them inside it.
	handleEncodedData();
	_states.push_back(IN_DTD);
	padToOctet();
	_writer.write(DOCUMENT_TYPE_DECLARATION, 6);
	writeDocumentTypeDeclaration(publicId, systemId);
}


void FastInfosetWriter::endDTD()
{
	requireState(IN_DTD, "endDTD() without matching startDTD()");
	writeTerminator();
	poco_assert (_writer.bitPos() == 4);
	_states.pop_back();
	for (const XMLString& text: _dtdComments) writeCommentItem(text);
	_dtdComments.clear();
}


void FastInfosetWriter::writeDocumentTypeDeclaration(const XMLString& publicId, const XMLString& systemId)
{
	if (_writer.bitPos() != 6) throw FISEncodingException("Illegal startposition for a DocumentTypeDeclaration value");
	_writer.write(!systemId.empty());
	_writer.write(!publicId.empty());
	if (!systemId.empty()) writeIdentifyingStringOrIndex(systemId, DocumentVocabulary::OTHER_URI);
	if (!publicId.empty()) writeIdentifyingStringOrIndex(publicId, DocumentVocabulary::OTHER_URI);
}


void FastInfosetWriter::startEntity(const XMLString&)
{
}


void FastInfosetWriter::endEntity(const XMLString&)
{
}


void FastInfosetWriter::skippedEntity(const XMLString&)
{
}


void FastInfosetWriter::notationDecl(const XMLString& name, const XMLString* publicId, const XMLString* systemId)
{
	poco_assert (_states.back() == UNINITIALIZED);
	_notations.push_back(Notation(name, publicId ? *publicId : EMPTY, systemId ? *systemId : EMPTY));
}


void FastInfosetWriter::unparsedEntityDecl(const XMLString& name, const XMLString* publicId, const XMLString& systemId, const XMLString& notationName)
{
	poco_assert (_states.back() == UNINITIALIZED);
	_unparsedEntities.push_back(UnparsedEntity(name, publicId ? *publicId : EMPTY, systemId, notationName));
}


void FastInfosetWriter::writeNotation(const XMLString& name, const XMLString* pPublicId, const XMLString* pSystemId)
{
	if (_writer.bitPos() != 6) throw FISEncodingException("Illegal startposition for a Notation value");
	_writer.write(pSystemId != nullptr);
	_writer.write(pPublicId != nullptr);
	writeIdentifyingStringOrIndex(name, DocumentVocabulary::OTHER_NCNAME);
	if (pSystemId) writeIdentifyingStringOrIndex(*pSystemId, DocumentVocabulary::OTHER_URI);
	if (pPublicId) writeIdentifyingStringOrIndex(*pPublicId, DocumentVocabulary::OTHER_URI);
}


void FastInfosetWriter::writeUnparsedEntity(const XMLString& name, const XMLString* pPublicId, const XMLString& systemId, const XMLString& notationName)
{
	if (_writer.bitPos() != 7) throw FISEncodingException("Illegal startposition for an UnparsedEntity value");
	_writer.write(pPublicId != nullptr);
	writeIdentifyingStringOrIndex(name, DocumentVocabulary::OTHER_NCNAME);
	writeIdentifyingStringOrIndex(systemId, DocumentVocabulary::OTHER_URI);
	if (pPublicId) writeIdentifyingStringOrIndex(*pPublicId, DocumentVocabulary::OTHER_URI);
	writeIdentifyingStringOrIndex(notationName, DocumentVocabulary::OTHER_NCNAME);
}


void FastInfosetWriter::writeUnexpandedEntityReference(const XMLString& name, const XMLString* pPublicId, const XMLString* pSystemId)
{
	if (_writer.bitPos() != 6) throw FISEncodingException("Illegal startposition for a UnexpandedEntityReference value");
	_writer.write(pSystemId != nullptr);
	_writer.write(pPublicId != nullptr);
	writeIdentifyingStringOrIndex(name, DocumentVocabulary::OTHER_NCNAME);
	if (pSystemId) writeIdentifyingStringOrIndex(*pSystemId, DocumentVocabulary::OTHER_URI);
	if (pPublicId) writeIdentifyingStringOrIndex(*pPublicId, DocumentVocabulary::OTHER_URI);
}


//
// Header, initial vocabulary and declaration lists
//


void FastInfosetWriter::writeHeader()
{
	const bool hasAdditionalData = false;
	const bool hasNotations = !_notations.empty();
	const bool hasUnparsedEntities = !_unparsedEntities.empty();
	const bool hasCharacterEncodingScheme = false;
	const bool standalone = false;
	const bool hasVersion = false;

	// Only what the application added beyond a fresh vocabulary (or beyond
	// the external one) is announced. Most documents add nothing, and
	// then no difference needs to be computed.
	std::unique_ptr<DocumentVocabulary> pDifference;
	const bool hasExternalVocabulary = !_externalVocabularyURI.empty();
	if (hasExternalVocabulary || !_vocabularyFresh) settleTables();
	if (hasExternalVocabulary && !hasOnlyExternalEntries())
	{
		keepExternalVocabulary();
		pDifference.reset(new DocumentVocabulary(_vocabulary - externalVocabulary()));
	}
	else if (!hasExternalVocabulary && !_vocabularyFresh && !hasOnlyPredefinedEntries())
		pDifference.reset(new DocumentVocabulary(_vocabulary - DocumentVocabulary(DocumentVocabulary::VOC_MAP)));

	bool hasInitialVocabulary = hasExternalVocabulary;
	if (pDifference)
	{
		const DocumentVocabulary& difference = *pDifference;
		hasInitialVocabulary = hasInitialVocabulary
			|| !difference.restrictedAlphabets().alphabets().empty()
			|| !difference.elementVocabulary()->empty()
			|| !difference.attributeVocabulary()->empty();
		for (DocumentVocabulary::ID id: STRING_TABLES)
			hasInitialVocabulary = hasInitialVocabulary || hasEntries(difference.vocabulary(id));
	}

	if (_writeXMLDeclaration || _writer.bitPos() != 0)
	{
		Encoder::documentPreHeader(_writer, _writeXMLDeclaration);
		poco_assert (_writer.bitPos() == 1);
		_writer.write(hasAdditionalData);
		_writer.write(hasInitialVocabulary);
		_writer.write(hasNotations);
		_writer.write(hasUnparsedEntities);
		_writer.write(hasCharacterEncodingScheme);
		_writer.write(standalone);
		_writer.write(hasVersion);
	}
	else
	{
		// The identification, the version, a '0' bit and the flags above
		// make five whole octets: they go out in one write.
		const char octets[] = {
			static_cast<char>(Encoder::DOCUMENTSTART >> 8), 0, 0, 1,
			static_cast<char>((hasAdditionalData << 6) | (hasInitialVocabulary << 5) | (hasNotations << 4)
				| (hasUnparsedEntities << 3) | (hasCharacterEncodingScheme << 2) | (standalone << 1) | int(hasVersion))
		};
		_writer.write(octets, sizeof(octets));
	}

	poco_assert (!hasAdditionalData);
	if (hasInitialVocabulary && pDifference)
		writeInitialVocabulary(*pDifference);
	else if (hasInitialVocabulary)
		writeExternalVocabularyOnly();
	if (hasNotations) writeNotations(_notations);
	if (hasUnparsedEntities) writeUnparsedEntities(_unparsedEntities);
	poco_assert (!hasCharacterEncodingScheme);
	poco_assert (!standalone);
	poco_assert (!hasVersion);
}


bool FastInfosetWriter::hasOnlyExternalEntries() const
{
	// Tables only grow: as large as the external vocabulary, they hold nothing else.
	if (!_vocabularyIsExternal) return false;
	std::size_t i = 0;
	bool same = true;
	forEachTable(_vocabulary, [this, &i, &same](const auto& table) { same = same && table.size() == _externalSizes[i++]; });
	return same && _vocabulary.restrictedAlphabets().alphabets().size() == _externalSizes[i];
}


void FastInfosetWriter::writeExternalVocabularyOnly()
{
	// An initial vocabulary whose only section names the external vocabulary.
	_writer.write(0, 3);
	_writer.write(true);
	_writer.write(0, 12);
	writeExternalVocabulary(_externalVocabularyURI);
}


bool FastInfosetWriter::hasOnlyPredefinedEntries() const
{
	static const std::size_t BUILT_IN_ALPHABETS = 15;
	if (_vocabulary.restrictedAlphabets().alphabets().size() > BUILT_IN_ALPHABETS) return false;
	for (DocumentVocabulary::ID id: STRING_TABLES)
	{
		const Vocabulary<std::string>* pVoc = _vocabulary.vocabulary(id);
		if (!pVoc) continue;
		if (pVoc->size() > 2) return false;
		for (unsigned int i = 0; i < pVoc->size(); ++i)
		{
			const std::string& value = pVoc->value(i);
			const bool predefined = value.empty()
				|| (id == DocumentVocabulary::PREFIX && value == NamespaceSupport::XML_NAMESPACE_PREFIX)
				|| (id == DocumentVocabulary::NAMESPACE_NAME && value == NamespaceSupport::XML_NAMESPACE);
			if (!predefined) return false;
		}
	}
	const Vocabulary<QualifiedNameEntry>* nameTables[] = {_vocabulary.elementVocabulary(), _vocabulary.attributeVocabulary()};
	for (const Vocabulary<QualifiedNameEntry>* pVoc: nameTables)
	{
		if (pVoc->size() > 1 || (pVoc->size() == 1 && pVoc->value(0) != QualifiedNameEntry())) return false;
	}
	return true;
}


void FastInfosetWriter::writeInitialVocabulary(const DocumentVocabulary& voc)
{
	// Tables in the order of the initial vocabulary, which puts character
	// chunks before other strings.
	static const DocumentVocabulary::ID NAME_TABLES[] = {
		DocumentVocabulary::PREFIX, DocumentVocabulary::NAMESPACE_NAME, DocumentVocabulary::LOCAL_NAME,
		DocumentVocabulary::OTHER_NCNAME, DocumentVocabulary::OTHER_URI
	};
	static const DocumentVocabulary::ID VALUE_TABLES[] = {
		DocumentVocabulary::ATTRIBUTE_VALUE, DocumentVocabulary::CHARACTER_CONTENT_CHUNK, DocumentVocabulary::OTHER_STRING
	};

	const bool hasExternalVocabulary = !_externalVocabularyURI.empty();
	const bool hasAlphabets = !voc.restrictedAlphabets().alphabets().empty();
	const bool hasElementNames = !voc.elementVocabulary()->empty();
	const bool hasAttributeNames = !voc.attributeVocabulary()->empty();

	_writer.write(0, 3);
	_writer.write(hasExternalVocabulary);
	_writer.write(hasAlphabets);
	_writer.write(false); // encoding algorithms are never announced
	for (DocumentVocabulary::ID id: NAME_TABLES) _writer.write(hasEntries(voc.vocabulary(id)));
	for (DocumentVocabulary::ID id: VALUE_TABLES) _writer.write(hasEntries(voc.vocabulary(id)));
	_writer.write(hasElementNames);
	_writer.write(hasAttributeNames);

	if (hasExternalVocabulary) writeExternalVocabulary(_externalVocabularyURI);
	if (hasAlphabets) writeRestrictedAlphabet(voc.restrictedAlphabets());
	for (DocumentVocabulary::ID id: NAME_TABLES)
	{
		if (hasEntries(voc.vocabulary(id))) writeVocabulary(*voc.vocabulary(id));
	}
	for (DocumentVocabulary::ID id: VALUE_TABLES)
	{
		if (hasEntries(voc.vocabulary(id))) writeEncodedVocabulary(*voc.vocabulary(id));
	}
	if (hasElementNames) writeNameSurrogates(*voc.elementVocabulary(), true);
	if (hasAttributeNames) writeNameSurrogates(*voc.attributeVocabulary(), false);
}


void FastInfosetWriter::writeExternalVocabulary(const std::string& uri)
{
	_writer.write(false);
	Encoder::nonEmptyOctetString(_writer, uri);
}


void FastInfosetWriter::writeRestrictedAlphabet(const DocumentRestrictedAlphabet& alphabets)
{
	const unsigned int numEntries = static_cast<unsigned int>(alphabets.alphabets().size());
	poco_assert (numEntries > 0);
	Encoder::lengthOfSequence(_writer, numEntries);
	for (const RestrictedAlphabet& alphabet: alphabets.alphabets())
	{
		_writer.write(false);
		Encoder::nonEmptyOctetString(_writer, alphabet.alphabet());
	}
}


void FastInfosetWriter::writeVocabulary(const Vocabulary<std::string>& voc)
{
	const unsigned int numEntries = voc.size();
	poco_assert (numEntries > 0);
	Encoder::lengthOfSequence(_writer, numEntries);
	for (unsigned int i = 0; i < numEntries; ++i)
	{
		_writer.write(false);
		Encoder::nonEmptyOctetString(_writer, voc.value(i));
	}
}


void FastInfosetWriter::writeEncodedVocabulary(const Vocabulary<std::string>& voc)
{
	const unsigned int numEntries = voc.size();
	poco_assert (numEntries > 0);
	Encoder::lengthOfSequence(_writer, numEntries);
	for (unsigned int i = 0; i < numEntries; ++i)
	{
		// Meant as two '0' bits; a count of 0 bits is refused by the bit
		// writer's assertion, so such a table cannot be announced.
		_writer.write(int(2), 0);
		writeEncodedCharacterString(voc.value(i), 0);
	}
}


void FastInfosetWriter::writeNameSurrogates(const Vocabulary<QualifiedNameEntry>& voc, bool)
{
	const unsigned int numEntries = voc.size();
	poco_assert (numEntries > 0);
	Encoder::lengthOfSequence(_writer, numEntries);
	for (unsigned int i = 0; i < numEntries; ++i)
	{
		// Meant as six '0' bits; refused by the bit writer like the padding above.
		_writer.write(int(6), 0);
		writeNameSurrogate(voc.value(i));
	}
}


void FastInfosetWriter::writeNameSurrogate(const QualifiedNameEntry& qne)
{
	const bool hasPrefix = qne.prefixId() != 0;
	const bool hasNamespace = qne.namespaceId() != 0;
	_writer.write(hasPrefix);
	_writer.write(hasNamespace);
	if (hasPrefix) Encoder::pad0ThenInteger(_writer, qne.prefixId());
	if (hasNamespace) Encoder::pad0ThenInteger(_writer, qne.namespaceId());
	Encoder::pad0ThenInteger(_writer, qne.localNameId());
}


void FastInfosetWriter::writeNotations(const std::vector<Notation>& notations)
{
	poco_assert (!notations.empty());
	for (const Notation& notation: notations)
	{
		_writer.write(NOTATION, 6);
		writeNotation(notation.getName(), pointerIfPresent(notation.getPublicId()), pointerIfPresent(notation.getSystemId()));
	}
	_writer.write(END_OF_LIST, 8);
}


void FastInfosetWriter::writeUnparsedEntities(const std::vector<UnparsedEntity>& unparsedEntities)
{
	poco_assert (!unparsedEntities.empty());
	for (const UnparsedEntity& entity: unparsedEntities)
	{
		_writer.write(UNPARSED_ENTITY, 7);
		writeUnparsedEntity(entity.getName(), pointerIfPresent(entity.getPublicId()), entity.getSystemId(), entity.getNotationName());
	}
	_writer.write(END_OF_LIST, 8);
}


} } // namespace Korvo::FastInfoset
