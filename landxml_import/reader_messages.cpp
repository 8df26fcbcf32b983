#include "landxml_import/reader_messages.h"

namespace {

constexpr size_t kMaxShown = 40;

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f'; }
bool IsContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

}  // namespace

std::string QuoteForMessage(std::string_view text) {
    std::string out = "\"";
    size_t shown = 0;
    bool pendingBlank = false;
    bool pendingBreak = false;
    size_t i = 0;
    while (i < text.size() && IsBlank(text[i])) ++i;
    for (; i < text.size(); ++i) {
        const char c = text[i];
        if (IsBlank(c)) {
            pendingBlank = true;
            pendingBreak = pendingBreak || c == '\n' || c == '\r';
            continue;
        }
        if (shown >= kMaxShown && !IsContinuation(c)) {
            out += "...";
            break;
        }
        if (pendingBlank) {
            out += pendingBreak ? "\\n" : " ";
            ++shown;
            pendingBlank = pendingBreak = false;
        }
        // Other control characters would break the line of the message.
        out += static_cast<unsigned char>(c) < 0x20 ? '?' : c;
        if (!IsContinuation(c)) ++shown;
    }
    out += '"';
    return out;
}

std::string CountOfNumbers(size_t count) {
    return std::to_string(count) + (count == 1 ? " number" : " numbers");
}
