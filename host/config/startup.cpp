#include "startup.h"

#include <filesystem>

#include "answer.h"
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
        throw Refusal{FormatText(L"no tool <%s>; name it with --tool PATH", tool)};
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
    if (isRead) return;
    const XException first = errors.back();  // one of many: each option that has failed tells its own again
    errors.pop_back();
    const std::size_t count = errors.size();
    for (int i = 0; XOptionDefinition* const row = GetOptionDefinitionAt(i); ++i) {
        if (row->HasOptionNumber()) Take([&] { options.RetrieveOption(row); });
    }
    if (errors.size() == count) errors.push_back(first);
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
    if (row && row->eOption != eOptionTitle) return {row, index};
    std::vector<CString> names;
    for (int i = 0; const auto* other = GetOptionDefinitionAt(i); ++i) names.emplace_back(other->szLongName);
    const CString nearest = Nearest(name, names);
    throw Refusal{FormatText(L"no option is called '%s'%s", name,
                             nearest.IsEmpty() ? CString{} : CString{FormatText(L"; did you mean '%s'?", nearest)})};
}

CString LabelOf(const XOptionDefinition& row, int index) {
    return row.IsSingle() ? CString{row.szLongName} : CString{FormatText(L"%s[%d]", row.szLongName, index)};
}

CString DisplayPath(const CString& file) {
    const std::string path = MapPath(file);
    if (path.empty()) return file;
    std::error_code failure;  // the folder may have been removed
    const std::string here = std::filesystem::current_path(failure).string() + "/";
    return FromUtf8(!failure && path.starts_with(here) ? path.substr(here.size()) : path);
}

CString PlaceText(const SourcePlace& place) {
    if (place.file.IsEmpty()) return {};
    const CString file = DisplayPath(place.file);
    return place.line > 0 ? FormatText(L"%s:%d [%s]", file, place.line, place.section)
                          : FormatText(L"%s [%s]", file, place.section);
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
