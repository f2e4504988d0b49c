//
// InputEncodings.cpp
//
// Library: FastInfoset
// Package: Conversion
// Module:  InputEncodings
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#include "InputEncodings.h"
#include "Poco/Latin2Encoding.h"
#include "Poco/Latin9Encoding.h"
#include "Poco/Windows1250Encoding.h"
#include "Poco/Windows1251Encoding.h"
#include "Poco/ISO8859_3Encoding.h"
#include "Poco/ISO8859_4Encoding.h"
#include "Poco/ISO8859_5Encoding.h"
#include "Poco/ISO8859_6Encoding.h"
#include "Poco/ISO8859_7Encoding.h"
#include "Poco/ISO8859_8Encoding.h"
#include "Poco/ISO8859_9Encoding.h"
#include "Poco/ISO8859_10Encoding.h"
#include "Poco/ISO8859_11Encoding.h"
#include "Poco/ISO8859_13Encoding.h"
#include "Poco/ISO8859_14Encoding.h"
#include "Poco/ISO8859_16Encoding.h"
#include "Poco/Windows1253Encoding.h"
#include "Poco/Windows1254Encoding.h"
#include "Poco/Windows1255Encoding.h"
#include "Poco/Windows1256Encoding.h"
#include "Poco/Windows1257Encoding.h"
#include "Poco/Windows1258Encoding.h"
#include "Poco/Windows874Encoding.h"
#include "Poco/Windows932Encoding.h"
#include "Poco/Windows936Encoding.h"
#include "Poco/Windows949Encoding.h"
#include "Poco/Ascii.h"
#include <cstring>


namespace Korvo {
namespace FastInfoset {


namespace
{
	template <class E>
	Korvo::TextEncoding* create()
	{
		return new E;
	}

	struct Alias
	{
		const char* names;
		const char* canonicalName;
	};

	// Names of the parser's own encodings that it does not know itself.
	const Alias PARSER_NAMES[] =
	{
		{"UTF-8|UTF8", "UTF-8"},
		{"UTF-16|UTF16", "UTF-16"},
		{"UTF-16BE", "UTF-16BE"},
		{"UTF-16LE", "UTF-16LE"},
		{"US-ASCII|ASCII|ANSI_X3.4-1968", "US-ASCII"},
		{"ISO-8859-1|ISO8859-1|ISO_8859-1|Latin1|L1", "ISO-8859-1"}
	};

	// Names common on the web that iconv knows by another name.
	const Alias ICONV_NAMES[] =
	{
		{"x-sjis", "SHIFT_JIS"},
		{"x-euc-jp", "EUC-JP"},
		{"MacRoman|x-mac-roman", "MACINTOSH"},
		{"x-mac-cyrillic", "MAC-CYRILLIC"},
		{"MacCentralEurRoman|MacCentralEurope|x-mac-ce", "MAC-CENTRALEUROPE"}
	};

	bool equalsIgnoringCase(const char* begin, const char* end, const std::string& name)
	{
		if (static_cast<std::size_t>(end - begin) != name.size()) return false;
		for (std::size_t i = 0; i < name.size(); ++i)
		{
			if (Korvo::Ascii::toLower(begin[i]) != Korvo::Ascii::toLower(name[i])) return false;
		}
		return true;
	}

	bool isNamed(const char* names, const std::string& name)
		/// Whether name is one of names, in any case.
	{
		for (const char* p = names; ; ++p)
		{
			const char* end = std::strchr(p, '|');
			if (!end) return equalsIgnoringCase(p, p + std::strlen(p), name);
			if (equalsIgnoringCase(p, end, name)) return true;
			p = end;
		}
	}

