#include "vesk/format.h"

#include <clocale>
#include <cstdarg>
#include <locale.h>
#include <vector>

namespace {

// The "C" locale made once; uselocale() switches only the calling thread, so
// formatting is locale-proof without touching the process-wide setting.
locale_t CLocale() {
    static locale_t loc = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
    return loc;
}

class CLocaleScope {
public:
    CLocaleScope() : old_(uselocale(CLocale())) {}
    ~CLocaleScope() { uselocale(old_); }
    CLocaleScope(const CLocaleScope&) = delete;
    CLocaleScope& operator=(const CLocaleScope&) = delete;

private:
    locale_t old_;
};

}  // namespace

namespace vesk {

std::string VFormat(const char* fmt, va_list ap) {
    CLocaleScope scope;
    char small[256];
    va_list copy;
    va_copy(copy, ap);
    const int n = std::vsnprintf(small, sizeof small, fmt, copy);
    va_end(copy);
    if (n < 0) return {};
    if (static_cast<size_t>(n) < sizeof small) return std::string(small, static_cast<size_t>(n));
    std::string big(static_cast<size_t>(n) + 1, '\0');
    std::vsnprintf(big.data(), big.size(), fmt, ap);
    big.resize(static_cast<size_t>(n));
    return big;
}

}  // namespace vesk

int vesk_fprintf(FILE* stream, const char* fmt, ...) {
    if (stream == nullptr || fmt == nullptr) return 0;
    CLocaleScope scope;
    va_list ap;
    va_start(ap, fmt);
    const int n = std::vfprintf(stream, fmt, ap);
    va_end(ap);
    return n;
}

int vesk_sprintf(vesk::String& out, const char* fmt, ...) {
    if (fmt == nullptr) { out.clear(); return 0; }
    va_list ap;
    va_start(ap, fmt);
    out = vesk::VFormat(fmt, ap);
    va_end(ap);
    return static_cast<int>(out.size());
}

namespace vesk {

std::string Format(const char* fmt, ...) {
    va_list ap;
    va_start(ap, fmt);
    std::string s = VFormat(fmt, ap);
    va_end(ap);
    return s;
}

const char* GetPrgName() { return "roadx"; }

}  // namespace vesk
