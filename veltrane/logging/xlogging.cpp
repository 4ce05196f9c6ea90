#include "veltrane/logging/xlogging.h"

#include "veltrane/foundation/xdebug.h"
#include "veltrane/foundation/xpath.h"
#include "veltrane/foundation/xraise.h"
#include "veltrane/platform/process/localtime.h"
#include "veltrane/platform/text/numbers.h"

using namespace veltrane;

namespace {

constexpr XSource Here{L".\\xlogging"};

constexpr wchar_t LINE_END[] = L"\r\n";
constexpr wchar_t DATE_FORMAT[] = L"%A, %B %d, %Y ; %H:%M:%S";
constexpr wchar_t ENTRY_INDENT[] = L"\r\n          ";  // as wide as the time
constexpr wchar_t ERROR_START[] = L"########################## Error info start ##########################\r\n";
constexpr wchar_t ERROR_END[] = L"##########################  Error info end  ##########################\r\n";
constexpr int RULE_WIDTH = 105;
constexpr int LONGEST_KEPT = 4096;  // elements of an entry whose memory the next one reuses

/// Marks a line as in use while it is being written, whatever the writing throws.
class InUse {
public:
    explicit InUse(bool& mark) noexcept : m_bMark(mark) { m_bMark = true; }
    InUse(const InUse&) = delete;
    InUse& operator=(const InUse&) = delete;
    ~InUse() { m_bMark = false; }

private:
    bool& m_bMark;
};

CString Rule(wchar_t element) {
    return CString{element, RULE_WIDTH} + LINE_END;
}

CString Now() {
    return LocalTimeText(DATE_FORMAT, CurrentTime());
}

}  // namespace

XLogging::~XLogging() {
    try {
        CloseLogFile();
    } catch (...) {  // NOLINT(bugprone-empty-catch): nobody is left to be told
    }
}

void XLogging::StartLogging(const CString& logFile, const CString& forFile, const CString& version,
                            const CString& compileTime) {
    m_LogFile = logFile;
    if (OpenLogFile({})) {
        LogWrite(
            FormatText(L"Start log output...\r\n"
                       L"For File:     %s\r\n"
                       L"Version:      %s\r\n"
                       L"Compile Time: %s\r\n"
                       L"\r\n",
                       forFile, version, compileTime));
    }
    CString name;
    SplitFileName(m_LogPath, name, m_LogFile);
}

bool XLogging::OpenLogFile(const CString& linePrefix) {
    if (m_bOpen) return false;
    try {
        PrintDebug(m_LogFile);
        CFileException failure;
        if (!Open(m_LogFile, CFile::modeCreate | CFile::modeWrite | CFile::shareDenyWrite, &failure)) {
            throw MakeOpenError(Here(L"XLogging::OpenLogFile"), m_LogFile, failure);
        }
        m_bOpen = true;
        m_LinePrefix = linePrefix;
        m_nLineStart = 0;
        LogWrite(Rule(L'*') + Rule(L'*') + FormatText(L"Log output of %s\r\nstart: %s\r\n", m_LogFile, Now()) +
                 Rule(L'-'));
        return true;
    } catch (const XException& failure) {
        XException error = failure;  // callers get the plain error, whatever was thrown here
        AddReasonAt(error, Here(L"XLogging::OpenLogFile"), L"Failed to open the log file!");
        throw error;
    } catch (...) {
        throw MakeError(Here(L"XLogging::OpenLogFile"),
                        L"An unknown exception occured while opening the log file <%s>!", m_LogFile);
    }
}

void XLogging::CloseLogFile() {
    if (!m_bOpen) return;
    const CString end = LINE_END + Rule(L'*') + FormatText(L"finish: %s\r\n", Now()) + Rule(L'-') + LINE_END + LINE_END;
    m_bOpen = false;
    try {
        WriteString(end);
    } catch (...) {  // the file is closed all the same, so that another can be opened
        CloseQuietly();
        throw;
    }
    Close();
}

void XLogging::CloseQuietly() {
    try {
        Close();
    } catch (...) {  // NOLINT(bugprone-empty-catch): what failed first is on its way
    }
}

void XLogging::LogWrite(const CString& text) {
    if (!m_bOpen) return;
    WriteString(text);
    Flush();
}

void XLogging::WriteUnformatted(CString text) {
    LogWrite(text);
}

void XLogging::NewLine() {
    LogWrite(LINE_END);
}

void XLogging::WriteLog(const CString& text, bool newLine, bool timeStamp) {
    if (!m_bOpen) return;
    if (newLine && timeStamp) {
        WriteTimedLine(text);
    } else {
        LogWrite((newLine ? ENTRY_INDENT : L"") + m_LinePrefix + text);
    }
}

// A host's own WriteString may write entries to the log while it writes this line: they get lines of their own.
void XLogging::WriteTimedLine(const CString& text) {
    if (m_bLineInUse || text.GetLength() > LONGEST_KEPT) {
        LogWrite(LineStart() + text);
        return;
    }
    if (m_Stamp.Update() || m_nLineStart == 0) {
        m_nLineStart = 0;  // if the line fails, the next entry tries again
        m_TimedLine = LineStart();
        m_nLineStart = m_TimedLine.GetLength();
    }
    m_TimedLine.Truncate(m_nLineStart);
    m_TimedLine += text;
    const InUse guard{m_bLineInUse};
    LogWrite(m_TimedLine);
}

// Line end, current time and prefix. What was kept for an older time is then out of date.
CString XLogging::LineStart() {
    if (m_Stamp.Update()) m_nLineStart = 0;
    return LINE_END + m_Stamp.Text() + m_LinePrefix;
}

void XLogging::ShowError(CString code, CString location, CString message) {
    if (!m_bOpen) return;
    const int number = _wtoi(code);
    if (message == m_LastErrorMessage && number == m_nLastErrorCode) return;
    LogWrite(LINE_END + FormatText(L"%sLocation:  \t%s\r\nMessage:   \t%s\r\nError Code:\t%s\r\n%s\r\n", ERROR_START,
                                   location, message, code, ERROR_END));
    m_LastErrorMessage = message;
    m_nLastErrorCode = number;
}

void XLogging::ShowError(int code, CString location, CString message) {
    ShowError(FormatText(L"%d", code), location, message);
}

void XLogging::ShowError(int code, CString file, CString method, int line, CString message) {
    ShowError(FormatText(L"%d", code), file, method, line, message);
}

void XLogging::ShowError(CString code, CString file, CString method, int line, CString message) {
    ShowError(code, XException::GetLocationString(file, method, line), message);
}
