//
// UUIDEncoding.cpp
//
// Library: FastInfoset
// Package: Encodings
// Module:  UUIDEncoding
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/UUIDEncoding.h"
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
	const unsigned int WIDTH = 16;
	const char* const EMPTY_DATA = "Illegal (empty) data for UUIDEncoding";
	const char* const BAD_TEXT = "Illegal value string for UUIDEncoding";
	const char* const SIZE_MESSAGE = "Illegal size entry for Korvo::UUID value";

	template <class SizeException, class Visitor>
	void decodeUUIDs(BitStreamReader& reader, Visitor visit)
		/// Reads the octet length and the UUIDs, handing each to visit(const UUID&).
	{
		unsigned int length = 0;
		Decoder::nonEmptyStringLength(reader, length);
		if (length % WIDTH != 0)
			throw SizeException(SIZE_MESSAGE);
		Korvo::UUID uuid;
		EncodingSupport::readChunks(reader, length, [&](const char* pData, unsigned int n)
		{
			for (unsigned int offset = 0; offset < n; offset += WIDTH)
			{
				uuid.copyFrom(pData + offset);
				visit(uuid);
			}
		});
	}
}


UUIDEncoding::UUIDEncoding()
{
}


UUIDEncoding::UUIDEncoding(const Korvo::UUID& value):
	_data(1, value)
{
	createContent();
}


UUIDEncoding::UUIDEncoding(const std::vector<Korvo::UUID>& data):
	_data(data)
{
	if (_data.empty())
		throw FISEncodingException(EMPTY_DATA);
	createContent();
}


UUIDEncoding::UUIDEncoding(const std::string& str)
{
	if (str.empty())
		throw FISEncodingException(EMPTY_DATA);
	parse(str, _data);
	if (_data.empty())
		throw FISEncodingException(BAD_TEXT);
	createContent();
}


UUIDEncoding::~UUIDEncoding()
{
}


void UUIDEncoding::parse(const std::string& str, std::vector<Korvo::UUID>& data)
{
	data.clear();
	Korvo::StringTokenizer tokens(str, " ", 0);
	data.reserve(tokens.count());
	Korvo::UUID uuid;
	for (const std::string& token: tokens)
	{
		if (!uuid.tryParse(token))
		{
			data.clear();
			return;
		}
		data.push_back(uuid);
	}
}


int UUIDEncoding::check(const std::string& str)
{
	std::vector<Korvo::UUID> data;
	parse(str, data);
	return static_cast<int>(std::min<std::size_t>(data.size(), INT_MAX / WIDTH)*WIDTH);
}


void UUIDEncoding::encode(BitStreamWriter& writer, const std::string& str)
{
	UUIDEncoding(str).write(writer);
}


Korvo::AutoPtr<Encoding> UUIDEncoding::decode(BitStreamReader& reader)
{
	Ptr pEncoding(new UUIDEncoding);
	decode(reader, pEncoding->_data);
	pEncoding->deferContent();
	return pEncoding;
}


void UUIDEncoding::decode(BitStreamReader& reader, std::string& result)
{
	result.clear();
	decodeUUIDs<FISException>(reader, [&result](const Korvo::UUID& uuid)
	{
		if (!result.empty())
			result += ' ';
		result += uuid.toString();
	});
}


void UUIDEncoding::decode(BitStreamReader& reader, std::vector<Korvo::UUID>& val)
{
	val.clear();
	decodeUUIDs<FISEncodingException>(reader, [&val](const Korvo::UUID& uuid)
	{
		val.push_back(uuid);
	});
}


int UUIDEncoding::type() const
{
	return EncodingAlgorithm::UUID_ENCODING;
}


bool UUIDEncoding::merge(const Encoding& enc)
{
	const UUIDEncoding* pOther = dynamic_cast<const UUIDEncoding*>(&enc);
	if (!pOther || enc.type() != type())
		return false;
	EncodingSupport::appendValues(_data, pOther->_data);
	return true;
}


void UUIDEncoding::write(BitStreamWriter& writer) const
{
	Encoder::nonEmptyStringLength(writer, EncodingSupport::octetLength(_data.size(), WIDTH));
	char buffer[EncodingSupport::CHUNK_SIZE];
	unsigned int used = 0;
	for (const Korvo::UUID& uuid: _data)
	{
		uuid.copyTo(buffer + used);
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


Encoding::DecodeMethod UUIDEncoding::decodeMethod() const
{
	return &UUIDEncoding::decode;
}


Encoding::CheckMethod UUIDEncoding::checkMethod() const
{
	return &UUIDEncoding::check;
}


Encoding::EncodeMethod UUIDEncoding::encodeMethod() const
{
	return &UUIDEncoding::encode;
}


void UUIDEncoding::handle(FISContentHandler* pHandler) const
{
	if (pHandler)
	{
		for (const Korvo::UUID& uuid: _data)
			pHandler->encodedData(uuid);
	}
}


void UUIDEncoding::createContent()
{
	_content.clear();
	for (std::size_t i = 0; i < _data.size(); ++i)
	{
		if (i > 0)
			_content += ' ';
		_content += _data[i].toString();
	}
}


} } // namespace Korvo::FastInfoset
