//
// ToolTest.cpp
//
// The fastinfoset program as a user runs it: exit statuses, messages that
// name the file, outputs that appear only when complete, pipes, and the
// round trip of the bundled samples.
//

#include "Korvo/FastInfoset/Converter.h"
#include "DocumentEvents.h"
#include "Poco/Process.h"
#include "Poco/Pipe.h"
#include "Poco/PipeStream.h"
#include "Poco/File.h"
#include "Poco/Path.h"
#include "Poco/TemporaryFile.h"
#include "Poco/StreamCopier.h"
#include <gtest/gtest.h>
#include <algorithm>
#include <csignal>
#include <fstream>
#include <sstream>

using namespace Korvo::FastInfoset;


namespace {


struct ToolRun
{
	int status;
	std::string out;
	std::string err;
};


ToolRun runTool(const std::vector<std::string>& arguments, const std::string& input = std::string())
{
	Poco::Pipe inPipe, outPipe, errPipe;
	Poco::ProcessHandle process = Poco::Process::launch(KORVO_TOOL_PATH, arguments, &inPipe, &outPipe, &errPipe);
	{
		Poco::PipeOutputStream toTool(inPipe);
		toTool << input;
		toTool.close();
	}
	ToolRun run;
	Poco::PipeInputStream fromTool(outPipe), errorsOfTool(errPipe);
	Poco::StreamCopier::copyToString(fromTool, run.out);
	Poco::StreamCopier::copyToString(errorsOfTool, run.err);
	run.status = process.wait();
	return run;
}


std::string readFile(const std::string& path)
{
	std::ifstream input(path, std::ios::binary);
	std::ostringstream content;
	content << input.rdbuf();
	return content.str();
}


std::vector<std::string> eventsOf(const std::string& xml)
{
	Tool::DocumentEvents events;
	std::istringstream input(xml);
	events.readXML(input);
	return events.lines();
}


const std::string XML = "<?xml version='1.0'?><!-- c --><r xmlns='urn:r' a='1'><i>x</i><i>x</i><?p d?></r>";


class ToolTest: public ::testing::Test
{
protected:
	static void SetUpTestSuite()
	{
		// A tool that exits before reading its input must not kill us.
		std::signal(SIGPIPE, SIG_IGN);
	}

	void SetUp() override
	{
		_directory = Poco::TemporaryFile::tempName();
		Poco::File(_directory).createDirectories();
	}

	void TearDown() override
	{
		Poco::File(_directory).remove(true);
	}

	std::string path(const std::string& name) const
	{
		return Poco::Path(Poco::Path::forDirectory(_directory), name).toString();
	}

	std::string write(const std::string& name, const std::string& content) const
	{
		std::ofstream output(path(name), std::ios::binary);
		output << content;
		return path(name);
	}

	std::vector<std::string> directoryContents() const
	{
		std::vector<std::string> names;
		Poco::File(_directory).list(names);
		std::sort(names.begin(), names.end());
		return names;
	}

	std::string _directory;
};


} // namespace


TEST_F(ToolTest, HelpDescribesEveryCommand)
{
	for (const char* help: {"--help", "-h", "help"})
	{
		const ToolRun run = runTool({help});
		EXPECT_EQ(0, run.status);
		for (const char* word: {"encode", "decode", "inspect", "roundtrip", "vocabulary", "--max-indexed-length", "--strip-whitespace", "--plain", "--pretty",
		                        "--output-directory", "--quiet", "--vocabulary-uri", "--max-value-length", "Exit status"})
			EXPECT_NE(std::string::npos, run.out.find(word)) << word;
	}
}


