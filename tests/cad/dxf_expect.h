// What check_dxf.py must find in a file saved from an engine with default
// flags, computed from the engine itself (not from the writer): layers,
// blocks and every model-space entity with its exact numbers, as JSON.
#pragma once
#include <cstdio>
#include <numbers>
#include <string>

#include "cad/zedra_eng.h"

namespace cadtest {

class CJson {
public:
    void Raw(const std::string& s) { out_ += s; }
    void Num(double v) {
        char buf[40];
        std::snprintf(buf, sizeof buf, "%.17g", v);
        Sep();
        out_ += buf;
    }
    void Str(std::string_view s) {
        Sep();
        out_ += '"';
        for (char c : s) {
            if (c == '"' || c == '\\') { out_ += '\\'; out_ += c; }
            else if (static_cast<unsigned char>(c) < 0x20) {
                char buf[8];
                std::snprintf(buf, sizeof buf, "\\u%04x", static_cast<unsigned>(c));
                out_ += buf;
            } else out_ += c;
        }
        out_ += '"';
    }
    void Key(std::string_view k) { Str(k); out_ += ':'; first_ = true; }
    void Open(char c) { Sep(); out_ += c; first_ = true; }
    void Close(char c) { out_ += c; first_ = false; }
    const std::string& Text() const { return out_; }

private:
    void Sep() {
        if (!first_) out_ += ',';
        first_ = false;
    }
    std::string out_;
    bool first_ = true;
};

inline const char* ExpectedType(roadx::cad::EEntKind k, bool r12) {
    using roadx::cad::EEntKind;
    switch (k) {
        case EEntKind::Point: return "POINT";
        case EEntKind::Line: return "LINE";
        case EEntKind::Arc: return "ARC";
        case EEntKind::Circle: return "CIRCLE";
        case EEntKind::Poly2D: return r12 ? "POLYLINE2D" : "LWPOLYLINE";
        case EEntKind::Poly3D: return "POLYLINE3D";
        case EEntKind::Face3D: return "3DFACE";
        case EEntKind::Text: return "TEXT";
        case EEntKind::Insert: break;
    }
    return "INSERT";
}

inline void ExpectPoint(CJson& j, const roadx::cad::PNT_3D& p) {
    j.Num(p.x);
    j.Num(p.y);
    j.Num(p.z);
}

// exact numbers, angles in degrees, flags and text of one entity.
inline void ExpectEntity(CJson& j, const CZedraEng& eng, const roadx::cad::TEntRef& r, bool r12) {
    using namespace roadx::cad;
    const double deg = 180.0 / std::numbers::pi;
    const TEntHdr& h = eng.Header(r);
    j.Open('{');
    j.Key("type");
    j.Str(ExpectedType(r.kind, r12));
    j.Key("layer");
    j.Str(eng.GetDrawingName(h.drawing));
    j.Key("colour");
    j.Num(h.colour);
    std::string text;
    j.Key("exact");
    j.Open('[');
    std::vector<double> approx;
    std::vector<double> flags;
    const uint32_t i = r.index;
    switch (r.kind) {
        case EEntKind::Point: ExpectPoint(j, eng.Points()[i].p); break;
        case EEntKind::Line: ExpectPoint(j, eng.Lines()[i].a); ExpectPoint(j, eng.Lines()[i].b); break;
        case EEntKind::Arc:
            ExpectPoint(j, eng.Arcs()[i].c);
            j.Num(eng.Arcs()[i].r);
            approx = {eng.Arcs()[i].a0 * deg, eng.Arcs()[i].a1 * deg};
            break;
        case EEntKind::Circle: ExpectPoint(j, eng.Circles()[i].c); j.Num(eng.Circles()[i].r); break;
        case EEntKind::Poly2D: {
            const TPoly2D& p = eng.Polys2D()[i];
            j.Num(p.elevation);
            for (uint32_t k = 0; k < p.count; ++k) {
                j.Num(eng.Vertices2D(p)[k].x);
                j.Num(eng.Vertices2D(p)[k].y);
                j.Num(eng.Vertices2D(p)[k].bulge);
            }
            flags = {double(p.h.flags & kFlagClosed)};
            break;
        }
        case EEntKind::Poly3D: {
            const TPoly3D& p = eng.Polys3D()[i];
            for (uint32_t k = 0; k < p.count; ++k) ExpectPoint(j, eng.Vertices3D(p)[k]);
            flags = {double(p.h.flags & kFlagClosed)};
            break;
        }
        case EEntKind::Face3D:
            for (const auto& v : eng.Faces()[i].v) ExpectPoint(j, v);
            flags = {double(eng.Faces()[i].h.flags)};
            break;
        case EEntKind::Text: {
            const TText& t = eng.Texts()[i];
            ExpectPoint(j, t.p);
            j.Num(t.height);
            approx = {t.rotation * deg};
            flags = {double(t.halign), double(t.valign)};
            text = eng.TextOf(t);
            break;
        }
        case EEntKind::Insert: {
            const TInsert& t = eng.Inserts()[i];
            ExpectPoint(j, t.p);
            j.Num(t.sx);
            j.Num(t.sy);
            j.Num(t.sz);
            approx = {t.rotation * deg};
            text = eng.FindBlock(t.blockRef)->name;
            break;
        }
    }
    j.Close(']');
    j.Key("approx");
    j.Open('[');
    for (double a : approx) j.Num(a);
    j.Close(']');
    j.Key("flags");
    j.Open('[');
    for (double f : flags) j.Num(f);
    j.Close(']');
    j.Key("text");
    j.Str(text);
    j.Close('}');
}

inline std::string BlockEntityType(roadx::cad::EEntKind k, bool r12) {
    const std::string t = ExpectedType(k, r12);
    return t.rfind("POLYLINE", 0) == 0 ? "POLYLINE" : t;
}

// features < 0: do not check the number of features ogrinfo lists.
inline std::string ExpectJson(const CZedraEng& eng, bool r12, long features = -1) {
    CJson j;
    j.Open('{');
    j.Key("version");
    j.Str(r12 ? "AC1009" : "AC1015");
    if (features >= 0) {
        j.Key("features");
        j.Num(double(features));
    }
    j.Key("layers");
    j.Open('{');
    for (const auto& d : eng.GetDrawings()) {
        j.Key(d.name);
        j.Open('{');
        const int colour = d.colourSet ? int(d.colour) : 7;
        j.Key("colour");
        j.Num(d.visible ? colour : -colour);
        j.Key("frozen");
        j.Raw(d.frozen ? "true" : "false");
        j.Raw(",");
        j.Key("locked");
        j.Raw(d.locked ? "true" : "false");
        j.Close('}');
    }
    j.Close('}');
    j.Key("blocks");
    j.Open('{');
    for (const auto& b : eng.GetBlocks()) {
        j.Key(b.name);
        j.Open('[');
        for (const auto& r : eng.CollectEntities())
            if (eng.Header(r).block == b.handle) j.Str(BlockEntityType(r.kind, r12));
        j.Close(']');
    }
    j.Close('}');
    j.Key("entities");
    j.Open('[');
    for (const auto& r : eng.CollectEntities())
        if (eng.Header(r).block == 0) ExpectEntity(j, eng, r, r12);
    j.Close(']');
    j.Close('}');
    return j.Text();
}

}  // namespace cadtest
