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
#include <iterator>


namespace Korvo {
namespace FastInfoset {


namespace
{
	struct BuiltInEncodings
		/// The encode and check functions of indices 0 to 31.
	{
		Encoding::EncodeMethod encodings[EncodingAlgorithm::USER_DEFINED];
		Encoding::CheckMethod  checks[EncodingAlgorithm::USER_DEFINED];

		BuiltInEncodings()
		{
			const Encoding::EncodeMethod knownEncodings[] = {
				&InvalidEncoding::encode, &HexEncoding::encode, &DWordEncoding::encode, &ShortEncoding::encode,
				&IntEncoding::encode, &LongEncoding::encode, &BoolEncoding::encode, &FloatEncoding::encode,
				&DoubleEncoding::encode, &UUIDEncoding::encode, &CDataEncoding::encode
			};
			const Encoding::CheckMethod knownChecks[] = {
				&InvalidEncoding::check, &HexEncoding::check, &DWordEncoding::check, &ShortEncoding::check,
				&IntEncoding::check, &LongEncoding::check, &BoolEncoding::check, &FloatEncoding::check,
				&DoubleEncoding::check, &UUIDEncoding::check, &CDataEncoding::check
			};
			static_assert(sizeof(knownEncodings)/sizeof(knownEncodings[0]) == EncodingAlgorithm::RESERVED, "one entry per known algorithm");
			static_assert(sizeof(knownChecks)/sizeof(knownChecks[0]) == EncodingAlgorithm::RESERVED, "one entry per known algorithm");
			for (int index = 0; index < EncodingAlgorithm::USER_DEFINED; ++index)
			{
				const bool known = index < EncodingAlgorithm::RESERVED;
				encodings[index] = known ? knownEncodings[index] : &InvalidEncoding::encode;
				checks[index] = known ? knownChecks[index] : &InvalidEncoding::check;
			}
		}
	};

	const BuiltInEncodings& builtIns()
	{
		static const BuiltInEncodings BUILT_INS;
		return BUILT_INS;
	}
}


EncodingAlgorithm::EncodingAlgorithm()
{
}


void EncodingAlgorithm::add(Encoding::EncodeMethod encode, Encoding::CheckMethod check)
{
	poco_check_ptr(encode);
	poco_check_ptr(check);
	if (_encodings.empty())
	{
		const BuiltInEncodings& known = builtIns();
		_encodings.reserve(USER_DEFINED + 1);
		_checks.reserve(USER_DEFINED + 1);
		_encodings.assign(std::begin(known.encodings), std::end(known.encodings));
		_checks.assign(std::begin(known.checks), std::end(known.checks));
	}
	// A document can name no algorithm beyond the last user-defined index.
	poco_assert(_encodings.size() <= LAST_USER_DEFINED);
	_encodings.push_back(encode);
	_checks.push_back(check);
}


void EncodingAlgorithm::encode(unsigned int index, BitStreamWriter& writer, const std::string& str) const
{
	const Encoding::EncodeMethod* encodings = _encodings.empty() ? builtIns().encodings : _encodings.data();
	if (index >= size())
		InvalidEncoding::encode(writer, str);
	else
		encodings[index](writer, str);
}


unsigned int EncodingAlgorithm::findEncoding(const std::string& str) const
{
	const Encoding::CheckMethod* checks = _checks.empty() ? builtIns().checks : _checks.data();
	int best = INT_MAX;
	unsigned int result = 0;
	for (unsigned int index = 0; index < size(); ++index)
	{
		int score = checks[index](str);
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
	return _encodings.empty() ? static_cast<unsigned int>(USER_DEFINED) : static_cast<unsigned int>(_encodings.size());
}


} } // namespace Korvo::FastInfoset
