//
// Encoding.h
//
// Library: FastInfoset
// Package: Encodings
// Module:  Encoding
//
// The reference-counted base of typed values.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_Encoding_INCLUDED
#define FastInfoset_Encoding_INCLUDED


#include "Korvo/FastInfoset/FastInfoset.h"
#include <string>
#include <cstddef>


namespace Korvo {
namespace FastInfoset {


class BitStreamWriter;
class BitStreamReader;
class FISContentHandler;


class FastInfoset_API Encoding: public Korvo::RefCountedObject
	/// One typed value (a list of numbers, a block of octets, ...) that a
	/// document stores with an encoding algorithm. It renders itself as text
	/// (content()), writes itself to a bit stream and reports itself to a
	/// handler. Held through Korvo::AutoPtr<Encoding>.
{
public:
	using Ptr = Korvo::AutoPtr<Encoding>;

	using EncodeMethod = void (*)(BitStreamWriter& writer, const std::string& str);
		/// Writes the encoded octets of a text.
	using CheckMethod = int (*)(const std::string& str);
		/// Scores a text: 0 when the algorithm cannot encode it, else the
		/// number of octets the encoded data would take.
	using DecodeMethod = Korvo::AutoPtr<Encoding> (*)(BitStreamReader& reader);
		/// Reads encoded octets and returns the value.

	Encoding();
	explicit Encoding(const std::string& content);
	Encoding(const char* data, std::size_t length);
		/// Keeps the raw octets as the content string.

	virtual int type() const = 0;
		/// The algorithm index.

	virtual bool merge(const Encoding& enc) = 0;
		/// Appends enc's values when it has the same type; returns whether it did.

	virtual void write(BitStreamWriter& writer) const = 0;
		/// Writes the encoded octets (length and data).

	virtual DecodeMethod decodeMethod() const = 0;
	virtual CheckMethod checkMethod() const = 0;
	virtual EncodeMethod encodeMethod() const = 0;

	virtual void handle(Korvo::XML::ContentHandler* pHandler) const;
		/// Reports content() as characters when pHandler is not null.

	virtual void handle(FISContentHandler* pHandler) const = 0;
		/// Reports the typed values through the handler's typed callbacks.

	virtual const std::string& content() const;
	virtual std::string& content();
		/// The text form. A decoded value builds it on first use, so values
		/// delivered only as typed calls are never rendered as text.

	virtual void createContent() = 0;
		/// Rebuilds the text form from the typed data.

	virtual ~Encoding();

protected:
	void deferContent();
		/// Leaves the text form to be built by the first content() call.

	std::string _content;

private:
	bool _contentDeferred;
};


} } // namespace Korvo::FastInfoset


#endif // FastInfoset_Encoding_INCLUDED
