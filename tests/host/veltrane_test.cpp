// The sample host as a real process.

#include "options/xoptiondefinition.h"
#include "support/childprocess.h"
#include "support/environment.h"
#include "support/support.h"

namespace {

using Words = std::vector<std::string>;

class Host : public testing::Test {
protected:
    Host() {
        WriteBasic("");
        for (const char* folder : {"config", "data", "data/log"}) {
            std::filesystem::create_directories(m_Folder.Path() / folder);
        }
    }

    void WriteBasic(const std::string& more) const {
        Write("meta/veltrane.ini", "[db]\ndictionary-name=d\nrole=r\nregistry=g\n" + more);
    }
    std::string Path(const std::string& name) const { return (m_Folder.Path() / name).string(); }
    /// The basic file as the store asks for it: in lower case.
    std::string BasicFile() const { return ToUtf8(FromUtf8(Path("meta/veltrane.ini")).MakeLower()); }
    void Write(const std::string& name, const std::string& bytes) const { m_Folder.Write(name, bytes); }

    /// Runs the host with its metadata folder, in the test's folder.
    ChildResult Run(Words arguments, const Words& environment = {}, const std::string& output = {}) const {
        arguments.insert(arguments.begin(), {"-m", Path("meta")});
        return RunBare(arguments, environment, output);
    }
    ChildResult RunBare(Words arguments, Words environment = {}, const std::string& output = {}) const {
        arguments.insert(arguments.begin(), "veltrane");
        environment.insert(environment.begin(), "VORNAK_REGISTRY=" + Path("registry.reg"));
        return RunChild([&] {
            std::vector<char*> argv;
            std::vector<char*> envp;
            for (std::string& word : arguments) argv.push_back(word.data());
            for (std::string& word : environment) envp.push_back(word.data());
            argv.push_back(nullptr);
            envp.push_back(nullptr);
            if (!output.empty()) dup2(open(output.c_str(), O_WRONLY), STDOUT_FILENO);
            if (chdir(m_Folder.Path().c_str()) != 0) return 126;
            execve(VELTRANE_HOST, argv.data(), envp.data());
            return 127;
        });
    }