TEST_F(ToolTest, WrongUsageExitsWithTwo)
{
	const std::vector<std::vector<std::string>> usages =
	{
		{},
		{"frobnicate"},
		{"encode", "only-one.xml"},
		{"encode", "a.xml", "b.fi", "c"},
		{"encode", "-m", "many", "a.xml", "b.fi"},
		{"encode", "-m"},
		{"decode", "--bogus", "a.fi", "b.xml"},
		{"encode", "-o"},
		{"encode", "-o", "out"},
		{"encode", "-o", "out", "-"},
		{"decode", "-o", "out", "a.fi", "elsewhere/a.finf"},
		{"inspect"},
		{"roundtrip"},
		{"vocabulary", "a.xml"},
		{"vocabulary", "-o", "v.fi"},
		{"encode", "--vocabulary-uri", "urn:v", "a.xml", "b.fi"},
		{"encode", "--vocabulary", "v.fi", "--vocabulary", "w.fi", "a.xml", "b.fi"},
		{"decode", "--vocabulary", "v.fi", "--vocabulary-uri", "u", "--vocabulary-uri", "w", "a.fi", "b.xml"},
	};
	for (const auto& usage: usages)
	{
		const ToolRun run = runTool(usage);
		EXPECT_EQ(2, run.status) << (usage.empty() ? std::string("(none)") : usage[0]);
		EXPECT_NE(std::string::npos, run.err.find("fastinfoset")) << run.err;
	}
}


TEST_F(ToolTest, EncodesAndDecodesFiles)
{
	const std::string xml = write("doc.xml", XML);
	ASSERT_EQ(0, runTool({"encode", xml, path("doc.fi")}).status);
	const std::string fis = readFile(path("doc.fi"));
	EXPECT_EQ(std::string("\xe0\x00\x00\x01", 4), fis.substr(0, 4));

	ASSERT_EQ(0, runTool({"decode", path("doc.fi"), path("back.xml")}).status);
	const std::string back = readFile(path("back.xml"));
	EXPECT_EQ(0u, back.rfind("<?xml version=\"1.0\" encoding=\"UTF-8\"?>", 0));
	EXPECT_EQ(eventsOf(XML), eventsOf(back));

	ASSERT_EQ(0, runTool({"decode", "--no-declaration", "--pretty", path("doc.fi"), path("pretty.xml")}).status);
	const std::string pretty = readFile(path("pretty.xml"));
	EXPECT_EQ('<', pretty.at(0));
	EXPECT_NE(pretty.rfind("<?xml", 0), 0u);
	EXPECT_NE(std::string::npos, pretty.find("\n\t<i>"));
}


TEST_F(ToolTest, PlainEncodingIsTheConverters)
{
	const std::string spaced = "<r>\n  <i>a value longer than four</i>\n  <i>a value longer than four</i>\n</r>";
	for (const auto& options: std::vector<std::pair<std::vector<std::string>, int>>{
		{{"--plain"}, 0},
		{{"-w", "--plain"}, Converter::CONV_REMOVE_IGNORABLE_WHITESPACE},
		{{"-m", "4", "--plain"}, 0},
		{{"--max-indexed-length=-1", "--strip-whitespace", "--plain"}, Converter::CONV_REMOVE_IGNORABLE_WHITESPACE}})
	{
		std::vector<std::string> arguments{"encode"};
		arguments.insert(arguments.end(), options.first.begin(), options.first.end());
		arguments.insert(arguments.end(), {"-", "-"});
		const ToolRun run = runTool(arguments, spaced);
		ASSERT_EQ(0, run.status) << run.err;

		const int maxIndexed = options.first[0] == "-m" ? 4 : options.first[0] == "--max-indexed-length=-1" ? -1 : 16;
		std::istringstream input(spaced);
		std::ostringstream expected;
		Converter::convertToFIS(input, expected, maxIndexed, options.second);
		EXPECT_EQ(expected.str(), run.out) << options.first[0];
	}
}


