// How the naming rules change names, version by version, and the rules themselves.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <set>

#include "commands.h"
#include "nameline.h"
#include "places.h"
#include "printable.h"
#include "rules.h"
#include "veltrane/foundation/xstring.h"
#include "veltrane/platform/files/filesystem.h"
#include "veltrane/platform/text/numbers.h"

namespace veltrane::config {

namespace {

// As the tool reads names: in upper case.
constexpr bool KEEP_CASE = false;

struct Name {
    bool isTable;
    CString name;
    std::vector<CString> results = {};         // by version asked for
    std::vector<OptionRenaming> changes = {};  // of the last version
    std::vector<CString> problems = {};
};

CString NewText(const OptionRule& rule) {
    return rule.newText.IsEmpty() ? CString{L"(nothing)"} : Printable(rule.newText);
}

class Renaming {
public:
    Renaming(const Request& request, XOption& options)
        : m_Options(options),
          m_Tables(options.GetNamingRules(eOptionTableNameRules)),
          m_Columns(options.GetNamingRules(eOptionColumnNameRules)) {
        CString text = FromUtf8(request.Value("--version"));
        for (int i = 0; !GetArgument(i, text).IsEmpty(); ++i) m_Versions.push_back(ReadNumber(GetArgument(i, text)));
        if (request.Has("--limit")) m_Limit = ReadNumber(FromUtf8(request.Value("--limit")));
        if (request.words.empty()) ReadInput();
        for (const std::string& file : request.words) ReadFile(FromUtf8(file));
    }

    Answer Run() {
        if (m_Versions.empty()) m_Versions = AllVersions();
        for (Name& name : m_Names) Rename(name);
        FindCollisions();
        Answer answer;
        answer.hasFindings = m_bHasFaults;
        AddNames(answer);
        AddIdleRules(answer);
        return answer;
    }

private:
    static int ReadNumber(const CString& text) {
        int number = 0;
        if (!ScanInteger(text.View(), number) || FormatText(L"%d", number) != text) {
            throw Refusal{FormatText(L"'%s' is not a number", text)};
        }
        return number;
    }

    static Refusal NotReadable(const CString& file) { return {FormatText(L"the name list <%s> cannot be read", file)}; }

    void ReadFile(const CString& file) {
        const std::string path = MapPath(file);
        std::ifstream lines{path};
        std::error_code ignored;
        if (!lines || std::filesystem::is_directory(path, ignored)) throw NotReadable(file);
        Read(lines, file);
        if (lines.bad()) throw NotReadable(file);
    }

    void ReadInput() {
        Read(std::cin, L"standard input");
        if (std::ferror(stdin) != 0) throw Refusal{L"standard input cannot be read"};  // std::cin treats it as the end
    }

    // The version of a list counts unless versions were asked for.
    void Read(std::istream& lines, const CString& file) {
        for (NameLines reader{lines}; reader.Next();) {
            const auto refuse = [&](const CString& what) {
                throw Refusal{FormatText(L"%s, line %d: %s", file, reader.Number(), what)};
            };
            if (reader.IsTooLong())
                refuse(FormatText(L"longer than %d bytes: %s", NameLines::LONGEST, Printable(reader.Text())));
            const std::optional<NameLine> line = reader.Line();
            if (!line) refuse(L"expected 'table NAME' or 'column NAME'");
            if (line->kind == NameLine::Kind::Version) continue;
            m_Names.push_back({line->kind == NameLine::Kind::Table, line->name});
        }
    }

    const std::vector<OptionRule>& RulesOf(bool isTable) const { return isTable ? m_Tables : m_Columns; }

    // The versions of all rules in force; without rules names only change to upper case.
    std::vector<int> AllVersions() const {
        std::set<int> versions;
        for (const bool isTable : {true, false}) {
            for (const OptionRule& rule : RulesOf(isTable)) {
                if (rule.isInForce) versions.insert(rule.version);
            }
        }
        if (versions.empty()) versions.insert(0);
        return {versions.begin(), versions.end()};
    }

    void Rename(Name& name) {
        for (const int version : m_Versions) {
            name.changes = name.isTable ? m_Options.PreviewTableName(name.name, version, KEEP_CASE)
                                        : m_Options.PreviewColumnsName(name.name, version, KEEP_CASE);
            for (const OptionRenaming& change : name.changes) m_Fired.insert({name.isTable, change.rule});
            const CString result = name.changes.empty() ? CString{name.name}.MakeUpper() : name.changes.back().name;
            name.results.push_back(result);
            if (result.IsEmpty()) AddFault(name, FormatText(L"empty in version %d", version));
            const int bytes = static_cast<int>(ToUtf8(result).size());
            if (bytes > m_Limit) name.problems.push_back(FormatText(L"%d bytes in version %d", bytes, version));
        }
    }

