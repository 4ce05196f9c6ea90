#include "veltrane/platform/files/cfile.h"

#include <climits>

#include "support/support.h"
#include "veltrane/platform/files/filesystem.h"
#include "veltrane/platform/sources/profile.h"

constexpr const wchar_t* NOTHING = L"untouched";

static CString FullName(const CString& path) {
    CFileStatus status{NOTHING};
    const bool isThere = CFile::GetStatus(path, status);
    EXPECT_EQ(isThere, status.m_szFullName != NOTHING);
    return status.m_szFullName;
}

TEST(CFile, GivesTheFullNameOfWhateverExists) {
    const OrdinaryUser user;
    const TempFolder folder;
    folder.Write("a/b/file", "");
    std::filesystem::permissions(folder.Path() / "a/b/file", std::filesystem::perms::none);  // no right is needed
    std::filesystem::create_symlink("a/b/file", folder.Path() / "link");
    std::filesystem::create_symlink("nowhere", folder.Path() / "dangling");
    std::filesystem::create_symlink("a/b/below", folder.Path() / "to");
    folder.Write("a/b/below/x", "");
    SetDriveFolder(L'Y', folder.Wide());
    for (const wchar_t drive : {L'A', L'Z'}) SetDriveFolder(drive, folder.Wide("a/b/below"));
    const std::pair<CString, const wchar_t*> cases[] = {
        {L"Y:\\A\\b\\FILE", L"Y:\\A\\b\\FILE"},
        {L"Y:\\a\\b\\file\\", NOTHING},
        {L"Y:\\LINK", L"Y:\\LINK"},
        {L"Y:\\dangling", NOTHING},
        {L"Y:\\link\\below", NOTHING},
        {L"y:/A\\b\\..\\B\\.\\FILE", L"y:/A\\B\\FILE"},
        {L"Y:\\a\\b\\..", L"Y:\\a"},
        {L"Y:\\a\\b\\.", L"Y:\\a\\b"},
        {L"Y:\\a\\b\\..\\", L"Y:\\a\\"},
        {L"Y:\\a\\..", L"Y:\\"},
        {L"Y:\\a\\\\b\\\\..\\b", L"Y:\\a\\\\b"},
        {L"Y:a\\..", L"Y:"},
        {L"A:\\..\\x", L"A:\\x"},
        {L"Z:\\..\\x", L"Z:\\x"},
        {L"Y:\\..\\a\\b", L"Y:\\a\\b"},
        {L"Y:\\to\\..\\file", L"Y:\\to\\..\\file"},
        {L"Y:\\to\\..\\..\\below\\x", L"Y:\\to\\..\\..\\below\\x"},
        {L"/.", L"/"},
        {L"/../../tmp", L"/tmp"},
    };
    for (const auto& [path, full] : cases) EXPECT_EQ(FullName(path), full) << ToUtf8(path);
    for (const wchar_t drive : {L'A', L'Y', L'Z'}) SetDriveFolder(drive, L"");
    for (const CString& none : {CString{}, CString{std::wstring_view{L"/\0", 2}}}) EXPECT_EQ(FullName(none), NOTHING);
}

TEST(CFile, PutsTheCurrentFolderInFrontOfARelativePath) {
    const TempFolder folder;
    folder.Write("Sub/..a/file", "");
    const CurrentFolderGuard here{folder.Path()};
    EXPECT_EQ(FullName(L"sub\\..a\\FILE"), folder.Wide("sub/..a/FILE"));
    EXPECT_EQ(FullName(L"Sub\\..\\.\\Sub"), folder.Wide("Sub"));
    EXPECT_EQ(FullName(L".."), FromUtf8(folder.Path().parent_path().string()));
    const CurrentFolderGuard odd{(folder.Write("odd\\name/here", "[s]\nk=v\n"), folder.Path() / "odd\\name")};
    EXPECT_EQ(FullName(L"..\\odd\\..\\Sub"), NOTHING) << "two components in a path, one in the folder's name";
    EXPECT_EQ(FullName(L".\\HERE"), folder.Wide("odd\\name/HERE"));
    wchar_t value[8];
    EXPECT_EQ(GetPrivateProfileStringW(L"s", L"k", L"", value, 8, FullName(L"here").GetString()), 1U);
    const CurrentFolderGuard root{"/"};
    EXPECT_EQ(FullName(L"tmp"), L"/tmp");
}

TEST(CFileException, MapsTheSystemsNumbersToCauses) {
    const std::pair<int, std::vector<long>> cases[] = {
        {0, {0}},
        {1, {EINVAL, ENXIO, EFBIG, EEXIST, -1, -ENOENT, LONG_MAX, LONG_MIN, 0x100000000L + ENOENT}},
        {2, {ENOENT}},
        {3, {ENOTDIR, ENAMETOOLONG, ELOOP}},
        {4, {EMFILE, ENFILE}},
        {5, {EACCES, EPERM, EROFS, EISDIR}},
        {6, {EBADF}},
        {8, {EMLINK}},
        {9, {ESPIPE}},
        {10, {EIO}},
        {11, {EAGAIN, EWOULDBLOCK, EBUSY, ETXTBSY}},
        {12, {ENOLCK, EDEADLK}},
        {13, {ENOSPC, EDQUOT}},
    };
    for (const auto& [cause, numbers] : cases) {
        for (const long number : numbers) EXPECT_EQ(CFileException::OsErrorToException(number), cause) << number;
    }
}

TEST(CFileException, SaysWhatHappened) {
    using E = CFileException;
    EXPECT_STREQ(E(E::diskFull, ENOSPC, L"ä.log").what(), "File <ä.log>: Disk full! (No space left on device)");
    EXPECT_STREQ(E{}.what(), "None!");
}
