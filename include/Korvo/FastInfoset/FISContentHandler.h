//
// FISContentHandler.h
//
// Library: FastInfoset
// Package: Handlers
// Module:  FISContentHandler
//
// A SAX2 content handler that also accepts typed values.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_FISContentHandler_INCLUDED
#define FastInfoset_FISContentHandler_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"


namespace Korvo {
namespace FastInfoset {


class FastInfoset_API FISContentHandler: public Korvo::XML::ContentHandler
	/// A ContentHandler that receives the values a document stores with a
	/// built-in encoding algorithm as typed calls instead of text. Each call
	/// carries one value; an array arrives as consecutive calls of one kind.
	/// Typed calls arrive only where characters() could arrive.
{
public:
	virtual ~FISContentHandler();

	virtual void binaryData(const char* buffer, unsigned int size) = 0;
		/// size raw octets at buffer (base64 algorithm); the buffer stays the caller's.

	virtual void encodedData(short value) = 0;
	virtual void encodedData(int value) = 0;
	virtual void encodedData(long long value) = 0;
	virtual void encodedData(bool value) = 0;
	virtual void encodedData(float value) = 0;
	virtual void encodedData(double value) = 0;
	virtual void encodedData(const Korvo::UUID& uuid) = 0;

protected:
	FISContentHandler();
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_FISContentHandler_INCLUDED
