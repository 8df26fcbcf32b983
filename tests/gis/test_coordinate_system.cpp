// The LandXML CoordinateSystem reader: epsgCode first, else ogcWktCode,
// else none; the file's encoding honoured; only the root's element counts
// as the tag, not a longer name.
#include <gtest/gtest.h>

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

}  // namespace
