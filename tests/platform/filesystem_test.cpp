#include "platform/filesystem.h"
#include "platform/profile.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <optional>

#include "support/childprocess.h"
#include "support/environment.h"
#include "support/folder.h"
#include "support/support.h"

namespace {

class FileSystem : public testing::Test {
protected:
    /// What MapPath makes of a path below the folder, without the folder.
    std::string Mapped(const std::string& path) const {
        const std::string name = MapPath(m_Folder.Wide(path));
        const std::string folder = m_Folder.Path().string() + '/';
        EXPECT_TRUE(name.starts_with(folder)) << name;
        return name.substr(folder.size());
    }

    TempFolder m_Folder;
};

TEST_F(FileSystem, TakesEachComponentExactlyOrWithoutRegardToCase) {
    m_Folder.Write("Data/Main.INI", "");
    m_Folder.Write("Data/\xC3\x84rger.txt", "");
    m_Folder.Write("both/Name", "");
    m_Folder.Write("both/name", "");
    m_Folder.Write("Both/only-here", "");
    m_Folder.Write("order/aB", "");
    m_Folder.Write("order/Ab", "");
    m_Folder.Write("latin/\xE4.Txt", "");
    std::filesystem::create_symlink("nowhere", m_Folder.Path() / "Dangling");
    m_Folder.Write("DANGLING", "");
    struct {
        const char* what;
        const char* path;
        const char* mapped;
    } const cases[] = {
        {"as spelled", "Data/Main.INI", "Data/Main.INI"},
        {"other case", "DATA/main.ini", "Data/Main.INI"},
        {"letters outside ASCII", "data/\xC3\xA4RGER.TXT", "Data/\xC3\x84rger.txt"},
        {"backslashes", "data\\main.ini", "Data/Main.INI"},
        {"runs of separators", "data\\//main.ini", "Data/Main.INI"},
        {"trailing separator", "data\\", "Data/"},
        {"dots are left to the system", "data/../DATA/./main.ini", "Data/../Data/./Main.INI"},
        {"exact wins", "both/name", "both/name"},
        {"no second candidate", "both/only-here", "both/only-here"},
        {"first in byte order", "order/AB", "order/Ab"},
        {"not UTF-8", "latin/\xE4.TXT", "latin/\xE4.Txt"},
        {"missing name", "data/New.Txt", "Data/New.Txt"},
        {"missing folder", "DATA/None/Main.ini", "Data/None/Main.ini"},
        {"below a file", "data/main.ini/x", "Data/Main.INI/x"},
        {"a dangling link exists by name", "Dangling", "Dangling"},
    };
    for (const auto& [what, path, mapped] : cases) {
        SCOPED_TRACE(what);
        EXPECT_EQ(Mapped(path), mapped);
    }
}

TEST_F(FileSystem, SpellsWithoutALook) {
    EXPECT_EQ(SpelledPath(L"a\\b//C\\"), "a/b/C/");
    EXPECT_EQ(SpelledPath(L"\\\\server\\share"), "/server/share");
    EXPECT_EQ(SpelledPath(L"1:\\x"), "1:/x") << "no drive letter";
    EXPECT_EQ(SpelledPath(L"\x212A:\\x"), "\xE2\x84\xAA:/x") << "the Kelvin sign is no drive, though it folds to k";
}

TEST_F(FileSystem, HasNoPathForEmptyNulOrAMissingDrive) {
    SetDriveFolder(L'Q', L"");
    for (const CString& path : {CString{}, CString{std::wstring_view{L"a\0b", 3}}, CString{L"Q:"}, CString{L"q:\\x"}}) {
        EXPECT_EQ(MapPath(path), "");
        EXPECT_EQ(SpelledPath(path), "");
        EXPECT_FALSE(CreateDirectoryW(path));
    }
}

TEST_F(FileSystem, ReplacesADriveByItsFolder) {
    m_Folder.Write("Deep/File.txt", "");
    const std::string folder = m_Folder.Path().string();
    SetDriveFolder(L'Z', m_Folder.Wide());
    EXPECT_EQ(MapPath(L"Z:\\deep\\file.TXT"), folder + "/Deep/File.txt");
    EXPECT_EQ(MapPath(L"z:deep"), folder + "/Deep") << "no separator counts as one";
    EXPECT_EQ(MapPath(L"Z:"), folder);
    EXPECT_EQ(MapPath(L"Z:\\"), folder + "/");
    SetDriveFolder(L'z', m_Folder.Wide() + L"//");
    EXPECT_EQ(MapPath(L"Z:deep"), folder + "/Deep");
    SetDriveFolder(L'z', L"/");
    EXPECT_EQ(SpelledPath(L"Z:\\etc"), "/etc");
    SetDriveFolder(L'z', L"");
    EXPECT_EQ(MapPath(L"Z:\\deep"), "");
    SetDriveFolder(L'1', L"/tmp");
    SetDriveFolder(-1, L"/tmp");
    EXPECT_EQ(SpelledPath(L"1:x"), "1:x");
}

TEST_F(FileSystem, TakesTheDrivesFromTheEnvironment) {
    const EnvironmentGuard drives{"VORNAK_DRIVES", "C=/srv/c;d=\\data\\;broken;;E=;7=/seven;F=/one;F=/two"};
    const ChildResult child = RunProgram("FileSystemChild.DISABLED_WritesItsDrives", {});
    EXPECT_EQ(child.output, "/srv/c/x|/data/x||/two/x|7:/x");
}

/// Lets no further file be opened while it lives.
class NoMoreFiles {
public:
    NoMoreFiles() {
        getrlimit(RLIMIT_NOFILE, &m_Before);
        const rlimit none{0, m_Before.rlim_max};
        setrlimit(RLIMIT_NOFILE, &none);
    }
    NoMoreFiles(const NoMoreFiles&) = delete;
    NoMoreFiles& operator=(const NoMoreFiles&) = delete;
    ~NoMoreFiles() { setrlimit(RLIMIT_NOFILE, &m_Before); }

private:
    rlimit m_Before;
};

TEST(FileSystemCalls, APathThatIsStillMissingIsAnsweredAlikeAgain) {
    const CString path = L"/usr/No-Such-Folder/registry.reg";
    for (int i = 0; i < 2; ++i) EXPECT_EQ(MapPath(path), "/usr/No-Such-Folder/registry.reg");
    wchar_t answer[8];
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(GetPrivateProfileStringW(L"s", L"k", L"none", answer, 8, path.GetString()), 4U);
    }
    const TempFolder folder;
    const CString present = folder.Write("present.ini", "[s]\nk=v\n");
    EXPECT_EQ(GetPrivateProfileStringW(L"s", L"k", L"none", answer, 8, present.GetString()), 1U) << "another path";
}

