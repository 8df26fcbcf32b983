// Bringing the bytes of an XML file to UTF-8 before they are parsed. Everything
// inside roadx is UTF-8, while LandXML files written on Windows often declare
// ISO-8859-1 or windows-1252; those single-byte texts are converted here.
#pragma once
#include <string>
#include <string_view>

#include <pugixml.hpp>

enum class TXmlDeclaredEncoding { UTF8, LATIN1, CP1252, WIDE };

// What the start of a file says about its encoding: a UTF-16/32 byte order
// mark or zero bytes (WIDE), else the encoding named in the XML declaration
// (names compared without regard to case); UTF-8 for anything else.
TXmlDeclaredEncoding DetectXmlEncoding(std::string_view bytes);

// Appends the UTF-8 form of one ISO-8859-1 / windows-1252 byte.
void AppendLatin1AsUtf8(unsigned char c, std::string& out);
void AppendCp1252AsUtf8(unsigned char c, std::string& out);

// Rewrites text in place as UTF-8 (dropping a UTF-8 byte order mark) and
// returns the encoding to parse it with: encoding_utf8, or encoding_auto for
// UTF-16/32 texts, which the parser converts itself.
pugi::xml_encoding ConvertXmlTextToUtf8(std::string& text);
