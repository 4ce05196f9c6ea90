#include "lspanalysis.h"

#include <algorithm>

#include "lspdocuments.h"
#include "veltrane/platform/files/filesystem.h"

namespace veltrane::config {

LspAnalysis::LspAnalysis(const LspTool& tool, const std::vector<CString>& arguments)
    : startup(tool.path, arguments, tool.version), run(startup), findings(FindAll(run)) {
    for (const StartupSource& source : run.sources) paths.push_back(KnownPath(MapPath(source.path)));
}

const StartupSource* LspAnalysis::FindSource(const std::string& path) const {
    const auto found = std::ranges::find(paths, path);
    return found == paths.end() ? nullptr : &run.sources[static_cast<std::size_t>(found - paths.begin())];
}

}  // namespace veltrane::config
