//
// WriteDocument.cpp
//
// Writes a Fast Infoset document straight from SAX2 calls: an order with a
// default namespace, attributes, text, and typed values (arrays of ints and
// doubles, and binary data) that travel in binary form instead of as text.
//
// Usage: WriteDocument [OUTPUT]        (default: order.fi)
//

#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include <fstream>
#include <iostream>

using Korvo::FastInfoset::FastInfosetWriter;
using Korvo::XML::AttributesImpl;


int main(int argc, char** argv)
{
	const std::string path = argc > 1 ? argv[1] : "order.fi";
	const std::string NS = "urn:example:orders";
	const AttributesImpl none;

	try
	{
		std::ofstream out(path, std::ios::binary);
		FastInfosetWriter writer(out);

		AttributesImpl orderAttributes;
		orderAttributes.addAttribute("", "id", "id", "CDATA", "A-1042");

		writer.startDocument();
		writer.startPrefixMapping("", NS);
		writer.startElement(NS, "order", "", orderAttributes);
		writer.dataElement(NS, "customer", "", "Ada Lovelace");

		// Consecutive typed values of one kind become one array in the document.
		writer.startElement(NS, "quantities", "", none);
		for (int quantity: {3, 1, 4, 1, 5}) writer.encodedData(quantity);
		writer.endElement(NS, "quantities", "");

		writer.startElement(NS, "prices", "", none);
		for (double price: {9.99, 24.5, 3.25, 120.0, 0.75}) writer.encodedData(price);
		writer.endElement(NS, "prices", "");

		const char signature[] = {'\x4b', '\x6f', '\x72', '\x76', '\x6f', '\x00', '\xff', '\x10'};
		writer.startElement(NS, "signature", "", none);
		writer.binaryData(signature, sizeof signature);
		writer.endElement(NS, "signature", "");

		writer.comment("packed by hand", 0, 14);
		writer.endElement(NS, "order", "");
		writer.endPrefixMapping("");
		writer.endDocument();                  // ends the document and flushes the stream

		if (!out) throw Korvo::WriteFileException(path);
		std::cout << "wrote " << path << ", " << out.tellp() << " octets" << std::endl;
		return 0;
	}
	catch (const Korvo::Exception& exc)
	{
		std::cerr << exc.displayText() << std::endl;
		return 1;
	}
}
