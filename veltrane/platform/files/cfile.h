#pragma once

#include "veltrane/platform/files/fileexception.h"
#include "veltrane/platform/files/stdiofile.h"
#include "veltrane/platform/text/cstring.h"

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
    [[nodiscard]] static bool GetStatus(const CString& path, CFileStatus& status);
};
