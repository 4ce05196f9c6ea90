#include "collections/sets.h"
#include "options/store.h"

using OptionStartUp = OptionStoreTest;

TEST_F(OptionStartUp, TakesOverFactsAndCommandLine) {
    m_Store->InsertOptionItem(L"load-dictionary", L"early", 5);
    m_Store->InsertOptionItem(L"load-dictionary", L"earlier", 2);
    Initialize({L"-q", L"true", L"-l", L"a", L"-d", L"-q", L"false", L"-l", L"b", L"--exe-name", L"%exe-path%x"});
    EXPECT_EQ(Text(L"version-info"), L"1.2");
    EXPECT_EQ(Text(L"compile-time"), L"COMPILED");
    EXPECT_EQ(Text(L"datetime"), L"today");
    EXPECT_EQ(Text(L"exe-name"), m_Folder.Wide() + L"x") << "references of the command line are replaced";
    EXPECT_FALSE(m_Store->GetOptionBoolean(L"quiet", -1)) << "the last one counts";
    EXPECT_EQ(Texts(L"load-dictionary"), L"5=early 2=earlier 6=a 7=b ");
    EXPECT_EQ(Texts(L"diff-dictionary"), L"0= ");
}

TEST_F(OptionStartUp, FindsTheMetadataFolderAndCreatesDefaultFoldersBelowData) {
    Initialize({L"--data", DataFolder()});
    EXPECT_EQ(Text(L"metadata"), m_Folder.Wide(".metadata")) << "beside the program";
    EXPECT_EQ(Text(L"logging"), DataFolder() + L"/log");
    for (const char* folder : {"configuration", "changefile", "log"}) {
        EXPECT_TRUE(std::filesystem::is_directory(m_Folder.Path() / "data" / folder)) << folder;
    }
    Renew();
    std::filesystem::create_directories(m_Folder.Path() / "Meta");
    Initialize({L"-m", L"meta", L"--config", L"anything"});
    EXPECT_EQ(Text(L"metadata"), m_Folder.Wide("meta")) << "as given; the case of folders does not count";
    EXPECT_EQ(Text(L"config"), L"anything") << "without data a relative folder stays unchecked";
}

TEST_F(OptionStartUp, ChecksTheFoldersThatAreNamed) {
    const CString missing = DataFolder() + L"/mine";
    m_Folder.Write("file", "where a folder should be");
    const auto expect = [&](const std::vector<CString>& arguments, const CString& folder, const wchar_t* reason) {
        Renew();
        EXPECT_EQ(ErrorOf([&] { Initialize(arguments); }).GetMessage(),
                  L"Folder <" + folder + L"> does not exist!\r\n\t" + reason);
    };
    expect({L"--data", DataFolder(), L"--logging", L"mine"}, missing, L"The folder for <logging> does not exist!");
    expect({L"--config", missing}, missing, L"The folder for <config> does not exist!");
    expect({L"--data", missing}, missing, L"The global output data folder does not exist!");
    expect({L"--data", m_Folder.Wide("file")}, m_Folder.Wide("file/configuration"),
           L"The folder for <config> does not exist and can not be created!");
    expect({L"-m", L"missing"}, m_Folder.Wide("missing"), L"The folder with the metadata information does not exist!");
    EXPECT_EQ(Text(L"metadata"), m_Folder.Wide("missing")) << "what was resolved stays";
}

TEST_F(OptionStartUp, FindsTheBasicFileByTheProgramAndTheUserFileBelowConfig) {
    const std::pair<const wchar_t*, const char*> cases[] = {
        {L"Tool.exe", "tool.ini"}, {L"Tool.EXE", "tool.exe.ini"}, {L"a.exe.exe", "a.ini"}};
    for (const auto& [program, file] : cases) {
        m_Folder.Write(std::string{"Meta/"} + file, DATABASE);
        Open({L"db", L"-m", L"Meta", L"--exe-name", program});
        m_Store->OpenConfiguration();  // readers that are open stay
        EXPECT_EQ(Retrieved(L"role"), L"r");
    }
    m_Folder.Write("data/configuration/my.ini", "[ROOT]\nlogfile=user\n");
    Open({L"--data", DataFolder(), L"--ini", L"my.ini"});
    EXPECT_EQ(Retrieved(L"logfile"), L"user");
}

