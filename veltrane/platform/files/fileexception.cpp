#include "veltrane/platform/files/fileexception.h"

#include <algorithm>
#include <cerrno>
#include <iterator>

namespace {

struct ErrorRow {
    int osError;
    CFileException::Cause cause;
};

// EWOULDBLOCK is EAGAIN here.
constexpr ErrorRow ERROR_ROWS[] = {
    {0, CFileException::none},
    {ENOENT, CFileException::fileNotFound},
    {ENOTDIR, CFileException::badPath},
    {ENAMETOOLONG, CFileException::badPath},
    {ELOOP, CFileException::badPath},
    {EMFILE, CFileException::tooManyOpenFiles},
    {ENFILE, CFileException::tooManyOpenFiles},
    {EACCES, CFileException::accessDenied},
    {EPERM, CFileException::accessDenied},
    {EROFS, CFileException::accessDenied},
    {EISDIR, CFileException::accessDenied},
    {EBADF, CFileException::invalidFile},
    {EMLINK, CFileException::directoryFull},
    {ESPIPE, CFileException::badSeek},
    {EIO, CFileException::hardIO},
    {EAGAIN, CFileException::sharingViolation},
    {EBUSY, CFileException::sharingViolation},
    {ETXTBSY, CFileException::sharingViolation},
    {ENOLCK, CFileException::lockViolation},
    {EDEADLK, CFileException::lockViolation},
    {ENOSPC, CFileException::diskFull},
    {EDQUOT, CFileException::diskFull},
};

}  // namespace

CFileException::CFileException(int cause, long osError, CString fileName)
    : m_cause(cause), m_lOsError(osError), m_strFileName(std::move(fileName)) {}

int CFileException::OsErrorToException(long osError) noexcept {
    const auto* const row = std::ranges::find(ERROR_ROWS, osError, &ErrorRow::osError);
    return row == std::end(ERROR_ROWS) ? genericException : row->cause;
}
