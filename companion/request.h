#pragma once

#include <map>
#include <string>
#include <vector>

#include "veltrane/platform/text/cstring.h"
#include "veltrane/platform/text/encoding.h"

// The question for a command.

namespace veltrane::config {

/// A command with its options and words.
struct Request {
    std::string program;  ///< its name
    std::string version;
    std::string command;                         ///< may be empty when a document is wanted
    std::map<std::string, std::string> options;  ///< by name with its hyphens; "" for one without a value
    std::vector<std::string> words;
    bool isColoured = false;  ///< whether standard output is a terminal that shows colours

    bool Has(const std::string& option) const { return options.contains(option); }
    /// @return the value of an option, "" when it is not given
    std::string Value(const std::string& option) const {
        const auto found = options.find(option);
        return found == options.end() ? std::string{} : found->second;
    }
};

/// The question is wrong, or what it asks for cannot be read. The text is one line.
struct Refusal {
    CString text;
};

/// End of a refusal of an unknown name.
/// @param nearest    that may have been meant; empty for none
/// @param otherwise  the end when none was
inline CString NearestHint(const CString& nearest, const wchar_t* otherwise = L"") {
    return nearest.IsEmpty() ? CString{otherwise} : L"; did you mean '" + nearest + L"'?";
}

/// End of a refusal when words of the tool may be among those of this program.
inline constexpr wchar_t FORGOTTEN_HYPHENS[] = L"; did you forget '--' before the tool's own command line?";

}  // namespace veltrane::config
