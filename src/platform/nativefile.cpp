#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "platform/detail/nativefile.h"
#include "platform/filesystem.h"

NativeFile::~NativeFile() {
    if (m_Handle >= 0) close(m_Handle);
}

namespace {

// Not blocking: a pipe without a writer or a sleeping device must not hold up who only looks for a file.
NativeFile OpenReadOnly(const std::string& name) {
    return NativeFile{Retried([&] { return open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY); })};
}

}  // namespace

InputFile OpenForReading(const CString& path) {
    const std::string spelled = SpelledPath(path);
    if (spelled.empty()) return {};
    InputFile input{OpenReadOnly(spelled)};
    if (!input && errno == ENOENT) {
        const std::string mapped = MapPath(path);
        if (mapped != spelled) input.file = OpenReadOnly(mapped);
    }
    struct stat status;
    if (!input || fstat(input.file.Handle(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
    input.size = static_cast<std::size_t>(status.st_size);
    return input;
}

bool ReadToEnd(const NativeFile& file, std::size_t expected, std::string& bytes) {
    constexpr std::size_t leastRoom = 4096;
    std::size_t used = 0;
    // One byte more than expected, so that a file of just that size ends without another round.
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
