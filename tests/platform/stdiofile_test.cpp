#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "platform/cfile.h"
#include "platform/filesystem.h"
#include "support/childprocess.h"
#include "support/environment.h"
#include "support/folder.h"
#include "support/support.h"

namespace {

constexpr unsigned WRITE = CFile::modeCreate | CFile::modeWrite | CFile::shareDenyWrite;

long OpenError(const CString& path, unsigned flags = WRITE) {
    CStdioFile file;
    CFileException error;
    const bool opened = file.Open(path, flags, &error);
    EXPECT_EQ(opened, error.m_lOsError == 0);
    EXPECT_EQ(error.m_cause, CFileException::OsErrorToException(error.m_lOsError));
    return error.m_lOsError;
}

/// A named pipe, and its end for reading while the object lives.
class Fifo {
public:
    Fifo() : path(m_Folder.Wide("pipe")) {
        mkfifo((m_Folder.Path() / "pipe").c_str(), 0600);
        reader = open((m_Folder.Path() / "pipe").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    }
    Fifo(const Fifo&) = delete;
    Fifo& operator=(const Fifo&) = delete;
    ~Fifo() { CloseReader(); }
    void CloseReader() {
        if (reader >= 0) close(reader);
        reader = -1;
    }

private:
    TempFolder m_Folder;

public:
    CString path;
    int reader = -1;
};

TEST(CStdioFile, WritesTheTextInUtf8AsItIs) {
    const TempFolder folder;
    const CString path = folder.Write("run.log", "what was there before, longer than what comes");
    CStdioFile file;
    ASSERT_TRUE(file.Open(path, WRITE));
    EXPECT_EQ(folder.Read("run.log"), "") << "emptied when opened";
    file.WriteString(L"\xE4\x1F600\r\n");
    file.WriteString(L"");
    EXPECT_EQ(folder.Read("run.log"), "\xC3\xA4\xF0\x9F\x98\x80\r\n") << "nothing is kept back";
    file.WriteString(CString{std::wstring_view{L"a\0\xDCFF\n", 4}});
    file.Flush();
    file.Close();
    EXPECT_EQ(folder.Read("run.log"), std::string("\xC3\xA4\xF0\x9F\x98\x80\r\na\0\xFF\n", 12));
}

TEST(CStdioFile, WritesALongTextWhole) {
    const TempFolder folder;
    CStdioFile file;
    ASSERT_TRUE(file.Open(folder.Wide("long"), WRITE));
    file.WriteString(CString(L'ä', 1'000'000));
    file.WriteString(L"end");
    EXPECT_EQ(std::filesystem::file_size(folder.Path() / "long"), 2'000'003U);
}

TEST(CStdioFile, OpensTheFileThatDiffersInCaseOnly) {
    const TempFolder folder;
    folder.Write("Log/Run.Log", "old");
    EXPECT_EQ(OpenError(folder.Wide("LOG\\run.log")), 0);
    EXPECT_EQ(folder.Read("Log/Run.Log"), "");
    EXPECT_FALSE(std::filesystem::exists(folder.Path() / "Log/run.log"));
}

TEST(CStdioFile, SaysWhyItCannotOpen) {
    const TempFolder folder;
    folder.Write("file", "kept");
    std::filesystem::create_symlink("loop", folder.Path() / "loop");
    mkfifo((folder.Path() / "pipe").c_str(), 0600);
    SetDriveFolder(L'Q', L"");
    struct {
        const char* what;
        CString path;
        unsigned flags;
        long error;
        int cause;
    } const cases[] = {
        {"folder missing", folder.Wide("none/run.log"), WRITE, ENOTDIR, CFileException::badPath},
        {"below a file", folder.Wide("file/run.log"), WRITE, ENOTDIR, CFileException::badPath},
        {"empty path", L"", WRITE, ENOTDIR, CFileException::badPath},
        {"NUL in the path", std::wstring_view{L"/tmp\0x", 6}, WRITE, ENOTDIR, CFileException::badPath},
        {"drive without a folder", L"Q:\\run.log", WRITE, ENOTDIR, CFileException::badPath},
        {"a folder", folder.Wide(), WRITE, EISDIR, CFileException::accessDenied},
        {"demands a folder", folder.Wide("new/"), WRITE, EISDIR, CFileException::accessDenied},
        {"name too long", folder.Wide(std::string(300, 'x')), WRITE, ENAMETOOLONG, CFileException::badPath},
        {"a link to itself", folder.Wide("loop"), WRITE, ELOOP, CFileException::badPath},
        {"a pipe that nobody reads", folder.Wide("pipe"), WRITE, ENXIO, CFileException::genericException},
        {"no flags", folder.Wide("file"), 0, EINVAL, CFileException::genericException},
        {"without create", folder.Wide("file"), 0x0021, EINVAL, CFileException::genericException},
        {"a flag more", folder.Wide("file"), WRITE | 0x8000, EINVAL, CFileException::genericException},
    };
    for (const auto& [what, path, flags, number, cause] : cases) {
        SCOPED_TRACE(what);
        CStdioFile file;
        CFileException error;
        EXPECT_FALSE(file.Open(path, flags, &error));
        EXPECT_EQ(error.m_lOsError, number);
        EXPECT_EQ(error.m_cause, cause);
        EXPECT_EQ(error.m_strFileName, path);
        EXPECT_FALSE(file.Open(path, flags)) << "and without anybody to tell";
    }
    EXPECT_EQ(folder.Read("file"), "kept");
}

TEST(CStdioFile, IsDeniedWhatTheUserMayNotWrite) {
    const TempFolder folder;
    const CString path = folder.Write("file", "kept");
    std::filesystem::permissions(folder.Path(), std::filesystem::perms{0711});
    std::filesystem::permissions(folder.Path() / "file", std::filesystem::perms{0444});
    const OrdinaryUser user;
    EXPECT_EQ(OpenError(path), EACCES);
}

TEST(CStdioFile, LeavesTheFileOfAnotherWriterUntouched) {
    const TempFolder folder;
    const CString path = folder.Wide("run.log");
    CStdioFile first;
    ASSERT_TRUE(first.Open(path, WRITE));
    first.WriteString(L"first");
    EXPECT_EQ(OpenError(path), EWOULDBLOCK);
    EXPECT_EQ(RunChild([&] { return OpenError(path) == EWOULDBLOCK ? 0 : 1; }).exitCode, 0) << "another process";
    EXPECT_EQ(folder.Read("run.log"), "first");
    first.WriteString(L" goes on");
    EXPECT_EQ(folder.Read("run.log"), "first goes on") << "the failed attempts did not take the lock away";
    EXPECT_EQ(OpenError(path), EWOULDBLOCK);
    first.Close();
    EXPECT_EQ(OpenError(path), 0);
    EXPECT_EQ(folder.Read("run.log"), "");
}

TEST(CStdioFile, ClosesTheOldFileBeforeItOpensAnother) {
    const TempFolder folder;
    CStdioFile file;
    ASSERT_TRUE(file.Open(folder.Wide("one"), WRITE));
    ASSERT_TRUE(file.Open(folder.Wide("one"), WRITE)) << "its own lock is no hindrance";
    ASSERT_TRUE(file.Open(folder.Wide("two"), WRITE));
    EXPECT_EQ(OpenError(folder.Wide("one")), 0);
    EXPECT_FALSE(file.Open(folder.Wide("two"), 0)) << "wrong flags leave the open file alone";
    file.WriteString(L"text");
    EXPECT_EQ(folder.Read("two"), "text");
}

TEST(CStdioFile, UnlocksWhenItIsDestroyed) {
    const TempFolder folder;
    const CString path = folder.Wide("run.log");
    EXPECT_EQ(OpenError(path), 0);
    EXPECT_EQ(OpenError(path), 0);
}

TEST(CStdioFile, ThrowsWithoutAnOpenFile) {
    CStdioFile file;
    for (const bool wasOpen : {false, true}) {
        ASSERT_TRUE(!wasOpen || file.Open(L"/dev/null", WRITE));
        file.Close();
        file.Close();
        EXPECT_EQ(ErrorOf<CFileException>([&] { file.WriteString(L"x"); }).m_cause, CFileException::genericException);
        EXPECT_EQ(ErrorOf<CFileException>([&] { file.WriteString(L""); }).m_cause, CFileException::genericException);
        EXPECT_EQ(ErrorOf<CFileException>([&] { file.Flush(); }).m_cause, CFileException::genericException);
    }
}

TEST(CStdioFile, ThrowsWhenTheDiskIsFull) {
    CStdioFile file;
    ASSERT_TRUE(file.Open(L"/dev/full", WRITE));
    const auto error = ErrorOf<CFileException>([&] { file.WriteString(L"text"); });
    EXPECT_EQ(error.m_cause, CFileException::diskFull);
    EXPECT_EQ(error.m_lOsError, ENOSPC);
    EXPECT_EQ(error.m_strFileName, L"/dev/full");
    file.Close();
}

TEST(CStdioFile, SharesADeviceWithEverybody) {
    CStdioFile first;
    CStdioFile second;
    ASSERT_TRUE(first.Open(L"/dev/null", WRITE));
    ASSERT_TRUE(second.Open(L"/dev/null", WRITE));
    second.WriteString(L"text");
}

TEST(CStdioFile, NeedsADescriptor) {
    const TempFolder folder;
    CStdioFile file;
    CFileException error;
    file.Open(L"", WRITE, &error);  // sanitizers need a descriptor when they first look at an object
    rlimit before;
    getrlimit(RLIMIT_NOFILE, &before);
    const rlimit none{3, before.rlim_max};
    std::vector<int> taken;  // whatever is free below the limit
    for (int handle = dup(0); handle < 3 && handle >= 0; handle = dup(0)) taken.push_back(handle);
    setrlimit(RLIMIT_NOFILE, &none);
    file.Open(folder.Wide("run.log"), WRITE, &error);
    setrlimit(RLIMIT_NOFILE, &before);
    for (const int handle : taken) close(handle);
    EXPECT_EQ(error.m_lOsError, EMFILE);
}

TEST(CStdioFile, GoesOnAfterAShortWriteUntilTheSystemRefuses) {
    const TempFolder folder;
    const CString path = folder.Wide("limited");
    const ChildResult child = RunChild([&] {
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{4096, 4096};
        setrlimit(RLIMIT_FSIZE, &limit);
        CStdioFile file;
        if (!file.Open(path, WRITE)) return 1;
        return ErrorOf<CFileException>([&] { file.WriteString(CString(L'x', 10'000)); }).m_lOsError == EFBIG ? 0 : 2;
    });
    EXPECT_EQ(child.exitCode, 0);
    EXPECT_EQ(std::filesystem::file_size(folder.Path() / "limited"), 4096U);
}

// A pipe that waits, with a slow reader and a timer: every write is cut short by a signal, many write nothing at all.
TEST(CStdioFile, LosesNothingToInterrupts) {
    Fifo fifo;
    const int next = dup(0);  // the number that the file gets
    close(next);
    CStdioFile file;
    ASSERT_TRUE(file.Open(fifo.path, WRITE));
    ASSERT_EQ(fcntl(next, F_SETFL, O_WRONLY), 0);
    ASSERT_EQ(fcntl(fifo.reader, F_SETFL, O_RDONLY), 0);
    std::wstring text;
    for (int i = 0; i < 200'000; ++i) text += FormatText(L"%06d;", i);

    int report[2];
    ASSERT_EQ(pipe2(report, O_CLOEXEC), 0);
    const pid_t child = fork();
    if (child == 0) {
        close(next);
        const std::string bytes = ReadDescriptor(fifo.reader);
        const char same = bytes == ToUtf8(std::wstring_view{text}) ? 'y' : 'n';
        _exit(write(report[1], &same, 1) == 1 ? 0 : 1);
    }
    struct sigaction ignored {};
    ignored.sa_handler = [](int) {};  // without SA_RESTART: the call is interrupted
    struct sigaction before {};
    sigaction(SIGALRM, &ignored, &before);
    const itimerval often{{0, 50}, {0, 50}};
    setitimer(ITIMER_REAL, &often, nullptr);
    EXPECT_NO_THROW(file.WriteString(CString{std::move(text)}));
    const itimerval off{};
    setitimer(ITIMER_REAL, &off, nullptr);
    sigaction(SIGALRM, &before, nullptr);
    file.Close();
    char same = '?';
    EXPECT_EQ(read(report[0], &same, 1), 1);
    EXPECT_EQ(same, 'y');
    waitpid(child, nullptr, 0);
    close(report[0]);
    close(report[1]);
}

TEST(CStdioFile, ThrowsWhenAPipeIsFull) {
    Fifo fifo;
    CStdioFile file;
    ASSERT_TRUE(file.Open(fifo.path, WRITE));
    EXPECT_EQ(ErrorOf<CFileException>([&] { file.WriteString(CString(L'x', 1 << 20)); }).m_lOsError, EAGAIN);
}

TEST(CStdioFile, OutlivesTheReaderOfItsPipe) {
    Fifo fifo;
    CStdioFile file;
    ASSERT_TRUE(file.Open(fifo.path, WRITE));
    fifo.CloseReader();
    EXPECT_EQ(ErrorOf<CFileException>([&] { file.WriteString(L"x"); }).m_lOsError, EPIPE);
    sigset_t pending;
    sigpending(&pending);
    EXPECT_EQ(sigismember(&pending, SIGPIPE), 0) << "and leaves no signal behind";
}

}  // namespace
