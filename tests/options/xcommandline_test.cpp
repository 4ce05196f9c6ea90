#include "veltrane/options/xcommandline.h"

#include "support/arguments.h"
#include "support/support.h"
#include "veltrane/foundation/xsubject.h"

TEST(XCommandLine, GivesPairsAndNamesTheArgumentThatIsWrong) {
    using List = std::vector<CString>;
    const CString seeH = L"\r\n    <---- Try <-h> to view the help window! ---->";
    // The pairs as "name=value", an error as what it is about, the word in the value and its message.
    const auto expect = [&](const List& arguments, const List& expected) {
        const ArgumentsGuard guard{arguments};
        XCommandLine line;
        List pairs;
        CString value = L"old";
        for (auto next = &XCommandLine::GetFirst; pairs.size() < 9; next = &XCommandLine::GetNext) {
            try {
                const XOptionDefinition* const option = (line.*next)(value);
                if (!option) break;
                pairs.push_back(CString{option->szLongName} + L"=" + value);
            } catch (const XException& error) {
                const ErrorSubject& subject = *error.GetSubject();
                pairs.push_back(
                    FormatText(L"%s|%s|%s: %s", subject.option, subject.argument, value, error.GetMessage()));
                EXPECT_EQ(error.GetLocation().Left(40), L"<XCommandLine::GetNext> in [xcommandline");
            }
        }
        EXPECT_EQ(pairs, expected);
        EXPECT_TRUE(value.IsEmpty());
        EXPECT_EQ(line.GetNext(value), nullptr) << "the end stays the end";
    };
    expect({L"a", L"-n", L"b", L"--name", L"c"}, {L"name=a", L"name=b", L"name=c"});
    expect({L"-q", L"FALSE", L"-cv", L"AUTO"}, {L"quiet=FALSE", L"create-views=AUTO"});
    expect({L"-cv", L"-q", L""}, {L"create-views=auto", L"quiet=true", L"name="});
    expect({L"-sp", L"-sp", L"out.sql", L"-sp"}, {L"spool=", L"spool=out.sql", L"spool="});
    expect({L"-d", L"mydb"}, {L"diff-dictionary=mydb"});      // a command takes what follows
    expect({L"-", L"--", L"x"}, {L"summary=true", L"--=x"});  // the first without short name, the first title
    expect(
        {L"-q", L"mydb", L"-cv", L"maybe"},
        {L"quiet|mydb|mydb: The option string <mydb> for the boolean parameter <-q> is invalid!" + seeH,
         L"create-views|maybe|maybe: The option string <maybe> for the tri-state parameter <-cv> is invalid!" + seeH});
    expect({L"-n", L"-q", L"-v", L"--name"},  // the argument that was no value counts as used
           {L"name||: The option value for parameter <-n> is empty!" + seeH, L"version=true",
            L"name||: The option value for parameter <--name> is empty!" + seeH});
    expect({L"--name=%s%n"}, {L"|--name=%s%n|: command line option <--name=%s%n> not recognized!\r\n"
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
