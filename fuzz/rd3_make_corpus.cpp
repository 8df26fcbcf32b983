// Writes the seed files of the RD3 fuzz corpus: files made by the writer
// from small documents, and hand-assembled files in the layouts and forms
// the writer never makes (short records, extended templates, chained
// assignments). Usage: rd3_make_corpus <dir>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "host/document.h"
#include "host/load_vantri_dati.h"
#include "rd3/rd3_bytes.h"
#include "rd3/rd3_export.h"
#include "rd3/rd3_records.h"

using namespace roadx::rd3;

namespace {

std::string g_dir;

void Save(const std::string& name, const std::vector<uint8_t>& b) {
    FILE* f = std::fopen((g_dir + "/" + name).c_str(), "wb");
    if (!f) return;
    std::fwrite(b.data(), 1, b.size(), f);
    std::fclose(f);
}

struct Road {
    CVantriDoc doc;
    CLoadVantriDati b{&doc};
    CRoad* road;
    PNT_2D at{500, 800};
    VECTOR_2D tg{0.6, 0.8};
    double prog = 10;

    Road() {
        road = b.AddRoad("Seme", prog, false);
        b.StartRoadPlani();
    }
    void Next(CPlaniElem* e) {
        at = e->GetEndPnt();
        e->GetTg(e->GetLength(), tg);
        prog += e->GetLength();
        e->SubReference();
    }
    void Rect(double l) {
        b.AddRoadRect(prog, at, tg, l);
        Next(new CRettifiloPlaniElem(prog, at, tg, l));
    }
    void Arc(double r, double a, bool ccw) {
        b.AddRoadArc(prog, at, tg, r, a, ccw);
        Next(new CArcPlaniElem(prog, at, tg, r, a, ccw));
    }
    void Clot(double r, double l, bool ccw, bool in) {
        const double a = std::sqrt(r * l);
        b.AddRoadClot(prog, at, tg, 1.0, a, r, ccw, in);
        Next(new CClotPlaniElem(prog, at, tg, 1.0, a, r, ccw, in));
    }
    void Section(double p, const std::vector<PNT_2D>& stf) {
        CPlaniElem* t = new CRettifiloPlaniElem(-10, {0, 0}, {1, 0}, 20);
        b.AddSection("s", p, t);
        t->SubReference();
        b.AddSectionProfileAlti("STF", stf);
    }
    void Export(const std::string& name) { roadx::rd3::WriteRD3File(*road, g_dir + "/" + name); }
};

void WriterSeeds() {
    Road r;
    r.Rect(100);
    r.Clot(300, 60, true, true);
    r.Arc(300, 0.3, true);
    r.Clot(300, 60, true, false);
    r.Rect(80);
    r.b.EndRoadPlani();
    r.b.StartRoadAlti();
    r.b.AddRoadPrj();
    r.b.AddRoadProfAltiPrincVrt(10, 100);
    r.b.AddRoadProfAltiRaccVrt(200, 104, 10, 100, 400, 101, 2500, false);
    r.b.AddRoadProfAltiPrincVrt(400, 101);
    r.b.EndRoadAlti();
    r.Export("writer_plan_profile.rd3");
    r.Section(50, {{-6, 100.2}, {-3, 100.15}, {0, 100.2}, {3.5, 100.13}, {3.6, 98.1}});
    r.Section(150, {{-3.5, 102.9}, {0, 103}, {4, 102.9}});
    r.Section(250, {{-4, 103.3}, {0, 103.6}, {5, 103.5}});
    r.Section(350, {{0, 101.8}, {3, 101.7}});
    r.Export("writer_sections.rd3");

    Road e;
    e.b.EndRoadPlani();
    e.Export("writer_empty.rd3");
}

// A plan of short-form records and a profile whose chain ends at 0.
void PlanSeeds() {
    std::vector<uint8_t> img = EncodeFileHeader(u"Breve");
    auto add = [&](const std::vector<uint8_t>& rec) {
        const auto at = static_cast<uint32_t>(img.size());
        img.insert(img.end(), rec.begin(), rec.end());
        return at;
    };
    auto link = [&](uint32_t a, uint32_t b) { PatchU32(img, a + 10, b); };
    const uint32_t road = add(EncodeRoadRecord({10, 20, 0.1, 0}));
    const uint32_t s = add(EncodeStraightRecord({0.1, 50}, road));
    const uint32_t a = add(EncodeArcRecord({0, 120, 40, false, 0}, s));
    const uint32_t c = add(EncodeClotRecord({0, 0, 120, 30, false, 0, 0}, a));
    const uint32_t cc = add(EncodeClotRecord({0, 1, 200, 30, true, 0.5, 400}, c));
    link(road, s);
    link(s, a);
    link(a, c);
    link(c, cc);
    PatchU32(img, 100, road);
    const uint32_t p = add(EncodeProfileRecord());
    const uint32_t v1 = add(EncodeVertexRecord({0, 10, false, 0}, p));
    const uint32_t v2 = add(EncodeVertexRecord({60, 12, true, 20}, v1));
    const uint32_t v3 = add(EncodeVertexRecord({150, 11, false, 0}, v2));
    link(p, v1);
    link(v1, v2);
    link(v2, v3);
    PatchU32(img, 106, p);
    Save("hand_short_forms.rd3", img);
    link(v3, 0);
    PatchU32(img, 10, kNoRecord);
    Save("hand_profile_next_zero.rd3", img);
}

// Extended template layouts (2: code in the data, 3: type is the code)
// with a chained assignment list.
void TemplateSeeds(int layout) {
    std::vector<uint8_t> img = EncodeFileHeader(u"Estesa");
    auto add = [&](const std::vector<uint8_t>& rec) {
        const auto at = static_cast<uint32_t>(img.size());
        img.insert(img.end(), rec.begin(), rec.end());
        return at;
    };
    const uint32_t road = add(EncodeRoadRecord({0, 0, 0, 0}));
    PatchU32(img, road + 10, add(EncodeStraightRecord({0, 500}, road)));
    PatchU32(img, 100, road);
    const uint32_t p = add(EncodeProfileRecord());
    const uint32_t v1 = add(EncodeVertexRecord({0, 100, false, 0}, p));
    PatchU32(img, p + 10, v1);
    PatchU32(img, v1 + 10, add(EncodeVertexRecord({500, 105, false, 0}, v1)));
    PatchU32(img, 106, p);
    std::vector<uint32_t> chain;
    auto seg = [&](uint16_t code, double v1v, double v2v) {
        const RD3SegmentEntry e{code, v1v, v2v};
        chain.push_back(add(layout == 2 ? EncodeLayout2SegmentRecord(e, chain.back())
                                        : EncodeLayout3SegmentRecord(e, chain.back())));
    };
    chain.push_back(add(EncodeNameOnlyTemplateRecord(u"A", kNoRecord)));
    seg(26, 0, 0.2);
    seg(22, std::atan(-0.02), 3.5);
    seg(25, 0, 0);
    seg(24, 0.7, 0.5);
    chain.push_back(add(EncodeNameOnlyTemplateRecord(u"B", chain.back())));
    seg(23, 4.0, -0.1);
    seg(23, 0.2, -2);
    for (size_t i = 0; i + 1 < chain.size(); ++i) PatchU32(img, chain[i] + 10, chain[i + 1]);
    PatchU32(img, 112, chain[0]);
    const uint32_t a1 = add(EncodeAssignChainRecord({u"A", 100, 3}, kNoRecord));
    const uint32_t a2 = add(EncodeAssignChainRecord({u"B", 300, 1}, a1));
    const uint32_t a3 = add(EncodeAssignChainRecord({u"A", 400, 3}, a2));
    PatchU32(img, a1 + 10, a2);
    PatchU32(img, a2 + 10, a3);
    PatchU32(img, 118, a1);
    Save(layout == 2 ? "hand_layout2_chain.rd3" : "hand_layout3_chain.rd3", img);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: rd3_make_corpus <dir>\n");
        return 2;
    }
    g_dir = argv[1];
    WriterSeeds();
    PlanSeeds();
    TemplateSeeds(2);
    TemplateSeeds(3);
    return 0;
}
