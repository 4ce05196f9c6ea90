#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "veltrane/platform/sources/detail/nametable.h"
#include "veltrane/platform/sources/detail/registrywalk.h"
#include "veltrane/platform/text/cstring.h"

namespace veltrane::detail {

/// A value of a registry key, as the calls return it.
struct RegistryValue {
    std::uint32_t type = 0;
    std::string data;
    int line = 0;  // of the file, from 1
};

/// The values of one key by their folded names; the default value has the empty name.
using RegistryValues = std::map<CString, RegistryValue>;

/// Applies a line that sets or removes a value to the values of its key; its data moves there.
/// @param name  the value's, folded
/// @return line of the value that was in force until now; 0 if there was none
int ApplyValue(RegistryLine& read, const CString& name, RegistryValues& values);

/// Whether a line that removes a path removes a key: that of the path itself or one below it.
/// @param folded  path of the key
bool IsRemovedBy(FileText removed, std::wstring_view folded) noexcept;

/// The places of all keys of a registry export, found in one pass from top to bottom as an import would go. The values
/// of a key are read when first asked for, and kept. Keeps a view: the text must outlive it.
class RegistryIndex {
public:
    explicit RegistryIndex(FileText text);

    /// @param path  folded path of the key below the machine's root, without separators at its ends; empty is the root
    /// @return null when the key does not exist at the end of the text
    std::shared_ptr<const RegistryValues> Find(const CString& path);

private:
    /// A line that ends the values of the key before it.
    struct KeyLine {
        std::uint32_t place;
        std::uint32_t end;  // where its values begin
        std::uint32_t pathPlace;
        std::uint32_t pathSize;
        int number;
        RegistryLine::Kind kind;
    };

    void Add(const RegistryLine& read);
    void AddPath(std::string_view path, std::size_t number);
    std::shared_ptr<const RegistryValues> Read(std::wstring_view path) const;
    std::size_t AfterRemoval(std::wstring_view path) const noexcept;
    void ReadValues(std::size_t number, RegistryValues& values) const;

    std::uint32_t PlaceOf(const char* at) const noexcept {
        return static_cast<std::uint32_t>(at - m_Text.bytes.data());
    }
    FileText PathOf(const KeyLine& line) const noexcept {
        return m_Text.Piece(m_Text.bytes.substr(line.pathPlace, line.pathSize));
    }

    FileText m_Text;
    bool m_HasKeys = false;
    bool m_IsOld = false;
    std::vector<KeyLine> m_KeyLines;
    std::vector<std::size_t> m_Removals;  // numbers of key lines
    std::string_view m_LastPath;          // whose parents are in the table since the last removal
    std::vector<std::pair<std::size_t, NameHash>> m_LastParents;  // their sizes in it
    NameTable m_Paths;  // numbers of key lines, under the names of the key and of all above it
    std::map<CString, std::shared_ptr<const RegistryValues>> m_Read;
};

}  // namespace veltrane::detail
