// Whether two paths name the same file, so that an output never replaces an
// input: by device and inode, which sees through symbolic links, hard links
// and every spelling of a path.
#pragma once
#include <string>

namespace roadx::cli {

// True when a and b are the same file: when both exist, the same device and
// inode (links followed); otherwise the same folder (resolved) and name.
bool SameFile(const std::string& a, const std::string& b);

}  // namespace roadx::cli
