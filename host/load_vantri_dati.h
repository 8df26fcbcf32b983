// The document builder: the only way importers add to the document. It keeps
// a "current" object of each kind, set by the last Add… of that kind. Every
// call is written to the host trace when one is recording.
#pragma once
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "host/document.h"
#include "vesk/geom.h"
#include "vesk/string.h"

class CLoadVantriDati {
public:
    explicit CLoadVantriDati(IVantriDati* doc);
    // Leaves the document consistent whatever state the import stopped in:
    // open plan or profile sections are closed, open change events ended.
    ~CLoadVantriDati();
    CLoadVantriDati(const CLoadVantriDati&) = delete;
    CLoadVantriDati& operator=(const CLoadVantriDati&) = delete;

    // Roads.
    CRoad* AddRoad(const vesk::String& name, double startProg, bool fromRd3);
    CRoadChangeContext* GetRoadContext();
    void RemoveRoad();
    void StartRoadPlani();
    void EndRoadPlani();
    void AddRoadRect(double prog, const PNT_2D& start, const VECTOR_2D& dir, double length);
    void AddRoadArc(double prog, const PNT_2D& start, const VECTOR_2D& startDir, double radius, double angle, bool ccw);
    void AddRoadClot(double prog, const PNT_2D& start, const VECTOR_2D& startDir, double k, double A, double R,
                     bool ccw, bool entrance);
    void AddRoadClotCont(double prog, const PNT_2D& start, const VECTOR_2D& startDir, double k, double A, double R1,
                         double R2, bool ccw);
    void StartRoadAlti();
    void EndRoadAlti();
    CProfileAlti* AddRoadPrj();
    void AddRoadProfAltiPrincVrt(double prog, double elevation);
    void AddRoadProfAltiRaccVrt(double prog, double elevation, double progPrev, double elevPrev, double progNext,
                                double elevNext, double radius, bool fromRd3);
    void AddSection(const vesk::String& name, double prog, CPlaniElem* elem);
    bool AddSectionProfileAlti(const vesk::String& code, const std::vector<vesk::geom::PNT_2D>& points);

    // DTM.
    CDtmPrj* AddDtmPrj(const vesk::String& name);
    void AddTriVert(int index, double x, double y, double z);
    void AddTri(int a, int b, int c);
    void AddCnt(bool outer, std::vector<vesk::geom::PNT_3D>* points);
    void AddVnc(double x1, double y1, double z1, double x2, double y2, double z2);

    // Points, GPS and total-station surveys.
    void AddGrpPnt(const vesk::String& name);
    void AddPunPnt(const vesk::String& name, double x, double y, double z);
    void AddGrpGps(const vesk::String& name);
    void SetGrpStaName(const vesk::String& name);
    void SetGrpAntHeight(double h);
    void SetGrpLatLonElev(double lat, double lon, double elev);
    void SetGrpCoords(double x, double y, double z);
    void AddGpsPnt(double latitude, double longitude, double height);
    void SetGpsPntName(const vesk::String& name, const vesk::String& desc);
    void SetGpsPntCoords(double x, double y, double z);
    void AddJob(const vesk::String& name);
    void AddSta(const vesk::String& name, double instrumentHeight);
    void SetStaDesc(const vesk::String& desc);
    void SetStaCoords(double x, double y, double z);
    void AddPun(const vesk::String& name, const vesk::String& desc, double x, double y, double z,
                double targetHeight, double slopeDistance, double zenith, double horizAngle);

    // Calls refused because they came out of order or without a current
    // object (the call is dropped, never a crash).
    int GetRefusedCalls() const { return refused_; }
    // Triangles dropped because they named an unknown vertex id.
    int64_t GetDroppedTris() const { return droppedTris_; }
    // Triangulation vertices whose id an earlier vertex already had (the id
    // now names the later one).
    int64_t GetRepeatedVertIds() const { return repeatedVertIds_; }

private:
    bool Refuse(const char* why);
    void AppendElem(CPlaniElem* elem);
    void FinishDtm();
    int LookupVert(int id) const;

    IVantriDati* doc_;
    CRoad* road_ = nullptr;
    bool planiOpen_ = false;
    bool altiOpen_ = false;
    bool planiClosed_ = false;
    CProfileAlti* prj_ = nullptr;
    CProfile* section_ = nullptr;
    CDtmPrj* dtm_ = nullptr;
    // Triangulation ids to vertex indices: dense ids use the vector, others
    // the map.
    std::vector<int32_t> denseIds_;
    std::unordered_map<int, int32_t> sparseIds_;
    CGrpPnt* grpPnt_ = nullptr;
    CGrpGps* grpGps_ = nullptr;
    CPunGps* gpsPnt_ = nullptr;
    CJob* job_ = nullptr;
    CSta* sta_ = nullptr;
    int refused_ = 0;
    int64_t droppedTris_ = 0;
    int64_t repeatedVertIds_ = 0;
};
