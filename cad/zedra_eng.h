// CZedraEng: the host's CAD engine. It holds drawings (the layers of a
// drawing file), blocks and entities, and saves them as DXF.
//
// Handles: drawings, blocks and entities get 64-bit handles from one counter
// of the engine, starting at 1; 0 means none. Handles are the engine's own
// identities and are never reused within one engine; the file writer gives
// the objects of a file their own handles when it saves.
//
// Drawing names are unique without regard to ASCII case, as layer names are
// in drawing files. Every new engine has the drawing "Grafica", which is also
// the current drawing (where entities added with drawing 0 go).
#pragma once
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "cad/zedra_types.h"

struct TZedraDrawing {
    uint64_t handle = 0;
    std::string name;
    int type = 0;
    bool visible = true;
    bool locked = false;
    bool frozen = false;
    bool colourSet = false;  // false: the drawing has no colour of its own (written as 7)
    unsigned colour = 7;
    bool priv = false;  // made by the engine for its own use; purgeable when unused
    int refs = 0;       // holders pointing at this drawing (AddDrawingRef / SubDrawingRef)
};

struct TZedraBlock {
    uint64_t handle = 0;
    std::string name;
    roadx::cad::PNT_3D base;
    bool priv = false;
    bool userSymbol = false;
};

// Drawing-wide settings written to the header of a file (unless
// DontSaveZedraVars was called).
struct TZedraVars {
    int pdmode = 0;         // point display style
    double pdsize = 0.0;    // point display size
    int insunits = 6;       // metres
    int measurement = 1;    // metric
    int luprec = 4;         // linear display precision
};

class CZedraEventSentinel;

class CZedraEng {
public:
    using Listener = std::function<void()>;

    // type: the engine's kind, kept for the host (0 = plain drawing engine).
    // transactionManager: the host's undo manager; this engine has no undo and
    // only keeps the pointer. notify: whether changes are reported to the
    // listener at all.
    CZedraEng(int type, void* transactionManager, bool notify);
    CZedraEng(const CZedraEng&) = delete;
    CZedraEng& operator=(const CZedraEng&) = delete;

    int GetType() const { return type_; }
    void* GetTransactionManager() const { return transactionManager_; }

    // Replaces the whole content of this engine by a copy of src: drawings,
    // blocks, entities (when withEntities; otherwise only drawings and blocks)
    // and the handle counter, so every handle of src names the same object
    // here. The listener, the sentinels and the vars switch of this engine
    // stay as they are; the change is reported once.
    void CopiaDa(CZedraEng* src, bool withEntities);

    // ---- drawings
    // type: kept for the host (0 = normal drawing). priv: a drawing the engine
    // or a display object made for its own use, removed by
    // PurgePrivateObjects when nothing uses it. Returns 0 when the name is
    // empty or already taken.
    uint64_t AddDrawing(int type, const std::string& name, bool visible, bool locked, bool priv);
    uint64_t GetDrawingFromName(const std::string& name) const;
    std::string GetDrawingName(uint64_t h) const;  // "" for an unknown handle
    bool IsDrawingVisible(uint64_t h) const;
    bool IsDrawingLocked(uint64_t h) const;
    bool IsDrawingFrozen(uint64_t h) const;
    // False (nothing changed) for an unknown handle.
    bool SetDrawingVisible(uint64_t h, bool visible);
    bool SetDrawingLocked(uint64_t h, bool locked);
    bool SetDrawingFrozen(uint64_t h, bool frozen);
    // flag: "colour index set"; colour: ACI 1..255. An unknown handle gives
    // false and 7.
    bool GetDrawingColor(uint64_t h, bool& flag, unsigned& colour) const;
    // Refused (false) for an unknown handle or, with flag set, a colour
    // outside 1..255. With flag clear the colour is kept but not used.
    bool SetDrawingColor(uint64_t h, bool flag, unsigned colour);
    bool SetDrawingName(uint64_t h, const std::string& name);
    uint64_t GetCurrentDrawing() const { return current_; }
    bool SetCurrentDrawing(uint64_t h);
    const std::vector<TZedraDrawing>& GetDrawings() const { return drawings_; }
    const TZedraDrawing* FindDrawing(uint64_t h) const;

    // Reference counts of holders (libraries, roads, DTM projects) that draw
    // into a drawing: a referenced drawing is never purged. Both return the
    // new count, or -1 for a null engine or an unknown handle; the count
    // never goes below 0.
    static int AddDrawingRef(CZedraEng* eng, uint64_t h);
    static int SubDrawingRef(CZedraEng* eng, uint64_t h);
    int GetDrawingRefCount(uint64_t h) const;  // -1 for an unknown handle

