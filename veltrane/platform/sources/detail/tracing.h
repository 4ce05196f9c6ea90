#pragma once

#include "veltrane/platform/sources/trace.h"

namespace veltrane::detail {

extern bool g_Tracing;

/// Whether a question that is asked now is to be reported: an observer is set and is not itself the one who asks.
inline bool IsTracing() noexcept {
    return g_Tracing;
}

/// Whether an observer is set, be it the one who asks.
bool HasObserver() noexcept;

/// Tells the observer one question and its answer. What the observer throws is dropped: it changes no result.
void ReportToTrace(const SourceEvent& event) noexcept;

}  // namespace veltrane::detail
