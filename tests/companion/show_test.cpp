#include "companion.h"

#include <csignal>
#include <regex>

using Show = Companion;

TEST_F(Show, ShowsWinnerAndLosersOfEachLayer) {
    WriteBasic("[ROOT]\nlogfile=basic.log\n[USER]\nquiet=yes\n");
    Write("team.ini", "[ROOT]\nlogfile = %name%.log\n");
    WriteRegistry("USER", "\"quiet\"=\"true ; no\"\n");
    ExpectOutput(Ask({"show", "logfile", "quiet", "metadata"}, {"-i", "team.ini"}, {"logfile=environment.log"}), 0,
                 R"(logfile = db.log
    registry     -  registry.reg [SOFTWARE\VORNAK\veltrane\ROOT]
  > user file    team.ini:2 [ROOT]           logfile = %name%.log
    basic file   meta/veltrane.ini:6 [ROOT]  logfile = basic.log
    environment                              logfile = environment.log
quiet = true ; no, means false
  > registry     registry.reg:3 [SOFTWARE\VORNAK\veltrane\USER]
                   quiet = true ; no
    user file    -  team.ini [USER]
    basic file   meta/veltrane.ini:8 [USER]
                   quiet = yes
    environment  not used
metadata = )" + Path("meta") +
                     R"(
  > command line  word 1  )" +
                     Path("meta") +
                     R"(
    registry      -  registry.reg [SOFTWARE\VORNAK\veltrane\ROOT]
    environment   -
    user file     not used
    basic file    not used
)");
}

TEST_F(Show, ShowsValuesOfFamiliesAndWhatListsMean) {
    WriteBasic("obsolete-classes-2=7, 3\nobsolete-classes-5=4\n[db\\FILES\\2]\nmap-file=a\tb\n");
    const std::string others = "    registry     not used\n    user file    not used\n    environment  not used\n";
    ExpectOutput(Ask({"show", "obsolete-classes[5]", "map-file", "index-file"}), 1,
                 "obsolete-classes[5] = 4, means 3, 4, 7\n"
                 "  > basic file   meta/veltrane.ini:6 [db]  obsolete-classes-5 = 4\n" +
                     others +
                     "map-file[2] = a\\x09b\n"
                     "  > basic file   meta/veltrane.ini:8 [db\\files\\2]  map-file = a\\x09b\n" +
                     others +
                     "index-file: no value\n"
                     "    basic file   -  meta/veltrane.ini [db\\FILES\\N]\n" +
                     others);
    EXPECT_EQ(Ask({"show", "--only", "command line"}, {"--tablename-rules", "a"}).output,
              "name                db" + std::string(Path("meta").size(), ' ') +
                  "command line\n"
                  "metadata            " +
                  Path("meta") +
                  "  command line\n"
                  "tablename-rules[0]  a" +
                  std::string(Path("meta").size() + 1, ' ') + "command line\n");
}

TEST_F(Show, GoesOnWhereStartUpWouldFail) {
    Write("team.ini", "[db]\nquiet=true\n[ROOT]\nlogfile=%nosuch%\ndictionary-root=here\n");
    ChildResult result = Ask({"show", "--only", "user file"}, {"-i", "team.ini", "-n", "dba", "--data", "none"});
    result.errors = std::regex_replace(result.errors, std::regex("</[^>]*/"), "<");
    ExpectOutput(result, 1, "dictionary-root  here  user file team.ini:5\n",
                 R"(veltrane-config: error: Folder <none> does not exist!
    The global output data folder does not exist!
veltrane-config: error: Error retrieving option <logfile>!
    Error retrieving the string option <nosuch>!
    The option <nosuch> is not known by the system!
    <---- See <team.ini>, line 4: logfile=%nosuch% ---->
veltrane-config: error: Error retrieving option <dictionary-name>!
    The option <dictionary-name> must exist but could not be found!
    <---- Looked for in [SOFTWARE\VORNAK\veltrane\dba] of <registry.reg>, [dba] of <team.ini>, [dba] of <veltrane.ini> ---->
    <---- Did you mean [db]? ---->
veltrane-config: error: Error retrieving option <role>!
    The option <role> must exist but could not be found!
veltrane-config: error: Error retrieving option <registry>!
    The option <registry> must exist but could not be found!
)");
}

