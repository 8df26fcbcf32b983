// Writing a finished drawing file to disk, with the results of the save
// calls: the whole file is written through one descriptor, so that a full
// disk or a refused folder is told apart exactly.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace roadx::cad::dwg {

// Creates or truncates path and writes data. Returns a roadx::cad::kSave...
// result; a regular file that failed part way is removed.
int WriteFileBytes(const std::string& path, const std::vector<uint8_t>& data);

}  // namespace roadx::cad::dwg
