#pragma once

#include <cstddef>

namespace veltrane::detail {

/// Walks a set by position and reads as GetConstRefAt does, so it stays valid whatever happens to the set.
template <class Set, class T>
class XSetIterator {
public:
    using value_type = T;
    using difference_type = std::ptrdiff_t;

    XSetIterator() = default;
    XSetIterator(const Set& set, int position) noexcept : m_Set(&set), m_nPosition(position) {}

    const T& operator*() const { return m_Set->GetConstRefAt(m_nPosition); }
    const T* operator->() const { return &**this; }
    XSetIterator& operator++() noexcept {
        ++m_nPosition;
        return *this;
    }
    XSetIterator operator++(int) noexcept {
        const XSetIterator before = *this;
        ++m_nPosition;
        return before;
    }
    bool operator==(const XSetIterator&) const = default;

private:
    const Set* m_Set = nullptr;
    int m_nPosition = 0;
};

}  // namespace veltrane::detail
