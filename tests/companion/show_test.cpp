#include "companion.h"

using Show = Companion;

TEST_F(Show, TellsWinnerAndLosersOfEachLayer) {
    WriteBasic("[ROOT]\nlogfile=basic.log\n[USER]\nquiet=yes\n");
    Write("team.ini", "[ROOT]\nlogfile = %name%.log\n");
    WriteRegistry("USER", "\"quiet\"=\"true ; no\"\n");
    ExpectOutput(Ask({"show", "logfile", "quiet", "metadata"}, {"-i", "team.ini"}, {"logfile=environment.log"}), 0,
                 R"(logfile = db.log
    registry     registry.reg [SOFTWARE\VORNAK\veltrane\ROOT]  -
  > user file    team.ini:2 [ROOT]                             logfile = %name%.log
    basic file   meta/veltrane.ini:6 [ROOT]                    logfile = basic.log
    environment                                                logfile = environment.log
quiet = true ; no, means false
  > registry     registry.reg:3 [SOFTWARE\VORNAK\veltrane\USER]  quiet = true ; no
    user file    team.ini [USER]                                 -
    basic file   meta/veltrane.ini:8 [USER]                      quiet = yes
    environment  not asked
metadata = )" + Path("meta") +
                     R"(
  > command line  word 1                                        )" +
                     Path("meta") + R"(
    registry      registry.reg [SOFTWARE\VORNAK\veltrane\ROOT]  -
    environment                                                 -
    user file     not asked
    basic file    not asked
)");
}

TEST_F(Show, TellsValuesOfFamiliesAndWhatListsMean) {
    WriteBasic("obsolete-classes-2=7, 3\nobsolete-classes-5=4\n[db\\FILES\\2]\nmap-file=a\tb\n");
    ExpectOutput(Ask({"show", "obsolete-classes[5]", "map-file"}), 0,
                 "obsolete-classes[5] = 4, means 3, 4, 7\n"
                 "  > basic file   meta/veltrane.ini:6 [db]  obsolete-classes-5 = 4\n"
                 "    registry     not asked\n    user file    not asked\n    environment  not asked\n"
                 "map-file[2] = a\\x09b\n"
                 "  > basic file   meta/veltrane.ini:8 [db\\files\\2]  map-file = a\\x09b\n"
                 "    registry     not asked\n    user file    not asked\n    environment  not asked\n");
}

TEST_F(Show, GoesOnWhereStartUpWouldFail) {
    Write("team.ini", "[db]\nquiet=true\n[ROOT]\nlogfile=%nosuch%\ndictionary-root=here\n");
    const ChildResult result =
        Ask({"show", "--only", "user file"}, {"-i", "team.ini", "-n", "other", "--data", "none"});
    ExpectOutput(result, 1, "dictionary-root  here  user file team.ini:5\n",
                 R"(veltrane-config: error: Folder <none> does not exist!
    	The global output data folder does not exist!
veltrane-config: error: Error retrieving option <logfile>!
    Error retrieving the string option <nosuch>!
    The option <nosuch> is not known by the system!
veltrane-config: error: Error retrieving option <dictionary-name>!
    The option <dictionary-name> must exist but could not be found!
veltrane-config: error: Error retrieving option <role>!
    The option <role> must exist but could not be found!
veltrane-config: error: Error retrieving option <registry>!
    The option <registry> must exist but could not be found!
)");
    EXPECT_EQ(Ask({"show", "spool"}).exitCode, 1) << "no value";
}

TEST_F(Show, ToldTheValueThatFollowsWhenTheWinnerIsGone) {
    // One bit for each layer that has the option, the strongest in front.
    for (int layers = 31; layers >= 0; --layers) {
        const auto has = [&](int bit) { return (layers & bit) != 0; };
        WriteRegistry("ROOT", has(8) ? "\"logfile\"=\"r\"\n" : "");
        Write("team.ini", has(4) ? "[ROOT]\nlogfile=u\n" : "");
        WriteBasic(has(2) ? "[ROOT]\nlogfile=b\n" : "");
        const Words typed = has(16) ? Words{"-i", "team.ini", "-log", "c"} : Words{"-i", "team.ini"};
        const std::string output = Ask({"show", "logfile"}, typed, has(1) ? Words{"logfile=e"} : Words{}).output;
        std::string found, told;
        for (const auto& [bit, letter] : {std::pair{16, "c"}, {8, "r"}, {4, "u"}, {2, "b"}, {1, "e"}})
            if (has(bit)) found += letter;
        for (std::size_t at = output.find('\n'); at + 1 < output.size(); at = output.find('\n', at + 1)) {
            const char last = output[output.find('\n', at + 1) - 1];
            EXPECT_EQ(output.substr(at + 1, 4) == "  > ", last != '-' && told.empty()) << output;
            if (last != '-') told += last;
        }
        EXPECT_EQ(told, found) << output;
        EXPECT_TRUE(output.starts_with(found.empty() ? "logfile: no value" : "logfile = " + found.substr(0, 1) + "\n"));
    }
}

TEST_F(Show, NamesFilesInFullWithoutACurrentFolder) {
    WriteBasic("[ROOT]\nlogfile=x\n");
    const std::string away = R"(mkdir away && cd away && rmdir ../away && exec "$0" show logfile -- db -m "$1")";
    const ChildResult result = RunTool("/bin/sh", {"sh", "-c", away, VELTRANE_CONFIG, Path("meta")}, {"PATH=/bin"});
    ExpectIn(result.output, Path("meta/veltrane.ini") + ":6 [ROOT]");
}

TEST_F(Show, AnswersItsOwnFaultsInOneLine) {
    Write("list", "table a\ntabel b\n");
    Write("long", "table " + std::string(65'531, 'x'));
    const std::pair<Words, std::string> cases[] = {
        {{"shwo"}, "no command is called 'shwo'; did you mean 'show'?"},
        {{"show", "--al"}, "no option is called '--al'; did you mean '--all'?"},
        {{"show", "logfil"}, "no option is called 'logfil'; did you mean 'logfile'?"},
        {{"show", "--only", "usr"}, "no layer is called 'usr'"},
        {{"show", "--format", "xml"}, "--format: xml not in {text,json}"},
        {{}, "no command is given; --help shows them"},
        {{"show", "--tool", "/none"}, "no tool </none>; name it with --tool PATH"},
        {{"show", "--", "-q", "-h"}, "--help ends the tool at once; there is nothing to show"},
        {{"names", "list"}, "list, line 2: neither 'table NAME' nor 'column NAME'"},
        {{"names", "long"}, "long, line 1: longer than 65536 bytes: table " + std::string(58, 'x') + "..."},
        {{"names", "none"}, "the name list <none> cannot be read"},
        {{"names", "meta"}, "the name list <meta> cannot be read"},
        {{"names", "/proc/self/mem"}, "the name list </proc/self/mem> cannot be read"},
        {{"names", "--version", "3,x"}, "'x' is no number"},
        {{"errors", "none"}, "the log <none> cannot be read"},
        {{"errors", "/proc/self/mem"}, "the log </proc/self/mem> cannot be read"},
        {{"explain"}, "explain which option?"},
    };
    for (const auto& [words, text] : cases) ExpectOutput(Ask(words), 2, "", "veltrane-config: " + text + "\n");
    ExpectIn(Run({"shwo", "--format=json"}).output, "\"message\": \"no command is called 'shwo'");
    EXPECT_EQ(Run({"--version"}).output, "veltrane-config 1.0.0\n");
}
