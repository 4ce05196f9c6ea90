#include "logging/xlogging.h"

#include <cerrno>
#include <functional>
#include <regex>

#include "foundation/xdebug.h"
#include "support/environment.h"
#include "support/support.h"

namespace {

constexpr char STARS[] =
    "*********************************************************************************************************\r\n";
constexpr char DASHES[] =
    "---------------------------------------------------------------------------------------------------------\r\n";
constexpr char ERROR_START[] = "########################## Error info start ##########################\r\n";
constexpr char ERROR_END[] = "##########################  Error info end  ##########################\r\n";
constexpr char DATE[] = "[A-Z][a-z]+day, [A-Z][a-z]+ [0-9][0-9], [0-9]{4} ; [0-9][0-9]:[0-9][0-9]:[0-9][0-9]";

// Times in a log replaced, so that the rest can be compared to the letter.
std::string Timeless(const std::string& log) {
    const std::string dated = std::regex_replace(log, std::regex{DATE}, "DATE");
    return std::regex_replace(dated, std::regex{"\n[0-9][0-9]:[0-9][0-9]:[0-9][0-9]: "}, "\nTIME: ");
}

class XLoggingTest : public testing::Test {
protected:
    CString File() const { return m_Folder.Wide("run.log"); }
    std::string Written() const { return Timeless(m_Folder.Read("run.log")); }
    std::string Head() const {
        return std::string{STARS} + STARS + "Log output of " + ToUtf8(File()) + "\r\nstart: DATE\r\n" + DASHES;
    }

