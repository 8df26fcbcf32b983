// Every name survives in drawings: names of the document outside code page
// 1252 (Japanese, Cyrillic, a character beyond U+FFFF) are written as
// \U+XXXX escapes and read back equal by independent readers, ezdxf for DXF
// R2000 and R12 and libredwg-web for DWG; names that differ stay different.
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <set>

#include "tests/cli/roadx_child.h"
#include "tests/common/test_data.h"

namespace {

using clitest::CScratch;

// Two names that differ in one character only, and names of other scripts.
const std::vector<std::string> kNames = {"国道１号線", "国道２号線", "Дорога Ω", "\xF0\x9D\x94\xB8 Rue Élysée"};

bool ToolsInstalled() {
    const std::string modules = roadx::test::SourcePath("tests/node_modules/");
    return std::system("node --version >/dev/null 2>&1") == 0 &&
           clitest::PathExists(modules + "@mlightcad/libredwg-web") &&
           std::system("/usr/bin/python3 -c 'import ezdxf' >/dev/null 2>&1") == 0;
}

// A LandXML file with one surface and one straight alignment per name.
std::string WriteDocument(const CScratch& dir) {
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<LandXML version=\"1.2\"><Units><Metric "
                      "linearUnit=\"meter\" angularUnit=\"decimal degrees\" directionUnit=\"decimal degrees\"/>"
                      "</Units><Surfaces>\n";
    for (size_t i = 0; i < kNames.size(); ++i) {
        const std::string z = std::to_string(10 + i);
        xml += "<Surface name=\"" + kNames[i] + "\"><Definition surfType=\"TIN\"><Pnts><P id=\"1\">0 0 " + z +
               "</P><P id=\"2\">0 10 " + z + "</P><P id=\"3\">10 0 " + z + "</P></Pnts><Faces><F>1 2 3</F>"
               "</Faces></Definition></Surface>\n";
    }
    xml += "</Surfaces><Alignments>\n";
    for (size_t i = 0; i < kNames.size(); ++i) {
        const std::string x = std::to_string(100 * i);
        xml += "<Alignment name=\"" + kNames[i] + "\" length=\"50\" staStart=\"0\"><CoordGeom><Line><Start>0 " + x +
               "</Start><End>50 " + x + "</End></Line></CoordGeom></Alignment>\n";
    }
    xml += "</Alignments></LandXML>\n";
    clitest::WriteBytes(dir.File("names.xml"), xml);
    return dir.File("names.xml");
}

// Runs a shell command (its standard output as the command redirects it),
// its standard error to log; "" on success, else the status and the log.
std::string Shell(const std::string& cmd, const std::string& log) {
    const int rc = std::system((cmd + " 2>'" + log + "'").c_str());
    return rc == 0 ? "" : "status " + std::to_string(rc) + ": " + clitest::ReadBytes(log);
}

// The layers that end in a name of the document, by that name.
std::map<std::string, std::vector<std::string>> LayersByName(const std::vector<std::string>& layers) {
    std::map<std::string, std::vector<std::string>> by;
    for (const std::string& l : layers)
        for (const std::string& n : kNames)
            if (l.size() >= n.size() && l.compare(l.size() - n.size(), n.size(), n) == 0) by[n].push_back(l);
    return by;
}

void ExpectEveryName(const std::vector<std::string>& layers, const std::string& what) {
    SCOPED_TRACE(what);
    // Layers are all different, none keeps an undecoded escape or a '_' in
    // place of a character, and every name of the document has its layers
    // (its surface's and its road's).
    EXPECT_EQ(std::set<std::string>(layers.begin(), layers.end()).size(), layers.size());
    for (const std::string& l : layers) {
        EXPECT_EQ(l.find("\\U+"), std::string::npos) << l;
        EXPECT_EQ(l.find("__"), std::string::npos) << l;
    }
    const auto by = LayersByName(layers);
    for (const std::string& n : kNames) {
        ASSERT_TRUE(by.count(n)) << "no layer named after " << n;
        EXPECT_GE(by.at(n).size(), 2u) << n;  // the surface and the road
    }
}

TEST(NamesReadBack, DxfAndDwgKeepEveryCharacterOfEveryName) {
    ASSERT_TRUE(ToolsInstalled()) << "needs node with `npm ci --prefix tests` and python3-ezdxf";
    CScratch dir;
    const std::string in = WriteDocument(dir), log = dir.File("log.txt");
    const std::string roadx = "'" + roadx::test::RoadxExe() + "' convert '" + in + "' --yes -q -o ";
    std::vector<std::string> r2000;
    for (const char* version : {"R2000", "R12"}) {
        const std::string dxf = dir.File(std::string("names_") + version + ".dxf");
        ASSERT_EQ(Shell(roadx + "'" + dxf + "' --dxf-version " + version, log), "");
        const std::string json = dir.File("names.json");
        ASSERT_EQ(Shell("/usr/bin/python3 '" + roadx::test::SourcePath("tests/cli/read_dxf_names.py") + "' '" + dxf +
                            "' >'" + json + "'",
                        log),
                  "");
        const auto names = nlohmann::json::parse(clitest::ReadBytes(json));
        const auto layers = names.at("layers").get<std::vector<std::string>>();
        ExpectEveryName(layers, version);
        if (std::string(version) == "R2000") r2000 = layers;
    }

    const std::string dwg = dir.File("names.dwg"), summary = dir.File("dwg.json");
    ASSERT_EQ(Shell(roadx + "'" + dwg + "'", log), "");
    ASSERT_EQ(Shell("node '" + roadx::test::SourcePath("tests/dxfdwg/check_sample_dwg.mjs") + "' '" + dwg + "' '" +
                        summary + "' >/dev/null",
                    log),
              "");
    const auto s = nlohmann::json::parse(clitest::ReadBytes(summary));
    std::vector<std::string> layers;
    for (const auto& [name, _] : s.at("layers").items()) layers.push_back(name);
    ExpectEveryName(layers, "DWG");
    // The DWG has the DXF's layers, name for name (ezdxf adds "Defpoints").
    std::sort(layers.begin(), layers.end());
    std::vector<std::string> dxfLayers;
    for (const std::string& l : r2000)
        if (l != "Defpoints") dxfLayers.push_back(l);
    EXPECT_EQ(layers, dxfLayers);
}

}  // namespace
