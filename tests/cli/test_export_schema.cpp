// Our output checked against the LandXML 1.0 schema with xmllint. The file
// is valid except in the places where the required output departs from the
// schema; those places are listed here, and each sample's output must show
// exactly the ones its content calls for.
#include <gtest/gtest.h>

#include <cstdio>
#include <set>
#include <string>

#include "tests/cli/lxe_samples.h"
#include "tests/common/test_data.h"
#include "tests/landxml_export/lxe_documents.h"

namespace {

const std::string kXsd = roadx::test::DataPath("schema/LandXML-1.0.xsd");

// The required output's departures from the schema, each by a piece of
// xmllint's message that names it.
struct TDeparture {
    const char* key;
    const char* match;
    const char* why;
};
const TDeparture kDepartures[] = {
    {"P.id0", "}P', attribute 'id': '0' is not a valid value of the atomic type 'xs:positiveInteger'",
     "surface point ids count from 0, the vertex index the faces use"},
    {"Boundaries.empty", "}Boundaries': Missing child element(s)",
     "Boundaries is written even when the surface has no contour"},
    {"Breakline.brkType", "}Breakline': The attribute 'brkType' is required but missing",
     "breaklines carry only a name"},
    {"Pnts.empty", "}Pnts': Missing child element(s)", "a surface without vertices still writes Pnts"},
    {"Faces.empty", "}Faces': Missing child element(s)", "a surface without triangles still writes Faces"},
    {"Survey.noEquipment", "}InstrumentSetup': This element is not expected. Expected is ( {http://www.landxml.org/schema/LandXML-1.0}Equipment )",
     "a total-station Survey has no Equipment"},
    {"GPSSetup.id", "}GPSSetup', attribute 'id': ", "the GPS set-up id repeats the antenna's id (both the base's name)"},
    {"CrossSect.empty", "}CrossSect': Missing child element(s)",
     "a section whose lines are all single points keeps its CrossSect with nothing inside"},
    {"RawObservation.noTarget", "}RawObservation': Missing child element(s). Expected is ( {http://www.landxml.org/schema/LandXML-1.0}TargetPoint )",
     "an observation without coordinates has no TargetPoint"},
};

// The departures xmllint finds in a file; "?" + message for anything else.
std::set<std::string> Departures(const std::string& file) {
    std::set<std::string> out;
    const std::string cmd = "xmllint --noout --schema '" + kXsd + "' '" + file + "' 2>&1";
    FILE* p = popen(cmd.c_str(), "r");
    if (!p) return {"?cannot run xmllint"};
    char buf[4096];
    while (std::fgets(buf, sizeof buf, p)) {
        const std::string line = buf;
        if (line.find(" validates") != std::string::npos || line.find(" fails to validate") != std::string::npos)
            continue;
        bool known = false;
        for (const auto& d : kDepartures)
            if (line.find(d.match) != std::string::npos) {
                out.insert(d.key);
                known = true;
            }
        if (!known) out.insert("?" + line.substr(0, 300));
    }
    pclose(p);
    return out;
}

bool HaveXmllint() { return std::system("xmllint --version >/dev/null 2>&1") == 0; }

std::string Join(const std::set<std::string>& s) {
    std::string r;
    for (const auto& x : s) r += (r.empty() ? "" : ", ") + x;
    return r;
}

struct TSchemaCase {
    const char* file;
    std::set<std::string> expected;
};

const TSchemaCase kSamplesAndDepartures[] = {
    {"aplitop_grads_spiral_chain.xml", {}},
    {"aplitop_grads_spirals_paracurve.xml", {}},
    {"blender_ussurveyfoot_tin_3k_faces.xml", {"P.id0", "Boundaries.empty"}},
    {"c3d2007_lx11_survey_rawobs_ddmmss.xml", {"Survey.noEquipment"}},
    {"c3d2014_imperial_crosssects_tin.xml", {"P.id0", "Boundaries.empty"}},
    {"c3d2018_tin_44k_faces.xml", {"P.id0", "Boundaries.empty"}},
    {"c3d2020_alignment_spirals_tr.xml", {}},
    {"c3d2020_imperial_tin_cyrillic.xml", {"P.id0", "Boundaries.empty", "Breakline.brkType"}},
    {"c3d2023_imperial_alignment_paracurve.xml", {}},
    {"c3d2023_tin_no_namespace.xml", {"P.id0", "Boundaries.empty"}},
    {"c3d_tin_boundaries_breaklines.xml", {"P.id0", "Breakline.brkType"}},
    {"carlson2014_lx11_ussft_crosssects_tin.xml", {"P.id0", "Boundaries.empty", "CrossSect.empty"}},
    {"divcibare_lx10_spirals_paracurve_tin.xml", {"P.id0", "Boundaries.empty"}},
    {"freecad_sugargrove_pi_only_curves.xml", {}},
    {"inframodel_3dwin_grads_circcurve.xml", {}},
    {"inframodel_3dwin_nested_cgpoints.xml", {}},
    {"inframodel_3dwin_terrain_36k_faces.xml", {"P.id0", "Boundaries.empty", "Breakline.brkType"}},
    {"jlandxml_sample_crosssects_spirals.xml", {"P.id0", "Boundaries.empty", "Pnts.empty", "Faces.empty"}},
    {"ldt2005_lx11_subdivision_profiles_pipes_tin.xml", {"P.id0", "Boundaries.empty"}},
    {"novapoint_inframodel_circcurve_profile.xml", {}},
    {"novapoint_inframodel_tin_latin1.xml", {"P.id0", "Boundaries.empty", "Breakline.brkType"}},
    {"ord_tin_22k_faces_breaklines.xml", {"P.id0", "Breakline.brkType"}},
    {"ord_ussurveyfoot_alignment_paracurve.xml", {}},
    {"sdms_alignpis_spirals_radius0.xml", {}},
    {"tops_survey_grads_rawobs.xml", {"Survey.noEquipment"}},
};

class SchemaOfSamples : public ::testing::TestWithParam<TSchemaCase> {};

TEST_P(SchemaOfSamples, OnlyTheListedDepartures) {
    ASSERT_TRUE(HaveXmllint()) << "needs xmllint (libxml2-utils, scripts/install-deps.sh --test)";
    const TSchemaCase& c = GetParam();
    const std::string in = lxetest::kSamples + c.file;
    lxetest::CTempDir dir;
    const std::string out = dir.Path("valid.xml");
    lxetest::ImportAndExport(in, out);
    EXPECT_EQ(Join(Departures(out)), Join(c.expected)) << c.file;
}

INSTANTIATE_TEST_SUITE_P(Samples, SchemaOfSamples, ::testing::ValuesIn(kSamplesAndDepartures),
                         [](const auto& info) {
                             std::string n = info.param.file;
                             n = n.substr(0, n.find('.'));
                             for (char& ch : n)
                                 if (!std::isalnum(static_cast<unsigned char>(ch))) ch = '_';
                             return n;
                         });

// The test documents hold what the samples lack: GPS surveys, spirals next to
// every other element, sections, empty surfaces.
TEST(SchemaOfTestDocuments, OnlyTheListedDepartures) {
    ASSERT_TRUE(HaveXmllint()) << "needs xmllint (libxml2-utils, scripts/install-deps.sh --test)";
    CVantriDoc doc;
    lxetest::BuildRoads(doc);
    lxetest::BuildSurfaces(doc);
    CVantriDoc gpsOnly;
    lxetest::BuildSurveys(gpsOnly);
    lxetest::CTempDir dir;
    lxetest::CExportUi ui;
    ui.path = dir.Path("docs.xml");
    lxetest::Export(doc, ui);
    EXPECT_EQ(Join(Departures(ui.path)), "Boundaries.empty, Breakline.brkType, Faces.empty, P.id0, Pnts.empty");
    // Only the GPS group: its set-up repeats the antenna's id.
    ui.select = [&gpsOnly](TExportLandXMLResult& r) { r.gpsGroups.push_back(gpsOnly.GetLibGps()->GetGrpAt(0)); };
    lxetest::Export(gpsOnly, ui);
    EXPECT_EQ(Join(Departures(ui.path)), "GPSSetup.id");
    // Behind the missing Equipment, xmllint stops looking into a Survey; with
    // one put in by hand it shows the observation without a TargetPoint.
    ui.select = [&gpsOnly](TExportLandXMLResult& r) { r.jobs.push_back(gpsOnly.GetLibCmp()->GetJobAt(0)); };
    std::string text = lxetest::Export(gpsOnly, ui);
    EXPECT_EQ(Join(Departures(ui.path)), "Survey.noEquipment");
    const std::string header = "\t\t<SurveyHeader name=\"J1\" />\n";
    ASSERT_NE(text.find(header), std::string::npos);
    text.insert(text.find(header) + header.size(), "\t\t<Equipment><GPSAntennaDetails id=\"probe\"/></Equipment>\n");
    {
        FILE* f = std::fopen(ui.path.c_str(), "w");
        ASSERT_NE(f, nullptr);
        std::fwrite(text.data(), 1, text.size(), f);
        std::fclose(f);
    }
    EXPECT_EQ(Join(Departures(ui.path)), "RawObservation.noTarget");
    // Roads and point groups alone are valid.
    ui.select = [&doc, &gpsOnly](TExportLandXMLResult& r) {
        r.roads.push_back(doc.GetLibRoad()->GetRoad(0));
        r.roads.push_back(doc.GetLibRoad()->GetRoad(1));
        r.pointGroups.push_back(gpsOnly.GetLibPnt()->GetGrpAt(0));
    };
    lxetest::Export(doc, ui);
    EXPECT_EQ(Join(Departures(ui.path)), "");
}

}  // namespace
