#include "veltrane/foundation/xstring.h"

#include <climits>

#include "support/support.h"
#include "veltrane/foundation/xpath.h"

TEST(XString, MinOrMaxTakesTheModeExactly) {
    EXPECT_EQ(GetMinOrMax(L"MIN", L"7", L"x"), 0);  // a text that is not a number is read as 0
    EXPECT_EQ(GetMinOrMax(L"min", L"7", L"x"), 7);
    EXPECT_EQ(GetMinOrMax(L"", L"-9", L"-3"), -3);
}

TEST(XString, SplitsAtTheFirstOrLastSeparator) {
    const std::tuple<decltype(&SplitString), const wchar_t*, const wchar_t*, const wchar_t*> cases[] = {
        {SplitString, L"a=b=c", L"a", L"b=c"},
        {SplitString, L"novalue", L"", L"novalue"},
        {SplitStringReverse, L"a=b=c", L"a=b", L"c"},
        {SplitStringReverse, L"=", L"", L""}};
    for (const auto& [split, text, left, right] : cases) {
        CString whole = text, after = L"old";  // the whole may be the target of a part
        split(whole, after, whole, L'=');
        EXPECT_EQ(std::pair(whole, after), std::pair(CString{left}, CString{right}));
    }
}

TEST(XString, GivesFieldsBetweenCommasAsTheyAre) {
    const wchar_t* const fields[] = {L"a", L" b", L"", L"d", L""};
    for (int i = 0; i < 5; ++i) EXPECT_EQ(GetArgument(i, L"a, b,,d"), fields[i]);
    EXPECT_EQ(GetArgument(1, L",b"), L"b");
    EXPECT_EQ(GetArgument(-3, L",b") + GetArgument(INT_MAX, L"a,b"), L"");  // an index below 0 is the first
}

TEST(XString, AddsItemsToAList) {
    CString list;
    for (const wchar_t* item : {L"a", L"", L"b"}) AddString(list, item);
    AddString(list, list);
    EXPECT_EQ(list, L"a, , b, a, , b");
    CString growing(L'a', 999);
    AddString(growing, L"b");
    const wchar_t* const place = growing.GetString();
    AddString(growing, L"c");
    EXPECT_EQ(growing.GetString(), place) << "a list is not copied for each item";
}

TEST(XString, TabulatorsReachTheColumn) {
    EXPECT_EQ(GetTabulator(L"ten chars.", 4), L"\t\t\t");
    EXPECT_EQ(GetTabulator(-1) + GetTabulator(L"12345678", 1) + GetTabulator(L"12345678", INT_MIN), L"");
}

TEST(XPath, AbsoluteIsWhatHoldsAColonOrBeginsWithASlash) {
    for (const wchar_t* path : {L"x:y", L":", L"/srv"}) EXPECT_TRUE(IsAbsolutePath(path));
    for (const wchar_t* path : {L"\\\\server\\share", L"a/b", L""}) EXPECT_FALSE(IsAbsolutePath(path));
}

TEST(XPath, TakesPathsApart) {
    // the whole, then the two parts of SplitFileName, GetFileName and GetPath
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"\\file.txt", L"|file.txt|file.txt|"},      {L"C:\\dir\\", L"C:\\dir||dir|C:\\dir"},
        {L"/srv/a\\b/c", L"/srv/a\\b|c|c|/srv/a\\b"}, {L"/a\\b", L"/a|b|b|/a"},  // both separators count
        {L"file.txt", L"|file.txt|file.txt|"},        {L"", L"|||"},
    };
    for (const auto& [full, parts] : cases) {
        CString folder, name;
        SplitFileName(folder, name, full);
        EXPECT_EQ(folder + L'|' + name + L'|' + GetFileName(full) + L'|' + GetPath(full), parts);
    }
    EXPECT_EQ(GetFileNameBase(L"C:\\a.b\\file") + GetFileNameBase(L".ini"), L"C:\\a");  // the dot may be anywhere
    EXPECT_EQ(GetFileNameExtension(L"setup.old.ini") + GetFileNameExtension(L"README"), L".iniREADME");
}

TEST(XPath, JoinsWithTheSeparatorThatThePathUses) {
    const std::tuple<const wchar_t*, const wchar_t*, const wchar_t*> cases[] = {
        {L"C:\\dir", L"file", L"C:\\dir\\file"}, {L"C:\\dir\\", L"file", L"C:\\dir\\file"}, {L"", L"file", L"file"},
        {L"C:\\dir", L"D:\\x", L"D:\\x"},        {L"C:\\dir\\", L"\\x", L"C:\\dir\\\\x"},  // both separators stay
        {L"C:\\dir", L"\\x", L"C:\\dir\\x"},     {L"/srv/dir", L"file", L"/srv/dir/file"},  {L"dir", L"", L"dir\\"},
    };
    for (const auto& [path, name, joined] : cases) EXPECT_EQ(BuildFileName(path, name), joined);
}

TEST(XPath, FilesAndFoldersExist) {
    const TempFolder folder;
    folder.Write("Data/Run.log", "x");
    EXPECT_TRUE(FileExists(folder.Wide("Data")) && FileExists(folder.Wide(), L"data\\run.LOG"));
    EXPECT_FALSE(FileExists(folder.Wide("Data"), L"other") || FileExists(L""));
}
