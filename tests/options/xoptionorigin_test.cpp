#include "veltrane/options/xoptionorigin.h"

#include <algorithm>

#include "options/store.h"
#include "veltrane/foundation/xsubject.h"

class Origins : public OptionStoreTest {
protected:
    Origins() { m_bKeepsOrigins = true; }

    /// "user file:3 text", with the word in brackets for the command line.
    static CString TextOf(const OptionOrigin& origin) {
        CString place = LayerName(origin.layer);
        if (origin.line > 0) place += FormatText(L":%d", origin.line);
        if (origin.word >= 0) place += FormatText(L"(%d)", origin.word);
        return place + L" " + origin.text;
    }
    CString Candidates(const wchar_t* name, int index = -1) {
        CString text;
        for (const auto& each : m_Store->GetOptionCandidates(name, index).candidates) text += L" | " + TextOf(each);
        return text.Mid(3);
    }
    /// The text after each step, a reference with its depth and the number of places before it.
    CString Explained(const wchar_t* name, int index = -1) {
        CString text;
        const OptionExplanation explanation = m_Store->ExplainOption(name, index);
        for (const OptionStep& step : explanation.steps) {
            const auto found = static_cast<int>(std::ranges::count(step.places, true, &OptionPlace::found));
            if (!step.reference.IsEmpty()) text += FormatText(L"%d%%%s%%(%d)", step.depth, step.reference, found);
            text += L"=" + step.text + L" ";
        }
        return text + explanation.error;
    }
};

TEST_F(Origins, CandidatesAreInTheOrderOfTheirStrength) {
    const EnvironmentGuard logfile{"logfile", "env.log"}, empty{"dictionary-root", ""};
    const EnvironmentGuard data{"data", ToUtf8(DataFolder())};
    std::filesystem::create_directories(m_Folder.Path() / "data/rel");
    Registry("ROOT", "\"logfile\"=\"\"");
    Complete(
        "[ROOT]\nlogfile=basic.log\nlogfile=twice\ndata=/late\nlogging=late\nmetadata=late\n"
        "dictionary-root=  ' x '\n[USER]\nquiet=\nload-dictionary-1=%exe-name%\nconfig=c\n");
    User("[ROOT]\nlogfile=\n[USER]\nload-dictionary=bare\nquiet=false\n");
    Start({L"db", L"-q", L"-q", L"TRUE", L"-l", L"a", L"-l", L"b", L"--ini", UserFile(), L"--logging", L"rel",
           L"--version-info", L"9", L"--tablename-rules", L"r"});
    EXPECT_EQ(Candidates(L"quiet"), L"command line(3) TRUE | command line(2) true | user file:5 false");
    EXPECT_EQ(Candidates(L"name"), L"command line(1) db");
    const wchar_t ofLogfile[] = L"environment env.log | registry:3  | basic file:6 basic.log";
    EXPECT_EQ(Candidates(L"logfile"), ofLogfile);
    const CString ofData = L"environment " + DataFolder() + L" | basic file:8 /late";
    EXPECT_EQ(Candidates(L"data"), ofData);
    EXPECT_EQ(Candidates(L"logging"), L"start-up " + DataFolder() + L"/rel | command line(11) rel");
    EXPECT_EQ(Candidates(L"config"), L"start-up " + DataFolder() + L"/configuration");
    EXPECT_EQ(Candidates(L"metadata"), L"start-up " + m_Folder.Wide(".metadata"));
    EXPECT_EQ(Candidates(L"dictionary-root"), L"basic file:11  x ");
    EXPECT_EQ(Candidates(L"version-info"), L"command line(13) 9 | host 1.2");
    EXPECT_EQ(Candidates(L"load-dictionary", 0), L"command line(5) a");
    EXPECT_EQ(Candidates(L"load-dictionary", 1), L"command line(7) b | basic file:14 %exe-name%");
    EXPECT_EQ(Candidates(L"load-dictionary", 2), L"user file:4 bare") << "no item has it";
    EXPECT_EQ(Candidates(L"tablename-rules", 0), L"command line(15) r");
    EXPECT_EQ(m_Store->GetAllOptionCandidates(L"load-dictionary").at(1).candidates.at(1).line, 14);
    EXPECT_EQ(m_Store->GetOptionCandidates(L"spool", -1).places.size(), 3U) << "registry and both files were asked";
    m_Store->DeleteOption(L"logfile");
    EXPECT_EQ(Candidates(L"logfile"), ofLogfile) << "without an item";
    m_Store->GetOptionItem(L"quiet", -1)->SetOptionValue(L"false");
    EXPECT_EQ(Candidates(L"quiet").Find(L"host false | command line(3) TRUE | "), 0) << "put into the item by the host";
    m_Store->DeleteOption(L"load-dictionary");
    m_Store->RetrieveOption(L"load-dictionary");
    EXPECT_EQ(Candidates(L"load-dictionary", 1), L"basic file:14 %exe-name%");
    EXPECT_EQ(Text(L"load-dictionary", 1), L"Tool.exe");
    Start({L"db", L"--data", DataFolder()});
    EXPECT_EQ(Candidates(L"data"), L"command line(2) " + DataFolder() + L" | " + ofData) << "as without the word";
}