    TempFolder m_Folder;
    XLogging m_Log;
};

TEST_F(XLoggingTest, WritesAWholeLog) {
    m_Log.StartLogging(File(), L"FORFILE", L"%s", L"COMPILETIME");
    m_Log.WriteLog(L"first entry", true, true);
    m_Log.WriteLog(L"second entry", true, true);
    m_Log.WriteLog(L" (appended)", false, true);
    m_Log.WriteLog(L"entry without time \u20AC", true, false);
    m_Log.ShowError(-1, L"LOC", L"MSG");
    m_Log.ShowError(L"-1 again", L"elsewhere", L"MSG");  // the same message and number
    m_Log.WriteLog(L"after error", true, true);
    m_Log.CloseLogFile();
    m_Log.CloseLogFile();
    EXPECT_EQ(
        Written(),
        Head() +
            "Start log output...\r\nFor File:     FORFILE\r\nVersion:      %s\r\nCompile Time: COMPILETIME\r\n\r\n"
            "\r\nTIME: first entry\r\nTIME: second entry (appended)"
            "\r\n          entry without time \xE2\x82\xAC\r\n" +
            ERROR_START + "Location:  \tLOC\r\nMessage:   \tMSG\r\nError Code:\t-1\r\n" + ERROR_END +
            "\r\n\r\nTIME: after error\r\n" + STARS + "finish: DATE\r\n" + DASHES + "\r\n\r\n");
    EXPECT_EQ(m_Log.GetLogPath(), m_Folder.Wide());
    EXPECT_EQ(m_Log.GetLogFile(), File());
}

TEST_F(XLoggingTest, EntriesCarryTheLinePrefix) {
    m_Log.StartLogging(File(), L"", L"", L"");
    m_Log.WriteLog(L"of the log before, within the same second", true, true);
    m_Log.CloseLogFile();
    ASSERT_TRUE(m_Log.OpenLogFile(L"[db] "));
    EXPECT_FALSE(m_Log.OpenLogFile(L"unused"));
    m_Log.WriteLog(L"a", true, true);
    m_Log.WriteLog(L"b", false, false);
    m_Log.NewLine();
    m_Log.LogWrite(L"raw\r\n");
    m_Log.WriteUnformatted(L"%d");
    EXPECT_EQ(Written(), Head() + "\r\nTIME: [db] a[db] b\r\nraw\r\n%d") << "each is there at once";
}

TEST_F(XLoggingTest, BlocksOfErrorsAreNotRepeated) {
    m_Log.StartLogging(File(), L"", L"", L"");
    const std::string before = Written();
    m_Log.ShowError(L"none", L"L", L"");  // as the state of a new log: code 0, no message
    EXPECT_EQ(Written(), before);
    m_Log.ShowError(3, L".\\x", L"M", 7, L"A");
    m_Log.ShowError(L"x3", L".\\x", L"M", 7, L"A");  // no leading digits: code 0
    std::string blocks = Written().substr(before.size());
    EXPECT_EQ(blocks, std::string{"\r\n"} + ERROR_START +
                          "Location:  \t<M> in [x], line [7]\r\nMessage:   \tA\r\nError Code:\t3\r\n" + ERROR_END +
                          "\r\n\r\n" + ERROR_START +
                          "Location:  \t<M> in [x], line [7]\r\nMessage:   \tA\r\nError Code:\tx3\r\n" + ERROR_END +
                          "\r\n");
}

TEST_F(XLoggingTest, AClosedLogIgnoresEverything) {
    m_Log.WriteLog(L"x", true, true);
    m_Log.ShowError(1, L"L", L"M");
    m_Log.LogWrite(L"x");
    m_Log.CloseLogFile();
    EXPECT_FALSE(std::filesystem::exists(m_Folder.Path() / "run.log"));
}

TEST_F(XLoggingTest, StartingAnOpenLogKeepsTheFile) {
    m_Log.StartLogging(File(), L"", L"", L"");
    m_Log.StartLogging(L"D:\\logs\\other.log", L"unseen", L"", L"");
    m_Log.LogWrite(L"here");
    EXPECT_EQ(m_Log.GetLogFile(), L"D:\\logs\\other.log");
    EXPECT_EQ(m_Log.GetLogPath(), L"D:\\logs");
    EXPECT_TRUE(Written().ends_with("\r\n\r\nhere"));
}

TEST_F(XLoggingTest, AFailedOpenTellsTheCause) {
    const CString missing = m_Folder.Wide("missing/run.log");
    const XException badPath = ErrorOf([&] { m_Log.StartLogging(missing, L"", L"", L""); });
    EXPECT_EQ(badPath.GetMessage(),
              L"Failed to open the log file!\r\nreason: \tCannot open file <" + missing + L">!\r\n\tBad path!");
    EXPECT_EQ(badPath.GetNumber(), 3);
    m_Log.StartLogging(File(), L"", L"", L"");
    m_Log.LogWrite(L"kept");
    XLogging second;
    const XException shared = ErrorOf([&] { second.StartLogging(File(), L"", L"", L""); });
    EXPECT_EQ(shared.GetNumber(), 11);
    EXPECT_TRUE(Written().ends_with("kept")) << "the log of the first writer stays";
    EXPECT_THROW(
        {
            try {
                second.StartLogging(missing, L"", L"", L"");
            } catch (const XFileException&) {
                ADD_FAILURE() << "callers get the plain error";
                throw;
            }
        },
        XException);
}

TEST(XLogging, AFullDiskReachesTheCallerAndNotTheDestructor) {
    XLogging log;
    const XException banner = ErrorOf([&] { log.StartLogging(L"/dev/full", L"", L"", L""); });
    EXPECT_EQ(banner.GetMessage(), L"An unknown exception occured while opening the log file </dev/full>!");
    EXPECT_EQ(banner.GetNumber(), -1);
    // The log counts as open from then on, so every writing operation meets the full disk.
    const std::function<void()> operations[] = {
        [&] { log.LogWrite(L"x"); },
        [&] { log.WriteUnformatted(L"x"); },
        [&] { log.NewLine(); },
        [&] { log.WriteLog(L"x", true, true); },
        [&] { log.ShowError(1, L"L", L"M"); },
        [&] { log.CloseLogFile(); },
    };
    for (const auto& operation : operations) {
        EXPECT_EQ(ErrorOf<CFileException>(operation).m_cause, CFileException::diskFull);
    }
}

TEST_F(XLoggingTest, ShowsItsFileWhileDebugging) {
    BoxRecorder recorder;
    SetDebug(true);
    m_Log.StartLogging(File(), L"", L"", L"");
    SetDebug(false);
    ASSERT_EQ(recorder.boxes.size(), 1U);
    EXPECT_EQ(recorder.boxes[0].text, File());
}

// A log whose writing can be made to fail, as hosts derive it.
struct FailingLog : XLogging {
    void WriteString(const CString& text) override {
        if (m_IsFull) throw CFileException{CFileException::diskFull, ENOSPC, L"log"};
        XLogging::WriteString(text);
    }
    bool m_IsFull = false;
};

TEST_F(XLoggingTest, EveryEntryGoesThroughTheWritingOfTheFile) {
    FailingLog log;
    log.StartLogging(File(), L"", L"", L"");
    log.m_IsFull = true;
    EXPECT_EQ(ErrorOf<CFileException>([&] { log.WriteLog(L"x", true, true); }).m_cause, CFileException::diskFull);
    EXPECT_EQ(ErrorOf<CFileException>([&] { log.WriteLog(L"x", false, false); }).m_cause, CFileException::diskFull);
}

}  // namespace
