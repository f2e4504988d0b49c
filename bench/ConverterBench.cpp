//
// ConverterBench.cpp
//
// Whole-document conversion of the bundled inventory sample (350 KB of
// data-like XML): XML to Fast Infoset, Fast Infoset to XML, and the parse of
// the Fast Infoset form alone against the XML parser over the text, all in
// octets of XML per second.
//

#include "Korvo/FastInfoset/Converter.h"
#include "Korvo/FastInfoset/FastInfosetParser.h"
#include "Poco/SAX/DefaultHandler.h"
#include "Poco/SAX/SAXParser.h"
#include <benchmark/benchmark.h>
#include <fstream>
#include <sstream>
#include <string>

using namespace Korvo::FastInfoset;


namespace {


const std::string& inventoryXML()
{
	static const std::string xml = []
	{
		std::ifstream input(KORVO_SOURCE_DIR "/samples/inventory.xml", std::ios::binary);
		std::ostringstream content;
		content << input.rdbuf();
		return content.str();
	}();
	return xml;
}


const std::string& inventoryFIS()
{
	static const std::string fis = []
	{
		std::istringstream input(inventoryXML());
		std::ostringstream output;
		Converter::convertToFIS(input, output, 16, 0);
		return output.str();
	}();
	return fis;
}


void XMLToFastInfoset(benchmark::State& state)
{
	const std::string& xml = inventoryXML();
	std::string buffer;
	for (auto _: state)
	{
		std::istringstream input(xml);
		std::ostringstream output(std::move(buffer));
		Converter::convertToFIS(input, output, 16, 0);
		buffer = output.str();
		benchmark::DoNotOptimize(buffer.size());
	}
	state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * xml.size()));
}


void FastInfosetToXML(benchmark::State& state)
{
	const std::string& fis = inventoryFIS();
	for (auto _: state)
	{
		std::istringstream input(fis);
		std::ostringstream output;
		Converter::convertToXML(input, output, Converter::CONV_WRITE_XML_DECLARATION);
		benchmark::DoNotOptimize(output.tellp());
	}
	state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * inventoryXML().size()));
	state.counters["fi_octets"] = static_cast<double>(fis.size());
}


void ParseFastInfosetOnly(benchmark::State& state)
{
	// The parser into a handler that does nothing: what the conversion to
	// XML costs beyond the toolkit's writer.
	const std::string& fis = inventoryFIS();
	Korvo::XML::DefaultHandler handler;
	FastInfosetParser parser(DocumentVocabulary::VOC_VECTOR);
	parser.setContentHandler(&handler);
	for (auto _: state)
		parser.parseMemoryNP(fis.data(), fis.size());
	state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * inventoryXML().size()));
}


void ParseXMLOnly(benchmark::State& state)
{
	// The toolkit's SAX parser over the same document as text, for comparison.
	const std::string& xml = inventoryXML();
	Korvo::XML::DefaultHandler handler;
	Korvo::XML::SAXParser parser;
	parser.setFeature(Korvo::XML::XMLReader::FEATURE_NAMESPACES, true);
	parser.setContentHandler(&handler);
	for (auto _: state)
		parser.parseMemoryNP(xml.data(), xml.size());
	state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * xml.size()));
}


} // namespace


BENCHMARK(XMLToFastInfoset)->Unit(benchmark::kMillisecond);
BENCHMARK(FastInfosetToXML)->Unit(benchmark::kMillisecond);
BENCHMARK(ParseFastInfosetOnly)->Unit(benchmark::kMillisecond);
BENCHMARK(ParseXMLOnly)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