TEST_F(Origins, AFamilyEndsWhereItsRetrievalEnds) {
    Complete("[USER]\nload-dictionary--3=a\nload-dictionary--1=b\nload-dictionary-2=%name%\n");
    Open({L"db"});
    EXPECT_EQ(Candidates(L"load-dictionary", -3), L"basic file:6 a");
    EXPECT_EQ(Explained(L"load-dictionary", -3), L"=a =a ");
    for (const int index : {-1, 2}) {
        EXPECT_EQ(Candidates(L"load-dictionary", index), L"");
        EXPECT_EQ(Explained(L"load-dictionary", index), L"= = ");
        const int line = index == 2 ? 8 : 7;
        EXPECT_EQ(m_Store->GetOptionCandidates(L"load-dictionary", index).places.at(0).line, line);
        EXPECT_EQ(m_Store->ExplainOption(L"load-dictionary", index).steps.front().places.at(0).line, line);
    }
}

TEST_F(Origins, FoldersAreLookedUpInFilesWhenDataHasNoValue) {
    Complete("[ROOT]\nlogging=l\ndata=d\n[AUTODOC]\nautodoc-title=t\n");
    User("[ROOT]\nlogging=m\ndata=e\n");
    for (const char* data : {"%dictionary-root%", "%autodoc-title%", ""}) {
        const EnvironmentGuard variable{"data", data};
        Start({L"db", L"--ini", UserFile()});
        EXPECT_EQ(Candidates(L"logging"), L"user file:2 m | basic file:6 l") << data;
        EXPECT_EQ(Candidates(L"data").Left(30), L"user file:3 e | basic file:7 d") << data;
    }
    const EnvironmentGuard variable{"logging", "env"};
    Complete("[ROOT]\nlogging=late\n");
    Start({L"db", L"--logging", L"typed"});
    auto first = std::move(m_Store);
    Start({L"db", L"--ini", UserFile()});
    EXPECT_EQ(Candidates(L"logging"), L"environment env | user file:2 m | basic file:6 late");
    m_Store = std::move(first);
    EXPECT_EQ(Candidates(L"logging"), L"command line(2) typed | environment env | basic file:6 late");
}

TEST_F(Origins, AnOriginIsThatOfTheQuestionAsItWasAsked) {
    const auto start = [&](const char* basic, const char* user = "") {
        Complete(basic);
        User(user);
        Start({L"--ini", UserFile()});
    };
    const auto expect = [&](const wchar_t* name, int index, const wchar_t* text) {
        EXPECT_EQ(TextOf(m_Store->GetOptionOrigin(m_Store->GetOptionItem(name, index))), text);
    };
    start("[ROOT]\nname=db\nlogging=l");
    expect(L"logging", -1, L"basic file:7 l");
    Registry("ROOT", R"("name"="root")");
    start("[ROOT]\nname=root\ndictionary-name=d\nrole=r\nregistry=g");
    expect(L"name", -1, L"registry:3 root");
    Registry("x\\ROOT", R"("name"="x\\ROOT")");
    start("[ROOT]\nname=x\\ROOT\n[x\\ROOT]\nname=x\\ROOT\ndictionary-name=d\nrole=r\nregistry=g");
    expect(L"name", -1, L"basic file:6 x\\ROOT");
    Registry("ROOT", R"("name"="db")");
    start("[USER]\nload-dictionary=%pa%\nload=%pb%\npa=x\npb=y", "[USER]\nload-dictionary=y\nload=x\n");
    expect(L"load-dictionary", 0, L"basic file:6 %pa%");
    expect(L"load-dictionary", 1, L"basic file:7 %pb%");
    expect(L"load-dictionary", 2, L"user file:2 y");
    expect(L"load-dictionary", 3, L"user file:3 x");
    start("[db\\FILES\\3]\nmap-file=m\n[db\\FILES\\1]\nmap-file=m");
    expect(L"map-file", 1, L"basic file:8 m");
    EXPECT_EQ(m_Store->GetOptionOrigin(nullptr).layer, OptionLayer::Host);
}

