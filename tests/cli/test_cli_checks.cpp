// What roadx convert and info refuse before anything is written: names that
// match nothing in the inputs or the document, options the output format
// does not use, --to against the name, contour intervals that cannot be
// right. Each refusal is exit 2 and one line, and no output appears.
#include <gtest/gtest.h>

#include "tests/cli/roadx_child.h"
#include "tests/common/test_data.h"

namespace {

using clitest::CScratch;
using clitest::RunRoadx;

const std::string kRoad = roadx::test::SourcePath("samples/road.xml");
const std::string kSurvey = roadx::test::DataPath("landxml/lx2_points_surveys_gps.xml");

class CliChecks : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(clitest::PathExists(roadx::test::RoadxExe())) << "roadx is not built"; }

    // Runs convert (output `out` in the scratch folder) and expects exit 2
    // with exactly `line`, and no output file.
    void ExpectRefused(std::vector<std::string> args, const std::string& out, const std::string& line) {
        // -q: the inputs' own import warnings are not what is checked here.
        args.insert(args.end(), {"-q", "-o", dir.File(out)});
        const auto r = RunRoadx(args, dir.File("stderr.txt"));
        EXPECT_EQ(r.exitCode, 2) << r.err;
        EXPECT_EQ(r.err, "roadx: " + line + "\n");
        EXPECT_FALSE(clitest::PathExists(dir.File(out)));
    }
    void ExpectWritten(std::vector<std::string> args, const std::string& out) {
        // -q: the inputs' own import warnings are not what is checked here.
        args.insert(args.end(), {"-q", "-o", dir.File(out)});
        const auto r = RunRoadx(args, dir.File("stderr.txt"));
        EXPECT_EQ(r.exitCode, 0) << r.err;
        EXPECT_TRUE(clitest::PathExists(dir.File(out)));
        std::filesystem::remove(dir.File(out));
    }

    CScratch dir;
};

TEST_F(CliChecks, ImportNamesMustMatchTheInputs) {
    ExpectRefused({"convert", kRoad, "--alignments", "Main Road,nosuch"}, "a.xml",
                  "--alignments: no alignment named \"nosuch\" in the inputs; there are: \"Main Road\"");
    ExpectRefused({"convert", kRoad, "--surfaces", "eg"}, "a.xml",
                  "--surfaces: no surface named \"eg\" in the inputs; there are: \"EG\"");  // case counts
    ExpectRefused({"convert", kRoad, "--terrain", "nosuch"}, "a.xml",
                  "--terrain: no surface named \"nosuch\" in the inputs; there are: \"EG\"");
    ExpectRefused({"convert", kRoad, "--section-code", "Typo"}, "a.xml",
                  "--section-code \"Typo\": expected SURFACE=CODE (no '=')");
    ExpectRefused({"convert", kRoad, "--section-code", "=TER"}, "a.xml",
                  "--section-code \"=TER\": the SURFACE before '=' is empty");
    ExpectRefused({"convert", kRoad, "--section-code", "EG="}, "a.xml",
                  "--section-code \"EG=\": the CODE after '=' is empty");
    ExpectRefused({"convert", kRoad, "--section-code", "XX=TER"}, "a.xml",
                  "--section-code \"XX=TER\": no cross section of the inputs has a surface named \"XX\"; there "
                  "are: \"EG\", \"FG\"");
    // An RD3 input offers no LandXML names.
    ASSERT_EQ(RunRoadx({"convert", kRoad, "-o", dir.File("in.rd3")}, dir.File("stderr.txt")).exitCode, 0);
    ExpectRefused({"convert", dir.File("in.rd3"), "--alignments", "Main Road"}, "b.xml",
                  "--alignments: no alignment named \"Main Road\" in the inputs, which hold none");
    // info refuses the same.
    const auto r = RunRoadx({"info", kRoad, "--surfaces", "nosuch"}, dir.File("stderr.txt"));
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_EQ(r.err, "roadx: --surfaces: no surface named \"nosuch\" in the inputs; there are: \"EG\"\n");
    // Names that exist, and '' for none, are taken.
    ExpectWritten({"convert", kRoad, "--alignments", "Main Road", "--surfaces", "EG", "--terrain", "EG",
                   "--section-code", "EG=TER", "--section-code", "FG=PRJ"},
                  "ok.xml");
    ExpectWritten({"convert", kRoad, "--alignments", "", "--surfaces", ""}, "none.xml");
}

