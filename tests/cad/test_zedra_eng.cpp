// The engine: drawings, handles, names, colours, references, blocks,
// entities, copy, purge, notifications and user symbols.
#include <gtest/gtest.h>

#include "cad/doc_symbol_manager.h"
#include "cad/zedra_eng.h"
#include "cad/zedra_event_sentinel.h"

using namespace roadx::cad;

TEST(ZedraEng, NewEngineHasGraficaAsCurrentDrawing) {
    CZedraEng eng(0, nullptr, true);
    ASSERT_EQ(eng.GetDrawings().size(), 1u);
    const uint64_t g = eng.GetDrawingFromName("Grafica");
    EXPECT_NE(g, 0u);
    EXPECT_EQ(eng.GetCurrentDrawing(), g);
    EXPECT_EQ(eng.GetDrawingName(g), "Grafica");
    EXPECT_TRUE(eng.IsDrawingVisible(g));
    EXPECT_FALSE(eng.IsDrawingLocked(g));
    bool flag = true;
    unsigned colour = 0;
    EXPECT_TRUE(eng.GetDrawingColor(g, flag, colour));
    EXPECT_FALSE(flag);
    EXPECT_EQ(eng.GetChangeCount(), 0u);
    EXPECT_EQ(eng.GetNoBlocksNotPriv(), 0);
}

TEST(ZedraEng, DrawingsGetDistinctHandlesAndUniqueNames) {
    CZedraEng eng(0, nullptr, true);
    const uint64_t a = eng.AddDrawing(0, "Strade", true, false, false);
    const uint64_t b = eng.AddDrawing(0, "Punti", false, true, false);
    EXPECT_NE(a, 0u);
    EXPECT_NE(b, 0u);
    EXPECT_NE(a, b);
    EXPECT_NE(a, eng.GetDrawingFromName("Grafica"));
    EXPECT_EQ(eng.AddDrawing(0, "STRADE", true, false, false), 0u);  // names ignore ASCII case
    EXPECT_EQ(eng.AddDrawing(0, "", true, false, false), 0u);
    EXPECT_EQ(eng.GetDrawingFromName("strade"), a);
    EXPECT_EQ(eng.GetDrawingFromName("Manca"), 0u);
    EXPECT_FALSE(eng.IsDrawingVisible(b));
    EXPECT_TRUE(eng.IsDrawingLocked(b));
    EXPECT_EQ(eng.GetDrawingName(12345), "");
    EXPECT_FALSE(eng.IsDrawingVisible(0));
    EXPECT_TRUE(eng.SetDrawingName(a, "Assi"));
    EXPECT_FALSE(eng.SetDrawingName(a, "punti"));
    EXPECT_EQ(eng.GetDrawingFromName("Strade"), 0u);
    EXPECT_EQ(eng.GetDrawingFromName("Assi"), a);
}

TEST(ZedraEng, DrawingColours) {
    CZedraEng eng(0, nullptr, true);
    const uint64_t a = eng.AddDrawing(0, "A", true, false, false);
    EXPECT_TRUE(eng.SetDrawingColor(a, true, 42));
    bool flag = false;
    unsigned colour = 0;
    eng.GetDrawingColor(a, flag, colour);
    EXPECT_TRUE(flag);
    EXPECT_EQ(colour, 42u);
    EXPECT_FALSE(eng.SetDrawingColor(a, true, 0));
    EXPECT_FALSE(eng.SetDrawingColor(a, true, 256));
    EXPECT_FALSE(eng.SetDrawingColor(999, true, 3));
    eng.GetDrawingColor(a, flag, colour);
    EXPECT_EQ(colour, 42u);
    EXPECT_TRUE(eng.SetDrawingColor(a, false, 0));
    eng.GetDrawingColor(a, flag, colour);
    EXPECT_FALSE(flag);
    EXPECT_FALSE(eng.GetDrawingColor(999, flag, colour));
    EXPECT_EQ(colour, 7u);
}

