// Comparison of two builder traces "apart from names and rounding to six
// decimals": string arguments are names and are not compared; numbers agree
// when they agree after rounding to six decimals (or differ by what that
// rounding can carry into a value computed from rounded ones). Surface
// vertex ids are compared by their order in the surface, since the export
// numbers vertices from 0; a face on ids the surface lacks is dropped, as the
// builder drops it.
#pragma once
#include <cmath>
#include <cstdlib>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace lxetest {

struct TTraceCall {
    std::string op;
    std::vector<double> nums;  // numbers and booleans (1/0), in order
    int strings = 0;           // how many names the call carried
    std::string raw;           // the line as recorded, for messages
};

// Splits one trace line: the operation, then blank-separated arguments, JSON
// strings with their escapes, a JSON object at the end (the import dialog).
inline TTraceCall ParseTraceLine(const std::string& line) {
    TTraceCall c;
    c.raw = line;
    size_t i = line.find(' ');
    c.op = line.substr(0, i);
    if (c.op == "FDlgImportLandXML" && i != std::string::npos) {
        // Only how many surfaces and alignments were offered, and whether
        // points were: the rest is names.
        const auto j = nlohmann::json::parse(line.substr(i + 1), nullptr, false);
        if (!j.is_discarded()) {
            c.nums = {static_cast<double>(j.value("surfaces", nlohmann::json::array()).size()),
                      static_cast<double>(j.value("alignments", nlohmann::json::array()).size()),
                      j.value("hasPointData", false) ? 1.0 : 0.0};
        }
        return c;
    }
    while (i != std::string::npos && i < line.size()) {
        ++i;
        if (i >= line.size()) break;
        if (line[i] == '"') {
            size_t k = i + 1;
            while (k < line.size() && line[k] != '"') k += line[k] == '\\' ? 2 : 1;
            ++c.strings;
            i = k + 1;
            continue;
        }
        const size_t end = line.find(' ', i);
        const std::string tok = line.substr(i, end == std::string::npos ? std::string::npos : end - i);
        if (tok == "true" || tok == "false") c.nums.push_back(tok == "true" ? 1.0 : 0.0);
        else c.nums.push_back(std::strtod(tok.c_str(), nullptr));
        i = end;
    }
    return c;
}

// Replaces surface vertex ids by the vertex's place in its surface and drops
// faces that name an id the surface does not have.
inline std::vector<TTraceCall> NormaliseTrace(const std::vector<std::string>& lines) {
    std::vector<TTraceCall> out;
    std::map<double, double> place;
    for (const auto& l : lines) {
        TTraceCall c = ParseTraceLine(l);
        if (c.op == "AddDtmPrj") place.clear();
        if (c.op == "AddTriVert" && !c.nums.empty()) {
            const double at = static_cast<double>(place.size());
            place[c.nums[0]] = at;
            c.nums[0] = at;
        }
        if (c.op == "AddTri") {
            bool known = true;
            for (double& id : c.nums) {
                auto it = place.find(id);
                if (it == place.end()) known = false;
                else id = it->second;
            }
            if (!known) continue;
        }
        out.push_back(std::move(c));
    }
    return out;
}

inline double Round6(double v) { return std::nearbyint(v * 1e6) / 1e6; }

// How far a number may move in a round trip through six-decimal text.
inline double Tolerance(const TTraceCall& c, size_t arg) {
    const double v = std::fabs(c.nums[arg]);
    double tol = 1.0e-6 + 4e-16 * v;
    if (c.op == "AddRoadProfAltiRaccVrt" && arg == 6 && c.nums.size() >= 7) {
        // The radius comes back from the written curve length and the grades
        // of rounded vertices: R = L / |g1 - g2|.
        const auto& n = c.nums;
        const double g1 = (n[1] - n[3]) / (n[0] - n[2]), g2 = (n[5] - n[1]) / (n[4] - n[0]);
        const double dg = std::fabs(g1 - g2);
        const double len = v * dg;
        const double e1 = 1e-6 * (1.0 + std::fabs(g1)) / std::fabs(n[0] - n[2]);
        const double e2 = 1e-6 * (1.0 + std::fabs(g2)) / std::fabs(n[4] - n[0]);
        tol += 2.0 * v * (1e-6 / len + (e1 + e2) / dg);
    }
    if (c.op == "AddRoadClot" && arg == 6 && c.nums.size() >= 8) {
        // A = sqrt(R·L) from the written length and radius.
        const double r = std::fabs(c.nums[7]);
        const double len = v * v / r;
        tol += v * (1e-6 / len + 1e-6 / r);
    }
    return tol;
}

inline bool SameNumber(const TTraceCall& a, const TTraceCall& b, size_t arg) {
    const double x = a.nums[arg], y = b.nums[arg];
    if (x == y || Round6(x) == Round6(y)) return true;
    if (std::isnan(x) || std::isnan(y)) return std::isnan(x) && std::isnan(y);
    return std::fabs(x - y) <= Tolerance(a, arg);
}

inline bool SameCall(const TTraceCall& a, const TTraceCall& b) {
    if (a.op != b.op || a.nums.size() != b.nums.size()) return false;
    for (size_t k = 0; k < a.nums.size(); ++k)
        if (!SameNumber(a, b, k)) return false;
    return true;
}

// "" when the traces agree, else the first disagreement.
inline std::string CompareTraces(const std::vector<TTraceCall>& a, const std::vector<TTraceCall>& b) {
    const size_t n = std::min(a.size(), b.size());
    for (size_t i = 0; i < n; ++i)
        if (!SameCall(a[i], b[i]))
            return "call " + std::to_string(i) + ":\n  first:  " + a[i].raw.substr(0, 300) + "\n  second: " +
                   b[i].raw.substr(0, 300);
    if (a.size() != b.size())
        return "first has " + std::to_string(a.size()) + " calls, second " + std::to_string(b.size()) + "; next: " +
               (a.size() > n ? a[n].raw : b[n].raw).substr(0, 300);
    return "";
}

inline std::vector<TTraceCall> Without(std::vector<TTraceCall> v, const std::function<bool(const TTraceCall&)>& drop) {
    std::erase_if(v, drop);
    return v;
}

}  // namespace lxetest
