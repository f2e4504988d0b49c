//
// Decoder.cpp
//
// Library: FastInfoset
// Package: Primitives
// Module:  Decoder
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/Decoder.h"
#include "Korvo/FastInfoset/Encoder.h"
#include "Korvo/FastInfoset/DocumentVocabulary.h"
#include "Korvo/FastInfoset/ExternalVocabularies.h"
#include "Korvo/FastInfoset/FISException.h"
#include "Korvo/FastInfoset/FastInfosetParser.h"
#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include "Korvo/FastInfoset/StringDecoder.h"
#include "Poco/NullStream.h"
#include "Poco/Path.h"
#include "Poco/String.h"
#include "Poco/URI.h"
#include "Poco/URIStreamOpener.h"
#include "Poco/SAX/SAXParser.h"
#include <algorithm>
#include <memory>
#include <vector>


namespace Korvo {
namespace FastInfoset {


namespace
{
	const char END_OF_INTEGER[] = "Unexpected end of stream while reading integer";
	const char END_OF_STRING_LENGTH[] = "Unexpected end of stream while parsing string length";
	const char END_OF_HEADER[] = "Unexpected end of stream while reading document header";
	const char END_OF_INITIAL_VOCABULARY[] = "Unexpected end of stream while reading initial vocabulary";
	const char END_OF_ENCODED_STRING[] = "Unexpected end of stream while reading encoded character string";
	const char END_OF_SURROGATE[] = "Unexpected end of stream while reading surrogate";
	const unsigned int ABSENT_INDEX = 0xFFFFFFFF;
	const unsigned short VERSION = 1;

	void expect(bool ok, const char* message)
	{
		if (!ok) throw FISParseException(message);
	}

	void skipPadding(BitStreamReader& aReader, int numBits, const char* message)
		/// Skips padding bits, reporting the end of the data with the message of
		/// the item that follows them (a plain skip would stop silently at the end).
	{
		unsigned char padding;
		expect(aReader.read(padding, numBits), message);
	}

	unsigned int readBits(BitStreamReader& aReader, int numBits)
	{
		unsigned int bits;
		expect(aReader.read(bits, numBits), END_OF_INTEGER);
		return bits;
	}

	struct TwoOctetForm
		/// The prefix that announces the two-octet form of an integer
		/// starting at a bit position, and the smallest value of the form.
	{
		int prefixBits;
		unsigned int prefix;
		unsigned int base;
	};

	const TwoOctetForm TWO_OCTET_FORMS[] =
	{
		{0, 0, 0},      // integers never start at the first bit
		{2, 0x2, 65},   // second bit: 10 and 13 bits
		{3, 0x4, 33},   // third bit: 100 and 11 bits
		{3, 0x4, 17},   // fourth bit: 100 and 10 bits
	};

	unsigned int integerAtPos1(BitStreamReader& aReader)
	{
		unsigned int val = readBits(aReader, 7);
		if (val == 127)
			val = 0;
		else if (val < 64)
			val += 1;
		else if (val <= 95)
			val = ((val & 31) << 8 | readBits(aReader, 8)) + 65;
		else
		{
			val = ((val & 15) << 16 | readBits(aReader, 16)) + 8257;
			poco_assert (val <= Encoder::MAXINT20);
		}
		return val;
	}

	unsigned int integerAtPos2(BitStreamReader& aReader)
	{
		unsigned int val = readBits(aReader, 6);
		if (val < 32)
			val += 1;
		else if (val <= 39)
			val = ((val & 7) << 8 | readBits(aReader, 8)) + 33;
		else if (val <= 47)
			val = ((val & 7) << 16 | readBits(aReader, 16)) + 2081;
		else
		{
			poco_assert (val == 48);
			aReader.skip(4);
			val = readBits(aReader, 20) + 526369;
			poco_assert (val <= Encoder::MAXINT20);
		}
		return val;
	}

	unsigned int integerAtPos3(BitStreamReader& aReader)
	{
		unsigned int val = readBits(aReader, 5);
		if (val < 16)
			val += 1;
		else if (val <= 19)
			val = ((val & 3) << 8 | readBits(aReader, 8)) + 17;
		else if (val <= 23)
			val = ((val & 3) << 16 | readBits(aReader, 16)) + 1041;
		else
		{
			aReader.skip(4);
			val = readBits(aReader, 20) + 263185;
			poco_assert (val <= Encoder::MAXINT20);
		}
		return val;
	}

