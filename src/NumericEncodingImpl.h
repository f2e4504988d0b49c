//
// NumericEncodingImpl.h
//
// Library: FastInfoset
// Package: Encodings
// Module:  NumericEncodingImpl
//
// The logic that ShortEncoding, IntEncoding, LongEncoding, FloatEncoding and
// DoubleEncoding share, written once over the value type: text parsing with
// the canonical-text rule, the big-endian octet form and the text form.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_NumericEncodingImpl_INCLUDED
#define FastInfoset_NumericEncodingImpl_INCLUDED


#include "EncodingSupport.h"
#include "Korvo/FastInfoset/BitStreamWriter.h"
#include "Korvo/FastInfoset/BitStreamReader.h"
#include "Korvo/FastInfoset/Encoder.h"
#include "Korvo/FastInfoset/Decoder.h"
#include "Korvo/FastInfoset/FISContentHandler.h"
#include "Korvo/FastInfoset/FISException.h"
#include "Poco/NumberFormatter.h"
#include "Poco/NumberParser.h"
#include "Poco/StringTokenizer.h"
#include <cfloat>
#include <climits>
#include <cstring>
#include <string>
#include <type_traits>
#include <vector>


namespace Korvo {
namespace FastInfoset {


template <class T>
struct NumericTraits;
	/// Per value type: WIDTH (octets on the wire), NAME (the class, for
	/// messages), SIZE_MESSAGE, parse() of one token into a value (false when
	/// the token is no number or out of range) and append() of a value's text.


template <>
struct NumericTraits<short>
{
	static constexpr unsigned int WIDTH = 2;
	static constexpr const char* NAME = "ShortEncoding";
	static constexpr const char* SIZE_MESSAGE = "Illegal size entry for Korvo::Int16 value";

	static bool parse(const std::string& token, short& value)
	{
		int wide = 0;
		if (!Korvo::NumberParser::tryParse(token, wide, ',') || wide < SHRT_MIN || wide > SHRT_MAX)
			return false;
		value = static_cast<short>(wide);
		return true;
	}

	static void append(std::string& text, short value)
	{
		Korvo::NumberFormatter::append(text, static_cast<int>(value));
	}
};


template <>
struct NumericTraits<int>
{
	static constexpr unsigned int WIDTH = 4;
	static constexpr const char* NAME = "IntEncoding";
	static constexpr const char* SIZE_MESSAGE = "Illegal size entry for Korvo::Int32 value";

	static bool parse(const std::string& token, int& value)
	{
		Korvo::Int64 wide = 0;
		if (!Korvo::NumberParser::tryParse64(token, wide, ',') || wide < INT_MIN || wide > INT_MAX)
			return false;
		value = static_cast<int>(wide);
		return true;
	}

	static void append(std::string& text, int value)
	{
		Korvo::NumberFormatter::append(text, value);
	}
};


template <>
struct NumericTraits<long long>
{
	static constexpr unsigned int WIDTH = 8;
	static constexpr const char* NAME = "LongEncoding";
	static constexpr const char* SIZE_MESSAGE = "Illegal size entry for Korvo::Int64 value";

	static bool parse(const std::string& token, long long& value)
	{
		Korvo::Int64 wide = 0;
		if (!Korvo::NumberParser::tryParse64(token, wide, ','))
			return false;
		value = wide;
		return true;
	}

	static void append(std::string& text, long long value)
	{
		Korvo::NumberFormatter::append(text, static_cast<Korvo::Int64>(value));
	}
};


template <>
struct NumericTraits<float>
{
	static constexpr unsigned int WIDTH = 4;
	static constexpr const char* NAME = "FloatEncoding";
	static constexpr const char* SIZE_MESSAGE = "Illegal size entry for float value";

	static bool parse(const std::string& token, float& value)
	{
		// The range applies to the value as a float: the shortest text of
		// the largest float reads as a slightly larger double. Its lower bound
		// is the smallest positive normal float, not the most negative one:
		// zero and negative numbers are left to other algorithms.
		double wide = 0;
		if (!Korvo::NumberParser::tryParseFloat(token, wide, '.', ',') || !(wide > 0 && wide < 2.0*FLT_MAX))
			return false;
		value = static_cast<float>(wide);
		return value >= FLT_MIN && value <= FLT_MAX;
	}

	static void append(std::string& text, float value)
	{
		Korvo::NumberFormatter::append(text, value);
	}
};


template <>
struct NumericTraits<double>
{
	static constexpr unsigned int WIDTH = 8;
	static constexpr const char* NAME = "DoubleEncoding";
	static constexpr const char* SIZE_MESSAGE = "Illegal size entry for double value";

	static bool parse(const std::string& token, double& value)
	{
		return Korvo::NumberParser::tryParseFloat(token, value, '.', ',');
	}

