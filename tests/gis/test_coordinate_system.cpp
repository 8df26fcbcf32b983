// The LandXML CoordinateSystem reader: epsgCode first, else ogcWktCode,
// else none; the file's encoding honoured; only the root's element counts
// as the tag, not a longer name.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <unistd.h>

#include "landxml_import/coordinate_system.h"
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
    for (size_t tagAt : {kMiB - 3, kMiB - 17, kMiB + 5, 2 * kMiB - element.size() + 4, 3 * kMiB + 100}) {
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

}  // namespace
