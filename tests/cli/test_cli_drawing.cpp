// The roadx program writing drawings: versions, contour interval, DWG,
// a full disk; and the command line's answers to the export dialogs.
#include <gtest/gtest.h>

#include <cmath>

#include "cli/cli_ui.h"
#include "tests/common/test_data.h"
#include "tests/dxfdwg/dxfdwg_test_util.h"

namespace {

struct TRun {
    int status = -1;
    std::string err;
};

TRun Roadx(const std::string& args, const dxtest::CTempDir& dir) {
    const std::string errPath = dir.File("stderr.txt");
    const std::string cmd = roadx::test::RoadxExe() + " " + args + " 2>'" + errPath + "' >/dev/null";
    const int rc = std::system(cmd.c_str());
    TRun r;
    r.status = WIFEXITED(rc) ? WEXITSTATUS(rc) : -1;
    r.err = dxtest::ReadAll(errPath);
    return r;
}

std::string Sample(const std::string& name) { return roadx::test::DataPath("landxml/" + name + ".xml"); }

// Elevations of the vertices of the 3D polylines on one layer, read from
// the group codes of the file.
std::vector<double> PolylineVertexZ(const std::string& dxf, const std::string& layer) {
    std::istringstream in(dxf);
    std::string code, value, type;
    bool onLayer = false;
    std::vector<double> z;
    while (std::getline(in, code) && std::getline(in, value)) {
        const int c = std::atoi(code.c_str());
        if (c == 0) {
            type = value;
            onLayer = false;
        } else if (c == 8) {
            onLayer = value == layer;
        } else if (c == 30 && onLayer && type == "VERTEX") {
            z.push_back(std::atof(value.c_str()));
        }
    }
    return z;
}

TEST(CliDrawing, DiskFullIsAClearErrorNamingTheFile) {
    dxtest::CTempDir dir;
    const TRun r = Roadx("convert -q '" + Sample("c3d_tin_boundaries_breaklines") + "' -o /dev/full --to dxf", dir);
    EXPECT_EQ(r.status, 1);
    // The cause in the words every format uses; the host's message box
    // text goes to the trace, not into this line.
    EXPECT_EQ(r.err, "roadx: /dev/full: cannot write: No space left on device\n");
}

TEST(CliDrawing, UnwritableFolder) {
    dxtest::CTempDir dir;
    const TRun r = Roadx("convert -q '" + Sample("c3d_tin_boundaries_breaklines") + "' -o '" + dir.File("no/x.dxf") + "'", dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "roadx: " + dir.File("no/x.dxf") + ": cannot create: No such file or directory\n");
}

TEST(CliDrawing, VersionsAndDwg) {
    dxtest::CTempDir dir;
    const std::string in = Sample("freecad_sugargrove_pi_only_curves");
    EXPECT_EQ(Roadx("convert '" + in + "' -o '" + dir.File("a.dxf") + "'", dir).status, 0);
    EXPECT_NE(dxtest::ReadAll(dir.File("a.dxf")).find("AC1015"), std::string::npos);
    EXPECT_EQ(Roadx("convert '" + in + "' -o '" + dir.File("b.dxf") + "' --dxf-version R12", dir).status, 0);
    EXPECT_NE(dxtest::ReadAll(dir.File("b.dxf")).find("AC1009"), std::string::npos);
    // DWG by the name's ending, any case.
    EXPECT_EQ(Roadx("convert '" + in + "' -o '" + dir.File("c.DWG") + "'", dir).status, 0);
    EXPECT_EQ(dxtest::ReadAll(dir.File("c.DWG")).substr(0, 6), "AC1015");
    // DWG exists as R2000 only; a DWG must be named so.
    TRun r = Roadx("convert '" + in + "' -o '" + dir.File("d.dwg") + "' --dxf-version R12", dir);
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("R2000 only"), std::string::npos) << r.err;
    EXPECT_FALSE(dxtest::Exists(dir.File("d.dwg")));
    r = Roadx("convert '" + in + "' -o '" + dir.File("e.out") + "' --to dwg", dir);
    EXPECT_EQ(r.status, 2);
    EXPECT_FALSE(dxtest::Exists(dir.File("e.out")));
    // --to that contradicts the name's extension is refused.
    r = Roadx("convert '" + in + "' -o '" + dir.File("f.dwg") + "' --to dxf", dir);
    EXPECT_EQ(r.status, 2);
    EXPECT_FALSE(dxtest::Exists(dir.File("f.dwg")));
}

