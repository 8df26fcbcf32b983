// CDxfOut: the group stream of a drawing file, written through one large
// buffer straight to a file descriptor, so that the result of every write
// (disk full, not allowed) is known exactly. Numbers are formatted with
// std::to_chars: coordinates in the shortest text that reads back as the
// same double, never depending on the locale.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "cad/dxf_text.h"

namespace roadx::cad::dxf {

class CDxfOut {
public:
    CDxfOut() = default;
    ~CDxfOut();
    CDxfOut(const CDxfOut&) = delete;
    CDxfOut& operator=(const CDxfOut&) = delete;

    // Creates or truncates path. Returns a roadx::cad::kSave... result.
    int Open(const std::string& path);
    // Flushes and closes; a failure of any write so far, of the flush or of
    // the close is the result. A regular file that failed is removed.
    int Close();
    bool Failed() const { return result_ != 0; }

    void Str(int code, std::string_view value);
    // Encodes UTF-8 text with dxf::AppendDxfText.
    void Text(int code, std::string_view utf8, EEncoding enc);
    void Int(int code, long long value);
    void Real(int code, double value);
    // Angles and other values that need no exact round trip: 15 significant
    // digits, so that 89.99999999999999 is written as 90.0.
    void Approx(int code, double value);
    void Hex(int code, uint64_t value);
    void Point(int code, double x, double y, double z) { Real(code, x); Real(code + 10, y); Real(code + 20, z); }

private:
    static constexpr size_t kBufSize = 1 << 20;
    // Every group fits in this much room, except long strings.
    static constexpr size_t kMaxGroup = 64;

    void Code(int code);
    void Room(size_t n) { if (buf_.size() - used_ < n) Flush(); }
    void Flush();
    void SetError(int err);

    int fd_ = -1;
    bool regular_ = false;
    std::string path_;
    std::vector<char> buf_;
    size_t used_ = 0;
    int result_ = 0;
    std::string scratch_;
};

// Writes the shortest round-trip text of v into p (room for 32 chars), with a
// ".0" where the text would otherwise read as an integer. Returns the end.
char* FormatReal(char* p, double v);

}  // namespace roadx::cad::dxf
