#include "veltrane/foundation/xpath.h"

#include "support/environment.h"
#include "support/support.h"

namespace {

TEST(XPath, AbsoluteIsWhatHoldsAColonOrBeginsWithASlash) {
    for (const wchar_t* path : {L"x:y", L":", L"/srv"}) EXPECT_TRUE(IsAbsolutePath(path));
    for (const wchar_t* path : {L"\\\\server\\share", L"a/b", L""}) EXPECT_FALSE(IsAbsolutePath(path));
}

TEST(XPath, TakesPathsApart) {
    // the whole, then SplitFileName, then GetFileName and GetPath
    const std::tuple<const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*> cases[] = {
        {L"\\file.txt", L"", L"file.txt", L"file.txt", L""},
        {L"C:\\dir\\", L"C:\\dir", L"", L"dir", L"C:\\dir"},
        {L"/srv/a\\b/c", L"/srv/a\\b", L"c", L"c", L"/srv/a\\b"},  // both separators count
        {L"/a\\b", L"/a", L"b", L"b", L"/a"},
        {L"file.txt", L"", L"file.txt", L"file.txt", L""},
        {L"", L"", L"", L"", L""},
    };
    for (const auto& [full, folder, name, last, path] : cases) {
        CString folderPart, namePart;
        SplitFileName(folderPart, namePart, full);
        EXPECT_EQ(std::tuple(folderPart, namePart, GetFileName(full), GetPath(full)),
                  std::tuple(CString{folder}, CString{name}, CString{last}, CString{path}));
    }
}

TEST(XPath, JoinsWithTheSeparatorThatThePathUses) {
    const std::tuple<const wchar_t*, const wchar_t*, const wchar_t*> cases[] = {
        {L"C:\\dir", L"file", L"C:\\dir\\file"}, {L"C:\\dir\\", L"file", L"C:\\dir\\file"}, {L"", L"file", L"file"},
        {L"C:\\dir", L"D:\\x", L"D:\\x"},        {L"C:\\dir\\", L"\\x", L"C:\\dir\\\\x"},  // both separators stay
        {L"C:\\dir", L"\\x", L"C:\\dir\\x"},     {L"/srv/dir", L"file", L"/srv/dir/file"},  {L"dir", L"", L"dir\\"},
    };
    for (const auto& [path, name, joined] : cases) EXPECT_EQ(BuildFileName(path, name), joined);
}

TEST(XPath, LooksForTheDotInTheWholeText) {
    EXPECT_EQ(GetFileNameBase(L"C:\\a.b\\file") + GetFileNameBase(L".ini"), L"C:\\a");
    EXPECT_EQ(GetFileNameExtension(L"setup.old.ini") + GetFileNameExtension(L"README"), L".iniREADME");
}

TEST(XPath, FilesAndFoldersExist) {
    const TempFolder folder;
    folder.Write("Data/Run.log", "x");
    EXPECT_TRUE(FileExists(folder.Wide("Data")));
    EXPECT_TRUE(FileExists(folder.Wide(), L"data\\run.LOG"));
    EXPECT_FALSE(FileExists(folder.Wide("Data"), L"other") || FileExists(L""));
}

}  // namespace
