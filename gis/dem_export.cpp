// The elevation model: one surface rasterised (dem_grid.h) and written as a
// DEFLATE-compressed GeoTIFF of 64-bit elevations with its coordinate system.
#include <cpl_string.h>

#include <cmath>

#include "gis/crs.h"
#include "gis/dem_grid.h"
#include "gis/gdal_output.h"
#include "gis/gis_export.h"
#include "host/document.h"
#include "vesk/format.h"

namespace roadx::gis {

namespace {

TExchangeStatus BadInput(const std::string& msg) { return TExchangeStatus::Fail(TExchangeStatus::BAD_INPUT, msg); }

// The one surface of the document, or a status saying why there is none.
TExchangeStatus TheSurface(IVantriDati& doc, const CDtmPrj*& out) {
    CLibDtm* lib = doc.GetLibDtm();
    const unsigned n = lib ? lib->GetNoPrj() : 0;
    if (n == 0) return BadInput("the inputs hold no surface to write as an elevation model");
    if (n > 1) {
        std::string names;
        for (unsigned i = 0; i < n; ++i) names += (i ? ", \"" : "\"") + lib->GetPrj(i)->GetName() + "\"";
        return BadInput(vesk::Format("the inputs hold %u surfaces (%s); choose one with --surfaces", n,
                                     names.c_str()));
    }
    out = lib->GetPrj(0);
    return TExchangeStatus::Ok();
}

}  // namespace

TExchangeStatus ExportElevationModelStatus(IVantriDati& doc, const TGisRequest& r) {
    const CDtmPrj* prj = nullptr;
    if (TExchangeStatus st = TheSurface(doc, prj); !st.ok()) return st;
    const CTris& tris = *prj->GetTris();
    const double cell = r.cell > 0.0 ? r.cell : DefaultCellSize(tris);
    TDemGrid grid;
    if (!(cell > 0.0) || !PlanGrid(tris, cell, grid))
        return BadInput("the surface \"" + prj->GetName() + "\" has no triangle to rasterise");
    if (grid.Cells() > kMaxDemCells)
        return BadInput(vesk::Format("the surface \"%s\" needs %.0f cells (%lld x %lld) at a cell size of %g m, "
                                     "more than the limit of %.0f: give a larger --cell",
                                     prj->GetName().c_str(), grid.Cells(), static_cast<long long>(grid.cols),
                                     static_cast<long long>(grid.rows), cell, kMaxDemCells));
    CGdalScope scope;
    TCrsChoice crs;
    if (TExchangeStatus st = ChooseCrs(r, crs); !st.ok()) return st;

    std::vector<double> values;
    RasteriseTin(tris, grid, values);

    CPLStringList options;
    options.AddString("COMPRESS=DEFLATE");
    options.AddString("PREDICTOR=3");  // floating-point differences compress best
    options.AddString("TILED=YES");
    options.AddString("BIGTIFF=IF_SAFER");
    options.AddString("NUM_THREADS=ALL_CPUS");
    CGdalOutput out(scope);
    GDALDataset* ds = out.Create(r.path, vesk::CAtomicFile::EKind::File, "GTiff", static_cast<int>(grid.cols),
                                 static_cast<int>(grid.rows), 1, GDT_Float64, options.List());
    if (!ds) return TExchangeStatus::Fail(TExchangeStatus::WRITE_FAILED, out.Error());
    // The system's plan unit may not be the metre (crs.scale).
    double transform[6] = {grid.west * crs.scale, grid.cell * crs.scale, 0.0, grid.north * crs.scale, 0.0,
                           -grid.cell * crs.scale};
    bool ok = ds->SetGeoTransform(transform) == CE_None;
    if (ok && crs.srs) ok = ds->SetSpatialRef(crs.srs.get()) == CE_None;
    GDALRasterBand* band = ds->GetRasterBand(1);
    ok = ok && band->SetNoDataValue(kDemNoData) == CE_None;
    ok = ok && band->RasterIO(GF_Write, 0, 0, static_cast<int>(grid.cols), static_cast<int>(grid.rows),
                              values.data(), static_cast<int>(grid.cols), static_cast<int>(grid.rows), GDT_Float64,
                              0, 0, nullptr) == CE_None;
    if (!ok) return TExchangeStatus::Fail(TExchangeStatus::WRITE_FAILED, "cannot write: " + scope.LastError());
    if (!out.Commit()) return TExchangeStatus::Fail(TExchangeStatus::WRITE_FAILED, out.Error());
    return TExchangeStatus::Ok();
}

}  // namespace roadx::gis