	std::string firstName(const char* names)
	{
		const std::string all(names);
		return all.substr(0, all.find('|'));
	}
}


const std::vector<InputEncodings::PlatformEntry>& InputEncodings::platformEntries()
{
	// Each one decodes every octet and octet pair as iconv does under
	// iconvName (the tests compare them all). The platform's windows-1252,
	// windows-950, Mac code pages and its tables under standard names that
	// differ from those code pages are not here.
	static const std::vector<PlatformEntry> ENTRIES =
	{
		{"ISO-8859-2|ISO8859-2|ISO_8859-2|Latin2|L2", "ISO-8859-2", create<Korvo::Latin2Encoding>},
		{"ISO-8859-3|ISO8859-3|ISO_8859-3", "ISO-8859-3", create<Korvo::ISO8859_3Encoding>},
		{"ISO-8859-4|ISO8859-4|ISO_8859-4", "ISO-8859-4", create<Korvo::ISO8859_4Encoding>},
		{"ISO-8859-5|ISO8859-5|ISO_8859-5", "ISO-8859-5", create<Korvo::ISO8859_5Encoding>},
		{"ISO-8859-6|ISO8859-6|ISO_8859-6", "ISO-8859-6", create<Korvo::ISO8859_6Encoding>},
		{"ISO-8859-7|ISO8859-7|ISO_8859-7", "ISO-8859-7", create<Korvo::ISO8859_7Encoding>},
		{"ISO-8859-8|ISO8859-8|ISO_8859-8", "ISO-8859-8", create<Korvo::ISO8859_8Encoding>},
		{"ISO-8859-9|ISO8859-9|ISO_8859-9", "ISO-8859-9", create<Korvo::ISO8859_9Encoding>},
		{"ISO-8859-10|ISO8859-10|ISO_8859-10", "ISO-8859-10", create<Korvo::ISO8859_10Encoding>},
		{"ISO-8859-11|ISO8859-11|ISO_8859-11", "ISO-8859-11", create<Korvo::ISO8859_11Encoding>},
		{"ISO-8859-13|ISO8859-13|ISO_8859-13", "ISO-8859-13", create<Korvo::ISO8859_13Encoding>},
		{"ISO-8859-14|ISO8859-14|ISO_8859-14", "ISO-8859-14", create<Korvo::ISO8859_14Encoding>},
		{"ISO-8859-15|ISO8859-15|ISO_8859-15|Latin-9|Latin9", "ISO-8859-15", create<Korvo::Latin9Encoding>},
		{"ISO-8859-16|ISO8859-16|ISO_8859-16", "ISO-8859-16", create<Korvo::ISO8859_16Encoding>},
		{"windows-1250|cp1250|x-cp1250", "CP1250", create<Korvo::Windows1250Encoding>},
		{"windows-1251|cp1251|x-cp1251", "CP1251", create<Korvo::Windows1251Encoding>},
		{"windows-1253|cp1253|x-cp1253", "CP1253", create<Korvo::Windows1253Encoding>},
		{"windows-1254|cp1254|x-cp1254", "CP1254", create<Korvo::Windows1254Encoding>},
		{"windows-1255|cp1255|x-cp1255", "CP1255", create<Korvo::Windows1255Encoding>},
		{"windows-1256|cp1256|x-cp1256", "CP1256", create<Korvo::Windows1256Encoding>},
		{"windows-1257|cp1257|x-cp1257", "CP1257", create<Korvo::Windows1257Encoding>},
		{"windows-1258|cp1258|x-cp1258", "CP1258", create<Korvo::Windows1258Encoding>},
		{"windows-874|cp874|x-windows-874", "CP874", create<Korvo::Windows874Encoding>},
		{"windows-932|cp932|MS932|Windows-31J|csWindows31J", "CP932", create<Korvo::Windows932Encoding>},
		{"windows-936|cp936|MS936", "CP936", create<Korvo::Windows936Encoding>},
		{"windows-949|cp949|MS949|UHC|ks_c_5601-1987", "CP949", create<Korvo::Windows949Encoding>}
	};
	return ENTRIES;
}


InputEncodings::Decoder InputEncodings::find(const std::string& name, std::string& canonicalName)
{
	for (const auto& alias: PARSER_NAMES)
	{
		if (isNamed(alias.names, name))
		{
			canonicalName = alias.canonicalName;
			return PARSER;
		}
	}
	for (const auto& entry: platformEntries())
	{
		if (isNamed(entry.names, name))
		{
			canonicalName = firstName(entry.names);
			return PLATFORM;
		}
	}
	canonicalName = name;
	for (const auto& alias: ICONV_NAMES)
	{
		if (isNamed(alias.names, name)) canonicalName = alias.canonicalName;
	}
	return ICONV;
}


std::unique_ptr<Korvo::TextEncoding> InputEncodings::platformEncoding(const std::string& canonicalName)
{
	for (const auto& entry: platformEntries())
	{
		if (firstName(entry.names) == canonicalName) return std::unique_ptr<Korvo::TextEncoding>(entry.create());
	}
	return nullptr;
}


} } // namespace Korvo::FastInfoset
