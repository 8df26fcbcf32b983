// The LandXML CoordinateSystem reader: epsgCode first, else ogcWktCode,
// else none; the file's encoding honoured; only the root's element counts
// as the tag, not a longer name.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <unistd.h>

#include <fcntl.h>
#include <sys/stat.h>

#include "exchange/common/status.h"
#include "host/document.h"
#include "host/null_ui.h"
#include "host/ui.h"
#include "landxml_import/coordinate_system.h"
#include "landxml_import/import_landxml.h"
#include "tests/common/test_data.h"

namespace {

using roadx::landxml::CoordinateSystemOfText;
using roadx::landxml::ReadCoordinateSystem;

TEST(CoordinateSystem, EpsgCodeIsTheDefinition) {
    const auto cs = CoordinateSystemOfText(
        "<?xml version=\"1.0\"?>\n<LandXML><Units/><CoordinateSystem name=\"GK24\" epsgCode=\" 3878 \" "
        "ogcWktCode=\"PROJCS[...]\"/></LandXML>");
    EXPECT_TRUE(cs.found);
    EXPECT_EQ(cs.name, "GK24");
    EXPECT_EQ(cs.epsgCode, "3878");
    EXPECT_EQ(cs.Definition(), "EPSG:3878");
}

TEST(CoordinateSystem, WktWhenNoCode) {
    const auto cs = CoordinateSystemOfText(
        "<LandXML><CoordinateSystem ogcWktCode=\"GEOGCS[&quot;WGS 84&quot;]\"></CoordinateSystem></LandXML>");
    EXPECT_TRUE(cs.found);
    EXPECT_EQ(cs.Definition(), "GEOGCS[\"WGS 84\"]");
}

TEST(CoordinateSystem, NoneWithoutTheElement) {
    EXPECT_FALSE(CoordinateSystemOfText("<LandXML><CoordinateSystemX epsgCode=\"1\"/></LandXML>").found);
    EXPECT_FALSE(CoordinateSystemOfText("<LandXML><Units/></LandXML>").found);
    EXPECT_FALSE(CoordinateSystemOfText("<LandXML><CoordinateSystem epsgCode=\"1\"").found);
    const auto cs = CoordinateSystemOfText("<LandXML><CoordinateSystem name=\"CRS1\" horizontalDatum=\"JGD2011\"/>"
                                           "</LandXML>");
    EXPECT_TRUE(cs.found);
    EXPECT_EQ(cs.Definition(), "");
}

TEST(CoordinateSystem, Latin1NameBecomesUtf8) {
    const auto cs = CoordinateSystemOfText(
        "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><LandXML><CoordinateSystem name=\"J\xe4rvi\" "
        "epsgCode=\"3067\"/></LandXML>");
    EXPECT_EQ(cs.name, "J\xc3\xa4rvi");
    EXPECT_EQ(cs.Definition(), "EPSG:3067");
}

TEST(CoordinateSystem, SamplesStateTheirCodes) {
    EXPECT_EQ(ReadCoordinateSystem(roadx::test::DataPath("landxml/novapoint_inframodel_tin_latin1.xml")).Definition(),
              "EPSG:3878");
    EXPECT_EQ(ReadCoordinateSystem(roadx::test::DataPath("landxml/inframodel_3dwin_terrain_36k_faces.xml")).Definition(),
              "EPSG:3875");
    EXPECT_FALSE(ReadCoordinateSystem(roadx::test::SourcePath("samples/road.xml")).found);
    EXPECT_FALSE(ReadCoordinateSystem(roadx::test::DataPath("no/such/file.xml")).found);
}

// The file is searched a megabyte at a time: the element is found after a
// large surface, also when its tag or its end straddles the edge of a
// chunk, and its Latin-1 name is read by the file's declaration.
TEST(CoordinateSystem, FoundAfterMegabytesAndAcrossChunkEdges) {
    const std::string path =
        (std::filesystem::temp_directory_path() / ("roadx_crs_" + std::to_string(getpid()) + ".xml")).string();
    const std::string head = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<LandXML><Surfaces><!--";
    const std::string element = "<CoordinateSystem name=\"J\xe4rvi\" epsgCode=\" 3067 \"></CoordinateSystem>";
    constexpr size_t kMiB = size_t{1} << 20;
    for (size_t tagAt : {kMiB - 3, kMiB - 17, kMiB + 5, 2 * kMiB - element.size() + 4, 3 * kMiB + 100, 8 * kMiB - 3,
                         8 * kMiB - 17, 8 * kMiB + 5, 16 * kMiB - element.size() + 30}) {
        std::string text = head;
        text.append(tagAt - text.size() - 14, 'x');
        text += "--></Surfaces>";
        ASSERT_EQ(text.size(), tagAt);
        text += element + "</LandXML>";
        std::ofstream(path, std::ios::binary) << text;
        const auto cs = ReadCoordinateSystem(path);
        EXPECT_TRUE(cs.found) << tagAt;
        EXPECT_EQ(cs.Definition(), "EPSG:3067") << tagAt;
        EXPECT_EQ(cs.name, "J\xc3\xa4rvi") << tagAt;
    }
    std::ofstream(path, std::ios::binary) << head << std::string(2 * kMiB, 'y') << "--></Surfaces></LandXML>";
    EXPECT_FALSE(ReadCoordinateSystem(path).found);
    std::remove(path.c_str());
}

// A file the import has loaded answers from what the import saw (its
// surface ranges are never searched again), exactly as a search would, and
// only while the file stays the same.
class CAllSurfacesUi : public roadx::host::CNullUi {
public:
    bool DlgImportLandXML(bool, bool, const std::vector<CString>& surfaces, const std::vector<CString>&, bool,
                          const std::vector<CString>&, const std::vector<vesk::String>&,
                          TImportLandXMLResult& r) override {
        r.surfaces = surfaces;
        return true;
    }
};

TEST(CoordinateSystem, ImportedFileAnswersAsASearchWould) {
    const std::string path =
        (std::filesystem::temp_directory_path() / ("roadx_crs_import_" + std::to_string(getpid()) + ".xml")).string();
    std::string pnts, faces;
    for (int i = 1; i <= 3000; ++i) pnts += "<P id=\"" + std::to_string(i) + "\">" + std::to_string(i) + " 1 2</P>\n";
    for (int i = 1; i + 2 <= 3000; ++i)
        faces += "<F>" + std::to_string(i) + " " + std::to_string(i + 1) + " " + std::to_string(i + 2) + "</F>\n";
    const std::string surface = "<Surfaces><Surface name=\"S\"><Definition surfType=\"TIN\"><Pnts>" + pnts +
                                "</Pnts><Faces>" + faces + "</Faces></Definition></Surface></Surfaces>";
    const std::string crs = "<CoordinateSystem name=\"N\" epsgCode=\"3879\"/>";
    const std::vector<std::string> texts = {
        "<LandXML>" + crs + surface + "</LandXML>",
        "<LandXML>" + surface + crs + "</LandXML>",
        "\xEF\xBB\xBF<?xml version=\"1.0\"?><LandXML>" + surface + crs + "</LandXML>",
        "<LandXML><!-- <CoordinateSystem epsgCode=\"1\"/> -->" + surface + crs + "</LandXML>",
        "<LandXML>" + surface + "<CoordinateSystem name=\"W\" ogcWktCode=\"LOCAL_CS[&quot;x&quot;]\"></CoordinateSystem></LandXML>",
        "<LandXML>" + surface + "</LandXML>",
    };
    for (size_t k = 0; k < texts.size(); ++k) {
        std::ofstream(path, std::ios::binary | std::ios::trunc) << texts[k];
        CAllSurfacesUi ui;
        CHostUiScope scope(&ui);
        CVantriDoc doc;
        ASSERT_TRUE(roadx::landxml::ImportLandXMLStatus(&doc, path.c_str(), false, false, true, nullptr).ok()) << k;
        const auto searched = CoordinateSystemOfText(texts[k]);
        const auto remembered = ReadCoordinateSystem(path);
        EXPECT_EQ(remembered.found, searched.found) << k;
        EXPECT_EQ(remembered.name, searched.name) << k;
        EXPECT_EQ(remembered.epsgCode, searched.epsgCode) << k;
        EXPECT_EQ(remembered.ogcWktCode, searched.ogcWktCode) << k;
    }
    // The same bytes but another code, written in place with the old time:
    // the file looks unchanged, and the answer is the import's.
    std::string text = texts[1];
    struct stat before {};
    ASSERT_EQ(::stat(path.c_str(), &before), 0);
    {
        std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
        CAllSurfacesUi ui;
        CHostUiScope scope(&ui);
        CVantriDoc doc;
        ASSERT_TRUE(roadx::landxml::ImportLandXMLStatus(&doc, path.c_str(), false, false, true, nullptr).ok());
    }
    ASSERT_EQ(::stat(path.c_str(), &before), 0);
    text.replace(text.find("3879"), 4, "3880");
    std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
    const struct timespec times[2] = {before.st_atim, before.st_mtim};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
    EXPECT_EQ(ReadCoordinateSystem(path).epsgCode, "3879");
    // A new time: the file is searched again.
    const struct timespec later[2] = {before.st_atim, {before.st_mtim.tv_sec + 5, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), later, 0), 0);
    EXPECT_EQ(ReadCoordinateSystem(path).epsgCode, "3880");
    std::remove(path.c_str());
}

}  // namespace
