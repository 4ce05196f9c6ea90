#include "places.h"

#include <filesystem>

#include "answer.h"
#include "veltrane/platform/files/filesystem.h"

namespace veltrane::config {

using namespace detail;

bool IsEmptyAnswer(const OptionOrigin& origin) {
    return origin.layer == OptionLayer::Registry && origin.text.IsEmpty();
}

std::string SpelledPath(const CString& file) {
    const std::string path = MapPath(file);
    return path.empty() ? ToUtf8(file) : path;
}

CString DisplayPath(const CString& file) {
    const std::filesystem::path path = MapPath(file);
    if (path.empty()) return file;
    std::error_code failure;  // the folder may have been removed
    const std::filesystem::path here = std::filesystem::current_path(failure);
    const std::string near = failure ? std::string{} : path.lexically_relative(here).native();
    return FromUtf8(near.empty() || near.size() >= path.native().size() ? path.native() : near);
}

CString PlaceText(const SourcePlace& place) {
    if (place.file.IsEmpty()) return {};
    const CString file = DisplayPath(place.file);
    return place.line > 0 ? FormatText(L"%s:%d [%s]", file, place.line, place.section)
                          : FormatText(L"%s [%s]", file, place.section);
}

CString PlaceName(const OptionOrigin& place) {
    if (place.word >= 0) return FormatText(L"%s, word %d", LayerName(place.layer), place.word);
    const CString text = PlaceText(place);
    return text.IsEmpty() ? CString{LayerName(place.layer)} : text;
}

std::vector<OptionPlace> FamilyPlaces(XOption& options, const XOptionDefinition& row) {
    std::vector<OptionPlace> places = options.GetOptionCandidates(row.szLongName, -1).places;
    CString section = options.GetSectionName(row.eSection);
    section.Replace(L"%d", L"N");
    for (OptionPlace& place : places) {
        if (!place.found) place.section = section;
    }
    return places;
}

Json PlaceJson(const OptionOrigin& origin) {
    Json json{{"layer", ToUtf8(LayerName(origin.layer))}};
    if (!origin.file.IsEmpty()) {
        json["file"] = SpelledPath(origin.file);
        json["line"] = origin.line;
        json["section"] = ToUtf8(origin.section);
        json["key"] = ToUtf8(origin.key);
    }
    if (origin.word >= 0) json["word"] = origin.word;
    return json;
}

}  // namespace veltrane::config
