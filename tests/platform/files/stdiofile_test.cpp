#include <malloc.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/time.h>

#include "support/childprocess.h"
#include "support/support.h"
#include "veltrane/platform/files/cfile.h"
#include "veltrane/platform/sources/sourcelines.h"

constexpr unsigned WRITE = CFile::modeCreate | CFile::modeWrite | CFile::shareDenyWrite;

static long OpenError(const CString& path, unsigned flags = WRITE) {
    CStdioFile file;
    CFileException error;
    const bool opened = file.Open(path, flags, &error);
    EXPECT_EQ(opened, error.m_lOsError == 0);
    EXPECT_EQ(error.m_cause, CFileException::OsErrorToException(error.m_lOsError));
    EXPECT_EQ(error.m_strFileName, opened ? CString{} : path);
    return error.m_lOsError;
}

static long WriteError(CStdioFile& file, const CString& text) {
    const auto error = ErrorOf<CFileException>([&] { file.WriteString(text); });
    EXPECT_EQ(error.m_cause, CFileException::OsErrorToException(error.m_lOsError));
    return error.m_lOsError;
}

class StdioFile : public testing::Test {
protected:
    std::string Content() const { return m_Folder.Read("run.log"); }

    TempFolder m_Folder;
    CString m_Path = m_Folder.Wide("run.log");
    CStdioFile m_File;
};

