#include "veltrane/options/xowntable.h"

#include <cstdlib>
#include <cstring>

#include "options/store.h"
#include "veltrane/foundation/xpath.h"
#include "veltrane/options/typed.h"

constexpr enumOption eOptionScale = OwnOption(1, eString | eSingle | eHelp);
constexpr enumOption eOptionDry = OwnOption(2, eBoolean | eSingle | eHelp);
constexpr enumCfgSection eSectionScale = OwnSection(1);

constexpr XConfigSection SECTIONS[] = {
    SectionRow(eSectionScale, eSectionUnnamed, L"SCALE"),
    SectionRow(OwnSection(2), eSectionDatabase, L"SCALES\\%d"),
};
constexpr XOptionDefinition OPTIONS[] = {
    TitleRow(L"scale:"),
    OptionRow(eOptionScale, eSectionRoot, L"sc", L"scale", 2, L"-sc,\t--scale <number>", L"\t\t\tScale by this."),
    OptionRow(eOptionDry, eSectionScale, L"dry", L"dry-run", 2, L"-dry,\t--dry-run", L"\t\t\tOnly look."),
    OptionRow(OwnOption(3, eTrillian | eSingle), eSectionScale, L"", L"scale-mode", 2),
    OptionRow(OwnOption(4, eString), OwnSection(2), L"", L"scale-source", 2),
    OptionRow(OwnOption(5, eIList), eSectionScale, L"", L"skip", 2),
    OptionRow(OwnOption(6, eString | eSingle | eMandatory), eSectionScale, L"", L"team", 2),
    OptionRow(OwnOption(7, eBoolean | eSingle), eSectionRoot, L"", L"dim", 2),
    OptionRow(OwnOption(8, eString | eSingle | eValueOptional), eSectionRoot, L"", L"trace", 2),
};
static_assert(FitsLibrary({OPTIONS, SECTIONS}));

TEST_F(OptionStoreTest, AToolsOwnOptionsAreOptionsLikeTheOthers) {
    m_Store.reset();
    const OwnOptions registered{{OPTIONS, SECTIONS}};
    EXPECT_EQ(FindOptionDefinition(L"-sc"), FindOptionDefinition(L"scale"));
    EXPECT_STREQ(GetOptionDefinitionAt(67)->szSyntax, L"scale:");
    Complete("");
    EXPECT_EQ(ErrorOf([&] { Start({L"db"}); }).GetSubject()->option, L"team") << "mandatory";
    Complete(
        "[ROOT]\nscale=%unit%-2\nunit=cm\n[db\\SCALES\\4]\nscale-source=x\n"
        "[SCALE]\nscale-mode=true\nskip-3=4,1\nskip-1=7\nteam=%scale%!\n");
    m_bKeepsOrigins = true;
    Start({L"tool", L"db", L"-dry"});
    EXPECT_EQ(Text(L"scale"), L"cm-2");
    EXPECT_EQ(Text(L"team"), L"cm-2!");
    EXPECT_TRUE(m_Store->GetOptionBoolean(L"dry-run", -1));
    EXPECT_EQ(m_Store->GetOptionTrillian(L"scale-mode", -1), eFlagTrue);
    EXPECT_EQ(Texts(L"scale-source"), L"4=x ");
    EXPECT_EQ(m_Store->GetOptionIList(L"skip", 3)->Size(), 2);
    for (const wchar_t* missing : {L"dim", L"trace"}) EXPECT_EQ(m_Store->GetOptionItem(missing, -1), nullptr);
    EXPECT_EQ(m_Store->GetOptionCandidates(L"scale", -1).candidates.at(0).line, 6);
    m_Store.reset();
}

TEST_F(OptionStoreTest, OwnOptionsEndAloneAndNotBeforeTheLastStore) {
    m_Store.reset();
    const auto table = [](int number, std::wstring_view name) {
        std::vector<XOptionDefinition> rows{{enumOption{0x40000041 | number << 12}, eSectionRoot, {}, {}, {}, -1, {}}};
        std::ranges::copy(name, rows[0].szLongName);
        return std::make_unique<OwnOptions>(OwnTable{rows});  // which keeps no pointer to them
    };
    auto head = std::make_unique<OwnOptions>(OwnTable{{}, {}, L"head"});
    const OwnOptions otherHead{{{}, {}, L"other"}};
    auto first = table(21, L"first");
    const auto second = table(22, L"second");
    head.reset();
    BoxRecorder recorder;
    ShowHelp();
    EXPECT_EQ(recorder.boxes.at(0).text.Left(5), L"other");
    Renew();
    m_Store->InsertOptionItem(L"first", L"1", -1);
    m_Store->InsertOptionItem(L"second", L"2", -1);
    first.reset();
    EXPECT_EQ(Text(L"first") + Text(L"second"), L"12");
    m_Store.reset();
    EXPECT_EQ(FindOptionDefinition(L"first"), nullptr);
    EXPECT_NE(FindOptionDefinition(L"second"), nullptr);
}

