// Helpers of the RD3 reader and writer tests: documents built through the
// builder, RD3 file images assembled record by record, imports run with the
// host trace recording, and a scripted host UI.
#pragma once
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "host/document.h"
#include "host/load_vantri_dati.h"
#include "host/null_ui.h"
#include "host/trace.h"
#include "host/ui.h"
#include "rd3/rd3_bytes.h"
#include "rd3/rd3_export.h"
#include "rd3/rd3_import.h"
#include "rd3/rd3_records.h"
#include "rd3_test_util.h"

namespace rd3test {

// An RD3 file image: the header, then records appended one by one; links
// and directory entries are set by hand.
class Image {
public:
    explicit Image(std::u16string_view name = u"T") : bytes(roadx::rd3::EncodeFileHeader(name)) {}

    uint32_t Append(const std::vector<uint8_t>& rec) {
        const auto at = static_cast<uint32_t>(bytes.size());
        bytes.insert(bytes.end(), rec.begin(), rec.end());
        return at;
    }
    void SetNext(uint32_t record, uint32_t next) { roadx::rd3::PatchU32(bytes, record + 10, next); }
    void SetDataSize(uint32_t record, uint32_t size) { roadx::rd3::PatchU32(bytes, record + 6, size); }
    // Links records in the order given (and ends the chain with the last).
    void Chain(const std::vector<uint32_t>& records) {
        for (size_t i = 0; i + 1 < records.size(); ++i) SetNext(records[i], records[i + 1]);
    }
    void SetDir(int slot, uint32_t offset) { roadx::rd3::PatchU32(bytes, 100 + 6 * slot, offset); }
    void SetTag(int slot, uint16_t tag) {
        bytes[98 + 6 * slot] = static_cast<uint8_t>(tag & 0xFF);
        bytes[99 + 6 * slot] = static_cast<uint8_t>(tag >> 8);
    }

    std::vector<uint8_t> bytes;
};

// A road record at the head of a plan chain.
inline uint32_t AddRoadRecord(Image& img, double x, double y, double prog) {
    roadx::rd3::RD3RoadRecord r;
    r.x = x;
    r.y = y;
    r.prog = prog;
    return img.Append(roadx::rd3::EncodeRoadRecord(r));
}

inline std::vector<std::string> Tokens(const std::string& line) {
    std::istringstream in(line);
    return {std::istream_iterator<std::string>(in), std::istream_iterator<std::string>()};
}

inline double Num(const std::string& line, size_t i) { return std::stod(Tokens(line).at(i)); }
inline std::string Op(const std::string& line) { return Tokens(line).at(0); }

inline const roadx::rd3::RD3SegmentEntry kSlopes{24, 0.785398, 0.588002};

inline roadx::rd3::RD3SegmentEntry Grade(double g, double w) { return {22, std::atan(g), w}; }

// A road north from (0, 0), chainage 0 to 1000, profile 100 + 0.01 × p.
struct SectionFile {
    Image img;
    std::vector<uint32_t> templates;

    explicit SectionFile(std::vector<roadx::rd3::RD3VertexRecord> profile = {{0.0, 100.0, false, 0.0}, {1000.0, 110.0, false, 0.0}}) {
        const uint32_t road = AddRoadRecord(img, 0, 0, 0);
        img.Chain({road, img.Append(roadx::rd3::EncodeStraightRecord({0.0, 1000.0}, road))});
        img.SetDir(0, road);
        std::vector<uint32_t> chain = {img.Append(roadx::rd3::EncodeProfileRecord())};
        for (const auto& v : profile) chain.push_back(img.Append(roadx::rd3::EncodeVertexRecord(v, chain.back())));
        img.Chain(chain);
        img.SetDir(1, chain[0]);
    }
    uint32_t Template(std::u16string_view name, const std::vector<roadx::rd3::RD3SegmentEntry>& entries) {
        return Link(img.Append(roadx::rd3::EncodeTemplateRecord(name, entries, roadx::rd3::kNoRecord)));
    }
    // Links a record of the template chain after the previous one.
    uint32_t Link(uint32_t rec) {
        if (templates.empty()) img.SetDir(2, rec);
        else img.SetNext(templates.back(), rec);
        templates.push_back(rec);
        return rec;
    }
    uint32_t Assign(const std::vector<roadx::rd3::RD3AssignEntry>& list) {
        const uint32_t at = img.Append(roadx::rd3::EncodeAssignListRecord(list));
        img.SetDir(3, at);
        return at;
    }
};

// One import with the trace recording.
struct ImportRun {
    CVantriDoc doc;
    CTraceMemory trace;
    roadx::rd3::ReadEnd status = roadx::rd3::ReadEnd::kOk;

