// Reading back a page that `roadx report` wrote: its text and the JSON of
// its "roadx-data" element.
#pragma once
#include <fstream>
#include <sstream>
#include <string>

#include <nlohmann/json.hpp>

namespace clitest {

inline std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

// The embedded data, parsed; throws when the element is missing or the JSON
// does not parse.
inline nlohmann::json ReportData(const std::string& page) {
    const std::string open = "<script type=\"application/json\" id=\"roadx-data\">";
    const size_t a = page.find(open);
    if (a == std::string::npos) throw std::runtime_error("no roadx-data element");
    const size_t b = page.find("</script>", a);
    if (b == std::string::npos) throw std::runtime_error("roadx-data is not closed");
    return nlohmann::json::parse(page.substr(a + open.size(), b - a - open.size()));
}

// How often a text occurs in the page.
inline size_t Count(const std::string& page, const std::string& what) {
    size_t n = 0;
    for (size_t p = page.find(what); p != std::string::npos; p = page.find(what, p + what.size())) ++n;
    return n;
}

}  // namespace clitest
