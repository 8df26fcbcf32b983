#include "cad/dwg_file_out.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "cad/save_errors.h"
#include "cad/zedra_types.h"

namespace roadx::cad::dwg {

namespace {

int WriteAll(int fd, const uint8_t* p, size_t left) {
    while (left > 0) {
        const ssize_t n = ::write(fd, p, left);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) return WriteErrorResult(errno);
        if (n == 0) return kSaveDiskFull;  // a write that makes no progress
        p += n;
        left -= static_cast<size_t>(n);
    }
    return kSaveOk;
}

}  // namespace

int WriteFileBytes(const std::string& path, const std::vector<uint8_t>& data) {
    if (path.empty()) return kSaveNotAllowed;
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (fd < 0) return OpenErrorResult(errno);
    struct stat st {};
    const bool regular = ::fstat(fd, &st) == 0 && S_ISREG(st.st_mode);
    int result = WriteAll(fd, data.data(), data.size());
    if (::close(fd) != 0 && result == kSaveOk) result = kSaveDiskFull;  // data lost on close
    // A truncated drawing is worse than none; devices are left alone.
    if (result != kSaveOk && regular) ::unlink(path.c_str());
    return result;
}

}  // namespace roadx::cad::dwg
