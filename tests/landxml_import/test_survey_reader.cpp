// Total-station surveys, GPS surveys and coordinate points through the
// builder's trace: point references, the referenced-names set, undefined
// quantities, degrees to radians and unit conversion.
#include "lx2_test_util.h"

namespace {

using lx2test::L;
using lx2test::LandXml;
using lx2test::TDocFixture;

constexpr double kFt = 0.3048006096012;
constexpr double kUndef = 1.7e200;

// The three point readers in the driver's order, sharing one table.
struct PointRun : TDocFixture {
    PointTable referenced;

    std::vector<std::string> Run(std::string_view body, bool isMetric = true) {
        const XmlSection root = Load(LandXml(body));
        ClearTrace();
        ImportInstrumentSurveys(root, builder, isMetric, referenced);
        ImportGpsSurveys(root, builder, isMetric, referenced);
        ImportCgPoints(root, builder, isMetric, referenced);
        return Lines();
    }
};

std::string Job(const std::string& n) { return L("AddJob").S(n).str(); }
std::string Sta(const std::string& n, double h) { return L("AddSta").S(n).D(h).str(); }
std::string StaDesc(const std::string& d) { return L("SetStaDesc").S(d).str(); }
std::string StaXyz(double x, double y, double z) { return L("SetStaCoords").D(x).D(y).D(z).str(); }
std::string Pun(const std::string& n, const std::string& d, double x, double y, double z, double th, double sd,
                double za, double ha) {
    return L("AddPun").S(n).S(d).D(x).D(y).D(z).D(th).D(sd).D(za).D(ha).str();
}
std::string Grp(const std::string& n) { return L("AddGrpPnt").S(n).str(); }
std::string PunPnt(const std::string& n, double x, double y, double z) {
    return L("AddPunPnt").S(n).D(x).D(y).D(z).str();
}

TEST(SurveyReader, ReferencedPointGoesWithTheObservationNotTheGroup) {
    PointRun r;
    const auto lines = r.Run(
        "<CgPoints name=\"G\"><CgPoint name=\"P1\">5000 1000 10</CgPoint><CgPoint name=\"P2\">5001 1001 11</CgPoint>"
        "</CgPoints>"
        "<Survey desc=\"Job1\"><InstrumentSetup stationName=\"ST\" instrumentHeight=\"1.5\">"
        "<InstrumentPoint desc=\"base\">100 200 30</InstrumentPoint>"
        "<RawObservation targetHeight=\"1.3\" horizAngle=\"12.5\" slopeDistance=\"40\" zenithAngle=\"99\">"
        "<TargetPoint name=\"T1\" desc=\"d\" pntRef=\"P1\"/></RawObservation></InstrumentSetup></Survey>");
    EXPECT_EQ(lines, (std::vector<std::string>{Job("Job1"), Sta("ST", 1.5), StaDesc("base"), StaXyz(200, 100, 30),
                                               Pun("T1", "d", 1000, 5000, 10, 1.3, 40, 99, 12.5), Grp("G"),
                                               PunPnt("P2", 1001, 5001, 11)}));
    EXPECT_EQ(r.referenced, (PointTable{"P1"}));
}

TEST(SurveyReader, OwnCoordinatesMarkNothing) {
    PointRun r;
    const auto lines = r.Run(
        "<Survey><InstrumentSetup stationName=\"S\"><RawObservation>"
        "<TargetPoint name=\"P1\" pntRef=\"P1\">7 8 9</TargetPoint></RawObservation></InstrumentSetup>"
        "<CgPoints name=\"G\"><CgPoint name=\"P1\">1 2 3</CgPoint></CgPoints></Survey>");
    // Missing instrument height and observation quantities are undefined.
    EXPECT_EQ(lines, (std::vector<std::string>{Job(""), Sta("S", kUndef),
                                               Pun("P1", "", 8, 7, 9, kUndef, kUndef, kUndef, kUndef), Grp("G"),
                                               PunPnt("P1", 2, 1, 3)}));
    EXPECT_TRUE(r.referenced.empty());
}

TEST(SurveyReader, MissingZenithIsUndefined) {
    PointRun r;
    const auto lines = r.Run(
        "<Survey><InstrumentSetup stationName=\"S\" instrumentHeight=\"1.6\"><RawObservation targetHeight=\"2\" "
        "horizAngle=\"3\" slopeDistance=\"4\"><TargetPoint name=\"A\">1 2 3</TargetPoint>"
        "<TargetPoint name=\"B\">4 5 6</TargetPoint></RawObservation>"
        "<RawObservation zenithAngle=\"5\"/></InstrumentSetup></Survey>");
    EXPECT_EQ(lines, (std::vector<std::string>{Job(""), Sta("S", 1.6), Pun("A", "", 2, 1, 3, 2, 4, kUndef, 3),
                                               Pun("B", "", 5, 4, 6, 2, 4, kUndef, 3)}));
}

TEST(SurveyReader, ReferencesTryTheRootThenTheCurrentSurvey) {
    PointRun r;
    const auto lines = r.Run(
        "<CgPoints><CgPoint name=\"R\">1 2</CgPoint><CgPoint name=\"R\">9 9 9</CgPoint>"
        "<CgPoint name=\"Q\">10 20 30</CgPoint></CgPoints>"
        "<Survey><CgPoints><CgPoint name=\"R\">4 5 6</CgPoint><CgPoint name=\"Q\">7 7 7</CgPoint>"
        "<CgPoint name=\"W\">3 3 3</CgPoint></CgPoints>"
        "<InstrumentSetup stationName=\"S\"><RawObservation>"
        "<TargetPoint name=\"t1\" pntRef=\"R\"/><TargetPoint name=\"t2\" pntRef=\"Q\"/>"
        "<TargetPoint name=\"t3\" pntRef=\"X\"/><TargetPoint name=\"t4\" pntRef=\"\"/><TargetPoint name=\"t5\">1 2"
        "</TargetPoint></RawObservation></InstrumentSetup></Survey>"
        "<Survey><CgPoints><CgPoint name=\"X\">1 1 1</CgPoint></CgPoints></Survey>");
    // R: the root's first R has two numbers, so the survey's R is taken
    // (the root's second R is never looked at). Q: the root's. X lies in
    // another survey; t4 and t5 cannot be resolved.
    EXPECT_EQ(r.Lines({"AddPun"}),
              (std::vector<std::string>{Pun("t1", "", 5, 4, 6, kUndef, kUndef, kUndef, kUndef),
                                        Pun("t2", "", 20, 10, 30, kUndef, kUndef, kUndef, kUndef)}));
    EXPECT_EQ(r.referenced, (PointTable{"Q", "R"}));
    // Every point named R or Q is left out of the groups, the root's
    // unreadable R included; the second survey's job is not made (no setup).
    EXPECT_EQ(r.Lines({"AddGrpPnt", "AddPunPnt", "AddJob"}),
              (std::vector<std::string>{Job(""), Grp(""), PunPnt("W", 3, 3, 3), Grp(""), PunPnt("X", 1, 1, 1)}));
    (void)lines;
}

TEST(SurveyReader, InstrumentPointByReference) {
    PointRun r;
    r.Run("<CgPoints><CgPoint name=\"B\">100 200 5</CgPoint></CgPoints>"
          "<Survey desc=\"J\"><InstrumentSetup stationName=\"S1\"><InstrumentPoint pntRef=\"B\"/></InstrumentSetup>"
          "<InstrumentSetup stationName=\"S2\"><InstrumentPoint desc=\"x\" pntRef=\"none\"/></InstrumentSetup>"
          "</Survey>");
    EXPECT_EQ(r.Lines(), (std::vector<std::string>{Job("J"), Sta("S1", kUndef), StaDesc(""), StaXyz(200, 100, 5),
                                                   Sta("S2", kUndef), StaDesc("x")}));
}

TEST(SurveyReader, GpsDegreesBecomeRadians) {
    PointRun r;
    const auto lines = r.Run(
        "<Survey><SurveyHeader name=\"H\"/><GPSSetup id=\"s1\" stationName=\"BASE\" antennaHeight=\"1.8\">"
        "<GPSPosition wgsLatitude=\"45\" wgsLongitude=\"9\" wgsHeight=\"120\"><TargetPoint>5000 1000 10</TargetPoint>"
        "</GPSPosition></GPSSetup>"
        "<GPSPosition setupID=\"s1\" wgsLatitude=\"45.5\" wgsLongitude=\"-9.25\" wgsHeight=\"130\">"
        "<TargetPoint name=\"R1\" desc=\"rover\">5100 1100 11</TargetPoint></GPSPosition>"
        "<GPSPosition setupID=\"s2\" wgsLatitude=\"1\" wgsLongitude=\"1\"/></Survey>");
    const double pi = 3.141592653589793;
    EXPECT_EQ(lines, (std::vector<std::string>{
                         L("AddGrpGps").S("H").str(), L("SetGrpStaName").S("BASE").str(),
                         L("SetGrpAntHeight").D(1.8).str(),
                         L("SetGrpLatLonElev").D(0.7853981633974483).D(0.15707963267948966).D(120).str(),
                         L("SetGrpCoords").D(1000).D(5000).D(10).str(),
                         L("AddGpsPnt").D(45.5 * pi / 180.0).D(-9.25 * pi / 180.0).D(130).str(),
                         L("SetGpsPntName").S("R1").S("rover").str(),
                         L("SetGpsPntCoords").D(1100).D(5100).D(11).str()}));
}

TEST(SurveyReader, RoverWithoutLatitudeAddsNoPointButNamesTheLastOne) {
    PointRun r;
    const auto lines = r.Run(
        "<Survey><GPSSetup id=\"s\"/>"
        "<GPSPosition setupID=\"s\" wgsLatitude=\"10\" wgsLongitude=\"20\"/>"
        "<GPSPosition setupID=\"s\" wgsLongitude=\"20\"><TargetPoint name=\"N\" desc=\"D\">1 2 3</TargetPoint>"
        "</GPSPosition></Survey>");
    const double pi = 3.141592653589793;
    EXPECT_EQ(lines, (std::vector<std::string>{L("AddGrpGps").S("").str(), L("SetGrpStaName").S("").str(),
                                               L("SetGrpAntHeight").D(kUndef).str(),
                                               L("AddGpsPnt").D(10 * pi / 180.0).D(20 * pi / 180.0).D(kUndef).str(),
                                               L("SetGpsPntName").S("N").S("D").str(),
                                               L("SetGpsPntCoords").D(2).D(1).D(3).str()}));
    // The builder put the name and coordinates on the point added before.
    ASSERT_EQ(r.doc.GetLibGps()->GetPunArSize(0), 1);
}

TEST(SurveyReader, EveryGpsSetupIsAGroupWithItsOwnRovers) {
    PointRun r;
    r.Run("<CgPoints><CgPoint name=\"B\">1 2 3</CgPoint><CgPoint name=\"K\">4 5 6</CgPoint></CgPoints>"
          "<Survey><SurveyHeader name=\"H\"/><GPSSetup id=\"a\" stationName=\"A\"><GPSPosition>"
          "<TargetPoint pntRef=\"B\"/></GPSPosition></GPSSetup><GPSSetup id=\"b\" stationName=\"B\"/>"
          "<GPSPosition setupID=\"b\" wgsLatitude=\"0\" wgsLongitude=\"0\"><TargetPoint pntRef=\"K\"/></GPSPosition>"
          "</Survey>");
    EXPECT_EQ(r.Lines({"AddGrpGps", "SetGrpStaName", "SetGrpCoords", "AddGpsPnt", "SetGpsPntCoords", "AddGrpPnt"}),
              (std::vector<std::string>{L("AddGrpGps").S("H").str(), L("SetGrpStaName").S("A").str(),
                                        L("SetGrpCoords").D(2).D(1).D(3).str(), L("AddGrpGps").S("H").str(),
                                        L("SetGrpStaName").S("B").str(), L("AddGpsPnt").D(0).D(0).D(kUndef).str(),
                                        L("SetGpsPntCoords").D(5).D(4).D(6).str()}));
    // Both points were referenced: no point group is made.
    EXPECT_EQ(r.referenced, (PointTable{"B", "K"}));
}

TEST(SurveyReader, ImperialConvertsCoordinatesOnly) {
    PointRun r;
    const auto lines = r.Run(
        "<CgPoints name=\"G\"><CgPoint name=\"C\">5000 1000 10</CgPoint></CgPoints>"
        "<Survey><InstrumentSetup stationName=\"S\" instrumentHeight=\"5\"><InstrumentPoint>100 200 30"
        "</InstrumentPoint><RawObservation targetHeight=\"6\" slopeDistance=\"100\" horizAngle=\"1\" "
        "zenithAngle=\"2\"><TargetPoint name=\"T\">10 20 30</TargetPoint></RawObservation></InstrumentSetup>"
        "<GPSSetup id=\"g\" antennaHeight=\"7\"><GPSPosition wgsLatitude=\"1\" wgsLongitude=\"2\" wgsHeight=\"8\"/>"
        "</GPSSetup></Survey>",
        false);
    const double pi = 3.141592653589793;
    EXPECT_EQ(lines, (std::vector<std::string>{
                         Job(""), Sta("S", 5), StaDesc(""), StaXyz(200 * kFt, 100 * kFt, 30 * kFt),
                         Pun("T", "", 20 * kFt, 10 * kFt, 30 * kFt, 6, 100, 2, 1), L("AddGrpGps").S("").str(),
                         L("SetGrpStaName").S("").str(), L("SetGrpAntHeight").D(7).str(),
                         L("SetGrpLatLonElev").D(pi / 180.0).D(2 * pi / 180.0).D(8).str(), Grp("G"),
                         PunPnt("C", 1000 * kFt, 5000 * kFt, 10 * kFt)}));
    EXPECT_NEAR(5000 * kFt, 1524.003048006, 1e-9);
}

TEST(SurveyReader, SurveyWithoutSetupMakesNoJob) {
    PointRun r;
    r.Run("<Survey desc=\"only gps\"><GPSSetup id=\"g\"/></Survey>");
    EXPECT_TRUE(r.Lines({"AddJob", "AddSta"}).empty());
    EXPECT_EQ(r.doc.GetLibCmp()->GetJobArSize(), 0);
    EXPECT_EQ(r.doc.GetLibGps()->GetGrpArSize(), 1);
}

TEST(SurveyReader, GroupsOfDirectPointsWithThreeNumbers) {
    PointRun r;
    const auto lines = r.Run(
        "<CgPoints name=\"Empty\"><CgPoint name=\"a\" pntRef=\"b\"/><CgPoint name=\"c\">1 2 3 4</CgPoint>"
        "<CgPoints name=\"Inner\"><CgPoint name=\"n\">1 2 3</CgPoint></CgPoints></CgPoints>"
        "<CgPoints name=\"Two\"><CgPoint>1 2 3</CgPoint><CgPoint name=\"d\">4\n5 6</CgPoint>"
        "<CgPoint name=\"e\">  7  8  9  </CgPoint></CgPoints>"
        "<Survey><CgPoints name=\"InSurvey\"><CgPoint name=\"f\">1 1 1</CgPoint></CgPoints></Survey>");
    // Only direct children count, with exactly three numbers (a line break
    // does not separate numbers); a group without points is not made.
    EXPECT_EQ(lines, (std::vector<std::string>{Grp("Two"), PunPnt("", 2, 1, 3), PunPnt("e", 8, 7, 9),
                                               Grp("InSurvey"), PunPnt("f", 1, 1, 1)}));
}

}  // namespace
