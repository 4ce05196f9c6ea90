#include "startup.h"

#include <algorithm>
#include <filesystem>
#include <set>

#include "answer.h"
#include "errorjson.h"
#include "veltrane/options/typed.h"
#include "veltrane/options/xcommandline.h"
#include "veltrane/platform/process/localtime.h"
#include "veltrane/platform/process/process.h"
#include "veltrane/tool/hints.h"

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
    Attempt([&] {
        options.Initialize(FromUtf8(path.parent_path().native()), FromUtf8(path.filename().native()), COMPILE_TIME,
                           version, LocalTimeText(L"%A, %B %d, %Y ; %H:%M:%S", CurrentTime()));
    });
    Attempt([&] { options.OpenConfiguration(); });
    const bool isRead = Attempt([&] { options.ReadConfiguration(); });
    if (!isRead) RetrieveEach();
    AddHintsOnce();
}

std::unique_ptr<Startup> Startup::Again() {
    std::vector<CString> words = GetArguments();
    words.erase(words.begin());
    return std::make_unique<Startup>(tool, words, GetText<"version-info">(options));
}

// Reading reports only its first error; asking each option again reports them all.
void Startup::RetrieveEach() {
    const XException first = errors.back();
    errors.pop_back();
    const std::size_t count = errors.size();
    for (int i = 0; XOptionDefinition* const row = GetOptionDefinitionAt(i); ++i) {
        if (row->HasOptionNumber()) Attempt([&] { options.RetrieveOption(row); });
    }
    if (errors.size() == count) errors.push_back(first);
}

// An error that ends with the text of an earlier one is the same error, met by another option.
void Startup::AddHintsOnce() {
    std::vector<CString> reported;
    std::erase_if(errors, [&](const XException& error) {
        const CString text = error.GetMessage();
        const auto isKnown = [&](const CString& known) { return text.View().ends_with(known.View()); };
        if (std::ranges::any_of(reported, isKnown)) return true;
        reported.push_back(text);
        return false;
    });
    for (XException& error : errors) AddHints(error);
}

std::vector<CString> Startup::ErrorTexts() const {
    std::vector<CString> texts;
    std::set<CString> hints;
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
            if (hint.Left(5) != L"<----" || hints.insert(hint).second) add(remark);
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

/// @return whether the step ran without an error
template <class Step>
bool Startup::Attempt(Step step) try {
    step();
    return true;
} catch (const XException& error) {
    errors.push_back(error);
    return false;
}

}  // namespace veltrane::config
