// The roadx program loads GDAL only for GIS outputs: the program itself
// needs no GDAL library, its module beside it does, and without the module a
// GIS output fails with one clear line while the other outputs still work.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "run_command.h"
#include "tests/common/test_data.h"

namespace {

using clitest::RunCommand;
using clitest::ShellQuote;

std::string Folder(const std::string& name) {
    const std::filesystem::path dir = std::filesystem::path(::testing::TempDir()) / name;
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);
    return dir.string();
}

TEST(GisModule, TheProgramLinksNoGdalItsModuleDoes) {
    const std::string exe = roadx::test::RoadxExe();
    const std::string module = std::filesystem::path(exe).parent_path() / "roadx_gis.so";
    const auto program = RunCommand("ldd " + ShellQuote(exe));
    ASSERT_EQ(program.exitCode, 0) << program.output;
    EXPECT_EQ(program.output.find("libgdal"), std::string::npos) << program.output;
    EXPECT_NE(program.output.find("libc.so"), std::string::npos) << program.output;
    const auto gis = RunCommand("ldd " + ShellQuote(module));
    ASSERT_EQ(gis.exitCode, 0) << gis.output;
    EXPECT_NE(gis.output.find("libgdal"), std::string::npos) << gis.output;
}

TEST(GisModule, WithoutItAGisOutputFailsAndOthersWork) {
    const std::string dir = Folder("gis_module_missing");
    const std::string input = ShellQuote(roadx::test::SourcePath("samples/road.xml"));
    const std::string gpkg = dir + "/road.gpkg";
    const std::string missing = "ROADX_GIS_MODULE=" + ShellQuote(dir + "/nowhere.so") + " ";
    const auto r = RunCommand(missing + ShellQuote(roadx::test::RoadxExe()) + " convert -q " + input + " -o " +
                              ShellQuote(gpkg) + " 2>&1");
    EXPECT_EQ(r.exitCode, 1) << r.output;
    EXPECT_EQ(r.output, "roadx: " + gpkg + ": the GIS module " + dir +
                            "/nowhere.so (ROADX_GIS_MODULE) cannot be read\n");
    EXPECT_FALSE(std::filesystem::exists(gpkg));
    const auto dxf = RunCommand(missing + ShellQuote(roadx::test::RoadxExe()) + " convert -q " + input + " -o " +
                                ShellQuote(dir + "/road.dxf") + " 2>&1");
    EXPECT_EQ(dxf.exitCode, 0) << dxf.output;
    EXPECT_TRUE(std::filesystem::exists(dir + "/road.dxf"));
    // The module named where it is: the GeoPackage is written.
    const std::string module = std::filesystem::path(roadx::test::RoadxExe()).parent_path() / "roadx_gis.so";
    const auto named = RunCommand("ROADX_GIS_MODULE=" + ShellQuote(module) + " " + ShellQuote(roadx::test::RoadxExe()) +
                                  " convert -q " + input + " -o " + ShellQuote(gpkg) + " 2>&1");
    EXPECT_EQ(named.exitCode, 0) << named.output;
    EXPECT_TRUE(std::filesystem::exists(gpkg));
    std::filesystem::remove_all(dir);
}

}  // namespace
