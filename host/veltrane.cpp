// A host of the base library, the part of a schema tool that is not about schemas: it acts on the options it knows.
// Copy from here.
#include <vector>

#include "namelist.h"
#include "summary.h"
#include "veltrane/foundation/xraise.h"
#include "veltrane/platform/sources/environment.h"
#include "veltrane/tool/tool.h"

using namespace veltrane;

namespace {

constexpr XSource Here{L".\\veltrane"};

using Host = Tool<>;

bool IsJsonWanted() {
    CString form;
    return GetEnvironmentText(form, L"VELTRANE_SUMMARY") && form == L"json";
}

void WriteChangeFile(const CString& path, const std::vector<CString>& lines) {
    CFileException failure;
    CStdioFile file;
    if (!file.Open(path, CFile::modeCreate | CFile::modeWrite | CFile::shareDenyWrite, &failure)) {
        throw MakeOpenError(Here(L"WriteChangeFile"), path, failure);
    }
    CString text;
    for (const CString& line : lines) text += line + L"\n";
    file.WriteString(text);
    file.Close();
}

constexpr std::size_t COMPARED = 2;  // the first lists of the command line

bool IsComparisonWanted(const Host& host) {
    return host.options.Has<"diff-dictionary">() || host.options.Has<"create-changefile">();
}

// The dictionaries of the command line, in its order. Only the names to compare are kept.
std::vector<NameList> LoadNameLists(Host& host, bool isQuiet) {
    std::vector<NameList> lists;
    const std::size_t kept = IsComparisonWanted(host) ? COMPARED : 0;
    for (const auto& dictionary : host.options.All<"load-dictionary">()) {
        NameList* const list = lists.size() < kept ? &lists.emplace_back() : nullptr;
        host.Act("load " + dictionary.value, [&] {
            ReadNameList(host.store, FromUtf8(dictionary.value), [isQuiet, list](const ListedName& name) {
                if (list) Keep(name.isTable ? list->tables : list->columns, name.newName);
                if (!isQuiet) PrintLine(name.oldName, " -> ", name.newName);
            });
        });
    }
    return lists;
}

void CompareLists(Host& host, std::vector<NameList>& lists, bool isQuiet) {
    if (!IsComparisonWanted(host)) return;
    if (lists.size() < COMPARED) {
        throw MakeError(Here(L"CompareLists"),
                        L"It's necessary to load at least two dictionaries (see the '-l' option)!");
    }
    const std::vector<CString> lines = host.Act("compare dictionaries", [&] {
        std::vector<CString> difference = Difference(lists[0], lists[1]);
        for (const auto& [index, file] : host.options.All<"create-changefile">()) {
            WriteChangeFile(PlaceBelow(host.options.GetText<"changefile-root">(), FromUtf8(file)), difference);
        }
        return difference;
    });
    if (isQuiet || !host.options.Has<"diff-dictionary">()) return;
    for (const CString& line : lines) PrintLine(line);
}

void Act(Host& host) {
    const bool isSummaryWanted = host.options.Get<"summary">();
    const bool isJson = isSummaryWanted && IsJsonWanted();
    if (isSummaryWanted) isJson ? PrintSummaryAsJson(host.store) : PrintSummary(host.store);
    std::vector<NameList> lists = LoadNameLists(host, isJson);
    CompareLists(host, lists, isJson);
}

// Before the static objects of the libraries.
[[gnu::used, gnu::section(".preinit_array")]] void (*const g_AtStart)() = [] { EndWhereMemoryIsShort(EXIT_FAILURE); };

}  // namespace

int main() {
    return RunTool({.version = VELTRANE_VERSION, .compileTime = __DATE__ " " __TIME__}, Act);
}