TEST(OwnOptions, ShowTheirHelpAfterThatOfTheLibraryLineByLine) {
    BoxRecorder recorder;
    ShowHelp();
    for (const wchar_t* head : std::initializer_list<const wchar_t*>{nullptr, L"Synopsis: scale\r\n"}) {
        const OwnOptions registered{{OPTIONS, SECTIONS, head}};
        ShowHelp();
    }
    const CString own =
        L"scale:\t\r\n-sc,\t--scale <number>\t\t\t\tScale by this.\r\n-dry,\t--dry-run\t\t\t\tOnly look.\r\n";
    EXPECT_EQ(recorder.boxes.at(0).style, 0x40U);
    const CString& library = recorder.boxes[0].text;
    EXPECT_EQ(recorder.boxes.at(1).text, library + own);
    EXPECT_EQ(recorder.boxes.at(2).text, L"Synopsis: scale\r\n" + library.Mid(library.Find(L"where")) + own);
    const CString separator = CString{L'-', 207} + L"\r\n";
    CString help = library;
    EXPECT_EQ(help.Right(separator.GetLength()), separator);
    EXPECT_EQ(help.Replace(separator, L"<>"), 4);
    EXPECT_EQ(
        help.Find(L"Synopsis: Veltrane [options] <database-name>\r\n\r\nwhere [options] is one or more of:\r\n<>flags "
                  L"and switches:\t\r\n-cv,\t--create-views [true|false|auto]\t\tForce the "),
        0);
    EXPECT_GE(help.Find(L"-s, \t--setup <setup-ini-filename>\t\r\n"), 0);
    EXPECT_GE(help.Find(L"-e, \t--exit\t\t\t\t\tGenerate an 'exit' statement in the changefile.\r\n"
                        L"\t\t\t\t\t\tThis is NOT a good idea, when running from setup...\r\n"),
              0);
    EXPECT_GE(help.Find(L"commands:\t\r\n-l, \t--load-dictionary <dictionary>\t\tLoad the dictionary at location "
                        L"<dictionary>.\r\n"),
              0);
    EXPECT_EQ(help.Find(L"--metadata"), -1);
}

TEST(OwnOptions, RefuseWhatIsInUse) {
    const OwnOptions registered{{OPTIONS, SECTIONS}};
    const auto expect = [](enumOption id, std::wstring_view shortName, std::wstring_view longName,
                           const CString& message, std::span<const XConfigSection> sections = {},
                           enumCfgSection section = eSectionRoot) {
        XOptionDefinition row{id, section, {}, {}, {}, -1, {}};
        std::ranges::copy(shortName, row.szShortName);
        std::ranges::copy(longName, row.szLongName);
        EXPECT_EQ(ErrorOf([&] { const OwnOptions own{{{&row, 1}, sections}}; }).GetMessage(), message);
    };
    constexpr enumOption id = OwnOption(9, eString | eSingle);
    expect(id, L"", L"quiet", L"The option <quiet> cannot be registered: its name is in use!");
    expect(id, L"", L"dry-run", L"The option <dry-run> cannot be registered: its name is in use!");
    expect(id, L"q", L"other", L"The option <other> cannot be registered: its short name <q> is in use!");
    expect(eOptionQuiet, L"", L"other", L"The option <other> cannot be registered: its id is in use!");
    expect(eOptionScale, L"", L"other", L"The option <other> cannot be registered: its id is in use!");
    expect(enumOption{0x41}, L"", L"other", L"The option <other> cannot be registered: its id has no number!");
    expect(id, L"", L"o=r", L"The option <o=r> cannot be registered: a name is made of letters, digits and hyphens!");
    expect(id, L"", L"--other", L"The option <--other> cannot be registered: its names begin without a hyphen!");
    expect(id, L"wxyz", L"other", L"The option <other> cannot be registered: a text fills its column without an end!");
    expect(id, L"", CString{L'x', 50}.View(),
           L"The option <" + CString{L'x', 50} + L"> cannot be registered: a text fills its column without an end!");
    constexpr enumOption several = OwnOption(10, eString);
    expect(several, L"", L"exit-x",
           L"The option <exit-x> cannot be registered: the key of <exit> would be one of its values!", {},
           eSectionUser);
    expect(several, L"", L"dry-run-x",
           L"The option <dry-run-x> cannot be registered: the key of <dry-run> would be one of its values!", {},
           eSectionScale);
    expect(id, L"", L"Skip-7x", L"The option <Skip-7x> cannot be registered: its key would be a value of <skip>!", {},
           eSectionScale);
    constexpr XConfigSection root[] = {SectionRow(OwnSection(3), eSectionUnnamed, L"ROOT")};
    constexpr XConfigSection below[] = {{OwnSection(3), OwnSection(3), L"SELF"}};
    constexpr XConfigSection named[] = {SectionRow(OwnSection(3), eSectionNone, L"--other")};
    expect(id, L"", L"other", L"The section <SCALE> cannot be registered: its value or its name is in use!", SECTIONS);
    expect(id, L"", L"other", L"The section <ROOT> cannot be registered: its value or its name is in use!", root);
    expect(id, L"", L"other", L"The section <SELF> stands below itself!", below);
    expect(id, L"", L"other", L"The section <--other> stands below itself!", named, OwnSection(3));
    expect(id, L"", L"other", L"The option <other> cannot be registered: its section does not exist!", {},
           OwnSection(7));
    const XOption store;
    EXPECT_EQ(ErrorOf([] { const OwnOptions own{{}}; }).GetMessage(),
              L"Options can be registered only before a store is made!");
}

