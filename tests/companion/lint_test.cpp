#include "companion.h"

#include <fstream>
#include <regex>
#include <sstream>

class Lint : public Companion {
protected:
    /// The findings of a run, one a line, without their count.
    std::string Findings(const Words& words = {}, const Words& arguments = {"-i", "team.ini"}, Words environment = {}) {
        Words all{"lint"};
        all.insert(all.end(), words.begin(), words.end());
        m_Result = Ask(all, arguments, std::move(environment));
        EXPECT_EQ(m_Result.errors, "");
        const std::string text = std::regex_replace(m_Result.output, std::regex{"\n    "}, " ");
        return text.substr(0, text.rfind('\n', text.size() - 2) + 1);
    }
    /// With the first letter of each file in place of its path.
    static std::string Short(const std::string& findings) {
        static const std::regex name{"(meta/)?\\b(\\w)\\w*\\.(ini|reg)\\b"};
        return std::regex_replace(findings, name, "$2");
    }

    ChildResult m_Result;
};

std::string Bytes(const std::string& text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '^') {
            bytes += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            bytes += text[i] == '@' ? "[HKLM\\SOFTWARE\\VORNAK\\veltrane\\"
                                    : std::string(1, text[i] == '~' ? '\n' : text[i]);
        }
    }
    return bytes;
}

TEST_F(Lint, ReportsEverySlipAndNothingElse) {
    std::ifstream cases{VELTRANE_SOURCE_FOLDER "/tests/companion/lint_cases.txt"};
    int legal = 0, slips = 0;
    for (std::string row; std::getline(cases, row);) {
        if (row[0] == '#') continue;
        SCOPED_TRACE(row);
        std::smatch cells;
        static const std::regex wide{"[^\n]{81}"};
        static const std::regex form{R"(([^|]*)\|([^|]*)\|(!?)([^|]*)\|(.*))"};
        ASSERT_TRUE(std::regex_match(row, cells, form));
        WriteBasic(Bytes(cells[1]));
        Write("team.ini", Bytes(cells[2]));
        Write("registry.reg", (cells[3] == "!" ? "" : "REGEDIT4\n") + Bytes(cells[4]));
        const std::string wanted = cells[5];
        EXPECT_EQ(Short(Findings()), std::regex_replace(wanted, std::regex{" // |$"}, wanted.empty() ? "" : "\n"));
        EXPECT_FALSE(std::regex_search(m_Result.output, wide));
        EXPECT_EQ(m_Result.exitCode, wanted.find(": error ") == std::string::npos ? 0 : 1);
        ++(wanted.empty() ? legal : slips);
    }
    EXPECT_GE(legal, 75);
    EXPECT_GE(slips, 100);
}

