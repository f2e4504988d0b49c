//
// DocumentVocabulary.cpp
//
// Library: FastInfoset
// Package: Vocabulary
// Module:  DocumentVocabulary
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/DocumentVocabulary.h"
#include "ThreadSpare.h"
#include "Korvo/FastInfoset/HashVocabulary.h"
#include "Korvo/FastInfoset/MapVocabulary.h"
#include "Korvo/FastInfoset/VectorVocabulary.h"
#include <atomic>
#include <memory>
#include <typeinfo>
#include <utility>


namespace Korvo {
namespace FastInfoset {


namespace
{
	// Slot counts of the hash tables (primes), in ID order from PREFIX.
	const unsigned int STRING_TABLE_SIZES[] =
	{
		251,    // PREFIX
		251,    // NAMESPACE_NAME
		40009,  // LOCAL_NAME
		40009,  // OTHER_NCNAME
		19,     // OTHER_URI
		40009,  // ATTRIBUTE_VALUE
		19,     // OTHER_STRING
		65521   // CHARACTER_CONTENT_CHUNK
	};
	const unsigned int NAME_TABLE_SIZE = 10009;

	const std::size_t TABLE_SLOTS = DocumentVocabulary::CHARACTER_CONTENT_CHUNK + 1;
		// Entries of _vocabularies: the two unused ones and the eight string tables.

	const std::size_t BUILT_IN_ALPHABETS = 15;
		// Numeric, date-time and the 13 reserved ones, which a document cannot change.

	const std::size_t MAX_SPARE_STORAGE = 4096;
		// Tables with room for more values are freed rather than kept.

	struct SpareTables
		/// The tables of one vocabulary, emptied, or none.
	{
		std::vector<Vocabulary<std::string>*> strings;
			/// The vector with its storage: the next vocabulary takes both.
		Vocabulary<QualifiedNameEntry>* pElements;
		Vocabulary<QualifiedNameEntry>* pAttributes;
		Korvo::UInt64 serial;
			/// The giver's tablesSerial().
	};

	const std::size_t SPARE_SETS = 2;
		// Sets kept per kind and thread: a vocabulary copied while another
		// is alive (a writer's own and the one it starts from) finds one too.

	struct SpareSets
		/// The spare tables of one thread, SPARE_SETS sets per kind of
		/// vocabulary, filled from the first; the last given is taken first.
	{
		SpareTables sets[3][SPARE_SETS];

		~SpareSets()
		{
			for (auto& kind: sets)
			{
				for (SpareTables& set: kind)
				{
					if (!set.pElements) continue;
					for (auto pTable: set.strings) delete pTable;
					delete set.pElements;
					delete set.pAttributes;
				}
			}
		}
	};

	SpareTables* spareSet(DocumentVocabulary::VocabularyImpl impl, bool toGive)
		/// The set for impl to give tables into (an empty one) or to take
		/// them from (a filled one), or null where there is none or the
		/// thread's sets are gone.
	{
		SpareSets* pSets = ThreadSpare<SpareSets>::get();
		if (!pSets || impl > DocumentVocabulary::VOC_VECTOR) return nullptr;
		SpareTables* kind = pSets->sets[impl];
		if (toGive)
		{
			for (std::size_t i = 0; i < SPARE_SETS; ++i)
			{
				if (!kind[i].pElements) return &kind[i];
			}
		}
		else
		{
			for (std::size_t i = SPARE_SETS; i-- > 0;)
			{
				if (kind[i].pElements) return &kind[i];
			}
		}
		return nullptr;
	}

	template <class T>
	T* cloneOf(const T* pTable)
	{
		return pTable ? pTable->clone() : nullptr;
	}

