// A GDAL dataset written as one atomic output: GDAL creates it at the
// temporary path of a vesk::CAtomicFile (a file, or a folder for the
// formats that write one file per layer), and only a dataset that closed
// without error is synced and renamed over the target. On any failure the
// temporary and GDAL's side files go, and an existing target stays as it was.
#pragma once
#include <string>

#include <gdal_priv.h>

#include "gis/gdal_env.h"
#include "vesk/atomic_file.h"

namespace roadx::gis {

class CGdalOutput {
public:
    explicit CGdalOutput(const CGdalScope& scope) : scope_(scope) {}
    ~CGdalOutput();
    CGdalOutput(const CGdalOutput&) = delete;
    CGdalOutput& operator=(const CGdalOutput&) = delete;

    // Creates the dataset with a GDAL driver ("GPKG", "GTiff", ...); null
    // with Error() set on failure.
    GDALDataset* Create(const std::string& target, vesk::CAtomicFile::EKind kind, const char* driver, int cols,
                        int rows, int bands, GDALDataType type, CSLConstList options);
    // Closes the dataset and puts it in place; false with Error() set.
    bool Commit();
    const std::string& Error() const { return error_; }

private:
    bool Fail(const std::string& what);
    void RemoveSideFiles() const;

    const CGdalScope& scope_;
    vesk::CAtomicFile file_;
    GDALDataset* ds_ = nullptr;
    std::string error_;
};

}  // namespace roadx::gis
