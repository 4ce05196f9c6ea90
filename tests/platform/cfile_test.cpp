#include "platform/cfile.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <cerrno>
#include <filesystem>

#include "platform/filesystem.h"
#include "support/childprocess.h"
#include "support/environment.h"
#include "support/folder.h"
#include "support/support.h"

namespace {

CString FullName(const CString& path) {
    CFileStatus status{L"untouched"};
    CFile::GetStatus(path, status);
    return status.m_szFullName;
}

TEST(CFile, SeesWhateverExists) {
    const TempFolder folder;
    folder.Write("Data/File.txt", "");
    std::filesystem::create_symlink("Data/File.txt", folder.Path() / "link");
    std::filesystem::create_symlink("nowhere", folder.Path() / "dangling");
    struct {
        const char* what;
        const char* path;
        bool exists;
    } const cases[] = {
        {"file", "Data/File.txt", true},
        {"file in other case", "data\\file.TXT", true},
        {"folder", "data", true},
        {"folder with a separator", "data\\", true},
        {"file with a separator", "Data/File.txt\\", false},
        {"link", "LINK", true},
        {"dangling link", "dangling", false},
        {"nothing", "none", false},
        {"below a file", "link/x", false},
    };
    for (const auto& [what, path, exists] : cases) {
        SCOPED_TRACE(what);
        const CString wide = folder.Wide(path);
        EXPECT_EQ(FullName(wide), exists ? wide : CString{L"untouched"});
    }
    EXPECT_EQ(FullName(L""), L"untouched");
    EXPECT_EQ(FullName(CString{std::wstring_view{L"/\0", 2}}), L"untouched");
}

TEST(CFile, NeedsNoRightToOpen) {
    const TempFolder folder;
    const CString path = folder.Write("secret", "");
    std::filesystem::permissions(folder.Path(), std::filesystem::perms{0711});
    std::filesystem::permissions(folder.Path() / "secret", std::filesystem::perms::none);
    const OrdinaryUser user;
    EXPECT_EQ(FullName(path), path);
}

TEST(CFile, ResolvesDotsOfTheFullNameByText) {
    const TempFolder folder;
    folder.Write("a/b/file", "");
    SetDriveFolder(L'Y', folder.Wide());
    struct {
        const wchar_t* path;
        const wchar_t* full;
    } const cases[] = {
        {L"Y:\\a\\b\\file", L"Y:\\a\\b\\file"},
        {L"y:/A\\b\\..\\B\\.\\FILE", L"y:/A\\B\\FILE"},
        {L"Y:\\a\\b\\..", L"Y:\\a"},
        {L"Y:\\a\\b\\.", L"Y:\\a\\b"},
        {L"Y:\\a\\b\\..\\", L"Y:\\a\\"},
        {L"Y:\\a\\..", L"Y:\\"},
        {L"Y:\\a\\\\b\\\\..\\b", L"Y:\\a\\\\b"},
        {L"Y:a\\b\\..", L"Y:a"},
        {L"Y:", L"Y:"},
        {L"/.", L"/"},
        {L"/..", L"/"},
        {L"/../../tmp", L"/tmp"},
    };
    for (const auto& [path, full] : cases) {
        SCOPED_TRACE(ToUtf8(CString{path}));
        EXPECT_EQ(FullName(path), full);
    }
    SetDriveFolder(L'Y', L"");
}

TEST(CFile, PutsTheCurrentFolderInFrontOfARelativePath) {
    const TempFolder folder;
    folder.Write("Sub/..a/file", "");
    const CurrentFolderGuard here{folder.Path()};
    EXPECT_EQ(FullName(L"sub\\..a\\FILE"), folder.Wide("sub/..a/FILE"));
    EXPECT_EQ(FullName(L"Sub\\..\\.\\Sub"), folder.Wide("Sub"));
    EXPECT_EQ(FullName(L"."), folder.Wide());
    EXPECT_EQ(FullName(L".."), FromUtf8(folder.Path().parent_path().string()));
    const CurrentFolderGuard root{"/"};
    EXPECT_EQ(FullName(L"tmp"), L"/tmp");
}

TEST(CStdioFile, StandardStreamsThatAreClosedAreNotTakenForFiles) {
    const TempFolder folder;
    const CString path = folder.Wide("run.log");
    const ChildResult child = RunChild([&] {
        close(STDERR_FILENO);
        CStdioFile file;
        if (!file.Open(path, CFile::modeCreate | CFile::modeWrite | CFile::shareDenyWrite)) return 1;
        file.WriteString(L"entry");
        AfxMessageBox(L"a box on standard error");
        return 0;
    });
    EXPECT_EQ(child.exitCode, 0);
    EXPECT_EQ(folder.Read("run.log"), "entry");
}

TEST(CStdioFile, TheLimitOfAFileIsAFailureAndNoSignal) {
    const TempFolder folder;
    const CString path = folder.Wide("run.log");
    const ChildResult child = RunChild([&] {
        const rlimit limit{10, 10};
        setrlimit(RLIMIT_FSIZE, &limit);
        CStdioFile file;
        if (!file.Open(path, CFile::modeCreate | CFile::modeWrite | CFile::shareDenyWrite)) return 1;
        try {
            file.WriteString(L"more than ten bytes");
        } catch (const CFileException& error) {
            return error.m_lOsError == EFBIG && error.m_cause == CFileException::genericException ? 0 : 2;
        }
        return 3;
    });
    EXPECT_EQ(child.exitCode, 0);
}

}  // namespace
