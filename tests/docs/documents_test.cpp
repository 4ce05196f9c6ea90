// Documents and examples against the option table and the profile reader.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <sstream>

#include "support/environment.h"
#include "support/support.h"
#include "veltrane/options/xoptiondefinition.h"
#include "veltrane/platform/sources/profile.h"

namespace {

using std::regex;
using Names = std::set<std::string>;
using Rows = std::vector<std::vector<std::string>>;

/// An empty document would agree with too much.
std::string ReadDocument(const std::string& path) {
    std::ostringstream bytes;
    bytes << std::ifstream{path, std::ios::binary}.rdbuf();
    EXPECT_FALSE(bytes.str().empty()) << path;
    return bytes.str();
}
std::string ReadSource(const std::string& name) {
    return ReadDocument(VELTRANE_SOURCE_FOLDER "/" + name);
}
std::string Shared(const std::string& name) {
    return ReadDocument(VELTRANE_SHARE_FOLDER "/" + name);
}
/// A man page without its escapes.
std::string ManPage(const std::string& name) {
    return regex_replace(regex_replace(Shared("man/" + name), regex{R"(\\f[BIR])"}, ""), regex{R"(\\-)"}, "-");
}

/// The rows of the table of a document whose first line this is; a cell may stand in backticks.
Rows TableBelow(const std::string& text, const std::string& heading) {
    Rows rows;
    std::istringstream lines{text.substr(text.find(heading + "\n|-"))};
    std::string line;
    std::getline(lines, line);
    const regex cell{R"(\| *(`?)([^|]*?)\1 *(?=\|))"};
    for (std::getline(lines, line); std::getline(lines, line) && line.starts_with('|');) {
        std::vector<std::string>& row = rows.emplace_back();
        for (std::sregex_iterator it{line.begin(), line.end(), cell}, end; it != end; ++it) row.push_back((*it)[2]);
    }
    return rows;
}

/// What every text matches of an expression, in its first group.
Names AllOf(const std::string& text, const std::string& expression) {
    Names found;
    const regex pattern{expression};
    for (std::sregex_iterator it{text.begin(), text.end(), pattern}, end; it != end; ++it) found.insert((*it)[1]);
    return found;
}

Names Without(const Names& all, const Names& others) {
    Names rest;
    std::ranges::set_difference(all, others, std::inserter(rest, rest.end()));
    return rest;
}

/// The rows of the option table that are no titles.
std::vector<const XOptionDefinition*> OptionRows() {
    std::vector<const XOptionDefinition*> rows;
    for (int i = 0; const auto* row = GetOptionDefinitionAt(i); ++i) {
        if (row->eOption != eOptionTitle) rows.push_back(row);
    }
    return rows;
}

/// What names an option on the command line: "--quiet" and "-q".
Names OptionNames() {
    Names names;
    for (const auto* row : OptionRows()) {
        names.insert("--" + ToUtf8(row->szLongName));
        if (row->szShortName[0] != 0) names.insert('-' + ToUtf8(row->szShortName));
    }
    return names;
}

/// "ROOT", "database\FILES\n", "none"
std::string SectionOf(enumCfgSection section) {
    const XConfigSection* const row = FindConfigSection(section);
    if (!row) return "none";
    const std::string name = regex_replace(ToUtf8(row->szName), regex{"--name"}, "database");
    return (row->eParent == eSectionDatabase ? "database\\" : "") + regex_replace(name, regex{"%d"}, "n");
}

std::string KindOf(const XOptionDefinition& row) {
    std::string kind;
    if (row.IsCommand()) kind += ", command";
    if (row.IsBoolean()) kind += ", boolean";
    if (row.IsTrillian()) kind += ", tri-state";
    if (row.IsIList()) kind += ", integer list";
    if (row.IsString()) kind += ", text";
    if (row.IsMandatory()) kind += ", mandatory";
    if (row.IsValueOptional()) kind += ", value may be left out";
    if (!row.IsSingle()) kind += ", several values";
    return kind.substr(2);
}

/// Every option that has a section, as "[SECTION] key".
Names ConfiguredOptions(bool withKind = false) {
    Names entries;
    for (const auto* row : OptionRows()) {
        if (row->eSection == eSectionNone) continue;
        const std::string key = '[' + SectionOf(row->eSection) + "] " + ToUtf8(row->szLongName);
        entries.insert(withKind ? key + ' ' + KindOf(*row) : key);
    }
    return entries;
}

/// Calls take(section, key, value) for each line of an entry, whose groups are key and value.
template <class Take>
void ForEachEntry(const std::string& text, const char* header, const char* entry, Take&& take) {
    std::istringstream lines{text};
    std::string section = "?";
    std::smatch match;
    for (std::string line; std::getline(lines, line);) {
        if (regex_match(line, match, regex{header})) section = match[1];
        if (regex_match(line, match, regex{entry})) take(section, match[1].str(), match[2].str());
    }
}

/// The options that an example file shows: keys without their index, naming rules as their family. A flag is read as
/// false unless its value is one of its words. A key after ';' without a blank is shown as what could stand there.
Names OptionsShownIn(const std::string& file, const char* header = R"(\[(.*)\])",
                     const char* entry = R"(;?([A-Za-z_][^ =]*) *= *(.*))") {
    Names entries;
    ForEachEntry(ReadSource(file), header, entry, [&](std::string section, std::string key, const std::string& text) {
        section = regex_replace(section, regex{"^base(?=$|\\\\)"}, "database");
        section = regex_replace(section, regex{"\\\\[0-9]+$"}, "\\n");
        key = regex_replace(key, regex{"-[0-9]+$"}, "");
        if (section == "database\\TABLENAME RULES\\n") key = "tablename-rules";
        if (section == "database\\COLUMNNAME RULES\\n") key = "columnname-rules";
        entries.insert('[' + section + "] " + key);
        const XOptionDefinition* const row = FindOptionDefinition(FromUtf8(key));
        const CString value = FromUtf8(text);
        EXPECT_TRUE(!row || !row->IsBoolean() || IsValidBooleanString(value)) << key << '=' << text;
        EXPECT_TRUE(!row || !row->IsTrillian() || IsValidTrillianString(value)) << key << '=' << text;
    });
    return entries;
}

std::string Unescaped(const std::string& text) {
    constexpr std::string_view letters = "nrt0\\";
    constexpr std::string_view meanings{"\n\r\t\0\\", 5};
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::size_t letter = text[i] == '\\' && i + 1 < text.size() ? letters.find(text[i + 1]) : letters.npos;
        plain += letter == letters.npos ? text[i] : meanings[letter];
        if (letter != letters.npos) ++i;
    }
    return plain;
}

