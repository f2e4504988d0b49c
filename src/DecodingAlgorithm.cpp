//
// DecodingAlgorithm.cpp
//
// Library: FastInfoset
// Package: Encodings
// Module:  DecodingAlgorithm
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/DecodingAlgorithm.h"
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
#include <iterator>


namespace Korvo {
namespace FastInfoset {


namespace
{
	struct BuiltInDecodings
		/// The decode functions of indices 0 to 31.
	{
		Encoding::DecodeMethod decodings[EncodingAlgorithm::USER_DEFINED];

		BuiltInDecodings()
		{
			// Each class's decode is overloaded; the table's type picks the one
			// that returns the value.
			const Encoding::DecodeMethod known[] = {
				&InvalidDecoding::decode, &HexEncoding::decode, &DWordEncoding::decode, &ShortEncoding::decode,
				&IntEncoding::decode, &LongEncoding::decode, &BoolEncoding::decode, &FloatEncoding::decode,
				&DoubleEncoding::decode, &UUIDEncoding::decode, &CDataEncoding::decode
			};
			static_assert(sizeof(known)/sizeof(known[0]) == EncodingAlgorithm::RESERVED, "one entry per known algorithm");
			for (int index = 0; index < EncodingAlgorithm::USER_DEFINED; ++index)
				decodings[index] = index < EncodingAlgorithm::RESERVED ? known[index] : &InvalidDecoding::decode;
		}
	};

	const BuiltInDecodings& builtIns()
	{
		static const BuiltInDecodings BUILT_INS;
		return BUILT_INS;
	}
}


DecodingAlgorithm::DecodingAlgorithm()
{
}


void DecodingAlgorithm::add(Encoding::DecodeMethod decode)
{
	poco_check_ptr(decode);
	if (_decodings.empty())
	{
		const BuiltInDecodings& known = builtIns();
		_decodings.reserve(EncodingAlgorithm::USER_DEFINED + 1);
		_decodings.assign(std::begin(known.decodings), std::end(known.decodings));
	}
	// A document can name no algorithm beyond the last user-defined index.
	poco_assert(_decodings.size() <= EncodingAlgorithm::LAST_USER_DEFINED);
	_decodings.push_back(decode);
}


Korvo::AutoPtr<Encoding> DecodingAlgorithm::read(int index, BitStreamReader& reader) const
{
	if (index < 0 || static_cast<unsigned int>(index) >= size())
		return InvalidDecoding::decode(reader);
	const Encoding::DecodeMethod* decodings = _decodings.empty() ? builtIns().decodings : _decodings.data();
	return decodings[index](reader);
}


unsigned int DecodingAlgorithm::size() const
{
	return _decodings.empty() ? static_cast<unsigned int>(EncodingAlgorithm::USER_DEFINED) : static_cast<unsigned int>(_decodings.size());
}


} } // namespace Korvo::FastInfoset
