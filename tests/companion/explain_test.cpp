#include "companion.h"

using Explain = Companion;
using Files = Companion;

TEST_F(Explain, NumbersTheStepsFromKeyToValue) {
    WriteBasic("[ROOT]\nname=other\nlogfile=%data%/%name%.log\n[USER]\nspool=%logfile%\n");
    ExpectOutput(Ask({"explain", "spool", "changefile-root", "create-views", "map-file"}, {"--data", "D:"},
                     {"VORNAK_DRIVES=D=" + Path("data")}),
                 1,
                 R"(spool = D:/other.log
    1  given      meta/veltrane.ini:9 [USER]  %logfile%
    2  %logfile%  -  [USER] (basic file, registry)
                  meta/veltrane.ini:7 [ROOT]  D:/other.log
    3    %data%   -  [ROOT] (basic file, registry)
                  -  environment
                  command line, word 4        D:/%name%.log
    4    %name%   meta/veltrane.ini:6 [ROOT]  D:/other.log
    note: %name% is the configured value here; the command line says 'db'
changefile-root = D:\changefile
    1  below its folder  D:\changefile
create-views: no value
    1  given  -  [USER] (basic file, registry)
map-file: no value
    1  given  -  [db\FILES\N] (basic file)
)");
}

TEST_F(Explain, EndsWhereAReferenceLeadsBackToItself) {
    WriteBasic("[ROOT]\nlogfile=%a%\na=%b%\nb=%a%\n");
    const ChildResult result = Ask({"explain", "logfile"});
    EXPECT_EQ(result.exitCode, 1);
    ExpectIn(result.output,
             "    4      %a%  meta/veltrane.ini:7 [ROOT]\n"
             "    error: The reference <a> leads back to itself: <a> -> <b> -> <a>!\n");
}

TEST_F(Files, ShowsWhatIsAtEveryPlace) {
    Write("team.ini", "\xFF\xFE");
    std::filesystem::create_directories(m_Folder.Path() / "registry.reg");
    const ChildResult result =
        Ask({"files"}, {"-i", "team.ini", "--data", "D:\\", "-cfg", "E:\\x"}, {"VORNAK_DRIVES=D=" + Path("data")});
    EXPECT_EQ(result.exitCode, 1) << "the folder of user files does not exist";
    const std::string& output = result.output;
    EXPECT_EQ(output, R"(registry         registry.reg
                   is a folder
metadata folder  meta
                   there (command line)
basic file       meta/veltrane.ini
                   UTF-8, 4 lines, section names 3 characters
user file        team.ini
                   UTF-16LE, 0 lines, section names 0 characters (command line)
user file        E:\x\team.ini (no such drive)
                   missing (command line)
data             D:\ = data/
                   there (command line)
config           E:\x (no such drive)
                   missing (command line)
changefile-root  D:\changefile = data/changefile
                   missing; the tool creates it (start-up)
logging          D:\log = data/log
                   missing; the tool creates it (start-up)
)");
    EXPECT_FALSE(std::filesystem::exists(m_Folder.Path() / "data/log")) << "nothing is created";
}