TEST(ZedraEng, DrawingReferenceCounts) {
    CZedraEng eng(0, nullptr, true);
    const uint64_t a = eng.AddDrawing(0, "A", true, false, false);
    EXPECT_EQ(eng.GetDrawingRefCount(a), 0);
    EXPECT_EQ(CZedraEng::AddDrawingRef(&eng, a), 1);
    EXPECT_EQ(CZedraEng::AddDrawingRef(&eng, a), 2);
    EXPECT_EQ(CZedraEng::SubDrawingRef(&eng, a), 1);
    EXPECT_EQ(CZedraEng::SubDrawingRef(&eng, a), 0);
    EXPECT_EQ(CZedraEng::SubDrawingRef(&eng, a), 0);  // never below zero
    EXPECT_EQ(CZedraEng::AddDrawingRef(&eng, 777), -1);
    EXPECT_EQ(CZedraEng::AddDrawingRef(nullptr, a), -1);
    EXPECT_EQ(CZedraEng::SubDrawingRef(nullptr, a), -1);
    EXPECT_EQ(eng.GetDrawingRefCount(777), -1);
}

TEST(ZedraEng, EntitiesAreAddedCountedAndRefused) {
    CZedraEng eng(0, nullptr, true);
    const uint64_t a = eng.AddDrawing(0, "A", true, false, false);
    const uint64_t g = eng.GetCurrentDrawing();
    const uint64_t l = eng.AddLine({a}, {0, 0, 0}, {1, 2, 3});
    const uint64_t p = eng.AddPoint({}, {4, 5, 6});
    EXPECT_NE(l, 0u);
    EXPECT_GT(p, l);
    EXPECT_EQ(eng.Points()[0].h.drawing, g);  // drawing 0 means the current one
    EXPECT_EQ(eng.Lines()[0].h.colour, kColorByLayer);
    EXPECT_EQ(eng.AddLine({12345}, {0, 0, 0}, {1, 1, 1}), 0u);
    EXPECT_EQ(eng.AddLine({a, 257}, {0, 0, 0}, {1, 1, 1}), 0u);
    EXPECT_EQ(eng.AddPoint({a}, {std::nan(""), 0, 0}), 0u);
    EXPECT_EQ(eng.AddCircle({a}, {0, 0, 0}, -1.0), 0u);
    EXPECT_EQ(eng.AddArc({a}, {0, 0, 0}, 0.0, 0.0, 1.0), 0u);
    EXPECT_EQ(eng.AddText({a}, {0, 0, 0}, 0.0, 0.0, "x"), 0u);
    EXPECT_EQ(eng.AddPolyline2D({a}, {{0, 0, 0}}, false), 0u);
    EXPECT_EQ(eng.AddPolyline3D({a}, {{0, 0, 0}, {1, HUGE_VAL, 0}}, false), 0u);
    EXPECT_EQ(eng.AddPoint({a, kColorByLayer, 999}, {0, 0, 0}), 0u);  // unknown block
    EXPECT_EQ(eng.Add3DFace({a}, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 0}, 16), 0u);
    EXPECT_NE(eng.AddPolyline2D({a}, {{0, 0, 0}, {1, 0, 1}}, true, 2.0), 0u);
    EXPECT_NE(eng.AddPolyline3D({a}, {{0, 0, 0}, {1, 0, 1}, {2, 2, 2}}, false), 0u);
    EXPECT_NE(eng.Add3DFace({a}, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}), 0u);
    EXPECT_NE(eng.AddText({a}, {0, 0, 0}, 1.0, 0.0, "testo"), 0u);
    EXPECT_EQ(eng.GetNoEntities(), 6u);
    EXPECT_EQ(eng.GetNoEntitiesOfDrawing(a), 5u);
    EXPECT_EQ(eng.GetNoEntitiesOfDrawing(g), 1u);
    EXPECT_EQ(eng.GetNoEntitiesOfDrawing(a, EEntKind::Face3D), 1u);
    EXPECT_EQ(eng.TextOf(eng.Texts()[0]), "testo");
    const TFace3D& f = eng.Faces()[0];
    EXPECT_EQ(f.v[3], f.v[2]);  // a triangle repeats its third vertex
    const TPoly2D& pl = eng.Polys2D()[0];
    EXPECT_EQ(pl.h.flags & kFlagClosed, kFlagClosed);
    EXPECT_EQ(pl.elevation, 2.0);
    EXPECT_EQ(eng.Vertices2D(pl)[1].bulge, 1.0);
    EXPECT_EQ(eng.Vertices3D(eng.Polys3D()[0])[2], PNT_3D(2, 2, 2));
}

