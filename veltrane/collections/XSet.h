#pragma once

#include <algorithm>
#include <climits>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <stdexcept>
#include <type_traits>
#include <utility>
#include <vector>

#include "veltrane/collections/guarded.h"
#include "veltrane/collections/mergesort.h"
#include "veltrane/collections/radixsort.h"
#include "veltrane/collections/takenplaces.h"
#include "veltrane/collections/xsetdata.h"
#include "veltrane/collections/xsetp.h"
#include "veltrane/platform/text/cstring.h"

/// Types whose own order is known: total, the same from call to call, and without exceptions.
template <class T>
concept XKnownOrder = std::integral<T> || std::same_as<T, CString>;

/// An ordered sequence of values with a flag each, in the order of insertion until it is sorted; duplicates are kept
/// unless a caller asks otherwise. A set marked sorted is searched in halves, any other from its front.
///
/// T needs a default value, copy construction, assignment and `<`, each only if an operation that calls it is used;
/// its elements are moved, not copied, where it can move. Nothing that T or a comparison throws comes out of a set:
/// the operation shows its message in a box, returns what its comment says for a position outside or for nothing
/// found, and the set stays as far as the operation came. A set given to itself as argument counts as a copy.
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
    /// Negative when the first sorts before the second, 0 when they are equal, positive otherwise. It must agree with
    /// the order in which a set was sorted to find anything in it; null stands for Comp.
    using Comparison = int (*)(const Element&, const Element&);

    XSet() = default;
    XSet(const XSet& other);  ///< as Copy
    ~XSet();
    XSet& operator=(const XSet& other);  ///< as Copy

    bool IsSorted() const noexcept { return m_bSorted; }
    /// Marks only, reorders nothing: for callers that fill a set in ascending order.
    void SetSorted(bool sorted) noexcept { m_bSorted = sorted; }
    int Size() const noexcept { return static_cast<int>(m_Data.size()); }
    bool IsEmpty() const;

    /// Position of an element equal to the value, the first one in a set not marked sorted; -1 if none. The comparison
    /// is called with the value as first and the element as second argument.
    int Find(const T& value, Comparison comparison) const;
    /// Address of the value, valid until the set changes; null outside.
    T* GetAt(int position);
    /// The value, or outside a default one that all sets of the type share.
    const T& GetConstRefAt(int position) const;
    /// As GetConstRefAt; what is written into the shared one stays there.
    T& GetRefAt(int position);
    bool GetFlag(int position) const;  ///< false outside
    /// A set with fewer elements is less; among equal sizes the first different value decides.
    bool operator<(const XSet& other) const;
    /// -1, 0 or 1 in the order of the elements' `<`.
    static int Comp(const Element& a, const Element& b);

    /// Appends a value and clears the sorted mark. @return false when unique is asked for and Comp finds the value
    bool Insert(const T& value, bool unique);
    void Delete(int position);              ///< keeps the sorted mark; nothing outside
    bool SetFlag(int position, bool flag);  ///< false outside
    void SetFlag(bool flag);
    void Clear();
    /// Sorts ascending and marks the set; nothing if it is marked. Null means T's `<`. Equal ones may change places.
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
    /// Copies a value to the end, sorted mark untouched. @throws what copying throws
    void Append(const T& value);

