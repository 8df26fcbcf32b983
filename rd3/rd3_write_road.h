// The writer's plan chain and profile chain.
#pragma once
#include "rd3/rd3_file_out.h"

class CRoad;
class CProfileAlti;

namespace roadx::rd3 {

// The road record and one record per plan element. Elements the format
// cannot carry from this side (clothoids between two radii) are left out,
// but their links are still kept, so the next record names its own start as
// its previous record.
void WritePlanChain(Rd3FileOut& out, CRoad& road);

// The profile record and one vertex record per principal or terrain-derived
// vertex of the line.
void WriteProfileChain(Rd3FileOut& out, CProfileAlti& line);

}  // namespace roadx::rd3
