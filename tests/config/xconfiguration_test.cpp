#include "veltrane/config/xconfiguration.h"

#include "support/support.h"
#include "veltrane/platform/sources/internal/snapshot.h"

class XConfigurationTest : public testing::Test {
protected:
    XConfiguration Reader(const std::string& bytes) const { return XConfiguration{m_Folder.Write("tool.ini", bytes)}; }
    static CString Entries(XMapInt2CString& map) {
        CString entries, text;
        for (int key = map.GetFirst(text); !text.IsEmpty(); key = map.GetNext(text)) {
            entries += FormatText(L"%d=%s ", key, text);
        }
        return entries;
    }

    TempFolder m_Folder;
};

TEST_F(XConfigurationTest, GetsOneValueOrAListOfNames) {
    const XConfiguration reader = Reader("[ROOT]\nFile=a, b\nempty=\nx=1\n[USER]\n");
    const auto expect = [&](const char* what, const wchar_t* section, const wchar_t* key, const wchar_t* expected) {
        SCOPED_TRACE(what);
        CString value = L"before";
        EXPECT_EQ(reader.GetKeyValue(value, section, key, /*assignEmpty*/ false), expected != nullptr);
        EXPECT_EQ(value, expected ? expected : L"before");
        EXPECT_TRUE(reader.GetKeyValue(value, section, key, /*assignEmpty*/ true));
        EXPECT_EQ(value, expected ? expected : L"");
    };
    expect("a value", L"root", L"FILE", L"a, b");
    expect("the names of the keys", L"root", L"", L"File,empty,x");
    expect("the names of the sections", L"", L"File", L"ROOT,USER");
    expect("an empty value", L"root", L"empty", nullptr);
    expect("a section without keys", L"user", L"", nullptr);
}

TEST_F(XConfigurationTest, GetsTheIndexesAndTheValuesOfAFamily) {
    const auto expect = [&](const char* what, const char* bytes, const wchar_t* section, const wchar_t* indexes,
                            const wchar_t* values) {
        SCOPED_TRACE(what);
        XSetInt set;
        EXPECT_EQ(Reader(bytes).GetKeyIndexSet(set, section, L"name"), *indexes != 0);
        CString found;
        for (int i = 0; i < set.Size(); ++i) found += FormatText(L"%d ", set.GetConstRefAt(i));
        EXPECT_EQ(found, indexes);
        XMapInt2CString map;
        EXPECT_EQ(Reader(bytes).GetKeyValueSet(map, section, L"name"), *values != 0);
        EXPECT_EQ(Entries(map), values);
    };
    expect("in the order of the file", "[A]\nname-3=b\nName-1=a\nname=c", L"A", L"3 1 4 ", L"1=a 3=b 4=c ");
    expect("an empty value has its index", "[A]\nname=\n", L"A", L"0 ", L"");
    expect("beginnings of the name are bare", "[A]\nna=a\nname-=b\nx=c", L"A", L"0 1 ", L"0=a 1=b ");
    expect("what follows the number is ignored", "[A]\nname-2x=a\nname--1=b", L"A", L"2 -1 ", L"-1=b 2=a ");
    expect("other names", "[A]\nnames-1=a\naname-1=b\nname1=c", L"A", L"", L"");
    expect("a comma in a name divides it", "[A]\nx,name-7=a", L"A", L"7 ", L"");
    expect("an empty item ends the list", "[A]\nname-1=a\nx,,y=b\nname-2=c", L"A", L"1 ", L"1=a ");
    expect("sections", "[F\\1]\nNAME=a\n[f\\7]\nname=b\n[F\\8]\nx=c\n[F]", L"F\\%d", L"1 7 8 ", L"1=a 7=b ");
    expect("all sections are no family", "[name-1]\nname=a\n[name]", L"", L"", L"");
    expect("behind the largest", "[A]\nname-99999999999=a\nname=", L"A", L"2147483647 -2147483648 ", L"2147483647=a ");
    expect("an empty value leaves its index free", "[A]\nname-1=\nname=b", L"A", L"1 2 ", L"0=b ");
}

TEST_F(XConfigurationTest, RefusesAnIndexThatIsTakenAndAnEmptyPattern) {
    const XConfiguration reader = Reader("[ROOT]\nfile-2=a\nFile-1=b\nfile-01=c\nfile-3=d");
    XSetInt indexes;
    XMapInt2CString values;
    const auto expect = [](auto&& ask, const wchar_t* method, const wchar_t* message) {
        const XException error = ErrorOf(ask);
        EXPECT_EQ(error.GetMessage(), message);
        EXPECT_EQ(error.GetLocation().Find(FormatText(L"<XConfiguration::%s> in [xconfiguration], line [", method)), 0);
    };
    expect([&] { reader.GetKeyIndexSet(indexes, L"ROOT", L"File"); }, L"GetKeyIndexSet",
           L"Multiple options <File> for index <1>!");
    expect([&] { reader.GetKeyValueSet(values, L"ROOT", L"File"); }, L"GetKeyValueSet",
           L"Multiple options <File> for index <1>!");
    EXPECT_EQ(indexes.Size(), 2);
    EXPECT_EQ(Entries(values), L"1=b 2=a ");
    expect([&] { reader.GetKeyIndexSet(indexes, L"ROOT", L"file"); }, L"GetKeyIndexSet",
           L"Multiple options <file> for index <2>!");  // which another source has given
    expect([&] { reader.GetKeyIndexSet(indexes, L"ROOT", L""); }, L"GetKeyIndexSet",
           L"No pattern given which the keys should match!\r\nreason: \tError getting a set of key indexes from config "
           L"section <ROOT>!");
    expect([&] { reader.GetKeyValueSet(values, L"ROOT", L""); }, L"GetKeyValueSet",
           L"No pattern given which the keys should match!\r\nreason: \tError getting a set of key from config section "
           L"<ROOT>!");
}

TEST_F(XConfigurationTest, TellsTheLineOfAnAnswerInAFileThatIsKept) {
    std::string bytes = "[A]\n";
    for (int line = 2; line <= 300; ++line) bytes += ToUtf8(FormatText(L"k%d=v%s", line, line % 3 ? L"\r\n" : L"\n"));
    const XConfiguration reader = Reader(bytes);
    const SourceSnapshot snapshot;
    for (const int line : {2, 64, 65, 66, 128, 129, 300}) {
        CString value;
        SourcePlace place;
        reader.GetKeyValue(value, L"A", FormatText(L"k%d", line), /*assignEmpty*/ true, &place);
        EXPECT_EQ(place.line, line);
    }
}

TEST_F(XConfigurationTest, CutsAListWhereItsBufferEnds) {
    std::string bytes = "[ROOT]\n";
    for (int i = 100; i < 500; ++i) bytes += ToUtf8(FormatText(L"name-%d=v\n", i));  // 9 characters each in the list
    XSetInt indexes;
    Reader(bytes).GetKeyIndexSet(indexes, L"ROOT", L"name");
    ASSERT_EQ(indexes.Size(), 228);
    EXPECT_EQ(indexes.GetConstRefAt(226), 326);
    EXPECT_EQ(indexes.GetConstRefAt(227), 327);  // "nam", where the list is cut: it counts as a bare key
}
