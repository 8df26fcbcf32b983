// Helpers of the LandXML export tests: a scripted host UI that answers the
// export dialog with a chosen selection and the save dialog with a path, a
// private temporary folder, and whole-file comparison with golden files.
#pragma once
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "host/document.h"
#include "host/null_ui.h"
#include "host/ui.h"
#include "landxml_export/export_landxml.h"
#include "tests/common/test_data.h"

namespace lxetest {

// Answers only the two dialogs of the export; records what they were given.
class CExportUi : public roadx::host::CNullUi {
public:
    // Fills the selection; unset means "everything, in library order".
    std::function<void(TExportLandXMLResult&)> select;
    bool confirmSelection = true;
    std::string path;  // "" cancels the save dialog
    int exportDialogs = 0;
    std::vector<TSaveFileDialogArgs> saveDialogs;
    std::vector<std::string> messages;

    bool DlgExportLandXML(CLibCmp& cmp, CLibGps& gps, CLibPnt& pnt, CLibDtm& dtm, CLibRoad& road,
                          TExportLandXMLResult& r) override {
        ++exportDialogs;
        if (!confirmSelection) return false;
        if (select) {
            select(r);
            return true;
        }
        for (int i = 0; i < cmp.GetJobArSize(); ++i) r.jobs.push_back(cmp.GetJobAt(i));
        for (int i = 0; i < gps.GetGrpArSize(); ++i) r.gpsGroups.push_back(gps.GetGrpAt(i));
        for (int i = 0; i < pnt.GetGrpArSize(); ++i) r.pointGroups.push_back(pnt.GetGrpAt(i));
        for (unsigned i = 0; i < dtm.GetNoPrj(); ++i) r.dtmPrjs.push_back(dtm.GetPrj(i));
        for (unsigned i = 0; i < road.GetNumRoads(); ++i) r.roads.push_back(road.GetRoad(i));
        return true;
    }
    bool SaveFileDialog(const TSaveFileDialogArgs& args, std::string& p) override {
        saveDialogs.push_back(args);
        p = path;
        return !path.empty();
    }
    void Message(const std::string& title, const std::string& text) override { messages.push_back(title + text); }
};

// A fresh folder of its own for each test, removed at the end.
class CTempDir {
public:
    CTempDir() {
        std::string tmpl = (std::filesystem::temp_directory_path() / "roadx_lxe_XXXXXX").string();
        if (mkdtemp(tmpl.data())) dir_ = tmpl;
    }
    ~CTempDir() {
        std::error_code ec;
        if (!dir_.empty()) std::filesystem::remove_all(dir_, ec);
    }
    CTempDir(const CTempDir&) = delete;
    CTempDir& operator=(const CTempDir&) = delete;
    std::string Path(const std::string& name) const { return (std::filesystem::path(dir_) / name).string(); }

private:
    std::string dir_;
};

inline std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

inline bool FileExists(const std::string& path) { return std::filesystem::exists(path); }

// Exports the document through the entry point with the given UI and returns
// the text written to `path` (set on the UI).
inline std::string Export(IVantriDati& doc, CExportUi& ui, TExchangeStatus* status = nullptr) {
    CHostUiScope scope(&ui);
    const TExchangeStatus st = roadx::landxml::ExportLandXMLStatus(doc);
    if (status) *status = st;
    EXPECT_TRUE(st.ok()) << st.message;
    return ReadFile(ui.path);
}

// A golden file of tests/data/landxml_export, with "@PATH@" standing for the
// output path (the Project name is the full path).
inline std::string Golden(const std::string& name, const std::string& path) {
    std::string text = ReadFile(roadx::test::DataPath("landxml_export/" + name));
    EXPECT_FALSE(text.empty()) << name;
    const std::string key = "@PATH@";
    for (size_t at = text.find(key); at != std::string::npos; at = text.find(key, at + path.size()))
        text.replace(at, key.size(), path);
    return text;
}

// First differing line, for a readable failure message.
inline std::string FirstDifference(const std::string& got, const std::string& want) {
    std::istringstream a(got), b(want);
    std::string la, lb;
    for (int n = 1;; ++n) {
        const bool ha = static_cast<bool>(std::getline(a, la));
        const bool hb = static_cast<bool>(std::getline(b, lb));
        if (!ha && !hb) return "texts differ only in line ends";
        if (la != lb || ha != hb)
            return "line " + std::to_string(n) + ":\n  got:  " + (ha ? la : "<end>") + "\n  want: " + (hb ? lb : "<end>");
    }
}

#define EXPECT_SAME_TEXT(got, want)                                                       \
    do {                                                                                  \
        const std::string& g_ = (got);                                                    \
        const std::string& w_ = (want);                                                   \
        EXPECT_TRUE(g_ == w_) << ::lxetest::FirstDifference(g_, w_);                      \
    } while (0)

}  // namespace lxetest

namespace lxetest {

// Is `line` (without its line feed) one of the lines of `text`?
inline bool HasLine(const std::string& text, const std::string& line) {
    return ("\n" + text).find("\n" + line + "\n") != std::string::npos;
}

inline size_t Count(const std::string& text, const std::string& what) {
    size_t n = 0;
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++n;
    return n;
}

// Exports the document with the given selection to a fresh file and returns
// the text.
inline std::string ExportSelection(IVantriDati& doc, std::function<void(TExportLandXMLResult&)> select) {
    CTempDir dir;
    CExportUi ui;
    ui.path = dir.Path("out.xml");
    ui.select = std::move(select);
    return Export(doc, ui);
}

// The text between the first `from` and the following `to`, both included.
inline std::string Between(const std::string& text, const std::string& from, const std::string& to) {
    const size_t a = text.find(from);
    if (a == std::string::npos) return "";
    const size_t b = text.find(to, a);
    return b == std::string::npos ? "" : text.substr(a, b + to.size() - a);
}

}  // namespace lxetest