private:
    using Elements = std::vector<Element>;
    using Pointers = std::vector<Element*>;

    bool Contains(int position) const noexcept { return position >= 0 && position < Size(); }
    Element& At(int position) noexcept { return m_Data[static_cast<std::size_t>(position)]; }
    const Element& At(int position) const noexcept { return m_Data[static_cast<std::size_t>(position)]; }

    template <class U = T>
    requires XKnownOrder<U>
    static int KnownOrder(const T& a, const T& b) noexcept;
    template <class Compare>
    int FindWith(Compare compare) const;
    template <class ElementAt, class Compare>
    static int FindInHalves(int size, ElementAt elementAt, Compare compare);
    void AppendAll(const XSet& other);
    static Elements ValuesOf(const XSet& other);
    static bool Less(const Element& a, const Element& b) noexcept;
    static void SortElements(Elements& elements, Comparison comparison);
    static Pointers PointersTo(Elements& elements);
    static Pointers Sorted(Elements& elements, Comparison comparison);

    // An element with the number that its place in a known order begins with: most comparisons are settled by numbers
    // that lie side by side, without a look at the elements.
    template <class Pointer>
    struct Entry {
        std::uint64_t key;
        Pointer element;
        bool operator<(const Entry& other) const noexcept {
            return key != other.key ? key < other.key : !std::integral<T> && Less(*element, *other.element);
        }
    };
    template <class U = T>
    requires XKnownOrder<U>
    static std::uint64_t OrderKey(const T& value) noexcept;
    template <class Source, class U = T>
    requires XKnownOrder<U>
    static auto SortedEntries(Source& elements);
    static Pointers SortedByKey(Elements& elements);
    template <class U = T>
    requires XKnownOrder<U>
    void UnionByKey(const XSet& a, const XSet& b);

    void UnionByLookUp(const XSet& a, const XSet& b, Comparison comparison);
    static std::vector<std::size_t> PlacesIn(const Pointers& sorted, const Elements& elements);
    void Assign(const Pointers& sorted, const veltrane::detail::TakenPlaces& taken);

    // Out of line: inlined into a host, it could become a second object beside the library's.
    [[gnu::noinline]] static const T& ConstEmpty() {
        static const T tEmpty{};
        return tEmpty;
    }
    [[gnu::noinline]] static T& Empty() {
        static T tEmpty{};
        return tEmpty;
    }

    bool m_bSorted = false;
    Elements m_Data;
};

template <class T>
XSet<T>::XSet(const XSet& other) {
    veltrane::detail::Guarded(L"Exception in 'XSet<T>::XSet()'", [&] { AppendAll(other); });
}

template <class T>
XSet<T>::~XSet() {
    veltrane::detail::Guarded(L"Exception in 'XSet<T>::~XSet()'", [&] { m_Data.clear(); });
}

template <class T>
XSet<T>& XSet<T>::operator=(const XSet& other) {
    veltrane::detail::Guarded(L"Exception in 'XSet<T>::operator=()'", [&] { AppendAll(other); });
    return *this;
}

template <class T>
bool XSet<T>::IsEmpty() const {
    return veltrane::detail::Guarded(L"Exception in 'XSetData<T>::IsEmpty<()'", /*fallback*/ true,
                                     [&] { return m_Data.empty(); });
}

template <class T>
int XSet<T>::Find(const T& value, Comparison comparison) const {
    return veltrane::detail::Guarded(L"Exception in 'XSet<T>::Find()'", /*fallback*/ -1, [&] {
        if constexpr (XKnownOrder<T>) {  // saves the copy of the value and the calls through the pointer
            if (!comparison || comparison == Comp) {
                return FindWith([&](const Element& element) { return KnownOrder(value, element.GetValue()); });
            }
        }
        const Element probe{value};
        const Comparison compare = comparison ? comparison : Comp;
        return FindWith([&](const Element& element) { return compare(probe, element); });
    });
}

template <class T>
template <class Compare>
int XSet<T>::FindWith(Compare compare) const {
    if (!m_bSorted) {
        for (int i = 0; i < Size(); ++i) {
            if (compare(At(i)) == 0) return i;
        }
        return -1;
    }
    return FindInHalves(
        Size(), [&](int position) -> const Element& { return At(position); }, compare);
}

template <class T>
template <class ElementAt, class Compare>
int XSet<T>::FindInHalves(int size, ElementAt elementAt, Compare compare) {
    for (int low = 0, high = size - 1; low <= high;) {
        const int middle = (high - low) / 2 + low;
        const int order = compare(elementAt(middle));
        if (order == 0) return middle;
        if (order < 0) {
            high = middle - 1;
        } else {
            low = middle + 1;
        }
    }
    return -1;
}