TEST_F(Show, ReportsWhatIsWrongWithAnswerAndPlaces) {
    WriteBasic("[db\\FILES\\1]\nmap-file=m\n[db\\FILES\\2]\nmap-file=n\nindex-file=%x%\n");
    Write("team.ini", "[db\\FILES\\01]\nmap-file=y\n[db\\FILES\\02]\n");
    Write("registry.reg", "REGEDIT4\n[HKLM\\SOFTWARE\\VORNAK\\veltrane\\ROOT]\n\"logfile\"=\"\"\n");
    std::filesystem::create_directories(m_Folder.Path() / "folder");
    const Words user = {"-i", "team.ini"};
    const std::string others = "    registry     not used\n    environment  not used\n";
    const struct {
        Words question;
        Words arguments;
        std::string output;
    } cases[] = {
        {{"show", "role"},
         {"-n", "dbx"},
         "role: no value, but mandatory: the tool stops here\n"
         "    registry     -  registry.reg [SOFTWARE\\VORNAK\\veltrane\\dbx]\n"
         "    basic file   -  meta/veltrane.ini [dbx]\n"
         "    user file    not used\n    environment  not used\n"
         "    note: the database 'dbx' (command line, word 4) has no section; did you mean\n    'db' "
         "(meta/veltrane.ini:1)?\n"},
        {{"show", "map-file"},
         user,
         "map-file[1]: no value\n    user file    team.ini:2 [db\\FILES\\01]          map-file = y\n"
         "    basic file   meta/veltrane.ini:6 [db\\FILES\\1]  map-file = m\n" +
             others +
             "    note: given twice: the tool stops here\n"
             "map-file[2]: no value\n    user file    team.ini:3 [db\\FILES\\02]          (section given again)\n"
             "    basic file   meta/veltrane.ini:8 [db\\FILES\\2]  map-file = n\n" +
             others + "    note: given twice: the tool stops here\n"},
        {{"explain", "map-file[1]"},
         user,
         "map-file[1]: no value\n    1  given  meta/veltrane.ini:6 [db\\FILES\\1]  m\n"
         "    2  given  team.ini:2 [db\\FILES\\01]          y\n    note: given twice: the tool stops here\n"},
        {{"show", "logfile"},
         {"-i", "folder"},
         "logfile: no value\n    registry     registry.reg:3 [SOFTWARE\\VORNAK\\veltrane\\ROOT]\n"
         "                   logfile = (empty, hides both files)\n"
         "    user file    cannot be read: folder (is a folder)\n"
         "    basic file   -  meta/veltrane.ini [ROOT]\n    environment  -\n"},
        {{"explain", "logfile"},
         {"-i", "folder"},
         "logfile: no value\n    1  given  cannot be read: folder (is a folder)\n"
         "              -  environment\n"
         "              registry.reg:3 [SOFTWARE\\VORNAK\\veltrane\\ROOT]\n                (empty, hides both "
         "files)\n"},
    };
    for (const auto& [question, arguments, output] : cases) {
        const ChildResult result = Ask(question, arguments);
        EXPECT_EQ(result.output, output);
        EXPECT_EQ(result.exitCode, 1);
    }
}

TEST_F(Show, BreaksLinesAtTheirBlanks) {
    const std::string database(46, 'x');
    WriteBasic("[" + database + "\\FILES\\1]\nmap-file=m\n");
    for (const Words& question : {Words{"show", "map-file"}, {"explain", "map-file"}})
        EXPECT_FALSE(std::regex_search(Ask(question, {"-n", database}).output, std::regex{"[^\n]{81}"}));
    ExpectIn(Ask({"show", "role"}, {"-n", database}).output,
             "\n    registry     -  registry.reg\n                   [SOFTWARE\\VORNAK\\veltrane\\" + database + "]\n");
}

