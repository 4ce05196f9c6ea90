#pragma once

#include <exception>
#include <string>

#include "veltrane/platform/text/cstring.h"

/// A failed file operation, as the system reported it.
/// @code
/// CFileException error;
/// if (!file.Open(path, flags, &error) && error.m_cause == CFileException::accessDenied) AskForAnotherPath();
/// @endcode
class VELTRANE_API CFileException : public std::exception {
public:
    /// Causes, numbered as hosts and log readers know them. removeCurrentDir and endOfFile never occur on this system.
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

    /// "File <run.log>: Disk full! (No space left on device)" in UTF-8, from the fields as they are; the cause alone
    /// when there is no memory for more. Valid until the next call for the same object and as long as that lives.
    const char* what() const noexcept override;

    /// The cause of a system error number (errno); genericException for a number without a cause of its own.
    [[nodiscard]] static int OsErrorToException(long osError) noexcept;

    int m_cause = none;
    long m_lOsError = 0;  ///< errno of the failed call
    CString m_strFileName;

private:
    mutable std::string m_What;
};

namespace veltrane::detail {

/// The fixed text of a cause; "Unknown error!" for any other number.
const char* CauseText(int cause) noexcept;

}  // namespace veltrane::detail
