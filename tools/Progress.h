//
// Progress.h
//
// Library: FastInfoset
// Package: Tools
// Module:  Progress
//
// A progress line on a terminal for conversions of large inputs.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_Progress_INCLUDED
#define FastInfoset_Progress_INCLUDED


#include <atomic>
#include <chrono>
#include <cstdint>
#include <istream>
#include <mutex>
#include <ostream>
#include <streambuf>
#include <string>
#include <vector>


namespace Korvo {
namespace FastInfoset {
namespace Tool {


class Progress
	/// Shows how much of the input has been read, out of how much, and how
	/// fast, as one line redrawn in place:
	///
	///     fastinfoset: 41.9 of 120.0 MB (34%), 88.2 MB/s, 1 of 3 files done
	///
	/// It shows only when it is enabled (standard error is a terminal and
	/// no -q was given) and the inputs total at least THRESHOLD octets.
	/// Readers on any thread count octets; one thread redraws.
{
public:
	static const std::uint64_t THRESHOLD = 4000000;

	Progress(std::ostream& err, bool enabled, std::uint64_t total, std::size_t files);

	bool shown() const;

	void advance(std::size_t octets);
		/// Counts octets read; any thread.

	void fileDone();
		/// Counts a file finished, converted or not; any thread.

	void redraw();
		/// Draws the line anew.

	void report(const std::string& line);
		/// Writes a line of its own (an error), above the progress line;
		/// any thread.

	void finish();
		/// Takes the line away.

	static bool isTerminal(const std::ostream& err);
		/// Whether err is standard error and that is a terminal.

private:
	void clear();

	std::ostream& _err;
	const bool _shown;
	const std::uint64_t _total;
	const std::size_t _files;
	std::atomic<std::uint64_t> _done;
	std::atomic<std::size_t> _filesDone;
	const std::chrono::steady_clock::time_point _started;
	std::mutex _mutex;
	std::size_t _lineLength;
};


class ProgressStreamBuf: public std::streambuf
	/// Reads through from another stream buffer and counts what it reads
	/// into a Progress.
{
public:
	ProgressStreamBuf(std::streambuf& source, Progress& progress);

protected:
	int_type underflow() override;

private:
	std::streambuf& _source;
	Progress& _progress;
	std::vector<char> _buffer;
};


class ProgressInputStream: public std::istream
	/// An input stream over a ProgressStreamBuf.
{
public:
	ProgressInputStream(std::istream& source, Progress& progress);

private:
	ProgressStreamBuf _buf;
};


} } } // namespace Korvo::FastInfoset::Tool


#endif // FastInfoset_Progress_INCLUDED
