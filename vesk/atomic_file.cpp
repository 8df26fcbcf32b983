#include "vesk/atomic_file.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <mutex>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace vesk {
namespace {

// The temporaries alive right now, readable from a signal handler: a slot
// is published (state 2) only after its path is complete, and the handler
// touches nothing but these fixed buffers and async-signal-safe calls.
constexpr int kSlots = 64;
constexpr size_t kPathMax = 4096;
struct TSlot {
    std::atomic<int> state{0};  // 0 free, 1 being filled, 2 live
    bool folder = false;
    char path[kPathMax];
};
TSlot g_slots[kSlots];

int TakeSlot(const std::string& path, bool folder) {
    if (path.size() >= kPathMax) return -1;
    for (int i = 0; i < kSlots; ++i) {
        int expected = 0;
        if (!g_slots[i].state.compare_exchange_strong(expected, 1)) continue;
        std::memcpy(g_slots[i].path, path.c_str(), path.size() + 1);
        g_slots[i].folder = folder;
        g_slots[i].state.store(2);
        return i;
    }
    return -1;  // more live files than slots: still written, just not cleaned on a signal
}

void ReleaseSlot(int slot) {
    if (slot >= 0) g_slots[slot].state.store(0);
}

// Empties and removes a folder with raw system calls only (signal time).
void RemoveFolderAtSignal(const char* path) {
    const int dfd = ::open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dfd >= 0) {
        alignas(8) char buf[8192];
        for (;;) {
            const long n = ::syscall(SYS_getdents64, dfd, buf, sizeof buf);
            if (n <= 0) break;
            for (long pos = 0; pos < n;) {
                // struct linux_dirent64: ino (8), off (8), reclen (2), type (1), name
                unsigned short reclen;
                std::memcpy(&reclen, buf + pos + 16, sizeof reclen);
                const char* name = buf + pos + 19;
                if (std::strcmp(name, ".") != 0 && std::strcmp(name, "..") != 0) ::unlinkat(dfd, name, 0);
                pos += reclen;
            }
        }
        ::close(dfd);
    }
    ::rmdir(path);
}

extern "C" void OnFatalSignal(int sig) {
    for (TSlot& s : g_slots) {
        if (s.state.load() != 2) continue;
        if (s.folder)
            RemoveFolderAtSignal(s.path);
        else
            ::unlink(s.path);
    }
    std::signal(sig, SIG_DFL);
    std::raise(sig);
}

// A short name part that differs between processes and calls.
std::string RandomPart() {
    static std::atomic<unsigned> counter{0};
    timespec ts{};
    clock_gettime(CLOCK_REALTIME, &ts);
    unsigned long long v = static_cast<unsigned long long>(ts.tv_nsec) * 2654435761ULL ^
                           (static_cast<unsigned long long>(::getpid()) << 20) ^ (counter.fetch_add(1) * 40503ULL);
    static const char kChars[] = "abcdefghijklmnopqrstuvwxyz0123456789";
    std::string s(6, 'a');
    for (char& c : s) {
        c = kChars[v % 36];
        v /= 36;
    }
    return s;
}

// The file a plain open would write: a symbolic link is followed.
std::string ResolveTarget(const std::string& target) {
    struct stat st{};
    if (::lstat(target.c_str(), &st) == 0 && S_ISLNK(st.st_mode)) {
        if (char* real = ::realpath(target.c_str(), nullptr)) {
            std::string r = real;
            std::free(real);
            return r;
        }
    }
    return target;
}

}  // namespace

void ProtectWrites() {
    static std::once_flag once;
    std::call_once(once, [] {
        std::signal(SIGXFSZ, SIG_IGN);
        for (int sig : {SIGINT, SIGTERM, SIGHUP}) {
            struct sigaction sa{};
            sa.sa_handler = OnFatalSignal;
            sigemptyset(&sa.sa_mask);
            ::sigaction(sig, &sa, nullptr);
        }
    });
}

