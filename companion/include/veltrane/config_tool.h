#pragma once

namespace veltrane {

/// The tool whose configuration is asked about.
struct ConfigTool {
    const char* name;     ///< of its program, which is looked for beside this one
    const char* version;  ///< of both
};

/// Answers one question about the configuration of a tool that is built on this library: what its options are and where
/// they come from, what is wrong with its files, and more; --help tells all. Writes and creates nothing.
/// Where memory is short a line on standard error says so, and the process ends at once with exit code 2.
/// @return exit code: 0 answered, 1 answered and there is something to look at, 2 the question could not be answered
/// @code
/// int main(int argc, char** argv) {
///     return veltrane::RunConfigTool(argc, argv, {"mytool", "1.0"});
/// }
/// @endcode
int RunConfigTool(int argc, char** argv, const ConfigTool& tool);

}  // namespace veltrane
