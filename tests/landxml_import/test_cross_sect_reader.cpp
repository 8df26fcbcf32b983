// Cross sections of an Alignment through the builder's trace: the trace laid
// across the road, names, the point rules, the surface-to-code walk, and the
// input that ends the import.
#include <cmath>

#include "host/road.h"
#include "lx2_test_util.h"

namespace {

using lx2test::L;
using lx2test::LandXml;
using lx2test::TDocFixture;

constexpr double kFt = 0.3048006096012;

// A road of one straight from (1000, 2000) running +x for 200 m from
// chainage 0 (or an arc, when asked), then the cross-section reader on the
// alignment's CrossSects.
struct SectionRun : TDocFixture {
    CRoad* road = nullptr;

    void MakeStraightRoad(double startProg = 0.0) {
        road = builder.AddRoad("R", startProg, false);
        builder.StartRoadPlani();
        builder.AddRoadRect(startProg, {1000.0, 2000.0}, {1.0, 0.0}, 200.0);
        builder.EndRoadPlani();
    }
    // Left-turning arc of radius 100 from (0, 0) heading +x, 90 degrees.
    void MakeArcRoad() {
        road = builder.AddRoad("R", 0.0, false);
        builder.StartRoadPlani();
        builder.AddRoadArc(0.0, {0.0, 0.0}, {1.0, 0.0}, 100.0, M_PI / 2, true);
        builder.EndRoadPlani();
    }
    std::vector<std::string> Run(std::string_view crossSects, const CrossSectCodes& codes, bool isMetric = true) {
        if (!road) MakeStraightRoad();
        const XmlSection root = Load(LandXml(std::string("<Alignments><Alignment name=\"A\"><CrossSects>") +
                                             std::string(crossSects) + "</CrossSects></Alignment></Alignments>"));
        ClearTrace();
        EXPECT_TRUE(ImportCrossSects(root.Child("Alignments").Child("Alignment"), builder, road, codes, isMetric));
        return Lines();
    }
    std::string RunEnding(std::string_view crossSects, const CrossSectCodes& codes) {
        try {
            Run(crossSects, codes);
        } catch (const CLandXmlImportEnded& e) {
            return e.what();
        }
        return "";
    }
};

const CrossSectCodes kGround = {{"G", "TER"}};

std::string Section(const std::string& name, double sta, double prog, double x, double y, double dx, double dy,
                    double len) {
    return L("AddSection").S(name).D(sta).D(prog).D(x).D(y).D(dx).D(dy).D(len).str();
}

std::string Line(const std::string& code, std::vector<std::pair<double, double>> pts) {
    CTraceLine l("AddSectionProfileAlti");
    l.S(code).I(static_cast<long long>(pts.size()));
    for (const auto& [x, y] : pts) l.D(x).D(y);
    return l.str();
}

TEST(CrossSectReader, SectionWholeOnOneSideSpansFromTheAxis) {
    SectionRun r;
    const auto lines = r.Run(
        "<CrossSect name=\"X\" sta=\"50\"><CrossSectSurf name=\"G\"><PntList2D>2 5 10 6</PntList2D></CrossSectSurf>"
        "</CrossSect>",
        kGround);
    // The straight runs +x: the host's normal to the right is -y.
    EXPECT_EQ(lines, (std::vector<std::string>{Section("X", 50, 0, 1050, 2000, 0, -1, 10),
                                               Line("TER", {{2, 5}, {10, 6}})}));
}

TEST(CrossSectReader, TraceRunsFromLowestToHighestOffset) {
    SectionRun r;
    const auto lines = r.Run(
        "<CrossSect name=\"X\" sta=\"120\"><CrossSectSurf name=\"G\"><PntList2D>-7 1 3 2</PntList2D></CrossSectSurf>"
        "<CrossSectSurf name=\"H\"><PntList2D>-1 1 12.5 3</PntList2D></CrossSectSurf></CrossSect>",
        kGround);
    EXPECT_EQ(lines, (std::vector<std::string>{Section("X", 120, -7, 1120, 2007, 0, -1, 19.5),
                                               Line("TER", {{-7, 1}, {3, 2}})}));
    // The section keeps the trace; the caller's reference was given back.
    ASSERT_EQ(r.road->GetNumSections(), 1);
    EXPECT_EQ(r.road->GetSection(0)->GetTrace()->GetRefCount(), 1);
    for (CPlaniElem* e : r.road->RetrieveLinkedPlaniElems()) EXPECT_EQ(e->GetRefCount(), 1);
}

TEST(CrossSectReader, TraceFollowsTheNormalOnAnArc) {
    SectionRun r;
    r.MakeArcRoad();
    r.Run("<CrossSect sta=\"50\"><CrossSectSurf name=\"G\"><PntList2D>-4 0 6 0</PntList2D></CrossSectSurf>"
          "</CrossSect>",
          kGround);
    ASSERT_EQ(r.road->GetNumSections(), 1);
    const CPlaniElem* t = r.road->GetSection(0)->GetTrace();
    // Centre (0, 100); at 50 m the angle is 0.5 rad; the right normal points
    // away from the centre.
    const double th = 0.5;
    const double ax = 100 * std::sin(th), ay = 100 - 100 * std::cos(th);
    const double nx = std::sin(th), ny = -std::cos(th);
    EXPECT_DOUBLE_EQ(t->GetProg(), -4.0);
    EXPECT_NEAR(t->GetStartPnt().x, ax - 4 * nx, 1e-9);
    EXPECT_NEAR(t->GetStartPnt().y, ay - 4 * ny, 1e-9);
    EXPECT_NEAR(t->GetStartTg().x, nx, 1e-12);
    EXPECT_NEAR(t->GetStartTg().y, ny, 1e-12);
    EXPECT_NEAR(t->GetLength(), 10.0, 1e-12);
    EXPECT_EQ(r.road->GetSection(0)->GetName(), "S50.000000");
}

TEST(CrossSectReader, SectionWithoutWidthIsSkipped) {
    SectionRun r;
    const auto lines = r.Run(
        "<CrossSect name=\"Z\" sta=\"10\"><CrossSectSurf name=\"G\"><PntList2D>0 5 0 6</PntList2D></CrossSectSurf>"
        "</CrossSect>"
        "<CrossSect name=\"T\" sta=\"10\"><CrossSectSurf name=\"G\"><PntList2D>0 5 -1e-13 6 1e-13 7</PntList2D>"
        "</CrossSectSurf></CrossSect>",
        kGround);
    EXPECT_TRUE(lines.empty());
}

TEST(CrossSectReader, SectionBeyondThePlanIsSkipped) {
    SectionRun r;
    const auto lines = r.Run(
        "<CrossSect name=\"B\" sta=\"250\"><CrossSectSurf name=\"G\"><PntList2D>-1 0 1 0</PntList2D></CrossSectSurf>"
        "</CrossSect>"
        "<CrossSect name=\"E\" sta=\"200\"><CrossSectSurf name=\"G\"><PntList2D>-1 0 1 0</PntList2D></CrossSectSurf>"
        "</CrossSect>",
        kGround);
    // The road's end still belongs to it.
    EXPECT_EQ(lines, (std::vector<std::string>{Section("E", 200, -1, 1200, 2001, 0, -1, 2),
                                               Line("TER", {{-1, 0}, {1, 0}})}));
}

TEST(CrossSectReader, StationsCountFromTheRoadStart) {
    SectionRun r;
    r.MakeStraightRoad(1000.0);
    const auto lines = r.Run(
        "<CrossSect name=\"K\" sta=\"1050\"><CrossSectSurf name=\"G\"><PntList2D>-1 0 1 0</PntList2D>"
        "</CrossSectSurf></CrossSect>",
        kGround);
    EXPECT_EQ(lines, (std::vector<std::string>{Section("K", 1050, -1, 1050, 2001, 0, -1, 2),
                                               Line("TER", {{-1, 0}, {1, 0}})}));
}

TEST(CrossSectReader, UnnamedSectionIsNamedAfterItsStation) {
    SectionRun r;
    const auto lines = r.Run(
        "<CrossSect sta=\"125\"><CrossSectSurf name=\"G\"><PntList2D>-1 0 1 0</PntList2D></CrossSectSurf></CrossSect>"
        "<CrossSect name=\"\"><CrossSectSurf name=\"G\"><PntList2D>-1 0 1 0</PntList2D></CrossSectSurf></CrossSect>",
        kGround);
    // A missing station counts as 0.
    EXPECT_EQ(lines, (std::vector<std::string>{Section("S125.000000", 125, -1, 1125, 2001, 0, -1, 2),
                                               Line("TER", {{-1, 0}, {1, 0}}),
                                               Section("S0.000000", 0, -1, 1000, 2001, 0, -1, 2),
                                               Line("TER", {{-1, 0}, {1, 0}})}));
}

TEST(CrossSectReader, RepeatsAndTurnBacksFollowThePointRules) {
    SectionRun r;
    const auto lines = r.Run(
        "<CrossSect name=\"P\" sta=\"5\"><CrossSectSurf name=\"G\"><PntList2D>-10 5 -5 6 -5 6 0 7</PntList2D>"
        "<PntList2D>-12 4 -3 8 10 5</PntList2D></CrossSectSurf></CrossSect>",
        kGround);
    EXPECT_EQ(lines, (std::vector<std::string>{Section("P", 5, -12, 1005, 2012, 0, -1, 22),
                                               Line("TER", {{-10, 5}, {-5, 6}, {0, 7}, {-12, 4}, {10, 5}})}));
}

TEST(CrossSectReader, TurnBackPointBecomesTheStartForLaterPoints) {
    SectionRun r;
    // (-12,4) turns back and is the new start: (-12,4) again is a repeat of
    // it, (-11,1) lies inside, (-15,2) turns back again, (-15,2) repeats it,
    // (1,9) lies inside; (2,1) repeats the right end, which the turn-back
    // points did not move, and (2,2) and (3,3) extend it.
    const auto lines = r.Run(
        "<CrossSect name=\"P\" sta=\"5\"><CrossSectSurf name=\"G\"><PntList2D>"
        "-10 5 2 1 -12 4 -12 4 -11 1 -15 2 -15 2 1 9 2 1 2 2 3 3</PntList2D></CrossSectSurf></CrossSect>",
        kGround);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[1], Line("TER", {{-10, 5}, {2, 1}, {-12, 4}, {-15, 2}, {2, 2}, {3, 3}}));
}

