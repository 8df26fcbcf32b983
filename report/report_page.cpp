// The page: a table of contents, the plan, the long profiles, the cross
// sections, the summary and the warnings, with a little inline script for
// pan, zoom and switching views. Nothing is loaded from elsewhere.
#include <cerrno>
#include <cstring>

#include "display/road_axis.h"
#include "host/document.h"
#include "report/report.h"
#include "report/report_model.h"
#include "report/svg_text.h"
#include "report/svg_views.h"
#include "vesk/atomic_file.h"
#include "vesk/diagnostics.h"

namespace roadx::report {

nlohmann::json ReportDataFromViews(CVantriDoc& doc, const std::vector<TRoadView>& roads, const TReportInput& in,
                                   const vesk::diag::CSink& sink);

namespace {

constexpr const char* kStyle = R"(
body{font:14px/1.4 system-ui,sans-serif;margin:0;color:#222;background:#fafafa}
header{background:#234;color:#fff;padding:8px 16px}header h1{margin:0;font-size:20px}
nav{padding:6px 16px;background:#e8ecf0;position:sticky;top:0;z-index:2}
nav a{margin-right:14px;color:#124;text-decoration:none;font-weight:600}nav a.on{text-decoration:underline}
main{padding:8px 16px}section.view{margin-bottom:24px}
svg{background:#fff;border:1px solid #ccc;display:block;max-width:100%}
svg.plan{width:100%;height:75vh}svg.profile{width:100%;height:auto}
svg path,svg circle,svg rect{vector-effect:non-scaling-stroke;fill:none}
.faces{stroke:#ddd;stroke-width:.5}.contour{stroke:#c9a27a;stroke-width:.6}.contour.major{stroke:#a0703f;stroke-width:1.1}
.boundary{stroke:#3a7;stroke-width:1.5}.breakline{stroke:#c33;stroke-width:1;stroke-dasharray:4 2}
.axis{stroke:#000;stroke-width:4;stroke-opacity:.15}.elem{stroke-width:2.2}
.elem.line{stroke:#1f5fbf}.elem.arc{stroke:#d42}.elem.clothoid{stroke:#2a2}.elem.continuity_clothoid{stroke:#a3c}
.boundary-mark{stroke:#000;fill:#fff!important}.tick{stroke:#333;stroke-width:1}
.point{fill:#06c!important;stroke:none}.station{fill:#c60!important;stroke:#000}
.north path{fill:#222!important}.scalebar path{stroke:#222;stroke-width:2}.frame{stroke:#999;stroke-dasharray:2 3}
text{fill:#222;font-family:system-ui,sans-serif}.plan text{paint-order:stroke;stroke:#fff;stroke-width:.15px}
.grid{stroke:#e4e4e4}.axis-labels text{font-size:11px;fill:#555}.design{stroke:#c22;stroke-width:2}
.ground{stroke:#6b4;stroke-width:1.6}.pvi{stroke:#c22;fill:#fff!important}.curve-extent{stroke:#c22;stroke-dasharray:3 3}
.grade,.curve-label,.exaggeration{font-size:12px}
.sections{display:flex;flex-wrap:wrap;gap:10px}.sections figure{margin:0}.sections figcaption{font-weight:600}
svg.section-chart{width:420px;height:auto}.section-chart .terrain{stroke:#6b4;stroke-width:1.6}
.section-chart .dtm{stroke:#8a6;stroke-dasharray:5 3}.section-chart .line{stroke-width:1.6}
.c0{stroke:#c22}.c1{stroke:#15c}.c2{stroke:#a3c}.c3{stroke:#e80}.c4{stroke:#088}.c5{stroke:#555}
.legend span{display:inline-block;margin-right:12px}.legend i{display:inline-block;width:18px;height:3px;margin-right:4px;vertical-align:middle}
table{border-collapse:collapse}td,th{border:1px solid #ccc;padding:2px 6px;text-align:left}pre{background:#fff;padding:8px;border:1px solid #ccc}
)";

// Pan (drag) and zoom (wheel) on every .zoomable picture, and one view at a
// time chosen from the contents.
constexpr const char* kScript = R"(
(function(){
function zoomable(s){var v=s.viewBox.baseVal,d=null;
s.addEventListener('wheel',function(e){e.preventDefault();var r=s.getBoundingClientRect(),f=e.deltaY<0?0.8:1.25;
var px=v.x+(e.clientX-r.left)/r.width*v.width,py=v.y+(e.clientY-r.top)/r.height*v.height;
v.x=px-(px-v.x)*f;v.y=py-(py-v.y)*f;v.width*=f;v.height*=f;},{passive:false});
s.addEventListener('pointerdown',function(e){d={x:e.clientX,y:e.clientY};s.setPointerCapture(e.pointerId);});
s.addEventListener('pointermove',function(e){if(!d)return;var r=s.getBoundingClientRect();
v.x-=(e.clientX-d.x)/r.width*v.width;v.y-=(e.clientY-d.y)/r.height*v.height;d={x:e.clientX,y:e.clientY};});
s.addEventListener('pointerup',function(){d=null;});}
document.querySelectorAll('svg.zoomable').forEach(zoomable);
var links=document.querySelectorAll('nav a[data-view]');
function show(id){document.querySelectorAll('section.view').forEach(function(s){s.hidden=s.id!==id;});
links.forEach(function(a){a.className=a.dataset.view===id?'on':'';});}
links.forEach(function(a){a.addEventListener('click',function(e){e.preventDefault();show(a.dataset.view);});});
var first=location.hash.slice(1);show(document.getElementById(first)&&first!=='toc'?first:'plan');
})();
)";

std::string Legend() {
    return "<p class=\"legend\"><span><i style=\"background:#1f5fbf\"></i>straight</span><span><i "
           "style=\"background:#d42\"></i>arc</span><span><i style=\"background:#2a2\"></i>clothoid</span><span><i "
           "style=\"background:#a3c\"></i>continuity clothoid</span><span><i style=\"background:#a0703f\"></i>contours</span>"
           "<span><i style=\"background:#3a7\"></i>boundary</span><span><i style=\"background:#c33\"></i>breakline</span></p>";
}

std::string Warnings(const vesk::diag::CSink& sink) {
    if (sink.Empty()) return "<p>No warnings.</p>";
    std::string o = "<table><tr><th>severity</th><th>file</th><th>line</th><th>where</th><th>what</th><th>instead</th><th>count</th></tr>";
    for (const vesk::diag::TRecord& r : sink.Records())
        o += "<tr><td>" + std::string(vesk::diag::SeverityName(r.severity)) + "</td><td>" + Esc(r.file) + "</td><td>" +
             (r.line > 0 ? std::to_string(r.line) : "") + "</td><td>" + Esc(r.element) + "</td><td>" + Esc(r.message) +
             "</td><td>" + Esc(r.instead) + "</td><td>" + std::to_string(r.count) + "</td></tr>";
    return o + "</table>";
}

std::string Title(const TReportInput& in) {
    std::string t;
    for (const std::string& f : in.inputs) t += (t.empty() ? "" : ", ") + f;
    return t.empty() ? "roadx report" : t;
}

}  // namespace

std::string ReportHtml(CVantriDoc& doc, const TReportInput& in, const vesk::diag::CSink& sink) {
    std::vector<TRoadView> roads;
    CLibRoad* lib = doc.GetLibRoad();
    for (unsigned i = 0; i < lib->GetNumRoads(); ++i)
        roads.push_back(MakeRoadView(*lib->GetRoad(i), doc.GetLibProfile(), in.terrain));
    std::string data = ReportDataFromViews(doc, roads, in, sink)
                           .dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    // Inside a script element "</" would end it early.
    for (size_t p = 0; (p = data.find("</", p)) != std::string::npos; p += 3) data.replace(p, 2, "<\\/");

    std::string o = "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"><title>" + Esc(Title(in)) +
                    "</title><meta name=\"viewport\" content=\"width=device-width\"><style>" + kStyle +
                    "</style></head><body>\n<header><h1>" + Esc(Title(in)) + "</h1></header>\n";
    o += "<nav id=\"toc\"><a href=\"#plan\" data-view=\"plan\">Plan</a><a href=\"#profiles\" data-view=\"profiles\">Long "
         "profiles</a><a href=\"#sections\" data-view=\"sections\">Cross sections</a><a href=\"#summary\" "
         "data-view=\"summary\">Summary</a><a href=\"#warnings\" data-view=\"warnings\">Warnings (" +
         std::to_string(sink.Records().size()) + ")</a></nav>\n<main>\n";
    o += "<section class=\"view\" id=\"plan\"><h2>Plan</h2>" + Legend() +
         "<p>Drag to pan, wheel to zoom. Stations as km+m.</p>" + PlanSvg(doc, roads) + "</section>\n";
    o += "<section class=\"view\" id=\"profiles\"><h2>Long profiles</h2>";
    if (roads.empty()) o += "<p>No roads.</p>";
    for (const TRoadView& r : roads)
        o += "<h3>" + Esc(r.name) + " " + display::FormatChainage(r.startProg) + " – " +
             display::FormatChainage(r.endProg) + (r.ground.empty() ? " (no ground)" : "") + "</h3>" + ProfileSvg(r);
    o += "</section>\n<section class=\"view\" id=\"sections\"><h2>Cross sections</h2>";
    for (const TRoadView& r : roads) {
        o += "<h3>" + Esc(r.name) + "</h3><div class=\"sections\">";
        for (const TSectionView& s : r.sections)
            o += "<figure><figcaption>" + Esc(s.name) + " " + display::FormatChainage(s.prog) + "</figcaption>" +
                 SectionSvg(s) + "</figure>";
        if (r.sections.empty()) o += "<p>No cross sections.</p>";
        o += "</div>";
    }
    o += "</section>\n<section class=\"view\" id=\"summary\"><h2>Summary</h2><pre>" + Esc(in.summaryText) +
         "</pre></section>\n<section class=\"view\" id=\"warnings\"><h2>Warnings</h2>" + Warnings(sink) +
         "</section>\n</main>\n<script type=\"application/json\" id=\"roadx-data\">" + data + "</script>\n<script>" +
         kScript + "</script>\n</body></html>\n";
    return o;
}

TExchangeStatus WriteReport(CVantriDoc& doc, const std::string& path, const TReportInput& in,
                            const vesk::diag::CSink& sink) {
    const std::string page = ReportHtml(doc, in, sink);
    vesk::CAtomicFile out;
    if (!out.Open(path)) return TExchangeStatus::Fail(TExchangeStatus::WRITE_FAILED, out.Error());
    if (!vesk::WriteAll(out.Fd(), page.data(), page.size())) out.SetWriteError(errno);
    if (!out.Commit()) return TExchangeStatus::Fail(TExchangeStatus::WRITE_FAILED, out.Error());
    return TExchangeStatus::Ok();
}

}  // namespace roadx::report
