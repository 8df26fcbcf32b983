// What the RD3 reader leaves out or changes, as diagnostics records: one
// small file per kind, the exact record, and the same builder calls with a
// sink as without one.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "rd3/rd3_reader.h"
#include "rd3_test_doc.h"
#include "vesk/diagnostics.h"

using namespace roadx::rd3;
using namespace rd3test;

namespace {

struct TDiagRun {
    ImportRun plain;  // without a sink
    CVantriDoc doc;
    CTraceMemory trace;
    vesk::diag::CSink sink;

    // Imports the image twice, without and with a sink, under road name
    // `name` (the header of the test images says "T").
    explicit TDiagRun(const std::vector<uint8_t>& bytes, const char* name = "T") {
        plain.Run(bytes, name);
        CTraceScope scope(&trace);
        ImportRD3BufferStatus(&doc, name, bytes.data(), bytes.size(), &sink, "f.rd3");
    }
    const vesk::diag::TRecord* Find(const std::string& kind) const {
        for (const auto& r : sink.Records())
            if (r.kind == kind) return &r;
        return nullptr;
    }
};

// The record of `kind` is the only one and reads as expected; the host sees
// the same calls as without a sink.
void ExpectOnly(const TDiagRun& run, const std::string& kind, int64_t count, int64_t offset,
                const std::string& element, const std::string& message, const std::string& instead) {
    EXPECT_EQ(run.trace.lines, run.plain.trace.lines);
    ASSERT_EQ(run.sink.Records().size(), 1u) << run.sink.Records().front().kind;
    const vesk::diag::TRecord& r = run.sink.Records().front();
    EXPECT_EQ(r.kind, kind);
    EXPECT_EQ(r.file, "f.rd3");
    EXPECT_EQ(r.count, count);
    EXPECT_EQ(r.line, 0);
    EXPECT_EQ(r.offset, offset);
    EXPECT_EQ(r.element, element);
    EXPECT_EQ(r.message, message);
    EXPECT_EQ(r.instead, instead);
    if (kind != "rd3-road-name-from-file") {
        EXPECT_EQ(r.severity, vesk::diag::ESeverity::Warning);
    }
}

Image PlanImage(const std::vector<std::vector<uint8_t>>& elems, std::vector<uint32_t>* offsets = nullptr) {
    Image img;
    std::vector<uint32_t> chain = {AddRoadRecord(img, 0, 0, 0)};
    for (const auto& e : elems) chain.push_back(img.Append(e));
    img.Chain(chain);
    img.SetDir(0, chain[0]);
    if (offsets) *offsets = chain;
    return img;
}

}  // namespace

TEST(Rd3ReaderDiagnostics, AFileWithNothingLeftOutReportsNothing) {
    SectionFile f;
    f.Template(u"A", {Grade(0.01, 1.0)});
    f.Assign({{u"A", 100.0, 3}, {u"A", 200.0, 1}, {u"A", 200.0, 2}});
    TDiagRun run(f.img.bytes);
    EXPECT_EQ(run.trace.lines, run.plain.trace.lines);
    EXPECT_TRUE(run.sink.Empty()) << run.sink.Records().front().kind;
}

TEST(Rd3ReaderDiagnostics, PlanRecordOfAnotherTypeIsSkipped) {
    std::vector<uint32_t> at;
    const Image img = PlanImage({EncodeStraightRecord({0.0, 10.0}, 0), EncodeRecHeader(7, 0, 0),
                                 EncodeRecHeader(9, 0, 0), EncodeStraightRecord({0.0, 5.0}, 0)},
                                &at);
    TDiagRun run(img.bytes);
    ExpectOnly(run, "rd3-plan-record-skipped", 2, at[2],
               "Road \"T\" / plan record at offset " + std::to_string(at[2]) + " (station 10.000)",
               "plan record of type 7 is not a straight, arc or clothoid",
               "skipped; the next element starts where the one before ends");
}

