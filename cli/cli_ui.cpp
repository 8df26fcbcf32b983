#include "cli/cli_ui.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <iostream>

#include "host/document.h"

namespace roadx::cli {

namespace {

bool Contains(const std::vector<std::string>& v, const std::string& s) {
    return std::find(v.begin(), v.end(), s) != v.end();
}

// Names chosen by an option, or all of them when the option was not given.
std::vector<CString> Choose(const std::optional<std::vector<std::string>>& opt, const std::vector<CString>& all) {
    std::vector<CString> out;
    for (const auto& n : all)
        if (!opt || Contains(*opt, n)) out.push_back(n);
    return out;
}

void Remember(std::vector<std::string>& seen, const std::vector<CString>& names) {
    for (const auto& n : names)
        if (!Contains(seen, n)) seen.push_back(n);
}

}  // namespace

std::string AbsolutePath(const std::string& path) {
    if (path.empty()) return path;
    std::error_code ec;
    auto abs = std::filesystem::absolute(path, ec);
    return ec ? path : abs.lexically_normal().string();
}

bool CCliUi::DlgImportLandXML(bool, bool, const std::vector<CString>& surfaceNames,
                              const std::vector<CString>& alignmentNames, bool, const std::vector<CString>& xsNames,
                              const std::vector<vesk::String>& sectionCodes, TImportLandXMLResult& r) {
    Remember(offered_.alignments, alignmentNames);
    Remember(offered_.surfaces, surfaceNames);
    Remember(offered_.crossSectSurfs, xsNames);
    r.surfaces = Choose(imp_.surfaces, surfaceNames);
    r.alignments = Choose(imp_.alignments, alignmentNames);
    r.importPoints = !imp_.noPoints;
    r.terrain = imp_.terrain;
    r.crossSectCodes.clear();
    if (!imp_.sectionCodes.empty()) {
        // Exactly the pairs given, in order; a code the document lacks is made.
        for (const auto& pair : imp_.sectionCodes) {
            const size_t eq = pair.find('=');
            const std::string code = eq == std::string::npos ? "" : pair.substr(eq + 1);
            if (lib_ && !code.empty()) lib_->AddSectionCode(code, code);
            r.crossSectCodes.emplace_back(pair.substr(0, eq), code);
        }
        lastCodes_ = r.crossSectCodes;
        return true;
    }
    // Each surface name maps to the code whose code or name equals it; any
    // other name gets a new code of its own name, so nothing is dropped.
    (void)sectionCodes;
    for (const auto& name : xsNames) {
        std::string code = name;
        if (lib_) {
            const TProfileAltiCode* found = lib_->FindSectionAltiCode(name);
            for (const TProfileAltiCode* c : lib_->GetSectionCodes())
                if (!found && c->name == name) found = c;
            code = found ? found->code : lib_->AddSectionCode(name, name)->code;
        }
        r.crossSectCodes.emplace_back(name, code);
    }
    lastCodes_ = r.crossSectCodes;
    return true;
}

bool CCliUi::DlgExportLandXML(CLibCmp& cmp, CLibGps& gps, CLibPnt& pnt, CLibDtm& dtm, CLibRoad& road,
                              TExportLandXMLResult& r) {
    auto pick = [](const std::optional<std::vector<std::string>>& opt, const std::string& name) {
        return !opt || Contains(*opt, name);
    };
    for (int i = 0; i < cmp.GetJobArSize(); ++i)
        if (pick(exp_.jobs, cmp.GetJobAt(i)->GetNome())) r.jobs.push_back(cmp.GetJobAt(i));
    for (int i = 0; i < gps.GetGrpArSize(); ++i)
        if (pick(exp_.gps, gps.GetGrpAt(i)->GetNomeGrp())) r.gpsGroups.push_back(gps.GetGrpAt(i));
    for (int i = 0; i < pnt.GetGrpArSize(); ++i)
        if (pick(exp_.pointGroups, pnt.GetGrpAt(i)->GetName())) r.pointGroups.push_back(pnt.GetGrpAt(i));
    for (unsigned i = 0; i < dtm.GetNoPrj(); ++i)
        if (pick(exp_.surfaces, dtm.GetPrj(i)->GetName())) r.dtmPrjs.push_back(dtm.GetPrj(i));
    for (unsigned i = 0; i < road.GetNumRoads(); ++i)
        if (pick(exp_.roads, road.GetRoad(i)->GetName())) r.roads.push_back(road.GetRoad(i));
    return true;
}

bool CCliUi::DlgOpzTrasfToDxf(CZedraEng*, TOpzTrasfToDxf& opz) {
    // The drawing export's six options, in order: only visible drawings,
    // only unlocked drawings, flatten (z = 0), point clouds, only drawings
    // that hold entities, handles in R12 files. The command line writes
    // every visible drawing that has something on it, in 3D when the
    // document is shown in 3D, with clouds unless --no-clouds.
    opz.flags[0] = true;
    opz.flags[1] = false;
    opz.flags[2] = !opz.docFlag;
    opz.flags[3] = !exp_.noClouds;
    opz.flags[4] = true;
    opz.flags[5] = true;
    opz.drawing = 0;  // every drawing
    return true;
}

bool CCliUi::InpNomeFileExportDxfDwg(std::string& path, bool, enumZEDRA_DXFDWG_VER& ver, bool) {
    path = AbsolutePath(exp_.output);
    ver = exp_.dxfVersion == "R12" ? ZEDRA_DXFDWG_VER_R12 : ZEDRA_DXFDWG_VER_R2000;
    return !path.empty();
}

bool CCliUi::SaveFileDialog(const TSaveFileDialogArgs&, std::string& path) {
    path = AbsolutePath(exp_.output);
    return !path.empty();
}

void CCliUi::Message(const std::string& title, const std::string& text) {
    messages_.push_back(title.empty() ? text : title + ": " + text);
}

bool CCliUi::QuestionYesNo(const std::string& caption, const std::string& text) {
    if (imp_.yes) return true;
    if (imp_.no) return false;
    if (isatty(STDIN_FILENO) && isatty(STDERR_FILENO)) {
        std::fprintf(stderr, "%s\n%s [y/n] ", caption.c_str(), text.c_str());
        std::fflush(stderr);
        std::string answer;
        if (!std::getline(std::cin, answer)) return true;
        return !answer.empty() && (answer[0] == 'y' || answer[0] == 'Y' || answer[0] == 's' || answer[0] == 'S');
    }
    if (!imp_.quiet) std::fprintf(stderr, "roadx: warning: %s %s (answered yes)\n", caption.c_str(), text.c_str());
    return true;
}

}  // namespace roadx::cli
