#include "veltrane/platform/process/internal/loading.h"

#include <unistd.h>

#include <cstdio>

void veltrane::detail::EndLoading(const char* reason) noexcept {
    constexpr int loadFailed = 127;
    std::fprintf(stderr, "veltrane_base: cannot be loaded: %s\n", reason);
    _exit(loadFailed);
}