    TempFolder m_Folder;
};

// The line of the JSON summary that shows an option.
std::string JsonOf(const ChildResult& result, const std::string& option) {
    const std::string start = "{\"option\":\"" + option + "\"";
    const std::size_t begin = result.output.find(start);
    return begin == std::string::npos ? "" : result.output.substr(begin, result.output.find('\n', begin) - begin);
}

TEST_F(Host, TellsTheSourceOfEveryValue) {
    struct {
        bool typed, registry, user, basic, environment;
        const char *source, *value;
    } const cases[] = {
        {true, true, true, true, true, "command line", "typed"},
        {false, true, true, true, true, "registry", "registry"},
        {false, false, true, true, true, "user file", "user"},
        {false, false, false, true, true, "basic file", "basic"},
        {false, false, false, false, true, "environment", "environment"},
        {true, false, false, true, false, "command line", "typed"},
        {false, true, false, true, true, "registry", "registry"},
        {false, false, true, false, true, "user file", "user"},
    };
    for (const auto& [typed, registry, user, basic, environment, source, value] : cases) {
        WriteBasic(basic ? "[ROOT]\ndictionary-root=basic\n" : "");
        Write("user.ini", user ? "; first line\n[ROOT]\ndictionary-root=user\n" : "");
        Write("registry.reg", std::string{"REGEDIT4\n[HKLM\\SOFTWARE\\VORNAK\\veltrane\\ROOT]\n"} +
                                  (registry ? "\"dictionary-root\"=\"registry\"\n" : ""));
        Words arguments = {"-i", Path("user.ini"), "db", "--summary"};
        if (typed) arguments.insert(arguments.end(), {"-dr", "typed"});
        Words variables = {"VELTRANE_SUMMARY=json"};
        if (environment) variables.emplace_back("dictionary-root=environment");
        const ChildResult result = Run(arguments, variables);
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        const std::string line = JsonOf(result, "dictionary-root");
        const std::string head = std::string{"{\"option\":\"dictionary-root\",\"index\":-1,\"value\":\""} + value +
                                 "\",\"source\":\"" + source + "\"";
        EXPECT_EQ(line.substr(0, head.size()), head);
        if (std::string{source} == "user file") {
            EXPECT_EQ(line.substr(head.size()),
                      ",\"file\":\"" + Path("user.ini") + "\",\"line\":3,\"section\":\"ROOT\"}");
        }
    }
}

TEST_F(Host, TellsWhatStartUpAndTheHostBrought) {
    WriteBasic("obsolete-classes-2=7,3\n[db\\FILES\\4]\nmap-file=\"a\\b\"\n");
    const ChildResult result =
        Run({"--data", Path("data"), "db", "--summary", "--exe-name", "veltrane.exe", "-l", "x.txt"},
            {"VELTRANE_SUMMARY=json"});
    EXPECT_EQ(result.exitCode, 1) << "the name list is missing; the summary stands in front";
    const auto expect = [&](const std::string& option, const std::string& rest) {
        EXPECT_EQ(JsonOf(result, option), "{\"option\":\"" + option + "\"" + rest);
    };
    const std::string file = ",\"source\":\"basic file\",\"file\":\"" + BasicFile() + "\",\"line\":";
    expect("version-info", ",\"index\":-1,\"value\":\"1.0.0\",\"source\":\"host\"}");
    expect("exe-name", ",\"index\":-1,\"value\":\"veltrane.exe\",\"source\":\"command line\"}");
    expect("logging", ",\"index\":-1,\"value\":\"" + Path("data/log") + "\",\"source\":\"start-up\"}");
    expect("metadata", ",\"index\":-1,\"value\":\"" + Path("meta") + "\",\"source\":\"command line\"}");
    expect("load-dictionary", ",\"index\":0,\"value\":\"x.txt\",\"source\":\"command line\"}");
    expect("obsolete-classes", ",\"index\":2,\"value\":\"7,3\",\"list\":[3,7]" + file + "5,\"section\":\"db\"}");
    expect("map-file", ",\"index\":4,\"value\":\"a\\\\b\"" + file + "7,\"section\":\"db\\\\files\\\\4\"}");
}

TEST_F(Host, TellsTheLineOfEveryValueOfAFamily) {
    Write("meta/veltrane.ini",
          "[p/e\\]\ndictionary-name=d\nrole=r\nregistry=g\n[p/e\\\\FILES\\1]\nmap-file=m\n"
          "[p/e\\\\FILES\\-5]\nmap-file=n\n[USER]\n50%=x\nload-dictionary=one\nload-dictionar=%spool%/two\n"
          "load-dictiona=one\nspool=s\n");
    const ChildResult result = Run({"p/e\\", "--summary"});
    const auto expect = [&](const std::string& item, const std::string& line) {
        const std::string origin = "(basic file " + BasicFile() + ":" + line + ")\n";
        const std::size_t begin = result.output.find(item + "\t");
        ASSERT_NE(begin, std::string::npos) << item << " in " << result.output;
        const std::size_t end = result.output.find('\n', begin) + 1;
        EXPECT_TRUE(result.output.substr(begin, end - begin).ends_with(origin))
            << result.output.substr(begin, end - begin) << origin;
    };
    expect("map-file[1]", "6 [p/e\\\\files\\1]");
    expect("map-file[-5]", "8 [p/e\\\\files\\-5]");
    expect("load-dictionary[0]", "11 [USER]");
    expect("load-dictionary[1]", "12 [USER]");
    expect("load-dictionary[2]", "13 [USER]");
}

TEST_F(Host, ShowsTheSystemsErrorsWithItsOwnHintsBehind) {
    WriteBasic("[AUTODOC]\nautodoc-title=%nosuch%\n");
    const std::string unknown = "not recognized!\n    <---- Try <--help> to view the help window! ---->\n";
    struct {
        Words arguments;
        std::string message;
    } const cases[] = {
        {{"-q", "-cv", "maybe"},
         "message:\tThe option string <maybe> for the tri-state parameter <-cv> is invalid!\n"
         "    <---- Try <-h> to view the help window! ---->\n"},
        {{"--logfil", "x"},
         "message:\tcommand line option <--logfil> " + unknown + "\t    <---- Did you mean <--logfile>? ---->\n"},
        {{"--name=x"}, "message:\tcommand line option <--name=x> " + unknown + "\t    <---- Write <--name x> ---->\n"},
        {{"--zzzzzzzz"}, "message:\tcommand line option <--zzzzzzzz> " + unknown},
        {{"db"},
         "message:\tError reading the configuration!\nreason: \tError retrieving option <autodoc-title>!\n"
         "reason: \tError retrieving the string option <nosuch>!\n"
         "reason: \tThe option <nosuch> is not known by the system!\n"
         "\t    <---- See <" +
             BasicFile() + ">, line 6: autodoc-title=%nosuch% ---->\n"},
    };
    for (const auto& [arguments, message] : cases) {
        const ChildResult result = Run(arguments);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.output, "");
        EXPECT_TRUE(result.errors.starts_with("An error occured:\nlocation:\t<")) << result.errors;
        EXPECT_TRUE(result.errors.ends_with(message)) << result.errors;
    }
}

