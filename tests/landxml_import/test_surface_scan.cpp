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
#include "landxml_import/plain_numbers.h"
#include "landxml_import/surface_scan.h"
#include "landxml_import/text_lists.h"
#include "landxml_import/xml_reader.h"
#include "lx1_test_util.h"
#include "tests/common/test_data.h"

namespace {

using lx1test::CScriptedUi;
using lx1test::CTempFile;

struct TOneWay {
    TExchangeStatus status;
    std::vector<std::string> lines;
    std::vector<std::string> records;  // the diagnostics, one line each
};

TOneWay ImportOneWay(const std::string& path, bool scan, bool withSink = false) {
    TOneWay r;
    CTraceMemory trace;
    CScriptedUi ui;
    CVantriDoc doc;
    vesk::diag::CSink sink;
    {
        CTraceScope traceScope(&trace);
        CHostUiScope uiScope(&ui);
        r.status = roadx::landxml::ImportLandXMLStatus(&doc, path.c_str(), false, false, scan,
                                                       withSink ? &sink : nullptr);
    }
    r.lines = std::move(trace.lines);
    for (const auto& d : sink.Records())
        r.records.push_back(d.kind + " " + std::to_string(d.count) + " line " + std::to_string(d.line) + " " +
                            d.element + ": " + d.message + "; " + d.instead);
    return r;
}

// Imports a file both ways and compares; returns the scanned trace's length.
size_t ExpectSameBothWays(const std::string& path, const std::string& what, bool withSink = false) {
    const TOneWay scanned = ImportOneWay(path, true, withSink);
    const TOneWay dom = ImportOneWay(path, false, withSink);
    EXPECT_EQ(scanned.status.code, dom.status.code) << what;
    EXPECT_EQ(scanned.status.message, dom.status.message) << what;
    EXPECT_EQ(scanned.records, dom.records) << what;
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

// Every Faces that follows its Pnts read on the second thread, however
// small, for the life of a test.
class CFacesOnSecondThread {
public:
    CFacesOnSecondThread() { CSurfaceScan::SetAheadMinBytes(0); }
    ~CFacesOnSecondThread() { CSurfaceScan::SetAheadMinBytes(CSurfaceScan::kAheadMinBytes); }
};

TEST(SurfaceScan, EverySampleFileGivesTheSameTraceBothWays) {
    size_t files = 0, scannedRanges = 0;
    for (const auto& e : std::filesystem::directory_iterator(roadx::test::DataPath("landxml"))) {
        if (e.path().extension() != ".xml") continue;
        ++files;
        ExpectSameBothWays(e.path().string(), e.path().filename().string(), true);
        {
            CFacesOnSecondThread second;
            ExpectSameBothWays(e.path().string(), e.path().filename().string() + " (second thread)", true);
        }
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
        // The parser never sees a scanned range, so "-->" in a text and a
        // range of a few bytes are taken like any other.
        {"dashes_in_text", Doc(Surface("S", "TIN", "<P id=\"1\">1 2 3--></P>", kFaces)), 2},
        {"too_short", Doc(Surface("S", "TIN", "<P/>", kFaces)), 2},
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
        const std::string xml = Doc(Surface("S" + std::to_string(doc), surfType, pnts, faces));
        scanned += Check(xml, "random" + std::to_string(doc));
        CFacesOnSecondThread second;
        CTempFile file(xml, "random_second" + std::to_string(doc) + ".xml");
        ExpectSameBothWays(file.path(), "random (second thread) " + std::to_string(doc), true);
    }
    EXPECT_GE(scanned, 60u);
}

// The scan reads the common shapes <P id="7">1.5 -2 3</P> and <F>1 2 3</F>
// in one pass of its own, and every other shape the general way. Elements
// one byte away from those shapes (a byte inserted, removed or replaced)
// must read exactly as through the DOM: the same trace, the same end, the
// same diagnostics, whether the document is still well-formed or not.
TEST(SurfaceScan, ElementsNextToTheFastShapesReadTheSame) {
    std::mt19937 rng(4242);
    const std::string bytes = " \t\n-.0123456789e<>/\"'=PFid&x";
    auto mutate = [&](std::string t) {
        const size_t at = rng() % (t.size() + 1);
        const char c = bytes[rng() % bytes.size()];
        switch (rng() % 3) {
            case 0: t.insert(t.begin() + static_cast<ptrdiff_t>(at), c); break;
            case 1: if (at < t.size()) t.erase(at, 1); break;
            default: if (at < t.size()) t[at] = c; break;
        }
        return t;
    };
    size_t wellFormed = 0;
    for (int doc = 0; doc < 150; ++doc) {
        const bool tin = doc % 3 != 0;
        std::string pnts, faces;
        for (int i = 0; i < 12; ++i) {
            std::string p = "<P id=\"" + std::to_string(i + 1) + "\">" + std::to_string(i * 3) + ".25 -" +
                            std::to_string(i) + " 10.5</P>";
            pnts += (rng() % 12 == 0 ? mutate(p) : p) + "\n";
        }
        for (int i = 0; i < 12; ++i) {
            std::string f = "<F>" + std::to_string(1 + i % 12) + " " + std::to_string(1 + (i + 1) % 12) + " " +
                            std::to_string(1 + (i + 2) % 12) + (tin ? "" : " 4") + "</F>";
            faces += (rng() % 12 == 0 ? mutate(f) : f) + "\n";
        }
        const std::string xml = Doc(Surface("S", tin ? "TIN" : "grid", pnts, faces));
        CTempFile file(xml, "near_shape" + std::to_string(doc) + ".xml");
        ExpectSameBothWays(file.path(), "near shape " + std::to_string(doc), true);
        wellFormed += ScannedRanges(xml) > 0;
    }
    EXPECT_GT(wellFormed, 50u);
}

// The scan gives back the memory of a mapped file's ranges as it reads
// them, 8 MiB at a time, but keeps the pages from the first element it
// leaves to the ordinary reader. A surface of more than 8 MiB with such
// elements throughout, and one ending on a short point far in, read as
// through the DOM.
TEST(SurfaceScan, LargeRangesGivenBackAsReadReadTheSame) {
    for (const bool shortPoint : {false, true}) {
        std::string pnts;
        const int points = 260000;
        for (int i = 1; i <= points; ++i) {
            std::string text = std::to_string(i) + ".125 " + std::to_string(i % 977) + ".5 " + std::to_string(i % 31);
            if (i % 20000 == 0) text = "\t" + text;                   // not plain: read later
            if (shortPoint && i == 190000) text = "1 2";              // ends the import
            pnts += "<P id=\"" + std::to_string(i) + "\">" + text + "</P>\n";
        }
        std::string faces;
        for (int i = 1; i + 2 <= 3000; ++i)
            faces += "<F>" + std::to_string(i) + " " + std::to_string(i + 1) + " " + std::to_string(i + 2) + "</F>\n";
        const std::string xml = Doc(Surface("Big", "TIN", pnts, faces));
        ASSERT_GT(xml.size(), size_t{9} << 20);
        CTempFile file(xml, shortPoint ? "large_short.xml" : "large.xml");
        const size_t lines = ExpectSameBothWays(file.path(), shortPoint ? "large, short point" : "large", true);
        EXPECT_GT(lines, shortPoint ? 189000u : 260000u);
        EXPECT_EQ(ScannedRanges(xml), 2u);
    }
}

// A Faces read ahead that the walk never takes (the "</Pnts" found ahead is
// inside a comment) must leave nothing behind for the next surface's Faces
// read ahead (found by the fuzzer: the second list began with the first
// one's numbers).
TEST(SurfaceScan, FacesReadAheadButNotTakenLeaveNothingBehind) {
    const std::string first = "<Surface name=\"A\"><Definition surfType=\"TIN\"><Pnts><P id=\"1\">1 2 3</P>"
                              "<P id=\"2\">4 5 6</P><P id=\"3\">7 8 9</P><!-- </Pnts> <Faces><F>9 9 9</F></Faces> -->"
                              "</Pnts><Faces><F>1 2 3</F></Faces></Definition></Surface>";
    const std::string second = "<Surface name=\"B\"><Definition surfType=\"grid\"><Pnts><P id=\"1\">0 0 1</P>"
                               "<P id=\"2\">0 1 1</P><P id=\"3\">1 1 1</P><P id=\"4\">1 0 1</P></Pnts>"
                               "<Faces><F>1 2 3 4</F><F>4 3 2 1</F></Faces></Definition></Surface>";
    const std::string xml = Doc("<Surfaces>" + first + second + "</Surfaces>");
    CFacesOnSecondThread second_thread;
    EXPECT_EQ(Check(xml, "ahead_not_taken"), 3u);
}

// Surfaces large enough that their faces are read on a second thread while
// the points are read: plain faces mixed with every other form (tabs,
// signs, ten digits, too few or too many ids, non-numbers), TIN and
// quadrilateral, with and without a diagnostics sink, and imports that end
// on a short point (while the second thread is still reading) or on a short
// face near the end. Trace, status and diagnostics must match the DOM's.
TEST(SurfaceScan, FacesReadOnASecondThreadReadTheSame) {
    std::mt19937 rng(1515);
    // Forms with enough ids for either kind of surface (a short face ends
    // the import; that is its own case below).
    const std::vector<std::string> odd = {"1\t2 3 4 5", "+1 2 3 4", "1 2 3 4 5",  "0012 7 9 1", "1234567890 1 2 3",
                                          "a 2 3 4",   "1 2 3e1 4", "\n1 2 3 4 ", "1  2   3 4", "-0 1 2 3",
                                          "99 98 97 96 95", "12 13 14 15"};
    struct Case {
        const char* name;
        bool tin;
        int shortPointAt;  // -1: none
        bool shortFaceAtEnd;
        bool sink;
    };
    const Case cases[] = {{"tin", true, -1, false, true},       {"grid", false, -1, false, true},
                          {"tin_no_sink", true, -1, false, false}, {"short_point", true, 150, false, true},
                          {"short_face_at_end", true, -1, true, true}};
    // Enough faces and points that their numbers fill several blocks.
    const size_t faces = 51000;
    CFacesOnSecondThread second;
    for (const Case& c : cases) {
        std::string pnts, fs;
        for (int i = 0; i < 20000; ++i)
            pnts += "<P id=\"" + std::to_string(i) + "\">" +
                    (i == c.shortPointAt ? std::string("1 2") : std::to_string(i) + " " + std::to_string(i % 7) + " 1") +
                    "</P>\n";
        for (size_t f = 0; f < faces; ++f) {
            std::string t;
            if (rng() % 50 == 0) {
                t = odd[rng() % odd.size()];
            } else {
                const int n = c.tin ? 3 : 4;
                for (int k = 0; k < n; ++k) t += (k ? " " : "") + std::to_string(rng() % 220);
            }
            fs += "<F>" + t + "</F>\n";
        }
        if (c.shortFaceAtEnd) fs += "<F>7</F>\n";
        const std::string xml = Doc(Surface("S", c.tin ? "TIN" : "grid", pnts, fs));
        CTempFile file(xml, std::string("second_thread_") + c.name + ".xml");
        // One trace line a triangle when the import reads to the end.
        const size_t lines = ExpectSameBothWays(file.path(), c.name, c.sink);
        if (c.shortPointAt < 0) {
            EXPECT_GT(lines, faces) << c.name;
        }
        EXPECT_EQ(ScannedRanges(xml), 2u) << c.name;
    }
}

// A face the second thread takes must read as the text lists read it, with
// nothing to report; every other text is left to the ordinary reader.
TEST(SurfaceScan, PlainFacesAreExactlyThoseTheTextListsReadWithoutReport) {
    std::mt19937 rng(77);
    const std::vector<std::string> pieces = {"1", "0", "42", "007", "123456789", "1234567890", "+3", "-3", "x",
                                             " ", "  ", "\t", "\n", "3e2", "2147483647", "\r", "9 "};
    size_t plain = 0;
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        const int n = 1 + static_cast<int>(rng() % 7);
        if (rng() % 2) {
            // Mostly numbers, blanks around and between as they come.
            for (int k = 0; k < 3 + static_cast<int>(rng() % 2); ++k)
                text += std::string(rng() % 3, ' ') + std::to_string(rng() % 100000) + (rng() % 3 ? " " : "");
        } else {
            for (int k = 0; k < n; ++k) text += pieces[rng() % pieces.size()] + (rng() % 2 ? " " : "");
        }
        for (int corners : {3, 4}) {
            int ids[4] = {-5, -5, -5, -5};
            const bool taken = plain_numbers::ReadIds(text, corners, ids);
            std::vector<int> values;
            ReadIntList(text, values);
            bool allDigits = true;
            ForEachToken(text, [&](std::string_view tok) {
                allDigits = allDigits && tok.size() <= 9 && tok.find_first_not_of("0123456789") == std::string_view::npos;
            });
            const bool expected = allDigits && values.size() == static_cast<size_t>(corners);
            ASSERT_EQ(taken, expected) << "[" << text << "] " << corners;
            if (!taken) continue;
            ++plain;
            for (int k = 0; k < corners; ++k) EXPECT_EQ(ids[k], values[static_cast<size_t>(k)]) << text;
        }
    }
    EXPECT_GT(plain, 500u);
}

}  // namespace
