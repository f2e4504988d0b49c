//
// ConvertFiles.cpp
//
// Converts an XML file to Fast Infoset and back with Converter, and shows
// the sizes.
//
// Usage: ConvertFiles FILE.xml         (writes FILE.fi and FILE.fi.xml in the current directory)
//

#include "Korvo/FastInfoset/Converter.h"
#include "Poco/Path.h"
#include <fstream>
#include <iostream>

using Korvo::FastInfoset::Converter;


int main(int argc, char** argv)
{
	if (argc != 2)
	{
		std::cerr << "usage: ConvertFiles FILE.xml" << std::endl;
		return 2;
	}
	const std::string xmlPath = argv[1];
	const std::string fisPath = Korvo::Path(xmlPath).getBaseName() + ".fi";
	const std::string backPath = fisPath + ".xml";
	try
	{
		{
			std::ifstream xml(xmlPath, std::ios::binary);
			if (!xml) throw Korvo::OpenFileException(xmlPath);
			std::ofstream fis(fisPath, std::ios::binary);
			// Index values and text of up to 32 octets; keep whitespace as it is.
			Converter::convertToFIS(xml, fis, 32, 0);
		}
		{
			std::ifstream fis(fisPath, std::ios::binary);
			std::ofstream back(backPath, std::ios::binary);
			Converter::convertToXML(fis, back, Converter::CONV_WRITE_XML_DECLARATION);
		}
		std::cout << xmlPath << ": " << std::ifstream(xmlPath, std::ios::ate | std::ios::binary).tellg() << " octets" << std::endl
		          << fisPath << ": " << std::ifstream(fisPath, std::ios::ate | std::ios::binary).tellg() << " octets" << std::endl
		          << backPath << ": " << std::ifstream(backPath, std::ios::ate | std::ios::binary).tellg() << " octets" << std::endl;
		return 0;
	}
	catch (const Korvo::Exception& exc)
	{
		// XML syntax errors arrive as the toolkit's SAXParseException, faults
		// of a Fast Infoset document as FISException and its subclasses.
		std::cerr << exc.displayText() << std::endl;
		return 1;
	}
}
