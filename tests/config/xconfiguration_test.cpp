#include "config/xconfiguration.h"

#include <map>
#include <string>
#include <vector>

#include "support/environment.h"
#include "support/support.h"

namespace {

using Values = std::map<int, std::wstring>;

class Configuration : public testing::Test {
protected:
    XConfiguration Reader(const std::string& bytes) const { return XConfiguration{m_Folder.Write("tool.ini", bytes)}; }
    std::vector<int> Indexes(const std::string& bytes, const wchar_t* section, const wchar_t* pattern) const {
        XSetInt set;
        const bool isFound = Reader(bytes).GetKeyIndexSet(set, section, pattern);
        EXPECT_EQ(isFound, !set.IsEmpty());
        std::vector<int> indexes;
        for (int i = 0; i < set.Size(); ++i) indexes.push_back(set.GetConstRefAt(i));
        return indexes;
    }
    Values ValuesOf(const std::string& bytes, const wchar_t* section, const wchar_t* pattern) const {
        XMapInt2CString map;
        const bool isFound = Reader(bytes).GetKeyValueSet(map, section, pattern);
        EXPECT_EQ(isFound, map.Size() > 0);
        return Entries(map);
    }
    static Values Entries(XMapInt2CString& map) {
        Values values;
        CString text;
        for (int key = map.GetFirst(text); !text.IsEmpty(); key = map.GetNext(text)) values[key] = text.View();
        return values;
    }

