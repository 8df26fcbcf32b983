#include "cad/dwg_file_out.h"

#include <cerrno>

#include "cad/save_errors.h"
#include "cad/zedra_types.h"
#include "vesk/atomic_file.h"

namespace roadx::cad::dwg {

int WriteFileBytes(const std::string& path, const std::vector<uint8_t>& data, std::string* error) {
    if (path.empty()) return kSaveNotAllowed;
    vesk::CAtomicFile file;
    int result = kSaveOk;
    if (!file.Open(path)) {
        result = OpenErrorResult(file.ErrorNumber());
    } else {
        if (!vesk::WriteAll(file.Fd(), data.data(), data.size())) {
            const int err = errno ? errno : ENOSPC;
            result = WriteErrorResult(err);
            file.SetWriteError(err);
        }
        // A failed write, flush or close removes the temporary: a truncated
        // drawing never replaces a good one.
        if (!file.Commit() && result == kSaveOk) result = WriteErrorResult(file.ErrorNumber());
    }
    if (error) *error = file.Error();
    return result;
}

}  // namespace roadx::cad::dwg
