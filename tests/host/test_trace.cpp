#include <gtest/gtest.h>

#include <limits>

#include "host/load_vantri_dati.h"
#include "host/null_ui.h"
#include "host/trace.h"
#include "host/ui.h"

namespace {

TEST(Trace, FormatOfBuilderCalls) {
    CVantriDoc doc;
    CTraceMemory t;
    CTraceScope scope(&t);
    {
        CLoadVantriDati b(&doc);
        b.AddRoad("A1", 0, false);
        b.StartRoadPlani();
        b.AddRoadArc(100, {1100, 5000}, {1, 0}, 200, 0.5, true);
        b.EndRoadPlani();
        auto* tr = new CRettifiloPlaniElem(50, {50, 10}, {0, -1}, 20);
        b.AddSection("S\"1", 50, tr);
        tr->SubReference();
        b.AddSectionProfileAlti("TER", {{-10, 5}, {0, 7}, {10, 5}});
        b.AddDtmPrj("T");
        b.AddTriVert(1, 0.1, std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity());
        b.AddVnc(0, 0, std::nan(""), 1, 1, 1);
    }
    const std::vector<std::string> want = {
        "AddRoad \"A1\" 0 false",
        "StartRoadPlani",
        "AddRoadArc 100 1100 5000 1 0 200 0.5 true",
        "EndRoadPlani",
        "AddSection \"S\\\"1\" 50 50 50 10 0 -1 20",
        "AddSectionProfileAlti \"TER\" 3 -10 5 0 7 10 5",
        "AddDtmPrj \"T\"",
        "AddTriVert 1 0.10000000000000001 inf -inf",
        "AddVnc 0 0 nan 1 1 1",
    };
    EXPECT_EQ(t.lines, want);
}

TEST(Trace, DoublesReadBackExactly) {
    for (double v : {0.1, 1.0 / 3.0, -2.5e-300, 1.7e200, 123456789.123456789}) {
        EXPECT_EQ(std::stod(TraceDouble(v)), v);
    }
}

TEST(Trace, NonUtf8TextDoesNotThrow) {
    EXPECT_EQ(TraceJsonString("a\xff"), "\"a\xEF\xBF\xBD\"");
    EXPECT_EQ(TraceJsonString("è\n"), "\"è\\n\"");
}

struct ScriptedUi : roadx::host::CNullUi {
    bool answer = true;
    std::vector<std::string> seen;
    void Message(const std::string& title, const std::string& text) override { seen.push_back(title + "|" + text); }
    bool QuestionYesNo(const std::string&, const std::string&) override { return answer; }
};

TEST(Trace, MessagesQuestionsAndTheImportDialog) {
    CTraceMemory t;
    CTraceScope scope(&t);
    ScriptedUi ui;
    CHostUiScope uiScope(&ui);
    MessageBoxOkError(nullptr, "Errore !/n/nDisco pieno", "Creazione file DXF/DWG");
    AfxMessageBox("riga\nseconda");
    ui.answer = false;
    EXPECT_FALSE(MessageQuestionYesNo("Procedere?", "Planimetria."));
    TImportLandXMLResult r;
    FDlgImportLandXML(false, false, {"S1"}, {"A", "A"}, true, {"TERRENO"}, {"TER", "PRO", "STF"}, r);
    const std::vector<std::string> want = {
        "Message \"Creazione file DXF/DWG\" \"Errore !/n/nDisco pieno\"",
        "Message \"\" \"riga\\nseconda\"",
        "Question \"Planimetria.\" \"Procedere?\" false",
        "FDlgImportLandXML {\"surfaces\":[\"S1\"],\"alignments\":[\"A\",\"A\"],\"hasPointData\":true,"
        "\"crossSectSurfs\":[\"TERRENO\"],\"sectionCodes\":[\"TER\",\"PRO\",\"STF\"]}",
    };
    EXPECT_EQ(t.lines, want);
    EXPECT_EQ(ui.seen.size(), 2u);
}

TEST(Trace, NothingRecordedWithoutASink) {
    EXPECT_EQ(HostTrace(), nullptr);
    CVantriDoc doc;
    CLoadVantriDati b(&doc);
    b.AddRoad("A", 0, false);  // must not crash
    SUCCEED();
}

}  // namespace
