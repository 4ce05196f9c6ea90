// The frame of a tool, in processes of its own.
#include "veltrane/tool/tool.h"

#include "support/tool.h"
#include "veltrane/foundation/xraise.h"

constexpr enumOption eOptionWeight = veltrane::OwnOption(1, eString | eSingle);
constexpr XOptionDefinition OWN[] = {veltrane::OptionRow(eOptionWeight, eSectionRoot, L"", L"weight", 2)};
constexpr veltrane::OwnTable OWN_TABLE{OWN};
using OwnTool = veltrane::Tool<OWN_TABLE>;
constexpr XOptionDefinition FLAG[] = {
    veltrane::OptionRow(veltrane::OwnOption(1, eBoolean), eSectionRoot, L"", L"logfile", 2)};
constexpr veltrane::OwnTable NO_LOG{.options = FLAG, .library = veltrane::BASE_ROWS.Without<"logfile">()};

class ToolFrame : public ToolTest {
protected:
    ToolFrame() {
        Write(".metadata/tool.ini", "[ROOT]\nweight=5\nlogfile=" + Path("run.log") + "\n" + DATABASE);
        m_Facts.name = "tool";
        m_Facts.folder = m_Top;
        m_Facts.arguments = {L"tool", L"db"};
    }
    ChildResult Run(const std::function<int(OwnTool&)>& body, int closed = -1) const {
        std::filesystem::remove(Path("run.log"));
        return RunChild([&] {
            close(closed);
            return veltrane::RunTool(m_Facts, body);
        });
    }
    std::string Log() const { return std::filesystem::exists(Path("run.log")) ? m_Folder.Read("run.log") : ""; }

    static constexpr char DATABASE[] = "[db]\ndictionary-name=d\nrole=r\nregistry=g\n";
    const std::string m_Top = Path("");
    veltrane::ToolFacts m_Facts;
};