    void AddFault(Name& name, const CString& text) {
        name.problems.push_back(text);
        m_bHasFaults = true;
    }

    // Two different names that become the same.
    void FindCollisions() {
        for (std::size_t i = 0; i < m_Versions.size(); ++i) {
            std::map<std::pair<bool, CString>, const Name*> first;
            for (Name& name : m_Names) {
                const Name* const other = first.emplace(std::pair{name.isTable, name.results[i]}, &name).first->second;
                if (other == &name || other->name.CompareNoCase(name.name) == 0) continue;
                AddFault(name, FormatText(L"collision with '%s' in version %d", other->name, m_Versions[i]));
            }
        }
    }

    CString RuleText(const OptionRule& rule) const {
        const CString place = rule.origin.file.IsEmpty()
                                  ? CString{}
                                  : CString{FormatText(L" (%s:%d)", DisplayPath(rule.origin.file), rule.origin.line)};
        return FormatText(L"rule %d %s -> %s%s", rule.version, Printable(rule.oldText), NewText(rule), place);
    }

    void AddNames(Answer& answer) {
        answer.document["versions"] = m_Versions;
        answer.document["names"] = Json::array();
        Columns columns;
        for (const Name& name : m_Names) {
            std::vector<CString> row{FromUtf8(KindOf(name.isTable)), Printable(name.name)};
            Json json{{"kind", KindOf(name.isTable)}, {"name", ToUtf8(name.name)}, {"results", Json::array()}};
            for (std::size_t i = 0; i < m_Versions.size(); ++i) {
                row.push_back(FormatText(L"%d: %s", m_Versions[i], Printable(name.results[i])));
                json["results"].push_back({{"version", m_Versions[i]}, {"name", ToUtf8(name.results[i])}});
            }
            for (const OptionRenaming& change : name.changes) {
                row.push_back(RuleText(RulesOf(name.isTable)[static_cast<std::size_t>(change.rule)]));
                json["rules"].push_back(change.rule);
            }
            for (const CString& problem : name.problems) {
                row.push_back(problem);
                json["problems"].push_back(ToUtf8(problem));
            }
            columns.Add(std::move(row));
            answer.document["names"].push_back(std::move(json));
        }
        columns.Print(answer);
    }

    // Only rules that the wanted versions include.
    void AddIdleRules(Answer& answer) {
        answer.document["never_fired"] = Json::array();
        const int last = *std::ranges::max_element(m_Versions);
        for (const bool isTable : {true, false}) {
            const std::vector<OptionRule>& rules = RulesOf(isTable);
            for (std::size_t i = 0; i < rules.size(); ++i) {
                if (!rules[i].isInForce || rules[i].version > last) continue;
                if (m_Fired.contains({isTable, static_cast<int>(i)})) continue;
                answer.text += "never fired: " + std::string{KindOf(isTable)} + " ";
                answer.AddLine(RuleText(rules[i]));
                answer.document["never_fired"].push_back({{"kind", KindOf(isTable)}, {"rule", i}});
            }
        }
    }

    XOption& m_Options;
    std::vector<OptionRule> m_Tables;
    std::vector<OptionRule> m_Columns;
    std::vector<int> m_Versions;
    std::vector<Name> m_Names;
    std::set<std::pair<bool, int>> m_Fired;  // kind and number of rule
    int m_Limit = 30;                        // bytes of a name
    bool m_bHasFaults = false;
};

// In the order of their application; those that the user file hides come last.
Answer ListRules(XOption& options) {
    Answer answer;
    answer.document["rules"] = Json::array();
    Columns columns;
    for (const OptionRule& rule : AllRules(options)) {
        columns.Add({FromUtf8(KindOf(rule)), FormatText(L"%d", rule.version), Printable(rule.oldText),
                     L"-> " + NewText(rule), PlaceText(rule.origin),
                     rule.isInForce ? L"" : L"hidden by the user file"});
        answer.document["rules"].push_back(RuleJson(rule));
    }
    columns.Print(answer);
    return answer;
}

}  // namespace

Answer Names(const Request& request, Startup& startup) {
    return request.Has("--rules") ? ListRules(startup.options) : Renaming{request, startup.options}.Run();
}

}  // namespace veltrane::config
