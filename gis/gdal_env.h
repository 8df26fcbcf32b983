// GDAL inside roadx: drivers registered once, and a scope that keeps GDAL's
// messages off the terminal and hands the last error to the caller.
#pragma once
#include <string>
#include <vector>

namespace roadx::gis {

// Registers GDAL's drivers (once per process).
void EnsureGdal();

// While alive, GDAL's warnings and errors are collected instead of printed,
// and the write-only settings roadx wants are in force on this thread:
// no side files (.aux.xml), no SQLite journal (the output is a temporary
// renamed into place only when complete).
class CGdalScope {
public:
    CGdalScope();
    ~CGdalScope();
    CGdalScope(const CGdalScope&) = delete;
    CGdalScope& operator=(const CGdalScope&) = delete;

    // The last error GDAL reported in this scope ("" when none).
    std::string LastError() const;
    size_t ErrorCount() const { return errors_.size(); }

private:
    std::vector<std::string> errors_;
};

}  // namespace roadx::gis
