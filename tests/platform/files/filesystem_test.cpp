#include "veltrane/platform/files/filesystem.h"
#include "veltrane/platform/sources/profile.h"

#include <sys/stat.h>

#include "support/childprocess.h"
#include "support/support.h"

using std::filesystem::perms;

TEST(FileSystem, FindsEachComponentExactlyOrWithoutRegardToCase) {
    const TempFolder folder;
    const CurrentFolderGuard here{folder.Path()};
    for (const char* name : {"Data/Main.INI", "Data/\xC3\x84rger\xE4.txt", "both/Name", "both/name", "Both/only-here",
                             "order/aB", "order/Ab", "DANGLING"}) {
        folder.Write(name, "");
    }
    std::filesystem::create_symlink("nowhere", "Dangling");
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"letters outside ASCII, no UTF-8", "data/\xC3\xA4RGER\xE4.TXT", "Data/\xC3\x84rger\xE4.txt"},
        {"runs of separators", "data\\//main.ini", "Data/Main.INI"},
        {"trailing separator", "data\\", "Data/"},
        {"dots are left to the system", "data\\..\\DATA/./main.ini", "Data/../Data/./Main.INI"},
        {"exact wins", "both/name", "both/name"},
        {"no second candidate", "both/only-here", "both/only-here"},
        {"first in byte order", "order/AB", "order/Ab"},
        {"missing folder", "DATA/None/Main.ini", "Data/None/Main.ini"},
        {"below a file", "data/main.ini/x", "Data/Main.INI/x"},
        {"a dangling link exists by name", "Dangling", "Dangling"},
    };
    for (const auto& [what, path, mapped] : cases) EXPECT_EQ(MapPath(FromUtf8(path)), mapped) << what;
}

TEST(FileSystem, ReplacesADriveByItsFolder) {
    const TempFolder folder;
    const std::string path = folder.Path().string();
    folder.Write("Deep/File.txt", "");
    SetDriveFolder(L'Z', folder.Wide());
    EXPECT_EQ(MapPath(L"Z:\\deep\\file.TXT"), path + "/Deep/File.txt");
    EXPECT_EQ(MapPath(L"z:deep"), path + "/Deep") << "no separator counts as one";
    EXPECT_EQ(MapPath(L"Z:"), path);
    EXPECT_EQ(MapPath(L"Z:\\..\\deep\\..\\..\\DEEP\\"), path + "/Deep/../Deep/") << "never above the folder";
    SetDriveFolder(L'z', folder.Wide() + L"//");
    EXPECT_EQ(MapPath(L"Z:deep"), path + "/Deep");
    SetDriveFolder(L'z', L"/");
    EXPECT_EQ(SpelledPath(L"Z:\\etc"), "/etc");
    EXPECT_EQ(SpelledPath(L"\\\\server\\share"), "/server/share");
    EXPECT_EQ(SpelledPath(L"\x212A:\\x"), "\xE2\x84\xAA:/x") << "the Kelvin sign is no drive, though it folds to k";
    SetDriveFolder(L'1', L"/tmp");
    SetDriveFolder(-1, L"/tmp");
    EXPECT_EQ(SpelledPath(L"1:x"), "1:x");

    SetDriveFolder(L'z', L"");
    for (const CString& none : {CString{}, CString{std::wstring_view{L"a\0b", 3}}, CString{L"Z:"}, CString{L"z:\\x"}}) {
        EXPECT_EQ(MapPath(none), "");
        EXPECT_EQ(SpelledPath(none), "");
        EXPECT_FALSE(CreateDirectoryW(none));
    }
}

TEST(FileSystem, TakesTheDrivesFromTheEnvironment) {
    const EnvironmentGuard drives{"VORNAK_DRIVES", "C=/srv/c; d=\\data\\;broken;; E=/e;E=;7=/seven;F=/one;F=/two"};
    const ChildResult child = RunTestChild({"drives", "C:\\x", "D:x", "E:\\x", "F:x", "7:/x"});
    EXPECT_EQ(child.output, "/srv/c/x|/data/x||/two/x|7:/x|");
}

TEST(FileSystem, FindsANameThatIsTooLongAsItIsSpelled) {
    const TempFolder folder;
    const CurrentFolderGuard here{folder.Path()};
    const std::string name(100, 'k');
    folder.Write(name, "[s]\nk=v\n");
    const CString path{L'\x212A', 100};  // 300 bytes
    EXPECT_EQ(MapPath(path), name);
    wchar_t value[8];
    EXPECT_EQ(GetPrivateProfileStringW(L"s", L"k", L"none", value, 8, path.GetString()), 1U);
    CString beyond = L".";
    for (int i = 0; i < 20'000; ++i) beyond += L"\\..\\x";
    EXPECT_EQ(MapPath(beyond), SpelledPath(beyond));
}

TEST(FileSystem, LooksOnlyForTheNameAsSpelledInAFolderThatCannotBeRead) {
    const OrdinaryUser user;
    const TempFolder folder;
    const CString name = folder.Write("closed/File", "");
    const CString other = folder.Wide("closed/file");
    std::filesystem::permissions(folder.Path() / "closed", perms::owner_exec);
    for (const CString& path : {name, other}) EXPECT_EQ(MapPath(path), ToUtf8(path));
    std::filesystem::permissions(folder.Path() / "closed", perms::owner_all);
}

TEST(FileSystem, CreatesOneFolderAndNothingElse) {
    const TempFolder folder;
    folder.Write("Old/file", "");
    const mode_t before = umask(027);
    EXPECT_TRUE(CreateDirectoryW(folder.Wide("OLD\\Sub\\")));
    for (const char* path : {"Old/Sub", "old/SUB", "old/FILE", "none/sub", "Old/file/sub"}) {
        EXPECT_FALSE(CreateDirectoryW(folder.Wide(path))) << path;
    }
    umask(before);
    EXPECT_EQ(std::filesystem::status(folder.Path() / "Old/Sub").permissions(), perms{0750});
    EXPECT_FALSE(std::filesystem::exists(folder.Path() / "none"));
}
