//
// EncodingBench.cpp
//
// Throughput of the typed values: writing and reading arrays, typed delivery
// against text delivery, text parsing, and the writer's one-value merges.
//

#include "Korvo/FastInfoset/IntEncoding.h"
#include "Korvo/FastInfoset/DoubleEncoding.h"
#include "Korvo/FastInfoset/BoolEncoding.h"
#include "Korvo/FastInfoset/BitStreamReader.h"
#include "Korvo/FastInfoset/BitStreamWriter.h"
#include "Korvo/FastInfoset/FISContentHandler.h"
#include <benchmark/benchmark.h>
#include <sstream>
#include <string>
#include <vector>

using namespace Korvo::FastInfoset;


namespace {


class CountingHandler: public FISContentHandler
	/// Counts typed values and text octets, and ignores everything else.
{
public:
	long long count = 0;

	void setDocumentLocator(const Korvo::XML::Locator*) {}
	void startDocument() {}
	void endDocument() {}
	void startElement(const Korvo::XML::XMLString&, const Korvo::XML::XMLString&, const Korvo::XML::XMLString&, const Korvo::XML::Attributes&) {}
	void endElement(const Korvo::XML::XMLString&, const Korvo::XML::XMLString&, const Korvo::XML::XMLString&) {}
	void characters(const Korvo::XML::XMLChar[], int, int length) { count += length; }
	void ignorableWhitespace(const Korvo::XML::XMLChar[], int, int) {}
	void processingInstruction(const Korvo::XML::XMLString&, const Korvo::XML::XMLString&) {}
	void startPrefixMapping(const Korvo::XML::XMLString&, const Korvo::XML::XMLString&) {}
	void endPrefixMapping(const Korvo::XML::XMLString&) {}
	void skippedEntity(const Korvo::XML::XMLString&) {}
	void binaryData(const char*, unsigned int size) { count += size; }
	void encodedData(short) { ++count; }
	void encodedData(int) { ++count; }
	void encodedData(long long) { ++count; }
	void encodedData(bool) { ++count; }
	void encodedData(float) { ++count; }
	void encodedData(double) { ++count; }
	void encodedData(const Korvo::UUID&) { ++count; }
};


const int VALUES = 10000;


std::vector<double> doubles()
{
	std::vector<double> values(VALUES);
	for (int i = 0; i < VALUES; ++i)
		values[i] = i*1.25 - 3.0/(i + 1);
	return values;
}


std::string octetsOf(const Encoding& value)
{
	std::ostringstream stream;
	{
		BitStreamWriter writer(stream, false);
		writer.write(0u, 4);
		value.write(writer);
	}
	return stream.str();
}


template <class Fn>
void decodeEach(benchmark::State& state, const std::string& octets, Fn fn)
{
	for (auto _: state)
	{
		BitStreamReader reader(octets.data(), static_cast<unsigned int>(octets.size()));
		unsigned char prefix;
		reader.read(prefix, 4);
		fn(reader);
	}
	state.SetBytesProcessed(static_cast<long long>(state.iterations())*static_cast<long long>(octets.size()));
}


void writeDoubles(benchmark::State& state)
{
	const DoubleEncoding value(doubles());
	for (auto _: state)
		benchmark::DoNotOptimize(octetsOf(value));
	state.SetItemsProcessed(state.iterations()*VALUES);
}


void decodeDoublesTyped(benchmark::State& state)
{
	// Decoding and delivering to a typed handler never renders text.
	const std::string octets = octetsOf(DoubleEncoding(doubles()));
	CountingHandler handler;
	decodeEach(state, octets, [&](BitStreamReader& reader) { DoubleEncoding::decode(reader)->handle(&handler); });
	benchmark::DoNotOptimize(handler.count);
}


void decodeDoublesAsText(benchmark::State& state)
{
	const std::string octets = octetsOf(DoubleEncoding(doubles()));
	CountingHandler handler;
	Korvo::XML::ContentHandler* pPlain = &handler;
	decodeEach(state, octets, [&](BitStreamReader& reader) { DoubleEncoding::decode(reader)->handle(pPlain); });
	benchmark::DoNotOptimize(handler.count);
}


void decodeIntsIntoVector(benchmark::State& state)
{
	std::vector<int> values(VALUES);
	for (int i = 0; i < VALUES; ++i)
		values[i] = i*7919 - 5000000;
	const std::string octets = octetsOf(IntEncoding(values));
	std::vector<int> decoded;
	decodeEach(state, octets, [&](BitStreamReader& reader) { IntEncoding::decode(reader, decoded); });
}


void decodeBools(benchmark::State& state)
{
	std::vector<bool> values(VALUES*8);
	for (std::size_t i = 0; i < values.size(); ++i)
		values[i] = (i % 3) == 0;
	const std::string octets = octetsOf(BoolEncoding(values));
	std::vector<bool> decoded;
	decodeEach(state, octets, [&](BitStreamReader& reader) { BoolEncoding::decode(reader, decoded); });
}


void checkIntText(benchmark::State& state)
{
	std::string text;
	for (int i = 0; i < VALUES; ++i)
	{
		if (i > 0)
			text += ' ';
		text += std::to_string(i*7919 - 5000000);
	}
	for (auto _: state)
		benchmark::DoNotOptimize(IntEncoding::check(text));
	state.SetItemsProcessed(state.iterations()*VALUES);
}


void mergeOneValueAtATime(benchmark::State& state)
{
	// The writer's pattern: every encodedData call merges one value into the
	// queued array, which must stay linear in the array's length.
	for (auto _: state)
	{
		IntEncoding::Ptr pQueued(new IntEncoding(0));
		for (int i = 1; i < state.range(0); ++i)
			pQueued->merge(IntEncoding(i));
		benchmark::DoNotOptimize(pQueued->data().size());
	}
	state.SetComplexityN(state.range(0));
}


} // namespace


BENCHMARK(writeDoubles);
BENCHMARK(decodeDoublesTyped);
BENCHMARK(decodeDoublesAsText);
BENCHMARK(decodeIntsIntoVector);
BENCHMARK(decodeBools);
BENCHMARK(checkIntText);
BENCHMARK(mergeOneValueAtATime)->RangeMultiplier(4)->Range(1 << 10, 1 << 16)->Complexity(benchmark::oN);

BENCHMARK_MAIN();
