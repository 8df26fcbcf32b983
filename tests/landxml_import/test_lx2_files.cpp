// Files of tests/data/landxml/rules, each breaking one rule that ends an
// import, through the import entry point: the import keeps what it had added
// before. (tests/cli/test_rule_files.cpp checks the program's message.)
#include <gtest/gtest.h>

#include <string>

#include "host/dtm.h"
#include "host/road.h"
#include "lx1_test_util.h"
#include "tests/common/test_data.h"

namespace {

const std::string kData = roadx::test::DataPath("landxml/");

// What an ended import keeps: everything added before the rule was met.
struct TEndedImport {
    CVantriDoc doc;
    lx1test::CScriptedUi ui;
    TExchangeStatus status;

    explicit TEndedImport(const std::string& file, bool sections = false) {
        if (sections) {
            ui.chooseAll = false;
            ui.choice.alignments = {"Road 1"};
            ui.choice.crossSectCodes = {{"Existing", "TER"}};
        }
        CHostUiScope scope(&ui);
        status = roadx::landxml::ImportLandXMLStatus(&doc, (kData + "rules/" + file).c_str(), false, false);
    }
};

TEST(LandXmlRuleFiles, SurfaceRuleKeepsPointsAndEarlierSurfaces) {
    TEndedImport r("surface_short_point.xml");
    EXPECT_EQ(r.status.code, TExchangeStatus::ENDED_EARLY);
    ASSERT_EQ(r.doc.GetLibPnt()->GetGrpArSize(), 1);
    EXPECT_EQ(r.doc.GetLibPnt()->GetPtnArSize(0), 1);
    ASSERT_EQ(r.doc.GetLibDtm()->GetNoPrj(), 2u);
    EXPECT_EQ(r.doc.GetLibDtm()->GetPrj(0)->GetTris()->GetNoTris(), 1);
    EXPECT_EQ(r.doc.GetLibDtm()->GetPrj(1)->GetName(), "Broken");
    EXPECT_EQ(r.doc.GetLibDtm()->GetPrj(1)->GetTris()->GetNoTriVrts(), 1);
}

TEST(LandXmlRuleFiles, ProfileRuleKeepsTheRoadAndItsEarlierVertices) {
    TEndedImport r("profile_curve_last.xml");
    EXPECT_EQ(r.status.code, TExchangeStatus::ENDED_EARLY);
    ASSERT_EQ(r.doc.GetLibRoad()->GetNumRoads(), 1u);
    CProfileAlti* prj = r.doc.GetLibRoad()->GetRoad(0)->GetRoadProfile()->GetMainPrjAlti();
    ASSERT_NE(prj, nullptr);
    EXPECT_EQ(prj->GetNumVrts(), 2);
}

TEST(LandXmlRuleFiles, SectionRuleKeepsTheSectionsBefore) {
    TEndedImport r("cross_sect_odd_count.xml", true);
    EXPECT_EQ(r.status.code, TExchangeStatus::ENDED_EARLY);
    ASSERT_EQ(r.doc.GetLibRoad()->GetNumRoads(), 1u);
    CRoad* road = r.doc.GetLibRoad()->GetRoad(0);
    ASSERT_EQ(road->GetNumSections(), 1);
    EXPECT_EQ(road->GetSection(0)->GetName(), "CS100");
    EXPECT_EQ(road->GetSection(0)->GetNumTerrVrts(), 3);
}

}  // namespace
