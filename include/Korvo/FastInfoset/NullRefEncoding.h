//
// NullRefEncoding.h
//
// Library: FastInfoset
// Package: Encodings
// Module:  NullRefEncoding
//
// Plain text held by reference: a NullEncoding that copies nothing.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_NullRefEncoding_INCLUDED
#define FastInfoset_NullRefEncoding_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/NullEncoding.h"
#include <string>


namespace Korvo {
namespace FastInfoset {


class FastInfoset_API NullRefEncoding: public NullEncoding
	/// A NullEncoding over a string owned by somebody else, which must
	/// outlive every use of this value. It hands the string on without
	/// copying it and cannot be changed through this value.
{
public:
	using Ptr = Korvo::AutoPtr<NullRefEncoding>;

	explicit NullRefEncoding(const std::string& ref);
		/// Refers to ref (which may be empty).

	~NullRefEncoding();

	void reset(const std::string& ref);
		/// Refers to ref from now on.

	bool merge(const Encoding& enc);
		/// Throws InvalidAccessException "NullRefEncoding is immutable".

	void write(BitStreamWriter& writer) const;
		/// Writes the referenced string as a non-empty octet string; it must
		/// not be empty.

	const std::string& content() const;
		/// The referenced string.

	std::string& content();
		/// Throws InvalidAccessException "NullRefEncoding is immutable": the
		/// referenced string is not this value's to change.

private:
	const std::string* _data;
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_NullRefEncoding_INCLUDED
