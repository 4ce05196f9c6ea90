// Input: the words of the command line, the settings of the environment ("NAME=value"), the basic file, the user file
// and the registry file, each after a line "====". Start-up is the same with and without origins, and when it only
// looks; and the store explains each value as it is.
#include <algorithm>
#include <cstdlib>
#include <memory>

#include "fuzz_program.h"
#include "veltrane/foundation/xexception.h"
#include "veltrane/options/xcommandline.h"
#include "veltrane/options/xoption.h"
#include "veltrane/platform/process/process.h"
#include "veltrane/platform/sources/internal/snapshot.h"
#include "veltrane/platform/sources/winreg.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

/// Environment variables that are set during its lifetime.
class Environment {
public:
    explicit Environment(std::string_view settings) {
        while (!settings.empty()) {
            const std::string line{NextLine(settings)};
            const std::string name = line.substr(0, line.find('='));
            const bool isOption = name.find_first_not_of("abcdefghijklmnopqrstuvwxyz-") == name.npos;
            if (name == line || name.empty() || !isOption) continue;
            setenv(name.c_str(), line.c_str() + name.size() + 1, 1);
            m_Names.push_back(name);
        }
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;
    ~Environment() {
        for (const std::string& name : m_Names) unsetenv(name.c_str());
    }

private:
    std::vector<std::string> m_Names;
};

struct Outcome {
    std::vector<CString> errors;  // of the three steps; empty for one that succeeded
    std::vector<CString> items;

    bool operator==(const Outcome&) const = default;
};

template <class Step>
CString ErrorOf(Step step) try {
    step();
    return {};
} catch (const XException& error) {
    CString text;
    error.GetErrorText(text);
    return FormatText(L"%d: %s", error.GetNumber(), text);
}

std::vector<CString> ItemsOf(XOption& options) {
    std::vector<CString> items;
    for (const auto* item = options.GetFirstOptionItem(L""); item; item = options.GetNextOptionItem(L"")) {
        CString name;
        item->GetOptionName(name);
        items.push_back(FormatText(L"%s[%d]=%s", name, item->GetOptionIndex(), item->GetOptionValue()));
    }
    return items;
}

Outcome Start(XOption& options, const CString& path) {
    std::vector<CString> errors{
        ErrorOf([&] { options.Initialize(path, L"tool", L"today", L"1.0", L"now"); }),
        ErrorOf([&] { options.OpenConfiguration(); }),
        ErrorOf([&] { options.ReadConfiguration(); }),
    };
    return {std::move(errors), ItemsOf(options)};
}

/// Whether the command line makes start-up end the process.
bool EndsProcess() {
    XCommandLine line;
    CString value;
    bool isEnd = false;
    ErrorOf([&] {
        for (auto* row = line.GetFirst(value); row && !isEnd; row = line.GetNext(value)) {
            isEnd = row->eOption == eOptionHelp || row->eOption == eOptionVersion || row->eOption == eOptionSetup;
        }
    });
    return isEnd;
}

// A store that only looks goes on within a step, so that what follows the first error may differ.
void RequireSameUpToError(const Outcome& looking, const Outcome& plain) {
    const auto failed = [](const CString& error) { return !error.IsEmpty(); };
    const auto first = std::ranges::find_if(plain.errors, failed);
    const auto end = first == plain.errors.end() ? first : first + 1;
    REQUIRE(std::equal(plain.errors.begin(), end, looking.errors.begin()));
    REQUIRE(first != plain.errors.end() || looking.items == plain.items);
}

bool IsSame(const OptionOrigin& a, const OptionOrigin& b) {
    return a.layer == b.layer && a.word == b.word && a.file == b.file && a.line == b.line && a.section == b.section &&
           a.key == b.key && a.text == b.text;
}

void RequireExplained(XOption& options, const XOptionItem& item, bool areKept) {
    CString name;
    item.GetOptionName(name);
    const OptionExplanation explained = options.ExplainOption(name, item.GetOptionIndex());
    const bool isBare = FindOptionDefinition(name)->IsValueOptional() && item.GetOptionValue().IsEmpty();
    REQUIRE(explained.hasValue && explained.error.IsEmpty());
    REQUIRE(explained.value == (isBare ? L"true" : item.GetOptionValue()));
    REQUIRE(explained.steps.back().kind == OptionStep::Kind::Value && explained.steps.back().text == explained.value);
    const OptionCandidates found = options.GetOptionCandidates(name, item.GetOptionIndex());
    if (areKept) REQUIRE(!found.candidates.empty() && IsSame(found.candidates[0], options.GetOptionOrigin(&item)));
}

// Asking the store about itself changes nothing.
void RequireAllExplained(XOption& options, const Outcome& outcome, bool areKept) {
    const SourceSnapshot snapshot;  // each file is read once
    for (const auto* item = options.GetFirstOptionItem(L""); item; item = options.GetNextOptionItem(L"")) {
        RequireExplained(options, *item, areKept);
    }
    options.GetLocations();
    options.GetNamingRules(eOptionTableNameRules);
    options.GetNamingRules(eOptionColumnNameRules);
    REQUIRE(ItemsOf(options) == outcome.items);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const ProgramFolder folder;
    std::string_view input = InputText(data, size);
    std::vector<CString> words = LinesOf(NextPart(input));
    const Environment environment{NextPart(input)};
    folder.Write(".metadata/tool.ini", NextPart(input));
    words.insert(words.begin(), {L"tool", L"--ini", folder.Write("user.ini", NextPart(input))});
    SetRegistryFile(folder.Write("registry.reg", input));
    SetArguments(std::move(words));

    XOption looking;
    looking.LookOnly(true);
    if (EndsProcess()) {
        RequireAllExplained(looking, Start(looking, folder.Path()), /*areKept*/ false);
        return 0;
    }
    Start(*std::make_unique<XOption>(), folder.Path());  // the default folders are there from now on
    const bool isDenied = g_Folders.isDenied;
    XOption plain;
    const Outcome outcome = Start(plain, folder.Path());
    RequireAllExplained(plain, outcome, /*areKept*/ false);
    XOption kept;
    kept.KeepOrigins(true);
    REQUIRE(Start(kept, folder.Path()) == outcome);
    RequireAllExplained(kept, outcome, /*areKept*/ true);
    if (!isDenied) RequireSameUpToError(Start(looking, folder.Path()), outcome);
    RemoveFolders();
    return 0;
}
