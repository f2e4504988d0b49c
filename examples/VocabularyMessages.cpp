//
// VocabularyMessages.cpp
//
// Sends many small messages of one kind with a vocabulary that both sides
// agree on beforehand (an external vocabulary, named by a URI). A message
// then refers to the names and common values by index instead of spelling
// them out the first time, which is most of a small message's size.
//
// The three steps are each a function: build the vocabulary once, write a
// message against it, read a message against it.
//

#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include "Korvo/FastInfoset/FastInfosetParser.h"
#include "Korvo/FastInfoset/DocumentVocabulary.h"
#include "Poco/NullStream.h"
#include "Poco/NumberFormatter.h"
#include "Poco/NumberParser.h"
#include "Poco/SAX/DefaultHandler.h"
#include "Poco/XML/XMLWriter.h"
#include <iostream>
#include <sstream>
#include <vector>

using namespace Korvo::FastInfoset;
using Korvo::XML::XMLString;


const std::string VOCABULARY_URI = "urn:shipping:v1";
const std::string NS = "urn:example:shipping";


struct Status
{
	std::string order;
	std::string state;
	double amount;
};


void writeStatus(Korvo::XML::ContentHandler& out, const Status& status)
	/// One message, as SAX2 events: the same calls make XML text or Fast Infoset.
{
	const Korvo::XML::AttributesImpl none;
	Korvo::XML::AttributesImpl currency;
	currency.addAttribute("", "currency", "currency", "CDATA", "EUR");
	const auto text = [&](const std::string& name, const std::string& value, const Korvo::XML::Attributes& attributes)
	{
		out.startElement(NS, name, "", attributes);
		out.characters(value.data(), 0, static_cast<int>(value.size()));
		out.endElement(NS, name, "");
	};

	out.startDocument();
	out.startPrefixMapping("", NS);
	out.startElement(NS, "status", "", none);
	text("order", status.order, none);
	text("state", status.state, none);
	text("carrier", "Fast Freight", none);
	text("amount", Korvo::NumberFormatter::format(status.amount, 2), currency);
	out.endElement(NS, "status", "");
	out.endPrefixMapping("");
	out.endDocument();
}


DocumentVocabulary buildVocabulary()
	/// Step 1, once: write a typical message into a writer whose vocabulary
	/// carries the agreed URI, and keep what it learnt: every name, and
	/// every value short enough to be indexed.
{
	Korvo::NullOutputStream discard;
	FastInfosetWriter learner(discard, false, DocumentVocabulary(VOCABULARY_URI, DocumentVocabulary::VOC_MAP));
	writeStatus(learner, Status{"A-0000", "shipped", 0.0});
	return learner.getDocumentVocabulary();
}


std::string writeMessage(const DocumentVocabulary& vocabulary, const Status& status)
	/// Step 2, per message: the header names the vocabulary by its URI and
	/// the body refers to its entries.
{
	std::ostringstream out;
	FastInfosetWriter writer(out);
	writer.useExternalVocabulary(vocabulary.getURI(), vocabulary);
	writeStatus(writer, status);
	return out.str();
}


void readMessage(FastInfosetParser& parser, const std::string& message)
	/// Step 3, per message: a parser given the vocabulary for its URI reads
	/// a message that names it. Each message starts from exactly the
	/// vocabulary, so one parser serves them all.
{
	parser.parseMemoryNP(message.data(), message.size());
}


class AmountTotal: public Korvo::XML::DefaultHandler
	/// Adds up the amounts of the messages it reads.
{
public:
	double total = 0;

	void startElement(const XMLString&, const XMLString& localName, const XMLString&, const Korvo::XML::Attributes&) override
	{
		_inAmount = localName == "amount";
		_text.clear();
	}

	void characters(const Korvo::XML::XMLChar ch[], int start, int length) override
	{
		if (_inAmount) _text.append(ch + start, length);
	}

	void endElement(const XMLString&, const XMLString&, const XMLString&) override
	{
		if (_inAmount) total += Korvo::NumberParser::parseFloat(_text);
		_inAmount = false;
	}

private:
	bool _inAmount = false;
	std::string _text;
};


int main()
{
	try
	{
		const DocumentVocabulary vocabulary = buildVocabulary();

		const char* states[] = {"accepted", "shipped", "delivered"};
		std::vector<Status> statuses;
		double expectedTotal = 0;
		for (int i = 0; i < 100; ++i)
		{
			statuses.push_back(Status{"A-" + Korvo::NumberFormatter::format0(1000 + i, 4), states[i % 3], 10.0 + i * 0.25});
			expectedTotal += statuses.back().amount;
		}

		std::size_t xmlSize = 0, plainSize = 0, sharedSize = 0;
		AmountTotal amounts;
		FastInfosetParser parser;
		parser.addExternalVocabulary(vocabulary.getURI(), vocabulary);
		parser.setContentHandler(&amounts);
		for (const Status& status: statuses)
		{
			std::ostringstream xml;
			Korvo::XML::XMLWriter xmlWriter(xml, 0);
			writeStatus(xmlWriter, status);
			xmlSize += xml.str().size();

			std::ostringstream plain;
			FastInfosetWriter plainWriter(plain);
			writeStatus(plainWriter, status);
			plainSize += plain.str().size();

			const std::string message = writeMessage(vocabulary, status);
			sharedSize += message.size();
			readMessage(parser, message);
		}

		std::cout << statuses.size() << " messages: " << xmlSize << " octets as XML, "
		          << plainSize << " as Fast Infoset, " << sharedSize << " with the shared vocabulary" << std::endl;
		std::cout << "read back: total amount " << Korvo::NumberFormatter::format(amounts.total, 2)
		          << (amounts.total == expectedTotal ? " (as sent)" : " (WRONG)") << std::endl;
		return amounts.total == expectedTotal ? 0 : 1;
	}
	catch (const Korvo::Exception& exc)
	{
		std::cerr << exc.displayText() << std::endl;
		return 1;
	}
}