TEST(CrossSectReader, RightExtensionEqualToTheLastIsARepeat) {
    SectionRun r;
    // A point at the last offset with another elevation extends the line; the
    // same point again is a repeat. A point at the start's offset with
    // another elevation turns back.
    const auto lines = r.Run(
        "<CrossSect name=\"P\" sta=\"5\"><CrossSectSurf name=\"G\"><PntList2D>"
        "0 1 4 1 4 2 4 2 0 3</PntList2D></CrossSectSurf></CrossSect>",
        kGround);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[1], Line("TER", {{0, 1}, {4, 1}, {4, 2}, {0, 3}}));
}

TEST(CrossSectReader, SurfaceToCodeWalk) {
    SectionRun r;
    const CrossSectCodes codes = {{"U", ""}, {"D", "PRO"}, {"D", "STF"}, {"E", ""}, {"E", "STF"}, {"F", ""}};
    const auto lines = r.Run(
        "<CrossSect name=\"C\" sta=\"1\">"
        "<CrossSectSurf name=\"D\"><PntList2D>-1 0 1 0</PntList2D></CrossSectSurf>"
        "<CrossSectSurf name=\"E\"><PntList2D>-2 0 2 0</PntList2D></CrossSectSurf>"
        "<CrossSectSurf name=\"F\"><PntList2D>-3 0 3 0</PntList2D></CrossSectSurf>"
        "<CrossSectSurf name=\"U\"><PntList2D>-4 0 4 0</PntList2D></CrossSectSurf>"
        "<CrossSectSurf name=\"Q\"><PntList2D>-5 0 5 0</PntList2D></CrossSectSurf>"
        "<CrossSectSurf name=\"d\"><PntList2D>-6 0 6 0</PntList2D></CrossSectSurf>"
        "</CrossSect>",
        codes);
    // The trace spans every surface, mapped or not.
    EXPECT_EQ(lines, (std::vector<std::string>{Section("C", 1, -6, 1001, 2006, 0, -1, 12),
                                               Line("PRO", {{-1, 0}, {1, 0}}), Line("STF", {{-2, 0}, {2, 0}})}));
}

