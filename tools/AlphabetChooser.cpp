//
// AlphabetChooser.cpp
//
// Library: FastInfoset
// Package: Tools
// Module:  AlphabetChooser
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "AlphabetChooser.h"
#include "Korvo/FastInfoset/DocumentRestrictedAlphabet.h"
#include "Poco/TextIterator.h"
#include "Poco/UTF8Encoding.h"
#include <algorithm>
#include <set>


namespace Korvo {
namespace FastInfoset {
namespace Tool {


namespace
{
	const int MIN_BITS = 2;
	const int MAX_BITS = 8;
	const int REFINEMENTS = 3;
	const std::size_t ALLOWED_MISSING = 2;
	const std::size_t FIRST_ALPHABET_OCTETS = 3; // the initial vocabulary's flags and the list's length

	std::size_t costInBits(std::size_t octets, int lengthPos)
		/// A literal's octets and the length in front of them, as the
		/// writer writes them from the fifth or the seventh bit.
	{
		std::size_t lengthBits;
		if (lengthPos == 4)
			lengthBits = octets <= 8 ? 4 : octets <= 264 ? 12 : 36;
		else
			lengthBits = octets <= 2 ? 2 : octets <= 258 ? 10 : 34;
		return lengthBits + 8*octets;
	}

	struct BuiltInAlphabets
		/// Which ASCII characters the numeric and the date-time alphabets hold.
	{
		BuiltInAlphabets(): numeric(0x80, false), dateTime(0x80, false)
		{
			for (char c: DocumentRestrictedAlphabet::NUMERIC_CHARACTERS) numeric[static_cast<unsigned char>(c)] = true;
			for (char c: DocumentRestrictedAlphabet::DATE_TIME_CHARACTERS) dateTime[static_cast<unsigned char>(c)] = true;
		}

		std::vector<bool> numeric;
		std::vector<bool> dateTime;
	};
}


AlphabetChooser::AlphabetChooser():
	_chosen(false)
{
}


void AlphabetChooser::add(const std::string& value, DocumentVocabulary::ID table)
{
	Literal literal;
	literal.first = _characters.size();
	literal.distinct = 0;
	literal.length = 0;
	literal.lengthPos = table == DocumentVocabulary::CHARACTER_CONTENT_CHUNK ? 6 : 4;

	Poco::UTF8Encoding utf8;
	Poco::TextIterator it(value, utf8);
	Poco::TextIterator end(value);
	std::size_t utf16Octets = 0;
	bool numeric = true;
	bool dateTime = true;
	bool wellFormed = true;
	static const BuiltInAlphabets BUILT_IN;
	for (; it != end; ++it)
	{
		const int codePoint = *it;
		if (codePoint < 0 || (codePoint >= 0xD800 && codePoint <= 0xDFFF))
		{
			wellFormed = false;
			break;
		}
		const std::size_t number = numberOf(codePoint);
		if (_positionOf[number] == 0)
		{
			_characters.push_back(number);
			_occurrences.push_back(0);
			_positionOf[number] = ++literal.distinct;
		}
		++_occurrences[literal.first + _positionOf[number] - 1];
		++literal.length;
		utf16Octets += codePoint > 0xFFFF ? 4 : 2;
		numeric = numeric && codePoint < 0x80 && BUILT_IN.numeric[static_cast<std::size_t>(codePoint)];
		dateTime = dateTime && codePoint < 0x80 && BUILT_IN.dateTime[static_cast<std::size_t>(codePoint)];
	}
	for (std::size_t i = literal.first; i < _characters.size(); ++i) _positionOf[_characters[i]] = 0;
	if (!wellFormed || literal.length == 0)
	{
		_characters.resize(literal.first);
		_occurrences.resize(literal.first);
		return;
	}
	literal.cost = std::min(costInBits(value.size(), literal.lengthPos), costInBits(utf16Octets, literal.lengthPos));
	if (numeric || dateTime) literal.cost = std::min(literal.cost, packedCost(literal, 4));
	_literals.push_back(literal);
}


std::size_t AlphabetChooser::numberOf(int codePoint)
{
	const auto found = _numberOf.find(codePoint);
	if (found != _numberOf.end()) return found->second;
	_numberOf.emplace(codePoint, _codePoints.size());
	_codePoints.push_back(codePoint);
	_positionOf.push_back(0);
	return _codePoints.size() - 1;
}


std::vector<std::string> AlphabetChooser::choose(std::size_t maxAlphabets)
{
	std::vector<std::string> alphabets;
	while (alphabets.size() < maxAlphabets)
	{
		const Candidate candidate = bestCandidate();
		if (candidate.gain <= 0) break;
		alphabets.push_back(alphabetString(candidate.members, candidate.bits));
		_chosen = true;
		for (Literal& literal: _literals)
		{
			const std::size_t cost = packedCost(literal, candidate.bits);
			if (cost < literal.cost && covers(literal, candidate.members, 0)) literal.cost = cost;
		}
	}
	return alphabets;
}


std::size_t AlphabetChooser::packedCost(const Literal& literal, int bits) const
{
	// The alphabet's number takes an octet more than UTF-8 or UTF-16.
	return costInBits((literal.length*bits + 7)/8, literal.lengthPos) + 8;
}


bool AlphabetChooser::covers(const Literal& literal, const Members& members, std::size_t allowedMissing) const
{
	std::size_t missing = 0;
	for (std::size_t i = literal.first; i < literal.first + literal.distinct; ++i)
	{
		if (!members[_characters[i]] && ++missing > allowedMissing) return false;
	}
	return true;
}


AlphabetChooser::Members AlphabetChooser::mostFrequent(int bits, const Members* pNearlyCovered) const
{
	// Only the literals that packing would shorten have a say.
	std::vector<std::size_t> frequency(_codePoints.size(), 0);
	for (const Literal& literal: _literals)
	{
		if (packedCost(literal, bits) >= literal.cost) continue;
		if (pNearlyCovered && !covers(literal, *pNearlyCovered, ALLOWED_MISSING)) continue;
		for (std::size_t i = literal.first; i < literal.first + literal.distinct; ++i) frequency[_characters[i]] += _occurrences[i];
	}

	std::vector<std::size_t> order(_codePoints.size());
	for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
	std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return frequency[a] > frequency[b]; });
	const std::size_t size = (std::size_t(1) << bits) - 1;
	Members members(_codePoints.size(), 0);
	for (std::size_t i = 0; i < order.size() && i < size && frequency[order[i]] > 0; ++i) members[order[i]] = 1;
	return members;
}


long long AlphabetChooser::gain(const Members& members, int bits) const
{
	long long saved = 0;
	for (const Literal& literal: _literals)
	{
		const std::size_t cost = packedCost(literal, bits);
		if (cost < literal.cost && covers(literal, members, 0)) saved += static_cast<long long>(literal.cost - cost);
	}
	const std::size_t announced = alphabetString(members, bits).size() + 1 + (_chosen ? 0 : FIRST_ALPHABET_OCTETS);
	return saved - 8*static_cast<long long>(announced);
}


AlphabetChooser::Candidate AlphabetChooser::bestCandidate() const
{
	Candidate best;
	best.bits = 0;
	best.gain = 0;
	for (int bits = MIN_BITS; bits <= MAX_BITS; ++bits)
	{
		Members members = mostFrequent(bits, nullptr);
		long long candidateGain = gain(members, bits);
		for (int i = 0; i < REFINEMENTS; ++i)
		{
			Members refined = mostFrequent(bits, &members);
			const long long refinedGain = gain(refined, bits);
			if (refinedGain <= candidateGain) break;
			members.swap(refined);
			candidateGain = refinedGain;
		}
		if (candidateGain > best.gain)
		{
			best.members = members;
			best.bits = bits;
			best.gain = candidateGain;
		}
		// A larger alphabet would hold every character already.
		if (_codePoints.size() < (std::size_t(1) << bits)) break;
	}
	return best;
}


std::string AlphabetChooser::alphabetString(const Members& members, int bits) const
{
	std::set<int> characters;
	for (std::size_t i = 0; i < members.size(); ++i)
	{
		if (members[i]) characters.insert(_codePoints[i]);
	}
	// A reader takes the bits a character from the alphabet's size, so
	// the alphabet is filled up to 2^bits - 1 with characters of one octet.
	const std::size_t size = (std::size_t(1) << bits) - 1;
	for (int codePoint = '!'; characters.size() < size; ++codePoint) characters.insert(codePoint);

	Poco::UTF8Encoding utf8;
	std::string result;
	for (int codePoint: characters)
	{
		unsigned char octets[4];
		const int length = utf8.convert(codePoint, octets, 4);
		result.append(reinterpret_cast<const char*>(octets), static_cast<std::size_t>(length));
	}
	return result;
}


} } } // namespace Korvo::FastInfoset::Tool
