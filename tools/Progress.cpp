//
// Progress.cpp
//
// Library: FastInfoset
// Package: Tools
// Module:  Progress
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Progress.h"
#include <cstdio>
#include <iostream>
#include <sstream>
#include <iomanip>
#include <unistd.h>


namespace Korvo {
namespace FastInfoset {
namespace Tool {


Progress::Progress(std::ostream& err, bool enabled, std::uint64_t total, std::size_t files):
	_err(err),
	_shown(enabled && total >= THRESHOLD),
	_total(total),
	_files(files),
	_done(0),
	_filesDone(0),
	_started(std::chrono::steady_clock::now()),
	_lineLength(0)
{
}


bool Progress::shown() const
{
	return _shown;
}


void Progress::advance(std::size_t octets)
{
	_done += octets;
}


void Progress::fileDone()
{
	++_filesDone;
}


void Progress::redraw()
{
	if (!_shown) return;

	const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - _started).count();
	const double done = static_cast<double>(_done.load());
	std::ostringstream line;
	line << std::fixed << std::setprecision(1)
	     << "fastinfoset: " << done / 1e6 << " of " << _total / 1e6 << " MB ("
	     << static_cast<int>(100 * done / _total) << "%), "
	     << (seconds > 0 ? done / 1e6 / seconds : 0.0) << " MB/s";
	if (_files > 1) line << ", " << _filesDone.load() << " of " << _files << " files done";

	std::lock_guard<std::mutex> lock(_mutex);
	const std::string text = line.str();
	_err << '\r' << text;
	if (text.size() < _lineLength) _err << std::string(_lineLength - text.size(), ' ');
	_err << std::flush;
	_lineLength = text.size();
}


void Progress::report(const std::string& line)
{
	std::lock_guard<std::mutex> lock(_mutex);
	clear();
	_err << line << std::endl;
}


void Progress::finish()
{
	std::lock_guard<std::mutex> lock(_mutex);
	clear();
}


void Progress::clear()
{
	if (_lineLength == 0) return;
	_err << '\r' << std::string(_lineLength, ' ') << '\r' << std::flush;
	_lineLength = 0;
}


bool Progress::isTerminal(const std::ostream& err)
{
	return &err == &std::cerr && ::isatty(STDERR_FILENO) == 1;
}


ProgressStreamBuf::ProgressStreamBuf(std::streambuf& source, Progress& progress):
	_source(source),
	_progress(progress),
	_buffer(1 << 16)
{
}


ProgressStreamBuf::int_type ProgressStreamBuf::underflow()
{
	const std::streamsize count = _source.sgetn(_buffer.data(), static_cast<std::streamsize>(_buffer.size()));
	if (count <= 0) return traits_type::eof();
	_progress.advance(static_cast<std::size_t>(count));
	setg(_buffer.data(), _buffer.data(), _buffer.data() + count);
	return traits_type::to_int_type(_buffer[0]);
}


ProgressInputStream::ProgressInputStream(std::istream& source, Progress& progress):
	std::istream(0),
	_buf(*source.rdbuf(), progress)
{
	rdbuf(&_buf);
}


} } } // namespace Korvo::FastInfoset::Tool
