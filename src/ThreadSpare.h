//
// ThreadSpare.h
//
// Library: FastInfoset
// Package: Core
// Module:  ThreadSpare
//
// What a destroyed object leaves, per thread, for the next one of its kind.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_ThreadSpare_INCLUDED
#define FastInfoset_ThreadSpare_INCLUDED


namespace Korvo {
namespace FastInfoset {


template <class T>
class ThreadSpare
	/// One T per thread, value-initialised, where a destroyed parser, writer
	/// or vocabulary leaves storage for the next one made on the same thread.
	/// Once the thread's objects are being destroyed there is none: get()
	/// returns null, so nothing is left in a T that is gone or going.
{
public:
	static T* get()
	{
		return _closed ? nullptr : &_holder.value;
	}

private:
	struct Holder
	{
		T value{};

		~Holder()
		{
			// Before value goes: a destructor it runs must find no spare.
			_closed = true;
		}
	};

	static thread_local Holder _holder;
	static thread_local bool   _closed;
		// Plain, so that it can still be read after the holder is destroyed.
};


template <class T>
thread_local typename ThreadSpare<T>::Holder ThreadSpare<T>::_holder;

template <class T>
thread_local bool ThreadSpare<T>::_closed = false;


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_ThreadSpare_INCLUDED
