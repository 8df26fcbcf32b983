// Surfaces: every selected Surface becomes one DTM project with its
// triangulation (Pnts/P by id, Faces/F by those ids), its boundaries (pieces
// chained into lines, outer lines before islands) and its breaklines.
//
// A surface can hold millions of P and F elements, so their texts are read
// straight from the parsed file into fixed arrays: no allocation per element.
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_set>
#include <vector>

#include "host/dtm.h"
#include "landxml_import/boundary_chain.h"
#include "landxml_import/fixed_numbers.h"
#include "landxml_import/reader_messages.h"
#include "landxml_import/readers.h"
#include "landxml_import/text_lists.h"
#include "vesk/source_event.h"

namespace {

using vesk::geom::PNT_3D;

// Ends the import on a number list too short for its element.
[[noreturn]] void ThrowShort(const XmlSection& surface, const XmlSection& elem, size_t count, const char* need) {
    throw CLandXmlImportEnded("surface " + QuoteForMessage(surface.Attribute("name")) + ": " +
                              std::string(elem.GetSectionName()) + " " + QuoteForMessage(elem.Text()) + " holds " +
                              CountOfNumbers(count) + " where " + need);
}

// The project's change context, for hosts whose DTM projects carry one.
template <class Prj>
vesk::CSourceEvent* DtmChangeContext(Prj* prj) {
    if constexpr (std::is_convertible_v<Prj*, vesk::CSourceEvent*>)
        return prj;
    else
        return nullptr;
}

// Calls fn(XmlSection) for every child element whose tag is the one letter
// `tag`. Surfaces hold millions of P and F elements: a one-character test
// costs less than comparing whole names.
template <class Fn>
void ForEachLetterChild(const XmlSection& parent, char tag, Fn&& fn) {
    for (pugi::xml_node n = parent.Node().first_child(); n; n = n.next_sibling()) {
        const char* name = n.name();
        if (name[0] == tag && name[1] == '\0' && n.type() == pugi::node_element) fn(XmlSection(n));
    }
}

size_t CountLetterChildren(const XmlSection& parent, char tag) {
    size_t n = 0;
    ForEachLetterChild(parent, tag, [&n](const XmlSection&) { ++n; });
    return n;
}

void ImportPoints(const XmlSection& surface, const XmlSection& pnts, CLoadVantriDati& builder, bool isMetric) {
    TFixedNumbers<double, 3> n;
    // A P without an id reuses the id of the P before it.
    int id = 0;
    ForEachLetterChild(pnts, 'P', [&](const XmlSection& p) {
        PX_Int(p, "id", id);
        ReadFixed(p.Text(), isMetric, n);
        if (n.count < 3) ThrowShort(surface, p, n.count, "3 (northing, easting, elevation) are needed");
        builder.AddTriVert(id, n.v[1], n.v[0], n.v[2]);
    });
}

void ImportFaces(const XmlSection& surface, const XmlSection& faces, bool tin, CLoadVantriDati& builder) {
    TFixedNumbers<int, 4> f;
    ForEachLetterChild(faces, 'F', [&](const XmlSection& face) {
        ReadFixed(face.Text(), f);
        if (tin) {
            if (f.count < 3) ThrowShort(surface, face, f.count, "3 vertex ids are needed (TIN surface)");
            builder.AddTri(f.v[0], f.v[1], f.v[2]);
        } else {
            // Any surface type but "TIN" has quadrilateral faces.
            if (f.count < 4) ThrowShort(surface, face, f.count, "4 vertex ids are needed (not a TIN surface)");
            builder.AddTri(f.v[0], f.v[1], f.v[2]);
            builder.AddTri(f.v[0], f.v[2], f.v[3]);
        }
    });
}

void ImportDefinition(const XmlSection& surface, const XmlSection& def, CDtmPrj* prj, CLoadVantriDati& builder,
                      bool isMetric) {
    CString surfType;
    PX_String(def, "surfType", surfType);
    const XmlSection pnts = def.Child("Pnts");
    const XmlSection faces = def.Child("Faces");
    // The triangulation's arrays are sized once: a large surface would
    // otherwise hold two copies of them while they grow.
    if (prj) {
        CTris* tris = prj->GetTris();
        const size_t trisPerFace = surfType == "TIN" ? 1 : 2;
        tris->Reserve(tris->GetNoTriVrts() + CountLetterChildren(pnts, 'P'),
                      tris->GetNoTris() + CountLetterChildren(faces, 'F') * trisPerFace);
    }
    ImportPoints(surface, pnts, builder, isMetric);
    ImportFaces(surface, faces, surfType == "TIN", builder);
}

// Number lists of boundaries and breaklines, read into one reused buffer.
void ReadList(const XmlSection& list, bool isMetric, std::vector<double>& nums) {
    nums.clear();
    ReadDoubleList(list.Text(), nums, isMetric);
}

void ImportBoundaries(const XmlSection& surface, const XmlSection& sourceData, CLoadVantriDati& builder,
                      bool isMetric) {
    CBoundaryLines outer, islands;
    std::vector<double> nums;
    TBoundaryLine piece;
    for (XmlSection boundaries : sourceData.Children("Boundaries")) {
        for (XmlSection boundary : boundaries.Children("Boundary")) {
            CBoundaryLines& lines = boundary.Attribute("bndType") == "island" ? islands : outer;
            for (XmlSection list : boundary.Children("PntList3D")) {
                ReadList(list, isMetric, nums);
                if (nums.size() % 3 != 0)
                    ThrowShort(surface, list, nums.size(), "a multiple of 3 is needed (Boundary)");
                piece.clear();
                for (size_t k = 0; 3 * k < nums.size(); ++k)
                    piece.push_back(PNT_3D(nums[3 * k + 1], nums[3 * k], nums[3 * k + 2]));
                lines.AddBoundaryPiece(piece);
            }
            for (XmlSection list : boundary.Children("PntList2D")) {
                ReadList(list, isMetric, nums);
                if (nums.size() % 2 != 0)
                    ThrowShort(surface, list, nums.size(), "a multiple of 2 is needed (Boundary)");
                piece.clear();
                for (size_t k = 0; 2 * k < nums.size(); ++k) piece.push_back(PNT_3D(nums[2 * k + 1], nums[2 * k], 0.0));
                lines.AddBoundaryPiece(piece);
            }
        }
    }
    for (TBoundaryLine* line : outer.Lines()) builder.AddCnt(true, line);
    for (TBoundaryLine* line : islands.Lines()) builder.AddCnt(false, line);
}

// Each breakline list gives one segment, between its first two points.
void ImportBreaklines(const XmlSection& surface, const XmlSection& sourceData, CLoadVantriDati& builder,
                      bool isMetric) {
    std::vector<double> nums;
    for (XmlSection breaklines : sourceData.Children("Breaklines")) {
        for (XmlSection breakline : breaklines.Children("Breakline")) {
            for (XmlSection list : breakline.Children("PntList3D")) {
                ReadList(list, isMetric, nums);
                if (nums.size() < 6) ThrowShort(surface, list, nums.size(), "6 are needed (Breakline)");
                builder.AddVnc(nums[1], nums[0], nums[2], nums[4], nums[3], nums[5]);
            }
            for (XmlSection list : breakline.Children("PntList2D")) {
                ReadList(list, isMetric, nums);
                if (nums.size() < 4) ThrowShort(surface, list, nums.size(), "4 are needed (Breakline)");
                builder.AddVnc(nums[1], nums[0], 0.0, nums[3], nums[2], 0.0);
            }
        }
    }
}

void ImportSurface(const XmlSection& surface, CLoadVantriDati& builder, bool isMetric, CDtmPrj* prj) {
    // Listeners see the whole surface as one change, also when the import
    // ends inside it.
    vesk::CEventScope event(DtmChangeContext(prj));
    for (XmlSection sourceData : surface.Children("SourceData")) {
        ImportBoundaries(surface, sourceData, builder, isMetric);
        ImportBreaklines(surface, sourceData, builder, isMetric);
    }
    for (XmlSection def : surface.Children("Definition")) ImportDefinition(surface, def, prj, builder, isMetric);
}

}  // namespace

void ImportSurfaces(const XmlSection& root, CLoadVantriDati& builder, std::vector<CString> surfaces,
                    CString terrainName, bool isMetric, CDtmPrj*& terrain) {
    // A file may hold very many surfaces, all chosen.
    const std::unordered_set<std::string_view> selected(surfaces.begin(), surfaces.end());
    for (XmlSection surfacesNode : root.Children("Surfaces")) {
        for (XmlSection surface : surfacesNode.Children("Surface")) {
            CString name;
            PX_String(surface, "name", name);
            if (selected.count(name) == 0) continue;
            CDtmPrj* prj = builder.AddDtmPrj(name);
            if (name == terrainName) terrain = prj;
            ImportSurface(surface, builder, isMetric, prj);
        }
    }
}
