#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "json.h"
#include "veltrane/platform/text/cstring.h"

// A whole configuration in force, of this machine or another, as `show --all --format json` prints it.

namespace veltrane::config {

/// A value, or the new text of a naming rule, and its place.
struct Held {
    CString text;
    CString means = {};  ///< how the tool reads the text of a flag or a list
    CString layer = {};
    CString file = {};  ///< empty for a layer without files
    int line = 0;
    int position = 0;  ///< of a rule in its version, from 1
};

struct Machine {
    struct Rule {
        bool isTable;
        int version;
        CString oldText;
        Held held;
    };
    using Key = std::pair<CString, std::optional<int>>;  ///< name, and index of a family

    std::vector<CString> names;  ///< of all options that the machine knows, in its order
    std::map<Key, Held> values;
    std::vector<Rule> rules;  ///< those in force, in the order of their application
    bool hasFailed = false;   ///< whether start-up has failed
};

/// @param name  of the document, for refusals
/// @throws Refusal  it is not an answer of `show --all --format json`
Machine ReadMachine(const Json& document, const CString& name);

/// @throws Refusal  the file cannot be read, or is not a JSON document that could be such an answer
Json ReadDocument(const std::string& file);

}  // namespace veltrane::config
