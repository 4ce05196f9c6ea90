#include "veltrane/options/xoption.h"

#include "options/store.h"

using OptionStore = OptionStoreTest;

TEST_F(OptionStore, SingleOptionsKeepOneItemAndMultipleOnesCollect) {
    XOptionItem* const first = m_Store->InsertOptionItem(L"quiet", L"true", -1);
    EXPECT_EQ(m_Store->InsertOptionItem(L"-q", L"false", 7), first);
    EXPECT_EQ(first->GetOptionValue(), L"false");
    for (const wchar_t* value : {L"%a%", L"b"}) m_Store->InsertOptionItem(L"map-file", value, 1);
    EXPECT_EQ(Texts(L"map-file"), L"1=%a% 1=b ");
    EXPECT_EQ(Text(L"map-file", 1), L"%a%") << "stored as it is; the first with that index answers";
    EXPECT_EQ(m_Store->InsertOptionItem(L"", L"x", 0), nullptr);
    EXPECT_EQ(m_Store->GetOptionItem(L"quiet", 0), nullptr) << "a single option has the index -1";
    for (const wchar_t* name : {L"map-file", L"quiet", L""}) m_Store->DeleteOption(name);
    EXPECT_EQ(m_Store->GetFirstOptionItem(L""), nullptr);
    EXPECT_FALSE(m_Store->GetOptionBoolean(L"quiet", -1));
}

TEST_F(OptionStore, WalksShareTheMarksOfTheItems) {
    m_Store->InsertOptionItem(L"load-dictionary", L"a", 0);
    m_Store->InsertOptionItem(L"quiet", L"true", -1);
    m_Store->InsertOptionItem(L"load-dictionary", L"b", 1);
    EXPECT_EQ(m_Store->GetFirstOptionString(L"load-dictionary"), L"a");
    EXPECT_EQ(m_Store->GetNextOptionString(L"-l"), L"b");
    EXPECT_EQ(m_Store->GetNextOptionString(L"load-dictionary"), L"") << "the end";
    EXPECT_EQ(m_Store->GetFirstOptionItem(L"")->GetOptionValue(), L"a") << "a walk over all restarts every walk";
    EXPECT_EQ(m_Store->GetNextOptionString(L"load-dictionary"), L"b");
    EXPECT_EQ(m_Store->GetNextOptionItem(L"")->GetOptionValue(), L"true");
    EXPECT_EQ(m_Store->GetNextOptionItem(L""), nullptr);
    m_Store->InsertOptionItem(L"load-dictionary", L"c", 2);
    EXPECT_EQ(m_Store->GetNextOptionString(L"load-dictionary"), L"c") << "new items are not marked";
    EXPECT_TRUE(m_Store->GetFirstOptionBoolean(L"quiet"));
    EXPECT_FALSE(m_Store->GetNextOptionBoolean(L"quiet"));
    m_Store->GetOptionItem(L"load-dictionary", 1)->SetFlag(false);
    EXPECT_EQ(m_Store->GetNextOptionString(L"load-dictionary"), L"b") << "a mark that the host has cleared";
    EXPECT_EQ(m_Store->GetNextOptionString(L"load-dictionary"), L"");
}

TEST_F(OptionStore, GettersReplaceAMissingValue) {
    EXPECT_EQ(Text(L"spool"), L"false");
    m_Store->InsertOptionItem(L"spool", L"", -1);
    EXPECT_EQ(Text(L"spool"), L"true");
    m_Store->InsertOptionItem(L"spool", L"x.sql", -1);
    EXPECT_EQ(Text(L"spool"), L"x.sql");
    EXPECT_EQ(m_Store->GetOptionTrillian(L"create-views", -1), eFlagAuto);
    EXPECT_EQ(m_Store->GetFirstOptionIList(L"obsolete-classes"), nullptr);
    m_Store->InsertOptionItem(L"quiet", L"TRUE", -1);
    EXPECT_TRUE(m_Store->GetOptionBoolean(L"--quiet", -1));
    EXPECT_FALSE(m_Store->GetFirstOptionBoolean(L"quiet")) << "the walks take the word exactly";
}

