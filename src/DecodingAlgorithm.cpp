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


namespace Korvo {
namespace FastInfoset {


DecodingAlgorithm::DecodingAlgorithm()
{
	initializeDecodings();
}


void DecodingAlgorithm::initializeDecodings()
{
	// Each class's decode is overloaded; the table's type picks the one
	// that returns the value.
	const Encoding::DecodeMethod builtIns[] = {
		&InvalidDecoding::decode,
		&HexEncoding::decode,
		&DWordEncoding::decode,
		&ShortEncoding::decode,
		&IntEncoding::decode,
		&LongEncoding::decode,
		&BoolEncoding::decode,
		&FloatEncoding::decode,
		&DoubleEncoding::decode,
		&UUIDEncoding::decode,
		&CDataEncoding::decode
	};
	_decodings.reserve(EncodingAlgorithm::USER_DEFINED);
	_decodings.assign(builtIns, builtIns + sizeof(builtIns)/sizeof(builtIns[0]));
	for (int index = EncodingAlgorithm::RESERVED; index <= EncodingAlgorithm::LAST_RESERVED; ++index)
		_decodings.push_back(&InvalidDecoding::decode);

	poco_assert(_decodings.size() == EncodingAlgorithm::USER_DEFINED);
}


void DecodingAlgorithm::add(Encoding::DecodeMethod decode)
{
	poco_check_ptr(decode);
	// A document can name no algorithm beyond the last user-defined index.
	poco_assert(_decodings.size() <= EncodingAlgorithm::LAST_USER_DEFINED);
	_decodings.push_back(decode);
}


Korvo::AutoPtr<Encoding> DecodingAlgorithm::read(int index, BitStreamReader& reader) const
{
	if (index < 0 || static_cast<unsigned int>(index) >= _decodings.size())
		return InvalidDecoding::decode(reader);
	return _decodings[index](reader);
}


unsigned int DecodingAlgorithm::size() const
{
	return static_cast<unsigned int>(_decodings.size());
}


} } // namespace Korvo::FastInfoset