TEST(ZedraEng, CollectEntitiesGivesCreationOrder) {
    CZedraEng eng(0, nullptr, true);
    const uint64_t h1 = eng.AddText({}, {0, 0, 0}, 1, 0, "a");
    const uint64_t h2 = eng.AddPoint({}, {0, 0, 0});
    const uint64_t h3 = eng.Add3DFace({}, {0, 0, 0}, {1, 0, 0}, {0, 1, 0});
    const uint64_t h4 = eng.AddPoint({}, {1, 0, 0});
    const auto order = eng.CollectEntities();
    ASSERT_EQ(order.size(), 4u);
    EXPECT_EQ(eng.Header(order[0]).handle, h1);
    EXPECT_EQ(eng.Header(order[1]).handle, h2);
    EXPECT_EQ(eng.Header(order[2]).handle, h3);
    EXPECT_EQ(eng.Header(order[3]).handle, h4);
    EXPECT_EQ(order[2].kind, EEntKind::Face3D);
}

TEST(ZedraEng, DeletionByDrawingTagAndHandleKeepsTheRest) {
    CZedraEng eng(0, nullptr, true);
    const uint64_t a = eng.AddDrawing(0, "A", true, false, false);
    for (int i = 0; i < 10; ++i) eng.AddText({a, kColorByLayer, 0, 7}, {double(i), 0, 0}, 1, 0, "testo lungo " + std::to_string(i));
    const uint64_t keep = eng.AddText({}, {0, 0, 0}, 1, 0, "resta");
    const uint64_t line = eng.AddLine({}, {0, 0, 0}, {1, 1, 1});
    EXPECT_EQ(eng.DeleteEntitiesWithTag(7), 10u);
    EXPECT_EQ(eng.TextOf(eng.Texts()[0]), "resta");  // the text pool was packed
    EXPECT_EQ(eng.Texts()[0].h.handle, keep);
    EXPECT_TRUE(eng.DeleteEntity(line));
    EXPECT_FALSE(eng.DeleteEntity(line));
    eng.AddPoint({a}, {0, 0, 0});
    EXPECT_EQ(eng.DeleteEntitiesOfDrawing(a), 1u);
    EXPECT_EQ(eng.GetNoEntities(), 1u);
}

TEST(ZedraEng, BlocksAndInsertsRefuseCycles) {
    CZedraEng eng(0, nullptr, true);
    const uint64_t b1 = eng.AddBlock("B1", false);
    const uint64_t b2 = eng.AddBlock("B2", true);
    EXPECT_EQ(eng.AddBlock("b1", false), 0u);
    EXPECT_EQ(eng.GetBlockFromName("B2"), b2);
    EXPECT_EQ(eng.GetNoBlocksNotPriv(), 1);
    EXPECT_NE(eng.AddInsert({0, kColorByLayer, b1}, b2, {0, 0, 0}), 0u);
    EXPECT_EQ(eng.AddInsert({0, kColorByLayer, b2}, b1, {0, 0, 0}), 0u);  // B2 in B1 in B2
    EXPECT_EQ(eng.AddInsert({0, kColorByLayer, b1}, b1, {0, 0, 0}), 0u);
    EXPECT_EQ(eng.AddInsert({}, 4242, {0, 0, 0}), 0u);
    EXPECT_EQ(eng.AddInsert({}, b1, {0, 0, 0}, 1.0, 0.0, 1.0), 0u);
    EXPECT_NE(eng.AddInsert({}, b1, {0, 0, 0}), 0u);
}

