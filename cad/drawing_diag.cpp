#include "cad/drawing_diag.h"

#include <cstdint>
#include <unordered_map>

#include "cad/dxf_graph.h"
#include "cad/dxf_text.h"
#include "cad/zedra_eng.h"

namespace roadx::cad {

namespace {

thread_local CDrawingDiagScope* tCurrent = nullptr;

// What writing a text changes of it: control characters and broken UTF-8
// are replaced; characters beyond the target set are escaped.
struct TTextChange {
    bool replaced = false;
    bool escaped = false;
};

TTextChange TextChange(std::string_view utf8, dxf::EEncoding enc) {
    TTextChange c;
    // The encoder replaces a control character with ' ' and a broken byte
    // with '?', and escapes as "\U+": compare what it writes with a plain
    // copy of the same characters.
    for (size_t i = 0; i < utf8.size(); ++i) {
        const auto b = static_cast<unsigned char>(utf8[i]);
        if (b < 0x20 || b == 0x7F) c.replaced = true;
    }
    const std::string out = dxf::EncodeDxfText(utf8, enc);
    if (out.find("\\U+") != std::string::npos && utf8.find("\\U+") == std::string::npos) c.escaped = true;
    // Broken UTF-8 shows as a '?' the text did not have.
    size_t inQ = 0, outQ = 0;
    for (char ch : utf8) inQ += ch == '?';
    for (char ch : out) outQ += ch == '?';
    if (outQ > inQ) c.replaced = true;
    return c;
}

std::string Quoted(std::string_view s) {
    std::string out = "\"";
    // Records are one line: control characters are shown as blanks.
    for (char ch : s) out += (static_cast<unsigned char>(ch) < 0x20) ? ' ' : ch;
    return out + "\"";
}

class CReporter {
public:
    explicit CReporter(const CDrawingDiagScope& s) : scope_(s) {}

    void Report(const char* kind, const std::string& element, const std::string& message, const std::string& instead) {
        ++reported_;
        if (scope_.sink->Merge(kind, scope_.file, 1)) return;
        vesk::diag::TRecord r;
        r.kind = kind;
        r.file = scope_.file;
        r.element = element;
        r.message = message;
        r.instead = instead;
        scope_.sink->Report(std::move(r));
    }
    size_t Reported() const { return reported_; }

    // A layer or block name as the engine holds it against the name written.
    void Name(const char* what, const std::string& source, const std::string& written) {
        const std::string element = std::string(what) + " " + Quoted(source);
        const std::string valid = dxf::SanitizeTableName(source);
        if (valid != source)
            Report("drawing-name-replaced", element,
                   std::string(what) + " name holds characters a drawing file does not allow in names "
                   "(< > / \\ \" : ; ? * | = `, control characters, broken UTF-8) or is empty",
                   "each replaced by '_': written as " + Quoted(written));
        if (written != valid)
            Report("drawing-name-suffixed", element,
                   std::string(what) + " name, once valid, is an earlier one's (names compare without regard to case)",
                   "written as " + Quoted(written));
        if (TextChange(written, dxf::EEncoding::Name).escaped)
            Report("drawing-name-escaped", element,
                   std::string(what) + " name holds characters code page 1252 lacks",
                   "each written as a \\U+XXXX escape, which readers decode");
    }

    void Text(std::string_view text, const std::string& layer, bool dwg) {
        const TTextChange c = TextChange(text, dwg ? dxf::EEncoding::Name : dxf::EEncoding::Text);
        if (!c.replaced && !c.escaped) return;
        const std::string element = "Text " + Quoted(text.substr(0, 40)) + " on layer " + Quoted(layer);
        if (c.replaced)
            Report("drawing-text-replaced", element, "text holds control characters (line breaks, tabs) or broken UTF-8",
                   "each control character written as a blank, each broken byte as '?'");
        if (c.escaped)
            Report("drawing-text-escaped", element,
                   dwg ? "text holds characters code page 1252 lacks" : "text holds characters beyond ASCII",
                   "each written as a \\U+XXXX escape, which readers decode");
    }

private:
    const CDrawingDiagScope& scope_;
    size_t reported_ = 0;
};

void TextsOf(const CZedraEng& eng, const dxf::TGraph& g, const std::vector<TEntRef>& ents, bool dwg, CReporter& rep) {
    for (const TEntRef& r : ents) {
        if (r.kind != EEntKind::Text) continue;
        const TText& t = eng.Texts()[r.index];
        rep.Text(eng.TextOf(t), g.LayerName(t.h.drawing), dwg);
    }
}

}  // namespace

CDrawingDiagScope::CDrawingDiagScope(vesk::diag::CSink* s, std::string f, bool r)
    : sink(s), file(std::move(f)), refuse(r), previous_(tCurrent) {
    tCurrent = this;
}

CDrawingDiagScope::~CDrawingDiagScope() { tCurrent = previous_; }

CDrawingDiagScope* CDrawingDiagScope::Current() { return tCurrent && tCurrent->sink ? tCurrent : nullptr; }

bool DiagnoseDrawing(const CZedraEng& eng, const dxf::TGraph& g, bool dwg) {
    const CDrawingDiagScope* scope = CDrawingDiagScope::Current();
    if (!scope) return false;
    CReporter rep(*scope);
    for (const dxf::TLayerRec& l : g.layers) {
        const TZedraDrawing* d = l.drawing ? eng.FindDrawing(l.drawing) : nullptr;
        if (d) rep.Name("layer", d->name, l.name);
    }
    std::unordered_map<uint64_t, const TZedraBlock*> blocks;
    for (const TZedraBlock& src : eng.GetBlocks()) blocks[src.handle] = &src;
    for (const dxf::TBlockRec& b : g.blocks)
        if (auto it = blocks.find(b.engineBlock); it != blocks.end()) rep.Name("block", it->second->name, b.name);
    TextsOf(eng, g, g.modelSpace.ents, dwg, rep);
    for (const dxf::TBlockRec& b : g.blocks) TextsOf(eng, g, b.ents, dwg, rep);
    return scope->refuse && rep.Reported() > 0;
}

}  // namespace roadx::cad
