#include "companion.h"

#include <regex>

class Lint : public Companion {
protected:
    /// The findings of a run, without the line that counts them.
    std::string Findings(const Words& words = {}, const Words& arguments = {"-i", "team.ini"}, Words environment = {}) {
        Words all{"lint"};
        all.insert(all.end(), words.begin(), words.end());
        m_Result = Ask(all, arguments, std::move(environment));
        EXPECT_EQ(m_Result.errors, "");
        const std::string& text = m_Result.output;
        return text.substr(0, text.rfind('\n', text.size() - 2) + 1);
    }

    ChildResult m_Result;
};

TEST_F(Lint, NamesExactlyTheLinesThatSlipped) {
    const std::string wide(2'048, 'x');
    std::string keys;
    for (int i = 10; i < 51; ++i)
        keys += "a_rule_with_quite_a_long_name_to_fill_the_list_" + std::to_string(i) + "=x\n";
    const std::string key = "[HKLM\\SOFTWARE\\VORNAK\\veltrane\\", registry = "REGEDIT4\n" + key;
    const struct {
        std::string findings;  // files by the first letter of their names
        std::string basic;     // from line 5 on
        std::string user = {};
        std::string registry = {};
    } cases[] = {
        {"v:5: warning C01: no section [db\\TABELNAME RULES\\5] is known; did you mean [db\\TABLENAME RULES\\5]?\n"
         "v:7: warning C01: no section [USR] is known\n"
         "v:11: warning C02: 'map-flie' in [other\\FILES\\1] is not asked for by anything; did you mean 'map-file'?\n"
         "v:13: warning C02: 'LODFILE' in [ROOT] is not asked for by anything; did you mean 'logfile'?\n"
         "v:17: note C03: 'quiet' is a naming rule here; the option stands in [USER]\n"
         "t:2: warning C02: 'load-dictionray-3' in [USER] is not asked for by anything; did you mean "
         "'load-dictionary-3'?\n"
         "t:3: note C17: 'load' takes the next free index of 'load-dictionary'\n"
         "t:5: warning C03: 'Quiet' in [ROOT] is not asked for there; did you mean [USER]?\n"
         "t:8: note C01: [dbs] counts as the section of another database; did you mean [db]?\n",
         "[db\\TABELNAME RULES\\5]\na=b\n[USR]\n[other]\nrole=r\n[other\\FILES\\1]\nmap-flie=x\n"
         "[ROOT]\nLODFILE=x\nx=y\nlogfile=%x%\n[db\\COLUMNNAME RULES\\1]\nquiet=true\nDATA=x\n",
         "[USER]\nload-dictionray-3=x\nload=x\n[ROOT]\nQuiet=true\n[bd]\nrole=x\n[dbs]\nrole=x\n"},
        {"v:5: warning C04: 'role' stands in [db] already: this line is never read\n"
         "v:6: warning C06: 'x' is no positive number and is skipped\n"
         "v:7: warning C06: '12y' counts as 12\n"
         "v:8: note C17: 'obsolete-classes--3' has the index -3: the second hyphen is its sign\n"
         "v:9: warning C04: section [DB] stands above already: this one is never read\n"
         "v:12: warning C05: 'yes' is no 'true' or 'false': quiet means false\n"
         "v:13: warning C05: 'maybe' is no 'true', 'false' or 'auto': create-views means auto\n"
         "v:14: note C12: 'ini' comes too late: start-up asks for it before this file is open; give it on the command "
         "line, in the registry or, of [ROOT], in the environment\n"
         "v:15: warning C14: index -1 ends the reading of the family 'load-dictionary': the values after it are lost\n"
         "v:16: warning C16: a line without '=' is never read\n"
         "v:18: warning C05: there are no comments behind a value: all of 'a.log ; log' counts\n"
         "t:1: warning C16: what stands before the first section is never read\n"
         "t:2: warning C16: the header [USER has no ']'\n",
         "role=x\nobsolete-classes-1=12, x\nobsolete-classes-2=12y, 3\nobsolete-classes--3=1\n[DB]\nrole=x\n"
         "[USER]\nquiet=yes\ncreate-views=maybe\nini=x\nload-dictionary--1=x\nquiet true\n[ROOT]\nlogfile=a.log ; "
         "log\n",
         "quiet=true\n[USER\n"},
        {"v:6: warning C14: rule 'a' is not in force: the user file has a section of version 1 and not this rule\n"
         "v:7: warning C14: version 3 is looked for in [db\\tablename rules\\3]: a rule of this section deletes its "
         "text\n"
         "t:2: warning C14: a negative version ends the reading: no rule of this kind is in force\n",
         "[db\\TABLENAME RULES\\1]\na=b\n[db\\TABLENAME RULES\\03]\na=b\n",
         "[db\\TABLENAME RULES\\1]\n[db\\COLUMNNAME RULES\\-1]\na=b\n"},
        {"v:7: error C08: 'map-file' 1 stands here and in v:6: the tool stops\n"
         "v:10: error C08: 'load-dictionary' 7 stands here and in v:9: the tool stops\n"
         "v:12: note C17: 'load-dictionary' takes the next free index of 'load-dictionary'\n"
         "v:15: error C09: The option <spol> is not known by the system: the tool stops; did you mean 'spool'?\n"
         "v:17: error C09: The reference <autodoc-index> leads back to itself: <autodoc-index> -> <y> -> "
         "<autodoc-index>: the tool stops\n"
         "v:19: error C09: %map-file% has several values: the tool stops\n"
         "t:2: error C08: 'map-file' 1 stands here and in v:6: the tool stops\n",
         "[db\\FILES\\1]\nmap-file=x\n[db\\files\\1]\n[USER]\nload-dictionary-7=x\nload-dictionary-7=x\n"
         "load-dictionary-2147483647=x\nload-dictionary=x\n[AUTODOC]\n"
         "autodoc-title=%x%\nx=%spol%\nautodoc-index=%y%\ny=%autodoc-index%\n[ROOT]\nlogfile=%map-file%\n",
         "[db\\FILES\\01]\nmap-file=y\n"},
        {"v:5: warning C11: the names of the keys in [db\\TABLENAME RULES\\1] take more than 2046 characters: from "
         "'a_rule_with_quite_a_long_name_to_fill_the_list_50' in line 46 on no family and no rule sees them\n"
         "t:2: warning C10: %data% leads to no value and becomes the list of the sections\n"
         "t:3: warning C11: 'dictionary-root' has 2048 characters: those after the first 2047 are cut off\n",
         "[db\\TABLENAME RULES\\1]\n" + keys, "[ROOT]\nlogfile=%data%/x\ndictionary-root=" + wide + "\n"},
        {"r:3: warning C15: 'rloe' is not asked for in this key; did you mean 'role'?\n"
         "r:5: warning C15: 'quiet' is no text: its bytes are read as one\n"
         "r:6: warning C15: a later line deletes it: it is never read\n"
         "r:8: warning C15: nothing is looked for in the key [SOFTWARE\\VORNAK\\veltrane\\USRE]; did you mean "
         "[SOFTWARE\\VORNAK\\veltrane\\USER]?\n"
         "r:9: warning C15: [SOFTWARE\\VORNAK\\vletrane\\db] is no key of this tool; did you mean "
         "[SOFTWARE\\VORNAK\\veltrane\\db]?\n",
         "", "",
         registry + "DB]\n\"rloe\"=\"x\"\n" + key + "USER]\n\"quiet\"=dword:1\n\"spool\"=\"a\"\n\"spool\"=-\n" + key +
             "USRE]\n[HKLM\\SOFTWARE\\VORNAK\\vletrane\\db]\n[HKLM\\SOFTWARE\\Others\\x]\n"},
        {"r:2: note C15: [SOFTWARE\\VORNAK\\veltrane\\dbs] counts as the key of another database; did you mean "
         "[SOFTWARE\\VORNAK\\veltrane\\db]?\n",
         "", "", registry + "dbs]\n\"role\"=\"x\"\n"},
        {"r:1: warning C15: the file begins with no header of an export: nothing of it is read\n", "", "",
         "[HKLM\\SOFTWARE]\n"},
        {"",
         "[db\\FILES\\-3]\nmap-file=x\n[arch]\nobsolete-classes-2=1\n[ROOT]\nlogfile=\"\"\nz=%name%\n"
         "dictionary-root=%z%\n",
         "[other]\nregistry=a\n", registry + "fourth]\n\"role\"=\"x\"\n"},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.basic + each.user + each.registry);
        WriteBasic(each.basic);
        Write("team.ini", each.user);
        Write("registry.reg", each.registry.empty() ? "REGEDIT4\n" : each.registry);
        EXPECT_EQ(std::regex_replace(Findings(), std::regex{"(meta/)?(\\w)\\w+\\.(ini|reg)"}, "$2"), each.findings);
        EXPECT_EQ(m_Result.exitCode, each.findings.find(": error ") == std::string::npos ? 0 : 1);
    }
}

