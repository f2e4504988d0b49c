//
// FastInfosetParser.h
//
// Library: FastInfoset
// Package: Parser
// Module:  FastInfosetParser
//
// The SAX2 reader of Fast Infoset documents.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_FastInfosetParser_INCLUDED
#define FastInfoset_FastInfosetParser_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/BitStreamReader.h"
#include "Korvo/FastInfoset/Decoder.h"
#include "Korvo/FastInfoset/DocumentVocabulary.h"
#include "Korvo/FastInfoset/ExternalVocabularies.h"
#include "Korvo/FastInfoset/Encoding.h"
#include "Korvo/FastInfoset/QualifiedNameVocabulary.h"
#include "Korvo/FastInfoset/Vocabulary.h"
#include "Poco/SAX/XMLReader.h"
#include "Poco/SAX/AttributesImpl.h"
#include <cstddef>
#include <deque>
#include <list>
#include <memory>
#include <string>
#include <utility>
#include <vector>


namespace Poco {
namespace XML {
	class XMLWriter;
} }


namespace Korvo {
namespace FastInfoset {


class FastInfosetWriter;
class FISContentHandler;
class FISDocumentHandler;
class NullRefEncoding;
class RecycledAttributes;
template <class T> class NewValueFilter;


class FastInfoset_API FastInfosetParser: public Korvo::XML::XMLReader
	/// Reads a Fast Infoset document and reports it as SAX2 events, so that
	/// code written for any XMLReader can read Fast Infoset unchanged.
	///
	/// Content, DTD and lexical handlers receive the usual events. A content
	/// handler that is a FISContentHandler receives the values that the
	/// document stores with an encoding algorithm as typed calls; any other
	/// content handler receives them as text. Handlers are borrowed and must
	/// outlive the parse. Faults end the parse with an exception (FISException
	/// and its subclasses, or an assertion where the format leaves no other
	/// reading); nothing is reported to the error handler. An index past the
	/// end of its vocabulary table raises FISParseException.
	///
	/// Namespace processing cannot be switched off. Namespace declarations
	/// arrive as startPrefixMapping/endPrefixMapping and never in the
	/// attribute list. When the namespace-prefixes feature is on (the
	/// default), startElement and endElement receive "prefix:local" as
	/// qualified name for a prefixed element and an empty qualified name
	/// otherwise; attributes never carry a qualified name or a type. As in
	/// any SAX2 reader, the Attributes that startElement receives are valid
	/// during that call only: the parser refills them for later elements.
	///
	/// The endPrefixMapping calls after an element's endElement report the
	/// declarations of the last element that began inside it (or its own,
	/// when it has no element children): the parser keeps one list of
	/// namespace declarations, which every element replaces.
	///
	/// Elements are walked with a stack of open elements on the heap, so
	/// the depth of a document is limited by memory, not by the machine
	/// stack.
	///
	/// One parser parses one document at a time and may parse any number
	/// of documents one after another. Each document starts from fresh
	/// tables (or from its own initial vocabulary); vocabulary() shows the
	/// tables as the last document left them.
{
public:
	struct ResolvedQualName
		/// A qualified name as pointers to its three strings, which live in
		/// the vocabulary tables (or are EMPTY_STRING).
	{
		ResolvedQualName():
			pPrefix(0),
			pUri(0),
			pLocalName(0),
			pQName(0)
		{
		}

		const std::string* pPrefix;
		const std::string* pUri;
		const std::string* pLocalName;
		const std::string* pQName;
			/// "prefix:local", made once for an element name the table
			/// holds; null where it is made for each event.
	};

	static const Korvo::XML::XMLString EMPTY_STRING;
		/// The empty string; absent names and identifiers refer to it.

	static const Korvo::XML::XMLString XMLNS;
		/// "xmlns".

	static const Korvo::XML::XMLString FEATURE_ATTRIBUTE_QNAMES;
		/// "http://korvo.org/fastinfoset/features/attribute-qnames": when
		/// true, attributes carry their qualified names (prefix, ":" and
		/// local name, or the local name alone) as elements do. Initially
		/// false: attributes carry none.

	explicit FastInfosetParser(DocumentVocabulary::VocabularyImpl impl = DocumentVocabulary::VOC_MAP);
		/// Creates a parser whose tables are of the kind impl.
		///
		/// The default, VOC_MAP, has no capacity limit (the fixed hash tables
		/// of VOC_HASH refuse documents with many distinct strings of one
		/// kind) and, unlike VOC_VECTOR, can be handed to a FastInfosetWriter
		/// that a parser feeds through its document handler. VOC_VECTOR is
		/// the cheapest choice when no writer takes the vocabulary.

	explicit FastInfosetParser(const DocumentVocabulary& vocabulary);
		/// Creates a parser with a copy of vocabulary (kind, URI and contents).
		/// A document that names the vocabulary's URI as its external
		/// vocabulary is read against the contents; any other document resets
		/// the tables when its header is read.

	~FastInfosetParser();

	void initialize(FastInfosetWriter* pWriter);
		/// Registers pWriter as content, document, DTD and lexical handler,
		/// so that the parsed document is re-encoded with its typed content
		/// and its vocabulary. A null writer changes nothing.

	void initialize(Korvo::XML::XMLWriter* pWriter);
		/// Registers pWriter as content, DTD and lexical handler; a writer
		/// that is in fact a FastInfosetWriter becomes the document handler
		/// too, any other clears it. A null writer changes nothing.

	void setDocumentHandler(FISDocumentHandler* pDocumentHandler);
		/// Sets the handler that learns the XML declaration flag, the external
		/// vocabulary and the vocabulary of each document, before startDocument.
		/// A document that names an external vocabulary needs one.

	FISDocumentHandler* getDocumentHandler() const;

	void addExternalVocabulary(const std::string& uri, const DocumentVocabulary& vocabulary);
		/// Gives the parser the content of the external vocabulary uri: a
		/// document that names uri is read against a copy of vocabulary, and
		/// nothing is opened. Document after document, each starts from
		/// exactly that content: what one document added is dropped before
		/// the next, and the vocabulary is not copied again. The vocabulary
		/// the parser was constructed with counts as given for its URI.
		/// Other URIs are resolved as before. Throws InvalidArgumentException
		/// for a vocabulary without tables.

	const DocumentVocabulary& vocabulary() const;
		/// The tables as the last document (or the constructor) left them.

	Vocabulary<QualifiedNameEntry>& getQNameVocabulary(bool inElement);
		/// The element-name table when inElement is true, else the attribute-name table.

	// XMLReader
	void setEntityResolver(Korvo::XML::EntityResolver* pResolver);
		/// Stored and returned only; the parser resolves nothing through it.

	Korvo::XML::EntityResolver* getEntityResolver() const;

	void setDTDHandler(Korvo::XML::DTDHandler* pDTDHandler);
		/// Receives notationDecl and unparsedEntityDecl.

	Korvo::XML::DTDHandler* getDTDHandler() const;

	void setContentHandler(Korvo::XML::ContentHandler* pContentHandler);
		/// Also decides how typed content is delivered: as typed calls when
		/// pContentHandler is a FISContentHandler, as characters otherwise.

	Korvo::XML::ContentHandler* getContentHandler() const;

	void setErrorHandler(Korvo::XML::ErrorHandler* pErrorHandler);
		/// Stored and returned only; faults are thrown, never reported to it.

	Korvo::XML::ErrorHandler* getErrorHandler() const;

	void setFeature(const Korvo::XML::XMLString& featureId, bool state);
		/// FEATURE_NAMESPACES accepts true only (false throws
		/// SAXNotSupportedException); FEATURE_NAMESPACE_PREFIXES and
		/// FEATURE_ATTRIBUTE_QNAMES are stored; any other feature throws
		/// SAXNotRecognizedException.

	bool getFeature(const Korvo::XML::XMLString& featureId) const;
		/// FEATURE_NAMESPACES is always true; FEATURE_NAMESPACE_PREFIXES
		/// is initially true, FEATURE_ATTRIBUTE_QNAMES false; any other
		/// throws SAXNotRecognizedException.

	void setProperty(const Korvo::XML::XMLString& propertyId, const Korvo::XML::XMLString& value);
		/// Throws SAXNotSupportedException for the handler properties, which
		/// take no string, and SAXNotRecognizedException for any other.

	void setProperty(const Korvo::XML::XMLString& propertyId, void* value);
		/// Sets the declaration handler (PROPERTY_DECLARATION_HANDLER, a
		/// DeclHandler*) or the lexical handler (PROPERTY_LEXICAL_HANDLER, a
		/// LexicalHandler*); any other property throws SAXNotRecognizedException.

	void* getProperty(const Korvo::XML::XMLString& propertyId) const;

	void parse(Korvo::XML::InputSource* pSource);
		/// Parses from the source's byte stream, else from its character
		/// stream, else from its system identifier.

	void parse(const Korvo::XML::XMLString& systemId);
		/// Opens systemId with the toolkit's default entity resolver and
		/// parses it. Throws FISParseException "Cannot resolve system
		/// identifier" when the resolver cannot open it.

	void parseMemoryNP(const char* xml, std::size_t size);
		/// Parses the document in the memory block, which is not copied.

protected:
	void parseDocument(BitStreamReader& aReader);
		/// Header, declarations and children of one document.

	// Document and element structure
	void parseDocumentChildren(BitStreamReader& aReader, const Decoder::OpenHeaderParts& parts);
	void parseElementChildren(BitStreamReader& aReader);
	bool parseElementChild(BitStreamReader& aReader);
	void parseElement(BitStreamReader& aReader);
	void parseElementEnd(BitStreamReader& aReader);
	void parseNamespaceAttribute(BitStreamReader& aReader, Korvo::XML::AttributesImpl& attrs);
	void parseAttribute(BitStreamReader& aReader, Korvo::XML::AttributesImpl& attrs);
	void parseQualifiedNameOrIndex(BitStreamReader& aReader, ResolvedQualName& qualName, bool isElement);
	unsigned readQualifiedName(BitStreamReader& aReader, ResolvedQualName& qualName, bool isElement);
		/// parseQualifiedNameOrIndex, returning the name's table index.
	const std::string& readAttribute(BitStreamReader& aReader, ResolvedQualName& qualName);
		/// Reads one attribute's name and value; the value as text.
	const QualifiedNameEntry& getQualifiedNameEntry(unsigned idx, bool isElement);

	// Strings, names and character content
	const std::string& parseIdentifyingStringOrIndex(BitStreamReader& aReader, DocumentVocabulary::ID id, unsigned& index);
	const std::string& parseIdentifyingStringOrIndex(BitStreamReader& aReader, DocumentVocabulary::ID id);
	const std::string& parseCondIdentifyingStringOrIndex(BitStreamReader& aReader, bool retData, DocumentVocabulary::ID id);
	Korvo::AutoPtr<Encoding> parseNonIdentifyingStringOrIndex(BitStreamReader& aReader, DocumentVocabulary::ID id);
	const std::string& parseNonIdentifyingStringOrIndexXML(BitStreamReader& aReader, DocumentVocabulary::ID id, unsigned& type);
	Encoding& nullEncoding();
		/// The reused holder of a decoded string.
	Korvo::AutoPtr<Encoding> parseEncodedCharacterString(BitStreamReader& aReader);
	const std::string& parseEncodedCharacterStringXML(BitStreamReader& aReader, unsigned& type);
	void parseCharacterChunk(BitStreamReader& aReader);

	// DTD, notations, entities, comments and processing instructions
	void parseNotation(BitStreamReader& aReader);
	void parseUnparsedEntity(BitStreamReader& aReader);
	void parseDocumentTypeDeclaration(BitStreamReader& aReader);
	void parseProcessingInstruction(BitStreamReader& aReader);
	void parseComment(BitStreamReader& aReader);
	void parseUnexpandedEntityReference(BitStreamReader& aReader);

private:
	FastInfosetParser(const FastInfosetParser&);
	FastInfosetParser& operator = (const FastInfosetParser&);

	struct SpareParts;

	void reserveBuffers();
	bool takeSpareParts();
		/// Takes the working storage a parser destroyed on this thread left,
		/// if any.
	void giveSpareParts();
		/// Leaves the working storage for the next parser, unless one is
		/// left already or it is large.
	RecycledAttributes& attributeList(unsigned elementIndex);
	const std::string& tableString(DocumentVocabulary::ID id, unsigned index) const;
	const std::string& nameString(DocumentVocabulary::ID id, unsigned index) const;
	void resolve(const QualifiedNameEntry& entry, ResolvedQualName& qualName) const;
	unsigned readLiteralQualifiedName(BitStreamReader& aReader, ResolvedQualName& qualName, bool isElement);
	const ResolvedQualName& resolvedName(unsigned index, bool isElement);
	const ResolvedQualName& resolveName(unsigned index, bool isElement);
		/// resolvedName for an index not resolved before.
	void rememberName(unsigned index, bool isElement, const ResolvedQualName& qualName);
	void keepSameNames();
		/// Keeps the names resolved by index that the document's tables
		/// still hold as the last document read them, and forgets the rest.
	const Korvo::XML::XMLString& qualifiedName(const ResolvedQualName& qualName);
	Korvo::AutoPtr<Encoding> decodeAlgorithm(BitStreamReader& aReader, unsigned index);
	void deliver(const Encoding& value);
	void deliverText(const std::string& text);
		/// Plain text, which reaches a typed handler as characters() too.
	void parseElementFromName(BitStreamReader& aReader, bool hasAttributes);
		/// The rest of an element, from its name at the third bit.
	const std::string& declareNamespace(BitStreamReader& aReader, const std::string*& pNamespaceName);
		/// Reads a namespace declaration and reports it; returns its prefix.
	void endElement();
		/// The events that close the innermost open element.

	void readBufferedChildren(BitStreamReader& aReader, std::size_t depth);
		/// Reads the children that lie whole in the reader's buffer in their
		/// usual forms, stopping at the first other one (or at an end that
		/// closes more than the elements opened below depth).
	struct BufferedString
		/// An identifying string read in place: the octets of a literal
		/// (pText not null) or an index.
	{
		const char* pText;
		std::size_t length;
		unsigned index;
	};

	struct BufferedName
		/// A literal qualified name read in place.
	{
		bool hasPrefix;
		bool hasNamespace;
		BufferedString prefix;
		BufferedString namespaceName;
		BufferedString localName;
	};

	struct RepeatRecord;

	struct BufferedAttribute
		/// An attribute read in place: its name, known (pName not null) or
		/// literal, and either an indexed value or the octets of a literal one.
	{
		const ResolvedQualName* pName;
		BufferedName literalName;
		const unsigned char* pNameEnd;
			/// Where a literal name ends.
		const RepeatRecord* pRepeat;
			/// The record of a literal name that repeats the last document's;
			/// set for literal names only.
		const std::string* pIndexed;
		const char* pText;
		std::size_t length;
		bool addToTable;
	};

	enum BufferedRead
	{
		BUFFERED_NONE,
			/// Nothing read: the general path reads the item.
		BUFFERED_DONE,
			/// The item was read in place.
		BUFFERED_RESUMED
			/// The item was begun in place and finished by the general path,
			/// from the reader.
	};

	BufferedRead readBufferedElement(BitStreamReader& aReader, const unsigned char* pStart, const unsigned char*& p, const unsigned char* pEnd);
		/// Reads the element at p, of the window that begins at pStart.
	bool readBufferedCharacters(const unsigned char*& p, const unsigned char* pEnd);
	bool readBufferedComment(const unsigned char*& p, const unsigned char* pEnd);
	bool readBufferedCData(const unsigned char*& p, const unsigned char* pEnd);
	bool readBufferedAttribute(const unsigned char*& p, const unsigned char* pEnd, BufferedAttribute& attribute);
	bool readBufferedValue(const unsigned char*& p, const unsigned char* pEnd, BufferedAttribute& attribute);
	bool readBufferedName(const unsigned char*& p, const unsigned char* pEnd, BufferedName& name);
	bool readBufferedString(const unsigned char*& p, const unsigned char* pEnd, DocumentVocabulary::ID id, BufferedString& string);
		/// These read one item at p, advancing p past it, or return false
		/// when it needs the general path; they add nothing to the tables.
	bool skipBufferedString(const unsigned char*& p, const unsigned char* pEnd, BufferedString& string);
		/// readBufferedString() without checking an index against its table.
	bool declarationsInPlace(const unsigned char* p, const unsigned char* pEnd);
		/// Whether the namespace declarations at p, and the octet after
		/// them, lie whole before pEnd.
	void readBufferedDeclaration(const unsigned char*& p, const unsigned char* pEnd, const std::string*& pNamespaceName);
	void readBufferedDeclarations(const unsigned char*& p, const unsigned char* pEnd);
		/// Reads and reports the declarations that declarationsInPlace() checked.
	bool readLiteralElementName(const unsigned char*& p, const unsigned char* pEnd, ResolvedQualName& name, unsigned& nameIndex);
		/// Reads a literal element name from its 1111 octet, or returns false
		/// when it needs the general path.
	void addAttributeName(const BufferedAttribute& attribute, const unsigned char* pAttribute, ResolvedQualName& name);
		/// Enters the literal name of an attribute read in place.
		/// Makes and reports the declaration at p, which declarationsInPlace() checked.
	const std::string& placeString(DocumentVocabulary::ID id, const BufferedString& string, unsigned& index);
		/// addString() for a string whose index was not checked.
	const std::string& addString(DocumentVocabulary::ID id, const BufferedString& string, unsigned& index);
	unsigned addName(const BufferedName& literal, bool isElement, ResolvedQualName& qualName);
		/// Add what was read in place to the tables, as the general path
		/// adds literal strings and names.
	const std::string& enterLiteral(DocumentVocabulary::ID id, Vocabulary<std::string>& table, std::string& value, unsigned& index);
		/// Adds value, a literal built in the table's spare storage, unless
		/// the table is full; returns the string its names refer to.
	unsigned enterName(const QualifiedNameEntry& name, bool isElement, ResolvedQualName& qualName);
		/// Adds a literal name to its table, unless a part or the table
		/// stays unindexed; returns its index or 0. An element name that
		/// enters gets its stored qualified name.
	void finishElement(BitStreamReader& aReader, const ResolvedQualName& qualName, RecycledAttributes* pList);
		/// Reads an element from its attributes on (when pList is given)
		/// and reports its start.
	const std::string& addValue(DocumentVocabulary::ID id, const char* pText, std::size_t length);
		/// Adds the string to table id, unless the table is full; returns it.
	void addToItsTable(DocumentVocabulary::ID id, const std::string& value);
		/// Adds value to table id, unless the table is full.
	unsigned addLiteral(DocumentVocabulary::ID id, Vocabulary<std::string>& table, const std::string& value);
		/// Adds value to table, which is table id, as its index-or-add
		/// operation does; returns the index.
	bool tablesAsNew() const;
		/// Whether every table holds as many values as a new vocabulary's.
	void findTables();
		/// Takes the tables' addresses from the vocabulary, which a
		/// document header may have changed.
	void forgetTables();
		/// Makes the filters start again from the tables, which a document
		/// header has just set up.
	void forgetFilters();
	const ResolvedQualName* knownName(unsigned index, bool isElement);
		/// The resolved name at index, or null past the end of its table.

	// Literal names and namespace declarations that repeat the last document's
	//
	// A parser that reads one kind of message after another finds the same
	// literal names, in the same order, document after document. It keeps
	// the octets of each literal name (and each block of namespace
	// declarations) of the last document with what it did to the name
	// tables; when the next document starts from the same tables and has
	// the same octets at the same point, the tables are only grown back to
	// where they were (their spare entries still hold those strings), and
	// the resolved names are taken as they were.

	enum RepeatKind
	{
		REPEAT_ELEMENT_NAME,
		REPEAT_ATTRIBUTE_NAME,
		REPEAT_DECLARATIONS
	};

	enum
	{
		REPEAT_TABLES = 5
			/// Prefixes, namespace names, local names, element and attribute names.
	};

	enum RepeatStore
		/// The kind of all five tables, where one is.
	{
		REPEAT_ANY,
		REPEAT_INDEXED,
		REPEAT_VECTOR
	};

	struct RepeatRecord
	{
		RepeatKind kind;
		unsigned char head;
			/// The presence bits of a name.
		std::size_t offset;
		std::size_t length;
			/// The octets, in _repeatOctets.
		unsigned sizesBefore[REPEAT_TABLES];
		unsigned sizesAfter[REPEAT_TABLES];
		ResolvedQualName name;
		unsigned nameIndex;
		std::size_t firstDeclaration;
		std::size_t declarations;
			/// Prefix and namespace name of each declaration, in _repeatDeclarations.
	};

	void beginRepeats(bool hasInitialVocabulary);
		/// Decides, once the header is read, whether this document may repeat
		/// the last one's records, and whether its own are kept.
	void endRepeats();
	void tableSizes(unsigned sizes[REPEAT_TABLES]) const;
	const RepeatRecord* repeated(RepeatKind kind, unsigned char head, const unsigned char* p, const unsigned char* pEnd);
		/// The record the last document had at this point, if it holds the
		/// octets at p and the tables stand as they did.
		/// Stops repeating otherwise.
	void stopRepeating();
		/// Drops the records from here on; the attribute lists may no
		/// longer trust the strings they copied.
	void forgetSources();
		/// Makes every attribute list copy its names again.
	void takeRepeat();
		/// Takes the record at the cursor as repeated: the tables are to grow
		/// as they grew when it was made, which growPending() does for a run
		/// of records.
	void growPending() const;
		/// Grows the tables as the records repeated since the last call grew
		/// them; done before anything else reads or adds to the name tables.
	RepeatRecord* recordRepeat(RepeatKind kind, unsigned char head, const unsigned char* p, const unsigned char* pEnd, const unsigned sizesBefore[REPEAT_TABLES]);
		/// Keeps what was just read from p to pEnd, unless the tables changed
		/// otherwise since the last record.
	void clearRepeats();
	void keepRepeats(std::size_t count);
		/// Drops the records from count on.
	void recordName(RepeatKind kind, unsigned char head, const unsigned char* p, const unsigned char* pEnd, const unsigned sizesBefore[REPEAT_TABLES], const ResolvedQualName& name, unsigned nameIndex);
	void rememberRepeatedName(const RepeatRecord& record, bool isElement);

	Korvo::XML::EntityResolver*  _pEntityResolver;
	Korvo::XML::DTDHandler*      _pDTDHandler;
	Korvo::XML::ContentHandler*  _pContentHandler;
	Korvo::XML::ErrorHandler*    _pErrorHandler;
	Korvo::XML::DeclHandler*     _pDeclHandler;
	Korvo::XML::LexicalHandler*  _pLexicalHandler;
	FISDocumentHandler*          _pDocumentHandler;
	FISContentHandler*           _pFISContentHandler;
	bool                         _fisContentHandlerKnown;
		/// Whether _pFISContentHandler holds the content handler's typed side.
	bool                         _namespacePrefixes;
	bool                         _attributeQNames;
	DocumentVocabulary           _vocabulary;
	bool                         _vocabularyAsNew = false;
		/// Whether _vocabulary may still be as its constructor made it.
	ExternalVocabularies         _externalVocabularies;
	std::vector<std::unique_ptr<RecycledAttributes>> _attributeLists;
		/// The attribute list of each of the first element names, by name
		/// index, made when first needed; later names share the one at 0.
	std::vector<RecycledAttributes*> _madeLists;
		/// The lists of _attributeLists made so far.
	const Korvo::XML::AttributesImpl _noAttributes;
	std::vector<const std::string*> _prefixMappings;
		/// The prefixes that the element begun last declared.
	std::string                  _octetBuffer;
		/// Raw octets of a UTF-8, UTF-16 or restricted-alphabet string.
	std::string                  _textBuffer;
		/// Decoded UTF-16 and restricted-alphabet text.
	std::string                  _literalBuffer;
		/// Literal identifying strings and the XML declaration.
	Korvo::XML::XMLString        _qualifiedName;
	Korvo::AutoPtr<Encoding>     _pNullEncoding;
	Korvo::AutoPtr<NullRefEncoding> _pNullRefEncoding;
		/// Both made when first needed.
	Korvo::AutoPtr<Encoding>     _pAlgorithmValue;
		/// Keeps the last algorithm value alive while its text is in use.
	std::vector<ResolvedQualName> _openElements;
	std::vector<ResolvedQualName> _elementNames;
		/// Element-name table entries resolved so far, by index.
	std::vector<ResolvedQualName> _attributeNames;
		/// Attribute-name table entries resolved so far, by index.
	bool                         _namesKeepable = false;
		/// False once the name tables were handed out (getQNameVocabulary()).
	bool                         _namesPrefixed = false;
		/// The namespace-prefixes feature the names were resolved with.
	std::unique_ptr<std::deque<std::string>> _pQualifiedNames;
		/// The prefixed qualified names of _elementNames, by index. Only
		/// grows, so that a string keeps its place and its storage from
		/// document to document; made when first needed, as a deque
		/// allocates when it is made.
	std::list<std::string>       _unindexedStrings;
		/// Literal names that full tables did not take, kept for the
		/// document's events.
	Vocabulary<std::string>*     _pTables[DocumentVocabulary::CHARACTER_CONTENT_CHUNK + 1];
		/// The vocabulary's string tables, from PREFIX on.
	Vocabulary<QualifiedNameEntry>* _pNameTables[2];
		/// The attribute-name table, then the element-name table.
	std::unique_ptr<NewValueFilter<std::string>[]> _pStringFilters;
		/// By table, from PREFIX on; made for the first document.
	std::unique_ptr<NewValueFilter<QualifiedNameEntry>[]> _pNameFilters;
		/// Element names, then attribute names.
	std::vector<RepeatRecord>    _repeats;
	std::string                  _repeatOctets;
	std::vector<std::pair<const std::string*, const std::string*>> _repeatDeclarations;
	std::size_t                  _repeatCursor = 0;
		/// The next record to repeat.
	bool                         _repeating = false;
		/// This document has repeated every record so far: it has put no
		/// name of its own in the tables, so the strings the attribute
		/// lists copied names from, in this document or the last, still
		/// hold them.
	bool                         _recording = false;
		/// This document's records are kept.
	bool                         _repeatsUsable = false;
		/// The records are complete: the document that made them ended.
	bool                         _repeatable = false;
		/// This document began with tables that records may be repeated on.
	bool                         _repeatQNames = true;
		/// The namespace-prefixes feature when the records were made.
	RepeatStore                  _repeatStore = REPEAT_ANY;
	bool                         _deferGrowth = true;
		/// Repeated records grow the tables only when something needs them.
	mutable bool                 _growthPending = false;
	std::size_t                  _pendingFrom = 0;
		/// The first record whose growth is pending.
	const void*                  _pRepeatTables[REPEAT_TABLES] = {};
	unsigned                     _repeatEndSizes[REPEAT_TABLES] = {};
		/// The tables of the records, and their sizes when the document ended.
};


//
// inlines
//
inline FISDocumentHandler* FastInfosetParser::getDocumentHandler() const
{
	return _pDocumentHandler;
}


inline const DocumentVocabulary& FastInfosetParser::vocabulary() const
{
	if (_growthPending) growPending();
	return _vocabulary;
}


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_FastInfosetParser_INCLUDED
