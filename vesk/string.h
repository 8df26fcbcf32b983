// vesk::String: the host's 8-bit string. Inside roadx every text is UTF-8.
#pragma once
#include <string>
#include <string_view>

namespace vesk {

class String : public std::string {
public:
    using std::string::string;
    String() = default;
    String(const std::string& s) : std::string(s) {}
    String(std::string&& s) : std::string(std::move(s)) {}
    String(std::string_view s) : std::string(s) {}

    const char* GetString() const { return c_str(); }
    int GetLength() const { return static_cast<int>(size()); }
    bool IsEmpty() const { return empty(); }
};

}  // namespace vesk

// The host's other string names are the same 8-bit UTF-8 string here.
using CString = vesk::String;
