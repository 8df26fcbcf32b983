// Helpers of the import driver and plan geometry tests: a scripted host
// dialog, LandXML texts written to temporary files, the recorded trace, and
// expected trace lines made with the trace's own formatter.
#pragma once
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/common/status.h"
#include "host/document.h"
#include "host/trace.h"
#include "host/null_ui.h"
#include "host/ui.h"
#include "landxml_import/import_landxml.h"

namespace lx1test {

// A LandXML text from its body, with or without a Units element.
inline std::string LandXml(std::string_view body, std::string_view units = "<Units><Metric/></Units>") {
    return std::string("<?xml version=\"1.0\"?>\n<LandXML xmlns=\"http://www.landxml.org/schema/LandXML-1.0\">\n") +
           std::string(units) + "\n" + std::string(body) + "\n</LandXML>\n";
}

// One alignment named `name` whose CoordGeom holds `elements`.
inline std::string Alignment(std::string_view name, std::string_view elements, std::string_view attrs = "") {
    return "<Alignments><Alignment name=\"" + std::string(name) + "\" " + std::string(attrs) + "><CoordGeom>" +
           std::string(elements) + "</CoordGeom></Alignment></Alignments>";
}

// The import dialog and the questions, answered by script. By default every
// listed surface and alignment is chosen, points too, and every question is
// answered yes.
class CScriptedUi : public roadx::host::CNullUi {
public:
    bool confirm = true;
    bool chooseAll = true;
    bool chooseSurfaces = true;  // with chooseAll
    bool choosePoints = true;    // with chooseAll
    TImportLandXMLResult choice;  // used when chooseAll is false
    CString terrain;              // with chooseAll
    std::vector<bool> answers;    // answers in order; yes once they run out
    // What the dialog was shown.
    int dialogs = 0;
    bool flagA = false, flagB = false;
    std::vector<CString> surfaces, alignments, crossSectSurfs;
    std::vector<vesk::String> codes;
    bool hasPointData = false;
    std::vector<std::pair<std::string, std::string>> questions;  // caption, text

    bool DlgImportLandXML(bool a, bool b, const std::vector<CString>& s, const std::vector<CString>& al, bool pts,
                          const std::vector<CString>& xs, const std::vector<vesk::String>& c,
                          TImportLandXMLResult& r) override {
        ++dialogs;
        flagA = a;
        flagB = b;
        surfaces = s;
        alignments = al;
        hasPointData = pts;
        crossSectSurfs = xs;
        codes = c;
        if (!confirm) return false;
        if (chooseAll) {
            if (chooseSurfaces) r.surfaces = s;
            r.alignments = al;
            r.importPoints = choosePoints;
            r.terrain = terrain;
        } else {
            r = choice;
        }
        return true;
    }
    bool QuestionYesNo(const std::string& caption, const std::string& text) override {
        const size_t i = questions.size();
        questions.emplace_back(caption, text);
        return i < answers.size() ? answers[i] : true;
    }
};

// A file in the test's temporary directory, removed at the end of the scope.
class CTempFile {
public:
    explicit CTempFile(std::string_view bytes, std::string_view name = "in.xml") {
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        path_ = (std::filesystem::temp_directory_path() /
                 (std::string("roadx_lx1_") + info->test_suite_name() + "_" + info->name() + "_" + std::string(name)))
                    .string();
        std::ofstream(path_, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }
    ~CTempFile() { std::remove(path_.c_str()); }
    const std::string& path() const { return path_; }

private:
    std::string path_;
};

// One import of a LandXML text into a fresh document, with the trace and the
// dialog recorded.
struct TImportRun {
    CTraceMemory trace;
    CScriptedUi ui;
    CVantriDoc doc;
    TExchangeStatus status;
    vesk::diag::CSink* sink = nullptr;  // diagnostics, when a test asks

    TExchangeStatus Run(std::string_view xml) {
        CTempFile file(xml);
        return RunFile(file.path());
    }
    TExchangeStatus RunFile(const std::string& path) {
        CTraceScope traceScope(&trace);
        CHostUiScope uiScope(&ui);
        status = roadx::landxml::ImportLandXMLStatus(&doc, path.c_str(), false, false, true, sink);
        return status;
    }
    // The recorded lines whose operation is one of `ops` (all when empty).
    std::vector<std::string> Lines(std::initializer_list<std::string_view> ops = {}) const {
        std::vector<std::string> out;
        for (const std::string& l : trace.lines) {
            const std::string_view op = std::string_view(l).substr(0, l.find(' '));
            bool keep = ops.size() == 0;
            for (std::string_view o : ops) keep = keep || o == op;
            if (keep) out.push_back(l);
        }
        return out;
    }
    // The plan element calls only.
    std::vector<std::string> PlanLines() const {
        return Lines({"AddRoadRect", "AddRoadArc", "AddRoadClot", "AddRoadClotCont"});
    }
};

inline CTraceLine L(std::string_view op) { return CTraceLine(op); }

// Expected trace lines, in order.
inline std::vector<std::string> Expect(std::initializer_list<CTraceLine> lines) {
    std::vector<std::string> out;
    for (const CTraceLine& l : lines) out.push_back(l.str());
    return out;
}

}  // namespace lx1test
