// Vertical profiles of an Alignment through the builder's trace: element
// order, grades and parabola radius, unit conversion, and the inputs that end
// the import.
#include <cmath>
#include <limits>

#include "lx2_test_util.h"

namespace {

using lx2test::L;
using lx2test::LandXml;
using lx2test::TDocFixture;

constexpr double kFt = 0.3048006096012;

std::string Alignment(std::string_view profiles) {
    return LandXml(std::string("<Alignments><Alignment name=\"A\" staStart=\"0\">") + std::string(profiles) +
                   "</Alignment></Alignments>");
}

// Runs the profile reader on the first alignment; the trace keeps only the
// profile operations.
struct ProfileRun : TDocFixture {
    std::vector<std::string> Run(std::string_view profiles, bool isMetric = true) {
        const XmlSection root = Load(Alignment(profiles));
        const XmlSection alignment = root.Child("Alignments").Child("Alignment");
        EXPECT_TRUE(ImportProfiles(alignment, builder, isMetric));
        return Lines({"AddRoadPrj", "AddRoadProfAltiPrincVrt", "AddRoadProfAltiRaccVrt"});
    }
    // The message of the import's end, or "" when it did not end.
    std::string RunEnding(std::string_view profiles) {
        const XmlSection root = Load(Alignment(profiles));
        try {
            ImportProfiles(root.Child("Alignments").Child("Alignment"), builder, true);
        } catch (const CLandXmlImportEnded& e) {
            return e.what();
        }
        return "";
    }
};

std::string Princ(double s, double z) { return L("AddRoadProfAltiPrincVrt").D(s).D(z).str(); }
std::string Racc(double s, double z, double ps, double pz, double ns, double nz, double r) {
    return L("AddRoadProfAltiRaccVrt").D(s).D(z).D(ps).D(pz).D(ns).D(nz).D(r).B(false).str();
}
const std::string kPrj = L("AddRoadPrj").str();

TEST(ProfileReader, EmptyProfAlignAndNoProfileCallNothing) {
    ProfileRun a;
    EXPECT_TRUE(a.Run("<Profile><ProfAlign name=\"P\"><Feature/></ProfAlign></Profile>").empty());
    ProfileRun b;
    EXPECT_TRUE(b.Run("<CoordGeom/>").empty());
    EXPECT_TRUE(b.trace.lines.empty());
}

TEST(ProfileReader, ParabolaRadiusFromLengthAndGrades) {
    ProfileRun r;
    const auto lines = r.Run(
        "<Profile><ProfAlign name=\"P\"><PVI>0 100</PVI><ParaCurve length=\"100\">250 110</ParaCurve>"
        "<PVI>500 105</PVI></ProfAlign></Profile>");
    const double g1 = (110.0 - 100.0) / (250.0 - 0.0);
    const double g2 = (105.0 - 110.0) / (500.0 - 250.0);
    const double radius = 100.0 / std::fabs(g1 - g2);
    EXPECT_NEAR(radius, 1666.6667, 1e-4);
    EXPECT_EQ(lines, (std::vector<std::string>{kPrj, Princ(0, 100), Racc(250, 110, 0, 100, 500, 105, radius),
                                               Princ(500, 105)}));
}

TEST(ProfileReader, CurveAtTheStationOfAPviGoesAfterIt) {
    ProfileRun r;
    const auto lines = r.Run(
        "<Profile><ProfAlign name=\"P\"><PVI>0 100</PVI><PVI>250 110</PVI><PVI>500 105</PVI>"
        "<ParaCurve length=\"100\">250 110</ParaCurve></ProfAlign></Profile>");
    // The grade into the curve divides by zero: the radius is undefined and
    // passed on as it comes.
    const double g1 = (110.0 - 110.0) / (250.0 - 250.0);
    const double radius = 100.0 / std::fabs(g1 - (105.0 - 110.0) / 250.0);
    ASSERT_TRUE(std::isnan(radius));
    EXPECT_EQ(lines, (std::vector<std::string>{kPrj, Princ(0, 100), Princ(250, 110),
                                               Racc(250, 110, 250, 110, 500, 105, radius), Princ(500, 105)}));
}

TEST(ProfileReader, ImperialFileConvertsStationsElevationsLengthsAndRadii) {
    ProfileRun r;
    const auto lines = r.Run(
        "<Profile><ProfAlign name=\"P\"><PVI>0 100</PVI><ParaCurve length=\"100\">250 110</ParaCurve>"
        "<CircCurve length=\"50\" radius=\"-2000\">400 108</CircCurve><PVI>500 105</PVI></ProfAlign></Profile>",
        false);
    const double s0 = 0 * kFt, z0 = 100 * kFt, s1 = 250 * kFt, z1 = 110 * kFt, s2 = 400 * kFt, z2 = 108 * kFt,
                 s3 = 500 * kFt, z3 = 105 * kFt;
    EXPECT_DOUBLE_EQ(s3, 152.4003048006);
    const double radius = 100 * kFt / std::fabs((z1 - z0) / (s1 - s0) - (z2 - z1) / (s2 - s1));
    EXPECT_EQ(lines, (std::vector<std::string>{kPrj, Princ(s0, z0), Racc(s1, z1, s0, z0, s2, z2, radius),
                                               Racc(s2, z2, s1, z1, s3, z3, -2000 * kFt), Princ(s3, z3)}));
}

TEST(ProfileReader, CurvesSlotInByStationAndPvisKeepTheirOrder) {
    ProfileRun r;
    // The PVIs are not sorted; the ParaCurves go in before the CircCurves,
    // each before the first element of a greater station.
    const auto lines = r.Run(
        "<Profile><ProfAlign name=\"P\"><PVI>0 10</PVI><PVI>500 20</PVI><PVI>200 30</PVI>"
        "<CircCurve radius=\"900\" length=\"1\">100 12</CircCurve><ParaCurve length=\"40\">300 16</ParaCurve>"
        "</ProfAlign></Profile>");
    // List: PVI 0, Circ 100, Para 300, PVI 500, PVI 200.
    const double radius = 40.0 / std::fabs((16.0 - 12.0) / (300.0 - 100.0) - (20.0 - 16.0) / (500.0 - 300.0));
    EXPECT_EQ(lines, (std::vector<std::string>{kPrj, Princ(0, 10), Racc(100, 12, 0, 10, 300, 16, 900),
                                               Racc(300, 16, 100, 12, 500, 20, radius), Princ(500, 20),
                                               Princ(200, 30)}));
}

TEST(ProfileReader, TwoProfAlignsMakeTwoProjectLines) {
    ProfileRun r;
    const auto lines = r.Run(
        "<Profile><ProfAlign name=\"P1\"><PVI>0 1</PVI><PVI>10 2</PVI></ProfAlign></Profile>"
        "<Profile><ProfSurf name=\"G\"/><ProfAlign name=\"P2\"><PVI>0 3</PVI></ProfAlign></Profile>");
    EXPECT_EQ(lines, (std::vector<std::string>{kPrj, Princ(0, 1), Princ(10, 2), kPrj, Princ(0, 3)}));
}

TEST(ProfileReader, MissingLengthOrRadiusCountsAsZero) {
    ProfileRun r;
    const auto lines = r.Run(
        "<Profile><ProfAlign><PVI>0 0</PVI><ParaCurve>10 1</ParaCurve><CircCurve>20 0</CircCurve>"
        "<PVI>30 1</PVI></ProfAlign></Profile>");
    EXPECT_EQ(lines, (std::vector<std::string>{kPrj, Princ(0, 0), Racc(10, 1, 0, 0, 20, 0, 0.0),
                                               Racc(20, 0, 10, 1, 30, 1, 0.0), Princ(30, 1)}));
}

TEST(ProfileReader, TheVertexBeforeACurveMayBeOnlyTheCurveBeforeIt) {
    ProfileRun r;
    // Extra numbers of a vertex text are ignored.
    const auto lines = r.Run(
        "<Profile><ProfAlign><PVI>0 0 7</PVI><ParaCurve length=\"20\">10 1</ParaCurve>"
        "<ParaCurve length=\"30\">20 0</ParaCurve><PVI>30 0</PVI></ProfAlign></Profile>");
    const double r1 = 20.0 / std::fabs(1.0 / 10.0 - (0.0 - 1.0) / 10.0);
    const double r2 = 30.0 / std::fabs((0.0 - 1.0) / 10.0 - 0.0 / 10.0);
    EXPECT_EQ(lines, (std::vector<std::string>{kPrj, Princ(0, 0), Racc(10, 1, 0, 0, 20, 0, r1),
                                               Racc(20, 0, 10, 1, 30, 0, r2), Princ(30, 0)}));
}

TEST(ProfileReader, CurveFirstInItsListEndsTheImport) {
    ProfileRun r;
    const std::string msg = r.RunEnding(
        "<Profile><ProfAlign><ParaCurve length=\"1\">0 5</ParaCurve><PVI>10 6</PVI></ProfAlign></Profile>");
    EXPECT_NE(msg.find("ParaCurve \"0 5\" is the first element of its ProfAlign"), std::string::npos) << msg;
    EXPECT_NE(msg.find("alignment \"A\""), std::string::npos) << msg;
    EXPECT_EQ(r.Lines({"AddRoadPrj", "AddRoadProfAltiPrincVrt", "AddRoadProfAltiRaccVrt"}),
              (std::vector<std::string>{kPrj}));
}

TEST(ProfileReader, CurveLastInItsListEndsTheImportAfterTheVerticesBeforeIt) {
    ProfileRun r;
    const std::string msg = r.RunEnding(
        "<Profile><ProfAlign><PVI>0 5</PVI><PVI>5 5</PVI><CircCurve radius=\"1\">10 6</CircCurve>"
        "</ProfAlign></Profile>");
    EXPECT_NE(msg.find("CircCurve \"10 6\" is the last element of its ProfAlign"), std::string::npos) << msg;
    EXPECT_EQ(r.Lines({"AddRoadPrj", "AddRoadProfAltiPrincVrt", "AddRoadProfAltiRaccVrt"}),
              (std::vector<std::string>{kPrj, Princ(0, 5), Princ(5, 5)}));
}

TEST(ProfileReader, VertexTextWithOneNumberEndsTheImport) {
    ProfileRun r;
    // Only blanks separate numbers: a line break keeps "0" and "100" in one
    // token, which reads as 0.
    const std::string msg = r.RunEnding("<Profile><ProfAlign><PVI>0\n100</PVI></ProfAlign></Profile>");
    EXPECT_NE(msg.find("PVI \"0\\n100\": 1 number where 2 are needed"), std::string::npos) << msg;
}

TEST(ProfileReader, CurveWithoutStationEndsTheImportWhileBeingSlottedIn) {
    ProfileRun r;
    const std::string msg =
        r.RunEnding("<Profile><ProfAlign><PVI>0 5</PVI><ParaCurve length=\"1\"/><PVI>9 5</PVI></ProfAlign></Profile>");
    EXPECT_NE(msg.find("ParaCurve \"\": 0 numbers where 1 are needed"), std::string::npos) << msg;
    // Nothing reached the builder: the list was not complete.
    EXPECT_TRUE(r.Lines({"AddRoadPrj"}).empty());
}

TEST(ProfileReader, EmptyPviIsReachedOnlyWhenTheWalkGetsThere) {
    // A PVI without numbers past the curve's slot is not compared while the
    // curve is slotted in; the import ends when its turn comes ...
    ProfileRun a;
    const std::string msgA = a.RunEnding(
        "<Profile><ProfAlign><PVI>0 5</PVI><PVI>20 5</PVI><PVI/><ParaCurve length=\"1\">10 6</ParaCurve>"
        "</ProfAlign></Profile>");
    EXPECT_NE(msgA.find("PVI \"\": 0 numbers where 2 are needed"), std::string::npos) << msgA;
    const double radius = 1.0 / std::fabs((6.0 - 5.0) / 10.0 - (5.0 - 6.0) / 10.0);
    EXPECT_EQ(a.Lines({"AddRoadPrj", "AddRoadProfAltiPrincVrt", "AddRoadProfAltiRaccVrt"}),
              (std::vector<std::string>{kPrj, Princ(0, 5), Racc(10, 6, 0, 5, 20, 5, radius), Princ(20, 5)}));
    // ... while one before the slot ends it before anything is handed over.
    ProfileRun b;
    const std::string msgB = b.RunEnding(
        "<Profile><ProfAlign><PVI/><PVI>20 5</PVI><ParaCurve length=\"1\">10 6</ParaCurve></ProfAlign></Profile>");
    EXPECT_NE(msgB.find("PVI \"\": 0 numbers where 1 are needed"), std::string::npos) << msgB;
    EXPECT_TRUE(b.Lines({"AddRoadPrj"}).empty());
}

}  // namespace
