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

    /// The errors as lines for people, a hint that several share told once.
    std::vector<CString> ErrorTexts() const;

    XOption options;
    CString tool;
    std::vector<XException> errors;  ///< each once, with hints

private:
    void RetrieveEach();
    void AddHintsOnce();
    void RefuseFinalArguments() const;
    template <class Step>
    bool Take(Step step);
};

/// An option that a command asks for: "logfile", "--logfile", "map-file[1]".
struct AskedOption {
    const XOptionDefinition* row;
    std::optional<int> index;
};

/// @throws Refusal  there is no such option
AskedOption ParseOption(const std::string& word);

/// Whether a row names naming rules, which the files give without items.
bool IsRule(const XOptionDefinition& row);

/// What an empty text of the registry means: other than one of a file it is an answer.
inline constexpr wchar_t EMPTY_ANSWER[] = L"(empty, hides both files)";
bool IsEmptyAnswer(const OptionOrigin& origin);

/// "map-file[1]"; the bare name of a single option, and of another without an index (-1).
CString LabelOf(const XOptionDefinition& row, int index);

/// A file as people write it: spelled as on the disk, and from the current folder on when that is shorter.
CString DisplayPath(const CString& file);

/// "team.ini:4 [ROOT]"; empty for a layer without files.
CString PlaceText(const SourcePlace& place);

/// The same after its layer, or the word: "command line, word 3", "environment", "team.ini:4 [ROOT]".
CString PlaceName(const OptionOrigin& place);

/// The places that are asked for a family that has no value, their sections named by what each stands for
/// ("base\FILES\N").
std::vector<OptionPlace> FamilyPlaces(XOption& options, const XOptionDefinition& row);

/// What is known of a place, for JSON.
Json PlaceJson(const OptionOrigin& origin);

/// An error as the store tells it: reasons from the outermost on, message, remarks, locations.
Json ErrorJson(int number, const CString& location, const CString& message);
Json ErrorJson(const XException& error);

}  // namespace veltrane::config
