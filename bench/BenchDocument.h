//
// BenchDocument.h
//
// The benchmark document: a deterministic catalogue of 100,000 elements
// with attributes and text, delivered as SAX2 events to any content handler.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//

#ifndef Bench_BenchDocument_INCLUDED
#define Bench_BenchDocument_INCLUDED

#include "Korvo/FastInfoset/FastInfoset.h"
#include "Poco/SAX/ContentHandler.h"
#include "Poco/SAX/AttributesImpl.h"
#include <cstddef>
#include <string>
#include <vector>


namespace Bench {


class BenchDocument
	/// A catalogue in one default namespace:
	///
	///     <catalog xmlns="urn:korvo:bench">
	///       <item id="i0000017" category="garden" status="active">
	///         <name>Copper kettle</name>
	///         <price currency="EUR">23.40</price>
	///         <description>... 80 to 120 characters, unique ...</description>
	///         <stock/>
	///       </item>
	///       ...
	///
	/// Element and attribute names repeat throughout; ids are short unique
	/// values; categories, statuses, currencies, names and prices are short
	/// values that repeat; descriptions are longer unique text. Every string
	/// is built by the constructor, so that write() measures the handler and
	/// not the generator.
{
public:
	static constexpr int DEFAULT_ITEMS = 20000;
		/// 20,000 items of 5 elements each, plus the root: 100,001 elements.

	explicit BenchDocument(int items = DEFAULT_ITEMS);

	std::size_t write(Korvo::XML::ContentHandler& handler) const;
		/// Delivers the whole document, startDocument() to endDocument(), and
		/// returns the number of events delivered.

	std::size_t elementCount() const;

	static inline const std::string NAMESPACE = "urn:korvo:bench";

	BenchDocument(const BenchDocument&) = delete;
	BenchDocument& operator = (const BenchDocument&) = delete;

private:
	struct Item
		/// The pointers refer to the document's own lists of repeated values.
	{
		std::string id;
		const std::string* pCategory;
		const std::string* pStatus;
		const std::string* pName;
		std::string price;
		const std::string* pCurrency;
		std::string description;
	};

	static void characters(Korvo::XML::ContentHandler& handler, const std::string& text);

	std::vector<std::string> _categories;
	std::vector<std::string> _statuses;
	std::vector<std::string> _names;
	std::vector<std::string> _currencies;
	std::vector<Item>        _items;
};


//
// inlines
//
inline BenchDocument::BenchDocument(int items):
	_categories{"garden", "kitchen", "tools", "toys", "books", "music", "sports", "office", "lighting", "storage", "outdoor", "bath"},
	_statuses{"active", "inactive", "pending"},
	_currencies{"EUR", "USD", "GBP"}
{
	static const char* const ADJECTIVES[] = {"Copper", "Oak", "Steel", "Linen", "Glass", "Wool", "Cedar", "Brass", "Clay", "Cotton"};
	static const char* const NOUNS[] = {"kettle", "lamp", "chair", "basket", "bowl", "shelf", "clock", "brush", "mirror", "blanket"};
	static const char* const WORDS[] = {
		"handmade", "durable", "finish", "compact", "classic", "design", "everyday", "use", "with", "natural",
		"materials", "easy", "care", "and", "a", "long", "lasting", "warranty", "for", "home"
	};
	for (const char* adjective: ADJECTIVES)
	{
		for (const char* noun: NOUNS) _names.push_back(std::string(adjective) + " " + noun);
	}

	// A small linear congruential generator keeps the document the same on every run.
	unsigned int seed = 12345;
	auto next = [&seed]() { seed = seed * 1103515245u + 12345u; return (seed >> 8) & 0xFFFFFF; };

	_items.reserve(items);
	for (int i = 0; i < items; ++i)
	{
		Item item;
		std::string number = std::to_string(i);
		item.id = "i" + std::string(7 - number.size(), '0') + number;
		item.pCategory = &_categories[next() % _categories.size()];
		item.pStatus = &_statuses[next() % _statuses.size()];
		item.pName = &_names[next() % _names.size()];
		const unsigned int cents = 500 + (next() % 400) * 25;
		std::string fraction = std::to_string(cents % 100);
		item.price = std::to_string(cents / 100) + "." + (fraction.size() < 2 ? "0" : "") + fraction;
		item.pCurrency = &_currencies[next() % _currencies.size()];
		item.description = "Item " + item.id + ":";
		while (item.description.size() < 80 + next() % 40)
		{
			item.description += ' ';
			item.description += WORDS[next() % (sizeof(WORDS)/sizeof(WORDS[0]))];
		}
		_items.push_back(item);
	}
}


inline std::size_t BenchDocument::elementCount() const
{
	return 1 + 5*_items.size();
}


inline void BenchDocument::characters(Korvo::XML::ContentHandler& handler, const std::string& text)
{
	handler.characters(text.data(), 0, static_cast<int>(text.size()));
}


inline std::size_t BenchDocument::write(Korvo::XML::ContentHandler& handler) const
{
	static const std::string EMPTY;
	static const std::string CATALOG = "catalog";
	static const std::string ITEM = "item";
	static const std::string NAME = "name";
	static const std::string PRICE = "price";
	static const std::string DESCRIPTION = "description";
	static const std::string STOCK = "stock";
	static const std::string CDATA = "CDATA";

	Korvo::XML::AttributesImpl none;
	Korvo::XML::AttributesImpl itemAttributes;
	itemAttributes.addAttribute(EMPTY, "id", "id", CDATA, EMPTY);
	itemAttributes.addAttribute(EMPTY, "category", "category", CDATA, EMPTY);
	itemAttributes.addAttribute(EMPTY, "status", "status", CDATA, EMPTY);
	Korvo::XML::AttributesImpl priceAttributes;
	priceAttributes.addAttribute(EMPTY, "currency", "currency", CDATA, EMPTY);

	std::size_t events = 0;
	handler.startDocument();
	handler.startPrefixMapping(EMPTY, NAMESPACE);
	handler.startElement(NAMESPACE, CATALOG, CATALOG, none);
	events += 3;
	for (const Item& item: _items)
	{
		itemAttributes.setValue(0, item.id);
		itemAttributes.setValue(1, *item.pCategory);
		itemAttributes.setValue(2, *item.pStatus);
		priceAttributes.setValue(0, *item.pCurrency);

		handler.startElement(NAMESPACE, ITEM, ITEM, itemAttributes);
		handler.startElement(NAMESPACE, NAME, NAME, none);
		characters(handler, *item.pName);
		handler.endElement(NAMESPACE, NAME, NAME);
		handler.startElement(NAMESPACE, PRICE, PRICE, priceAttributes);
		characters(handler, item.price);
		handler.endElement(NAMESPACE, PRICE, PRICE);
		handler.startElement(NAMESPACE, DESCRIPTION, DESCRIPTION, none);
		characters(handler, item.description);
		handler.endElement(NAMESPACE, DESCRIPTION, DESCRIPTION);
		handler.startElement(NAMESPACE, STOCK, STOCK, none);
		handler.endElement(NAMESPACE, STOCK, STOCK);
		handler.endElement(NAMESPACE, ITEM, ITEM);
		events += 13;
	}
	handler.endElement(NAMESPACE, CATALOG, CATALOG);
	handler.endPrefixMapping(EMPTY);
	handler.endDocument();
	events += 3;
	return events;
}


} // namespace Bench


#endif // Bench_BenchDocument_INCLUDED
