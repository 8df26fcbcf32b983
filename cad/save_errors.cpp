#include "cad/save_errors.h"

#include <cerrno>

#include "cad/zedra_types.h"

namespace roadx::cad {

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

std::string SaveResultText(int result) {
    switch (result) {
        case kSaveOk: return "";
        case kSaveDiskFull: return "disk full";
        case kSaveNotAllowed: return "writing not allowed";
        case kSaveDwgUnsupported: return "DWG files are written as R2000 only; nothing was written";
        case kSaveBadVersion: return "unknown drawing file version; nothing was written";
        case kSaveIoError: return "write error";
        case kSaveRefused: return "the drawing file cannot carry all of the drawing; nothing was written";
        default: return "the drawing could not be written (result " + std::to_string(result) + ")";
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

}  // namespace roadx::cad