TEST_F(ToolTest, CompactEncodingKeepsTheDocument)
{
	const std::string russian = "\xD0\xA1\xD1\x8A\xD0\xB5\xD1\x88\xD1\x8C \xD0\xB6\xD0\xB5 \xD0\xB5\xD1\x89\xD1\x91 "
		"\xD1\x8D\xD1\x82\xD0\xB8\xD1\x85 \xD0\xBC\xD1\x8F\xD0\xB3\xD0\xBA\xD0\xB8\xD1\x85 \xD0\xB1\xD1\x83\xD0\xBB\xD0\xBE\xD0\xBA";
	std::string xml = "<?xml version='1.0'?>\n<!DOCTYPE r [<!ENTITY e 'ent'>]>\n<r xmlns:p='urn:p' p:n='12345678'>\n";
	for (int i = 0; i < 20; ++i) xml += "  <t n='" + std::to_string(i*7919) + "'>" + russian + ", " + std::to_string(i) + "</t>\n";
	xml += "  <t>\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E\xE3\x81\xAE\xE6\x96\x87</t>\n  <d>2024-01-31T12:00Z</d>\n"
		"  <c><![CDATA[x < y]]></c><c><![CDATA[x < y]]></c>\n  <!-- note --><?pi data?>\n  <t>a &e; b &amp; c</t>\n</r>\n";

	ASSERT_EQ(0, runTool({"encode", write("doc.xml", xml), path("doc.fi")}).status);
	const std::string compact = readFile(path("doc.fi"));
	const ToolRun piped = runTool({"encode", "-", "-"}, xml);
	ASSERT_EQ(0, piped.status) << piped.err;
	EXPECT_EQ(compact, piped.out);
	const ToolRun plain = runTool({"encode", "--plain", "-", "-"}, xml);
	EXPECT_LT(compact.size()*3, plain.out.size()*2); // 945 octets against 1600

	const ToolRun decoded = runTool({"decode", path("doc.fi"), "-"});
	ASSERT_EQ(0, decoded.status) << decoded.err;
	EXPECT_EQ(eventsOf(xml), eventsOf(decoded.out));
	// text inside CDATA sections is never indexed: it would lose its marking
	const std::string cdata = "<![CDATA[x < y]]>";
	EXPECT_NE(decoded.out.find(cdata), decoded.out.rfind(cdata)) << decoded.out;

	const ToolRun stripped = runTool({"roundtrip", "-w", path("doc.xml")});
	EXPECT_EQ(0, stripped.status) << stripped.out << stripped.err;
}


TEST_F(ToolTest, CompactEncodingIndexesValuesThatComeAgain)
{
	const std::string xml = "<r><i>a value longer than four</i><i>a value longer than four</i><i>once</i></r>";
	const std::string input = write("doc.xml", xml);
	for (const auto& options: std::vector<std::pair<std::vector<std::string>, std::string>>{
		{{}, "text chunks                  3         1         2"},
		{{"-m", "4"}, "text chunks                  3         0         3"}})
	{
		std::vector<std::string> arguments{"encode"};
		arguments.insert(arguments.end(), options.first.begin(), options.first.end());
		arguments.insert(arguments.end(), {input, path("doc.fi")});
		ASSERT_EQ(0, runTool(arguments).status);
		const ToolRun run = runTool({"inspect", path("doc.fi")});
		EXPECT_NE(std::string::npos, run.out.find(options.second)) << run.out;
	}
}


TEST_F(ToolTest, WorksThroughPipes)
{
	const ToolRun encoded = runTool({"encode", "-", "-"}, XML);
	ASSERT_EQ(0, encoded.status) << encoded.err;
	const ToolRun decoded = runTool({"decode", "-", "-"}, encoded.out);
	ASSERT_EQ(0, decoded.status) << decoded.err;
	EXPECT_EQ(eventsOf(XML), eventsOf(decoded.out));
}