TEST_F(OptionStore, GettersPutTheirReasonInFrontOfEveryError) {
    const CString unknown = L"The option <nosuch> is not known by the system!";
    const CString useWalk =
        L"Cannot get value for option <load-dictionary>, because it is a multiple option and you haven't specified an "
        L"index!\r\nreason: \tUse either 'GetFirstOption()' and/or 'GetNextOption()' or specify an index value!";
    const CString notFound = L"The mandatory option <name> could not be found in the program option registry!";
    const CString noFlag = L"The option <name> is not a boolean option (in other words: it's not a flag)!";
    const auto expect = [&](auto get, const wchar_t* method, const wchar_t* type, const wchar_t* name,
                            const CString& reason, auto... index) {
        const XException error = ErrorOf([&] { ((*m_Store).*get)(name, index...); });
        EXPECT_EQ(error.GetMessage(),
                  CString{FormatText(L"Error retrieving the %s option <%s>!\r\nreason: \t%s", type, name, reason)});
        EXPECT_EQ(error.GetLocation().Find(FormatText(L"<XOption::%s> in [xoption], line [", method)), 0);
    };
    const auto getString = &XOption::GetOptionString;
    expect(getString, L"GetOptionString", L"string", L"nosuch", unknown, -1);
    expect(getString, L"GetOptionString", L"string", L"-q", L"The option <-q> is not a string option!", -1);
    expect(getString, L"GetOptionString", L"string", L"", L"The option <> is not known by the system!", -1);
    expect(getString, L"GetOptionString", L"string", L"load-dictionary", useWalk, -1);
    expect(getString, L"GetOptionString", L"string", L"name", notFound, 0);
    expect(&XOption::GetFirstOptionString, L"GetFirstOptionString", L"string", L"nosuch", unknown);
    expect(&XOption::GetNextOptionString, L"GetNextOptionString", L"string", L"nosuch", unknown);
    expect(&XOption::GetOptionBoolean, L"GetOptionBoolean", L"boolean", L"name", noFlag, -1);
    expect(&XOption::GetFirstOptionBoolean, L"GetFirstOptionBoolean", L"boolean", L"nosuch", unknown);
    expect(&XOption::GetNextOptionBoolean, L"GetNextOptionBoolean", L"boolean", L"nosuch", unknown);
    expect(&XOption::GetOptionTrillian, L"GetOptionTrillian", L"tri-state", L"-q",
           L"The option <-q> is not a tri-state option!", -1);
    expect(&XOption::GetOptionIList, L"GetOptionIList", L"integer list", L"-q",
           L"The option <-q> is not an integer list option!", -1);
    expect(&XOption::GetFirstOptionIList, L"GetFirstOptionIList", L"integer list", L"nosuch", unknown);
    expect(&XOption::GetNextOptionIList, L"GetNextOptionIList", L"integer list", L"nosuch", unknown);
    EXPECT_EQ(ErrorOf([&] { m_Store->GetOptionItem(L"nosuch", 0); }).GetMessage(), unknown);
}

TEST_F(OptionStore, LaterSourcesWinAndTheEnvironmentIsWeakest) {
    const EnvironmentGuard root{"dictionary-root", "environment"}, title{"autodoc-title", "environment"};
    const auto expect = [&](const wchar_t* ofRoot, const wchar_t* ofAutodoc) {
        Open({L"-n", L"db", L"--ini", UserFile()});
        EXPECT_EQ(Retrieved(L"dictionary-root"), ofRoot);
        EXPECT_EQ(Retrieved(L"autodoc-title"), ofAutodoc);
    };
    User("");
    expect(L"environment", L"");
    Basic("[ROOT]\ndictionary-root=basic\n[AUTODOC]\nautodoc-title=basic\n");
    expect(L"basic", L"basic");
    User("[ROOT]\ndictionary-root=user\n[AUTODOC]\nautodoc-title=user\n");
    expect(L"user", L"user");
    Registry("ROOT", "\"dictionary-root\"=\"registry\"");
    expect(L"registry", L"user");
}

TEST_F(OptionStore, AnExistingItemIsNeverOverridden) {
    Basic("[ROOT]\ndictionary-root=basic\n[USER]\nload-dictionary-3=c\nload-dictionary=d\n");
    Open({L"db", L"-dr", L"typed", L"-l", L"a"});
    EXPECT_EQ(Retrieved(L"dictionary-root"), L"typed");
    m_Store->RetrieveOption(L"load-dictionary");
    EXPECT_EQ(Texts(L"load-dictionary"), L"0=a ");
    m_Store->DeleteOption(L"load-dictionary");
    m_Store->RetrieveOption(L"load-dictionary");
    EXPECT_EQ(Texts(L"load-dictionary"), L"3=c 4=d ");
    m_Store->DeleteOption(L"dictionary-root");
    XOptionDefinition copy = *FindOptionDefinition(L"dictionary-root");
    m_Store->RetrieveOption(&copy);  // means its option
    EXPECT_EQ(Text(L"dictionary-root"), L"basic");
    XOptionDefinition own = copy;  // a row of the host's own, in no table
    own.eOption = static_cast<enumOption>(copy.eOption | 0x0F000000);
    m_Store->RetrieveOption(&own);
    CString values;
    for (auto* item = m_Store->GetFirstOptionItem(L""); item; item = m_Store->GetNextOptionItem(L"")) {
        if (item->GetID() == own.eOption) values += item->GetOptionValue();
    }
    EXPECT_EQ(values, L"basic");
}

TEST_F(OptionStore, IndexedSectionsFollowTheDatabaseNameAndShareTheirIndexes) {
    Basic("[50%n_x\\FILES\\7]\nmap-file=m7\n[50%n_x\\files\\2]\nMAP-FILE=m2\n[db\\FILES\\1]\nmap-file=other\n");
    Open({L"--name", L"50%n_x"});
    m_Store->RetrieveOption(L"map-file");
    EXPECT_EQ(Texts(L"map-file"), L"2=m2 7=m7 ");
    EXPECT_EQ(Text(L"map-file", 7), L"m7");
    for (const int missing : {0, 3, 6, 8}) EXPECT_EQ(Text(L"map-file", missing), L"") << missing;
}
