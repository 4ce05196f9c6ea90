#include "veltrane/platform/files/internal/nativefile.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <initializer_list>

namespace veltrane::detail {

NativeFile OpenWithoutWaiting(const std::string& name, int flags, unsigned mode) noexcept {
    flags |= O_CLOEXEC | O_NOCTTY;
    NativeFile file{Retried([&] { return open(name.c_str(), flags | O_NONBLOCK, mode); })};
    struct stat status;
    if (file || errno != EWOULDBLOCK || stat(name.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return file;
    return NativeFile{Retried([&] { return open(name.c_str(), flags, mode); })};
}

bool ReadToEnd(const NativeFile& file, std::size_t expected, std::string& bytes) {
    constexpr std::size_t leastRoom = 4096;
    std::size_t used = 0;
    // One byte more than expected, so that a file of exactly that size ends without another round.
    for (std::size_t room = expected + 1;; room = std::max(leastRoom, used)) {
        bytes.resize(used + room);
        while (used < bytes.size()) {
            const ssize_t count =
                Retried([&] { return read(file.Handle(), bytes.data() + used, bytes.size() - used); });
            if (count <= 0) {
                bytes.resize(used);
                return count == 0;
            }
            used += static_cast<std::size_t>(count);
        }
    }
}

namespace {

// Waits for the reader of a descriptor that somebody has set not to wait.
bool IsWritable(int handle) noexcept {
    pollfd waiting{handle, POLLOUT, 0};
    return Retried([&] { return poll(&waiting, 1, -1); }) == 1;
}

}  // namespace

int WriteAll(int handle, std::string_view bytes) noexcept {
    while (!bytes.empty()) {
        const ssize_t count = Retried([&] { return write(handle, bytes.data(), bytes.size()); });
        if (count < 0 && errno == EAGAIN && IsWritable(handle)) continue;
        if (count < 0) return errno;
        if (count == 0) return EIO;  // a file that accepts nothing would be retried forever
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return 0;
}

namespace {

constexpr int WRITE_SIGNALS[] = {SIGPIPE, SIGXFSZ};

sigset_t SetOf(std::initializer_list<int> members) noexcept {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int member : members) sigaddset(&signals, member);
    return signals;
}

void DoNothing(int) noexcept {}

// The library may go before the process ends, and the handler with it.
[[gnu::destructor]] void IgnoreInsteadOfHandling() noexcept {
    struct sigaction action;
    if (sigaction(SIGXFSZ, nullptr, &action) != 0 || action.sa_handler != DoNothing) return;
    action.sa_handler = SIG_IGN;
    sigaction(SIGXFSZ, &action, nullptr);
}

}  // namespace

// A handler: an ignored signal would be inherited by the programs that the process starts.
void OutliveFileSizeLimit() noexcept {
    struct sigaction action;
    if (sigaction(SIGXFSZ, nullptr, &action) != 0 || action.sa_handler != SIG_DFL) return;
    action.sa_handler = DoNothing;
    action.sa_flags = SA_RESTART;
    sigaction(SIGXFSZ, &action, nullptr);
}

WriteSignalGuard::WriteSignalGuard() noexcept {
    sigpending(&m_Pending);
    const sigset_t signals = SetOf({WRITE_SIGNALS[0], WRITE_SIGNALS[1]});
    pthread_sigmask(SIG_BLOCK, &signals, &m_Before);
}

WriteSignalGuard::~WriteSignalGuard() {
    const timespec noTime{};
    for (const int signal : WRITE_SIGNALS) {
        const sigset_t raised = SetOf({signal});
        if (sigismember(&m_Pending, signal) == 0)
            sigtimedwait(&raised, nullptr, &noTime);  // removes the one that the write has raised
    }
    pthread_sigmask(SIG_SETMASK, &m_Before, nullptr);
}

}  // namespace veltrane::detail
