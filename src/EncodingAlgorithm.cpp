//
// EncodingAlgorithm.cpp
//
// Library: FastInfoset
// Package: Encodings
// Module:  EncodingAlgorithm
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/EncodingAlgorithm.h"
#include "Korvo/FastInfoset/HexEncoding.h"
#include "Korvo/FastInfoset/DWordEncoding.h"
#include "Korvo/FastInfoset/ShortEncoding.h"
#include "Korvo/FastInfoset/IntEncoding.h"
#include "Korvo/FastInfoset/LongEncoding.h"
#include "Korvo/FastInfoset/BoolEncoding.h"
#include "Korvo/FastInfoset/FloatEncoding.h"
#include "Korvo/FastInfoset/DoubleEncoding.h"
#include "Korvo/FastInfoset/UUIDEncoding.h"
#include "Korvo/FastInfoset/CDataEncoding.h"
#include <climits>


namespace Korvo {
namespace FastInfoset {


EncodingAlgorithm::EncodingAlgorithm()
{
	initializeEncodings();
}


void EncodingAlgorithm::initializeEncodings()
{
	_encodings.reserve(USER_DEFINED);
	_checks.reserve(USER_DEFINED);

	_encodings.push_back(&InvalidEncoding::encode);
	_checks.push_back(&InvalidEncoding::check);

	_encodings.push_back(&HexEncoding::encode);
	_checks.push_back(&HexEncoding::check);
	_encodings.push_back(&DWordEncoding::encode);
	_checks.push_back(&DWordEncoding::check);
	_encodings.push_back(&ShortEncoding::encode);
	_checks.push_back(&ShortEncoding::check);
	_encodings.push_back(&IntEncoding::encode);
	_checks.push_back(&IntEncoding::check);
	_encodings.push_back(&LongEncoding::encode);
	_checks.push_back(&LongEncoding::check);
	_encodings.push_back(&BoolEncoding::encode);
	_checks.push_back(&BoolEncoding::check);
	_encodings.push_back(&FloatEncoding::encode);
	_checks.push_back(&FloatEncoding::check);
	_encodings.push_back(&DoubleEncoding::encode);
	_checks.push_back(&DoubleEncoding::check);
	_encodings.push_back(&UUIDEncoding::encode);
	_checks.push_back(&UUIDEncoding::check);
	_encodings.push_back(&CDataEncoding::encode);
	_checks.push_back(&CDataEncoding::check);

	for (int index = RESERVED; index <= LAST_RESERVED; ++index)
	{
		_encodings.push_back(&InvalidEncoding::encode);
		_checks.push_back(&InvalidEncoding::check);
	}

	poco_assert(_encodings.size() == USER_DEFINED);
	poco_assert(_checks.size() == USER_DEFINED);
}


void EncodingAlgorithm::add(Encoding::EncodeMethod encode, Encoding::CheckMethod check)
{
	poco_check_ptr(encode);
	poco_check_ptr(check);
	// A document can name no algorithm beyond the last user-defined index.
	poco_assert(_encodings.size() <= LAST_USER_DEFINED);
	_encodings.push_back(encode);
	_checks.push_back(check);
}


void EncodingAlgorithm::encode(unsigned int index, BitStreamWriter& writer, const std::string& str) const
{
	if (index >= _encodings.size())
		InvalidEncoding::encode(writer, str);
	else
		_encodings[index](writer, str);
}


unsigned int EncodingAlgorithm::findEncoding(const std::string& str) const
{
	int best = INT_MAX;
	unsigned int result = 0;
	for (unsigned int index = 0; index < _checks.size(); ++index)
	{
		int score = _checks[index](str);
		if (score >= 1 && score < best)
		{
			result = index;
			best = score;
		}
	}
	return result;
}


unsigned int EncodingAlgorithm::size() const
{
	return static_cast<unsigned int>(_encodings.size());
}


} } // namespace Korvo::FastInfoset
