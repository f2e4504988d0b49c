//
// BoolEncoding.cpp
//
// Library: FastInfoset
// Package: Encodings
// Module:  BoolEncoding
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/BoolEncoding.h"
#include "Korvo/FastInfoset/EncodingAlgorithm.h"
#include "Korvo/FastInfoset/Encoder.h"
#include "Korvo/FastInfoset/Decoder.h"
#include "Korvo/FastInfoset/FISContentHandler.h"
#include "Korvo/FastInfoset/FISException.h"
#include "EncodingSupport.h"
#include "Poco/StringTokenizer.h"
#include <climits>


namespace Korvo {
namespace FastInfoset {


namespace
{
	const char* const EMPTY_DATA = "Illegal (empty) data for BoolEncoding";
	const char* const BAD_TEXT = "Illegal value string for BoolEncoding";
	const char* const BAD_UNUSED_COUNT = "Illegal count of unused bits for BoolEncoding";

	unsigned int unusedBits(std::size_t count)
		/// The padding bits after count values that follow the 4-bit header.
	{
		unsigned int used = static_cast<unsigned int>((count % 256 + 4) % 8);
		return used == 0 ? 0 : 8 - used;
	}

	template <class Visitor>
	void decodeBits(BitStreamReader& reader, Visitor visit)
		/// Reads the octet length, the unused-bit count and the values,
		/// handing each value to visit(bool).
	{
		unsigned int length = 0;
		Decoder::nonEmptyStringLength(reader, length);
		bool atHeader = true;
		Korvo::UInt64 remaining = 0;
		EncodingSupport::readChunks(reader, length, [&](const char* pData, unsigned int n)
		{
			unsigned int i = 0;
			int firstBit = 7;
			if (atHeader)
			{
				unsigned int unused = static_cast<unsigned char>(pData[0]) >> 4;
				Korvo::UInt64 available = static_cast<Korvo::UInt64>(length)*8 - 4;
				if (unused > 7 || unused > available)
					throw FISParseException(BAD_UNUSED_COUNT);
				remaining = available - unused;
				atHeader = false;
				firstBit = 3;
			}
			for (; i < n && remaining > 0; ++i, firstBit = 7)
			{
				unsigned char octet = static_cast<unsigned char>(pData[i]);
				for (int bit = firstBit; bit >= 0 && remaining > 0; --bit, --remaining)
					visit(((octet >> bit) & 1) != 0);
			}
		});
	}
}


const std::string BoolEncoding::VAL_TRUE("true");
const std::string BoolEncoding::VAL_FALSE("false");


BoolEncoding::BoolEncoding()
{
}


BoolEncoding::BoolEncoding(bool value):
	_data(1, value)
{
	createContent();
}


BoolEncoding::BoolEncoding(const std::vector<bool>& data):
	_data(data)
{
	if (_data.empty())
		throw FISEncodingException(EMPTY_DATA);
	createContent();
}


BoolEncoding::BoolEncoding(const std::string& str)
{
	if (str.empty())
		throw FISEncodingException(EMPTY_DATA);
	parse(str, _data);
	if (_data.empty())
		throw FISEncodingException(BAD_TEXT);
	createContent();
}


BoolEncoding::BoolEncoding(const char* str):
	BoolEncoding(std::string(str ? str : ""))
{
}


BoolEncoding::~BoolEncoding()
{
}


void BoolEncoding::parse(const std::string& str, std::vector<bool>& data)
{
	data.clear();
	Korvo::StringTokenizer tokens(str, " ", 0);
	data.reserve(tokens.count());
	for (const std::string& token: tokens)
	{
		if (token == VAL_TRUE)
			data.push_back(true);
		else if (token == VAL_FALSE)
			data.push_back(false);
		else
		{
			data.clear();
			return;
		}
	}
}


int BoolEncoding::check(const std::string& str)
{
	std::vector<bool> data;
	parse(str, data);
	return static_cast<int>(std::min<std::size_t>((data.size() + 7)/8, INT_MAX));
}


void BoolEncoding::encode(BitStreamWriter& writer, const std::string& str)
{
	BoolEncoding(str).write(writer);
}


Korvo::AutoPtr<Encoding> BoolEncoding::decode(BitStreamReader& reader)
{
	Ptr pEncoding(new BoolEncoding);
	decode(reader, pEncoding->_data);
	pEncoding->deferContent();
	return pEncoding;
}


void BoolEncoding::decode(BitStreamReader& reader, std::string& result)
{
	result.clear();
	decodeBits(reader, [&result](bool value)
	{
		if (!result.empty())
			result += ' ';
		result += value ? VAL_TRUE : VAL_FALSE;
	});
}


void BoolEncoding::decode(BitStreamReader& reader, std::vector<bool>& val)
{
	val.clear();
	decodeBits(reader, [&val](bool value)
	{
		val.push_back(value);
	});
}


int BoolEncoding::type() const
{
	return EncodingAlgorithm::BOOL_ENCODING;
}


bool BoolEncoding::merge(const Encoding& enc)
{
	const BoolEncoding* pOther = dynamic_cast<const BoolEncoding*>(&enc);
	if (!pOther || enc.type() != type())
		return false;
	EncodingSupport::appendValues(_data, pOther->_data);
	return true;
}


void BoolEncoding::write(BitStreamWriter& writer) const
{
	const std::size_t count = _data.size();
	Encoder::nonEmptyStringLength(writer, EncodingSupport::octetLength((count + 11)/8, 1));

	char buffer[EncodingSupport::CHUNK_SIZE];
	unsigned int used = 0;
	auto put = [&](unsigned char octet)
	{
		buffer[used++] = static_cast<char>(octet);
		if (used == sizeof(buffer))
		{
			writer.write(buffer, used);
			used = 0;
		}
	};

	unsigned char octet = static_cast<unsigned char>(unusedBits(count) << 4);
	int filled = 4;
	for (bool value: _data)
	{
		if (value)
			octet = static_cast<unsigned char>(octet | (0x80 >> filled));
		if (++filled == 8)
		{
			put(octet);
			octet = 0;
			filled = 0;
		}
	}
	if (filled > 0)
		put(octet);
	if (used > 0)
		writer.write(buffer, used);
}


Encoding::DecodeMethod BoolEncoding::decodeMethod() const
{
	return &BoolEncoding::decode;
}


Encoding::CheckMethod BoolEncoding::checkMethod() const
{
	return &BoolEncoding::check;
}


Encoding::EncodeMethod BoolEncoding::encodeMethod() const
{
	return &BoolEncoding::encode;
}


void BoolEncoding::handle(FISContentHandler* pHandler) const
{
	if (pHandler)
	{
		for (bool value: _data)
			pHandler->encodedData(value);
	}
}


void BoolEncoding::createContent()
{
	_content.clear();
	for (std::size_t i = 0; i < _data.size(); ++i)
	{
		if (i > 0)
			_content += ' ';
		_content += _data[i] ? VAL_TRUE : VAL_FALSE;
	}
}


} } // namespace Korvo::FastInfoset
