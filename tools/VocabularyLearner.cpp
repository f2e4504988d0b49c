//
// VocabularyLearner.cpp
//
// Library: FastInfoset
// Package: Tools
// Module:  VocabularyLearner
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "VocabularyLearner.h"
#include "CompactEncoder.h"
#include "Korvo/FastInfoset/QualifiedNameVocabulary.h"
#include "Poco/SAX/Attributes.h"
#include "Poco/SAX/NamespaceSupport.h"
#include <algorithm>


using Korvo::XML::XMLString;
using Korvo::XML::XMLChar;
using Korvo::XML::NamespaceSupport;


namespace Korvo {
namespace FastInfoset {
namespace Tool {


namespace
{
	// A qualified name is kept as one key: prefix, namespace name and local
	// name apart by NUL, which no XML name or URI holds.
	const char SEPARATOR = '\0';

	std::string nameKey(const std::string& prefix, const std::string& namespaceURI, const std::string& localName)
	{
		std::string key(prefix);
		key += SEPARATOR;
		key += namespaceURI;
		key += SEPARATOR;
		key += localName;
		return key;
	}

	unsigned int indexOf(const DocumentVocabulary& vocabulary, DocumentVocabulary::ID table, const std::string& value)
	{
		if (value.empty()) return 0;
		bool found;
		return vocabulary.exists(table, value, found);
	}

	QualifiedNameEntry nameEntry(const DocumentVocabulary& vocabulary, const std::string& key)
	{
		const std::string::size_type first = key.find(SEPARATOR);
		const std::string::size_type second = key.find(SEPARATOR, first + 1);
		return QualifiedNameEntry(
			indexOf(vocabulary, DocumentVocabulary::PREFIX, key.substr(0, first)),
			indexOf(vocabulary, DocumentVocabulary::NAMESPACE_NAME, key.substr(first + 1, second - first - 1)),
			indexOf(vocabulary, DocumentVocabulary::LOCAL_NAME, key.substr(second + 1)));
	}

	bool isNamespaceDeclaration(const XMLString& qname)
	{
		return qname.compare(0, 5, "xmlns") == 0 && (qname.size() == 5 || qname[5] == ':');
	}

