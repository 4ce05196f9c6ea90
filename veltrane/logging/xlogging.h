#pragma once

#include <cstdint>

#include "veltrane/foundation/xexception.h"
#include "veltrane/platform/files/cfile.h"
#include "veltrane/platform/process/localtime.h"
#include "veltrane/platform/text/cstring.h"

/// The log of a host: one text file in UTF-8, lines ended by "\r\n", with a banner, a header, entries and error blocks.
/// Each operation is one write to the system, so entries are in the file even when the process crashes. While the log
/// is not open the writing operations do nothing; open, they throw a CFileException when the system cannot write.
/// @code
/// XLogging log;
/// log.StartLogging(L"D:\\Out\\run.log", L"veltrane.exe", L"3.1", L"Nov 17 2026");
/// log.WriteLog(L"loading dictionaries", true, true);
/// log.ShowError(error.GetNumber(), error.GetLocation(), error.GetMessage());
/// @endcode
class VELTRANE_API XLogging : public CStdioFile {
public:
    XLogging() = default;
    ~XLogging() override;  ///< closes with the finish banner; failures are ignored

    [[nodiscard]] CString GetLogPath() const { return m_LogPath; }  ///< folder, no separator at its end
    [[nodiscard]] CString GetLogFile() const { return m_LogFile; }

    /// Opens a log with an empty line prefix and writes the header. An open log stays open as it is.
    /// @throws XException  as OpenLogFile
    void StartLogging(const CString& logFile, const CString& forFile, const CString& version,
                      const CString& compileTime);
    /// Opens the log file, which is emptied, and writes the banner. Folders are not created.
    /// @return false, with nothing changed, when the log is open
    /// @throws XException  the file cannot be opened: the number is the cause; the banner cannot be written
    bool OpenLogFile(const CString& linePrefix);
    /// Writes the closing banner and closes. @throws CFileException  the banner cannot be written; the log is closed
    /// all the same and can be opened again
    void CloseLogFile();

    void LogWrite(const CString& text);  ///< as it is, no line end added
    void WriteUnformatted(CString text);
    void NewLine();

    /// Writes an entry: line prefix and text, on a new line after the time or, without timeStamp, ten blanks. Without
    /// newLine it continues the line, and there is no time. The line is left open.
    void WriteLog(const CString& text, bool newLine, bool timeStamp);

    // Error blocks, written to the log only. A repeat of the last message and code is left out.

    void ShowError(CString code, CString location, CString message);
    void ShowError(int code, CString location, CString message);
    void ShowError(int code, CString file, CString method, int line, CString message);
    void ShowError(CString code, CString file, CString method, int line, CString message);

private:
    void WriteTimedLine(const CString& text);
    CString LineStart();
    void CloseQuietly();

    CString m_LinePrefix;
    CString m_LogPath;
    CString m_LogFile;
    bool m_bOpen = false;
    CString m_LastErrorMessage;
    std::int32_t m_nLastErrorCode = 0;
    veltrane::TimeStamp m_Stamp{L"%H:%M:%S: "};
    bool m_bLineInUse = false;
    int m_nLineStart = 0;  // length of the start of the line below, in front of the text; 0: must be composed
    CString m_TimedLine;   // the last entry with a time; kept to save the next one most of the work
};
