// Point groups, GPS groups and total-station jobs.
#include <gtest/gtest.h>

#include "host/load_vantri_dati.h"
#include "lxe_documents.h"
#include "lxe_test_util.h"

namespace {

using lxetest::Between;
using lxetest::HasLine;

std::string ExportAll(CVantriDoc& doc) {
    lxetest::CTempDir dir;
    lxetest::CExportUi ui;
    ui.path = dir.Path("s.xml");
    return lxetest::Export(doc, ui);
}

TEST(ExportSurvey, SolutionTypeFollowsTheQualityTable) {
    const std::pair<int, const char*> table[] = {{-1, "Unknown"}, {0, "Unknown"}, {1, "Unknown"}, {2, "Code"},
                                                 {3, "Float"},    {4, "Fixed"},   {5, "Unknown"}, {6, "Code"},
                                                 {7, "Float"},    {8, "Fixed"},   {9, "Unknown"}, {100, "Unknown"}};
    for (const auto& [q, type] : table) {
        CVantriDoc doc;
        {
            CLoadVantriDati b(&doc);
            b.AddGrpGps("G");
            b.AddGpsPnt(0.0, 0.0, 0.0);
        }
        doc.GetLibGps()->GetGrpAt(0)->Points()[0]->SetQuality(q, 0, 0);
        const std::string text = ExportAll(doc);
        EXPECT_NE(text.find(std::string("<GPSQCInfoLevel2 GPSSolnType=\"") + type + "\""), std::string::npos)
            << "quality " << q;
    }
}

TEST(ExportSurvey, SatellitesAreGpsPlusGlonass) {
    CVantriDoc doc;
    {
        CLoadVantriDati b(&doc);
        b.AddGrpGps("G");
        b.AddGpsPnt(0.0, 0.0, 0.0);
        b.AddGpsPnt(0.0, 0.0, 0.0);
    }
    doc.GetLibGps()->GetGrpAt(0)->Points()[0]->SetQuality(4, 12, 5);
    doc.GetLibGps()->GetGrpAt(0)->Points()[1]->SetQuality(4, 255, 255);
    const std::string text = ExportAll(doc);
    EXPECT_NE(text.find(" nbrSatellites=\"17\" />"), std::string::npos);
    EXPECT_NE(text.find(" nbrSatellites=\"510\" />"), std::string::npos);
}

TEST(ExportSurvey, BaseLatitudeIsWrittenInDegreesWithNineDecimals) {
    CVantriDoc doc;
    lxetest::BuildSurveys(doc);
    const std::string text = ExportAll(doc);
    EXPECT_TRUE(HasLine(text, "\t\t\t<GPSAntennaDetails id=\"BASE\" latitude=\"45.000000000\" "
                              "longitude=\"11.459155903\" altitude=\"250.500000\" />"))
        << text;
    EXPECT_TRUE(HasLine(text, "\t\t<GPSSetup id=\"BASE\" antennaHeight=\"1.800000\" stationName=\"BASE\" >"));
    EXPECT_TRUE(HasLine(text, "\t\t\t<GPSPosition wgsHeight=\"250.500000\" wgsLatitude=\"45.000000000\" "
                              "wgsLongitude=\"11.459155903\">"));
    EXPECT_TRUE(HasLine(text, "\t\t<SurveyHeader name=\"G1\" />"));
}

TEST(ExportSurvey, ObservationsCarryTheirOwnIndexAsSetupId) {
    CVantriDoc doc;
    lxetest::BuildSurveys(doc);
    const std::string setup2 =
        Between(ExportAll(doc), "\t\t<InstrumentSetup id=\"Setup2\"", "\t\t</InstrumentSetup>\n");
    EXPECT_EQ(setup2,
              "\t\t<InstrumentSetup id=\"Setup2\" stationName=\"ST2\" instrumentHeight=\"1.450000\">\n"
              "\t\t\t<InstrumentPoint name=\"ST2\" desc=\"\">2100.000000 1100.000000 55.000000</InstrumentPoint>\n"
              "\t\t\t<RawObservation setupID=\"Setup0\" targetHeight=\"1.200000\" horizAngle=\"1.000000\" "
              "slopeDistance=\"7.000000\" zenithAngle=\"1.570000\" >\n"
              "\t\t\t\t<TargetPoint name=\"Q0\" desc=\"a\">2105.000000 1105.000000 55.500000</TargetPoint>\n"
              "\t\t\t</RawObservation>\n"
              "\t\t\t<RawObservation setupID=\"Setup1\" targetHeight=\"1.200000\" >\n"
              "\t\t\t\t<TargetPoint name=\"Q1\" desc=\"b\">2110.000000 1110.000000 56.000000</TargetPoint>\n"
              "\t\t\t</RawObservation>\n"
              "\t\t</InstrumentSetup>\n");
}

TEST(ExportSurvey, MissingValuesLeaveTheirAttributeOrElementOut) {
    CVantriDoc doc;
    lxetest::BuildSurveys(doc);
    const std::string setup1 =
        Between(ExportAll(doc), "\t\t<InstrumentSetup id=\"Setup1\"", "\t\t</InstrumentSetup>\n");
    // The station has no coordinates: no InstrumentPoint, observations still
    // there; P2 has no target height, P3 no coordinates.
    EXPECT_EQ(setup1,
              "\t\t<InstrumentSetup id=\"Setup1\" stationName=\"ST1\" instrumentHeight=\"1.600000\">\n"
              "\t\t\t<RawObservation setupID=\"Setup0\" horizAngle=\"0.500000\" slopeDistance=\"30.000000\" "
              "zenithAngle=\"1.550000\" >\n"
              "\t\t\t\t<TargetPoint name=\"P2\" desc=\"\">2030.000000 1020.000000 52.000000</TargetPoint>\n"
              "\t\t\t</RawObservation>\n"
              "\t\t\t<RawObservation setupID=\"Setup1\" targetHeight=\"1.500000\" horizAngle=\"0.750000\" "
              "slopeDistance=\"12.000000\" zenithAngle=\"1.600000\" >\n"
              "\t\t\t</RawObservation>\n"
              "\t\t</InstrumentSetup>\n");
}

TEST(ExportSurvey, EveryPointOfAGroupIsWrittenUnderTheGroupsFirstLabel) {
    CVantriDoc doc;
    lxetest::BuildSurveys(doc);
    const std::string text = ExportAll(doc);
    EXPECT_NE(text.find("\t<CgPoints name=\"PG\">\n"
                        "\t\t<CgPoint name=\"A\">2.000000 1.000000 3.000000</CgPoint>\n"
                        "\t\t<CgPoint name=\"B&amp;C\">"),
              std::string::npos);
}

TEST(ExportSurvey, ObjectsTheirLibraryDoesNotKnowAreSkipped) {
    CVantriDoc doc;
    lxetest::BuildSurveys(doc);
    CVantriDoc other;
    lxetest::BuildSurveys(other);
    const std::string text = lxetest::ExportSelection(doc, [&other](TExportLandXMLResult& r) {
        r.jobs.push_back(other.GetLibCmp()->GetJobAt(0));
        r.gpsGroups.push_back(other.GetLibGps()->GetGrpAt(0));
        r.pointGroups.push_back(other.GetLibPnt()->GetGrpAt(0));
    });
    EXPECT_EQ(text.find("<Survey"), std::string::npos);
    EXPECT_EQ(text.find("<CgPoints"), std::string::npos);
}

TEST(ExportSurvey, SurveysAndPointGroupsHaveNoWrapper) {
    CVantriDoc doc;
    lxetest::BuildSurveys(doc);
    lxetest::BuildSurveys(doc);
    const std::string text = ExportAll(doc);
    EXPECT_EQ(lxetest::Count(text, "\n\t<Survey"), 4u);
    EXPECT_EQ(lxetest::Count(text, "\n\t<CgPoints "), 2u);
    EXPECT_EQ(text.find("Surveys"), std::string::npos);
}

}  // namespace