template <class T>
T* XSet<T>::GetAt(int position) {
    return veltrane::detail::Guarded(L"Exception in 'XSet<T>::GetAt()'", /*fallback*/ nullptr,
                                     [&]() -> T* { return Contains(position) ? &At(position).GetValue() : nullptr; });
}

template <class T>
const T& XSet<T>::GetConstRefAt(int position) const {
    return veltrane::detail::Guarded(L"Exception in 'XSet<T>::GetConstRefAt()'", ConstEmpty, [&]() -> const T& {
        return Contains(position) ? At(position).GetValue() : ConstEmpty();
    });
}

template <class T>
T& XSet<T>::GetRefAt(int position) {
    return veltrane::detail::Guarded(L"Exception in 'XSet<T>::GetRefAt()'", Empty,
                                     [&]() -> T& { return Contains(position) ? At(position).GetValue() : Empty(); });
}

template <class T>
bool XSet<T>::GetFlag(int position) const {
    return veltrane::detail::Guarded(L"Exception in 'XSet<T>::GetFlag()'", /*fallback*/ false,
                                     [&] { return Contains(position) && At(position).GetFlag(); });
}

template <class T>
bool XSet<T>::operator<(const XSet& other) const {
    return veltrane::detail::Guarded(L"Exception in 'XSet<T>::operator<()'", /*fallback*/ false, [&] {
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
    return veltrane::detail::Guarded(L"Exception in 'XSet<T>::Comp()'", /*fallback*/ 0, [&] {
        if constexpr (XKnownOrder<T>) {
            return KnownOrder(a.GetValue(), b.GetValue());
        } else {
            return a < b ? -1 : b < a ? 1 : 0;
        }
    });
}

template <class T>
template <class U>
requires XKnownOrder<U>
int XSet<T>::KnownOrder(const T& a, const T& b) noexcept {
    if constexpr (std::same_as<T, CString>) {
        return a.Compare(b);
    } else {
        return (b < a) - (a < b);
    }
}

template <class T>
bool XSet<T>::Insert(const T& value, bool unique) {
    return veltrane::detail::Guarded(L"Exception in 'XSet<T>::Insert()'", /*fallback*/ false, [&] {
        if (unique && Find(value, Comp) >= 0) return false;
        Append(value);
        m_bSorted = false;
        return true;
    });
}

template <class T>
void XSet<T>::Append(const T& value) {
    if (m_Data.size() >= std::size_t{INT_MAX}) throw std::length_error("XSet");  // positions are ints
    m_Data.emplace_back(value);
}

template <class T>
void XSet<T>::Delete(int position) {
    veltrane::detail::Guarded(L"Exception in 'XSet<T>::Delete()'", [&] {
        if (!Contains(position)) return;
        for (int i = position; i + 1 < Size(); ++i) At(i).Take(std::move(At(i + 1)));
        m_Data.pop_back();
    });
}

template <class T>
bool XSet<T>::SetFlag(int position, bool flag) {
    return veltrane::detail::Guarded(L"Exception in 'XSet<T>::SetFlag()'", /*fallback*/ false, [&] {
        if (!Contains(position)) return false;
        At(position).SetFlag(flag);
        return true;
    });
}

template <class T>
void XSet<T>::SetFlag(bool flag) {
    veltrane::detail::Guarded(L"Exception in 'XSet<T>::SetFlag()'", [&] {
        for (Element& element : m_Data) element.SetFlag(flag);
    });
}

template <class T>
void XSet<T>::Clear() {
    veltrane::detail::Guarded(L"Exception in 'XSet<T>::Clear()'", [&] {
        m_bSorted = false;
        m_Data.clear();
    });
}

template <class T>
void XSet<T>::Sort(Comparison comparison) {
    veltrane::detail::Guarded(L"Exception in 'XSet<T>::Sort()'", [&] {
        if (m_bSorted) return;
        SortElements(m_Data, comparison);
        m_bSorted = true;
    });
}

template <class T>
bool XSet<T>::Less(const Element& a, const Element& b) noexcept {
    if constexpr (XKnownOrder<T>) {
        return KnownOrder(a.GetValue(), b.GetValue()) < 0;
    } else {
        return a < b;
    }
}

template <class T>
void XSet<T>::SortElements(Elements& elements, Comparison comparison) {
    Elements sorted;
    sorted.reserve(elements.size());
    for (Element* element : Sorted(elements, comparison)) sorted.push_back(std::move(*element));
    elements.swap(sorted);
}

template <class T>
typename XSet<T>::Pointers XSet<T>::Sorted(Elements& elements, Comparison comparison) {
    if constexpr (XKnownOrder<T>) {
        if (!comparison) return SortedByKey(elements);
    }
    return veltrane::detail::MergeSorted(PointersTo(elements), [&](const Element* a, const Element* b) {
        return comparison ? comparison(*a, *b) < 0 : Less(*a, *b);
    });
}

template <class T>
typename XSet<T>::Pointers XSet<T>::SortedByKey(Elements& elements) {
    Pointers pointers;
    if constexpr (XKnownOrder<T>) {
        pointers.reserve(elements.size());
        for (const auto& entry : SortedEntries(elements)) pointers.push_back(entry.element);
    }
    return pointers;
}

template <class T>
template <class Source, class U>
requires XKnownOrder<U>
auto XSet<T>::SortedEntries(Source& elements) {
    std::vector<Entry<decltype(elements.data())>> entries;
    entries.reserve(elements.size());
    for (auto& element : elements) entries.push_back({OrderKey(element.GetValue()), &element});
    veltrane::detail::SortByKey(entries);
    if constexpr (!std::integral<T>) {  // runs that begin alike
        const auto differ = [](const auto& a, const auto& b) { return a.key != b.key; };
        for (auto begin = entries.begin(), end = begin; begin != entries.end(); begin = end) {
            end = std::adjacent_find(begin, entries.end(), differ);
            if (end != entries.end()) ++end;
            if (end - begin > 1) std::sort(begin, end);
        }
    }
    return entries;
}

template <class T>
template <class U>
requires XKnownOrder<U> std::uint64_t XSet<T>::OrderKey(const T& value)
noexcept {
    if constexpr (std::same_as<T, CString>) {
        return value.OrderKey();
    } else {
        return static_cast<std::uint64_t>(value) + (std::is_signed_v<T> ? std::uint64_t{1} << 63 : 0);
    }
}

template <class T>
typename XSet<T>::Pointers XSet<T>::PointersTo(Elements& elements) {
    Pointers pointers;
    pointers.reserve(elements.size());
    for (Element& element : elements) pointers.push_back(&element);
    return pointers;
}

template <class T>
void XSet<T>::Copy(const XSet& other) {
    veltrane::detail::Guarded(L"Exception in 'XSet<T>::Copy()'", [&] { AppendAll(other); });
}

template <class T>
void XSet<T>::Copy(const XSet* other) {
    if (other) Copy(*other);
}

// The one copy of constructor, Copy and assignment.
template <class T>
void XSet<T>::AppendAll(const XSet& other) {
    if (&other == this) return;
    Clear();
    m_Data.reserve(other.m_Data.size());
    for (const Element& element : other.m_Data) Append(element.GetValue());
}

template <class T>
void XSet<T>::GetSubset(XSet& out, bool flag) {
    veltrane::detail::Guarded(L"Exception in 'XSet<T>::GetSubset()'", [&] {
        Elements own;
        if (&out == this) own.swap(m_Data);
        const Elements& source = &out == this ? own : m_Data;
        out.Clear();
        for (const Element& element : source) {
            if (element.GetFlag() == flag) out.Append(element.GetValue());
        }
    });
}

template <class T>
void XSet<T>::Union(const XSet& a, const XSet& b, Comparison comparison) {
    veltrane::detail::Guarded(L"Exception in 'XSet<T>::Union()'", [&] {
        const Comparison compare = comparison ? comparison : Comp;
        if constexpr (XKnownOrder<T>) {
            if (compare == Comp) return UnionByKey(a, b);
        }
        UnionByLookUp(a, b, compare);
    });
}

// A merge finds what looking up would find, and copies nothing but the result.
template <class T>
template <class U>
requires XKnownOrder<U>
void XSet<T>::UnionByKey(const XSet& a, const XSet& b) {
    const auto first = SortedEntries(a.m_Data);
    const auto second = SortedEntries(b.m_Data);
    XSet result;
    result.m_Data.reserve(first.size() + second.size());
    auto next = first.begin();
    for (auto entry = second.begin(); entry != second.end(); ++entry) {
        if (entry != second.begin() && !(*std::prev(entry) < *entry)) continue;
        for (; next != first.end() && *next < *entry; ++next) result.Append(next->element->GetValue());
        if (next == first.end() || *entry < *next) result.Append(entry->element->GetValue());
    }
    for (; next != first.end(); ++next) result.Append(next->element->GetValue());
    m_Data.swap(result.m_Data);
    m_bSorted = true;
}

template <class T>
typename XSet<T>::Elements XSet<T>::ValuesOf(const XSet& other) {
    Elements values;
    values.reserve(other.m_Data.size());
    for (const Element& element : other.m_Data) values.emplace_back(element.GetValue());
    return values;
}

// Finds and inserts one by one, as if into a sorted set that is sorted again behind each: but where every value will
// stand is known from the start, so none has to move.
template <class T>
void XSet<T>::UnionByLookUp(const XSet& a, const XSet& b, Comparison comparison) {
    Elements values = ValuesOf(a);  // both before the set is emptied: it may be a or b
    const std::size_t first = values.size();
    values.reserve(first + b.m_Data.size());
    for (const Element& element : b.m_Data) values.emplace_back(element.GetValue());
    if (values.size() > std::size_t{INT_MAX}) throw std::length_error("XSet");  // positions are ints
    const Pointers sorted = Sorted(values, nullptr);
    const std::vector<std::size_t> places = PlacesIn(sorted, values);
    veltrane::detail::TakenPlaces taken{values.size()};
    for (std::size_t i = 0; i < first; ++i) taken.Take(places[i]);
    try {
        for (std::size_t i = first; i < values.size(); ++i) {
            const auto at = [&](int position) -> const Element& { return *sorted[taken.Nth(position)]; };
            const auto compare = [&](const Element& element) { return comparison(values[i], element); };
            if (FindInHalves(taken.Count(), at, compare) < 0) taken.Take(places[i]);
        }
    } catch (...) {
        Assign(sorted, taken);  // as far as the union came
        throw;
    }
    Assign(sorted, taken);
}

template <class T>
std::vector<std::size_t> XSet<T>::PlacesIn(const Pointers& sorted, const Elements& elements) {
    std::vector<std::size_t> places(sorted.size());
    for (std::size_t place = 0; place < sorted.size(); ++place) {
        places[static_cast<std::size_t>(sorted[place] - elements.data())] = place;
    }
    return places;
}

template <class T>
void XSet<T>::Assign(const Pointers& sorted, const veltrane::detail::TakenPlaces& taken) {
    Clear();
    m_Data.reserve(static_cast<std::size_t>(taken.Count()));
    for (int i = 0; i < taken.Count(); ++i) m_Data.push_back(std::move(*sorted[taken.Nth(i)]));
    m_bSorted = true;
}
