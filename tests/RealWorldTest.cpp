//
// RealWorldTest.cpp
//
// XML as it is found in the world, through convertToFIS and back through
// convertToXML: the documents in tests/data/realworld (prefixes, characters
// XML keeps only as references, notations and unparsed entities, the
// internal subset) and tests/data/encodings (one per kind of decoder), the
// encoding errors, and the choice of decoder for each encoding.
//

#include "Korvo/FastInfoset/Converter.h"
#include "Korvo/FastInfoset/FISException.h"
#include "InputEncodings.h"
#include "support/ConversionTesting.h"
#include "support/ExceptionMatchers.h"
#include "Poco/SAX/SAXException.h"
#include <gtest/gtest.h>
#include <iconv.h>
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>

using namespace Korvo::FastInfoset;
using Korvo::FastInfoset::Tool::DocumentEvents;
using namespace Tests;


namespace {


class RealWorldDocumentTest: public ::testing::TestWithParam<const char*>
{
};


} // namespace


TEST_P(RealWorldDocumentTest, SurvivesBothDirections)
{
	const std::string xml = readFile(std::string(KORVO_SOURCE_DIR "/tests/data/realworld/") + GetParam());
	for (const int options: {0, int(Converter::CONV_REMOVE_IGNORABLE_WHITESPACE)})
	{
		DocumentEvents::Options compared;
		compared.dropWhitespaceText = options != 0;
		const std::string fis = toFIS(xml, 16, options);
		// The Fast Infoset form keeps no document type name.
		DocumentEvents::Options unnamed = compared;
		unnamed.recordDoctypeName = false;
		EXPECT_EQ(xmlEvents(xml, unnamed), fisEvents(fis, unnamed)) << "options " << options;

		// The XML written back keeps every element's and attribute's prefix.
		compared.recordPrefixes = true;
		const std::string back = toXML(fis);
		EXPECT_EQ(xmlEvents(xml, compared), xmlEvents(back, compared)) << back;
	}
}


INSTANTIATE_TEST_SUITE_P(Documents, RealWorldDocumentTest,
	::testing::Values("prefixes.xml", "characters.xml", "declarations.xml", "internal-subset.xml"),
	[](const ::testing::TestParamInfo<const char*>& info)
	{
		std::string name(info.param, std::strchr(info.param, '.'));
		std::replace(name.begin(), name.end(), '-', '_');
		return name;
	});


TEST(RealWorldTest, WrittenBackAsXMLSays)
{
	// What the events alone do not show: the form of the text written back.
	struct Case { const char* file; const char* expected; };
	const Case cases[] =
	{
		{"characters.xml", "text&#13;with&#13;\nreturns"},
		{"characters.xml", "lines=\"1&#xA;2&#xD;3&#xD;&#xA;4\""},
		{"declarations.xml", "<!DOCTYPE doc SYSTEM \"doc.dtd\" [<!NOTATION gif PUBLIC \"-//W3C//NOTATION GIF//EN\" \"gif.exe\">"
		                     "<!NOTATION png SYSTEM \"image/png\"><!NOTATION txt PUBLIC \"-//K//NOTATION Text//EN\">"
		                     "<!ENTITY logo SYSTEM \"logo.gif\" NDATA gif><!ENTITY icon PUBLIC \"-//K//ICON//EN\" \"icon.png\" NDATA png>]>"},
		{"internal-subset.xml", "[<?subset-pi data in the subset?>]><!-- a comment of the internal subset --><!-- another one --><?after-doctype data?>"},
		{"prefixes.xml", "<w:res plain=\"2\" w:id=\"1\"><res/></w:res>"},
	};
	for (const auto& c: cases)
	{
		const std::string back = toXML(toFIS(readFile(std::string(KORVO_SOURCE_DIR "/tests/data/realworld/") + c.file)));
		EXPECT_NE(std::string::npos, back.find(c.expected)) << c.file << ": " << back;
	}
}


