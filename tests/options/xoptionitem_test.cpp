#include "veltrane/options/xoptionitem.h"

#include "collections/sets.h"

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
    EXPECT_EQ(Item(L"load-dictionary", L"x.dic").GetOptionString(), L"x.dic");
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
    EXPECT_EQ(item.GetOptionValue(), L"7");
    EXPECT_EQ(ValuesOf(*item.GetOptionIList()), (Ints{4, 2, 7}));
    XSetInt nine;
    nine.Insert(9);
    item.SetOptionIList(nine);
    EXPECT_EQ(ValuesOf(*item.GetOptionIList()), Ints{9});
    EXPECT_EQ(item.GetOptionValue(), L"7") << "the text stays";
    EXPECT_EQ(ValuesOf(*copy.GetOptionIList()), (Ints{4, 2})) << "a copy has a list of its own";
}