	static void append(std::string& text, double value)
	{
		Korvo::NumberFormatter::append(text, value);
	}
};


template <class T>
class NumericCodec
	/// Text and octet forms of a list of numbers of type T.
{
public:
	using Traits = NumericTraits<T>;
	static constexpr unsigned int WIDTH = Traits::WIDTH;

	static void parse(const std::string& str, std::vector<T>& data)
		/// Fills data with the values of str's space-separated tokens, or
		/// leaves it empty when any token is not the canonical text of an
		/// accepted value: a value only counts when its formatted text
		/// equals the token, which refuses '+5', '007' and '1,000'.
	{
		data.clear();
		Korvo::StringTokenizer tokens(str, " ", 0);
		data.reserve(tokens.count());
		std::string scratch;
		for (const std::string& token: tokens)
		{
			T value;
			if (!Traits::parse(token, value) || !isCanonical(token, value, scratch))
			{
				data.clear();
				return;
			}
			data.push_back(value);
		}
	}

	static void parseText(const std::string& str, std::vector<T>& data)
		/// As parse(), throwing when str is empty or does not parse.
	{
		if (str.empty())
			throw FISEncodingException(std::string("Illegal (empty) data for ") + Traits::NAME);
		parse(str, data);
		if (data.empty())
			throw FISEncodingException(std::string("Illegal value string for ") + Traits::NAME);
	}

	static void requireValues(const std::vector<T>& data)
	{
		if (data.empty())
			throw FISEncodingException(std::string("Illegal (empty) data for ") + Traits::NAME);
	}

	static int check(const std::string& str)
	{
		std::vector<T> data;
		parse(str, data);
		return static_cast<int>(std::min<std::size_t>(data.size(), INT_MAX / WIDTH)*WIDTH);
	}

	static void appendText(std::string& text, const std::vector<T>& data)
	{
		for (std::size_t i = 0; i < data.size(); ++i)
		{
			if (i > 0)
				text += ' ';
			Traits::append(text, data[i]);
		}
	}

	static void write(BitStreamWriter& writer, const std::vector<T>& data)
		/// The octet length, then the values big-endian, in bulk.
	{
		Encoder::nonEmptyStringLength(writer, EncodingSupport::octetLength(data.size(), WIDTH));
		char buffer[EncodingSupport::CHUNK_SIZE];
		unsigned int used = 0;
		for (T value: data)
		{
			toOctets(value, buffer + used);
			used += WIDTH;
			if (used == sizeof(buffer))
			{
				writer.write(buffer, used);
				used = 0;
			}
		}
		if (used > 0)
			writer.write(buffer, used);
	}

	template <class SizeException>
	static void decode(BitStreamReader& reader, std::vector<T>& values)
		/// Replaces values by the values read; a length that is not a whole
		/// number of values throws SizeException.
	{
		unsigned int length = readLength<SizeException>(reader);
		values.clear();
		values.reserve(EncodingSupport::boundedReserve(length/WIDTH, WIDTH));
		EncodingSupport::readChunks(reader, length, [&values](const char* pData, unsigned int n)
		{
			for (unsigned int offset = 0; offset < n; offset += WIDTH)
				values.push_back(fromOctets(pData + offset));
		});
	}

	static void decodeText(BitStreamReader& reader, std::string& text)
		/// Replaces text by the text form of the values read.
	{
		unsigned int length = readLength<FISException>(reader);
		text.clear();
		bool first = true;
		EncodingSupport::readChunks(reader, length, [&text, &first](const char* pData, unsigned int n)
		{
			for (unsigned int offset = 0; offset < n; offset += WIDTH)
			{
				if (!first)
					text += ' ';
				first = false;
				Traits::append(text, fromOctets(pData + offset));
			}
		});
	}

	static void handle(const std::vector<T>& data, FISContentHandler* pHandler)
	{
		if (pHandler)
		{
			for (T value: data)
				pHandler->encodedData(value);
		}
	}

private:
	static bool isCanonical(const std::string& token, T value, std::string& scratch)
		/// Whether token is exactly the text that content() gives value.
	{
		scratch.clear();
		Traits::append(scratch, value);
		return scratch == token;
	}

	template <class SizeException>
	static unsigned int readLength(BitStreamReader& reader)
	{
		unsigned int length = 0;
		Decoder::nonEmptyStringLength(reader, length);
		if (length % WIDTH != 0)
			throw SizeException(Traits::SIZE_MESSAGE);
		return length;
	}

	using Bits = typename std::conditional<WIDTH == 2, Korvo::UInt16,
		typename std::conditional<WIDTH == 4, Korvo::UInt32, Korvo::UInt64>::type>::type;
		// The unsigned integer with T's size, to move T's bit pattern.

	static void toOctets(T value, char* pOctets)
	{
		Bits bits;
		std::memcpy(&bits, &value, WIDTH);
		for (unsigned int i = WIDTH; i-- > 0; bits = static_cast<Bits>(bits >> 8))
			pOctets[i] = static_cast<char>(bits & 0xFF);
	}

	static T fromOctets(const char* pOctets)
	{
		Bits bits = 0;
		for (unsigned int i = 0; i < WIDTH; ++i)
			bits = static_cast<Bits>((bits << 8) | static_cast<unsigned char>(pOctets[i]));
		T value;
		std::memcpy(&value, &bits, WIDTH);
		return value;
	}
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_NumericEncodingImpl_INCLUDED