TEST(RealWorldTest, EveryKindOfEncodingIsRead)
{
	// Written by another implementation of the codecs than the one read here.
	struct Case { const char* file; const char* text; };
	const Case cases[] =
	{
		{"shift_jis.xml", "日本語テキスト〜"},          // iconv: 81 60 is the wave dash in Shift_JIS
		{"windows-31j.xml", "日本語テキスト～"},        // platform: the same octets in code page 932
		{"euc-jp.xml", "日本語ｶﾅ丂"},                    // iconv: two-, three-octet forms
		{"iso-2022-jp.xml", "日本語テキスト"},           // iconv: stateful
		{"gb18030.xml", "中文 😀"},                      // iconv: four-octet form, beyond the BMP
		{"big5.xml", "繁體中文"},
		{"euc-kr.xml", "한국어"},
		{"koi8-r.xml", "Привет"},
		{"ibm866.xml", "Привет"},
		{"maccyrillic.xml", "Привет"},
		{"tis-620.xml", "ภาษาไทย"},
		{"iso-8859-7.xml", "Ελληνικά"},                  // platform
		{"windows-1252.xml", "€ café"},                  // iconv: the platform's table accepts undefined octets
		{"windows-1255.xml", "עברית"},                   // platform
		{"utf8-alias.xml", "Grüße"},                     // the parser's own, under another name
		{"utf-16be.xml", "Grüße 😀"},                    // the parser's own, told by the byte order mark
		{"utf-32le.xml", "Grüße 😀"},                    // iconv, told by the first octets
		{"ebcdic.xml", "Hello"},                         // iconv, declared in EBCDIC
	};
	for (const auto& c: cases)
	{
		const std::string text(c.text);
		const std::vector<std::string> expected{"start {}t @{}a=" + text, "text " + text, "end {}t"};
		const std::string xml = readFile(std::string(KORVO_SOURCE_DIR "/tests/data/encodings/") + c.file);
		try
		{
			const std::string fis = toFIS(xml);
			EXPECT_EQ(expected, fisEvents(fis)) << c.file;
			EXPECT_EQ(expected, xmlEvents(toXML(fis))) << c.file;
		}
		catch (const Korvo::Exception& exc)
		{
			ADD_FAILURE() << c.file << ": " << exc.displayText();
		}
	}
}


TEST(RealWorldTest, StreamsThatCannotSeekAreReadAlike)
{
	// The start of the text is looked at before the parser reads it: a
	// stream that cannot seek back gives it again from a buffer.
	struct UnseekableBuffer: std::streambuf
	{
		explicit UnseekableBuffer(std::string& text)
		{
			setg(&text[0], &text[0], &text[0] + text.size());
		}
	};
	struct Case { const char* declaration; const char* element; };
	const Case cases[] =
	{
		{"", "<t>\xe6\x97\xa5\xe6\x9c\xac</t>"},
		{"<?xml version='1.0' encoding='EUC-JP'?>", "<t>\xc6\xfc\xcb\xdc</t>"},
		{"<?xml version='1.0' encoding='ISO-8859-7'?>", "<t>\xc5\xeb</t>"},
	};
	for (const auto& c: cases)
	{
		std::string xml = std::string(c.declaration) + "<r>";
		for (int i = 0; i < 500; ++i) xml += c.element;
		xml += "</r>";
		UnseekableBuffer buffer(xml);
		std::istream input(&buffer);
		ASSERT_EQ(-1, input.tellg());
		std::ostringstream output;
		Converter::convertToFIS(input, output);
		EXPECT_EQ(toFIS(xml), output.str()) << c.declaration;
	}
}


TEST(RealWorldTest, EncodingFaultsSayWhatAndWhere)
{
	struct Case { const char* xml; const char* message; };
	const Case cases[] =
	{
		{"<?xml version='1.0' encoding='X-NONE'?><a/>", "Unknown encoding \"X-NONE\" in line 1 column 30"},
		{"<?xml version='1.0'\n encoding=\"x\"?><a/>", "Unknown encoding \"x\" in line 2 column 11"},
		// no iconv options hide in a name
		{"<?xml version='1.0' encoding='Shift_JIS//IGNORE'?><a>\x87\x40</a>", "XML declaration not well-formed in line 1 column 39"},
		// 87 40 is a circled digit in code page 932, nothing in Shift_JIS
		{"<?xml version='1.0' encoding='Shift_JIS'?>\n<a>\x82\xa0\x87\x40</a>", "Invalid octets for encoding \"Shift_JIS\": 0x87 0x40 in line 2 column 4"},
		{"<?xml version='1.0' encoding='windows-1252'?>\r\n<a>\r\n\x81</a>", "Invalid octets for encoding \"windows-1252\": 0x81 0x3C in line 3 column 0"},
		{"<?xml version='1.0' encoding='EUC-JP'?><a>\xa4", "Incomplete character at the end of the input in encoding \"EUC-JP\": 0xA4 in line 1 column 42"},
		// the platform's tables: the parser's own message
		{"<?xml version='1.0' encoding='windows-1250'?><a>\x81</a>", "Invalid token in line 1 column 48"},
		// malformed XML in any encoding: the parser's message, line and column
		{"<?xml version='1.0' encoding='EUC-JP'?>\n<a>\xa4\xa2<b></a>", "Tag mismatch in line 2 column 9"},
		{"<?xml version='1.0' encoding='ISO-8859-7'?>\n<a>\xe1</b>", "Tag mismatch in line 2 column 6"},
	};
	for (const auto& c: cases)
	{
		EXPECT_THROW_MESSAGE(toFIS(c.xml), Korvo::XML::SAXParseException, c.message);
		EXPECT_THROW_MESSAGE(toFIS(c.xml, 16, Converter::CONV_REMOVE_IGNORABLE_WHITESPACE), Korvo::XML::SAXParseException, c.message);
	}
}


