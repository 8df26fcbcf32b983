// Running the roadx program (and the scripts that check it) from a test:
// a shell command's exit code and output, and the files of a data folder.
#pragma once
#include <sys/wait.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

namespace clitest {

inline std::string ShellQuote(const std::string& s) {
    std::string out = "'";
    for (char c : s) out += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return out + "'";
}

struct TCommandResult {
    int exitCode = -1;
    std::string output;
};

// Runs a shell command; its standard output (and standard error when the
// command redirects it).
inline TCommandResult RunCommand(const std::string& command) {
    TCommandResult r;
    FILE* p = popen(("LC_ALL=C PYTHONIOENCODING=utf-8 " + command).c_str(), "r");
    if (!p) return r;
    char buf[4096];
    size_t n;
    while ((n = std::fread(buf, 1, sizeof buf, p)) > 0) r.output.append(buf, n);
    const int status = pclose(p);
    r.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return r;
}

// The .xml files of a folder, sorted.
inline std::vector<std::string> FilesIn(const std::string& dir) {
    std::vector<std::string> files;
    for (const auto& e : std::filesystem::directory_iterator(dir))
        if (e.is_regular_file() && e.path().extension() == ".xml") files.push_back(e.path().filename().string());
    std::sort(files.begin(), files.end());
    return files;
}

// A test name from a file name: its stem, other characters than letters and
// digits made underscores.
inline std::string TestName(const std::string& file) {
    std::string n;
    for (char c : file.substr(0, file.rfind('.'))) n += std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
    return n;
}

}  // namespace clitest
