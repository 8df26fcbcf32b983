// One fuzz input through the RD3 reader, then the road it made (if any)
// through the writer and back through the reader: hostile numbers reach the
// writer this way too. Shared by the libFuzzer target and the corpus replay
// test.
#pragma once
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <string>

#include "host/document.h"
#include "rd3/rd3_export.h"
#include "rd3/rd3_import.h"

inline roadx::rd3::ReadEnd Rd3FuzzOne(const uint8_t* data, size_t size, const std::string& scratchDir) {
    CVantriDoc doc;
    const roadx::rd3::ReadEnd status = roadx::rd3::ReadEndOf(roadx::rd3::ImportRD3BufferStatus(&doc, "Fuzz", data, size));
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
