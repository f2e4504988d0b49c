//
// ParserBench.cpp
//
// Reading the benchmark document: FastInfosetParser on its Fast Infoset
// form against the toolkit's SAXParser on its XML form, both into the same
// do-nothing handler. Reports octets and SAX events per second.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "BenchDocument.h"
#include "Korvo/FastInfoset/FastInfosetParser.h"
#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include "Korvo/FastInfoset/FISContentHandler.h"
#include "Poco/MemoryStream.h"
#include "Poco/SAX/SAXParser.h"
#include "Poco/XML/XMLWriter.h"
#include <benchmark/benchmark.h>
#include <sstream>


using namespace Korvo::FastInfoset;
using Korvo::XML::XMLString;


namespace
{
	class NullHandler: public FISContentHandler
		/// Counts the events and does nothing else.
	{
	public:
		std::size_t events = 0;

		void setDocumentLocator(const Korvo::XML::Locator*) override {}
		void startDocument() override { ++events; }
		void endDocument() override { ++events; }
		void startElement(const XMLString&, const XMLString&, const XMLString&, const Korvo::XML::Attributes&) override { ++events; }
		void endElement(const XMLString&, const XMLString&, const XMLString&) override { ++events; }
		void characters(const Korvo::XML::XMLChar[], int, int) override { ++events; }
		void ignorableWhitespace(const Korvo::XML::XMLChar[], int, int) override { ++events; }
		void processingInstruction(const XMLString&, const XMLString&) override { ++events; }
		void startPrefixMapping(const XMLString&, const XMLString&) override { ++events; }
		void endPrefixMapping(const XMLString&) override { ++events; }
		void skippedEntity(const XMLString&) override { ++events; }
		void binaryData(const char*, unsigned int) override { ++events; }
		void encodedData(short) override { ++events; }
		void encodedData(int) override { ++events; }
		void encodedData(long long) override { ++events; }
		void encodedData(bool) override { ++events; }
		void encodedData(float) override { ++events; }
		void encodedData(double) override { ++events; }
		void encodedData(const Korvo::UUID&) override { ++events; }
	};

	struct Documents
		/// The benchmark document in both encodings, made once.
	{
		std::string fis;
		std::string xml;

		Documents()
		{
			Bench::BenchDocument document;
			std::ostringstream fisStream;
			FastInfosetWriter fisWriter(fisStream);
			document.write(fisWriter);
			fis = fisStream.str();

			std::ostringstream xmlStream;
			Korvo::XML::XMLWriter xmlWriter(xmlStream, 0);
			document.write(xmlWriter);
			xml = xmlStream.str();
		}
	};

	const Documents& documents()
	{
		static const Documents docs;
		return docs;
	}

	void report(benchmark::State& state, std::size_t octets, std::size_t events)
	{
		state.SetBytesProcessed(static_cast<int64_t>(state.iterations()*octets));
		state.counters["events/s"] = benchmark::Counter(static_cast<double>(state.iterations()*events), benchmark::Counter::kIsRate);
		state.counters["octets"] = static_cast<double>(octets);
	}
}


static void BM_FastInfosetParser(benchmark::State& state)
{
	const std::string& fis = documents().fis;
	FastInfosetParser parser(static_cast<DocumentVocabulary::VocabularyImpl>(state.range(0)));
	NullHandler handler;
	parser.setContentHandler(&handler);
	for (auto _: state)
	{
		handler.events = 0;
		parser.parseMemoryNP(fis.data(), fis.size());
	}
	report(state, fis.size(), handler.events);
}
BENCHMARK(BM_FastInfosetParser)->ArgName("impl")->Arg(DocumentVocabulary::VOC_HASH)->Arg(DocumentVocabulary::VOC_MAP)->Arg(DocumentVocabulary::VOC_VECTOR)->Unit(benchmark::kMillisecond);


static void BM_FastInfosetParserStream(benchmark::State& state)
{
	const std::string& fis = documents().fis;
	FastInfosetParser parser;
	NullHandler handler;
	parser.setContentHandler(&handler);
	for (auto _: state)
	{
		handler.events = 0;
		// A stream over the document in place: the copy into an
		// istringstream would be timed too.
		Korvo::MemoryInputStream istr(fis.data(), fis.size());
		Korvo::XML::InputSource source(istr);
		parser.parse(&source);
	}
	report(state, fis.size(), handler.events);
}
BENCHMARK(BM_FastInfosetParserStream)->Unit(benchmark::kMillisecond);


static void BM_XMLSAXParser(benchmark::State& state)
{
	const std::string& xml = documents().xml;
	Korvo::XML::SAXParser parser;
	parser.setFeature(Korvo::XML::XMLReader::FEATURE_NAMESPACES, true);
	NullHandler handler;
	parser.setContentHandler(&handler);
	for (auto _: state)
	{
		handler.events = 0;
		parser.parseMemoryNP(xml.data(), xml.size());
	}
	report(state, xml.size(), handler.events);
}
BENCHMARK(BM_XMLSAXParser)->Unit(benchmark::kMillisecond);


BENCHMARK_MAIN();
