//
// FastInfosetWriter.h
//
// Library: FastInfoset
// Package: Serializer
// Module:  FastInfosetWriter
//
// A SAX2 handler that writes one Fast Infoset document onto an output stream.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_FastInfosetWriter_INCLUDED
#define FastInfoset_FastInfosetWriter_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/FISContentHandler.h"
#include "Korvo/FastInfoset/FISDocumentHandler.h"
#include "Korvo/FastInfoset/BitStreamWriter.h"
#include "Korvo/FastInfoset/DocumentVocabulary.h"
#include "Korvo/FastInfoset/EncodingAlgorithm.h"
#include "Korvo/FastInfoset/Encoding.h"
#include "Korvo/FastInfoset/Notation.h"
#include "Korvo/FastInfoset/UnparsedEntity.h"
#include "Korvo/FastInfoset/QualifiedNameVocabulary.h"
#include "Korvo/FastInfoset/StringIndexingPolicy.h"
#include "Korvo/FastInfoset/IndexedVocabulary.h"
#include "Korvo/FastInfoset/Vocabulary.h"
#include "Poco/SAX/LexicalHandler.h"
#include "Poco/SAX/DTDHandler.h"
#include "Poco/SAX/NamespaceSupport.h"
#include "Poco/SAX/AttributesImpl.h"
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>


