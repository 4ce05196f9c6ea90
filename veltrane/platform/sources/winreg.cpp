#include "veltrane/platform/sources/winreg.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

#include "veltrane/platform/sources/detail/sourcefile.h"
#include "veltrane/platform/sources/internal/linenumbers.h"
#include "veltrane/platform/text/encoding.h"
#include "veltrane/platform/text/internal/utf16.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

constexpr std::wstring_view DEFAULT_FILE = L"/etc/vornak/registry.reg";

struct RegistryFile {
    CString path;
    Spelling spelling;
};

struct OpenKey {
    CString file;
    std::shared_ptr<const RegistryValues> values;
};

/// What the calls share, whatever thread they come from. Never destroyed: an object that ends late may still close its
/// key.
class Registry {
public:
    static Registry& Shared() {
        static Registry& registry = *new Registry;
        return registry;
    }

    RegistryFile File() {
        const std::lock_guard lock{m_Mutex};
        if (!m_File.IsEmpty()) return {m_File, Spelling::AnyCase};
        const char* const variable = std::getenv("VORNAK_REGISTRY");
        if (variable && *variable != '\0') return {FromUtf8(variable), Spelling::AnyCase};
        return {CString{DEFAULT_FILE}, Spelling::Exact};  // this system's own name, always spelled like this
    }
    void SetFile(const CString& file) {
        const std::lock_guard lock{m_Mutex};
        m_File = file;
    }

    HKEY Add(OpenKey key) {
        const std::lock_guard lock{m_Mutex};
        m_Keys.emplace(++m_nLastHandle, std::make_shared<OpenKey>(std::move(key)));
        return reinterpret_cast<HKEY>(m_nLastHandle);  // NOLINT(performance-no-int-to-ptr): a number, never an address
    }
    /// @return null for a handle that is not open; the key outlives its closing
    std::shared_ptr<const OpenKey> Find(HKEY handle) {
        const std::lock_guard lock{m_Mutex};
        const auto found = m_Keys.find(reinterpret_cast<std::uintptr_t>(handle));
        return found == m_Keys.end() ? nullptr : found->second;
    }
    bool Remove(HKEY handle) {
        const std::lock_guard lock{m_Mutex};
        return m_Keys.erase(reinterpret_cast<std::uintptr_t>(handle)) > 0;
    }

private:
    std::mutex m_Mutex;
    CString m_File;  // empty: the default
    std::map<std::uintptr_t, std::shared_ptr<const OpenKey>> m_Keys;
    std::uintptr_t m_nLastHandle = 0;
};

/// @return null when there is no such key
std::shared_ptr<const RegistryValues> ReadKey(const RegistryFile& file, CStringView path) {
    AskedFile asked{file.path, file.spelling};
    if (asked.File().Text().bytes.empty() || path.View().starts_with(L'\\'))
        return nullptr;  // most machines have no registry
    CString folded = CString{path.View()}.MakeLower();
    if (folded[folded.GetLength() - 1] == L'\\') folded = folded.Left(folded.GetLength() - 1);
    return asked.File().Registry().Find(folded);
}

}  // namespace

CString veltrane::GetRegistryFile() {
    return Registry::Shared().File().path;
}

void veltrane::SetRegistryFile(const CString& file) {
    Registry::Shared().SetFile(file);
}

long RegOpenKeyExW(HKEY root, const wchar_t* path, std::uint32_t, std::uint32_t, HKEY* key) {
    if (!key) return ERROR_INVALID_PARAMETER;
    RegistryFile file = Registry::Shared().File();
    auto values = root == HKEY_LOCAL_MACHINE ? ReadKey(file, path) : nullptr;
    if (!values) return ERROR_FILE_NOT_FOUND;
    *key = Registry::Shared().Add({std::move(file.path), std::move(values)});
    return ERROR_SUCCESS;
}

long RegQueryValueExW(HKEY key, const wchar_t* name, std::uint32_t*, std::uint32_t* type, unsigned char* data,
                      std::uint32_t* size) {
    const auto opened = Registry::Shared().Find(key);
    if (!opened) return ERROR_INVALID_HANDLE;
    if (data && !size) return ERROR_INVALID_PARAMETER;
    const auto found = opened->values->find(CString{name}.MakeLower());
    if (found == opened->values->end()) return ERROR_FILE_NOT_FOUND;
    const RegistryValue& value = found->second;
    const auto needed = static_cast<std::uint32_t>(value.data.size());
    const bool fits = !data || *size >= needed;
    if (type) *type = value.type;
    if (size) *size = needed;
    if (!fits) return ERROR_MORE_DATA;
    if (data) std::ranges::copy(value.data, data);
    return ERROR_SUCCESS;
}

int veltrane::detail::FindRegistryLine(HKEY key, const wchar_t* name, CString& file) {
    const auto opened = Registry::Shared().Find(key);
    if (!opened) return 0;
    const auto found = opened->values->find(CString{name}.MakeLower());
    if (found == opened->values->end()) return 0;
    file = opened->file;
    return found->second.line;
}

long RegCloseKey(HKEY key) {
    return Registry::Shared().Remove(key) ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
}

CString veltrane::RegistryText(const unsigned char* data, std::uint32_t size) {
    std::string bytes{reinterpret_cast<const char*>(data), data ? size : 0};
    if (bytes.size() % 2 != 0) bytes += '\0';
    std::wstring text;
    for (Utf16Reader reader{bytes}; reader.More();) {
        const auto element = static_cast<wchar_t>(reader.Next());
        if (element == L'\0') break;
        text += element;
    }
    return CString{std::move(text)};
}
