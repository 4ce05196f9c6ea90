#include "shortmemory.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>

namespace veltrane::detail {

namespace {

constexpr std::size_t PROBE = 1024;  // bytes; an error that is thrown needs less

int g_ExitCode = EXIT_FAILURE;
std::terminate_handler g_Terminate = nullptr;

// Nothing here may need memory: standard error has no buffer.
[[noreturn]] void End() {
    std::fputs(program_invocation_short_name, stderr);
    std::fputs(": there is not enough memory\n", stderr);
    std::_Exit(g_ExitCode);
}

bool IsMemoryShort() noexcept {
    try {
        if (std::current_exception()) throw;
    } catch (const std::bad_alloc&) {
        return true;
    } catch (...) {  // NOLINT(bugprone-empty-catch): it may still be one that took the memory
    }
    void* volatile const probe = std::malloc(PROBE);
    std::free(probe);
    return !probe;
}

[[noreturn]] void Terminate() {
    if (IsMemoryShort()) End();
    g_Terminate();
    std::abort();
}

}  // namespace

void EndWhereMemoryIsShort(int exitCode) noexcept {
    g_ExitCode = exitCode;
    std::set_new_handler(End);
    if (std::get_terminate() != Terminate) g_Terminate = std::set_terminate(Terminate);
}

}  // namespace veltrane::detail
