//
// Seeds.cpp
//
// Library: FastInfoset
// Package: Fuzz
// Module:  Seeds
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Seeds.h"
#include "SampleDocuments.h"
#include "WriterCalls.h"
#include "Korvo/FastInfoset/BitStreamWriter.h"
#include "Korvo/FastInfoset/Encoding.h"
#include "Korvo/FastInfoset/HexEncoding.h"
#include "Korvo/FastInfoset/DWordEncoding.h"
#include "Korvo/FastInfoset/ShortEncoding.h"
#include "Korvo/FastInfoset/IntEncoding.h"
#include "Korvo/FastInfoset/LongEncoding.h"
#include "Korvo/FastInfoset/BoolEncoding.h"
#include "Korvo/FastInfoset/FloatEncoding.h"
#include "Korvo/FastInfoset/DoubleEncoding.h"
#include "Korvo/FastInfoset/UUIDEncoding.h"
#include "Korvo/FastInfoset/CDataEncoding.h"
#include <sstream>


namespace Korvo {
namespace FastInfoset {
namespace Fuzz {


namespace
{
	std::vector<Seed> documents(const unsigned char* pSettings, std::size_t count)
		/// Every sample document once, behind settings taken in turn.
	{
		std::vector<Seed> seeds;
		const std::vector<SampleDocument> samples = sampleDocuments();
		for (std::size_t i = 0; i < samples.size(); ++i)
		{
			const unsigned char settings = pSettings[i % count];
			seeds.emplace_back(samples[i].name, std::string(1, static_cast<char>(settings)) + samples[i].octets);
		}
		return seeds;
	}

	class Calls
		/// Builds the octets of a call sequence.
	{
	public:
		explicit Calls(unsigned char settings):
			_octets(1, static_cast<char>(settings))
		{
		}

		Calls& call(WriterCall what)
		{
			_octets += static_cast<char>(what);
			return *this;
		}

		Calls& text(const std::string& str)
		{
			_octets += static_cast<char>(0xC0 + str.size());
			_octets += str;
			return *this;
		}

		Calls& octets(const std::string& raw)
		{
			_octets += raw;
			return *this;
		}

		Calls& element(const std::string& uri, const std::string& localName, const std::string& qname)
		{
			return call(START_ELEMENT).text(uri).text(localName).text(qname).octets(std::string(1, '\0'));
		}

		Calls& end()
		{
			return call(END_ELEMENT).text("").text("").text("");
		}

		const std::string& str() const
		{
			return _octets;
		}

	private:
		std::string _octets;
	};

	std::vector<Seed> writerSeeds()
	{
		Calls plain(0x01);
		plain.call(START_DOCUMENT).element("", "root", "").call(CHARACTER_STRING).text("hi")
			.call(START_ELEMENT).text("").text("item").text("").octets("\x02").text("").text("a").text("").text("1").text("urn:x").text("b").text("x:b").text("2")
			.call(CHARACTERS).text("some text").octets("\x02\x04").end()
			.call(EMPTY_ELEMENT).text("").text("item").text("").octets(std::string(1, '\0'))
			.call(DATA_ELEMENT).text("").text("d").text("").text("data").text("a").text("1").text("").text("").text("").text("")
			.end().call(END_DOCUMENT);

		Calls namespaces(0x09);
		namespaces.call(START_DOCUMENT).call(START_PREFIX_MAPPING).text("p").text("urn:p")
			.element("urn:p", "root", "p:root").element("urn:q", "child", "").end()
			.element("", "", "plain").end().end().call(END_PREFIX_MAPPING).text("p").call(END_DOCUMENT);

		Calls typed(0x12);
		typed.call(START_DOCUMENT).element("", "v", "")
			.call(BINARY).octets(std::string("\x03\x00\x01\x02", 4))
			.call(SHORT).octets("\x01\x02").call(INT).octets("\x01\x02\x03\x04").call(LONG).octets("\x01\x02\x03\x04\x05\x06\x07\x08")
			.call(BOOL).octets("\x01").call(BOOL).octets(std::string(1, '\0'))
			.call(FLOAT).octets(std::string("\x00\x00\xC0\x3F", 4)).call(DOUBLE).octets(std::string("\x00\x00\x00\x00\x00\x00\xF8\x3F", 8))
			.call(UUID_VALUE).octets("0123456789abcdef")
			.end().call(END_DOCUMENT);

		Calls lexical(0x1C);
		lexical.call(NOTATION).text("n").octets(std::string(1, '\0')).text("pub").octets("\x01")
			.call(UNPARSED_ENTITY).text("e").octets("\x01").text("e.png").text("n")
			.call(START_DOCUMENT).call(START_DTD).text("root").text("").text("root.dtd")
			.call(PROCESSING_INSTRUCTION).text("t").text("d").call(END_DTD)
			.call(COMMENT).text("c").element("", "root", "")
			.call(START_CDATA).call(CHARACTER_STRING).text("a<b").call(END_CDATA)
			.call(ENTITY_EVENTS).text("ent").call(MAX_INDEXED_LENGTH).octets("\x02")
			.end().call(END_DOCUMENT);

		return {{"plain", plain.str()}, {"namespaces", namespaces.str()}, {"typed", typed.str()}, {"lexical", lexical.str()}};
	}

