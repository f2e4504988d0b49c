//
// ParserTestSupport.cpp
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "support/ParserTestSupport.h"
#include "Poco/SAX/InputSource.h"
#include <fstream>
#include <sstream>
#include <stdexcept>


namespace Korvo {
namespace FastInfoset {
namespace Test {


namespace
{
	int digitValue(char c)
	{
		if (c >= '0' && c <= '9') return c - '0';
		if (c >= 'a' && c <= 'f') return c - 'a' + 10;
		if (c >= 'A' && c <= 'F') return c - 'A' + 10;
		throw std::invalid_argument(std::string("not a hexadecimal digit: ") + c);
	}

	template <class Recorder>
	std::vector<std::string> record(const std::string& document, FastInfosetParser& parser)
	{
		Recorder recorder;
		parser.setContentHandler(&recorder);
		parser.setDTDHandler(&recorder);
		parser.setProperty(Korvo::XML::XMLReader::PROPERTY_LEXICAL_HANDLER, static_cast<Korvo::XML::LexicalHandler*>(&recorder));
		std::istringstream istr(document);
		Korvo::XML::InputSource source(istr);
		try
		{
			parser.parse(&source);
		}
		catch (...)
		{
			parser.setContentHandler(0);
			parser.setDTDHandler(0);
			parser.setProperty(Korvo::XML::XMLReader::PROPERTY_LEXICAL_HANDLER, static_cast<Korvo::XML::LexicalHandler*>(0));
			throw;
		}
		parser.setContentHandler(0);
		parser.setDTDHandler(0);
		parser.setProperty(Korvo::XML::XMLReader::PROPERTY_LEXICAL_HANDLER, static_cast<Korvo::XML::LexicalHandler*>(0));
		return recorder.events();
	}
}


std::string bytesOf(const std::string& hex)
{
	std::string octets;
	int high = -1;
	for (char c: hex)
	{
		if (c == ' ') continue;
		if (high < 0)
		{
			high = digitValue(c);
		}
		else
		{
			octets += static_cast<char>(high*16 + digitValue(c));
			high = -1;
		}
	}
	if (high >= 0) throw std::invalid_argument("odd number of hexadecimal digits");
	return octets;
}


std::string hexOf(const std::string& octets)
{
	static const char DIGITS[] = "0123456789ABCDEF";
	std::string hex;
	for (char c: octets)
	{
		unsigned char octet = static_cast<unsigned char>(c);
		if (!hex.empty()) hex += ' ';
		hex += DIGITS[octet >> 4];
		hex += DIGITS[octet & 0x0F];
	}
	return hex;
}


std::string readFileOctets(const std::string& path)
{
	std::ifstream istr(path, std::ios::binary);
	std::ostringstream ostr;
	ostr << istr.rdbuf();
	return ostr.str();
}


std::vector<std::string> parseToEvents(const std::string& document, Delivery delivery, FastInfosetParser* pParser)
{
	FastInfosetParser ownParser;
	FastInfosetParser& parser = pParser ? *pParser : ownParser;
	if (delivery == TYPED_HANDLER)
		return record<SaxRecorder>(document, parser);
	else
		return record<PlainSaxRecorder>(document, parser);
}


std::vector<std::string> parseHex(const std::string& hex, Delivery delivery)
{
	return parseToEvents(bytesOf(hex), delivery);
}


std::vector<std::string> eventList(std::initializer_list<const char*> events)
{
	return std::vector<std::string>(events.begin(), events.end());
}


std::vector<std::string> documentEvents(std::initializer_list<const char*> events)
{
	std::vector<std::string> result;
	result.push_back("startDocument()");
	result.insert(result.end(), events.begin(), events.end());
	result.push_back("endDocument()");
	return result;
}


} } } // namespace Korvo::FastInfoset::Test
