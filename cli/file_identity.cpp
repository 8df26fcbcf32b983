#include "cli/file_identity.h"

#include <sys/stat.h>

#include <filesystem>

namespace roadx::cli {

namespace {

// The path with its folder resolved (links, "..", "."), for a file that
// does not exist yet.
std::string Resolved(const std::string& path) {
    std::error_code ec;
    const std::filesystem::path abs = std::filesystem::absolute(path, ec);
    if (ec) return path;
    const std::filesystem::path r = std::filesystem::weakly_canonical(abs, ec);
    return ec ? abs.lexically_normal().string() : r.string();
}

}  // namespace

bool SameFile(const std::string& a, const std::string& b) {
    struct stat sa{}, sb{};
    const bool ea = ::stat(a.c_str(), &sa) == 0;
    const bool eb = ::stat(b.c_str(), &sb) == 0;
    if (ea && eb) return sa.st_dev == sb.st_dev && sa.st_ino == sb.st_ino;
    return Resolved(a) == Resolved(b);
}

}  // namespace roadx::cli
