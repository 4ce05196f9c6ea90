#pragma once

#include <type_traits>
#include <utility>

#include "veltrane/platform/export.h"

namespace veltrane::detail {

/// Tells the user of a failure that an operation absorbs, in a plain box. What the box itself throws is absorbed too:
/// these operations, destructors among them, promise not to throw.
VELTRANE_API void ShowFailure(const wchar_t* message) noexcept;

/// Runs the body of an operation that absorbs failures. A class holds one as a constant, under a name that its bodies
/// call like a function.
struct XGuarded {
    /// Whatever the body throws is shown to the user, and the fallback is the result: a value, or a function called
    /// only then.
    template <class Fallback, class Body>
    auto operator()(const wchar_t* message, Fallback&& fallback, Body&& body) const -> std::invoke_result_t<Body> try {
        return std::forward<Body>(body)();
    } catch (...) {
        ShowFailure(message);
        if constexpr (std::is_invocable_v<Fallback>) {
            return std::forward<Fallback>(fallback)();
        } else {
            return std::forward<Fallback>(fallback);
        }
    }

    /// The same for a body without a result.
    template <class Body>
    void operator()(const wchar_t* message, Body&& body) const noexcept try {
        std::forward<Body>(body)();
    } catch (...) {
        ShowFailure(message);
    }
};

}  // namespace veltrane::detail
