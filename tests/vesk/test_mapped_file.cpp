// A mapped file reads as the file, reads the same after its pages are given
// back, never changes the file when written, and is refused for what is not
// a regular file of at least one byte.
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "vesk/mapped_file.h"

namespace {

std::string Scratch(const std::string& name) {
    const std::filesystem::path dir = std::filesystem::path(::testing::TempDir()) / "mapped_file";
    std::filesystem::create_directories(dir);
    return (dir / name).string();
}

std::string Bytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

TEST(MappedFile, ReadsTheFileAndTheSameAfterRelease) {
    const std::string path = Scratch("pages.bin");
    std::string text;
    for (int i = 0; i < 300000; ++i) text += std::to_string(i * 7919LL % 100003) + (i % 13 ? ' ' : '\n');
    std::ofstream(path, std::ios::binary) << text;
    vesk::CMappedFile map;
    ASSERT_TRUE(map.Open(path.c_str()));
    ASSERT_EQ(map.Size(), text.size());
    EXPECT_EQ(std::string(map.Data(), map.Size()), text);
    map.Release(100, map.Size() - 100);
    map.Release(0, map.Size());
    map.Release(5, 3);                // nothing
    map.Release(0, map.Size() + 1);   // beyond the end: nothing
    EXPECT_EQ(std::string(map.Data(), map.Size()), text);
    // Written bytes are the mapping's own: the file stays.
    map.Data()[0] = '#';
    EXPECT_EQ(map.Data()[0], '#');
    EXPECT_EQ(Bytes(path), text);
    map.Close();
    EXPECT_FALSE(map.IsOpen());
    std::filesystem::remove(path);
}

TEST(MappedFile, RefusesWhatIsNotARegularFileWithBytes) {
    vesk::CMappedFile map;
    const std::string empty = Scratch("empty.bin");
    std::ofstream(empty, std::ios::binary).flush();
    EXPECT_FALSE(map.Open(empty.c_str()));
    EXPECT_FALSE(map.Open(std::filesystem::path(empty).parent_path().c_str()));
    EXPECT_FALSE(map.Open((empty + ".missing").c_str()));
    const std::string fifo = Scratch("pipe");
    std::filesystem::remove(fifo);
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    EXPECT_FALSE(map.Open(fifo.c_str()));  // refused without waiting for a writer
    EXPECT_FALSE(map.IsOpen());
    std::filesystem::remove(fifo);
    std::filesystem::remove(empty);
}

}  // namespace
