//
// Verdict.cpp
//
// Library: FastInfoset
// Package: Fuzz
// Module:  Verdict
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Verdict.h"
#include "Korvo/FastInfoset/FastInfoset.h"
#include <cstring>
#include <new>
#include <typeinfo>


// The sanitizer allocator's hooks, declared weak: without a sanitizer they
// are null and the watch measures nothing.
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*pMallocHook)(const volatile void*, std::size_t), void (*pFreeHook)(const volatile void*)) __attribute__((weak));
extern "C" std::size_t __sanitizer_get_allocated_size(const volatile void* p) __attribute__((weak));


namespace Korvo {
namespace FastInfoset {
namespace Fuzz {


namespace
{
	// One watch at a time, on one thread: the targets run single-threaded.
	bool watching = false;
	long long inUse = 0;
	long long peakInUse = 0;

	void onMalloc(const volatile void*, std::size_t size)
	{
		if (!watching) return;
		inUse += static_cast<long long>(size);
		if (inUse > peakInUse) peakInUse = inUse;
	}

	void onFree(const volatile void* p)
	{
		if (watching && p) inUse -= static_cast<long long>(__sanitizer_get_allocated_size(p));
	}

	bool hooksInstalled()
	{
		static const bool installed = __sanitizer_install_malloc_and_free_hooks && __sanitizer_get_allocated_size
			&& __sanitizer_install_malloc_and_free_hooks(onMalloc, onFree) != 0;
		return installed;
	}

	bool isStated(const std::string& message, const Assertions& stated)
	{
		// The foundation's message is the condition, a space and where it failed.
		for (const char* pCondition: stated)
		{
			const std::size_t n = std::strlen(pCondition);
			if (message.compare(0, n, pCondition) == 0 && message.size() > n && message[n] == ' ') return true;
		}
		return false;
	}
}


const Assertions PARSER_ASSERTIONS =
{
	"id == 60",                  // end of the notation list
	"id == 120",                 // end of the unparsed-entity list
	"stat == 0x0f",              // end of a document type declaration
	"val <= Encoder::MAXINT20",  // an integer above 2^20
	"val == 48",                 // an integer form that does not exist
	"strLen > 0",                // a string length that wraps to zero
	"_pStream",                  // a memory reader asked for more than its block
	"this->_index.size() > idx", // an index past a hash or map table
	"vocabulary > 0 && vocabulary <= _alphabets.size()", // no such restricted alphabet
	"!existed",                  // an initial vocabulary that repeats an entry
	// The platform's stream opener refuses an empty path so, and an external
	// vocabulary's URI may give one; what the opener throws passes unchanged.
	"!_path.empty()",
};


Finding::Finding(const std::string& what):
	std::logic_error(what)
{
}


void fail(const std::string& what)
{
	// Documents put any octet into names and text: show them readably.
	static const char DIGITS[] = "0123456789ABCDEF";
	std::string message;
	for (char c: what)
	{
		const unsigned char octet = static_cast<unsigned char>(c);
		if ((octet < 0x20 && c != '\n') || octet >= 0x7F)
			message += std::string("\\x") + DIGITS[octet >> 4] + DIGITS[octet & 0x0F];
		else
			message += c;
	}
	throw Finding(message);
}


void acceptRefusal(const Assertions& stated)
{
	try
	{
		throw;
	}
	catch (const Finding&)
	{
		throw;
	}
	catch (const Korvo::AssertionViolationException& exc)
	{
		if (!isStated(exc.message(), stated)) fail("assertion that no bad input may break: " + exc.displayText());
	}
	catch (const Korvo::NullPointerException& exc)
	{
		fail("null pointer check: " + exc.displayText());
	}
	catch (const Korvo::BugcheckException& exc)
	{
		fail("bug check: " + exc.displayText());
	}
	catch (const Korvo::Exception&)
	{
	}
	catch (const std::out_of_range& exc)
	{
		if (std::strcmp(exc.what(), "index out of range") != 0) fail(std::string("std::out_of_range: ") + exc.what());
	}
	catch (const std::bad_alloc&)
	{
		fail("out of memory (std::bad_alloc)");
	}
	catch (const std::exception& exc)
	{
		fail("foreign exception " + describe(exc));
	}
	catch (...)
	{
		fail("exception of unknown type");
	}
}


std::string describe(const std::exception& exc)
{
	if (dynamic_cast<const Finding*>(&exc)) return exc.what();
	const Korvo::Exception* pPlatform = dynamic_cast<const Korvo::Exception*>(&exc);
	return pPlatform ? pPlatform->displayText() : std::string(typeid(exc).name()) + ": " + exc.what();
}


AllocationWatch::AllocationWatch()
{
	hooksInstalled();
	inUse = 0;
	peakInUse = 0;
	watching = true;
}


AllocationWatch::~AllocationWatch()
{
	watching = false;
}


bool AllocationWatch::available()
{
	return hooksInstalled();
}


std::size_t AllocationWatch::peak() const
{
	return static_cast<std::size_t>(peakInUse);
}


void AllocationWatch::expectAtMost(std::size_t limit, const char* pWhat) const
{
	if (peak() > limit)
		fail(std::string(pWhat) + " allocated " + std::to_string(peak()) + " octets, more than the limit of " + std::to_string(limit));
}


std::size_t memoryLimit(std::size_t inputSize)
{
	// The fixed part covers the fresh tables of a document (about 100 KB,
	// 0.9 MB for VOC_HASH, twice that when a document handler copies them).
	// The multiple is what a namespace declaration or an attribute costs, a
	// whole attribute record of about 250 octets for as little as one octet
	// of input, and up to about 450 while the list grows and holds its old
	// and its new storage at once: 64 KB of them take up to 30 MB.
	return 4*1024*1024 + 512*inputSize;
}


} } } // namespace Korvo::FastInfoset::Fuzz
