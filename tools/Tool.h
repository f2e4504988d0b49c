//
// Tool.h
//
// Library: FastInfoset
// Package: Tools
// Module:  Tool
//
// The commands of the fastinfoset program and what they share: files that
// may be standard input or output, outputs that appear only when complete,
// and a small option reader.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_Tool_INCLUDED
#define FastInfoset_Tool_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include <fstream>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>


namespace Korvo {
namespace FastInfoset {
namespace Tool {


class SharedVocabulary;


enum ExitStatus
{
	EXIT_OK = 0,
	EXIT_FAILED = 1,
		/// A document could not be read, converted or written, or a round
		/// trip changed it.
	EXIT_USAGE = 2
};


POCO_DECLARE_EXCEPTION(, UsageException, Korvo::Exception)
	/// Wrong command line; the message says what is wrong.


class InputFile
	/// A file to read, or standard input for "-".
{
public:
	explicit InputFile(const std::string& path);
		/// Throws FileNotFoundException, FileAccessDeniedException or
		/// OpenFileException (also for a directory).

	std::istream& stream();

	std::string readAll();
		/// The remaining content. Throws ReadFileException on a read error.

	const std::string& name() const;
		/// The path, or "<stdin>".

private:
	std::string _name;
	std::ifstream _file;
	std::istream* _pStream;
};


class OutputFile
	/// A file to write, or standard output for "-".
	///
	/// A file is written under a temporary name in the same directory and
	/// takes its own name only in commit(), so that a failed conversion
	/// never leaves a partial file under the requested name. The temporary
	/// file is removed when the object dies uncommitted.
{
public:
	explicit OutputFile(const std::string& path);
		/// Throws CreateFileException when the temporary file cannot be made.

	~OutputFile();

	std::ostream& stream();

	void commit();
		/// Flushes, checks and renames into place. Throws WriteFileException
		/// when the data could not be written completely.

	const std::string& name() const;
		/// The path, or "<stdout>".

private:
	OutputFile(const OutputFile&);
	OutputFile& operator = (const OutputFile&);

	void discard() noexcept;

	std::string _name;
	std::string _temporaryPath;
	std::ofstream _file;
	std::ostream* _pStream;
	bool _committed;
};


class ArgumentReader
	/// Walks the arguments of one command: options first or mixed with
	/// operands, "--" ends the options, "-" alone is an operand.
{
public:
	ArgumentReader(const std::string& command, const std::vector<std::string>& arguments);

	bool next();
		/// Moves to the next argument; false at the end.

	bool isOption() const;

	bool is(const char* shortName, const char* longName) const;
		/// Whether the current option is one of the two names.

	std::string stringValue();
		/// Consumes the option's value ("-o out", "--output=out"). Throws UsageException.

	int intValue();
		/// stringValue() as a number. Throws UsageException.

	const std::string& current() const;

	void unknownOption() const;
		/// Throws UsageException for the current option.

private:
	std::string _command;
	std::vector<std::string> _arguments;
	std::size_t _position;
	bool _optionsEnded;
	std::string _current;
	std::string _inlineValue;
	bool _hasInlineValue;
};


struct EncodeSettings
	/// How encode and roundtrip write Fast Infoset: by default as small as
	/// CompactEncoder makes it, with --plain as Converter::convertToFIS does.
{
	EncodeSettings();

	bool readOption(ArgumentReader& reader);
		/// Takes the reader's current option when it is -m, -w or --plain.

	int maxIndexedStringLength;
		/// NOT_GIVEN: 16 with --plain, no limit otherwise.
	bool stripWhitespace;
	bool plain;
	const SharedVocabulary* pVocabulary;
		/// Null, or the vocabulary that documents name and whose names and
		/// values they write by index, whatever their length.

	static const int NOT_GIVEN;
};


void encodeXML(std::istream& input, std::ostream& output, const EncodeSettings& settings);
	/// Converts an XML document with the settings.


std::string describe(const std::exception& exc);
	/// The exception's class and message ("FISParseException: Unexpected end
	/// of stream while reading integer").


int encodeCommand(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err);
int decodeCommand(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err);
int inspectCommand(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err);
int roundTripCommand(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err);
int vocabularyCommand(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err);
	/// Each returns an ExitStatus; failures are reported on err.

void printUsage(std::ostream& out);


} } } // namespace Korvo::FastInfoset::Tool


#endif // FastInfoset_Tool_INCLUDED
