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
	_installedNow(false),
	_rewoundNow(false)
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
			entry.namesWithin = hasNamesWithin(*pCopy);
			entry.pVocabulary = std::move(pCopy);
			return;
		}
	}
	// A new entry may move the others.
	_pInstalled = nullptr;
	const bool namesWithin = hasNamesWithin(*pCopy);
	_entries.push_back(Entry{uri, std::move(pCopy), namesWithin});
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

	_rewoundNow = holds(*pEntry, voc);
	if (_rewoundNow)
		rewind(*pEntry, voc);
	else
		copy(*pEntry, voc);
	_installedNow = true;
	return true;
}


void ExternalVocabularies::beginDocument()
{
	_installedNow = false;
	_rewoundNow = false;
}


bool ExternalVocabularies::sameNames(unsigned int& elementNames, unsigned int& attributeNames) const
{
	if (!_rewoundNow || !_pInstalled || !_pInstalled->namesWithin) return false;
	const std::size_t count = _marks.size();
	elementNames = _marks[count - 2];
	attributeNames = _marks[count - 1];
	return true;
}


bool ExternalVocabularies::hasNamesWithin(const DocumentVocabulary& vocabulary)
{
	// Absent parts are all ones; any other index must fall in the
	// vocabulary's own tables, else it names what a document adds.
	const unsigned int absent = 0xFFFFFFFF;
	auto within = [&](DocumentVocabulary::ID id, unsigned int index)
	{
		const Vocabulary<std::string>* pTable = vocabulary.vocabulary(id);
		return index == absent || (pTable && index < pTable->size());
	};
	for (const Vocabulary<QualifiedNameEntry>* pNames: {vocabulary.elementVocabulary(), vocabulary.attributeVocabulary()})
	{
		if (!pNames) return false;
		for (unsigned int i = 0; i < pNames->size(); ++i)
		{
			const QualifiedNameEntry* pName = pNames->lookup(i);
			if (!pName) continue;
			if (!within(DocumentVocabulary::PREFIX, pName->prefixId()) || !within(DocumentVocabulary::NAMESPACE_NAME, pName->namespaceId())
				|| !within(DocumentVocabulary::LOCAL_NAME, pName->localNameId())) return false;
		}
	}
	return true;
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
