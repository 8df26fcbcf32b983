// CDxfOut: the group stream of a drawing file, written through one large
// buffer straight to the descriptor of a temporary file beside the target
// (vesk::CAtomicFile), so that the result of every write (disk full, not
// allowed) is known exactly and a failed save leaves an older file of the
// target's name as it was. Numbers are formatted with
// std::to_chars: coordinates in the shortest text that reads back as the
// same double, never depending on the locale.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "cad/dxf_text.h"
#include "vesk/atomic_file.h"

namespace roadx::cad::dxf {

class CDxfOut {
public:
    CDxfOut() = default;
    CDxfOut(const CDxfOut&) = delete;
    CDxfOut& operator=(const CDxfOut&) = delete;

    // Creates the temporary for path. Returns a roadx::cad::kSave... result.
    int Open(const std::string& path);
    // Flushes, closes and renames the temporary over path; a failure of any
    // write so far, of the flush or of the close is the result, and then the
    // temporary is removed and path left as it was.
    int Close();
    bool Failed() const { return result_ != 0; }
    // Why the file could not be created or written, in words, without the
    // path ("cannot create: No such file or directory"); "" when it was.
    const std::string& Error() const { return file_.Error(); }

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

    vesk::CAtomicFile file_;
    int fd_ = -1;
    std::vector<char> buf_;
    size_t used_ = 0;
    int result_ = 0;
    std::string scratch_;
};

// Writes the shortest round-trip text of v into p (room for 32 chars), with a
// ".0" where the text would otherwise read as an integer. Returns the end.
char* FormatReal(char* p, double v);

}  // namespace roadx::cad::dxf
