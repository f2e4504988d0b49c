//
// AlgorithmsTarget.cpp
//
// Library: FastInfoset
// Package: Fuzz
// Module:  AlgorithmsTarget
//
// Arbitrary octets decoded by a built-in encoding algorithm and encoded
// again.
//
// The first octet chooses the algorithm (its low four bits: 1 to 10 are
// the built-in ones, 0 and 11 to 15 are reserved and must be refused) and
// where the data starts (bit 4: the seventh bit of the next octet, else the
// fifth, as after an algorithm index). The rest is the data: the bits
// before that position, the length of the octets and the octets.
//
// A decoder must refuse (acceptRefusal) or read exactly the octets the
// length announces. What it decoded must be written back as the same
// octets (for booleans, with the unused bits at the end cleared), and must
// decode to the same values again. Two values merged must hold both
// values in order. The text a plain handler receives must be accepted by
// the algorithm's check and encode to the same octets. Long texts may be
// refused, since the platform's number parser reads negative numbers
// beyond 2^53 inexactly, which the check notices. Float and double texts
// may be refused too (the float range leaves out zero and negative
// numbers), and the platform's text of a value is not always exact (-0
// is "0"): an accepted one must decode to a value of the same text.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Targets.h"
#include "EventRecord.h"
#include "FuzzInput.h"
#include "Verdict.h"
#include "Korvo/FastInfoset/BitStreamReader.h"
#include "Korvo/FastInfoset/BitStreamWriter.h"
#include "Korvo/FastInfoset/Decoder.h"
#include "Korvo/FastInfoset/DecodingAlgorithm.h"
#include "Korvo/FastInfoset/EncodingAlgorithm.h"
#include <sstream>


namespace Korvo {
namespace FastInfoset {
namespace Fuzz {


namespace
{
	class Data
		/// The data of one value: the bits before it, the length and the octets.
	{
	public:
		Data(const std::string& octets, int position):
			_octets(octets),
			_position(position)
		{
		}

		void skipLeadingBits(BitStreamReader& aReader) const
		{
			aReader.skip(_position);
		}

		const std::string& octets() const
		{
			return _octets;
		}

		std::string valueOctets(std::size_t& bits) const
			/// The octets that the length announces; bits is set to the
			/// number of bits of the length and the octets.
		{
			BitStreamReader aReader(_octets.data(), static_cast<unsigned int>(_octets.size()));
			skipLeadingBits(aReader);
			std::string octets;
			Decoder::nonEmptyOctetString(aReader, octets);
			bits = 8*_octets.size() - _position - aReader.cachedBits();
			return octets;
		}

		std::string valueOctets() const
		{
			std::size_t bits;
			return valueOctets(bits);
		}

		template <typename Write>
		static Data written(int position, unsigned char leadingBits, Write write)
		{
			std::ostringstream output;
			{
				BitStreamWriter writer(output, false);
				writer.write(static_cast<unsigned char>(leadingBits >> (8 - position)), position);
				write(writer);
				writer.complete(false);
			}
			return Data(output.str(), position);
		}

	private:
		std::string _octets;
		int _position;
	};

	Korvo::AutoPtr<Encoding> decode(unsigned int index, const Data& data, std::size_t& bitsRead)
	{
		static const DecodingAlgorithm decodings;
		BitStreamReader reader(data.octets().data(), static_cast<unsigned int>(data.octets().size()));
		data.skipLeadingBits(reader);
		const int before = reader.cachedBits();
		Korvo::AutoPtr<Encoding> pValue = decodings.read(static_cast<int>(index), reader);
		bitsRead = static_cast<std::size_t>(before - reader.cachedBits());
		return pValue;
	}

	std::vector<std::string> typedEvents(const Encoding& value)
	{
		EventRecord record;
		value.handle(static_cast<FISContentHandler*>(&record));
		return record.lines();
	}

	std::string text(const Encoding& value)
	{
		EventRecord record;
		value.handle(static_cast<Korvo::XML::ContentHandler*>(&record));
		return record.lines().empty() ? std::string() : record.lines().front().substr(5);
	}

