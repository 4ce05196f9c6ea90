#pragma once

#include <algorithm>
#include <climits>
#include <cstddef>
#include <span>
#include <stdexcept>
#include <utility>
#include <vector>

#include "veltrane/collections/guarded.h"
#include "veltrane/collections/setiterator.h"
#include "veltrane/collections/setorder.h"
#include "veltrane/collections/setunion.h"
#include "veltrane/collections/sharedempty.h"
#include "veltrane/collections/xsetdata.h"
#include "veltrane/collections/xsetp.h"

/// An ordered sequence of values with a flag each, in the order of insertion until it is sorted; duplicates are kept
/// unless a caller asks otherwise. A search is binary in a set marked sorted, else linear.
///
/// T needs a default value, copy construction, assignment and `<`, each only if an operation that calls it is used. The
/// set owns its elements; they are moved, not copied, where T can move.
///
/// A set lets out nothing that T or a comparison throws. An operation that fails shows its message in a box, returns
/// what its comment says for a position outside or for nothing found, and keeps what it has done so far. An operation
/// made of others (a copy, a subset and a union insert value by value, a union looks up each) continues when one of
/// those fails: the box is that of Insert or Find, a value that could not be inserted is left out, and one that could
/// not be looked up counts as not found. Its own box says that there was not enough memory to begin; the set that it
/// fills is then empty.
///
/// Addresses of values are valid until the set grows, shrinks or is cleared. They name a place: Sort may put another
/// value there. A set given to itself as argument counts as a copy.
/// @code
/// XSet<int> numbers;
/// numbers.Insert(7, /*unique*/ true);
/// numbers.Sort();
/// numbers.SetFlag(numbers.Find(7, XSet<int>::Comp), true);
/// @endcode
template <class T>
class XSet {
public:
    using Element = XSetData<T>;
    /// Negative when the first sorts before the second, 0 when they are equal, positive otherwise. To find values in a
    /// sorted set it must agree with the order of the set; null means Comp.
    using Comparison = int (*)(const Element&, const Element&);

    XSet() = default;
    XSet(const XSet& other);  ///< as Copy
    ~XSet();
    XSet& operator=(const XSet& other);  ///< as Copy

    bool IsSorted() const noexcept { return m_bSorted; }
    /// Only sets the mark, for callers that fill a set in ascending order.
    void SetSorted(bool sorted) noexcept { m_bSorted = sorted; }
    int Size() const noexcept { return static_cast<int>(m_Data.size()); }
    [[nodiscard]] bool IsEmpty() const;

    /// Position of an element equal to the value, the first one in a set not marked sorted; -1 if none. The comparison
    /// is called with the value as first and the element as second argument.
    int Find(const T& value, Comparison comparison) const;
    /// Address of the value; null outside.
    T* GetAt(int position);
    /// The value, or outside a default one that all sets of the type share.
    const T& GetConstRefAt(int position) const;
    /// As GetConstRefAt; a value written into the shared one stays there.
    T& GetRefAt(int position);
    bool GetFlag(int position) const;  ///< false outside
    /// The values in stored order, each as GetConstRefAt: `for (const T& value : set)`.
    veltrane::detail::XSetIterator<XSet, T> begin() const noexcept { return {*this, 0}; }
    veltrane::detail::XSetIterator<XSet, T> end() const noexcept { return {*this, Size()}; }
    /// A set with fewer elements is less; among equal sizes the first different value decides.
    bool operator<(const XSet& other) const;
    /// -1, 0 or 1 in the order of the elements' `<`.
    static int Comp(const Element& a, const Element& b);

    /// Appends a value and clears the sorted mark. @return false when unique is true and Comp finds the value
    bool Insert(const T& value, bool unique);
    void Delete(int position);              ///< keeps the sorted mark; does nothing outside
    bool SetFlag(int position, bool flag);  ///< false outside
    void SetFlag(bool flag);
    void Clear();
    /// Sorts ascending in place and marks the set; does nothing if it is marked. Null means T's `<`. Equal values may
    /// change places. When the comparison fails, the set stays as it was; when copying a T that cannot be moved fails,
    /// all values are still there, at other addresses.
    void Sort(Comparison comparison = nullptr);

    /// Values only, flags false, not marked sorted; a set copied onto itself stays as it is.
    void Copy(const XSet& other);
    void Copy(const XSet* other);  ///< null does nothing
    /// Replaces out by the values whose flag is the given one, flags false.
    void GetSubset(XSet& out, bool flag);
    /// Replaces the set by all values of a and those of b that the comparison does not find in it yet, in the order of
    /// b; sorted by T's `<` and marked.
    void Union(const XSet& a, const XSet& b, Comparison comparison);

protected:
    /// Makes room for more values. @return false, with the box of Insert, when there is none
    bool Reserve(std::size_t more);

private:
    using Elements = std::vector<Element>;

    static constexpr veltrane::detail::XGuarded Guarded{};

    bool Contains(int position) const noexcept { return position >= 0 && position < Size(); }
    Element& At(int position) noexcept { return m_Data[static_cast<std::size_t>(position)]; }
    const Element& At(int position) const noexcept { return m_Data[static_cast<std::size_t>(position)]; }