TEST_F(CliChecks, ExportNamesMustMatchTheDocument) {
    ExpectRefused({"convert", kRoad, "--export-roads", "nosuch"}, "a.xml",
                  "--export-roads: no road named \"nosuch\" in the document; there are: \"Main Road\"");
    ExpectRefused({"convert", kRoad, "--export-surfaces", "EG,nosuch"}, "a.xml",
                  "--export-surfaces: no surface named \"nosuch\" in the document; there are: \"EG\"");
    ExpectRefused({"convert", kSurvey, "--export-point-groups", "nosuch"}, "a.xml",
                  "--export-point-groups: no point group named \"nosuch\" in the document; there are: \"Field\"");
    ExpectRefused({"convert", kSurvey, "--export-gps", "nosuch"}, "a.xml",
                  "--export-gps: no GPS group named \"nosuch\" in the document; there are: \"Rover day\"");
    ExpectRefused({"convert", kSurvey, "--export-jobs", "nosuch"}, "a.xml",
                  "--export-jobs: no total-station job named \"nosuch\" in the document; there are: \"Topo 1\"");
    ExpectRefused({"convert", kRoad, "--export-jobs", "Topo 1"}, "a.xml",
                  "--export-jobs: no total-station job named \"Topo 1\" in the document, which hold none");
    ExpectRefused({"convert", kRoad, "--road", "nosuch"}, "a.rd3",
                  "--road: no road named \"nosuch\" in the document; there are: \"Main Road\"");
    ExpectWritten({"convert", kRoad, "--road", "Main Road"}, "ok.rd3");
    ExpectWritten({"convert", kRoad, "--export-roads", "", "--export-surfaces", "EG"}, "ok.xml");
}

// 25 surfaces of one triangle each, named S01 to S25.
std::string ManySurfaces(const CScratch& dir) {
    std::string xml = "<?xml version=\"1.0\"?>\n<LandXML version=\"1.2\"><Units><Metric linearUnit=\"meter\"/>"
                      "</Units><Surfaces>\n";
    for (int i = 1; i <= 25; ++i) {
        char name[8];
        std::snprintf(name, sizeof name, "S%02d", i);
        xml += std::string("<Surface name=\"") + name + "\"><Definition surfType=\"TIN\"><Pnts><P id=\"1\">0 0 1</P>"
               "<P id=\"2\">0 1 1</P><P id=\"3\">1 0 1</P></Pnts><Faces><F>1 2 3</F></Faces></Definition>"
               "</Surface>\n";
    }
    xml += "</Surfaces></LandXML>\n";
    clitest::WriteBytes(dir.File("many.xml"), xml);
    return dir.File("many.xml");
}

TEST_F(CliChecks, ALongListOfNamesShowsTheFirstTwentyAndACount) {
    const std::string in = ManySurfaces(dir);
    std::string listed;
    for (int i = 1; i <= 20; ++i) {
        char name[12];
        std::snprintf(name, sizeof name, "\"S%02d\"", i);
        listed += (i == 1 ? "" : ", ") + std::string(name);
    }
    ExpectRefused({"convert", in, "--surfaces", "S26"}, "a.xml",
                  "--surfaces: no surface named \"S26\" in the inputs; there are: " + listed + " and 5 more");
}

