#include "commandline.h"

#include "veltrane/tool/shortmemory.h"

namespace {

// Before CLI11, whose headers define static objects that allocate before main begins.
const struct MemoryGuard {
    MemoryGuard() { veltrane::EndWhereMemoryIsShort(2); }
} g_MemoryGuard;

}  // namespace

#include <algorithm>
#include <deque>
#include <filesystem>
#include <utility>

#include <CLI/CLI.hpp>

#include "commandtable.h"
#include "nametext.h"
#include "veltrane/options/xoptiondefinition.h"
#include "veltrane/platform/sources/environment.h"
#include "wrapped.h"

namespace veltrane::config {

using namespace detail;

namespace {

std::string ExitTexts() {
    std::string text;
    for (const auto& [code, meaning] : EXITS) AddWrapped(text, FromUtf8(meaning), 5, FormatText(L"  %d  ", code));
    return text;
}

class HelpText : public CLI::Formatter {
public:
    std::string make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const override {
        std::string text = Formatter::make_help(app, std::move(name), mode);
        for (std::size_t at; (at = text.find("\n\n\n")) != std::string::npos;) text.erase(at, 1);
        return text;
    }

private:
    static bool IsWhole(const CLI::App* app) { return app->get_parent() == nullptr; }
    static const CommandRow& RowOf(const CLI::App* app) {
        return *std::ranges::find(COMMANDS, app->get_name(), &CommandRow::name);
    }

    std::string make_description(const CLI::App* app) const override {
        return Sentence(app->get_description()) + "\n\n";
    }

    std::string make_usage(const CLI::App* app, std::string name) const override {
        const std::string words = IsWhole(app) ? "COMMAND [ARGUMENT ...]" : RowOf(app).words;
        return "Usage: " + name + " [OPTION ...] " + words + (words.empty() ? "" : " ") + "[-- TOOL-ARGUMENT ...]\n";
    }

    std::string make_footer(const CLI::App* app) const override {
        const std::string program = (IsWhole(app) ? app : app->get_parent())->get_name();
        const std::string example = "  " + program + ' ' + (IsWhole(app) ? COMMANDS[0] : RowOf(app)).example + "\n\n";
        if (!IsWhole(app))
            return "Example:\n" + example + "'" + program + " --help' shows the options of all commands.\n";
        return "Everything after '--' is the tool's own command line:\n" + example + "Exit codes:\n" + ExitTexts();
    }
};

/// The parser, built from the table, and its result.
class CommandLine {
public:
    CommandLine(const ConfigTool& tool, const std::string& name)
        : m_App("answers questions about the configuration of " + std::string{tool.name}, name) {
        m_Request.program = name;
        m_Request.version = tool.version;
        m_App.set_version_flag("--version", name + ' ' + tool.version, "show the version");
        m_App.set_help_flag("-h,--help", "show this help; after a command, help for that command");
        m_App.formatter(std::make_shared<HelpText>());
        m_App.allow_extras();
        m_App.fallthrough();
        m_App.require_subcommand(0, 1);  // everything after the first command is a word of it
        m_App.get_formatter()->column_width(24);
        for (const CommandRow& row : Commands()) AddCommand(row);
        AddSwitches(m_App, "");
    }

    /// @throws CLI::ParseError, Refusal
    Request Parse(std::vector<std::string> words, bool hasArguments) {
        std::ranges::reverse(words);
        m_App.parse(words);
        RefuseUnknown(hasArguments);
        for (const auto& [name, option] : m_Options) {
            if (option->count() > 0) m_Request.options[name] = option->as<std::string>();
        }
        const std::vector<CLI::App*> commands = m_App.get_subcommands();
        if (!commands.empty()) m_Request.command = commands[0]->get_name();
        if (commands.empty() && !m_Request.Has("--generate"))
            throw Refusal{L"missing command; --help lists the commands"};
        RefuseFormat();
        m_Request.isColoured = IsColoured(m_Request.Value("--color"), "1");
        return m_Request;
    }

