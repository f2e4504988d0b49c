//
// ConverterTest.cpp
//
// Whole-document conversion: the bytes convertToFIS writes, the option bits
// (including the overlap of bits 1 and 129), the XML convertToXML writes and
// its document type declaration, round trips, and the exceptions of bad
// XML, bad Fast Infoset and failing streams.
//

#include "Korvo/FastInfoset/Converter.h"
#include "Korvo/FastInfoset/Utility.h"
#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include "Korvo/FastInfoset/FastInfosetParser.h"
#include "Korvo/FastInfoset/FISException.h"
#include "support/ConversionTesting.h"
#include "support/ExceptionMatchers.h"
#include "Poco/SAX/SAXException.h"
#include <gtest/gtest.h>
#include <functional>
#include <sstream>

using namespace Korvo::FastInfoset;
using Korvo::FastInfoset::Tool::DocumentEvents;
using Tests::toFIS;
using Tests::toXML;


namespace {


std::string hex(const std::string& octets)
{
	static const char DIGITS[] = "0123456789abcdef";
	std::string result;
	for (unsigned char c: octets)
	{
		result += DIGITS[c >> 4];
		result += DIGITS[c & 0x0F];
	}
	return result;
}


std::string octets(const std::string& hexText)
{
	std::string result;
	for (std::size_t i = 0; i + 1 < hexText.size(); i += 2)
		result += static_cast<char>(std::stoi(hexText.substr(i, 2), nullptr, 16));
	return result;
}


std::vector<std::string> eventsOf(const std::string& xml, bool dropWhitespaceText = false)
{
	DocumentEvents::Options options;
	options.dropWhitespaceText = dropWhitespaceText;
	return Tests::xmlEvents(xml, options);
}


std::string fisWrittenBy(const std::function<void (FastInfosetWriter&)>& drive)
{
	std::ostringstream output;
	FastInfosetWriter writer(output, false, DocumentVocabulary::VOC_MAP);
	writer.startDocument();
	drive(writer);
	writer.endDocument();
	return output.str();
}


unsigned chunkTableSize(const std::string& fis)
{
	FastInfosetParser parser(DocumentVocabulary::VOC_MAP);
	parser.parseMemoryNP(fis.data(), fis.size());
	return parser.vocabulary().vocabulary(DocumentVocabulary::CHARACTER_CONTENT_CHUNK)->size();
}


const char* const XML_DECLARATION = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";


} // namespace


TEST(ConverterTest, ConvertToFISWritesExactBytes)
{
	struct Case { const char* xml; int maxIndexed; int options; const char* fis; };
	const Case cases[] =
	{
		// header E0 00 00 01 00; element: literal name "a" (3c 00 61); two terminators
		{"<a/>", 16, 0, "e0000001003c0061ff"},
		// text "hi" as a literal chunk marked for indexing (91), then its octets
		{"<a>hi</a>", 16, 0, "e0000001003c0061916869ff"},
		// the same chunk longer than the limit: not marked for indexing (81)
		{"<a>hi</a>", 0, 0, "e0000001003c0061816869ff"},
		// whitespace-only text is kept without options
		{"<a> </a>", 16, 0, "e0000001003c00619020ff"},
		// ... and dropped by bit 1, which names the XML declaration but overlaps 129
		{"<a> </a>", 16, Converter::CONV_WRITE_XML_DECLARATION, "e0000001003c0061ff"},
		{"<a> </a>", 16, Converter::CONV_REMOVE_IGNORABLE_WHITESPACE, "e0000001003c0061ff"},
		// pretty printing (bit 2) means nothing to convertToFIS
		{"<a> </a>", 16, Converter::CONV_PRETTY_PRINT_XML, "e0000001003c00619020ff"},
	};
	for (const auto& c: cases)
		EXPECT_EQ(c.fis, hex(toFIS(c.xml, c.maxIndexed, c.options))) << c.xml << " options " << c.options;
}


TEST(ConverterTest, WhitespaceRemovalKeepsTextWithContent)
{
	const std::string xml = "<a>\n  <b> x </b>\n  <c>\t</c>\n</a>";
	const std::string fis = toFIS(xml, 16, Converter::CONV_WRITE_XML_DECLARATION);
	EXPECT_EQ(std::string(XML_DECLARATION) + "<a><b> x </b><c/></a>", toXML(fis));
}