TEST_F(Lint, ReportsWhatIsCutOffAndNothingThatJustFits) {
    std::string keys, sections = "[AUTODOC]\n";  // the lists of the keys and of the sections take 2,047 with these
    for (int i = 10; i < 50; ++i)
        keys += "a_rule_with_quite_a_long_name_to_fill_the_list_" + std::to_string(i) + "=x\n";
    for (int i = 10; i < 94; ++i) sections += "[db\\TABLENAME RULES\\50" + std::to_string(i) + "]\n";
    const auto expect = [&](const std::string& basic, const std::string& findings) {
        WriteBasic(basic);
        Write("registry.reg", "REGEDIT4\n");
        EXPECT_EQ(Short(Findings({}, {})), findings);
    };
    const std::string rules = "[db\\TABLENAME RULES\\1]\n" + keys;
    expect(rules + std::string(46, 'k') + "=x\n", "");
    expect(rules + std::string(47, 'k') + "=x\n",
           "v:46: warning C11: the names of the keys above fill the list of 2046 characters; indexed values and "
           "naming rules from '" +
               std::string(47, 'k') + "' on are not read in [db\\TABLENAME RULES\\1]\n");
    expect("[AUTODOC]\nautodoc-index=" + std::string(2'047, 'x') + "\n", "");
    expect("[AUTODOC]\nautodoc-index=" + std::string(2'048, 'x') + "\n",
           "v:6: warning C11: the value of 'autodoc-index' has 2048 characters; only the first 2047 are read\n");
    expect(sections + "[db\\FILES\\1234567890]\n", "");
    expect(sections + "[db\\FILES\\12345678901]\n",
           "v:90: warning C11: the names of the sections above fill the list of 2046 characters; indexed values and "
           "naming rules in [db\\FILES\\12345678901] and later sections are not read\n");
}

TEST_F(Lint, ReportsAllFaultsAtOnceAtTheLinesThatWereMeant) {
    Write("registry.reg", "REGEDIT4\n");
    Write("meta/veltrane.ini", "[db]\nroel=r\n[USER]\ndictionary-name=d\n[dbx]\nregistry=x\n");
    EXPECT_EQ(Short(Findings({}, {})),
              "v:1: error C07: the mandatory option 'registry' of [db] has no value; the tool stops\n"
              "v:2: warning C02: 'roel' is not a known key; did you mean 'role'?\n"
              "v:2: error C07: the mandatory option 'role' of [db] has no value; the tool stops\n"
              "v:4: warning C03: 'dictionary-name' does not belong in this section; did you mean [db]?\n"
              "v:4: error C07: the mandatory option 'dictionary-name' of [db] has no value; the tool stops\n");
    EXPECT_TRUE(m_Result.output.ends_with("\n1 file, 1 registry: 3 errors, 2 warnings, 0 notes\n")) << m_Result.output;
    Write("meta/veltrane.ini", "[database]\ndictionary-name=d\nrole=r\n[database\\FILES\\1]\nmap-file=m\n");
    EXPECT_EQ(
        Short(Findings({}, {"-n", "databsae"})),
        "command line: warning C01: no source has a section for the database 'databsae'; did you mean 'database'?\n"
        "command line: error C07: the mandatory option 'dictionary-name' of [databsae] has no value; the tool stops\n"
        "command line: error C07: the mandatory option 'registry' of [databsae] has no value; the tool stops\n"
        "command line: error C07: the mandatory option 'role' of [databsae] has no value; the tool stops\n");
    std::filesystem::remove(Path("meta/veltrane.ini"));
    EXPECT_EQ(Short(Findings({}, {})), "v: error C19: the basic file does not exist; the tool stops\n");
}

TEST_F(Lint, ReportsFilesThatAreNotReadAndValuesOfTheEnvironment) {
    std::filesystem::create_directories(m_Folder.Path() / "folder");
    Write("TEAM.INI", "");
    Write("team.ini", "");
    const auto expect = [&](const Words& arguments, const std::string& finding, const Words& environment = {}) {
        EXPECT_EQ(Findings({}, arguments, environment), finding);
    };
    expect({}, "registry.reg: warning C19: the file does not exist\n");
    Write("registry.reg", "REGEDIT4\n");
    expect({"-i", "folder"}, "folder: warning C19: this is a folder; it counts as an empty file\n");
    EXPECT_EQ(m_Result.exitCode, 1);
    expect({"-i", "/dev/null"}, "");
    EXPECT_EQ(Ask({"show"}, {"-i", "/dev/null"}).exitCode + m_Result.exitCode, 0);
    expect({"-i", "/dev/zero"}, "/dev/zero: warning C19: this is not a regular file; it counts as an empty file\n");
    expect({"-i", "team.ini"},
           "team.ini: warning C18: 'TEAM.INI' in the same folder differs only in case; rename one of them\n");
    const std::string error = "command line: error ";
    expect({"-q", "maybe"},
           error + "C19: The option string <maybe> for the boolean parameter <-q> is invalid; the tool stops\n");
    expect({"--lodfile", "x"},
           error + "C19: command line option <--lodfile> not recognized; the tool stops; did you mean 'logfile'?\n");
    expect({"-log", "%nosuch%"}, error + "C09: The option <nosuch> is not known by the system; the tool stops\n");
    expect({}, "environment: note C13: the environment variable 'logfile' sets this option\n",
           {"logfile=x", "data=" + Path("data")});
    expect({},
           "environment: error C19: Folder <none> does not exist (The global output data folder does not exist); the "
           "tool stops\n",
           {"data=none"});
    EXPECT_TRUE(std::filesystem::is_empty(m_Folder.Path() / "data"));
}

TEST_F(Lint, ReportsOnlyWhatIsAskedFor) {
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
    ExpectIn(m_Result.output, "\n1 file: 0 errors, 1 warning, 0 notes\n");
    EXPECT_EQ(count({"--code", "C04"}), 1);
    EXPECT_EQ(count({"--code=-C05,-C16"}), 1);
    const std::pair<Words, std::string> refusals[] = {
        {{"--code", "5"}, "'5' is not a lint code; did you mean 'C05'?"},
        {{"--code", "C77"}, "'C77' is not a lint code; did you mean 'C07'?"},
        {{"--explain", "X"}, "'X' is not a lint code; '--explain all' lists them"},
        {{"none.ini"}, "file <none.ini> not found"},
        {{"meta"}, "<meta> is not a source of this configuration; the command 'files' lists the sources"},
    };
    for (auto [words, text] : refusals) {
        words.insert(words.begin(), "lint");
        ExpectOutput(Ask(words), 2, "", "veltrane-config: " + text + "\n");
    }
    ExpectIn(Ask({"lint", "--format", "json", "--code", "C04"}, {"-i", "team.ini"}).output,
             "\"code\": \"C04\",\n      \"severity\": \"warning\"");
}

TEST_F(Lint, ReportsThePartOfTheLine) {
    Write("registry.reg", "REGEDIT4\n[HKLM\\SOFTWARE\\VORNAK\\veltrane\\USER]\n\"quiet\"=dword:00000001\n");
    WriteBasic("[USR]\n[USER\nquiet=yes\nqueit=true\nno value\n");
    const std::string document = Ask({"lint", "--format", "json"}).output;
    const std::regex pair{R"re("line": (\d+)[^}]*"part": "(\w+)")re"};
    std::string parts;
    for (std::sregex_iterator found{document.begin(), document.end(), pair}, end; found != end; ++found)
        parts += found->format("$1 $2, ");
    EXPECT_EQ(parts, "5 section, 6 line, 7 value, 8 key, 9 line, 3 value, ");
}

TEST_F(Lint, AnnotatesLinesForGithub) {
    Write("registry.reg", "REGEDIT4\n");
    Write("a/b,c:%.ini", "[USER]\nquiet=\U0001F600%25\n[USRE]\n");
    const auto ask = [&](const std::string& root) {
        return Ask({"lint", "--format=github", "--root", root}, {"-i", "a/b,c:%.ini"},
                   {"logfile=x", "data=" + Path("data")});
    };
    const std::string rest =
        ",line=2,col=7,endColumn=12,"
        "title=C05::'\U0001F600%2525' is neither 'true' nor 'false'; quiet is taken as false\n"
        "::warning file=@,line=3,col=2,endColumn=6,title=C01::[USRE] is not a known section; did you mean [USER]?\n"
        "::notice title=C13::environment: the environment variable 'logfile' sets this option\n"
        "2 files, 1 registry: 0 errors, 2 warnings, 1 note\n";
    const auto expected = [&](const std::string& file) {
        return std::regex_replace("::warning file=@" + rest, std::regex{"@"}, file);
    };
    ExpectOutput(ask("a"), 0, expected("b%2Cc%3A%25.ini"));
    ExpectOutput(ask("data"), 0, expected(Path("a/b%2Cc%3A%25.ini")));
    ExpectOutput(ask("none"), 2, "", "veltrane-config: folder <none> not found\n");
    ExpectOutput(Ask({"show", "--format", "github"}), 2, "",
                 "veltrane-config: --format github is only for the findings of lint\n");
}

TEST_F(Lint, MendsWhatIsCertainAndNothingElse) {
    Write("registry.reg", "REGEDIT4\n");
    WriteBasic("[ROOT\nlodfile = a.log\n; lint: C02\nloggin=x\n[AUTODOCC]\nautodoc-title=x\n");
    Write("team.ini", "[USER]\r\n queit =\ttrue\r\nspool=a\r\nspol=b\r\n[ROOT]\r\nmetdata=x");
    const std::string mended =
        "meta/veltrane.ini:5: C16: [ROOT -> [ROOT] (mended)\nmeta/veltrane.ini:6: C02: lodfile -> logfile (mended)\n"
        "meta/veltrane.ini:9: C01: AUTODOCC -> AUTODOC (mended)\nteam.ini:2: C02: queit -> quiet (mended)\n";
    const std::string left =
        "team.ini:4: warning C02: 'spol' is not a known key; did you mean 'spool'?\n"
        "team.ini:6: warning C02: 'metdata' is not a known key; did you mean 'metadata'?\n";
    const std::string count = "2 files, 1 registry: 0 errors, 2 warnings, 0 notes\n";
    const ChildResult dry = Ask({"lint", "--fix", "--dry-run"}, {"-i", "team.ini"});
    ExpectIn(dry.output, "\n- queit =\ttrue\r\n+ quiet =\ttrue\r\n");
    EXPECT_EQ(dry.errors, mended + left + count);
    ExpectOutput(Ask({"lint", "--fix"}, {"-i", "team.ini"}), 0, mended + left + count);
    ExpectOutput(Ask({"lint", "--fix"}, {"-i", "team.ini"}), 0, left + count);
    std::ostringstream bytes;
    bytes << std::ifstream{Path("team.ini"), std::ios::binary}.rdbuf();
    EXPECT_EQ(bytes.str(), "[USER]\r\n quiet =\ttrue\r\nspool=a\r\nspol=b\r\n[ROOT]\r\nmetdata=x");
}

TEST_F(Lint, MovesKeysToTheirSectionsWhenForced) {
    Write("registry.reg", "REGEDIT4\n");
    const std::string stays = "load=a\ncreate-views=auto\nmap-file-1=m\n[ROOT]\nload=b\n; x\nquiet=yes";
    Write("team.ini", "[USER]\n Logfile=x\nautodoc-title=T\n" + stays);
    const ChildResult result = Ask({"lint", "--fix", "--force"}, {"-i", "team.ini"});
    ExpectIn(result.output,
             "team.ini:2: C03: Logfile -> [ROOT] (mended)\nteam.ini:3: C03: autodoc-title -> [AUTODOC] (mended)\n");
    EXPECT_EQ(m_Folder.Read("team.ini"), "[USER]\n" + stays + "\n Logfile=x\n[AUTODOC]\nautodoc-title=T");
}

TEST_F(Lint, ExplainsTheCodesThatTheManualLists) {
    std::ifstream manual{VELTRANE_SOURCE_FOLDER "/docs/veltrane-config.md"};
    std::string printed, listed;
    std::istringstream explained{Ask({"lint", "--explain", "all"}).output};
    for (std::string line; std::getline(explained, line);) {
        EXPECT_LE(line.size(), 80U);
        if (line[0] == 'C') printed += line + '\n';
    }
    for (std::string line; std::getline(manual, line);) {
        std::smatch cells;
        const std::regex row{R"(\| (C\d\d) \| (\w+) \| (.*) \|)"};
        if (std::regex_match(line, cells, row)) listed += cells.format("$1 $2: $3\n");
    }
    EXPECT_EQ(printed, listed);
}