TEST_F(Lint, TellsAllFaultsAtOnceAtTheLinesThatWereMeant) {
    Write("registry.reg", "REGEDIT4\n");
    Write("meta/veltrane.ini", "[db]\nroel=r\n[USER]\ndictionary-name=d\n[dbx]\nregistry=x\n");
    EXPECT_EQ(
        Findings({}, {}),
        "meta/veltrane.ini:1: error C07: 'registry' of [db] has no value and is mandatory: the tool stops\n"
        "meta/veltrane.ini:2: warning C02: 'roel' in [db] is not asked for by anything; did you mean 'role'?\n"
        "meta/veltrane.ini:2: error C07: 'role' of [db] has no value and is mandatory: the tool stops\n"
        "meta/veltrane.ini:4: warning C03: 'dictionary-name' in [USER] is not asked for there; did you mean [db]?\n"
        "meta/veltrane.ini:4: error C07: 'dictionary-name' of [db] has no value and is mandatory: the tool stops\n");
    EXPECT_TRUE(m_Result.output.ends_with("\n1 file, 1 registry: 3 errors, 2 warnings, 0 notes\n")) << m_Result.output;
    ExpectIn(Findings({}, {"-n", "database"}), "veltrane.ini: error C07: 'role' of [database]");
    Write("meta/veltrane.ini", "[databsae]\ndictionary-name=d\nrole=r\nregistry=g\n");
    EXPECT_EQ(Findings({"--code", "C07"}, {"-n", "database"}).substr(0, 39), "meta/veltrane.ini:1: error C07: 'dictio");
}

