//
// ParserRobustnessTest.cpp
//
// Truncated, corrupted and mutated documents end in the library's
// exceptions (or an assertion, or the out-of-range error of vector tables),
// never in a crash or a hang.
//

#include "support/ParserTestSupport.h"
#include "Korvo/FastInfoset/FISException.h"
#include "support/ExceptionMatchers.h"
#include "Poco/DirectoryIterator.h"
#include "Poco/Path.h"
#include <gtest/gtest.h>
#include <fstream>
#include <functional>
#include <random>
#include <sstream>
#include <stdexcept>

using namespace Korvo::FastInfoset;
using namespace Korvo::FastInfoset::Test;


namespace
{
	const std::string ROOT = "3C 03 72 6F 6F 74";

	class ExposedParser: public FastInfosetParser
		/// Opens the item readers, so that they can be entered at a wrong bit.
	{
	public:
		using FastInfosetParser::parseElement;
		using FastInfosetParser::parseElementEnd;
		using FastInfosetParser::parseNamespaceAttribute;
		using FastInfosetParser::parseAttribute;
		using FastInfosetParser::parseQualifiedNameOrIndex;
		using FastInfosetParser::parseIdentifyingStringOrIndex;
		using FastInfosetParser::parseNonIdentifyingStringOrIndex;
		using FastInfosetParser::parseNonIdentifyingStringOrIndexXML;
		using FastInfosetParser::parseEncodedCharacterString;
		using FastInfosetParser::parseEncodedCharacterStringXML;
		using FastInfosetParser::parseCharacterChunk;
		using FastInfosetParser::parseNotation;
		using FastInfosetParser::parseUnparsedEntity;
		using FastInfosetParser::parseDocumentTypeDeclaration;
		using FastInfosetParser::parseComment;
		using FastInfosetParser::parseUnexpandedEntityReference;
	};

	template <class Exc>
	std::string messageOf(const std::function<void()>& call)
	{
		try
		{
			call();
		}
		catch (const Exc& exc)
		{
			return exc.message();
		}
		return "<no exception>";
	}
}


TEST(ParserRobustnessTest, ItemsEnteredAtAWrongBit)
{
	using Item = std::function<void(ExposedParser&, BitStreamReader&)>;
	Korvo::XML::AttributesImpl attrs;
	FastInfosetParser::ResolvedQualName qualName;
	unsigned type = 0;
	const struct
	{
		int position;
		Item item;
		const char* message;
	}
	cases[] =
	{
		{0, [](ExposedParser& p, BitStreamReader& r) { p.parseElement(r); }, "Illegal startposition for an Element value"},
		{0, [&](ExposedParser& p, BitStreamReader& r) { p.parseNamespaceAttribute(r, attrs); }, "Illegal startposition for a NamespaceAttribute value"},
		{0, [&](ExposedParser& p, BitStreamReader& r) { p.parseAttribute(r, attrs); }, "Illegal startposition for a Attribute value"},
		{3, [&](ExposedParser& p, BitStreamReader& r) { p.parseQualifiedNameOrIndex(r, qualName, true); }, "Illegal startposition for a parseQualifiedNameOrIndex value"},
		{1, [](ExposedParser& p, BitStreamReader& r) { p.parseIdentifyingStringOrIndex(r, DocumentVocabulary::PREFIX); }, "Illegal startposition for an parseIdentifyingStringOrIndex"},
		{1, [](ExposedParser& p, BitStreamReader& r) { p.parseNonIdentifyingStringOrIndex(r, DocumentVocabulary::OTHER_STRING); }, "Illegal startposition for a NonIdentifyingStringOrIndex value"},
		{4, [&](ExposedParser& p, BitStreamReader& r) { p.parseNonIdentifyingStringOrIndexXML(r, DocumentVocabulary::OTHER_STRING, type); }, "Illegal startposition for a NonIdentifyingStringOrIndex value"},
		{0, [](ExposedParser& p, BitStreamReader& r) { p.parseEncodedCharacterString(r); }, "Illegal startposition for an encodedCharacterString"},
		{3, [&](ExposedParser& p, BitStreamReader& r) { p.parseEncodedCharacterStringXML(r, type); }, "Illegal startposition for an encodedCharacterString"},
		{0, [](ExposedParser& p, BitStreamReader& r) { p.parseCharacterChunk(r); }, "Illegal startposition for a CharacterChunk value"},
		{0, [](ExposedParser& p, BitStreamReader& r) { p.parseNotation(r); }, "Illegal startposition for a Notation value"},
		{6, [](ExposedParser& p, BitStreamReader& r) { p.parseUnparsedEntity(r); }, "Illegal startposition for an UnparsedEntity value"},
		{0, [](ExposedParser& p, BitStreamReader& r) { p.parseDocumentTypeDeclaration(r); }, "Illegal startposition for a DocumentTypeDeclaration value"},
		{2, [](ExposedParser& p, BitStreamReader& r) { p.parseComment(r); }, "Illegal startposition for a Comment value"},
		{0, [](ExposedParser& p, BitStreamReader& r) { p.parseUnexpandedEntityReference(r); }, "Illegal startposition for a Notation value"},
		{0, [](ExposedParser& p, BitStreamReader& r) { p.parseElementEnd(r); }, "Termination flag not found"},
	};
	const std::string octets = bytesOf("00 00 00 00");
	for (const auto& c: cases)
	{
		SCOPED_TRACE(c.message);
		ExposedParser parser;
		BitStreamReader reader(octets.data(), static_cast<unsigned int>(octets.size()));
		if (c.position > 0) reader.skip(c.position);
		EXPECT_EQ(c.message, messageOf<FISEncodingException>([&] { c.item(parser, reader); }));
	}
}