TEST(CrossSectReader, SurfacesWithoutNameOrPointsAreDropped) {
    SectionRun r;
    const CrossSectCodes codes = {{"", "PRO"}, {"G", "TER"}};
    const auto lines = r.Run(
        "<CrossSect name=\"C\" sta=\"1\">"
        "<CrossSectSurf><PntList2D>-1 0 1 0</PntList2D></CrossSectSurf>"
        "<CrossSectSurf name=\"G\"><PntList2D/></CrossSectSurf>"
        "<CrossSectSurf name=\"G\"><Feature/></CrossSectSurf>"
        "</CrossSect>"
        "<CrossSect name=\"N\" sta=\"2\"><DesignCrossSectSurf name=\"G\"><CrossSectPnt>-1 0</CrossSectPnt>"
        "<CrossSectPnt>1 0</CrossSectPnt></DesignCrossSectSurf></CrossSect>",
        codes);
    // The unnamed surface still gives the section its width; the section
    // without a CrossSectSurf is skipped.
    EXPECT_EQ(lines, (std::vector<std::string>{Section("C", 1, -1, 1001, 2001, 0, -1, 2)}));
}

TEST(CrossSectReader, ImperialStationsAndPointsAreConverted) {
    SectionRun r;
    const auto lines = r.Run(
        "<CrossSect name=\"I\" sta=\"100\"><CrossSectSurf name=\"G\"><PntList2D>-10 50 20 60</PntList2D>"
        "</CrossSectSurf></CrossSect>",
        kGround, false);
    EXPECT_EQ(lines, (std::vector<std::string>{Section("I", 100 * kFt, -10 * kFt, 1000 + 100 * kFt, 2000 + 10 * kFt,
                                                       0, -1, std::fabs((2000 - 20 * kFt) - (2000 + 10 * kFt))),
                                               Line("TER", {{-10 * kFt, 50 * kFt}, {20 * kFt, 60 * kFt}})}));
}

TEST(CrossSectReader, OddNumberCountEndsTheImportBeforeItsSection) {
    SectionRun r;
    const std::string msg = r.RunEnding(
        "<CrossSect name=\"OK\" sta=\"1\"><CrossSectSurf name=\"G\"><PntList2D>-1 0 1 0</PntList2D></CrossSectSurf>"
        "</CrossSect>"
        "<CrossSect name=\"Odd\" sta=\"2\"><CrossSectSurf name=\"G\"><PntList2D>-1 0 1</PntList2D></CrossSectSurf>"
        "</CrossSect>"
        "<CrossSect name=\"Later\" sta=\"3\"><CrossSectSurf name=\"G\"><PntList2D>-1 0 1 0</PntList2D>"
        "</CrossSectSurf></CrossSect>",
        kGround);
    EXPECT_EQ(msg,
              "alignment \"A\", CrossSect \"Odd\" at sta \"2\", CrossSectSurf \"G\": a PntList2D of 3 numbers, "
              "where every offset needs an elevation");
    EXPECT_EQ(r.Lines({"AddSection"}), (std::vector<std::string>{Section("OK", 1, -1, 1001, 2001, 0, -1, 2)}));
}

}  // namespace
