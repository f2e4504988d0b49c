//
// VocabularyBench.cpp
//
// Throughput of the vocabulary tables and the string decoders.
//

#include "Korvo/FastInfoset/HashVocabulary.h"
#include "Korvo/FastInfoset/MapVocabulary.h"
#include "Korvo/FastInfoset/VectorVocabulary.h"
#include "Korvo/FastInfoset/DocumentRestrictedAlphabet.h"
#include "Korvo/FastInfoset/StringDecoder.h"
#include <benchmark/benchmark.h>
#include <memory>
#include <string>
#include <vector>

using namespace Korvo::FastInfoset;


namespace {


std::vector<std::string> names(int count)
{
	std::vector<std::string> result;
	for (int i = 0; i < count; ++i) result.push_back("name" + std::to_string(i*7919));
	return result;
}


template <class Table>
void fill(benchmark::State& state)
{
	// A local-name table filled to three quarters of the hash capacity.
	std::vector<std::string> values = names(30000);
	for (auto _: state)
	{
		Table table(40009);
		bool existed;
		for (const auto& value: values) table.index(value, existed);
		benchmark::DoNotOptimize(table.size());
	}
	state.SetItemsProcessed(state.iterations()*values.size());
}


template <class Table>
void lookUp(benchmark::State& state)
{
	std::vector<std::string> values = names(30000);
	Table table(40009);
	bool found;
	for (const auto& value: values) table.index(value, found);
	for (auto _: state)
	{
		for (const auto& value: values) benchmark::DoNotOptimize(table.exists(value, found));
	}
	state.SetItemsProcessed(state.iterations()*values.size());
}


void subtractVector(benchmark::State& state)
{
	// A vector table has no value index: subtracting it must not scan it per value.
	std::vector<std::string> values = names(20000);
	HashVocabulary<std::string> table(40009);
	VectorVocabulary<std::string> other(0);
	bool existed;
	for (std::size_t i = 0; i < values.size(); ++i)
	{
		table.index(values[i], existed);
		if (i % 2) other.index(values[i], existed);
	}
	for (auto _: state)
	{
		std::unique_ptr<Vocabulary<std::string>> pDiff(table.subtract(other));
		benchmark::DoNotOptimize(pDiff->size());
	}
	state.SetItemsProcessed(state.iterations()*values.size());
}


void decodeNumeric(benchmark::State& state)
{
	DocumentRestrictedAlphabet alphabets;
	std::string packed(4096, '\x12');
	std::string result;
	for (auto _: state)
	{
		StringDecoder::decodeAlphabet(packed, alphabets.alphabet(1), result);
		benchmark::DoNotOptimize(result.data());
	}
	state.SetBytesProcessed(state.iterations()*packed.size());
}


void decodeUTF16(benchmark::State& state)
{
	std::string utf16;
	for (int i = 0; i < 2048; ++i)
	{
		unsigned int ch = i % 3 ? 0x41 + i % 26 : 0x3B1 + i % 20;
		utf16 += static_cast<char>(ch >> 8);
		utf16 += static_cast<char>(ch & 0xFF);
	}
	std::string result;
	for (auto _: state)
	{
		StringDecoder::decodeUTF16(utf16, result);
		benchmark::DoNotOptimize(result.data());
	}
	state.SetBytesProcessed(state.iterations()*utf16.size());
}


} // namespace


BENCHMARK_TEMPLATE(fill, HashVocabulary<std::string>);
BENCHMARK_TEMPLATE(fill, MapVocabulary<std::string>);
BENCHMARK_TEMPLATE(lookUp, HashVocabulary<std::string>);
BENCHMARK_TEMPLATE(lookUp, MapVocabulary<std::string>);
BENCHMARK(subtractVector);
BENCHMARK(decodeNumeric);
BENCHMARK(decodeUTF16);

BENCHMARK_MAIN();
