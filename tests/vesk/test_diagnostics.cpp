#include "vesk/diagnostics.h"

#include <gtest/gtest.h>

namespace {

using vesk::diag::CSink;
using vesk::diag::ESeverity;
using vesk::diag::TRecord;

TRecord Rec(const char* kind, const char* file, int64_t line, const char* element) {
    TRecord r;
    r.kind = kind;
    r.file = file;
    r.line = line;
    r.element = element;
    r.message = "m";
    return r;
}

TEST(Diagnostics, RepeatsOfAKindInAFileMergeKeepingTheFirstPlace) {
    CSink sink;
    sink.Report(Rec("bad-number", "a.xml", 10, "Pnts / P 1"));
    sink.Report(Rec("bad-number", "a.xml", 20, "Pnts / P 7"));
    sink.Report(Rec("bad-number", "b.xml", 5, "Pnts / P 2"));
    sink.Report(Rec("dup-id", "a.xml", 30, "Pnts / P 9"));
    ASSERT_EQ(sink.Records().size(), 3u);
    EXPECT_EQ(sink.Records()[0].count, 2);
    EXPECT_EQ(sink.Records()[0].line, 10);
    EXPECT_EQ(sink.Records()[0].element, "Pnts / P 1");
    EXPECT_EQ(sink.Records()[1].file, "b.xml");
    EXPECT_EQ(sink.Records()[2].kind, "dup-id");
}

TEST(Diagnostics, AMergedRecordTakesTheWorseSeverity) {
    CSink sink;
    TRecord a = Rec("k", "f", 1, "");
    a.severity = ESeverity::Note;
    TRecord b = Rec("k", "f", 2, "");
    b.severity = ESeverity::Error;
    b.count = 5;
    sink.Report(a);
    sink.Report(b);
    ASSERT_EQ(sink.Records().size(), 1u);
    EXPECT_EQ(sink.Records()[0].severity, ESeverity::Error);
    EXPECT_EQ(sink.Records()[0].count, 6);
    EXPECT_EQ(sink.CountAtLeast(ESeverity::Error), 1u);
    EXPECT_STREQ(vesk::diag::SeverityName(ESeverity::Error), "error");
}

TEST(Diagnostics, ANullSinkIgnoresReports) {
    vesk::diag::Report(nullptr, Rec("k", "f", 1, ""));
    CSink sink;
    vesk::diag::Report(&sink, Rec("k", "f", 1, ""));
    EXPECT_EQ(sink.Records().size(), 1u);
    sink.Clear();
    EXPECT_TRUE(sink.Empty());
}

}  // namespace
