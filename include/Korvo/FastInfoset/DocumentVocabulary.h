//
// DocumentVocabulary.h
//
// Library: FastInfoset
// Package: Vocabulary
// Module:  DocumentVocabulary
//
// The complete set of indexed tables of one document.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_DocumentVocabulary_INCLUDED
#define FastInfoset_DocumentVocabulary_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/Vocabulary.h"
#include "Korvo/FastInfoset/QualifiedNameVocabulary.h"
#include "Korvo/FastInfoset/DocumentRestrictedAlphabet.h"
#include "Korvo/FastInfoset/EncodingAlgorithm.h"
#include "Korvo/FastInfoset/DecodingAlgorithm.h"
#include <string>
#include <vector>


namespace Korvo {
namespace FastInfoset {


class FastInfoset_API DocumentVocabulary
	/// All tables that a document builds while it is written or read: eight
	/// string tables, the element-name and attribute-name tables, the
	/// restricted alphabets and the encoding and decoding algorithms. The
	/// same object serves as an external vocabulary named by its URI.
	///
	/// A new vocabulary holds "xml" at PREFIX 1 and the XML namespace name at
	/// NAMESPACE_NAME 1; index 0 of every table is a placeholder. With
	/// VOC_HASH every table has a fixed capacity (PREFIX and NAMESPACE_NAME
	/// 251, LOCAL_NAME, OTHER_NCNAME and ATTRIBUTE_VALUE 40009, OTHER_URI and
	/// OTHER_STRING 19, CHARACTER_CONTENT_CHUNK 65521, element and attribute
	/// names 10009 entries); one value more throws PoolOverflowException.
{
public:
	enum ID
	{
		RESTRICTED_ALPHABET = 0,
		ENCODING_ALGORITHM = 1,
		PREFIX = 2,
		NAMESPACE_NAME = 3,
		LOCAL_NAME = 4,
		OTHER_NCNAME = 5,
		OTHER_URI = 6,
		ATTRIBUTE_VALUE = 7,
		OTHER_STRING = 8,
		CHARACTER_CONTENT_CHUNK = 9,
		ELEMENT_NAME = 10,
		ATTRIBUTE_NAME = 11,
		INVALID = 0xFFFFFFFF
	};

	enum VocabularyImpl
	{
		VOC_HASH = 0,
			/// Fixed-size hash tables: fast look-ups both ways, bounded capacity.
		VOC_MAP = 1,
			/// Ordered maps: look-ups both ways, no capacity limit.
		VOC_VECTOR = 2
			/// Index-to-value only; for reading documents.
	};

	enum DontInitialize
	{
		DONT_INITIALIZE = 0
	};

	enum CharacterStringEncoding
	{
		UTF8 = 0,
		UTF16 = 1,
		RESTRICTEDALPHABET = 2,
		ENCODINGALGORITHM = 3
	};

	explicit DocumentVocabulary(VocabularyImpl impl = VOC_HASH);
		/// Creates a vocabulary with an empty URI and its predefined entries.

	DocumentVocabulary(const std::string& uri, VocabularyImpl impl);
		/// Creates an external vocabulary named uri.

	explicit DocumentVocabulary(DontInitialize);
		/// Creates a vocabulary without any tables.

	DocumentVocabulary(const DocumentVocabulary& other);
		/// Copies every table, the restricted alphabets and the encoding
		/// algorithms; the decoding algorithms are the built-in ones.

	DocumentVocabulary(const DocumentVocabulary& other, VocabularyImpl impl);
		/// Copies other as the copy constructor does, into tables of the kind
		/// impl that hold the same values at the same indices.

	DocumentVocabulary& operator = (const DocumentVocabulary& other);
		/// Copies as the copy constructor does, but keeps this object's
		/// decoding algorithms.

	~DocumentVocabulary();

	void reset();
		/// Returns the tables and the restricted alphabets to their freshly
		/// created state (same kind and URI). The encoding and decoding
		/// algorithms, which an application registers, are kept.

	void clear();
		/// Deletes all tables.

	DocumentVocabulary operator - (const DocumentVocabulary& doc) const;
		/// What this vocabulary holds beyond doc, table by table, renumbered from 0.

	Vocabulary<std::string>* vocabulary(ID voc) const;
		/// The string table voc (PREFIX to CHARACTER_CONTENT_CHUNK); null
		/// when the vocabulary has no tables.

	void initialize(ID vocabulary, Vocabulary<std::string>* pVoc);
		/// Replaces the string table vocabulary with pVoc, taking ownership
		/// (also when the identifier is rejected).

	Vocabulary<QualifiedNameEntry>* elementVocabulary() const;
	Vocabulary<QualifiedNameEntry>* attributeVocabulary() const;

	DocumentRestrictedAlphabet& restrictedAlphabets();
	const DocumentRestrictedAlphabet& restrictedAlphabets() const;

	EncodingAlgorithm& encodings();
	const EncodingAlgorithm& encodings() const;

	DecodingAlgorithm& decodings();
	const DecodingAlgorithm& decodings() const;

	const std::string& getURI() const;

	VocabularyImpl impl() const;

	unsigned int index(ID id, const std::string& value, bool& valueExisted);
		/// Index of value in string table id, adding it when absent.

	unsigned int exists(ID id, const std::string& value, bool& found) const;
		/// Index of value in string table id, or 0xFFFFFFFF when absent.

	const std::string& value(ID id, unsigned int index) const;
		/// The string at index of table id.

protected:
	void init();
	void copy(const DocumentVocabulary& voc);

	void create();
		/// New tables of the chosen kind.

	template <template <class> class V>
	void create();

private:
	Vocabulary<std::string>& table(ID id) const;
	bool emptyTables(bool values = true);
		/// Empties every table in place when all are of the chosen kind;
		/// without values, the attribute-value and chunk tables stay.
	template <class T>
	bool isStandardTable(const Vocabulary<T>* pTable, unsigned int size) const;
	template <class T>
	static void emptyTable(Vocabulary<T>& table);
	template <class T>
	static bool isPlaceholder(const T& value);
	static bool isPlaceholder(const std::string& value);
	static void keepBuiltIn(Vocabulary<std::string>& table, const std::string& builtIn);
		/// Empties table down to the placeholder and builtIn, when it holds
		/// them at 0 and 1, else as emptyTable().
	static const std::string& xmlPrefix();
	static const std::string& xmlNamespace();
	template <class T>
	static void copyValues(const Vocabulary<T>& from, Vocabulary<T>& to);
	void swap(DocumentVocabulary& other);
	bool hasOnlyBuiltIns() const;
		/// True without a URI, with the built-in alphabets and encoding
		/// algorithms only: as new but for the tables.
	void swapTables(DocumentVocabulary& other);
		/// swap() of the tables alone, between vocabularies whose URI,
		/// alphabets and encoding algorithms are alike.
	bool takeSpareTables();
	bool giveSpareTables();
	bool canBeSpare() const;
		/// Whether the tables are all there and small enough to wait,
		/// emptied, for the next vocabulary.
	bool hasStandardTables() const;
		/// Whether every table is of the chosen kind and size.
	bool copyIntoSpareTables(const DocumentVocabulary& other);
		/// copy() into the thread's spare tables, where other's tables are
		/// of the kind they are and there are spare tables.
		/// Tables of a destroyed vocabulary wait, emptied, for the next
		/// one of their kind made on the same thread.
	Korvo::UInt64 tablesSerial();
		/// A number, unique in the process, for the tables this vocabulary
		/// holds; a vocabulary that takes them as spare tables next finds
		/// it as tablesFrom().
	Korvo::UInt64 tablesFrom() const;
		/// The tablesSerial() of the vocabulary that left these tables,
		/// where they came straight from it, untouched in between; 0 for
		/// tables made, copied or replaced otherwise.

	bool holdsCopyOf(const DocumentVocabulary& other, VocabularyImpl impl) const;
		/// True when this vocabulary holds exactly what a copy of other
		/// into tables of the kind impl would hold (the writer's copy of an
		/// external vocabulary): the same URI, alphabets and values at the
		/// same indices, in tables of the chosen kind and size, and only
		/// built-in encoding algorithms on both sides.
	template <class T>
	static bool sameValues(const Vocabulary<T>& left, const Vocabulary<T>& right);
	template <class T>
	static bool sameValue(const T& left, const T& right);
	static bool sameValue(const std::string& left, const std::string& right);

	friend class FastInfosetParser;
		/// Which hands its records of the tables' content on with them.
	friend class FastInfosetWriter;
		/// Which keeps its copy of an external vocabulary for the next
		/// writer on the thread, and swaps it in when it still holds a copy.

	VocabularyImpl                        _impl;
	std::vector<Vocabulary<std::string>*> _vocabularies;
	DocumentRestrictedAlphabet            _restrictedAlphabets;
	EncodingAlgorithm                     _encodings;
	DecodingAlgorithm                     _decodings;
	Vocabulary<QualifiedNameEntry>*       _pElementVocabulary;
	Vocabulary<QualifiedNameEntry>*       _pAttributeVocabulary;
	std::string                           _uri;
	bool                                  _standardTables;
		/// True when the tables are known to be of the chosen kind (made
		/// by create() or checked since), so that emptying them need not
		/// look again.
	Korvo::UInt64                         _tablesSerial = 0;
	Korvo::UInt64                         _tablesFrom = 0;
};


//
// inlines
//
inline Vocabulary<std::string>* DocumentVocabulary::vocabulary(ID voc) const
{
	poco_assert (voc > DocumentVocabulary::ENCODING_ALGORITHM && voc < DocumentVocabulary::ELEMENT_NAME);
	return voc < _vocabularies.size() ? _vocabularies[voc] : nullptr;
}


inline Vocabulary<std::string>& DocumentVocabulary::table(ID id) const
{
	Vocabulary<std::string>* pVoc = vocabulary(id);
	poco_check_ptr (pVoc);
	return *pVoc;
}


inline unsigned int DocumentVocabulary::index(ID id, const std::string& value, bool& valueExisted)
{
	return table(id).index(value, valueExisted);
}


inline unsigned int DocumentVocabulary::exists(ID id, const std::string& value, bool& found) const
{
	return table(id).exists(value, found);
}


inline const std::string& DocumentVocabulary::value(ID id, unsigned int index) const
{
	return table(id).value(index);
}


inline Vocabulary<QualifiedNameEntry>* DocumentVocabulary::elementVocabulary() const
{
	poco_assert (_pElementVocabulary);
	return _pElementVocabulary;
}


inline Vocabulary<QualifiedNameEntry>* DocumentVocabulary::attributeVocabulary() const
{
	poco_assert (_pAttributeVocabulary);
	return _pAttributeVocabulary;
}


inline DocumentRestrictedAlphabet& DocumentVocabulary::restrictedAlphabets()
{
	return _restrictedAlphabets;
}


inline const DocumentRestrictedAlphabet& DocumentVocabulary::restrictedAlphabets() const
{
	return _restrictedAlphabets;
}


inline EncodingAlgorithm& DocumentVocabulary::encodings()
{
	return _encodings;
}


inline const EncodingAlgorithm& DocumentVocabulary::encodings() const
{
	return _encodings;
}


inline DecodingAlgorithm& DocumentVocabulary::decodings()
{
	return _decodings;
}


inline const DecodingAlgorithm& DocumentVocabulary::decodings() const
{
	return _decodings;
}


inline const std::string& DocumentVocabulary::getURI() const
{
	return _uri;
}


inline DocumentVocabulary::VocabularyImpl DocumentVocabulary::impl() const
{
	return _impl;
}


inline Korvo::UInt64 DocumentVocabulary::tablesFrom() const
{
	return _tablesFrom;
}


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_DocumentVocabulary_INCLUDED
