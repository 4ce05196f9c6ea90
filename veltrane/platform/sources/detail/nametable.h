#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "veltrane/platform/text/characters.h"
#include "veltrane/platform/text/internal/decoding.h"

namespace veltrane::detail {

/// Cuts one element, folded as file names are compared, from the front of a text that is not empty.
inline wchar_t CutFolded(FileText& text) noexcept {
    const auto first = static_cast<unsigned char>(text.bytes[0]);
    if (first >= 0x80) return FoldCharacter(CutFileCharacter(text));
    text.bytes.remove_prefix(1);
    return FoldCharacter(first);
}

/// Hash of a name by its folded elements.
class NameHash {
public:
    void Add(wchar_t folded) noexcept { m_nHash = (m_nHash ^ static_cast<std::uint32_t>(folded)) * 0x01000193U; }
    NameHash& AddFolded(std::wstring_view name) noexcept {
        for (const wchar_t element : name) Add(FoldCharacter(element));
        return *this;
    }
    NameHash& AddFolded(FileText name) noexcept {
        while (!name.bytes.empty()) Add(CutFolded(name));
        return *this;
    }
    std::uint32_t Value() const noexcept { return m_nHash; }

private:
    std::uint32_t m_nHash = 0x811C9DC5U;
};

/// Places of names by the names' hashes. A hash is only a hint: the caller compares the name at the place. Names made
/// to share their hash cost time, no more than a search from the front, and nothing else.
class NameTable {
public:
    void Add(NameHash hash, std::size_t place) {
        m_Entries.push_back({hash.Value(), static_cast<std::uint32_t>(place), NONE});
    }
    /// Call it after the last Add.
    void Link() {
        m_First.assign(std::bit_ceil(m_Entries.size() + 1), NONE);
        for (std::size_t i = m_Entries.size(); i-- > 0;) {  // so that each chain begins with the name added first
            std::uint32_t& first = m_First[m_Entries[i].hash & (m_First.size() - 1)];
            m_Entries[i].next = first;
            first = static_cast<std::uint32_t>(i);
        }
    }

    std::size_t Size() const noexcept { return m_Entries.size(); }

    /// Calls visit(place) for the places under a hash in the order of their addition until it answers true.
    /// @return whether it did
    template <class Visit>
    bool Find(NameHash hash, Visit&& visit) const {
        std::uint32_t i = m_First[hash.Value() & (m_First.size() - 1)];
        for (; i != NONE; i = m_Entries[i].next) {
            if (m_Entries[i].hash == hash.Value() && visit(std::size_t{m_Entries[i].place})) return true;
        }
        return false;
    }

private:
    static constexpr std::uint32_t NONE = 0xFFFFFFFFU;

    struct Entry {
        std::uint32_t hash;
        std::uint32_t place;
        std::uint32_t next;
    };
    std::vector<Entry> m_Entries;
    std::vector<std::uint32_t> m_First = {NONE};
};

}  // namespace veltrane::detail
