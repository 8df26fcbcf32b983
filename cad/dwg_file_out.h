// Writing a finished drawing file to disk, with the results of the save
// calls: the whole file is written through one descriptor of a temporary
// beside the target (vesk::CAtomicFile), so that a full disk or a refused
// folder is told apart exactly and a failed save leaves an older file of
// the target's name as it was.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace roadx::cad::dwg {

// Writes data as path. Returns a roadx::cad::kSave... result; on a failure
// nothing replaces path, and error (when given) says why in words, without
// the path ("cannot write: No space left on device").
int WriteFileBytes(const std::string& path, const std::vector<uint8_t>& data, std::string* error = nullptr);

}  // namespace roadx::cad::dwg