TEST(FileSystemCalls, AFolderThatCouldNotBeListedOnceIsListedAgain) {
    const CString path = FromUtf8(VELTRANE_SOURCE_FOLDER "/examples/CONFIG/registry.reg");
    {
        const NoMoreFiles full;
        EXPECT_EQ(MapPath(path), ToUtf8(path));
    }
    wchar_t answer[256];
    EXPECT_GT(GetPrivateProfileStringW(nullptr, nullptr, nullptr, answer, 256, path.GetString()), 0U);
}

TEST_F(FileSystem, FindsANameThatIsTooLongAsItIsSpelled) {
    const std::string name(100, 'k');
    m_Folder.Write(name, "[s]\nk=v\n");
    const CString path = m_Folder.Wide() + L"/" + CString{L'\x212A', 100};  // 300 bytes
    EXPECT_EQ(MapPath(path), (m_Folder.Path() / name).string());
    wchar_t answer[8];
    EXPECT_EQ(GetPrivateProfileStringW(L"s", L"k", L"none", answer, 8, path.GetString()), 1U);
}

TEST(FileSystemChild, DISABLED_WritesItsDrives) {
    for (const wchar_t* path : {L"C:\\x", L"|D:x", L"|E:\\x", L"|F:x", L"|7:/x"}) {
        const CString text{path};
        const bool first = text[0] != L'|';
        WriteChildOutput((first ? "" : "|") + SpelledPath(first ? text : text.Mid(1)));
    }
}

TEST_F(FileSystem, LooksOnlyForTheNameAsSpelledInAFolderThatCannotBeRead) {
    m_Folder.Write("closed/File", "");
    const auto closed = m_Folder.Path() / "closed";
    using std::filesystem::perms;
    std::filesystem::permissions(m_Folder.Path(), perms::others_exec | perms::owner_all);
    std::filesystem::permissions(closed, perms::owner_exec | perms::others_exec);
    {
        const OrdinaryUser user;
        EXPECT_EQ(Mapped("closed/file"), "closed/file");
        EXPECT_EQ(Mapped("closed/File"), "closed/File");
    }
    std::filesystem::permissions(closed, perms::owner_all);
}

TEST_F(FileSystem, MapsRelativePathsFromTheCurrentFolder) {
    m_Folder.Write("Sub/File", "");
    const CurrentFolderGuard here{m_Folder.Path()};
    EXPECT_EQ(MapPath(L"sub\\FILE"), "Sub/File");
    EXPECT_EQ(MapPath(L".\\sub"), "./Sub");
}

TEST_F(FileSystem, SurvivesPathsLongerThanTheSystemTakes) {
    CString path = m_Folder.Wide();
    for (int i = 0; i < 20'000; ++i) path += L"\\..\\x";
    EXPECT_EQ(MapPath(path), SpelledPath(path));
    EXPECT_EQ(Mapped(std::string(100'000, 'x')), std::string(100'000, 'x'));
}

TEST_F(FileSystem, CreatesOneFolderAndNothingElse) {
    m_Folder.Write("Old/file", "");
    struct {
        const char* what;
        const char* path;
        bool created;
    } const cases[] = {
        {"new", "new", true},
        {"exists now", "new", false},
        {"exists in other case", "NEW", false},
        {"a file of that name", "old/FILE", false},
        {"parent missing", "none/sub", false},
        {"parent in other case", "OLD\\Sub\\", true},
        {"below a file", "Old/file/sub", false},
    };
    for (const auto& [what, path, created] : cases) {
        SCOPED_TRACE(what);
        EXPECT_EQ(CreateDirectoryW(m_Folder.Wide(path)), created);
    }
    EXPECT_TRUE(std::filesystem::is_directory(m_Folder.Path() / "Old/Sub"));
    EXPECT_FALSE(std::filesystem::exists(m_Folder.Path() / "none"));
}

TEST_F(FileSystem, CreatesWithAllRightsLessTheUmask) {
    const mode_t before = umask(027);
    EXPECT_TRUE(CreateDirectoryW(m_Folder.Wide("rights")));
    umask(before);
    EXPECT_EQ(std::filesystem::status(m_Folder.Path() / "rights").permissions(), std::filesystem::perms{0750});
}

}  // namespace
