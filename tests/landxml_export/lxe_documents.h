// The test documents of the LandXML export, built through the document
// builder as an import would build them. A few details the builder has no
// call for (a circular vertical curve, a vertex that is not principal, a line
// under an unknown code, GPS quality data) are set on the host objects after.
// tests/data/landxml_export/gen_golden.py holds the same values.
#pragma once
#include "host/load_vantri_dati.h"
#include "vesk/undefined.h"

namespace lxetest {

using vesk::kUndefined;

// A section trace across the road; the builder's section keeps its own
// reference.
inline void AddSection(CLoadVantriDati& b, const char* name, double prog) {
    CPlaniElem* trace = new CRettifiloPlaniElem(0.0, {0.0, 0.0}, {1.0, 0.0}, 20.0);
    b.AddSection(name, prog, trace);
    trace->SubReference();
}

// Road "SS 12": every element kind, each placed by its own literal start and
// direction; a profile with a PVI, a parabola, a circular curve and a vertex
// that is not principal; two cross sections. Road "vuota": no elements, no
// profile.
inline void BuildRoads(CVantriDoc& doc) {
    CLoadVantriDati b(&doc);
    CRoad* road = b.AddRoad("SS 12", 1000.0, false);
    b.StartRoadPlani();
    b.AddRoadRect(1000.0, {2000.0, 5000.0}, {0.6, 0.8}, 120.0);
    b.AddRoadClot(1120.0, {2072.0, 5096.0}, {0.6, 0.8}, 1.0, 100.0, 250.0, true, true);
    b.AddRoadArc(1160.0, {2090.0, 5134.0}, {0.28, 0.96}, 250.0, 0.4, true);
    b.AddRoadClot(1260.0, {2100.0, 5240.0}, {-0.6, 0.8}, 1.0, 120.0, 400.0, false, false);
    b.AddRoadArc(1296.0, {2080.0, 5270.0}, {0.8, -0.6}, 300.0, 0.3, false);
    b.AddRoadClotCont(1386.0, {2200.0, 5300.0}, {1.0, 0.0}, 1.0, 150.0, 300.0, 150.0, false);
    b.AddRoadRect(1461.0, {2300.0, 5300.0}, {0.0, -1.0}, 50.0);
    b.AddRoadRect(1511.0, {2300.0, 5250.0}, {1.0, 0.0}, 39.5);
    b.EndRoadPlani();

    b.StartRoadAlti();
    b.AddRoadPrj();
    b.AddRoadProfAltiPrincVrt(1000.0, 100.5);
    b.AddRoadProfAltiRaccVrt(1200.0, 104.5, 1000.0, 100.5, 1400.0, 102.5, 5000.0, false);
    b.AddRoadProfAltiRaccVrt(1400.0, 102.5, 1200.0, 104.5, 1500.0, 103.5, 8000.0, false);
    b.AddRoadProfAltiPrincVrt(1500.0, 103.5);
    b.EndRoadAlti();
    CProfileAlti* prj = road->GetRoadProfile()->GetMainPrjAlti();
    prj->Vrts()[2].racc.kind = 1;  // circular
    TAltiVrt helper;               // a vertex that only helps drawing
    helper.prog = 1450.0;
    helper.quota = 999.0;
    prj->AddVrt(helper);

    AddSection(b, "S1", 1050.0);
    b.AddSectionProfileAlti("TER", {{-10.0, 99.0}, {-5.0, 99.5}, {kUndefined, kUndefined}, {0.0, 100.0},
                                    {5.0, 100.2}, {10.0, 100.125}});
    b.AddSectionProfileAlti("PRO", {{-3.5, 100.4}, {0.0, 100.5}, {3.5, 100.4}});
    CProfileAlti* unknown = road->GetRoadProfile()->GetSection(0)->AddSectionLine("XYZ", false);
    unknown->AddPrincVrt(-1.0, 100.0);
    unknown->AddPrincVrt(1.0, 100.0);

    AddSection(b, "S2", 1150.0);
    b.AddSectionProfileAlti("TER", {{-4.0, 101.0}, {0.0, kUndefined}, {0.0, 101.5}, {4.0, 101.25}});
    b.AddSectionProfileAlti("STF", {{-2.0, 101.0}, {2.0, 101.0}, {kUndefined, 101.0}, {3.0, 100.0}});
    CProfileAlti* stf = road->GetRoadProfile()->GetSection(1)->GetProfileAlti(1);
    TAltiVrt mid;  // not principal: left out of the line
    mid.prog = 0.0;
    mid.quota = 150.0;
    stf->Vrts().insert(stf->Vrts().begin() + 1, mid);

    b.AddRoad("vuota", 0.0, false);
    b.StartRoadPlani();
    b.EndRoadPlani();
}

// "Piano": two outer contours, one island, two breaklines, four vertices
// with ids from 10, two faces. "vuoto": nothing at all.
inline void BuildSurfaces(CVantriDoc& doc) {
    CLoadVantriDati b(&doc);
    b.AddDtmPrj("Piano");
    b.AddTriVert(10, 100.0, 200.0, 10.5);
    b.AddTriVert(11, 110.0, 200.0, 11.25);
    b.AddTriVert(12, 110.0, 210.0, 12.0);
    b.AddTriVert(13, 100.0, 210.0, 11.0);
    b.AddTri(10, 11, 12);
    b.AddTri(10, 12, 13);
    std::vector<vesk::geom::PNT_3D> outer1 = {{100, 200, 10.5}, {110, 200, 11.25}, {110, 210, 12}, {100, 210, 11}};
    std::vector<vesk::geom::PNT_3D> outer2 = {{120, 200, 0}, {130, 200, 0}, {125, 205, 0}};
    std::vector<vesk::geom::PNT_3D> island = {{104, 204, 11}, {106, 204, 11}, {105, 206, 11}, {104, 204, 11}};
    b.AddCnt(true, &outer1);
    b.AddCnt(false, &island);
    b.AddCnt(true, &outer2);
    b.AddVnc(100.0, 200.0, 10.5, 110.0, 210.0, 12.0);
    b.AddVnc(101.5, 202.25, 0.0, 108.0, 207.75, 0.0);
    b.AddDtmPrj("vuoto");
}

// Job "J1" with three stations; GPS group "G1" with base "BASE" and five
// points of different quality; point group "PG" with a point that has no
// coordinates.
inline void BuildSurveys(CVantriDoc& doc) {
    CLoadVantriDati b(&doc);
    b.AddJob("J1");
    b.AddSta("ST0", 1.55);
    b.SetStaDesc("base");
    b.SetStaCoords(1000.0, 2000.0, 50.0);
    b.AddPun("P1", "palo", 1010.0, 2020.0, 51.5, 1.3, 22.5, 1.5, 0.25);
    b.AddSta("ST1", 1.6);  // no coordinates
    b.AddPun("P2", "", 1020.0, 2030.0, 52.0, kUndefined, 30.0, 1.55, 0.5);
    b.AddPun("P3", "no xyz", kUndefined, kUndefined, kUndefined, 1.5, 12.0, 1.6, 0.75);
    b.AddSta("ST2", 1.45);
    b.SetStaCoords(1100.0, 2100.0, 55.0);
    b.AddPun("Q0", "a", 1105.0, 2105.0, 55.5, 1.2, 7.0, 1.57, 1.0);
    b.AddPun("Q1", "b", 1110.0, 2110.0, 56.0, 1.2, kUndefined, kUndefined, kUndefined);

    b.AddGrpGps("G1");
    b.SetGrpStaName("BASE");
    b.SetGrpAntHeight(1.8);
    b.SetGrpLatLonElev(0.7853981633974483, 0.2, 250.5);
    b.SetGrpCoords(1000.0, 2000.0, 250.5);
    const int quality[5] = {5, 8, 2, 3, -1};
    for (int i = 0; i < 5; ++i) {
        b.AddGpsPnt(0.78 + i * 0.001, 0.21, 251.0 + i);
        b.SetGpsPntName("R" + std::to_string(i), "d" + std::to_string(i));
        b.SetGpsPntCoords(1001.0 + i, 2002.0, 251.0 + i);
    }
    CGrpGps* g = doc.GetLibGps()->GetGrpAt(0);
    for (int i = 0; i < 5; ++i) {
        const float cov[6] = {0.0015f, -0.0002f, 0.0001f, 0.0025f, 0.0f, 0.004f};
        g->Points()[static_cast<size_t>(i)]->SetQuality(quality[i], 12, 5);
        g->Points()[static_cast<size_t>(i)]->SetCovariances(cov);
    }

    b.AddGrpPnt("PG");
    b.AddPunPnt("A", 1.0, 2.0, 3.0);
    b.AddPunPnt("B&C", kUndefined, kUndefined, kUndefined);
}

}  // namespace lxetest
