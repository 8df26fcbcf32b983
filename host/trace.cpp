#include "host/trace.h"

#include <cmath>
#include <nlohmann/json.hpp>

#include "vesk/format.h"

namespace {
CTraceSink* g_sink = nullptr;
}

CTraceSink* HostTrace() { return g_sink; }

CTraceScope::CTraceScope(CTraceSink* sink) : prev_(g_sink) { g_sink = sink; }
CTraceScope::~CTraceScope() { g_sink = prev_; }

void CTraceFile::WriteLine(const std::string& line) {
    if (!f_) return;
    std::fwrite(line.data(), 1, line.size(), f_);
    std::fputc('\n', f_);
}

std::string TraceDouble(double v) {
    if (std::isnan(v)) return "nan";
    if (std::isinf(v)) return v < 0 ? "-inf" : "inf";
    return vesk::Format("%.17g", v);
}

std::string TraceJsonString(std::string_view v) {
    // Invalid UTF-8 is replaced rather than thrown on: a trace never fails.
    return nlohmann::json(std::string(v)).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

CTraceLine& CTraceLine::D(double v) {
    s_ += ' ';
    s_ += TraceDouble(v);
    return *this;
}

CTraceLine& CTraceLine::I(long long v) {
    s_ += ' ';
    s_ += std::to_string(v);
    return *this;
}

CTraceLine& CTraceLine::B(bool v) {
    s_ += v ? " true" : " false";
    return *this;
}

CTraceLine& CTraceLine::S(std::string_view v) {
    s_ += ' ';
    s_ += TraceJsonString(v);
    return *this;
}

CTraceLine& CTraceLine::Raw(std::string_view v) {
    s_ += ' ';
    s_ += v;
    return *this;
}

void CTraceLine::Emit() const {
    if (g_sink) g_sink->WriteLine(s_);
}
