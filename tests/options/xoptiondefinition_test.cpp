#include "veltrane/options/xoptiondefinition.h"

#include "support/support.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

TEST(XOptionDefinition, RowsStandAtTheirPlaceWithTheirBits) {
    const auto expect = [&](int row, int id, int section, const wchar_t* shortName, const wchar_t* longName,
                            int tabulators) {
        const XOptionDefinition* const definition = GetOptionDefinitionAt(row);
        ASSERT_NE(definition, nullptr);
        EXPECT_EQ(definition->eOption, id) << row;
        EXPECT_EQ(definition->eSection, section) << row;
        EXPECT_EQ(CString{definition->szShortName}, shortName);
        EXPECT_EQ(CString{definition->szLongName}, longName);
        EXPECT_EQ(definition->nTabulators, tabulators) << row;
    };
    expect(1, 0x1148, 3, L"cv", L"create-views", 2);
    expect(7, 0x7341, 3, L"sp", L"spool", 3);
    expect(33, 0x3000103, 3, L"c", L"create-changefile", 1);
    expect(39, 0x2500C1, 5, L"", L"dictionary-name", 2);
    expect(61, 0x290010, 5, L"", L"obsolete-classes", -1);
    expect(65, 0x20000001, 48, L"", L"columnname-rules", -1);
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
    const CString& help = recorder.boxes[0].text;
    const CString head = L"Synopsis: Veltrane [options] <database-name>\r\n\r\nwhere [options] is one or more of:\r\n" +
                         separator + L"flags and switches:\t\r\n-cv,\t--create-views [true|false|auto]\t\tForce the ";
    EXPECT_EQ(help.Left(head.GetLength()), head);
    EXPECT_EQ(help.Right(separator.GetLength()), separator);
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
    CString rest = help;
    EXPECT_EQ(rest.Replace(separator, L""), 4);
}

}  // namespace
