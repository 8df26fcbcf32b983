// The XML section reader: loading (encodings, byte order mark, namespaces,
// errors with their line), child enumeration in document order without heap
// allocation, existence tests, element text and XML, and the PX_ exchange
// functions.
#include <gtest/gtest.h>

#include <atomic>
#include <cfloat>
#include <climits>
#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include "landxml_import/text_lists.h"
#include "landxml_import/xml_reader.h"
#include "landxml_import/xml_text_encoding.h"
#include "lx1_test_util.h"

// Counts the heap allocations made while counting is switched on.
namespace {
std::atomic<bool> g_countNew{false};
std::atomic<long> g_newCalls{0};
}  // namespace

// The replacements pair malloc with free; the compiler cannot see that
// operator new below is the one that allocated.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
void* operator new(std::size_t n) {
    if (g_countNew.load(std::memory_order_relaxed)) g_newCalls.fetch_add(1, std::memory_order_relaxed);
    if (void* p = std::malloc(n ? n : 1)) return p;
    throw std::bad_alloc();
}
void operator delete(void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
#pragma GCC diagnostic pop

namespace {

using lx1test::CTempFile;

std::string Names(const XmlSection& parent, const char* tag) {
    std::string out;
    for (const XmlSection s : parent.Children(tag)) {
        CString n;
        PX_String(s, "name", n);
        out += n + ";";
    }
    return out;
}

TEST(XmlReader, EnumeratesChildrenOfOneTagInDocumentOrder) {
    CXmlReader r;
    ASSERT_TRUE(r.LoadFromText(R"(<LandXML><A name="1"/><B name="x"/><A name="2"><A name="inner"/></A><A name="3"/></LandXML>)"));
    EXPECT_EQ(Names(r.Root(), "A"), "1;2;3;");
    EXPECT_EQ(Names(r.Root(), "B"), "x;");
    EXPECT_EQ(Names(r.Root(), "C"), "");
    EXPECT_EQ(r.Root().GetSectionName(), "LandXML");
}

TEST(XmlReader, EnumerationMakesNoHeapAllocationPerElement) {
    std::string xml = "<LandXML><Pnts>";
    for (int i = 0; i < 20000; ++i) xml += "<P id=\"" + std::to_string(i) + "\">1 2 3</P>";
    xml += "</Pnts></LandXML>";
    CXmlReader r;
    ASSERT_TRUE(r.LoadFromText(xml));
    const XmlSection pnts = r.Root().Child("Pnts");
    long sum = 0;
    int count = 0;
    g_newCalls = 0;
    g_countNew = true;
    for (const XmlSection p : pnts.Children("P")) {
        int id = -1;
        PX_Int(p, "id", id);
        sum += id + static_cast<long>(p.Text().size());
        ++count;
    }
    g_countNew = false;
    EXPECT_EQ(g_newCalls.load(), 0);
    EXPECT_EQ(count, 20000);
    EXPECT_EQ(sum, 19999L * 20000 / 2 + 5L * 20000);
}

TEST(XmlReader, TagsAndAttributesCompareExactly) {
    CXmlReader r;
    ASSERT_TRUE(r.LoadFromText(R"(<LandXML><units Name="a"/><lx:Units xmlns:lx="u"/></LandXML>)"));
    EXPECT_FALSE(r.Root().IsSectionExists("Units"));
    EXPECT_TRUE(r.Root().IsSectionExists("units"));
    EXPECT_TRUE(r.Root().IsSectionExists("lx:Units"));
    const XmlSection u = r.Root().Child("units");
    EXPECT_FALSE(u.IsPropertyExists("name"));
    EXPECT_TRUE(u.IsPropertyExists("Name"));
}

TEST(XmlReader, NamespaceNoneAndByteOrderMarkReadTheSame) {
    const std::string body = R"(<Alignments><Alignment name="A1" staStart="12.5"/></Alignments></LandXML>)";
    const std::string variants[] = {
        R"(<?xml version="1.0"?><LandXML xmlns="http://www.landxml.org/schema/LandXML-1.2">)" + body,
        "<LandXML>" + body,
        "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\"?><LandXML xmlns=\"x\">" + body,
    };
    for (const std::string& v : variants) {
        CXmlReader r;
        ASSERT_TRUE(r.LoadFromText(v)) << r.GetStatus().Describe();
        double sta = 0;
        const XmlSection a = r.Root().Child("Alignments").Child("Alignment");
        EXPECT_TRUE(PX_Double(a, "staStart", sta));
        EXPECT_EQ(sta, 12.5);
    }
}

TEST(XmlReader, Latin1AndCp1252TextsBecomeUtf8) {
    // 0xE4 is ä in both; 0x80 is the euro sign in windows-1252 and the C1
    // control U+0080 in ISO-8859-1.
    const std::string latin1 = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><LandXML><S name=\"\xE4\x80\"/></LandXML>";
    const std::string cp1252 = "<?xml version='1.0' encoding = 'Windows-1252'?><LandXML><S name=\"\xE4\x80\x9F\"/></LandXML>";
    CXmlReader r;
    CString name;
    ASSERT_TRUE(r.LoadFromText(latin1));
    PX_String(r.Root().Child("S"), "name", name);
    EXPECT_EQ(name, "\xC3\xA4\xC2\x80");
    ASSERT_TRUE(r.LoadFromText(cp1252));
    PX_String(r.Root().Child("S"), "name", name);
    EXPECT_EQ(name, "\xC3\xA4\xE2\x82\xAC\xC5\xB8");  // ä € Ÿ
}

TEST(XmlReader, EveryCp1252ByteMapsToItsCodePoint) {
    // The 27 assigned characters of 0x80..0x9F, from the code page's table.
    const std::pair<unsigned char, const char*> table[] = {
        {0x80, "\u20AC"}, {0x82, "\u201A"}, {0x83, "\u0192"}, {0x84, "\u201E"}, {0x85, "\u2026"}, {0x86, "\u2020"},
        {0x87, "\u2021"}, {0x88, "\u02C6"}, {0x89, "\u2030"}, {0x8A, "\u0160"}, {0x8B, "\u2039"}, {0x8C, "\u0152"},
        {0x8E, "\u017D"}, {0x91, "\u2018"}, {0x92, "\u2019"}, {0x93, "\u201C"}, {0x94, "\u201D"}, {0x95, "\u2022"},
        {0x96, "\u2013"}, {0x97, "\u2014"}, {0x98, "\u02DC"}, {0x99, "\u2122"}, {0x9A, "\u0161"}, {0x9B, "\u203A"},
        {0x9C, "\u0153"}, {0x9E, "\u017E"}, {0x9F, "\u0178"},
    };
    for (const auto& [byte, utf8] : table) {
        std::string out;
        AppendCp1252AsUtf8(byte, out);
        EXPECT_EQ(out, utf8) << int(byte);
    }
    for (unsigned char unassigned : {0x81, 0x8D, 0x8F, 0x90, 0x9D}) {
        std::string out;
        AppendCp1252AsUtf8(unassigned, out);
        EXPECT_EQ(out, std::string("\xC2") + char(unassigned));
    }
    std::string out;
    AppendCp1252AsUtf8(0xFF, out);
    EXPECT_EQ(out, "\xC3\xBF");
}

TEST(XmlReader, Utf16FileWithByteOrderMarkIsRead) {
    const std::string ascii = "<LandXML><S name=\"ok\"/></LandXML>";
    std::string utf16 = "\xFF\xFE";
    for (char c : ascii) {
        utf16 += c;
        utf16 += '\0';
    }
    CXmlReader r;
    ASSERT_TRUE(r.LoadFromText(utf16));
    CString name;
    PX_String(r.Root().Child("S"), "name", name);
    EXPECT_EQ(name, "ok");
}

TEST(XmlReader, MalformedXmlReportsLineAndReason) {
    CXmlReader r;
    EXPECT_FALSE(r.LoadFromText("<LandXML>\n<A>\n<B></A>\n</LandXML>\n"));
    EXPECT_EQ(r.GetStatus().code, TXmlLoadStatus::MALFORMED);
    EXPECT_EQ(r.GetStatus().line, 3);
    EXPECT_EQ(r.GetStatus().Describe(), "malformed XML at line 3: end tag does not match its start tag");
    EXPECT_TRUE(r.Root().IsEmpty());

    EXPECT_FALSE(r.LoadFromText("<LandXML>\r\n<A b=\"1\r\n\r\n<C/></LandXML>"));
    EXPECT_EQ(r.GetStatus().code, TXmlLoadStatus::MALFORMED);
    EXPECT_GE(r.GetStatus().line, 2);

    EXPECT_FALSE(r.LoadFromText(""));
    EXPECT_EQ(r.GetStatus().Describe(), "malformed XML at line 1: no root element");
    EXPECT_FALSE(r.LoadFromText("<LandXML><A>"));
    EXPECT_EQ(r.GetStatus().code, TXmlLoadStatus::MALFORMED);
}

TEST(XmlReader, LineOfAnErrorInAConvertedFileCountsTheOriginalLines) {
    const std::string xml = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<LandXML>\n<S n=\"\xE4\xE4\"/>\n<T>\n</LandXML>";
    CXmlReader r;
    EXPECT_FALSE(r.LoadFromText(xml));
    EXPECT_EQ(r.GetStatus().line, 5);
}

TEST(XmlReader, WrongRootAndMissingFile) {
    CXmlReader r;
    EXPECT_FALSE(r.LoadFromText("<landxml/>"));
    EXPECT_EQ(r.GetStatus().code, TXmlLoadStatus::NO_ROOT);
    EXPECT_EQ(r.GetStatus().Describe(), "no LandXML root element (found 'landxml')");
    EXPECT_TRUE(r.Root().IsEmpty());
    EXPECT_FALSE(r.LoadFromFile("/nonexistent/roadx/none.xml"));
    EXPECT_EQ(r.GetStatus().code, TXmlLoadStatus::OPEN_FAILED);
    EXPECT_FALSE(r.LoadFromFile(nullptr));
}

TEST(XmlReader, LoadsAFile) {
    CTempFile f("<LandXML><A name=\"f\"/></LandXML>");
    CXmlReader r;
    ASSERT_TRUE(r.LoadFromFile(f.path().c_str()));
    EXPECT_EQ(Names(r.Root(), "A"), "f;");
}

TEST(XmlReader, PxFunctionsKeepTheTargetWhenMissing) {
    CXmlReader r;
    ASSERT_TRUE(r.LoadFromText(R"(<LandXML><E s="text" d=" 12.5e1xyz" i="-42.7" bad="abc" big="1e999" ibig="99999999999">  7 8 </E><Empty/></LandXML>)"));
    const XmlSection e = r.Root().Child("E");
    CString s = "keep";
    double d = 3.5;
    int i = 9;
    EXPECT_FALSE(PX_String(e, "none", s));
    EXPECT_FALSE(PX_Double(e, "none", d));
    EXPECT_FALSE(PX_Int(e, "none", i));
    EXPECT_EQ(s, "keep");
    EXPECT_EQ(d, 3.5);
    EXPECT_EQ(i, 9);
    EXPECT_TRUE(PX_String(e, "s", s));
    EXPECT_EQ(s, "text");
    EXPECT_TRUE(PX_Double(e, "d", d));
    EXPECT_EQ(d, 125.0);
    EXPECT_TRUE(PX_Int(e, "i", i));
    EXPECT_EQ(i, -42);
    PX_Double(e, "bad", d);
    EXPECT_EQ(d, 0.0);
    PX_Double(e, "big", d);
    EXPECT_EQ(d, DBL_MAX);
    PX_Int(e, "ibig", i);
    EXPECT_EQ(i, INT_MAX);
    // The element's own text with an empty name.
    EXPECT_TRUE(PX_String(e, "", s));
    EXPECT_EQ(s, "  7 8 ");
    EXPECT_TRUE(PX_Double(e, "", d));
    EXPECT_EQ(d, 7.0);
    EXPECT_EQ(e.Text(), "  7 8 ");
    // An element without text keeps the target.
    s = "keep";
    EXPECT_FALSE(PX_String(r.Root().Child("Empty"), "", s));
    EXPECT_EQ(s, "keep");
    EXPECT_EQ(r.Root().Child("Empty").Text(), "");
    // Four-argument form: the default when missing.
    d = 1.0;
    EXPECT_FALSE(PX_Double(e, "none", d, 1.7e200));
    EXPECT_EQ(d, 1.7e200);
    // An empty section answers "absent".
    const XmlSection none = r.Root().Child("Nothing");
    EXPECT_TRUE(none.IsEmpty());
    EXPECT_FALSE(PX_String(none, "s", s));
    EXPECT_FALSE(none.IsSectionExists("E"));
    EXPECT_EQ(none.GetXML(), "");
}

TEST(XmlReader, TextListsReadThroughTheReader) {
    CXmlReader r;
    ASSERT_TRUE(r.LoadFromText("<LandXML><P>5000  1000 12 </P></LandXML>"));
    std::vector<double> v;
    ReadDoubleList(r.Root().Child("P"), v, false);
    ASSERT_EQ(v.size(), 3u);
    EXPECT_EQ(v[0], 5000 * 0.3048006096012);
    EXPECT_EQ(v[2], 12 * 0.3048006096012);
}

TEST(XmlReader, EntitiesCdataAndLineEnds) {
    CXmlReader r;
    ASSERT_TRUE(r.LoadFromText("<LandXML><A n=\"a&amp;b&#x20AC;\">x&lt;y</A><B><![CDATA[1 2]]></B><C>1\r\n2</C></LandXML>"));
    CString s;
    PX_String(r.Root().Child("A"), "n", s);
    EXPECT_EQ(s, "a&b\xE2\x82\xAC");
    EXPECT_EQ(r.Root().Child("A").Text(), "x<y");
    EXPECT_EQ(r.Root().Child("B").Text(), "1 2");
    EXPECT_EQ(r.Root().Child("C").Text(), "1\n2");
}

TEST(XmlReader, GetXmlSerialisesTheElement) {
    CXmlReader r;
    ASSERT_TRUE(r.LoadFromText("<LandXML>\n  <CoordGeom a=\"1\">\n    <Curve r=\"&lt;Line\"/>\n    <Line>t</Line>\n  </CoordGeom></LandXML>"));
    EXPECT_EQ(r.Root().Child("CoordGeom").GetXML(), "<CoordGeom a=\"1\"><Curve r=\"&lt;Line\"/><Line>t</Line></CoordGeom>");
}

TEST(XmlTextEncoding, DeclaredEncodings) {
    EXPECT_EQ(DetectXmlEncoding("<?xml version=\"1.0\" encoding=\"iso-8859-1\"?><a/>"), TXmlDeclaredEncoding::LATIN1);
    EXPECT_EQ(DetectXmlEncoding("<?xml version=\"1.0\" encoding=\"WINDOWS-1252\"?><a/>"), TXmlDeclaredEncoding::CP1252);
    EXPECT_EQ(DetectXmlEncoding("<?xml version=\"1.0\" encoding=\"UTF-8\"?><a/>"), TXmlDeclaredEncoding::UTF8);
    EXPECT_EQ(DetectXmlEncoding("<a encoding=\"latin1\"/>"), TXmlDeclaredEncoding::UTF8);
    EXPECT_EQ(DetectXmlEncoding(std::string("\xFE\xFF\0<", 4)), TXmlDeclaredEncoding::WIDE);
    EXPECT_EQ(DetectXmlEncoding("<?xml encoding="), TXmlDeclaredEncoding::UTF8);
}

}  // namespace
