//
// Batch.cpp
//
// Library: FastInfoset
// Package: Tools
// Module:  Batch
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Batch.h"
#include "Progress.h"
#include "Tool.h"
#include "Poco/File.h"
#include "Poco/Path.h"
#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <map>
#include <thread>


namespace Korvo {
namespace FastInfoset {
namespace Tool {


namespace
{
	const std::string STANDARD_STREAM("-");

	std::string outputName(const std::string& input, const std::vector<std::string>& inputExtensions, const std::string& outputExtension)
	{
		const Poco::Path path(input);
		const bool known = std::find(inputExtensions.begin(), inputExtensions.end(), path.getExtension()) != inputExtensions.end();
		return (known ? path.getBaseName() : path.getFileName()) + "." + outputExtension;
	}

	std::uint64_t totalSize(const std::vector<Batch::Job>& jobs)
	{
		std::uint64_t total = 0;
		for (const auto& job: jobs)
		{
			try
			{
				Poco::File file(job.input);
				if (job.input != STANDARD_STREAM && file.isFile()) total += file.getSize();
			}
			catch (const Poco::Exception&)
			{
				// A file that cannot be looked at fails later, with its own message.
			}
		}
		return total;
	}
}


Batch::Batch(const std::string& command, const std::vector<std::string>& operands, const std::string& outputDirectory,
             const std::vector<std::string>& inputExtensions, const std::string& outputExtension):
	_outputDirectory(outputDirectory)
{
	if (outputDirectory.empty())
	{
		if (operands.size() != 2)
			throw UsageException(command + ": expects INPUT and OUTPUT, or -o DIRECTORY and inputs, got " + std::to_string(operands.size()) + " file argument(s)");
		_jobs.push_back(Job{operands[0], operands[1]});
		return;
	}

	if (operands.empty()) throw UsageException(command + ": -o needs at least one input file");
	std::map<std::string, std::string> inputsByOutput;
	for (const auto& input: operands)
	{
		if (input == STANDARD_STREAM) throw UsageException(command + ": standard input cannot be used with -o");
		const std::string output = Poco::Path(Poco::Path::forDirectory(outputDirectory), outputName(input, inputExtensions, outputExtension)).toString();
		const auto inserted = inputsByOutput.emplace(output, input);
		if (!inserted.second)
			throw UsageException(command + ": " + inserted.first->second + " and " + input + " would both be written to " + output);
		_jobs.push_back(Job{input, output});
	}
}


const std::vector<Batch::Job>& Batch::jobs() const
{
	return _jobs;
}


int Batch::run(const Conversion& conversion, bool showProgress, std::ostream& err) const
{
	if (!_outputDirectory.empty()) Poco::File(_outputDirectory).createDirectories();

	Progress progress(err, showProgress && Progress::isTerminal(err), totalSize(_jobs), _jobs.size());
	const std::size_t threadCount = std::min<std::size_t>(_jobs.size(), std::max(1u, std::thread::hardware_concurrency()));
	std::atomic<std::size_t> next(0);
	std::atomic<bool> failed(false);
	const auto work = [&]()
	{
		for (std::size_t i = next++; i < _jobs.size(); i = next++)
		{
			if (convert(_jobs[i], conversion, progress) != EXIT_OK) failed = true;
			progress.fileDone();
		}
	};

	if (threadCount == 1 && !progress.shown())
	{
		work();
	}
	else
	{
		std::mutex mutex;
		std::condition_variable finished;
		std::size_t running = threadCount;
		std::vector<std::thread> threads;
		for (std::size_t i = 0; i < threadCount; ++i)
		{
			threads.emplace_back([&]()
			{
				work();
				std::lock_guard<std::mutex> lock(mutex);
				--running;
				finished.notify_one();
			});
		}
		progress.redraw();
		{
			std::unique_lock<std::mutex> lock(mutex);
			while (!finished.wait_for(lock, std::chrono::milliseconds(200), [&]() { return running == 0; }))
				progress.redraw();
		}
		for (auto& thread: threads) thread.join();
		progress.finish();
	}
	return failed ? EXIT_FAILED : EXIT_OK;
}


int Batch::convert(const Job& job, const Conversion& conversion, Progress& progress) const
{
	std::string culprit = job.input == STANDARD_STREAM ? "<stdin>" : job.input;
	try
	{
		InputFile input(job.input);
		culprit = job.output == STANDARD_STREAM ? "<stdout>" : job.output;
		OutputFile output(job.output);
		culprit = input.name();
		if (progress.shown())
		{
			ProgressInputStream counted(input.stream(), progress);
			conversion(counted, output.stream());
		}
		else
		{
			conversion(input.stream(), output.stream());
		}
		culprit = output.name();
		output.commit();
		return EXIT_OK;
	}
	catch (const std::exception& exc)
	{
		progress.report("fastinfoset: " + culprit + ": " + describe(exc));
		return EXIT_FAILED;
	}
}


} } } // namespace Korvo::FastInfoset::Tool