    template <class Search>
    static int Searched(Search search);
    template <class Compare>
    int FindWith(Compare compare) const;
    void GrowBy(std::size_t more);
    void InsertAll(const XSet& other);
    void CopyAll(const XSet& other);
    void Unite(const XSet& a, const XSet& b, Comparison comparison);
    void UniteByLookUp(const XSet& a, const XSet& b, Comparison comparison);

    // Out of line: inlined into a host, it could become a second object beside the library's.
    [[gnu::noinline]] static veltrane::detail::XSharedEmpty<T>& Empty() {
        static veltrane::detail::XLasting<veltrane::detail::XSharedEmpty<T>> tEmpty;
        return tEmpty.value;
    }

    bool m_bSorted = false;
    Elements m_Data;
};

template <class T>
XSet<T>::XSet(const XSet& other) {
    Guarded(L"Exception in 'XSet<T>::XSet()'", [&] { CopyAll(other); });
}

template <class T>
XSet<T>::~XSet() {
    Guarded(L"Exception in 'XSet<T>::~XSet()'", [&] { m_Data.clear(); });
}

template <class T>
XSet<T>& XSet<T>::operator=(const XSet& other) {
    Guarded(L"Exception in 'XSet<T>::operator=()'", [&] { CopyAll(other); });
    return *this;
}

template <class T>
bool XSet<T>::IsEmpty() const {
    return Guarded(L"Exception in 'XSetData<T>::IsEmpty<()'", /*fallback*/ true, [&] { return m_Data.empty(); });
}

template <class T>
int XSet<T>::Find(const T& value, Comparison comparison) const {
    return Searched([&] {
        if constexpr (veltrane::detail::XKnownOrder<T>) {  // saves the copy of the value and the calls
            using veltrane::detail::CompareKnown;
            if (!comparison || comparison == Comp) {
                return FindWith([&](const Element& element) { return CompareKnown(value, element.GetValue()); });
            }
        }
        const Element probe{value};
        const Comparison compare = comparison ? comparison : Comp;
        return FindWith([&](const Element& element) { return compare(probe, element); });
    });
}

template <class T>
template <class Search>
int XSet<T>::Searched(Search search) {
    return Guarded(L"Exception in 'XSet<T>::Find()'", /*fallback*/ -1, search);
}

template <class T>
template <class Compare>
int XSet<T>::FindWith(Compare compare) const {
    const auto elementAt = [&](int position) -> const Element& { return At(position); };
    if (m_bSorted) return veltrane::detail::FindInHalves(Size(), elementAt, compare);
    for (int i = 0; i < Size(); ++i) {
        if (compare(At(i)) == 0) return i;
    }
    return -1;
}

template <class T>
T* XSet<T>::GetAt(int position) {
    return Guarded(L"Exception in 'XSet<T>::GetAt()'", /*fallback*/ nullptr,
                   [&]() -> T* { return Contains(position) ? &At(position).GetValue() : nullptr; });
}

template <class T>
const T& XSet<T>::GetConstRefAt(int position) const {
    const auto empty = []() -> const T& { return Empty().constant; };
    return Guarded(L"Exception in 'XSet<T>::GetConstRefAt()'", empty,
                   [&]() -> const T& { return Contains(position) ? At(position).GetValue() : empty(); });
}

template <class T>
T& XSet<T>::GetRefAt(int position) {
    const auto empty = []() -> T& { return Empty().writable; };
    return Guarded(L"Exception in 'XSet<T>::GetRefAt()'", empty,
                   [&]() -> T& { return Contains(position) ? At(position).GetValue() : empty(); });
}

template <class T>
bool XSet<T>::GetFlag(int position) const {
    return Guarded(L"Exception in 'XSet<T>::GetFlag()'", /*fallback*/ false,
                   [&] { return Contains(position) && At(position).GetFlag(); });
}

template <class T>
bool XSet<T>::operator<(const XSet& other) const {
    return Guarded(L"Exception in 'XSet<T>::operator<()'", /*fallback*/ false, [&] {
        if (Size() != other.Size()) return Size() < other.Size();
        for (int i = 0; i < Size(); ++i) {
            if (At(i).GetValue() < other.At(i).GetValue()) return true;
            if (other.At(i).GetValue() < At(i).GetValue()) return false;
        }
        return false;
    });
}

template <class T>
int XSet<T>::Comp(const Element& a, const Element& b) {
    return Guarded(L"Exception in 'XSet<T>::Comp()'", /*fallback*/ 0, [&] {
        if constexpr (veltrane::detail::XKnownOrder<T>) {
            return veltrane::detail::CompareKnown(a.GetValue(), b.GetValue());
        } else {
            return a < b ? -1 : b < a ? 1 : 0;
        }
    });
}

template <class T>
bool XSet<T>::Insert(const T& value, bool unique) {
    return Guarded(L"Exception in 'XSet<T>::Insert()'", /*fallback*/ false, [&] {
        if (unique && Find(value, Comp) >= 0) return false;
        if (m_Data.size() >= std::size_t{INT_MAX}) throw std::length_error("XSet");  // positions are ints
        m_Data.emplace_back(value);
        m_bSorted = false;
        return true;
    });
}

