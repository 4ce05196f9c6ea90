#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <regex>
#include <set>

#include "documents.h"
#include "support/support.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

using Names = std::set<std::string>;

std::string Replaced(std::string_view text, std::string_view word, std::string_view replacement) {
    std::string replaced;
    for (std::size_t at; (at = text.find(word)) != text.npos; text.remove_prefix(at + word.size())) {
        replaced.append(text.substr(0, at)).append(replacement);
    }
    return replaced.append(text);
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
    const std::string own = Replaced(Replaced(ToUtf8(row->szName), "--name", "database"), "%d", "n");
    return row->eParent == eSectionDatabase ? "database\\" + own : own;
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
Names ConfiguredOptions() {
    Names entries;
    for (const auto* row : OptionRows()) {
        if (row->eSection == eSectionNone) continue;
        entries.insert('[' + SectionOf(row->eSection) + "] " + ToUtf8(row->szLongName));
    }
    return entries;
}

/// Calls take(section, key, value) for each line of an entry, whose groups are key and value.
template <class Take>
void ForEachEntry(const std::string& text, const char* header, const char* entry, Take&& take) {
    std::string section = "?";
    std::smatch match;
    for (const std::string& line : LinesOf(text)) {
        if (std::regex_match(line, match, std::regex{header})) section = match[1];
        if (std::regex_match(line, match, std::regex{entry})) take(section, match[1].str(), match[2].str());
    }
}

/// The options that an example file shows: keys without their index, naming rules as their family. A flag is read as
/// false unless its value is one of its words. A key behind ';' without a blank is shown as what could stand there.
Names OptionsShownIn(const std::string& file, const char* header = R"(\[(.*)\])",
                     const char* entry = R"(;?([A-Za-z_][^ =]*) *= *(.*))") {
    Names entries;
    ForEachEntry(ReadSource(file), header, entry, [&](std::string section, std::string key, const std::string& text) {
        section = std::regex_replace(section, std::regex{"^base(?=$|\\\\)"}, "database");
        section = std::regex_replace(section, std::regex{"\\\\[0-9]+$"}, "\\n");
        key = std::regex_replace(key, std::regex{"-[0-9]+$"}, "");
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

std::string Shared(const std::string& name) {
    return ReadDocument(std::string{VELTRANE_SHARE_FOLDER} + "/" + name);
}

/// A man page without its escapes.
std::string ManPage(const std::string& name) {
    return Replaced(std::regex_replace(Shared("man/" + name), std::regex{R"(\\f[BIR])"}, ""), "\\-", "-");
}

}  // namespace

TEST(OptionDocuments, TheListOfValuesIsTheOptionTable) {
    std::vector<std::vector<std::string>> rows;
    for (const auto* row : OptionRows()) {
        rows.push_back({ToUtf8(row->szLongName), SectionOf(row->eSection), KindOf(*row)});
    }
    EXPECT_EQ(TableBelow(ReadSource("docs/values.md"), "| option | section | kind |"), rows);
}

TEST(OptionDocuments, NoDocumentNamesAnOptionThatIsNone) {
    std::string text = ReadSource("README.md") + ManPage("man1/veltrane.1") + ManPage("man5/veltrane.ini.5");
    for (const auto& file : std::filesystem::directory_iterator{std::string{VELTRANE_SOURCE_FOLDER} + "/docs"}) {
        const std::string name = file.path().stem();
        const bool isOfOther = name == "own-options" || name.starts_with("veltrane-config");
        if (!isOfOther) text += ReadDocument(file.path().string());
    }
    EXPECT_EQ(Without(AllOf(text, "(?:^|[^-])(--[a-z][a-z-]*)"), OptionNames()), Names{});
}

TEST(OptionDocuments, TheCommandPageHasEveryOptionOfTheHelpAndEveryFactOfTheProgram) {
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
}

TEST(OptionDocuments, TheIniPageHasEveryKeyInItsSectionWithItsKind) {
    Names keys;
    Names wanted;
    ForEachEntry(
        Replaced(ManPage("man5/veltrane.ini.5"), "\\e", "/"), R"re(\.SS "\[(.*)\]")re", R"(([a-z-]+) \(([a-z, -]+)\))",
        [&](const auto& section, const auto& key, const auto& kind) { keys.insert(section + ' ' + key + ' ' + kind); });
    for (const auto* row : OptionRows()) {
        if (row->eSection == eSectionNone) continue;
        std::string title = Replaced(SectionOf(row->eSection), "\\", "/");
        title = std::regex_replace(std::regex_replace(title, std::regex{"^database"}, "<database>"), std::regex{"/n$"},
                                   "/<n>");
        wanted.insert(title + ' ' + ToUtf8(row->szLongName) + ' ' + KindOf(*row));
    }
    EXPECT_EQ(keys, wanted);
}

TEST(OptionDocuments, EachCompletionOffersExactlyTheNamesOfTheOptionTable) {
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

TEST(OptionExamples, TheBasicFileShowsEveryOptionThatCanBeConfigured) {
    EXPECT_EQ(OptionsShownIn("examples/config/metadata/veltrane.ini"), ConfiguredOptions());
}

TEST(OptionExamples, TheOtherSourcesHoldNothingElseThanOptions) {
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