TEST_F(Show, NamesTheValueThatFollowsWhenTheWinnerIsGone) {
    // One bit for each layer that has the option, the strongest first.
    for (int layers = 31; layers >= 0; --layers) {
        const auto has = [&](int bit) { return (layers & bit) != 0; };
        WriteRegistry("ROOT", has(8) ? "\"logfile\"=\"r\"\n" : "");
        Write("team.ini", has(4) ? "[ROOT]\nlogfile=u\n" : "");
        WriteBasic(has(2) ? "[ROOT]\nlogfile=b\n" : "");
        const Words typed = has(16) ? Words{"-i", "team.ini", "-log", "c"} : Words{"-i", "team.ini"};
        const std::string output = Ask({"show", "logfile"}, typed, has(1) ? Words{"logfile=e"} : Words{}).output;
        std::string found, shown;
        for (const auto& [bit, letter] : {std::pair{16, "c"}, {8, "r"}, {4, "u"}, {2, "b"}, {1, "e"}})
            if (has(bit)) found += letter;
        for (std::size_t at = output.find('\n'); at + 1 < output.size(); at = output.find('\n', at + 1)) {
            const std::string line = output.substr(at + 1, output.find('\n', at + 1) - at - 1);
            const bool isFound = line.find("  -") == std::string::npos;
            EXPECT_EQ(line.starts_with("  > "), isFound && shown.empty()) << output;
            if (isFound) shown += line.back();
        }
        EXPECT_EQ(shown, found) << output;
        EXPECT_TRUE(output.starts_with(found.empty() ? "logfile: no value" : "logfile = " + found.substr(0, 1) + "\n"));
    }
}

TEST_F(Show, NamesFilesInFullWithoutACurrentFolder) {
    WriteBasic("[ROOT]\nlogfile=x\n");
    const std::string away = R"(mkdir away && cd away && rmdir ../away && exec "$0" show logfile -- db -m "$1")";
    const ChildResult result = RunTool("/bin/sh", {"sh", "-c", away, VELTRANE_CONFIG, Path("meta")}, {"PATH=/bin"});
    ExpectIn(result.output, Path("meta/veltrane.ini") + ":6 [ROOT]");
}

TEST_F(Show, HintsAtForgottenHyphensAndAtOptionsOfTheTool) {
    const std::string hint = "; did you forget '--' before the tool's own command line?\n";
    ExpectOutput(Run({"show", "base", "-i", "team.ini"}), 2, "",
                 "veltrane-config: '-i' is an option of the tool" + hint);
    ExpectOutput(Run({"lint", "base"}), 2, "", "veltrane-config: file <base> not found" + hint);
    ExpectOutput(Run({"freeze", "base"}), 2, "", "veltrane-config: 'freeze' takes no argument" + hint);
    ExpectOutput(Run({"show", "base"}), 2, "", "veltrane-config: unknown option 'base'" + hint);
    ExpectIn(Ask({"show"}, {"--logfil", "x"}).errors, "<---- Did you mean <--logfile>? ---->\n");
    ExpectIn(Ask({"show"}, {"-ini", "x"}).errors, "<---- Did you mean <--ini>? ---->\n");
    const std::string unnamed = Run({"show", "--only", "registry", "--", "-m", Path("meta")}).errors;
    EXPECT_EQ(unnamed.find("error:"), unnamed.rfind("error:")) << "the sections of the database have no name either";
}

