// Helpers of the drawing-export tests: a scripted host UI, temporary folders,
// small documents built through the document builder, and the independent
// reading of written files by ezdxf and ogrinfo (check_drawing.py).
#pragma once
#include <filesystem>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "cad/zedra_eng.h"
#include "host/document.h"
#include "host/load_vantri_dati.h"
#include "host/null_ui.h"
#include "host/ui.h"
#include "tests/common/test_data.h"

namespace dxtest {

// A fresh folder in the temporary directory, removed with everything in it.
class CTempDir {
public:
    CTempDir() {
        std::string tmpl = (std::filesystem::temp_directory_path() / "roadx_dxfdwg_XXXXXX").string();
        if (mkdtemp(tmpl.data()) != nullptr) path_ = tmpl;
    }
    ~CTempDir() {
        if (!path_.empty()) std::system(("rm -rf '" + path_ + "'").c_str());
    }
    CTempDir(const CTempDir&) = delete;
    CTempDir& operator=(const CTempDir&) = delete;
    std::string File(const std::string& name) const { return path_ + "/" + name; }
    const std::string& Path() const { return path_; }

private:
    std::string path_;
};

inline bool Exists(const std::string& p) { return access(p.c_str(), F_OK) == 0; }

inline std::string ReadAll(const std::string& p) {
    std::ifstream in(p, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

// Answers the drawing-export dialogs as a test says and records every call.
class CScriptedUi : public roadx::host::CNullUi {
public:
    // Option dialog.
    bool optOk = true;
    bool flags[6] = {true, false, false, true, true, true};
    DrawingHandle drawing = 0;
    int optCalls = 0;
    CZedraEng* optEng = nullptr;
    int optNoBlocks = -1;
    bool optDocFlag = false;
    bool optFlagsIn[6] = {};
    // File dialog.
    bool fileOk = true;
    std::string filePath;  // "" keeps the path given
    enumZEDRA_DXFDWG_VER fileVer = ZEDRA_DXFDWG_VER_R2000;
    int fileCalls = 0;
    std::string filePathIn;
    bool fileDwgAllowedIn = false;
    bool fileFlagIn = false;
    // Messages, as (title, text).
    std::vector<std::pair<std::string, std::string>> messages;

    bool DlgOpzTrasfToDxf(CZedraEng* eng, TOpzTrasfToDxf& opz) override {
        ++optCalls;
        optEng = eng;
        optNoBlocks = opz.noBlocksNotPriv;
        optDocFlag = opz.docFlag;
        for (int i = 0; i < 6; ++i) optFlagsIn[i] = opz.flags[i];
        if (!optOk) return false;
        for (int i = 0; i < 6; ++i) opz.flags[i] = flags[i];
        opz.drawing = drawing;
        return true;
    }
    bool InpNomeFileExportDxfDwg(std::string& path, bool dwgAllowed, enumZEDRA_DXFDWG_VER& ver, bool flag) override {
        ++fileCalls;
        filePathIn = path;
        fileDwgAllowedIn = dwgAllowed;
        fileFlagIn = flag;
        if (!fileOk) return false;
        if (!filePath.empty()) path = filePath;
        ver = fileVer;
        return true;
    }
    void Message(const std::string& title, const std::string& text) override { messages.emplace_back(title, text); }
};

// ---- documents

// A bit of everything: a point group, a GPS group, a total-station job, a
// DTM project with boundaries and breaklines, a road with every kind of
// element, its profile and two sections.
inline void BuildSurvey(CVantriDoc& doc) {
    CLoadVantriDati b(&doc);
    b.AddGrpPnt("Capisaldi");
    b.AddPunPnt("CS1", 100, 200, 50.5);
    b.AddPunPnt("CS2", 110, 205, 51.25);
    b.AddPunPnt("", 120, 210, 52);                     // no name: elevation label only
    b.AddPunPnt("NoZ", 130, 215, vesk::kUndefined);    // no elevation: name label only
    b.AddPunPnt("NoXY", vesk::kUndefined, 1, 2);       // never drawn
    b.AddGrpGps("Rover");
    b.SetGrpStaName("BASE");
    b.SetGrpCoords(1000, 2000, 300);
    b.AddGpsPnt(45.1, 9.2, 310);
    b.SetGpsPntName("R1", "");
    b.SetGpsPntCoords(1010, 2010, 301);
    b.AddGpsPnt(45.2, 9.3, 311);
    b.SetGpsPntName("R2", "");  // coordinates never given: not drawn
    b.AddJob("Job1");
    b.AddSta("S1", 1.5);
    b.SetStaCoords(500, 600, 70);
    b.AddPun("P1", "", 510, 600, 71, 1.6, 10, 1.5, 0);
    b.AddPun("P2", "", 500, 620, vesk::kUndefined, 1.6, 20, 1.5, 1);
    b.AddPun("P3", "", vesk::kUndefined, 620, 3, 1.6, 20, 1.5, 1);
}

// A 3x3 grid of vertices (spacing 10) with elevations z(x, y) = x + 2y /
// 10, i.e. a plane rising 1 per 10 m eastward and 2 per 10 m northward.
inline void BuildPlaneDtm(CVantriDoc& doc, const std::string& name = "Piano") {
    CLoadVantriDati b(&doc);
    b.AddDtmPrj(name);
    int id = 1;
    for (int j = 0; j < 3; ++j)
        for (int i = 0; i < 3; ++i) b.AddTriVert(id++, i * 10.0, j * 10.0, i * 1.0 + j * 2.0);
    for (int j = 0; j < 2; ++j)
        for (int i = 0; i < 2; ++i) {
            const int a = 1 + j * 3 + i;
            b.AddTri(a, a + 1, a + 4);
            b.AddTri(a, a + 4, a + 3);
        }
    std::vector<vesk::geom::PNT_3D> outer = {{0, 0, 0}, {20, 0, 2}, {20, 20, 6}, {0, 20, 4}, {0, 0, 0}};
    b.AddCnt(true, &outer);
    b.AddVnc(0, 0, 0, 10, 10, 3);
    b.AddVnc(10, 10, 3, 20, 20, 6);  // joins the first
    b.AddVnc(20, 0, 2, 10, 10, 3);   // a new chain
}

// The road of every element kind: straight, entrance clothoid, arc, exit
// clothoid, straight; chainage 0 to its end.
inline CRoad* BuildRoad(CVantriDoc& doc, const std::string& name = "Asse") {
    CLoadVantriDati b(&doc);
    CRoad* road = b.AddRoad(name, 0, false);
    b.StartRoadPlani();
    // Each element starts where the previous ended.
    double prog = 0;
    PNT_2D p{0, 0};
    VECTOR_2D t{1, 0};
    auto next = [&](CPlaniElem* e) {
        prog += e->GetLength();
        p = e->GetEndPnt();
        e->GetTg(e->GetLength(), t);
        e->SubReference();
    };
    b.AddRoadRect(prog, p, t, 130);
    next(new CRettifiloPlaniElem(prog, p, t, 130));
    b.AddRoadClot(prog, p, t, 1, 60, 100, true, true);
    next(new CClotPlaniElem(prog, p, t, 1, 60, 100, true, true));
    b.AddRoadArc(prog, p, t, 100, 0.8, true);
    next(new CArcPlaniElem(prog, p, t, 100, 0.8, true));
    b.AddRoadClot(prog, p, t, 1, 60, 100, true, false);
    next(new CClotPlaniElem(prog, p, t, 1, 60, 100, true, false));
    b.AddRoadRect(prog, p, t, 77.5);
    b.EndRoadPlani();
    // Grade line from 10 to 400 with one vertical curve, a terrain line
    // with a gap, and two cross sections (the second past the road's end).
    b.StartRoadAlti();
    b.AddRoadPrj();
    b.AddRoadProfAltiPrincVrt(10, 100);
    b.AddRoadProfAltiRaccVrt(200, 104, 10, 100, 400, 101, 2000, false);
    b.AddRoadProfAltiPrincVrt(400, 101);
    b.EndRoadAlti();
    CProfileAlti* terr = road->GetRoadProfile()->GetTerrAlti();
    terr->AddPrincVrt(0, 98);
    terr->AddPrincVrt(100, 99);
    terr->AddVrt(TAltiVrt{});
    terr->AddPrincVrt(150, 99.5);
    terr->AddPrincVrt(250, 101);
    terr->AddPrincVrt(5000, 90);  // past the road's end
    CPlaniElem* first = road->RetrieveLinkedPlaniElems().front();
    b.AddSection("S1", 50, first);
    b.AddSectionProfileAlti("TER", {{-10, 99}, {-5, 99.5}, {0, 100}, {6, 100.4}});
    b.AddSectionProfileAlti("PRO", {{-4, 100.2}, {4, 100.2}});
    b.AddSection("S2", 9000, first);
    b.AddSectionProfileAlti("TER", {{-10, 99}, {10, 99}});
    return road;
}

// ---- engine inspection

// Whether every coordinate of every entity of the engine is finite and
// below the undefined limit.
inline bool AllCoordinatesDefined(const CZedraEng& e) {
    auto ok = [](const vesk::geom::PNT_3D& p) {
        for (double v : {p.x, p.y, p.z})
            if (!std::isfinite(v) || std::fabs(v) >= 8.5e199) return false;
        return true;
    };
    for (const auto& x : e.Points()) if (!ok(x.p)) return false;
    for (const auto& x : e.Lines()) if (!ok(x.a) || !ok(x.b)) return false;
    for (const auto& x : e.Arcs()) if (!ok(x.c)) return false;
    for (const auto& x : e.Circles()) if (!ok(x.c)) return false;
    for (const auto& x : e.Faces()) for (const auto& v : x.v) if (!ok(v)) return false;
    for (const auto& x : e.Texts()) if (!ok(x.p)) return false;
    for (const auto& x : e.Polys3D())
        for (uint32_t i = 0; i < x.count; ++i) if (!ok(e.Vertices3D(x)[i])) return false;
    for (const auto& x : e.Polys2D())
        for (uint32_t i = 0; i < x.count; ++i) if (!ok({e.Vertices2D(x)[i].x, e.Vertices2D(x)[i].y, x.elevation})) return false;
    return true;
}

// Texts of one drawing, in the order drawn.
inline std::vector<std::string> TextsOf(const CZedraEng& e, DrawingHandle d) {
    std::vector<std::string> out;
    for (const auto& t : e.Texts())
        if (t.h.drawing == d) out.emplace_back(e.TextOf(t));
    return out;
}

inline std::vector<vesk::geom::PNT_3D> VerticesOf(const CZedraEng& e, const roadx::cad::TPoly3D& p) {
    return {e.Vertices3D(p), e.Vertices3D(p) + p.count};
}

// ---- independent reading

inline std::string ScriptPath() { return roadx::test::SourcePath("tests/dxfdwg/check_drawing.py"); }

inline bool ReadersInstalled() {
    return std::system("/usr/bin/python3 -c 'import ezdxf' >/dev/null 2>&1") == 0 &&
           std::system("ogrinfo --version >/dev/null 2>&1") == 0;
}

// Runs check_drawing.py on a file with an expectation; returns its report
// ("" when everything matched).
inline std::string CheckDrawing(const std::string& dxf, const nlohmann::json& expect, const std::string& dir) {
    const std::string ePath = dir + "/expect.json";
    const std::string rPath = dir + "/report.txt";
    {
        std::ofstream o(ePath, std::ios::binary);
        o << expect.dump(1, ' ', false, nlohmann::json::error_handler_t::replace);
    }
    const std::string cmd =
        "/usr/bin/python3 '" + ScriptPath() + "' '" + dxf + "' '" + ePath + "' >'" + rPath + "' 2>&1";
    const int rc = std::system(cmd.c_str());
    std::string report = ReadAll(rPath);
    if (rc != 0 && report.empty()) report = "check_drawing.py failed with status " + std::to_string(rc);
    return rc == 0 ? std::string() : report;
}

}  // namespace dxtest
