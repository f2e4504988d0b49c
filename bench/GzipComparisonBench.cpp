//
// GzipComparisonBench.cpp
//
// Fast Infoset against gzip'd XML on real documents: the bundled samples and,
// where present, ../shared/fixtures/real. Prints a table of sizes (XML, XML
// gzip -9, Fast Infoset, Fast Infoset gzip -9), then times reading (the XML
// parser after gunzip and alone, the Fast Infoset parser alone and after
// gunzip) and writing from SAX2 events (the XML writer with and without
// gzip -9, the Fast Infoset writer). Rates are in octets of XML per second.
//

#include "Korvo/FastInfoset/Converter.h"
#include "Korvo/FastInfoset/FastInfosetParser.h"
#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include "Poco/DeflatingStream.h"
#include "Poco/InflatingStream.h"
#include "Poco/NullStream.h"
#include "Poco/File.h"
#include "Poco/Path.h"
#include "Poco/SAX/DefaultHandler.h"
#include "Poco/SAX/SAXParser.h"
#include "Poco/SAX/InputSource.h"
#include "Poco/XML/XMLWriter.h"
#include <benchmark/benchmark.h>
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

using namespace Korvo::FastInfoset;
using Korvo::XML::XMLString;


namespace {


class Recording: public Korvo::XML::DefaultHandler
	/// The content events of a document, to be played again into any handler.
{
public:
	void replay(Korvo::XML::ContentHandler& handler) const
	{
		for (const auto& play: _events) play(handler);
	}

	void startDocument() override { add([](Korvo::XML::ContentHandler& h) { h.startDocument(); }); }
	void endDocument() override { add([](Korvo::XML::ContentHandler& h) { h.endDocument(); }); }

	void startElement(const XMLString& uri, const XMLString& localName, const XMLString& qname, const Korvo::XML::Attributes& attributes) override
	{
		auto pAttributes = std::make_shared<Korvo::XML::AttributesImpl>(attributes);
		add([=](Korvo::XML::ContentHandler& h) { h.startElement(uri, localName, qname, *pAttributes); });
	}

	void endElement(const XMLString& uri, const XMLString& localName, const XMLString& qname) override
	{
		add([=](Korvo::XML::ContentHandler& h) { h.endElement(uri, localName, qname); });
	}

	void characters(const Korvo::XML::XMLChar ch[], int start, int length) override
	{
		const std::string text(ch + start, length);
		add([=](Korvo::XML::ContentHandler& h) { h.characters(text.data(), 0, static_cast<int>(text.size())); });
	}

	void processingInstruction(const XMLString& target, const XMLString& data) override
	{
		add([=](Korvo::XML::ContentHandler& h) { h.processingInstruction(target, data); });
	}

	void startPrefixMapping(const XMLString& prefix, const XMLString& uri) override
	{
		add([=](Korvo::XML::ContentHandler& h) { h.startPrefixMapping(prefix, uri); });
	}

	void endPrefixMapping(const XMLString& prefix) override
	{
		add([=](Korvo::XML::ContentHandler& h) { h.endPrefixMapping(prefix); });
	}

private:
	void add(std::function<void (Korvo::XML::ContentHandler&)> event) { _events.push_back(std::move(event)); }

	std::vector<std::function<void (Korvo::XML::ContentHandler&)>> _events;
};


struct Document
{
	std::string name;
	std::string xml;
	std::string xmlGzip;
	std::string fis;
	std::string fisGzip;
	Recording events;
};


std::string gzip(const std::string& data)
{
	std::ostringstream out;
	Poco::DeflatingOutputStream deflate(out, Poco::DeflatingStreamBuf::STREAM_GZIP, 9);
	deflate << data;
	deflate.close();
	return out.str();
}


std::vector<std::unique_ptr<Document>> loadDocuments()
{
	std::vector<std::string> paths;
	for (const char* directory: {KORVO_SOURCE_DIR "/samples", KORVO_SOURCE_DIR "/../shared/fixtures/real"})
	{
		if (!Poco::File(directory).exists()) continue;
		std::vector<std::string> names;
		Poco::File(directory).list(names);
		std::sort(names.begin(), names.end());
		for (const auto& name: names)
		{
			const std::string extension = Poco::Path(name).getExtension();
			if (extension == "xml" || extension == "xsl") paths.push_back(std::string(directory) + "/" + name);
		}
	}

	std::vector<std::unique_ptr<Document>> documents;
	for (const auto& path: paths)
	{
		std::unique_ptr<Document> pDocument(new Document);
		pDocument->name = Poco::Path(path).getFileName();
		std::ifstream input(path, std::ios::binary);
		std::ostringstream content;
		content << input.rdbuf();
		pDocument->xml = content.str();
		std::istringstream xml(pDocument->xml);
		std::ostringstream fis;
		Converter::convertToFIS(xml, fis);
		pDocument->fis = fis.str();
		pDocument->xmlGzip = gzip(pDocument->xml);
		pDocument->fisGzip = gzip(pDocument->fis);
		FastInfosetParser parser;
		parser.setContentHandler(&pDocument->events);
		parser.parseMemoryNP(pDocument->fis.data(), pDocument->fis.size());
		documents.push_back(std::move(pDocument));
	}
	return documents;
}


void printSizes(const std::vector<std::unique_ptr<Document>>& documents)
{
	std::printf("%-24s %10s %10s %10s %10s\n", "document", "XML", "XML gzip", "FI", "FI gzip");
	for (const auto& pDocument: documents)
	{
		std::printf("%-24s %10zu %10zu %10zu %10zu\n", pDocument->name.c_str(),
			pDocument->xml.size(), pDocument->xmlGzip.size(), pDocument->fis.size(), pDocument->fisGzip.size());
	}
	std::printf("\n");
}


void readXMLGzip(benchmark::State& state, const Document& document)
{
	Korvo::XML::DefaultHandler handler;
	for (auto _: state)
	{
		std::istringstream compressed(document.xmlGzip);
		Poco::InflatingInputStream inflate(compressed, Poco::InflatingStreamBuf::STREAM_GZIP);
		Korvo::XML::InputSource source(inflate);
		Korvo::XML::SAXParser parser;
		parser.setFeature(Korvo::XML::XMLReader::FEATURE_NAMESPACES, true);
		parser.setContentHandler(&handler);
		parser.parse(&source);
	}
	state.SetBytesProcessed(state.iterations() * document.xml.size());
}


void readXML(benchmark::State& state, const Document& document)
{
	Korvo::XML::DefaultHandler handler;
	for (auto _: state)
	{
		Korvo::XML::SAXParser parser;
		parser.setFeature(Korvo::XML::XMLReader::FEATURE_NAMESPACES, true);
		parser.setContentHandler(&handler);
		parser.parseMemoryNP(document.xml.data(), document.xml.size());
	}
	state.SetBytesProcessed(state.iterations() * document.xml.size());
}


void readFastInfoset(benchmark::State& state, const Document& document)
{
	Korvo::XML::DefaultHandler handler;
	FastInfosetParser parser;
	parser.setContentHandler(&handler);
	for (auto _: state)
	{
		parser.parseMemoryNP(document.fis.data(), document.fis.size());
	}
	state.SetBytesProcessed(state.iterations() * document.xml.size());
}


void readFastInfosetGzip(benchmark::State& state, const Document& document)
{
	Korvo::XML::DefaultHandler handler;
	FastInfosetParser parser;
	parser.setContentHandler(&handler);
	for (auto _: state)
	{
		std::istringstream compressed(document.fisGzip);
		Poco::InflatingInputStream inflate(compressed, Poco::InflatingStreamBuf::STREAM_GZIP);
		Korvo::XML::InputSource source(inflate);
		parser.parse(&source);
	}
	state.SetBytesProcessed(state.iterations() * document.xml.size());
}


void writeXMLGzip(benchmark::State& state, const Document& document)
{
	for (auto _: state)
	{
		Poco::NullOutputStream sink;
		Poco::DeflatingOutputStream deflate(sink, Poco::DeflatingStreamBuf::STREAM_GZIP, 9);
		Korvo::XML::XMLWriter writer(deflate, Korvo::XML::XMLWriter::CANONICAL);
		document.events.replay(writer);
		deflate.close();
	}
	state.SetBytesProcessed(state.iterations() * document.xml.size());
}


void writeXML(benchmark::State& state, const Document& document)
{
	for (auto _: state)
	{
		Poco::NullOutputStream sink;
		Korvo::XML::XMLWriter writer(sink, Korvo::XML::XMLWriter::CANONICAL);
		document.events.replay(writer);
	}
	state.SetBytesProcessed(state.iterations() * document.xml.size());
}


void writeFastInfoset(benchmark::State& state, const Document& document)
{
	for (auto _: state)
	{
		Poco::NullOutputStream sink;
		FastInfosetWriter writer(sink);
		document.events.replay(writer);
	}
	state.SetBytesProcessed(state.iterations() * document.xml.size());
}


} // namespace


int main(int argc, char** argv)
{
	const std::vector<std::unique_ptr<Document>> documents = loadDocuments();
	printSizes(documents);

	const std::pair<const char*, void (*)(benchmark::State&, const Document&)> cases[] =
	{
		{"ReadXMLGzip", readXMLGzip},
		{"ReadXML", readXML},
		{"ReadFastInfoset", readFastInfoset},
		{"ReadFastInfosetGzip", readFastInfosetGzip},
		{"WriteXMLGzip", writeXMLGzip},
		{"WriteXML", writeXML},
		{"WriteFastInfoset", writeFastInfoset},
	};
	for (const auto& pDocument: documents)
	{
		for (const auto& c: cases)
		{
			const Document& document = *pDocument;
			const auto run = c.second;
			benchmark::RegisterBenchmark((std::string(c.first) + "/" + document.name).c_str(),
				[&document, run](benchmark::State& state) { run(state, document); })->Unit(benchmark::kMicrosecond);
		}
	}
	benchmark::Initialize(&argc, argv);
	benchmark::RunSpecifiedBenchmarks();
	benchmark::Shutdown();
	return 0;
}
