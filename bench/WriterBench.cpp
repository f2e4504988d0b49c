//
// WriterBench.cpp
//
// Writing the benchmark document with FastInfosetWriter, and for comparison
// the same events as XML text with the toolkit's XMLWriter.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//

#include "BenchDocument.h"
#include "BenchSupport.h"
#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include "Poco/XML/XMLWriter.h"
#include <benchmark/benchmark.h>
#include <atomic>
#include <cstdlib>
#include <new>
#include <ostream>
#include <string>

using namespace Korvo::FastInfoset;


// Every allocation of the program is counted, so that a run can report how
// many the writer made per event. The replacements pair malloc with free,
// which the compiler cannot see through.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
#endif
static std::atomic<std::size_t> allocationCount(0);


void* operator new(std::size_t size)
{
	++allocationCount;
	if (void* p = std::malloc(size ? size : 1)) return p;
	throw std::bad_alloc();
}


void operator delete(void* p) noexcept
{
	std::free(p);
}


void operator delete(void* p, std::size_t) noexcept
{
	std::free(p);
}


namespace {


const Bench::BenchDocument& document()
{
	static const Bench::BenchDocument DOCUMENT;
	return DOCUMENT;
}


void report(benchmark::State& state, std::size_t bytes, std::size_t events, std::size_t allocations)
{
	const double runs = static_cast<double>(state.iterations());
	state.counters["allocs/event"] = static_cast<double>(allocations)/(runs*events);
	state.SetBytesProcessed(static_cast<int64_t>(bytes*state.iterations()));
	state.counters["MB/s"] = benchmark::Counter(runs*bytes/1e6, benchmark::Counter::kIsRate);
	state.counters["events/s"] = benchmark::Counter(runs*events, benchmark::Counter::kIsRate);
	state.counters["bytes"] = static_cast<double>(bytes);
}


void writeFastInfoset(benchmark::State& state, DocumentVocabulary::VocabularyImpl impl)
{
	const Bench::BenchDocument& doc = document();
	Bench::MemoryBuffer buffer;
	std::ostream out(&buffer);
	std::size_t events = 0;
	const std::size_t allocationsBefore = allocationCount;
	for (auto _: state)
	{
		buffer.clear();
		FastInfosetWriter writer(out, false, impl);
		events = doc.write(writer);
	}
	report(state, buffer.size(), events, allocationCount - allocationsBefore);
}


void BM_FastInfosetWriterHash(benchmark::State& state)
{
	writeFastInfoset(state, DocumentVocabulary::VOC_HASH);
}


void BM_FastInfosetWriterMap(benchmark::State& state)
{
	writeFastInfoset(state, DocumentVocabulary::VOC_MAP);
}


void BM_XMLWriter(benchmark::State& state)
{
	const Bench::BenchDocument& doc = document();
	Bench::MemoryBuffer buffer;
	std::ostream out(&buffer);
	std::size_t events = 0;
	const std::size_t allocationsBefore = allocationCount;
	for (auto _: state)
	{
		buffer.clear();
		Korvo::XML::XMLWriter writer(out, Korvo::XML::XMLWriter::CANONICAL);
		events = doc.write(writer);
	}
	report(state, buffer.size(), events, allocationCount - allocationsBefore);
}


} // namespace


BENCHMARK(BM_FastInfosetWriterHash)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FastInfosetWriterMap)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_XMLWriter)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
