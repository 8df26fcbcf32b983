// Surfaces: every selected Surface becomes one DTM project with its
// triangulation (Pnts/P by id, Faces/F by those ids), its boundaries (pieces
// chained into lines, outer lines before islands) and its breaklines.
//
// A surface can hold millions of P and F elements, so their texts are read
// straight from the file's text into fixed arrays: no allocation per
// element. When the loader scanned them (surface_scan.h) the scan has read
// their numbers already, with no DOM node at all; an element it left is read
// here by the same per-element function as a DOM element, in its place, so
// the builder sees the same calls either way.
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_set>
#include <vector>

#include "host/dtm.h"
#include "landxml_import/boundary_chain.h"
#include "landxml_import/fixed_numbers.h"
#include "landxml_import/import_diag.h"
#include "landxml_import/reader_messages.h"
#include "landxml_import/readers.h"
#include "landxml_import/text_lists.h"
#include "vesk/source_event.h"

namespace {

using vesk::geom::PNT_3D;

// Ends the import on a number list too short for its element.
[[noreturn]] void ThrowShort(const XmlSection& surface, std::string_view elemName, std::string_view text,
                             size_t count, const char* need) {
    throw CLandXmlImportEnded("surface " + QuoteForMessage(surface.Attribute("name")) + ": " + std::string(elemName) +
                              " " + QuoteForMessage(text) + " holds " + CountOfNumbers(count) + " where " + need);
}

[[noreturn]] void ThrowShort(const XmlSection& surface, const XmlSection& elem, size_t count, const char* need) {
    ThrowShort(surface, elem.GetSectionName(), elem.Text(), count, need);
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

// What one Definition's points and faces are read with. Both ways of
// reading them (DOM nodes, or the scanned buffer) go through AddPoint and
// AddFace, one call per element, in document order.
struct TTinRead {
    const XmlSection& surface;
    CLoadVantriDati& builder;
    bool isMetric;
    bool tin;  // surfType is exactly "TIN"
    // A P without an id reuses the id of the P before it.
    int id = 0;
};

// One P: its "id" attribute (null when absent) and its text.
void AddPoint(TTinRead& r, const std::string_view* idText, std::string_view text) {
    if (idText) r.id = ReadStreamInt(*idText);
    TFixedNumbers<double, 3> n;
    ReadFixed(text, r.isMetric, n);
    if (n.count < 3) ThrowShort(r.surface, "P", text, n.count, "3 (northing, easting, elevation) are needed");
    r.builder.AddTriVert(r.id, n.v[1], n.v[0], n.v[2]);
}

// One F: the text of its vertex ids.
void AddFace(TTinRead& r, std::string_view text) {
    TFixedNumbers<int, 4> f;
    ReadFixed(text, f);
    if (r.tin) {
        if (f.count < 3) ThrowShort(r.surface, "F", text, f.count, "3 vertex ids are needed (TIN surface)");
        r.builder.AddTri(f.v[0], f.v[1], f.v[2]);
    } else {
        // Any surface type but "TIN" has quadrilateral faces.
        if (f.count < 4) ThrowShort(r.surface, "F", text, f.count, "4 vertex ids are needed (not a TIN surface)");
        r.builder.AddTri(f.v[0], f.v[1], f.v[2]);
        r.builder.AddTri(f.v[0], f.v[2], f.v[3]);
    }
}

// The P (or F) children of a Pnts (or Faces) element, scanned or DOM.
struct TTinList {
    XmlSection node;
    const TScannedList* scanned = nullptr;

    size_t Count(char tag) const { return scanned ? scanned->count : CountLetterChildren(node, tag); }
};

TTinList FindList(const XmlSection& def, const char* name, const CSurfaceScan* scan) {
    TTinList l{def.Child(name)};
    if (scan && l.node) l.scanned = scan->Find(l.node.Node().name());
    return l;
}

// The points the scan read: the plain ones from its numbers (converted as
// the text lists convert them), the others through AddPoint, in order.
void ReplayPoints(TTinRead& r, const TScannedList& list) {
    const TScannedNumbers& nums = list.numbers;
    CBlockList<int>::CReader ids(nums.ints);
    CBlockList<double>::CReader reals(nums.reals);
    size_t other = 0;
    for (size_t k = 0; k < list.count; ++k) {
        const int id = *ids.Next(1);
        if (id < 0) {
            const TScannedElem& e = nums.others[other++];
            AddPoint(r, e.hasId ? &e.id : nullptr, e.text);
            continue;
        }
        const double* v = reals.Next(3);
        double north = v[0], east = v[1], z = v[2];
        if (!r.isMetric) {
            FeetToMeters(north);
            FeetToMeters(east);
            FeetToMeters(z);
        }
        r.id = id;
        r.builder.AddTriVert(id, east, north, z);
    }
}

void ImportPoints(TTinRead& r, const TTinList& pnts) {
    if (pnts.scanned) {
        ReplayPoints(r, *pnts.scanned);
        return;
    }
    ForEachLetterChild(pnts.node, 'P', [&](const XmlSection& p) {
        const pugi::xml_attribute a = p.Node().attribute("id");
        const std::string_view idText = a.value();
        AddPoint(r, a.empty() ? nullptr : &idText, p.Text());
    });
}

// The faces the scan read: the plain ones from its numbers, the others
// through AddFace, in order.
void ReplayFaces(TTinRead& r, const TScannedList& list) {
    const TScannedNumbers& nums = list.numbers;
    CBlockList<int>::CReader ids(nums.ints);
    const auto stride = static_cast<size_t>(nums.stride);
    size_t other = 0;
    for (size_t k = 0; k < list.count; ++k) {
        const int* f = ids.Next(stride);
        if (f[0] < 0) {
            AddFace(r, nums.others[other++].text);
            continue;
        }
        r.builder.AddTri(f[0], f[1], f[2]);
        if (!r.tin) r.builder.AddTri(f[0], f[2], f[3]);
    }
}

void ImportFaces(TTinRead& r, const TTinList& faces, const CSurfaceScan* scan) {
    if (faces.scanned) {
        // The scan reads the ids when it can tell the corners from the
        // surface type as the DOM gives it; else every text is read here.
        if (faces.scanned->numbers.stride == (r.tin ? 3 : 4))
            ReplayFaces(r, *faces.scanned);
        else
            scan->ForEach(*faces.scanned, [&](const TScannedElem& e) { AddFace(r, e.text); });
        return;
    }
    ForEachLetterChild(faces.node, 'F', [&](const XmlSection& face) { AddFace(r, face.Text()); });
}

// The builder counts repeated point ids and triangles naming unknown ids;
// they are reported at the Pnts and Faces elements (the points and faces
// themselves may have been read from the scanned buffer, without nodes).
void ReportSurfaceIds(const XmlSection& pnts, const XmlSection& faces, int64_t repeated, int64_t dropped) {
    if (!CImportDiagScope::Current()) return;
    if (repeated > 0) {
        const XmlSection& first = pnts;
        DiagReport("surface-point-id-repeated", first, "P repeats the id of an earlier P",
                   "the later point takes the id; faces use it", repeated);
    }
    if (dropped > 0)
        DiagReport("surface-face-unknown-id", faces, "triangle names a point id that no P has", "triangle dropped",
                   dropped);
}

void ImportDefinition(const XmlSection& surface, const XmlSection& def, CDtmPrj* prj, CLoadVantriDati& builder,
                      bool isMetric, const CSurfaceScan* scan) {
    CString surfType;
    PX_String(def, "surfType", surfType);
    TTinRead r{surface, builder, isMetric, surfType == "TIN"};
    const TTinList pnts = FindList(def, "Pnts", scan);
    const TTinList faces = FindList(def, "Faces", scan);
    // The triangulation's arrays are sized once: a large surface would
    // otherwise hold two copies of them while they grow.
    if (prj) {
        CTris* tris = prj->GetTris();
        const size_t trisPerFace = r.tin ? 1 : 2;
        tris->Reserve(tris->GetNoTriVrts() + pnts.Count('P'), tris->GetNoTris() + faces.Count('F') * trisPerFace);
    }
    const int64_t repeatedBefore = builder.GetRepeatedVertIds();
    ImportPoints(r, pnts);
    const int64_t droppedBefore = builder.GetDroppedTris();
    ImportFaces(r, faces, scan);
    ReportSurfaceIds(pnts.node, faces.node, builder.GetRepeatedVertIds() - repeatedBefore,
                     builder.GetDroppedTris() - droppedBefore);
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

void ImportSurface(const XmlSection& surface, CLoadVantriDati& builder, bool isMetric, CDtmPrj* prj,
                   const CSurfaceScan* scan) {
    // Listeners see the whole surface as one change, also when the import
    // ends inside it.
    vesk::CEventScope event(DtmChangeContext(prj));
    for (XmlSection sourceData : surface.Children("SourceData")) {
        ImportBoundaries(surface, sourceData, builder, isMetric);
        ImportBreaklines(surface, sourceData, builder, isMetric);
    }
    for (XmlSection def : surface.Children("Definition")) ImportDefinition(surface, def, prj, builder, isMetric, scan);
}

}  // namespace

void ImportSurfaces(const XmlSection& root, CLoadVantriDati& builder, std::vector<CString> surfaces,
                    CString terrainName, bool isMetric, CDtmPrj*& terrain, const CSurfaceScan* scan) {
    // A file may hold very many surfaces, all chosen.
    const std::unordered_set<std::string_view> selected(surfaces.begin(), surfaces.end());
    for (XmlSection surfacesNode : root.Children("Surfaces")) {
        for (XmlSection surface : surfacesNode.Children("Surface")) {
            CString name;
            PX_String(surface, "name", name);
            if (selected.count(name) == 0) continue;
            CDtmPrj* prj = builder.AddDtmPrj(name);
            if (name == terrainName) terrain = prj;
            ImportSurface(surface, builder, isMetric, prj, scan);
        }
    }
}
