// One fuzz input through the whole LandXML import: written to a scratch
// file, then imported with every surface, alignment and point chosen, the
// first surface as the roads' terrain, every cross-section surface mapped to
// a section code (with an empty code in front of some, so the code walk runs
// on), questions answered in turn yes and no, and the host trace formatting
// every builder call. Shared by the libFuzzer target and the corpus replay
// test.
#pragma once
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "exchange/common/status.h"
#include "host/document.h"
#include "host/null_ui.h"
#include "host/trace.h"
#include "host/ui.h"
#include "landxml_import/surface_scan.h"
#include "landxml_import/import_landxml.h"
#include "vesk/diagnostics.h"

class CLandXmlFuzzUi : public roadx::host::CNullUi {
public:
    bool DlgImportLandXML(bool, bool, const std::vector<CString>& surfaces, const std::vector<CString>& alignments,
                          bool, const std::vector<CString>& crossSectSurfs, const std::vector<vesk::String>& codes,
                          TImportLandXMLResult& r) override {
        r.surfaces = surfaces;
        r.alignments = alignments;
        r.importPoints = true;
        r.terrain = surfaces.empty() ? CString() : surfaces.front();
        for (size_t i = 0; i < crossSectSurfs.size(); ++i) {
            if (i % 2 == 1) r.crossSectCodes.emplace_back(crossSectSurfs[i], vesk::String());
            const vesk::String code = codes.empty() ? vesk::String("TER") : codes[i % codes.size()];
            r.crossSectCodes.emplace_back(crossSectSurfs[i], code);
        }
        return true;
    }
    bool QuestionYesNo(const std::string&, const std::string&) override { return (++questions_ % 2) == 1; }

private:
    int questions_ = 0;
};

// Formats every trace line and keeps a fingerprint of them all (count,
// bytes and a 64-bit FNV-1a hash of the lines in order).
class CLandXmlFuzzTrace : public CTraceSink {
public:
    void WriteLine(const std::string& line) override {
        bytes += line.size();
        ++lines;
        for (unsigned char c : line) hash = (hash ^ c) * 0x100000001b3ull;
        hash = (hash ^ 0x0a) * 0x100000001b3ull;
    }
    size_t bytes = 0;
    size_t lines = 0;
    uint64_t hash = 0xcbf29ce484222325ull;
    bool operator==(const CLandXmlFuzzTrace& o) const {
        return bytes == o.bytes && lines == o.lines && hash == o.hash;
    }
};

// How the two readings of one input went: the surfaces' points and faces read
// from the scanned buffer (the import's way; for inputs of odd size with the
// faces read on a second thread) and through the DOM alone.
struct TLandXmlFuzzRun {
    TExchangeStatus status;  // of the scanned reading
    bool pathsAgree = true;  // same status, message and trace both ways
};

inline TExchangeStatus LandXmlFuzzImport(const std::string& path, bool scanSurfaces, CLandXmlFuzzTrace& trace) {
    CLandXmlFuzzUi ui;
    CHostUiScope uiScope(&ui);
    CTraceScope traceScope(&trace);
    CVantriDoc doc;
    vesk::diag::CSink sink;  // the diagnostics run too, and must not change the trace
    return roadx::landxml::ImportLandXMLStatus(&doc, path.c_str(), false, false, scanSurfaces, &sink);
}

inline TLandXmlFuzzRun LandXmlFuzzBoth(const uint8_t* data, size_t size, const std::string& scratchDir) {
    const std::string path = scratchDir + "/landxml_fuzz_" + std::to_string(::getpid()) + ".xml";
    TLandXmlFuzzRun run;
    run.status = TExchangeStatus::Fail(TExchangeStatus::OPEN_FAILED, "scratch file");
    FILE* f = std::fopen(path.c_str(), "wb");
    if (!f) return run;
    const bool written = std::fwrite(data, 1, size, f) == size;
    std::fclose(f);
    if (written) {
        // Inputs of odd size read every Faces after a Pnts on the second thread.
        CSurfaceScan::SetAheadMinBytes(size % 2 ? 0 : CSurfaceScan::kAheadMinBytes);
        CLandXmlFuzzTrace scanned, dom;
        run.status = LandXmlFuzzImport(path, true, scanned);
        const TExchangeStatus domStatus = LandXmlFuzzImport(path, false, dom);
        run.pathsAgree = scanned == dom && run.status.code == domStatus.code && run.status.message == domStatus.message;
        CSurfaceScan::SetAheadMinBytes(CSurfaceScan::kAheadMinBytes);
    }
    std::remove(path.c_str());
    return run;
}

inline TExchangeStatus LandXmlFuzzOne(const uint8_t* data, size_t size, const std::string& scratchDir) {
    return LandXmlFuzzBoth(data, size, scratchDir).status;
}