template <class T>
bool XSet<T>::Reserve(std::size_t more) {
    return Guarded(L"Exception in 'XSet<T>::Insert()'", /*fallback*/ false, [&] {
        GrowBy(more);
        return true;
    });
}

template <class T>
void XSet<T>::GrowBy(std::size_t more) {
    if (more > std::size_t{INT_MAX} - m_Data.size()) throw std::length_error("XSet");  // positions are ints
    const std::size_t size = m_Data.size() + more;
    if (size > m_Data.capacity()) m_Data.reserve(std::max(size, 2 * m_Data.capacity()));
}

template <class T>
void XSet<T>::Delete(int position) {
    Guarded(L"Exception in 'XSet<T>::Delete()'", [&] {
        if (!Contains(position)) return;
        for (int i = position; i + 1 < Size(); ++i) At(i).Assign(std::move(At(i + 1)));
        m_Data.pop_back();
    });
}

template <class T>
bool XSet<T>::SetFlag(int position, bool flag) {
    return Guarded(L"Exception in 'XSet<T>::SetFlag()'", /*fallback*/ false, [&] {
        if (!Contains(position)) return false;
        At(position).SetFlag(flag);
        return true;
    });
}

template <class T>
void XSet<T>::SetFlag(bool flag) {
    Guarded(L"Exception in 'XSet<T>::SetFlag()'", [&] {
        for (Element& element : m_Data) element.SetFlag(flag);
    });
}

template <class T>
void XSet<T>::Clear() {
    Guarded(L"Exception in 'XSet<T>::Clear()'", [&] {
        m_bSorted = false;
        m_Data.clear();
    });
}

template <class T>
void XSet<T>::Sort(Comparison comparison) {
    Guarded(L"Exception in 'XSet<T>::Sort()'", [&] {
        if (m_bSorted) return;
        veltrane::detail::Arrange(m_Data, veltrane::detail::InOrder(std::span{m_Data}, comparison));
        m_bSorted = true;
    });
}

template <class T>
void XSet<T>::Copy(const XSet& other) {
    Guarded(L"Exception in 'XSet<T>::Copy()'", [&] { CopyAll(other); });
}

template <class T>
void XSet<T>::Copy(const XSet* other) {
    if (other) Copy(*other);
}

template <class T>
void XSet<T>::CopyAll(const XSet& other) {
    if (&other == this) return;
    Clear();
    GrowBy(other.m_Data.size());
    InsertAll(other);
}

template <class T>
void XSet<T>::InsertAll(const XSet& other) {
    for (const Element& element : other.m_Data) Insert(element.GetValue(), /*unique*/ false);
}

template <class T>
void XSet<T>::GetSubset(XSet& out, bool flag) {
    Guarded(L"Exception in 'XSet<T>::GetSubset()'", [&] {
        Elements own;
        if (&out == this) own.swap(m_Data);
        const Elements& source = &out == this ? own : m_Data;
        out.Clear();
        for (const Element& element : source) {
            if (element.GetFlag() == flag) out.Insert(element.GetValue(), /*unique*/ false);
        }
    });
}

template <class T>
void XSet<T>::Union(const XSet& a, const XSet& b, Comparison comparison) {
    XSet result;  // apart from this set, which may be a or b
    Guarded(L"Exception in 'XSet<T>::Union()'", [&] { result.Unite(a, b, comparison ? comparison : Comp); });
    m_Data.swap(result.m_Data);
    m_bSorted = result.m_bSorted;
}

template <class T>
void XSet<T>::Unite(const XSet& a, const XSet& b, Comparison comparison) {
    if constexpr (veltrane::detail::XKnownOrder<T>) {
        if (comparison == Comp) {
            m_Data.reserve(a.m_Data.size() + b.m_Data.size());
            veltrane::detail::MergeUnion(std::span{a.m_Data}, std::span{b.m_Data},
                                         [&](const T& value) { Insert(value, /*unique*/ false); });
            m_bSorted = true;
            return;
        }
    }
    UniteByLookUp(a, b, comparison);
}

template <class T>
void XSet<T>::UniteByLookUp(const XSet& a, const XSet& b, Comparison comparison) {
    XSet all;
    all.GrowBy(a.m_Data.size() + b.m_Data.size());
    all.InsertAll(a);
    const std::size_t sizeOfA = all.m_Data.size();
    all.InsertAll(b);
    const auto find = [&](const Element& probe, int size, auto elementAt) {
        const auto compare = [&](const Element& element) { return comparison(probe, element); };
        return Searched([&] { return veltrane::detail::FindInHalves(size, elementAt, compare); });
    };
    const auto kept = veltrane::detail::LookUpUnion(std::span{all.m_Data}, sizeOfA, find);
    m_Data.reserve(kept.size());
    for (Element* element : kept) m_Data.push_back(std::move(*element));
    m_bSorted = true;
}
