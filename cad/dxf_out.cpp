#include "cad/dxf_out.h"

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <unistd.h>

#include "cad/dxf_text.h"
#include "cad/save_errors.h"
#include "cad/zedra_types.h"

namespace roadx::cad::dxf {

namespace {

// Appends ".0" when the text has neither a point nor an exponent, so that
// readers that tell reals from integers by their text see a real.
char* EnsureReal(char* begin, char* end) {
    for (char* q = begin; q < end; ++q)
        if (*q == '.' || *q == 'e') return end;
    *end++ = '.';
    *end++ = '0';
    return end;
}

}  // namespace

char* FormatReal(char* p, double v) {
    if (v == 0.0) v = 0.0;  // no "-0"
    const auto r = std::to_chars(p, p + 30, v);
    return EnsureReal(p, r.ptr);
}

int CDxfOut::Open(const std::string& path) {
    if (path.empty()) return result_ = kSaveNotAllowed;
    if (!file_.Open(path)) return result_ = OpenErrorResult(file_.ErrorNumber());
    fd_ = file_.Fd();
    buf_.resize(kBufSize);
    used_ = 0;
    return result_ = kSaveOk;
}

void CDxfOut::SetError(int err) {
    if (result_ == 0) result_ = WriteErrorResult(err);
    file_.SetWriteError(err);
}

void CDxfOut::Flush() {
    const char* p = buf_.data();
    size_t left = used_;
    used_ = 0;
    if (result_ != 0 || fd_ < 0) return;  // after a failure the rest is dropped
    while (left > 0) {
        const ssize_t n = ::write(fd_, p, left);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) { SetError(errno); return; }
        if (n == 0) { SetError(ENOSPC); return; }  // a short write that makes no progress
        p += n;
        left -= static_cast<size_t>(n);
    }
}

int CDxfOut::Close() {
    if (fd_ < 0) return result_;
    Flush();
    fd_ = -1;
    // A failed write, flush or close removes the temporary: a truncated
    // drawing never replaces a good one.
    if (!file_.Commit() && result_ == 0) result_ = WriteErrorResult(file_.ErrorNumber());
    return result_;
}

void CDxfOut::Code(int code) {
    // Group codes are right-aligned in three columns.
    char* p = buf_.data() + used_;
    if (code < 10) { *p++ = ' '; *p++ = ' '; }
    else if (code < 100) *p++ = ' ';
    const auto r = std::to_chars(p, p + 8, code);
    *r.ptr = '\n';
    used_ = static_cast<size_t>(r.ptr + 1 - buf_.data());
}

void CDxfOut::Str(int code, std::string_view value) {
    if (fd_ < 0) return;
    Room(kMaxGroup);
    Code(code);
    if (value.size() + 1 > buf_.size() - used_) Flush();
    if (value.size() + 1 > buf_.size()) {  // longer than the whole buffer
        const std::string_view rest = value;
        for (size_t i = 0; i < rest.size(); i += buf_.size() / 2) {
            const std::string_view part = rest.substr(i, buf_.size() / 2);
            std::memcpy(buf_.data() + used_, part.data(), part.size());
            used_ += part.size();
            Flush();
        }
    } else {
        std::memcpy(buf_.data() + used_, value.data(), value.size());
        used_ += value.size();
    }
    Room(1);
    buf_[used_++] = '\n';
}

void CDxfOut::Text(int code, std::string_view utf8, EEncoding enc) {
    scratch_.clear();
    AppendDxfText(scratch_, utf8, enc);
    Str(code, scratch_);
}

void CDxfOut::Int(int code, long long value) {
    if (fd_ < 0) return;
    Room(kMaxGroup);
    Code(code);
    char* p = buf_.data() + used_;
    const auto r = std::to_chars(p, p + 24, value);
    *r.ptr = '\n';
    used_ = static_cast<size_t>(r.ptr + 1 - buf_.data());
}

void CDxfOut::Real(int code, double value) {
    if (fd_ < 0) return;
    Room(kMaxGroup);
    Code(code);
    char* end = FormatReal(buf_.data() + used_, value);
    *end = '\n';
    used_ = static_cast<size_t>(end + 1 - buf_.data());
}

void CDxfOut::Approx(int code, double value) {
    if (fd_ < 0) return;
    Room(kMaxGroup);
    Code(code);
    if (value == 0.0) value = 0.0;
    char* p = buf_.data() + used_;
    // The general format drops trailing zeros, as %g does.
    const auto r = std::to_chars(p, p + 30, value, std::chars_format::general, 15);
    char* end = EnsureReal(p, r.ptr);
    *end = '\n';
    used_ = static_cast<size_t>(end + 1 - buf_.data());
}

void CDxfOut::Hex(int code, uint64_t value) {
    if (fd_ < 0) return;
    Room(kMaxGroup);
    Code(code);
    char* p = buf_.data() + used_;
    auto r = std::to_chars(p, p + 20, value, 16);
    for (char* q = p; q < r.ptr; ++q)
        if (*q >= 'a' && *q <= 'f') *q = static_cast<char>(*q - 'a' + 'A');
    *r.ptr = '\n';
    used_ = static_cast<size_t>(r.ptr + 1 - buf_.data());
}

}  // namespace roadx::cad::dxf
