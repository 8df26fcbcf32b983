// The coordinate system travels: a file's epsgCode reaches every layer,
// --crs overrides it, GeoJSON is WGS 84 lon/lat equal to an independent PROJ
// transform (pyproj), `roadx info` shows it; and the failures of a GIS
// output (an unknown --crs, an output that cannot be written, GeoJSON
// without a system) exit 1 with one line and leave no file behind.
#include <gtest/gtest.h>

#include <fstream>

#include "tests/gis/gis_test_util.h"

namespace {

using nlohmann::json;

const std::string kRoad = "landxml/inframodel_3dwin_grads_circcurve.xml";   // EPSG:3875, a road
const std::string kTin = "landxml/novapoint_inframodel_tin_latin1.xml";     // EPSG:3878, a surface

std::string Data(const std::string& f) { return roadx::test::DataPath(f); }

// roadx run as a program, its standard error kept.
clitest::TCommandResult Roadx(const std::string& args) {
    return clitest::RunCommand(clitest::ShellQuote(roadx::test::RoadxExe()) + " " + args + " 2>&1");
}

size_t Lines(const std::string& s) { return static_cast<size_t>(std::count(s.begin(), s.end(), '\n')); }

TEST(GisCrs, EpsgCodeOfTheFileIsTheSystemOfEveryLayer) {
    gistest::CTempDir dir;
    for (const auto& [file, code] : {std::pair{kRoad, "EPSG:3875"}, std::pair{kTin, "EPSG:3878"}}) {
        const std::string out = dir.File("a.gpkg");
        const clitest::TCommandResult r = Roadx("convert " + clitest::ShellQuote(Data(file)) + " -o " +
                                                clitest::ShellQuote(out));
        ASSERT_EQ(r.exitCode, 0) << r.output;
        // A stated system: no coordinate-system warning (the file's own geometry warnings may stand).
        EXPECT_EQ(r.output.find("[gis-no-crs]"), std::string::npos) << r.output;
        const json dump = gistest::Dump(out, 1);
        ASSERT_TRUE(dump.is_object());
        ASSERT_FALSE(dump["layers"].empty());
        for (const auto& [name, layer] : dump["layers"].items()) EXPECT_EQ(layer["srs"], code) << file << " " << name;
    }
}

TEST(GisCrs, CrsOptionOverridesTheFile) {
    gistest::CTempDir dir;
    const std::string out = dir.File("b.shp");
    const clitest::TCommandResult r =
        Roadx("convert " + clitest::ShellQuote(Data(kRoad)) + " -o " + clitest::ShellQuote(out) + " --crs EPSG:3067");
    ASSERT_EQ(r.exitCode, 0) << r.output;
    const json dump = gistest::Dump(out, 1);
    ASSERT_TRUE(dump.is_object());
    EXPECT_EQ(dump["driver"], "ESRI Shapefile");
    ASSERT_TRUE(dump["layers"].contains("alignments"));
    for (const auto& [name, layer] : dump["layers"].items()) EXPECT_EQ(layer["srs"], "EPSG:3067") << name;
}

TEST(GisCrs, NoSystemWritesWithoutOneAndWarns) {
    gistest::CTempDir dir;
    const std::string out = dir.File("c.fgb");
    const clitest::TCommandResult r =
        Roadx("convert " + clitest::ShellQuote(roadx::test::SourcePath("samples/road.xml")) + " -o " +
              clitest::ShellQuote(out));
    ASSERT_EQ(r.exitCode, 0) << r.output;
    EXPECT_EQ(r.output, "roadx: warning: " + out +
                            ": 1 output without a coordinate system (the inputs state none and no --crs was given); "
                            "written without one [gis-no-crs]\n");
    const json dump = gistest::Dump(out, 1);
    ASSERT_TRUE(dump.is_object());
    EXPECT_EQ(dump["driver"], "FlatGeobuf");
    for (const auto& [name, layer] : dump["layers"].items()) EXPECT_TRUE(layer["srs"].is_null()) << name;
}

TEST(GisCrs, GeoJsonIsWgs84EqualToAnIndependentProjTransform) {
    gistest::CTempDir dir;
    const std::string out = dir.File("d.geojson");
    auto c = gistest::Convert({Data(kRoad)}, out, "geojson", "", "EPSG:3875");
    ASSERT_TRUE(c->status.ok()) << c->status.message;
    // A few axis vertices, the first element's start, a section line's point.
    json expected = json::array();
    CRoad& road = *c->Doc().GetLibRoad()->GetRoad(0);
    const CPlaniElem* e = road.RetrieveLinkedPlaniElems().front();
    const CProfileAlti* prj = road.GetRoadProfile()->GetMainPrjAlti();
    bool ok = false;
    const double z0 = prj ? CalcQuoteAtAltiProg(prj, e->GetProg(), ok) : 0.0;
    expected.push_back({{"layer", "alignments"}, {"index", 0}, {"vertex", 0}, {"x", e->GetStartPnt().x},
                        {"y", e->GetStartPnt().y}, {"z", ok ? z0 : 0.0}});
    expected.push_back({{"layer", "alignment_elements"}, {"index", 0}, {"vertex", 0}, {"x", e->GetStartPnt().x},
                        {"y", e->GetStartPnt().y}, {"z", nullptr}});
    const PNT_2D end = e->GetEndPnt();
    expected.push_back({{"layer", "alignment_elements"}, {"index", 0}, {"vertex", -1}, {"x", end.x}, {"y", end.y},
                        {"z", nullptr}});
    const std::string expectFile = dir.File("expected.json");
    std::ofstream(expectFile) << expected.dump();
    const clitest::TCommandResult r =
        clitest::RunCommand(gistest::Python() + " " + clitest::ShellQuote(gistest::Script("check_geojson.py")) + " " +
                            clitest::ShellQuote(out) + " EPSG:3875 " + clitest::ShellQuote(expectFile));
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_EQ(r.output, "ok\n");
}

TEST(GisCrs, GeoJsonTrianglesEqualAnIndependentProjTransform) {
    gistest::CTempDir dir;
    const std::string out = dir.File("t.geojson");
    auto c = gistest::Convert({Data(kTin)}, out, "geojson", "", "EPSG:3878");
    ASSERT_TRUE(c->status.ok()) << c->status.message;
    const CTris& t = *c->Doc().GetLibDtm()->GetPrj(0)->GetTris();
    json expected = json::array();
    for (int tri : {0, t.GetNoTris() / 2, t.GetNoTris() - 1})
        for (int k = 0; k < 3; ++k) {
            const PNT_3D v = t.GetTriVrtAt(t.GetTriAt(tri)->GetVerIndex(k));
            expected.push_back({{"layer", "tin"}, {"index", tri}, {"vertex", k}, {"x", v.x}, {"y", v.y}, {"z", v.z}});
        }
    const std::string expectFile = dir.File("expected.json");
    std::ofstream(expectFile) << expected.dump();
    const clitest::TCommandResult r =
        clitest::RunCommand(gistest::Python() + " " + clitest::ShellQuote(gistest::Script("check_geojson.py")) + " " +
                            clitest::ShellQuote(out) + " EPSG:3878 " + clitest::ShellQuote(expectFile));
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_EQ(r.output, "ok\n");
}

TEST(GisCrs, InfoShowsTheStatedSystem) {
    // -q: the file's breaklines of more than two points are a warning.
    clitest::TCommandResult r = Roadx("info -q --json " + clitest::ShellQuote(Data(kTin)));
    ASSERT_EQ(r.exitCode, 0) << r.output;
    EXPECT_EQ(json::parse(r.output)["crs"], "EPSG:3878");
    r = Roadx("info " + clitest::ShellQuote(Data(kTin)));
    EXPECT_NE(r.output.find("\nCoordinate system: EPSG:3878\n"), std::string::npos) << r.output;
    r = Roadx("info --json " + clitest::ShellQuote(roadx::test::SourcePath("samples/road.xml")));
    EXPECT_TRUE(json::parse(r.output)["crs"].is_null());
}

struct TFailure {
    const char* name;
    std::string args;     // after "convert INPUT -o OUT"
    std::string output;   // in the temporary folder
    std::string message;  // the one line, after "roadx: OUT: "
};

TEST(GisCrs, FailuresExitOneWithOneLineAndNoFile) {
    gistest::CTempDir dir;
    const std::string tin = clitest::ShellQuote(Data(kTin));
    const std::string plain = clitest::ShellQuote(roadx::test::SourcePath("samples/road.xml"));
    const std::vector<std::tuple<std::string, std::string, std::string>> cases = {
        {tin + " --crs EPSG:99999999", "e.gpkg", "--crs \"EPSG:99999999\" is not a coordinate system GDAL knows"},
        {tin + " --crs nonsense", "e.tif", "--crs \"nonsense\" is not a coordinate system GDAL knows"},
        {plain, "e.geojson",
         "GeoJSON is written in WGS 84 longitude/latitude, but the inputs state no coordinate system to transform "
         "from: give --crs (for example --crs EPSG:3878)"},
        {tin + " --cell 0.001", "e.tif", ""},
        {tin, "missing/e.gpkg", "cannot create: No such file or directory"},
        {tin, "missing/e.shp", "cannot create: No such file or directory"},
    };
    for (const auto& [args, output, message] : cases) {
        SCOPED_TRACE(output + " " + args);
        const std::string out = dir.File(output);
        const clitest::TCommandResult r = Roadx("convert -q " + args + " -o " + clitest::ShellQuote(out));
        EXPECT_EQ(r.exitCode, 1);
        EXPECT_EQ(Lines(r.output), 1u) << r.output;
        EXPECT_EQ(r.output.rfind("roadx: " + out + ": ", 0), 0u) << r.output;
        if (!message.empty()) {
            EXPECT_EQ(r.output, "roadx: " + out + ": " + message + "\n");
        }
        EXPECT_EQ(dir.Names(), std::vector<std::string>{});
    }
}

TEST(GisCrs, ExistingOutputSurvivesAFailure) {
    gistest::CTempDir dir;
    const std::string out = dir.File("keep.gpkg");
    std::ofstream(out) << "old";
    const clitest::TCommandResult r =
        Roadx("convert " + clitest::ShellQuote(Data(kTin)) + " -o " + clitest::ShellQuote(out) + " --crs EPSG:0");
    EXPECT_EQ(r.exitCode, 1) << r.output;
    std::ifstream in(out);
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    EXPECT_EQ(text, "old");
    EXPECT_EQ(dir.Names(), std::vector<std::string>{"keep.gpkg"});
}

}  // namespace