constexpr XOptionDefinition SPOOL[] = {OptionRow(OwnOption(11, eBoolean | eSingle | eHelp), eSectionRoot, L"sp",
                                                 L"spool", 2, L"-sp,\t--spool", L"\t\tVeltrane.")};
constexpr OwnTable BASE{.options = SPOOL, .library = BASE_ROWS};
static_assert(FitsLibrary(BASE));

TEST_F(OptionStoreTest, AToolMayLeaveOutRowsOfTheLibrary) {
    m_Store.reset();
    const OwnOptions registered{BASE};
    for (const wchar_t* name : {L"create-autodoc", L"-ca", L"role", L"tablename-rules", L"changefile-root"}) {
        EXPECT_EQ(FindOptionDefinition(name), nullptr) << ToUtf8(name);
    }
    EXPECT_EQ(FindOptionDefinition(L"-sp"), GetOptionDefinitionAt(GetOptionDefinitionCount() - 1));
    EXPECT_STREQ(FindOptionDefinition(L"-")->szLongName, L"summary");
    Basic(
        "[ROOT]\nspool=true\nunit=%role%\n[db]\nrole=r\n[db\\TABLENAME RULES\\1]\nA=B\n[db\\TABLENAME "
        "RULES\\2]\nC=D\n");
    User("[db\\TABLENAME RULES\\1]\n");
    Start({L"tool", L"db", L"-dat", DataFolder(), L"--ini", UserFile()});
    EXPECT_TRUE((Get<"spool", BASE>(*m_Store)));
    EXPECT_TRUE(m_Store->GetNamingRules(eOptionTableNameRules).empty());
    EXPECT_EQ(m_Store->GetLocations().end()[-2].option, L"config");
    EXPECT_TRUE(FileExists(DataFolder() + L"/log") && !FileExists(DataFolder() + L"/changefile"));
    EXPECT_EQ(ErrorOf([&] { Text(L"role"); }).GetMessage().Right(45), L"The option <role> is not known by the system!");
    const XException unknown = ErrorOf([&] { Open({L"--create-autodoc"}); });
    EXPECT_EQ(unknown.GetMessage().Left(54), L"command line option <--create-autodoc> not recognized!");
    BoxRecorder recorder;
    const ArgumentsGuard guard{{}};
    SetArguments({L"/bin/scale"});
    ShowHelp();
    const CString& help = recorder.boxes.at(0).text;
    EXPECT_EQ(help.Find(L"Synopsis: scale [options] <database-name>\r\n"), 0);
    EXPECT_GE(help.Find(L"\tPrint the scale version information.\r\n"), 0);
    EXPECT_EQ(help.Find(L"commands:"), -1);
    EXPECT_EQ(help.Right(26), L"-sp,\t--spool\t\t\tVeltrane.\r\n");
    m_Store.reset();
}

TEST(OwnOptions, ChooseRowsOfTheLibraryForAll) {
    constexpr OwnTable other{.library = BASE_ROWS.With<"role">().Without<"summary">()};
    constexpr XConfigSection sections[] = {SectionRow(OwnSection(3), eSectionNone, L"--autodoc-title")};
    auto first = std::make_unique<OwnOptions>(BASE);
    EXPECT_EQ(ErrorOf([&] { const OwnOptions second{other}; }).GetMessage(),
              L"Another table has chosen other options of the library!");
    auto module = std::make_unique<OwnOptions>(OwnTable{});
    first.reset();
    EXPECT_EQ(FindOptionDefinition(L"role"), nullptr);
    module.reset();
    first = std::make_unique<OwnOptions>(other);
    EXPECT_NE(FindOptionDefinition(L"role"), nullptr);
    EXPECT_STREQ(FindOptionDefinition(L"-")->szLongName, L"logging");
    first.reset();
    const OwnOptions needing{{.sections = sections}};
    EXPECT_EQ(ErrorOf([] { const OwnOptions tool{BASE}; }).GetMessage(),
              L"The section <--autodoc-title> cannot be registered: the option that names it is not known!");
}

/// With VELTRANE_OWN_ROWS set, all tests of the program run beside that many options of a tool's own.
static const auto g_ManyRows = [] {
    const char* const count = std::getenv("VELTRANE_OWN_ROWS");
    static std::vector<XOptionDefinition> rows;
    for (int i = 0; count && i < std::atoi(count); ++i) {
        rows.push_back({enumOption{0x40000000 | (1000 + i) << 12 | 0x41}, eSectionRoot, {}, {}, {}, -1, {}});
        std::ranges::copy(FormatText(L"own-row-%d", i), rows.back().szLongName);
    }
    return rows.empty() ? nullptr : std::make_unique<OwnOptions>(OwnTable{rows});
}();
