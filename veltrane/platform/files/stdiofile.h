#pragma once

#include <string>

#include "veltrane/platform/files/fileexception.h"

/// A text file that is written: UTF-8, line ends as given, no mark at the start, nothing buffered in the process.
/// @code
/// CStdioFile file;
/// if (file.Open(path, CFile::modeCreate | CFile::modeWrite | CFile::shareDenyWrite)) file.WriteString(L"done\r\n");
/// @endcode
class VELTRANE_API CStdioFile {
public:
    CStdioFile() = default;
    CStdioFile(const CStdioFile&) = delete;
    CStdioFile& operator=(const CStdioFile&) = delete;
    virtual ~CStdioFile();  ///< closes; a failure is ignored

    /// Opens a path for writing with modeCreate | modeWrite | shareDenyWrite; other flags fail with cause 1. The file
    /// is locked before it is emptied, so the file of another writer (in this process too) stays as it is; a file that
    /// is a standard stream of the process, by "/dev/stderr" or by its own name, is not emptied, and the text continues
    /// where that stream is written, without a lock. In any other file each write goes to the end that the file has
    /// then. An open file is closed first. From the first opening on, the system's signal for a file at its size limit
    /// (SIGXFSZ) no longer ends the process; a handler of the host stays.
    /// @param error  receives cause, system error number and path of a failure; may be null
    /// @return false when the file could not be opened
    [[nodiscard]] virtual bool Open(const CString& path, unsigned flags, CFileException* error = nullptr);

    /// Writes the whole text with one call to the system, more only after short writes and interrupts; waits for the
    /// reader of a pipe.
    /// @throws CFileException  failing write; cause 1 when no file is open
    virtual void WriteString(const CString& text);

    /// Does nothing: the system already has all that was written. @throws CFileException as WriteString
    virtual void Flush();

    /// Closes and unlocks; does nothing when no file is open. @throws CFileException when the system reports a write
    /// that failed late; the file is closed all the same
    virtual void Close();

private:
    void RequireOpen() const;
    /// @return 0 or the system's error number; closed in any case
    int CloseHandle() noexcept;

    int m_Handle = -1;
    bool m_IsPipe = false;  // a write without a reader would end the process, not return
    CString m_FileName;
    std::string m_Bytes;  // of the text being written; kept to spare each line an allocation
};
