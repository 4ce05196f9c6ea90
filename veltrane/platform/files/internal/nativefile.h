#pragma once

#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <memory>
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
    ~NativeFile() {
        if (m_Handle >= 0) close(m_Handle);
    }

    explicit operator bool() const noexcept { return m_Handle >= 0; }
    int Handle() const noexcept { return m_Handle; }
    /// Hands the descriptor over to the caller.
    int Release() noexcept { return std::exchange(m_Handle, -1); }

private:
    int m_Handle = -1;
};

/// A name of the system without links and relative parts; empty, with the reason in errno, when nothing has it.
inline std::string Resolved(const std::string& name) {
    const std::unique_ptr<char, decltype(&std::free)> full{realpath(name.c_str(), nullptr), std::free};
    return full ? full.get() : "";
}

/// Opens a file without waiting for the other end of a pipe or for a device. If another process holds a lease on a
/// regular file, opening waits until that process has given it up.
/// @param flags  those of open; O_NONBLOCK and O_CLOEXEC are added
NativeFile OpenWithoutWaiting(const std::string& name, int flags, unsigned mode = 0) noexcept;

/// Reads a file from its current position to its end, however long it has become.
/// @param expected  size to make room for
/// @return false when reading fails; bytes then holds what came before
bool ReadToEnd(const NativeFile& file, std::size_t expected, std::string& bytes);

/// Writes all bytes, with one call unless the system accepts fewer or a signal interrupts it. Waits for a slow reader.
/// @return 0 or the system's error number
int WriteAll(int handle, std::string_view bytes) noexcept;

/// From now on a write beyond the limit of a file's size fails like any other, whenever the limit is set: the signal
/// for it (SIGXFSZ) no longer ends the process. A handler of the host stays.
void OutliveFileSizeLimit() noexcept;

/// While it lives, neither the signal of a pipe whose reader is gone nor that of a file at its size limit ends the
/// process: the write fails like any other.
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