	unsigned int stringLength(BitStreamReader& aReader, int prefixBits, unsigned int shortLimit)
		/// The prefix holds length - 1 below shortLimit; shortLimit announces an
		/// 8-bit field, anything above it a 32-bit field.
	{
		unsigned int prefix;
		expect(aReader.read(prefix, prefixBits), END_OF_STRING_LENGTH);
		if (prefix < shortLimit) return prefix + 1;

		unsigned int field;
		if (prefix == shortLimit)
		{
			expect(aReader.read(field, 8), END_OF_STRING_LENGTH);
			return field + shortLimit + 1;
		}
		expect(aReader.read(field, 32), END_OF_STRING_LENGTH);
		Korvo::UInt64 length = Korvo::UInt64(field) + shortLimit + 1 + 256;
		if (length > 0xFFFFFFFFu) throw FISParseException("Octet string length exceeds 2^32 - 1");
		return static_cast<unsigned int>(length);
	}

	// The presence flags of an initial vocabulary, first flag highest.
	enum InitialVocabularyFlag
	{
		EXTERNAL_VOCABULARY       = 0x1000,
		RESTRICTED_ALPHABETS      = 0x0800,
		ENCODING_ALGORITHMS       = 0x0400,
		PREFIXES                  = 0x0200,
		NAMESPACE_NAMES           = 0x0100,
		LOCAL_NAMES               = 0x0080,
		OTHER_NCNAMES             = 0x0040,
		OTHER_URIS                = 0x0020,
		ATTRIBUTE_VALUES          = 0x0010,
		CONTENT_CHARACTER_CHUNKS  = 0x0008,
		OTHER_STRINGS             = 0x0004,
		ELEMENT_NAME_SURROGATES   = 0x0002,
		ATTRIBUTE_NAME_SURROGATES = 0x0001
	};

	struct StringTableSection
	{
		unsigned int flag;
		DocumentVocabulary::ID table;
		bool encoded; // entries are encoded character strings
	};

	// In the order of the sections, which is not the order of the table
	// numbers: character chunks come before other strings.
	const StringTableSection STRING_TABLE_SECTIONS[] =
	{
		{PREFIXES, DocumentVocabulary::PREFIX, false},
		{NAMESPACE_NAMES, DocumentVocabulary::NAMESPACE_NAME, false},
		{LOCAL_NAMES, DocumentVocabulary::LOCAL_NAME, false},
		{OTHER_NCNAMES, DocumentVocabulary::OTHER_NCNAME, false},
		{OTHER_URIS, DocumentVocabulary::OTHER_URI, false},
		{ATTRIBUTE_VALUES, DocumentVocabulary::ATTRIBUTE_VALUE, true},
		{CONTENT_CHARACTER_CHUNKS, DocumentVocabulary::CHARACTER_CONTENT_CHUNK, true},
		{OTHER_STRINGS, DocumentVocabulary::OTHER_STRING, true},
	};

	Vocabulary<std::string>& stringTable(const DocumentVocabulary& voc, DocumentVocabulary::ID id)
	{
		Vocabulary<std::string>* pTable = voc.vocabulary(id);
		poco_check_ptr (pTable);
		return *pTable;
	}

	const std::size_t MAX_EXTERNAL_VOCABULARY_DEPTH = 8;

	// The URIs of the external vocabularies being loaded on this thread,
	// outermost first: a vocabulary document that names one of them again
	// would be loaded without end.
	thread_local std::vector<std::string> loadingVocabularies;

	class LoadingVocabulary
		/// Enters a URI in the list of vocabularies being loaded for the
		/// lifetime of the object, refusing repeats and deep nesting.
	{
	public:
		explicit LoadingVocabulary(const std::string& uri)
		{
			if (std::find(loadingVocabularies.begin(), loadingVocabularies.end(), uri) != loadingVocabularies.end())
				throw FISException("External vocabulary refers back to itself", uri);
			if (loadingVocabularies.size() >= MAX_EXTERNAL_VOCABULARY_DEPTH)
				throw FISException("External vocabularies nested too deeply", uri);
			loadingVocabularies.push_back(uri);
		}

		~LoadingVocabulary()
		{
			loadingVocabularies.pop_back();
		}
	};

