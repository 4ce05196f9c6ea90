#include "veltrane/platform/sources/trace.h"

#include <memory>
#include <utility>

#include "veltrane/platform/sources/detail/tracing.h"

namespace veltrane {

using namespace detail;

bool detail::g_Tracing = false;

namespace {

// Never destroyed: objects that end late may still ask a source. Shared with the call that runs, since an observer may
// install another one.
std::shared_ptr<SourceTrace>& InstalledTrace() {
    static auto& trace = *new std::shared_ptr<SourceTrace>;
    return trace;
}

bool g_ObserverRuns = false;

void UpdateTracing() {
    g_Tracing = InstalledTrace() && !g_ObserverRuns;
}

}  // namespace

SourceTrace SetSourceTrace(SourceTrace trace) {
    auto next = trace ? std::make_shared<SourceTrace>(std::move(trace)) : nullptr;
    const auto before = std::exchange(InstalledTrace(), std::move(next));
    UpdateTracing();
    return before ? *before : SourceTrace{};
}

bool detail::HasObserver() noexcept {
    return InstalledTrace() != nullptr;
}

void detail::ReportToTrace(const SourceEvent& event) noexcept {
    const auto trace = InstalledTrace();
    g_ObserverRuns = true;
    UpdateTracing();
    try {
        (*trace)(event);
    } catch (...) {  // an observer has no say in the answer
    }
    g_ObserverRuns = false;
    UpdateTracing();
}

}  // namespace veltrane
