#pragma once

#include <exception>
#include <utility>

namespace veltrane::detail {

/// Ends the process as a missing library would: exit code 127, and a line on standard error.
[[noreturn]] void EndLoading(const char* reason) noexcept;

/// Runs a step of loading the library. An exception cannot pass the loader, so it ends the loading.
template <class Body>
decltype(auto) WhileLoading(Body&& body) noexcept {
    try {
        return std::forward<Body>(body)();
    } catch (const std::exception& error) {
        EndLoading(error.what());
    }
}

}  // namespace veltrane::detail
