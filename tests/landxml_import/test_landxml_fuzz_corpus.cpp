// Replays the LandXML fuzz corpus (fuzz/corpus/landxml: the seeds and every
// input the fuzzer was asked to keep) through the same harness the fuzz
// target runs, so that ordinary test runs, sanitizer builds included, cover
// it. Every input must finish; the seeds taken from whole sample files must
// import to their end, and the seeds that break a rule end on it.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/landxml_fuzz_one.h"
#include "tests/common/test_data.h"

namespace {

const std::filesystem::path kCorpus = std::filesystem::path(roadx::test::SourcePath("fuzz/corpus/landxml"));

std::vector<std::filesystem::path> CorpusFiles() {
    std::vector<std::filesystem::path> files;
    for (const auto& e : std::filesystem::directory_iterator(kCorpus))
        if (e.is_regular_file()) files.push_back(e.path());
    std::sort(files.begin(), files.end());
    return files;
}

std::string Bytes(const std::filesystem::path& p) {
    std::ifstream in(p, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

TEST(LandXmlFuzzCorpus, EveryInputFinishes) {
    const std::string scratch = ::testing::TempDir();
    int seeds = 0;
    for (const auto& file : CorpusFiles()) {
        const std::string data = Bytes(file);
        const TExchangeStatus st =
            LandXmlFuzzOne(reinterpret_cast<const uint8_t*>(data.data()), data.size(), scratch);
        const std::string name = file.filename().string();
        if (file.extension() != ".xml") continue;  // fuzzer findings: finishing is enough
        ++seeds;
        if (name.rfind("rule_", 0) == 0)
            EXPECT_EQ(st.code, TExchangeStatus::ENDED_EARLY) << name << ": " << st.message;
        else
            EXPECT_EQ(st.code, TExchangeStatus::OK) << name << ": " << st.message;
    }
    EXPECT_GE(seeds, 20);
}

}  // namespace