TEST_F(Origins, AnExplanationEndsWithWhatTheGetterGivesOrAsTheValueEnds) {
    Complete("[ROOT]\nlogfile=%a%-%name%\na=<%b%>\nb=now\n");
    Open({L"db", L"--data", DataFolder(), L"-sp", L"-l", L"%name%.dic"});
    EXPECT_EQ(Explained(L"logfile"), L"=%a%-%name% 0%a%(1)=<now>-%name% 1%b%(1)=<now> 0%name%(1)=<now>-db =<now>-db ")
        << "what a retrieval would do";
    m_Store->RetrieveOption(L"logfile");
    Complete("[ROOT]\nb=later\n");
    for (const wchar_t* name : {L"logfile", L"config", L"spool", L"name", L"version-info"}) {
        const OptionExplanation explanation = m_Store->ExplainOption(name, -1);
        ASSERT_TRUE(explanation.hasValue) << ToUtf8(CString{name});
        EXPECT_EQ(explanation.steps.back().kind, OptionStep::Kind::Value);
        EXPECT_EQ(explanation.steps.back().text, Text(name)) << ToUtf8(CString{name});
    }
    EXPECT_EQ(Text(L"logfile"), L"<now>-db") << "as it was when it was retrieved";
    EXPECT_EQ(Explained(L"config"), L"=" + DataFolder() + L"/configuration =" + DataFolder() + L"/configuration ");
    EXPECT_EQ(Explained(L"load-dictionary", 0), L"=%name%.dic 0%name%(1)=db.dic =db.dic ");
    EXPECT_EQ(Explained(L"role"), L"=r =r ");
    EXPECT_EQ(Explained(L"quiet"), L"= = ") << "asked, and nothing found";
    const std::vector<OptionPlace> asked = m_Store->ExplainOption(L"quiet", -1).steps.front().places;
    ASSERT_EQ(asked.size(), 2U) << "the basic file and the registry";
    EXPECT_EQ(asked.back().section, L"SOFTWARE\\VORNAK\\Tool\\USER");
}

TEST_F(Origins, AnErrorEndsTheStepsAsItEndsTheValue) {
    std::pair<const char*, const wchar_t*> const cases[] = {
        {"%c%\nc=x%c%", L"The reference <c> leads back to itself: <c> -> <c>!"},
        {"%nosuch%", L"Error retrieving the string option <nosuch>!\r\nreason: \tThe option <nosuch> is not known"},
        {"%autodoc-index%\nautodoc-index=%d%%d%%d%\nd=%load-dictionary%", L"Error retrieving the string option <load-"},
    };
    for (const auto& [value, message] : cases) {
        Basic("[AUTODOC]\nautodoc-title=" + std::string{value} + "\n");
        Open({L"db"});
        const OptionExplanation explanation = m_Store->ExplainOption(L"autodoc-title", -1);
        EXPECT_EQ(explanation.error.Find(message), 0) << ToUtf8(explanation.error);
        EXPECT_FALSE(explanation.hasValue);
        EXPECT_NE(explanation.steps.back().kind, OptionStep::Kind::Value);
        EXPECT_GE(ErrorOf([&] { m_Store->RetrieveOption(L"autodoc-title"); }).GetMessage().Find(explanation.error), 0);
    }
}

