// The LandXML import: loads a file, shows the host's import dialog with what
// it holds, and adds what the user chose to the document through one
// document builder: surveys and points, surfaces, then every chosen alignment
// as a road with its plan geometry, vertical profile and cross sections.
#pragma once
#include "exchange/common/status.h"
#include "landxml_import/plan_mode.h"
#include "vesk/diagnostics.h"

class IVantriDati;

namespace roadx::landxml {

// ImportLandXML saying how it ended:
//   OPEN_FAILED  the file could not be read;
//   BAD_INPUT    not well-formed XML ("malformed XML at line L: reason") or no
//                LandXML root; the document is untouched;
//   CANCELLED    the dialog was cancelled; the document is untouched;
//   ENDED_EARLY  a rule ended the import (which one, in the message); what
//                was added before stays;
//   OK.
// dialogFlagA and dialogFlagB are handed to the dialog unchanged.
// scanSurfaces: read the surfaces' points and faces straight from the file's
// buffer (surface_scan.h); false reads every element through the DOM. Both
// make the same builder calls; the second is kept to compare against.
// With a sink, what the import skipped, defaulted, clamped or changed is
// reported to it (records name `path` as given); the builder calls are the
// same.
TExchangeStatus ImportLandXMLStatus(IVantriDati* doc, const char* path, bool dialogFlagA, bool dialogFlagB,
                                    bool scanSurfaces = true, vesk::diag::CSink* sink = nullptr);
// A sink given in the place of scanSurfaces would convert to true without a
// word: that call does not compile.
TExchangeStatus ImportLandXMLStatus(IVantriDati* doc, const char* path, bool dialogFlagA, bool dialogFlagB,
                                    vesk::diag::CSink* sink) = delete;

// What a caller beside the host may ask of the import beyond the status
// function's arguments.
//
// The plan mode travels in this struct, down the call chain as an argument,
// rather than in a per-thread scope like the diagnostics (import_diag.h):
// diagnostics only watch, while the mode changes the builder calls the host
// gets, so every function it reaches says so in its signature, and a scope
// left open by mistake cannot change another import's geometry.
struct TImportOptions {
    bool scanSurfaces = true;            // as ImportLandXMLStatus's scanSurfaces
    vesk::diag::CSink* sink = nullptr;   // as ImportLandXMLStatus's sink
    EPlanGeometry geometry = EPlanGeometry::Attributes;
};

// ImportLandXMLStatus with options; with the default options it is that
// call, builder call for builder call.
TExchangeStatus ImportLandXMLWith(IVantriDati* doc, const char* path, bool dialogFlagA, bool dialogFlagB,
                                  const TImportOptions& options);

}  // namespace roadx::landxml
