// Every file and folder that start-up looks at, and what is there.
#include <algorithm>

#include "commands.h"
#include "places.h"
#include "startupfiles.h"

namespace veltrane::config {

namespace {

using LocationKind = OptionLocation::Kind;

constexpr const wchar_t* KINDS[] = {L"registry", L"metadata folder", L"basic file", L"user file", L"data", L"folder"};
constexpr const wchar_t* ENCODINGS[] = {L"UTF-8", L"UTF-8 with a mark", L"UTF-16LE", L"UTF-16BE"};

template <class Names, class Value>
CString NameOf(const Names& names, Value value) {
    return names[static_cast<std::size_t>(value)];
}

SourceFileLines ReadLines(const OptionLocation& location) {
    return location.kind == LocationKind::Registry ? ReadRegistryLines(location.path) : ReadProfileLines(location.path);
}

bool IsFile(const OptionLocation& location) {
    return location.kind == LocationKind::Registry || location.kind == LocationKind::BasicFile ||
           location.kind == LocationKind::UserFile;
}

void DescribeFile(const OptionLocation& location, CString& state, Json& json) {
    const SourceFileLines file = ReadLines(location);
    state = ReadingName(file.reading);
    json["reading"] = ToUtf8(state);
    if (file.reading != SourceReading::Done) return;
    const CString encoding = file.hasWindows1252 ? L"Windows-1252" : NameOf(ENCODINGS, file.encoding);
    const int lines = static_cast<int>(file.lines.size());
    state = FormatText(L"%s, %d %s", encoding, lines, lines == 1 ? L"line" : L"lines");
    json["encoding"] = ToUtf8(encoding);
    json["lines"] = lines;
    if (location.kind == LocationKind::Registry) return;
    state += FormatText(L", section names %d characters", file.sectionListLength);
    json["section_list_length"] = file.sectionListLength;
}

// A missing folder is created if only start-up itself has named it.
CString FolderState(XOption& options, const OptionLocation& location) {
    if (location.exists) return L"there";
    if (location.path.IsEmpty()) return L"not named";
    const OptionCandidates found = options.GetOptionCandidates(location.option, -1);
    const bool isDefault = found.candidates.size() == 1 && found.candidates[0].layer == OptionLayer::StartUp;
    return isDefault && location.kind == LocationKind::UserFolder ? L"missing; the tool creates it" : L"missing";
}

CString OriginText(XOption& options, const CString& option) {
    const XOptionItem* const item = option.IsEmpty() ? nullptr : options.GetFirstOptionItem(option);
    if (!item) return {};
    const OptionOrigin origin = options.GetOptionOrigin(item);
    const CString place = PlaceText(origin);
    return place.IsEmpty() ? CString{LayerName(origin.layer)} : place;
}

// "D:\Out = /srv/out/Out" if they differ.
CString PathText(const OptionLocation& location) {
    if (location.path.IsEmpty()) return L"-";
    if (location.spelled.IsEmpty()) return location.path + L" (no such drive)";
    const CString shown = DisplayPath(location.path);
    const bool isSame = location.path.CompareNoCase(location.spelled) == 0;
    return isSame ? shown : location.path + L" = " + shown;
}

void Add(Answer& answer, Columns& columns, XOption& options, const OptionLocation& location, bool isUserFileRead) {
    Json json{{"kind", ToUtf8(NameOf(KINDS, location.kind))}};
    if (!location.option.IsEmpty()) json["option"] = ToUtf8(location.option);
    json["path"] = ToUtf8(location.path);
    json["spelled"] = ToUtf8(location.spelled);
    json["exists"] = location.exists;
    CString state = FolderState(options, location);
    if (location.kind == LocationKind::UserFile && !isUserFileRead) {
        state = L"not read: a file names it, which is too late";
    } else if (IsFile(location)) {
        DescribeFile(location, state, json);
    }
    json["state"] = ToUtf8(state);
    const CString origin = OriginText(options, location.option);
    if (!origin.IsEmpty()) json["named_by"] = ToUtf8(origin);
    const bool isUserFolder = location.kind == LocationKind::UserFolder;
    columns.Add({isUserFolder ? location.option : NameOf(KINDS, location.kind), PathText(location),
                 origin.IsEmpty() ? state : state + L" (" + origin + L")"});
    answer.document["files"].push_back(std::move(json));
}

}  // namespace

Answer Files(const Request& /*request*/, Startup& startup) {
    Answer answer;
    answer.document["files"] = Json::array();
    Columns columns;
    const std::vector<OptionLocation> locations = startup.options.GetLocations();
    const bool isUserFileRead = std::ranges::any_of(locations, [](const OptionLocation& location) {
        return location.kind == LocationKind::UserFile && location.isInForce;
    });
    for (const OptionLocation& location : locations) Add(answer, columns, startup.options, location, isUserFileRead);
    columns.Print(answer);
    StartupFiles{startup}.AddFaults(answer);
    return answer;
}

}  // namespace veltrane::config
