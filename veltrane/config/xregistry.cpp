#include "veltrane/config/xregistry.h"

#include <memory>
#include <new>
#include <string>
#include <utility>

#include "veltrane/foundation/xraise.h"
#include "veltrane/platform/sources/internal/linenumbers.h"

using namespace veltrane;

namespace {

constexpr wchar_t ROOT_PATH[] = L"SOFTWARE\\VORNAK";

constexpr std::uint32_t FIRST_SIZE = 128;     // bytes; nearly every value fits, so it takes one query
constexpr std::uint32_t TERMINATOR_SIZE = 2;  // added to the text of a value without one

/// Path of a key, or of the one above it for an empty name.
CString Below(CStringView path, const CString& name) {
    if (name.IsEmpty()) return path.View();
    std::wstring below;
    below.reserve(path.View().size() + 1 + name.View().size());
    below.append(path.View()).append(1, L'\\').append(name.View());
    return CString{std::move(below)};
}

/// A query for a value with room for size bytes; receives the bytes and their number.
struct Query {
    std::uint32_t size;
    std::unique_ptr<unsigned char[]> data;

    /// @return false when there is no memory
    bool Run(HKEY key, const CString& name, long& result) {
        data.reset(new (std::nothrow) unsigned char[std::size_t{size} + TERMINATOR_SIZE]());
        if (!data) return false;
        std::uint32_t type = REG_SZ;
        result = RegQueryValueExW(key, name.GetString(), nullptr, &type, data.get(), &size);
        return true;
    }
};

}  // namespace

XRegistry::XRegistry(const CString& subKey) : m_RootPath(Below(ROOT_PATH, subKey)) {}

XRegistry::~XRegistry() = default;

CString XRegistry::KeyPath(const CString& section) const {
    return Below(m_RootPath, section);
}

bool XRegistry::Open(const CString& section) {
    m_KeyPath = KeyPath(section);
    return RegOpenKeyExW(HKEY_LOCAL_MACHINE, m_KeyPath.GetString(), 0, KEY_READ, &m_hKey) == ERROR_SUCCESS;
}

void XRegistry::Close() {
    if (!m_hKey) return;
    RegCloseKey(m_hKey);
    m_hKey = nullptr;
}

bool XRegistry::GetValue(CString& value, const CString& section, const CString& name, SourcePlace* place) {
    if (!Open(section)) return false;
    const struct Closing {
        XRegistry& registry;
        ~Closing() { registry.Close(); }
    } closing{*this};
    if (!GetValue(value, name)) return false;
    if (!place) return true;
    *place = {{}, 0, m_KeyPath, name, value};
    place->line = FindRegistryLine(m_hKey, name.GetString(), place->file);
    return true;
}

bool XRegistry::GetValue(CString& value, const CString& name) {
    if (!m_hKey)
        throw MakeError(XSource{L".\\xregistry"}(L"XRegistry::GetValue"),
                        L"No opened registry key to get a value from!");
    Query query{FIRST_SIZE, nullptr};
    long result = ERROR_SUCCESS;
    if (!query.Run(m_hKey, name, result)) return false;
    const bool isTooLong = result != ERROR_SUCCESS && query.size > FIRST_SIZE;
    if (isTooLong && !query.Run(m_hKey, name, result)) return false;
    if (result != ERROR_SUCCESS || query.size == 0 || !m_hKey) return false;
    value = RegistryText(query.data.get(), query.size);
    return true;
}