/// The answer to a question in which an empty name is none; the names of a list with commas between.
std::string Answer(const CString& file, const CString& section, const CString& key) {
    wchar_t buffer[2048];
    const auto name = [](const CString& text) { return text.IsEmpty() ? nullptr : text.GetString(); };
    const unsigned length = GetPrivateProfileStringW(name(section), name(key), L"", buffer, 2048, file.GetString());
    std::string answer = ToUtf8(std::wstring_view{buffer, length});
    std::ranges::replace(answer, '\0', ',');
    if (answer.ends_with(',')) answer.pop_back();
    return answer;
}

}  // namespace

TEST(OptionDocuments, ListTheOptionTableAsValues) {
    Rows rows;
    for (const auto* row : OptionRows()) {
        rows.push_back({ToUtf8(row->szLongName), SectionOf(row->eSection), KindOf(*row)});
    }
    EXPECT_EQ(TableBelow(ReadSource("docs/values.md"), "| option | section | kind |"), rows);
}

TEST(IniDocument, EachRowIsWhatTheReaderAnswers) {
    const TempFolder folder;
    const Rows rows = TableBelow(ReadSource("docs/ini.md"), "| rule | file | section | key | answer |");
    EXPECT_GE(rows.size(), 20U);
    for (const auto& row : rows) {
        ASSERT_EQ(row.size(), 5U) << row[0];
        const CString file = folder.Write("document.ini", Unescaped(row[1]));
        EXPECT_EQ(Answer(file, FromUtf8(Unescaped(row[2])), FromUtf8(Unescaped(row[3]))), Unescaped(row[4])) << row[0];
    }
}

