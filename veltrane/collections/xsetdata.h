#pragma once

#include <memory>
#include <type_traits>
#include <utility>

#include "veltrane/collections/guarded.h"

/// One element of an XSet: a value and the mark that callers use to pick elements. T needs what the used operations
/// call: copy construction, assignment, `<`. Assignment and `<` absorb what T throws, show a box and carry on.
/// @code
/// int DownFrom(const XSetData<int>& a, const XSetData<int>& b) { return b.GetValue() - a.GetValue(); }
/// numbers.Sort(DownFrom);
/// @endcode
template <class T>
class XSetData {
public:
    XSetData(const T& value) : m_Value(value) {}
    XSetData(const XSetData&) = default;
    XSetData(XSetData&&) noexcept(std::is_nothrow_move_constructible_v<T>) = default;
    virtual ~XSetData() noexcept;  ///< a failure of the value's destructor is shown and absorbed

    /// Assigns the value, then the flag; when the value fails, the flag stays.
    XSetData& operator=(const XSetData& other) noexcept;
    XSetData& operator=(XSetData&& other) noexcept;

    /// Order of the values alone; false when their comparison fails.
    bool operator<(const XSetData& other) const noexcept;

    T& GetValue() noexcept { return m_Value; }
    const T& GetValue() const noexcept { return m_Value; }
    bool GetFlag() const noexcept { return m_bFlag; }
    void SetFlag(bool flag) noexcept { m_bFlag = flag; }

    /// Assignment for callers that handle the failure themselves.
    template <class Other>
    void Assign(Other&& other) {
        m_Value = std::forward<Other>(other).m_Value;
        m_bFlag = other.m_bFlag;
    }
    /// Replaces the value by another element's without an assignment.
    void Renew(XSetData&& other) noexcept requires std::is_nothrow_move_constructible_v<T> {
        std::destroy_at(&m_Value);
        std::construct_at(&m_Value, std::move(other.m_Value));
        m_bFlag = other.m_bFlag;
    }

private:
    static constexpr veltrane::detail::XGuarded Guarded{};

    T m_Value;
    bool m_bFlag = false;
};

template <class T>
XSetData<T>::~XSetData() noexcept try {
} catch (...) {
    veltrane::detail::ShowFailure(L"Exception in 'XSet<T>::~XSet()'");
    return;  // otherwise the exception would continue
}

template <class T>
XSetData<T>& XSetData<T>::operator=(const XSetData& other) noexcept {
    Guarded(L"Exception in 'XSetData<T>::operator=()'", [&] { Assign(other); });
    return *this;
}

template <class T>
XSetData<T>& XSetData<T>::operator=(XSetData&& other) noexcept {
    Guarded(L"Exception in 'XSetData<T>::operator=()'", [&] { Assign(std::move(other)); });
    return *this;
}

template <class T>
bool XSetData<T>::operator<(const XSetData& other) const noexcept {
    return Guarded(L"Exception in 'XSetData<T>::operator<()'", /*fallback*/ false,
                   [&] { return static_cast<bool>(m_Value < other.m_Value); });
}
