//
// Batch.h
//
// Library: FastInfoset
// Package: Tools
// Module:  Batch
//
// The conversions of one encode or decode call: one INPUT OUTPUT pair, or
// many inputs into one directory, on all cores.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_Batch_INCLUDED
#define FastInfoset_Batch_INCLUDED


#include <functional>
#include <iosfwd>
#include <string>
#include <vector>


namespace Korvo {
namespace FastInfoset {
namespace Tool {


class Progress;


class Batch
	/// Converts files, each input to its own output, one document per
	/// thread on as many threads as there are cores. A file that fails is
	/// reported and the others still convert; every output appears only
	/// when complete (see OutputFile). Progress shows on a terminal for
	/// large inputs (see Progress).
{
public:
	using Conversion = std::function<void (std::istream&, std::ostream&)>;

	struct Job
	{
		std::string input;
		std::string output;
	};

	Batch(const std::string& command, const std::vector<std::string>& operands, const std::string& outputDirectory,
	      const std::vector<std::string>& inputExtensions, const std::string& outputExtension);
		/// Plans the jobs. Without an output directory the operands are
		/// INPUT and OUTPUT; with one, each operand is an input whose output
		/// in that directory takes its base name with outputExtension in
		/// place of one of inputExtensions (or added). Throws UsageException
		/// for a wrong number of operands, standard input with a directory,
		/// or two inputs that would write one output.

	const std::vector<Job>& jobs() const;

	int run(const Conversion& convert, bool showProgress, std::ostream& err) const;
		/// Runs the jobs and returns EXIT_OK, or EXIT_FAILED when any
		/// failed; failures are reported on err. The output directory is
		/// made when missing.

private:
	int convert(const Job& job, const Conversion& convert, Progress& progress) const;

	std::string _outputDirectory;
	std::vector<Job> _jobs;
};


} } } // namespace Korvo::FastInfoset::Tool


#endif // FastInfoset_Batch_INCLUDED
