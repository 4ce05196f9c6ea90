#include "commandline.h"

#include "shortmemory.h"

namespace {

// In front of CLI11, whose headers bring static objects that need memory before main begins.
const struct MemoryGuard {
    MemoryGuard() { veltrane::detail::EndWhereMemoryIsShort(2); }
} g_MemoryGuard;

}  // namespace

#include <algorithm>
#include <deque>
#include <filesystem>
#include <utility>

#include <CLI/CLI.hpp>

#include "commandtable.h"
#include "nearest.h"
#include "plaintext.h"
#include "veltrane/platform/sources/environment.h"

namespace veltrane::config {

using namespace detail;

namespace {

constexpr char FOOTER[] =
    "\nWhat stands behind '--' is the command line of the tool, word by word:\n"
    "  @ show logfile -- base -i team.ini\n"
    "\nExit codes: 0 answered; 1 answered, and there is something to look at: an\n"
    "error that lint finds (with --strict a warning, too), a collision, an option\n"
    "without a value, a start-up that fails; 2 not answered.";

class HelpText : public CLI::Formatter {
    std::string make_usage(const CLI::App* app, std::string name) const override {
        const bool isWhole = app->get_parent() == nullptr;
        const auto* const row = std::ranges::find(COMMANDS, app->get_name(), &CommandRow::name);
        const std::string words = isWhole ? "COMMAND [ARGUMENT ...]" : row->words;
        return "Usage: " + name + " [OPTION ...] " + words + (words.empty() ? "" : " ") + "[-- TOOL-ARGUMENT ...]\n";
    }
};

/// The parser, made from the table, and what it has parsed.
class CommandLine {
public:
    CommandLine(const ConfigTool& tool, const std::string& name)
        : m_App("Answers questions about the configuration of " + std::string{tool.name} + ".", name) {
        m_App.set_version_flag("--version", name + ' ' + tool.version);
        m_App.set_help_flag("-h,--help", "this text; behind a command, what it takes");
        m_App.formatter(std::make_shared<HelpText>());
        m_App.footer(Replaced(FOOTER, "@", name));
        m_App.allow_extras();
        m_App.fallthrough();
        m_App.get_formatter()->column_width(24);
        for (const CommandRow& row : COMMANDS) AddCommand(row);
        AddSwitches(m_App, "");
    }

    /// @throws CLI::ParseError, Refusal
    Request Parse(std::vector<std::string> words) {
        std::ranges::reverse(words);
        m_App.parse(words);
        RefuseUnknown();
        for (const auto& [name, option] : m_Options) {
            if (option->count() > 0) m_Request.options[name] = option->as<std::string>();
        }
        const std::vector<CLI::App*> commands = m_App.get_subcommands();
        if (!commands.empty()) m_Request.command = commands[0]->get_name();
        if (commands.empty() && !m_Request.Has("--generate")) throw Refusal{L"no command is given; --help shows them"};
        m_Request.isColoured = IsColoured(m_Request.Value("--color"), "1");
        return m_Request;
    }

    void Print(const CLI::Success& wanted) const { m_App.exit(wanted); }

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

}  // namespace

std::optional<Request> ParseCommandLine(const ConfigTool& tool, const std::string& name,
                                        std::vector<std::string> words) {
    CommandLine line{tool, name};
    try {
        return line.Parse(std::move(words));
    } catch (const CLI::Success& wanted) {  // --help and --version
        line.Print(wanted);
        return {};
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
