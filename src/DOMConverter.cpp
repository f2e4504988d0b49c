//
// DOMConverter.cpp
//
// Library: FastInfoset
// Package: Conversion
// Module:  DOMConverter
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "Korvo/FastInfoset/DOMConverter.h"
#include "Korvo/FastInfoset/FastInfosetParser.h"
#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include "DOMInputFilter.h"
#include "DOMOutputFilter.h"
#include "Poco/DOM/DOMBuilder.h"
#include "Poco/DOM/DOMSerializer.h"


using Korvo::XML::AutoPtr;
using Korvo::XML::Document;
using Korvo::XML::XMLReader;


namespace Korvo {
namespace FastInfoset {


AutoPtr<Document> DOMConverter::parse(std::istream& istr)
{
	FastInfosetParser parser;
	Korvo::XML::InputSource source(istr);
	return parse(parser, &source);
}


AutoPtr<Document> DOMConverter::parse(FastInfosetParser& parser, Korvo::XML::InputSource* pSource)
{
	struct Unset
		/// Leaves no handler behind that dies with this call.
	{
		FastInfosetParser& parser;
		~Unset()
		{
			parser.setContentHandler(0);
			parser.setDTDHandler(0);
			parser.setProperty(XMLReader::PROPERTY_LEXICAL_HANDLER, static_cast<void*>(0));
		}
	} unset{parser};

	DOMInputFilter filter(&parser);
	Korvo::XML::DOMBuilder builder(filter);
	return AutoPtr<Document>(builder.parse(pSource));
}


void DOMConverter::write(const Korvo::XML::Node* pNode, std::ostream& ostr)
{
	FastInfosetWriter writer(ostr);
	write(pNode, writer);
}


void DOMConverter::write(const Korvo::XML::Node* pNode, FastInfosetWriter& writer)
{
	poco_check_ptr (pNode);

	DOMOutputFilter filter(writer);
	Korvo::XML::DOMSerializer serializer;
	serializer.setContentHandler(&filter);
	serializer.setDTDHandler(&filter);
	serializer.setProperty(XMLReader::PROPERTY_LEXICAL_HANDLER, static_cast<Korvo::XML::LexicalHandler*>(&filter));
	if (pNode->nodeType() == Korvo::XML::Node::DOCUMENT_NODE)
	{
		serializer.serialize(pNode);
	}
	else
	{
		filter.startDocument();
		serializer.serialize(pNode);
		filter.endDocument();
	}
}


} } // namespace Korvo::FastInfoset
