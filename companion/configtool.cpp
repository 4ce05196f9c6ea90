#include "veltrane/config_tool.h"

#include <algorithm>
#include <filesystem>
#include <iostream>

#include "commandline.h"
#include "commands.h"
#include "commandtable.h"
#include "errorjson.h"
#include "lsp.h"
#include "lspinput.h"
#include "veltrane/platform/process/messagebox.h"

namespace veltrane {

namespace config {

namespace {

struct {
    const char* command;
    Answer (*run)(const Request& request, Startup& startup);
} constexpr WITH_STARTUP[] = {
    {"show", Show},   {"explain", ExplainOptions}, {"lint", Lint},  {"names", Names}, {"set", Set},
    {"unset", Unset}, {"freeze", Freeze},          {"files", Files}};

class Run {
public:
    Run(int argc, char** argv, const ConfigTool& tool) : m_Tool(tool), m_Name(std::string{tool.name} + "-config") {
        const std::vector<std::string> all(argv + std::min(argc, 1), argv + argc);
        const auto end = std::ranges::find(all, "--");
        m_Own.assign(all.begin(), end);
        m_HasArguments = end != all.end();
        for (auto word = end; word != all.end() && ++word != all.end();) m_Arguments.push_back(FromUtf8(*word));
    }

    int Do() {
        try {
            const std::optional<Request> request = ParseCommandLine(m_Tool, m_Name, m_Own, !m_Arguments.empty());
            if (request && !request->Has("--generate")) return Do(*request);
            if (request) std::cout << MakeDocument(request->Value("--generate"), m_Name, m_Tool.version);
            return EXIT_ANSWERED;
        } catch (const Refusal& refusal) {
            return Refuse(refusal.text);
        }
    }

    int Refuse(const CString& text) const {
        if (Format() == "json") {
            PrintDocument({{"schema", 1}, {"errors", Json::array({ErrorJson(-1, {}, text)})}});
        } else {
            std::cerr << m_Name << ": " << ToUtf8(text) << '\n';
        }
        return EXIT_REFUSED;
    }

private:
    // Known before the command line is parsed: errors in it are reported in the wanted form too.
    std::string Format() const {
        const std::string name = "--format";
        for (std::size_t i = 0; i < m_Own.size(); ++i) {
            if (m_Own[i] == name && i + 1 < m_Own.size()) return m_Own[i + 1];
            if (m_Own[i].starts_with(name + '=')) return m_Own[i].substr(name.size() + 1);
        }
        return {};
    }

    int Do(const Request& request) {
        if (request.command == "errors") return Print(Errors(request), nullptr, /*isColoured*/ false);
        const std::string beside = std::filesystem::canonical("/proc/self/exe").parent_path() / m_Tool.name;
        const std::string path = request.Has("--tool") ? request.Value("--tool") : beside;
        if (request.command == "lsp") return Serve(path);
        const CString tool = FromUtf8(path);
        if (request.command == "diff") return Print(Diff(request, tool, CommandLines()), nullptr, /*isColoured*/ false);
        Startup startup{tool, m_Arguments, FromUtf8(m_Tool.version)};
        const auto* const found =
            std::ranges::find(WITH_STARTUP, request.command, [](const auto& row) { return row.command; });
        return Print(found->run(request, startup), &startup, IsColoured(request.Value("--color"), "2"));
    }

    // Each after its own "--".
    std::vector<std::vector<CString>> CommandLines() const {
        std::vector<std::vector<CString>> lines;
        if (m_HasArguments) lines.emplace_back();
        for (const CString& word : m_Arguments) {
            if (word == L"--") {
                lines.emplace_back();
            } else {
                lines.back().push_back(word);
            }
        }
        return lines;
    }

    // The client may start the server in another folder than that of the path.
    int Serve(const std::filesystem::path& tool) const {
        FileInput input{FileInput::STANDARD_INPUT};
        return ServeEditor(
            {FromUtf8(std::filesystem::absolute(tool).native()), FromUtf8(m_Tool.version), m_Tool.name, m_Name},
            m_Arguments, input, std::cout);
    }

    int Print(const Answer& answer, const Startup* startup, bool isColoured) const {
        if (answer.startup) startup = answer.startup.get();
        const bool hasErrors = startup && !startup->errors.empty() && !answer.tellsErrors;
        const std::string format = Format();
        if (format == "json") {
            PrintDocument(Document(answer, startup));
        } else if (format == "sarif") {
            PrintDocument(answer.document);
        } else {
            std::cout << answer.text << std::flush;
            std::cerr << answer.errorText;
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

    // Bytes that are not valid UTF-8 become U+FFFD: JSON has no other form for them.
    static void PrintDocument(const Json& document) {
        std::cout << document.dump(2, ' ', /*ensure_ascii*/ false, Json::error_handler_t::replace) << '\n';
    }

    void PrintErrors(const Startup& startup, bool isColoured) const {
        std::cout.flush();
        for (const CString& text : startup.ErrorTexts()) {
            std::cerr << m_Name << ": " << (isColoured ? Coloured("error") : "error") << ": " << ToUtf8(text) << '\n';
        }
    }

    const ConfigTool& m_Tool;
    std::string m_Name;
    std::vector<std::string> m_Own;
    std::vector<CString> m_Arguments;
    bool m_HasArguments = false;
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
    std::cerr << tool.name << "-config: standard output cannot be written\n";
    return config::EXIT_REFUSED;
}

}  // namespace veltrane
