//
// VocabularyLearner.h
//
// Library: FastInfoset
// Package: Tools
// Module:  VocabularyLearner
//
// Learns a vocabulary that many documents of one kind can share.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_VocabularyLearner_INCLUDED
#define FastInfoset_VocabularyLearner_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/DocumentVocabulary.h"
#include "Poco/SAX/DefaultHandler.h"
#include "Poco/SAX/LexicalHandler.h"
#include <cstddef>
#include <istream>
#include <string>
#include <unordered_map>
#include <vector>


namespace Korvo {
namespace FastInfoset {
namespace Tool {


class VocabularyLearner: public Korvo::XML::DefaultHandler, public Korvo::XML::LexicalHandler
	/// Reads sample documents and learns what documents of their kind
	/// repeat: every name (element and attribute names with their prefixes,
	/// namespace names and local names, and processing-instruction targets)
	/// and the short values that occur more than once in all samples
	/// together (attribute values, texts, comments and processing-instruction
	/// data). Texts are taken whole, as CompactEncoder writes them; text in
	/// CDATA sections is left out, since the writer never indexes it.
	///
	/// Each table lists its entries by how often the samples use them, most
	/// often first, so that the commonest get the shortest indices; ties keep
	/// the order of first use. The root element of the first sample is the
	/// first element name.
{
public:
	explicit VocabularyLearner(std::size_t maxValueLength = 64);
		/// Values longer than maxValueLength octets are not learnt.

	void learn(std::istream& sample);
		/// Reads one XML document. Throws what the XML parser throws; the
		/// counts of a sample that fails are kept as far as it was read.

	DocumentVocabulary vocabulary() const;
		/// The learnt tables (VOC_MAP) after the predefined entries.

	// ContentHandler
	void startElement(const Korvo::XML::XMLString& uri, const Korvo::XML::XMLString& localName, const Korvo::XML::XMLString& qname, const Korvo::XML::Attributes& attributes) override;
	void characters(const Korvo::XML::XMLChar ch[], int start, int length) override;
	void ignorableWhitespace(const Korvo::XML::XMLChar ch[], int start, int length) override;
	void processingInstruction(const Korvo::XML::XMLString& target, const Korvo::XML::XMLString& data) override;
	void startPrefixMapping(const Korvo::XML::XMLString& prefix, const Korvo::XML::XMLString& uri) override;

	// LexicalHandler
	void startDTD(const Korvo::XML::XMLString& name, const Korvo::XML::XMLString& publicId, const Korvo::XML::XMLString& systemId) override;
	void endDTD() override;
	void startEntity(const Korvo::XML::XMLString& name) override;
	void endEntity(const Korvo::XML::XMLString& name) override;
	void startCDATA() override;
	void endCDATA() override;
	void comment(const Korvo::XML::XMLChar ch[], int start, int length) override;

private:
	class Tally
		/// How often each string was seen, and in what order they came.
	{
	public:
		void see(const std::string& key);
		std::vector<std::string> ordered(std::size_t minCount) const;
			/// The keys seen at least minCount times, most often first.

	private:
		struct Count
		{
			std::size_t times;
			std::size_t first;
		};
		std::unordered_map<std::string, Count> _counts;
	};

	enum Table
	{
		PREFIXES,
		NAMESPACE_NAMES,
		LOCAL_NAMES,
		OTHER_NCNAMES,
		ATTRIBUTE_VALUES,
		TEXTS,
		OTHER_STRINGS,
		ELEMENT_NAMES,
		ATTRIBUTE_NAMES,
		TABLE_COUNT
	};

	void seeName(Table table, const std::string& prefix, const std::string& namespaceURI, const std::string& localName);
	void seeValue(Table table, const std::string& value);

	std::size_t _maxValueLength;
	Tally _tallies[TABLE_COUNT];
	std::string _firstRoot;
	bool _inCDATA;
	bool _inDTD;
	std::string _text;
};


} } } // namespace Korvo::FastInfoset::Tool


#endif // FastInfoset_VocabularyLearner_INCLUDED