TEST_F(Lint, TellsFilesThatAreNotReadAndValuesOfTheEnvironment) {
    std::filesystem::create_directories(m_Folder.Path() / "folder");
    Write("TEAM.INI", "");
    Write("team.ini", "");
    const auto expect = [&](const Words& arguments, const std::string& finding, const Words& environment = {}) {
        EXPECT_EQ(Findings({}, arguments, environment), finding);
    };
    const std::string missing = "registry.reg: warning C19: the file does not exist\n";
    expect({}, missing);
    Write("registry.reg", "REGEDIT4\n");
    expect({"-i", "folder"}, "folder: warning C19: this is a folder: nothing of it is read\n");
    expect({"-i", "/dev/zero"}, "/dev/zero: warning C19: this is no regular file: nothing of it is read\n");
    expect({"-i", "team.ini"},
           "team.ini: warning C18: 'TEAM.INI' beside it differs in case only; is this the one that is meant?\n");
    expect({"-q", "maybe"},
           "command line: error C19: The option string <maybe> for the boolean parameter <-q> is invalid: the tool "
           "stops\n");
    expect({"-log", "%nosuch%"},
           "command line: error C09: The option <nosuch> is not known by the system: the tool stops\n");
    expect({}, "environment: note C13: the variable 'logfile' of the environment gives this option its value\n",
           {"logfile=x", "data=" + Path("data")});
    EXPECT_TRUE(std::filesystem::is_empty(m_Folder.Path() / "data"));
}

TEST_F(Lint, TellsWhatIsAskedForAlone) {
    Write("registry.reg", "REGEDIT4\n");
    WriteBasic("[USER]\nquiet=yes\nquiet=no\n");
    Write("team.ini", "[USER]\nexit=1\n");
    const auto count = [&](const Words& words) {
        const std::string found = Findings(words);
        return std::count(found.begin(), found.end(), '\n');
    };
    EXPECT_EQ(count({}), 3);
    EXPECT_EQ(m_Result.exitCode, 0);
    EXPECT_EQ(count({"--strict", "team.ini"}), 1);
    EXPECT_EQ(m_Result.exitCode, 1);
    EXPECT_EQ(count({"--code", "C04"}), 1);
    EXPECT_EQ(count({"--code=-C05,-C16"}), 1);
    EXPECT_EQ(Ask({"lint", "--code", "5"}).errors, "veltrane-config: no code is called '5'\n");
    ExpectIn(Ask({"lint", "--format", "json", "--code", "C04"}, {"-i", "team.ini"}).output,
             "\"code\": \"C04\",\n      \"severity\": \"warning\"");
}
