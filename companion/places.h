#pragma once

#include <string>
#include <vector>

#include "json.h"
#include "veltrane/options/xoption.h"

// The texts for places of values.

namespace veltrane::config {

/// What an empty text of the registry means: unlike one of a file it is an answer.
inline constexpr wchar_t EMPTY_ANSWER[] = L"(empty, hides both files)";
bool IsEmptyAnswer(const OptionOrigin& origin);

/// The full path of a file as spelled on the disk; as given when its drive has no folder.
std::string SpelledPath(const CString& file);

/// A file as people write it: spelled as on the disk, and relative to the current folder if that is shorter.
CString DisplayPath(const CString& file);

/// "team.ini:4 [ROOT]"; empty for a layer without files.
CString PlaceText(const SourcePlace& place);

/// The same after its layer, or the word: "command line, word 3", "environment", "team.ini:4 [ROOT]".
CString PlaceName(const OptionOrigin& place);

/// The places that are asked for a family that has no value, their sections named by their form ("base\FILES\N").
std::vector<OptionPlace> FamilyPlaces(XOption& options, const XOptionDefinition& row);

/// What is known about a place, as JSON.
Json PlaceJson(const OptionOrigin& origin);

}  // namespace veltrane::config