TEST_F(ToolTest, FailuresNameTheFileAndLeaveNoOutput)
{
	std::istringstream xmlInput(XML);
	std::ostringstream fis;
	Converter::convertToFIS(xmlInput, fis, 16, 0);
	const std::string truncated = fis.str().substr(0, fis.str().size() - 3);

	struct Case { const char* command; const char* content; std::size_t size; const char* message; };
	const Case cases[] =
	{
		{"encode", "<r><i></r>", 10, "SAXParseException"},
		{"encode", "", 0, "SAXParseException"},
		{"decode", truncated.data(), truncated.size(), "FastInfoset Parse Exception"},
		{"decode", "<r/>", 4, "Not a valid Fast Infoset document (invalid header)"},
		// malformed XML, octets and encodings, in any encoding: line and column
		{"encode", "<?xml version='1.0' encoding='EUC-JP'?>\n<a>\xa4\xa2<b></a>", 52, "SAXParseException: Tag mismatch in line 2 column 9"},
		{"encode", "<?xml version='1.0' encoding='Shift_JIS'?>\n<a>\x87\x40</a>", 52, "Invalid octets for encoding \"Shift_JIS\": 0x87 0x40 in line 2 column 3"},
		{"encode", "<?xml version='1.0' encoding='X-NONE'?><a/>", 43, "Unknown encoding \"X-NONE\" in line 1 column 30"},
		{"inspect", truncated.data(), truncated.size(), "FastInfoset Parse Exception"},
	};
	for (const auto& c: cases)
	{
		const std::string input = write("input", std::string(c.content, c.size));
		std::vector<std::string> arguments{c.command, input};
		if (std::string(c.command) != "inspect") arguments.push_back(path("output"));
		const ToolRun run = runTool(arguments);
		EXPECT_EQ(1, run.status) << c.command << " " << c.message;
		EXPECT_NE(std::string::npos, run.err.find(input + ": ")) << run.err;
		EXPECT_NE(std::string::npos, run.err.find(c.message)) << run.err;
		EXPECT_EQ(std::vector<std::string>{"input"}, directoryContents()) << run.err;
	}

	const ToolRun missing = runTool({"encode", path("missing.xml"), path("output")});
	EXPECT_EQ(1, missing.status);
	EXPECT_NE(std::string::npos, missing.err.find("File not found")) << missing.err;
	EXPECT_EQ(std::vector<std::string>{"input"}, directoryContents());
}


TEST_F(ToolTest, FailedConversionKeepsThePreviousFile)
{
	const std::string input = write("bad.xml", "<r>");
	const std::string output = write("out.fi", "previous content");
	EXPECT_EQ(1, runTool({"encode", input, output}).status);
	EXPECT_EQ("previous content", readFile(output));
	EXPECT_EQ((std::vector<std::string>{"bad.xml", "out.fi"}), directoryContents());
}


TEST_F(ToolTest, InspectCountsTheDocument)
{
	ASSERT_EQ(0, runTool({"encode", write("doc.xml", XML), path("doc.fi")}).status);
	const ToolRun run = runTool({"inspect", path("doc.fi")});
	ASSERT_EQ(0, run.status) << run.err;
	for (const char* line: {
		"initial vocabulary        no",
		"elements                  3",
		"attributes                1",
		"namespace declarations    1",
		"text chunks               2",
		"comments                  1",
		"processing instructions   1",
		// three element names read, two of them literals; the second "x" by index
		"element names                3         2         1",
		"text chunks                  2         1         1"})
		EXPECT_NE(std::string::npos, run.out.find(line)) << line << "\n" << run.out;
}


TEST_F(ToolTest, RoundTripOfTheBundledSamplesAndTestDocuments)
{
	// The test documents: every kind of encoding, prefixes, characters kept
	// as references, notations and unparsed entities, the internal subset.
	std::vector<std::string> arguments{"roundtrip"};
	for (const std::string directory: {"/samples/", "/tests/data/realworld/", "/tests/data/encodings/"})
	{
		std::vector<std::string> names;
		Poco::File(KORVO_SOURCE_DIR + directory).list(names);
		for (const auto& name: names)
			if (Poco::Path(name).getExtension() == "xml") arguments.push_back(KORVO_SOURCE_DIR + directory + name);
	}
	ASSERT_GT(arguments.size(), 25u);

	const ToolRun run = runTool(arguments);
	EXPECT_EQ(0, run.status) << run.out << run.err;
	EXPECT_NE(std::string::npos, run.out.find(std::to_string(arguments.size() - 1) + " document(s): " + std::to_string(arguments.size() - 1) + " kept")) << run.out;
}


