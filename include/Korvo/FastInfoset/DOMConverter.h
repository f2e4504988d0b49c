//
// DOMConverter.h
//
// Library: FastInfoset
// Package: Conversion
// Module:  DOMConverter
//
// Fast Infoset documents into and out of the toolkit's DOM trees.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_DOMConverter_INCLUDED
#define FastInfoset_DOMConverter_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Poco/DOM/Document.h"
#include "Poco/DOM/AutoPtr.h"
#include <istream>
#include <ostream>


namespace Korvo {
namespace FastInfoset {


class FastInfosetParser;
class FastInfosetWriter;


class FastInfoset_API DOMConverter
	/// Loads a Fast Infoset document into a DOM tree and writes a DOM tree
	/// as a Fast Infoset document, with the toolkit's DOMBuilder and
	/// DOMSerializer.
	///
	/// A tree loaded here is the tree the toolkit's DOMParser builds from
	/// the same document as XML text: elements and attributes with their
	/// namespace URIs and prefixed names, text, CDATA sections, comments,
	/// processing instructions and the document type with its notations
	/// and unparsed entities. Like the toolkit's trees, it holds no
	/// namespace declarations as attributes. The document type takes the
	/// root element's name, which a Fast Infoset document does not keep.
	///
	/// Written out, each element declares the namespaces its name and its
	/// attributes' names need, where they are not already in scope; a tree
	/// that does hold declaration attributes (in the xmlns namespace) has
	/// them written as declarations. Typed values arrive in a tree as text.
	///
	/// Faults of a document throw FISException and its subclasses, and no
	/// partial tree is returned.
{
public:
	static Korvo::XML::AutoPtr<Korvo::XML::Document> parse(std::istream& istr);
		/// Reads one Fast Infoset document from istr into a new Document.

	static Korvo::XML::AutoPtr<Korvo::XML::Document> parse(FastInfosetParser& parser, Korvo::XML::InputSource* pSource);
		/// Reads a document with parser, whose vocabulary and features are
		/// used as set. The parser's content, DTD and lexical handlers are
		/// left unset afterwards.

	static void write(const Korvo::XML::Node* pNode, std::ostream& ostr);
		/// Writes pNode as a Fast Infoset document with a default writer.
		/// A node other than a Document (an Element, say) is written as
		/// the content of a document.

	static void write(const Korvo::XML::Node* pNode, FastInfosetWriter& writer);
		/// Writes pNode through writer, with the writer's settings and
		/// vocabulary. The writer must not have started a document.
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_DOMConverter_INCLUDED