	std::vector<Seed> xmlSeeds()
	{
		return {
			{"elements", std::string(1, '\0') + "<?xml version='1.0'?><root a='1' b=\"two\">Hello <b>bold</b> &amp; &#x263A;<e/></root>"},
			{"namespaces", std::string(1, '\x01') + "<p:root xmlns:p='urn:p' xmlns='urn:d'><child p:at='v' xml:lang='en'/><q:x xmlns:q='urn:q'/></p:root>"},
			{"whitespace", std::string(1, '\x04') + "<root>\n  <a> </a>\n  <b>x</b>\n</root>\n"},
			{"lexical", std::string(1, '\x02') + "<!DOCTYPE root SYSTEM 'root.dtd' [<!ENTITY e 'entity'><!NOTATION n SYSTEM 'n'>]>"
				"<!--c--><?pi data?><root><![CDATA[a < b]]>&e;</root><!--after-->"},
			{"latin1", std::string(1, '\x03') + "<?xml version='1.0' encoding='ISO-8859-1'?><r>caf\xE9</r>"},
		};
	}

	std::string algorithmSeed(unsigned char settings, const Encoding& value)
	{
		std::ostringstream output;
		{
			BitStreamWriter writer(output, false);
			writer.write(static_cast<unsigned char>(0), (settings & 0x10) ? 6 : 4);
			value.write(writer);
			writer.complete(false);
		}
		return std::string(1, static_cast<char>(settings)) + output.str();
	}

	std::vector<Seed> algorithmSeeds()
	{
		return {
			{"hex", algorithmSeed(0x01, HexEncoding("0A0B0C"))},
			{"base64", algorithmSeed(0x12, DWordEncoding("AAEC"))},
			{"short", algorithmSeed(0x03, ShortEncoding("1 -2 32767"))},
			{"int", algorithmSeed(0x14, IntEncoding("1 -2 2147483647"))},
			{"long", algorithmSeed(0x05, LongEncoding("-5000000000 7"))},
			{"bool", algorithmSeed(0x16, BoolEncoding("true false true true false"))},
			{"float", algorithmSeed(0x07, FloatEncoding("1.5 3.25"))},
			{"double", algorithmSeed(0x18, DoubleEncoding("-0.25 1e+100"))},
			{"uuid", algorithmSeed(0x09, UUIDEncoding("6ba7b810-9dad-11d1-80b4-00c04fd430c8"))},
			{"cdata", algorithmSeed(0x1A, CDataEncoding("a < b"))},
		};
	}
}


std::vector<Seed> seedsOf(const std::string& target)
{
	// Settings octets, see each target: tables, readers and handlers in turn.
	static const unsigned char PARSE_SETTINGS[] = {0x01, 0x02, 0x0B, 0x13, 0x2C, 0x35, 0x8B, 0x82, 0x49, 0xC3, 0x1E, 0x00};
	static const unsigned char REENCODE_SETTINGS[] = {0x00, 0x05, 0x09, 0x1C, 0x23, 0x31, 0xCC, 0xC4, 0x6D, 0x02, 0x16, 0xC7};
	if (target == "parse") return documents(PARSE_SETTINGS, sizeof(PARSE_SETTINGS));
	if (target == "reencode") return documents(REENCODE_SETTINGS, sizeof(REENCODE_SETTINGS));
	if (target == "writer") return writerSeeds();
	if (target == "convert") return xmlSeeds();
	if (target == "algorithms") return algorithmSeeds();
	return {};
}


} } } // namespace Korvo::FastInfoset::Fuzz
