// Replays the RD3 fuzz corpus (fuzz/corpus/rd3) through the same steps as
// the fuzz target, so every build exercises it without libFuzzer.
#include <gtest/gtest.h>

#include <filesystem>
#include <map>

#include "fuzz/rd3_fuzz_one.h"
#include "rd3_test_doc.h"

namespace fs = std::filesystem;

namespace {

std::map<std::string, std::vector<uint8_t>> Corpus() {
    std::map<std::string, std::vector<uint8_t>> out;
    const fs::path dir = fs::path(ROADX_SOURCE_DIR) / "fuzz" / "corpus" / "rd3";
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
        const Rd3ImportStatus s = Rd3FuzzOne(bytes.data(), bytes.size(), scratch);
        EXPECT_LE(static_cast<int>(s), static_cast<int>(Rd3ImportStatus::kTooLarge));
    }
}

TEST(Rd3FuzzCorpus, SeedFilesReadAsIntended) {
    const auto corpus = Corpus();
    const std::map<std::string, Rd3ImportStatus> seeds = {
        {"writer_plan_profile.rd3", Rd3ImportStatus::kOk},
        {"writer_sections.rd3", Rd3ImportStatus::kOk},
        // Slot 1 points past the header, where nothing follows.
        {"writer_empty.rd3", Rd3ImportStatus::kTruncated},
        {"hand_short_forms.rd3", Rd3ImportStatus::kOk},
        {"hand_profile_next_zero.rd3", Rd3ImportStatus::kOk},
        {"hand_layout2_chain.rd3", Rd3ImportStatus::kOk},
        {"hand_layout3_chain.rd3", Rd3ImportStatus::kOk},
    };
    for (const auto& [name, want] : seeds) {
        SCOPED_TRACE(name);
        auto it = corpus.find(name);
        ASSERT_NE(it, corpus.end());
        rd3test::ImportRun run;
        run.Run(it->second);
        EXPECT_EQ(run.status, want) << Rd3ImportStatusText(run.status);
        if (name == "writer_sections.rd3") {
            EXPECT_EQ(run.Lines("AddSection").size(), 4u);
        }
        if (name.find("layout") != std::string::npos) {
            EXPECT_EQ(run.Lines("AddSection").size(), 3u);
        }
    }
}
