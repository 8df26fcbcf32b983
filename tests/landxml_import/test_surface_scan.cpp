// The surfaces' points and faces read from the scanned file buffer against
// the same file read through the DOM alone: the whole builder trace and the
// way the import ends must be identical, on every sample file and on
// generated surfaces in every form the scan takes or leaves to the DOM.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "fuzz/landxml_fuzz_one.h"
#include "landxml_import/xml_reader.h"
#include "lx1_test_util.h"
#include "tests/common/test_data.h"

namespace {

using lx1test::CScriptedUi;
using lx1test::CTempFile;

struct TOneWay {
    TExchangeStatus status;
    std::vector<std::string> lines;
};

TOneWay ImportOneWay(const std::string& path, bool scan) {
    TOneWay r;
    CTraceMemory trace;
    CScriptedUi ui;
    CVantriDoc doc;
    {
        CTraceScope traceScope(&trace);
        CHostUiScope uiScope(&ui);
        r.status = roadx::landxml::ImportLandXMLStatus(&doc, path.c_str(), false, false, scan);
    }
    r.lines = std::move(trace.lines);
    return r;
}

// Imports a file both ways and compares; returns the scanned trace's length.
size_t ExpectSameBothWays(const std::string& path, const std::string& what) {
    const TOneWay scanned = ImportOneWay(path, true);
    const TOneWay dom = ImportOneWay(path, false);
    EXPECT_EQ(scanned.status.code, dom.status.code) << what;
    EXPECT_EQ(scanned.status.message, dom.status.message) << what;
    EXPECT_EQ(scanned.lines.size(), dom.lines.size()) << what;
    if (scanned.lines != dom.lines) {
        for (size_t i = 0; i < std::min(scanned.lines.size(), dom.lines.size()); ++i)
            if (scanned.lines[i] != dom.lines[i]) {
                ADD_FAILURE() << what << ": line " << i << "\n scanned: " << scanned.lines[i]
                              << "\n dom:     " << dom.lines[i];
                break;
            }
    }
    return scanned.lines.size();
}

// How many Pnts/Faces ranges the loader scans in a text.
size_t ScannedRanges(std::string_view xml) {
    CXmlReader reader;
    reader.EnableSurfaceScan(true);
    if (!reader.LoadFromText(xml)) return 0;
    return reader.SurfaceScan() ? reader.SurfaceScan()->Ranges() : 0;
}

std::string ReadBytes(const std::filesystem::path& p) {
    std::ifstream in(p, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

TEST(SurfaceScan, EverySampleFileGivesTheSameTraceBothWays) {
    size_t files = 0, scannedRanges = 0;
    for (const auto& e : std::filesystem::directory_iterator(roadx::test::DataPath("landxml"))) {
        if (e.path().extension() != ".xml") continue;
        ++files;
        ExpectSameBothWays(e.path().string(), e.path().filename().string());
        scannedRanges += ScannedRanges(ReadBytes(e.path()));
    }
    EXPECT_GE(files, 20u);
    // The scan really reads the samples' surfaces (not only the DOM).
    EXPECT_GE(scannedRanges, 20u);
}

TEST(SurfaceScan, FuzzCorpusGivesTheSameTraceBothWays) {
    const std::string scratch = ::testing::TempDir();
    size_t inputs = 0;
    for (const auto& e : std::filesystem::directory_iterator(roadx::test::SourcePath("fuzz/corpus/landxml"))) {
        if (!e.is_regular_file()) continue;
        const std::string data = ReadBytes(e.path());
        const TLandXmlFuzzRun run = LandXmlFuzzBoth(reinterpret_cast<const uint8_t*>(data.data()), data.size(), scratch);
        EXPECT_TRUE(run.pathsAgree) << e.path().filename();
        ++inputs;
    }
    EXPECT_GE(inputs, 20u);
}

// --- generated surfaces ------------------------------------------------------

std::string Doc(std::string_view surfaces, std::string_view prolog = "") {
    return "<?xml version=\"1.0\"?>\n" + std::string(prolog) +
           "<LandXML xmlns=\"http://www.landxml.org/schema/LandXML-1.2\"><Units><Metric/></Units>\n" +
           std::string(surfaces) + "\n</LandXML>\n";
}

std::string Surface(std::string_view name, std::string_view surfType, std::string_view pnts, std::string_view faces) {
    return "<Surfaces><Surface name=\"" + std::string(name) + "\"><Definition surfType=\"" + std::string(surfType) +
           "\">\n<Pnts>" + std::string(pnts) + "</Pnts>\n<Faces>" + std::string(faces) +
           "</Faces>\n</Definition></Surface></Surfaces>";
}

// Checks one text both ways and says how many ranges the scan took.
size_t Check(const std::string& xml, const std::string& what) {
    CTempFile file(xml, what + ".xml");
    ExpectSameBothWays(file.path(), what);
    return ScannedRanges(xml);
}

const char* kPnts = "\n\t<P id=\"1\">100 200 10</P>\n\t<P id=\"2\">101 200 11</P>\n\t<P id=\"3\">100 201 12</P>\n";
const char* kFaces = "\n\t<F>1 2 3</F>\n\t<F>3 2 1</F>\n";

TEST(SurfaceScan, PlainSurfaceIsScannedAndReadsTheSame) {
    EXPECT_EQ(Check(Doc(Surface("S", "TIN", kPnts, kFaces)), "plain"), 2u);
}

// Forms the scan reads itself: the trace must not change.
TEST(SurfaceScan, ScannedFormsReadTheSame) {
    struct Case {
        const char* name;
        std::string pnts, faces, surfType = "TIN";
    };
    const std::vector<Case> cases = {
        {"odd_spacing", "<P id=\"1\">  100   200\t10 </P><P id = '2' >101  200  11</P ><P id=\"3\">100 201 12</P>",
         "<F>  1  2   3  </F>"},
        {"tabs_breaks_in_text", "<P id=\"1\">100\t200 10</P><P id=\"2\">101\n200 11 5 7</P><P id=\"3\">1e2 2.01e2 x</P>",
         "<F>1\t2 3</F>"},
        {"missing_ids", "<P>1 2 3</P><P id=\"4\">4 5 6</P><P>7 8 9</P><P name=\"x\" id=\"9\" id=\"10\">1 1 1</P>",
         "<F>4 4 4</F>"},
        {"quadrilaterals", kPnts, "<F>1 2 3 1</F><F i=\"1\">3 2 1 2 9</F>", "grid"},
        {"empty_surftype", kPnts, "<F>1 2 3 1</F>", ""},
        {"non_numbers", "<P id=\"x1\">abc 200 10</P><P id=\"-0\">- + .</P><P id=\"99999999999\">1e999 -1e999 1e-999</P>",
         "<F>a b c</F><F>2147483648 -2147483649 0x10</F>"},
        {"crlf_between", "\r\n<P id=\"1\">1 2 3</P>\r\n<P id=\"2\">4 5 6</P>\r\n", "\r\n<F>1 2 2</F>\r\n"},
        {"utf8_and_gt", "<P id=\"1\" desc=\"é>x\">1 2 3>4</P>", "<F>1 1 1></F>"},
    };
    for (const Case& c : cases) {
        const std::string xml = Doc(Surface("S", c.surfType, c.pnts, c.faces));
        EXPECT_EQ(Check(xml, c.name), 2u) << c.name;
    }
}

// Forms the scan leaves to the DOM: still the same trace.
TEST(SurfaceScan, FormsLeftToTheDomReadTheSame) {
    struct Case {
        const char* name;
        std::string xml;
        size_t ranges;  // what the scan still takes
    };
    const std::vector<Case> cases = {
        {"cdata", Doc(Surface("S", "TIN", "<P id=\"1\"><![CDATA[1 2 3]]></P><P id=\"2\">4 5 6</P>", kFaces)), 1},
        {"comment_inside", Doc(Surface("S", "TIN", kPnts, "<F>1 2 3</F><!-- x --><F>1 2 3</F>")), 1},
        {"entity_text", Doc(Surface("S", "TIN", "<P id=\"1\">1&#32;2 3</P><P id=\"2\">4 5&amp;6</P>", kFaces)), 1},
        {"entity_id", Doc(Surface("S", "TIN", "<P id=\"&#49;\">1 2 3</P>", kFaces)), 1},
        {"cr_in_text", Doc(Surface("S", "TIN", "<P id=\"1\">1\r2 3</P>", kFaces)), 1},
        {"other_child", Doc(Surface("S", "TIN", "<P id=\"1\">1 2 3</P><Q>1</Q>", kFaces)), 1},
        {"dashes_in_text", Doc(Surface("S", "TIN", "<P id=\"1\">1 2 3--></P>", kFaces)), 1},
        {"too_short", Doc(Surface("S", "TIN", "<P/>", kFaces)), 1},
        {"doctype", Doc(Surface("S", "TIN", kPnts, kFaces), "<!DOCTYPE LandXML [<!ENTITY e \"1 2 3\">]>\n"), 0},
        {"comment_with_tags_before",
         Doc("<!-- <Surfaces><Surface><Definition><Pnts> -->" + Surface("S", "TIN", kPnts, kFaces)), 2},
        {"cdata_elsewhere", Doc("<Project name=\"p\"><![CDATA[</Pnts>]]></Project>" + Surface("S", "TIN", kPnts, kFaces)),
         2},
        {"second_pnts", Doc("<Surfaces><Surface name=\"S\"><Definition surfType=\"TIN\"><Pnts/><Pnts>" +
                            std::string(kPnts) + "</Pnts><Faces>" + kFaces + "</Faces></Definition></Surface></Surfaces>"),
         1},
        {"prefixed", Doc("<Surfaces><Surface name=\"S\"><Definition surfType=\"TIN\"><x:Pnts>" + std::string(kPnts) +
                         "</x:Pnts><Pnts>" + kPnts + "</Pnts></Definition></Surface></Surfaces>"),
         1},
        {"two_definitions", Doc("<Surfaces><Surface name=\"S\"><Definition surfType=\"TIN\"><Pnts>" + std::string(kPnts) +
                                "</Pnts></Definition><Definition><Pnts>" + kPnts + "</Pnts><Faces>" + kFaces +
                                "</Faces></Definition></Surface></Surfaces>"),
         3},
        {"malformed_after", Doc(Surface("S", "TIN", kPnts, kFaces) + "<Broken>"), 0},
        {"unclosed_p", Doc(Surface("S", "TIN", "<P id=\"1\">1 2 3", kFaces)), 0},
        {"bad_end_tag", Doc(Surface("S", "TIN", "<P id=\"1\">1 2 3</Q>", kFaces)), 0},
        // An attribute name may not start with a digit, '.' or '-' (found by
        // the fuzzer: the scan took it, the parser refuses the file).
        {"digit_attribute", Doc(Surface("S", "TIN", kPnts, "<F 4=\"3\">1 2 3</F>")), 0},
        {"dash_attribute", Doc(Surface("S", "TIN", "<P -a=\"3\">1 2 3</P>", kFaces)), 0},
    };
    for (const Case& c : cases) EXPECT_EQ(Check(c.xml, c.name), c.ranges) << c.name;
}

// Random surfaces mixing every form above, reproducible from the seed.
TEST(SurfaceScan, RandomSurfacesReadTheSame) {
    std::mt19937 rng(15);
    // Between elements any white space; inside texts no carriage return
    // (a text holding one is left to the DOM, checked above).
    const std::vector<std::string> seps = {" ", "  ", "\t", "\n", " \n ", "\r\n"};
    const std::vector<std::string> textSeps = {" ", "  ", "\t", "\n", " \n ", " "};
    const std::vector<std::string> tokens = {"1", "-2.5", "1e3", "x", "+7", ".5", "3e", "12abc", "0x1A", "2147483648"};
    auto pick = [&](const std::vector<std::string>& v) { return v[rng() % v.size()]; };
    auto text = [&](int n) {
        std::string t = rng() % 4 == 0 ? pick(textSeps) : "";
        for (int i = 0; i < n; ++i) t += (i ? pick(textSeps) : "") + (rng() % 3 ? std::to_string(rng() % 50) : pick(tokens));
        return t;
    };
    size_t scanned = 0;
    for (int doc = 0; doc < 60; ++doc) {
        std::string pnts, faces;
        const int np = 1 + static_cast<int>(rng() % 12);
        for (int i = 0; i < np; ++i) {
            pnts += pick(seps) + "<P";
            if (rng() % 5) pnts += " id=\"" + std::to_string(rng() % 15) + "\"";
            pnts += ">" + text(3 + static_cast<int>(rng() % 2)) + "</P>";
            if (rng() % 40 == 0) pnts += "<!-- c -->";
        }
        const int nf = static_cast<int>(rng() % 10);
        for (int i = 0; i < nf; ++i) faces += pick(seps) + "<F>" + text(3 + static_cast<int>(rng() % 2)) + "</F>";
        if (rng() % 30 == 0) faces += "<F>1 2</F>";
        const std::string surfType = rng() % 4 ? "TIN" : "grid";
        scanned += Check(Doc(Surface("S" + std::to_string(doc), surfType, pnts, faces)), "random" + std::to_string(doc));
    }
    EXPECT_GE(scanned, 60u);
}

}  // namespace
