#pragma once

#include <signal.h>

#include <cerrno>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "veltrane/platform/text/cstring.h"

namespace veltrane::detail {

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

/// Opens a file without waiting for the other end of a pipe or for a device. A regular file on which another process
/// holds a lease is waited for: that process is told, and gives the lease back.
/// @param flags  those of open; O_NONBLOCK and O_CLOEXEC come on top
NativeFile OpenWithoutWaiting(const std::string& name, int flags, unsigned mode = 0) noexcept;

/// Reads a file from its place to its end, however long it has become.
/// @param expected  size to make room for
/// @return false when reading fails; bytes then holds what came before
bool ReadToEnd(const NativeFile& file, std::size_t expected, std::string& bytes);

/// Writes all bytes, with one call unless the system takes less or a signal interrupts it. A reader that is slow is
/// waited for.
/// @return 0 or the system's error number
int WriteAll(int handle, std::string_view bytes) noexcept;

/// Makes a write beyond the limit of a file's size fail like any other from now on, whenever the limit is set: where
/// the signal for it (SIGXFSZ) would end the process, it does nothing. A handler of the host stays.
void OutliveFileSizeLimit() noexcept;

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

}  // namespace veltrane::detail
