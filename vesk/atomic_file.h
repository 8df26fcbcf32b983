// Safe file output: the bytes go to a temporary file beside the target, and
// only a write that completed, was flushed to the disk and closed without
// error is renamed over the target. A failed write (a full disk, a file-size
// limit, an I/O error, a signal) removes the temporary file and leaves an
// existing file of the target's name as it was.
//
//   vesk::CAtomicFile out;
//   if (!out.Open(path)) report(out.Error());      // "cannot create: ..."
//   write through out.Stream() (stdio) or out.Fd() (one of the two)
//   if (!out.Commit()) report(out.Error());        // "cannot write: ..."
//
// The temporary is named ".NAME.roadx-XXXXXX" in the target's folder, so the
// rename never crosses a file system. A target that is a symbolic link is
// written through the link (the file it names is replaced, the link stays).
// A new file gets the mode a plain create would give (0666 less the umask);
// a replaced file keeps its mode. A target that exists but may not be written
// is refused as a plain open would refuse it. A target that is a device or
// a pipe (/dev/null, /dev/stdout) is written in place, with the same checks.
//
// For libraries that write by path (a folder of files, or a file that they
// reopen), Open with EKind::Folder or use TempPath() and let them write
// there; Commit renames the temporary into place all the same.
#pragma once
#include <cstdio>
#include <string>

namespace vesk {

class CAtomicFile {
public:
    enum class EKind { File, Folder };

    CAtomicFile() = default;
    ~CAtomicFile();  // abandons an uncommitted temporary
    CAtomicFile(const CAtomicFile&) = delete;
    CAtomicFile& operator=(const CAtomicFile&) = delete;

    // Creates the temporary (an open file, or an empty folder) for target.
    bool Open(const std::string& target, EKind kind = EKind::File);
    int Fd() const { return fd_; }
    // The temporary as a stdio stream (opened on first use, binary).
    FILE* Stream();
    const std::string& TempPath() const { return temp_; }
    const std::string& Target() const { return target_; }

    // Flushes, syncs, closes and renames the temporary over the target.
    bool Commit();
    // Removes the temporary; the target is left as it was.
    void Abandon();

    // Why the last Open or Commit failed, without the path, for example
    // "cannot create: No such file or directory" or
    // "cannot write: No space left on device".
    const std::string& Error() const { return error_; }
    int ErrorNumber() const { return errno_; }

    // Records a failure of the caller's own writes through Fd() (their errno),
    // so that Commit fails and reports it.
    void SetWriteError(int err);

private:
    bool Fail(const char* what, int err);
    void CloseTemp();

    EKind kind_ = EKind::File;
    std::string target_;  // the final path (through a symbolic link)
    std::string temp_;
    int fd_ = -1;
    FILE* stream_ = nullptr;
    int slot_ = -1;        // entry in the signal-time clean-up table
    int writeErr_ = 0;
    bool direct_ = false;  // a device or pipe, written in place
    std::string error_;
    int errno_ = 0;
};

// Makes the process safe for writes: SIGXFSZ is ignored (a write past the
// file-size limit fails with EFBIG instead of killing the process), and
// SIGINT, SIGTERM and SIGHUP remove every live temporary before the process
// ends as the signal would have ended it. The command line calls it once.
void ProtectWrites();

// Writes all of data to fd, retrying short writes and EINTR; false with errno.
bool WriteAll(int fd, const void* data, size_t size);

}  // namespace vesk