TEST_F(ToolTest, RoundTripOfTheSharedFeedsAndRealDocuments)
{
	// Every one is kept but the feed that declares Shift_JIS and holds code
	// page 932: refused, with the position of the first such octets.
	const Poco::Path fixtures(KORVO_SOURCE_DIR "/../shared/fixtures/");
	std::vector<std::string> arguments{"roundtrip"};
	for (const char* directory: {"encodings", "real"})
	{
		const Poco::Path path(fixtures, directory);
		if (!Poco::File(path).exists()) GTEST_SKIP() << "no shared documents at " << path.toString();
		std::vector<std::string> names;
		Poco::File(path).list(names);
		for (const auto& name: names)
			if (Poco::Path(name).getExtension() != "fi" && Poco::Path(name).getExtension() != "md") arguments.push_back(Poco::Path(path, name).toString());
	}
	const std::size_t count = arguments.size() - 1;
	ASSERT_GT(count, 15u);

	const ToolRun run = runTool(arguments);
	EXPECT_EQ(1, run.status);
	EXPECT_NE(std::string::npos, run.out.find(std::to_string(count) + " document(s): " + std::to_string(count - 1) + " kept, 0 changed, 1 failed")) << run.out << run.err;
	EXPECT_NE(std::string::npos, run.err.find("CP932-y-moto.com.xml: SAXParseException: Invalid octets for encoding \"Shift_JIS\": 0x87 0x40 in line 237 column 4")) << run.err;
}


TEST_F(ToolTest, RoundTripReportsBrokenDocuments)
{
	const std::string good = write("good.xml", XML);
	const std::string bad = write("bad.xml", "<r><i></r>");
	const ToolRun run = runTool({"roundtrip", good, bad});
	EXPECT_EQ(1, run.status);
	EXPECT_NE(std::string::npos, run.out.find("FAILED")) << run.out;
	EXPECT_NE(std::string::npos, run.out.find("2 document(s): 1 kept, 0 changed, 1 failed")) << run.out;
	EXPECT_NE(std::string::npos, run.err.find(bad + ": SAXParseException")) << run.err;
}


TEST_F(ToolTest, ConvertsManyFilesIntoADirectoryPastABadOne)
{
	// One input large enough for a progress line, which must not appear
	// where standard error is no terminal.
	std::string large = "<r>";
	while (large.size() < 4500000) large += "<item n='12345'>some text to convert</item>";
	large += "</r>";
	const std::vector<std::string> inputs = {write("good.xml", XML), write("large.xml", large), write("bad.xml", "<r><i></r>")};

	std::vector<std::string> arguments = {"encode", "-o", path("fi")};
	arguments.insert(arguments.end(), inputs.begin(), inputs.end());
	const ToolRun encoded = runTool(arguments);
	EXPECT_EQ(1, encoded.status);
	EXPECT_EQ("fastinfoset: " + inputs[2] + ": SAXParseException: Tag mismatch in line 1 column 8\n", encoded.err);
	std::vector<std::string> written;
	Poco::File(path("fi")).list(written);
	std::sort(written.begin(), written.end());
	EXPECT_EQ((std::vector<std::string>{"good.fi", "large.fi"}), written);

	write("fi/junk.finf", "junk");
	const ToolRun decoded = runTool({"decode", "-o", path("xml"), path("fi/good.fi"), path("fi/junk.finf"), path("fi/large.fi")});
	EXPECT_EQ(1, decoded.status);
	EXPECT_EQ("fastinfoset: " + path("fi/junk.finf") + ": FastInfoset Exception: Not a valid Fast Infoset document (invalid header)\n", decoded.err);
	EXPECT_EQ(eventsOf(XML), eventsOf(readFile(path("xml/good.xml"))));
	EXPECT_EQ(eventsOf(large), eventsOf(readFile(path("xml/large.xml"))));
	EXPECT_FALSE(Poco::File(path("xml/junk.xml")).exists());
}


