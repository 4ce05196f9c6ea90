#include "configtool.h"

#include <algorithm>
#include <deque>
#include <filesystem>
#include <iostream>
#include <iterator>

#include <CLI/CLI.hpp>

#include "commands.h"
#include "commandtable.h"
#include "documents.h"
#include "nearest.h"
#include "veltrane/platform/process/messagebox.h"
#include "veltrane/platform/sources/environment.h"

namespace veltrane {

namespace config {

namespace {

enum ExitCode { EXIT_ANSWERED = 0, EXIT_FINDINGS = 1, EXIT_REFUSED = 2 };

constexpr char FOOTER[] =
    "\nWhat stands behind '--' is the command line of the tool, word by word:\n"
    "  @ show logfile -- base -i team.ini\n"
    "\nExit codes: 0 answered; 1 answered, and there is something to look at: a\n"
    "finding, an option without a value, a start-up that fails; 2 not answered.";

struct {
    const char* command;
    Answer (*run)(const Request& request, Startup& startup);
} constexpr WITH_STARTUP[] = {{"show", Show},   {"explain", ExplainOptions}, {"lint", Lint},
                              {"names", Names}, {"freeze", Freeze},          {"files", Files}};

std::string Replaced(std::string text, const std::string& name) {
    for (std::size_t at; (at = text.find('@')) != std::string::npos;) text.replace(at, 1, name);
    return text;
}

class HelpText : public CLI::Formatter {
    std::string make_usage(const CLI::App* app, std::string name) const override {
        const bool isWhole = app->get_parent() == nullptr;
        const auto* const row = std::ranges::find(COMMANDS, app->get_name(), &CommandRow::name);
        const std::string words = isWhole ? "COMMAND [ARGUMENT ...]" : row->words;
        return "Usage: " + name + " [OPTION ...] " + words + (words.empty() ? "" : " ") + "[-- TOOL-ARGUMENT ...]\n";
    }
};

// Descriptor 1 is standard output, 2 standard error.
bool IsColoured(const std::string& wish, const char* descriptor) {
    std::error_code failure;
    CString ignored;
    if (wish == "never" || (GetEnvironmentText(ignored, L"NO_COLOR") && !ignored.IsEmpty())) return false;
    const std::string file = std::filesystem::read_symlink(std::string{"/proc/self/fd/"} + descriptor, failure);
    return file.starts_with("/dev/pts/") || file.starts_with("/dev/tty");
}

/// The parser, made from the table, and what it has parsed.
class CommandLine {
public:
    CommandLine(const ConfigTool& tool, const std::string& name)
        : m_App("Answers questions about the configuration of " + std::string{tool.name} + ".", name) {
        m_App.set_version_flag("--version", name + ' ' + tool.version);
        m_App.set_help_flag("-h,--help", "this text; behind a command, what it takes");
        m_App.formatter(std::make_shared<HelpText>());
        m_App.footer(Replaced(FOOTER, name));
        m_App.allow_extras();
        m_App.fallthrough();
        m_App.get_formatter()->column_width(24);
        for (const CommandRow& row : COMMANDS) AddCommand(row);
        AddSwitches(m_App, "");
    }

    /// @throws CLI::ParseError, Refusal
    void Parse(std::vector<std::string> words) {
        std::ranges::reverse(words);
        m_App.parse(words);
        RefuseUnknown();
        for (const auto& [name, option] : m_Options) {
            if (option->count() > 0) m_Request.options[name] = option->as<std::string>();
        }
        const bool isAsked = !m_App.get_subcommands().empty() || m_Request.Has("--generate");
        if (!isAsked) throw Refusal{L"no command is given; --help shows them"};
        m_Request.isColoured = IsColoured(m_Request.Value("--color"), "1");
    }

    int Exit(const CLI::Error& error) const { return m_App.exit(error) == 0 ? EXIT_ANSWERED : EXIT_REFUSED; }
    std::string Command() const { return m_App.get_subcommands()[0]->get_name(); }
    const Request& Asked() const { return m_Request; }

private:
    void AddCommand(const CommandRow& row) {
        CLI::App* const command = m_App.add_subcommand(row.name, row.summary);
        command->allow_extras();
        if (row.kind != WordKind::None) command->add_option("WORDS", m_Request.words)->group("");
        AddSwitches(*command, row.name);
    }

    void AddSwitches(CLI::App& app, const std::string& command) {
        for (const SwitchRow& row : SWITCHES) {
            if (row.command != command) continue;
            const std::string value = row.value;
            CLI::Option* const option = value.empty() ? app.add_flag(row.name, row.summary)
                                                      : app.add_option(row.name, m_Values.emplace_back(), row.summary);
            option->type_name(value);
            if (value.find('|') != std::string::npos)
                option->check(CLI::IsMember(CLI::detail::split(value, '|')).description(""));
            m_Options.emplace_back(row.name, option);
        }
    }

    // The first word that is no command and no option.
    void RefuseUnknown() const {
        const std::vector<std::string> unknown = m_App.remaining(/*recurse*/ true);
        if (unknown.empty()) return;
        const std::string& word = unknown[0];
        const bool isOption = word[0] == '-';
        std::vector<CString> names;
        if (!isOption) {
            for (const CommandRow& row : COMMANDS) names.emplace_back(row.name);
        }
        if (isOption) {
            for (const SwitchRow& row : SWITCHES) names.emplace_back(row.name);
        }
        const CString nearest = Nearest(FromUtf8(word), names);
        throw Refusal{FormatText(L"no %s is called '%s'%s", isOption ? L"option" : L"command", FromUtf8(word),
                                 nearest.IsEmpty() ? L"" : L"; did you mean '" + nearest + L"'?")};
    }

