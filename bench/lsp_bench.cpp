// What an editor waits for after a change: the diagnostics of the whole configuration, as the server writes them.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <nlohmann/json.hpp>

#include "lsptalk.h"
#include "lspuri.h"
#include "support/ratio.h"
#include "veltrane/platform/sources/winreg.h"

using namespace veltrane;
using namespace veltrane::config;

namespace {

/// A tool with a basic file of about a given size, and an editor that has it open.
class Editor {
public:
    explicit Editor(std::size_t size) : m_Talk(Tool(), Arguments(), m_Client) {
        SetRegistryFile(L"/dev/null");
        std::filesystem::create_directories(Folder());
        std::ofstream{Folder() / "tool"} << "";
        m_Text = "[base]\nrole=r\ndictionary-name=d\nregistry=g\n[USER]\nquiet=yes\n[ROOT]\nlogfile=%name%.log\n";
        for (int rule = 1; m_Text.size() < size; ++rule) {
            const std::string number = std::to_string(10'000 + rule);
            if (rule % 100 == 1) m_Text += "\n; rules of a version\n[base\\TABLENAME RULES\\" + number + "]\n";
            m_Text += "NAME_" + number + " = A_LONGER_NAME_" + number + "\n";
        }
        std::ofstream{File()} << m_Text;
        Say("initialize", {{"capabilities", LspJson::object()}});
        const std::string uri = UriOfPath(File().string());
        Say("textDocument/didOpen", {{"textDocument", {{"uri", uri}, {"version", 0}, {"text", m_Text}}}});
        m_Talk.Publish();
    }
    Editor(const Editor&) = delete;
    Editor& operator=(const Editor&) = delete;
    ~Editor() {
        std::error_code ignored;
        std::filesystem::remove_all(Folder(), ignored);
        SetRegistryFile({});
    }

    void Change() {
        const char* const letter = ++m_nVersion % 2 == 0 ? "s" : "S";
        const LspJson range{{"start", {{"line", 5}, {"character", 8}}}, {"end", {{"line", 5}, {"character", 9}}}};
        Say("textDocument/didChange", {{"textDocument", {{"uri", UriOfPath(File().string())}, {"version", m_nVersion}}},
                                       {"contentChanges", {{{"range", range}, {"text", letter}}}}});
        m_Output.str({});
        m_Talk.Publish();
        if (m_Output.view().find("C05") == std::string_view::npos) std::abort();
    }
    void Lint() const {
        Startup startup{Tool().path, Arguments(), L"1.0"};
        LintRun run{startup};
        if (FindAll(run).empty()) std::abort();
    }
    static void Read() {
        if (ReadProfileLines(FromUtf8(File().string())).lines.empty()) std::abort();
    }

private:
    static std::filesystem::path Folder() {
        return std::filesystem::temp_directory_path() / ("veltrane-bench-" + std::to_string(getpid()));
    }
    static std::filesystem::path File() { return Folder() / "tool.ini"; }
    static LspTool Tool() { return {FromUtf8((Folder() / "tool").string()), L"1.0", "tool", "tool-config"}; }
    static std::vector<CString> Arguments() { return {L"base", L"-m", FromUtf8(Folder().string())}; }

    void Say(const char* method, LspJson params) {
        LspJson message{{"method", method}, {"params", std::move(params)}};
        if (std::string_view{method} == "initialize") message["id"] = 1;
        m_Talk.Handle(message);
    }

    std::string m_Text;
    int m_nVersion = 0;
    std::ostringstream m_Output;
    LspClient m_Client{m_Output};
    LspTalk m_Talk;
};

/// Bar: 3.
void ChangeBesideLint(benchmark::State& state) {
    Editor editor{static_cast<std::size_t>(state.range(0))};
    CompareToFloor(
        state, 1, [&] { editor.Lint(); }, [&] { editor.Change(); });
}
BENCHMARK(ChangeBesideLint)->Arg(10 << 10)->Arg(1 << 20)->Unit(benchmark::kMicrosecond);

/// Bar: 10.
void ChangeBesideReading(benchmark::State& state) {
    Editor editor{1 << 20};
    CompareToFloor(
        state, 1, [&] { Editor::Read(); }, [&] { editor.Change(); });
}
BENCHMARK(ChangeBesideReading)->Unit(benchmark::kMicrosecond);

}  // namespace
