//
// FuzzInput.h
//
// Library: FastInfoset
// Package: Fuzz
// Module:  FuzzInput
//
// The octets a fuzz target receives, read front to back as settings,
// numbers and strings.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_FuzzInput_INCLUDED
#define FastInfoset_FuzzInput_INCLUDED


#include <cstddef>
#include <string>


namespace Korvo {
namespace FastInfoset {
namespace Fuzz {


class FuzzInput
	/// Hands out the input piece by piece. Reading past the end yields
	/// zeros and empty strings, so every input means something.
{
public:
	FuzzInput(const char* pData, std::size_t size);

	unsigned char octet();
		/// The next octet, or 0 at the end.

	unsigned int number(unsigned int limit);
		/// The next octet modulo limit (limit > 0).

	std::string octets(std::size_t count);
		/// Up to count octets.

	std::string rest();
		/// All remaining octets.

	const char* position() const;
	std::size_t remaining() const;
	bool atEnd() const;

private:
	const char* _pData;
	const char* _pEnd;
};


//
// inlines
//
inline const char* FuzzInput::position() const
{
	return _pData;
}


inline std::size_t FuzzInput::remaining() const
{
	return static_cast<std::size_t>(_pEnd - _pData);
}


inline bool FuzzInput::atEnd() const
{
	return _pData == _pEnd;
}


} } } // namespace Korvo::FastInfoset::Fuzz


#endif // FastInfoset_FuzzInput_INCLUDED
