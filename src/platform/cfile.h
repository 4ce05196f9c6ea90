#pragma once

#include <exception>
#include <string>

#include "platform/cstring.h"

/// A failed file operation, as the system reported it.
/// @code
/// CFileException error;
/// if (!file.Open(path, flags, &error) && error.m_cause == CFileException::accessDenied) AskForAnotherPath();
/// @endcode
class VELTRANE_API CFileException : public std::exception {
public:
    /// Causes, numbered as hosts and log readers know them. Nothing on this system gives removeCurrentDir or endOfFile.
    enum Cause : int {
        none,
        genericException,
        fileNotFound,
        badPath,
        tooManyOpenFiles,
        accessDenied,
        invalidFile,
        removeCurrentDir,
        directoryFull,
        badSeek,
        hardIO,
        sharingViolation,
        lockViolation,
        diskFull,
        endOfFile
    };

    CFileException() = default;
    CFileException(int cause, long osError, CString fileName);

    /// The cause of a system error number (errno); genericException for a number without a cause of its own.
    static int OsErrorToException(long osError) noexcept;

    int m_cause = none;
    long m_lOsError = 0;  ///< errno of the failed call
    CString m_strFileName;
};

/// What CFile::GetStatus finds out about a path.
struct CFileStatus {
    CString m_szFullName;  ///< absolute path with "." and ".." resolved by text
};

/// Questions about files by their path.
/// @code
/// CFileStatus status;
/// if (CFile::GetStatus(L"D:\\Out\\..\\run.log", status)) Use(status.m_szFullName);
/// @endcode
class VELTRANE_API CFile {
public:
    static constexpr unsigned modeWrite = 0x0001;
    static constexpr unsigned shareDenyWrite = 0x0020;
    static constexpr unsigned modeCreate = 0x1000;  ///< an existing file is emptied

    /// Whether a path names an existing file or folder; links are followed, no right to open it is needed. A path that
    /// names nothing leaves status untouched.
    static bool GetStatus(const CString& path, CFileStatus& status);
};

/// A text file that is written: UTF-8, line ends as given, no mark at the start, nothing kept back in the process.
/// @code
/// CStdioFile file;
/// if (file.Open(path, CFile::modeCreate | CFile::modeWrite | CFile::shareDenyWrite)) file.WriteString(L"done\r\n");
/// @endcode
class VELTRANE_API CStdioFile {
public:
    CStdioFile() = default;
    CStdioFile(const CStdioFile&) = delete;
    CStdioFile& operator=(const CStdioFile&) = delete;
    virtual ~CStdioFile();  ///< closes; a failure is swallowed

    /// Opens a path for writing with modeCreate | modeWrite | shareDenyWrite; other flags fail with cause 1. The file
    /// is locked before it is emptied, so the file of another writer (in this process too) stays as it is. An open file
    /// is closed first.
    /// @param error  receives cause, system error number and path of a failure; may be null
    /// @return false when the file could not be opened
    virtual bool Open(const CString& path, unsigned flags, CFileException* error = nullptr);

    /// Writes the whole text with one call to the system, more only after short writes and interrupts.
    /// @throws CFileException  failing write; cause 1 when no file is open
    virtual void WriteString(const CString& text);

    /// All that was written is already with the system; nothing is left to do. @throws CFileException as WriteString
    virtual void Flush();

    /// Closes and unlocks; does nothing when no file is open. @throws CFileException when the system reports a write
    /// that failed late; the file is closed all the same
    virtual void Close();

private:
    void RequireOpen() const;

    int m_Handle = -1;
    bool m_MayRaiseSignals = false;  // a failing write would end the process, not return
    CString m_FileName;
    std::string m_Bytes;  // of the text being written; kept to spare each line an allocation
};
