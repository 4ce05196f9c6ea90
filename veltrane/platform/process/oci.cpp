#include "veltrane/platform/process/oci.h"

#include <dlfcn.h>

#include "veltrane/platform/text/internal/decoding.h"

namespace veltrane {

using namespace detail;

namespace {

// Newest first. The names hold no separator, so the system's search rules apply and never the current folder.
constexpr const char* CLIENT_LIBRARIES[] = {
    "libclntsh.so",      "libclntsh.so.23.1", "libclntsh.so.21.1", "libclntsh.so.19.1",
    "libclntsh.so.18.1", "libclntsh.so.12.1", "libclntsh.so.11.1",
};

constexpr std::int32_t OCI_SUCCESS = 0;
constexpr std::int32_t OCI_SUCCESS_WITH_INFO = 1;

OCIErrorGetFunction g_Given = nullptr;

OCIErrorGetFunction ErrorGetOf(void* module) noexcept {
    return reinterpret_cast<OCIErrorGetFunction>(dlsym(module, "OCIErrorGet"));
}

OCIErrorGetFunction FindErrorGet() noexcept {
    if (const auto function = ErrorGetOf(RTLD_DEFAULT)) return function;
    for (const char* name : CLIENT_LIBRARIES) {
        void* const library = dlopen(name, RTLD_LAZY | RTLD_LOCAL);  // never closed: the function must stay
        if (!library) continue;
        if (const auto function = ErrorGetOf(library)) return function;
    }
    return nullptr;
}

}  // namespace

void SetOCIErrorGet(OCIErrorGetFunction function) {
    g_Given = function;
}

OCIErrorGetFunction GetOCIErrorGet() {
    if (g_Given) return g_Given;
    static const OCIErrorGetFunction found = FindErrorGet();
    return found;
}

std::int32_t OCIErrorGet(void* handle, std::uint32_t record, unsigned char* sqlState, std::int32_t* errorCode,
                         unsigned char* buffer, std::uint32_t bufferSize, std::uint32_t handleType) {
    const OCIErrorGetFunction errorGet = GetOCIErrorGet();
    return errorGet ? errorGet(handle, record, sqlState, errorCode, buffer, bufferSize, handleType) : -1;
}

OCIErrorText ReadOCIError(void* errorHandle) {
    const OCIErrorGetFunction errorGet = GetOCIErrorGet();
    if (!errorGet) return {};

    char buffer[1024] = {};
    std::int32_t number = 0;
    const std::int32_t result = errorGet(errorHandle, 1, nullptr, &number, reinterpret_cast<unsigned char*>(buffer),
                                         sizeof buffer, OCI_ERROR_HANDLE);
    buffer[sizeof buffer - 1] = '\0';
    const bool isGiven = result == OCI_SUCCESS || result == OCI_SUCCESS_WITH_INFO;
    if (!isGiven && number == 0 && buffer[0] == '\0') return {};
    // Number and text count if they were filled, whatever the call returns.
    return {true, isGiven || number != 0 ? number : OCIErrorText{}.number, DecodeFileText({buffer})};
}

}  // namespace veltrane
