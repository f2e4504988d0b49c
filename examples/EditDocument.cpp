//
// EditDocument.cpp
//
// Loads a Fast Infoset document into a DOM tree (the toolkit's Document),
// changes it and writes it back as Fast Infoset. The tree is the one the
// toolkit's DOMParser builds from XML text, so any DOM code works on it;
// typed values arrive in it as text.
//
// Usage: EditDocument INPUT OUTPUT     (for example the order.fi of WriteDocument)
//

#include "Korvo/FastInfoset/DOMConverter.h"
#include "Korvo/FastInfoset/Converter.h"
#include "Poco/DOM/Element.h"
#include "Poco/DOM/Text.h"
#include "Poco/DOM/NodeList.h"
#include <fstream>
#include <iostream>

using Korvo::FastInfoset::Converter;
using Korvo::FastInfoset::DOMConverter;
using Korvo::XML::AutoPtr;
using Korvo::XML::Document;
using Korvo::XML::Element;


int main(int argc, char** argv)
{
	if (argc != 3)
	{
		std::cerr << "usage: EditDocument INPUT OUTPUT" << std::endl;
		return 2;
	}
	const std::string NS = "urn:example:orders";
	try
	{
		std::ifstream in(argv[1], std::ios::binary);
		if (!in) throw Korvo::OpenFileException(argv[1]);
		AutoPtr<Document> pDocument = DOMConverter::parse(in);

		// Change the customer's name, mark the order as paid and add a note.
		Element* pOrder = pDocument->documentElement();
		Element* pCustomer = pOrder->getChildElementNS(NS, "customer");
		if (!pCustomer) throw Korvo::NotFoundException("customer");
		pCustomer->firstChild()->setNodeValue("Augusta Ada King");
		pOrder->setAttribute("status", "paid");
		AutoPtr<Element> pNote = pDocument->createElementNS(NS, "note");
		AutoPtr<Korvo::XML::Text> pText = pDocument->createTextNode("leave at the door");
		pNote->appendChild(pText);
		pOrder->appendChild(pNote);

		{
			std::ofstream out(argv[2], std::ios::binary);
			DOMConverter::write(pDocument, out);
			if (!out.flush()) throw Korvo::WriteFileException(argv[2]);
		}

		// What was written, as XML text.
		std::ifstream written(argv[2], std::ios::binary);
		Converter::convertToXML(written, std::cout, Converter::CONV_PRETTY_PRINT_XML);
		return 0;
	}
	catch (const Korvo::Exception& exc)
	{
		std::cerr << exc.displayText() << std::endl;
		return 1;
	}
}