TEST(ParserRobustnessTest, DocumentsCutShortOrCorrupted)
{
	const struct
	{
		const char* name;
		std::string hex;
		const char* message;
	}
	cases[] =
	{
		{"no element end", FIS_HEADER + ROOT, "Unexpected end of stream while parsing element children"},
		{"no attribute", FIS_HEADER + "7C 00 61", "Unexpected end of stream while parsing element"},
		{"no namespace attribute", FIS_HEADER + "38", "Unexpected end of stream while parsing element"},
		{"no attribute value", FIS_HEADER + "7C 00 61 78 00 62", "Unexpected end of stream while parsing non identifying string or index"},
		{"no local name", FIS_HEADER + "3C", "Unexpected end of stream while parsing identifying string or index"},
		{"no name after namespace declarations", FIS_HEADER + "38 CD 00 61 F0 3C", "Unexpected end of stream while parsing identifying string or index"},
		{"no end of namespace declarations", FIS_HEADER + "38 CD 00 61", "Unexpected end of stream while parsing element"},
		{"no notation", "E0 00 00 01 10", "Unexpected end of stream while parsing notation"},
		{"no unparsed entity", "E0 00 00 01 08", "Unexpected end of stream while parsing unparsed entity"},
		{"no doctype end", FIS_HEADER + "C4", "Unexpected end of stream while parsing document type declaration"},
		{"no character encoding scheme", "E0 00 00 01 04", "Unexpected end of stream while parsing character encoding scheme"},
		{"no standalone flag", "E0 00 00 01 02", "Unexpected end of stream while parsing standalone"},
	};
	for (const auto& c: cases)
	{
		SCOPED_TRACE(c.name);
		EXPECT_EQ(c.message, messageOf<FISParseException>([&] { parseHex(c.hex); }));
	}

	const struct
	{
		std::string hex;
		const char* message;
	}
	children[] =
	{
		{FIS_HEADER + "C0", "Invalid child element"},                              // 110000xx is no child
		{FIS_HEADER + "D4", "Invalid child element"},                              // 110101xx neither
		{FIS_HEADER + ROOT + "E0 FF", "Parse error: unknown element child code"},  // 11100000
		{FIS_HEADER + ROOT + "EF FF", "Parse error: unknown element child code"},  // 11101111
		{FIS_HEADER + "C4 F0 F5", "Parse error: unknown element child code"},      // 1111xxxx after padding
	};
	for (const auto& c: children)
	{
		SCOPED_TRACE(c.hex);
		EXPECT_EQ(c.message, messageOf<FISEncodingException>([&] { parseHex(c.hex); }));
	}
}


TEST(ParserRobustnessTest, IndexPastATableFailsAsTheTableDoes)
{
	const struct
	{
		const char* name;
		std::string hex;
	}
	cases[] =
	{
		{"element name", FIS_HEADER + "01 F0"},
		{"element name after namespace declarations", FIS_HEADER + "38 CD 00 61 F0 01 F0"},
		{"declared namespace name", FIS_HEADER + "38 CD 81 F0 3C 00 65 F0"},
		{"attribute name", FIS_HEADER + "7C 00 61 00 80 FF F0"},
		{"local name", FIS_HEADER + "3C 81 FF"},
		{"attribute value", FIS_HEADER + "7C 00 61 78 00 62 81 FF F0"},
		{"character chunk", FIS_HEADER + ROOT + "A1 FF"},
	};
	for (const auto& c: cases)
	{
		SCOPED_TRACE(c.name);
		for (DocumentVocabulary::VocabularyImpl impl: {DocumentVocabulary::VOC_HASH, DocumentVocabulary::VOC_MAP})
		{
			FastInfosetParser parser(impl);
			EXPECT_ASSERTION(parseToEvents(bytesOf(c.hex), TYPED_HANDLER, &parser), "this->_index.size() > idx");
		}
		FastInfosetParser parser(DocumentVocabulary::VOC_VECTOR);
		EXPECT_THROW_MESSAGE(parseToEvents(bytesOf(c.hex), TYPED_HANDLER, &parser), std::out_of_range, "index out of range");
	}
}


