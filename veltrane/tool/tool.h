#pragma once

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "veltrane/foundation/xaction.h"
#include "veltrane/logging/xlogging.h"
#include "veltrane/options/typed.h"
#include "veltrane/platform/process/messagebox.h"
#include "veltrane/platform/process/programfile.h"
#include "veltrane/platform/text/encoding.h"
#include "veltrane/tool/hints.h"
#include "veltrane/tool/output.h"
#include "veltrane/tool/shortmemory.h"

// The frame of a tool: everything around its own work, from its start to its end.

namespace veltrane {

/// A relative file below a folder that is absolute; else the file as it is.
[[nodiscard]] VELTRANE_API CString PlaceBelow(const CString& folder, const CString& file);

// What the frame does unless the facts of a tool say otherwise.

/// Shows a box as text on the console, information on standard output, everything else on standard error. Never waits.
VELTRANE_API int WriteBox(const CString& text, unsigned style, unsigned helpId);
/// The file of the log: that of the option "logfile", a relative one below the folder "logging"; empty for no log, also
/// for a tool without these rows.
[[nodiscard]] VELTRANE_API CString LogFileOf(XOption& store);

/// What a tool says about itself (UTF-8), and what it wants done differently. Everything may be left out.
struct ToolFacts {
    std::string_view version = {};
    std::string_view compileTime = {};
    std::string_view name = {};    ///< of basic file, registry key and log entries; empty: the file name of the program
    std::string_view folder = {};  ///< where the folder ".metadata" is; empty: that of the program, links resolved
    std::vector<CString> arguments = {};        ///< the program first; empty: those of the process
    bool keepsOrigins = true;                   ///< of values, at a few percent of the start
    MessageBoxHandler boxes = WriteBox;         ///< stays installed; null keeps the handler that is installed
    void (*hints)(XException&) = AddHints;      ///< null: errors are reported as they are
    CString (*logFile)(XOption&) = &LogFileOf;  ///< null: no log
};

/// What a tool works with. A text is a CString, or UTF-8. A table that is inline makes it the same type in every source
/// file.
/// @code
/// using Tool = veltrane::Tool<OWN_TABLE>;
/// @endcode
template <const OwnTable& Table = LIBRARY_ALONE>
class Tool {
public:
    Tool(XOption& ofOptions, XLogging& ofLog) : options(ofOptions), store(ofOptions), log(ofLog) {}
    Tool(const Tool&) = delete;
    Tool& operator=(const Tool&) = delete;

    const TypedOptions<Table> options;
    XOption& store;
    XLogging& log;  ///< not open if there is no log: what is written to it is then dropped

    /// Writes an entry to the log. @throws CFileException  the system cannot write it
    template <class Text>
    void Log(const Text& text) {
        ++m_nEntries;
        log.WriteLog(Wide(text), /*newLine*/ true, /*timeStamp*/ true);
    }

    /// Runs an action under an entry in the log that ends with the time it took; if other entries came in between, the
    /// time gets an entry of its own. An error passes through, and the entry stays without a time.
    /// @return what the action returns
    template <class Text, class Action>
    decltype(auto) Act(const Text& what, Action&& action) {
        Log(what);
        const int entry = m_nEntries;
        XAction clock;
        clock.Start();
        const auto end = [&] {
            if (m_nEntries != entry) Log(what);
            log.WriteLog(L", " + clock.ElapsedStr(), /*newLine*/ false, /*timeStamp*/ false);
        };
        if constexpr (std::is_void_v<std::invoke_result_t<Action>>) {
            std::forward<Action>(action)();
            end();
        } else {
            decltype(auto) result = std::forward<Action>(action)();
            end();
            return result;
        }
    }

private:
    template <class Text>
    static CString Wide(const Text& text) {
        if constexpr (std::is_convertible_v<const Text&, CString>) {
            return text;
        } else {
            return FromUtf8(text);
        }
    }

    int m_nEntries = 0;
};

namespace detail {

using ToolBody = std::function<int(XOption& store, XLogging& log)>;

/// The part of RunTool that is the same for all tools. @return exit code
VELTRANE_API int RunTool(const ToolFacts& facts, const OwnTable& table, const ToolBody& body, CString (*programFile)());

/// The part that differs by tool. @return exit code
template <const OwnTable& Table, class Body>
int RunBody(XOption& store, XLogging& log, Body& body) {
    using Result = std::invoke_result_t<Body&, Tool<Table>&>;
    static_assert(std::is_void_v<Result> || std::is_same_v<Result, int>, "the body returns the exit code, or void");
    Tool<Table> tool{store, log};
    int exitCode = EXIT_SUCCESS;
    if constexpr (std::is_void_v<Result>) {
        body(tool);
    } else {
        exitCode = body(tool);
    }
    FlushOutput();
    return exitCode;
}

template <class Function>
struct TableOf {
    static_assert(sizeof(Function) == 0,
                  "the body takes the tool: [](Tool& tool), 'using Tool = veltrane::Tool<...>;'");
};
template <class Result, const OwnTable& Table>
struct TableOf<std::function<Result(Tool<Table>&)>> {
    static constexpr const OwnTable& TABLE = Table;
};

/// Its std::function tells the parameter of a body; a generic one has none.
template <class Body>
consteval auto FunctionOf() {
    if constexpr (requires(Body & body) { std::function{body}; }) {
        return std::type_identity<decltype(std::function{std::declval<Body&>()})>{};
    } else {
        return std::type_identity<Body>{};
    }
}

}  // namespace detail

/// Runs a tool from its start to its end, for main to return: registers the rows of its table, starts the option store
/// up, opens the log, and calls the body with the tool. Anything thrown on the way, of any type, is reported in a box
/// with hints and in an error block of the log, and so is an error in reporting it. A standard output that cannot be
/// written is an error too. The options help, version and setup end the process.
/// @param body  returns nothing or the exit code
/// @return EXIT_FAILURE after an error, else what the body returns, EXIT_SUCCESS if nothing
/// @code
/// using Tool = veltrane::Tool<OWN_TABLE>;
/// int main() {
///     return veltrane::RunTool({.version = "1.0"}, [](Tool& tool) {
///         tool.Act("measure", [&] { veltrane::PrintLine("unit: ", tool.options.Get<"unit">()); });
///     });
/// }
/// @endcode
template <const OwnTable& Table, class Body>
int RunTool(const ToolFacts& facts, Body&& body) {
    ThrowWhereMemoryIsShort(EXIT_FAILURE);
    try {
        const auto act = [&body](XOption& store, XLogging& log) { return detail::RunBody<Table>(store, log, body); };
        return detail::RunTool(facts, Table, act, GetProgramFile);
    } catch (...) {  // no memory is left to report more
        std::fputs("An unknown exception occured!\n", stderr);
    }
    return EXIT_FAILURE;
}

/// The same, with the table of the tool that is the body's parameter.
template <class Body>
int RunTool(const ToolFacts& facts, Body&& body) {
    using Function = typename decltype(detail::FunctionOf<Body>())::type;
    return RunTool<detail::TableOf<Function>::TABLE>(facts, std::forward<Body>(body));
}

}  // namespace veltrane
