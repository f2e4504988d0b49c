//
// Decoder.h
//
// Library: FastInfoset
// Package: Primitives
// Module:  Decoder
//
// Reads the primitive wire forms, the document header and the initial vocabulary.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_Decoder_INCLUDED
#define FastInfoset_Decoder_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/BitStreamReader.h"
#include "Korvo/FastInfoset/QualifiedNameVocabulary.h"
#include "Korvo/FastInfoset/Vocabulary.h"
#include <string>


namespace Korvo {
namespace FastInfoset {


class DocumentVocabulary;
class ExternalVocabularies;
class FISDocumentHandler;


class FastInfoset_API Decoder
	/// Static functions that read the primitive wire forms of a document,
	/// its header and its initial vocabulary. Truncated input throws
	/// FISParseException; a value at a position where no form exists
	/// throws FISEncodingException.
{
public:
	struct OpenHeaderParts
		/// The header flags that the parser still has to act on; a plain
		/// record, so {hasNotations, ..., hasVersion} initialises it.
	{
		bool hasNotations = false;
		bool hasUnparsedEntities = false;
		bool hasCharacterEncodingScheme = false;
		bool standalone = false;
		bool hasVersion = false;
	};

	static void integer(BitStreamReader& aReader, unsigned int& val);
		/// Reads an index or small integer in the form that starts at the
		/// reader's bit position.

	static void nonEmptyStringLength(BitStreamReader& aReader, unsigned int& strLen);
		/// Reads the length of a non-empty octet string at position 1, 4 or 6.

	static void nonEmptyOctetString(BitStreamReader& aReader, std::string& str);
		/// Reads a length and that many octets.

	static void lengthOfSequence(BitStreamReader& aReader, unsigned int& len);
		/// Reads the length of a sequence at an octet boundary.

	static QualifiedNameEntry nameSurrogate(BitStreamReader& aReader);
		/// Reads a name surrogate starting at position 6; absent indices are 0xFFFFFFFF.

	static void skipAdditionalData(BitStreamReader& aReader);
		/// Reads and discards the additional-data block.

	static void documentPreHeader(BitStreamReader& aReader, std::string& xmlDeclaration);
		/// Reads the optional XML declaration, the identification and the
		/// version, leaving the reader at the header flags.

	static OpenHeaderParts documentHeader(BitStreamReader& aReader, DocumentVocabulary& voc, FISDocumentHandler* pHandler);
		/// Reads the header flags, the additional data and the initial
		/// vocabulary (or resets voc when there is none).

	static OpenHeaderParts documentHeader(BitStreamReader& aReader, DocumentVocabulary& voc, FISDocumentHandler* pHandler, ExternalVocabularies* pGiven);
		/// documentHeader(), taking an external vocabulary that pGiven holds
		/// for its URI from there.

	static OpenHeaderParts documentHeader(BitStreamReader& aReader, DocumentVocabulary& voc, FISDocumentHandler* pHandler, ExternalVocabularies* pGiven, bool resetVocabulary);
		/// documentHeader(), leaving voc as it is for a document without an
		/// initial vocabulary unless resetVocabulary: for a vocabulary known
		/// to be as reset() leaves it.

	static std::string externalVocabularyURI(BitStreamReader& aReader);
		/// Reads a document's header up to the URI of the external vocabulary
		/// it names, and returns it; empty when it names none.

	static void parseInitialVocabulary(BitStreamReader& aReader, DocumentVocabulary& voc, FISDocumentHandler* pHandler);
		/// Reads an initial vocabulary into voc, which starts from the external
		/// vocabulary the document names or else from fresh tables. One without
		/// any table throws FISException.

	static void parseInitialVocabulary(BitStreamReader& aReader, DocumentVocabulary& voc, FISDocumentHandler* pHandler, ExternalVocabularies* pGiven);
		/// parseInitialVocabulary() with the vocabularies pGiven holds.

	static void handleExternalVocabulary(BitStreamReader& aReader, DocumentVocabulary& voc, FISDocumentHandler* pHandler);
		/// Reads the URI of an external vocabulary. Unless voc already carries
		/// that URI, loads the vocabulary into voc (a path ending in ".xml" is
		/// read as XML, anything else as Fast Infoset) and announces it to
		/// pHandler, when there is one. Opening and parsing errors propagate
		/// unchanged; a vocabulary that names itself again, directly or through
		/// others, throws FISException.

	static void handleExternalVocabulary(BitStreamReader& aReader, DocumentVocabulary& voc, FISDocumentHandler* pHandler, ExternalVocabularies* pGiven);
		/// handleExternalVocabulary(), except that a vocabulary pGiven holds
		/// for the URI is installed from there, whatever URI voc carries.

	static void handleRestrictedAlphabet(BitStreamReader& aReader, DocumentVocabulary& voc);
		/// Appends the alphabets of the section to voc's restricted alphabets.

	static void skipEncodingAlgos(BitStreamReader& aReader, DocumentVocabulary& voc);
		/// Reads and discards the encoding algorithm URIs of the section.

	static void handleVocabulary(BitStreamReader& aReader, Vocabulary<std::string>& voc);
		/// Adds the octet strings of a section to voc.

	static void handleEncodedCharacterStringVoc(BitStreamReader& aReader, Vocabulary<std::string>& voc, DocumentVocabulary& vocDocu);
		/// Adds the encoded character strings of a section to voc.

	static void encodedCharacterString(BitStreamReader& aReader, std::string& utf8String, DocumentVocabulary& voc);
		/// Reads one encoded character string of an initial vocabulary, starting
		/// at bit position 2, as UTF-8. The alphabet and algorithm forms carry
		/// two indices, of which the second counts.

	static void handleNameSurrogatesVoc(BitStreamReader& aReader, Vocabulary<QualifiedNameEntry>& voc);
		/// Adds the name surrogates of a section to voc.

private:
	static bool oneOctetForm(BitStreamReader& aReader, unsigned int& value);
		/// The short form of an integer or length that starts inside an
		/// octet: a clear first bit, then the value less one in the rest of
		/// the octet. False, reading nothing, for any other form or when the
		/// octet is not there.

	static void integerForms(BitStreamReader& aReader, unsigned int& val);
	static void stringLengthForms(BitStreamReader& aReader, unsigned int& strLen);
		/// integer() and nonEmptyStringLength() for every form.
};


//
// inlines
//
inline bool Decoder::oneOctetForm(BitStreamReader& aReader, unsigned int& value)
{
	const int restOfOctet = Utility::SIZEOFCHARINBIT - aReader.bitPos();
	unsigned char rest = 0;
	if (!aReader.peek(rest, restOfOctet) || (rest >> (restOfOctet - 1))) return false;
	aReader.skip(restOfOctet);
	value = rest + 1u;
	return true;
}


inline void Decoder::integer(BitStreamReader& aReader, unsigned int& val)
{
	// Most indices are small enough for the short forms of the second to
	// the fourth bit.
	const int pos = aReader.bitPos();
	if (pos < 1 || pos > 3 || !oneOctetForm(aReader, val)) integerForms(aReader, val);
}


inline void Decoder::nonEmptyStringLength(BitStreamReader& aReader, unsigned int& strLen)
{
	const int pos = aReader.bitPos();
	if ((pos != 1 && pos != 4 && pos != 6) || !oneOctetForm(aReader, strLen)) stringLengthForms(aReader, strLen);
}


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_Decoder_INCLUDED
