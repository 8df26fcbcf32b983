// Diagnostics end to end: each file of tests/data/landxml/diag triggers
// known kinds; `roadx info --json` holds each as one record (kind, count,
// line, element) and standard error has its summary line. --strict fails
// without writing, -q prints nothing.
#include <gtest/gtest.h>

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "tests/cli/run_command.h"
#include "tests/common/test_data.h"

namespace {

using namespace clitest;
using nlohmann::json;

const std::string kDiag = roadx::test::DataPath("landxml/diag/");

std::string Roadx() { return ShellQuote(roadx::test::RoadxExe()); }

struct TKindCase {
    const char* file;
    const char* kind;
    int count;
    int line;
    const char* element;
    const char* summary;  // the line on standard error after "roadx: warning: FILE:LINE: "
};

class DiagnosticKinds : public ::testing::TestWithParam<TKindCase> {};

json Warnings(const std::string& path) {
    const TCommandResult r = RunCommand(Roadx() + " info --json " + ShellQuote(path) + " 2>/dev/null");
    EXPECT_EQ(r.exitCode, 0);
    return json::parse(r.output).at("warnings");
}

TEST_P(DiagnosticKinds, RecordAndSummaryLine) {
    const TKindCase& c = GetParam();
    const std::string path = kDiag + c.file;
    int found = 0;
    for (const json& w : Warnings(path)) {
        if (w.at("kind") != c.kind) continue;
        ++found;
        EXPECT_EQ(w.at("count"), c.count);
        EXPECT_EQ(w.at("line"), c.line);
        EXPECT_EQ(w.at("element"), c.element);
        EXPECT_EQ(w.at("file"), path);
        EXPECT_EQ(w.at("severity"), "warning");
    }
    EXPECT_EQ(found, 1);
    const TCommandResult r = RunCommand(Roadx() + " info " + ShellQuote(path) + " 2>&1 >/dev/null");
    const std::string expected = "roadx: warning: " + path + ":" + std::to_string(c.line) + ": " + c.summary +
                                 " (first at " + c.element + ") [" + c.kind + "]\n";
    EXPECT_NE(r.output.find(expected), std::string::npos) << r.output;
}

const TKindCase kKinds[] = {
    {"surface_numbers.xml", "number-not-read", 2, 8, "Surfaces / Surface \"G\" / Definition / Pnts / P 1",
     "2 text \"nan\" is not a number; read as 0"},
    {"surface_numbers.xml", "number-cut", 2, 10, "Surfaces / Surface \"G\" / Definition / Pnts / P 3",
     "2 text \"17,4\" is a number followed by other text; read as 17, the rest ignored"},
    {"surface_numbers.xml", "number-out-of-range", 1, 12, "Surfaces / Surface \"G\" / Definition / Pnts / P 5",
     "1 number \"1e309\" is beyond the range of its type; read as 1.7976931348623157e+308"},
    {"surface_numbers.xml", "surface-point-id-repeated", 1, 7, "Surfaces / Surface \"G\" / Definition / Pnts",
     "1 P repeats the id of an earlier P; the later point takes the id; faces use it"},
    {"surface_numbers.xml", "surface-face-unknown-id", 2, 15, "Surfaces / Surface \"G\" / Definition / Faces",
     "2 triangle names a point id that no P has; triangle dropped"},
    {"survey_groups.xml", "observation-angle-format", 2, 15, "Survey / ObservationGroup o1",
     "2 RawObservation not imported (angles in \"dd.mm.ss\" are not read)"},
    {"survey_groups.xml", "cgpoints-nested", 2, 6, "CgPoints \"outer\" / CgPoints \"inner\"",
     "2 CgPoint inside CgPoints nested in CgPoints not imported"},
    {"survey_groups.xml", "angle-unit-not-read", 1, 3, "Units / Metric",
     "1 angularUnit \"decimal dd.mm.ss\" is not one of \"radians\", \"grads\", \"decimal degrees\"; values used as "
     "written, without a unit"},
    {"alignment_rules.xml", "length-unit-foot", 1, 3, "Units / Imperial",
     "1 linearUnit \"foot\" (the international foot, 0.3048 m) is read as the US survey foot; lengths multiplied by "
     "0.3048006096012 (2 ppm longer: 0.6 m at 300 km)"},
    {"alignment_rules.xml", "alignment-pis-only", 1, 6, "Alignments \"Site\" / Alignment \"PIs\" (station 0) / AlignPIs",
     "1 alignment given only by AlignPIs: its plan geometry is not read; a road without plan elements"},
    {"alignment_rules.xml", "design-cross-sect-surf", 2, 20,
     "Alignments \"Site\" / Alignment \"Back\" (station 1000) / CrossSects / CrossSect / DesignCrossSectSurf \"Design\"",
     "2 DesignCrossSectSurf not imported (only CrossSectSurf is read)"},
    {"alignment_rules.xml", "plan-element-not-read", 1, 15,
     "Alignments \"Site\" / Alignment \"Back\" (station 1000) / CoordGeom / Chain",
     "1 \"Chain\" in CoordGeom is not read; left out of the plan; later elements follow on without it"},
    {"alignment_rules.xml", "plan-element-without-start", 1, 14,
     "Alignments \"Site\" / Alignment \"Back\" (station 1000) / CoordGeom / Curve",
     "1 Curve has no Start (only a PI); starts at (0, 0)"},
    // Line 1 points east by the rules (0 degrees counter-clockwise from
    // east) but north by its Start and End: 100 m east against 100 m north
    // is 100·√2 = 141.421 m; so for line 2 (east of its own Start vs north).
    {"geometry_check.xml", "plan-end-mismatch", 2, 7,
     "Alignments / Alignment \"North\" (station 0) / CoordGeom / Line 1 (station 0)",
     "2 the computed end lies 141.421 m from the file's End; likely cause: the file's directions fit azimuths from "
     "north (clockwise), not the way decimal degrees are read; the computed geometry kept"},
    {"geometry_check.xml", "plan-gap-in-file", 1, 8,
     "Alignments / Alignment \"North\" (station 0) / CoordGeom / Line 2 (station 100)",
     "1 the file's Start lies 0.500 m from the End of the element before it; each element starts at its own Start"},
    {"alignment_rules.xml", "road-negative-length", 1, 11, "Alignments \"Site\" / Alignment \"Back\" (station 1000)",
     "1 the road runs from station 304.801 to 91.4402 (length -213.36): the alignment's staStart is not followed by "
     "its elements' stations; imported as read; its length is negative"},
    {"more_kinds.xml", "length-unit-not-read", 1, 3, "Units / Metric",
     "1 linearUnit \"kilometer\" is not read; lengths taken as metres"},
    {"more_kinds.xml", "observation-group-not-read", 1, 22, "Survey / ObservationGroup g1",
     "1 RawObservation not imported (observations inside ObservationGroup are not read)"},
    {"more_kinds.xml", "observation-without-target", 1, 18, "Survey / InstrumentSetup s1 / RawObservation 1",
     "1 RawObservation not imported (it has no TargetPoint)"},
    {"more_kinds.xml", "observation-target-not-found", 1, 19,
     "Survey / InstrumentSetup s1 / RawObservation 2 / TargetPoint",
     "1 RawObservation not imported (its TargetPoint has no coordinates and names no known point)"},
    {"sections_points.xml", "cgpoint-not-three-numbers", 1, 6, "CgPoints \"P\" / CgPoint \"Flat\"",
     "1 CgPoint has not exactly three coordinates (northing, easting, elevation); not imported"},
    // -3 lies between -2 (the last kept) and -5 (the first): dropped.
    {"sections_points.xml", "cross-sect-point-dropped", 1, 15,
     "Alignments / Alignment \"R\" (station 0) / CrossSects / CrossSect 1 / CrossSectSurf \"Ground\"",
     "1 CrossSectSurf point neither right of the points before it nor left of all of them (the line turns back); "
     "not imported"},
    {"sections_points.xml", "cross-sect-surf-unnamed", 1, 16,
     "Alignments / Alignment \"R\" (station 0) / CrossSects / CrossSect 1 / CrossSectSurf 2",
     "1 CrossSectSurf without a name; not imported"},
    // Station 500 of a road 100 m long.
    {"sections_points.xml", "cross-sect-not-imported", 1, 18,
     "Alignments / Alignment \"R\" (station 0) / CrossSects / CrossSect 2",
     "1 CrossSect has no width (all its points at one offset) or its station lies outside the road's plan; not "
     "imported"},
    {"profile_surface.xml", "prof-surf-not-imported", 1, 24,
     "Alignments / Alignment \"R\" (station 0) / Profile / ProfSurf \"Ground\"",
     "1 ProfSurf (a terrain profile along the road) not imported; only ProfAlign is read"},
    {"profile_surface.xml", "profile-element-not-read", 1, 27,
     "Alignments / Alignment \"R\" (station 0) / Profile / ProfAlign \"Design\" / UnsymParaCurve",
     "1 \"UnsymParaCurve\" in ProfAlign is not read; left out of the design line"},
    {"gps_rover.xml", "gps-position-without-latlon", 1, 10, "Survey / GPSPosition 2",
     "1 GPSPosition without wgsLatitude or wgsLongitude: no point added; its TargetPoint's name and coordinates go "
     "to the point before it"},
    // A = sqrt(500 * 50) = 158.113883 against the stated 300.
    {"more_kinds.xml", "spiral-constant-mismatch", 1, 11,
     "Alignments / Alignment \"S\" (station 0) / CoordGeom / Spiral (station 100)",
     "1 spiral parameter A = 158.113883 (from its length and radii) matches neither the file's constant 300.000000 "
     "nor its square root 17.320508; the user was asked whether to go on; A kept"},
};

// Any of these warnings makes --strict exit 1 without writing.
TEST_P(DiagnosticKinds, StrictWritesNothing) {
    char tmpl[] = "/tmp/roadx-strict-XXXXXX";
    const std::string dir = mkdtemp(tmpl);
    const std::string out = dir + "/o.xml";
    const TCommandResult r = RunCommand(Roadx() + " convert --strict " + ShellQuote(kDiag + GetParam().file) + " -o " +
                                        ShellQuote(out) + " 2>&1");
    EXPECT_EQ(r.exitCode, 1) << r.output;
    EXPECT_NE(r.output.find("[" + std::string(GetParam().kind) + "]"), std::string::npos) << r.output;
    EXPECT_FALSE(std::filesystem::exists(out));
    std::filesystem::remove_all(dir);
}

std::string KindName(const ::testing::TestParamInfo<TKindCase>& i) {
    std::string n = TestName(std::string(i.param.kind) + ".x");
    return n;
}

INSTANTIATE_TEST_SUITE_P(Diag, DiagnosticKinds, ::testing::ValuesIn(kKinds), KindName);

std::string ReadText(const std::string& path) {
    std::ifstream f(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(f), std::istreambuf_iterator<char>());
}

// A temporary folder, removed at the end of the test.
struct TTempDir {
    std::string path;
    TTempDir() {
        char tmpl[] = "/tmp/roadx-diag-XXXXXX";
        path = mkdtemp(tmpl);
    }
    ~TTempDir() { std::filesystem::remove_all(path); }
};

TEST(Diagnostics, RD3ExportSaysWhatTheFileCannotCarry) {
    TTempDir tmp;
    const std::string out = tmp.path + "/o.rd3";
    const TCommandResult r =
        RunCommand(Roadx() + " convert " + ShellQuote(kDiag + "rd3_cannot_carry.xml") + " -o " + ShellQuote(out) + " 2>&1");
    EXPECT_EQ(r.exitCode, 0);
    const std::string road = "Road \"A road whose name is longer than an RD3 field\"";
    EXPECT_EQ(r.output,
              "roadx: warning: " + out + ": 1 an RD3 file holds one road: 1 other roads not written; the first road "
              "written; --road names another (first at " + road + ") [rd3-roads-left-out]\n"
              "roadx: warning: " + out + ": 1 the road name is longer than the 33 UTF-16 units of an RD3 name field; "
              "written cut to \"A road whose name is longer than \" (first at " + road + ") [rd3-name-cut]\n"
              "roadx: warning: " + out + ": 1 continuity clothoid not written (RD3 has no record for it); left out: "
              "every later element starts where the file's previous one ends (first at " + road +
              " / plan element 2 (station 100.000)) [rd3-continuity-clothoid]\n");
    EXPECT_TRUE(std::filesystem::exists(out));
}

// Sections reach an RD3 file only as the template of their "STF" line, at
// stations where the project line has an elevation (it ends at 150 here).
TEST(Diagnostics, RD3ExportSaysWhichSectionsAreLeftOut) {
    TTempDir tmp;
    const std::string out = tmp.path + "/o.rd3";
    const TCommandResult r =
        RunCommand(Roadx() + " convert " + ShellQuote(kDiag + "rd3_sections.xml") + " -o " + ShellQuote(out) + " 2>&1");
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_EQ(r.output,
              "roadx: warning: " + out + ": 2 section has no \"STF\" line, the only line an RD3 template is made of; "
              "section not written (--section-code SURFACE=STF makes a surface its template) (first at Road \"R\" / "
              "section S100.000000 (station 100.000)) [rd3-section-without-stf]\n"
              "roadx: warning: " + out + ": 1 the road's main project line has no elevation at the section's station "
              "(an RD3 template is relative to it); section not written (first at Road \"R\" / section S180.000000 "
              "(station 180.000)) [rd3-section-no-elevation]\n");
    const TCommandResult back = RunCommand(Roadx() + " info --json " + ShellQuote(out) + " 2>/dev/null");
    EXPECT_EQ(json::parse(back.output).at("roads").at(0).at("sections"), 1) << back.output;
}

// An RD3 file whose plan chain holds a record of type 7 after its straight.
TEST(Diagnostics, RD3ImportSaysWhatItSkipped) {
    const std::string rd3 = roadx::test::DataPath("rd3/diag/R.rd3");
    const std::string element = "Road \"R\" / plan record at offset 984 (station 200.000)";
    const json w = Warnings(rd3);
    ASSERT_EQ(w.size(), 1u) << w.dump();
    EXPECT_EQ(w[0].at("kind"), "rd3-plan-record-skipped");
    EXPECT_EQ(w[0].at("count"), 1);
    EXPECT_EQ(w[0].at("line"), 0);
    EXPECT_EQ(w[0].at("offset"), 984);
    EXPECT_EQ(w[0].at("element"), element);
    TTempDir tmp;
    const TCommandResult r =
        RunCommand(Roadx() + " convert " + ShellQuote(rd3) + " -o " + ShellQuote(tmp.path + "/o.xml") + " 2>&1");
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_EQ(r.output, "roadx: warning: " + rd3 + ": 1 plan record of type 7 is not a straight, arc or clothoid; "
                        "skipped; the next element starts where the one before ends (first at " + element +
                        ") [rd3-plan-record-skipped]\n");
    const TCommandResult strict = RunCommand(Roadx() + " convert --strict " + ShellQuote(rd3) + " -o " +
                                             ShellQuote(tmp.path + "/p.xml") + " 2>&1");
    EXPECT_EQ(strict.exitCode, 1);
    EXPECT_FALSE(std::filesystem::exists(tmp.path + "/p.xml"));
    EXPECT_EQ(RunCommand(Roadx() + " convert -q " + ShellQuote(rd3) + " -o " + ShellQuote(tmp.path + "/q.xml") +
                         " 2>&1").output,
              "");
}

// Layer names a drawing file does not allow, names that become equal once
// valid, characters beyond the file's code page, a tab in a point name.
TEST(Diagnostics, DrawingExportSaysWhatTheFileChanges) {
    TTempDir tmp;
    const std::string in = ShellQuote(kDiag + "drawing_names.xml");
    const std::string dxf = tmp.path + "/o.dxf";
    const TCommandResult r = RunCommand(Roadx() + " convert " + in + " -o " + ShellQuote(dxf) + " 2>&1");
    EXPECT_EQ(r.exitCode, 0);
    const std::string w = "roadx: warning: " + dxf + ": ";
    EXPECT_EQ(r.output,
              w + "2 layer name holds characters a drawing file does not allow in names (< > / \\ \" : ; ? * | = `, "
                  "control characters, broken UTF-8) or is empty; each replaced by '_': written as "
                  "\"Grafica_DTM_Cut_Fill\" (first at layer \"Grafica_DTM_Cut/Fill\") [drawing-name-replaced]\n" +
              w + "1 layer name, once valid, is an earlier one's (names compare without regard to case); written as "
                  "\"Grafica_DTM_Cut_Fill_2\" (first at layer \"Grafica_DTM_Cut:Fill\") [drawing-name-suffixed]\n" +
              w + "1 layer name holds characters code page 1252 lacks; each written as a \\U+XXXX escape, which "
                  "readers decode (first at layer \"Grafica_DTM_Дорога\") [drawing-name-escaped]\n" +
              w + "1 text holds characters beyond ASCII; each written as a \\U+XXXX escape, which readers decode "
                  "(first at Text \"Ω 1\" on layer \"Grafica_Punti\") [drawing-text-escaped]\n" +
              w + "1 text holds control characters (line breaks, tabs) or broken UTF-8; each control character "
                  "written as a blank, each broken byte as '?' (first at Text \"A B\" on layer \"Grafica_Punti\") "
                  "[drawing-text-replaced]\n");
    // The file holds what the records say.
    const std::string bytes = ReadText(dxf);
    EXPECT_NE(bytes.find("\nGrafica_DTM_Cut_Fill_2\n"), std::string::npos);
    EXPECT_NE(bytes.find("\nGrafica_DTM_\\U+0414\\U+043E\\U+0440\\U+043E\\U+0433\\U+0430\n"), std::string::npos);
    EXPECT_NE(bytes.find("\nA B\n"), std::string::npos);
    // DWG texts keep code page 1252; Ω is beyond it too.
    const std::string dwg = tmp.path + "/o.dwg";
    const TCommandResult d = RunCommand(Roadx() + " convert " + in + " -o " + ShellQuote(dwg) + " 2>&1");
    EXPECT_EQ(d.exitCode, 0);
    EXPECT_NE(d.output.find("roadx: warning: " + dwg + ": 1 text holds characters code page 1252 lacks; each "
                            "written as a \\U+XXXX escape, which readers decode (first at Text \"Ω 1\" on layer "
                            "\"Grafica_Punti\") [drawing-text-escaped]\n"),
              std::string::npos)
        << d.output;
    for (const char* name : {"/p.dxf", "/p.dwg"}) {
        const TCommandResult s =
            RunCommand(Roadx() + " convert --strict " + in + " -o " + ShellQuote(tmp.path + name) + " 2>&1");
        EXPECT_EQ(s.exitCode, 1);
        EXPECT_NE(s.output.find("roadx: " + tmp.path + name + ": 5 kind(s) of warning, an error with --strict; "
                                "nothing written\n"),
                  std::string::npos)
            << s.output;
        EXPECT_FALSE(std::filesystem::exists(tmp.path + name));
    }
}

// A continuity clothoid, a design line that starts after the road, and a
// section surface of one point.
TEST(Diagnostics, LandXMLExportSaysWhatTheFileCannotCarry) {
    TTempDir tmp;
    const std::string in = ShellQuote(kDiag + "landxml_cannot_carry.xml");
    const std::string out = tmp.path + "/o.xml";
    const TCommandResult r = RunCommand(Roadx() + " convert " + in + " -o " + ShellQuote(out) + " 2>&1");
    EXPECT_EQ(r.exitCode, 0);
    const std::string w = "roadx: warning: " + out + ": ";
    EXPECT_EQ(r.output,
              w + "1 the design line has no elevation at the road's start (station 0.000); Start written with the "
                  "undefined value 1.7e200 as its elevation (first at Road \"A\" / Start) [landxml-start-elevation]\n" +
              w + "1 continuity clothoid (between two radii) not written: the export writes spirals from or to a "
                  "straight only; left out: CoordGeom has a gap where it was (first at Road \"A\" / plan element 2 "
                  "(station 100.000)) [landxml-continuity-clothoid]\n" +
              w + "1 a section point stands alone between undefined vertices (no line to write); not written (first "
                  "at Road \"A\" / section S50.000000 (station 50.000) / line \"Ground\" at offset -5.000) "
                  "[landxml-section-point-dropped]\n");
    // The file is what the records say: no Spiral, the point at -5 absent.
    const std::string text = ReadText(out);
    EXPECT_EQ(text.find("<Spiral"), std::string::npos);
    EXPECT_EQ(text.find("-5.000000 99.000000"), std::string::npos);
    EXPECT_NE(text.find("<PntList2D>0.000000 99.500000 5.000000 99.000000 </PntList2D>"), std::string::npos);
    const std::string strictOut = tmp.path + "/p.xml";
    const TCommandResult s = RunCommand(Roadx() + " convert --strict " + in + " -o " + ShellQuote(strictOut) + " 2>&1");
    EXPECT_EQ(s.exitCode, 1);
    EXPECT_NE(s.output.find("roadx: " + strictOut + ": 3 kind(s) of warning, an error with --strict; nothing written\n"),
              std::string::npos)
        << s.output;
    EXPECT_FALSE(std::filesystem::exists(strictOut));
}

// With --section-code, a surface it does not name has no code.
TEST(Diagnostics, SurfaceWithoutSectionCode) {
    const std::string path = kDiag + "sections_points.xml";
    const TCommandResult r =
        RunCommand(Roadx() + " info --section-code Other=STF " + ShellQuote(path) + " 2>&1 >/dev/null");
    EXPECT_NE(r.output.find("roadx: warning: " + path + ":15: 1 CrossSectSurf \"Ground\" maps to no section code; not "
                            "imported (--section-code SURFACE=CODE maps it) (first at Alignments / Alignment \"R\" "
                            "(station 0) / CrossSects / CrossSect 1 / CrossSectSurf \"Ground\") [cross-sect-surf-no-code]\n"),
              std::string::npos)
        << r.output;
    const TCommandResult plain = RunCommand(Roadx() + " info " + ShellQuote(path) + " 2>&1 >/dev/null");
    EXPECT_EQ(plain.output.find("[cross-sect-surf-no-code]"), std::string::npos) << plain.output;
}

TEST(Diagnostics, StrictImportWarningExitsOneAndWritesNothing) {
    TTempDir tmp;
    const std::string out = tmp.path + "/o.xml";
    const std::string in = kDiag + "surface_numbers.xml";
    const TCommandResult r =
        RunCommand(Roadx() + " convert --strict " + ShellQuote(in) + " -o " + ShellQuote(out) + " 2>&1");
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_NE(r.output.find("roadx: " + in + ": 5 kind(s) of warning, an error with --strict; nothing written\n"),
              std::string::npos)
        << r.output;
    EXPECT_TRUE(std::filesystem::is_empty(tmp.path));
}

TEST(Diagnostics, StrictExportWarningExitsOneAndWritesNothing) {
    TTempDir tmp;
    const std::string out = tmp.path + "/o.rd3";
    const TCommandResult r = RunCommand(Roadx() + " convert --strict " + ShellQuote(kDiag + "rd3_cannot_carry.xml") +
                                        " -o " + ShellQuote(out) + " 2>&1");
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_NE(r.output.find("roadx: " + out + ": 3 kind(s) of warning, an error with --strict; nothing written\n"),
              std::string::npos)
        << r.output;
    EXPECT_TRUE(std::filesystem::is_empty(tmp.path));
}

TEST(Diagnostics, QuietPrintsNothing) {
    TTempDir tmp;
    const std::string out = tmp.path + "/o.rd3";
    const TCommandResult r = RunCommand(Roadx() + " convert -q " + ShellQuote(kDiag + "rd3_cannot_carry.xml") +
                                        " " + ShellQuote(kDiag + "surface_numbers.xml") + " -o " + ShellQuote(out) +
                                        " 2>&1");
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_EQ(r.output, "");
    EXPECT_TRUE(std::filesystem::exists(out));
}

// The real samples: what the issue counted, as the program now says it.
TEST(Diagnostics, SampleWithDdMmSsObservations) {
    const std::string path = roadx::test::DataPath("landxml/c3d2007_lx11_survey_rawobs_ddmmss.xml");
    bool seen = false;
    for (const json& w : Warnings(path))
        if (w.at("kind") == "observation-angle-format") {
            seen = true;
            EXPECT_EQ(w.at("count"), 2945);
            EXPECT_EQ(w.at("line"), 12977);
        }
    EXPECT_TRUE(seen);
}

TEST(Diagnostics, SampleWithDesignCrossSections) {
    const std::string path = roadx::test::DataPath("landxml/c3d2014_imperial_crosssects_tin.xml");
    bool seen = false;
    for (const json& w : Warnings(path))
        if (w.at("kind") == "design-cross-sect-surf") {
            seen = true;
            EXPECT_EQ(w.at("count"), 679);
        }
    EXPECT_TRUE(seen);
}

TEST(GeometryCheck, ToleranceSetsTheThreshold) {
    const std::string path = kDiag + "geometry_check.xml";
    const TCommandResult r = RunCommand(Roadx() + " info --json --tolerance 1 " + ShellQuote(path) + " 2>/dev/null");
    ASSERT_EQ(r.exitCode, 0);
    const json s = json::parse(r.output);
    std::vector<std::string> kinds;
    for (const json& w : s.at("warnings")) kinds.push_back(w.at("kind"));
    // The 0.5 m gap is within 1 m; the 141 m are not.
    EXPECT_EQ(kinds, std::vector<std::string>{"plan-end-mismatch"});
}

// Every sample of tests/data/landxml that states End points: the elements
// whose computed end lies more than 1 mm from the file's End (count, first
// element, first and largest distance, cause). The others have none.
struct TSampleCheck {
    const char* file;
    int count;  // 0: no finding
    int line;
    const char* element;
    const char* message;
};

class GeometryCheckSamples : public ::testing::TestWithParam<TSampleCheck> {};

TEST_P(GeometryCheckSamples, FindingsPinned) {
    const TSampleCheck& c = GetParam();
    const std::string path = roadx::test::DataPath(std::string("landxml/") + c.file);
    const TCommandResult r = RunCommand(Roadx() + " info --json --yes " + ShellQuote(path) + " 2>/dev/null");
    ASSERT_EQ(r.exitCode, 0);
    int found = 0;
    const json s = json::parse(r.output);
    for (const json& w : s.at("warnings")) {
        EXPECT_NE(w.at("kind"), "plan-gap-in-file") << w.dump();
        if (w.at("kind") != "plan-end-mismatch") continue;
        ++found;
        EXPECT_EQ(w.at("count"), c.count);
        EXPECT_EQ(w.at("line"), c.line);
        EXPECT_EQ(w.at("element"), c.element);
        EXPECT_EQ(w.at("message"), c.message);
    }
    EXPECT_EQ(found, c.count > 0 ? 1 : 0);
}

const TSampleCheck kSampleChecks[] = {
    {"aplitop_grads_spiral_chain.xml", 0, 0, "", ""},
    {"aplitop_grads_spirals_paracurve.xml", 0, 0, "", ""},
    {"c3d2014_imperial_crosssects_tin.xml", 0, 0, "", ""},
    {"c3d2020_alignment_spirals_tr.xml", 1, 15,
     "Alignments / Alignment \"K1 A Kolu\" (station 0.) / CoordGeom / Spiral 1",
     "the computed end lies 0.024 m from the file's End"},
    {"c3d2023_imperial_alignment_paracurve.xml", 0, 0, "", ""},
    {"carlson2014_lx11_ussft_crosssects_tin.xml", 15, 3476,
     "Alignments / Alignment \"TROUT RUN ROAD\" (station 0.000000) / CoordGeom \"TROUT RUN ROAD\" / Curve 1",
     "the computed end lies 21.626 m from the file's End (largest 141.767 m at Alignments / Alignment \"TROUT RUN "
     "ROAD\" (station 0.000000) / CoordGeom \"TROUT RUN ROAD\" / Line 2); likely cause: no directionUnit: the "
     "file's directions were not read"},
    {"divcibare_lx10_spirals_paracurve_tin.xml", 0, 0, "", ""},
    {"inframodel_3dwin_grads_circcurve.xml", 15, 23,
     "Alignments \"M3_RS\" / Alignment \"M3_RS - CL\" (station 0.000000) / CoordGeom / Line 1 (station 0.000000)",
     "the computed end lies 65.450 m from the file's End (largest 353.939 m at Alignments \"M3_RS\" / Alignment "
     "\"M3_RS - CL\" (station 0.000000) / CoordGeom / Curve 7 (station 1027.054571)); likely cause: the file's "
     "directions fit angles counter-clockwise from north, not the way grads are read"},
    {"ldt2005_lx11_subdivision_profiles_pipes_tin.xml", 19, 2921,
     "Alignments / Alignment \"loop\" (station 0.000000) / CoordGeom / Line 4",
     "the computed end lies 3.991 m from the file's End (largest 6.541 m at Alignments / Alignment \"loop\" "
     "(station 0.000000) / CoordGeom / Line 13); likely cause: the Line has no dir: its direction is the running "
     "direction of the element before it, not its Start to End"},
    {"novapoint_inframodel_circcurve_profile.xml", 7, 24,
     "Alignments \"Geometriat\" / Alignment \"Sammalniementie_u\" (station 0.000000) / CoordGeom / Line 1 "
     "(station 0.000000)",
     "the computed end lies 323.869 m from the file's End; likely cause: the file's directions fit azimuths from "
     "north (clockwise), not the way decimal degrees are read"},
    {"ord_ussurveyfoot_alignment_paracurve.xml", 0, 0, "", ""},
};

std::string SampleName(const ::testing::TestParamInfo<TSampleCheck>& i) { return TestName(i.param.file); }

INSTANTIATE_TEST_SUITE_P(Samples, GeometryCheckSamples, ::testing::ValuesIn(kSampleChecks), SampleName);

// info: units as read, extents (northing/easting swapped into x/y by hand
// from the file), cross-section codes, one block per input file.
TEST(Info, UnitsExtentsAndOneBlockPerFile) {
    const std::string a = kDiag + "info_blocks.xml";
    const std::string b = kDiag + "alignment_rules.xml";
    const TCommandResult r =
        RunCommand(Roadx() + " info --json -q " + ShellQuote(a) + " " + ShellQuote(b) + " 2>/dev/null");
    ASSERT_EQ(r.exitCode, 0);
    const json s = json::parse(r.output);
    ASSERT_EQ(s.at("files").size(), 2u);
    const json& f = s["files"][0];
    EXPECT_EQ(f["file"], a);
    EXPECT_EQ(f["units"]["system"], "Metric");
    EXPECT_EQ(f["units"]["directionUnitReadAs"], "grads (azimuth from north, clockwise)");
    EXPECT_EQ(f["surfaces"][0]["extent"], json::array({2000.0, 1000.0, 40.0, 2100.0, 1100.0, 45.0}));
    EXPECT_EQ(f["pointGroups"][0]["extent"], json::array({2000.0, 1000.0, 50.0, 2030.0, 1010.0, 52.5}));
    EXPECT_EQ(f["roads"][0]["extent"], json::array({2000.0, 1000.0, 44.0, 2100.0, 1000.0, 46.0}));
    EXPECT_EQ(f["crossSectionSurfaces"], json::parse(R"([{"surface":"Ground","sectionCode":"Ground"}])"));
    EXPECT_TRUE(f["warnings"].empty());
    const json& g = s["files"][1];
    EXPECT_EQ(g["units"]["linearUnit"], "foot");
    EXPECT_EQ(g["units"]["lengthsReadAs"], "US survey foot (0.3048006096012 m)");
    EXPECT_EQ(g["roads"].size(), 2u);
    // Its 7 kinds of data left out or changed and the geometry check's
    // finding on "Back" (its curve starts at (0, 0)).
    EXPECT_EQ(g["warnings"].size(), 8u);
    EXPECT_EQ(s["warnings"].size(), 8u);
    // The document's extent spans both files: the second file's road
    // "Back" runs from (0, 0) east, its curve starts at (0, 0).
    const json& e = s["extent"];
    EXPECT_EQ(e[0], 0.0);
    EXPECT_EQ(e[5], 52.5);
}

}  // namespace