    // ---- blocks
    // Returns 0 when the name is empty or taken (ASCII case ignored).
    uint64_t AddBlock(const std::string& name, bool priv, const roadx::cad::PNT_3D& base = {}, bool userSymbol = false);
    uint64_t GetBlockFromName(const std::string& name) const;
    const TZedraBlock* FindBlock(uint64_t h) const;
    const std::vector<TZedraBlock>& GetBlocks() const { return blocks_; }
    int GetNoBlocks() const { return static_cast<int>(blocks_.size()); }
    int GetNoBlocksNotPriv() const;
    bool SetBlockUserSymbol(uint64_t h, bool userSymbol);

    // Removes private blocks that no insert uses (with their entities, and
    // again for blocks that become unused that way) and private drawings
    // that no entity uses and nobody references. Returns how many blocks and
    // drawings were removed.
    int PurgePrivateObjects();

    // ---- entities. Each Add returns the new handle, or 0 (nothing added)
    // for an unknown drawing or block, a colour outside 0..256, a non-finite
    // number, a radius, text height or insert scale that is 0 (or a radius
    // or height below 0), or too few vertices.
    uint64_t AddPoint(const roadx::cad::TEntAttr& a, const roadx::cad::PNT_3D& p);
    uint64_t AddLine(const roadx::cad::TEntAttr& a, const roadx::cad::PNT_3D& p1, const roadx::cad::PNT_3D& p2);
    uint64_t AddArc(const roadx::cad::TEntAttr& a, const roadx::cad::PNT_3D& centre, double radius, double startRad, double endRad);
    uint64_t AddCircle(const roadx::cad::TEntAttr& a, const roadx::cad::PNT_3D& centre, double radius);
    // At least two vertices; elevation is the constant z of the whole polyline.
    uint64_t AddPolyline2D(const roadx::cad::TEntAttr& a, const std::vector<roadx::cad::TVertex2D>& v, bool closed, double elevation = 0.0);
    uint64_t AddPolyline3D(const roadx::cad::TEntAttr& a, const std::vector<roadx::cad::PNT_3D>& v, bool closed);
    // A triangle when p4 is omitted. invisibleEdges: bits 1, 2, 4, 8.
    uint64_t Add3DFace(const roadx::cad::TEntAttr& a, const roadx::cad::PNT_3D& p1, const roadx::cad::PNT_3D& p2, const roadx::cad::PNT_3D& p3);
    uint64_t Add3DFace(const roadx::cad::TEntAttr& a, const roadx::cad::PNT_3D& p1, const roadx::cad::PNT_3D& p2, const roadx::cad::PNT_3D& p3,
                       const roadx::cad::PNT_3D& p4, unsigned invisibleEdges = 0);
    // text: UTF-8 (invalid sequences are written as '?').
    uint64_t AddText(const roadx::cad::TEntAttr& a, const roadx::cad::PNT_3D& pos, double height, double rotationRad, std::string_view text,
                     roadx::cad::EHAlign h = roadx::cad::EHAlign::Left, roadx::cad::EVAlign v = roadx::cad::EVAlign::Baseline);
    // Refused when the insert would make a block contain itself.
    uint64_t AddInsert(const roadx::cad::TEntAttr& a, uint64_t block, const roadx::cad::PNT_3D& pos, double sx = 1.0, double sy = 1.0,
                       double sz = 1.0, double rotationRad = 0.0);

    size_t GetNoEntities() const;
    size_t GetNoEntities(roadx::cad::EEntKind kind) const;
    // Entities on drawing h, model space and blocks alike.
    size_t GetNoEntitiesOfDrawing(uint64_t h) const;
    size_t GetNoEntitiesOfDrawing(uint64_t h, roadx::cad::EEntKind kind) const;
    // Bulk removal (each is one pass over the entities). Return how many went.
    size_t DeleteEntitiesOfDrawing(uint64_t h);
    size_t DeleteEntitiesWithTag(uint32_t tag);
    bool DeleteEntity(uint64_t handle);

    // Read access for writers and tests.
    const std::vector<roadx::cad::TPoint>& Points() const { return points_; }
    const std::vector<roadx::cad::TLine>& Lines() const { return lines_; }
    const std::vector<roadx::cad::TArc>& Arcs() const { return arcs_; }
    const std::vector<roadx::cad::TCircle>& Circles() const { return circles_; }
    const std::vector<roadx::cad::TPoly2D>& Polys2D() const { return polys2d_; }
    const std::vector<roadx::cad::TPoly3D>& Polys3D() const { return polys3d_; }
    const std::vector<roadx::cad::TFace3D>& Faces() const { return faces_; }
    const std::vector<roadx::cad::TText>& Texts() const { return texts_; }
    const std::vector<roadx::cad::TInsert>& Inserts() const { return inserts_; }
    const roadx::cad::TVertex2D* Vertices2D(const roadx::cad::TPoly2D& p) const { return vtx2d_.data() + p.first; }
    const roadx::cad::PNT_3D* Vertices3D(const roadx::cad::TPoly3D& p) const { return vtx3d_.data() + p.first; }
    std::string_view TextOf(const roadx::cad::TText& t) const { return {textPool_.data() + t.first, t.len}; }
    const roadx::cad::TEntHdr& Header(const roadx::cad::TEntRef& r) const;
    // Every entity in creation (handle) order.
    std::vector<roadx::cad::TEntRef> CollectEntities() const;

