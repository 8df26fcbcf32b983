// Vertical profiles of one Alignment: every Profile/ProfAlign becomes one
// project line. PVI elements keep their document order; ParaCurve and then
// CircCurve elements are slotted in by station, after any element of equal
// station. A curve reaches the builder with the vertex before it and the
// vertex after it, whatever kind that neighbour is.
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "landxml_import/profile_order.h"
#include "landxml_import/reader_messages.h"
#include "landxml_import/readers.h"
#include "landxml_import/text_lists.h"

namespace {

// One collected element and its numbers, read once (the element's text does
// not change while the list is walked).
struct TProfElem {
    XmlSection node;
    std::vector<double> nums;
};

struct TProfVertex {
    double s = 0.0;  // station
    double z = 0.0;  // elevation
};

// Where the elements come from, for messages.
struct TProfContext {
    std::string alignment;
    bool isMetric = true;
};

TProfElem MakeElem(const XmlSection& node, bool isMetric) {
    TProfElem e{node, {}};
    ReadDoubleList(node.Text(), e.nums, isMetric);
    return e;
}

std::string Describe(const TProfContext& ctx, const TProfElem& e) {
    return "alignment " + QuoteForMessage(ctx.alignment) + ": " + std::string(e.node.GetSectionName()) + " " +
           QuoteForMessage(e.node.Text());
}

// Ends the import when the element's text holds fewer numbers than needed.
void Require(const TProfContext& ctx, const TProfElem& e, size_t needed) {
    if (e.nums.size() < needed)
        throw CLandXmlImportEnded(Describe(ctx, e) + ": " + CountOfNumbers(e.nums.size()) + " where " +
                                  std::to_string(needed) + " are needed");
}

TProfVertex Vertex(const TProfContext& ctx, const TProfElem& e) {
    Require(ctx, e, 2);
    return {e.nums[0], e.nums[1]};
}

std::optional<double> FirstNumber(const TProfElem& e) {
    return e.nums.empty() ? std::nullopt : std::optional<double>(e.nums[0]);
}

// PVIs in document order, then ParaCurves and then CircCurves slotted in by
// station (see profile_order.h).
std::vector<TProfElem> CollectElements(const XmlSection& profAlign, const TProfContext& ctx) {
    std::vector<TProfElem> elems;
    for (XmlSection pvi : profAlign.Children("PVI")) elems.push_back(MakeElem(pvi, ctx.isMetric));
    const size_t numPvis = elems.size();
    for (XmlSection c : profAlign.Children("ParaCurve")) elems.push_back(MakeElem(c, ctx.isMetric));
    for (XmlSection c : profAlign.Children("CircCurve")) elems.push_back(MakeElem(c, ctx.isMetric));

    CStationOrder order;
    for (size_t i = 0; i < elems.size(); ++i) {
        if (i < numPvis)
            order.AppendPvi(FirstNumber(elems[i]));
        else if (!order.InsertByStation(FirstNumber(elems[i])))
            Require(ctx, elems[*order.Missing()], 1);
    }

    std::vector<TProfElem> list;
    list.reserve(elems.size());
    for (size_t i : order.Order()) list.push_back(std::move(elems[i]));
    return list;
}

// A length attribute in metres; a missing one counts as 0.
double LengthAttribute(const XmlSection& node, const char* name, bool isMetric) {
    double v = 0.0;
    PX_Double(node, name, v);
    if (!isMetric) FeetToMeters(v);
    return v;
}

// The neighbours a curve needs: the vertex handed over before it and the
// vertex of the element after it. Either missing ends the import.
TProfVertex NextVertex(const std::vector<TProfElem>& list, size_t i, const TProfContext& ctx) {
    if (i + 1 >= list.size())
        throw CLandXmlImportEnded(Describe(ctx, list[i]) +
                                  " is the last element of its ProfAlign: a vertical curve needs a vertex after it");
    return Vertex(ctx, list[i + 1]);
}

TProfVertex PrevVertex(const std::optional<TProfVertex>& prev, const TProfElem& e, const TProfContext& ctx) {
    if (!prev)
        throw CLandXmlImportEnded(Describe(ctx, e) +
                                  " is the first element of its ProfAlign: a vertical curve needs a vertex before it");
    return *prev;
}

void HandOver(const std::vector<TProfElem>& list, CLoadVantriDati& builder, const TProfContext& ctx) {
    if (list.empty()) return;
    builder.AddRoadPrj();
    std::optional<TProfVertex> prev;
    for (size_t i = 0; i < list.size(); ++i) {
        const TProfElem& e = list[i];
        const std::string_view tag = e.node.GetSectionName();
        if (tag == "PVI") {
            const TProfVertex v = Vertex(ctx, e);
            prev = v;
            builder.AddRoadProfAltiPrincVrt(v.s, v.z);
        } else if (tag == "ParaCurve") {
            const TProfVertex v = Vertex(ctx, e);
            const double length = LengthAttribute(e.node, "length", ctx.isMetric);
            const TProfVertex n = NextVertex(list, i, ctx);
            const TProfVertex p = PrevVertex(prev, e, ctx);
            const double g1 = (v.z - p.z) / (v.s - p.s);
            const double g2 = (n.z - v.z) / (n.s - v.s);
            // Radius of curvature of a parabola of that length between the
            // two grades.
            const double radius = length / std::fabs(g1 - g2);
            builder.AddRoadProfAltiRaccVrt(v.s, v.z, p.s, p.z, n.s, n.z, radius, false);
            prev = v;
        } else if (tag == "CircCurve") {
            const TProfVertex v = Vertex(ctx, e);
            // The arc's length is read like the radius but the builder
            // derives the arc from the radius alone.
            (void)LengthAttribute(e.node, "length", ctx.isMetric);
            const double radius = LengthAttribute(e.node, "radius", ctx.isMetric);
            const TProfVertex n = NextVertex(list, i, ctx);
            const TProfVertex p = PrevVertex(prev, e, ctx);
            builder.AddRoadProfAltiRaccVrt(v.s, v.z, p.s, p.z, n.s, n.z, radius, false);
            prev = v;
        }
    }
}

}  // namespace

bool ImportProfiles(const XmlSection& alignment, CLoadVantriDati& builder, bool isMetric) {
    TProfContext ctx;
    ctx.alignment = std::string(alignment.Attribute("name"));
    ctx.isMetric = isMetric;
    for (XmlSection profile : alignment.Children("Profile"))
        for (XmlSection profAlign : profile.Children("ProfAlign"))
            HandOver(CollectElements(profAlign, ctx), builder, ctx);
    return true;
}