namespace Korvo {
namespace FastInfoset {


class StringPacker;
class WriterState;
struct QualifiedNameCacheEntry;


class FastInfoset_API FastInfosetWriter: public FISContentHandler, public Korvo::XML::LexicalHandler, public Korvo::XML::DTDHandler, public FISDocumentHandler
	/// Writes the SAX2 events it receives as one Fast Infoset document.
	///
	/// Register one writer for content, lexical, DTD and document events.
	/// Names are added to the document vocabulary the first time they are
	/// written and written as indices afterwards; attribute values, character
	/// chunks, comments and processing-instruction data are indexed the same
	/// way when they are no longer than the maximum indexed string length.
	/// Typed values (binaryData, encodedData) are gathered, consecutive
	/// values of one kind into one array, and written at the next structural
	/// event.
	///
	/// Notations and unparsed entities go into the document header and must
	/// therefore be declared before startDocument(); so must every setting.
	///
	/// The stream is borrowed and must outlive the writer. A failing stream
	/// throws IOException. Sequencing faults throw FISException (misnested
	/// calls, character data or typed values outside an element) or
	/// FISEncodingException (an item at an impossible position).
{
public:
	enum State
		/// What the writer is inside of; the top of a stack of states.
	{
		UNINITIALIZED = 0,
		IN_DOCUMENT = 1,
		IN_ELEMENT = 2,
		IN_CDATA = 3,
		IN_DTD = 4
	};

	explicit FastInfosetWriter(std::ostream& ostr);
		/// Creates a writer without XML declaration and with a VOC_HASH vocabulary.

	FastInfosetWriter(std::ostream& ostr, bool writeXMLDeclaration, DocumentVocabulary::VocabularyImpl impl);
		/// Creates a writer whose vocabulary tables are of the kind impl.
		/// VOC_VECTOR tables never find a value already present, so such a
		/// writer writes every string literally.

	FastInfosetWriter(std::ostream& ostr, bool writeXMLDeclaration, const DocumentVocabulary& voc);
		/// Creates a writer that starts from a copy of voc. The entries voc
		/// adds to a fresh vocabulary are announced in the document header.

	~FastInfosetWriter();
		/// Writes nothing more; a document not yet ended stays incomplete.

	// Configuration, before startDocument()
	void setMaxIndexedStringLength(int length);
		/// Strings up to length octets are indexed (default 16); a negative
		/// length indexes every string.

	int getMaxIndexedStringLength() const;

	void setIndexingPolicy(StringIndexingPolicy* pPolicy);
		/// Lets pPolicy choose the values to index in place of the maximum
		/// indexed string length; null (the default) goes back to the
		/// length. The policy is borrowed and must outlive the writer.

	StringIndexingPolicy* getIndexingPolicy() const;

	void setShortestLiterals(bool flag);
		/// When true, literal attribute values, character chunks, comments
		/// and processing-instruction data are written in the shortest of
		/// UTF-8, UTF-16 and the vocabulary's restricted alphabets of 2^k - 1
		/// characters (the numeric and date-time ones, and those added to the
		/// vocabulary given to the writer, which the header announces). When
		/// false (the default), always as UTF-8.

	bool getShortestLiterals() const;

	void setWriteXMLDeclaration(bool val);
		/// Whether the document starts with "<?xml encoding='finf'?>".

	bool getWriteXMLDeclaration() const;

	void setDocumentVocabulary(const DocumentVocabulary& voc);
		/// Starts from a copy of voc. Throws InvalidArgumentException, and
		/// keeps the current vocabulary, for a VOC_VECTOR vocabulary.

	DocumentVocabulary& getDocumentVocabulary();
	const DocumentVocabulary& getDocumentVocabulary() const;
		/// The tables the writer indexes into.

	void setExternalVocabulary(const Korvo::XML::XMLString& uri, const DocumentVocabulary& voc);
		/// The document names the external vocabulary uri, whose content is
		/// voc; the header then announces only what the document vocabulary
		/// holds beyond voc.

	void useExternalVocabulary(const Korvo::XML::XMLString& uri, const DocumentVocabulary& voc);
		/// Writes the document against the external vocabulary uri whose
		/// content is voc: voc becomes both the document vocabulary and the
		/// external vocabulary, so that the names and values it holds are
		/// written as indices and the header names uri instead of announcing
		/// them. A reader needs the same vocabulary for uri, for instance
		/// through FastInfosetParser::addExternalVocabulary(). Call before
		/// startDocument(). A vocabulary of vector tables is copied into
		/// tables that find values, at the same indices. Throws
		/// InvalidArgumentException for an empty uri or a vocabulary
		/// without tables.

	const std::string& getExternalVocabularyURI() const;
		/// Empty when no external vocabulary is set.

	Vocabulary<QualifiedNameEntry>& getQNameVocabulary(bool inElement);
		/// The element-name table when inElement is true, else the attribute-name table.

	// ContentHandler
	void setDocumentLocator(const Korvo::XML::Locator* loc);
		/// Ignored.

	void startDocument();
		/// Writes the document header, with the initial vocabulary, notations
		/// and unparsed entities when there are any. A writer writes one
		/// document: a second call throws FISException.

	void endDocument();
		/// Writes the document's terminator and flushes the stream.

	void startElement(const Korvo::XML::XMLString& namespaceURI, const Korvo::XML::XMLString& localName, const Korvo::XML::XMLString& qname, const Korvo::XML::Attributes& attributes);
		/// Writes the head of an element. A namespace URI that no prefix is
		/// mapped to gets a generated prefix (ns1, ns2, ...). Throws
		/// FISException "Tag mismatch" when no name can be made of the arguments.

	void endElement(const Korvo::XML::XMLString& namespaceURI, const Korvo::XML::XMLString& localName, const Korvo::XML::XMLString& qname);
		/// Ends the open element; the names are not compared with it.

	void characters(const Korvo::XML::XMLChar ch[], int start, int length);
		/// Writes length characters from start of the NUL-terminated string ch
		/// as one character chunk, as a substring would take them: a NUL ends
		/// the text, and a negative length takes the rest of it. Nothing past
		/// ch + start + length is read, so a buffer without NUL that holds the
		/// range will do. Throws std::out_of_range when start lies beyond the
		/// end of the text.

	void ignorableWhitespace(const Korvo::XML::XMLChar ch[], int start, int length);
		/// Written as characters().

	void processingInstruction(const Korvo::XML::XMLString& target, const Korvo::XML::XMLString& data);

	void startPrefixMapping(const Korvo::XML::XMLString& prefix, const Korvo::XML::XMLString& uri);
		/// Declares prefix for the next element; the "xml" prefix is ignored.

	void endPrefixMapping(const Korvo::XML::XMLString& prefix);

	void skippedEntity(const Korvo::XML::XMLString& name);
		/// Ignored.

	// FISContentHandler
	void binaryData(const char* buffer, unsigned int size);
		/// Queues size octets (base64 algorithm); consecutive calls make one value.

	void encodedData(short value);
	void encodedData(int value);
	void encodedData(long long value);
	void encodedData(bool value);
	void encodedData(float value);
	void encodedData(double value);
	void encodedData(const Korvo::UUID& uuid);
		/// Queues one typed value; consecutive values of one type become
		/// one array, written as one character chunk.

	// LexicalHandler
	void startDTD(const Korvo::XML::XMLString& name, const Korvo::XML::XMLString& publicId, const Korvo::XML::XMLString& systemId);
		/// Writes a document type declaration with the public and system
		/// identifiers (the name is not kept by the format).

	void endDTD();

	void startEntity(const Korvo::XML::XMLString& name);
	void endEntity(const Korvo::XML::XMLString& name);
		/// Ignored.

	void startCDATA();
		/// Literal character chunks up to endCDATA() are marked as CDATA.
		/// Throws FISException "Cannot nest CDATA sections" inside a section.

	void endCDATA();

	void comment(const Korvo::XML::XMLChar ch[], int start, int length);
		/// Writes the length characters at ch + start as a comment. Throws
		/// std::out_of_range for a negative start or length. Comments inside
		/// the document type declaration are written after it, at document
		/// level: the format has no place for them inside.

	// DTDHandler
	void notationDecl(const Korvo::XML::XMLString& name, const Korvo::XML::XMLString* publicId, const Korvo::XML::XMLString* systemId);
		/// Gathers a notation for the header; only before startDocument().

	void unparsedEntityDecl(const Korvo::XML::XMLString& name, const Korvo::XML::XMLString* publicId, const Korvo::XML::XMLString& systemId, const Korvo::XML::XMLString& notationName);
		/// Gathers an unparsed entity for the header; only before startDocument().

	// Conveniences
	void characters(const Korvo::XML::XMLString& str);
		/// Writes str as one character chunk. An empty str writes nothing.

	void emptyElement(const Korvo::XML::XMLString& namespaceURI, const Korvo::XML::XMLString& localName, const Korvo::XML::XMLString& qname);
	void emptyElement(const Korvo::XML::XMLString& namespaceURI, const Korvo::XML::XMLString& localName, const Korvo::XML::XMLString& qname, const Korvo::XML::Attributes& attributes);
		/// startElement() then endElement().

	void dataElement(const Korvo::XML::XMLString& namespaceURI, const Korvo::XML::XMLString& localName, const Korvo::XML::XMLString& qname,
	                 const Korvo::XML::XMLString& data,
	                 const Korvo::XML::XMLString& attr1 = Korvo::XML::XMLString(), const Korvo::XML::XMLString& value1 = Korvo::XML::XMLString(),
	                 const Korvo::XML::XMLString& attr2 = Korvo::XML::XMLString(), const Korvo::XML::XMLString& value2 = Korvo::XML::XMLString(),
	                 const Korvo::XML::XMLString& attr3 = Korvo::XML::XMLString(), const Korvo::XML::XMLString& value3 = Korvo::XML::XMLString());
		/// An element with up to three attributes (each given by a non-empty
		/// qualified name) and data as its text, or no content when data is empty.

	void startFragment();
	void endFragment();
		/// Always throw FISException: a Fast Infoset stream is a whole document.

	// FISDocumentHandler (setDocumentVocabulary, getDocumentVocabulary,
	// setWriteXMLDeclaration and setExternalVocabulary are declared above.)

protected:
	struct AttributeValue
		/// One attribute of the element being written. The strings belong to
		/// the caller's attribute list, the namespace context or the writer,
		/// and live until the element's head is written.
	{
		const Korvo::XML::XMLString* pPrefix;
		const Korvo::XML::XMLString* pNamespaceURI;
		const Korvo::XML::XMLString* pLocalName;
		const Korvo::XML::XMLString* pValue;
	};

	using AttributeVec = std::vector<AttributeValue>;
	using PrefixSet = Korvo::XML::NamespaceSupport::PrefixSet;

	BitStreamWriter& bitWriter();
		/// The bit stream the document is written to.

	// The item writers below require the bit position at which their item
	// starts and throw FISEncodingException "Illegal startposition for ..."
	// anywhere else. Those that return a number return the index of the name
	// or string in its table (0 for a value that is not indexed).

	// Header, initial vocabulary and declaration lists
	void writeHeader();
		/// Writes everything up to the document's first child. A document
		/// vocabulary that adds values, chunks, other strings or names to a
		/// fresh one cannot be announced: the bit writer's assertion stops it.
	void writeInitialVocabulary(const DocumentVocabulary& voc);
	void writeExternalVocabulary(const std::string& uri);
	void writeRestrictedAlphabet(const DocumentRestrictedAlphabet& alphabets);
	void writeVocabulary(const Vocabulary<std::string>& voc);
	void writeEncodedVocabulary(const Vocabulary<std::string>& voc);
	void writeNameSurrogates(const Vocabulary<QualifiedNameEntry>& voc, bool isElement);
	void writeNotations(const std::vector<Notation>& notations);
	void writeUnparsedEntities(const std::vector<UnparsedEntity>& unparsedEntities);

	// Declarations, comments and processing instructions
	void writeNotation(const Korvo::XML::XMLString& name, const Korvo::XML::XMLString* pPublicId, const Korvo::XML::XMLString* pSystemId);
	void writeUnparsedEntity(const Korvo::XML::XMLString& name, const Korvo::XML::XMLString* pPublicId, const Korvo::XML::XMLString& systemId, const Korvo::XML::XMLString& notationName);
	void writeUnexpandedEntityReference(const Korvo::XML::XMLString& name, const Korvo::XML::XMLString* pPublicId, const Korvo::XML::XMLString* pSystemId);
	void writeDocumentTypeDeclaration(const Korvo::XML::XMLString& publicId, const Korvo::XML::XMLString& systemId);
	void writeProcessingInstruction(const Korvo::XML::XMLString& target, const Korvo::XML::XMLString& data);
	void writeComment(const Korvo::XML::XMLString& str);
	void writeCommentItem(const Korvo::XML::XMLString& text);
		/// A whole comment child: pending values, padding, selector, text.

	// Names, namespaces and attributes
	std::string newPrefix();
	static const Korvo::XML::XMLString& nameToString(const Korvo::XML::XMLString& localName, const Korvo::XML::XMLString& qname);
	void handleNamespaces(const Korvo::XML::Attributes& attributes, const Korvo::XML::XMLString& elementNamespaceURI, PrefixSet& nsPrefixes, AttributeVec& attributeVec);
	void declareAttributeNamespaces(const Korvo::XML::Attributes& attributes);
	void addNamespaceAttributes(PrefixSet& nsPrefixes);
	void addAttributes(AttributeVec& attributeVec, const Korvo::XML::Attributes& attributes, const Korvo::XML::XMLString& elementNamespaceURI);
	void writeElement(const Korvo::XML::XMLString& prefix, const Korvo::XML::XMLString& ns, const Korvo::XML::XMLString& localName, const AttributeVec& attributes, const PrefixSet& nsPrefixes);
	void writeAttribute(const Korvo::XML::XMLString& prefix, const Korvo::XML::XMLString& ns, const Korvo::XML::XMLString& localName, const Korvo::XML::XMLString& normalizedValue);
	void writeNamespaceAttribute(const Korvo::XML::XMLString& prefix, const Korvo::XML::XMLString& ns);
	unsigned int writeQualifiedNameOrIndex(const Korvo::XML::XMLString& prefix, const Korvo::XML::XMLString& ns, const Korvo::XML::XMLString& localName, bool inElement);
	unsigned int writeQualifiedName(const Korvo::XML::XMLString& prefix, const Korvo::XML::XMLString& ns, const Korvo::XML::XMLString& localName, bool inElement);
	unsigned int insertQualifiedName(const QualifiedNameEntry& qne, bool inElement);
	unsigned int writeIdentifyingStringOrIndex(const std::string& str, DocumentVocabulary::ID id);
	void writeIdentifyingString(const std::string& str, DocumentVocabulary::ID id);
	void writeIdentifyingStringIndex(unsigned int strIdx);

	// Character content and typed values
	void insertEncoding(const Encoding::Ptr& pEncoding);
	void handleEncodedData();
	void writeCharacterChunk(const std::string& str);
	unsigned int writeNonIdentifyingStringOrIndex(const std::string& str, DocumentVocabulary::ID voc);
	unsigned int writeNonIdentifyingStringOrIndex(const Encoding& encoding, DocumentVocabulary::ID voc);
	void writeEncodedCharacterString(const std::string& str, unsigned int enc);
	void writeEncodedCharacterString(const Encoding& encoding);

private:
	friend class WriterState;
		/// Keeps the storage of the attribute lists between writers.

	FastInfosetWriter(const FastInfosetWriter&);
	FastInfosetWriter& operator = (const FastInfosetWriter&);

	void elementName(const Korvo::XML::XMLString& namespaceURI, const Korvo::XML::XMLString& localName, const Korvo::XML::XMLString& qname, std::string_view& prefix, const Korvo::XML::XMLString*& pLocalName, std::size_t& binding);
		/// The prefix and local name an element is written with, declaring
		/// its prefix when needed. The prefix lies in qname or the writer;
		/// binding is the position of the declaration of prefix and
		/// namespaceURI, or NamespaceContext::NOT_FOUND.
	void init();
		/// The rest of construction, once _pState and _vocabulary are set.
	void takeVocabulary(DocumentVocabulary::VocabularyImpl impl);
		/// A new vocabulary of the kind impl, or the one the thread's last
		/// writer of that kind left.
	void keepVocabulary() noexcept;
	void startReplay(DocumentVocabulary::ID id);
		/// Takes the values the last writer left in table id for the ones
		/// this document is likely to add, in the same order.
	void settleTables() const;
		/// Ends every replay, cutting the tables down to what the document added.
	unsigned int replay(DocumentVocabulary::ID id, unsigned int idx);
		/// The index of a value of table id, which is being replayed, that
		/// the table holds at idx (or NOT_FOUND), or NOT_INDEXED when it is
		/// to be added as usual.
		/// Leaves the vocabulary, emptied, to the next writer of its kind,
		/// where it is of a kind that finds values and holds nothing else
		/// an application gave.
	DocumentVocabulary& externalVocabulary();
	void requireState(State state, const char* message) const;
	void requireDocument(const char* message) const;
	void requireOutsideDTD(const char* message) const;
	void requireElementContent() const;
	void declarePrefix(std::string_view prefix, std::string_view uri);
	void dropOwnPrefixes();
	void forgetEndedPrefixes();
	void padToOctet();
	void writeTerminator();
	bool isIndexable(std::size_t length) const;
	bool isIndexed(const std::string& str, DocumentVocabulary::ID voc);
	bool hasOnlyPredefinedEntries() const;
	bool hasOnlyExternalEntries() const;
		/// True when the document vocabulary is the one useExternalVocabulary()
		/// gave, with nothing added.
	void writeExternalVocabularyOnly();
	void keepExternalVocabulary();
		/// Copies the external vocabulary out of the document vocabulary,
		/// when useExternalVocabulary() made them one.
	void keepExternalCopy() noexcept;
		/// Leaves the document vocabulary, truncated back to the external
		/// vocabulary that useExternalVocabulary() copied into it, for the
		/// next writer on the thread.
	void writeNameSurrogate(const QualifiedNameEntry& qne);
	bool findQualifiedName(const Korvo::XML::XMLString& prefix, const Korvo::XML::XMLString& ns, const Korvo::XML::XMLString& localName, bool inElement, unsigned int& idx) const;
	void forgetNames();
	void writeElementContent(const Korvo::XML::XMLString& prefix, const Korvo::XML::XMLString& ns, const Korvo::XML::XMLString& localName, const AttributeVec& attributes);
		/// The element's name and attributes: writeElement() after its
		/// namespace attributes.
	struct NameLookup
		/// A name looked up in the name cache before it is written.
	{
		Korvo::UInt32 localNameHash;
		Korvo::UInt32 hash;
		std::size_t   slot;
		unsigned int  index;
			/// 0 when the cache does not know the name.
	};

	void lookUpName(std::string_view prefix, const Korvo::XML::XMLString& ns, const Korvo::XML::XMLString& localName, bool inElement, NameLookup& lookup) const;
	unsigned int writeName(std::string_view prefix, const Korvo::XML::XMLString& ns, const Korvo::XML::XMLString& localName, bool inElement, std::size_t binding, const NameLookup* pLookup = nullptr, unsigned int pending = 0, int pendingBits = 0);
		/// writeQualifiedNameOrIndex() at a checked position. binding is the
		/// position of the declaration of prefix and ns in the namespace
		/// context, or NamespaceContext::NOT_FOUND. pLookup is the name's
		/// lookUpName(), when the caller made it. The pendingBits (0 to 9)
		/// low bits of pending come first.
	unsigned int writeNewQualifiedName(std::string_view prefix, const Korvo::XML::XMLString& ns, const Korvo::XML::XMLString& localName, Korvo::UInt32 localNameHash, bool inElement, std::size_t binding, QualifiedNameEntry& qne, unsigned int lead, int leadBits);
		/// writeQualifiedName() for a name its table is known not to hold;
		/// qne is the table's entry for the name when it is indexed.
	bool writeNameParts(std::string_view prefix, const Korvo::XML::XMLString& ns, const Korvo::XML::XMLString& localName, Korvo::UInt32 localNameHash, bool inElement, std::size_t binding, QualifiedNameEntry& qne, unsigned int lead, int leadBits);
		/// Writes the literal name's parts after the leadBits low bits of
		/// lead; false when it is not to be indexed.
	struct NameField
		/// Bits of a literal name gathered to go out in one write.
	{
		Korvo::UInt64 value;
		int           bits;
	};

	bool namesKept() const;
		/// Whether the names' cache may replay and keep names: the
		/// tables are fresh and find values.
	const IndexedVocabulary<std::string>* const* stringTables() const;
		/// The prefix, namespace-name and local-name tables.
	void keepNames();
		/// Hands the names written on to the thread's next writer, or not.
	bool tableSizes(unsigned int sizes[5]) const;
		/// The sizes of the name parts' and the names' tables, in that
		/// order, where the writer has them at hand.
	unsigned int replayName(QualifiedNameCacheEntry& entry, std::string_view prefix, const Korvo::XML::XMLString& ns, const Korvo::XML::XMLString& localName, bool inElement, std::size_t binding, unsigned int lead, int leadBits, const unsigned int sizes[5]);
		/// Writes the name of entry, which the thread's last writer
		/// introduced in tables of the sizes it finds now, as it was
		/// written then; its index.
	void replayPart(NameField& field, int table, const std::string& value, unsigned int idx, const unsigned int sizes[5], unsigned int added[3]);
	unsigned int indexNamePart(int table, std::string_view str, bool& exists);
		/// indexString() for a prefix (table 0) or namespace name (1).
	void writeIdentifyingLiteral(std::string_view str);
		/// writeIdentifyingString() for any text.
	void flush(NameField& field);
	void appendIndex(NameField& field, unsigned int idx);
	void appendLiteral(NameField& field, std::string_view str);
		/// A part of a literal name by its index or literally, added to the
		/// field when it has bits that end an octet, else written on its own.
	void appendPrefixAndNamespace(NameField& field, std::string_view prefix, std::string_view ns, unsigned int& prefixIdx, unsigned int& nsIdx);
		/// The prefix and the namespace name that are not empty, each by its
		/// index or literally; their indices, 0 for an empty one.
	template <class Access>
	void declareNamespacesOf(const Access& attributes);
	template <class Access>
	void appendAttributes(AttributeVec& attributeVec, const Access& attributes, const Korvo::XML::XMLString& elementNamespaceURI);
		/// declareAttributeNamespaces() and addAttributes() through an
		/// accessor of the attribute list.
	void writeAttributeItems();
		/// The attributes gathered in _attributeValues and their terminator.
	void writeAttributeItem(const Korvo::XML::XMLString& prefix, const Korvo::XML::XMLString& ns, const Korvo::XML::XMLString& localName, const Korvo::XML::XMLString& value);
		/// writeAttribute(), the item's leading '0' included, where the
		/// start tag has reached the start of an octet.
	void writeNamespaceBinding(std::size_t position);
		/// writeNamespaceAttribute(), the item's leading bits included, for
		/// a declaration of the namespace context, which notes the indices
		/// of its prefix and namespace.
	void findTables();
		/// Notes which tables can be searched without a virtual call.
	unsigned int indexString(DocumentVocabulary::ID id, std::string_view str, bool& exists);
	unsigned int indexString(DocumentVocabulary::ID id, std::string_view str, Korvo::UInt32 hash, bool& exists);
		/// indexString() for a string whose ValueHash is at hand.
		/// The index of str in table id, which gets it when absent unless it
		/// is full: NOT_INDEXED then.
	unsigned int writeValueOrIndex(std::string_view str, DocumentVocabulary::ID voc, unsigned int lead = 0, int leadBits = 0);
		/// writeNonIdentifyingStringOrIndex() for text given as a view,
		/// after the leadBits (0 to 9) low bits of lead, which bring it to
		/// bit 0 or 2 of an octet and go out with it.
	unsigned int writeShortValue(std::string_view str, const ShortValue& key, DocumentVocabulary::ID voc, unsigned int lead, int leadBits);
		/// writeValueOrIndex() for a value of 1 to ShortValue::MAX_SIZE
		/// octets whose key is key: found by the key, and written with the
		/// lead bits as one field.
	void writeLiteral(std::string_view str, int pos, bool indexed, unsigned int lead, int leadBits);
		/// The literal form of a value of 1 to 2^32 - 1 octets starting at
		/// pos (0 or 2) after the lead bits: UTF-8, or the CDATA algorithm
		/// in a CDATA section.
	void writeCharacters(std::string_view text);
	unsigned int writeChunk(std::string_view text, const ShortValue* pKey);
		/// writeCharacters() for a non-empty text, with its key when it is
		/// short; returns its index in the chunk table (0 when not indexed).
	static int indentSlot(const Korvo::XML::XMLChar* ch, std::size_t length);
		/// The place in _indentIndices of an indentation text: a line
		/// break, 1 to MAX_INDENT - 1 spaces or tabs, or a line break
		/// followed by them; -1 for any other text of length (>= 1) octets.
	bool writeKnownIndent(int slot, std::size_t length);
		/// Writes the indentation of length octets at slot as a reference to the index it
		/// got when it was first written, unless that is unknown or
		/// something changed how it would be written: false then.
	void writeIndent(std::string_view text, int slot);
		/// writeCharacters() for the indentation text at slot, noting its index.
	void writeRange(const Korvo::XML::XMLChar ch[], int start, int length);
		/// characters() for any text.
	void writeAttributeValue(const Korvo::XML::XMLString& value);
	std::string unusedPrefix();

	static constexpr std::size_t SHORT_LITERAL = 64;
		/// The longest identifying string whose length fits in its first octet.

	static constexpr int MAX_NAME_FIELD = 56;
		/// The most bits BitStreamWriter takes in one field.

	static constexpr unsigned int NOT_INDEXED = 0xFFFFFFFF;
		/// What indexString() returns for a string written only literally.

	static constexpr std::size_t MAX_KEPT_EXTERNAL = 65536;
		/// The most values (all tables) of an external vocabulary whose
		/// copy is kept for the next writer.

	static constexpr std::size_t MAX_INDENT = 32;

	static constexpr DocumentVocabulary::ID REPLAYED_TABLES[] = {DocumentVocabulary::ATTRIBUTE_VALUE, DocumentVocabulary::CHARACTER_CONTENT_CHUNK};
		/// The tables a writer leaves to the next one with their values.
		/// The longest indentation text remembered in _indentIndices.

	BitStreamWriter                     _writer;
	bool                                _writeXMLDeclaration;
	DocumentVocabulary                  _vocabulary;
	std::vector<State>                  _states;
	int                                 _prefixCounter;
	std::vector<Encoding::Ptr>          _encodings;
	std::vector<Notation>               _notations;
	std::vector<UnparsedEntity>         _unparsedEntities;
	std::vector<Korvo::XML::XMLString>  _dtdComments;
		/// Comments of the document type declaration, written after it.
	std::unique_ptr<DocumentVocabulary> _pExternalVocabulary;
	std::string                         _externalVocabularyURI;
	int                                 _maxIndexedStringLength;
	StringIndexingPolicy*               _pIndexingPolicy;
	bool                                _shortestLiterals;
	std::unique_ptr<StringPacker>       _pPacker;
		/// Made by startDocument() when literals are to be shortest.
	bool                                _documentStarted;

	// Reused on every event, so that the steady path does not allocate.
	AttributeVec                        _attributeValues;
	std::vector<Korvo::XML::XMLString>  _attributeLocalNames;
		/// Local parts of attribute names given only as qualified names.
	Korvo::XML::XMLString               _namePrefix;
	Korvo::XML::XMLString               _scratchPrefix;
	Korvo::XML::XMLString               _textBuffer;
	Korvo::XML::XMLString               _scratchText;
	Korvo::XML::AttributesImpl          _emptyAttributes;
	WriterState*                        _pState;
		/// The namespace context and the qualified names already in a name
		/// table, by their strings; taken at construction, given back at
		/// destruction.
	bool                                _knownNamesComplete;
	bool                                _vocabularyFresh;
		/// True until the application may have changed the vocabulary
		/// (any call that hands it out or replaces it): the header then
		/// need not look for entries beyond the predefined ones.
	bool                                _vocabularyIsExternal;
		/// True from useExternalVocabulary() on, until a vocabulary is set
		/// otherwise: the external vocabulary is then the document vocabulary
		/// up to _externalSizes.
	std::vector<unsigned int>           _externalSizes;
		/// The sizes of the tables (in ID order, element names, attribute
		/// names) and the number of alphabets of the external vocabulary.
		/// True when _pKnownNames holds every name of the name tables.
	IndexedVocabulary<std::string>*     _pIndexedTables[DocumentVocabulary::CHARACTER_CONTENT_CHUNK + 1];
	IndexedVocabulary<QualifiedNameEntry>* _pIndexedNames[2];
	unsigned int                        _indentIndices[4*MAX_INDENT] = {};
		/// The chunk-table index of each indentation text written so far,
		/// 0 for those not yet written: text between elements, most of a
		/// document's chunks, needs no look-up. By the number of spaces,
		/// tabs, line break and spaces, line break and tabs, in groups of
		/// MAX_INDENT. Forgotten whenever the tables may have changed.
	mutable unsigned int                _replaySize[DocumentVocabulary::CHARACTER_CONTENT_CHUNK + 1] = {};
	mutable unsigned int                _replayEnd[DocumentVocabulary::CHARACTER_CONTENT_CHUNK + 1] = {};
		/// For a table still replayed, the size the document has given it
		/// and the size of what the last writer left (0 for the others):
		/// the table holds those values as long as the document adds the
		/// same ones in the same order, which it then finds there instead of
		/// adding them; at the first other value the rest goes.
	bool                                _bindingIndices;
		/// True when the prefix and namespace tables find their values:
		/// the namespace context can then keep the indices of its
		/// declarations for the names written in them.

	// The prefixes declared through startPrefixMapping(): those of each open
	// element from its mark on, then those of the element to come (from
	// _pendingPrefixes on), or just after an end those of the ended element.
	std::vector<Korvo::XML::XMLString>  _ownPrefixes;
	std::vector<std::size_t>            _prefixMarks;
	std::size_t                         _pendingPrefixes;
	bool                                _prefixesEnded;
		/// The tables that find values without a virtual call (by ID, and
		/// attribute then element names), or null.
};


//
// inlines
//
inline int FastInfosetWriter::getMaxIndexedStringLength() const
{
	return _maxIndexedStringLength;
}


inline StringIndexingPolicy* FastInfosetWriter::getIndexingPolicy() const
{
	return _pIndexingPolicy;
}


inline bool FastInfosetWriter::getShortestLiterals() const
{
	return _shortestLiterals;
}


inline bool FastInfosetWriter::getWriteXMLDeclaration() const
{
	return _writeXMLDeclaration;
}


inline const std::string& FastInfosetWriter::getExternalVocabularyURI() const
{
	return _externalVocabularyURI;
}


inline BitStreamWriter& FastInfosetWriter::bitWriter()
{
	return _writer;
}


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_FastInfosetWriter_INCLUDED