    // ---- variables and notifications
    TZedraVars& Vars() { return vars_; }
    const TZedraVars& Vars() const { return vars_; }
    // After this the header of saved files carries only what a reader needs
    // (version, code page, handle seed), not the engine's variables.
    void DontSaveZedraVars() { saveVars_ = false; }
    bool GetSaveZedraVars() const { return saveVars_; }

    void SetListener(Listener l) { listener_ = std::move(l); }
    // Every change counts, held or not.
    uint64_t GetChangeCount() const { return changes_; }
    // Listener calls made, and changes that were held back by a sentinel.
    uint64_t GetNotificationsEmitted() const { return emitted_; }
    uint64_t GetNotificationsSuppressed() const { return suppressed_; }
    int GetSentinelDepth() const { return holdDepth_; }

    // ---- files. The five flags, in order:
    //   visibleOnly      entities of hidden drawings are not written
    //   unlockedOnly     entities of locked drawings are not written
    //   flatten          every z is written as 0
    //   usedDrawingsOnly only drawings that have written entities (and the
    //                    current one) become layers
    //   r12Handles       R12 files get handles too (R2000 always has them)
    // drawing: 0 writes every drawing; a drawing's handle writes only the
    // model-space entities of that drawing (an unknown handle counts as 0).
    // Results: see roadx::cad::kSave... (0 written, -1 disk full, -2 not allowed).
    int SaveFileDXF(const std::string& path, bool visibleOnly, bool unlockedOnly, bool flatten, bool usedDrawingsOnly,
                    bool r12Handles, enumZEDRA_DXFDWG_VER ver, uint64_t drawing);
    // An R2000 (AC1015) DWG file with the same layers, blocks, entities and
    // handles as SaveFileDXF would write. Only R2000 exists as DWG: for R12
    // it returns roadx::cad::kSaveDwgUnsupported and writes nothing.
    int SaveFileDWG(const std::string& path, bool visibleOnly, bool unlockedOnly, bool flatten, bool usedDrawingsOnly,
                    bool r12Handles, enumZEDRA_DXFDWG_VER ver, uint64_t drawing);
    // Why the last save could not create or write its file, in words and
    // without the path ("cannot create: No such file or directory"); "" after
    // a save that wrote its file or failed before creating one.
    const std::string& GetLastSaveError() const { return lastSaveError_; }

private:
    friend class CZedraEventSentinel;

    uint64_t NewHandle() { return nextHandle_++; }
    void Changed();
    void BeginHold() { ++holdDepth_; }
    void EndHold();
    void ReindexDrawings();
    void ReindexBlocks();
    TZedraDrawing* Drawing(uint64_t h);
    // Fills the header from attr; false when attr is not acceptable.
    bool MakeHeader(const roadx::cad::TEntAttr& a, roadx::cad::TEntHdr& h);
    bool BlockReaches(uint64_t from, uint64_t target) const;
    size_t EraseEntities(const std::function<bool(const roadx::cad::TEntHdr&)>& pred);
    void PackPools();

    int type_;
    void* transactionManager_;
    bool notify_;
    bool saveVars_ = true;
    std::string lastSaveError_;
    uint64_t nextHandle_ = 1;
    uint64_t current_ = 0;

    std::vector<TZedraDrawing> drawings_;
    std::unordered_map<uint64_t, size_t> drawingIndex_;
    std::vector<TZedraBlock> blocks_;
    std::unordered_map<uint64_t, size_t> blockIndex_;

    std::vector<roadx::cad::TPoint> points_;
    std::vector<roadx::cad::TLine> lines_;
    std::vector<roadx::cad::TArc> arcs_;
    std::vector<roadx::cad::TCircle> circles_;
    std::vector<roadx::cad::TPoly2D> polys2d_;
    std::vector<roadx::cad::TPoly3D> polys3d_;
    std::vector<roadx::cad::TFace3D> faces_;
    std::vector<roadx::cad::TText> texts_;
    std::vector<roadx::cad::TInsert> inserts_;
    std::vector<roadx::cad::TVertex2D> vtx2d_;
    std::vector<roadx::cad::PNT_3D> vtx3d_;
    std::vector<char> textPool_;

    TZedraVars vars_;
    Listener listener_;
    uint64_t changes_ = 0;
    uint64_t emitted_ = 0;
    uint64_t suppressed_ = 0;
    int holdDepth_ = 0;
    bool pending_ = false;
};
