//
// RealDocumentBench.cpp
//
// Reading and writing real documents: every NAME.xml (or .xsl) of the real
// fixtures with the NAME.fi that another implementation wrote beside it, and
// the bundled samples. Prints one table: sizes, the toolkit's SAXParser on
// the XML, FastInfosetParser on the Fast Infoset form with each table kind,
// FastInfosetWriter against the toolkit's XMLWriter on the same recorded
// events, and the size of our form against the one beside it.
//
//     RealDocumentBench [--runs N] [DIRECTORY...]
//
// Times are medians of N runs (default 7), in milliseconds of processor
// time per document.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//

#include "BenchSupport.h"
#include "Korvo/FastInfoset/FastInfosetParser.h"
#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include "Poco/SAX/DefaultHandler.h"
#include "Poco/SAX/SAXParser.h"
#include "Poco/XML/XMLWriter.h"
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <map>
#include <ostream>
#include <string>
#include <vector>

using namespace Korvo::FastInfoset;


namespace {


struct Target
	/// The speed a document must reach: parsing against the SAXParser and
	/// writing against the XMLWriter.
{
	double parse;
	double write;
};


const std::map<std::string, Target> TARGETS =
{
	{"cppcheck-gtk", {13.6, 9.5}},
	{"cppcheck-windows", {10.8, 5}},
	{"iso3166-1", {5.2, 5.5}},
	{"iso639-2", {5.9, 5}},
	{"rss-hebrew", {5.5, 14}},
	{"xkb-extras", {6.1, 4.5}},
	{"mathml-ctop", {8.3, 8}},
};


int runs = 7;


double cpuMillis()
	/// The processor time of this process: other programs on the machine
	/// lengthen the wall-clock time of a run, not this.
{
	timespec now;
	clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
	return now.tv_sec*1e3 + now.tv_nsec/1e6;
}


template <class Function>
double millis(Function function)
	/// The median processor time of one call, over runs batches of calls
	/// that take at least 20 ms each; negative when the call throws.
{
	try
	{
		function();
		long batch = 1;
		for (;;)
		{
			double start = cpuMillis();
			for (long i = 0; i < batch; ++i) function();
			if (cpuMillis() - start >= 20 || batch >= (1L << 20)) break;
			batch *= 2;
		}
		std::vector<double> samples;
		for (int run = 0; run < runs; ++run)
		{
			double start = cpuMillis();
			for (long i = 0; i < batch; ++i) function();
			samples.push_back((cpuMillis() - start)/batch);
		}
		std::sort(samples.begin(), samples.end());
		return samples[samples.size()/2];
	}
	catch (Korvo::Exception&)
	{
		return -1;
	}
}


std::string cell(double value, const char* format = "%.3f")
{
	if (value < 0) return "overflow";
	char text[32];
	std::snprintf(text, sizeof(text), format, value);
	return text;
}


std::string ratio(double numerator, double denominator)
{
	if (numerator < 0 || denominator <= 0) return "-";
	return cell(numerator/denominator, "%.1fx");
}


std::string target(double value)
{
	return value > 0 ? cell(value, "%.1fx") : std::string("-");
}


double parseFastInfoset(const std::string& fis, DocumentVocabulary::VocabularyImpl impl)
{
	Korvo::XML::DefaultHandler handler;
	FastInfosetParser parser(impl);
	parser.setContentHandler(&handler);
	return millis([&] { parser.parseMemoryNP(fis.data(), fis.size()); });
}


double writeFastInfoset(const Bench::RecordedEvents& events, DocumentVocabulary::VocabularyImpl impl, std::string* pOutput = nullptr)
{
	Bench::MemoryBuffer buffer;
	std::ostream out(&buffer);
	double time = millis([&]
	{
		buffer.clear();
		FastInfosetWriter writer(out, false, impl);
		events.replay(writer);
	});
	if (pOutput) *pOutput = buffer.data();
	return time;
}


void benchmarkDocument(const std::string& directory, const std::string& fileName)
{
	std::string xml;
	if (!Bench::readFile(directory + "/" + fileName, xml)) return;
	const std::string name = Bench::baseName(fileName);
	std::string theirs;
	const bool hasTheirs = Bench::readFile(directory + "/" + name + ".fi", theirs);
	auto itTarget = TARGETS.find(name);
	const Target goal = itTarget == TARGETS.end() ? Target{0, 5} : itTarget->second;

	Bench::RecordedEvents events;
	events.readXML(xml);
	std::string ours;
	const double writeMap = writeFastInfoset(events, DocumentVocabulary::VOC_MAP, &ours);
	const double writeHash = writeFastInfoset(events, DocumentVocabulary::VOC_HASH);
	Bench::MemoryBuffer xmlBuffer;
	std::ostream xmlOut(&xmlBuffer);
	const double writeXML = millis([&]
	{
		xmlBuffer.clear();
		Korvo::XML::XMLWriter writer(xmlOut, Korvo::XML::XMLWriter::CANONICAL);
		events.replay(writer);
	});

	Korvo::XML::DefaultHandler handler;
	Korvo::XML::SAXParser saxParser;
	saxParser.setFeature(Korvo::XML::XMLReader::FEATURE_NAMESPACES, true);
	saxParser.setFeature(Korvo::XML::XMLReader::FEATURE_NAMESPACE_PREFIXES, true);
	saxParser.setContentHandler(&handler);
	const double parseXML = millis([&] { saxParser.parseMemoryNP(xml.data(), xml.size()); });

	// Their form where there is one, else ours.
	const std::string& fis = hasTheirs ? theirs : ours;
	const double parseMap = parseFastInfoset(fis, DocumentVocabulary::VOC_MAP);
	const double parseVector = parseFastInfoset(fis, DocumentVocabulary::VOC_VECTOR);
	const double parseHash = parseFastInfoset(fis, DocumentVocabulary::VOC_HASH);

	std::printf("| %s | %.0f | %.0f | %s | %s | %s | %s | %s | %s | %s | %s | %s | %s | %s | %s | %s |\n",
		fileName.c_str(), xml.size()/1024.0, fis.size()/1024.0,
		cell(parseXML).c_str(), cell(parseMap).c_str(), cell(parseVector).c_str(), cell(parseHash).c_str(),
		ratio(parseXML, parseMap).c_str(), target(goal.parse).c_str(),
		cell(writeXML).c_str(), cell(writeMap).c_str(), cell(writeHash).c_str(),
		ratio(writeXML, writeMap).c_str(), ratio(writeXML, writeHash).c_str(), target(goal.write).c_str(),
		hasTheirs ? cell(100.0*ours.size()/theirs.size(), "%.1f%%").c_str() : "-");
	std::fflush(stdout);
}


void benchmarkDirectory(const std::string& directory)
{
	std::vector<std::string> files = Bench::filesIn(directory, ".xml");
	for (const std::string& stylesheet: Bench::filesIn(directory, ".xsl")) files.push_back(stylesheet);
	if (files.empty())
	{
		std::printf("(skipped %s: no such directory or no documents in it)\n", directory.c_str());
		return;
	}
	for (const std::string& file: files) benchmarkDocument(directory, file);
}


} // namespace