TEST_F(ToolFrame, EveryWayOutHasItsExitCodeBoxAndLog) {
    using Facts = veltrane::ToolFacts;
    static const auto error = [](const wchar_t* text) { return veltrane::MakeError({L"a", L"A", 1}, L"%s", text); };
    const auto throws = [](auto thrown) { return [thrown](auto&&...) -> int { throw thrown; }; };
    const auto fails = throws(error(L"it fails!"));
    const auto prints = [](OwnTool&) { return veltrane::PrintLine("a", 1), 0; };
    const auto same = [](Facts&) {};
    const struct {
        const char* what;
        std::function<void(Facts&)> change;
        std::function<int(OwnTool&)> body;
        int exitCode;
        const char* errors;  // at the end of the error stream
        const char* log;     // in the log; "" for no log
        int closed = -1;
    } cases[] = {
        {"exit code", same, [](OwnTool& tool) { return std::stoi(tool.options.Get<"weight">()); }, 5, "", "finish: "},
        {"error", same, fails, 1, "message:\tit fails!\n", "Message:   \tit fails!\r\nError Code:\t-1\r\n"},
        {"a file's", same, throws(CFileException{CFileException::diskFull, 28, L"f"}), 1,
         "message:\tCannot write file <f>!\n\tDisk full!\nnumber:\t13\n", "Cannot write file <f>!\r\n\tDisk full!"},
        {"foreign", same, throws(std::runtime_error{"x"}), 1, "exception occured: x!\n", "occured: x!\r\n"},
        {"memory", same, throws(std::bad_alloc{}), 1, ": std::bad_alloc!\n", ": std::bad_alloc!\r\n"},
        {"number", same, throws(5), 1, "exception occured!\n", "exception occured!\r\n"},
        {"no output", same, prints, 1, "output cannot be written!\n", "output cannot be written!\r\n", STDOUT_FILENO},
        {"no box", same, [&](OwnTool& tool) { return open(Path("run.log").c_str(), O_APPEND | O_WRONLY), fails(tool); },
         1, "", "it fails!\r\n", STDERR_FILENO},
        {"bad box", [&](Facts& facts) { facts.boxes = throws(error(L"no box!")); }, fails, 1,
         "\tit fails!\nAn error occured:\nlocation:\t<A> in [a], line [1]\nmessage:\tno box!\n", "it fails!\r\n"},
        {"bad hints", [](Facts& facts) { facts.hints = [](XException&) { throw error(L"no hint!"); }; }, fails, 1,
         "\tno hint!\nAn error occured:\nlocation:\t<A> in [a], line [1]\nmessage:\tit fails!\n", "it fails!\r\n"},
        {"log lost", same, [&](OwnTool& tool) { return tool.log.Close(), fails(tool); }, 1, "\nnumber:\t1\n",
         "start: "},
        {"no log", [](Facts& facts) { facts.logFile = nullptr; }, fails, 1, "it fails!\n", ""},
        {"bad log", [](Facts& facts) { facts.logFile = [](XOption&) { return CString{L"/no/log"}; }; }, prints, 1,
         "Cannot open file </no/log>!\n\tBad path!\nnumber:\t3\n", ""},
        {"slip", [](Facts& facts) { facts.arguments[1] = L"--wieght"; }, prints, 1, "mean <--weight>? ---->\n", ""},
        {"no hints", [](Facts& facts) { facts.arguments[1] = L"--wieght", facts.hints = nullptr; }, prints, 1,
         "> not recognized!\n    <---- Try <--help> to view the help window! ---->\n", ""},
        {"no folder", [](Facts& facts) { facts.folder = "/no"; }, prints, 1,
         "\t    <---- Name the folder with <--metadata FOLDER> ---->\n", ""},
        {"no file", [](Facts& facts) { facts.name = "x"; }, prints, 1,
         "\t    <---- Name its folder with <--metadata FOLDER> ---->\n", ""},
        {"no database", [](Facts& facts) { facts.arguments.resize(1); }, prints, 1,
         "\t    <---- Or give it with <--name> on the command line ---->\n", ""},
        {"within", same, [&](OwnTool&) { return veltrane::RunTool(m_Facts, prints); }, 1, "before a store is made!\n",
         "finish"},
        {"help", [](Facts& facts) { facts.arguments[1] = L"--help"; }, fails, 0, "", ""},
    };
    const Facts facts = m_Facts;
    for (const auto& [what, change, body, exitCode, errors, log, closed] : cases) {
        SCOPED_TRACE(what);
        change(m_Facts = facts);
        const ChildResult result = Run(body, closed);
        EXPECT_EQ(result.exitCode, exitCode);
        EXPECT_TRUE(result.errors.ends_with(errors) && result.errors.empty() == !*errors) << result.errors;
        ExpectIn(Log(), log);
        EXPECT_TRUE(Log().empty() == !*log && Log().find("An error occured:") == std::string::npos) << Log();
    }
}

TEST_F(ToolFrame, ActionsEndWithTheTimeTheyTook) {
    const ChildResult result = Run([](OwnTool& tool) {
        tool.Act("load a" + std::string{"\xC3\xA4"}, [] {});
        return tool.Act(L"outer", [&] {
            tool.Log(std::string{"entry"});
            veltrane::PrintLine(7, '.', std::string{"b"}, L"\u00E4");
            return 7;
        });
    });
    EXPECT_EQ(result.exitCode, 7);
    EXPECT_EQ(result.output, "7.b\xC3\xA4\n");
    const std::string text = std::regex_replace(Log(), std::regex{"[0-9:]{8}: |[0-9.]+ seconds"}, "@");
    ExpectIn(text, "\r\n@load a\xC3\xA4,  @\r\n@outer\r\n@entry\r\n@outer,  @\r\n***");
}

TEST_F(ToolFrame, WithoutTheRowOfALogEntriesGoNowhere) {
    const auto body = [](veltrane::Tool<NO_LOG>& tool) { return tool.Act("load", [] { return 7; }); };
    const ChildResult result = RunChild([&] { return veltrane::RunTool(m_Facts, body); });
    EXPECT_EQ(std::pair(result.exitCode, result.errors), std::pair(7, std::string{}));
    EXPECT_EQ(Log(), "");  // although the file names one
}
