#include "veltrane/platform/process/process.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <optional>

#include "veltrane/platform/files/internal/nativefile.h"
#include "veltrane/platform/text/encoding.h"

namespace veltrane {

using namespace detail;

namespace {

// Pieces that end in NUL, empty ones included; a last piece without its NUL counts too.
std::vector<CString> SplitAtNul(std::string_view bytes) {
    std::vector<CString> pieces;
    while (!bytes.empty()) {
        const std::size_t end = std::min(bytes.find('\0'), bytes.size());
        pieces.push_back(FromUtf8(bytes.substr(0, end)));
        bytes.remove_prefix(std::min(end + 1, bytes.size()));
    }
    return pieces;
}

std::vector<CString> ReadArguments() {
    const NativeFile file{Retried([] { return open("/proc/self/cmdline", O_RDONLY | O_CLOEXEC); })};
    std::string bytes;
    constexpr std::size_t usualSize = 1023;
    if (!file || !ReadToEnd(file, usualSize, bytes)) return {};
    return SplitAtNul(bytes);
}

// Never destroyed, nor are those that replace them.
const std::vector<CString>& OwnArguments() {
    static const auto& arguments = *new std::vector<CString>{ReadArguments()};
    return arguments;
}

std::optional<std::vector<CString>>& GivenArguments() {
    static auto& arguments = *new std::optional<std::vector<CString>>;
    return arguments;
}

}  // namespace

std::vector<CString> GetArguments() {
    return GivenArguments() ? *GivenArguments() : OwnArguments();
}

void SetArguments(std::vector<CString> arguments) {
    GivenArguments() = std::move(arguments);
}

void HoldStandardStreams() noexcept {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) >= 0) continue;
        // Gets the lowest free number, opened for the direction that nobody uses.
        static_cast<void>(stream == STDIN_FILENO ? open("/dev/null", O_WRONLY) : open("/dev/null", O_RDONLY));
    }
}

std::int32_t TickCount() {
    using std::chrono::milliseconds;
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    const auto count = std::chrono::duration_cast<milliseconds>(sinceStart).count();
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(count));
}

}  // namespace veltrane
