#include "options/xcommandline.h"

#include "platform/process.h"
#include "support/arguments.h"
#include "support/support.h"

namespace {

// The pairs as "name=value", then the error if one ends the walk.
std::vector<CString> PairsOf(std::vector<CString> arguments) {
    const ArgumentsGuard guard{std::move(arguments)};
    XCommandLine line;
    std::vector<CString> pairs;
    CString value;
    try {
        for (auto* option = line.GetFirst(value); option; option = line.GetNext(value)) {
            pairs.push_back(CString{option->szLongName} + L"=" + value);
        }
        EXPECT_TRUE(value.IsEmpty());
        EXPECT_EQ(line.GetNext(value), nullptr) << "the end stays the end";
    } catch (const XException& error) {
        pairs.push_back(error.GetMessage());
        EXPECT_EQ(error.GetLocation().Left(40), L"<XCommandLine::GetNext> in [xcommandline");
    }
    return pairs;
}

TEST(XCommandLine, GivesPairsOfOptionAndValue) {
    using List = std::vector<CString>;
    struct {
        const char* what;
        List arguments, pairs;
    } const cases[] = {
        {"nothing", {}, {}},
        {"database name alone", {L"mydb"}, {L"name=mydb"}},
        {"short and long name", {L"-n", L"a", L"--name", L"b"}, {L"name=a", L"name=b"}},
        {"flag without a value", {L"-q"}, {L"quiet=true"}},
        {"the word keeps its case", {L"-q", L"FALSE", L"-cv", L"AUTO"}, {L"quiet=FALSE", L"create-views=AUTO"}},
        {"flags in a row", {L"-q", L"-cv"}, {L"quiet=true", L"create-views=auto"}},
        {"value left out at the end", {L"-sp"}, {L"spool="}},
        {"value left out before an option", {L"-sp", L"-q"}, {L"spool=", L"quiet=true"}},
        {"value given", {L"-sp", L"out.sql"}, {L"spool=out.sql"}},
        {"several values", {L"-l", L"a", L"-l", L"b"}, {L"load-dictionary=a", L"load-dictionary=b"}},
        {"a command takes what follows", {L"-d", L"mydb"}, {L"diff-dictionary=mydb"}},
        {"a dash alone is the first without short name", {L"-"}, {L"summary=true"}},
        {"two dashes are the first title", {L"--", L"x"}, {L"--=x"}},
        {"an empty argument is a name", {L""}, {L"name="}},
        {"an empty argument is no flag's value", {L"-q", L""}, {L"quiet=true", L"name="}},
    };
    for (const auto& [what, arguments, pairs] : cases) {
        SCOPED_TRACE(what);
        EXPECT_EQ(PairsOf(arguments), pairs);
    }
}

TEST(XCommandLine, NamesTheArgumentThatIsWrong) {
    const CString seeH = L"\r\n    <---- Try <-h> to view the help window! ---->";
    struct {
        std::vector<CString> arguments;
        CString message;
    } const cases[] = {
        {{L"-q", L"mydb"}, L"The option string <mydb> for the boolean parameter <-q> is invalid!" + seeH},
        {{L"-cv", L"maybe"}, L"The option string <maybe> for the tri-state parameter <-cv> is invalid!" + seeH},
        {{L"-n"}, L"The option value for parameter <-n> is empty!" + seeH},
        {{L"--name", L"-q"}, L"The option value for parameter <--name> is empty!" + seeH},
        {{L"--name=%s%n"},
         L"command line option <--name=%s%n> not recognized!\r\n"
         L"    <---- Try <--help> to view the help window! ---->"},
    };
    for (const auto& [arguments, message] : cases) EXPECT_EQ(PairsOf(arguments), std::vector<CString>{message});
}

TEST(XCommandLine, KeepsItsArgumentsAndItsPlaceInACopy) {
    const ArgumentsGuard guard{{L"-q", L"-cv"}};
    XCommandLine line;
    CString value;
    line.GetFirst(value);
    const ArgumentsGuard other{{}};
    XCommandLine copy;
    copy = line;
    EXPECT_EQ(copy.GetNext(value)->eOption, eOptionCreateViews);
    EXPECT_EQ(line.GetNext(value)->eOption, eOptionCreateViews) << "the cursors are apart";
    EXPECT_EQ(copy.GetFirst(value)->eOption, eOptionQuiet);
}

TEST(XCommandLine, AnErrorLeavesTheWrongWordInTheValue) {
    const ArgumentsGuard guard{{L"-cv", L"maybe"}};
    CString value = L"old";
    ErrorOf([&] { XCommandLine{}.GetFirst(value); });
    EXPECT_EQ(value, L"maybe");
}

TEST(XCommandLine, GoesOnBehindTheArgumentThatWasNoValue) {
    const ArgumentsGuard guard{{L"-n", L"-q", L"-v"}};
    XCommandLine line;
    CString value;
    ErrorOf([&] { line.GetFirst(value); });
    EXPECT_EQ(line.GetNext(value)->eOption, eOptionVersion);
    EXPECT_EQ(line.GetNext(value), nullptr);
}

}  // namespace
