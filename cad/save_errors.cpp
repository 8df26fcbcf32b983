#include "cad/save_errors.h"

#include <cerrno>

#include "cad/zedra_types.h"

namespace zedra {

int OpenErrorResult(int err) {
    switch (err) {
        case ENOSPC:
        case EDQUOT: return kSaveDiskFull;
        case EMFILE:
        case ENFILE:
        case ENOMEM:
        case EIO: return kSaveIoError;
        default: return kSaveNotAllowed;  // EACCES, EPERM, EROFS, ENOENT, ENOTDIR, EISDIR, ...
    }
}

int WriteErrorResult(int err) {
    switch (err) {
        case ENOSPC:
        case EDQUOT:
        case EFBIG: return kSaveDiskFull;
        case EACCES:
        case EPERM:
        case EROFS: return kSaveNotAllowed;
        default: return kSaveIoError;
    }
}

}  // namespace zedra
