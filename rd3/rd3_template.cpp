#include "rd3/rd3_template.h"

#include <cmath>
#include <limits>

#include "rd3/rd3_format.h"

namespace roadx::rd3 {

bool SegmentFromCode(uint16_t code, double v1, double v2, RD3TemplateSegment& out) {
    out = RD3TemplateSegment{};
    out.val1 = v1;
    out.val2 = v2;
    switch (code) {
        case kCodeGrade: out.kind = kKindGrade; out.val1 = std::tan(v1); return true;
        case kCodeStep: out.kind = kKindStep; return true;
        case kCodeSlopes: out.kind = kKindSlopes; return true;
        case kCodeSteep: out.kind = kKindMark; return true;
        case kCodeOffset: out.kind = kKindOffset; return true;
        default: return false;
    }
}

void NormaliseSegments(std::vector<RD3TemplateSegment>& segments) {
    for (RD3TemplateSegment& s : segments) {
        const double v1 = s.val1;
        const double v2 = s.val2;
        if (s.kind == kKindStep) {
            if (std::fabs(v1) > 1e-12 && std::fabs(v2 / v1) < 10.0) {
                s.kind = kKindGrade;
                s.val1 = v2 / v1;
                s.val2 = v1;
            } else {
                s.kind = kKindWidthHeight;
            }
        } else if (s.kind == kKindGrade && std::fabs(v1) >= 10.0) {
            s.kind = kKindWidthHeight;
            s.val1 = v2;
            s.val2 = v1 * v2;
        }
    }
}

void NormaliseTemplate(RD3SectionTemplate& t) {
    if (t.normalised) return;
    NormaliseSegments(t.segments);
    t.normalised = true;
}

namespace {

constexpr uint64_t kSkipCost = 100;
constexpr uint64_t kPairCost = 1;
constexpr uint64_t kForbidden = std::numeric_limits<uint64_t>::max();

size_t LeadingRun(const std::vector<RD3TemplateSegment>& a, const std::vector<RD3TemplateSegment>& b) {
    size_t k = 0;
    while (k < a.size() && k < b.size() && a[k].kind == b[k].kind && a[k].name == b[k].name) ++k;
    return k;
}

bool MayPair(const RD3TemplateSegment& a, const RD3TemplateSegment& b) {
    return a.kind == b.kind && (a.name.empty() || b.name.empty());
}

// Remaining costs are filled from the back; only two rows of them are kept,
// the choices for every cell are kept to walk the alignment forward.
class PairTable {
public:
    PairTable(size_t rows, size_t cols) : cols_(cols), choice_(rows * cols) {}
    RD3PairStep& At(size_t i, size_t j) { return choice_[i * cols_ + j]; }

private:
    size_t cols_;
    std::vector<RD3PairStep> choice_;
};

}  // namespace

std::optional<std::vector<RD3PairStep>> PairSegments(const std::vector<RD3TemplateSegment>& a,
                                                     const std::vector<RD3TemplateSegment>& b) {
    const size_t k = LeadingRun(a, b);
    const size_t na = a.size() - k;
    const size_t nb = b.size() - k;
    if (static_cast<uint64_t>(na + 1) * static_cast<uint64_t>(nb + 1) > kMaxPairCells) return std::nullopt;

    PairTable table(na + 1, nb + 1);
    std::vector<uint64_t> below(nb + 1);  // remaining costs of row i + 1
    std::vector<uint64_t> row(nb + 1);    // row i
    for (size_t ii = na + 1; ii-- > 0;) {
        for (size_t jj = nb + 1; jj-- > 0;) {
            if (ii == na && jj == nb) {
                row[jj] = 0;
            } else if (ii == na) {
                table.At(ii, jj) = RD3PairStep::kOnlyB;
                row[jj] = kSkipCost + row[jj + 1];
            } else if (jj == nb) {
                table.At(ii, jj) = RD3PairStep::kOnlyA;
                row[jj] = kSkipCost + below[jj];
            } else {
                const uint64_t skipB = row[jj + 1];
                const uint64_t skipA = below[jj];
                const uint64_t pair = MayPair(a[k + ii], b[k + jj]) ? below[jj + 1] : kForbidden;
                if (skipB < skipA && skipB < pair) {
                    table.At(ii, jj) = RD3PairStep::kOnlyB;
                    row[jj] = kSkipCost + skipB;
                } else if (skipA <= pair) {
                    table.At(ii, jj) = RD3PairStep::kOnlyA;
                    row[jj] = kSkipCost + skipA;
                } else {
                    table.At(ii, jj) = RD3PairStep::kPair;
                    row[jj] = kPairCost + pair;
                }
            }
        }
        below.swap(row);
    }

    std::vector<RD3PairStep> steps(k, RD3PairStep::kPair);
    size_t i = 0, j = 0;
    while (i < na || j < nb) {
        const RD3PairStep s = table.At(i, j);
        steps.push_back(s);
        if (s != RD3PairStep::kOnlyB) ++i;
        if (s != RD3PairStep::kOnlyA) ++j;
    }
    return steps;
}

namespace {
double Lerp(double a, double b, double t) { return a + (b - a) * t; }
}  // namespace

std::vector<RD3TemplateSegment> BlendSegments(const std::vector<RD3TemplateSegment>& a,
                                              const std::vector<RD3TemplateSegment>& b,
                                              const std::vector<RD3PairStep>& steps, double t) {
    std::vector<RD3TemplateSegment> out;
    out.reserve(steps.size());
    size_t i = 0, j = 0;
    for (RD3PairStep s : steps) {
        RD3TemplateSegment seg;
        if (s == RD3PairStep::kOnlyB) {
            const RD3TemplateSegment& sb = b[j++];
            seg = {sb.kind, Lerp(0.0, sb.val1, t), Lerp(0.0, sb.val2, t), sb.name};
        } else if (s == RD3PairStep::kOnlyA) {
            const RD3TemplateSegment& sa = a[i++];
            seg = {sa.kind, Lerp(sa.val1, 0.0, t), Lerp(sa.val2, 0.0, t), sa.name};
        } else {
            const RD3TemplateSegment& sa = a[i++];
            const RD3TemplateSegment& sb = b[j++];
            seg = {sa.kind, Lerp(sa.val1, sb.val1, t), Lerp(sa.val2, sb.val2, t),
                   sa.name.empty() ? sb.name : sa.name};
        }
        out.push_back(std::move(seg));
    }
    return out;
}

std::optional<RD3SectionTemplate> InterpolateTemplates(RD3SectionTemplate& a, RD3SectionTemplate& b, double t) {
    NormaliseTemplate(a);
    NormaliseTemplate(b);
    const auto steps = PairSegments(a.segments, b.segments);
    if (!steps) return std::nullopt;
    RD3SectionTemplate out;
    out.segments = BlendSegments(a.segments, b.segments, *steps, t);
    out.normalised = true;
    return out;
}

bool TemplateValuesEqual(double value, double other) {
    if (!std::isfinite(other)) return value == other;
    return std::fabs(value - other) <= 1e-4 + 1e-4 * std::fabs(other);
}

bool SegmentListsEqual(const std::vector<RD3TemplateSegment>& a, const std::vector<RD3TemplateSegment>& b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i) {
        if (a[i].kind != b[i].kind) return false;
        if (!TemplateValuesEqual(a[i].val1, b[i].val1) || !TemplateValuesEqual(a[i].val2, b[i].val2)) return false;
    }
    return true;
}

}  // namespace roadx::rd3
