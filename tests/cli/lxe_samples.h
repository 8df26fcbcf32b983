// The real LandXML samples, imported with the command line's answers
// (everything chosen) and exported again.
#pragma once
#include <string>
#include <vector>

#include "cli/cli_ui.h"
#include "host/trace.h"
#include "landxml_import/import_landxml.h"
#include "tests/common/test_data.h"
#include "tests/landxml_export/lxe_test_util.h"

namespace lxetest {

inline const std::string kSamples = roadx::test::DataPath("landxml/");

// Imports a file into a fresh document, recording the builder trace; then,
// if `exportTo` is given, exports the whole document there.
inline std::vector<std::string> ImportAndExport(const std::string& path, const std::string& exportTo) {
    roadx::cli::ImportOptions imp;
    imp.yes = true;
    imp.quiet = true;
    roadx::cli::ExportOptions exp;
    exp.output = exportTo;
    CVantriDoc doc;
    roadx::cli::CCliUi ui(imp, exp);
    ui.SetProfileLibrary(doc.GetLibProfile());
    CHostUiScope uiScope(&ui);
    CTraceMemory trace;
    {
        CTraceScope scope(&trace);
        const TExchangeStatus st = roadx::landxml::ImportLandXMLStatus(&doc, path.c_str(), false, false);
        EXPECT_TRUE(st.ok()) << path << ": " << st.message;
    }
    if (!exportTo.empty()) {
        const TExchangeStatus st = roadx::landxml::ExportLandXMLStatus(doc);
        EXPECT_TRUE(st.ok()) << st.message;
    }
    return trace.lines;
}

}  // namespace lxetest