TEST(ZedraEng, PurgeRemovesUnusedPrivateObjectsOnly) {
    CZedraEng eng(0, nullptr, true);
    const uint64_t user = eng.AddBlock("Utente", false);
    const uint64_t used = eng.AddBlock("Usato", true);
    const uint64_t outer = eng.AddBlock("Esterno", true);  // unused, holds the only insert of Interno
    const uint64_t inner = eng.AddBlock("Interno", true);
    eng.AddInsert({}, used, {0, 0, 0});
    eng.AddPoint({0, kColorByLayer, inner}, {0, 0, 0});
    eng.AddInsert({0, kColorByLayer, outer}, inner, {0, 0, 0});
    const uint64_t privEmpty = eng.AddDrawing(0, "PrivVuoto", true, false, true);
    const uint64_t privDrawn = eng.AddDrawing(0, "PrivUsato", true, false, true);
    const uint64_t privRef = eng.AddDrawing(0, "PrivRef", true, false, true);
    const uint64_t plain = eng.AddDrawing(0, "Normale", true, false, false);
    eng.AddLine({privDrawn}, {0, 0, 0}, {1, 0, 0});
    CZedraEng::AddDrawingRef(&eng, privRef);

    EXPECT_EQ(eng.PurgePrivateObjects(), 3);  // Esterno, then Interno; PrivVuoto
    EXPECT_NE(eng.FindBlock(user), nullptr);
    EXPECT_NE(eng.FindBlock(used), nullptr);
    EXPECT_EQ(eng.FindBlock(outer), nullptr);
    EXPECT_EQ(eng.FindBlock(inner), nullptr);
    EXPECT_EQ(eng.GetNoEntities(EEntKind::Point), 0u);  // went with Interno
    EXPECT_EQ(eng.GetDrawingName(privEmpty), "");
    EXPECT_EQ(eng.GetDrawingName(privDrawn), "PrivUsato");
    EXPECT_EQ(eng.GetDrawingName(privRef), "PrivRef");
    EXPECT_EQ(eng.GetDrawingName(plain), "Normale");
    EXPECT_EQ(eng.GetDrawingFromName("PrivUsato"), privDrawn);  // lookups still work
    EXPECT_EQ(eng.PurgePrivateObjects(), 0);
}

TEST(ZedraEng, CopiaDaKeepsHandlesAndContent) {
    CZedraEng src(0, nullptr, true);
    const uint64_t a = src.AddDrawing(0, "A", false, true, false);
    src.SetDrawingColor(a, true, 11);
    CZedraEng::AddDrawingRef(&src, a);
    const uint64_t b = src.AddBlock("Blocco", false, {1, 2, 3}, true);
    src.AddCircle({a, 4, b}, {0, 0, 0}, 1);
    src.AddPolyline3D({a}, {{0, 0, 0}, {1, 1, 1}}, true);
    src.AddText({a}, {0, 0, 0}, 1, 0, "uno");
    src.SetCurrentDrawing(a);

    CZedraEng dst(0, nullptr, true);
    dst.AddDrawing(0, "Vecchio", true, false, false);
    dst.AddPoint({}, {0, 0, 0});
    dst.CopiaDa(&src, true);
    EXPECT_EQ(dst.GetDrawingName(a), "A");
    EXPECT_EQ(dst.GetDrawingFromName("Vecchio"), 0u);
    EXPECT_EQ(dst.GetDrawingFromName("Grafica"), src.GetDrawingFromName("Grafica"));
    EXPECT_FALSE(dst.IsDrawingVisible(a));
    EXPECT_TRUE(dst.IsDrawingLocked(a));
    bool flag = false;
    unsigned colour = 0;
    dst.GetDrawingColor(a, flag, colour);
    EXPECT_TRUE(flag);
    EXPECT_EQ(colour, 11u);
    EXPECT_EQ(dst.GetDrawingRefCount(a), 0);  // references belong to the source's holders
    EXPECT_EQ(dst.GetCurrentDrawing(), a);
    EXPECT_EQ(dst.GetBlockFromName("Blocco"), b);
    EXPECT_EQ(dst.GetNoEntities(), 3u);
    EXPECT_EQ(dst.GetNoEntities(EEntKind::Point), 0u);
    EXPECT_EQ(dst.Circles()[0].h.handle, src.Circles()[0].h.handle);
    EXPECT_EQ(dst.TextOf(dst.Texts()[0]), "uno");
    // New objects of the copy never reuse a handle of the source.
    const uint64_t n = dst.AddPoint({}, {0, 0, 0});
    EXPECT_GT(n, src.Texts()[0].h.handle);

    CZedraEng tables(0, nullptr, true);
    tables.CopiaDa(&src, false);
    EXPECT_EQ(tables.GetNoEntities(), 0u);
    EXPECT_EQ(tables.GetDrawingName(a), "A");
    EXPECT_EQ(tables.GetNoBlocks(), 1);
    tables.CopiaDa(nullptr, true);  // ignored
    EXPECT_EQ(tables.GetDrawingName(a), "A");
}

