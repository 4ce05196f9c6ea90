#pragma once

#include <exception>

#include "veltrane/platform/text/cstring.h"

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
