#include "cad/dxf_writer.h"

#include "cad/drawing_diag.h"
#include "cad/dxf_text.h"
#include "cad/dxf_write_ctx.h"

namespace roadx::cad::dxf {

CWriteCtx::CWriteCtx(CDxfOut& o, const CZedraEng& e, const TGraph& graph)
    : out(o), eng(e), g(graph), nextEntityHandle(graph.firstEntityHandle) {
    for (const auto& l : g.layers) encodedLayers_.push_back(EncodeDxfText(l.name, EEncoding::Name));
}

const std::string& CWriteCtx::Layer(uint64_t drawing) {
    // Entities come in runs on one drawing: remember the last answer.
    if (lastLayer_ != nullptr && drawing == lastDrawing_) return *lastLayer_;
    auto it = g.layerOfDrawing.find(drawing);
    lastDrawing_ = drawing;
    lastLayer_ = &encodedLayers_[it == g.layerOfDrawing.end() ? 0 : it->second];
    return *lastLayer_;
}

void CWriteCtx::Start(const char* type, uint64_t handle, uint64_t owner) {
    out.Str(0, type);
    if (g.handles) out.Hex(5, handle);
    if (g.r2000) out.Hex(330, owner);
}

void CWriteCtx::StartEntity(const char* type, uint64_t handle, uint64_t owner, const TEntHdr& h) {
    Start(type, handle, owner);
    Subclass("AcDbEntity");
    out.Str(8, Layer(h.drawing));
    if (h.colour != kColorByLayer) out.Int(62, h.colour);
}

namespace {

void Var(CDxfOut& out, const char* name) { out.Str(9, name); }

void VarPoint(CWriteCtx& c, const char* name, double x, double y, double z, bool threeD) {
    Var(c.out, name);
    c.out.Real(10, x);
    c.out.Real(20, y);
    if (threeD) c.out.Real(30, z);
}

void EngineVars(CWriteCtx& c) {
    const TZedraVars& v = c.eng.Vars();
    CDxfOut& out = c.out;
    VarPoint(c, "$INSBASE", 0.0, 0.0, 0.0, true);
    if (c.g.hasExtents) {
        VarPoint(c, "$EXTMIN", c.g.extMin.x, c.g.extMin.y, c.g.extMin.z, true);
        VarPoint(c, "$EXTMAX", c.g.extMax.x, c.g.extMax.y, c.g.extMax.z, true);
    } else {  // no extents, as readers expect them
        VarPoint(c, "$EXTMIN", 1e20, 1e20, 1e20, true);
        VarPoint(c, "$EXTMAX", -1e20, -1e20, -1e20, true);
    }
    VarPoint(c, "$LIMMIN", 0.0, 0.0, 0.0, false);
    VarPoint(c, "$LIMMAX", 420.0, 297.0, 0.0, false);
    Var(out, "$LUPREC");
    out.Int(70, v.luprec);
    Var(out, "$CLAYER");
    out.Text(8, c.g.currentLayer, EEncoding::Name);
    Var(out, "$PDMODE");
    out.Int(70, v.pdmode);
    Var(out, "$PDSIZE");
    out.Real(40, v.pdsize);
    if (c.g.r2000) {
        Var(out, "$MEASUREMENT");
        out.Int(70, v.measurement);
        Var(out, "$INSUNITS");
        out.Int(70, v.insunits);
    }
}

}  // namespace

void WriteHeader(CWriteCtx& c, bool saveVars) {
    CDxfOut& out = c.out;
    out.Str(0, "SECTION");
    out.Str(2, "HEADER");
    Var(out, "$ACADVER");
    out.Str(1, c.g.r2000 ? "AC1015" : "AC1009");
    Var(out, "$DWGCODEPAGE");
    out.Str(3, "ANSI_1252");
    if (!c.g.r2000 && c.g.handles) {
        Var(out, "$HANDLING");
        out.Int(70, 1);
    }
    if (c.g.handles) {
        Var(out, "$HANDSEED");
        out.Hex(5, c.g.handSeed);
    }
    if (saveVars) EngineVars(c);
    out.Str(0, "ENDSEC");
}

// R2000 readers need the classes of the non-native objects of the file.
void WriteClasses(CWriteCtx& c) {
    CDxfOut& out = c.out;
    out.Str(0, "SECTION");
    out.Str(2, "CLASSES");
    const char* const kClasses[][2] = {
        {"ACDBDICTIONARYWDFLT", "AcDbDictionaryWithDefault"},
        {"ACDBPLACEHOLDER", "AcDbPlaceHolder"},
        {"LAYOUT", "AcDbLayout"},
    };
    for (const auto& cl : kClasses) {
        out.Str(0, "CLASS");
        out.Str(1, cl[0]);
        out.Str(2, cl[1]);
        out.Str(3, "ObjectDBX Classes");
        out.Int(90, 0);
        out.Int(280, 0);
        out.Int(281, 0);
    }
    out.Str(0, "ENDSEC");
}

int WriteDxf(const CZedraEng& eng, const TSaveOptions& opt, bool saveVars, const std::string& path,
             std::string* error) {
    if (opt.version != ZEDRA_DXFDWG_VER_R12 && opt.version != ZEDRA_DXFDWG_VER_R2000) return kSaveBadVersion;
    const TGraph g = BuildGraph(eng, opt);
    if (DiagnoseDrawing(eng, g, false)) return kSaveRefused;
    CDxfOut out;
    if (const int r = out.Open(path); r != kSaveOk) {
        if (error) *error = out.Error();
        return r;
    }
    CWriteCtx c(out, eng, g);
    WriteHeader(c, saveVars);
    if (g.r2000) WriteClasses(c);
    WriteTables(c);
    WriteBlocks(c);
    WriteEntities(c);
    if (g.r2000) WriteObjects(c);
    out.Str(0, "EOF");
    const int r = out.Close();
    if (error) *error = out.Error();
    return r;
}

}  // namespace roadx::cad::dxf
