// Plan geometry of an alignment, checked through the builder calls in the
// trace: document order, running chainage and direction, unit conversions,
// curve sweeps, spiral classification and the spiral constant question.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <string>
#include <vector>

#include "host/plani_elem.h"
#include "host/road.h"
#include "landxml_import/landxml_units.h"
#include "landxml_import/plan_common.h"
#include "landxml_import/plan_geometry.h"
#include "lx1_test_util.h"

namespace {

using namespace lx1test;

constexpr double kFt = 0.3048006096012;
constexpr double kPi = std::numbers::pi;
const VECTOR_2D kUndefDir(1.7e200, 1.7e200);

std::string Units(const char* attrs, const char* system = "Metric") {
    return std::string("<Units><") + system + " " + attrs + "/></Units>";
}

// The direction the import makes of an angle: (cos a, sin a), normalised.
VECTOR_2D Dir(double a) {
    VECTOR_2D d(std::cos(a), std::sin(a));
    return d.Normalize();
}

// Imports one alignment made of `elements`.
struct TPlanRun : TImportRun {
    explicit TPlanRun(const std::string& elements, const std::string& units = Units("")) {
        Run(LandXml(Alignment("A", elements), units));
        EXPECT_TRUE(status.ok()) << status.message;
    }
    const CPlaniElem* Elem(int i) {
        const CRoadPlaniElem* l = doc.GetLibRoad()->GetRoad(0)->GetFirstRoadPlaniElem();
        for (; l && i > 0; --i) l = l->GetNextElem();
        return l ? l->GetElem() : nullptr;
    }
};

TEST(PlanOrder, KindsFollowTheText) {
    EXPECT_EQ(PlanKindsInTextOrder("<CoordGeom><Curve/><Line><Start/></Line><Spiral/><Line/></CoordGeom>"),
              (std::vector<int>{12, 11, 13, 11}));
    EXPECT_EQ(PlanKindsInTextOrder("<CoordGeom/>"), std::vector<int>{});
}

TEST(PlanOrder, CurvesWrittenBeforeLinesKeepTheirPlace) {
    TPlanRun run("<Curve radius=\"100\" length=\"10\"><Start>0 0</Start></Curve>"
                 "<Line length=\"5\" dir=\"0\"><Start>1 1</Start></Line>"
                 "<Spiral length=\"20\" radiusStart=\"INF\" radiusEnd=\"100\"><Start>2 2</Start></Spiral>"
                 "<Line length=\"7\" dir=\"0\"><Start>3 3</Start></Line>"
                 "<Curve radius=\"50\" length=\"4\" dirStart=\"0\"><Start>4 4</Start></Curve>",
                 Units("directionUnit=\"radians\""));
    const auto lines = run.PlanLines();
    ASSERT_EQ(lines.size(), 5u);
    const char* ops[] = {"AddRoadArc ", "AddRoadRect ", "AddRoadClot ", "AddRoadRect ", "AddRoadArc "};
    for (int i = 0; i < 5; ++i) EXPECT_EQ(lines[i].rfind(ops[i], 0), 0u) << lines[i];
    // Running chainage: 0, 10, 15, 35, 42.
    EXPECT_EQ(lines[1], L("AddRoadRect").D(10).P({1, 1}).V(Dir(0)).D(5).str());
    EXPECT_EQ(lines[3], L("AddRoadRect").D(35).P({3, 3}).V(Dir(0)).D(7).str());
    EXPECT_EQ(lines[4], L("AddRoadArc").D(42).P({4, 4}).V(Dir(0)).D(50).D(4.0 / 50).B(true).str());
}

TEST(PlanChainage, StaStartIsUsedButDoesNotResetTheRunningChainage) {
    TPlanRun run("<Line length=\"10\" dir=\"0\"><Start>0 0</Start></Line>"
                 "<Line length=\"20\" dir=\"0\" staStart=\"500\"><Start>0 10</Start></Line>"
                 "<Line length=\"5\" dir=\"0\"><Start>0 30</Start></Line>",
                 Units("directionUnit=\"radians\""));
    EXPECT_EQ(run.PlanLines(), Expect({L("AddRoadRect").D(0).P({0, 0}).V(Dir(0)).D(10),
                                       L("AddRoadRect").D(500).P({10, 0}).V(Dir(0)).D(20),
                                       L("AddRoadRect").D(30).P({30, 0}).V(Dir(0)).D(5)}));
}

TEST(PlanChainage, EveryCoordGeomStartsAfresh) {
    TImportRun run;
    const std::string xml = LandXml(
        "<Alignments><Alignment name=\"A\"><CoordGeom><Line length=\"10\"><Start>0 0</Start><End>0 10</End></Line>"
        "</CoordGeom><CoordGeom><Curve radius=\"10\" length=\"1\"><Start>0 0</Start></Curve></CoordGeom>"
        "</Alignment></Alignments>");
    ASSERT_TRUE(run.Run(xml).ok());
    EXPECT_EQ(run.PlanLines(), Expect({L("AddRoadRect").D(0).P({0, 0}).V({1, 0}).D(10),
                                       L("AddRoadArc").D(0).P({0, 0}).V(kUndefDir).D(10).D(0.1).B(true)}));
}

TEST(PlanLine, WithoutLengthTakesTheDistanceAndWithoutDirectionTheChord) {
    // Start N 0 E 0, End N 3 E 4: length 5, direction (0.8, 0.6).
    TPlanRun run("<Line><Start>0 0</Start><End>3 4</End></Line>");
    EXPECT_EQ(run.PlanLines(), Expect({L("AddRoadRect").D(0).P({0, 0}).V(VECTOR_2D(4, 3).Normalize()).D(5)}));
}

TEST(PlanLine, DirectionWithoutUnitIsIgnored) {
    TPlanRun run("<Line dir=\"1.0\" length=\"2\"><Start>0 0</Start><End>0 5</End></Line>");
    EXPECT_EQ(run.PlanLines(), Expect({L("AddRoadRect").D(0).P({0, 0}).V({1, 0}).D(2)}));
}

TEST(PlanLine, RunningDirectionCarriesOnWithoutDir) {
    // The second Line has no dir: it starts in the first one's direction
    // although its own End lies elsewhere; only its length comes from End.
    TPlanRun run("<Line><Start>0 0</Start><End>0 10</End></Line><Line><Start>0 10</Start><End>10 20</End></Line>");
    EXPECT_EQ(run.PlanLines(), Expect({L("AddRoadRect").D(0).P({0, 0}).V({1, 0}).D(10),
                                       L("AddRoadRect").D(10).P({10, 0}).V({1, 0}).D(std::hypot(10.0, 10.0))}));
}

TEST(PlanLine, MissingStartIsTheOrigin) {
    TPlanRun run("<Line length=\"3\" dir=\"0\"/>", Units("directionUnit=\"radians\""));
    EXPECT_EQ(run.PlanLines(), Expect({L("AddRoadRect").D(0).P({0, 0}).V(Dir(0)).D(3)}));
}

TEST(PlanDirections, ConvertedAsTabulated) {
    struct Case {
        const char* unit;
        double angle;
    } cases[] = {
        {"grads", (100 - 90) * 0.015707963267948},
        {"decimal degrees", 90 * 0.01745329251994},
        {"radians", 90},
    };
    for (const Case& c : cases) {
        TPlanRun run("<Line dir=\"90\" length=\"1\"><Start>0 0</Start></Line>",
                     Units((std::string("directionUnit=\"") + c.unit + "\"").c_str()));
        EXPECT_EQ(run.PlanLines(), Expect({L("AddRoadRect").D(0).P({0, 0}).V(Dir(c.angle)).D(1)})) << c.unit;
    }
    EXPECT_EQ((100 - 90) * 0.015707963267948, 0.15707963267948);
    EXPECT_DOUBLE_EQ(90 * 0.01745329251994, 1.5707963267946);
    EXPECT_EQ(AngleFromFile(90, 2), (100 - 90) * 0.015707963267948);
    EXPECT_EQ(AngleFromFile(90, 3), 90 * 0.01745329251994);
    EXPECT_EQ(AngleFromFile(90, 1), 90.0);
    EXPECT_EQ(AngleFromFile(90, 7), 90.0);
}

TEST(PlanDirections, UndefinedConvertedValueLeavesTheRunningDirection) {
    TPlanRun run("<Line length=\"1\"><Start>0 0</Start><End>0 1</End></Line>"
                 "<Line length=\"1\" dir=\"1e300\"><Start>0 1</Start></Line>",
                 Units("directionUnit=\"radians\""));
    EXPECT_EQ(run.PlanLines()[1], L("AddRoadRect").D(1).P({1, 0}).V({1, 0}).D(1).str());
}

TEST(PlanCurve, DeltaUsesTheGradsFormulaToo) {
    TPlanRun run("<Curve delta=\"90\" radius=\"100\" length=\"999\" rot=\"cw\"><Start>0 0</Start></Curve>",
                 Units("angularUnit=\"grads\""));
    EXPECT_EQ(run.PlanLines(), Expect({L("AddRoadArc").D(0).P({0, 0}).V(kUndefDir).D(100).D(0.15707963267948).B(false)}));
}

TEST(PlanCurve, SweepFromLengthThenFromCenterAndEnd) {
    // Without an angle unit delta is ignored: length / radius.
    TPlanRun a("<Curve delta=\"1\" radius=\"40\" length=\"10\"><Start>0 0</Start></Curve>");
    EXPECT_EQ(a.PlanLines(), Expect({L("AddRoadArc").D(0).P({0, 0}).V(kUndefDir).D(40).D(0.25).B(true)}));
    // Without length: |angle(End) − angle(Start)| seen from Center.
    TPlanRun b("<Curve radius=\"10\"><Start>0 0</Start><Center>0 10</Center><End>10 10</End></Curve>");
    const double sweep = std::fabs(std::atan2(10.0, 0.0) - std::atan2(0.0, -10.0));
    EXPECT_EQ(b.PlanLines(), Expect({L("AddRoadArc").D(0).P({0, 0}).V(kUndefDir).D(10).D(sweep).B(true)}));
}

TEST(PlanCurve, SweepIsBroughtIntoOneTurn) {
    const std::string units = Units("angularUnit=\"radians\"");
    TPlanRun neg("<Curve delta=\"-1\" radius=\"10\" length=\"10\"><Start>0 0</Start></Curve>", units);
    EXPECT_EQ(neg.PlanLines()[0], L("AddRoadArc").D(0).P({0, 0}).V(kUndefDir).D(10).D(-1 + 2 * kPi).B(true).str());
    TPlanRun big("<Curve delta=\"7\" radius=\"10\" length=\"70\"><Start>0 0</Start></Curve>", units);
    EXPECT_EQ(big.PlanLines()[0], L("AddRoadArc").D(0).P({0, 0}).V(kUndefDir).D(10).D(7 - 2 * kPi).B(true).str());
    EXPECT_EQ(NormalizeSweep(2 * kPi), 0.0);
    EXPECT_EQ(NormalizeSweep(-4 * kPi), 0.0);
    const double huge = NormalizeSweep(1e300);
    EXPECT_GE(huge, 0.0);
    EXPECT_LT(huge, 2 * kPi);
    EXPECT_TRUE(std::isinf(NormalizeSweep(INFINITY)));
}

TEST(PlanCurve, TurnIsCounterClockwiseUnlessExactlyCw) {
    for (const auto& [rot, ccw] : {std::pair{"rot=\"cw\"", false}, {"rot=\"CW\"", true}, {"rot=\"ccw\"", true}, {"", true}}) {
        TPlanRun run(std::string("<Curve radius=\"10\" length=\"1\" ") + rot + "><Start>0 0</Start></Curve>");
        EXPECT_EQ(run.PlanLines()[0], L("AddRoadArc").D(0).P({0, 0}).V(kUndefDir).D(10).D(0.1).B(ccw).str()) << rot;
    }
}

TEST(PlanCurve, EndTangentFromDirEndOrFromTheArc) {
    const std::string units = Units("directionUnit=\"radians\"");
    // dirEnd given: the next Line starts in it.
    TPlanRun given("<Curve radius=\"10\" length=\"5\" dirStart=\"0.25\" dirEnd=\"2\"><Start>0 0</Start></Curve>"
                   "<Line length=\"1\"><Start>9 9</Start></Line>",
                   units);
    EXPECT_EQ(given.PlanLines(), Expect({L("AddRoadArc").D(0).P({0, 0}).V(Dir(0.25)).D(10).D(0.5).B(true),
                                         L("AddRoadRect").D(5).P({9, 9}).V(Dir(2)).D(1)}));
    // No dirEnd (or an undefined one): the arc's own end tangent, a0 ± sweep.
    for (const char* dirEnd : {"", "dirEnd=\"1e300\""}) {
        TPlanRun computed(std::string("<Curve radius=\"10\" length=\"5\" dirStart=\"0.25\" rot=\"cw\" ") + dirEnd +
                              "><Start>0 0</Start></Curve><Line length=\"1\"><Start>9 9</Start></Line>",
                          units);
        const VECTOR_2D tg = computed.Elem(1)->GetStartTg();
        EXPECT_NEAR(tg.x, std::cos(0.25 - 0.5), 1e-12);
        EXPECT_NEAR(tg.y, std::sin(0.25 - 0.5), 1e-12);
    }
}

TEST(PlanCurve, WithoutLengthTheArcGivesIt) {
    TPlanRun run("<Curve radius=\"10\" delta=\"0.5\"><Start>0 0</Start></Curve><Line length=\"1\"><Start>0 0</Start></Line>",
                 Units("angularUnit=\"radians\""));
    EXPECT_EQ(run.PlanLines()[1].rfind(L("AddRoadRect").D(10 * 0.5).str(), 0), 0u) << run.PlanLines()[1];
}

TEST(PlanCurve, ImperialLengthsAreConverted) {
    TPlanRun run("<Curve radius=\"100\" length=\"10\" staStart=\"50\"><Start>1000 2000</Start></Curve>",
                 Units("", "Imperial"));
    EXPECT_EQ(run.PlanLines(), Expect({L("AddRoadArc").D(50 * kFt).P({2000 * kFt, 1000 * kFt}).V(kUndefDir)
                                           .D(100 * kFt).D((10 * kFt) / (100 * kFt)).B(true)}));
}

TEST(PlanSpiral, EntryExitAndContinuity) {
    const char* start = "><Start>0 0</Start></Spiral>";
    struct Case {
        const char* radii;
        std::string expected;
    } cases[] = {
        {"radiusStart=\"INF\" radiusEnd=\"250\"",
         L("AddRoadClot").D(0).P({0, 0}).V(kUndefDir).D(1).D(std::sqrt(250.0 * 60)).D(250).B(true).B(true).str()},
        {"radiusStart=\"250\" radiusEnd=\"INF\"",
         L("AddRoadClot").D(0).P({0, 0}).V(kUndefDir).D(1).D(std::sqrt(250.0 * 60)).D(250).B(true).B(false).str()},
        {"radiusStart=\"1e9\" radiusEnd=\"250\"",
         L("AddRoadClot").D(0).P({0, 0}).V(kUndefDir).D(1).D(std::sqrt(250.0 * 60)).D(250).B(true).B(true).str()},
        {"radiusStart=\"-INF\" radiusEnd=\"250\"",
         L("AddRoadClot").D(0).P({0, 0}).V(kUndefDir).D(1).D(std::sqrt(250.0 * 60)).D(250).B(true).B(true).str()},
        {"radiusEnd=\"250\"",
         L("AddRoadClot").D(0).P({0, 0}).V(kUndefDir).D(1).D(std::sqrt(250.0 * 60)).D(250).B(true).B(true).str()},
        {"radiusStart=\"250\" radiusEnd=\"-1.5e8\"",
         L("AddRoadClot").D(0).P({0, 0}).V(kUndefDir).D(1).D(std::sqrt(250.0 * 60)).D(250).B(true).B(false).str()},
        {"radiusStart=\"300\" radiusEnd=\"150\"",
         L("AddRoadClotCont").D(0).P({0, 0}).V(kUndefDir).D(1).D(std::sqrt(60 / std::fabs(1.0 / 150 - 1.0 / 300)))
             .D(300).D(150).B(true).str()},
        // 1e8 within the tolerance is not beyond it: a continuity spiral.
        {"radiusStart=\"100000000.00001\" radiusEnd=\"150\"",
         L("AddRoadClotCont").D(0).P({0, 0}).V(kUndefDir).D(1)
             .D(std::sqrt(60 / std::fabs(1.0 / 150 - 1.0 / 100000000.00001))).D(100000000.00001).D(150).B(true).str()},
    };
    for (const Case& c : cases) {
        TPlanRun run(std::string("<Spiral length=\"60\" ") + c.radii + start);
        ASSERT_EQ(run.PlanLines().size(), 1u) << c.radii;
        EXPECT_EQ(run.PlanLines()[0], c.expected) << c.radii;
    }
    // The host's own formula agrees with the independent one above.
    EXPECT_NEAR(CClotoideContinuita::ComputeAFromR1R2Len(1.0, 300, 150, 60), std::sqrt(18000.0), 1e-9);
}

TEST(PlanSpiral, ConstantAsAOrASquaredIsAcceptedSilently) {
    for (const char* constant : {"122.47448713915890", "15000", "-15000"}) {
        TPlanRun run(std::string("<Spiral length=\"60\" radiusStart=\"INF\" radiusEnd=\"250\" constant=\"") + constant +
                     "\"><Start>0 0</Start></Spiral>");
        EXPECT_TRUE(run.ui.questions.empty()) << constant;
        EXPECT_TRUE(run.Lines({"Question"}).empty());
        EXPECT_EQ(run.PlanLines().size(), 1u);
    }
}

TEST(PlanSpiral, ConstantThatMatchesNeitherAsksAndYesKeepsTheComputedA) {
    TPlanRun run("<Spiral length=\"60\" radiusStart=\"INF\" radiusEnd=\"250\" constant=\"122.4744\"><Start>0 0</Start></Spiral>");
    ASSERT_EQ(run.ui.questions.size(), 1u);
    EXPECT_EQ(run.ui.questions[0].first, "Planimetria.");
    EXPECT_EQ(run.ui.questions[0].second,
              "Non è stato possibile trovare un valore valido per una clotoide. Il risultato finale potrebbe non "
              "coincidere con quello voluto. Procedere ugualmente?");
    EXPECT_EQ(run.PlanLines(),
              Expect({L("AddRoadClot").D(0).P({0, 0}).V(kUndefDir).D(1).D(std::sqrt(15000.0)).D(250).B(true).B(true)}));
}

TEST(PlanSpiral, EndTangentAndLengthFromTheClothoid) {
    // Entry spiral, clockwise, from direction 0.3: deflection L / (2R).
    TPlanRun run("<Spiral length=\"60\" radiusStart=\"INF\" radiusEnd=\"250\" rot=\"cw\" dirStart=\"0.3\"><Start>0 0</Start>"
                 "</Spiral><Line length=\"1\"><Start>5 5</Start></Line>",
                 Units("directionUnit=\"radians\""));
    const CPlaniElem* line = run.Elem(1);
    ASSERT_NE(line, nullptr);
    EXPECT_NEAR(line->GetStartTg().x, std::cos(0.3 - 60.0 / 500), 1e-12);
    EXPECT_NEAR(line->GetStartTg().y, std::sin(0.3 - 60.0 / 500), 1e-12);
    EXPECT_EQ(line->GetProg(), 60.0);
}

TEST(PlanSpiral, WithoutLengthTheConstantIsA) {
    TPlanRun run("<Spiral constant=\"100\" radiusStart=\"INF\" radiusEnd=\"200\"><Start>0 0</Start></Spiral>"
                 "<Line length=\"1\"><Start>0 0</Start></Line>");
    EXPECT_EQ(run.PlanLines()[0], L("AddRoadClot").D(0).P({0, 0}).V(kUndefDir).D(1).D(100).D(200).B(true).B(true).str());
    // Its length A²/R = 50 moves the running chainage on.
    EXPECT_EQ(run.PlanLines()[1].rfind(L("AddRoadRect").D(50).str(), 0), 0u) << run.PlanLines()[1];
}

TEST(PlanSpiral, WithoutLengthOrConstantIsRefused) {
    TImportRun run;
    EXPECT_EQ(run.Run(LandXml(Alignment("A", "<Spiral radiusStart=\"INF\" radiusEnd=\"200\"/>"))).code,
              TExchangeStatus::ENDED_EARLY);
    EXPECT_EQ(run.status.message, "alignment \"A\": plan geometry refused (spiral without length or constant)");
    EXPECT_EQ(run.doc.GetLibRoad()->GetNumRoads(), 0u);
}

TEST(PlanSpiral, LastStartCountsAndImperialIsConverted) {
    TPlanRun run("<Spiral length=\"60\" radiusStart=\"250\" radiusEnd=\"INF\" staStart=\"10\"><Start>1 2</Start>"
                 "<Start>3 4</Start></Spiral>",
                 Units("", "Imperial"));
    EXPECT_EQ(run.PlanLines(), Expect({L("AddRoadClot").D(10 * kFt).P({4 * kFt, 3 * kFt}).V(kUndefDir).D(1)
                                           .D(std::sqrt((250 * kFt) * (60 * kFt))).D(250 * kFt).B(true).B(false)}));
}

TEST(PlanSpiral, DirStartInGrads) {
    TPlanRun run("<Spiral length=\"60\" radiusStart=\"INF\" radiusEnd=\"250\" dirStart=\"50\"><Start>0 0</Start></Spiral>",
                 Units("directionUnit=\"grads\""));
    EXPECT_EQ(run.PlanLines(), Expect({L("AddRoadClot").D(0).P({0, 0}).V(Dir(50 * 0.015707963267948)).D(1)
                                           .D(std::sqrt(15000.0)).D(250).B(true).B(true)}));
}

TEST(PlanHelpers, TolerantEqual) {
    EXPECT_TRUE(TolerantEqual(1e8 + 1e-5, 1e8));
    EXPECT_FALSE(TolerantEqual(1e8 + 1e-3, 1e8));
    EXPECT_TRUE(TolerantEqual(5e-13, 0.0));
    EXPECT_FALSE(TolerantEqual(2e-12, 0.0));
    EXPECT_TRUE(TolerantEqual(INFINITY, INFINITY));
    EXPECT_FALSE(TolerantEqual(1e308, INFINITY));
}

}  // namespace
