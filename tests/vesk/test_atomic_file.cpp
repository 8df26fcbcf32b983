#include "vesk/atomic_file.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

class AtomicFile : public ::testing::Test {
protected:
    void SetUp() override {
        char tmpl[] = "/tmp/roadx-atomic-XXXXXX";
        ASSERT_NE(::mkdtemp(tmpl), nullptr);
        dir_ = tmpl;
    }
    void TearDown() override { fs::remove_all(dir_); }

    std::string Path(const std::string& name) const { return dir_ + "/" + name; }
    static std::string Read(const std::string& path) {
        std::ifstream in(path, std::ios::binary);
        std::stringstream ss;
        ss << in.rdbuf();
        return ss.str();
    }
    static void Write(const std::string& path, const std::string& text) {
        std::ofstream(path, std::ios::binary) << text;
    }
    // Names in the folder, the hidden temporaries included.
    size_t Entries() const {
        size_t n = 0;
        for ([[maybe_unused]] const auto& e : fs::directory_iterator(dir_)) ++n;
        return n;
    }

    std::string dir_;
};

TEST_F(AtomicFile, ACommittedFileHasItsBytesAndNoTemporaryRemains) {
    vesk::CAtomicFile f;
    ASSERT_TRUE(f.Open(Path("a.txt"))) << f.Error();
    EXPECT_NE(f.TempPath(), Path("a.txt"));
    EXPECT_EQ(f.TempPath().rfind(dir_ + "/.a.txt.roadx-", 0), 0u) << f.TempPath();
    std::fputs("hello\n", f.Stream());
    EXPECT_FALSE(fs::exists(Path("a.txt")));
    ASSERT_TRUE(f.Commit()) << f.Error();
    EXPECT_EQ(Read(Path("a.txt")), "hello\n");
    EXPECT_EQ(Entries(), 1u);
}

TEST_F(AtomicFile, AnAbandonedWriteLeavesTheOldFileAsItWas) {
    Write(Path("a.txt"), "old");
    {
        vesk::CAtomicFile f;
        ASSERT_TRUE(f.Open(Path("a.txt")));
        ASSERT_TRUE(vesk::WriteAll(f.Fd(), "new", 3));
    }  // destroyed without Commit
    EXPECT_EQ(Read(Path("a.txt")), "old");
    EXPECT_EQ(Entries(), 1u);
}

TEST_F(AtomicFile, AReplacedFileKeepsItsModeAndANewOneTakesTheUmask) {
    Write(Path("a.txt"), "old");
    ::chmod(Path("a.txt").c_str(), 0640);
    vesk::CAtomicFile f;
    ASSERT_TRUE(f.Open(Path("a.txt")));
    ASSERT_TRUE(f.Commit());
    struct stat st{};
    ::stat(Path("a.txt").c_str(), &st);
    EXPECT_EQ(st.st_mode & 07777, 0640u);

    const mode_t mask = ::umask(022);
    vesk::CAtomicFile g;
    ASSERT_TRUE(g.Open(Path("b.txt")));
    ASSERT_TRUE(g.Commit());
    ::umask(mask);
    ::stat(Path("b.txt").c_str(), &st);
    EXPECT_EQ(st.st_mode & 07777, 0644u);
}

TEST_F(AtomicFile, AMissingFolderIsReportedInPlainWords) {
    vesk::CAtomicFile f;
    EXPECT_FALSE(f.Open(Path("nofolder/a.txt")));
    EXPECT_EQ(f.Error(), "cannot create: No such file or directory");
    EXPECT_FALSE(f.Open(dir_));
    EXPECT_EQ(f.Error(), "cannot create: Is a directory");
}

TEST_F(AtomicFile, ASymbolicLinkIsWrittenThroughAndStays) {
    Write(Path("real.txt"), "old");
    fs::create_symlink(Path("real.txt"), Path("link.txt"));
    vesk::CAtomicFile f;
    ASSERT_TRUE(f.Open(Path("link.txt")));
    std::fputs("new", f.Stream());
    ASSERT_TRUE(f.Commit());
    EXPECT_TRUE(fs::is_symlink(Path("link.txt")));
    EXPECT_EQ(Read(Path("real.txt")), "new");
}

