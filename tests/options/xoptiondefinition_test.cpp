#include "veltrane/options/xoptiondefinition.h"

#include "collections/sets.h"
#include "veltrane/options/xoptionitem.h"

TEST(XOptionDefinition, RowsAreAtTheirPlaceWithTheirBits) {
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
    for (const int outside : {-1, 8}) EXPECT_EQ(GetConfigSectionAt(outside), nullptr);
    EXPECT_EQ(GetConfigSectionAt(7), FindConfigSection(eSectionColumnRules));
    EXPECT_EQ(FindConfigSection(eSectionFiles)->eParent, eSectionDatabase);
    for (const auto none : {eSectionNone, static_cast<enumCfgSection>(6)}) EXPECT_EQ(FindConfigSection(none), nullptr);
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
    EXPECT_EQ(FindOptionDefinition(L"name")->GetDefaultValue(), L"");
}

static XOptionItem Item(const wchar_t* name, const wchar_t* value) {
    return {FindOptionDefinition(name), value, -1};
}

TEST(XOptionItem, ReadsItsTextAsTheTypeOfItsOption) {
    EXPECT_TRUE(Item(L"quiet", L"TRUE").GetOptionBoolean());
    EXPECT_TRUE(Item(L"check-database", L"true").GetOptionBoolean());
    EXPECT_FALSE(Item(L"quiet", L"yes").GetOptionBoolean());
    EXPECT_EQ(Item(L"create-views", L"FALSE").GetOptionTrillian(), eFlagFalse);
    EXPECT_EQ(Item(L"create-views", L"true").GetOptionTrillian(), eFlagTrue);
    EXPECT_EQ(Item(L"create-views", L"maybe").GetOptionTrillian(), eFlagAuto);
    EXPECT_EQ(Item(L"load-dictionary", L"x.dic").GetOptionCommand(), L"x.dic");
    const XOptionItem item = Item(L"name", L"db");
    CString text;
    item.GetOptionName(text);
    EXPECT_EQ(text, L"name");
    item.GetOptionDescription(text);
    EXPECT_EQ(text.Left(9), L"\t\tSet the");
    EXPECT_EQ(item.GetID(), 0x101C1);
    EXPECT_EQ(item.GetNrTabulators(), 3);
    EXPECT_FALSE(item.IsFlag() || item.IsCommand());
}

TEST(XOptionItem, RefusesTheOtherTypesInItsWords) {
    XOptionItem quiet = Item(L"quiet", L"true"), name = Item(L"name", L"db");
    XSetInt list;
    const auto expect = [](auto&& ask, const wchar_t* method, const wchar_t* message) {
        const XException error = ErrorOf(ask);
        EXPECT_EQ(error.GetMessage(), message);
        EXPECT_EQ(error.GetLocation().Find(FormatText(L"<XOptionItem::%s> in [xoption], line", method)), 0);
    };
    expect(
        [&] { quiet.GetOptionCommand(); }, L"GetOptionCommand",
        L"Cannot get an option command from the option item <quiet>, because this one does not represent a command!");
    expect([&] { quiet.GetOptionString(); }, L"GetOptionString",
           L"Cannot get an option string from the option item <quiet>, because this one does not represent a string!");
    expect([&] { name.GetOptionBoolean(); }, L"GetOptionBoolean",
           L"Cannot get an option boolean value from an option item which does not represent a boolean value!");
    expect([&] { name.GetOptionTrillian(); }, L"GetOptionTrillian",
           L"Cannot get an option tri-state value from an option item which does not represent a tri-state value!");
    expect([&] { name.GetOptionIList(); }, L"GetOptionIList",
           L"Cannot get an option integer list from an option item which does not represent an integer list!");
    expect([&] { name.SetOptionIList(list); }, L"SetOptionIList",
           L"Cannot set an option integer list for an option item which does not represent an integer list!");
    expect([] { XOptionItem(nullptr, L"", 0); }, L"XOptionItem",
           L"Cannot create an option item, because the option definition is missing!");
}

TEST(XOptionItem, AnIntegerListGrowsWithItsTexts) {
    XOptionItem item = Item(L"obsolete-classes", L"4,2");
    const XOptionItem copy = item;
    item.SetOptionValue(L"7");
    EXPECT_EQ(ValuesOf(*item.GetOptionIList()), (Ints{4, 2, 7}));
    XSetInt nine;
    nine.Insert(9);
    item.SetOptionIList(nine);
    EXPECT_EQ(ValuesOf(*item.GetOptionIList()), Ints{9});
    EXPECT_EQ(item.GetOptionValue(), L"7") << "the text stays";
    EXPECT_EQ(ValuesOf(*copy.GetOptionIList()), (Ints{4, 2})) << "a copy has a list of its own";
}