	bool isXMLDocument(const std::string& uri)
	{
		Korvo::Path path(Korvo::toLower(Korvo::URI(uri).getPath()));
		path.makeFile();
		return path.getExtension() == "xml";
	}

	void learnFromXML(std::istream& istr, DocumentVocabulary& voc)
		/// The vocabulary a writer builds while it encodes the XML document.
	{
		Korvo::NullOutputStream sink;
		FastInfosetWriter writer(sink);
		Korvo::XML::SAXParser parser;
		parser.setFeature(Korvo::XML::XMLReader::FEATURE_NAMESPACES, true);
		parser.setFeature(Korvo::XML::XMLReader::FEATURE_NAMESPACE_PREFIXES, true);
		parser.setContentHandler(&writer);
		parser.setDTDHandler(&writer);
		parser.setProperty(Korvo::XML::XMLReader::PROPERTY_LEXICAL_HANDLER, static_cast<Korvo::XML::LexicalHandler*>(&writer));
		Korvo::XML::InputSource source(istr);
		parser.parse(&source);
		voc = writer.getDocumentVocabulary();
	}

	void readFromFastInfoset(std::istream& istr, DocumentVocabulary& voc)
		/// The vocabulary in which a Fast Infoset document ends.
	{
		FastInfosetParser parser(DocumentVocabulary::VOC_VECTOR);
		Korvo::XML::InputSource source(istr);
		parser.parse(&source);
		voc = parser.vocabulary();
	}

	void loadExternalVocabulary(const std::string& uri, DocumentVocabulary& voc)
	{
		LoadingVocabulary loading(uri);
		std::unique_ptr<std::istream> pStream(Korvo::URIStreamOpener::defaultOpener().open(uri));
		if (isXMLDocument(uri))
			learnFromXML(*pStream, voc);
		else
			readFromFastInfoset(*pStream, voc);
	}

