// The export entry point: library order, the two dialogs, the file skeleton,
// repeatability and how write failures are reported.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "host/load_vantri_dati.h"
#include "lxe_documents.h"
#include "lxe_test_util.h"
#include "vesk/format.h"
#include "exchange/exchange.h"

namespace {

using lxetest::CExportUi;
using lxetest::CTempDir;
using lxetest::HasLine;

// A document that records which libraries are asked for, in order.
class CRecordingDoc : public CVantriDoc {
public:
    std::vector<std::string> asked;
    CLibCmp* GetLibCmp() override { asked.push_back("Cmp"); return CVantriDoc::GetLibCmp(); }
    CLibGps* GetLibGps() override { asked.push_back("Gps"); return CVantriDoc::GetLibGps(); }
    CLibPnt* GetLibPnt() override { asked.push_back("Pnt"); return CVantriDoc::GetLibPnt(); }
    CLibDtm* GetLibDtm() override { asked.push_back("Dtm"); return CVantriDoc::GetLibDtm(); }
    CLibRoad* GetLibRoad() override { asked.push_back("Road"); return CVantriDoc::GetLibRoad(); }
    CLibProfile* GetLibProfile() override { asked.push_back("Profile"); return CVantriDoc::GetLibProfile(); }
};

TEST(ExportDriver, FetchesTheFiveLibrariesInOrderAndNothingElse) {
    CRecordingDoc doc;
    CExportUi ui;
    ui.confirmSelection = false;
    CHostUiScope scope(&ui);
    ExportLandXML(doc);
    EXPECT_EQ(doc.asked, (std::vector<std::string>{"Cmp", "Gps", "Pnt", "Dtm", "Road"}));
}

TEST(ExportDriver, TheSaveDialogGetsItsFixedArguments) {
    CVantriDoc doc;
    CTempDir dir;
    CExportUi ui;
    ui.path = dir.Path("a.xml");
    lxetest::Export(doc, ui);
    ASSERT_EQ(ui.exportDialogs, 1);
    ASSERT_EQ(ui.saveDialogs.size(), 1u);
    EXPECT_EQ(ui.saveDialogs[0].defExt, "LandXML");
    EXPECT_EQ(ui.saveDialogs[0].fileName, "Proj");
    EXPECT_EQ(ui.saveDialogs[0].flags, 6u);
    EXPECT_EQ(ui.saveDialogs[0].filter, "File strade LandXML(*.xml)|*.xml||");
}

TEST(ExportDriver, CancelledSelectionAsksForNoFileAndWritesNothing) {
    CVantriDoc doc;
    CTempDir dir;
    CExportUi ui;
    ui.confirmSelection = false;
    ui.path = dir.Path("a.xml");
    CHostUiScope scope(&ui);
    const TExchangeStatus st = roadx::landxml::ExportLandXMLStatus(doc);
    EXPECT_EQ(st.code, TExchangeStatus::CANCELLED);
    EXPECT_TRUE(ui.saveDialogs.empty());
    EXPECT_FALSE(lxetest::FileExists(ui.path));
}

TEST(ExportDriver, CancelledSaveDialogWritesNothing) {
    CVantriDoc doc;
    lxetest::BuildSurveys(doc);
    CExportUi ui;  // empty path: the save dialog is cancelled
    CHostUiScope scope(&ui);
    EXPECT_EQ(roadx::landxml::ExportLandXMLStatus(doc).code, TExchangeStatus::CANCELLED);
    EXPECT_EQ(ui.saveDialogs.size(), 1u);
}

TEST(ExportDriver, WithoutAnyHostUiNothingHappens) {
    CVantriDoc doc;
    EXPECT_EQ(roadx::landxml::ExportLandXMLStatus(doc).code, TExchangeStatus::CANCELLED);
}

TEST(ExportDriver, ProjectNameIsTheWholePathAsChosen) {
    CVantriDoc doc;
    CTempDir dir;
    CExportUi ui;
    ui.path = dir.Path("Proj.LandXML");
    const std::string text = lxetest::Export(doc, ui);
    EXPECT_TRUE(HasLine(text, "\t<Project name=\"" + ui.path + "\"/>")) << text;
    EXPECT_EQ(ui.path.substr(ui.path.size() - 13), "/Proj.LandXML");
}

TEST(ExportDriver, SpecialCharactersInNamesKeepTheFileWellFormed) {
    CVantriDoc doc;
    {
        CLoadVantriDati b(&doc);
        b.AddRoad("a<b>&\"c\"", 0.0, false);
    }
    CTempDir dir;
    CExportUi ui;
    ui.path = dir.Path("R&D.xml");
    const std::string text = lxetest::Export(doc, ui);
    EXPECT_TRUE(HasLine(text, "\t<Project name=\"" + dir.Path("R&amp;D.xml") + "\"/>"));
    EXPECT_TRUE(HasLine(text, "\t\t<Alignment name=\"a&lt;b&gt;&amp;&quot;c&quot;\" length=\"0.000000\" "
                              "staStart=\"0.000000\" state=\"existing\">"))
        << text;
}

TEST(ExportDriver, EmptySelectionWritesTheHeaderAndTheClosingTagOnly) {
    CVantriDoc doc;
    lxetest::BuildRoads(doc);
    lxetest::BuildSurfaces(doc);
    const std::string text = lxetest::ExportSelection(doc, [](TExportLandXMLResult&) {});
    EXPECT_EQ(text.find("Alignments"), std::string::npos);
    EXPECT_EQ(text.find("Surfaces"), std::string::npos);
    EXPECT_TRUE(text.ends_with("manufacturerURL=\"www.korvel.it\"/>\n</LandXML>\n")) << text;
}

TEST(ExportDriver, HeaderLinesCharacterForCharacter) {
    CVantriDoc doc;
    CTempDir dir;
    CExportUi ui;
    ui.path = dir.Path("h.xml");
    const std::string text = lxetest::Export(doc, ui);
    const std::string want =
        "<?xml version=\"1.0\" ?>\n"
        "<LandXML xmlns=\"http://www.landxml.org/schema/LandXML-1.0\" "
        "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
        "xsi:schemaLocation=\"http://www.landxml.org/schema/LandXML-1.0 "
        "http://www.landxml.org/schema/LandXML-1.0/LandXML-1.0.xsd\" version=\"1.0\" date=\"2009-10-27\" "
        "time=\"09:30:22\" readOnly=\"false\" language=\"English\">\n"
        "\t<Project name=\"" + ui.path + "\"/>\n"
        "\t<Units>\n"
        "\t\t<Metric linearUnit=\"meter\" areaUnit=\"squareMeter\" volumeUnit=\"cubicMeter\" "
        "temperatureUnit=\"celsius\" pressureUnit=\"mmHG\" angularUnit=\"radians\" "
        "directionUnit=\"decimal degrees\"/>\n"
        "\t</Units>\n"
        "\t<Application name=\"" + std::string(vesk::GetPrgName()) +
        "\" manufacturer=\"Korvel\" version=\"2012\" manufacturerURL=\"www.korvel.it\"/>\n"
        "</LandXML>\n";
    EXPECT_SAME_TEXT(text, want);
}

TEST(ExportDriver, SameSelectionTwiceGivesTheSameBytes) {
    CVantriDoc doc;
    lxetest::BuildRoads(doc);
    lxetest::BuildSurveys(doc);
    lxetest::BuildSurfaces(doc);
    CTempDir dir;
    CExportUi ui;
    ui.path = dir.Path("same.xml");
    const std::string first = lxetest::Export(doc, ui);
    sleep(1);  // a time stamp would differ now; the fixed date and time do not
    const std::string second = lxetest::Export(doc, ui);
    EXPECT_GT(first.size(), 5000u);
    EXPECT_TRUE(first == second);
    EXPECT_NE(first.find(" date=\"2009-10-27\" time=\"09:30:22\" "), std::string::npos);
}

TEST(ExportDriver, ObjectsGoOutInTheOrderTheDialogGaveThem) {
    CVantriDoc doc;
    lxetest::BuildRoads(doc);
    lxetest::BuildSurfaces(doc);
    const std::string text = lxetest::ExportSelection(doc, [&doc](TExportLandXMLResult& r) {
        r.roads = {doc.GetLibRoad()->GetRoad(1), doc.GetLibRoad()->GetRoad(0)};
        r.dtmPrjs = {doc.GetLibDtm()->GetPrj(1), doc.GetLibDtm()->GetPrj(0)};
    });
    EXPECT_LT(text.find("<Alignment name=\"vuota\""), text.find("<Alignment name=\"SS 12\""));
    EXPECT_LT(text.find("<Surface name=\"vuoto\""), text.find("<Surface name=\"Piano\""));
    EXPECT_LT(text.find("</Alignments>"), text.find("<Surfaces>"));
}

TEST(ExportDriver, SectionsStandInTheirFixedOrderWhateverTheSelection) {
    CVantriDoc doc;
    lxetest::BuildRoads(doc);
    lxetest::BuildSurveys(doc);
    lxetest::BuildSurfaces(doc);
    CTempDir dir;
    CExportUi ui;
    ui.path = dir.Path("order.xml");
    const std::string text = lxetest::Export(doc, ui);
    const size_t marks[] = {text.find("\t<Project "), text.find("\t<Units>"), text.find("\t<Application "),
                            text.find("\t<Alignments>"), text.find("\t<Survey desc=\"J1\">"),
                            text.find("\t<Survey>\n"), text.find("\t<CgPoints "), text.find("\t<Surfaces>"),
                            text.find("</LandXML>")};
    for (size_t i = 0; i + 1 < std::size(marks); ++i) {
        ASSERT_NE(marks[i], std::string::npos) << i;
        EXPECT_LT(marks[i], marks[i + 1]) << i;
    }
}

// Write failures: the entry point stays silent; the status names the reason.
struct FailureCase {
    const char* what;
    std::string path;
    const char* reason;
};

void ExpectWriteFailure(const std::string& path, const std::string& reason) {
    CVantriDoc doc;
    lxetest::BuildSurfaces(doc);
    CExportUi ui;
    ui.path = path;
    CHostUiScope scope(&ui);
    const TExchangeStatus st = roadx::landxml::ExportLandXMLStatus(doc);
    EXPECT_EQ(st.code, TExchangeStatus::WRITE_FAILED);
    EXPECT_NE(st.message.find(reason), std::string::npos) << st.message;
    ExportLandXML(doc);  // silent, no crash
    EXPECT_TRUE(ui.messages.empty());
}

TEST(ExportDriver, FullDiskIsReported) {
    ExpectWriteFailure("/dev/full", "cannot write: No space left on device");
}

TEST(ExportDriver, FullDiskIsReportedForOutputLargerThanTheBuffer) {
    CVantriDoc doc;
    {
        CLoadVantriDati b(&doc);
        b.AddDtmPrj("big");
        for (int i = 0; i < 20000; ++i) b.AddTriVert(i, i, 2.0 * i, 3.0);
    }
    CExportUi ui;
    ui.path = "/dev/full";
    CHostUiScope scope(&ui);
    const TExchangeStatus st = roadx::landxml::ExportLandXMLStatus(doc);
    EXPECT_EQ(st.code, TExchangeStatus::WRITE_FAILED);
    EXPECT_NE(st.message.find("No space left on device"), std::string::npos) << st.message;
}

TEST(ExportDriver, MissingFolderIsReported) {
    CTempDir dir;
    ExpectWriteFailure(dir.Path("no/such/folder/out.xml"), "cannot create: No such file or directory");
}

TEST(ExportDriver, AFolderInPlaceOfTheFileIsReported) {
    CTempDir dir;
    ExpectWriteFailure(dir.Path(""), "cannot create: Is a directory");
}

TEST(ExportDriver, AFileInPlaceOfAFolderIsReported) {
    CTempDir dir;
    std::fclose(std::fopen(dir.Path("plain").c_str(), "w"));
    ExpectWriteFailure(dir.Path("plain/out.xml"), "cannot create: Not a directory");
}

TEST(ExportDriver, MissingPermissionIsReported) {
    if (geteuid() == 0) GTEST_SKIP() << "root may write anywhere";
    CTempDir dir;
    ASSERT_EQ(mkdir(dir.Path("ro").c_str(), 0500), 0);
    ExpectWriteFailure(dir.Path("ro/out.xml"), "cannot create: Permission denied");
}

TEST(ExportDriver, WriterWithAnUnopenablePathDoesNothing) {
    CVantriDoc doc;
    lxetest::BuildRoads(doc);
    CTempDir dir;
    const std::string path = dir.Path("none/out.xml");
    WriteLandXMLFile({doc.GetLibRoad()->GetRoad(0)}, *doc.GetLibCmp(), {}, *doc.GetLibGps(), {}, *doc.GetLibPnt(),
                     {}, {}, path.c_str());
    EXPECT_FALSE(lxetest::FileExists(path));
}

}  // namespace
