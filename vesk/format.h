// printf-style formatting that never depends on the locale: "." is always
// the decimal separator. A null stream is ignored.
#pragma once
#include <cstdarg>
#include <cstdio>
#include <string>
#include "vesk/string.h"

#if defined(__GNUC__)
#define VESK_PRINTF(a, b) __attribute__((format(printf, a, b)))
#else
#define VESK_PRINTF(a, b)
#endif

int vesk_fprintf(FILE* stream, const char* fmt, ...) VESK_PRINTF(2, 3);
int vesk_sprintf(vesk::String& out, const char* fmt, ...) VESK_PRINTF(2, 3);

namespace vesk {
// Formats into a new string (convenience for the C++ side).
std::string Format(const char* fmt, ...) VESK_PRINTF(1, 2);
std::string VFormat(const char* fmt, va_list ap);
const char* GetPrgName();
}  // namespace vesk
