#pragma once

namespace veltrane {

/// What the man page of a tool says about it, besides its options.
struct DescribedTool {
    const char* program;  ///< "mytool"; the basic file is mytool.ini
    const char* title;    ///< in the head of the pages: "Mytool"
    const char* version;
    const char* summary;           ///< one line, without a full stop
    const char* about = "";        ///< further paragraphs of the description, in troff; may be empty, like the next two
    const char* environment = "";  ///< further entries of the section ENVIRONMENT
    const char* examples = "";     ///< the section EXAMPLES with its head
};

/// The main program of a generator: writes the man page, the page of the basic file or a shell completion, from the
/// option table with all registered rows.
/// @param argv  the document (man, ini, bash, zsh, fish) and the file to write
/// @return exit code: 0 written, 1 not written, 2 wrong arguments
/// @code
/// int main(int argc, char** argv) {
///     const veltrane::OwnOptions options{MYTOOL_TABLE};
///     return veltrane::RunDescribe(argc, argv, {"mytool", "Mytool", "1.0", "measure schemas"});
/// }
/// @endcode
int RunDescribe(int argc, char** argv, const DescribedTool& tool);

}  // namespace veltrane
