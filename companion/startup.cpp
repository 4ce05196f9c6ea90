#include "startup.h"

#include <algorithm>
#include <filesystem>
#include <set>

#include "answer.h"
#include "hints.h"
#include "nearest.h"
#include "veltrane/options/xcommandline.h"
#include "veltrane/platform/files/filesystem.h"
#include "veltrane/platform/process/localtime.h"
#include "veltrane/platform/process/process.h"
#include "veltrane/platform/text/numbers.h"

namespace veltrane::config {

namespace {

constexpr wchar_t COMPILE_TIME[] = L"" __DATE__ " " __TIME__;

std::filesystem::path FindTool(const CString& tool) {
    std::error_code failure;
    std::filesystem::path path = std::filesystem::canonical(ToUtf8(tool), failure);
    if (failure || !std::filesystem::is_regular_file(path, failure)) {
        throw Refusal{FormatText(L"tool <%s> not found; name it with --tool PATH", tool)};
    }
    return path;
}

}  // namespace

Startup::Startup(const CString& program, const std::vector<CString>& arguments, const CString& version) {
    const std::filesystem::path path = FindTool(program);
    tool = FromUtf8(path.native());
    std::vector<CString> words = arguments;
    words.insert(words.begin(), tool);
    SetArguments(std::move(words));
    RefuseFinalArguments();
    options.KeepOrigins(true);
    options.LookOnly(true);
    Take([&] {
        options.Initialize(FromUtf8(path.parent_path().native()), FromUtf8(path.filename().native()), COMPILE_TIME,
                           version, LocalTimeText(L"%A, %B %d, %Y ; %H:%M:%S", CurrentTime()));
    });
    Take([&] { options.OpenConfiguration(); });
    const bool isRead = Take([&] { options.ReadConfiguration(); });
    if (!isRead) RetrieveEach();
    AddHintsOnce();
}

// Reading tells the first of its errors; each option that has failed tells its own again.
void Startup::RetrieveEach() {
    const XException first = errors.back();
    errors.pop_back();
    const std::size_t count = errors.size();
    for (int i = 0; XOptionDefinition* const row = GetOptionDefinitionAt(i); ++i) {
        if (row->HasOptionNumber()) Take([&] { options.RetrieveOption(row); });
    }
    if (errors.size() == count) errors.push_back(first);
}

// An error that ends with the text of one before it is that one again, met by another option.
void Startup::AddHintsOnce() {
    std::vector<CString> told;
    std::erase_if(errors, [&](const XException& error) {
        const CString text = error.GetMessage();
        const auto isKnown = [&](const CString& known) { return text.View().ends_with(known.View()); };
        if (std::ranges::any_of(told, isKnown)) return true;
        told.push_back(text);
        return false;
    });
    for (XException& error : errors) AddHints(error);
}

std::vector<CString> Startup::ErrorTexts() const {
    std::vector<CString> texts;
    std::set<CString> told;
    for (const XException& error : errors) {
        CString text;
        const auto add = [&](const Json& line) {
            text += (text.IsEmpty() ? L"" : L"\n") + FromUtf8(line.get<std::string>());
        };
        const Json json = ErrorJson(error);
        std::ranges::for_each(json["reasons"], add);
        add(json["message"]);
        for (const Json& remark : json["remarks"]) {
            const CString hint = FromUtf8(remark.get<std::string>());
            if (hint.Left(5) != L"<----" || told.insert(hint).second) add(remark);
        }
        text.Replace(L"\n", L"\n    ");
        texts.push_back(text);
    }
    return texts;
}

void Startup::RefuseFinalArguments() const {
    XCommandLine line;
    CString value;
    try {
        for (const auto* row = line.GetFirst(value); row; row = line.GetNext(value)) {
            const bool isFinal =
                row->eOption == eOptionHelp || row->eOption == eOptionVersion || row->eOption == eOptionSetup;
            if (isFinal)
                throw Refusal{FormatText(L"--%s ends the tool at once; there is nothing to show", row->szLongName)};
        }
    } catch (const XException&) {  // NOLINT(bugprone-empty-catch): start-up meets the same fault and tells it
    }
}

/// @return whether the step was taken without an error
template <class Step>
bool Startup::Take(Step step) try {
    step();
    return true;
} catch (const XException& error) {
    errors.push_back(error);
    return false;
}

AskedOption ParseOption(const std::string& word) {
    CString name = FromUtf8(word);
    std::optional<int> index;
    const int bracket = name.Find(L'[');
    if (int number = 0; bracket > 0 && ScanInteger(name.Mid(bracket + 1).View(), number)) {
        index = number;
        name = name.Left(bracket);
    }
    const XOptionDefinition* const row = FindOptionDefinition(name);
    const bool isOption = row && row->eOption != eOptionTitle;
    if (isOption && index && row->IsSingle()) {
        throw Refusal{FormatText(L"'%s' has one value; leave out its index", name)};
    }
    if (isOption) return {row, index};
    std::vector<CString> names;
    for (int i = 0; const auto* other = GetOptionDefinitionAt(i); ++i) names.emplace_back(other->szLongName);
    const CString nearest = Nearest(name, names);
    CString hint;
    if (!nearest.IsEmpty()) {
        hint = FormatText(L"; did you mean '%s'?", nearest);
    } else if (GetArguments().size() == 1) {
        hint = FORGOTTEN_HYPHENS;
    }
    throw Refusal{FormatText(L"unknown option '%s'%s", name, hint)};
}

bool IsRule(const XOptionDefinition& row) {
    return row.eOption == eOptionTableNameRules || row.eOption == eOptionColumnNameRules;
}

bool IsEmptyAnswer(const OptionOrigin& origin) {
    return origin.layer == OptionLayer::Registry && origin.text.IsEmpty();
}

CString LabelOf(const XOptionDefinition& row, int index) {
    return row.IsSingle() || index < 0 ? CString{row.szLongName}
                                       : CString{FormatText(L"%s[%d]", row.szLongName, index)};
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
        json["file"] = ToUtf8(origin.file);
        json["line"] = origin.line;
        json["section"] = ToUtf8(origin.section);
        json["key"] = ToUtf8(origin.key);
    }
    if (origin.word >= 0) json["word"] = origin.word;
    return json;
}

}  // namespace veltrane::config
