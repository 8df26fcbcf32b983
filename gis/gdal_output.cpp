#include "gis/gdal_output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

namespace roadx::gis {

namespace {

// Files SQLite and GDAL may leave beside a dataset of this name.
constexpr const char* kSideSuffixes[] = {"-journal", "-wal", "-shm", ".aux.xml"};

bool SyncFile(const std::string& path) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return false;
    const bool ok = ::fsync(fd) == 0 || errno == EINVAL;
    ::close(fd);
    return ok;
}

// Flushes what GDAL wrote (it closes without syncing) before the rename.
bool SyncTree(const std::string& path) {
    std::error_code ec;
    if (!std::filesystem::is_directory(path, ec)) return SyncFile(path);
    for (const auto& e : std::filesystem::directory_iterator(path, ec))
        if (!SyncFile(e.path().string())) return false;
    return !ec && SyncFile(path);
}

}  // namespace

CGdalOutput::~CGdalOutput() {
    if (ds_) GDALClose(ds_);
    RemoveSideFiles();
    file_.Abandon();
}

bool CGdalOutput::Fail(const std::string& what) {
    error_ = what;
    if (ds_) GDALClose(ds_);
    ds_ = nullptr;
    RemoveSideFiles();
    file_.Abandon();
    return false;
}

void CGdalOutput::RemoveSideFiles() const {
    if (file_.TempPath().empty()) return;
    for (const char* s : kSideSuffixes) ::unlink((file_.TempPath() + s).c_str());
}

GDALDataset* CGdalOutput::Create(const std::string& target, vesk::CAtomicFile::EKind kind, const char* driver,
                                 int cols, int rows, int bands, GDALDataType type, CSLConstList options) {
    GDALDriver* drv = GetGDALDriverManager()->GetDriverByName(driver);
    if (!drv) {
        Fail(std::string("this GDAL has no ") + driver + " driver");
        return nullptr;
    }
    if (!file_.Open(target, kind)) {
        Fail(file_.Error());
        return nullptr;
    }
    const std::string temp = file_.TempPath();
    if (temp.empty()) {
        Fail("cannot create: GIS outputs must be files or folders, not devices");
        return nullptr;
    }
    // GDAL creates the dataset itself and refuses a name that exists: the
    // placeholder the atomic file made steps aside (its name stays
    // registered for clean-up), and GDAL's file takes the mode it had.
    struct stat st{};
    const bool hadMode = ::stat(temp.c_str(), &st) == 0;
    const bool driverMakesFolder = std::strcmp(driver, "ESRI Shapefile") != 0;
    if (kind == vesk::CAtomicFile::EKind::File) ::unlink(temp.c_str());
    else if (driverMakesFolder) ::rmdir(temp.c_str());
    ds_ = drv->Create(temp.c_str(), cols, rows, bands, type, const_cast<char**>(options));
    if (!ds_) {
        const std::string why = scope_.LastError();
        Fail("cannot create: " + (why.empty() ? std::string("GDAL refused the file") : why));
        return nullptr;
    }
    if (hadMode && kind == vesk::CAtomicFile::EKind::File) ::chmod(temp.c_str(), st.st_mode & 07777);
    return ds_;
}

bool CGdalOutput::Commit() {
    if (!ds_) return Fail(error_.empty() ? "cannot write: no dataset" : error_);
    const size_t before = scope_.ErrorCount();
    GDALClose(ds_);
    ds_ = nullptr;
    if (scope_.ErrorCount() != before) return Fail("cannot write: " + scope_.LastError());
    RemoveSideFiles();
    if (!SyncTree(file_.TempPath())) return Fail(std::string("cannot write: ") + strerrordesc_np(errno));
    if (!file_.Commit()) return Fail(file_.Error());
    return true;
}

}  // namespace roadx::gis
