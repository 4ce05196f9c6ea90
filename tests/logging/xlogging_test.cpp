#include "veltrane/logging/xlogging.h"

#include <cerrno>
#include <regex>

#include "support/support.h"
#include "veltrane/foundation/xdebug.h"

static const std::string STARS = std::string(105, '*') + "\r\n";
static const std::string DASHES = std::string(105, '-') + "\r\n";

static std::string ErrorBlock(const std::string& location, const std::string& message, const std::string& code) {
    return "\r\n########################## Error info start ##########################\r\nLocation:  \t" + location +
           "\r\nMessage:   \t" + message + "\r\nError Code:\t" + code +
           "\r\n##########################  Error info end  ##########################\r\n\r\n";
}

class XLoggingTest : public testing::Test {
protected:
    CString File() const { return m_Folder.Wide("run.log"); }
    void Start() { m_Log.StartLogging(File(), L"FORFILE", L"%s", L"COMPILETIME"); }
    /// The log with its times replaced, so that the rest can be compared exactly.
    std::string Written() const {
        const std::regex date{"[A-Z][a-z]+day, [A-Z][a-z]+ \\d\\d, \\d{4} ; \\d\\d(:\\d\\d){2}"};
        const std::regex time{"\n\\d\\d(:\\d\\d){2}: "};
        return std::regex_replace(std::regex_replace(m_Folder.Read("run.log"), date, "DATE"), time, "\nTIME: ");
    }

    TempFolder m_Folder;
    XLogging m_Log;
};

TEST_F(XLoggingTest, StampsByTheZoneOfTheMoment) {
    Start();
    for (const char* zone : {"XXX0", "XXX-1", "XXX0"}) {
        const EnvironmentGuard guard{"TZ", zone};
        m_Log.WriteLog(zone, /*newLine*/ true, /*timeStamp*/ true);
    }
    std::smatch hours;
    const std::string text = m_Folder.Read("run.log");
    ASSERT_TRUE(std::regex_search(text, hours, std::regex{"\n(..):..:..: XXX0\r\n(..):..:..: XXX-1\r\n(..):"}));
    EXPECT_TRUE(hours[1] != hours[2] && hours[1] == hours[3]);
}

TEST_F(XLoggingTest, WritesAWholeLog) {
    const auto writeAll = [&] {
        m_Log.ShowError(L"none", L"L", L"");  // as the state of a new log: code 0, no message
        m_Log.WriteLog(L"first entry", true, true);
        m_Log.WriteLog(L"second entry", true, true);
        m_Log.WriteLog(L" (appended)", false, true);
        m_Log.WriteLog(L"entry without time \u20AC", true, false);
        m_Log.ShowError(-1, L"LOC", L"MSG");
        m_Log.ShowError(L"-1 again", L"elsewhere", L"MSG");  // the same message and number
        m_Log.ShowError(L"x3", L".\\x", L"M", 7, L"MSG");    // no leading digits: code 0
        m_Log.ShowError(0, L".\\x", L"M", 7, L"other");
        m_Log.CloseLogFile();
        m_Log.LogWrite(L"behind the end");
    };
    writeAll();
    EXPECT_FALSE(std::filesystem::exists(m_Folder.Path() / "run.log")) << "a closed log ignores everything";
    Start();
    writeAll();
    writeAll();
    EXPECT_EQ(
        Written(),
        STARS + STARS + "Log output of " + ToUtf8(File()) + "\r\nstart: DATE\r\n" + DASHES +
            "Start log output...\r\nFor File:     FORFILE\r\nVersion:      %s\r\nCompile Time: COMPILETIME\r\n\r\n"
            "\r\nTIME: first entry\r\nTIME: second entry (appended)"
            "\r\n          entry without time \xE2\x82\xAC" +
            ErrorBlock("LOC", "MSG", "-1") + ErrorBlock("<M> in [x], line [7]", "MSG", "x3") +
            ErrorBlock("<M> in [x], line [7]", "other", "0") + "\r\n" + STARS + "finish: DATE\r\n" + DASHES +
            "\r\n\r\n");
}

