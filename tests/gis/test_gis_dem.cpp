// The GeoTIFF elevation model read back with GDAL: its system, size,
// nodata and compression, the grid around the triangles, and the values at
// random cells against a barycentric interpolation computed independently
// in numpy (1e-6 m), nodata outside the triangulation.
#include <gtest/gtest.h>

#include <fstream>

#include "tests/gis/gis_test_util.h"

namespace {

using nlohmann::json;

json CheckDem(const std::string& tif, const CTris& t, const std::string& dir) {
    json tin = {{"vertices", json::array()}, {"faces", json::array()}};
    for (const PNT_3D& v : t.Verts()) tin["vertices"].push_back({v.x, v.y, v.z});
    for (const CTri& tri : t.Tris()) tin["faces"].push_back({tri.v[0], tri.v[1], tri.v[2]});
    const std::string tinFile = dir + "/tin.json";
    std::ofstream(tinFile) << tin.dump();
    const clitest::TCommandResult r =
        clitest::RunCommand(gistest::Python() + " " + clitest::ShellQuote(gistest::Script("check_dem.py")) + " " +
                            clitest::ShellQuote(tif) + " " + clitest::ShellQuote(tinFile) + " 1500");
    EXPECT_EQ(r.exitCode, 0) << r.output;
    return json::parse(r.output, nullptr, false);
}

TEST(GisDem, ValuesEqualBarycentricInterpolationNodataOutside) {
    gistest::CTempDir dir;
    const std::string out = dir.File("dem.tif");
    auto c = gistest::Convert({roadx::test::DataPath("landxml/novapoint_inframodel_tin_latin1.xml")}, out, "tif", "",
                              "EPSG:3878", 2.0);
    ASSERT_TRUE(c->status.ok()) << c->status.message;
    const json d = CheckDem(out, *c->Doc().GetLibDtm()->GetPrj(0)->GetTris(), dir.Path());
    ASSERT_TRUE(d.is_object());
    EXPECT_EQ(d["epsg"], "3878");
    EXPECT_EQ(d["type"], "Float64");
    EXPECT_EQ(d["nodata"], -99999.0);
    EXPECT_EQ(d["compression"], "DEFLATE");
    EXPECT_TRUE(d["fits"].get<bool>());
    EXPECT_GT(d["inside"].get<int>(), 100);
    EXPECT_LT(d["max_err"].get<double>(), 1e-6);
    EXPECT_GT(d["outside"].get<int>(), 10);
    EXPECT_EQ(d["outside_not_nodata"], 0);
    EXPECT_EQ(dir.Names(), (std::vector<std::string>{"dem.tif", "tin.json"}));
}

TEST(GisDem, DefaultCellAndCrsOption) {
    gistest::CTempDir dir;
    const std::string out = dir.File("b.tif");
    // A surface in US survey feet converted to metres, written in a metric system.
    auto c = gistest::Convert({roadx::test::DataPath("landxml/blender_ussurveyfoot_tin_3k_faces.xml")}, out, "tif",
                              "EPSG:3067");
    ASSERT_TRUE(c->status.ok()) << c->status.message;
    const json d = CheckDem(out, *c->Doc().GetLibDtm()->GetPrj(0)->GetTris(), dir.Path());
    ASSERT_TRUE(d.is_object());
    EXPECT_EQ(d["epsg"], "3067");
    EXPECT_TRUE(d["fits"].get<bool>());
    EXPECT_GT(d["inside"].get<int>(), 100);
    EXPECT_LT(d["max_err"].get<double>(), 1e-6);
    EXPECT_EQ(d["outside_not_nodata"], 0);
}

TEST(GisDem, SeveralSurfacesNeedAChoice) {
    gistest::CTempDir dir;
    const std::string a = roadx::test::DataPath("landxml/novapoint_inframodel_tin_latin1.xml");
    const std::string b = roadx::test::DataPath("landxml/c3d_tin_boundaries_breaklines.xml");
    auto c = gistest::Convert({a, b}, dir.File("x.tif"), "tif", "EPSG:3878");
    EXPECT_EQ(c->status.code, TExchangeStatus::BAD_INPUT);
    EXPECT_NE(c->status.message.find("choose one with --surfaces"), std::string::npos) << c->status.message;
    EXPECT_EQ(dir.Names(), std::vector<std::string>{});
}

}  // namespace