TEST_F(OptionStartUp, TellsWhichConfigurationIsMissing) {
    std::filesystem::create_directories(m_Folder.Path() / "Empty");
    const auto expect = [&](const std::vector<CString>& arguments, const CString& reason) {
        EXPECT_EQ(ErrorOf<XFileException>([&] { Open(arguments); }).GetMessage(),
                  L"Error locating and opening the configuration!\r\nreason: \t" + reason);
    };
    expect({L"-m", L"Empty"}, L"File <" + m_Folder.Wide("empty/tool.ini").MakeLower() +
                                  L"> not found!\r\n\tThe basic configuration could not be found!");
    expect({L"--data", DataFolder(), L"--ini", L"other.ini"},
           L"File <" + DataFolder() +
               L"/configuration/other.ini> not found!\r\n\tThe specified user configuration file does not exist!");
    expect({L"--ini", L"other.ini"},
           L"Folder <> does not exist!\r\n\tThe userspace configuration location does not exist!");
}

TEST_F(OptionStartUp, ReadsEveryOrdinaryOptionAndMergesTheObsoleteClasses) {
    Complete("obsolete-classes-2=5\nobsolete-classes-1=1,2\n[USER]\nexit=true\n");
    Start({L"db"});
    EXPECT_TRUE(m_Store->GetOptionBoolean(L"exit", -1));
    EXPECT_EQ(ValuesOf(*m_Store->GetOptionIList(L"obsolete-classes", 1)), (Ints{1, 2}));
    EXPECT_EQ(ValuesOf(*m_Store->GetOptionIList(L"obsolete-classes", 2)), (Ints{1, 2, 5}));
}

TEST_F(OptionStartUp, StopsAtAMandatoryOptionWithTheOnesBeforeInPlace) {
    Basic("[USER]\nquiet=true\n[db]\ndictionary-name=d\n[AUTODOC]\nautodoc-title=t\n");
    Open({L"db"});
    EXPECT_EQ(ErrorOf([&] { m_Store->ReadConfiguration(); }).GetMessage(),
              L"Error reading the configuration!\r\nreason: \tError retrieving option <role>!\r\nreason: \t"
              L"The option <role> must exist but could not be found!");
    EXPECT_TRUE(m_Store->GetOptionBoolean(L"quiet", -1));
    EXPECT_EQ(Text(L"autodoc-title"), L"");
}

TEST_F(OptionStartUp, ReadsNamingRulesOfAllSourcesByVersion) {
    Complete(
        "[db\\TABLENAME RULES\\3]\nAB=x\nOld=\n[db\\tablename rules\\1]\nx=AB\n"
        "[db\\COLUMNNAME RULES]\nc=of no version\n[db\\COLUMNNAME RULES\\2]\nc=k\n[db\\COLUMNNAME "
        "RULES\\9]\nk=unreached\n");
    User("[db\\TABLENAME RULES\\3]\nAB=user\n[db\\COLUMNNAME RULES\\9]\n");
    Registry("db\\COLUMNNAME RULES\\2", "\"c\"=\"registry\"");
    Start({L"db", L"--ini", UserFile()});
    const auto renamed = [&](auto replace, CString name, int version) {
        ((*m_Store).*replace)(name, version, /*keepCase*/ true);
        return name;
    };
    EXPECT_EQ(renamed(&XOption::ReplaceTableName, L"xOld", 2), L"ABOld");
    EXPECT_EQ(renamed(&XOption::ReplaceTableName, L"xOld", 3), L"userOld") << "the user file lists that version's keys";
    EXPECT_EQ(renamed(&XOption::ReplaceTableName, L"role", 99), L"role") << "the keys of [db] are no rules";
    EXPECT_EQ(renamed(&XOption::ReplaceColumnsName, L"cc", 9), L"registryregistry") << "of the strongest source";
}

TEST_F(OptionStartUp, ASecondReadingAddsWhatHasNoValueYetAndTheRulesOnceMore) {
    const std::string text = "[db\\TABLENAME RULES\\1]\na=aa\n[USER]\nload-dictionary-1=x\n";
    Complete(text + "load-dictionary-2=%nosuch%\n");
    Open({L"db"});
    EXPECT_THROW(m_Store->ReadConfiguration(), XException);
    Complete(text + "load-dictionary-2=y\nautodoc-document-root=new\n");
    for (int i = 0; i < 2; ++i) m_Store->ReadConfiguration();
    EXPECT_EQ(Texts(L"load-dictionary"), L"1=x ") << "what an error cut short stays so";
    EXPECT_EQ(Text(L"autodoc-document-root"), L"new");
    CString name = L"a";
    m_Store->ReplaceTableName(name, 1, /*keepCase*/ true);
    EXPECT_EQ(name, L"aaaa");
}
