// One fuzz input through the RD3 reader, then the road it made (if any)
// through the writer and back through the reader: hostile numbers reach the
// writer this way too. The input is read once more with a diagnostics sink,
// which must end the same way (the records are the caller's extra, never a
// change to the import). Shared by the libFuzzer target and the corpus
// replay test.
#pragma once
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "host/document.h"
#include "rd3/rd3_export.h"
#include "rd3/rd3_import.h"
#include "vesk/diagnostics.h"

inline roadx::rd3::ReadEnd Rd3FuzzOne(const uint8_t* data, size_t size, const std::string& scratchDir) {
    CVantriDoc doc;
    const roadx::rd3::ReadEnd status = roadx::rd3::ReadEndOf(roadx::rd3::ImportRD3BufferStatus(&doc, "Fuzz", data, size));
    {
        CVantriDoc withSink;
        vesk::diag::CSink sink;
        const TExchangeStatus s = roadx::rd3::ImportRD3BufferStatus(&withSink, "Fuzz", data, size, &sink);
        if (roadx::rd3::ReadEndOf(s) != status) {
            std::fprintf(stderr, "rd3 fuzz: the import ends otherwise with a diagnostics sink\n");
            std::abort();
        }
    }
    if (CRoad* road = doc.GetLibRoad()->GetRoad(0)) {
        const std::string path = scratchDir + "/rd3_fuzz_" + std::to_string(::getpid()) + ".rd3";
        if (roadx::rd3::WriteRD3File(*road, path).ok()) {
            CVantriDoc again;
            roadx::rd3::ReadEndOf(roadx::rd3::ImportRD3Status(&again, path.c_str()));
        }
        std::remove(path.c_str());
    }
    return status;
}
