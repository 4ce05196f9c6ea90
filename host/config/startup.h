#pragma once

#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "request.h"
#include "veltrane/foundation/xexception.h"
#include "veltrane/options/xoption.h"

namespace veltrane::config {

using Json = nlohmann::ordered_json;  // only declared: what makes some includes answer.h
using namespace detail;               // what is shared with the sample host

/// The tool as it would start now: its store after a start-up that only looks, and every error on the way.
class Startup {
public:
    /// @param tool       path of the program; it need not be started
    /// @param arguments  its command line, without the program
    /// @throws Refusal  there is no such program; an argument ends it at once
    Startup(const CString& tool, const std::vector<CString>& arguments, const CString& version);

    XOption options;
    CString tool;
    std::vector<XException> errors;

private:
    void RefuseFinalArguments() const;
    template <class Step>
    bool Take(Step step);
};

/// An option that a command asks for: "logfile", "--logfile", "map-file[1]".
struct AskedOption {
    const XOptionDefinition* row;
    std::optional<int> index;
};

/// @throws Refusal  no option is called so
AskedOption ParseOption(const std::string& word);

/// "map-file[1]"; the bare name of a single option.
CString LabelOf(const XOptionDefinition& row, int index);

/// A file as people write it: spelled as on the disk, and from the current folder on when it lies below that.
CString DisplayPath(const CString& file);

/// "team.ini:4 [ROOT]"; empty for a layer without files.
CString PlaceText(const SourcePlace& place);

/// What is known of a place, for JSON.
Json PlaceJson(const OptionOrigin& origin);

/// An error as the store tells it: reasons from the outermost on, message, remarks, locations.
Json ErrorJson(int number, const CString& location, const CString& message);
Json ErrorJson(const XException& error);

}  // namespace veltrane::config
