//
// Verdict.h
//
// Library: FastInfoset
// Package: Fuzz
// Module:  Verdict
//
// What the fuzz targets count as a finding.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_Verdict_INCLUDED
#define FastInfoset_Verdict_INCLUDED


#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>


namespace Korvo {
namespace FastInfoset {
namespace Fuzz {


class Finding: public std::logic_error
	/// A fault of the library that a target has found. Deliberately not a
	/// platform exception, so that no target mistakes it for a refusal of
	/// bad input.
{
public:
	explicit Finding(const std::string& what);
};


[[noreturn]] void fail(const std::string& what);
	/// Throws Finding.


using Assertions = std::vector<const char*>;
	/// Conditions of the foundation's assertions that bad input may break
	/// because the library asserts them by design.


extern const Assertions PARSER_ASSERTIONS;
	/// What a parser asserts about its input.


void acceptRefusal(const Assertions& stated);
	/// To be called in a catch block. Returns when the exception in flight is
	/// a refusal that bad input may cause: an exception of the library or of
	/// the platform (Korvo::Exception), an assertion whose condition is one
	/// of stated, or the "index out of range" of a vector table. Anything
	/// else (another assertion, a null-pointer or bug check, a standard or
	/// unknown exception, running out of memory) throws Finding.


std::string describe(const std::exception& exc);
	/// The class and message of exc.


class AllocationWatch
	/// Measures the peak of the heap in use while the object lives, above
	/// what was in use when it was created. Works where the build has the
	/// sanitizer allocator (AddressSanitizer); elsewhere it measures nothing.
{
public:
	AllocationWatch();
	~AllocationWatch();

	static bool available();

	void expectAtMost(std::size_t limit, const char* pWhat) const;
		/// Throws Finding when the peak exceeded limit octets.

	std::size_t peak() const;

private:
	AllocationWatch(const AllocationWatch&);
	AllocationWatch& operator = (const AllocationWatch&);
};


std::size_t memoryLimit(std::size_t inputSize);
	/// What the library may allocate for an input of inputSize octets: a
	/// fixed allowance for its tables and buffers plus a multiple of the
	/// input, so that no claimed length or count can make it allocate more.


} } } // namespace Korvo::FastInfoset::Fuzz


#endif // FastInfoset_Verdict_INCLUDED
