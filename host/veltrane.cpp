// A host of the base library, the part of a schema tool that is not about schemas: it starts the option store, opens
// the log, and acts on the options it knows. Copy from here.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <new>
#include <vector>

#include "console.h"
#include "hints.h"
#include "namelist.h"
#include "shortmemory.h"
#include "summary.h"
#include "veltrane/foundation/xaction.h"
#include "veltrane/foundation/xpath.h"
#include "veltrane/foundation/xraise.h"
#include "veltrane/logging/xlogging.h"
#include "veltrane/options/xoption.h"
#include "veltrane/platform/process/localtime.h"
#include "veltrane/platform/sources/environment.h"
#include "veltrane/platform/text/encoding.h"

using namespace veltrane;

namespace {

constexpr XSource Here{L".\\veltrane"};
constexpr wchar_t VERSION_INFO[] = VELTRANE_VERSION;
constexpr wchar_t COMPILE_TIME[] = L"" __DATE__ " " __TIME__;

/// Everything that one run of the tool works with.
struct Tool {
    XOption options;
    XLogging log;
};

/// An action of the tool: an entry in the log that ends with the time it took.
class LoggedAction {
public:
    LoggedAction(XLogging& log, const CString& what) : m_Log(log) {
        m_Log.WriteLog(what, /*newLine*/ true, /*timeStamp*/ true);
        m_Clock.Start();
    }
    void Done() {
        m_Clock.Stop();
        m_Log.WriteLog(L", " + m_Clock.ElapsedStr(), /*newLine*/ false, /*timeStamp*/ false);
    }

private:
    XLogging& m_Log;
    XAction m_Clock;
};

void StartUp(Tool& tool) {
    const std::filesystem::path program = std::filesystem::canonical("/proc/self/exe");
    tool.options.KeepOrigins(true);
    tool.options.Initialize(FromUtf8(program.parent_path().native()), FromUtf8(program.filename().native()),
                            COMPILE_TIME, VERSION_INFO, LocalTimeText(L"%A, %B %d, %Y ; %H:%M:%S", CurrentTime()));
    tool.options.OpenConfiguration();
    tool.options.ReadConfiguration();
}

// A relative file goes below a folder option when that is known.
CString PlaceBelow(XOption& options, const CString& folderOption, const CString& file) {
    const CString folder = options.GetOptionString(folderOption, -1);
    return IsAbsolutePath(file) || !IsAbsolutePath(folder) ? file : BuildFileName(folder, file);
}

void OpenLog(Tool& tool) {
    const CString file = tool.options.GetOptionString(L"logfile", -1);
    if (file.IsEmpty()) return;
    tool.log.StartLogging(PlaceBelow(tool.options, L"logging", file), tool.options.GetOptionString(L"exe-name", -1),
                          tool.options.GetOptionString(L"version-info", -1),
                          tool.options.GetOptionString(L"compile-time", -1));
}

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

bool IsComparisonWanted(XOption& options) {
    return options.GetFirstOptionItem(L"diff-dictionary") || options.GetFirstOptionItem(L"create-changefile");
}

// The dictionaries of the command line, in its order. Only names that are compared are kept.
std::vector<NameList> LoadNameLists(Tool& tool, bool isQuiet) {
    std::vector<NameList> lists;
    const std::size_t kept = IsComparisonWanted(tool.options) ? COMPARED : 0;
    for (const auto* item = tool.options.GetFirstOptionItem(L"load-dictionary"); item;
         item = tool.options.GetNextOptionItem(L"load-dictionary")) {
        LoggedAction action{tool.log, L"load " + item->GetOptionString()};
        NameList* const list = lists.size() < kept ? &lists.emplace_back() : nullptr;
        ReadNameList(tool.options, item->GetOptionString(), [isQuiet, list](const ListedName& name) {
            if (list) Keep(name.isTable ? list->tables : list->columns, name.newName);
            if (!isQuiet) PrintLine(name.oldName + L" -> " + name.newName);
        });
        action.Done();
    }
    return lists;
}

void CompareLists(Tool& tool, std::vector<NameList>& lists, bool isQuiet) {
    if (!IsComparisonWanted(tool.options)) return;
    if (lists.size() < COMPARED) {
        throw MakeError(Here(L"CompareLists"),
                        L"It's necessary to load at least two dictionaries (see the '-l' option)!");
    }
    LoggedAction action{tool.log, L"compare dictionaries"};
    const std::vector<CString> lines = Difference(lists[0], lists[1]);
    for (const auto* changeFile = tool.options.GetFirstOptionItem(L"create-changefile"); changeFile;
         changeFile = tool.options.GetNextOptionItem(L"create-changefile")) {
        WriteChangeFile(PlaceBelow(tool.options, L"changefile-root", changeFile->GetOptionCommand()), lines);
    }
    action.Done();
    if (isQuiet || !tool.options.GetFirstOptionItem(L"diff-dictionary")) return;
    for (const CString& line : lines) PrintLine(line);
}

void Act(Tool& tool) {
    const bool isSummaryWanted = tool.options.GetOptionBoolean(L"summary", -1);
    const bool isJson = isSummaryWanted && IsJsonWanted();
    if (isJson) {
        PrintSummaryAsJson(tool.options);
    } else if (isSummaryWanted) {
        PrintSummary(tool.options);
    }
    std::vector<NameList> lists = LoadNameLists(tool, isJson);
    CompareLists(tool, lists, isJson);
    if (!std::cout.flush()) throw MakeError(Here(L"Act"), L"The standard output cannot be written!");
}

// The one place that shows errors: box, log, exit code.
int Report(Tool& tool, XException& error) {
    try {
        veltrane::detail::AddHints(error);
    } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): the error itself is what counts
    }
    error.Show();
    try {
        tool.log.ShowError(error.GetNumber(), error.GetLocation(), error.GetMessage());
    } catch (const CFileException&) {  // NOLINT(bugprone-empty-catch): the box has told it, the log cannot be written
    }
    return EXIT_FAILURE;
}

// What is no error of the library becomes one.
XException ErrorOf(const CFileException& failure) {
    XFileException error{failure.m_strFileName};
    const XSite site = Here(L"Run");
    error.SetError(failure.m_cause, site.file, site.method, site.line,
                   FormatText(L"Cannot write file <%s>!", failure.m_strFileName));
    error.AddMessage(XFileException::GetMessage(failure.m_cause));
    return error;
}

int Run() {
    Tool tool;
    try {
        StartUp(tool);
        OpenLog(tool);
        Act(tool);
        tool.log.CloseLogFile();
        return EXIT_SUCCESS;
    } catch (XException& error) {
        return Report(tool, error);
    } catch (const CFileException& failure) {  // a log or change file that cannot be written any more
        XException error = ErrorOf(failure);
        return Report(tool, error);
    } catch (const std::exception& failure) {  // lost memory, too
        XException error = MakeError(Here(L"Run"), L"An unknown exception occured: %S!", failure.what());
        return Report(tool, error);
    }
}

// In front of the static objects of the libraries.
[[gnu::used, gnu::section(".preinit_array")]] void (*const g_AtStart)() = [] {
    detail::EndWhereMemoryIsShort(EXIT_FAILURE);
};

}  // namespace

int main() {
    std::set_new_handler(nullptr);  // an error from here on, which box and log tell
    try {
        UseConsoleBoxes();
        return Run();
    } catch (...) {  // no memory is left to tell more
        std::fputs("An unknown exception occured!\n", stderr);
    }
    return EXIT_FAILURE;
}
