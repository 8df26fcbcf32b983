// LandXML import rate on one file (made by gen_big_landxml): the time and
// MB/s of each phase, run in this order in one process:
//
//   baseline   a bare pugixml parse in place (text kept in the elements) and
//              std::from_chars over every P and F text: the floor any import
//              stands on;
//   load       the import's XML section reader: read and parse the file;
//   import     the whole import (load, scan, surfaces with every number read
//              and the triangulation built), everything chosen;
//   diag       the same import with a diagnostics sink (what roadx does):
//              its cost over `import` is what the diagnostics add.
//
// Peak memory is the process's, so run one phase per process to see each
// phase's own peak:  bench_landxml_import FILE [baseline|load|import|diag|all]
// (default all). Prints one line per phase; the import line also gives the
// number of operator new calls made during the import (the surface reader
// makes none per element, so a file of millions of P and F elements stays in
// the hundreds).
#include <sys/resource.h>

#include <atomic>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include <pugixml.hpp>

#include "host/document.h"
#include "host/null_ui.h"
#include "host/ui.h"
#include "landxml_import/import_landxml.h"
#include "landxml_import/xml_reader.h"

namespace {
std::atomic<long> g_newCalls{0};
}  // namespace

// Counts every allocation through operator new; malloc pairs with free.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
void* operator new(std::size_t n) {
    g_newCalls.fetch_add(1, std::memory_order_relaxed);
    if (void* p = std::malloc(n ? n : 1)) return p;
    throw std::bad_alloc();
}
void operator delete(void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
#pragma GCC diagnostic pop

namespace {

using Clock = std::chrono::steady_clock;

double Seconds(Clock::time_point since) { return std::chrono::duration<double>(Clock::now() - since).count(); }

long PeakRssKb() {
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return u.ru_maxrss;
}

long FileSize(const char* path) {
    FILE* f = std::fopen(path, "rb");
    if (!f) return -1;
    std::fseek(f, 0, SEEK_END);
    const long n = std::ftell(f);
    std::fclose(f);
    return n;
}

void Report(const char* phase, double secs, long bytes, double checksum) {
    const double mb = static_cast<double>(bytes) / 1e6;
    std::printf("%-8s %8.3f s %8.1f MB/s  peak RSS %7.1f MB (%.2fx file)  [%g]\n", phase, secs, mb / secs,
                PeakRssKb() / 1024.0, PeakRssKb() * 1024.0 / static_cast<double>(bytes), checksum);
}

// Sum of every number of a text, read with from_chars.
double SumNumbers(const char* s) {
    double sum = 0.0;
    const char* end = s + std::strlen(s);
    while (s < end) {
        while (s < end && *s == ' ') ++s;
        double v = 0.0;
        const auto r = std::from_chars(s, end, v);
        if (r.ec != std::errc()) break;
        sum += v;
        s = r.ptr;
    }
    return sum;
}

void WalkNumbers(pugi::xml_node n, double& sum) {
    for (pugi::xml_node c = n.first_child(); c; c = c.next_sibling()) {
        if (c.type() != pugi::node_element) continue;
        const char* name = c.name();
        if ((name[0] == 'P' || name[0] == 'F') && name[1] == 0)
            sum += SumNumbers(c.text().get());
        else
            WalkNumbers(c, sum);
    }
}

bool Baseline(const char* path, long bytes) {
    const auto t = Clock::now();
    std::string buf(static_cast<size_t>(bytes), '\0');
    FILE* f = std::fopen(path, "rb");
    if (!f || std::fread(buf.data(), 1, buf.size(), f) != buf.size()) return false;
    std::fclose(f);
    pugi::xml_document doc;
    if (!doc.load_buffer_inplace(buf.data(), buf.size(), pugi::parse_default | pugi::parse_embed_pcdata)) return false;
    double sum = 0.0;
    WalkNumbers(doc, sum);
    Report("baseline", Seconds(t), bytes, sum);
    return true;
}

bool Load(const char* path, long bytes) {
    const auto t = Clock::now();
    CXmlReader reader;
    if (!reader.LoadFromFile(path)) return false;
    Report("load", Seconds(t), bytes, 0.0);
    return true;
}

// Chooses every surface, alignment and point group.
class CChooseAll : public roadx::host::CNullUi {
public:
    bool DlgImportLandXML(bool, bool, const std::vector<CString>& s, const std::vector<CString>& a, bool,
                          const std::vector<CString>&, const std::vector<vesk::String>&,
                          TImportLandXMLResult& r) override {
        r.surfaces = s;
        r.alignments = a;
        r.importPoints = true;
        return true;
    }
    bool QuestionYesNo(const std::string&, const std::string&) override { return true; }
};

bool Import(const char* path, long bytes, bool withSink) {
    vesk::diag::CSink sink;
    CChooseAll ui;
    CHostUiScope scope(&ui);
    CVantriDoc doc;
    const long newsBefore = g_newCalls.load();
    const auto t = Clock::now();
    const TExchangeStatus st = roadx::landxml::ImportLandXMLStatus(&doc, path, false, false, true,
                                                                     withSink ? &sink : nullptr);
    const double secs = Seconds(t);
    const long news = g_newCalls.load() - newsBefore;
    if (!st.ok()) {
        std::fprintf(stderr, "import: %s\n", st.message.c_str());
        return false;
    }
    long tris = 0;
    for (unsigned i = 0; i < doc.GetLibDtm()->GetNoPrj(); ++i)
        tris += doc.GetLibDtm()->GetPrj(i)->GetTris()->GetNoTris();
    Report(withSink ? "diag" : "import", secs, bytes, static_cast<double>(tris));
    std::printf("         %ld operator new calls during the import\n", news);
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2 || argc > 3) {
        std::fprintf(stderr, "usage: bench_landxml_import FILE [baseline|load|import|diag|all]\n");
        return 2;
    }
    const char* path = argv[1];
    const std::string phase = argc == 3 ? argv[2] : "all";
    const long bytes = FileSize(path);
    if (bytes <= 0) {
        std::fprintf(stderr, "%s: cannot read\n", path);
        return 1;
    }
    bool ok = true;
    if (phase == "baseline" || phase == "all") ok = ok && Baseline(path, bytes);
    if (phase == "load" || phase == "all") ok = ok && Load(path, bytes);
    if (phase == "import" || phase == "all") ok = ok && Import(path, bytes, false);
    if (phase == "diag" || phase == "all") ok = ok && Import(path, bytes, true);
    return ok ? 0 : 1;
}
