// Every LandXML sample to a GeoPackage through the command line's own path,
// read back with GDAL's Python bindings: feature counts per layer equal the
// document's, attributes and coordinates of the first features equal the
// document's, and the axis lies on the element geometry within a millimetre
// (its vertices and the midpoints of its chords).
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "display/tin_contours.h"
#include "host/plani_elem.h"
#include "tests/gis/gis_test_util.h"

namespace {

using gistest::Def;
using nlohmann::json;

std::vector<std::string> Samples() {
    std::vector<std::string> out;
    for (const auto& e : std::filesystem::directory_iterator(roadx::test::DataPath("landxml")))
        if (e.path().extension() == ".xml") out.push_back(e.path().stem().string());
    std::sort(out.begin(), out.end());
    return out;
}

bool Drawable(const CPlaniElem* e) {
    return e && std::isfinite(e->GetStartPnt().x) && std::isfinite(e->GetStartPnt().y) && e->GetLength() > 0.0 &&
           std::isfinite(e->GetLength());
}

// Runs of two or more defined points: terrain lines take every vertex,
// design lines their principal vertices.
int Runs(CProfileAlti& line) {
    std::vector<const TAltiVrt*> v;
    for (const TAltiVrt& x : line.Vrts())
        if (line.IsTerr() || IsPrincAltiVrt(&x)) v.push_back(&x);
    int runs = 0, cur = 0;
    for (const TAltiVrt* x : v) {
        if (Def(x->prog) && Def(x->quota)) {
            ++cur;
            continue;
        }
        runs += cur >= 2;
        cur = 0;
    }
    return runs + (cur >= 2);
}

int RingPoints(const CCnt& c) {
    std::vector<PNT_3D> p;
    for (const PNT_3D& x : c.Vrts())
        if (Def(x)) p.push_back(x);
    if (p.size() > 1 && p.front() == p.back()) p.pop_back();
    return static_cast<int>(p.size());
}

// The layers' feature counts, from the document.
std::map<std::string, int> ExpectedCounts(CVantriDoc& doc, double interval) {
    std::map<std::string, int> n;
    CLibRoad* roads = doc.GetLibRoad();
    for (unsigned i = 0; i < roads->GetNumRoads(); ++i) {
        CRoad& r = *roads->GetRoad(i);
        int drawable = 0;
        for (CPlaniElem* e : r.RetrieveLinkedPlaniElems()) drawable += Drawable(e);
        n["alignments"] += drawable > 0;
        n["alignment_elements"] += drawable;
        for (int s = 0; s < r.GetNumSections(); ++s) {
            CProfile* sec = r.GetSection(s);
            if (!sec->GetTrace()) continue;
            ++n["cross_sections"];
            for (int k = 0; k < sec->GetNumProfileAlti(); ++k) n["cross_section_lines"] += Runs(*sec->GetProfileAlti(k));
        }
    }
    CLibDtm* dtm = doc.GetLibDtm();
    for (unsigned i = 0; i < dtm->GetNoPrj(); ++i) {
        CDtmPrj& p = *dtm->GetPrj(i);
        const CTris& t = *p.GetTris();
        for (const CTri& tri : t.Tris()) {
            bool ok = true;
            for (int k = 0; k < 3; ++k)
                ok = ok && tri.v[k] >= 0 && tri.v[k] < t.GetNoTriVrts() && Def(t.GetTriVrtAt(tri.v[k]));
            n["tin"] += ok;
        }
        for (const CCnts* cs : {p.GetCntsExt(), p.GetCntsInt()})
            for (int k = 0; k < cs->GetNoCnts(); ++k) n["surface_boundaries"] += RingPoints(*cs->GetCntAt(k)) >= 3;
        for (int k = 0; k < p.GetVncs()->GetNoVncs(); ++k) {
            const LINE_3D l = p.GetVncs()->GetVncAt(k)->GetCoords();
            n["breaklines"] += Def(l.p1) && Def(l.p2);
        }
        for (const auto& c : roadx::display::ComputeContours(t, interval)) n["contours"] += c.pts.size() >= 2;
    }
    auto placed = [](const CEgn& e) { return Def(e.GetCoordX()) && Def(e.GetCoordY()); };
    CLibPnt* pnt = doc.GetLibPnt();
    for (int g = 0; g < pnt->GetGrpArSize(); ++g)
        for (int i = 0; i < pnt->GetPtnArSize(g); ++i) n["points"] += placed(*pnt->GetPtnAt(g, i));
    CLibCmp* cmp = doc.GetLibCmp();
    for (int j = 0; j < cmp->GetJobArSize(); ++j)
        for (int s = 0; s < cmp->GetStaArSize(j); ++s) {
            n["survey_stations"] += placed(*cmp->GetStaAt(j, s));
            for (int i = 0; i < cmp->GetPunArSize(j, s); ++i) n["observations"] += placed(*cmp->GetPunAt(j, s, i));
        }
    CLibGps* gps = doc.GetLibGps();
    for (int g = 0; g < gps->GetGrpArSize(); ++g)
        for (int i = 0; i < gps->GetPunArSize(g); ++i) n["gps_points"] += placed(*gps->GetPunAt(g, i));
    for (auto it = n.begin(); it != n.end();) it = it->second == 0 ? n.erase(it) : std::next(it);
    return n;
}

// Every vertex of each road's axis lies on its element at the vertex's M,
// the chord between two vertices strays at most a millimetre from the
// curve, and Z is the design profile's elevation.
void CheckAxes(CVantriDoc& doc, const json& layer) {
    size_t f = 0;
    CLibRoad* roads = doc.GetLibRoad();
    for (unsigned i = 0; i < roads->GetNumRoads(); ++i) {
        CRoad& r = *roads->GetRoad(i);
        const std::vector<CPlaniElem*> elems = r.RetrieveLinkedPlaniElems();
        if (std::none_of(elems.begin(), elems.end(), Drawable)) continue;
        ASSERT_LT(f, layer["features"].size());
        const json& feat = layer["features"][f++];
        EXPECT_EQ(feat["fields"].value("name", ""), r.GetName());
        EXPECT_DOUBLE_EQ(feat["fields"]["sta_start"].get<double>(), r.GetStartProg());
        EXPECT_NEAR(feat["fields"]["length"].get<double>(), r.GetEndProg() - r.GetStartProg(), 1e-9);
        const CProfileAlti* prj = r.GetRoadProfile()->GetMainPrjAlti();
        const json& pts = feat["coords"];
        for (size_t k = 0; k < pts.size(); ++k) {
            const double x = pts[k][0], y = pts[k][1], z = pts[k][2], m = pts[k][3];
            // On an element that holds the chainage M (chains from files may
            // overlap or leave gaps, so any of them).
            double best = INFINITY;
            for (CPlaniElem* e : elems) {
                if (!Drawable(e) || m < e->GetProg() - 1e-9 || m > e->GetProg() + e->GetLength() + 1e-9) continue;
                PNT_2D p;
                e->GetPos(m - e->GetProg(), p);
                best = std::min(best, std::hypot(x - p.x, y - p.y));
            }
            EXPECT_LT(best, 1e-6) << r.GetName() << " vertex " << k << " M " << m;
            bool ok = false;
            const double zd = prj ? CalcQuoteAtAltiProg(prj, m, ok) : 0.0;
            EXPECT_NEAR(z, ok && Def(zd) ? zd : 0.0, 1e-9) << r.GetName() << " M " << m;
            if (k == 0) continue;
            // The chord's midpoint against the curve at the mid chainage, on
            // an element that holds both ends.
            const double x0 = pts[k - 1][0], y0 = pts[k - 1][1], m0 = pts[k - 1][3];
            for (CPlaniElem* e : elems) {
                if (!Drawable(e) || !(m > m0) || m0 < e->GetProg() - 1e-9 ||
                    m > e->GetProg() + e->GetLength() + 1e-9)
                    continue;
                PNT_2D a, b, p;
                e->GetPos(m0 - e->GetProg(), a);
                e->GetPos(m - e->GetProg(), b);
                if (std::hypot(x0 - a.x, y0 - a.y) > 1e-6 || std::hypot(x - b.x, y - b.y) > 1e-6) continue;
                e->GetPos(0.5 * (m0 + m) - e->GetProg(), p);
                EXPECT_LT(std::hypot(0.5 * (x + x0) - p.x, 0.5 * (y + y0) - p.y), 1e-3)
                    << r.GetName() << " chord ending at M " << m;
            }
        }
    }
}

// The first feature of the other layers against the document's first object.
void CheckFirstFeatures(CVantriDoc& doc, const json& layers) {
    if (layers.contains("tin")) {
        const CDtmPrj& p = *doc.GetLibDtm()->GetPrj(0);
        const CTris& t = *p.GetTris();
        const json& f = layers["tin"]["features"][0];
        EXPECT_EQ(f["fields"].value("surface", ""), p.GetName());
        for (const CTri& tri : t.Tris()) {  // the first triangle that can be drawn
            bool ok = true;
            for (int k = 0; k < 3; ++k)
                ok = ok && tri.v[k] >= 0 && tri.v[k] < t.GetNoTriVrts() && Def(t.GetTriVrtAt(tri.v[k]));
            if (!ok) continue;
            ASSERT_EQ(f["coords"].size(), 4u);
            for (int k = 0; k < 4; ++k) {
                const PNT_3D v = t.GetTriVrtAt(tri.v[k % 3]);
                EXPECT_DOUBLE_EQ(f["coords"][k][0].get<double>(), v.x);
                EXPECT_DOUBLE_EQ(f["coords"][k][1].get<double>(), v.y);
                EXPECT_DOUBLE_EQ(f["coords"][k][2].get<double>(), v.z);
            }
            break;
        }
    }
    if (layers.contains("alignment_elements")) {
        CRoad& r = *doc.GetLibRoad()->GetRoad(0);
        const json& f = layers["alignment_elements"]["features"][0];
        for (CPlaniElem* e : r.RetrieveLinkedPlaniElems()) {
            if (!Drawable(e)) continue;
            EXPECT_EQ(f["fields"].value("road", ""), r.GetName());
            EXPECT_DOUBLE_EQ(f["fields"]["sta_start"].get<double>(), e->GetProg());
            EXPECT_DOUBLE_EQ(f["fields"]["length"].get<double>(), e->GetLength());
            const char* kinds[] = {"line", "arc", "spiral", "spiralBetweenArcs"};
            EXPECT_EQ(f["fields"]["kind"], kinds[e->GetType()]);
            if (e->GetType() == CPlaniElem::ARCO) {
                EXPECT_DOUBLE_EQ(f["fields"]["radius"].get<double>(), static_cast<CArcPlaniElem*>(e)->GetRadius());
            }
            EXPECT_DOUBLE_EQ(f["coords"][0][0].get<double>(), e->GetStartPnt().x);
            EXPECT_DOUBLE_EQ(f["coords"][0][1].get<double>(), e->GetStartPnt().y);
            break;
        }
    }
    if (layers.contains("points")) {
        CLibPnt* lib = doc.GetLibPnt();
        const json& f = layers["points"]["features"][0];
        for (int g = 0; g < lib->GetGrpArSize(); ++g)
            if (lib->GetPtnArSize(g) > 0) {
                const CPunPnt& p = *lib->GetPtnAt(g, 0);
                EXPECT_EQ(f["fields"].value("group", ""), lib->GetGrpAt(g)->GetName());
                EXPECT_EQ(f["fields"].value("name", ""), p.GetNome());
                EXPECT_DOUBLE_EQ(f["coords"][0][0].get<double>(), p.GetCoordX());
                EXPECT_DOUBLE_EQ(f["coords"][0][1].get<double>(), p.GetCoordY());
                if (Def(p.GetCoordZ())) {
                    EXPECT_DOUBLE_EQ(f["fields"]["elev"].get<double>(), p.GetCoordZ());
                }
                break;
            }
    }
    if (layers.contains("observations")) {
        CLibCmp* lib = doc.GetLibCmp();
        const json& f = layers["observations"]["features"][0];
        const CPun& p = *lib->GetPunAt(0, 0, 0);
        EXPECT_EQ(f["fields"].value("name", ""), p.GetNome());
        if (Def(p.GetDato0())) {
            EXPECT_DOUBLE_EQ(f["fields"]["slope_dist"].get<double>(), p.GetDato0());
        }
        if (Def(p.GetDato2())) {
            EXPECT_DOUBLE_EQ(f["fields"]["horiz_ang"].get<double>(), p.GetDato2());
        }
    }
    if (layers.contains("gps_points")) {
        const CPunGps& p = *doc.GetLibGps()->GetPunAt(0, 0);
        const json& f = layers["gps_points"]["features"][0];
        EXPECT_EQ(f["fields"].value("name", ""), p.GetNome());
        EXPECT_NEAR(f["fields"]["lat"].get<double>(), p.GetLat() * 180.0 / 3.141592653589793, 1e-12);
        EXPECT_EQ(f["fields"]["sats"].get<int>(), p.GetNuGpsUsed() + p.GetNuGloUsed());
    }
}

class Sample : public ::testing::TestWithParam<std::string> {};

TEST_P(Sample, GeoPackageEqualsTheDocument) {
    gistest::CTempDir dir;
    const std::string out = dir.File(GetParam() + ".gpkg");
    auto c = gistest::Convert({roadx::test::DataPath("landxml/" + GetParam() + ".xml")}, out, "gpkg");
    const std::map<std::string, int> expect = ExpectedCounts(c->Doc(), c->exp.contourInterval);
    if (expect.empty()) {
        // Nothing to place on a map: refused, and nothing written.
        EXPECT_EQ(c->status.code, TExchangeStatus::BAD_INPUT);
        EXPECT_EQ(dir.Names(), std::vector<std::string>{});
        return;
    }
    ASSERT_TRUE(c->status.ok()) << c->status.message;
    const json dump = gistest::Dump(out, 500);
    ASSERT_TRUE(dump.is_object()) << "gis_dump.py could not read " << out;
    EXPECT_EQ(dump["driver"], "GPKG");
    std::map<std::string, int> got;
    for (const auto& [name, layer] : dump["layers"].items()) got[name] = layer["count"].get<int>();
    EXPECT_EQ(got, expect);
    if (dump["layers"].contains("alignments")) CheckAxes(c->Doc(), dump["layers"]["alignments"]);
    CheckFirstFeatures(c->Doc(), dump["layers"]);
    // Nothing but the output is left in the folder.
    EXPECT_EQ(dir.Names(), std::vector<std::string>{GetParam() + ".gpkg"});
}

INSTANTIATE_TEST_SUITE_P(LandXML, Sample, ::testing::ValuesIn(Samples()), [](const auto& i) {
    std::string n = i.param;
    for (char& ch : n)
        if (!std::isalnum(static_cast<unsigned char>(ch))) ch = '_';
    return n;
});

}  // namespace
