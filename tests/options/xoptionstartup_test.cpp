#include "collections/sets.h"
#include "options/store.h"
#include "veltrane/foundation/xsubject.h"

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

TEST_F(OptionStartUp, ReadsEveryOrdinaryOptionAndMergesTheObsoleteClasses) {
    Complete("obsolete-classes-2=5\nobsolete-classes-1=1,2\n[USER]\nexit=true\n");
    Start({L"db"});
    EXPECT_TRUE(m_Store->GetOptionBoolean(L"exit", -1));
    EXPECT_EQ(ValuesOf(*m_Store->GetOptionIList(L"obsolete-classes", 1)), (Ints{1, 2}));
    EXPECT_EQ(ValuesOf(*m_Store->GetOptionIList(L"obsolete-classes", 2)), (Ints{1, 2, 5}));
}

TEST_F(OptionStartUp, ErrorsTellWhatIsWrongAndWhatItIsAbout) {
    const auto expect = [&](const std::vector<CString>& arguments, const ErrorSubject& subject,
                            const CString& message) {
        SCOPED_TRACE(ToUtf8(message));
        const XException error = ErrorOf([&] { Start(arguments); });
        EXPECT_EQ(error.GetMessage(), message);
        const ErrorSubject found = error.GetSubject() ? *error.GetSubject() : ErrorSubject{};
        EXPECT_EQ(found.option, subject.option);
        EXPECT_EQ(found.argument, subject.argument);
        EXPECT_EQ(found.reference, subject.reference);
        EXPECT_EQ(found.index, subject.index);
    };
    const auto noFolder = [](const CString& folder, const wchar_t* reason) {
        return L"Folder <" + folder + L"> does not exist!\r\n\t" + reason;
    };
    const CString mine = DataFolder() + L"/mine";
    m_Folder.Write("file", "where a folder should be");
    expect({L"--data", DataFolder(), L"--logging", L"mine"}, {.option = L"logging"},
           noFolder(mine, L"The folder for <logging> does not exist!"));
    expect({L"--config", mine}, {.option = L"config"}, noFolder(mine, L"The folder for <config> does not exist!"));
    expect({L"--data", mine}, {.option = L"data"}, noFolder(mine, L"The global output data folder does not exist!"));
    expect({L"--data", m_Folder.Wide("file")}, {.option = L"config"},
           noFolder(m_Folder.Wide("file/configuration"),
                    L"The folder for <config> does not exist and can not be created!"));
    expect({L"-m", L"missing"}, {.option = L"metadata"},
           noFolder(m_Folder.Wide("missing"), L"The folder with the metadata information does not exist!"));
    EXPECT_EQ(Text(L"metadata"), m_Folder.Wide("missing")) << "what was resolved stays";
    expect(
        {L"-dr", L"%nosuch%"}, {.argument = L"nosuch", .reference = L"nosuch"},
        L"Error retrieving the string option <nosuch>!\r\nreason: \tThe option <nosuch> is not known by the system!");

    const CString opening = L"Error locating and opening the configuration!\r\nreason: \t";
    expect({L"-m", L"data"}, {},
           opening + L"File <" + (DataFolder() + L"/tool.ini").MakeLower() +
               L"> not found!\r\n\tThe basic configuration could not be found!");
    expect({L"--data", DataFolder(), L"--ini", L"other.ini"}, {.option = L"ini"},
           opening + L"File <" + DataFolder() +
               L"/configuration/other.ini> not found!\r\n\tThe specified user configuration file does not exist!");
    expect({L"--ini", L"other.ini"}, {.option = L"config"},
           opening + noFolder({}, L"The userspace configuration location does not exist!"));
    EXPECT_THROW(Open({L"-m", L"data"}), XFileException);
    EXPECT_THROW(Open({L"--ini", L"other.ini"}), XFileException);

    const CString reading = L"Error reading the configuration!\r\nreason: \tError retrieving option ";
    Basic("[ROOT]\nname=%a%\na=%a%\n");
    expect({}, {.option = L"name", .reference = L"a"},
           reading + L"<name>!\r\nreason: \tThe reference <a> leads back to itself: <a> -> <a>!");
    Basic("[USER]\nquiet=true\n[db]\ndictionary-name=d\n[AUTODOC]\nautodoc-title=t\n");
    expect({L"db"}, {.option = L"role"},
           reading + L"<role>!\r\nreason: \tThe option <role> must exist but could not be found!");
    EXPECT_TRUE(m_Store->GetOptionBoolean(L"quiet", -1)) << "the ones before are in place";
    EXPECT_EQ(Text(L"autodoc-title"), L"");
    Basic("[USER]\nload-dictionary-1=a\n");
    User("[USER]\nload-dictionary-1=b\n");
    expect({L"db", L"--ini", UserFile()}, {.option = L"load-dictionary", .index = 1},
           reading + L"<load-dictionary>!\r\nreason: \tMultiple options <load-dictionary> for index <1>!");
    CString told;
    const XException twice = ErrorOf([&] { m_Store->RetrieveOption(L"load-dictionary"); });
    for (const ErrorPlace& place : twice.GetSubject()->places) told += FormatText(L"%s:%d ", place.layer, place.line);
    EXPECT_EQ(told, L"basic file:2 user file:2 ");
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