TEST_F(Host, NamesTheKeyWhoseIndexIsThereTwice) {
    WriteBasic("[USER]\nload-dictionary-5=a\nload-dictionary=b\n");
    Write("user.ini", "[USER]\nload-dictionary-5=c\n");
    const ChildResult result = Run({"db", "-i", Path("user.ini")});
    EXPECT_NE(result.errors.find("Multiple options <load-dictionary> for index <5>!\n\t    <---- See <" + BasicFile() +
                                 ">, line 6: load-dictionary-5=a ---->"),
              std::string::npos)
        << result.errors;
}

TEST_F(Host, RenamesListsAndTellsTheirDifference) {
    WriteBasic("[db\\TABLENAME RULES\\2]\ntmp_=WRK_\n[db\\COLUMNNAME RULES\\1]\ndescr=DESCRIPTION\n");
    Write("old.txt", "; names\nversion 1\ntable tmp_a\ntable  same\ncolumn descr\n\ncolumn gone\n");
    Write("new.txt", "version 2\r\ntable tmp_a\r\ntable same\r\ntable same\r\ncolumn descr\r\n");
    const ChildResult result =
        Run({"--data", Path("data"), "db", "-l", "old.txt", "-l", "new.txt", "-d", "-c", "change.txt"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    const std::string difference = "- table TMP_A\n+ table WRK_A\n- column GONE\n";
    EXPECT_EQ(result.output,
              "tmp_a -> TMP_A\nsame -> SAME\ndescr -> DESCRIPTION\ngone -> GONE\n"
              "tmp_a -> WRK_A\nsame -> SAME\nsame -> SAME\ndescr -> DESCRIPTION\n" +
                  difference);
    EXPECT_EQ(m_Folder.Read("data/changefile/change.txt"), difference);

    Write("bad.txt", "table a\ntabel b\n");
    struct {
        Words arguments;
        const char* message;
    } const cases[] = {
        {{"db", "-l", "bad.txt"}, "The name list <bad.txt> can not be understood in line 2: <tabel b>!"},
        {{"db", "-l", "data"}, "Cannot open file <data>!\n\tAccess denied!"},
        {{"db", "-l", "old.txt", "-d"}, "It's necessary to load at least two dictionaries (see the '-l' option)!"},
    };
    for (const auto& [arguments, message] : cases) {
        const ChildResult wrong = Run(arguments);
        EXPECT_EQ(wrong.exitCode, 1);
        EXPECT_NE(wrong.errors.find(message), std::string::npos) << wrong.errors;
    }
}

TEST_F(Host, WritesItsLogBelowTheLoggingFolder) {
    Write("names.txt", "table a\nwhat\n");
    const ChildResult result = Run({"--data", Path("data"), "db", "--logfile", "run.log", "-l", "names.txt"});
    EXPECT_EQ(result.exitCode, 1);
    const std::string log = m_Folder.Read("data/log/run.log");
    for (const char* text : {"For File:     veltrane\r\nVersion:      1.0.0\r\n", ": load names.txt",
                             "Message:   \tThe name list <names.txt> can not be understood in line 2: <what>!\r\n"
                             "Error Code:\t-1\r\n",
                             "finish: "}) {
        EXPECT_NE(log.find(text), std::string::npos) << text;
    }
    const ChildResult full = Run({"db", "--logfile", "/dev/full"});
    EXPECT_EQ(full.exitCode, 1);
    EXPECT_NE(full.errors.find("An unknown exception occured while opening the log file </dev/full>!"),
              std::string::npos);
}

TEST_F(Host, EndsWithHelpAndVersionOnStandardOutput) {
    BoxRecorder recorder;
    ShowHelp();
    CString help = recorder.boxes.at(0).text;
    help.Replace(L"\r\n", L"\n");
    const ChildResult shown = RunBare({"--help"});
    EXPECT_EQ(shown.exitCode, 0);
    EXPECT_EQ(shown.output, ToUtf8(help));
    const ChildResult version = RunBare({"-v"});
    EXPECT_EQ(version.exitCode, 0);
    EXPECT_TRUE(version.output.starts_with("Program Name:\tveltrane\nProgram Version:\t1.0.0\nCompile Time:\t"));
    const ChildResult setup = RunBare({"-s", "x.ini"});
    EXPECT_EQ(setup.exitCode, 0);
    EXPECT_EQ(setup.output + setup.errors, "");
}

TEST_F(Host, GivesBytesThatAreNoTextBackUnchanged) {
    const ChildResult result = Run({"db", "--summary", "-dr", "\xFF\xC3(\xE2\x82"});
    EXPECT_NE(result.output.find("\t\xFF\xC3(\xE2\x82\t(command line)"), std::string::npos) << result.output;
    EXPECT_EQ(JsonOf(Run({"db", "--summary", "-dr", "\xFF"}, {"VELTRANE_SUMMARY=json"}), "dictionary-root"),
              "{\"option\":\"dictionary-root\",\"index\":-1,\"value\":\"\\udcff\",\"source\":\"command line\"}");
}

TEST_F(Host, TellsThatStandardOutputIsFull) {
    const ChildResult result = Run({"db", "--summary"}, {}, "/dev/full");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.errors.find("The standard output can not be written!"), std::string::npos);
}

TEST_F(Host, AnswersLongAndOddCommandLines) {
    Words many = {"db"};
    for (int i = 0; i < 5'000; ++i) many.insert(many.end(), {"-doc", "x"});
    EXPECT_EQ(Run(many).exitCode, 0);
    const ChildResult brackets = Run({"--" + std::string(30'000, '<') + ">"});
    EXPECT_EQ(brackets.exitCode, 1);
    EXPECT_NE(brackets.errors.find("not recognized!"), std::string::npos);
}

TEST_F(Host, TellsFoldersOfStartUpFromGivenOnes) {
    const Words arguments = {"--data", Path("data"), "db", "--summary", "--logging", "%sub%"};
    const auto source = [&](const std::string& sub) {
        const ChildResult result = Run(arguments, {"VELTRANE_SUMMARY=json", "sub=" + sub});
        return JsonOf(result, "logging");
    };
    EXPECT_NE(source("log").find("\"source\":\"start-up\""), std::string::npos) << "completed below data";
    EXPECT_NE(source(Path("data/log")).find("\"source\":\"command line\""), std::string::npos);
    const ChildResult line = Run({"db", "--summary", "-doc", "a\nquiet"});
    EXPECT_NE(line.output.find("a\\x0aquiet"), std::string::npos) << "a value stays on its line";
}

}  // namespace
