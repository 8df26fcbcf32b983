// One DTM project as a LandXML Surface: its source data (boundaries and
// breaklines) and its triangulation. Streamed vertex by vertex and triangle
// by triangle, so a large TIN costs no memory beyond the output buffer.
#include <cstring>
#include <string_view>

#include "host/dtm.h"
#include "landxml_export/landxml_writers.h"
#include "landxml_export/xml_out.h"
#include "vesk/fixed_format.h"

using roadx::landxml::PutText;
using roadx::landxml::PutYXZ;

namespace {

// Contours go out as the host holds them, not closed explicitly; the names
// count from 0 within each kind.
void WriteBoundaries(vesk::COutBuffer& out, const CCnts* cnts, const char* type, const char* prefix) {
    if (!cnts) return;
    const int n = cnts->GetNoCnts();
    for (int i = 0; i < n; ++i) {
        const CCnt* cnt = cnts->GetCntAt(i);
        out.Str("\t\t\t\t\t<Boundary bndType=\"");
        out.Str(type);
        out.Str("\" edgeTrim=\"true\" name=\"");
        out.Str(prefix);
        out.I(i);
        out.Str("\">\n\t\t\t\t\t\t<PntList3D>");
        const int nv = cnt ? cnt->GetNoVrts() : 0;
        for (int k = 0; k < nv; ++k) {
            PutYXZ(out, cnt->GetVrt(k));
            out.Ch(' ');
        }
        out.Str("</PntList3D>\n\t\t\t\t\t</Boundary>\n");
    }
}

void WriteBreaklines(vesk::COutBuffer& out, const CVncs* vncs) {
    const int n = vncs ? vncs->GetNoVncs() : 0;
    for (int i = 0; i < n; ++i) {
        const vesk::geom::LINE_3D l = vncs->GetVncAt(i)->GetCoords();
        out.Str("\t\t\t\t\t<Breakline name=\"vincolo");
        out.I(i);
        out.Str("\">\n\t\t\t\t\t\t<PntList3D>");
        PutYXZ(out, l.p1);
        out.Ch(' ');
        PutYXZ(out, l.p2);
        out.Str("</PntList3D>\n\t\t\t\t\t</Breakline>\n");
    }
}

// One P or F line is put together in a local buffer and handed over whole:
// a surface has millions of them.
char* Put(char* p, std::string_view text) {
    std::memcpy(p, text.data(), text.size());
    return p + text.size();
}

// Point ids are the vertex indices from 0, which is what the faces refer to.
void WriteTin(vesk::COutBuffer& out, const CTris* tris) {
    out.Str("\t\t\t<Definition surfType=\"TIN\">\n\t\t\t\t<Pnts>\n");
    char line[3 * vesk::kMaxFixedChars + vesk::kMaxIntChars + 32];
    const int nv = tris ? tris->GetNoTriVrts() : 0;
    for (int i = 0; i < nv; ++i) {
        const vesk::geom::PNT_3D v = tris->GetTriVrtAt(i);
        char* p = Put(line, "\t\t\t\t\t<P id=\"");
        p = vesk::FormatInt(p, i);
        p = Put(p, "\">");
        p = vesk::FormatF6(p, v.y);
        *p++ = ' ';
        p = vesk::FormatF6(p, v.x);
        *p++ = ' ';
        p = vesk::FormatF6(p, v.z);
        p = Put(p, "</P>\n");
        out.Str(std::string_view(line, static_cast<size_t>(p - line)));
    }
    out.Str("\t\t\t\t</Pnts>\n\t\t\t\t<Faces>\n");
    const int nt = tris ? tris->GetNoTris() : 0;
    for (int i = 0; i < nt; ++i) {
        const CTri* t = tris->GetTriAt(i);
        char* p = Put(line, "\t\t\t\t\t<F>");
        p = vesk::FormatInt(p, t->GetVerIndex(0));
        *p++ = ' ';
        p = vesk::FormatInt(p, t->GetVerIndex(1));
        *p++ = ' ';
        p = vesk::FormatInt(p, t->GetVerIndex(2));
        p = Put(p, "</F>\n");
        out.Str(std::string_view(line, static_cast<size_t>(p - line)));
    }
    out.Str("\t\t\t\t</Faces>\n\t\t\t</Definition>\n");
}

}  // namespace

void WriteLandXMLSurface(vesk::COutBuffer& out, const CDtmPrj* prj) {
    if (!prj) return;
    out.Str("\t\t<Surface name=\"");
    PutText(out, prj->GetName());
    out.Str("\">\n\t\t\t<SourceData>\n\t\t\t\t<Boundaries>\n");
    WriteBoundaries(out, prj->GetCntsExt(), "outer", "contornoEst");
    WriteBoundaries(out, prj->GetCntsInt(), "island", "contornoInt");
    out.Str("\t\t\t\t</Boundaries>\n\t\t\t\t<Breaklines>\n");
    WriteBreaklines(out, prj->GetVncs());
    out.Str("\t\t\t\t</Breaklines>\n\t\t\t</SourceData>\n");
    WriteTin(out, prj->GetTris());
    out.Str("\t\t</Surface>\n");
}