int main(int argc, char** argv)
{
	std::vector<std::string> directories;
	for (int i = 1; i < argc; ++i)
	{
		std::string arg = argv[i];
		if (arg == "--runs" && i + 1 < argc)
			runs = std::max(1, std::atoi(argv[++i]));
		else
			directories.push_back(arg);
	}
	if (directories.empty()) directories = {KORVO_SOURCE_DIR "/../shared/fixtures/real", KORVO_SOURCE_DIR "/samples"};

	std::printf("Milliseconds of processor time per document, medians of %d runs. Parsing: the toolkit's SAXParser on the XML,\n"
		"FastInfosetParser on the .fi beside it (on our own form where there is none). Writing: the\n"
		"same recorded events into XMLWriter and FastInfosetWriter. Size: ours (VOC_MAP) against the .fi.\n\n", runs);
	std::printf("| document | XML KB | FI KB | SAXParser | VOC_MAP | VOC_VECTOR | VOC_HASH | SAX/MAP | target "
		"| XMLWriter | FI MAP | FI HASH | XML/MAP | XML/HASH | target | size vs .fi |\n");
	std::printf("|---|---|---|---|---|---|---|---|---|---|---|---|---|---|---|---|\n");
	for (const std::string& directory: directories) benchmarkDirectory(directory);
	return 0;
}
