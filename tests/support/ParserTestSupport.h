//
// ParserTestSupport.h
//
// Test helper: documents written as hexadecimal text, and short ways to
// parse them into a SaxRecorder.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_ParserTestSupport_INCLUDED
#define FastInfoset_ParserTestSupport_INCLUDED


#include "Korvo/FastInfoset/FastInfosetParser.h"
#include "support/SaxRecorder.h"
#include <string>
#include <vector>


namespace Korvo {
namespace FastInfoset {
namespace Test {


std::string bytesOf(const std::string& hex);
	/// The octets of hex, a string of hexadecimal digit pairs; spaces are ignored.

std::string hexOf(const std::string& octets);
	/// Upper-case digit pairs separated by spaces.

std::string readFileOctets(const std::string& path);
	/// The whole content of a file.

inline const std::string FIS_HEADER = "E0 00 00 01 00";
	/// Identification, version 1, no header flags.

enum Delivery
{
	TYPED_HANDLER,  /// SaxRecorder: typed values arrive as encodedData/binaryData.
	PLAIN_HANDLER   /// PlainSaxRecorder: typed values arrive as characters.
};

std::vector<std::string> parseToEvents(const std::string& document, Delivery delivery = TYPED_HANDLER, FastInfosetParser* pParser = 0);
	/// Parses document from a stream into a recorder that is also the
	/// lexical and DTD handler, and returns every event. Uses a parser of
	/// its own unless pParser is given.

std::vector<std::string> parseHex(const std::string& hex, Delivery delivery = TYPED_HANDLER);
	/// parseToEvents(bytesOf(hex), delivery).

std::vector<std::string> eventList(std::initializer_list<const char*> events);
	/// The expected events as a vector.

std::vector<std::string> documentEvents(std::initializer_list<const char*> events);
	/// The expected events of a whole document: startDocument(), events, endDocument().


} } } // namespace Korvo::FastInfoset::Test


#endif // FastInfoset_ParserTestSupport_INCLUDED
