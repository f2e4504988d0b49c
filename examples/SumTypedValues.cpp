//
// SumTypedValues.cpp
//
// Reads a Fast Infoset document with a FISContentHandler, which receives the
// values stored with an encoding algorithm as typed calls (one per value),
// and adds them up without ever turning them into text.
//
// Usage: SumTypedValues FILE           (for example the order.fi of WriteDocument)
//

#include "Korvo/FastInfoset/FastInfosetParser.h"
#include "Korvo/FastInfoset/FISContentHandler.h"
#include <iostream>

using Korvo::XML::XMLString;
using Korvo::XML::XMLChar;


class Totals: public Korvo::FastInfoset::FISContentHandler
{
public:
	int ints = 0;
	long long intSum = 0;
	int doubles = 0;
	double doubleSum = 0;
	unsigned binaryOctets = 0;
	int elements = 0;

	// The typed values
	void encodedData(int value) override { ++ints; intSum += value; }
	void encodedData(double value) override { ++doubles; doubleSum += value; }
	void binaryData(const char*, unsigned int size) override { binaryOctets += size; }
	void encodedData(short value) override { encodedData(static_cast<int>(value)); }
	void encodedData(long long value) override { ++ints; intSum += value; }
	void encodedData(float value) override { encodedData(static_cast<double>(value)); }
	void encodedData(bool) override {}
	void encodedData(const Korvo::UUID&) override {}

	// The rest of ContentHandler
	void startElement(const XMLString&, const XMLString&, const XMLString&, const Korvo::XML::Attributes&) override { ++elements; }
	void endElement(const XMLString&, const XMLString&, const XMLString&) override {}
	void characters(const XMLChar[], int, int) override {}
	void ignorableWhitespace(const XMLChar[], int, int) override {}
	void processingInstruction(const XMLString&, const XMLString&) override {}
	void startPrefixMapping(const XMLString&, const XMLString&) override {}
	void endPrefixMapping(const XMLString&) override {}
	void skippedEntity(const XMLString&) override {}
	void setDocumentLocator(const Korvo::XML::Locator*) override {}
	void startDocument() override {}
	void endDocument() override {}
};


int main(int argc, char** argv)
{
	if (argc != 2)
	{
		std::cerr << "usage: SumTypedValues FILE" << std::endl;
		return 2;
	}
	try
	{
		Totals totals;
		Korvo::FastInfoset::FastInfosetParser parser;
		parser.setContentHandler(&totals);
		parser.parse(argv[1]);                 // a path or URI; parse(InputSource*) takes a stream

		std::cout << totals.elements << " elements" << std::endl
		          << "ints: " << totals.ints << " values, sum " << totals.intSum << std::endl
		          << "doubles: " << totals.doubles << " values, sum " << totals.doubleSum << std::endl
		          << "binary: " << totals.binaryOctets << " octets" << std::endl;
		return 0;
	}
	catch (const Korvo::Exception& exc)
	{
		std::cerr << argv[1] << ": " << exc.displayText() << std::endl;
		return 1;
	}
}
