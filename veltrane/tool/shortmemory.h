#pragma once

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>

namespace veltrane {

namespace detail {

inline int g_ExitCode = EXIT_FAILURE;
inline std::terminate_handler g_Terminate = nullptr;

// Nothing here may allocate: standard error has no buffer.
[[noreturn]] inline void EndWithoutMemory() {
    std::fputs(program_invocation_short_name, stderr);
    std::fputs(": there is not enough memory\n", stderr);
    std::_Exit(g_ExitCode);
}

inline bool IsMemoryShort() noexcept {
    try {
        if (std::current_exception()) throw;
    } catch (const std::bad_alloc&) {
        return true;
    } catch (...) {  // NOLINT(bugprone-empty-catch): it may still be one that took the memory
    }
    constexpr std::size_t errorSize = 1024;  // bytes; an exception needs less
    void* volatile const probe = std::malloc(errorSize);
    std::free(probe);
    return !probe;
}

[[noreturn]] inline void Terminate() {
    if (IsMemoryShort()) EndWithoutMemory();
    g_Terminate();
    std::abort();
}

}  // namespace detail

/// From now on a program that runs out of memory writes one line on standard error and ends with this exit code: at the
/// failing allocation, and where it would be aborted because an exception could not be allocated or was not caught. To
/// cover the time before main:
/// @code
/// // Runs before the static objects of the libraries are created.
/// [[gnu::used, gnu::section(".preinit_array")]] void (*const g_AtStart)() = [] {
///     veltrane::EndWhereMemoryIsShort(1);
/// };
/// @endcode
inline void EndWhereMemoryIsShort(int exitCode) noexcept {
    detail::g_ExitCode = exitCode;
    std::set_new_handler(detail::EndWithoutMemory);
    if (std::get_terminate() != detail::Terminate) detail::g_Terminate = std::set_terminate(detail::Terminate);
}

/// The same, but a failing allocation throws std::bad_alloc, which may be caught. RunTool does this.
inline void ThrowWhereMemoryIsShort(int exitCode) noexcept {
    EndWhereMemoryIsShort(exitCode);
    std::set_new_handler(nullptr);
}

}  // namespace veltrane
