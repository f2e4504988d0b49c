//
// WriterTesting.h
//
// Helpers for the FastInfosetWriter tests: hexadecimal views of the bytes
// written, and a writer that opens its protected item writers to a test.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//

#ifndef Tests_WriterTesting_INCLUDED
#define Tests_WriterTesting_INCLUDED

#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include <gtest/gtest.h>
#include <cctype>
#include <sstream>
#include <string>


namespace Tests {


inline std::string hex(const std::string& bytes)
	/// Upper-case hexadecimal, two digits an octet, no separators.
{
	static const char DIGITS[] = "0123456789ABCDEF";
	std::string result;
	for (unsigned char c: bytes)
	{
		result += DIGITS[c >> 4];
		result += DIGITS[c & 0xF];
	}
	return result;
}


inline std::string golden(const std::string& text)
	/// A golden byte string written with spaces between groups, spaces removed.
{
	std::string result;
	for (char c: text)
	{
		if (!std::isspace(static_cast<unsigned char>(c))) result += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
	}
	return result;
}


template <class Case>
std::string caseName(const ::testing::TestParamInfo<Case>& info)
	/// A test name made of the case's name, other characters as '_'.
{
	std::string name;
	for (const char* p = info.param.name; *p; ++p) name += std::isalnum(static_cast<unsigned char>(*p)) ? *p : '_';
	return name;
}


const std::string HEADER = "E0000001 00";
	/// A document without XML declaration, initial vocabulary or declarations.


class WriterProbe: public Korvo::FastInfoset::FastInfosetWriter
	/// A writer whose item writers a test can call at any bit position.
{
public:
	using FastInfosetWriter::FastInfosetWriter;

	void writeBits(int value, int count)
	{
		bitWriter().write(value, count);
	}

	int bitPos()
	{
		return bitWriter().bitPos();
	}

	using FastInfosetWriter::writeNotation;
	using FastInfosetWriter::writeUnparsedEntity;
	using FastInfosetWriter::writeUnexpandedEntityReference;
	using FastInfosetWriter::writeDocumentTypeDeclaration;
	using FastInfosetWriter::writeComment;
	using FastInfosetWriter::writeElement;
	using FastInfosetWriter::writeAttribute;
	using FastInfosetWriter::writeNamespaceAttribute;
	using FastInfosetWriter::writeQualifiedNameOrIndex;
	using FastInfosetWriter::writeIdentifyingString;
	using FastInfosetWriter::writeIdentifyingStringIndex;
	using FastInfosetWriter::writeCharacterChunk;
	using FastInfosetWriter::writeNonIdentifyingStringOrIndex;
	using FastInfosetWriter::writeEncodedCharacterString;
	using FastInfosetWriter::AttributeVec;
	using FastInfosetWriter::PrefixSet;
};


} // namespace Tests


#endif // Tests_WriterTesting_INCLUDED
