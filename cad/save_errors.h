// How the engine's savers turn an errno into their result codes (disk full,
// writing not allowed, other I/O error), and a result into words; DXF and
// DWG share it.
#pragma once
#include <string>

namespace roadx::cad {

// A failure to create or open the output file.
int OpenErrorResult(int err);
// A failure while writing, flushing or closing it.
int WriteErrorResult(int err);

// One line naming a save result for the user ("disk full", ...); "" for
// kSaveOk. The one place a result becomes text.
std::string SaveResultText(int result);

}  // namespace roadx::cad