    TempFolder m_Folder;
};

TEST_F(Configuration, GetsOneValueOrAListOfNames) {
    struct {
        const char* what;
        const wchar_t* section;
        const wchar_t* key;
        const wchar_t* value;  // null: not found
    } const cases[] = {
        {"a value", L"root", L"FILE", L"a, b"},
        {"the names of the keys", L"root", L"", L"File,empty,x"},
        {"the names of the sections", L"", L"File", L"ROOT,USER"},
        {"an empty value", L"root", L"empty", nullptr},
        {"a missing key", L"root", L"absent", nullptr},
        {"a missing section", L"absent", L"", nullptr},
        {"a section without keys", L"user", L"", nullptr},
    };
    const XConfiguration reader = Reader("[ROOT]\nFile=a, b\nempty=\nx=1\n[USER]\n");
    for (const auto& [what, section, key, expected] : cases) {
        SCOPED_TRACE(what);
        CString value = L"before";
        EXPECT_EQ(reader.GetKeyValue(value, section, key, /*assignEmpty*/ false), expected != nullptr);
        EXPECT_EQ(value, expected ? expected : L"before");
        EXPECT_TRUE(reader.GetKeyValue(value, section, key, /*assignEmpty*/ true));
        EXPECT_EQ(value, expected ? expected : L"");
    }
}

TEST_F(Configuration, FindsNothingWithoutItsFile) {
    const XConfiguration reader{m_Folder.Wide("absent.ini")};
    CString value = L"before";
    EXPECT_FALSE(reader.GetKeyValue(value, L"", L"", /*assignEmpty*/ false));
    EXPECT_EQ(value, L"before");
    XSetInt indexes;
    EXPECT_FALSE(reader.GetKeyIndexSet(indexes, L"ROOT", L"file"));
    XMapInt2CString names;
    EXPECT_TRUE(reader.GetOptionNameSet(names, L"RULES\\%d"));
    EXPECT_EQ(names.Size(), 0);
}

TEST_F(Configuration, GetsTheIndexesOfAFamily) {
    struct {
        const char* what;
        const char* bytes;
        const wchar_t* section;
        std::vector<int> indexes;
    } const cases[] = {
        {"keys in file order, the bare one behind the largest",
         "[ROOT]\nFile-1=a\nfile-3=b\nfile=c",
         L"ROOT",
         {1, 3, 4}},
        {"the first bare key is 0", "[ROOT]\nfile=\n", L"ROOT", {0}},
        {"the beginnings of the name count as bare", "[ROOT]\nfi=a\nfile-=b\nx=c", L"ROOT", {0, 1}},
        {"what follows the number is ignored", "[ROOT]\nfile-2x=a\nfile--1=b", L"ROOT", {2, -1}},
        {"other names", "[ROOT]\nfiles-1=a\nafile-1=b\nfile1=c", L"ROOT", {}},
        {"a comma in a name divides it", "[ROOT]\nx,file-7=a", L"ROOT", {7}},
        {"an empty item ends the list", "[ROOT]\nfile-1=a\nx,,y=b\nfile-2=c", L"ROOT", {1}},
        {"sections", "[FILES\\1]\n[files\\7]\n[FILES]\n[ROOT]", L"FILES\\%d", {1, 7}},
        {"all sections are no family", "[file-1]\n[file]", L"", {}},
        {"the largest index has a successor",
         "[ROOT]\nfile-99999999999=a\nfile=b",
         L"ROOT",
         {2147483647, -2147483647 - 1}},
        {"a database name with signs", "[50%_a%n\\3]\n", L"50%_A%n\\%d", {3}},
    };
    for (const auto& [what, bytes, section, indexes] : cases) {
        SCOPED_TRACE(what);
        EXPECT_EQ(Indexes(bytes, section, L"file"), indexes);
    }
}

TEST_F(Configuration, GetsTheValuesOfAFamily) {
    struct {
        const char* what;
        const char* bytes;
        const wchar_t* section;
        Values values;
    } const cases[] = {
        {"keys", "[ROOT]\nName-1=a\nname-3=b\nname=c", L"ROOT", {{1, L"a"}, {3, L"b"}, {4, L"c"}}},
        {"an empty value leaves its index free", "[ROOT]\nname-1=\nname-01=a\nname=b", L"ROOT", {{1, L"a"}, {2, L"b"}}},
        {"sections", "[FILES\\1]\nNAME=a\n[FILES\\7]\nname=b\n[FILES\\8]\nx=c", L"FILES\\%d", {{1, L"a"}, {7, L"b"}}},
        {"no section given", "[name-1]\nname=a", L"", {}},
    };
    for (const auto& [what, bytes, section, values] : cases) {
        SCOPED_TRACE(what);
        EXPECT_EQ(ValuesOf(bytes, section, L"name"), values);
    }
}

TEST_F(Configuration, RefusesAnIndexThatIsTaken) {
    const XConfiguration reader = Reader("[ROOT]\nfile-2=a\nFile-1=b\nfile-01=c\nfile-3=d");
    XSetInt indexes;
    XException error = ErrorOf([&] { reader.GetKeyIndexSet(indexes, L"ROOT", L"File"); });
    EXPECT_EQ(error.GetMessage(), L"Multiple options <File> for index <1>!");
    EXPECT_EQ(error.GetNumber(), -1);
    EXPECT_EQ(error.GetLocation().Find(L"<XConfiguration::GetKeyIndexSet> in [xconfiguration], line ["), 0);
    EXPECT_EQ(indexes.Size(), 2);

    XMapInt2CString values;
    error = ErrorOf([&] { reader.GetKeyValueSet(values, L"ROOT", L"File"); });
    EXPECT_EQ(error.GetMessage(), L"Multiple options <File> for index <1>!");
    EXPECT_EQ(error.GetLocation().Find(L"<XConfiguration::GetKeyValueSet> in [xconfiguration], line ["), 0);
    EXPECT_EQ(Entries(values), (Values{{1, L"b"}, {2, L"a"}}));

    XSetInt fromElsewhere;
    fromElsewhere.Insert(2);
    error = ErrorOf([&] { reader.GetKeyIndexSet(fromElsewhere, L"ROOT", L"file"); });
    EXPECT_EQ(error.GetMessage(), L"Multiple options <file> for index <2>!");
}

TEST_F(Configuration, RefusesAnEmptyPattern) {
    const XConfiguration reader = Reader("[ROOT]\n=a");
    XSetInt indexes;
    XMapInt2CString values;
    XException error = ErrorOf([&] { reader.GetKeyIndexSet(indexes, L"ROOT", L""); });
    EXPECT_EQ(error.GetMessage(),
              L"No pattern given which the keys should match!\r\n"
              L"reason: \tError getting a set of key indexes from config section <ROOT>!");
    error = ErrorOf([&] { reader.GetKeyValueSet(values, L"ROOT", L""); });
    EXPECT_EQ(error.GetMessage(),
              L"No pattern given which the keys should match!\r\n"
              L"reason: \tError getting a set of key from config section <ROOT>!");
    EXPECT_EQ(error.GetNumber(), -1);
    EXPECT_EQ(error.GetLocation().Find(L"<XConfiguration::GetKeyValueSet> in [xconfiguration], line ["), 0);
    EXPECT_GT(error.GetLocation().Find(L"<XConfiguration::GetKeyValueSet>", 1), 0);
}

TEST_F(Configuration, GetsTheKeyNamesOfEachSectionOfAForm) {
    XMapInt2CString names;
    const XConfiguration reader =
        Reader("[TABLENAME RULES\\1]\nA=1\nb=2\n[tablename  rules\\2]\n[Tablename rules\\3]\nc=\n[RULES\\4]\nd=1");
    EXPECT_TRUE(reader.GetOptionNameSet(names, L"TABLENAME RULES\\%d"));
    EXPECT_EQ(Entries(names), (Values{{1, L"A,b"}, {3, L"c"}}));
}

TEST_F(Configuration, CutsListsAndValuesWhereTheirBufferEnds) {
    std::string bytes = "[ROOT]\n";
    for (int i = 100; i < 500; ++i) bytes += "file-" + std::to_string(i) + "=v\n";  // 9 characters each
    const std::vector<int> indexes = Indexes(bytes, L"ROOT", L"file");
    ASSERT_EQ(indexes.size(), 228U);
    EXPECT_EQ(indexes[226], 326);
    EXPECT_EQ(indexes[227], 327);  // "fil", where the list is cut: it counts as a bare key
}

}  // namespace
