#include "veltrane/platform/sources/trace.h"

#include <memory>
#include <mutex>
#include <utility>

#include "veltrane/platform/sources/detail/tracing.h"

namespace veltrane {

using namespace detail;

constinit std::atomic<bool> detail::g_IsObserved = false;

namespace {

/// The observer. Shared with the calls that run, since it may be replaced meanwhile.
struct Installed {
    std::mutex mutex;
    std::shared_ptr<SourceTrace> trace;
};

// Made with the library and never destroyed: the first look must not need memory, and objects that end late may still
// ask a source.
union Lasting {
    constexpr Lasting() : installed{} {}
    ~Lasting() {}  // NOLINT(modernize-use-equals-default): the member stays

    Installed installed;
};
constinit Lasting g_Lasting;

thread_local bool g_ObserverRuns = false;  // in this thread

std::shared_ptr<SourceTrace> InstalledTrace() {
    const std::lock_guard lock{g_Lasting.installed.mutex};
    return g_Lasting.installed.trace;
}

}  // namespace

SourceTrace SetSourceTrace(SourceTrace trace) {
    auto next = trace ? std::make_shared<SourceTrace>(std::move(trace)) : nullptr;
    std::shared_ptr<SourceTrace> before;
    {
        const std::lock_guard lock{g_Lasting.installed.mutex};
        g_IsObserved = next != nullptr;
        before = std::exchange(g_Lasting.installed.trace, std::move(next));
    }
    return before ? *before : SourceTrace{};
}

bool detail::DoesObserverAsk() noexcept {
    return g_ObserverRuns;
}

void detail::ReportToTrace(const SourceEvent& event) noexcept {
    const auto trace = InstalledTrace();
    if (!trace) return;  // taken away meanwhile
    g_ObserverRuns = true;
    try {
        (*trace)(event);
    } catch (...) {  // an observer has no say in the answer
    }
    g_ObserverRuns = false;
}

}  // namespace veltrane