TEST_F(XLoggingTest, EntriesCarryTheLinePrefix) {
    Start();
    m_Log.WriteLog(L"of the log before, within the same second", true, true);
    m_Log.CloseLogFile();
    ASSERT_TRUE(m_Log.OpenLogFile(L"[db] "));
    EXPECT_FALSE(m_Log.OpenLogFile(L"unused"));
    m_Log.WriteLog(L"a", true, true);
    m_Log.WriteLog(L"b", false, false);
    m_Log.NewLine();
    m_Log.LogWrite(L"raw\r\n");
    m_Log.WriteUnformatted(L"%d");
    EXPECT_TRUE(Written().ends_with("start: DATE\r\n" + DASHES + "\r\nTIME: [db] a[db] b\r\nraw\r\n%d")) << Written();
}

TEST_F(XLoggingTest, AHostMayLogTheLineThatItIsAboutToWrite) {
    struct TwiceLog : XLogging {
        void WriteString(const CString& text) override {
            if (text.Find(L": once") > 0 && text.Find(L"\r\n", 1) < 0) {
                WriteLog(text, true, true);
                WriteLog(L"between", true, true);
            }
            XLogging::WriteString(text);
        }
    } log;
    log.StartLogging(File(), L"", L"", L"");
    log.WriteLog(L"once", true, true);
    EXPECT_NE(Written().find("\r\nTIME: \r\nTIME: once\r\nTIME: between\r\nTIME: once"), std::string::npos)
        << Written();
}

TEST_F(XLoggingTest, StartingAnOpenLogKeepsTheFile) {
    BoxRecorder recorder;
    SetDebug(true);
    Start();
    SetDebug(false);
    EXPECT_EQ(recorder.boxes.at(0).text, File()) << "shown while debugging";
    m_Log.StartLogging(L"D:\\logs\\other.log", L"unseen", L"", L"");
    m_Log.LogWrite(L"here");
    EXPECT_EQ(m_Log.GetLogFile(), L"D:\\logs\\other.log");
    EXPECT_EQ(m_Log.GetLogPath(), L"D:\\logs");
    EXPECT_TRUE(Written().ends_with("\r\n\r\nhere"));
}

TEST_F(XLoggingTest, AFailedOpenNamesTheCause) {
    const CString missing = m_Folder.Wide("missing/run.log");
    const auto open = [&] { m_Log.StartLogging(missing, L"", L"", L""); };
    const XException error = ErrorOf(open);
    EXPECT_EQ(error.GetMessage(),
              L"Failed to open the log file!\r\nreason: \tCannot open file <" + missing + L">!\r\n\tBad path!");
    EXPECT_EQ(error.GetNumber(), 3);
    EXPECT_THROW(ErrorOf<XFileException>(open), XException) << "callers get the plain error";
    Start();
    m_Log.LogWrite(L"kept");
    XLogging second;
    EXPECT_EQ(ErrorOf([&] { second.StartLogging(File(), L"", L"", L""); }).GetNumber(), 11);
    EXPECT_TRUE(Written().ends_with("kept")) << "the log of the first writer stays";
}

TEST_F(XLoggingTest, AFullDiskReachesTheCallerAndNotTheDestructor) {
    struct FailingLog : XLogging {  // a class that a host derives, whose writing fails
        void WriteString(const CString&) override { throw CFileException{CFileException::diskFull, ENOSPC, L"log"}; }
    } derived;
    ErrorOf([] { XLogging{}.StartLogging(L"/dev/full", L"", L"", L""); });
    for (XLogging* const log : {&m_Log, static_cast<XLogging*>(&derived)}) {
        const CString file = log == &m_Log ? L"/dev/full" : File();
        const XException banner = ErrorOf([&] { log->StartLogging(file, L"", L"", L""); });
        EXPECT_EQ(banner.GetMessage(), L"An unknown exception occured while opening the log file <" + file + L">!");
        EXPECT_EQ(banner.GetNumber(), -1);
        // The log counts as open from then on, so every writing operation meets the full disk.
        const auto causeOf = [](auto operation) { return ErrorOf<CFileException>(operation).m_cause; };
        EXPECT_EQ(causeOf([&] { log->NewLine(); }), CFileException::diskFull);
        EXPECT_EQ(causeOf([&] { log->WriteLog(L"x", true, true); }), CFileException::diskFull);
        EXPECT_EQ(causeOf([&] { log->ShowError(1, L"L", L"M"); }), CFileException::diskFull);
        EXPECT_EQ(causeOf([&] { log->CloseLogFile(); }), CFileException::diskFull);
    }
    Start();
    m_Log.CloseLogFile();
    EXPECT_NE(Written().find("finish: DATE"), std::string::npos) << "opened again after an end that was not written";
}
