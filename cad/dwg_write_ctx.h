// What the parts of the DWG writer share while one file is built: the
// engine, its object graph (the same as the DXF writer's, so both files
// give the same objects the same handles), the objects section as it grows
// and the handle and offset of every object in it.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cad/dwg_object.h"
#include "cad/dxf_graph.h"

class CZedraEng;

namespace roadx::cad::dwg {

struct TObjLoc {
    uint64_t handle;
    uint32_t offset;  // from the first byte of the objects section
};

class CDwgCtx {
public:
    CDwgCtx(const CZedraEng& eng, const dxf::TGraph& g, bool saveVars);

    const CZedraEng& eng;
    const dxf::TGraph& g;
    const bool saveVars;
    // Objects a DWG file has and a DXF file lacks take handles after the
    // graph's, so the shared objects keep the DXF's handles.
    const uint64_t vpEntHdrControl;
    const uint64_t handSeed;

    std::vector<uint8_t> objects;
    std::vector<TObjLoc> map;

    // Appends the finished object to the objects section.
    void Add(uint64_t handle, CObjWriter& w);

    double Z(double z) const { return g.opt.flatten ? 0.0 : z; }
    uint64_t LayerHandle(uint64_t drawing) const;
    // Names and texts in the file's code page (1252), other characters as
    // \U+XXXX escapes, as the DXF writer gives names.
    static std::string Text(std::string_view utf8);
};

// Handles of the entities of one block record, in the order the DXF
// writer gives them (user blocks first, then model space).
std::vector<uint64_t> EntityHandles(const CZedraEng& eng, const dxf::TGraph& g, const dxf::TBlockRec& b);

void WriteControlObjects(CDwgCtx& c);
void WriteTableRecords(CDwgCtx& c);
void WriteBlockHeaders(CDwgCtx& c);
void WriteBlocksAndEntities(CDwgCtx& c);
void WriteDictionaries(CDwgCtx& c);

// The data of the header variables section (without sentinels, size, CRC).
std::vector<uint8_t> HeaderVariables(const CDwgCtx& c);

}  // namespace roadx::cad::dwg
