// What the parts of the DXF writer share while one file is written.
#pragma once
#include <string>
#include <vector>

#include "cad/dxf_graph.h"
#include "cad/dxf_out.h"
#include "cad/zedra_eng.h"

namespace roadx::cad::dxf {

class CWriteCtx {
public:
    CWriteCtx(CDxfOut& out, const CZedraEng& eng, const TGraph& g);

    CDxfOut& out;
    const CZedraEng& eng;
    const TGraph& g;
    uint64_t nextEntityHandle;

    double Z(double z) const { return g.opt.flatten ? 0.0 : z; }
    void Point(int code, const PNT_3D& p) { out.Point(code, p.x, p.y, Z(p.z)); }
    // 0, and in R2000 also 5 handle and 330 owner; handles only when the file has them.
    void Start(const char* type, uint64_t handle, uint64_t owner);
    // Start of an entity plus 100 AcDbEntity, 8 layer and 62 colour.
    void StartEntity(const char* type, uint64_t handle, uint64_t owner, const TEntHdr& h);
    // The layer name of a drawing, as written (names are encoded once).
    const std::string& Layer(uint64_t drawing);
    void Subclass(const char* name) { if (g.r2000) out.Str(100, name); }
    // Table names of R12 files are upper case by custom ("STANDARD").
    const char* Std(const char* r2000, const char* r12) const { return g.r2000 ? r2000 : r12; }

private:
    std::vector<std::string> encodedLayers_;
    uint64_t lastDrawing_ = 0;
    const std::string* lastLayer_ = nullptr;
};

void WriteHeader(CWriteCtx& c, bool saveVars);
void WriteClasses(CWriteCtx& c);
void WriteTables(CWriteCtx& c);
void WriteBlocks(CWriteCtx& c);
void WriteEntities(CWriteCtx& c);
void WriteObjects(CWriteCtx& c);
// One engine entity, with the next entity handles, owned by owner.
void WriteEntity(CWriteCtx& c, const TEntRef& r, uint64_t owner);

}  // namespace roadx::cad::dxf