    void Print(const CLI::Success& wanted) const { m_App.exit(wanted); }

private:
    void AddCommand(const CommandRow& row) {
        CLI::App* const command = m_App.add_subcommand(row.name, row.summary);
        command->group("Commands");
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
            const bool isChoice = value.find('|') != std::string::npos;
            if (isChoice) option->check([&row](const std::string& word) { return RefuseOther(row, word); });
            m_Options.emplace_back(row.name, option);
        }
    }

    static std::string RefuseOther(const SwitchRow& row, const std::string& word) {
        const std::vector<std::string> words = CLI::detail::split(row.value, '|');
        if (std::ranges::find(words, word) != words.end()) return {};
        CString text = FromUtf8(row.name) + L" must be ";
        for (std::size_t i = 0; i < words.size(); ++i) {
            text += (i == 0 ? L"" : i + 1 == words.size() ? L" or " : L", ") + FromUtf8(words[i]);
        }
        throw Refusal{text};
    }

    // Services for code review accept only findings.
    void RefuseFormat() const {
        const std::string format = m_Request.Value("--format");
        const bool isOfLint = format == "github" || format == "sarif";
        const bool isFindings = m_Request.command == "lint" && !m_Request.Has("--explain") && !m_Request.Has("--fix");
        if (isOfLint && !isFindings)
            throw Refusal{FormatText(L"--format %s is only for the findings of lint", FromUtf8(format))};
    }

    // The first word that is neither a command nor an option.
    void RefuseUnknown(bool hasArguments) const {
        const std::vector<std::string> unknown = m_App.remaining(/*recurse*/ true);
        if (unknown.empty()) return;
        const CString word = FromUtf8(unknown[0]);
        const bool isOption = word[0] == L'-';
        if (isOption && !hasArguments && FindOptionDefinition(word)) {
            throw Refusal{L"'" + word + L"' is an option of the tool" + FORGOTTEN_HYPHENS};
        }
        if (!isOption && !m_App.get_subcommands().empty())
            throw Refusal{FormatText(L"'%s' takes no argument%s", FromUtf8(m_App.get_subcommands()[0]->get_name()),
                                     hasArguments ? L"" : FORGOTTEN_HYPHENS)};
        const CString nearest =
            isOption ? NearestRow(word, SWITCHES, &SwitchRow::name) : NearestRow(word, Commands(), &CommandRow::name);
        throw Refusal{FormatText(L"unknown %s '%s'%s", isOption ? L"option" : L"command", word, NearestHint(nearest))};
    }

    CLI::App m_App;
    Request m_Request;
    std::deque<std::string> m_Values;  // storage for what the parser checks
    std::vector<std::pair<std::string, CLI::Option*>> m_Options;
};

}  // namespace

std::optional<Request> ParseCommandLine(const ConfigTool& tool, const std::string& name, std::vector<std::string> words,
                                        bool hasArguments) {
    CommandLine line{tool, name};
    try {
        return line.Parse(std::move(words), hasArguments);
    } catch (const CLI::Success& wanted) {  // --help and --version
        line.Print(wanted);
        return {};
    } catch (const CLI::ArgumentMismatch& error) {  // "--only: 1 required LAYER missing"
        const std::string text = error.what();
        const std::size_t end = text.find(": ");
        throw Refusal{FromUtf8(end == text.npos ? text : text.substr(0, end) + " needs a value")};
    } catch (const CLI::Error& error) {
        throw Refusal{FromUtf8(error.what())};
    }
}

bool IsColoured(const std::string& wish, const char* descriptor) {
    std::error_code failure;
    CString ignored;
    if (wish == "never" || (GetEnvironmentText(ignored, L"NO_COLOR") && !ignored.IsEmpty())) return false;
    const std::string file = std::filesystem::read_symlink(std::string{"/proc/self/fd/"} + descriptor, failure);
    return file.starts_with("/dev/pts/") || file.starts_with("/dev/tty");
}

}  // namespace veltrane::config
