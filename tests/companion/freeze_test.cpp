#include "companion.h"

#include <regex>

using Freeze = Companion;
using Errors = Companion;

// Values alone, without the places that they come from.
static std::string ValuesOf(const std::string& document) {
    return std::regex_replace(document, std::regex("\"(name|index|value|old|new|version)\": .*"), "$&\n",
                              std::regex_constants::format_no_copy);
}

TEST_F(Freeze, GivesTheSameValuesOnItsOwn) {
    WriteBasic(
        "[USER]\nquiet=yes\nspool=\"  %name% \"\nload-dictionary-4=''x''\nautodoc-document-root=\"\"x\"\"\n"
        "[db\\FILES\\-3]\nmap-file=;m\n[db\\FILES\\2]\nmap-file=[m]\n[db\\TABLENAME RULES\\3]\nA=\" B\"\nC=\n%D%=%D\n");
    Write("team.ini", "[ROOT]\ndictionary-root=\xC3\xA4%quiet\n[AUTODOC]\nautodoc-title=team\n");
    WriteRegistry("db", "\"role\"=\"registry\"\n");
    const Words from = {"-i", "team.ini"};
    const ChildResult frozen = Ask({"freeze"}, from);
    EXPECT_EQ(frozen.errors,
              "not carried: dictionary-root = \xC3\xA4%quiet (a '%' begins a reference in a file)\n"
              "not carried: ini = team.ini (start-up determines it before the file is opened)\n"
              "not carried: metadata = " +
                  Path("meta") + " (start-up determines it before the file is opened)\n");
    EXPECT_EQ(frozen.exitCode, 1);
    std::vector<std::string> before;
    std::vector<std::string> after;
    const std::vector<Words> questions = {{"show", "quiet", "spool", "load-dictionary", "autodoc-document-root",
                                           "map-file", "role", "registry", "autodoc-title", "name", "--format=json"},
                                          {"names", "--rules", "--format=json"}};
    for (const Words& question : questions) before.push_back(ValuesOf(Ask(question, from).output));
    Write("meta/veltrane.ini", frozen.output);
    std::filesystem::remove(m_Folder.Path() / "registry.reg");
    std::filesystem::remove(m_Folder.Path() / "team.ini");
    for (const Words& question : questions) after.push_back(ValuesOf(Ask(question).output));
    EXPECT_EQ(after, before) << frozen.output;
}

TEST_F(Freeze, ReportsWhatItCannotCarry) {
    WriteBasic("[db\\FILES\\1]\nmap-file=m\n[db\\FILES\\2]\nmap-file=n\n");
    Write("team.ini", "[db\\FILES\\01]\nmap-file=y\n");
    std::filesystem::create_directories(m_Folder.Path() / "registry.reg");
    const ChildResult result = Ask({"freeze"}, {"-i", "team.ini", "--columnname-rules", "x"});
    EXPECT_EQ(result.exitCode, 1);
    ExpectIn(result.output, "\n; cannot be read: registry.reg (is a folder)\n");
    ExpectIn(result.output, "\n[db\\FILES\\2]\nmap-file = n\n");
    ExpectIn(result.errors,
             "not carried: map-file[1] = m (index given twice: meta/veltrane.ini:6 [db\\FILES\\1], team.ini:2 "
             "[db\\FILES\\01])\n"
             "not carried: map-file[1] = y (index given twice: meta/veltrane.ini:6 [db\\FILES\\1], team.ini:2 "
             "[db\\FILES\\01])\n"
             "not carried: columnname-rules[0] = x (it can be given only on the command line)\n");
    EXPECT_EQ(Ask({"show"}).errors, "cannot be read: registry.reg (is a folder)\n");
}

TEST_F(Errors, AreReadFromTheBlocksOfALog) {
    Write("run.log",
          "start\r\n#### Error info start ####\r\nLocation:  \t<A::B> in [a], line [7]\r\n               \t<C> in [c], "
          "line [8]\r\n"
          "Message:   \tno reason: \there\r\nreason: \twhy\r\n\t<-- remark -->\r\nError Code:\t-1\r\n####  Error info "
          "end  ####\r\n\r\n"
          "#### Error info start ####\r\nMessage:   \tcut");
    ExpectOutput(Run({"errors", "run.log"}), 1,
                 "run.log:2: error -1: why\n    while: no reason: \\x09here\n    <-- remark -->\n    at A::B in a:7\n"
                 "    at C in c:8\nrun.log:11: error 0: cut\n");
    ExpectIn(Run({"errors", "run.log", "--format", "json"}).output, "\"log_line\": 2,\n      \"ambiguous\": true\n");
    ExpectOutput(Run({"errors", "/dev/null"}), 0, "");
}