TEST(Rd3ReaderDiagnostics, ProfileRecordOfAnotherTypeRepeatsTheVertex) {
    Image img = PlanImage({});
    const uint32_t p = img.Append(EncodeProfileRecord());
    const uint32_t v1 = img.Append(EncodeVertexRecord({0.0, 100.0, false, 0.0}, p));
    const uint32_t odd = img.Append(EncodeStraightRecord({0.0, 1.0}, v1));
    const uint32_t v2 = img.Append(EncodeVertexRecord({100.0, 101.0, false, 0.0}, odd));
    img.Chain({p, v1, odd, v2});
    img.SetDir(1, p);
    TDiagRun run(img.bytes);
    ExpectOnly(run, "rd3-profile-record-repeats", 1, odd, "Road \"T\" / profile record at offset " + std::to_string(odd),
               "profile record of type 2 holds no vertex",
               "the vertex before it is repeated (station 0, elevation 0 when it is the first)");
}

TEST(Rd3ReaderDiagnostics, RoadNameOfTheHeaderIsNotUsed) {
    const Image img = PlanImage({EncodeStraightRecord({0.0, 10.0}, 0)});
    TDiagRun run(img.bytes, "Strada");
    ExpectOnly(run, "rd3-road-name-from-file", 1, 30, "Road \"Strada\" / file header",
               "the file names its road \"T\"; the road takes the file's name instead", "road named \"Strada\"");
    EXPECT_EQ(run.sink.Records().front().severity, vesk::diag::ESeverity::Note);
}

TEST(Rd3ReaderDiagnostics, UnknownTemplateNameTakesTheFirstTemplate) {
    SectionFile f;
    f.Template(u"First", {Grade(0.01, 1.0)});
    f.Template(u"Second", {Grade(0.02, 2.0)});
    f.Assign({{u"Nobody", 10.0, 3}, {u"Second", 100.0, 3}, {u"Else", 300.0, 3}});
    TDiagRun run(f.img.bytes);
    ExpectOnly(run, "rd3-template-not-found", 2, -1, "Road \"T\" / section assignment at station 10.000",
               "the assignment names the template \"Nobody\", which the file does not hold",
               "the first template \"First\" used");
}

TEST(Rd3ReaderDiagnostics, MoreAssignmentsAtOneStationThanSides) {
    SectionFile f;
    f.Template(u"A", {Grade(0.01, 1.0)});
    f.Template(u"B", {Grade(0.02, 2.0)});
    // Both sides from A at 100: B at 100 is not used; left and right at 200
    // make the section, the second right is not used.
    f.Assign({{u"A", 100.0, 3}, {u"B", 100.0, 1}, {u"A", 200.0, 1}, {u"B", 200.0, 2}, {u"A", 200.0, 2}});
    TDiagRun run(f.img.bytes);
    ExpectOnly(run, "rd3-assignment-not-used", 2, -1, "Road \"T\" / section assignment at station 100.000",
               "another assignment at the same station already gives the section its template",
               "assignment not used");
    EXPECT_EQ(run.plain.Lines("AddSection").size(), 2u);
}

TEST(Rd3ReaderDiagnostics, SectionWithoutPlaceOrElevationIsNotBuilt) {
    SectionFile f;
    f.Template(u"T", {Grade(0.01, 1.0)});
    // The plan ends at 1000; the profile too.
    f.Assign({{u"T", 50.0, 3}, {u"T", 1500.0, 3}, {u"T", 1600.0, 3}});
    TDiagRun run(f.img.bytes);
    ExpectOnly(run, "rd3-section-not-built", 2, -1, "Road \"T\" / section S2 (station 1500.000)",
               "the road has no plan element or no profile elevation at the section's station",
               "section not added; its number is skipped");
    EXPECT_EQ(run.plain.Lines("AddSection").size(), 1u);
}

TEST(Rd3ReaderDiagnostics, AssignmentOfAnUnknownSideOrWithoutStation) {
    SectionFile f;
    f.Template(u"A", {Grade(0.01, 1.0)});
    f.Assign({{u"A", 100.0, 0}, {u"A", NAN, 3}, {u"A", 200.0, 3}, {u"A", 300.0, 4}});
    TDiagRun run(f.img.bytes);
    ExpectOnly(run, "rd3-assignment-left-out", 3, -1, "Road \"T\" / section assignment 1",
               "section assignment of side 0 (sides are 1 left, 2 right, 3 both)", "assignment left out");
}
