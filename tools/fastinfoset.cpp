//
// fastinfoset.cpp
//
// Library: FastInfoset
// Package: Tools
// Module:  fastinfoset
//
// The fastinfoset command-line program: converts XML files to Fast Infoset
// and back, inspects Fast Infoset files and checks round trips.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Tool.h"
#include "Batch.h"
#include "VocabularyFile.h"
#include "VocabularyLearner.h"
#include "VocabularyOptions.h"
#include "Korvo/FastInfoset/Converter.h"
#include <iostream>
#include <limits>


namespace Korvo {
namespace FastInfoset {
namespace Tool {


int encodeCommand(const std::vector<std::string>& arguments, std::ostream&, std::ostream& err)
{
	EncodeSettings settings;
	VocabularyOptions vocabularies(false);
	std::string outputDirectory;
	bool quiet = false;
	std::vector<std::string> operands;
	ArgumentReader reader("encode", arguments);
	while (reader.next())
	{
		if (settings.readOption(reader) || vocabularies.readOption(reader)) continue;
		if (reader.is("-o", "--output-directory")) outputDirectory = reader.stringValue();
		else if (reader.is("-q", "--quiet")) quiet = true;
		else if (reader.isOption()) reader.unknownOption();
		else operands.push_back(reader.current());
	}

	const Batch batch("encode", operands, outputDirectory, {"xml"}, "fi");
	vocabularies.load();
	settings.pVocabulary = vocabularies.first();
	return batch.run([&](std::istream& input, std::ostream& output)
	{
		encodeXML(input, output, settings);
	}, !quiet, err);
}


int decodeCommand(const std::vector<std::string>& arguments, std::ostream&, std::ostream& err)
{
	int options = Converter::CONV_WRITE_XML_DECLARATION;
	VocabularyOptions vocabularies(true);
	std::string outputDirectory;
	bool quiet = false;
	std::vector<std::string> operands;
	ArgumentReader reader("decode", arguments);
	while (reader.next())
	{
		if (vocabularies.readOption(reader)) continue;
		if (reader.is("-p", "--pretty")) options |= Converter::CONV_PRETTY_PRINT_XML;
		else if (reader.is("-n", "--no-declaration")) options &= ~Converter::CONV_WRITE_XML_DECLARATION;
		else if (reader.is("-o", "--output-directory")) outputDirectory = reader.stringValue();
		else if (reader.is("-q", "--quiet")) quiet = true;
		else if (reader.isOption()) reader.unknownOption();
		else operands.push_back(reader.current());
	}

	const Batch batch("decode", operands, outputDirectory, {"fi", "finf"}, "xml");
	vocabularies.load();
	return batch.run([&](std::istream& input, std::ostream& output)
	{
		vocabularies.decode(input, output, options);
	}, !quiet, err);
}


int vocabularyCommand(const std::vector<std::string>& arguments, std::ostream&, std::ostream& err)
{
	std::string output;
	int maxValueLength = 64;
	std::vector<std::string> samples;
	ArgumentReader reader("vocabulary", arguments);
	while (reader.next())
	{
		if (reader.is("-o", "--output")) output = reader.stringValue();
		else if (reader.is("-m", "--max-value-length")) maxValueLength = reader.intValue();
		else if (reader.isOption()) reader.unknownOption();
		else samples.push_back(reader.current());
	}
	if (output.empty()) throw UsageException("vocabulary: needs -o VOCABULARY");
	if (samples.empty()) throw UsageException("vocabulary: needs at least one SAMPLE");

	VocabularyLearner learner(maxValueLength < 0 ? std::numeric_limits<std::size_t>::max() : static_cast<std::size_t>(maxValueLength));
	for (const std::string& sample: samples)
	{
		try
		{
			InputFile input(sample);
			learner.learn(input.stream());
		}
		catch (const std::exception& exc)
		{
			err << "fastinfoset: " << (sample == "-" ? "<stdin>" : sample) << ": " << describe(exc) << std::endl;
			return EXIT_FAILED;
		}
	}
	OutputFile file(output);
	VocabularyFile::write(learner.vocabulary(), file.stream());
	file.commit();
	return EXIT_OK;
}


void printUsage(std::ostream& out)
{
	out <<
		"Usage: fastinfoset COMMAND [OPTIONS] FILE...\n"
		"\n"
		"Converts XML documents to Fast Infoset (ITU-T X.891) and back, looks inside\n"
		"Fast Infoset documents and checks that documents survive the round trip.\n"
		"\n"
		"Commands:\n"
		"  encode [-m N] [-w] [--plain] [--vocabulary FILE] [-q] INPUT OUTPUT\n"
		"  encode [-m N] [-w] [--plain] [--vocabulary FILE] [-q] -o DIRECTORY FILE...\n"
		"      Reads XML text from INPUT and writes a Fast Infoset document to OUTPUT,\n"
		"      or converts each FILE to DIRECTORY/NAME.fi (NAME.xml becomes NAME.fi),\n"
		"      as small as it can: it reads the input twice, indexes the values that\n"
		"      occur more than once, joins the text of an element into one chunk and\n"
		"      writes each literal as UTF-8, UTF-16 or packed in a restricted alphabet,\n"
		"      whichever is shortest, with up to four alphabets chosen for the document.\n"
		"      -m, --max-indexed-length N  index attribute values and text chunks of at\n"
		"                                  most N octets (default: any length; with\n"
		"                                  --plain 16; negative: all)\n"
		"      -w, --strip-whitespace      drop text that is whitespace only\n"
		"      --plain                     write as the library's Converter does: UTF-8\n"
		"                                  literals, values of at most N octets indexed\n"
		"      --vocabulary FILE           name the shared vocabulary of FILE and write\n"
		"                                  the names and values it holds by index\n"
		"      --vocabulary-uri URI        the URI by which documents name it (default:\n"
		"                                  the name of FILE without its directory)\n"
		"      -o, --output-directory DIR  convert every FILE into DIR (made if missing)\n"
		"      -q, --quiet                 show no progress\n"
		"\n"
		"  decode [-p] [-n] [--vocabulary FILE]... [-q] INPUT OUTPUT\n"
		"  decode [-p] [-n] [--vocabulary FILE]... [-q] -o DIRECTORY FILE...\n"
		"      Reads a Fast Infoset document from INPUT and writes XML text to OUTPUT,\n"
		"      beginning with an XML declaration, or converts each FILE to\n"
		"      DIRECTORY/NAME.xml (NAME.fi or NAME.finf becomes NAME.xml).\n"
		"      -p, --pretty                indent the XML\n"
		"      -n, --no-declaration        leave out the XML declaration\n"
		"      -o, --output-directory DIR  and -q, --quiet as for encode\n"
		"      --vocabulary FILE [--vocabulary-uri URI], as for encode, may be given\n"
		"      for each vocabulary that the documents name.\n"
		"\n"
		"  inspect [--vocabulary FILE]... INPUT\n"
		"      Describes a Fast Infoset document: header flags, initial vocabulary\n"
		"      (with the URI of the shared vocabulary that the document names),\n"
		"      counts of elements, attributes, namespace declarations, text chunks,\n"
		"      comments and processing instructions, how many names and values were\n"
		"      read literally and how many by index, and sizes (also as XML text).\n"
		"\n"
		"  vocabulary [-m N] -o VOCABULARY SAMPLE...\n"
		"      Learns a shared vocabulary from XML documents of one kind and writes\n"
		"      it to VOCABULARY as a Fast Infoset document: every name, prefix and\n"
		"      namespace name of the samples and the values that occur more than\n"
		"      once in all of them together (attribute values, texts, comments and\n"
		"      processing-instruction data), each table commonest first.\n"
		"      -m, --max-value-length N    learn values of at most N octets (default\n"
		"                                  64; negative: any length)\n"
		"      -o, --output VOCABULARY     the file to write\n"
		"\n"
		"  roundtrip [-m N] [-w] FILE...\n"
		"      Converts each XML FILE to Fast Infoset and back, in memory, and prints\n"
		"      its XML size, its Fast Infoset size and whether the round trip kept the\n"
		"      document: the same elements, attributes, namespace declarations, text\n"
		"      (character for character), comments, processing instructions, document\n"
		"      type declaration, notations and unparsed entities, in the XML as in the\n"
		"      Fast Infoset form. -m, -w and --plain as for encode (with -w,\n"
		"      whitespace-only text is not compared).\n"
		"\n"
		"  help, --help, -h\n"
		"      Prints this text.\n"
		"\n"
		"A shared vocabulary makes many small documents of one kind much smaller:\n"
		"what they have in common is written once, in the vocabulary, and each\n"
		"document names the vocabulary by its URI and refers to its entries. The\n"
		"reader needs the same vocabulary under the same URI; a document that names\n"
		"a vocabulary that was not given fails with an error that names its URI.\n"
		"\n"
		"INPUT and OUTPUT may be '-' for standard input and standard output. An output\n"
		"file is written under a temporary name in its directory and renamed when it\n"
		"is complete: a failed conversion leaves no partial file behind, and a file\n"
		"that was there before stays as it was. With -o the files are converted in\n"
		"parallel, one per core; a file that fails does not stop the others.\n"
		"\n"
		"While inputs of more than 4 MB in all are converted, a line on standard\n"
		"error shows the octets read, out of how many, and the rate, when standard\n"
		"error is a terminal and -q is not given.\n"
		"\n"
		"Errors name the file and the fault: XML syntax errors as the XML parser\n"
		"reports them (\"SAXParseException: ...\", with line and column), faults of\n"
		"a Fast Infoset document as \"FastInfoset Exception: ...\" (also Parse or\n"
		"Encoding Exception), file faults as the system reports them.\n"
		"\n"
		"Exit status: 0 success; 1 a file could not be read, converted or written\n"
		"(any one of them, with -o), or a round trip changed a document; 2 wrong\n"
		"usage.\n";
}


} } } // namespace Korvo::FastInfoset::Tool


