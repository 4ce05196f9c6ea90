#include "veltrane/platform/files/openfile.h"

#include <fcntl.h>

#include "veltrane/platform/files/detail/missingpath.h"

namespace veltrane::detail {

namespace {

// Not blocking: a pipe without a writer or a sleeping device must not hold up who only looks for a file.
NativeFile OpenReadOnly(const std::string& name) {
    return NativeFile{Retried([&] { return open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY); })};
}

}  // namespace

NativeFile OpenForReading(const std::string& spelled) {
    if (spelled.empty()) return {};
    NativeFile file = OpenReadOnly(spelled);
    if (!file && IsMissing(errno)) {
        const std::string mapped = MapMissingPath(spelled);
        if (mapped != spelled) file = OpenReadOnly(mapped);
    }
    return file;
}

}  // namespace veltrane::detail