TEST_F(ToolTest, SharedVocabularyMakesMessagesSmallerAndKeepsThem)
{
	const std::string messages = KORVO_SOURCE_DIR "/../shared/fixtures/messages/";
	if (!Poco::File(messages).exists()) GTEST_SKIP() << "no messages at " << messages;
	const std::vector<std::string> names = {"atom-entry", "soap-order", "xmlrpc-call", "xmpp-message"};
	std::vector<std::string> inputs;
	for (const auto& name: names) inputs.push_back(messages + name + ".xml");

	std::vector<std::string> learn = {"vocabulary", "-o", path("v.fi")};
	learn.insert(learn.end(), inputs.begin(), inputs.end());
	ASSERT_EQ(0, runTool(learn).status);
	// A URI that the library can open by itself too.
	const std::vector<std::string> vocabulary = {"--vocabulary", path("v.fi"), "--vocabulary-uri", path("v.fi")};

	for (const std::string mode: {"compact", "plain"})
	{
		std::vector<std::string> encode = {"encode", "-q", "-o", path(mode)};
		if (mode == "plain") encode.push_back("--plain");
		std::vector<std::string> shared = encode;
		shared[3] = path(mode + "-shared");
		shared.insert(shared.end(), vocabulary.begin(), vocabulary.end());
		encode.insert(encode.end(), inputs.begin(), inputs.end());
		shared.insert(shared.end(), inputs.begin(), inputs.end());
		ASSERT_EQ(0, runTool(encode).status);
		ASSERT_EQ(0, runTool(shared).status);

		std::vector<std::string> decode = {"decode", "-o", path(mode + "-xml")};
		decode.insert(decode.end(), vocabulary.begin(), vocabulary.end());
		for (const auto& name: names) decode.push_back(path(mode + "-shared/" + name + ".fi"));
		const ToolRun decoded = runTool(decode);
		ASSERT_EQ(0, decoded.status) << decoded.err;

		for (std::size_t i = 0; i < names.size(); ++i)
		{
			const std::string document = path(mode + "-shared/" + names[i] + ".fi");
			EXPECT_LT(readFile(document).size(), readFile(path(mode + "/" + names[i] + ".fi")).size()) << mode << " " << names[i];
			const std::vector<std::string> expected = eventsOf(readFile(inputs[i]));
			EXPECT_EQ(expected, eventsOf(readFile(path(mode + "-xml/" + names[i] + ".xml")))) << mode << " " << names[i];
			// The library resolves the vocabulary itself to the same tables.
			std::ifstream input(document, std::ios::binary);
			std::ostringstream xml;
			Converter::convertToXML(input, xml);
			EXPECT_EQ(expected, eventsOf(xml.str())) << mode << " " << names[i];
		}
	}

	// Standard input cannot go back once the vocabulary's URI has been read.
	std::vector<std::string> piped = {"decode"};
	piped.insert(piped.end(), vocabulary.begin(), vocabulary.end());
	piped.insert(piped.end(), {"-", "-"});
	const ToolRun run = runTool(piped, readFile(path("compact-shared/soap-order.fi")));
	ASSERT_EQ(0, run.status) << run.err;
	EXPECT_EQ(eventsOf(readFile(inputs[1])), eventsOf(run.out));
}