TEST_F(AtomicFile, ADeviceIsWrittenInPlaceAndItsErrorsReported) {
    vesk::CAtomicFile null;
    ASSERT_TRUE(null.Open("/dev/null"));
    std::fputs("x", null.Stream());
    EXPECT_TRUE(null.Commit()) << null.Error();
    EXPECT_TRUE(fs::exists("/dev/null"));

    vesk::CAtomicFile full;
    ASSERT_TRUE(full.Open("/dev/full"));
    std::fputs("x", full.Stream());
    EXPECT_FALSE(full.Commit());
    EXPECT_EQ(full.Error(), "cannot write: No space left on device");
}

// A file-size limit, set in a child: the write fails with EFBIG instead of
// killing the process, and the previous file survives.
TEST_F(AtomicFile, AFileSizeLimitIsAnOrdinaryWriteError) {
    Write(Path("a.txt"), "old");
    const pid_t pid = ::fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
        vesk::ProtectWrites();
        struct rlimit lim{4096, 4096};
        ::setrlimit(RLIMIT_FSIZE, &lim);
        vesk::CAtomicFile f;
        if (!f.Open(Path("a.txt"))) ::_exit(10);
        const std::string block(100000, 'x');
        std::fwrite(block.data(), 1, block.size(), f.Stream());
        const bool ok = f.Commit();
        ::_exit(!ok && f.Error() == "cannot write: File too large" ? 0 : 11);
    }
    int status = 0;
    ::waitpid(pid, &status, 0);
    ASSERT_TRUE(WIFEXITED(status)) << "the child was killed by signal " << WTERMSIG(status);
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(Read(Path("a.txt")), "old");
    EXPECT_EQ(Entries(), 1u);
}

// SIGTERM while a temporary is open: the handler removes it, and the
// process still ends by the signal.
TEST_F(AtomicFile, ATerminatingSignalRemovesTheTemporary) {
    Write(Path("a.txt"), "old");
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    const pid_t pid = ::fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
        vesk::ProtectWrites();
        vesk::CAtomicFile f;
        if (!f.Open(Path("a.txt"))) ::_exit(10);
        std::fputs("partial", f.Stream());
        std::fflush(f.Stream());
        ::write(ready[1], "r", 1);
        for (;;) ::pause();
    }
    char c = 0;
    ASSERT_EQ(::read(ready[0], &c, 1), 1);
    EXPECT_EQ(Entries(), 2u);
    ::kill(pid, SIGTERM);
    int status = 0;
    ::waitpid(pid, &status, 0);
    ::close(ready[0]);
    ::close(ready[1]);
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGTERM);
    EXPECT_EQ(Read(Path("a.txt")), "old");
    EXPECT_EQ(Entries(), 1u);
}

TEST_F(AtomicFile, AFolderIsBuiltAsideAndReplacesTheOldOne) {
    fs::create_directory(Path("out"));
    Write(Path("out/old.txt"), "old");
    vesk::CAtomicFile f;
    ASSERT_TRUE(f.Open(Path("out"), vesk::CAtomicFile::EKind::Folder));
    Write(f.TempPath() + "/new.txt", "new");
    ASSERT_TRUE(f.Commit()) << f.Error();
    EXPECT_FALSE(fs::exists(Path("out/old.txt")));
    EXPECT_EQ(Read(Path("out/new.txt")), "new");
    EXPECT_EQ(Entries(), 1u);

    vesk::CAtomicFile g;
    ASSERT_TRUE(g.Open(Path("out"), vesk::CAtomicFile::EKind::Folder));
    Write(g.TempPath() + "/other.txt", "x");
    g.Abandon();
    EXPECT_EQ(Read(Path("out/new.txt")), "new");
    EXPECT_EQ(Entries(), 1u);
}

TEST_F(AtomicFile, AWriteErrorOfTheCallerFailsTheCommit) {
    Write(Path("a.txt"), "old");
    vesk::CAtomicFile f;
    ASSERT_TRUE(f.Open(Path("a.txt")));
    f.SetWriteError(ENOSPC);
    EXPECT_FALSE(f.Commit());
    EXPECT_EQ(f.Error(), "cannot write: No space left on device");
    EXPECT_EQ(Read(Path("a.txt")), "old");
    EXPECT_EQ(Entries(), 1u);
}

}  // namespace
