#include "vesk/mapped_file.h"

#include <cstdint>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vesk {

bool CMappedFile::Open(const char* path) {
    Close();
    // A pipe is never opened here (opening waits for a writer, and the
    // reader that takes over would then miss what it wrote); O_NONBLOCK
    // covers a path that changes between the two looks.
    struct stat st {};
    if (::stat(path, &st) != 0 || !S_ISREG(st.st_mode)) return false;
    const int fd = ::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0) return false;
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode) || st.st_size <= 0) {
        ::close(fd);
        return false;
    }
    const auto size = static_cast<size_t>(st.st_size);
    // Writable but private: an in-place parse may write, the file stays.
    void* p = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE, fd, 0);
    ::close(fd);
    if (p == MAP_FAILED) return false;
    // The whole file is read from start to end: let the kernel read ahead.
    ::madvise(p, size, MADV_SEQUENTIAL);
    data_ = static_cast<char*>(p);
    size_ = size;
    return true;
}

void CMappedFile::Close() {
    if (data_) ::munmap(data_, size_);
    data_ = nullptr;
    size_ = 0;
}

void CMappedFile::Release(size_t from, size_t to) const {
    static const uintptr_t page = static_cast<uintptr_t>(::sysconf(_SC_PAGESIZE));
    if (!data_ || to > size_ || from >= to) return;
    const uintptr_t first = (reinterpret_cast<uintptr_t>(data_ + from) + page - 1) & ~(page - 1);
    const uintptr_t last = reinterpret_cast<uintptr_t>(data_ + to) & ~(page - 1);
    // Only whole pages inside the part: the bytes around it stay mapped.
    if (last > first) ::madvise(reinterpret_cast<void*>(first), last - first, MADV_DONTNEED);
}

}  // namespace vesk
