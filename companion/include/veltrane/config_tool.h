#pragma once

namespace veltrane {

/// The tool whose configuration is asked about.
struct ConfigTool {
    const char* name;     ///< of its program, which is expected beside this one
    const char* version;  ///< of both
};

/// Answers one question about the configuration of a tool that is built on this library: what its options are and where
/// they come from, what is wrong with its files, and more; --help lists all commands. Only set, unset and lint --fix
/// write a file; default folders are never created. If memory runs out, a line on standard error says so and the
/// process ends at once with exit code 2.
/// @return exit code: 0 answered, 1 answered with findings, 2 not answered
/// @code
/// int main(int argc, char** argv) {
///     return veltrane::RunConfigTool(argc, argv, {"mytool", "1.0"});
/// }
/// @endcode
int RunConfigTool(int argc, char** argv, const ConfigTool& tool);

}  // namespace veltrane
