#pragma once

#include <signal.h>

#include <cerrno>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "platform/cstring.h"

/// Repeats a call of the system as long as a signal interrupts it.
template <class Call>
auto Retried(Call&& call) {
    for (;;) {
        const auto result = call();
        if (result >= 0 || errno != EINTR) return result;
    }
}

/// A descriptor of the system that closes itself.
class NativeFile {
public:
    NativeFile() = default;
    explicit NativeFile(int handle) noexcept : m_Handle(handle) {}
    NativeFile(NativeFile&& other) noexcept : m_Handle(other.Release()) {}
    NativeFile& operator=(NativeFile&& other) noexcept {
        std::swap(m_Handle, other.m_Handle);
        return *this;
    }
    ~NativeFile();

    explicit operator bool() const noexcept { return m_Handle >= 0; }
    int Handle() const noexcept { return m_Handle; }
    /// Hands the descriptor over to the caller.
    int Release() noexcept { return std::exchange(m_Handle, -1); }

private:
    int m_Handle = -1;
};

/// Whether an error of the system leaves it open that the name exists in another spelling, which can be a shorter one.
inline bool IsMissing(int error) noexcept {
    return error == ENOENT || error == ENAMETOOLONG;
}

/// MapPath for a spelled path that the system has just not found.
std::string MapMissingPath(const std::string& spelled);
/// Whether a spelled path is known to name nothing, in no case of its letters, without looking for it again.
bool IsStillMissing(const std::string& spelled) noexcept;

/// Opens a file through the path mapping; a path spelled as on the disk costs one open. It may be a pipe or a device,
/// which is not waited for: look at its size before reading from it.
/// @param spelled  as SpelledPath gives it
/// @return no file when it is missing or unreadable
NativeFile OpenForReading(const std::string& spelled);

/// Size of a regular file in bytes; 0 for anything else, for no file too.
std::size_t RegularSize(const NativeFile& file) noexcept;

/// Reads a file from its place to its end, however long it has become.
/// @param expected  size to make room for
/// @return false when reading fails; bytes then holds what came before
bool ReadToEnd(const NativeFile& file, std::size_t expected, std::string& bytes);

/// Writes all bytes, with one call unless the system takes less or a signal interrupts it. Waits for nobody: a pipe
/// that is full and not to be waited for is an error.
/// @return 0 or the system's error number
int WriteAll(int handle, std::string_view bytes) noexcept;

/// Keeps the signals of a pipe whose reader is gone, and of a file at the limit for the process, from ending the
/// process while the guard lives: writing then fails like any other.
class WriteSignalGuard {
public:
    WriteSignalGuard() noexcept;
    WriteSignalGuard(const WriteSignalGuard&) = delete;
    WriteSignalGuard& operator=(const WriteSignalGuard&) = delete;
    ~WriteSignalGuard();

private:
    sigset_t m_Before;
    sigset_t m_Pending;
};
