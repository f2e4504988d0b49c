//
// Platform.h
//
// Library: FastInfoset
// Package: FastInfoset
// Module:  Platform
//
// Brings the SAX2 toolkit and its foundation library under the family's
// Korvo names, so that the library and its users say Korvo::XML::ContentHandler,
// Korvo::AutoPtr, Korvo::RuntimeException, and so on.
//
// Copyright (c) 2026, Korvo FastInfoset developers.
//
// SPDX-License-Identifier:	BSL-1.0
//


#ifndef FastInfoset_Platform_INCLUDED
#define FastInfoset_Platform_INCLUDED


#include "Poco/Foundation.h"
#include "Poco/AutoPtr.h"
#include "Poco/RefCountedObject.h"
#include "Poco/Exception.h"
#include "Poco/Bugcheck.h"
#include "Poco/ByteOrder.h"
#include "Poco/UUID.h"
#include "Poco/Types.h"
#include "Poco/XML/XML.h"
#include "Poco/XML/XMLString.h"
#include "Poco/XML/Name.h"
#include "Poco/SAX/XMLReader.h"
#include "Poco/SAX/ContentHandler.h"
#include "Poco/SAX/LexicalHandler.h"
#include "Poco/SAX/DTDHandler.h"
#include "Poco/SAX/DeclHandler.h"
#include "Poco/SAX/EntityResolver.h"
#include "Poco/SAX/ErrorHandler.h"
#include "Poco/SAX/Attributes.h"
#include "Poco/SAX/AttributesImpl.h"
#include "Poco/SAX/NamespaceSupport.h"
#include "Poco/SAX/InputSource.h"
#include "Poco/SAX/SAXException.h"


namespace Korvo {


// The foundation library (AutoPtr, RefCountedObject, RuntimeException,
// IOException, UUID, Bugcheck, ByteOrder, NumberFormatter, ...) and, through
// it, the SAX2 toolkit as Korvo::XML (XMLReader, ContentHandler,
// AttributesImpl, NamespaceSupport, SAXParser, XMLWriter, ...).
using namespace ::Poco;


} // namespace Korvo


#endif // FastInfoset_Platform_INCLUDED
