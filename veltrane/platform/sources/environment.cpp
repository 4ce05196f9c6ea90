#include "veltrane/platform/sources/environment.h"

#include <cstdlib>

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
    if (text) value = FromUtf8(text);
    return text != nullptr;
}

}  // namespace veltrane
