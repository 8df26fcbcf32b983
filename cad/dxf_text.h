// Text of drawing files. R12 and R2000 files are not UTF-8: they are read
// in the code page that the header names, ANSI_1252 here. Texts of entities
// are written in ASCII with every other character as a \U+XXXX escape
// (UTF-16 code units, so characters beyond U+FFFF take a surrogate pair),
// which readers of these versions decode. Names (layers, blocks) are
// written in the code page itself where it has the character, and as the
// same escapes where it has not, so that every name keeps every character.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>

namespace roadx::cad::dxf {

enum class EEncoding {
    Text,  // ASCII and escapes; '^' becomes "^ " (a bare caret starts a control code)
    Name,  // code page 1252 bytes where possible, escapes otherwise; carets kept
};

// Appends utf8 as one group value: control characters (a line break would
// end the value) become blanks, invalid UTF-8 bytes become '?'.
void AppendDxfText(std::string& out, std::string_view utf8, EEncoding enc);
std::string EncodeDxfText(std::string_view utf8, EEncoding enc);

// The byte of code page 1252 for a code point, or 0 when it has none.
unsigned char ToCp1252(uint32_t cp);

// A table (layer, block) name that readers accept: the characters
// < > / \ " : ; ? * | = `, control characters and broken UTF-8 become '_';
// empty becomes "_". Characters code page 1252 lacks are kept (the writer
// escapes them). The result is still UTF-8; it is encoded when written.
std::string SanitizeTableName(std::string_view utf8);

}  // namespace roadx::cad::dxf
