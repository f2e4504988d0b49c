//
// ExternalVocabularies.cpp
//
// Library: FastInfoset
// Package: Header
// Module:  ExternalVocabularies
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/ExternalVocabularies.h"
#include "Korvo/FastInfoset/DocumentVocabulary.h"


namespace Korvo {
namespace FastInfoset {


namespace
{
	const unsigned int FIRST_TABLE = DocumentVocabulary::PREFIX;
	const unsigned int LAST_TABLE = DocumentVocabulary::CHARACTER_CONTENT_CHUNK;

	template <class Function>
	void forEachTable(const DocumentVocabulary& voc, Function function)
		/// Calls function with each table in turn, the string tables first.
	{
		for (unsigned int id = FIRST_TABLE; id <= LAST_TABLE; ++id) function(voc.vocabulary(DocumentVocabulary::ID(id)));
		function(voc.elementVocabulary());
		function(voc.attributeVocabulary());
	}
}


ExternalVocabularies::ExternalVocabularies():
	_pInstalled(nullptr),
	_pHolder(nullptr),
	_installedNow(false)
{
}


ExternalVocabularies::~ExternalVocabularies()
{
}


void ExternalVocabularies::add(const std::string& uri, const DocumentVocabulary& vocabulary)
{
	if (!vocabulary.vocabulary(DocumentVocabulary::PREFIX)) throw Korvo::InvalidArgumentException("An external vocabulary needs its tables", uri);
	std::unique_ptr<DocumentVocabulary> pCopy(new DocumentVocabulary(vocabulary));
	for (Entry& entry: _entries)
	{
		if (entry.uri == uri)
		{
			if (_pInstalled == &entry) _pInstalled = nullptr;
			entry.pVocabulary = std::move(pCopy);
			return;
		}
	}
	// A new entry may move the others.
	_pInstalled = nullptr;
	_entries.push_back(Entry{uri, std::move(pCopy)});
}


const DocumentVocabulary* ExternalVocabularies::find(const std::string& uri) const
{
	for (const Entry& entry: _entries)
	{
		if (entry.uri == uri) return entry.pVocabulary.get();
	}
	return nullptr;
}


bool ExternalVocabularies::install(const std::string& uri, DocumentVocabulary& voc)
{
	const Entry* pEntry = nullptr;
	for (const Entry& entry: _entries)
	{
		if (entry.uri == uri) pEntry = &entry;
	}
	if (!pEntry) return false;

	if (holds(*pEntry, voc))
		rewind(*pEntry, voc);
	else
		copy(*pEntry, voc);
	_installedNow = true;
	return true;
}


void ExternalVocabularies::beginDocument()
{
	_installedNow = false;
}


void ExternalVocabularies::endHeader()
{
	if (!_installedNow) _pInstalled = nullptr;
}


bool ExternalVocabularies::holds(const Entry& entry, const DocumentVocabulary& voc) const
{
	// Tables only grow while a document is read, so tables that are at
	// least as large as they were hold the vocabulary below the marks.
	if (_pInstalled != &entry || _pHolder != &voc) return false;
	bool holds = true;
	std::size_t i = 0;
	forEachTable(voc, [&](const auto* pTable) { holds = holds && pTable && pTable->size() >= _marks[i++]; });
	return holds;
}


void ExternalVocabularies::rewind(const Entry& entry, DocumentVocabulary& voc) const
{
	std::size_t i = 0;
	forEachTable(voc, [&](auto* pTable) { pTable->truncate(_marks[i++]); });
	const DocumentRestrictedAlphabet& alphabets = entry.pVocabulary->restrictedAlphabets();
	if (voc.restrictedAlphabets().alphabets().size() != alphabets.alphabets().size()) voc.restrictedAlphabets() = alphabets;
}


void ExternalVocabularies::copy(const Entry& entry, DocumentVocabulary& voc)
{
	voc = *entry.pVocabulary;
	_marks.clear();
	forEachTable(voc, [&](const auto* pTable) { _marks.push_back(pTable ? pTable->size() : 0); });
	_pInstalled = &entry;
	_pHolder = &voc;
}


} } // namespace Korvo::FastInfoset