TEST_F(CliChecks, AnOptionTheOutputFormatDoesNotUseIsRefused) {
    const std::string selection = "it applies to LandXML output";
    ExpectRefused({"convert", kRoad, "--export-roads", "Main Road"}, "a.rd3",
                  "--export-roads does not apply to RD3 output; " + selection);
    ExpectRefused({"convert", kRoad, "--export-surfaces", "EG"}, "a.dxf",
                  "--export-surfaces does not apply to DXF output; " + selection);
    ExpectRefused({"convert", kRoad, "--export-point-groups", "P"}, "a.dwg",
                  "--export-point-groups does not apply to DWG output; " + selection);
    ExpectRefused({"convert", kRoad, "--export-gps", "G"}, "a.rd3",
                  "--export-gps does not apply to RD3 output; " + selection);
    ExpectRefused({"convert", kRoad, "--export-jobs", "J"}, "a.dxf",
                  "--export-jobs does not apply to DXF output; " + selection);
    ExpectRefused({"convert", kRoad, "--road", "Main Road"}, "a.xml",
                  "--road does not apply to LandXML output; it applies to RD3 output");
    ExpectRefused({"convert", kRoad, "--road", "Main Road"}, "a.dxf",
                  "--road does not apply to DXF output; it applies to RD3 output");
    ExpectRefused({"convert", kRoad, "--dxf-version", "R12"}, "a.xml",
                  "--dxf-version does not apply to LandXML output; it applies to DXF and DWG output");
    ExpectRefused({"convert", kRoad, "--contour-interval", "2"}, "a.rd3",
                  "--contour-interval does not apply to RD3 output; it applies to DXF, DWG, GeoPackage, GeoJSON, "
                  "Shapefile and FlatGeobuf output");
    ExpectRefused({"convert", kRoad, "--no-clouds"}, "a.xml",
                  "--no-clouds does not apply to LandXML output; it applies to DXF and DWG output");
    ExpectRefused({"convert", kRoad, "--crs", "EPSG:3875"}, "a.xml",
                  "--crs does not apply to LandXML output; it applies to GeoPackage, GeoJSON, Shapefile, FlatGeobuf "
                  "and GeoTIFF output");
    ExpectRefused({"convert", kRoad, "--cell", "2"}, "a.gpkg",
                  "--cell does not apply to GeoPackage output; it applies to GeoTIFF output");
    // Where they apply they are taken.
    ExpectWritten({"convert", kRoad, "--dxf-version", "R12", "--contour-interval", "0.5", "--no-clouds"}, "ok.dxf");
}

TEST_F(CliChecks, ToMustAgreeWithAKnownExtension) {
    ExpectRefused({"convert", kRoad, "--to", "dxf"}, "a.dwg",
                  dir.File("a.dwg") + ": the name says DWG but --to dxf asks for DXF; rename the output or leave "
                                      "--to out");
    ExpectRefused({"convert", kRoad, "--to", "rd3"}, "a.xml",
                  dir.File("a.xml") + ": the name says LandXML but --to rd3 asks for RD3; rename the output or "
                                      "leave --to out");
    // An extension no format has leaves the choice to --to; a --to key as
    // extension agrees with itself.
    ExpectWritten({"convert", kRoad, "--to", "xml"}, "a.out");
    ExpectWritten({"convert", kRoad, "--to", "xml"}, "a.landxml");
    ExpectWritten({"convert", kRoad, "--to", "rd3"}, "a.RD3");
}

TEST_F(CliChecks, ContourIntervalsThatCannotBeRight) {
    const std::string positive = ": must be a positive, finite number of metres";
    ExpectRefused({"convert", kRoad, "--contour-interval", "0"}, "a.dxf", "--contour-interval 0" + positive);
    ExpectRefused({"convert", kRoad, "--contour-interval", "-2"}, "a.dxf", "--contour-interval -2" + positive);
    ExpectRefused({"convert", kRoad, "--contour-interval", "nan"}, "a.dxf", "--contour-interval nan" + positive);
    ExpectRefused({"convert", kRoad, "--contour-interval", "inf"}, "a.dxf", "--contour-interval inf" + positive);
    ExpectRefused({"convert", kRoad, "--contour-interval", "abc"}, "a.dxf",
                  "--contour-interval \"abc\": not a number of metres");
    ExpectRefused({"convert", kRoad, "--contour-interval", "1m"}, "a.dxf",
                  "--contour-interval \"1m\": not a number of metres");
    ExpectRefused({"convert", kRoad, "--contour-interval", ""}, "a.dwg",
                  "--contour-interval \"\": not a number of metres");
    // The sample's surface spans 6.296 m: 1e-5 m would give 629,601 levels
    // (taken), 1e-6 m 6,296,001 (refused).
    ExpectRefused({"convert", kRoad, "--contour-interval", "1e-6"}, "a.dxf",
                  "--contour-interval 1e-6: surface \"EG\" spans 6.296 m of elevation, which would give "
                  "6.296e+06 contour levels (at most 1000000)");
}

}  // namespace
