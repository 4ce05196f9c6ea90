#include "veltrane/options/xoptiondefinition.h"

#include "support/support.h"

TEST(XOptionDefinition, RowsStandAtTheirPlaceWithTheirBits) {
    const auto expect = [](int index, const wchar_t* expected) {
        const XOptionDefinition* const row = GetOptionDefinitionAt(index);
        ASSERT_NE(row, nullptr);
        EXPECT_EQ(CString{FormatText(L"%X %d <%s> <%s> %d", row->eOption, row->eSection, row->szShortName,
                                     row->szLongName, row->nTabulators)},
                  expected);
    };
    expect(1, L"1148 3 <cv> <create-views> 2");
    expect(7, L"7341 3 <sp> <spool> 3");
    expect(33, L"3000103 3 <c> <create-changefile> 1");
    expect(39, L"2500C1 5 <> <dictionary-name> 2");
    expect(61, L"290010 5 <> <obsolete-classes> -1");
    expect(65, L"20000001 48 <> <columnname-rules> -1");
    EXPECT_EQ(GetOptionDefinitionCount(), 67);
    EXPECT_EQ(GetOptionDefinitionAt(-1), nullptr);
    EXPECT_EQ(GetOptionDefinitionAt(67), nullptr);
}

TEST(XOptionDefinition, NamesFindWhatAPlainSearchFinds) {
    const auto findPlainly = [](const CString& name) -> const XOptionDefinition* {
        for (int i = 0; const auto* row = GetOptionDefinitionAt(i); ++i) {
            const CString longName = row->szLongName;
            if (name == CString{L"-"} + row->szShortName || name == longName || name == L"--" + longName) return row;
        }
        return nullptr;
    };
    std::vector<CString> names = {L"", L"----", L"-----", L"-Q", L"--Quiet", L"- ", L"name ", L"--n"};
    for (int i = 0; const auto* row = GetOptionDefinitionAt(i); ++i) {
        for (const wchar_t* prefix : {L"", L"-", L"--", L"---"}) {
            names.push_back(CString{prefix} + row->szLongName);
            names.push_back(CString{prefix} + row->szShortName);
        }
    }
    for (const CString& name : names) EXPECT_EQ(FindOptionDefinition(name), findPlainly(name)) << ToUtf8(name);
    EXPECT_EQ(FindOptionDefinition(CString{std::wstring_view{L"name\0", 5}}), nullptr);
    EXPECT_EQ(FindOptionDefinition(CString{L'x', 100'000}), nullptr);
}

TEST(XOptionDefinition, SectionsAreFoundByValueAndByOwnName) {
    EXPECT_EQ(GetConfigSectionCount(), 8);
    EXPECT_EQ(CString{FindConfigSection(eSectionDatabase)->szName}, L"--name");
    EXPECT_EQ(FindConfigSection(eSectionFiles)->eParent, eSectionDatabase);
    EXPECT_EQ(FindConfigSection(static_cast<enumCfgSection>(6)), nullptr);
    EXPECT_EQ(FindConfigSection(eSectionNone), nullptr);
    EXPECT_EQ(FindConfigSection(L"")->eSection, eSectionUnnamed);
    EXPECT_EQ(FindConfigSection(L"FILES\\%d")->eSection, eSectionFiles);
    EXPECT_EQ(FindConfigSection(L"root"), nullptr);
}

TEST(XOptionDefinition, FlagsTakeTheirWordsInAnyCase) {
    EXPECT_TRUE(IsValidBooleanString(L"TRUE") && IsValidTrillianString(L"TRUE"));
    EXPECT_TRUE(IsValidBooleanString(L"False") && IsValidTrillianString(L"False"));
    EXPECT_TRUE(IsValidTrillianString(L"Auto") && !IsValidBooleanString(L"Auto"));
    for (const wchar_t* word : {L"yes", L"", L"true "}) {
        EXPECT_FALSE(IsValidBooleanString(word) || IsValidTrillianString(word));
    }
    EXPECT_EQ(FindOptionDefinition(L"help")->GetDefaultValue(), L"true");
    EXPECT_EQ(FindOptionDefinition(L"create-views")->GetDefaultValue(), L"auto");
    EXPECT_EQ(FindOptionDefinition(L"name")->GetDefaultValue(), L"");
}

TEST(XOptionDefinition, HelpIsTheTableLineByLine) {
    BoxRecorder recorder;
    ShowHelp();
    ASSERT_EQ(recorder.boxes.size(), 1U);
    EXPECT_EQ(recorder.boxes[0].style, 0x40U);
    const CString separator = CString{L'-', 207} + L"\r\n";
    CString help = recorder.boxes[0].text;
    EXPECT_EQ(help.Right(separator.GetLength()), separator);
    EXPECT_EQ(help.Replace(separator, L"<>"), 4);
    EXPECT_EQ(
        help.Find(L"Synopsis: Veltrane [options] <database-name>\r\n\r\nwhere [options] is one or more of:\r\n<>flags "
                  L"and switches:\t\r\n-cv,\t--create-views [true|false|auto]\t\tForce the "),
        0);
    for (const wchar_t* line : {
             L"-s, \t--setup <setup-ini-filename>\t\r\n",
             L"-e, \t--exit\t\t\t\t\tGenerate an 'exit' statement in the changefile.\r\n"
             L"\t\t\t\t\t\tThis is NOT a good idea, when running from setup...\r\n",
             L"commands:\t\r\n-l, \t--load-dictionary <dictionary>\t\tLoad the dictionary at location "
             L"<dictionary>.\r\n",
         }) {
        EXPECT_GE(help.Find(line), 0) << ToUtf8(line);
    }
    EXPECT_EQ(help.Find(L"--metadata"), -1);
}