int main(int argc, char** argv)
{
	using namespace Korvo::FastInfoset::Tool;

	const std::vector<std::string> arguments(argv + 1, argv + argc);
	if (arguments.empty())
	{
		printUsage(std::cerr);
		return EXIT_USAGE;
	}
	if (arguments.front() == "help")
	{
		printUsage(std::cout);
		return EXIT_OK;
	}
	for (const auto& argument: arguments)
	{
		if (argument == "--") break;
		if (argument == "--help" || argument == "-h")
		{
			printUsage(std::cout);
			return EXIT_OK;
		}
	}

	const std::string& command = arguments.front();
	const std::vector<std::string> rest(arguments.begin() + 1, arguments.end());
	try
	{
		if (command == "encode") return encodeCommand(rest, std::cout, std::cerr);
		if (command == "decode") return decodeCommand(rest, std::cout, std::cerr);
		if (command == "inspect") return inspectCommand(rest, std::cout, std::cerr);
		if (command == "roundtrip") return roundTripCommand(rest, std::cout, std::cerr);
		if (command == "vocabulary") return vocabularyCommand(rest, std::cout, std::cerr);
		throw UsageException("unknown command '" + command + "'");
	}
	catch (const UsageException& exc)
	{
		std::cerr << "fastinfoset: " << exc.message() << "\nTry 'fastinfoset --help'." << std::endl;
		return EXIT_USAGE;
	}
	catch (const std::exception& exc)
	{
		std::cerr << "fastinfoset: " << describe(exc) << std::endl;
		return EXIT_FAILED;
	}
}