TEST(ConverterTest, MaxIndexedStringLengthDecidesWhatIsIndexed)
{
	const std::string xml = "<r><x>value</x><x>value</x><x>a much longer value than sixteen</x></r>";
	// table sizes count the placeholder at index 0
	EXPECT_EQ(2u, chunkTableSize(toFIS(xml, 16)));
	EXPECT_EQ(1u, chunkTableSize(toFIS(xml, 4)));
	EXPECT_EQ(3u, chunkTableSize(toFIS(xml, -1)));
	EXPECT_LT(toFIS(xml, 16).size(), toFIS(xml, 4).size());
	EXPECT_EQ(eventsOf(xml), eventsOf(toXML(toFIS(xml, 4))));
}


TEST(ConverterTest, ConvertToXMLOptions)
{
	const std::string fis = toFIS("<a x=\"1\"><b>t</b></a>");
	EXPECT_EQ(std::string(XML_DECLARATION) + "<a x=\"1\"><b>t</b></a>", toXML(fis, Converter::CONV_WRITE_XML_DECLARATION));
	EXPECT_EQ("<a x=\"1\"><b>t</b></a>", toXML(fis, 0));
	EXPECT_EQ("<a x=\"1\">\n\t<b>t</b>\n</a>\n", toXML(fis, Converter::CONV_PRETTY_PRINT_XML));
	EXPECT_EQ(0u, toXML(fis, Converter::CONV_WRITE_XML_DECLARATION | Converter::CONV_PRETTY_PRINT_XML).rfind(XML_DECLARATION, 0));
}


TEST(ConverterTest, UtilityShortcuts)
{
	std::istringstream xml("<a> <b/> </a>");
	std::ostringstream fis;
	Utility::convertToFIS(xml, fis, 16);
	EXPECT_EQ(toFIS("<a> <b/> </a>"), fis.str());

	std::istringstream fisInput(fis.str());
	std::ostringstream back;
	Utility::convertToXML(fisInput, back);
	EXPECT_EQ(std::string(XML_DECLARATION) + "<a> <b/> </a>", back.str());
}


TEST(ConverterTest, RoundTripKeepsWhatTheDocumentSays)
{
	const char* const documents[] =
	{
		"<a/>",
		"<a x='1' y='two' z=''>text<b/>tail</a>",
		"<p:a xmlns:p='urn:p' p:x='1' y='2'><p:b/><c xmlns='urn:d'><d/></c></p:a>",
		"<a xmlns='urn:d'><b xmlns=''>none</b><x:c xmlns:x='urn:x' x:k='v'/></a>",
		"<a xmlns:p='urn:1'><p:b xmlns:p='urn:2'/><p:c/></a>",
		"<!-- before --><?pi before?><a><!-- in --><?pi in the middle?></a><!-- after --><?after?>",
		"<a><![CDATA[<not> & markup]]> and &lt;escaped&gt; &amp; &#169;</a>",
		"<a lang='日本語' xml:lang='ja'>こんにちは 😀 Grüße</a>",
		"<a>\n  <b>  spaced  </b>\n\t<c/>\n</a>",
		"<r><i k='v'>same</i><i k='v'>same</i><i k='v'>same</i></r>",
	};
	for (const char* xml: documents)
	{
		EXPECT_EQ(eventsOf(xml), eventsOf(toXML(toFIS(xml)))) << xml;
		// indentation adds whitespace-only text and nothing else
		const std::string pretty = toXML(toFIS(xml), Converter::CONV_PRETTY_PRINT_XML | Converter::CONV_WRITE_XML_DECLARATION);
		EXPECT_EQ(eventsOf(xml, true), eventsOf(pretty, true)) << xml;
	}
}


