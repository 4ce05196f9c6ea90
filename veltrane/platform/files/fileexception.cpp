#include "veltrane/platform/files/fileexception.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <system_error>

#include "veltrane/platform/text/encoding.h"

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

constexpr const char* CAUSE_TEXTS[] = {
    "None!",          "Generic exception!", "File not found!",           "Bad path!",       "Too many open files!",
    "Access denied!", "Invalid file!",      "Remove current directory!", "Directory full!", "Bad seek!",
    "Hard IO!",       "Sharing violation!", "Lock violation!",           "Disk full!",      "End of file!",
};
static_assert(std::size(CAUSE_TEXTS) == CFileException::endOfFile + 1);

}  // namespace

const char* veltrane::detail::CauseText(int cause) noexcept {
    const bool isKnown = cause >= 0 && static_cast<std::size_t>(cause) < std::size(CAUSE_TEXTS);
    return isKnown ? CAUSE_TEXTS[cause] : "Unknown error!";
}

CFileException::CFileException(int cause, long osError, CString fileName)
    : m_cause(cause), m_lOsError(osError), m_strFileName(std::move(fileName)) {}

const char* CFileException::what() const noexcept {
    const char* const cause = veltrane::detail::CauseText(m_cause);
    try {
        m_What = m_strFileName.IsEmpty() ? "" : "File <" + veltrane::ToUtf8(m_strFileName) + ">: ";
        m_What += cause;
        if (m_lOsError != 0) m_What += " (" + std::generic_category().message(static_cast<int>(m_lOsError)) + ")";
        return m_What.c_str();
    } catch (...) {
        return cause;
    }
}

int CFileException::OsErrorToException(long osError) noexcept {
    const auto* const row = std::ranges::find(ERROR_ROWS, osError, &ErrorRow::osError);
    return row == std::end(ERROR_ROWS) ? genericException : row->cause;
}
