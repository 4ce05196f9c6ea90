#include "veltrane/config/xconfiguration.h"

#include <string>
#include <vector>

#include "support/environment.h"
#include "support/support.h"
#include "veltrane/platform/sources/snapshot.h"
#include "veltrane/platform/text/numbers.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

// "1=a 2=b"
std::string Entries(XMapInt2CString& map) {
    std::string entries;
    CString text;
    for (int key = map.GetFirst(text); !text.IsEmpty(); key = map.GetNext(text)) {
        entries.append(entries.empty() ? "" : " ").append(std::to_string(key)).append("=").append(ToUtf8(text));
    }
    return entries;
}

class Configuration : public testing::Test {
protected:
    XConfiguration Reader(const std::string& bytes) const { return XConfiguration{m_Folder.Write("tool.ini", bytes)}; }

    TempFolder m_Folder;
};

TEST_F(Configuration, GetsOneValueOrAListOfNames) {
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
    expect("a missing section", L"absent", L"", nullptr);
    expect("a section without keys", L"user", L"", nullptr);
}

TEST_F(Configuration, GetsTheIndexesAndTheValuesOfAFamily) {
    const auto expect = [&](const char* what, const char* bytes, const wchar_t* section,
                            const std::vector<int>& indexes, const char* values) {
        SCOPED_TRACE(what);
        XSetInt set;
        EXPECT_EQ(Reader(bytes).GetKeyIndexSet(set, section, L"name"), !indexes.empty());
        ASSERT_EQ(set.Size(), static_cast<int>(indexes.size()));
        for (int i = 0; i < set.Size(); ++i) EXPECT_EQ(set.GetConstRefAt(i), indexes[static_cast<std::size_t>(i)]);
        XMapInt2CString map;
        EXPECT_EQ(Reader(bytes).GetKeyValueSet(map, section, L"name"), *values != 0);
        EXPECT_EQ(Entries(map), values);
    };
    expect("in the order of the file", "[A]\nname-3=b\nName-1=a\nname=c", L"A", {3, 1, 4}, "1=a 3=b 4=c");
    expect("an empty value has its index", "[A]\nname=\n", L"A", {0}, "");
    expect("beginnings of the name are bare", "[A]\nna=a\nname-=b\nx=c", L"A", {0, 1}, "0=a 1=b");
    expect("what follows the number is ignored", "[A]\nname-2x=a\nname--1=b", L"A", {2, -1}, "-1=b 2=a");
    expect("other names", "[A]\nnames-1=a\naname-1=b\nname1=c", L"A", {}, "");
    expect("a comma in a name divides it", "[A]\nx,name-7=a", L"A", {7}, "");
    expect("an empty item ends the list", "[A]\nname-1=a\nx,,y=b\nname-2=c", L"A", {1}, "1=a");
    expect("sections", "[F\\1]\nNAME=a\n[f\\7]\nname=b\n[F\\8]\nx=c\n[F]", L"F\\%d", {1, 7, 8}, "1=a 7=b");
    expect("all sections are no family", "[name-1]\nname=a\n[name]", L"", {}, "");
    expect("behind the largest", "[A]\nname-99999999999=a\nname=", L"A", {INT_MAX, INT_MIN}, "2147483647=a");
    expect("signs in a section", "[50%_a%n\\3]\nname=a", L"50%_A%n\\%d", {3}, "3=a");
    XMapInt2CString map;
    Reader("[A]\nname-1=\nname-01=a\nname=b").GetKeyValueSet(map, L"A", L"name");
    EXPECT_EQ(Entries(map), "1=a 2=b") << "an empty value leaves its index free";
}