TEST(OptionDocuments, NameOnlyOptionsThatExist) {
    std::string text = ReadSource("README.md") + ManPage("man1/veltrane.1") + ManPage("man5/veltrane.ini.5");
    for (const auto& file : std::filesystem::directory_iterator{VELTRANE_SOURCE_FOLDER "/docs"}) {
        const std::string name = file.path().stem();
        const bool isOfOther = name == "own-options" || name.starts_with("veltrane-config");
        if (!isOfOther) text += ReadDocument(file.path().string());
    }
    text = std::regex_replace(text, std::regex{"[^\n]*veltrane-config [^\n]*"}, "");  // it has options of its own
    EXPECT_EQ(Without(AllOf(text, "(?:^|[^-])(--[a-z][a-z-]*)"), OptionNames()), Names{});
}

TEST(OptionDocuments, HaveEveryOptionOfTheHelpAndEveryKeyInItsSectionWithItsKind) {
    const std::string page = ManPage("man1/veltrane.1");
    std::string variables;
    for (const auto* row : OptionRows()) {
        const std::string longName = ToUtf8(row->szLongName);
        const std::string shortName = row->szShortName[0] == 0 ? "" : '-' + ToUtf8(row->szShortName) + ", ";
        if (row->szSyntax[0] != 0) {
            EXPECT_NE(page.find("\n.TP\n" + shortName + "--" + longName), std::string::npos) << longName;
        } else if (row->eSection == eSectionNone) {
            EXPECT_TRUE(AllOf(page, "(--[a-z][a-z-]*)").contains("--" + longName)) << longName;
        }
        if (row->eSection == eSectionRoot) variables += (variables.empty() ? "" : ", ") + longName;
    }
    EXPECT_NE(page.find(".TP\n" + variables + '\n'), std::string::npos) << variables;
    Names keys;
    ForEachEntry(ManPage("man5/veltrane.ini.5"), R"re(\.SS "\[(.*)\]")re", R"(([a-z-]+) \(([a-z, -]+)\))",
                 [&](const std::string& section, const auto& key, const auto& kind) {
                     const std::string name = regex_replace(section, regex{R"(\\e)"}, "\\");
                     keys.insert('[' + regex_replace(name, regex{"[<>]"}, "") + "] " + key + ' ' + kind);
                 });
    EXPECT_EQ(keys, ConfiguredOptions(/*withKind*/ true));
}

TEST(OptionDocuments, CompletionsOfferExactlyTheNamesOfTheOptionTable) {
    const Names words = AllOf(Shared("bash-completion/completions/veltrane"), "compgen -W '(-[^']*)'");
    ASSERT_EQ(words.size(), 1U);
    EXPECT_EQ(AllOf(*words.begin(), "([^ ]+)"), OptionNames());
    EXPECT_EQ(AllOf(Shared("zsh/vendor-completions/_veltrane"), "\n *'(-[^:']*)"), OptionNames());
    Names names;
    const std::string fish = Shared("fish/vendor_completions.d/veltrane.fish");
    for (const auto& name : AllOf(fish, "\ncomplete -c veltrane(?: -o [a-z]+)? -l ([a-z-]+)"))
        names.insert("--" + name);
    for (const auto& name : AllOf(fish, "\ncomplete -c veltrane -o ([a-z]+) -l ")) names.insert('-' + name);
    EXPECT_EQ(names, OptionNames());
}

TEST(OptionExamples, ShowEveryOptionThatCanBeConfiguredAndNothingElse) {
    EXPECT_EQ(OptionsShownIn("examples/config/metadata/veltrane.ini"), ConfiguredOptions());
    const Names user = OptionsShownIn("examples/config/user/team.ini");
    const Names registry =
        OptionsShownIn("examples/config/registry.reg", R"(\[HKEY_LOCAL_MACHINE\\SOFTWARE\\VORNAK\\veltrane\\(.*)\])",
                       R"re("(.*)"="(.*)")re");
    EXPECT_TRUE(user.size() >= 3 && registry.size() >= 2);
    EXPECT_EQ(Without(user, ConfiguredOptions()), Names{});
    EXPECT_EQ(Without(registry, ConfiguredOptions()), Names{});
    for (const std::string& name : AllOf(ReadSource("examples/config/environment.sh"), "\nexport ([^=\n]*)=")) {
        const bool isOfPlatform = name == "VORNAK_DRIVES" || name == "VORNAK_REGISTRY";
        EXPECT_TRUE(isOfPlatform || ConfiguredOptions().contains("[ROOT] " + name)) << name;
    }
}
