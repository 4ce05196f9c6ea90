#include "veltrane/options/xcommandline.h"

#include "support/arguments.h"
#include "support/support.h"
#include "veltrane/platform/process/process.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

using List = std::vector<CString>;

// The pairs as "name=value", an error as the word that it leaves in the value and its message.
List PairsOf(List arguments) {
    const ArgumentsGuard guard{std::move(arguments)};
    XCommandLine line;
    List pairs;
    CString value = L"old";
    const auto take = [&](auto next) {
        try {
            const XOptionDefinition* const option = (line.*next)(value);
            if (option) pairs.push_back(CString{option->szLongName} + L"=" + value);
            return option != nullptr;
        } catch (const XException& error) {
            pairs.push_back(value + L": " + error.GetMessage());
            EXPECT_EQ(error.GetLocation().Left(40), L"<XCommandLine::GetNext> in [xcommandline");
            return true;
        }
    };
    bool isThere = take(&XCommandLine::GetFirst);
    while (isThere && pairs.size() < 9) isThere = take(&XCommandLine::GetNext);
    EXPECT_TRUE(value.IsEmpty());
    EXPECT_FALSE(take(&XCommandLine::GetNext)) << "the end stays the end";
    return pairs;
}

TEST(XCommandLine, GivesPairsAndNamesTheArgumentThatIsWrong) {
    const CString seeH = L"\r\n    <---- Try <-h> to view the help window! ---->";
    const auto expect = [&](const List& arguments, const List& pairs) { EXPECT_EQ(PairsOf(arguments), pairs); };
    expect({L"a", L"-n", L"b", L"--name", L"c"}, {L"name=a", L"name=b", L"name=c"});
    expect({L"-q", L"FALSE", L"-cv", L"AUTO"}, {L"quiet=FALSE", L"create-views=AUTO"});
    expect({L"-cv", L"-q", L""}, {L"create-views=auto", L"quiet=true", L"name="});
    expect({L"-sp", L"-sp", L"out.sql", L"-sp"}, {L"spool=", L"spool=out.sql", L"spool="});
    expect({L"-d", L"mydb"}, {L"diff-dictionary=mydb"});      // a command takes what follows
    expect({L"-", L"--", L"x"}, {L"summary=true", L"--=x"});  // the first without short name, the first title
    expect({L"-q", L"mydb", L"-cv", L"maybe"},
           {L"mydb: The option string <mydb> for the boolean parameter <-q> is invalid!" + seeH,
            L"maybe: The option string <maybe> for the tri-state parameter <-cv> is invalid!" + seeH});
    expect({L"-n", L"-q", L"-v", L"--name"},  // the argument that was no value counts as used
           {L": The option value for parameter <-n> is empty!" + seeH, L"version=true",
            L": The option value for parameter <--name> is empty!" + seeH});
    expect({L"--name=%s%n"}, {L": command line option <--name=%s%n> not recognized!\r\n"
                              L"    <---- Try <--help> to view the help window! ---->"});
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

}  // namespace
