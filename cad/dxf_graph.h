// The object graph of a drawing file, made from an engine before anything
// is written: which layers, blocks and entities go into the file, under which
// names, with which file handles and owners. The DXF writer walks it; a DWG
// writer needs the same graph (block records, layouts, dictionaries, owners).
//
// Handles of a file are the file's own, given in a fixed order: the fixed
// objects (tables, standard records, dictionaries, layouts), then one per
// layer, then three per block (record, BLOCK, ENDBLK), then the entities in
// the order they are written (BLOCKS section first, then ENTITIES); a
// POLYLINE written with VERTEX and SEQEND takes one handle for each of them.
#pragma once
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "cad/zedra_types.h"

class CZedraEng;

namespace roadx::cad::dxf {

struct TSaveOptions {
    bool visibleOnly = false;
    bool unlockedOnly = false;
    bool flatten = false;
    bool usedDrawingsOnly = false;
    bool r12Handles = false;
    enumZEDRA_DXFDWG_VER version = ZEDRA_DXFDWG_VER_R2000;
    uint64_t drawing = 0;  // 0: every drawing
};

struct TLayerRec {
    uint64_t handle = 0;
    uint64_t drawing = 0;  // engine drawing; 0 for a layer "0" the engine lacks
    std::string name;      // UTF-8, already valid as a table name
    int colour = 7;        // negative when the layer is off
    int flags = 0;         // group 70: 1 frozen, 4 locked
};

struct TBlockRec {
    uint64_t record = 0;  // BLOCK_RECORD
    uint64_t begin = 0;   // BLOCK
    uint64_t end = 0;     // ENDBLK
    uint64_t layout = 0;  // LAYOUT of *Model_Space and *Paper_Space
    uint64_t engineBlock = 0;
    std::string name;
    PNT_3D base;
    std::vector<TEntRef> ents;
};

// Fixed objects, in the order their handles are given.
struct TFixedHandles {
    uint64_t vportTable, vportActive;
    uint64_t ltypeTable, ltByBlock, ltByLayer, ltContinuous;
    uint64_t layerTable;
    uint64_t styleTable, styleStandard;
    uint64_t viewTable, ucsTable;
    uint64_t appidTable, appidAcad;
    uint64_t dimstyleTable, dimstyleStandard;
    uint64_t blockRecordTable;
    uint64_t dictRoot, dictGroup, dictLayout, dictMlineStyle, mlineStandard;
    uint64_t dictPlotStyle, plotStyleNormal;
    uint64_t layoutModel, layoutPaper;
};

struct TGraph {
    TSaveOptions opt;
    bool r2000 = true;
    bool handles = true;
    TFixedHandles fixed{};
    std::vector<TLayerRec> layers;  // layers[0] is "0"
    TBlockRec modelSpace;           // its ents are the ENTITIES section
    TBlockRec paperSpace;           // R2000 only; always empty
    std::vector<TBlockRec> blocks;  // user and private blocks that are written
    std::string currentLayer;
    uint64_t firstEntityHandle = 0;
    uint64_t handSeed = 0;  // the first handle not used
    bool hasExtents = false;
    PNT_3D extMin, extMax;  // of the model-space entities (inserts by their point)

    // Engine handle -> index into layers / blocks.
    std::unordered_map<uint64_t, size_t> layerOfDrawing;
    std::unordered_map<uint64_t, size_t> blockOfEngine;

    const std::string& LayerName(uint64_t drawing) const;
    const std::string& BlockName(uint64_t engineBlock) const;
};

// Handles one entity takes in a file of this graph's version.
uint64_t HandleCount(const CZedraEng& eng, const TGraph& g, const TEntRef& r);

TGraph BuildGraph(const CZedraEng& eng, const TSaveOptions& opt);

}  // namespace roadx::cad::dxf
