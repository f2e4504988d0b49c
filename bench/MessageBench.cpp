//
// MessageBench.cpp
//
// The cost of one small message, for every message of the shared message
// fixtures (NAME.xml with the NAME.fi that another implementation wrote):
// parsed by a reused parser and by one built for it, and written by a writer
// built for it through each constructor, against the toolkit's SAXParser and
// XMLWriter on the same message; and both ways against a shared vocabulary,
// the one the message itself builds.
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
#include <benchmark/benchmark.h>
#include <cstdio>
#include <functional>
#include <memory>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

using namespace Korvo::FastInfoset;


namespace {


const std::string MESSAGES = KORVO_SOURCE_DIR "/../shared/fixtures/messages";


const std::string VOCABULARY_URI = "urn:korvo:bench:messages";


struct Message
{
	std::string name;
	std::string xml;
	std::string fis;
	Bench::RecordedEvents events;
	std::unique_ptr<DocumentVocabulary> pVocabulary;
		/// The vocabulary the message itself builds, as a shared one.
	std::string shared;
		/// The message written against that vocabulary.
};


void learnVocabulary(Message& message)
{
	std::ostringstream sink;
	FastInfosetWriter learner(sink, false, DocumentVocabulary::VOC_MAP);
	message.events.replay(learner);
	message.pVocabulary.reset(new DocumentVocabulary(learner.getDocumentVocabulary()));

	std::ostringstream out;
	FastInfosetWriter writer(out);
	writer.useExternalVocabulary(VOCABULARY_URI, *message.pVocabulary);
	message.events.replay(writer);
	message.shared = out.str();
}


std::vector<std::unique_ptr<Message>> loadMessages()
{
	std::vector<std::unique_ptr<Message>> messages;
	for (const std::string& file: Bench::filesIn(MESSAGES, ".xml"))
	{
		std::unique_ptr<Message> pMessage(new Message);
		pMessage->name = Bench::baseName(file);
		if (!Bench::readFile(MESSAGES + "/" + file, pMessage->xml)) continue;
		if (!Bench::readFile(MESSAGES + "/" + pMessage->name + ".fi", pMessage->fis)) continue;
		pMessage->events.readXML(pMessage->xml);
		learnVocabulary(*pMessage);
		messages.push_back(std::move(pMessage));
	}
	return messages;
}


const char* implName(DocumentVocabulary::VocabularyImpl impl)
{
	switch (impl)
	{
	case DocumentVocabulary::VOC_HASH: return "VOC_HASH";
	case DocumentVocabulary::VOC_MAP: return "VOC_MAP";
	default: return "VOC_VECTOR";
	}
}


void saxParser(benchmark::State& state, const Message& message)
{
	Korvo::XML::DefaultHandler handler;
	Korvo::XML::SAXParser parser;
	parser.setFeature(Korvo::XML::XMLReader::FEATURE_NAMESPACES, true);
	parser.setFeature(Korvo::XML::XMLReader::FEATURE_NAMESPACE_PREFIXES, true);
	parser.setContentHandler(&handler);
	for (auto _: state) parser.parseMemoryNP(message.xml.data(), message.xml.size());
}


void parseReused(benchmark::State& state, const Message& message, DocumentVocabulary::VocabularyImpl impl)
{
	Korvo::XML::DefaultHandler handler;
	FastInfosetParser parser(impl);
	parser.setContentHandler(&handler);
	for (auto _: state) parser.parseMemoryNP(message.fis.data(), message.fis.size());
}


void parseNew(benchmark::State& state, const Message& message)
{
	Korvo::XML::DefaultHandler handler;
	for (auto _: state)
	{
		FastInfosetParser parser;
		parser.setContentHandler(&handler);
		parser.parseMemoryNP(message.fis.data(), message.fis.size());
	}
}


void parseShared(benchmark::State& state, const Message& message)
{
	Korvo::XML::DefaultHandler handler;
	FastInfosetParser parser;
	parser.addExternalVocabulary(VOCABULARY_URI, *message.pVocabulary);
	parser.setContentHandler(&handler);
	for (auto _: state) parser.parseMemoryNP(message.shared.data(), message.shared.size());
	state.counters["octets"] = static_cast<double>(message.shared.size());
}


void xmlWriter(benchmark::State& state, const Message& message)
{
	Bench::MemoryBuffer buffer;
	std::ostream out(&buffer);
	for (auto _: state)
	{
		buffer.clear();
		Korvo::XML::XMLWriter writer(out, Korvo::XML::XMLWriter::CANONICAL);
		message.events.replay(writer);
	}
}


void write(benchmark::State& state, const Message& message, const std::function<FastInfosetWriter*(std::ostream&)>& makeWriter)
{
	Bench::MemoryBuffer buffer;
	std::ostream out(&buffer);
	for (auto _: state)
	{
		buffer.clear();
		std::unique_ptr<FastInfosetWriter> pWriter(makeWriter(out));
		message.events.replay(*pWriter);
	}
	state.counters["octets"] = static_cast<double>(buffer.size());
}


void registerMessage(const Message& message)
{
	const std::string suffix = "/" + message.name;
	const DocumentVocabulary::VocabularyImpl impls[] = {DocumentVocabulary::VOC_MAP, DocumentVocabulary::VOC_VECTOR, DocumentVocabulary::VOC_HASH};
	const DocumentVocabulary::VocabularyImpl writerImpls[] = {DocumentVocabulary::VOC_HASH, DocumentVocabulary::VOC_MAP};

	benchmark::RegisterBenchmark(("SAXParser reused" + suffix).c_str(), saxParser, std::cref(message));
	for (DocumentVocabulary::VocabularyImpl impl: impls)
	{
		benchmark::RegisterBenchmark((std::string("parse reused ") + implName(impl) + suffix).c_str(), parseReused, std::cref(message), impl);
	}
	benchmark::RegisterBenchmark(("parse new parser" + suffix).c_str(), parseNew, std::cref(message));
	benchmark::RegisterBenchmark(("parse reused, shared vocabulary" + suffix).c_str(), parseShared, std::cref(message));

	benchmark::RegisterBenchmark(("XMLWriter" + suffix).c_str(), xmlWriter, std::cref(message));
	benchmark::RegisterBenchmark(("write (out)" + suffix).c_str(), write, std::cref(message),
		[](std::ostream& out) { return new FastInfosetWriter(out); });
	for (DocumentVocabulary::VocabularyImpl impl: writerImpls)
	{
		benchmark::RegisterBenchmark((std::string("write (out, impl) ") + implName(impl) + suffix).c_str(), write, std::cref(message),
			[impl](std::ostream& out) { return new FastInfosetWriter(out, false, impl); });
	}
	const DocumentVocabulary* pShared = message.pVocabulary.get();
	benchmark::RegisterBenchmark(("write (out), shared vocabulary" + suffix).c_str(), write, std::cref(message),
		[pShared](std::ostream& out)
		{
			FastInfosetWriter* pWriter = new FastInfosetWriter(out);
			pWriter->useExternalVocabulary(VOCABULARY_URI, *pShared);
			return pWriter;
		});
	for (DocumentVocabulary::VocabularyImpl impl: writerImpls)
	{
		std::shared_ptr<DocumentVocabulary> pVocabulary(new DocumentVocabulary(impl));
		benchmark::RegisterBenchmark((std::string("write (out, voc) ") + implName(impl) + suffix).c_str(), write, std::cref(message),
			[pVocabulary](std::ostream& out) { return new FastInfosetWriter(out, false, *pVocabulary); });
	}
}


} // namespace


int main(int argc, char** argv)
{
	static const std::vector<std::unique_ptr<Message>> messages = loadMessages();
	if (messages.empty())
	{
		std::printf("MessageBench: skipped, no messages in %s\n", MESSAGES.c_str());
		return 0;
	}
	for (const auto& pMessage: messages) registerMessage(*pMessage);

	benchmark::Initialize(&argc, argv);
	if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
	benchmark::RunSpecifiedBenchmarks();
	benchmark::Shutdown();
	return 0;
}
