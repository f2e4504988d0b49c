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


namespace Korvo {
namespace FastInfoset {


namespace
{
	class SpareState
		/// The state of the thread's last writer, or none. Once the thread's
		/// objects are being destroyed it keeps nothing.
	{
	public:
		~SpareState()
		{
			_closed = true;
			delete _pState;
		}

		static WriterState*& slot()
		{
			return _spare._pState;
		}

		static bool closed()
		{
			return _closed;
		}

	private:
		WriterState* _pState = nullptr;

		static thread_local SpareState _spare;
		static thread_local bool       _closed;
			// Plain, so that it can still be read after the spare is destroyed.
	};

	thread_local SpareState SpareState::_spare;
	thread_local bool       SpareState::_closed = false;
}


WriterState* WriterState::take(const DocumentVocabulary& vocabulary)
{
	WriterState* pState = nullptr;
	if (!SpareState::closed())
	{
		pState = SpareState::slot();
		SpareState::slot() = nullptr;
	}
	if (pState)
		pState->namespaces.reset();
	else
		pState = new WriterState;
	pState->knownNames.reset(vocabulary);
	return pState;
}


void WriterState::give(WriterState* pState)
{
	if (!pState) return;
	if (SpareState::closed() || SpareState::slot() || !pState->isSmall())
	{
		delete pState;
		return;
	}
	SpareState::slot() = pState;
}


bool WriterState::isSmall() const
{
	return knownNames.storage() <= MAX_KEPT_NAMES && states.capacity() <= MAX_KEPT_DEPTH
		&& prefixMarks.capacity() <= MAX_KEPT_DEPTH && ownPrefixes.capacity() <= MAX_KEPT_DEPTH;
}


} } // namespace Korvo::FastInfoset
