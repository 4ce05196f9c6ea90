#include "companion.h"

class Diff : public Companion {
protected:
    /// Compares two user files, unless told otherwise.
    ChildResult Compare(const Words& words, const Words& first = {"-i", "a.ini"}) {
        Words all{"diff"};
        all.insert(all.end(), words.begin(), words.end());
        all.insert(all.end(), {"--", "-m", Path("meta"), "db"});
        all.insert(all.end(), first.begin(), first.end());
        return Ask(all, {"-i", "b.ini"});
    }
};

TEST_F(Diff, ComparesValuesInForceByIndexAndRulesByTheirOrder) {
    WriteBasic("[db\\TABLENAME RULES\\3]\nA=B\nB=C\nC=D\n[db\\COLUMNNAME RULES\\3]\nX=Y\n");
    Write("a.ini",
          "[ROOT]\nlogfile=%name%.log\n[USER]\nquiet=yes\n[db]\nobsolete-classes-1=1,2\n[db\\FILES\\1]\nmap-file=a\n"
          "[db\\FILES\\02]\nmap-file=b\n");
    Write("b.ini",
          "[ROOT]\nlogfile=db.log\n[USER]\nquiet=FALSE\nspool=-\n[db]\nobsolete-classes-01=1, 2\n[db\\FILES\\3]\n"
          "map-file=a\n[db\\FILES\\2]\nmap-file=c\n[db\\TABLENAME RULES\\3]\nC=D\nA=B\nB=E\nD=D\n");
    const std::string families =
        "map-file[1]         a (a.ini:8)\n                      -\n"
        "map-file[2]         b (a.ini:10)\n                      c (b.ini:11)\n"
        "map-file[3]         -\n                      a (b.ini:9)\n";
    const std::string rules =
        "rule TABLENAME 3 B  -> C (meta/veltrane.ini:7)\n                      -> E (b.ini:15)\n"
        "rule TABLENAME 3 C  -> D, number 3 (meta/veltrane.ini:8)\n                      -> D, number 1 (b.ini:13)\n"
        "rule TABLENAME 3 D  -\n                      -> D (b.ini:16)\n7 differences\n";
    ExpectOutput(Compare({}), 1, "spool               -\n                      '-' (b.ini:5)\n" + families + rules);
    ExpectOutput(Compare({}, {"-i", "b.ini"}), 0, "0 differences\n");
    const std::string placed = Compare({"--places"}).output;
    ExpectIn(placed,
             "quiet                yes, means false (a.ini:4)\n                       FALSE, means false (b.ini:4)\n");
    ExpectIn(placed, "\nini                  a.ini (command line)\n                       b.ini (command line)\n");
    ExpectIn(placed, "\n12 differences\n");
    ExpectIn(Compare({}, {}).errors + Compare({}, {"-i", "none"}).errors,
             "veltrane-config: first command line: error: Error locating and opening the configuration!\n");
}

TEST_F(Diff, AcceptsTheAnswerOfAnotherMachineAndNothingElse) {
    WriteBasic("[ROOT]\nlogfile=a.log\n[db\\TABLENAME RULES\\3]\nA=B\n");
    const Words arguments{"--spool", "a\xFF"};
    const std::string document = Ask({"show", "--all", "--format", "json"}, arguments).output;
    Write("d.json", document);
    ExpectOutput(Ask({"diff", "d.json"}, arguments), 0, "0 differences\n");
    const std::string output = Ask({"diff", "d.json"}, {"--spool", "a\xFF", "-log", "b"}).output;
    ExpectIn(output, "logfile  a.log (" + Path("meta/veltrane.ini") + ":6)");
    ExpectIn(output, " b (command line)\n1 difference\n");
    const std::string wrong = "<d.json> is not an answer of 'show --all --format json': ";
    const std::string begin = R"({"schema":1,"startup":"ok","rules":[],"options":)";
    const std::pair<std::string, std::string> refusals[] = {
        {"{]", "<d.json> is not a JSON document: error at byte 2"},
        {"[]", wrong + "'schema' is missing or wrong"},
        {R"({"schema":1e400})", "<d.json> contains a number that is too large"},
        {R"({"schema":2})", "<d.json> has schema 2; this program reads schema 1"},
        {R"({"schema":1,"startup":"ok","options":[]})", wrong + "'rules' is missing or wrong"},
        {begin + R"([{"name":"a","value":1}]})", wrong + "'options[0].value' is missing or wrong"},
        {begin + R"([{"name":"a","value":"b","candidates":[],"index":4294967296}]})",
         wrong + "'options[0].index' is missing or wrong"},
        {std::string(100'000, '['), "<d.json> is nested too deeply for an answer of this program"},
    };
    for (const auto& [bytes, text] : refusals) {
        Write("d.json", bytes);
        ExpectOutput(Ask({"diff", "d.json"}), 2, "", "veltrane-config: " + text + "\n");
    }
    ExpectOutput(
        Ask({"diff", "d.json", "d.json"}), 2, "",
        "veltrane-config: diff compares two configurations; give each as a command line of the tool, after a '--' of "
        "its own, or as a document of 'show --all --format json'\n");
}

TEST_F(Diff, OfAConfigurationAndItsFreezeIsWhatFreezeReports) {
    WriteBasic("[ROOT]\nlogfile=%name%.log\n[db\\FILES\\1]\nmap-file=\"' a \"\n[db\\TABLENAME RULES\\3]\nA=B\nB=\n");
    Write("a.ini", "[db\\FILES\\7]\nmap-file=b\n[AUTODOC]\nautodoc-title=100 %\n");
    const Words arguments{"-i", "a.ini", "--data", Path("data")};
    const ChildResult frozen = Ask({"freeze"}, arguments);
    ExpectIn(frozen.errors, "not carried: autodoc-title = 100 %");
    Write("frozen/veltrane.ini", frozen.output);
    Words words{"diff", "--", "-m", Path("meta"), "db"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    words.insert(words.end(), {"--", "-m", Path("frozen"), "--data", Path("data")});
    ExpectOutput(Run(words), 1, "autodoc-title  100 % (a.ini:4)  -\n1 difference\n");
}
