// The host trace: when a recorder is installed, every builder call and every
// message or question goes to it as one line: the operation name, then its
// arguments separated by single blanks. Doubles are written so that they read
// back to the same value (%.17g; inf, -inf, nan), ints in decimal, bools as
// true/false, strings as JSON string literals.
#pragma once
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "vesk/geom.h"

class CPlaniElem;

class CTraceSink {
public:
    virtual ~CTraceSink() = default;
    virtual void WriteLine(const std::string& line) = 0;
};

// Collects lines in memory (tests).
class CTraceMemory : public CTraceSink {
public:
    void WriteLine(const std::string& line) override { lines.push_back(line); }
    std::vector<std::string> lines;
};

// Writes lines to a file or standard output, flushing at the end.
class CTraceFile : public CTraceSink {
public:
    explicit CTraceFile(FILE* f) : f_(f) {}
    void WriteLine(const std::string& line) override;

private:
    FILE* f_;
};

// The installed sink, or null when nothing records.
CTraceSink* HostTrace();

// Installs a sink for the lifetime of the scope.
class CTraceScope {
public:
    explicit CTraceScope(CTraceSink* sink);
    ~CTraceScope();
    CTraceScope(const CTraceScope&) = delete;
    CTraceScope& operator=(const CTraceScope&) = delete;

private:
    CTraceSink* prev_;
};

// Builds one trace line.
class CTraceLine {
public:
    explicit CTraceLine(std::string_view op) : s_(op) {}
    CTraceLine& D(double v);
    CTraceLine& I(long long v);
    CTraceLine& B(bool v);
    CTraceLine& S(std::string_view v);
    CTraceLine& P(const vesk::geom::PNT_2D& p) { return D(p.x).D(p.y); }
    CTraceLine& V(const vesk::geom::VECTOR_2D& v) { return D(v.x).D(v.y); }
    CTraceLine& P3(const vesk::geom::PNT_3D& p) { return D(p.x).D(p.y).D(p.z); }
    // Appends raw text after a blank (a JSON object, for instance).
    CTraceLine& Raw(std::string_view v);
    const std::string& str() const { return s_; }
    // Sends the line to the installed sink, if any.
    void Emit() const;

private:
    std::string s_;
};

std::string TraceDouble(double v);
std::string TraceJsonString(std::string_view v);
