// The main profile: a type 10 record and its chain of vertices. This chain
// ends only at 0xFFFFFFFE; a next-link of 0 is followed to offset 0 like any
// other offset.
#include <cmath>
#include <string>

#include "host/load_vantri_dati.h"
#include "rd3/rd3_reader.h"
#include "rd3/rd3_records.h"

namespace roadx::rd3 {

void AddProfileVertices(CLoadVantriDati& builder, const std::vector<RD3Vertex>& v) {
    builder.StartRoadAlti();
    if (v.size() >= 2) {
        builder.AddRoadPrj();
        for (size_t i = 0; i + 1 < v.size(); ++i) {
            if (v[i].curveLength != 0.0 && i > 0) {
                // The vertical curve is a parabola: its radius is its length
                // over the change of grade.
                const double g1 = (v[i].elevation - v[i - 1].elevation) / (v[i].prog - v[i - 1].prog);
                const double g2 = (v[i + 1].elevation - v[i].elevation) / (v[i + 1].prog - v[i].prog);
                builder.AddRoadProfAltiRaccVrt(v[i].prog, v[i].elevation, v[i - 1].prog, v[i - 1].elevation,
                                               v[i + 1].prog, v[i + 1].elevation,
                                               v[i].curveLength / std::fabs(g1 - g2), true);
            } else {
                builder.AddRoadProfAltiPrincVrt(v[i].prog, v[i].elevation);
            }
        }
        builder.AddRoadProfAltiPrincVrt(v.back().prog, v.back().elevation);
    }
    builder.EndRoadAlti();
}

ReadEnd ReadProfile(ReadContext& ctx, uint32_t offset) {
    RD3RecHeader h;
    if (SeekRecord(ctx, offset, h) != ReadEnd::kOk) return ReadEnd::kTruncated;
    if (h.type != kRecProfile) return ReadEnd::kBadProfileRecord;
    ctx.in.ReadDouble();  // written 0.0, meaning unknown
    if (ctx.in.Failed()) return ReadEnd::kTruncated;

    std::vector<RD3Vertex> vertices;
    RD3Vertex current;
    VisitedOffsets visited(ctx.fileSize);
    visited.Visit(offset);
    ReadEnd status = ReadEnd::kOk;
    for (uint32_t next = h.next; next != kNoRecord; next = h.next) {
        if (!visited.Visit(next)) {
            status = next < ctx.fileSize ? ReadEnd::kLoop : ReadEnd::kTruncated;
            break;
        }
        status = SeekRecord(ctx, next, h);
        if (status != ReadEnd::kOk) break;
        if (h.type == kRecVertex || h.type == kRecCurveVertex) {
            RD3VertexRecord rec;
            if (!ReadVertexData(ctx.in, h.type, rec)) {
                status = ReadEnd::kTruncated;
                break;
            }
            current = {rec.prog, rec.elevation, rec.curveLength};
        } else {
            Diag(ctx, "rd3-profile-record-repeats", next, "profile record at offset " + std::to_string(next),
                 "profile record of type " + std::to_string(h.type) + " holds no vertex",
                 "the vertex before it is repeated (station 0, elevation 0 when it is the first)");
        }
        // A record of another type repeats the vertex before it.
        vertices.push_back(current);
    }
    // The vertices read before a damaged record are kept.
    if (!vertices.empty()) AddProfileVertices(ctx.builder, vertices);
    return status;
}

}  // namespace roadx::rd3
