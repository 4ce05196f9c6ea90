#include "veltrane/platform/files/internal/openfile.h"

#include <fcntl.h>

#include "veltrane/platform/files/detail/missingpath.h"

namespace veltrane::detail {

NativeFile OpenForReading(const std::string& spelled) {
    if (spelled.empty()) return {};
    NativeFile file = OpenWithoutWaiting(spelled, O_RDONLY);
    if (!file && IsMissing(errno)) {
        const std::string mapped = MapMissingPath(spelled);
        if (mapped != spelled) file = OpenWithoutWaiting(mapped, O_RDONLY);
    }
    return file;
}

}  // namespace veltrane::detail
