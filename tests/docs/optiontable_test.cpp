#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <regex>
#include <set>

#include "documents.h"
#include "support/support.h"

namespace {

using Names = std::set<std::string>;
using Entries = std::set<std::string>;  // "[SECTION] key"

std::string Replaced(std::string text, std::string_view word, std::string_view replacement) {
    for (std::size_t at; (at = text.find(word)) != std::string::npos;) text.replace(at, word.size(), replacement);
    return text;
}

/// What every text matches of an expression, in its first group.
Names AllOf(const std::string& text, const std::string& expression) {
    Names found;
    const std::regex regex{expression};
    for (std::sregex_iterator it{text.begin(), text.end(), regex}, end; it != end; ++it) found.insert((*it)[1]);
    return found;
}

Names Without(const Names& all, const Names& others) {
    Names rest;
    std::ranges::set_difference(all, others, std::inserter(rest, rest.end()));
    return rest;
}

template <class Condition>
Names LongOptions(Condition&& condition) {
    Names names;
    for (const auto* row : OptionRows()) {
        if (condition(*row)) names.insert("--" + ToUtf8(row->szLongName));
    }
    return names;
}
Names LongOptions() {
    return LongOptions([](const auto&) { return true; });
}

/// "ROOT", "database\FILES\n"
std::string SectionOf(enumCfgSection section) {
    const XConfigSection* const row = FindConfigSection(section);
    if (!row) return section == eSectionNone ? "" : "?";
    const std::string parent = SectionOf(row->eParent);
    const std::string own = Replaced(Replaced(ToUtf8(row->szName), "--name", "database"), "%d", "n");
    return parent.empty() ? own : parent + '\\' + own;
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

/// Every option that has a section, in the section where it stands.
Entries ConfiguredOptions() {
    Entries entries;
    for (const auto* row : OptionRows()) {
        if (row->eSection == eSectionNone) continue;
        entries.insert('[' + SectionOf(row->eSection) + "] " + ToUtf8(row->szLongName));
    }
    return entries;
}

/// A key of an example file as the option that it shows: without its index, and a naming rule as its family.
std::string EntryOf(std::string section, std::string key) {
    section = std::regex_replace(section, std::regex{"^base(?=$|\\\\)"}, "database");
    section = std::regex_replace(section, std::regex{"\\\\[0-9]+$"}, "\\n");
    if (section == "database\\TABLENAME RULES\\n") key = "tablename-rules";
    if (section == "database\\COLUMNNAME RULES\\n") key = "columnname-rules";
    return '[' + section + "] " + std::regex_replace(key, std::regex{"-[0-9]+$"}, "");
}

/// A flag in a file is read as false unless it is one of these words.
void ExpectValidValue(const std::string& key, const std::string& value) {
    const XOptionDefinition* const row = FindOptionDefinition(FromUtf8(key));
    if (!row) return;
    EXPECT_TRUE(!row->IsBoolean() || IsValidBooleanString(FromUtf8(value))) << key << '=' << value;
    EXPECT_TRUE(!row->IsTrillian() || IsValidTrillianString(FromUtf8(value))) << key << '=' << value;
}

/// The options that an INI file shows; a key behind ';' without a blank is shown as what could stand there.
Entries OptionsShownIn(const std::string& file) {
    const std::regex header{R"(\[(.*)\])"};
    const std::regex entry{R"(;?([A-Za-z_][^ =]*) *= *(.*))"};
    Entries entries;
    std::string section;
    std::smatch match;
    for (const std::string& line : LinesOf(ReadSource(file))) {
        if (std::regex_match(line, match, header)) section = match[1];
        if (!std::regex_match(line, match, entry)) continue;
        entries.insert(EntryOf(section, match[1]));
        ExpectValidValue(match[1], match[2]);
    }
    return entries;
}

/// A man page without its escapes.
std::string ManPage(const std::string& name) {
    const std::string page = ReadDocument(std::string{VELTRANE_SHARE_FOLDER} + "/man/" + name);
    return Replaced(std::regex_replace(page, std::regex{R"(\\f[BIR])"}, ""), "\\-", "-");
}

}  // namespace

TEST(OptionDocuments, TheListOfValuesIsTheOptionTable) {
    std::vector<std::vector<std::string>> rows;
    for (const auto* row : OptionRows()) {
        const std::string section = row->eSection == eSectionNone ? "none" : SectionOf(row->eSection);
        rows.push_back({ToUtf8(row->szLongName), section, KindOf(*row)});
    }
    EXPECT_EQ(TableBelow(ReadSource("docs/values.md"), "| option | section | kind |"), rows);
}

TEST(OptionDocuments, NoDocumentNamesAnOptionThatIsNone) {
    std::string text = ReadSource("README.md") + ManPage("man1/veltrane.1") + ManPage("man5/veltrane.ini.5");
    for (const auto& file : std::filesystem::directory_iterator{std::string{VELTRANE_SOURCE_FOLDER} + "/docs"}) {
        text += ReadDocument(file.path().string());
    }
    EXPECT_EQ(Without(AllOf(text, "(?:^|[^-])(--[a-z][a-z-]*)"), LongOptions()), Names{});
}

TEST(OptionDocuments, TheCommandPageHasEveryOptionOfTheHelpAndEveryFactOfTheProgram) {
    const std::string page = ManPage("man1/veltrane.1");
    const Names wanted =
        LongOptions([](const XOptionDefinition& row) { return row.szSyntax[0] != 0 || row.eSection == eSectionNone; });
    EXPECT_EQ(Without(wanted, AllOf(page, "(--[a-z][a-z-]*)")), Names{});
    for (const auto* row : OptionRows()) {
        if (row->szSyntax[0] == 0) continue;
        const std::string shortName = row->szShortName[0] == 0 ? "" : '-' + ToUtf8(row->szShortName) + ", ";
        const std::string head = "\n.TP\n" + shortName + "--" + ToUtf8(row->szLongName);
        EXPECT_NE(page.find(head), std::string::npos) << head;
    }
}

TEST(OptionDocuments, TheVariablesOfTheCommandPageAreTheOptionsOfRoot) {
    const std::string page = ManPage("man1/veltrane.1");
    std::string names;
    for (const auto* row : OptionRows()) {
        if (row->eSection == eSectionRoot) names += (names.empty() ? "" : ", ") + ToUtf8(row->szLongName);
    }
    EXPECT_NE(page.find(".TP\n" + names + '\n'), std::string::npos) << names;
}

TEST(OptionDocuments, TheIniPageHasEveryKeyInItsSectionWithItsKind) {
    Entries keys;
    Entries wanted;
    std::string section;
    std::smatch match;
    for (const std::string& line : LinesOf(Replaced(ManPage("man5/veltrane.ini.5"), "\\e", "/"))) {
        if (std::regex_match(line, match, std::regex{R"re(\.SS "\[(.*)\]")re"})) section = match[1];
        if (std::regex_match(line, match, std::regex{R"(([a-z-]+) \(([a-z, -]+)\))"})) {
            keys.insert(section + ' ' + match[1].str() + ' ' + match[2].str());
        }
    }
    for (const auto* row : OptionRows()) {
        if (row->eSection == eSectionNone) continue;
        std::string title = Replaced(SectionOf(row->eSection), "\\", "/");
        title = std::regex_replace(std::regex_replace(title, std::regex{"^database"}, "<database>"), std::regex{"/n$"},
                                   "/<n>");
        wanted.insert(title + ' ' + ToUtf8(row->szLongName) + ' ' + KindOf(*row));
    }
    EXPECT_EQ(keys, wanted);
}

TEST(OptionDocuments, EachOptionStandsOnOneOfTheTwoPages) {
    const std::string pages = ManPage("man1/veltrane.1") + ManPage("man5/veltrane.ini.5");
    for (const auto* row : OptionRows()) {
        const std::regex word{"(^|[^a-z-])(--)?" + ToUtf8(row->szLongName) + "($|[^a-z-])"};
        EXPECT_TRUE(std::regex_search(pages, word)) << ToUtf8(row->szLongName);
    }
}

TEST(OptionDocuments, EachCompletionOffersExactlyTheNamesOfTheOptionTable) {
    Names wanted;
    for (const auto* row : OptionRows()) {
        wanted.insert("--" + ToUtf8(row->szLongName));
        if (row->szShortName[0] != 0) wanted.insert('-' + ToUtf8(row->szShortName));
    }
    const std::string share = VELTRANE_SHARE_FOLDER;
    const std::string bash = ReadDocument(share + "/bash-completion/completions/veltrane");
    const Names words = AllOf(bash, "compgen -W '(-[^']*)'");
    ASSERT_EQ(words.size(), 1U);
    EXPECT_EQ(AllOf(*words.begin(), "([^ ]+)"), wanted);

    EXPECT_EQ(AllOf(ReadDocument(share + "/zsh/vendor-completions/_veltrane"), "\n *'(-[^:']*)"), wanted);

    const std::string fish = ReadDocument(share + "/fish/vendor_completions.d/veltrane.fish");
    Names names;
    for (const std::string& name : AllOf(fish, "\ncomplete -c veltrane(?: -o [a-z]+)? -l ([a-z-]+)"))
        names.insert("--" + name);
    for (const std::string& name : AllOf(fish, "\ncomplete -c veltrane -o ([a-z]+) -l ")) names.insert('-' + name);
    EXPECT_EQ(names, wanted);
}

TEST(OptionExamples, TheBasicFileShowsEveryOptionThatCanBeConfigured) {
    EXPECT_EQ(OptionsShownIn("examples/config/metadata/veltrane.ini"), ConfiguredOptions());
}

TEST(OptionExamples, TheUserFileHoldsNothingElseThanOptions) {
    const Entries shown = OptionsShownIn("examples/config/user/team.ini");
    EXPECT_GE(shown.size(), 3U);
    EXPECT_EQ(Without(shown, ConfiguredOptions()), Entries{});
}

TEST(OptionExamples, TheRegistryHoldsNothingElseThanOptions) {
    const std::regex header{R"(\[HKEY_LOCAL_MACHINE\\SOFTWARE\\VORNAK\\veltrane\\(.*)\])"};
    const std::regex entry{R"re("(.*)"="(.*)")re"};
    Entries shown;
    std::string section = "?";
    std::smatch match;
    for (const std::string& line : LinesOf(ReadSource("examples/config/registry.reg"))) {
        if (std::regex_match(line, match, header)) section = match[1];
        if (!std::regex_match(line, match, entry)) continue;
        shown.insert(EntryOf(section, match[1]));
        ExpectValidValue(match[1], match[2]);
    }
    EXPECT_GE(shown.size(), 2U);
    EXPECT_EQ(Without(shown, ConfiguredOptions()), Entries{});
}

TEST(OptionExamples, TheEnvironmentSetsOptionsOfRootAndThePlatformsVariables) {
    for (const std::string& name : AllOf(ReadSource("examples/config/environment.sh"), "\nexport ([^=\n]*)=")) {
        const XOptionDefinition* const row = FindOptionDefinition(FromUtf8(name));
        const bool isRoot = row && row->eSection == eSectionRoot;
        EXPECT_TRUE(isRoot || name == "VORNAK_DRIVES" || name == "VORNAK_REGISTRY") << name;
    }
}
