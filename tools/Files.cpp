//
// Files.cpp
//
// Library: FastInfoset
// Package: Tools
// Module:  Tool
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Tool.h"
#include "Poco/File.h"
#include "Poco/NumberParser.h"
#include "Poco/Process.h"
#include <atomic>
#include <cstdio>
#include <iostream>
#include <sstream>
#include <typeinfo>


namespace Korvo {
namespace FastInfoset {
namespace Tool {


POCO_IMPLEMENT_EXCEPTION(UsageException, Korvo::Exception, "Usage error")


namespace
{
	const std::string STANDARD_STREAM("-");

	std::string temporaryPathBeside(const std::string& path)
		/// A hidden, unique name in the directory of path, so that the final
		/// rename stays on one file system.
	{
		static std::atomic<unsigned> counter(0);
		const std::string::size_type slash = path.rfind('/');
		const std::string directory = slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
		const std::string fileName = slash == std::string::npos ? path : path.substr(slash + 1);
		return directory + "." + fileName + ".tmp" + std::to_string(Poco::Process::id()) + "-" + std::to_string(++counter);
	}
}


InputFile::InputFile(const std::string& path):
	_name(path == STANDARD_STREAM ? std::string("<stdin>") : path),
	_pStream(&std::cin)
{
	if (path == STANDARD_STREAM) return;

	Poco::File file(path);
	if (!file.exists()) throw Korvo::FileNotFoundException(path);
	if (file.isDirectory()) throw Korvo::OpenFileException("is a directory", path);
	_file.open(path, std::ios::in | std::ios::binary);
	if (!_file.is_open())
	{
		if (!file.canRead()) throw Korvo::FileAccessDeniedException(path);
		throw Korvo::OpenFileException(path);
	}
	_pStream = &_file;
}


std::istream& InputFile::stream()
{
	return *_pStream;
}


std::string InputFile::readAll()
{
	std::ostringstream content;
	content << _pStream->rdbuf();
	if (_pStream->bad()) throw Korvo::ReadFileException(_name);
	return content.str();
}


const std::string& InputFile::name() const
{
	return _name;
}


OutputFile::OutputFile(const std::string& path):
	_name(path == STANDARD_STREAM ? std::string("<stdout>") : path),
	_pStream(&std::cout),
	_committed(false)
{
	if (path == STANDARD_STREAM) return;

	if (Poco::File(path).exists() && Poco::File(path).isDirectory())
		throw Korvo::CreateFileException("is a directory", path);
	_temporaryPath = temporaryPathBeside(path);
	_file.open(_temporaryPath, std::ios::out | std::ios::binary | std::ios::trunc);
	if (!_file.is_open()) throw Korvo::CreateFileException(path);
	_pStream = &_file;
}


OutputFile::~OutputFile()
{
	if (!_committed) discard();
}


std::ostream& OutputFile::stream()
{
	return *_pStream;
}


void OutputFile::commit()
{
	_pStream->flush();
	if (!*_pStream) throw Korvo::WriteFileException(_name);
	if (!_temporaryPath.empty())
	{
		_file.close();
		if (_file.fail()) throw Korvo::WriteFileException(_name);
		Poco::File(_temporaryPath).renameTo(_name);
	}
	_committed = true;
}


const std::string& OutputFile::name() const
{
	return _name;
}


void OutputFile::discard() noexcept
{
	if (_temporaryPath.empty()) return;
	_file.close();
	std::remove(_temporaryPath.c_str());
}


ArgumentReader::ArgumentReader(const std::string& command, const std::vector<std::string>& arguments):
	_command(command),
	_arguments(arguments),
	_position(0),
	_optionsEnded(false),
	_hasInlineValue(false)
{
}


bool ArgumentReader::next()
{
	while (_position < _arguments.size())
	{
		_current = _arguments[_position++];
		_hasInlineValue = false;
		if (!_optionsEnded && _current == "--")
		{
			_optionsEnded = true;
			continue;
		}
		if (isOption() && _current.compare(0, 2, "--") == 0)
		{
			const std::string::size_type equals = _current.find('=');
			if (equals != std::string::npos)
			{
				_inlineValue = _current.substr(equals + 1);
				_hasInlineValue = true;
				_current.erase(equals);
			}
		}
		return true;
	}
	return false;
}


bool ArgumentReader::isOption() const
{
	return !_optionsEnded && _current.size() > 1 && _current[0] == '-';
}


bool ArgumentReader::is(const char* shortName, const char* longName) const
{
	return isOption() && (_current == shortName || _current == longName);
}


std::string ArgumentReader::stringValue()
{
	if (_hasInlineValue) return _inlineValue;
	if (_position >= _arguments.size())
		throw UsageException(_command + ": option " + _current + " needs a value");
	return _arguments[_position++];
}


int ArgumentReader::intValue()
{
	const std::string text = stringValue();
	int value = 0;
	if (!Poco::NumberParser::tryParse(text, value))
		throw UsageException(_command + ": option " + _current + " needs a number, not '" + text + "'");
	return value;
}


const std::string& ArgumentReader::current() const
{
	return _current;
}


void ArgumentReader::unknownOption() const
{
	throw UsageException(_command + ": unknown option " + _current);
}


std::string describe(const std::exception& exc)
{
	if (const auto* pExc = dynamic_cast<const Korvo::Exception*>(&exc)) return pExc->displayText();
	if (dynamic_cast<const std::bad_alloc*>(&exc)) return "out of memory";
	return exc.what();
}


} } } // namespace Korvo::FastInfoset::Tool
