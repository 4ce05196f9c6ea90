#pragma once

#include <map>

namespace veltrane::detail {

/// An ordered map with one cursor. Before First, at the end, after Clear and in a copy the cursor is on no entry: it
/// gives null, and Next leaves it there. Insertion does not move it.
/// @code
/// for (auto* entry = map.First(); entry; entry = map.Next()) Use(entry->first, entry->second);
/// @endcode
template <class Key, class Value>
class XCursorMap {
public:
    using Entries = std::map<Key, Value>;
    using Entry = typename Entries::value_type;

    XCursorMap() = default;
    XCursorMap(const XCursorMap& other) : m_Map(other.m_Map) {}
    XCursorMap& operator=(const XCursorMap& other) {
        Entries copy = other.m_Map;
        m_Map.swap(copy);
        m_itAct = m_Map.end();
        return *this;
    }
    ~XCursorMap() = default;

    const Entries& All() const noexcept { return m_Map; }
    const Value* Get(const Key& key) const {
        const auto found = m_Map.find(key);
        return found == m_Map.end() ? nullptr : &found->second;
    }
    void Set(const Key& key, const Value& value) { m_Map.insert_or_assign(key, value); }
    /// @return false, with nothing changed, when the key exists
    bool Add(const Key& key, const Value& value) { return m_Map.try_emplace(key, value).second; }
    void Clear() noexcept {
        m_Map.clear();
        m_itAct = m_Map.end();
    }

    const Entry* Act() const noexcept { return m_itAct == m_Map.end() ? nullptr : &*m_itAct; }
    const Entry* First() { return Put(m_Map.begin()); }
    const Entry* Find(const Key& key) { return Put(m_Map.find(key)); }
    const Entry* Next() { return m_itAct == m_Map.end() ? nullptr : Put(std::next(m_itAct)); }

private:
    const Entry* Put(typename Entries::const_iterator position) {
        m_itAct = position;
        return Act();
    }

    Entries m_Map;
    typename Entries::const_iterator m_itAct = m_Map.end();
};

}  // namespace veltrane::detail