TEST(ZedraEng, SentinelsHoldNotificationsAndNest) {
    CZedraEng eng(0, nullptr, true);
    int calls = 0;
    eng.SetListener([&] { ++calls; });
    eng.AddPoint({}, {0, 0, 0});
    EXPECT_EQ(calls, 1);
    {
        CZedraEventSentinel outer(&eng);
        EXPECT_EQ(eng.GetSentinelDepth(), 1);
        eng.AddPoint({}, {0, 0, 0});
        {
            CZedraEventSentinel inner(&eng);
            EXPECT_EQ(eng.GetSentinelDepth(), 2);
            eng.AddPoint({}, {0, 0, 0});
        }
        EXPECT_EQ(calls, 1);  // the inner end does not release
        eng.AddPoint({}, {0, 0, 0});
    }
    EXPECT_EQ(eng.GetSentinelDepth(), 0);
    EXPECT_EQ(calls, 2);  // one call for the whole held batch
    EXPECT_EQ(eng.GetNotificationsSuppressed(), 3u);
    EXPECT_EQ(eng.GetNotificationsEmitted(), 2u);
    EXPECT_EQ(eng.GetChangeCount(), 4u);
    {
        CZedraEventSentinel quiet(&eng);  // nothing changed: nothing told
    }
    EXPECT_EQ(calls, 2);
    CZedraEventSentinel none(nullptr);

    CZedraEng silent(0, nullptr, false);
    int silentCalls = 0;
    silent.SetListener([&] { ++silentCalls; });
    silent.AddPoint({}, {0, 0, 0});
    EXPECT_EQ(silentCalls, 0);
    EXPECT_EQ(silent.GetChangeCount(), 1u);
}

TEST(DocSymbolManager, CopiesUserSymbolsWithNestedBlocksAndDrawings) {
    CZedraEng src(0, nullptr, true);
    const uint64_t red = src.AddDrawing(0, "Rosso", true, false, false);
    src.SetDrawingColor(red, true, 1);
    const uint64_t part = src.AddBlock("Parte", false);
    src.AddLine({red, kColorByLayer, part}, {0, 0, 0}, {1, 0, 0});
    const uint64_t sym = src.AddBlock("Albero", false, {0, 0, 0}, true);
    src.AddCircle({red, 3, sym}, {0, 0, 0}, 2);
    src.AddInsert({0, kColorByLayer, sym}, part, {1, 1, 0}, 2, 2, 2, 0);
    src.AddBlock("NonSimbolo", false);
    const uint64_t already = src.AddBlock("Esiste", false, {0, 0, 0}, true);
    src.AddPoint({0, kColorByLayer, already}, {0, 0, 0});

    CZedraEng dst(0, nullptr, true);
    const uint64_t existing = dst.AddBlock("ESISTE", false);
    CDocSymbolManager from(&src);
    CDocSymbolManager to(&dst);
    EXPECT_EQ(from.GetNoUserSymbols(), 2);
    EXPECT_EQ(to.CopyUserSymbolsFrom(from), 2);  // Albero and the Parte it uses
    const uint64_t albero = dst.GetBlockFromName("Albero");
    const uint64_t parte = dst.GetBlockFromName("Parte");
    ASSERT_NE(albero, 0u);
    ASSERT_NE(parte, 0u);
    EXPECT_TRUE(dst.FindBlock(albero)->userSymbol);
    EXPECT_EQ(dst.GetBlockFromName("NonSimbolo"), 0u);
    EXPECT_EQ(dst.GetBlockFromName("Esiste"), existing);
    EXPECT_EQ(dst.GetNoEntities(EEntKind::Point), 0u);
    const uint64_t rosso = dst.GetDrawingFromName("Rosso");
    ASSERT_NE(rosso, 0u);
    bool flag = false;
    unsigned colour = 0;
    dst.GetDrawingColor(rosso, flag, colour);
    EXPECT_TRUE(flag);
    EXPECT_EQ(colour, 1u);
    ASSERT_EQ(dst.Circles().size(), 1u);
    EXPECT_EQ(dst.Circles()[0].h.block, albero);
    EXPECT_EQ(dst.Circles()[0].h.colour, 3);
    ASSERT_EQ(dst.Inserts().size(), 1u);
    EXPECT_EQ(dst.Inserts()[0].blockRef, parte);
    EXPECT_EQ(dst.Inserts()[0].sx, 2.0);
    EXPECT_EQ(to.CopyUserSymbolsFrom(from), 0);  // all there now
    EXPECT_EQ(to.CopyUserSymbolsFrom(to), 0);
}
