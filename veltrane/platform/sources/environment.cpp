#include "veltrane/platform/sources/environment.h"

#include <cstdlib>

#include "veltrane/platform/sources/detail/tracing.h"
#include "veltrane/platform/text/encoding.h"

namespace veltrane {

using namespace detail;

namespace {

const char* FindVariable(const CString& name) {
    if (name.IsEmpty() || name.View().find_first_of(std::wstring_view{L"=\0", 2}) != std::wstring_view::npos) {
        return nullptr;
    }
    return std::getenv(ToUtf8(name).c_str());
}

}  // namespace

bool GetEnvironmentText(CString& value, const CString& name) {
    const char* const text = FindVariable(name);
    CString answer = text ? FromUtf8(text) : CString{};
    if (IsTracing()) {
        ReportToTrace({SourceEvent::Source::Environment, {}, 0, {}, name, answer, text != nullptr});
    }
    if (text) value = std::move(answer);
    return text != nullptr;
}

}  // namespace veltrane