	void xmlDeclarationRest(BitStreamReader& aReader, std::string& xmlDeclaration)
		/// Appends octets up to and including the closing '>'. Octet-string reads
		/// end any reader, a memory reader too, with FISParseException at the
		/// end of the data.
	{
		std::string octet;
		do
		{
			aReader.read(octet, 1);
			xmlDeclaration += octet;
		}
		while (octet != ">");
	}
}


void Decoder::integerForms(BitStreamReader& aReader, unsigned int& val)
{
	// The two-octet forms from the second to the fourth bit, the next most
	// common after the one-octet ones, are decoded from one peek.
	const int pos = aReader.bitPos();
	if (pos >= 1 && pos <= 3)
	{
		const TwoOctetForm& form = TWO_OCTET_FORMS[pos];
		const int numBits = 2*Utility::SIZEOFCHARINBIT - pos;
		const int valueBits = numBits - form.prefixBits;
		unsigned int bits = 0;
		// canRead() first: a memory reader fails an assertion on a peek past its end.
		if (aReader.canRead(numBits) && aReader.peek(bits, numBits) && (bits >> valueBits) == form.prefix)
		{
			aReader.skip(numBits);
			val = (bits & ((1u << valueBits) - 1)) + form.base;
			return;
		}
	}

	val = 0;
	switch (pos)
	{
	case 0:
		throw FISEncodingException("Illegal bit position 0: Integers can never start there");
	case 1:
		val = integerAtPos1(aReader);
		break;
	case 2:
		val = integerAtPos2(aReader);
		break;
	case 3:
		val = integerAtPos3(aReader);
		break;
	case 4:
	case 6:
		val = readBits(aReader, 8) + 1;
		return;
	default:
		throw FISEncodingException("Illegal bit position: No Integers are allowed to be read from pos 5 or 7.");
	}
	poco_assert (aReader.bitPos() == 0);
}


void Decoder::stringLengthForms(BitStreamReader& aReader, unsigned int& strLen)
{
	switch (aReader.bitPos())
	{
	case 1:
		strLen = stringLength(aReader, 7, 64);
		break;
	case 4:
		strLen = stringLength(aReader, 4, 8);
		break;
	case 6:
		strLen = stringLength(aReader, 2, 2);
		break;
	default:
		throw FISEncodingException("illegal position for nonEmptyOctetString encoding");
	}
	poco_assert (aReader.bitPos() == 0);
	poco_assert (strLen > 0);
}


void Decoder::nonEmptyOctetString(BitStreamReader& aReader, std::string& str)
{
	unsigned int strLen;
	nonEmptyStringLength(aReader, strLen);
	expect(aReader.read(str, strLen), "Unexpected end of stream while reading octet string");
}


void Decoder::lengthOfSequence(BitStreamReader& aReader, unsigned int& len)
{
	if (aReader.bitPos() != 0)
		throw FISEncodingException("Illegal startposition for a lengthOfSequence value");

	const char* const END_OF_LENGTH = "Unexpected end of stream while parsing sequence length";
	unsigned char firstBit;
	expect(aReader.peek(firstBit, 1), END_OF_LENGTH);
	unsigned int field;
	if (firstBit)
	{
		expect(aReader.read(field, 24), END_OF_LENGTH);
		len = (field & 0xFFFFF) + 129;
	}
	else
	{
		expect(aReader.read(field, 8), END_OF_LENGTH);
		len = field + 1;
	}
	if (len == 0)
		throw FISEncodingException("Illegal value zero for lengthOfSequence");
}


QualifiedNameEntry Decoder::nameSurrogate(BitStreamReader& aReader)
{
	if (aReader.bitPos() != 6)
		throw FISEncodingException("Illegal startposition for a nameSurrogate value");

	bool hasPrefixIndex = false;
	bool hasNamespaceIndex = false;
	expect(aReader.read(hasPrefixIndex) && aReader.read(hasNamespaceIndex), "Unexpected end of stream while reading surrogate");

	unsigned int prefixIndex = ABSENT_INDEX;
	unsigned int namespaceIndex = ABSENT_INDEX;
	unsigned int localNameIndex = ABSENT_INDEX;
	if (hasPrefixIndex)
	{
		skipPadding(aReader, 1, END_OF_INTEGER);
		integer(aReader, prefixIndex);
	}
	if (hasNamespaceIndex)
	{
		skipPadding(aReader, 1, END_OF_INTEGER);
		integer(aReader, namespaceIndex);
	}
	skipPadding(aReader, 1, END_OF_INTEGER);
	integer(aReader, localNameIndex);
	return QualifiedNameEntry(prefixIndex, namespaceIndex, localNameIndex);
}


void Decoder::skipAdditionalData(BitStreamReader& aReader)
{
	unsigned int entries;
	lengthOfSequence(aReader, entries);
	std::string discarded;
	for (unsigned int i = 0; i < entries; ++i)
	{
		skipPadding(aReader, 1, END_OF_STRING_LENGTH);
		nonEmptyOctetString(aReader, discarded); // identifier
		skipPadding(aReader, 1, END_OF_STRING_LENGTH);
		nonEmptyOctetString(aReader, discarded); // data
	}
}


void Decoder::documentPreHeader(BitStreamReader& aReader, std::string& xmlDeclaration)
{
	xmlDeclaration.clear();

	// The header is read with canRead() first, so that short data is reported
	// as such by memory readers too. Data too short for the identification is
	// no document at all.
	unsigned short identification = 0;
	if (aReader.canRead(16)) aReader.read(identification, 16);
	if (identification == Encoder::XMLDECLARATION)
	{
		xmlDeclaration = "<?";
		xmlDeclarationRest(aReader, xmlDeclaration);
		identification = 0;
		if (aReader.canRead(16)) aReader.read(identification, 16);
	}
	if (identification != Encoder::DOCUMENTSTART)
		throw FISException("Not a valid Fast Infoset document (invalid header)");

	unsigned short version = 0;
	expect(aReader.canRead(16) && aReader.read(version, 16), END_OF_HEADER);
	if (version != VERSION)
		throw FISException("Unsupported Fast Infoset document version");

	// The '0' bit; the flags after it are documentHeader()'s to read, or to miss.
	if (aReader.canRead(1)) aReader.skip(1);
}


Decoder::OpenHeaderParts Decoder::documentHeader(BitStreamReader& aReader, DocumentVocabulary& voc, FISDocumentHandler* pHandler)
{
	return documentHeader(aReader, voc, pHandler, nullptr);
}


Decoder::OpenHeaderParts Decoder::documentHeader(BitStreamReader& aReader, DocumentVocabulary& voc, FISDocumentHandler* pHandler, ExternalVocabularies* pGiven)
{
	return documentHeader(aReader, voc, pHandler, pGiven, true);
}


Decoder::OpenHeaderParts Decoder::documentHeader(BitStreamReader& aReader, DocumentVocabulary& voc, FISDocumentHandler* pHandler, ExternalVocabularies* pGiven, bool resetVocabulary)
{
	// A header that ends before its flags may have had no '0' bit to skip.
	expect(aReader.canRead(7), END_OF_HEADER);
	poco_assert (aReader.bitPos() == 1);

	unsigned int flags;
	expect(aReader.read(flags, 7), END_OF_HEADER);
	const bool hasAdditionalData = (flags & 0x40) != 0;
	const bool hasInitialVocabulary = (flags & 0x20) != 0;

	OpenHeaderParts openParts;
	openParts.hasNotations = (flags & 0x10) != 0;
	openParts.hasUnparsedEntities = (flags & 0x08) != 0;
	openParts.hasCharacterEncodingScheme = (flags & 0x04) != 0;
	openParts.standalone = (flags & 0x02) != 0;
	openParts.hasVersion = (flags & 0x01) != 0;

	if (hasAdditionalData) skipAdditionalData(aReader);
	if (hasInitialVocabulary)
		parseInitialVocabulary(aReader, voc, pHandler, pGiven);
	else if (resetVocabulary)
		voc.reset();
	return openParts;
}


std::string Decoder::externalVocabularyURI(BitStreamReader& aReader)
{
	std::string uri;
	documentPreHeader(aReader, uri);
	uri.clear();
	unsigned int flags = 0;
	expect(aReader.canRead(7) && aReader.read(flags, 7), END_OF_HEADER);
	if (flags & 0x40) skipAdditionalData(aReader);
	if (!(flags & 0x20)) return uri;
	expect(aReader.read(flags, 16), END_OF_INITIAL_VOCABULARY);
	if (!(flags & EXTERNAL_VOCABULARY)) return uri;
	skipPadding(aReader, 1, END_OF_STRING_LENGTH);
	nonEmptyOctetString(aReader, uri);
	return uri;
}


void Decoder::parseInitialVocabulary(BitStreamReader& aReader, DocumentVocabulary& voc, FISDocumentHandler* pHandler)
{
	parseInitialVocabulary(aReader, voc, pHandler, nullptr);
}


void Decoder::parseInitialVocabulary(BitStreamReader& aReader, DocumentVocabulary& voc, FISDocumentHandler* pHandler, ExternalVocabularies* pGiven)
{
	// Three padding bits, then the thirteen presence flags up to the octet boundary.
	unsigned int flags;
	expect(aReader.read(flags, 16), END_OF_INITIAL_VOCABULARY);
	flags &= 0x1FFF;
	if (flags == 0)
		throw FISException("Initial Vocabulary detected with zero information in it - at least one dictionary required");

	if (flags & EXTERNAL_VOCABULARY)
		handleExternalVocabulary(aReader, voc, pHandler, pGiven);
	else
		voc.reset();
	if (flags & RESTRICTED_ALPHABETS) handleRestrictedAlphabet(aReader, voc);
	if (flags & ENCODING_ALGORITHMS) skipEncodingAlgos(aReader, voc);
	for (const StringTableSection& section: STRING_TABLE_SECTIONS)
	{
		if (!(flags & section.flag)) continue;
		Vocabulary<std::string>& table = stringTable(voc, section.table);
		if (section.encoded)
			handleEncodedCharacterStringVoc(aReader, table, voc);
		else
			handleVocabulary(aReader, table);
	}
	if (flags & ELEMENT_NAME_SURROGATES) handleNameSurrogatesVoc(aReader, *voc.elementVocabulary());
	if (flags & ATTRIBUTE_NAME_SURROGATES) handleNameSurrogatesVoc(aReader, *voc.attributeVocabulary());
}


void Decoder::handleExternalVocabulary(BitStreamReader& aReader, DocumentVocabulary& voc, FISDocumentHandler* pHandler)
{
	handleExternalVocabulary(aReader, voc, pHandler, nullptr);
}


void Decoder::handleExternalVocabulary(BitStreamReader& aReader, DocumentVocabulary& voc, FISDocumentHandler* pHandler, ExternalVocabularies* pGiven)
{
	skipPadding(aReader, 1, END_OF_STRING_LENGTH);
	std::string uri;
	nonEmptyOctetString(aReader, uri);
	if (pGiven && pGiven->install(uri, voc))
	{
		if (pHandler) pHandler->setExternalVocabulary(uri, voc);
		return;
	}
	if (uri == voc.getURI()) return; // already the vocabulary in hand

	loadExternalVocabulary(uri, voc);
	if (pHandler) pHandler->setExternalVocabulary(uri, voc);
}


void Decoder::handleRestrictedAlphabet(BitStreamReader& aReader, DocumentVocabulary& voc)
{
	unsigned int entries;
	lengthOfSequence(aReader, entries);
	std::string characters;
	for (unsigned int i = 0; i < entries; ++i)
	{
		skipPadding(aReader, 1, END_OF_STRING_LENGTH);
		nonEmptyOctetString(aReader, characters);
		voc.restrictedAlphabets().add(characters);
	}
}


void Decoder::skipEncodingAlgos(BitStreamReader& aReader, DocumentVocabulary&)
{
	unsigned int entries;
	lengthOfSequence(aReader, entries);
	std::string uri;
	for (unsigned int i = 0; i < entries; ++i)
	{
		skipPadding(aReader, 1, END_OF_STRING_LENGTH);
		nonEmptyOctetString(aReader, uri);
	}
}


void Decoder::handleVocabulary(BitStreamReader& aReader, Vocabulary<std::string>& voc)
{
	unsigned int entries;
	lengthOfSequence(aReader, entries);
	std::string value;
	for (unsigned int i = 0; i < entries; ++i)
	{
		skipPadding(aReader, 1, END_OF_STRING_LENGTH);
		nonEmptyOctetString(aReader, value);
		bool existed;
		voc.index(value, existed);
		poco_assert (!existed);
	}
}


void Decoder::handleEncodedCharacterStringVoc(BitStreamReader& aReader, Vocabulary<std::string>& voc, DocumentVocabulary& vocDocu)
{
	unsigned int entries;
	lengthOfSequence(aReader, entries);
	std::string value;
	for (unsigned int i = 0; i < entries; ++i)
	{
		skipPadding(aReader, 2, END_OF_ENCODED_STRING);
		encodedCharacterString(aReader, value, vocDocu);
		bool existed;
		voc.index(value, existed);
		poco_assert (!existed);
	}
}


void Decoder::encodedCharacterString(BitStreamReader& aReader, std::string& utf8String, DocumentVocabulary& voc)
{
	unsigned int encoding;
	expect(aReader.read(encoding, 2), END_OF_ENCODED_STRING);
	unsigned int index = 0;
	if (encoding == DocumentVocabulary::RESTRICTEDALPHABET || encoding == DocumentVocabulary::ENCODINGALGORITHM)
	{
		// Two indices precede these forms here, and the first is not used:
		// the writer of initial vocabularies writes them so.
		integer(aReader, index);
		integer(aReader, index);
	}

	std::string octets;
	switch (encoding)
	{
	case DocumentVocabulary::UTF8:
		nonEmptyOctetString(aReader, utf8String);
		break;
	case DocumentVocabulary::UTF16:
		nonEmptyOctetString(aReader, octets);
		StringDecoder::decodeUTF16(octets, utf8String);
		break;
	case DocumentVocabulary::RESTRICTEDALPHABET:
		nonEmptyOctetString(aReader, octets);
		StringDecoder::decodeAlphabet(octets, voc.restrictedAlphabets().alphabet(index), utf8String);
		break;
	default:
		utf8String = voc.decodings().read(static_cast<int>(index), aReader)->content();
		break;
	}
}


void Decoder::handleNameSurrogatesVoc(BitStreamReader& aReader, Vocabulary<QualifiedNameEntry>& voc)
{
	unsigned int entries;
	lengthOfSequence(aReader, entries);
	for (unsigned int i = 0; i < entries; ++i)
	{
		skipPadding(aReader, 6, END_OF_SURROGATE);
		bool existed;
		voc.index(nameSurrogate(aReader), existed);
		poco_assert (!existed);
	}
}


} } // namespace Korvo::FastInfoset
