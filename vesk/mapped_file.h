// A whole regular file mapped into memory, copy-on-write: the readers of
// large files see its bytes without reading them into a buffer of their own.
//
// The bytes are the page cache's own until written: reading costs no copy,
// and a page written is copied for this mapping alone (the file never
// changes). Release() drops the pages of a part already read; a later read
// of that part maps the file's bytes again. A page that was written loses
// what was written there, so Release() is for parts that were only read.
//
// Only regular files of at least one byte are mapped; Open() answers false
// for anything else (a pipe, a device, an empty file, a file that cannot be
// opened), and the caller reads it the ordinary way.
//
// A file that another program truncates while it is mapped ends the program
// with SIGBUS on the next read of a lost page: a mapping cannot be guarded
// against that. Files are not changed under an import by anything roadx runs.
#pragma once
#include <cstddef>

namespace vesk {

class CMappedFile {
public:
    CMappedFile() = default;
    ~CMappedFile() { Close(); }
    CMappedFile(const CMappedFile&) = delete;
    CMappedFile& operator=(const CMappedFile&) = delete;

    bool Open(const char* path);
    void Close();

    char* Data() const { return data_; }
    size_t Size() const { return size_; }
    bool IsOpen() const { return data_ != nullptr; }

    // Drops the whole pages inside [from, to) (byte offsets).
    void Release(size_t from, size_t to) const;

private:
    char* data_ = nullptr;
    size_t size_ = 0;
};

}  // namespace vesk
