// What the command line refuses before it writes anything: names that match
// nothing, options the output format does not use, option values that cannot
// be right. Each check throws a CliError (exit 2) with one line that says
// what is wrong and what would be right.
#pragma once
#include <string>
#include <vector>

#include "cli/cli_ui.h"
#include "cli/options.h"
#include "exchange/formats.h"

class CVantriDoc;

namespace roadx::cli {

// No file the run writes (the output, the trace; "" or "-" for none) is one
// of the inputs or the other written file, however the paths are spelled.
void CheckNoInputReplaced(const std::vector<std::string>& inputs, const std::string& output,
                          const std::string& trace);
// --to, when given, agrees with an extension that names a format.
void CheckToMatchesName(const std::string& output, const std::string& to);

// "A", "B", ... : the first 20 names quoted, then how many more.
std::string NameList(const std::vector<std::string>& names);

// --section-code values read SURFACE=CODE, both parts given.
void CheckSectionCodeSyntax(const std::vector<std::string>& pairs);
// The import options name only what the inputs offered.
void CheckImportNames(const ImportOptions& o, const CCliUi::TOffered& offered);

// The import options given that only some formats use (--geometry) apply to
// at least one input; inputs whose format cannot be told yet are left to
// the import to refuse.
void CheckImportOptionsFit(const ImportOptions& o, const std::vector<std::string>& inputs);

// The export options given (long names, "--road") all apply to format f.
void CheckOptionsFit(const exchange::TFormat& f, const std::vector<std::string>& given);
// The export selections and --road name only what the document holds.
void CheckExportNames(CVantriDoc& doc, const ExportOptions& o, const exchange::TFormat& f);

// --contour-interval as a positive, finite number of metres.
double ParseContourInterval(const std::string& text);
// No surface of the document would get more than kMaxContourLevels levels.
void CheckContourLevels(CVantriDoc& doc, double interval, const std::string& text);

// The export options that are tied to what a format uses, with their bit.
struct TExportOptionUse {
    const char* option;
    unsigned use;  // exchange::EExportUse
};
const std::vector<TExportOptionUse>& ExportOptionUses();

}  // namespace roadx::cli
