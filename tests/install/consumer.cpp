//
// consumer.cpp
//
// Writes a small document, reads it back and says what it found: built
// against the installed library, through its CMake package and through
// pkg-config.
//

#include "Korvo/FastInfoset/FastInfosetParser.h"
#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include "Poco/SAX/DefaultHandler.h"
#include "Poco/SAX/InputSource.h"
#include <iostream>
#include <sstream>


class ElementCounter: public Korvo::XML::DefaultHandler
{
public:
	int elements = 0;

	void startElement(const Korvo::XML::XMLString&, const Korvo::XML::XMLString&, const Korvo::XML::XMLString&, const Korvo::XML::Attributes&) override
	{
		++elements;
	}
};


int main()
{
	std::stringstream document;
	Korvo::FastInfoset::FastInfosetWriter writer(document);
	writer.startDocument();
	writer.startElement("", "list", "", Korvo::XML::AttributesImpl());
	writer.dataElement("", "item", "", "one");
	writer.dataElement("", "item", "", "two");
	writer.endElement("", "list", "");
	writer.endDocument();

	ElementCounter counter;
	Korvo::FastInfoset::FastInfosetParser parser;
	parser.setContentHandler(&counter);
	Korvo::XML::InputSource source(document);
	parser.parse(&source);

	std::cout << "consumer: " << counter.elements << " elements in " << document.str().size() << " octets" << std::endl;
	return counter.elements == 3 ? 0 : 1;
}
