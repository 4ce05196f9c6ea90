#pragma once

#include <string>
#include <vector>

#include "lint.h"

namespace veltrane::config {

/// The tool that the server is asked about.
struct LspTool {
    CString path;
    CString version;
    std::string name;
    std::string program;  ///< name of the server itself, whose manual explains the codes
};

/// A start-up of the tool as it would run now, and all that lint finds in it.
struct LspAnalysis {
    /// @throws Refusal  as Startup
    LspAnalysis(const LspTool& tool, const std::vector<CString>& arguments);

    /// The source that is a file, by its path as documents have it; null for a file that is not a source.
    const StartupSource* FindSource(const std::string& path) const;

    Startup startup;
    LintRun run;
    Findings findings;
    std::vector<std::string> paths;  ///< of the sources, as KnownPath gives them
};

}  // namespace veltrane::config
