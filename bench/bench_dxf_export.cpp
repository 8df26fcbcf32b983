// The whole drawing export of a document holding one surface of 1,000,000
// triangles: the display objects draw it (faces, boundary, contours) into the
// export engine, which writes DXF; the document's display is removed before
// and drawn again after, as in the host. Time per export and file size.
#include <benchmark/benchmark.h>
#include <sys/stat.h>
#include <filesystem>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <string>

#include "display/doc_display.h"
#include "cad/zedra_eng.h"
#include "dxfdwg/drawing_export.h"
#include "host/document.h"
#include "host/load_vantri_dati.h"
#include "host/null_ui.h"
#include "host/ui.h"
#include "exchange/exchange.h"

namespace {

// Answers the export dialogs: the defaults, every drawing.
class CBenchUi : public roadx::host::CNullUi {
public:
    bool DlgOpzTrasfToDxf(CZedraEng*, TOpzTrasfToDxf&) override { return true; }
    bool InpNomeFileExportDxfDwg(std::string&, bool, enumZEDRA_DXFDWG_VER&, bool) override { return true; }
    void Message(const std::string&, const std::string& text) override { failed = text; }
    std::string failed;
};

// A 1001 x 501 grid of vertices 2.5 m apart (1000 x 500 cells, two
// triangles each) with rolling elevations over 16 m, and its boundary.
void BuildSurface(CVantriDoc& doc) {
    constexpr int nx = 1001, ny = 501;
    CLoadVantriDati b(&doc);
    b.AddDtmPrj("Rilievo");
    auto z = [](int i, int j) { return 100.0 + 5.0 * std::sin(i * 0.013) + 3.0 * std::cos(j * 0.021) + i * 0.001; };
    for (int j = 0; j < ny; ++j)
        for (int i = 0; i < nx; ++i) b.AddTriVert(1 + j * nx + i, 1500000.0 + i * 2.5, 5000000.0 + j * 2.5, z(i, j));
    for (int j = 0; j + 1 < ny; ++j)
        for (int i = 0; i + 1 < nx; ++i) {
            const int a = 1 + j * nx + i;
            b.AddTri(a, a + 1, a + 1 + nx);
            b.AddTri(a, a + 1 + nx, a + nx);
        }
    std::vector<vesk::geom::PNT_3D> ring = {{1500000.0, 5000000.0, z(0, 0)},
                                            {1502500.0, 5000000.0, z(nx - 1, 0)},
                                            {1502500.0, 5001250.0, z(nx - 1, ny - 1)},
                                            {1500000.0, 5001250.0, z(0, ny - 1)}};
    b.AddCnt(true, &ring);
}

void BM_ExportSurface1MTriangles(benchmark::State& state) {
    CVantriDoc doc;
    InstallDocumentDisplay(doc);
    BuildSurface(doc);
    RefreshDocumentDisplay(doc);
    CBenchUi ui;
    CHostUiScope scope(&ui);
    const std::string path =
        (std::filesystem::temp_directory_path() / ("roadx_bench_export_" + std::to_string(getpid()) + ".dxf")).string();
    const auto ver = state.range(0) == 12 ? ZEDRA_DXFDWG_VER_R12 : ZEDRA_DXFDWG_VER_R2000;
    size_t entities = 0;
    for (auto _ : state) {
        CZedraEng eng(0, nullptr, true);
        eng.DontSaveZedraVars();
        SaveAllDataToDxfDwg(&doc, path, ver, false, &eng);
        entities = eng.GetNoEntities();
    }
    if (!ui.failed.empty()) state.SkipWithError(ui.failed.c_str());
    struct stat st {};
    stat(path.c_str(), &st);
    state.counters["triangles"] = static_cast<double>(doc.GetLibDtm()->GetPrj(0)->GetTris()->GetNoTris());
    state.counters["entities"] = static_cast<double>(entities);
    state.counters["MB"] = static_cast<double>(st.st_size) / 1e6;
    std::remove(path.c_str());
}

}  // namespace

BENCHMARK(BM_ExportSurface1MTriangles)->Arg(2000)->Arg(12)->Unit(benchmark::kMillisecond)->Iterations(2);
BENCHMARK_MAIN();
