//
// WriterState.cpp
//
// Library: FastInfoset
// Package: Serializer
// Module:  WriterState
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "WriterState.h"
#include "ThreadSpare.h"
#include <memory>


namespace Korvo {
namespace FastInfoset {


namespace
{
	using SpareState = ThreadSpare<std::unique_ptr<WriterState>>;
		// The state of the thread's last writer, or none.
}


WriterState* WriterState::take()
{
	std::unique_ptr<WriterState>* pSpare = SpareState::get();
	WriterState* pState = pSpare ? pSpare->release() : nullptr;
	if (pState)
		pState->namespaces.reset();
	else
		pState = new WriterState;
	return pState;
}


void WriterState::give(WriterState* pState)
{
	if (!pState) return;
	std::unique_ptr<WriterState>* pSpare = SpareState::get();
	if (!pSpare || *pSpare || !pState->isSmall())
	{
		delete pState;
		return;
	}
	pSpare->reset(pState);
}


bool WriterState::isSmall() const
{
	return knownNames.storage() <= MAX_KEPT_NAMES && states.capacity() <= MAX_KEPT_DEPTH
		&& prefixMarks.capacity() <= MAX_KEPT_DEPTH && ownPrefixes.capacity() <= MAX_KEPT_DEPTH
		&& attributeValues.capacity() <= MAX_KEPT_DEPTH && attributeLocalNames.size() <= MAX_KEPT_DEPTH;
}


} } // namespace Korvo::FastInfoset
