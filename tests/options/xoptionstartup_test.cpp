#include "collections/sets.h"
#include "options/store.h"
#include "veltrane/config/xconfiguration.h"
#include "veltrane/foundation/xsubject.h"
#include "veltrane/options/xcommandline.h"

TEST(XCommandLine, GivesPairsAndNamesTheArgumentThatIsWrong) {
    using List = std::vector<CString>;
    const CString seeH = L"\r\n    <---- Try <-h> to view the help window! ---->";
    // The pairs as "name=value", an error as its subject, the word in the value and its message.
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
    expect({L"-d", L"mydb"}, {L"diff-dictionary=mydb"});      // a command takes the next word
    expect({L"-", L"--", L"x"}, {L"summary=true", L"--=x"});  // the first without short name, the first title
    expect(
        {L"-q", L"mydb", L"-cv", L"maybe"},
        {L"quiet|mydb|mydb: The option string <mydb> for the boolean parameter <-q> is invalid!" + seeH,
         L"create-views|maybe|maybe: The option string <maybe> for the tri-state parameter <-cv> is invalid!" + seeH});
    expect({L"-n", L"-q", L"-v", L"--name"},  // the argument that was not a value counts as used
           {L"name||: The option value for parameter <-n> is empty!" + seeH, L"version=true",
            L"name||: The option value for parameter <--name> is empty!" + seeH});
    expect({L"--name=%s%n"}, {L"|--name=%s%n|: command line option <--name=%s%n> not recognized!\r\n"
                              L"    <---- Try <--help> to view the help window! ---->"});
}

TEST(XCommandLine, KeepsItsArgumentsAndItsPlaceInACopy) {
    XCommandLine copy;
    CString value;
    const ArgumentsGuard guard{{L"-q", L"-cv"}};
    XCommandLine line;
    line.GetFirst(value);
    copy = line;
    SetArguments({});
    for (XCommandLine* each : {&copy, &line}) EXPECT_EQ(each->GetNext(value)->eOption, eOptionCreateViews);
    EXPECT_EQ(copy.GetFirst(value)->eOption, eOptionQuiet);
}

using OptionStartUp = OptionStoreTest;

TEST_F(OptionStartUp, StoresFactsAndCommandLine) {
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
    m_Store->InsertOptionItem(L"load-dictionary", L"last", INT_MAX);
    Initialize({L"-l", L"c", L"-l", L"d"});
    EXPECT_EQ(Texts(L"load-dictionary").Mid(42), CString{FormatText(L"%d=c %d=d ", INT_MIN, INT_MIN)})
        << "after the largest";
}

TEST_F(OptionStartUp, FindsTheMetadataFolderAndCreatesDefaultFoldersBelowData) {
    Initialize({L"--data", DataFolder()});
    EXPECT_EQ(Text(L"metadata"), m_Folder.Wide(".metadata")) << "beside the program";
    EXPECT_TRUE(std::filesystem::is_directory(m_Folder.Path() / "data/configuration"));
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

TEST_F(OptionStartUp, ErrorsNameTheFaultAndItsSubject) {
    const auto expect = [&](const std::vector<CString>& arguments, const ErrorSubject& subject,
                            const CString& message) {
        SCOPED_TRACE(ToUtf8(message));
        const XException error = ErrorOf([&] { Start(arguments); });
        EXPECT_EQ(error.GetMessage(), message);
        const ErrorSubject found = error.GetSubject() ? *error.GetSubject() : ErrorSubject{};
        EXPECT_EQ(std::tie(found.option, found.argument, found.reference, found.index),
                  std::tie(subject.option, subject.argument, subject.reference, subject.index));
    };
    const auto noFolder = [](const CString& folder, const wchar_t* reason) {
        return L"Folder <" + folder + L"> does not exist!\r\n\t" + reason;
    };
    const CString mine = DataFolder() + L"/mine";
    const CString file = m_Folder.Write("file", "where a folder should be");
    expect({L"--data", DataFolder(), L"--logging", L"mine"}, {.option = L"logging"},
           noFolder(mine, L"The folder for <logging> does not exist!"));
    expect({L"--config", mine}, {.option = L"config"}, noFolder(mine, L"The folder for <config> does not exist!"));
    expect({L"--data", mine}, {.option = L"data"}, noFolder(mine, L"The global output data folder does not exist!"));
    expect({L"--data", file}, {.option = L"config"},
           noFolder(file + L"/configuration", L"The folder for <config> does not exist and can not be created!"));
    expect({L"-m", L"missing"}, {.option = L"metadata"},
           noFolder(m_Folder.Wide("missing"), L"The folder with the metadata information does not exist!"));
    EXPECT_EQ(Text(L"metadata"), m_Folder.Wide("missing")) << "what was resolved stays";
    expect({L"-dr", L"%no%"}, {.argument = L"no", .reference = L"no"},
           L"Error retrieving the string option <no>!\r\nreason: \tThe option <no> is not known by the system!");
    const CString opening = L"Error locating and opening the configuration!\r\nreason: \t";
    const wchar_t noUserFile[] = L"> not found!\r\n\tThe specified user configuration file does not exist!";
    expect({L"-m", L"data"}, {.option = L"metadata"},
           opening + L"File <" + (DataFolder() + L"/tool.ini").MakeLower() +
               L"> not found!\r\n\tThe basic configuration could not be found!");
    expect({L"--data", DataFolder(), L"--ini", L"other.ini"}, {.option = L"ini"},
           opening + L"File <" + DataFolder() + L"/configuration/other.ini" + noUserFile);
    expect({L"--ini", L"/no"}, {.option = L"ini"}, opening + L"File </no" + noUserFile);
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
    m_bKeepsOrigins = true;
    Basic("[USER]\nload-dictionary--3=a\n");
    User("[USER]\nload-dictionary--3=b\n");
    expect({L"db", L"--ini", UserFile()}, {.option = L"load-dictionary", .index = -3},
           reading + L"<load-dictionary>!\r\nreason: \tMultiple options <load-dictionary> for index <-3>!");
    CString described;
    const XException twice = ErrorOf([&] { m_Store->RetrieveOption(L"load-dictionary"); });
    for (const auto& place : twice.GetSubject()->places)
        described += FormatText(L"%s:%d ", LayerName(place.layer), place.line);
    EXPECT_EQ(described, L"basic file:2 user file:2 ");
    m_Store->KeepOrigins(false);
    const XException plain = ErrorOf([&] { m_Store->RetrieveOption(L"load-dictionary"); });
    EXPECT_EQ(plain.GetLocation(), twice.GetLocation()) << "whether origins are kept or not";
}

TEST_F(OptionStartUp, CodeThatRunsAtTheEndOfTheProcessReadsFilesAsTheyAre) {
    static const TempFolder& folder = m_Folder;
    const auto atExit = [] {
        CString value;
        for (const char* text : {"[A]\nk=1", "[A]\nk=2"}) {
            XConfiguration{folder.Write("a.ini", text)}.GetKeyValue(value, L"A", L"k", /*assignEmpty*/ false);
        }
        std::_Exit(value == L"2" ? 7 : 8);
    };
    EXPECT_EXIT((std::atexit(atExit), Initialize({L"-s", L"x"})), testing::ExitedWithCode(7), "");
}

TEST_F(OptionStartUp, ASecondReadingAddsMissingValuesAndTheRulesOnceMore) {
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
