#include "veltrane/foundation/xpath.h"

#include "support/environment.h"
#include "support/support.h"
#include "veltrane/foundation/xdebug.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

TEST(XPath, AbsoluteIsWhatHoldsAColonOrBeginsWithASlash) {
    for (const wchar_t* path : {L"x:y", L":", L"/srv"}) EXPECT_TRUE(IsAbsolutePath(path));
    for (const wchar_t* path : {L"\\\\server\\share", L"a/b", L""}) EXPECT_FALSE(IsAbsolutePath(path));
}

TEST(XPath, TakesPathsApart) {
    struct {
        const wchar_t *full, *folder, *name;  // SplitFileName
        const wchar_t *last, *path;           // GetFileName, GetPath
    } const cases[] = {
        {L"\\file.txt", L"", L"file.txt", L"file.txt", L""},
        {L"C:\\dir\\", L"C:\\dir", L"", L"dir", L"C:\\dir"},
        {L"/srv/a\\b/c", L"/srv/a\\b", L"c", L"c", L"/srv/a\\b"},  // both separators count
        {L"/a\\b", L"/a", L"b", L"b", L"/a"},
        {L"file.txt", L"", L"file.txt", L"file.txt", L""},
        {L"", L"", L"", L"", L""},
    };
    for (const auto& [full, folder, name, last, path] : cases) {
        CString folderPart;
        CString namePart;
        SplitFileName(folderPart, namePart, full);
        EXPECT_EQ(folderPart, folder);
        EXPECT_EQ(namePart, name);
        EXPECT_EQ(GetFileName(full), last);
        EXPECT_EQ(GetPath(full), path);
    }
}

TEST(XPath, JoinsWithTheSeparatorThatThePathUses) {
    struct {
        const wchar_t *path, *name, *joined;
    } const cases[] = {
        {L"C:\\dir", L"file", L"C:\\dir\\file"}, {L"C:\\dir\\", L"file", L"C:\\dir\\file"}, {L"", L"file", L"file"},
        {L"C:\\dir", L"D:\\x", L"D:\\x"},        {L"C:\\dir\\", L"\\x", L"C:\\dir\\\\x"},  // both separators stay
        {L"C:\\dir", L"\\x", L"C:\\dir\\x"},     {L"/srv/dir", L"file", L"/srv/dir/file"},  {L"dir", L"", L"dir\\"},
    };
    for (const auto& [path, name, joined] : cases) EXPECT_EQ(BuildFileName(path, name), joined);
}

TEST(XPath, LooksForTheDotInTheWholeText) {
    EXPECT_EQ(GetFileNameBase(L"C:\\a.b\\file"), L"C:\\a");
    EXPECT_EQ(GetFileNameBase(L".ini"), L"");
    EXPECT_EQ(GetFileNameExtension(L"setup.old.ini"), L".ini");
    EXPECT_EQ(GetFileNameExtension(L"README"), L"README");
}

TEST(XPath, FilesAndFoldersExist) {
    const TempFolder folder;
    folder.Write("Data/Run.log", "x");
    EXPECT_TRUE(FileExists(folder.Wide("Data")));
    EXPECT_TRUE(FileExists(folder.Wide(), L"data\\run.LOG"));
    EXPECT_FALSE(FileExists(folder.Wide("Data"), L"other"));
    EXPECT_FALSE(FileExists(L""));
}

TEST(XDebug, PrintsInAnInformationBoxWhileOn) {
    BoxRecorder recorder;
    PrintDebug(L"unseen");
    SetDebug(true);
    PrintDebug(L"%s seen");
    SetDebug(false);
    ASSERT_EQ(recorder.boxes.size(), 1U);
    EXPECT_EQ(recorder.boxes[0].text, L"%s seen");
    EXPECT_EQ(recorder.boxes[0].style, 0x40U);
}

}  // namespace
