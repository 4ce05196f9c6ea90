#pragma once

#include <string>
#include <vector>

#include "json.h"
#include "veltrane/options/xoption.h"

// How the places of values are told.

namespace veltrane::config {

/// What an empty text of the registry means: other than one of a file it is an answer.
inline constexpr wchar_t EMPTY_ANSWER[] = L"(empty, hides both files)";
bool IsEmptyAnswer(const OptionOrigin& origin);

/// A file as it is spelled on the disk, whole; as given when its drive leads nowhere.
std::string SpelledPath(const CString& file);

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

}  // namespace veltrane::config