TEST_F(StdioFile, WritesTheTextInUtf8AsItIs) {
    m_Folder.Write("run.log", "what was there before, longer than what comes");
    ASSERT_TRUE(m_File.Open(m_Folder.Wide("RUN.log"), WRITE)) << "the file that differs in case only";
    EXPECT_EQ(Content(), "") << "emptied when opened";
    m_File.WriteString(L"\xE4\x1F600\r\n");
    m_File.WriteString(L"");
    EXPECT_EQ(Content(), "\xC3\xA4\xF0\x9F\x98\x80\r\n") << "nothing is kept back";
    std::filesystem::resize_file(m_Folder.Path() / "run.log", 2);  // by another process: the log goes on at the end
    const auto used = [] { return mallinfo2().uordblks + mallinfo2().hblkhd; };
    const std::size_t before = used();
    m_File.WriteString(CString(L'ä', 1'000'000));
    EXPECT_LT(used(), before + 100'000) << "nor is the memory of the longest text";
    m_File.WriteString(CString{std::wstring_view{L"a\0\xDCFF\n", 4}});
    m_File.Flush();
    m_File.Close();
    EXPECT_EQ(Content().size(), 2'000'006U);
    EXPECT_TRUE(Content().ends_with("äa\0\xFF\n"s));
}

TEST_F(StdioFile, SaysWhyItCannotOpen) {
    m_Folder.Write("run.log", "kept");
    mkfifo((m_Folder.Path() / "pipe").c_str(), 0600);
    const std::tuple<const char*, CString, unsigned, long> cases[] = {
        {"folder missing", m_Folder.Wide("none/run.log"), WRITE, ENOTDIR},
        {"empty path", L"", WRITE, ENOTDIR},
        {"a folder", m_Folder.Wide(), WRITE, EISDIR},
        {"name too long", m_Folder.Wide(std::string(300, 'x')), WRITE, ENAMETOOLONG},
        {"a pipe that nobody reads", m_Folder.Wide("pipe"), WRITE, ENXIO},
        {"without create", m_Path, 0x0021, EINVAL},
        {"a flag more", m_Path, WRITE | 0x8000, EINVAL},
    };
    for (const auto& [what, path, flags, error] : cases) EXPECT_EQ(OpenError(path, flags), error) << what;
    EXPECT_FALSE(m_File.Open(L"", WRITE)) << "and without anybody to tell";
    EXPECT_EQ(Content(), "kept");
}

TEST_F(StdioFile, LeavesTheFileOfAnotherWriterUntouched) {
    ASSERT_TRUE(m_File.Open(m_Path, WRITE));
    ASSERT_TRUE(m_File.Open(m_Path, WRITE)) << "its own lock is no hindrance";
    m_File.WriteString(L"first");
    EXPECT_EQ(OpenError(m_Path), EWOULDBLOCK);
    EXPECT_FALSE(m_File.Open(m_Path, 0)) << "wrong flags leave the open file alone";
    m_File.WriteString(L" goes on");
    EXPECT_EQ(Content(), "first goes on") << "the failed attempts did not take the lock away";
    EXPECT_EQ(OpenError(m_Path), EWOULDBLOCK);
    ASSERT_TRUE(m_File.Open(m_Folder.Wide("other"), WRITE)) << "closes the first";
    for (int i = 0; i < 2; ++i) EXPECT_EQ(OpenError(m_Path), 0) << "each one unlocks when it is destroyed";
    EXPECT_EQ(Content(), "");
}

static int g_Leased = -1;

TEST_F(StdioFile, WaitsForAFileThatIsLeased) {
    m_Folder.Write("run.log", "[before]");
    g_Leased = open((m_Folder.Path() / "run.log").c_str(), O_RDWR | O_CLOEXEC);
    const auto before = signal(SIGIO, [](int) { fcntl(g_Leased, F_SETLEASE, F_UNLCK); });
    for (const bool isRead : {true, false}) {
        ASSERT_EQ(fcntl(g_Leased, F_SETLEASE, F_WRLCK), 0);
        EXPECT_TRUE(isRead ? ReadProfileLines(m_Path).lines.size() == 1 : OpenError(m_Path) == 0);
    }
    signal(SIGIO, before);
    close(g_Leased);
}

TEST_F(StdioFile, ThrowsWithoutAnOpenFile) {
    for (const bool wasOpen : {false, true}) {
        ASSERT_TRUE(!wasOpen || m_File.Open(L"/dev/null", WRITE));
        for (int i = 0; i < 2; ++i) m_File.Close();
        EXPECT_EQ(WriteError(m_File, L""), EINVAL);
        EXPECT_THROW(m_File.Flush(), CFileException);
    }
}

TEST_F(StdioFile, SharesADeviceAndThrowsWhenItIsFull) {
    CStdioFile second;
    for (CStdioFile* file : {&m_File, &second}) {
        ASSERT_TRUE(file->Open(L"/dev/full", WRITE));
        EXPECT_EQ(WriteError(*file, L"text"), ENOSPC);
        EXPECT_EQ(ErrorOf<CFileException>([&] { file->WriteString(L"text"); }).m_strFileName, L"/dev/full");
    }
}

TEST_F(StdioFile, EmptiesNoStreamOfTheProcess) {
    for (const CString& path : {CString{L"/proc/self/fd/2"}, m_Folder.Wide("errors")}) {
        m_Folder.Write("errors", "before, ");
        const ChildResult child = RunChild([&] {
            dup2(open((m_Folder.Path() / "errors").c_str(), O_WRONLY), STDERR_FILENO);
            lseek(STDERR_FILENO, 0, SEEK_END);
            if (!m_File.Open(path, WRITE)) return 1;
            m_File.WriteString(L"log, ");
            AfxMessageBox(L"box");
            m_File.WriteString(L"end");
            return 0;
        });
        EXPECT_EQ(child.exitCode, 0);
        EXPECT_EQ(m_Folder.Read("errors"), "before, log, box\nend") << ToUtf8(path) << ": nor covers what it prints";
    }
}

TEST_F(StdioFile, GoesOnAfterAShortWriteUntilTheSystemRefuses) {
    const ChildResult child = RunChild([&] {
        for (int stream = 0; stream < 3; ++stream) close(stream);
        if (!m_File.Open(m_Path, WRITE)) return 1;
        for (int stream = 0; stream < 3; ++stream) {
            if (fcntl(stream, F_GETFD) != -1) return 3;
        }
        const rlimit limit{4096, 4096};
        setrlimit(RLIMIT_FSIZE, &limit);
        return WriteError(m_File, CString(L'x', 10'000)) == EFBIG ? 0 : 2;
    });
    EXPECT_EQ(child.exitCode, 0) << "and no signal ends the process";
    EXPECT_EQ(Content(), std::string(4096, 'x'));
}

// A pipe that waits, with a slow reader and a timer: signals cut every write short, and many write nothing at all.
TEST_F(StdioFile, LosesNothingToInterrupts) {
    std::wstring text;
    for (int i = 0; i < 100'000; ++i) text += FormatText(L"%0100d;", i);
    const ChildResult child = RunChild([&] {
        if (!m_File.Open(L"/proc/self/fd/1", WRITE)) return 1;
        // Without SA_RESTART the call is interrupted again and again, however slow the machine.
        struct sigaction again {};
        again.sa_handler = [](int) {
            const itimerval soon{{0, 0}, {0, 300}};
            setitimer(ITIMER_REAL, &soon, nullptr);
        };
        sigaction(SIGALRM, &again, nullptr);
        raise(SIGALRM);
        m_File.WriteString(CString{std::wstring_view{text}});
        return 0;
    });
    EXPECT_EQ(child.exitCode, 0);
    EXPECT_TRUE(child.output == ToUtf8(text));
}

TEST_F(StdioFile, OutlivesItsReader) {
    const std::string pipe = (m_Folder.Path() / "pipe").string();
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_TRUE(m_File.Open(FromUtf8(pipe), WRITE));
    close(reader);
    EXPECT_EQ(WriteError(m_File, L"x"), EPIPE);
    sigset_t pending;
    sigpending(&pending);
    EXPECT_EQ(sigismember(&pending, SIGPIPE), 0) << "and leaves no signal behind";
}
