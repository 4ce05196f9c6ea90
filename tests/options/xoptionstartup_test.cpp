#include "options/store.h"
#include "options/xoption.h"
#include "platform/filesystem.h"

namespace {

class OptionStartUp : public OptionStoreTest {
protected:
    CString DataFolder() const { return m_Folder.Wide("data"); }
    CString ErrorOfInitialize(std::vector<CString> arguments) {
        return ErrorOf([&] { Initialize(std::move(arguments)); }).GetMessage();
    }
};

TEST_F(OptionStartUp, TakesOverFactsAndCommandLine) {
    Initialize({L"-q", L"true", L"-l", L"a", L"-q", L"false", L"-l", L"b", L"--exe-name", L"%exe-path%x"});
    EXPECT_EQ(Text(L"version-info"), L"1.2");
    EXPECT_EQ(Text(L"compile-time"), L"COMPILED");
    EXPECT_EQ(Text(L"datetime"), L"today");
    EXPECT_EQ(Text(L"exe-name"), m_Folder.Wide() + L"x") << "references of the command line are replaced";
    EXPECT_FALSE(m_Store->GetOptionBoolean(L"quiet", -1)) << "the last one counts";
    EXPECT_EQ(Texts(L"load-dictionary"), (std::vector<CString>{L"0=a", L"1=b"}));
}

TEST_F(OptionStartUp, NumbersValuesBehindThoseThatAreThere) {
    m_Store->InsertOptionItem(L"load-dictionary", L"early", 5);
    m_Store->InsertOptionItem(L"load-dictionary", L"earlier", 2);
    Initialize({L"-l", L"a", L"-d", L"-l", L"b"});
    EXPECT_EQ(Texts(L"load-dictionary"), (std::vector<CString>{L"5=early", L"2=earlier", L"6=a", L"7=b"}));
    EXPECT_EQ(Texts(L"diff-dictionary"), std::vector<CString>{L"0="});
}

TEST_F(OptionStartUp, FindsTheMetadataFolderBesideTheProgram) {
    Initialize();
    EXPECT_EQ(Text(L"metadata"), m_Folder.Wide(".metadata"));
    Renew();
    std::filesystem::create_directories(m_Folder.Path() / "Meta");
    Initialize({L"-m", L"meta"});
    EXPECT_EQ(Text(L"metadata"), m_Folder.Wide("meta")) << "as given; the case of folders does not count";
    Renew();
    EXPECT_EQ(ErrorOfInitialize({L"-m", L"missing"}), L"Folder <" + m_Folder.Wide("missing") +
                                                          L"> does not exist!\r\n\t"
                                                          L"The folder with the metadata information does not exist!");
    EXPECT_EQ(Text(L"metadata"), m_Folder.Wide("missing")) << "what was resolved stays";
}

TEST_F(OptionStartUp, CreatesDefaultFoldersBelowData) {
    Initialize({L"--data", DataFolder()});
    EXPECT_EQ(Text(L"logging"), DataFolder() + L"/log");
    for (const char* folder : {"configuration", "changefile", "log"}) {
        EXPECT_TRUE(std::filesystem::is_directory(m_Folder.Path() / "data" / folder)) << folder;
    }
}

TEST_F(OptionStartUp, ChecksTheFoldersThatAreNamed) {
    const CString missing = DataFolder() + L"/mine";
    EXPECT_EQ(ErrorOfInitialize({L"--data", DataFolder(), L"--logging", L"mine"}),
              L"Folder <" + missing + L"> does not exist!\r\n\tThe folder for <logging> does not exist!");
    Renew();
    EXPECT_EQ(ErrorOfInitialize({L"--config", missing}),
              L"Folder <" + missing + L"> does not exist!\r\n\tThe folder for <config> does not exist!");
    Renew();
    EXPECT_EQ(ErrorOfInitialize({L"--data", missing}),
              L"Folder <" + missing + L"> does not exist!\r\n\tThe global output data folder does not exist!");
    Renew();
    m_Folder.Write("readonly", "a file where a folder should be");
    EXPECT_EQ(ErrorOfInitialize({L"--data", m_Folder.Wide("readonly")}),
              L"Folder <" + m_Folder.Wide("readonly/configuration") +
                  L"> does not exist!\r\n\tThe folder for <config> does not exist and can not be created!");
    Renew();
    Initialize({L"--config", L"anything"});
    EXPECT_EQ(Text(L"config"), L"anything") << "without data a relative folder stays unchecked";
}

TEST_F(OptionStartUp, FindsTheBasicFileByTheNameOfTheProgram) {
    struct {
        const wchar_t* program;
        const char* file;
    } const cases[] = {{L"Tool.exe", "tool.ini"}, {L"Tool.EXE", "tool.exe.ini"}, {L"a.exe.exe", "a.ini"}};
    for (const auto& [program, file] : cases) {
        m_Folder.Write(std::string{"Meta/"} + file, DATABASE);
        Renew();
        Initialize({L"db", L"-m", L"Meta", L"--exe-name", program});
        m_Store->OpenConfiguration();
        m_Store->OpenConfiguration();  // readers that are open stay
        m_Store->RetrieveOption(L"role");
        EXPECT_EQ(Text(L"role"), L"r");
    }
    Renew();
    std::filesystem::create_directories(m_Folder.Path() / "Empty");
    Initialize({L"-m", L"Empty"});
    EXPECT_EQ(ErrorOf([&] { m_Store->OpenConfiguration(); }).GetMessage(),
              L"Error locating and opening the configuration!\r\nreason: \tFile <" +
                  (m_Folder.Wide("empty/tool.ini")).MakeLower() +
                  L"> not found!\r\n\tThe basic configuration could not be found!");
}

TEST_F(OptionStartUp, FindsTheUserFileHereOrBelowConfig) {
    m_Folder.Write("data/configuration/my.ini", "[USER]\nquiet=true\n");
    Initialize({L"--data", DataFolder(), L"--ini", L"my.ini"});
    m_Store->OpenConfiguration();
    m_Store->RetrieveOption(L"quiet");
    EXPECT_TRUE(m_Store->GetOptionBoolean(L"quiet", -1));

    const CString wrapped = L"Error locating and opening the configuration!\r\nreason: \t";
    Renew();
    Initialize({L"--data", DataFolder(), L"--ini", L"other.ini"});
    EXPECT_EQ(ErrorOf<XFileException>([&] { m_Store->OpenConfiguration(); }).GetMessage(),
              wrapped + L"File <" + DataFolder() +
                  L"/configuration/other.ini> not found!\r\n\tThe specified user configuration file does not exist!");
    Renew();
    Initialize({L"--ini", L"other.ini"});
    EXPECT_EQ(ErrorOf([&] { m_Store->OpenConfiguration(); }).GetMessage(),
              wrapped + L"Folder <> does not exist!\r\n\tThe userspace configuration location does not exist!");
}

TEST_F(OptionStartUp, ReadsEveryOrdinaryOptionAndMergesTheObsoleteClasses) {
    Basic(std::string{DATABASE} + "obsolete-classes-2=5\nobsolete-classes-1=1,2\n[USER]\nexit=true\n");
    StartUp({L"db"});
    EXPECT_TRUE(m_Store->GetOptionBoolean(L"exit", -1));
    const XSetInt* const first = m_Store->GetOptionIList(L"obsolete-classes", 1);
    const XSetInt* const last = m_Store->GetOptionIList(L"obsolete-classes", 2);
    ASSERT_TRUE(first && last);
    EXPECT_EQ(first->Size(), 2);
    EXPECT_EQ(last->Size(), 3);
    EXPECT_EQ(last->GetConstRefAt(2), 5);
}

TEST_F(OptionStartUp, StopsAtAMandatoryOptionWithTheOnesBeforeInPlace) {
    Basic("[USER]\nquiet=true\n[db]\ndictionary-name=d\n[AUTODOC]\nautodoc-title=t\n");
    Initialize({L"db"});
    m_Store->OpenConfiguration();
    EXPECT_EQ(ErrorOf([&] { m_Store->ReadConfiguration(); }).GetMessage(),
              L"Error reading the configuration!\r\nreason: \tError retrieving option <role>!\r\nreason: \t"
              L"The option <role> must exist but could not be found!");
    EXPECT_TRUE(m_Store->GetOptionBoolean(L"quiet", -1));
    EXPECT_EQ(Text(L"autodoc-title"), L"");
}

TEST_F(OptionStartUp, ReadsNamingRulesOfAllSourcesByVersion) {
    Basic(std::string{DATABASE} +
          "[db\\TABLENAME RULES\\3]\nAB=x\nOld=\n[db\\tablename rules\\1]\nx=AB\n"
          "[db\\COLUMNNAME RULES\\2]\nc=k\n[db\\COLUMNNAME RULES\\9]\nk=unreached\n");
    User("[db\\TABLENAME RULES\\3]\nAB=user\n[db\\COLUMNNAME RULES\\9]\n");
    Registry("db\\COLUMNNAME RULES\\2", "\"c\"=\"registry\"");
    StartUp({L"db", L"--ini", UserFile()});
    const auto renamed = [&](CString name, int version, bool isTable) {
        if (isTable) {
            m_Store->ReplaceTableName(name, version, /*keepCase*/ true);
        } else {
            m_Store->ReplaceColumnsName(name, version, /*keepCase*/ true);
        }
        return name;
    };
    EXPECT_EQ(renamed(L"xOld", 2, true), L"ABOld");
    EXPECT_EQ(renamed(L"xOld", 3, true), L"userOld") << "the user file lists the keys of that version";
    EXPECT_EQ(renamed(L"cc", 9, false), L"registryregistry") << "values come from the strongest source";
}

class OptionStartUpDeath : public OptionStartUp {};

TEST_F(OptionStartUpDeath, HelpVersionAndSetupEndTheProcess) {
    GTEST_FLAG_SET(death_test_style, "fast");
    const auto withBoxOnStandardError = [] {
        SetMessageBoxHandler([](const CString& text, unsigned style, unsigned) {
            std::cerr << style << '|' << ToUtf8(text);
            return 1;
        });
    };
    struct {
        std::vector<CString> arguments;
        const char* box;
    } const cases[] = {
        {{L"-q", L"-v", L"--unknown"}, "64.Program Name:\tTool.exe..Program Version:\t1.2..Compile Time:\tCOMPILED"},
        {{L"-m", L"missing", L"-h"}, "64.Synopsis: Veltrane"},
        {{L"-s", L"x", L"-cv", L"maybe"}, "^$"},
    };
    for (const auto& [arguments, box] : cases) {
        EXPECT_EXIT((withBoxOnStandardError(), Initialize(arguments)), testing::ExitedWithCode(0), box);
    }
}

}  // namespace