TEST_F(ToolTest, VocabularyHoldsNamesAndValuesThatRepeat)
{
	const std::string first = write("a.xml", "<p:r xmlns:p='urn:p' a='v'><i>x</i><i>x</i><i>y</i><?t d?></p:r>");
	const std::string second = write("b.xml", "<r a='v' b='w'>x</r>");
	ASSERT_EQ(0, runTool({"vocabulary", "-o", path("v.fi"), first, second}).status);

	const ToolRun inspected = runTool({"inspect", path("v.fi")});
	ASSERT_EQ(0, inspected.status) << inspected.err;
	for (const char* line: {
		"prefixes                  1\n", "namespace names           1\n", "local names               4\n",
		"other NCNames             1\n", "attribute values          1\n", "character chunks          1\n",
		"element names             3\n", "attribute names           2\n",
		"element names                1         0         1"})
		EXPECT_NE(std::string::npos, inspected.out.find(line)) << line << "\n" << inspected.out;
	// The file reads as the root element of the first sample.
	const ToolRun decoded = runTool({"decode", "-n", path("v.fi"), "-"});
	EXPECT_EQ("<p:r xmlns:p=\"urn:p\"/>", decoded.out) << decoded.err;

	// Tables of more than 128 entries have a longer length.
	std::string many = "<r>";
	for (int i = 0; i < 130; ++i) many += "<e" + std::to_string(i) + "/>";
	ASSERT_EQ(0, runTool({"vocabulary", "-o", path("many.fi"), write("many.xml", many + "</r>")}).status);
	EXPECT_NE(std::string::npos, runTool({"inspect", path("many.fi")}).out.find("element names             131\n"));

	const ToolRun failed = runTool({"vocabulary", "-o", path("w.fi"), first, write("bad.xml", "<r>")});
	EXPECT_EQ(1, failed.status);
	EXPECT_NE(std::string::npos, failed.err.find(path("bad.xml") + ": SAXParseException")) << failed.err;
	EXPECT_FALSE(Poco::File(path("w.fi")).exists());
}


TEST_F(ToolTest, DocumentNamingAVocabularyNotGivenFailsWithItsURI)
{
	// Learnt twice, each value repeats: the document then writes every
	// name and value by index, even those that it holds once.
	const std::string xml = write("doc.xml", "<p:r xmlns:p='urn:p' p:a='qqq'><p:i xmlns='urn:d'>xx<j/></p:i><i>yy</i></p:r>");
	ASSERT_EQ(0, runTool({"vocabulary", "-o", path("v.fi"), xml, xml}).status);
	ASSERT_EQ(0, runTool({"encode", "--vocabulary", path("v.fi"), "--vocabulary-uri", "urn:example:v", xml, path("doc.fi")}).status);
	for (const char* value: {"qqq", "xx", "yy"}) EXPECT_EQ(std::string::npos, readFile(path("doc.fi")).find(value)) << value;

	const ToolRun inspected = runTool({"inspect", "--vocabulary", path("v.fi"), "--vocabulary-uri", "urn:example:v", path("doc.fi")});
	ASSERT_EQ(0, inspected.status) << inspected.err;
	EXPECT_NE(std::string::npos, inspected.out.find("external vocabulary       urn:example:v\n")) << inspected.out;
	for (const char* line: {"element names                4         0         4", "attribute names              1         0         1"})
		EXPECT_NE(std::string::npos, inspected.out.find(line)) << line << "\n" << inspected.out;
	const ToolRun decoded = runTool({"decode", "--vocabulary", path("v.fi"), "--vocabulary-uri", "urn:example:v", path("doc.fi"), "-"});
	EXPECT_EQ(eventsOf(readFile(xml)), eventsOf(decoded.out)) << decoded.err;

	const std::string message = "Vocabulary error: the document names the vocabulary urn:example:v, which was not given";
	const std::vector<std::vector<std::string>> runs =
	{
		{"decode", path("doc.fi"), path("back.xml")},
		{"decode", "--vocabulary", path("v.fi"), path("doc.fi"), path("back.xml")}, // named v.fi
		{"decode", "-", path("back.xml")},
		{"inspect", path("doc.fi")},
	};
	for (const auto& arguments: runs)
	{
		const ToolRun run = runTool(arguments, readFile(path("doc.fi")));
		EXPECT_EQ(1, run.status) << arguments[1];
		EXPECT_NE(std::string::npos, run.err.find(message)) << run.err;
		EXPECT_FALSE(Poco::File(path("back.xml")).exists());
	}
	EXPECT_NE(std::string::npos, runTool({"inspect", path("doc.fi")}).out.find("external vocabulary       urn:example:v\n"));

	const ToolRun unreadable = runTool({"decode", "--vocabulary", xml, path("doc.fi"), path("back.xml")});
	EXPECT_EQ(1, unreadable.status);
	EXPECT_NE(std::string::npos, unreadable.err.find("Vocabulary error: cannot read " + xml + ": FastInfoset Exception")) << unreadable.err;
}
