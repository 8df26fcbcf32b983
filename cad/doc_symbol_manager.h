// CDocSymbolManager: the user symbols of a drawing engine, i.e. its blocks
// marked as user symbols (TZedraBlock::userSymbol).
#pragma once
#include <cstdint>
#include <unordered_map>

class CZedraEng;

class CDocSymbolManager {
public:
    explicit CDocSymbolManager(CZedraEng* eng) : eng_(eng) {}

    CZedraEng* GetEngine() const { return eng_; }
    int GetNoUserSymbols() const;

    // Copies every user symbol of other's engine that this engine lacks (by
    // name, ASCII case ignored) with its entities. Entities keep their
    // drawing when this engine has a drawing of the same name, else a
    // drawing of that name and the same flags is added. Symbols nested in
    // a copied symbol are copied first. Returns how many symbols were copied.
    int CopyUserSymbolsFrom(const CDocSymbolManager& other);

private:
    uint64_t CopyBlock(const CZedraEng& src, uint64_t block, std::unordered_map<uint64_t, uint64_t>& copied, int& count);
    uint64_t MapDrawing(const CZedraEng& src, uint64_t drawing);

    CZedraEng* eng_;
};