    CLI::App m_App;
    Request m_Request;
    std::deque<std::string> m_Values;  // where the parser puts what it checks
    std::vector<std::pair<std::string, CLI::Option*>> m_Options;
};

/// One run of the program.
class Run {
public:
    Run(int argc, char** argv, const ConfigTool& tool) : m_Tool(tool), m_Name(std::string{tool.name} + "-config") {
        const std::vector<std::string> all(argv + std::min(argc, 1), argv + argc);
        const auto end = std::ranges::find(all, "--");
        m_Own.assign(all.begin(), end);
        for (auto word = end; word != all.end() && ++word != all.end();) m_Arguments.push_back(FromUtf8(*word));
    }

    int Do() {
        CommandLine line{m_Tool, m_Name};
        try {
            line.Parse(m_Own);
            if (!line.Asked().Has("--generate")) return Do(line.Command(), line.Asked());
            std::cout << MakeDocument(line.Asked().Value("--generate"), m_Name, m_Tool.version);
            return EXIT_ANSWERED;
        } catch (const CLI::Success& wanted) {  // --help and --version
            return line.Exit(wanted);
        } catch (const CLI::Error& error) {
            return Refuse(FromUtf8(error.what()));
        } catch (const Refusal& refusal) {
            return Refuse(refusal.text);
        }
    }

    int Refuse(const CString& text) const {
        if (IsJson()) {
            PrintDocument({{"schema", 1}, {"errors", Json::array({ErrorJson(-1, {}, text)})}});
        } else {
            std::cerr << m_Name << ": " << ToUtf8(text) << '\n';
        }
        return EXIT_REFUSED;
    }

private:
    // Known before the command line is: its own faults are told in the form that is wanted.
    bool IsJson() const {
        const auto form = std::ranges::find(m_Own, "--format");
        const bool isApart = form != m_Own.end() && form + 1 != m_Own.end() && form[1] == "json";
        return isApart || std::ranges::find(m_Own, "--format=json") != m_Own.end();
    }

    int Do(const std::string& command, const Request& request) {
        if (command == "errors") return Print(Errors(request), nullptr, /*isColoured*/ false);
        const std::string beside = std::filesystem::canonical("/proc/self/exe").parent_path() / m_Tool.name;
        Startup startup{FromUtf8(request.Has("--tool") ? request.Value("--tool") : beside), m_Arguments,
                        FromUtf8(m_Tool.version)};
        const auto* const found = std::ranges::find(WITH_STARTUP, command, [](const auto& row) { return row.command; });
        return Print(found->run(request, startup), &startup, IsColoured(request.Value("--color"), "2"));
    }

    int Print(const Answer& answer, const Startup* startup, bool isColoured) const {
        const bool hasErrors = startup && !startup->errors.empty() && !answer.tellsErrors;
        if (IsJson()) {
            PrintDocument(Document(answer, startup));
        } else {
            std::cout << answer.text << std::flush;
            std::cerr << answer.talk;
            if (hasErrors) PrintErrors(*startup, isColoured);
        }
        return !answer.hasFindings && !hasErrors ? EXIT_ANSWERED : EXIT_FINDINGS;
    }

    static Json Document(const Answer& answer, const Startup* startup) {
        Json document{{"schema", 1}};
        Json errors = Json::array();
        if (startup) {
            document["tool"] = ToUtf8(startup->tool);
            document["startup"] = startup->errors.empty() ? "ok" : "failed";
            for (const XException& error : startup->errors) errors.push_back(ErrorJson(error));
        }
        document.update(answer.document);
        if (!document.contains("errors")) document["errors"] = errors;
        return document;
    }

    // What is no UTF-8 comes as U+FFFD: JSON has no other form for it.
    static void PrintDocument(const Json& document) {
        std::cout << document.dump(2, ' ', /*ensure_ascii*/ false, Json::error_handler_t::replace) << '\n';
    }

    void PrintErrors(const Startup& startup, bool isColoured) const {
        std::cout.flush();
        for (const XException& error : startup.errors) {
            CString text = error.GetMessage();
            text.Replace(L"\r\n", L"\n");
            text.Replace(L"reason: \t", L"");
            text.Replace(L"\n", L"\n    ");
            std::cerr << m_Name << ": " << (isColoured ? Coloured("error") : "error") << ": " << ToUtf8(text) << '\n';
        }
    }

    const ConfigTool& m_Tool;
    std::string m_Name;
    std::vector<std::string> m_Own;
    std::vector<CString> m_Arguments;
};

}  // namespace

}  // namespace config

int RunConfigTool(int argc, char** argv, const ConfigTool& tool) {
    SetMessageBoxHandler([](const CString&, unsigned, unsigned) { return 1; });
    config::Run run{argc, argv, tool};
    int code = config::EXIT_REFUSED;
    try {
        code = run.Do();
    } catch (const XException& error) {
        code = run.Refuse(error.GetMessage());
    } catch (const std::exception& failure) {
        code = run.Refuse(FromUtf8(failure.what()));
    }
    if (std::cout.flush()) return code;
    std::cerr << tool.name << "-config: the standard output can not be written\n";
    return config::EXIT_REFUSED;
}

}  // namespace veltrane
