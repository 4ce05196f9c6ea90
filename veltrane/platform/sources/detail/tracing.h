#pragma once

#include <atomic>

#include "veltrane/platform/sources/trace.h"

namespace veltrane::detail {

extern std::atomic<bool> g_IsObserved;

/// Whether the question of this thread comes from the observer itself.
bool DoesObserverAsk() noexcept;

/// Whether an observer is set, be it the one who asks.
inline bool HasObserver() noexcept {
    return g_IsObserved.load(std::memory_order_relaxed);
}

/// Whether a question that is asked now is to be reported: an observer is set and is not itself the one who asks.
inline bool IsTracing() noexcept {
    return HasObserver() && !DoesObserverAsk();
}

/// Tells the observer one question and its answer. What the observer throws is dropped: it changes no result.
void ReportToTrace(const SourceEvent& event) noexcept;

}  // namespace veltrane::detail
