// Diagnostics change nothing the host sees: every sample file and every
// diagnostics test file imports with the same trace (builder calls, messages,
// questions) and status with a sink as without one, and the sink holds what
// the files are known to trigger.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "lx1_test_util.h"
#include "tests/common/test_data.h"
#include "vesk/diagnostics.h"

namespace {

using namespace lx1test;

std::vector<std::string> XmlFiles(const std::string& dir) {
    std::vector<std::string> files;
    for (const auto& e : std::filesystem::directory_iterator(dir))
        if (e.is_regular_file() && e.path().extension() == ".xml") files.push_back(e.path().string());
    std::sort(files.begin(), files.end());
    return files;
}

TEST(ImportDiagnostics, SameTraceAndStatusWithASink) {
    std::vector<std::string> files = XmlFiles(roadx::test::DataPath("landxml"));
    const std::vector<std::string> diag = XmlFiles(roadx::test::DataPath("landxml/diag"));
    files.insert(files.end(), diag.begin(), diag.end());
    ASSERT_GT(files.size(), 20u);
    size_t withRecords = 0;
    for (const std::string& f : files) {
        TImportRun plain;
        plain.RunFile(f);
        vesk::diag::CSink sink;
        TImportRun told;
        told.sink = &sink;
        told.RunFile(f);
        EXPECT_EQ(told.trace.lines, plain.trace.lines) << f;
        EXPECT_EQ(told.status.code, plain.status.code) << f;
        EXPECT_EQ(told.status.message, plain.status.message) << f;
        withRecords += sink.CountAtLeast(vesk::diag::ESeverity::Warning) > 0 ? 1 : 0;
        for (const vesk::diag::TRecord& r : sink.Records()) EXPECT_EQ(r.file, f);
    }
    EXPECT_GT(withRecords, 10u);
}

// Breaklines of more than two points keep their first segment: a warning.
TEST(ImportDiagnostics, BreaklineOfMoreThanTwoPointsIsAWarning) {
    vesk::diag::CSink sink;
    TImportRun run;
    run.sink = &sink;
    run.RunFile(roadx::test::DataPath("landxml/diag/profile_surface.xml"));
    const vesk::diag::TRecord* found = nullptr;
    for (const vesk::diag::TRecord& r : sink.Records())
        if (r.kind == "breakline-points-ignored") found = &r;
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->severity, vesk::diag::ESeverity::Warning);
    EXPECT_EQ(found->count, 1);  // the second breakline has two points
    EXPECT_EQ(found->line, 8);
    EXPECT_EQ(found->element, "Surfaces / Surface \"G\" / SourceData / Breaklines / Breakline 1");
    EXPECT_EQ(found->message, "Breakline of more than two points: only the segment between its first two is imported");
    EXPECT_EQ(found->instead, "its further points ignored");
}

// A number record through the library: place of the token itself.
TEST(ImportDiagnostics, BadNumberRecordPointsAtItsToken) {
    vesk::diag::CSink sink;
    TImportRun run;
    run.sink = &sink;
    run.Run(LandXml("<Surfaces><Surface name=\"S\"><Definition surfType=\"TIN\"><Pnts>\n"
                    "<P id=\"1\">0 0 0</P>\n<P id=\"2\">0 abc 0</P>\n<P id=\"3\">10 0 0</P>\n"
                    "</Pnts><Faces><F>1 2 3</F></Faces></Definition></Surface></Surfaces>"));
    ASSERT_EQ(sink.Records().size(), 2u);  // the units note and the number
    const vesk::diag::TRecord& r = sink.Records()[1];
    EXPECT_EQ(r.kind, "number-not-read");
    EXPECT_EQ(r.count, 1);
    EXPECT_EQ(r.line, 6);  // declaration, root, Units, Surfaces, P 1, P 2
    EXPECT_EQ(r.element, "Surfaces / Surface \"S\" / Definition / Pnts / P 2");
    EXPECT_EQ(r.message, "text \"abc\" is not a number");
    EXPECT_EQ(r.instead, "read as 0");
}

}  // namespace