TEST_F(Show, ChecksWhereItsOutputGoes) {
    WriteBasic("[USER]\nquiet=yes\n");
    std::string names;
    for (int i = 0; i < 9'999; ++i) names += "table a_name_that_fills_the_pipe\n";
    Write("list", names);
    const auto shell = [&](const std::string& line, const Words& environment = {}) {
        Words all{"PATH=/usr/bin:/bin", "META=" + Path("meta")};
        all.insert(all.end(), environment.begin(), environment.end());
        return RunTool("/bin/bash", {"bash", "-c", line, VELTRANE_CONFIG}, all);
    };
    for (const std::string words : {"show", "show quiet --format=json", "lint", "explain quiet", "names list", "files",
                                    "names --rules --format=json", "freeze", "--generate man", "--help", "--version"}) {
        const ChildResult full =
            shell("$0 " + words + " -- db -m $META >/dev/full 2>errors; code=$?; tail -1 errors; exit $code");
        ExpectOutput(full, 2, "veltrane-config: standard output cannot be written\n");
    }
    const std::string first = "table  a_name_that_fills_the_pipe  0: A_NAME_THAT_FILLS_THE_PIPE\n";
    ExpectOutput(shell("$0 names list -- db -m $META | head -1; exit ${PIPESTATUS[0]}"), 128 + SIGPIPE, first);
    const std::string terminal = "script -qec \"$0 lint -- db -m $META\" /dev/null";
    ExpectIn(shell(terminal).output, "ini:6: \x1B[1;35mwarning\x1B[0m C05");
    ExpectIn(shell(terminal, {"NO_COLOR=1"}).output, "ini:6: warning C05");
    ExpectIn(shell("$0 lint -- db -m $META").output, "ini:6: warning C05");
    ExpectOutput(shell("cp $0 . && ./veltrane-config show -- db"), 2, "",
                 "veltrane-config: tool <" + Path("veltrane") + "> not found; name it with --tool PATH\n");
}

TEST_F(Show, ReportsItsOwnErrorsInOneLine) {
    Write("list", "table a\ntabel b\n");
    Write("long", "table " + std::string(65'531, 'x'));
    const std::pair<Words, std::string> cases[] = {
        {{"shwo"}, "unknown command 'shwo'; did you mean 'show'?"},
        {{"show", "--al"}, "unknown option '--al'; did you mean '--all'?"},
        {{"show", "lint"}, "unknown option 'lint'"},
        {{"freeze", "now"}, "'freeze' takes no argument"},
        {{"show", "logfil"}, "unknown option 'logfil'; did you mean 'logfile'?"},
        {{"show", "load-dictionary-2"}, "unknown option 'load-dictionary-2'; write 'load-dictionary[2]'"},
        {{"show", "--only", "usr"},
         "--only must be host, start-up, command line, registry, user file, basic file or environment"},
        {{"show", "--format", "xml"}, "--format must be text, json, github or sarif"},
        {{"show", "--only"}, "--only needs a value"},
        {{"show", "logfile[1]"}, "'logfile' has only one value; leave out the index"},
        {{}, "missing command; --help lists the commands"},
        {{"show", "--tool", "/none"}, "tool </none> not found; name it with --tool PATH"},
        {{"show", "--", "-q", "-h"}, "--help ends the tool at once; there is nothing to show"},
        {{"names", "list"}, "list, line 2: expected 'table NAME' or 'column NAME'"},
        {{"names", "long"}, "long, line 1: longer than 65536 bytes: table " + std::string(58, 'x') + "..."},
        {{"names", "none"}, "the name list <none> cannot be read"},
        {{"names", "meta"}, "the name list <meta> cannot be read"},
        {{"names", "--version", "3,x"}, "'x' is not a number"},
        {{"errors", "none"}, "the log <none> cannot be read"},
#ifndef _LIBCPP_VERSION  // its streams take a failed read for the end of the file
        {{"names", "/proc/self/mem"}, "the name list </proc/self/mem> cannot be read"},
        {{"errors", "/proc/self/mem"}, "the log </proc/self/mem> cannot be read"},
#endif
        {{"explain"}, "missing option name"},
    };
    for (const auto& [words, text] : cases) ExpectOutput(Ask(words), 2, "", "veltrane-config: " + text + "\n");
    ExpectIn(Run({"shwo", "--format=json"}).output, "\"message\": \"unknown command 'shwo'");
    EXPECT_EQ(Run({"--version"}).output, "veltrane-config 1.0.0\n");
}