TEST(CliDrawing, ContourInterval) {
    dxtest::CTempDir dir;
    const std::string in = Sample("c3d_tin_boundaries_breaklines");
    ASSERT_EQ(Roadx("convert '" + in + "' -o '" + dir.File("a.dxf") + "' --contour-interval 0.25", dir).status, 0);
    ASSERT_EQ(Roadx("convert '" + in + "' -o '" + dir.File("b.dxf") + "'", dir).status, 0);
    const auto quarter = PolylineVertexZ(dxtest::ReadAll(dir.File("a.dxf")), "Grafica_Curve di livello");
    const auto metre = PolylineVertexZ(dxtest::ReadAll(dir.File("b.dxf")), "Grafica_Curve di livello");
    ASSERT_FALSE(metre.empty());
    ASSERT_GT(quarter.size(), 2 * metre.size());
    bool offMetre = false;
    for (double z : quarter) {
        EXPECT_NEAR(z * 4, std::round(z * 4), 1e-6);
        offMetre = offMetre || std::fabs(z - std::round(z)) > 0.1;
    }
    EXPECT_TRUE(offMetre);
    for (double z : metre) EXPECT_NEAR(z, std::round(z), 1e-6);
    const TRun r = Roadx("convert '" + in + "' -o '" + dir.File("c.dxf") + "' --contour-interval 0", dir);
    EXPECT_EQ(r.status, 2);
}

TEST(CliDrawing, HelpSaysWhatTheDrawingOptionsMean) {
    dxtest::CTempDir dir;
    const std::string out = dir.File("help.txt");
    std::system((roadx::test::RoadxExe() + " convert --help >'" + out + "' 2>&1").c_str());
    const std::string help = dxtest::ReadAll(out);
    EXPECT_NE(help.find("R12 (AC1009"), std::string::npos) << help;
    EXPECT_NE(help.find("every fifth labelled"), std::string::npos) << help;
    EXPECT_NE(help.find("point clouds"), std::string::npos) << help;
}

TEST(CliUi, DrawingDialogsAnswerFromTheOptions) {
    roadx::cli::ImportOptions imp;
    roadx::cli::ExportOptions exp;
    exp.output = "/tmp/x/plan.dxf";
    exp.dxfVersion = "R12";
    exp.noClouds = true;
    roadx::cli::CCliUi ui(imp, exp);
    TOpzTrasfToDxf opz;
    opz.docFlag = true;
    ASSERT_TRUE(ui.DlgOpzTrasfToDxf(nullptr, opz));
    const bool want[6] = {true, false, false, false, true, true};
    for (int i = 0; i < 6; ++i) EXPECT_EQ(opz.flags[i], want[i]) << i;
    EXPECT_EQ(opz.drawing, 0u);
    opz.docFlag = false;  // a document shown flat is written flat
    ui.DlgOpzTrasfToDxf(nullptr, opz);
    EXPECT_TRUE(opz.flags[2]);
    std::string path = "ignored";
    enumZEDRA_DXFDWG_VER ver = ZEDRA_DXFDWG_VER_R2000;
    ASSERT_TRUE(ui.InpNomeFileExportDxfDwg(path, true, ver, true));
    EXPECT_EQ(path, "/tmp/x/plan.dxf");
    EXPECT_EQ(ver, ZEDRA_DXFDWG_VER_R12);
    exp.dxfVersion = "R2000";
    ui.InpNomeFileExportDxfDwg(path, true, ver, true);
    EXPECT_EQ(ver, ZEDRA_DXFDWG_VER_R2000);
}

}  // namespace