	template <class T>
	T* difference(const T* pTable, const T* pOther)
		/// What pTable holds beyond pOther: all of it when there is no pOther.
	{
		if (!pTable) return nullptr;
		return pOther ? pTable->subtract(*pOther) : pTable->clone();
	}
}


DocumentVocabulary::DocumentVocabulary(VocabularyImpl impl):
	_impl(impl),
	_pElementVocabulary(nullptr),
	_pAttributeVocabulary(nullptr),
	_standardTables(false)
{
	try
	{
		reset();
	}
	catch (...)
	{
		clear();
		throw;
	}
}


DocumentVocabulary::DocumentVocabulary(const std::string& uri, VocabularyImpl impl):
	_impl(impl),
	_pElementVocabulary(nullptr),
	_pAttributeVocabulary(nullptr),
	_uri(uri),
	_standardTables(false)
{
	try
	{
		reset();
	}
	catch (...)
	{
		clear();
		throw;
	}
}


DocumentVocabulary::DocumentVocabulary(DontInitialize):
	_impl(VOC_HASH),
	_pElementVocabulary(nullptr),
	_pAttributeVocabulary(nullptr),
	_standardTables(false)
{
}


DocumentVocabulary::DocumentVocabulary(const DocumentVocabulary& other):
	_impl(other._impl),
	_restrictedAlphabets(true),
	_pElementVocabulary(nullptr),
	_pAttributeVocabulary(nullptr),
	_standardTables(false)
{
	try
	{
		if (!copyIntoSpareTables(other)) copy(other);
	}
	catch (...)
	{
		clear();
		throw;
	}
}


DocumentVocabulary::DocumentVocabulary(const DocumentVocabulary& other, VocabularyImpl impl):
	_impl(impl),
	_restrictedAlphabets(other._restrictedAlphabets),
	_encodings(other._encodings),
	_pElementVocabulary(nullptr),
	_pAttributeVocabulary(nullptr),
	_uri(other._uri),
	_standardTables(false)
{
	try
	{
		reset();
		_restrictedAlphabets = other._restrictedAlphabets;
		if (other._vocabularies.size() < TABLE_SLOTS || !other._pElementVocabulary || !other._pAttributeVocabulary)
			throw Korvo::InvalidArgumentException("A vocabulary without tables cannot be copied into other tables");
		for (std::size_t id = PREFIX; id < TABLE_SLOTS; ++id) copyValues(*other._vocabularies[id], *_vocabularies[id]);
		copyValues(*other._pElementVocabulary, *_pElementVocabulary);
		copyValues(*other._pAttributeVocabulary, *_pAttributeVocabulary);
	}
	catch (...)
	{
		clear();
		throw;
	}
}


template <class T>
void DocumentVocabulary::copyValues(const Vocabulary<T>& from, Vocabulary<T>& to)
{
	// Equal values stay apart, so that every index keeps its value.
	// Tables that hold the same already (the placeholder and built-in
	// entries of emptied tables, as a rule) stay as they are.
	unsigned int same = 0;
	if (to.size() == from.size())
	{
		while (same < from.size() && from.value(same) == to.value(same)) ++same;
		if (same == from.size()) return;
	}
	to.truncate(0);
	IndexedVocabulary<T>* pIndexed = dynamic_cast<IndexedVocabulary<T>*>(&to);
	for (unsigned int i = 0; i < from.size(); ++i)
	{
		bool existed;
		if (pIndexed)
			pIndexed->append(from.value(i));
		else
			to.index(from.value(i), existed);
	}
}


DocumentVocabulary& DocumentVocabulary::operator = (const DocumentVocabulary& other)
{
	if (this != &other)
	{
		// Built aside and swapped in, so that a failure leaves this object as it was.
		DocumentVocabulary copied(other);
		swap(copied);
	}
	return *this;
}


DocumentVocabulary::~DocumentVocabulary()
{
	if (!giveSpareTables()) clear();
}


bool DocumentVocabulary::canBeSpare() const
{
	if (_vocabularies.size() != TABLE_SLOTS || !_pElementVocabulary || !_pAttributeVocabulary) return false;
	for (std::size_t id = PREFIX; id < TABLE_SLOTS; ++id)
	{
		if (!_vocabularies[id] || _vocabularies[id]->storage() > MAX_SPARE_STORAGE) return false;
	}
	return _pElementVocabulary->storage() <= MAX_SPARE_STORAGE && _pAttributeVocabulary->storage() <= MAX_SPARE_STORAGE && hasStandardTables();
}


bool DocumentVocabulary::giveSpareTables()
{
	if (!canBeSpare()) return false;
	SpareTables* pSet = spareSet(_impl, true);
	if (!pSet) return false;
	try
	{
		if (!emptyTables()) return false;
	}
	catch (...)
	{
		return false;
	}
	pSet->strings.swap(_vocabularies);
	pSet->pElements = _pElementVocabulary;
	pSet->pAttributes = _pAttributeVocabulary;
	pSet->serial = _tablesSerial;
	return true;
}


bool DocumentVocabulary::hasStandardTables() const
{
	if (_vocabularies.size() != TABLE_SLOTS) return false;
	if (_standardTables) return true;
	for (std::size_t id = PREFIX; id < TABLE_SLOTS; ++id)
	{
		if (!isStandardTable(_vocabularies[id], STRING_TABLE_SIZES[id - PREFIX])) return false;
	}
	return isStandardTable(_pElementVocabulary, NAME_TABLE_SIZE) && isStandardTable(_pAttributeVocabulary, NAME_TABLE_SIZE);
}


bool DocumentVocabulary::copyIntoSpareTables(const DocumentVocabulary& other)
{
	// A vocabulary copied for each message (a writer's starting vocabulary,
	// say) fills the storage the last one left instead of allocating anew.
	if (!other.hasStandardTables() || !takeSpareTables()) return false;
	// The tables hold other values now: no records of their content apply.
	_tablesFrom = 0;
	_uri = other._uri;
	_restrictedAlphabets = other._restrictedAlphabets;
	_encodings = other._encodings;
	for (std::size_t id = PREFIX; id < TABLE_SLOTS; ++id) copyValues(*other._vocabularies[id], *_vocabularies[id]);
	copyValues(*other._pElementVocabulary, *_pElementVocabulary);
	copyValues(*other._pAttributeVocabulary, *_pAttributeVocabulary);
	return true;
}


bool DocumentVocabulary::holdsCopyOf(const DocumentVocabulary& other, VocabularyImpl impl) const
{
	// A copy into tables of other's own kind clones them: only standard
	// ones are made alike. Tables of another kind are always standard.
	if (_impl != impl || !hasStandardTables() || other._vocabularies.size() != TABLE_SLOTS
		|| !other._pElementVocabulary || !other._pAttributeVocabulary
		|| (other._impl == impl && !other.hasStandardTables()))
		return false;
	// Application algorithms are functions that cannot be told apart cheaply.
	if (_encodings.size() != EncodingAlgorithm::USER_DEFINED || other._encodings.size() != EncodingAlgorithm::USER_DEFINED || _uri != other._uri) return false;
	const std::vector<RestrictedAlphabet>& alphabets = _restrictedAlphabets.alphabets();
	const std::vector<RestrictedAlphabet>& otherAlphabets = other._restrictedAlphabets.alphabets();
	if (&alphabets != &otherAlphabets)
	{
		if (alphabets.size() != otherAlphabets.size()) return false;
		for (std::size_t i = 0; i < alphabets.size(); ++i)
		{
			if (alphabets[i].alphabet() != otherAlphabets[i].alphabet()) return false;
		}
	}
	for (std::size_t id = PREFIX; id < TABLE_SLOTS; ++id)
	{
		if (!other._vocabularies[id] || !sameValues(*_vocabularies[id], *other._vocabularies[id])) return false;
	}
	return sameValues(*_pElementVocabulary, *other._pElementVocabulary) && sameValues(*_pAttributeVocabulary, *other._pAttributeVocabulary);
}


template <class T>
bool DocumentVocabulary::sameValues(const Vocabulary<T>& left, const Vocabulary<T>& right)
{
	const unsigned int size = left.size();
	if (size != right.size()) return false;
	// The library's own kinds hold their values where lookup() finds them;
	// an application's kind is asked through value().
	const std::type_info& kind = typeid(right);
	const bool stored = kind == typeid(HashVocabulary<T>) || kind == typeid(MapVocabulary<T>) || kind == typeid(VectorVocabulary<T>);
	for (unsigned int i = 0; i < size; ++i)
	{
		const T* pLeft = left.lookup(i);
		const T* pRight = stored ? right.lookup(i) : &right.value(i);
		if (!pLeft || !pRight || !sameValue(*pLeft, *pRight)) return false;
	}
	return true;
}


bool DocumentVocabulary::takeSpareTables()
{
	SpareTables* pSet = spareSet(_impl, false);
	if (!pSet) return false;
	// _vocabularies is empty.
	_vocabularies.swap(pSet->strings);
	_pElementVocabulary = pSet->pElements;
	_pAttributeVocabulary = pSet->pAttributes;
	pSet->pElements = nullptr;
	// They were checked when they were given.
	_standardTables = true;
	_tablesSerial = 0;
	_tablesFrom = pSet->serial;
	return true;
}


Korvo::UInt64 DocumentVocabulary::tablesSerial()
{
	static std::atomic<Korvo::UInt64> lastSerial(0);
	if (_tablesSerial == 0) _tablesSerial = ++lastSerial;
	return _tablesSerial;
}


void DocumentVocabulary::reset()
{
	// Tables of the chosen kind are emptied in place, which keeps their
	// storage for the next document; any other table is made anew.
	if (!emptyTables())
	{
		clear();
		if (!takeSpareTables())
		{
			_vocabularies.reserve(TABLE_SLOTS);
			create();
		}
	}
	init();
	// Alphabets that a document declared must not carry into the next one.
	if (_restrictedAlphabets.alphabets().size() != BUILT_IN_ALPHABETS) _restrictedAlphabets = DocumentRestrictedAlphabet();
}


bool DocumentVocabulary::emptyTables(bool values)
{
	if (_vocabularies.size() != TABLE_SLOTS) return false;
	if (!_standardTables)
	{
		for (std::size_t id = PREFIX; id < TABLE_SLOTS; ++id)
		{
			if (!isStandardTable(_vocabularies[id], STRING_TABLE_SIZES[id - PREFIX])) return false;
		}
		if (!isStandardTable(_pElementVocabulary, NAME_TABLE_SIZE) || !isStandardTable(_pAttributeVocabulary, NAME_TABLE_SIZE)) return false;
		_standardTables = true;
	}

	// The built-in prefix and namespace name stay where init() would put them again.
	keepBuiltIn(*_vocabularies[PREFIX], xmlPrefix());
	keepBuiltIn(*_vocabularies[NAMESPACE_NAME], xmlNamespace());
	for (std::size_t id = NAMESPACE_NAME + 1; id < TABLE_SLOTS; ++id)
	{
		if (values || (id != ATTRIBUTE_VALUE && id != CHARACTER_CONTENT_CHUNK)) emptyTable(*_vocabularies[id]);
	}
	emptyTable(*_pElementVocabulary);
	emptyTable(*_pAttributeVocabulary);
	return true;
}


template <class T>
bool DocumentVocabulary::isStandardTable(const Vocabulary<T>* pTable, unsigned int size) const
{
	if (!pTable) return false;
	switch (_impl)
	{
	case VOC_HASH:
		return typeid(*pTable) == typeid(HashVocabulary<T>) && static_cast<const HashVocabulary<T>*>(pTable)->tableSize() == size;
	case VOC_MAP:
		return typeid(*pTable) == typeid(MapVocabulary<T>);
	case VOC_VECTOR:
		return typeid(*pTable) == typeid(VectorVocabulary<T>);
	default:
		return false;
	}
}


void DocumentVocabulary::keepBuiltIn(Vocabulary<std::string>& table, const std::string& builtIn)
{
	const std::string* pFirst = table.lookup(0);
	const std::string* pSecond = table.lookup(1);
	if (pFirst && pFirst->empty() && pSecond && *pSecond == builtIn)
	{
		// Mostly a table that the document left untouched.
		if (table.lookup(2)) table.truncate(2);
	}
	else
		emptyTable(table);
}


template <class T>
void DocumentVocabulary::emptyTable(Vocabulary<T>& table)
{
	// Down to the placeholder; a table made without one (a difference) gets one.
	const T* pFirst = table.lookup(0);
	if (pFirst && isPlaceholder(*pFirst))
	{
		// Only a table that the document added to needs truncating.
		if (table.lookup(1)) table.truncate(1);
	}
	else
	{
		table.truncate(0);
		bool existed;
		table.index(T(), existed);
	}
}


template <class T>
inline bool DocumentVocabulary::sameValue(const T& left, const T& right)
{
	return left == right;
}


inline bool DocumentVocabulary::sameValue(const std::string& left, const std::string& right)
{
	return left.size() == right.size() && ValueHash<std::string>::sameOctets(left.data(), right.data(), left.size());
}


template <class T>
inline bool DocumentVocabulary::isPlaceholder(const T& value)
{
	return value == T();
}


inline bool DocumentVocabulary::isPlaceholder(const std::string& value)
{
	return value.empty();
}


void DocumentVocabulary::clear()
{
	_standardTables = false;
	_tablesSerial = 0;
	_tablesFrom = 0;
	for (auto pVoc: _vocabularies) delete pVoc;
	_vocabularies.clear();
	delete _pElementVocabulary;
	_pElementVocabulary = nullptr;
	delete _pAttributeVocabulary;
	_pAttributeVocabulary = nullptr;
}


void DocumentVocabulary::create()
{
	_vocabularies.push_back(nullptr);
	_vocabularies.push_back(nullptr);
	switch (_impl)
	{
	case VOC_HASH:
		create<HashVocabulary>();
		break;
	case VOC_MAP:
		create<MapVocabulary>();
		break;
	case VOC_VECTOR:
		create<VectorVocabulary>();
		break;
	default:
		throw Korvo::InvalidArgumentException("Unknown vocabulary implementation");
	}
}


template <template <class> class V>
void DocumentVocabulary::create()
{
	// _vocabularies has room for every table, so push_back cannot fail and
	// leak the table just made.
	for (unsigned int size: STRING_TABLE_SIZES)
	{
		_vocabularies.push_back(new V<std::string>(size));
	}
	_pElementVocabulary = new V<QualifiedNameEntry>(NAME_TABLE_SIZE);
	_pAttributeVocabulary = new V<QualifiedNameEntry>(NAME_TABLE_SIZE);
	_standardTables = true;
}


const std::string& DocumentVocabulary::xmlPrefix()
{
	static const std::string XML_PREFIX("xml");
	return XML_PREFIX;
}


const std::string& DocumentVocabulary::xmlNamespace()
{
	// Made once: the namespace name is too long to be built without allocating.
	static const std::string XML_NAMESPACE("http://www.w3.org/XML/1998/namespace");
	return XML_NAMESPACE;
}


void DocumentVocabulary::init()
{
	// Tables that emptyTables() left with their built-in entry keep it.
	bool dummy;
	if (_vocabularies[DocumentVocabulary::PREFIX]->size() != 2)
	{
		poco_assert (_vocabularies[DocumentVocabulary::PREFIX]->index(xmlPrefix(), dummy) == 1);
	}
	if (_vocabularies[DocumentVocabulary::NAMESPACE_NAME]->size() != 2)
	{
		poco_assert (_vocabularies[DocumentVocabulary::NAMESPACE_NAME]->index(xmlNamespace(), dummy) == 1);
	}
}


void DocumentVocabulary::copy(const DocumentVocabulary& voc)
{
	_uri = voc._uri;
	_impl = voc._impl;
	_vocabularies.reserve(voc._vocabularies.size());
	for (auto pVoc: voc._vocabularies)
	{
		_vocabularies.push_back(cloneOf(pVoc));
	}
	_restrictedAlphabets = voc._restrictedAlphabets;
	_encodings = voc._encodings;
	_pElementVocabulary = cloneOf(voc._pElementVocabulary);
	_pAttributeVocabulary = cloneOf(voc._pAttributeVocabulary);
}


void DocumentVocabulary::swap(DocumentVocabulary& other)
{
	// The decoding algorithms stay: assignment does not copy them.
	swapTables(other);
	std::swap(_restrictedAlphabets, other._restrictedAlphabets);
	std::swap(_encodings, other._encodings);
	_uri.swap(other._uri);
}


bool DocumentVocabulary::hasOnlyBuiltIns() const
{
	// A list of as many alphabets as the built-ins holds them: they come first.
	return _uri.empty() && _encodings.size() == EncodingAlgorithm::USER_DEFINED && _restrictedAlphabets.alphabets().size() == BUILT_IN_ALPHABETS;
}


void DocumentVocabulary::swapTables(DocumentVocabulary& other)
{
	std::swap(_impl, other._impl);
	_vocabularies.swap(other._vocabularies);
	std::swap(_pElementVocabulary, other._pElementVocabulary);
	std::swap(_pAttributeVocabulary, other._pAttributeVocabulary);
	std::swap(_standardTables, other._standardTables);
	std::swap(_tablesSerial, other._tablesSerial);
	std::swap(_tablesFrom, other._tablesFrom);
}


DocumentVocabulary DocumentVocabulary::operator - (const DocumentVocabulary& doc) const
{
	DocumentVocabulary result(DONT_INITIALIZE);
	result._impl = _impl;

	result._vocabularies.reserve(_vocabularies.size());
	auto itDoc = doc._vocabularies.begin();
	for (auto it = _vocabularies.begin(); it != _vocabularies.end(); ++it, ++itDoc)
	{
		poco_assert (itDoc != doc._vocabularies.end());
		result._vocabularies.push_back(difference(*it, *itDoc));
	}
	result._restrictedAlphabets = _restrictedAlphabets - doc._restrictedAlphabets;
	result._pElementVocabulary = difference(_pElementVocabulary, doc._pElementVocabulary);
	result._pAttributeVocabulary = difference(_pAttributeVocabulary, doc._pAttributeVocabulary);
	return result;
}


void DocumentVocabulary::initialize(ID vocabulary, Vocabulary<std::string>* pVoc)
{
	std::unique_ptr<Vocabulary<std::string>> pNew(pVoc);
	poco_assert (vocabulary > DocumentVocabulary::ENCODING_ALGORITHM && vocabulary < DocumentVocabulary::ELEMENT_NAME);
	if (_vocabularies.size() < TABLE_SLOTS) _vocabularies.resize(TABLE_SLOTS, nullptr);
	_standardTables = false;
	_tablesSerial = 0;
	_tablesFrom = 0;
	if (_vocabularies[vocabulary] != pVoc)
	{
		delete _vocabularies[vocabulary];
		_vocabularies[vocabulary] = pNew.release();
	}
	else pNew.release();
}


} } // namespace Korvo::FastInfoset
