// Helpers of the element-reader tests: a document with its builder, the host
// trace recorded in memory, a LandXML text loaded from a string, and expected
// trace lines written with the same formatter the builder uses.
#pragma once
#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/document.h"
#include "host/load_vantri_dati.h"
#include "host/trace.h"
#include "landxml_import/readers.h"
#include "landxml_import/xml_reader.h"

namespace lx2test {

// A LandXML text from its body: the root element with its namespace, the
// body inside.
inline std::string LandXml(std::string_view body) {
    return std::string("<?xml version=\"1.0\"?>\n<LandXML xmlns=\"http://www.landxml.org/schema/LandXML-1.2\">\n") +
           std::string(body) + "\n</LandXML>\n";
}

// One document, one builder, the trace recorded from construction on.
struct TDocFixture {
    CTraceMemory trace;
    CTraceScope scope{&trace};
    CVantriDoc doc;
    CLoadVantriDati builder{&doc};
    CXmlReader reader;

    XmlSection Load(std::string_view xml) {
        EXPECT_TRUE(reader.LoadFromText(xml)) << reader.GetStatus().Describe();
        return reader.Root();
    }
    // The trace lines recorded so far whose operation is one of `ops` (all
    // lines when empty).
    std::vector<std::string> Lines(std::initializer_list<std::string_view> ops = {}) const {
        std::vector<std::string> out;
        for (const std::string& l : trace.lines) {
            const std::string_view op = std::string_view(l).substr(0, l.find(' '));
            bool keep = ops.size() == 0;
            for (std::string_view o : ops) keep = keep || o == op;
            if (keep) out.push_back(l);
        }
        return out;
    }
    void ClearTrace() { trace.lines.clear(); }
};

// Expected trace lines, built by the trace's own formatter.
inline CTraceLine L(std::string_view op) { return CTraceLine(op); }

}  // namespace lx2test