TEST_F(Origins, NamingRulesHavePlacesTheHiddenOnesToo) {
    Complete(
        "[db\\TABLENAME RULES\\2]\nB=C\n[db\\tablename rules\\1]\nA=B\nHID=x\n[db\\COLUMNNAME RULES]\nc=of no version\n"
        "[db\\COLUMNNAME RULES\\2]\nc=k\n[db\\COLUMNNAME RULES\\9]\nk=unreached\n");
    User("[db\\TABLENAME RULES\\1]\nA=user\nNEW=\n[db\\COLUMNNAME RULES\\9]\n");
    Registry("db\\TABLENAME RULES\\2", "\"B\"=\"registry\"");
    Start({L"db", L"--ini", UserFile()});
    const auto expect = [&](enumOption option, const wchar_t* expected) {
        CString text;
        for (const OptionRule& rule : m_Store->GetNamingRules(option)) {
            const OptionOrigin& origin = rule.origin;
            text += FormatText(L"%d %s=%s (%s:%d %s=%s)%s ", rule.version, rule.oldText, rule.newText,
                               LayerName(origin.layer), origin.line, origin.key, origin.text,
                               rule.isInForce ? L"" : L" hidden");
            EXPECT_EQ(origin.section.Right(1), CString{FormatText(L"%d", rule.version)});
        }
        EXPECT_EQ(text, expected);
    };
    expect(eOptionTableNameRules,
           L"1 A=user (user file:2 A=user) 1 NEW= (user file:3 NEW=) 2 B=registry (registry:3 B=registry) "
           L"1 HID=x (basic file:9 HID=x) hidden ");
    expect(eOptionColumnNameRules, L"2 c=k (basic file:13 c=k) 9 k=unreached (basic file:15 k=unreached) hidden ");
    const auto preview = m_Store->PreviewTableName(L"ab", 2, /*keepCase*/ false);
    ASSERT_EQ(preview.size(), 2U);
    EXPECT_EQ(preview[0].name, L"USERB");
    EXPECT_EQ(preview[1].rule, 2);
    EXPECT_EQ(preview[1].name, L"USERREGISTRY");
    EXPECT_TRUE(m_Store->PreviewColumnsName(L"ab", 2, /*keepCase*/ true).empty());
    CString name = L"AB";
    m_Store->ReplaceTableName(name, 1, /*keepCase*/ true);
    EXPECT_EQ(name, L"userB");
    name = L"cc";
    m_Store->ReplaceColumnsName(name, 9, /*keepCase*/ true);
    EXPECT_EQ(name, L"kk");
    EXPECT_EQ(m_Store->GetSectionName(eSectionTableRules), L"db\\TABLENAME RULES\\%d");
    m_bKeepsOrigins = false;
    Start({L"db", L"--ini", UserFile()});
    m_Store->KeepOrigins(true);
    m_Store->ReadConfiguration();
    const std::vector<OptionRule> twice = m_Store->GetNamingRules(eOptionColumnNameRules);
    EXPECT_EQ(std::pair(twice.at(0).origin.line, twice.at(1).origin.line), std::pair(0, 13)) << "read twice, kept once";
}

TEST_F(Origins, AStartUpThatOnlyLooksCreatesShowsAndEndsNothing) {
    const BoxRecorder boxes;
    m_Store->LookOnly(true);
    const auto look = [&] { Initialize({L"-h", L"-v", L"-s", L"x", L"--data", DataFolder(), L"--logging", L"no"}); };
    EXPECT_EXIT((ErrorOf(look), std::_Exit(7)), testing::ExitedWithCode(7), "");
    EXPECT_EQ(ErrorOf(look).GetSubject()->option, L"logging");
    m_Store->OpenConfiguration();
    EXPECT_THROW(m_Store->ReadConfiguration(), XException);
    EXPECT_TRUE(boxes.boxes.empty());
    EXPECT_EQ(m_Store->GetOptionOrigin(m_Store->GetOptionItem(L"data", -1)).layer, OptionLayer::Host) << "not kept";
    EXPECT_TRUE(std::filesystem::is_empty(m_Folder.Path() / "data"));
    EXPECT_EQ(Text(L"config"), DataFolder() + L"/configuration") << "where it would be";
    EXPECT_EQ(Text(L"changefile-root"), DataFolder() + L"/changefile") << "what follows the first error";
}

TEST_F(Origins, LocationsAreTheFilesAndFoldersOfStartUp) {
    m_Folder.Write("data/Configuration/My.ini", "");
    Open({L"db", L"--data", DataFolder(), L"--ini", L"my.INI"});
    CString text;
    const int folder = m_Folder.Wide().GetLength() + 1;
    for (const OptionLocation& place : m_Store->GetLocations()) {
        text += FormatText(L"%s %s%s%s%s\n", place.option, place.exists ? L"" : L"- ", place.spelled.Mid(folder),
                           place.key, place.isInForce ? L"" : L"not used");
    }
    EXPECT_EQ(text,
              L" - registry.regSOFTWARE\\VORNAK\\Tool\nmetadata .metadata\n .metadata/tool.ini\nini - not used\nini "
              L"data/Configuration/My.ini\n"
              L"data data\nconfig data/Configuration\nchangefile-root data/changefile\nlogging data/log\n");
    Complete("[USER]\nini=my.ini\n");
    Start({L"db", L"--data", DataFolder()});
    for (const OptionLocation& place : m_Store->GetLocations()) EXPECT_EQ(place.isInForce, place.option != L"ini");
}
