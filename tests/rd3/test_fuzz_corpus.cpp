// Replays the RD3 fuzz corpus (fuzz/corpus/rd3) through the same steps as
// the fuzz target, so every build exercises it without libFuzzer.
#include <gtest/gtest.h>

#include <filesystem>
#include <map>

#include "fuzz/rd3_fuzz_one.h"
#include "rd3_test_doc.h"
#include "tests/common/test_data.h"

namespace fs = std::filesystem;

namespace {

std::map<std::string, std::vector<uint8_t>> Corpus() {
    std::map<std::string, std::vector<uint8_t>> out;
    const fs::path dir = fs::path(roadx::test::SourcePath("fuzz/corpus/rd3"));
    for (const auto& e : fs::directory_iterator(dir))
        if (e.is_regular_file()) out[e.path().filename().string()] = rd3test::ReadFileBytes(e.path().string());
    return out;
}

}  // namespace

TEST(Rd3FuzzCorpus, EveryFileIsReadWrittenAndReadAgain) {
    const auto corpus = Corpus();
    ASSERT_GE(corpus.size(), 7u);
    const std::string scratch = testing::TempDir();
    for (const auto& [name, bytes] : corpus) {
        SCOPED_TRACE(name);
        const roadx::rd3::ReadEnd s = Rd3FuzzOne(bytes.data(), bytes.size(), scratch);
        EXPECT_LE(static_cast<int>(s), static_cast<int>(roadx::rd3::ReadEnd::kTooLarge));
    }
}

TEST(Rd3FuzzCorpus, SeedFilesReadAsIntended) {
    const auto corpus = Corpus();
    const std::map<std::string, roadx::rd3::ReadEnd> seeds = {
        {"writer_plan_profile.rd3", roadx::rd3::ReadEnd::kOk},
        {"writer_sections.rd3", roadx::rd3::ReadEnd::kOk},
        // Slot 1 points past the header, where nothing follows.
        {"writer_empty.rd3", roadx::rd3::ReadEnd::kTruncated},
        {"hand_short_forms.rd3", roadx::rd3::ReadEnd::kOk},
        {"hand_profile_next_zero.rd3", roadx::rd3::ReadEnd::kOk},
        {"hand_layout2_chain.rd3", roadx::rd3::ReadEnd::kOk},
        {"hand_layout3_chain.rd3", roadx::rd3::ReadEnd::kOk},
    };
    for (const auto& [name, want] : seeds) {
        SCOPED_TRACE(name);
        auto it = corpus.find(name);
        ASSERT_NE(it, corpus.end());
        rd3test::ImportRun run;
        run.Run(it->second);
        EXPECT_EQ(run.status, want) << roadx::rd3::ReadEndText(run.status);
        if (name == "writer_sections.rd3") {
            EXPECT_EQ(run.Lines("AddSection").size(), 4u);
        }
        if (name.find("layout") != std::string::npos) {
            EXPECT_EQ(run.Lines("AddSection").size(), 3u);
        }
    }
}
