// Running the roadx program as a child process without a shell: its
// arguments as given (any bytes), standard output and error into files, a
// file-size limit set in the child before exec, and a handle to signal it
// while it runs.
#pragma once
#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "tests/common/test_data.h"

namespace clitest {

// A fresh folder under the system's temporary folder, removed with its
// content.
class CScratch {
public:
    CScratch() {
        std::string tmpl = (std::filesystem::temp_directory_path() / "roadx_cli_XXXXXX").string();
        if (mkdtemp(tmpl.data()) != nullptr) path_ = tmpl;
    }
    ~CScratch() {
        std::error_code ec;
        if (!path_.empty()) std::filesystem::remove_all(path_, ec);
    }
    CScratch(const CScratch&) = delete;
    CScratch& operator=(const CScratch&) = delete;
    std::string File(const std::string& name) const { return path_ + "/" + name; }
    const std::string& Path() const { return path_; }

private:
    std::string path_;
};

inline std::string ReadBytes(const std::string& p) {
    std::ifstream in(p, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

inline void WriteBytes(const std::string& p, const std::string& bytes) {
    std::ofstream out(p, std::ios::binary | std::ios::trunc);
    out << bytes;
}

inline bool PathExists(const std::string& p) {
    struct stat st{};
    return ::lstat(p.c_str(), &st) == 0;
}

// The temporary files of unfinished outputs left in a folder.
inline std::vector<std::string> Leftovers(const std::string& dir) {
    std::vector<std::string> out;
    for (const auto& e : std::filesystem::directory_iterator(dir)) {
        const std::string name = e.path().filename().string();
        if (name.find(".roadx-") != std::string::npos) out.push_back(name);
    }
    return out;
}

struct TChildResult {
    int exitCode = -1;  // -1 when ended by a signal
    int signal = 0;
    std::string err;  // standard error
};

class CRoadxChild {
public:
    // Starts roadx with args; standard output goes to outPath, standard
    // error to errPath; fileSizeLimit (bytes, 0 = none) is set in the child.
    CRoadxChild(const std::vector<std::string>& args, const std::string& errPath,
                const std::string& outPath = "/dev/null", rlim_t fileSizeLimit = 0)
        : errPath_(errPath) {
        std::vector<std::string> all{roadx::test::RoadxExe()};
        all.insert(all.end(), args.begin(), args.end());
        std::vector<char*> argv;
        for (std::string& a : all) argv.push_back(a.data());
        argv.push_back(nullptr);
        pid_ = ::fork();
        if (pid_ == 0) {
            const int err = ::open(errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
            const int out = ::open(outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
            if (err < 0 || out < 0) ::_exit(120);
            ::dup2(err, 2);
            ::dup2(out, 1);
            // The default action, so that only roadx itself can keep a
            // write past the limit from killing it.
            ::signal(SIGXFSZ, SIG_DFL);
            if (fileSizeLimit > 0) {
                rlimit lim{fileSizeLimit, fileSizeLimit};
                if (::setrlimit(RLIMIT_FSIZE, &lim) != 0) ::_exit(121);
            }
            ::setenv("LC_ALL", "C", 1);
            ::execv(argv[0], argv.data());
            ::_exit(122);
        }
    }
    ~CRoadxChild() {
        if (pid_ > 0 && !done_) {
            ::kill(pid_, SIGKILL);
            Wait();
        }
    }
    CRoadxChild(const CRoadxChild&) = delete;
    CRoadxChild& operator=(const CRoadxChild&) = delete;

    pid_t Pid() const { return pid_; }
    // True when the child has ended (it is then reaped).
    bool Ended() {
        if (done_) return true;
        int st = 0;
        if (::waitpid(pid_, &st, WNOHANG) != pid_) return false;
        Record(st);
        return true;
    }
    TChildResult Wait() {
        if (!done_) {
            int st = 0;
            while (::waitpid(pid_, &st, 0) < 0 && errno == EINTR) {
            }
            Record(st);
        }
        result_.err = ReadBytes(errPath_);
        return result_;
    }

private:
    void Record(int st) {
        done_ = true;
        if (WIFEXITED(st)) result_.exitCode = WEXITSTATUS(st);
        if (WIFSIGNALED(st)) result_.signal = WTERMSIG(st);
    }

    std::string errPath_;
    pid_t pid_ = -1;
    bool done_ = false;
    TChildResult result_;
};

// Runs roadx to its end.
inline TChildResult RunRoadx(const std::vector<std::string>& args, const std::string& errPath,
                             const std::string& outPath = "/dev/null", rlim_t fileSizeLimit = 0) {
    CRoadxChild child(args, errPath, outPath, fileSizeLimit);
    return child.Wait();
}

}  // namespace clitest
