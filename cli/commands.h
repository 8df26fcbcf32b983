// The subcommands: each adds itself to the program and hands back, once
// parsed, the function that runs it.
#pragma once
#include <functional>

namespace CLI { class App; }

namespace roadx::cli {

using SetRun = std::function<void(std::function<int()>)>;

void AddInfoCommand(CLI::App& app, SetRun setRun);
void AddConvertCommand(CLI::App& app, SetRun setRun);
void AddReportCommand(CLI::App& app, SetRun setRun);

}  // namespace roadx::cli
