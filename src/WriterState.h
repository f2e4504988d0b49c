//
// WriterState.h
//
// Library: FastInfoset
// Package: Serializer
// Module:  WriterState
//
// The working storage of a writer, kept from one writer to the next.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_WriterState_INCLUDED
#define FastInfoset_WriterState_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include "Korvo/FastInfoset/FastInfosetWriter.h"
#include "NamespaceContext.h"
#include "QualifiedNameCache.h"
#include <memory>
#include <vector>


namespace Korvo {
namespace FastInfoset {


class WriterState
	/// What a writer fills while it writes and empties when it is done: the
	/// namespace context, the names it has written and the positions of an
	/// element's declarations. A writer takes one with take() and hands it
	/// back with give(): the next writer made on the thread gets it, its
	/// storage already grown, so that writing message after message with a
	/// new writer each time allocates nothing for it.
{
public:
	WriterState() = default;
	~WriterState() = default;
		/// Writers take and give states rather than make them.

	static WriterState* take();
		/// A state with an empty namespace context (the xml and xmlns
		/// prefixes only), whose knownNames the writer renews once its
		/// vocabulary is in place, keeping the names that the thread's last
		/// writer kept, to replay. Belongs to the caller until give().

	static void give(WriterState* pState);
		/// Takes the state back, keeping it for the next take() on this
		/// thread or deleting it. Never throws.

	NamespaceContext          namespaces;
	QualifiedNameCache        knownNames;
	std::vector<std::size_t>  declarations;
		/// Positions in namespaces of the element's own declarations, in prefix order.

	std::vector<FastInfosetWriter::State> states;
	std::vector<std::size_t>              prefixMarks;
	std::vector<std::string>              ownPrefixes;
	FastInfosetWriter::AttributeVec       attributeValues;
		/// Storage only, empty between writers: a writer swaps it with its
		/// members of the same names while it lives.
	std::vector<std::string>              attributeLocalNames;
		/// The local names a writer made for attributes that came without:
		/// kept, so that their strings are not made again.
	std::unique_ptr<DocumentVocabulary>   vocabularies[DocumentVocabulary::VOC_MAP + 1];
		/// The last writer's vocabulary of each kind that finds values,
		/// emptied as a new one is made, or one without tables: the next
		/// writer of the kind takes it instead of making one.
	std::unique_ptr<DocumentVocabulary>   externalCopy;
		/// The last writer's copy of its external vocabulary, back at the
		/// external vocabulary's content, or null: the next writer given an
		/// equal one takes it instead of copying (see useExternalVocabulary()).
		/// Only a small one is kept.

private:
	enum
	{
		MAX_KEPT_NAMES = 4096,
		MAX_KEPT_DEPTH = 256
	};

	bool isSmall() const;
		/// True when the state holds little enough storage to be kept.
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_WriterState_INCLUDED
