#include <gtest/gtest.h>

#include "host/load_vantri_dati.h"
#include "host/trace.h"

namespace {

TEST(Builder, RoadInRequiredOrder) {
    CVantriDoc doc;
    {
        CLoadVantriDati b(&doc);
        CRoad* r = b.AddRoad("A1", 10, false);
        b.StartRoadPlani();
        b.AddRoadRect(10, {0, 0}, {1, 0}, 100);
        b.AddRoadArc(110, {100, 0}, {1, 0}, 200, 0.5, true);
        b.EndRoadPlani();
        EXPECT_EQ(r->GetNumRoadPlaniElems(), 2);
        EXPECT_NEAR(r->GetEndProg(), 110 + 100, 1e-9);
        EXPECT_EQ(b.GetRefusedCalls(), 0);
    }
    ASSERT_EQ(doc.GetLibRoad()->GetNumRoads(), 1u);
    CRoad* r = doc.GetLibRoad()->GetRoad(0);
    EXPECT_EQ(r->GetName(), "A1");
    EXPECT_EQ(r->GetStartProg(), 10);
    auto elems = r->RetrieveLinkedPlaniElems();
    ASSERT_EQ(elems.size(), 2u);
    EXPECT_EQ(elems[0]->GetType(), CPlaniElem::RETTIFILO);
    EXPECT_EQ(elems[1]->GetType(), CPlaniElem::ARCO);
    EXPECT_EQ(r->GetFirstRoadPlaniElem()->GetNextElem()->GetElem(), elems[1]);
    EXPECT_EQ(r->GetFirstRoadPlaniElem()->GetNextElem()->GetNextElem(), nullptr);
}

TEST(Builder, ElementsOutsideThePlanSectionAreRefused) {
    CVantriDoc doc;
    CLoadVantriDati b(&doc);
    b.AddRoad("A", 0, false);
    b.AddRoadRect(0, {0, 0}, {1, 0}, 10);  // before StartRoadPlani
    EXPECT_EQ(b.GetRefusedCalls(), 1);
    EXPECT_TRUE(doc.GetLibRoad()->GetRoad(0)->IsEmpty());
}

TEST(Builder, RemoveRoadAfterEndRoadPlani) {
    CVantriDoc doc;
    CLoadVantriDati b(&doc);
    b.AddRoad("keep", 0, false);
    b.StartRoadPlani();
    b.EndRoadPlani();
    b.AddRoad("drop", 0, false);
    b.StartRoadPlani();
    b.RemoveRoad();  // plan still open: refused
    EXPECT_EQ(doc.GetLibRoad()->GetNumRoads(), 2u);
    b.EndRoadPlani();
    b.RemoveRoad();
    ASSERT_EQ(doc.GetLibRoad()->GetNumRoads(), 1u);
    EXPECT_EQ(doc.GetLibRoad()->GetRoad(0)->GetName(), "keep");
}

TEST(Builder, DestructorClosesWhatTheImportLeftOpen) {
    CVantriDoc doc;
    CTraceMemory t;
    CTraceScope scope(&t);
    {
        CLoadVantriDati b(&doc);
        b.AddRoad("A", 0, false);
        b.StartRoadPlani();
        b.AddRoadRect(0, {0, 0}, {1, 0}, 10);
    }
    ASSERT_GE(t.lines.size(), 4u);
    EXPECT_EQ(t.lines.back(), "EndRoadPlani");
    EXPECT_EQ(doc.GetLibRoad()->GetRoad(0)->GetNumRoadPlaniElems(), 1);
}

TEST(Builder, TriangulationIdsMapToIndices) {
    CVantriDoc doc;
    CLoadVantriDati b(&doc);
    b.AddDtmPrj("T");
    b.AddTriVert(7, 0, 0, 1);
    b.AddTriVert(3, 1, 0, 2);
    b.AddTriVert(2000000000, 0, 1, 3);  // a large id
    b.AddTriVert(-5, 1, 1, 4);          // a negative id
    b.AddTri(7, 3, 2000000000);
    b.AddTri(3, -5, 2000000000);
    b.AddTri(7, 3, 99);  // unknown id: dropped
    CTris* tris = doc.GetLibDtm()->GetPrj(0)->GetTris();
    ASSERT_EQ(tris->GetNoTriVrts(), 4);
    EXPECT_EQ(tris->GetTriVrtAt(2).getZ(), 3);
    ASSERT_EQ(tris->GetNoTris(), 2);
    EXPECT_EQ(tris->GetTriAt(0)->GetVerIndex(0), 0);
    EXPECT_EQ(tris->GetTriAt(0)->GetVerIndex(1), 1);
    EXPECT_EQ(tris->GetTriAt(0)->GetVerIndex(2), 2);
    EXPECT_EQ(tris->GetTriAt(1)->GetVerIndex(1), 3);
    EXPECT_EQ(b.GetDroppedTris(), 1);
}

TEST(Builder, IdsBelongToTheirProject) {
    CVantriDoc doc;
    CLoadVantriDati b(&doc);
    b.AddDtmPrj("first");
    b.AddTriVert(1, 0, 0, 0);
    b.AddTriVert(2, 1, 0, 0);
    b.AddTriVert(3, 0, 1, 0);
    b.AddDtmPrj("second");
    b.AddTriVert(1, 5, 5, 5);
    b.AddTri(1, 2, 3);  // 2 and 3 belong to the first project
    EXPECT_EQ(doc.GetLibDtm()->GetPrj(1)->GetTris()->GetNoTris(), 0);
    EXPECT_EQ(b.GetDroppedTris(), 1);
}

TEST(Builder, ContoursAndBreaklinesKeptAsGiven) {
    CVantriDoc doc;
    CLoadVantriDati b(&doc);
    b.AddDtmPrj("T");
    std::vector<vesk::geom::PNT_3D> outer = {{0, 0, 1}, {10, 0, 2}, {10, 10, 3}};
    std::vector<vesk::geom::PNT_3D> island = {{4, 4, 0}, {5, 4, 0}, {5, 5, 0}, {4, 4, 0}};
    b.AddCnt(true, &outer);
    b.AddCnt(false, &island);
    b.AddVnc(0, 0, 0, 1, 1, 1);
    CDtmPrj* p = doc.GetLibDtm()->GetPrj(0);
    ASSERT_EQ(p->GetCntsExt()->GetNoCnts(), 1);
    ASSERT_EQ(p->GetCntsInt()->GetNoCnts(), 1);
    EXPECT_EQ(p->GetCntsExt()->GetCntAt(0)->GetNoVrts(), 3) << "not closed by the host";
    EXPECT_EQ(p->GetCntsInt()->GetCntAt(0)->GetNoVrts(), 4);
    EXPECT_EQ(p->GetVncs()->GetVncAt(0)->GetCoords().p2, vesk::geom::PNT_3D(1, 1, 1));
}

TEST(Builder, SectionsAndCodes) {
    CVantriDoc doc;
    CLoadVantriDati b(&doc);
    b.AddRoad("A", 0, false);
    b.StartRoadPlani();
    b.AddRoadRect(0, {0, 0}, {1, 0}, 100);
    b.EndRoadPlani();
    auto* trace = new CRettifiloPlaniElem(50, {50, 10}, {0, -1}, 20);
    b.AddSection("S1", 50, trace);
    trace->SubReference();  // the section keeps its own reference
    EXPECT_TRUE(b.AddSectionProfileAlti("TER", {{-10, 5}, {0, 6}, {10, 5}}));
    EXPECT_TRUE(b.AddSectionProfileAlti("STF", {{-5, 6}, {0, 6.2}, {5, 6}}));
    EXPECT_FALSE(b.AddSectionProfileAlti("NOPE", {{0, 0}})) << "unknown code";
    EXPECT_TRUE(b.AddSectionProfileAlti("TER", {{20, 4}, {30, 3}}));
    CProfile* s = doc.GetLibRoad()->GetRoad(0)->GetSection(0);
    EXPECT_EQ(s->GetName(), "S1");
    EXPECT_EQ(s->GetSectionProg(), 50);
    EXPECT_EQ(s->GetTrace()->GetLength(), 20);
    // The second terrain piece follows the first after an undefined vertex.
    ASSERT_EQ(s->GetNumTerrVrts(), 6);
    EXPECT_FALSE(vesk::IsDefined(s->GetTerrVrt(3)->prog));
    EXPECT_EQ(s->GetTerrVrt(4)->prog, 20);
    ASSERT_EQ(s->GetNumProfileAlti(), 2);
    EXPECT_TRUE(s->GetProfileAlti(0)->IsTerr());
    EXPECT_EQ(s->GetProfileAlti(1)->GetCode(), "STF");
    EXPECT_NE(s->GetSectionTemplate(), nullptr);
    EXPECT_EQ(doc.GetLibProfile()->FindSectionAltiCode("TER")->name, "TERRENO");
}

TEST(Builder, SurveyValuesAndDefaults) {
    CVantriDoc doc;
    CLoadVantriDati b(&doc);
    b.AddGrpGps("G");
    b.SetGrpStaName("BASE");
    b.SetGrpCoords(1, 2, 3);
    b.AddGpsPnt(0.1, 0.2, 30);
    b.AddJob("J");
    b.AddSta("ST1", 1.5);
    b.AddPun("P", "d", 1.7e200, 1.7e200, 1.7e200, 1.2, 100, 1.5, 0.5);
    CGrpGps* g = doc.GetLibGps()->GetGrpAt(0);
    EXPECT_EQ(g->GetNome(), "BASE");
    EXPECT_EQ(g->GetNomeGrp(), "G");
    EXPECT_EQ(g->GetCoordY(), 2);
    EXPECT_EQ(g->GetBaseAltAnt(), 1.7e200) << "never set: undefined";
    CPunGps* p = doc.GetLibGps()->GetPunAt(0, 0);
    EXPECT_EQ(p->GetQua(), 0);
    EXPECT_EQ(p->GetNuGpsUsed(), 0);
    EXPECT_EQ(p->GetPosCov_zz(), 0.0f);
    EXPECT_EQ(p->GetCoordX(), 1.7e200);
    CSta* st = doc.GetLibCmp()->GetStaAt(0, 0);
    EXPECT_EQ(st->GetAltStr(), 1.5);
    EXPECT_EQ(st->GetCoordZ(), 1.7e200);
    int job = -1, sta = -1;
    EXPECT_TRUE(doc.GetLibCmp()->GetIndiciDiSta(st, job, sta));
    EXPECT_EQ(job, 0);
    EXPECT_EQ(sta, 0);
    EXPECT_EQ(doc.GetLibCmp()->GetPunAt(0, 0, 0)->GetDato0(), 100);
}

}  // namespace