TEST(ParserRobustnessTest, MutatedDocumentsOnlyThrow)
{
	// Valid documents of many kinds: hand-built ones and the peer documents.
	std::vector<std::string> corpus =
	{
		bytesOf(FIS_HEADER + "38 CF 00 70 04 75 72 6E 3A 78 F0 3F 81 81 00 65 38 CF 00 71 04 75 72 6E 3A 79 F0 3F 82 82 80 FF F0"),
		bytesOf(FIS_HEADER + ROOT + "7C 00 61 78 01 69 64 41 34 32 FF 41 00 80 FF FF"),
		bytesOf(FIS_HEADER + ROOT + "91 68 69 A0 86 01 00 68 00 69 88 01 12 3F 88 06 00 12 B3 0F 8C 0E 05 00 00 00 01 FF FF FF FF"
			"8C 14 1A 8C 22 0D 6B A7 B8 10 9D AD 11 D1 80 B4 00 C0 4F D4 30 C8 8C 06 00 01 02 03 8C 26 00 78 3C 79 FF"),
		bytesOf("E0 00 00 01 18 C2 02 70 6E 67 08 69 6D 61 67 65 2F 70 6E 67 F0 D1 03 6C 6F 67 6F 07 6C 6F 67 6F 2E 70 6E 67 FF 02 70 6E 67 F0"
			"C6 07 6E 6F 74 65 2E 64 74 64 E1 01 70 69 00 78 F0 E2 42 68 65 79 3C 03 72 6F 6F 74 CA 02 65 6E 74 04 65 2E 78 6D 6C E2 80 FF"),
		bytesOf("E0 00 00 01 20 08 00 00 02 61 62 63" + ROOT + "88 3C 87 FF"),
	};
	// The small peer documents only, so that the test stays quick under the sanitizers.
	const bool havePeerDocuments = Korvo::File(KORVO_PEER_FIXTURES).exists();
	for (Korvo::DirectoryIterator it(havePeerDocuments ? std::string(KORVO_PEER_FIXTURES) : std::string(".")), end; havePeerDocuments && it != end; ++it)
	{
		if (Korvo::Path(it.path()).getExtension() == "fi" && it->getSize() < 4096) corpus.push_back(readFileOctets(it.path().toString()));
	}

	std::mt19937 random(20260101);
	int failures = 0;
	int parsed = 0;
	int refused = 0;
	const int variants = 3000;
	for (int variant = 0; variant < variants && failures < 5; ++variant)
	{
		std::string doc = corpus[random() % corpus.size()];
		const int mutations = 1 + random() % 3;
		for (int m = 0; m < mutations && !doc.empty(); ++m)
		{
			const std::size_t at = random() % doc.size();
			switch (random() % 5)
			{
			case 0: doc[at] = static_cast<char>(doc[at] ^ (1 << (random() % 8))); break;
			case 1: doc[at] = static_cast<char>(random()); break;
			case 2: doc.resize(at); break;
			case 3: doc.insert(at, 1, static_cast<char>(random())); break;
			default: doc.erase(at, 1); break;
			}
		}
		for (Delivery delivery: {TYPED_HANDLER, PLAIN_HANDLER})
		{
			try
			{
				if (variant % 2)
				{
					parseToEvents(doc, delivery);
				}
				else
				{
					FastInfosetParser parser(variant % 4 ? DocumentVocabulary::VOC_HASH : DocumentVocabulary::VOC_VECTOR);
					SaxRecorder recorder;
					parser.setContentHandler(&recorder);
					parser.parseMemoryNP(doc.data(), doc.size());
				}
				++parsed;
			}
			catch (const Korvo::Exception&)
			{
				++refused;
			}
			catch (const std::out_of_range& exc)
			{
				// how vector tables refuse an index past their end
				if (std::string(exc.what()) == "index out of range") ++refused;
				else ADD_FAILURE() << "variant " << variant << ": " << exc.what() << "\n" << hexOf(doc);
			}
			catch (const std::exception& exc)
			{
				++failures;
				ADD_FAILURE() << "variant " << variant << ": " << typeid(exc).name() << ": " << exc.what() << "\n" << hexOf(doc);
			}
		}
	}
	// Both outcomes occur, so the mutations reach past the header.
	EXPECT_GT(parsed, variants/10);
	EXPECT_GT(refused, variants/10);
}