TEST_F(Configuration, RefusesAnIndexThatIsTakenAndAnEmptyPattern) {
    const XConfiguration reader = Reader("[ROOT]\nfile-2=a\nFile-1=b\nfile-01=c\nfile-3=d");
    const auto expect = [](const XException& error, const CString& message, const CString& location) {
        EXPECT_EQ(error.GetMessage(), message);
        EXPECT_EQ(error.GetNumber(), -1);
        EXPECT_EQ(error.GetLocation().Find(location), 0);
    };
    const CString twice = L"Multiple options <File> for index <1>!";
    const CString empty = L"No pattern given which the keys should match!\r\nreason: \tError getting a set of key";
    const CString indexSite = L"<XConfiguration::GetKeyIndexSet> in [xconfiguration], line [";
    const CString valueSite = L"<XConfiguration::GetKeyValueSet> in [xconfiguration], line [";
    XSetInt indexes;
    XMapInt2CString values;
    expect(ErrorOf([&] { reader.GetKeyIndexSet(indexes, L"ROOT", L"File"); }), twice, indexSite);
    expect(ErrorOf([&] { reader.GetKeyValueSet(values, L"ROOT", L"File"); }), twice, valueSite);
    EXPECT_EQ(indexes.Size(), 2);
    EXPECT_EQ(Entries(values), "1=b 2=a");
    expect(ErrorOf([&] { reader.GetKeyIndexSet(indexes, L"ROOT", L"file"); }),
           L"Multiple options <file> for index <2>!", indexSite);  // that is there from elsewhere
    expect(ErrorOf([&] { reader.GetKeyIndexSet(indexes, L"ROOT", L""); }),
           empty + L" indexes from config section <ROOT>!", indexSite);
    const XException error = ErrorOf([&] { reader.GetKeyValueSet(values, L"ROOT", L""); });
    expect(error, empty + L" from config section <ROOT>!", valueSite);
    const CString location = error.GetLocation();
    const int second = location.Find(valueSite, 1);
    EXPECT_GT(second, 0);
    const auto lineAt = [&](int at) { return _wtoi(location.Mid(at + valueSite.GetLength())); };
    EXPECT_NE(lineAt(0), lineAt(second)) << "each level has its own line";
}

TEST_F(Configuration, GetsTheKeyNamesOfEachSectionOfAForm) {
    XMapInt2CString names;
    const XConfiguration reader =
        Reader("[TABLENAME RULES\\1]\nA=1\nb=2\n[tablename  rules\\2]\n[Tablename rules\\3]\nc=\n[RULES\\4]\nd=1");
    EXPECT_TRUE(XConfiguration{m_Folder.Wide("absent.ini")}.GetOptionNameSet(names, L"TABLENAME RULES\\%d"));
    EXPECT_EQ(names.Size(), 0);
    EXPECT_TRUE(reader.GetOptionNameSet(names, L"TABLENAME RULES\\%d"));
    EXPECT_EQ(Entries(names), "1=A,b 3=c");
}

TEST_F(Configuration, TellsTheLineOfAnAnswerInAFileThatIsKept) {
    std::string bytes = "[A]\n";
    for (int line = 2; line <= 300; ++line)
        bytes.append("k").append(std::to_string(line)).append(line % 3 == 0 ? "=value\n" : "=value\r\n");
    const XConfiguration reader = Reader(bytes);
    const SourceSnapshot snapshot;
    for (const int line : {2, 64, 65, 66, 128, 129, 300}) {
        CString value;
        SourcePlace place;
        reader.GetKeyValue(value, L"A", FormatText(L"k%d", line), /*assignEmpty*/ true, &place);
        EXPECT_EQ(place.line, line);
    }
}

TEST_F(Configuration, CutsListsAndValuesWhereTheirBufferEnds) {
    std::string bytes = "[ROOT]\n";
    for (int i = 100; i < 500; ++i) bytes += "name-" + std::to_string(i) + "=v\n";  // 9 characters each
    XSetInt indexes;
    Reader(bytes).GetKeyIndexSet(indexes, L"ROOT", L"name");
    ASSERT_EQ(indexes.Size(), 228);
    EXPECT_EQ(indexes.GetConstRefAt(226), 326);
    EXPECT_EQ(indexes.GetConstRefAt(227), 327);  // "nam", where the list is cut: it counts as a bare key
}

}  // namespace
