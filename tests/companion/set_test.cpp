#include "companion.h"

#include <sys/stat.h>

using SetCommand = Companion;

TEST_F(SetCommand, ChangesOnlyWhatIsAsked) {
    const struct {
        const char* what;
        const char* before;
        Words words;
        const char* after;
        int code;
    } cases[] = {
        {"empty", "", {"set", "spool", "x"}, "[USER]\nspool = x\n", 0},
        {"no end, no section", "; x", {"set", "spool", " x"}, "; x\n[USER]\nspool = \" x\"", 0},
        {"its own end", "[user]\r\nspool='a' \n", {"set", "spool", "b c"}, "[user]\r\nspool='b c' \n", 0},
        {"neighbours",
         "[USER]\nquiet=true\r\n; x\n",
         {"set", "spool", "x"},
         "[USER]\nquiet=true\r\nspool=x\r\n; x\n",
         0},
        {"Windows-1252", "[USER]\nspool=\xFC", {"set", "spool", "\xC3\xB6"}, "[USER]\nspool=\xF6", 0},
        {"no such byte", "[USER]\nspool=\xFC", {"set", "spool", "\xC4\x80"}, "[USER]\nspool=\xFC", 2},
        {"family", "[db\\FILES\\1]\n", {"set", "map-file[1]", "m"}, "[db\\FILES\\1]\nmap-file = m\n", 0},
        {"bare key", "[USER]\nload=a", {"set", "load-dictionary[0]", "b"}, "[USER]\nload=b", 0},
        {"moves a bare key",
         "[USER]\nload-dictionary-3=a\nload=b",
         {"unset", "load-dictionary[3]"},
         "[USER]\nload-dictionary-3=a\nload=b",
         2},
        {"lint", "[USER]\nquiet=true", {"set", "quiet", "yes"}, "[USER]\nquiet=true", 2},
        {"forced", "[USER]\nquiet=true", {"set", "quiet", "yes", "--force"}, "[USER]\nquiet=yes", 0},
        {"unset", "[USER]\nspool=a\nspool=b", {"unset", "spool"}, "[USER]\nspool=b", 0},
        {"unset all", "[USER]\nspool=a\nspool=b", {"unset", "spool", "--all"}, "[USER]", 0},
        {"nothing to unset", "[USER]", {"unset", "spool"}, "[USER]", 1},
        {"hidden", "[db]\n", {"set", "role", "x"}, "[db]\nrole = x\n", 1},
        {"too long", "", {"set", "spool", std::string(2048, 'x')}, "", 2},
    };
    WriteRegistry("db", "\"role\"=\"registry\"\n");
    for (const auto& [what, before, words, after, code] : cases) {
        Write("team.ini", before);
        const ChildResult result = Ask(words, {"-i", "team.ini"});
        EXPECT_EQ(m_Folder.Read("team.ini"), after) << what;
        EXPECT_EQ(result.exitCode, code) << what << '\n' << result.output << result.errors;
    }
}

TEST_F(SetCommand, FollowsLinksKeepsRightsAndCreatesTheNamedFile) {
    Write("real/team.ini", "");
    std::filesystem::create_symlink("real/team.ini", m_Folder.Path() / "team.ini");
    chmod(Path("real/team.ini").c_str(), 0604);
    EXPECT_EQ(Ask({"set", "spool", "x"}, {"-i", "team.ini"}).exitCode, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(m_Folder.Path() / "team.ini"));
    struct stat status;
    EXPECT_TRUE(stat(Path("real/team.ini").c_str(), &status) == 0 && (status.st_mode & 07777) == 0604);
    EXPECT_EQ(Ask({"set", "spool", "x"}, {"-i", "new.ini", "-cfg", Path("real")}).exitCode, 0);
    EXPECT_EQ(m_Folder.Read("real/new.ini"), "[USER]\nspool = x\n");
    EXPECT_EQ(Ask({"set", "spool", "x"}, {"-i", "real"}).exitCode, 2) << "a folder";
    EXPECT_EQ(Ask({"set", "spool=-x", "--in", "basic", "--dry-run"}).errors,
              "meta/veltrane.ini:6 [USER]: spool = -x (new)\n");
}
