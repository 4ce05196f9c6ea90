#include "veltrane/tool/tool.h"

#include <algorithm>
#include <optional>

#include "veltrane/foundation/xpath.h"
#include "veltrane/platform/process/process.h"

namespace veltrane {

using namespace detail;

namespace {

constexpr XSource Here{L".\\tool"};

XException ErrorOf(const CFileException& failure) {
    XFileException error{failure.m_strFileName};
    const XSite site = Here(L"RunTool");
    error.SetError(failure.m_cause, site.file, site.method, site.line,
                   FormatText(L"Cannot write file <%s>!", failure.m_strFileName));
    error.AddMessage(XFileException::GetMessage(failure.m_cause));
    return error;
}

/// Runs steps that return an exit code. Whatever they throw is passed on as an error of the library.
template <class Steps, class Handler>
int Catching(Steps&& steps, const Handler& handler) try {
    return std::forward<Steps>(steps)();
} catch (XException& error) {
    return handler(error);
} catch (const CFileException& failure) {  // a log or a file of the tool can no longer be written
    XException error = ErrorOf(failure);
    return handler(error);
} catch (const std::exception& failure) {  // lack of memory, too
    XException error = MakeError(Here(L"RunTool"), L"An unknown exception occured: %S!", failure.what());
    return handler(error);
} catch (...) {
    XException error = MakeError(Here(L"RunTool"), L"An unknown exception occured!");
    return handler(error);
}

/// Reports errors: box, log, exit code.
class ErrorReporter {
public:
    explicit ErrorReporter(const ToolFacts& facts) : m_Facts(facts) {}

    /// From now on errors are also written to that log, which ends with the first one.
    void Use(XLogging& log) { m_pLog = &log; }

    /// Runs steps that return an exit code; an error that they throw is reported and has its own exit code.
    template <class Steps>
    int Watch(Steps&& steps) const {
        return Catching(std::forward<Steps>(steps), [this](XException& error) { return Report(error); });
    }

private:
    int Report(XException& error) const {
        if (m_Facts.hints) Attempt(error, [&] { m_Facts.hints(error); });
        Attempt(error, [&] { Show(error); });
        if (m_pLog) Attempt(error, [&] { WriteToLog(error); });
        return EXIT_FAILURE;
    }

    // A further failure while an error is reported is reported too, and the next way is tried.
    template <class Step>
    static void Attempt(const XException& error, const Step& step) {
        Catching([&] { return step(), EXIT_SUCCESS; },
                 [&](const XException& failure) {
                     if (failure.GetMessage() != error.GetMessage()) WriteError(failure);
                     return EXIT_FAILURE;
                 });
    }

    // If the box cannot be shown, the error is written instead.
    static void Show(const XException& error) try { error.Show(); } catch (...) {
        WriteError(error);
        throw;
    }

    static void WriteError(const XException& error) {
        CString text;
        error.GetErrorText(text);
        WriteToConsole(text, MB_ICONERROR);
    }

    void WriteToLog(const XException& error) const {
        m_pLog->ShowError(error.GetNumber(), error.GetLocation(), error.GetMessage());
        m_pLog->CloseLogFile();
    }

    const ToolFacts& m_Facts;
    XLogging* m_pLog = nullptr;
};

struct Program {
    CString folder;
    CString name;
};

Program FindProgram(const ToolFacts& facts, CString (*programFile)()) {
    Program program{FromUtf8(facts.folder), FromUtf8(facts.name)};
    if (!program.folder.IsEmpty() && !program.name.IsEmpty()) return program;
    const CString file = programFile();
    const int slash = file.ReverseFind(L'/');
    if (slash < 0) throw MakeError(Here(L"RunTool"), L"The file of the program cannot be found!");
    if (program.folder.IsEmpty()) program.folder = file.Left(std::max(slash, 1));
    if (program.name.IsEmpty()) program.name = file.Mid(slash + 1);
    return program;
}

void StartUp(XOption& store, const ToolFacts& facts, const Program& program) {
    store.KeepOrigins(facts.keepsOrigins);
    store.Initialize(program.folder, program.name, FromUtf8(facts.compileTime), FromUtf8(facts.version),
                     LocalTimeText(L"%A, %B %d, %Y ; %H:%M:%S", CurrentTime()));
    store.OpenConfiguration();
    store.ReadConfiguration();
}

void OpenLog(XLogging& log, XOption& store, const ToolFacts& facts) {
    const CString file = facts.logFile ? facts.logFile(store) : CString{};
    if (file.IsEmpty()) return;
    log.StartLogging(file, GetText<"exe-name">(store), GetText<"version-info">(store), GetText<"compile-time">(store));
}

// Empty for a tool that has left the row out, whose name one of its own may have.
template <OptionName Name>
CString TextOfLibrary(XOption& store) {
    using Option = NamedOption<Name, LIBRARY_ALONE, Values::One>;
    return Option::Row() ? Option::GetText(store, -1) : CString{};
}

bool HasOwn(const OwnTable& table) {
    return !table.options.empty() || !table.sections.empty() || table.helpHead || !table.library.HasAll();
}

}  // namespace

CString PlaceBelow(const CString& folder, const CString& file) {
    return IsAbsolutePath(file) || !IsAbsolutePath(folder) ? file : BuildFileName(folder, file);
}

int WriteBox(const CString& text, unsigned style, unsigned /*helpId*/) {
    WriteToConsole(text, style);
    return 1;
}

CString LogFileOf(XOption& store) {
    const CString file = TextOfLibrary<"logfile">(store);
    return file.IsEmpty() ? file : PlaceBelow(TextOfLibrary<"logging">(store), file);
}

int detail::RunTool(const ToolFacts& facts, const OwnTable& table, const ToolBody& body, CString (*programFile)()) {
    HoldStandardStreams();
    if (facts.boxes) SetMessageBoxHandler(facts.boxes);
    if (!facts.arguments.empty()) SetArguments(facts.arguments);
    XLogging log;
    ErrorReporter reporter{facts};
    return reporter.Watch([&] {
        std::optional<OwnOptions> registered;
        if (HasOwn(table)) registered.emplace(table);
        return reporter.Watch([&] {  // errors are reported while the rows are known
            XOption store;
            StartUp(store, facts, FindProgram(facts, programFile));
            OpenLog(log, store, facts);
            reporter.Use(log);
            const int exitCode = body(store, log);
            log.CloseLogFile();
            return exitCode;
        });
    });
}

}  // namespace veltrane