    void Run(const std::vector<uint8_t>& bytes, const char* name = "Road") {
        CTraceScope scope(&trace);
        status = roadx::rd3::ReadEndOf(roadx::rd3::ImportRD3BufferStatus(&doc, name, bytes.data(), bytes.size()));
    }
    // The trace without messages.
    std::vector<std::string> Calls() const {
        std::vector<std::string> out;
        for (const auto& l : trace.lines)
            if (Op(l) != "Message") out.push_back(l);
        return out;
    }
    std::vector<std::string> Ops() const {
        std::vector<std::string> out;
        for (const auto& l : Calls()) out.push_back(Op(l));
        return out;
    }
    std::vector<std::string> Lines(const std::string& op) const {
        std::vector<std::string> out;
        for (const auto& l : trace.lines)
            if (Op(l) == op) out.push_back(l);
        return out;
    }
    int Messages() const { return static_cast<int>(Lines("Message").size()); }
    CRoad* Road() const { return const_cast<CVantriDoc&>(doc).GetLibRoad()->GetRoad(0); }
};

// A path in a directory of this test process, so file names stay as given.
inline std::string TempPath(const std::string& name) {
    const std::string dir = testing::TempDir() + "rd3_" + std::to_string(::getpid());
    ::mkdir(dir.c_str(), 0700);
    return dir + "/" + name;
}

inline std::vector<uint8_t> ReadFileBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

inline void WriteFileBytes(const std::string& path, const std::vector<uint8_t>& b) {
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(b.data()), static_cast<std::streamsize>(b.size()));
}

// A host UI whose save dialog answers with a fixed path (or cancels).
class ScriptedUi : public roadx::host::CNullUi {
public:
    bool SaveFileDialog(const TSaveFileDialogArgs& args, std::string& path) override {
        dialogs.push_back(args);
        if (answer.empty()) return false;
        path = answer;
        return true;
    }
    void Message(const std::string&, const std::string& text) override { messages.push_back(text); }

    std::string answer;
    std::vector<TSaveFileDialogArgs> dialogs;
    std::vector<std::string> messages;
};

}  // namespace rd3test

namespace rd3test {

// A document with one road built through the builder.
struct RoadDoc {
    CVantriDoc doc;
    std::unique_ptr<CLoadVantriDati> b = std::make_unique<CLoadVantriDati>(&doc);
    CRoad* road = nullptr;
    PNT_2D at;
    VECTOR_2D tg;
    double prog = 0.0;

    explicit RoadDoc(const char* name = "Strada", double startProg = 0.0, PNT_2D start = {0, 0},
                     VECTOR_2D dir = {0, 1})
        : at(start), tg(dir), prog(startProg) {
        road = b->AddRoad(name, startProg, false);
        b->StartRoadPlani();
    }
    // Appends an element built with the running start and keeps the chain
    // continuous through a local copy of it.
    void Advance(CPlaniElem* local) {
        at = local->GetEndPnt();
        local->GetTg(local->GetLength(), tg);
        prog += local->GetLength();
        local->SubReference();
    }
    void Rect(double len) {
        b->AddRoadRect(prog, at, tg, len);
        Advance(new CRettifiloPlaniElem(prog, at, tg, len));
    }
    void Arc(double r, double angle, bool ccw) {
        b->AddRoadArc(prog, at, tg, r, angle, ccw);
        Advance(new CArcPlaniElem(prog, at, tg, r, angle, ccw));
    }
    void Clot(double a, double r, bool ccw, bool entrance) {
        b->AddRoadClot(prog, at, tg, 1.0, a, r, ccw, entrance);
        Advance(new CClotPlaniElem(prog, at, tg, 1.0, a, r, ccw, entrance));
    }
    void ClotCont(double a, double r1, double r2, bool ccw) {
        b->AddRoadClotCont(prog, at, tg, 1.0, a, r1, r2, ccw);
        Advance(new CClotContPlaniElem(prog, at, tg, 1.0, a, r1, r2, ccw));
    }
    void EndPlan() { b->EndRoadPlani(); }
    // The project line from (chainage, elevation) pairs.
    void Profile(const std::vector<std::pair<double, double>>& v) {
        b->StartRoadAlti();
        b->AddRoadPrj();
        for (const auto& [p, z] : v) b->AddRoadProfAltiPrincVrt(p, z);
        b->EndRoadAlti();
    }
    // A cross section with an "STF" line of (offset, elevation) points.
    CProfile* Section(double at, const std::vector<PNT_2D>& stf) {
        CPlaniElem* trace = new CRettifiloPlaniElem(-10, {-10, at}, {1, 0}, 20);
        b->AddSection("sez", at, trace);
        trace->SubReference();
        b->AddSectionProfileAlti("STF", stf);
        return road->GetSection(road->GetNumSections() - 1);
    }
    std::vector<uint8_t> Export(const std::string& file) {
        const std::string path = TempPath(file);
        const TExchangeStatus st = roadx::rd3::WriteRD3File(*road, path);
        EXPECT_TRUE(st.ok()) << st.message;
        auto bytes = ReadFileBytes(path);
        std::remove(path.c_str());
        return bytes;
    }
};

}  // namespace rd3test