TEST(RealWorldTest, EachEncodingHasItsDecoder)
{
	struct Case { const char* name; InputEncodings::Decoder decoder; const char* canonicalName; };
	const Case cases[] =
	{
		{"utf-8", InputEncodings::PARSER, "UTF-8"},
		{"UTF8", InputEncodings::PARSER, "UTF-8"},
		{"latin1", InputEncodings::PARSER, "ISO-8859-1"},
		{"iso-8859-7", InputEncodings::PLATFORM, "ISO-8859-7"},
		{"CP1251", InputEncodings::PLATFORM, "windows-1251"},
		{"windows-31j", InputEncodings::PLATFORM, "windows-932"},
		{"cp936", InputEncodings::PLATFORM, "windows-936"},
		{"UHC", InputEncodings::PLATFORM, "windows-949"},
		{"ks_c_5601-1987", InputEncodings::PLATFORM, "windows-949"},
		// the platform has tables under these names that decode otherwise
		{"Shift_JIS", InputEncodings::ICONV, "Shift_JIS"},
		{"GB2312", InputEncodings::ICONV, "GB2312"},
		{"GBK", InputEncodings::ICONV, "GBK"},
		{"Big5", InputEncodings::ICONV, "Big5"},
		{"windows-950", InputEncodings::ICONV, "windows-950"},
		{"windows-1252", InputEncodings::ICONV, "windows-1252"},
		{"MacCyrillic", InputEncodings::ICONV, "MacCyrillic"},
		{"x-mac-cyrillic", InputEncodings::ICONV, "MAC-CYRILLIC"},
		{"x-sjis", InputEncodings::ICONV, "SHIFT_JIS"},
	};
	for (const auto& c: cases)
	{
		std::string canonicalName;
		EXPECT_EQ(c.decoder, InputEncodings::find(c.name, canonicalName)) << c.name;
		EXPECT_EQ(c.canonicalName, canonicalName) << c.name;
	}
}


TEST(RealWorldTest, PlatformEncodingsDecodeAsIconvDoes)
{
	// Every octet and every octet pair, so that no table of the platform
	// only approximates the encoding it is taken for.
	const iconv_t none = reinterpret_cast<iconv_t>(static_cast<std::intptr_t>(-1));
	for (const auto& entry: InputEncodings::platformEntries())
	{
		std::unique_ptr<Korvo::TextEncoding> pEncoding(entry.create());
		iconv_t converter = iconv_open("UTF-32LE", entry.iconvName);
		ASSERT_NE(none, converter) << entry.iconvName;
		auto iconvDecode = [&](const unsigned char* octets, std::size_t length)
		{
			// A space behind the octets flushes what iconv may hold back.
			unsigned char in[3] = {octets[0], length > 1 ? octets[1] : static_cast<unsigned char>(' '), ' '};
			std::size_t inLeft = length + 1;
			char* pIn = reinterpret_cast<char*>(in);
			std::uint32_t out[4] = {0, 0, 0, 0};
			char* pOut = reinterpret_cast<char*>(out);
			std::size_t outLeft = sizeof(out);
			iconv(converter, nullptr, nullptr, nullptr, nullptr);
			const bool failed = iconv(converter, &pIn, &inLeft, &pOut, &outLeft) == static_cast<std::size_t>(-1);
			return failed || sizeof(out) - outLeft != 8 ? -1 : static_cast<int>(out[0]);
		};
		const Korvo::TextEncoding::CharacterMap& map = pEncoding->characterMap();
		int differences = 0;
		for (int first = 0; first < 256 && differences < 5; ++first)
		{
			unsigned char octets[2] = {static_cast<unsigned char>(first), 0};
			if (map[first] > -2)
			{
				// The parser refuses the non-characters some tables give for
				// undefined octets.
				const int platform = map[first] == 0xFFFE || map[first] == 0xFFFF ? -1 : map[first];
				const int expected = iconvDecode(octets, 1);
				if (platform != expected)
				{
					++differences;
					ADD_FAILURE() << entry.names << ": octet " << first << " is " << platform << ", iconv says " << expected;
				}
				continue;
			}
			for (int second = 0; second < 256; ++second)
			{
				octets[1] = static_cast<unsigned char>(second);
				const int expected = iconvDecode(octets, 2);
				const int platform = pEncoding->convert(octets);
				if (platform != expected && (platform >= 0 || expected >= 0))
				{
					++differences;
					ADD_FAILURE() << entry.names << ": octets " << first << " " << second << " are " << platform << ", iconv says " << expected;
				}
			}
		}
		iconv_close(converter);
	}
}
