// The sample host as a real process.

#include "support/tool.h"
#include "veltrane/options/xoptiondefinition.h"

class Host : public ToolTest {
protected:
    Host() { std::filesystem::create_directories(m_Folder.Path() / "data/log"); }

    /// The basic file as the store asks for it: in lower case.
    std::string BasicFile() const { return ToUtf8(FromUtf8(Path("meta/veltrane.ini")).MakeLower()); }
    /// Runs the host with its metadata folder.
    ChildResult Run(Words arguments, const Words& environment = {}, const std::string& output = {}) const {
        arguments.insert(arguments.begin(), {"veltrane", "-m", Path("meta")});
        return RunTool(VELTRANE_HOST, arguments, environment, output);
    }
};

TEST_F(Host, ShowsEveryValueOnItsLine) {
    WriteBasic(
        "[db\\FILES\\-5]\nmap-file=n\n[USER]\n50%=x\nload-dictionary=one\nload-dictionar=%spool%/two\nspool=s\n");
    Words words = {"--data", Path("data"), "db", "--summary", "--logging", "%sub%", "-dr", "\xFF\xC3(\xE2\x82"};
    for (int i = 0; i < 5'000; ++i) words.insert(words.end(), {"-doc", "a\nquiet"});
    const ChildResult result = Run(words, {"sub=" + Path("data/log")});
    EXPECT_EQ(result.exitCode, 1) << "the name list is missing; the summary stands in front";
    ExpectIn(result.output, "map-file[-5]\t\tn\t(basic file " + BasicFile() + ":6 [db\\files\\-5])\n");
    ExpectIn(result.output, "load-dictionary[0]\tone\t(basic file " + BasicFile() + ":9 [USER])\n");
    ExpectIn(result.output, "load-dictionary[1]\ts/two\t(basic file " + BasicFile() + ":10 [USER])\n");
    ExpectIn(result.output, "logging\t\t\t" + Path("data/log") + "\t(command line)\n");
    ExpectIn(result.output, "dictionary-root\t\t\xFF\xC3(\xE2\x82\t(command line)\n");
    ExpectIn(result.output, "a\\x0aquiet\t(command line)\n");
}

TEST_F(Host, ShowsEveryValueAsJson) {
    WriteBasic("obsolete-classes-2=7,3\n[db\\FILES\\4]\nmap-file=\"a\\b\"\n");
    const ChildResult result =
        Run({"--data", Path("data"), "db", "--summary", "--exe-name", "veltrane.exe", "-l", "x.txt", "-dr", "\xFF\n"},
            {"VELTRANE_SUMMARY=json"});
    EXPECT_EQ(result.exitCode, 1);
    const std::string file = R"("source":"basic file","file":")" + BasicFile() + R"(","line":)";
    const std::string map = file + R"(7,"section":"db\\files\\4")";
    for (const std::string& line : {
             R"("version-info","index":-1,"value":"1.0.0","source":"host","candidates":)"s,
             R"("exe-name","index":-1,"value":"veltrane.exe","source":"command line","candidates":)"
             R"([{"source":"command line","word":7,"text":"veltrane.exe"},{"source":"host","text":"veltrane"}]})"s,
             R"("logging","index":-1,"value":")" + Path("data/log") + R"(","source":"start-up",)",
             R"("load-dictionary","index":0,"value":"x.txt","source":"command line",)"s,
             R"("dictionary-root","index":-1,"value":"\udcff\u000a","source":"command line",)"s,
             R"("obsolete-classes","index":2,"value":"7,3","list":[3,7],)" + file + R"(5,"section":"db",)",
             R"("map-file","index":4,"value":"a\\b",)" + map + R"(,"candidates":[{)" + map +
                 R"(,"key":"map-file","text":"a\\b"}]})",
         }) {
        ExpectIn(result.output, R"({"option":)" + line);
    }
}

TEST_F(Host, RenamesListsAndShowsTheirDifference) {
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
}

#ifndef VELTRANE_SANITIZE  // it needs far more memory
TEST_F(Host, KeepsOnlyNamesThatAreComparedAndLosesNone) {
    std::string list;
    for (int i = 0; i < 60'000; ++i) list += "table a_name_that_needs_memory_" + std::to_string(i) + '\n';
    Write("long.txt", list);
    const auto run = [&](const std::string& more) {
        const std::string command = "ulimit -v 24000; exec \"$0\" -m \"$2\" -l long.txt --data \"$1\" db " + more;
        return RunTool("/bin/sh", {"sh", "-c", command, VELTRANE_HOST, Path("data"), Path("meta")}, {}, "/dev/null")
            .exitCode;
    };
    EXPECT_EQ(run("-l long.txt"), 0);
    EXPECT_EQ(run("-l long.txt -d"), 1) << "it goes on without the names that it could not keep";
}
#endif

TEST_F(Host, AddsItsOwnHintsToErrorsOfTheLibrary) {
    Write("unknown.ini", "[AUTODOC]\nautodoc-title=%nosuch%\n");
    Write("twice.ini", "[USER]\nload-dictionary-5=a\nload-dictionary=b\nload-dictionary-05=c\n");
    Write("empty.txt", "; no names\n");
    Write("bad.txt", "; names\ntabel b\n");
    const std::string unknown = "> not recognized!\n    <---- Try <--help> to view the help window! ---->\n";
    const auto expect = [&](const Words& arguments, const std::string& message, const std::string& output = {}) {
        const ChildResult result = Run(arguments, {}, output);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.output, "");
        EXPECT_TRUE(result.errors.starts_with("An error occured:\nlocation:\t<")) << result.errors;
        EXPECT_TRUE(result.errors.ends_with(message)) << result.errors;
    };
    expect({"-q", "-cv", "maybe"}, "<-cv> is invalid!\n    <---- Try <-h> to view the help window! ---->\n");
    expect({"--logfil", "x"}, "<--logfil" + unknown + "\t    <---- Did you mean <--logfile>? ---->\n");
    expect({"--name=x"}, "<--name=x" + unknown + "\t    <---- Write <--name x> ---->\n");
    expect({"--zzzzzzzz"}, "message:\tcommand line option <--zzzzzzzz" + unknown);
    expect({"--" + std::string(30'000, '<') + ">"}, unknown);
    expect({"db", "-i", "unknown.ini"},
           "message:\tError reading the configuration!\nreason: \tError retrieving option <autodoc-title>!\n"
           "reason: \tError retrieving the string option <nosuch>!\nreason: \tThe option <nosuch> is not known by the "
           "system!\n\t    <---- See <" +
               Path("unknown.ini") + ">, line 2: autodoc-title=%nosuch% ---->\n");
    expect({"db", "-i", "twice.ini"}, "> for index <5>!\n\t    <---- See <" + Path("twice.ini") +
                                          ">, line 2: load-dictionary-5=a ---->\n" + "\t    <---- See <" +
                                          Path("twice.ini") + ">, line 4: load-dictionary-05=c ---->\n");
    expect({"-m", Path("none")}, "does not exist!\n\t    <---- Name the folder with <--metadata FOLDER> ---->\n");
    expect({"dbs"},
           "must exist but could not be found!\n\t    <---- Looked for in [SOFTWARE\\VORNAK\\veltrane\\dbs] of <" +
               Path("registry.reg") + ">, [dbs] of <" + BasicFile() + "> ---->\n" +
               "\t    <---- Did you mean [db]? ---->\n");
    expect({"other"}, "> ---->\n\t    <---- Or give it with <--dictionary-name> on the command line ---->\n");
    expect({"db", "-l", "bad.txt"}, "The name list <bad.txt> cannot be understood in line 2: <tabel b>!\n");
    std::string growing;
    for (const char version : {'1', '2', '3'}) {
        growing.append("[db\\TABLENAME RULES\\") += version;
        growing.append("]\na=").append(1'000, 'a') += '\n';
    }
    Write("grow.ini", growing);
    Write("grow.txt", "version 3\ntable a\n");
    expect({"db", "-i", "grow.ini", "-l", "grow.txt", "--logfile", Path("grow.log")},
           "The rules let a name of the list <grow.txt> in line 2 grow without end: <table a>!\n");
    ExpectIn(m_Folder.Read("grow.log"), "grow without end: <table a>!\r\nError Code:\t-1\r\n");
    Write("long.txt", "; names\ntable " + std::string(65'531, 'x'));
    expect({"db", "-l", "long.txt"},
           "The name list <long.txt> is longer than 65536 bytes in line 2: <table " + std::string(58, 'x') + "...>!\n");
    expect({"db", "-l", "data"}, "Cannot open file <data>!\n\tAccess denied!\nnumber:\t5\n");
    expect({"db", "-l", "empty.txt", "-d"}, "to load at least two dictionaries (see the '-l' option)!\n");
    expect({"db", "--logfile", "/dev/full"}, "unknown exception occured while opening the log file </dev/full>!\n");
    expect({"db", "--summary"}, "The standard output cannot be written!\n", "/dev/full");
}

TEST_F(Host, WritesItsLogBelowTheLoggingFolder) {
    Write("names.txt", "table a\nwhat\n");
    EXPECT_EQ(Run({"--data", Path("data"), "db", "--logfile", "run.log", "-l", "names.txt"}).exitCode, 1);
    for (const char* text : {"For File:     veltrane\r\nVersion:      1.0.0\r\n", ": load names.txt",
                             "Message:   \tThe name list <names.txt> cannot be understood in line 2: <what>!\r\n"
                             "Error Code:\t-1\r\n",
                             "finish: "}) {
        ExpectIn(m_Folder.Read("data/log/run.log"), text);
    }
}

TEST_F(Host, EndsWithHelpAndVersionOnStandardOutput) {
    BoxRecorder recorder;
    ShowHelp();
    CString help = recorder.boxes.at(0).text;
    help.Replace(L"\r\n", L"\n");
    const ChildResult shown = Run({"-m", "missing", "--help"});
    EXPECT_EQ(shown.output, ToUtf8(help));
    const ChildResult version = Run({"-q", "-v", "--unknown"});
    EXPECT_TRUE(version.output.starts_with("Program Name:\tveltrane\nProgram Version:\t1.0.0\nCompile Time:\t"));
    const ChildResult setup = Run({"-s", "x.ini", "-cv", "maybe"});
    EXPECT_EQ(setup.output + setup.errors, "");
    EXPECT_TRUE(shown.exitCode == 0 && version.exitCode == 0 && setup.exitCode == 0);
}
