// Section templates as the reader holds them, and the template arithmetic
// that both sides share: normalisation, the minimum-cost pairing of two
// segment lists, and the linear blend between two templates. The writer runs
// the same arithmetic to decide which sections the reader can rebuild.
#pragma once
#include <cstdint>
#include <optional>
#include <vector>

#include "rd3/rd3_name.h"

namespace roadx::rd3 {

// Segment kinds of the reader. 5 is internal: produced by normalisation.
enum RD3SegmentKind : int32_t {
    kKindOffset = 0,       // code 26: width, height
    kKindStep = 1,         // code 23: width, height
    kKindGrade = 2,        // code 22: val1 gradient, val2 width
    kKindSlopes = 3,       // code 24: cut and fill slope angles
    kKindMark = 4,         // code 25 as read from a file
    kKindWidthHeight = 5,  // width, height
};

struct RD3TemplateSegment {
    int32_t kind = kKindStep;
    double val1 = 0.0;
    double val2 = 0.0;
    RD3Name name;  // empty unless the segment came with one
};

struct RD3SectionTemplate {
    RD3Name name;
    std::vector<RD3TemplateSegment> segments;
    bool normalised = false;
};

// The reader's segment for a file code; false for an unknown code. Code 22
// carries an angle, stored as its tangent.
bool SegmentFromCode(uint16_t code, double v1, double v2, RD3TemplateSegment& out);

// Normalisation: a step with |val1| > 1e-12 and |val2 / val1| < 10 becomes a
// gradient (val2 / val1, val1); any other step becomes width-height. A
// gradient of 10 or more becomes width-height (val2, val1 × val2).
void NormaliseSegments(std::vector<RD3TemplateSegment>& segments);
// Normalises once; the flag keeps a template from being normalised twice.
void NormaliseTemplate(RD3SectionTemplate& t);

enum class RD3PairStep : uint8_t { kPair, kOnlyA, kOnlyB };

// The alignment of two segment lists: a leading run of equal kind and name
// pairs for free; after it a skip costs 100 and a pair of equal kinds costs
// 1 (allowed only when one of the two names is empty). Each choice compares
// the remaining cost behind it: skipping in B wins only when strictly
// cheaper than both others, skipping in A beats pairing on equality. Gives
// nothing when the lists are too long to align within kMaxPairCells.
inline constexpr uint64_t kMaxPairCells = 4'000'000;
std::optional<std::vector<RD3PairStep>> PairSegments(const std::vector<RD3TemplateSegment>& a,
                                                     const std::vector<RD3TemplateSegment>& b);

// The blend at t (0 gives a, 1 gives b) along an alignment: a segment only
// in B enters as lerp(0, b, t), one only in A as lerp(a, 0, t), a pair as
// lerp(a, b, t) for both values.
std::vector<RD3TemplateSegment> BlendSegments(const std::vector<RD3TemplateSegment>& a,
                                              const std::vector<RD3TemplateSegment>& b,
                                              const std::vector<RD3PairStep>& steps, double t);

// Normalises both templates (once each) and blends them at t into a new
// normalised template with an empty name. Nothing when the pairing is too
// large.
std::optional<RD3SectionTemplate> InterpolateTemplates(RD3SectionTemplate& a, RD3SectionTemplate& b, double t);

// Values equal within 1e-4 + 1e-4 × |other| (exactly when other is not
// finite), as templates are compared everywhere.
bool TemplateValuesEqual(double value, double other);
// Same count, same kind, values equal segment by segment.
bool SegmentListsEqual(const std::vector<RD3TemplateSegment>& a, const std::vector<RD3TemplateSegment>& b);

}  // namespace roadx::rd3