bool WriteAll(int fd, const void* data, size_t size) {
    const char* p = static_cast<const char*>(data);
    while (size > 0) {
        const ssize_t n = ::write(fd, p, size);
        if (n < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        p += n;
        size -= static_cast<size_t>(n);
    }
    return true;
}

CAtomicFile::~CAtomicFile() { Abandon(); }

bool CAtomicFile::Fail(const char* what, int err) {
    errno_ = err;
    error_ = std::string(what) + ": " + strerrordesc_np(err);  // the same words in every locale
    return false;
}

bool CAtomicFile::Open(const std::string& target, EKind kind) {
    Abandon();
    error_.clear();
    errno_ = writeErr_ = 0;
    kind_ = kind;
    target_ = ResolveTarget(target);

    // Refuse what a plain create would refuse: a folder where a file goes,
    // a file that may not be written.
    struct stat st{};
    const bool exists = ::stat(target_.c_str(), &st) == 0;
    if (exists && kind == EKind::File && S_ISDIR(st.st_mode)) return Fail("cannot create", EISDIR);
    if (exists && kind == EKind::Folder && !S_ISDIR(st.st_mode)) return Fail("cannot create", ENOTDIR);
    if (exists && ::access(target_.c_str(), W_OK) != 0) return Fail("cannot create", errno);
    if (exists && kind == EKind::File && !S_ISREG(st.st_mode)) {
        // A device or a pipe (/dev/null, /dev/stdout) cannot be replaced:
        // it is written in place, and its errors are reported all the same.
        fd_ = ::open(target_.c_str(), O_WRONLY | O_CLOEXEC);
        if (fd_ < 0) return Fail("cannot create", errno);
        direct_ = true;
        return true;
    }

    const size_t slash = target_.rfind('/');
    const std::string dir = slash == std::string::npos ? "" : target_.substr(0, slash + 1);
    const std::string base = slash == std::string::npos ? target_ : target_.substr(slash + 1);
    for (int attempt = 0; attempt < 100; ++attempt) {
        std::string temp = dir + "." + base + ".roadx-" + RandomPart();
        slot_ = TakeSlot(temp, kind == EKind::Folder);
        int err = 0;
        if (kind == EKind::File) {
            fd_ = ::open(temp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
            err = fd_ < 0 ? errno : 0;
            if (!err && exists) ::fchmod(fd_, st.st_mode & 07777);
        } else {
            err = ::mkdir(temp.c_str(), 0777) == 0 ? 0 : errno;
        }
        if (!err) {
            temp_ = std::move(temp);
            return true;
        }
        ReleaseSlot(slot_);
        slot_ = -1;
        if (err != EEXIST) return Fail("cannot create", err);
    }
    return Fail("cannot create", EEXIST);
}

FILE* CAtomicFile::Stream() {
    if (!stream_ && fd_ >= 0) stream_ = ::fdopen(fd_, "wb");
    return stream_;
}

void CAtomicFile::SetWriteError(int err) {
    if (!writeErr_) writeErr_ = err ? err : EIO;
}

void CAtomicFile::CloseTemp() {
    if (stream_) {
        std::fclose(stream_);
    } else if (fd_ >= 0) {
        ::close(fd_);
    }
    stream_ = nullptr;
    fd_ = -1;
}

bool CAtomicFile::Commit() {
    if (temp_.empty() && !direct_) return Fail("cannot write", EBADF);
    int err = writeErr_;
    if (!err && stream_ && (std::fflush(stream_) != 0 || std::ferror(stream_))) err = errno ? errno : EIO;
    if (!err && fd_ >= 0 && ::fsync(fd_) != 0 && errno != EINVAL) err = errno;
    if (stream_) {
        if (std::fclose(stream_) != 0 && !err) err = errno;
    } else if (fd_ >= 0) {
        if (::close(fd_) != 0 && !err) err = errno;
    }
    stream_ = nullptr;
    fd_ = -1;
    if (err) {
        Abandon();
        return Fail("cannot write", err);
    }
    if (direct_) {
        direct_ = false;
        return true;
    }

    std::error_code ec;
    std::string old;
    if (kind_ == EKind::Folder && std::filesystem::is_directory(target_, ec)) {
        // A folder cannot be renamed over another: the old one steps aside first.
        old = temp_ + ".old";
        if (::rename(target_.c_str(), old.c_str()) != 0) {
            const int e = errno;
            Abandon();
            return Fail("cannot create", e);
        }
    }
    if (::rename(temp_.c_str(), target_.c_str()) != 0) {
        const int e = errno;
        if (!old.empty()) ::rename(old.c_str(), target_.c_str());
        Abandon();
        return Fail("cannot create", e);
    }
    if (!old.empty()) std::filesystem::remove_all(old, ec);
    ReleaseSlot(slot_);
    slot_ = -1;
    temp_.clear();
    return true;
}

void CAtomicFile::Abandon() {
    CloseTemp();
    direct_ = false;
    if (!temp_.empty()) {
        std::error_code ec;
        if (kind_ == EKind::Folder)
            std::filesystem::remove_all(temp_, ec);
        else
            ::unlink(temp_.c_str());
    }
    ReleaseSlot(slot_);
    slot_ = -1;
    temp_.clear();
}

}  // namespace vesk
