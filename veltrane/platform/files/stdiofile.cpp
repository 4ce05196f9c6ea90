#include "veltrane/platform/files/stdiofile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string_view>
#include <utility>

#include "veltrane/platform/files/cfile.h"
#include "veltrane/platform/files/filesystem.h"
#include "veltrane/platform/files/internal/nativefile.h"
#include "veltrane/platform/text/internal/utf8.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

constexpr unsigned WRITE_FLAGS = CFile::modeCreate | CFile::modeWrite | CFile::shareDenyWrite;

CFileException FileError(long osError, const CString& fileName) {
    return {CFileException::OsErrorToException(osError), osError, fileName};
}

// The standard stream that a file is already, -1 for any other file. A log must not empty such a stream.
int StreamOf(const struct stat& file) noexcept {
    struct stat stream;
    for (const int handle : {STDERR_FILENO, STDOUT_FILENO, STDIN_FILENO}) {
        if (fstat(handle, &stream) == 0 && stream.st_dev == file.st_dev && stream.st_ino == file.st_ino) return handle;
    }
    return -1;
}

bool IsWritable(int handle) noexcept {
    return (fcntl(handle, F_GETFL) & O_ACCMODE) != O_RDONLY;
}

// A copy of a descriptor that stands for no standard stream.
NativeFile CopyOf(int handle) noexcept {
    return NativeFile{fcntl(handle, F_DUPFD_CLOEXEC, STDERR_FILENO + 1)};
}

/// Locks a file and only then empties it, so that the file of another writer stays as it is. Devices belong to
/// everybody and hold nothing that could be lost: they are not locked. A standard stream is written through its own
/// descriptor: from two places in one file, each would cover the other's text. @return 0 or the system's error number
int LockAndEmpty(NativeFile& file) {
    struct stat status;
    if (fstat(file.Handle(), &status) != 0) return errno;
    if (fcntl(file.Handle(), F_SETFL, O_APPEND) != 0) return errno;  // from now on a write waits for its reader
    if (S_ISCHR(status.st_mode) || S_ISBLK(status.st_mode)) return 0;
    const int stream = S_ISREG(status.st_mode) ? StreamOf(status) : -1;
    if (stream >= 0 && IsWritable(stream)) {
        file = CopyOf(stream);
        return file ? 0 : errno;
    }
    // flock, because record locks never conflict within a process. On a file system without locks the file stays
    // unlocked.
    if (Retried([&] { return flock(file.Handle(), LOCK_EX | LOCK_NB); }) != 0 && errno == EWOULDBLOCK) return errno;
    if (!S_ISREG(status.st_mode) || stream >= 0) return 0;
    return Retried([&] { return ftruncate(file.Handle(), 0); }) != 0 ? errno : 0;
}

/// @return 0 or the system's error number, ENOTDIR for everything that lacks the folder
int OpenForWriting(const CString& path, NativeFile& file) {
    const std::string name = MapPath(path);
    if (name.empty()) return ENOTDIR;
    file = OpenWithoutWaiting(name, O_WRONLY | O_CREAT | O_APPEND, 0666);
    // A process that was started without its standard streams would write its messages into the file.
    if (file && file.Handle() <= STDERR_FILENO) file = CopyOf(file.Handle());
    if (!file) return errno == ENOENT ? ENOTDIR : errno;  // a missing file would have been created
    return LockAndEmpty(file);
}

bool IsPipe(const NativeFile& file) noexcept {
    struct stat status;
    return fstat(file.Handle(), &status) != 0 || S_ISFIFO(status.st_mode);
}

int WriteGuarded(int handle, std::string_view bytes) noexcept {
    const WriteSignalGuard guard;
    return WriteAll(handle, bytes);
}

}  // namespace

CStdioFile::~CStdioFile() {
    CloseHandle();  // an error could reach nobody, and reporting it needs memory
}

bool CStdioFile::Open(const CString& path, unsigned flags, CFileException* error) {
    const auto fails = [&](const CFileException& failure) {
        if (error) *error = failure;
        return false;
    };
    if (flags != WRITE_FLAGS) return fails(FileError(EINVAL, path));
    if (const int osError = CloseHandle()) return fails(FileError(osError, m_FileName));
    NativeFile file;
    if (const int osError = OpenForWriting(path, file)) return fails(FileError(osError, path));
    m_FileName = path;
    m_IsPipe = IsPipe(file);
    OutliveFileSizeLimit();  // to ask for the limit with each write would cost more than the line
    m_Handle = file.Release();
    return true;
}

void CStdioFile::WriteString(const CString& text) {
    RequireOpen();
    constexpr std::size_t keptCapacity = 1 << 14;  // more than a log line needs; a larger buffer is freed at once
    m_Bytes.clear();
    AppendUtf8(m_Bytes, text.View());
    const int osError = m_IsPipe ? WriteGuarded(m_Handle, m_Bytes) : WriteAll(m_Handle, m_Bytes);
    if (m_Bytes.capacity() > keptCapacity) std::string{}.swap(m_Bytes);
    if (osError != 0) throw FileError(osError, m_FileName);
}

void CStdioFile::Flush() {
    RequireOpen();
}

void CStdioFile::RequireOpen() const {
    if (m_Handle < 0) throw FileError(EINVAL, m_FileName);
}

void CStdioFile::Close() {
    if (const int osError = CloseHandle()) throw FileError(osError, m_FileName);
}

int CStdioFile::CloseHandle() noexcept {
    if (m_Handle < 0) return 0;
    const int handle = std::exchange(m_Handle, -1);
    // Never retried: the descriptor is free even after a failure and may already belong to another file.
    return close(handle) != 0 && errno != EINTR ? errno : 0;
}