TEST(ConverterTest, DoctypeTakesTheRootElementsName)
{
	struct Case { const char* xml; const char* expected; };
	const Case cases[] =
	{
		{"<!DOCTYPE note SYSTEM 'note.dtd'><note/>", "<!DOCTYPE note SYSTEM \"note.dtd\"><note/>"},
		{"<!DOCTYPE x PUBLIC '-//K//D' 'n.dtd'><n/>", "<!DOCTYPE n PUBLIC \"-//K//D\" \"n.dtd\"><n/>"},
		{"<!DOCTYPE p:r SYSTEM 'r.dtd'><p:r xmlns:p='urn:p'/>", "<!DOCTYPE p:r SYSTEM \"r.dtd\"><p:r xmlns:p=\"urn:p\"/>"},
		{"<!DOCTYPE r SYSTEM 'r.dtd'><r xmlns='urn:d'/>", "<!DOCTYPE r SYSTEM \"r.dtd\"><r xmlns=\"urn:d\"/>"},
		{"<!DOCTYPE r [<!ENTITY e 'x'>]><r>&e;</r>", "<!DOCTYPE r><r>x</r>"},
		{"<!DOCTYPE r SYSTEM 'r.dtd' [<?keep me?>]><r/>", "<!DOCTYPE r SYSTEM \"r.dtd\" [<?keep me?>]><r/>"},
		{"<!-- c --><!DOCTYPE r SYSTEM 'r.dtd'><?after doctype?><!-- d --><r/>", "<!-- c --><!DOCTYPE r SYSTEM \"r.dtd\"><?after doctype?><!-- d --><r/>"},
	};
	for (const auto& c: cases)
	{
		const std::string xml = toXML(toFIS(c.xml), 0);
		EXPECT_EQ(c.expected, xml) << c.xml;
		EXPECT_NO_THROW(eventsOf(xml)) << xml;
	}
}


TEST(ConverterTest, DoctypeWithPublicIdentifierOnlyGetsAnEmptySystemLiteral)
{
	// An XML document cannot say this, a Fast Infoset document can.
	const std::string fis = fisWrittenBy([](FastInfosetWriter& writer)
	{
		writer.startDTD("", "-//K//D", "");
		writer.endDTD();
		writer.emptyElement("", "doc", "");
	});
	const std::string xml = toXML(fis, 0);
	EXPECT_EQ("<!DOCTYPE doc PUBLIC \"-//K//D\" \"\"><doc/>", xml);
	EXPECT_EQ((std::vector<std::string>{"doctype doc|-//K//D|", "start {}doc", "end {}doc"}), eventsOf(xml));
}


TEST(ConverterTest, DoctypeAfterTheRootIsDroppedButItsInstructionsAreKept)
{
	const std::string fis = fisWrittenBy([](FastInfosetWriter& writer)
	{
		writer.emptyElement("", "doc", "");
		writer.startDTD("", "", "late.dtd");
		writer.processingInstruction("inside", "late");
		writer.endDTD();
	});
	EXPECT_EQ("<doc/><?inside late?>", toXML(fis, 0));
}


TEST(ConverterTest, XMLSyntaxErrorsComeFromTheToolkit)
{
	const char* const malformed[] =
	{
		"",
		"<a>",
		"<a><b></a>",
		"<a></a><b/>",
		"<a x='1' x='2'/>",
		"<a>&undefined;</a>",
		"<p:a/>",
		"<a>\xff\xfe</a>",
	};
	for (const char* xml: malformed)
	{
		EXPECT_THROW(toFIS(xml), Korvo::XML::SAXParseException) << xml;
		EXPECT_THROW(toFIS(xml, 16, Converter::CONV_REMOVE_IGNORABLE_WHITESPACE), Korvo::XML::SAXParseException) << xml;
	}
}


TEST(ConverterTest, FastInfosetFaultsComeFromTheLibrary)
{
	EXPECT_THROW_MESSAGE(toXML(octets("0000000100")), FISException, "Not a valid Fast Infoset document (invalid header)");
	EXPECT_THROW_MESSAGE(toXML("<a/>"), FISException, "Not a valid Fast Infoset document (invalid header)");
	EXPECT_THROW_MESSAGE(toXML(octets("e000000200")), FISException, "Unsupported Fast Infoset document version");
	EXPECT_THROW(toXML(""), FISException);
}


TEST(ConverterTest, EveryTruncationIsRejectedByTheLibrary)
{
	const std::string fis = toFIS(
		"<!DOCTYPE r SYSTEM 'r.dtd'><r xmlns='urn:d' xmlns:p='urn:p'>"
		"<!-- note --><p:i p:k='v' n='1'>text</p:i><?pi data?><i n='1'><![CDATA[x<y]]></i></r>");
	ASSERT_NO_THROW(toXML(fis));
	for (std::size_t length = 0; length < fis.size(); ++length)
		EXPECT_THROW(toXML(fis.substr(0, length)), FISException) << "first " << length << " of " << fis.size() << " octets";
}


TEST(ConverterTest, FailingOutputStreamThrowsIOException)
{
	std::istringstream input("<a>text</a>");
	std::ostringstream output;
	output.setstate(std::ios::badbit);
	EXPECT_THROW(Converter::convertToFIS(input, output, 16, 0), Korvo::IOException);
}
