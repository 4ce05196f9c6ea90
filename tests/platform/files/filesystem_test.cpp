#include "veltrane/platform/files/filesystem.h"
#include "veltrane/platform/sources/profile.h"

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "support/childprocess.h"
#include "support/support.h"

using std::filesystem::perms;

class FileSystem : public testing::Test {
protected:
    /// What MapPath makes of a path below the folder, without the folder.
    std::string Mapped(const std::string& path) const {
        const std::string name = MapPath(m_Folder.Wide(path));
        EXPECT_TRUE(name.starts_with(m_Path + '/')) << name;
        return name.substr(m_Path.size() + 1);
    }
    /// Whether a profile file with the entry "k=v" in the section "s" answers.
    static bool Answers(const CString& file) {
        wchar_t value[8];
        return GetPrivateProfileStringW(L"s", L"k", L"none", value, 8, file.GetString()) == 1;
    }

    TempFolder m_Folder;
    std::string m_Path = m_Folder.Path().string();
};

TEST_F(FileSystem, TakesEachComponentExactlyOrWithoutRegardToCase) {
    for (const char* name : {"Data/Main.INI", "Data/\xC3\x84rger\xE4.txt", "both/Name", "both/name", "Both/only-here",
                             "order/aB", "order/Ab", "DANGLING"}) {
        m_Folder.Write(name, "");
    }
    std::filesystem::create_symlink("nowhere", m_Folder.Path() / "Dangling");
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"letters outside ASCII, no UTF-8", "data/\xC3\xA4RGER\xE4.TXT", "Data/\xC3\x84rger\xE4.txt"},
        {"runs of separators", "data\\//main.ini", "Data/Main.INI"},
        {"trailing separator", "data\\", "Data/"},
        {"dots are left to the system", "data/../DATA/./main.ini", "Data/../Data/./Main.INI"},
        {"exact wins", "both/name", "both/name"},
        {"no second candidate", "both/only-here", "both/only-here"},
        {"first in byte order", "order/AB", "order/Ab"},
        {"missing folder", "DATA/None/Main.ini", "Data/None/Main.ini"},
        {"below a file", "data/main.ini/x", "Data/Main.INI/x"},
        {"a dangling link exists by name", "Dangling", "Dangling"},
    };
    for (const auto& [what, path, mapped] : cases) EXPECT_EQ(Mapped(path), mapped) << what;

    const CurrentFolderGuard here{m_Folder.Path()};
    EXPECT_EQ(MapPath(L"data\\..\\.\\DATA"), "Data/.././Data");
}

TEST_F(FileSystem, ReplacesADriveByItsFolder) {
    m_Folder.Write("Deep/File.txt", "");
    SetDriveFolder(L'Z', m_Folder.Wide());
    EXPECT_EQ(MapPath(L"Z:\\deep\\file.TXT"), m_Path + "/Deep/File.txt");
    EXPECT_EQ(MapPath(L"z:deep"), m_Path + "/Deep") << "no separator counts as one";
    EXPECT_EQ(MapPath(L"Z:"), m_Path);
    EXPECT_EQ(MapPath(L"Z:\\..\\deep\\..\\..\\DEEP\\"), m_Path + "/Deep/../Deep/") << "never above the folder";
    SetDriveFolder(L'z', m_Folder.Wide() + L"//");
    EXPECT_EQ(MapPath(L"Z:deep"), m_Path + "/Deep");
    SetDriveFolder(L'z', L"/");
    EXPECT_EQ(SpelledPath(L"Z:\\etc"), "/etc");
    EXPECT_EQ(SpelledPath(L"\\\\server\\share"), "/server/share");
    EXPECT_EQ(SpelledPath(L"\x212A:\\x"), "\xE2\x84\xAA:/x") << "the Kelvin sign is no drive, though it folds to k";
    SetDriveFolder(L'1', L"/tmp");
    SetDriveFolder(-1, L"/tmp");
    EXPECT_EQ(SpelledPath(L"1:x"), "1:x");

    SetDriveFolder(L'z', L"");
    for (const CString& path : {CString{}, CString{std::wstring_view{L"a\0b", 3}}, CString{L"Z:"}, CString{L"z:\\x"}}) {
        EXPECT_EQ(MapPath(path), "");
        EXPECT_EQ(SpelledPath(path), "");
        EXPECT_FALSE(CreateDirectoryW(path));
    }
}

TEST_F(FileSystem, TakesTheDrivesFromTheEnvironment) {
    const EnvironmentGuard drives{"VORNAK_DRIVES", "C=/srv/c; d=\\data\\;broken;; E=/e;E=;7=/seven;F=/one;F=/two"};
    const ChildResult child = RunTestChild({"drives", "C:\\x", "D:x", "E:\\x", "F:x", "7:/x"});
    EXPECT_EQ(child.output, "/srv/c/x|/data/x||/two/x|7:/x|");
}

TEST_F(FileSystem, FindsANameThatIsTooLongAsItIsSpelled) {
    const std::string name(100, 'k');
    m_Folder.Write(name, "[s]\nk=v\n");
    const CString path = m_Folder.Wide() + L"/" + CString{L'\x212A', 100};  // 300 bytes
    EXPECT_EQ(MapPath(path), m_Path + '/' + name);
    EXPECT_TRUE(Answers(path));
    CString beyond = m_Folder.Wide();
    for (int i = 0; i < 20'000; ++i) beyond += L"\\..\\x";
    EXPECT_EQ(MapPath(beyond), SpelledPath(beyond));
}

TEST_F(FileSystem, LooksOnlyForTheNameAsSpelledInAFolderThatCannotBeRead) {
    m_Folder.Write("closed/File", "");
    const auto closed = m_Folder.Path() / "closed";
    std::filesystem::permissions(m_Folder.Path(), perms::others_exec | perms::owner_all);
    std::filesystem::permissions(closed, perms::owner_exec | perms::others_exec);
    {
        const OrdinaryUser user;
        for (const char* name : {"closed/file", "closed/File"}) EXPECT_EQ(Mapped(name), name);
    }
    std::filesystem::permissions(closed, perms::owner_all);
}

TEST_F(FileSystem, CreatesOneFolderAndNothingElse) {
    m_Folder.Write("Old/file", "");
    const mode_t before = umask(027);
    EXPECT_TRUE(CreateDirectoryW(m_Folder.Wide("OLD\\Sub\\")));
    for (const char* path : {"Old/Sub", "old/SUB", "old/FILE", "none/sub", "Old/file/sub"}) {
        EXPECT_FALSE(CreateDirectoryW(m_Folder.Wide(path))) << path;
    }
    umask(before);
    EXPECT_EQ(std::filesystem::status(m_Folder.Path() / "Old/Sub").permissions(), perms{0750});
    EXPECT_FALSE(std::filesystem::exists(m_Folder.Path() / "none"));
}