	XMLString prefixOf(const XMLString& qname)
	{
		const XMLString::size_type colon = qname.find(':');
		return colon == XMLString::npos ? XMLString() : qname.substr(0, colon);
	}
}


void VocabularyLearner::Tally::see(const std::string& key)
{
	auto inserted = _counts.emplace(key, Count{0, _counts.size()});
	++inserted.first->second.times;
}


std::vector<std::string> VocabularyLearner::Tally::ordered(std::size_t minCount) const
{
	std::vector<std::pair<Count, const std::string*>> chosen;
	for (const auto& entry: _counts)
	{
		if (entry.second.times >= minCount) chosen.emplace_back(entry.second, &entry.first);
	}
	std::sort(chosen.begin(), chosen.end(), [](const std::pair<Count, const std::string*>& a, const std::pair<Count, const std::string*>& b)
	{
		return a.first.times != b.first.times ? a.first.times > b.first.times : a.first.first < b.first.first;
	});
	std::vector<std::string> keys;
	keys.reserve(chosen.size());
	for (const auto& entry: chosen) keys.push_back(*entry.second);
	return keys;
}


VocabularyLearner::VocabularyLearner(std::size_t maxValueLength):
	_maxValueLength(maxValueLength),
	_inCDATA(false),
	_inDTD(false)
{
}


void VocabularyLearner::learn(std::istream& sample)
{
	_inCDATA = false;
	_inDTD = false;
	CompactEncoder::read(sample, this, this);
}


DocumentVocabulary VocabularyLearner::vocabulary() const
{
	static const std::pair<Table, DocumentVocabulary::ID> NAMES[] =
	{
		{PREFIXES, DocumentVocabulary::PREFIX},
		{NAMESPACE_NAMES, DocumentVocabulary::NAMESPACE_NAME},
		{LOCAL_NAMES, DocumentVocabulary::LOCAL_NAME},
		{OTHER_NCNAMES, DocumentVocabulary::OTHER_NCNAME}
	};
	static const std::pair<Table, DocumentVocabulary::ID> VALUES[] =
	{
		{ATTRIBUTE_VALUES, DocumentVocabulary::ATTRIBUTE_VALUE},
		{TEXTS, DocumentVocabulary::CHARACTER_CONTENT_CHUNK},
		{OTHER_STRINGS, DocumentVocabulary::OTHER_STRING}
	};

	DocumentVocabulary vocabulary(DocumentVocabulary::VOC_MAP);
	bool existed;
	for (const auto& table: NAMES)
	{
		for (const std::string& name: _tallies[table.first].ordered(1)) vocabulary.index(table.second, name, existed);
	}
	for (const auto& table: VALUES)
	{
		for (const std::string& value: _tallies[table.first].ordered(2)) vocabulary.index(table.second, value, existed);
	}

	// Tables of the VOC_MAP kind add an entry once: the root stays first.
	Vocabulary<QualifiedNameEntry>& elements = *vocabulary.elementVocabulary();
	if (!_firstRoot.empty()) elements.index(nameEntry(vocabulary, _firstRoot), existed);
	for (const std::string& key: _tallies[ELEMENT_NAMES].ordered(1)) elements.index(nameEntry(vocabulary, key), existed);
	for (const std::string& key: _tallies[ATTRIBUTE_NAMES].ordered(1))
		vocabulary.attributeVocabulary()->index(nameEntry(vocabulary, key), existed);
	return vocabulary;
}


void VocabularyLearner::seeName(Table table, const std::string& prefix, const std::string& namespaceURI, const std::string& localName)
{
	// The predefined "xml" prefix and its namespace name need no entries.
	if (!prefix.empty() && prefix != NamespaceSupport::XML_NAMESPACE_PREFIX) _tallies[PREFIXES].see(prefix);
	if (!namespaceURI.empty() && namespaceURI != NamespaceSupport::XML_NAMESPACE) _tallies[NAMESPACE_NAMES].see(namespaceURI);
	_tallies[LOCAL_NAMES].see(localName);
	_tallies[table].see(nameKey(prefix, namespaceURI, localName));
}


void VocabularyLearner::seeValue(Table table, const std::string& value)
{
	if (!value.empty() && value.size() <= _maxValueLength) _tallies[table].see(value);
}


void VocabularyLearner::startElement(const XMLString& uri, const XMLString& localName, const XMLString& qname, const Korvo::XML::Attributes& attributes)
{
	const XMLString prefix = prefixOf(qname);
	if (_firstRoot.empty()) _firstRoot = nameKey(prefix, uri, localName);
	seeName(ELEMENT_NAMES, prefix, uri, localName);
	for (int i = 0; i < attributes.getLength(); ++i)
	{
		const XMLString& attributeQName = attributes.getQName(i);
		if (isNamespaceDeclaration(attributeQName)) continue;
		const XMLString& attributeURI = attributes.getURI(i);
		const XMLString& attributeLocalName = attributes.getLocalName(i);
		// The writer names an attribute in its element's namespace without
		// a prefix.
		const XMLString attributePrefix = attributeURI.empty() || attributeURI == uri ? XMLString() : prefixOf(attributeQName);
		seeName(ATTRIBUTE_NAMES, attributePrefix, attributeURI, attributeLocalName.empty() ? attributeQName : attributeLocalName);
		seeValue(ATTRIBUTE_VALUES, attributes.getValue(i));
	}
}


void VocabularyLearner::characters(const XMLChar ch[], int start, int length)
{
	if (_inCDATA) return;
	_text.assign(ch + start, static_cast<std::size_t>(length));
	seeValue(TEXTS, _text);
}


void VocabularyLearner::ignorableWhitespace(const XMLChar ch[], int start, int length)
{
	characters(ch, start, length);
}


void VocabularyLearner::processingInstruction(const XMLString& target, const XMLString& data)
{
	_tallies[OTHER_NCNAMES].see(target);
	seeValue(OTHER_STRINGS, data);
}


void VocabularyLearner::startPrefixMapping(const XMLString& prefix, const XMLString& uri)
{
	if (!prefix.empty() && prefix != NamespaceSupport::XML_NAMESPACE_PREFIX) _tallies[PREFIXES].see(prefix);
	if (!uri.empty() && uri != NamespaceSupport::XML_NAMESPACE) _tallies[NAMESPACE_NAMES].see(uri);
}


void VocabularyLearner::startDTD(const XMLString&, const XMLString&, const XMLString&)
{
	_inDTD = true;
}


void VocabularyLearner::endDTD()
{
	_inDTD = false;
}


void VocabularyLearner::startEntity(const XMLString&)
{
}


void VocabularyLearner::endEntity(const XMLString&)
{
}


void VocabularyLearner::startCDATA()
{
	_inCDATA = true;
}


void VocabularyLearner::endCDATA()
{
	_inCDATA = false;
}


void VocabularyLearner::comment(const XMLChar ch[], int start, int length)
{
	// The writer drops the comments of a document type declaration.
	if (_inDTD) return;
	_text.assign(ch + start, static_cast<std::size_t>(length));
	seeValue(OTHER_STRINGS, _text);
}


} } } // namespace Korvo::FastInfoset::Tool
