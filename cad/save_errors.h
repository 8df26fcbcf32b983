// How the engine's savers turn an errno into their result codes (disk full,
// writing not allowed, other I/O error); DXF and DWG share it.
#pragma once

namespace zedra {

// A failure to create or open the output file.
int OpenErrorResult(int err);
// A failure while writing, flushing or closing it.
int WriteErrorResult(int err);

}  // namespace zedra