	std::string withoutUnusedBits(const std::string& octets)
		/// Boolean data with the bits after the last value cleared, or empty
		/// when the unused count is not one a writer can write.
	{
		const unsigned unused = static_cast<unsigned char>(octets[0]) >> 4;
		if (unused > 7 || 8*octets.size() < 4 + unused) return std::string();
		std::string result(octets);
		result.back() = static_cast<char>(result.back() & (0xFF << unused));
		return result;
	}

	void expectSameOctets(unsigned int index, const std::string& expected, const std::string& actual, const char* pWhat)
	{
		if (index == EncodingAlgorithm::BOOL_ENCODING)
		{
			const std::string canonical = withoutUnusedBits(expected);
			if (canonical.empty() || canonical == actual) return;
		}
		else if (expected == actual) return;
		fail(std::string(pWhat) + " gives other octets");
	}
}


void algorithmsTarget(const char* pData, std::size_t size)
{
	FuzzInput input(pData, size);
	const unsigned char settings = input.octet();
	const unsigned int index = settings & 0x0F;
	const int position = (settings & 0x10) ? 6 : 4;
	if (input.remaining() == 0) return;
	const Data data(input.rest(), position);
	const unsigned char leadingBits = static_cast<unsigned char>(pData[1]);

	Korvo::AutoPtr<Encoding> pValue;
	std::size_t bitsRead = 0;
	try
	{
		pValue = decode(index, data, bitsRead);
	}
	catch (...)
	{
		acceptRefusal(PARSER_ASSERTIONS);
		return;
	}
	if (index == EncodingAlgorithm::INVALID || index >= EncodingAlgorithm::RESERVED) fail("a reserved algorithm decodes");
	if (pValue->type() != static_cast<int>(index)) fail("the decoded value has type " + std::to_string(pValue->type()));
	std::size_t valueBits = 0;
	const std::string octets = data.valueOctets(valueBits);
	if (bitsRead != valueBits) fail("the decoder reads " + std::to_string(bitsRead) + " bits, not its " + std::to_string(valueBits));
	const std::vector<std::string> events = typedEvents(*pValue);

	// Written again: the same octets, which decode to the same values.
	const Data written = Data::written(position, leadingBits, [&](BitStreamWriter& writer) { pValue->write(writer); });
	expectSameOctets(index, octets, written.valueOctets(), "writing the decoded value");
	std::size_t ignored;
	if (typedEvents(*decode(index, written, ignored)) != events) fail("the written value decodes to other values");

	// Merged with itself: the values twice.
	Korvo::AutoPtr<Encoding> pTwice = decode(index, data, ignored);
	if (!pTwice->merge(*pValue)) fail("a value does not merge with one of its kind");
	std::vector<std::string> expectedTwice;
	{
		EventRecord record;
		pValue->handle(static_cast<FISContentHandler*>(&record));
		pValue->handle(static_cast<FISContentHandler*>(&record));
		expectedTwice = record.lines();
	}
	if (typedEvents(*pTwice) != expectedTwice) fail("a merged value holds other values");

	// Its text form, as a plain handler receives it. Only booleans can be
	// none at all, and no text stands for no values.
	if (events.empty()) return;
	const std::string str = text(*pValue);
	const bool floating = index == EncodingAlgorithm::FLOAT_ENCODING || index == EncodingAlgorithm::DOUBLE_ENCODING;
	const bool mayRefuse = floating || index == EncodingAlgorithm::LONG_ENCODING;
	if (pValue->checkMethod()(str) <= 0)
	{
		if (!mayRefuse) fail("the algorithm refuses the text of a value it decoded: '" + str + "'");
		return;
	}
	const Data fromText = Data::written(position, leadingBits, [&](BitStreamWriter& writer) { pValue->encodeMethod()(writer, str); });
	if (!floating)
		expectSameOctets(index, octets, fromText.valueOctets(), "encoding the text of the decoded value");
	else if (text(*decode(index, fromText, ignored)) != str)
		fail("the text '" + str + "' of a decoded value encodes to a value of another text");
}


} } } // namespace Korvo::FastInfoset::Fuzz
