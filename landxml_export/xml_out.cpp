#include "landxml_export/xml_out.h"

namespace roadx::landxml {

namespace {

// The entity for a character that cannot stand as it is, or null.
const char* Entity(char c) {
    switch (c) {
        case '&': return "&amp;";
        case '<': return "&lt;";
        case '>': return "&gt;";
        case '"': return "&quot;";
        default: return nullptr;
    }
}

}  // namespace

void PutText(vesk::COutBuffer& out, std::string_view text) {
    size_t from = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        const char* e = Entity(text[i]);
        if (!e) continue;
        out.Str(text.substr(from, i - from));
        out.Str(e);
        from = i + 1;
    }
    out.Str(text.substr(from));
}

}  // namespace roadx::landxml
