#pragma once

#include <algorithm>
#include <climits>
#include <cstddef>
#include <exception>
#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

#include "veltrane/collections/guarded.h"
#include "veltrane/collections/matchsorted.h"
#include "veltrane/collections/setiterator.h"
#include "veltrane/collections/setorder.h"
#include "veltrane/collections/sharedempty.h"
#include "veltrane/collections/typename.h"
#include "veltrane/foundation/xraise.h"

/// An ordered sequence of heap objects that the set owns: it deletes what is removed and copies with T's copy
/// constructor. In the order of insertion until it is sorted; duplicates are kept.
///
/// T needs, each only if an operation that calls it is used: copy construction, a default value, `<`, Compare,
/// FullCompare, GetFlag, SetFlag. A null pointer may be inserted: it counts as less than every object, is copied as
/// null, skipped by GetSubset, and has no flag.
///
/// Changes and copies raise XException: one thrown inside gets the operation's reason in front, and any other exception
/// becomes one. The read accessors and GetSubset absorb what T throws, show a box and return what they return for a
/// position outside. Sub, Intersection, Compare and FullCompare let through what T throws. A set given to itself as
/// argument counts as a copy. Addresses and references of objects are valid until the object is removed.
/// @code
/// XSetP<XStringPair> pairs;
/// pairs.Insert(new XStringPair(L"tmp_", L"wrk_"));  // the set deletes it
/// for (const XStringPair& pair : pairs) Use(pair.GetFirst());
/// @endcode
///
/// Error locations name T with the key it was declared with, as in "XSetP<class XStringPair>::Insert". The compiler
/// does not tell "struct" from "class"; of a struct, say it in the global namespace after its definition:
/// @code
/// struct MyRule { ... };
/// template <>
/// inline constexpr std::string_view veltrane::XClassKey<MyRule> = "struct ";
/// @endcode
template <class T>
class XSetP {
public:
    XSetP() = default;
    XSetP(const XSetP& other);
    explicit XSetP(const XSetP* other);  ///< null leaves the set empty
    virtual ~XSetP();
    /// As Copy.
    XSetP& operator=(const XSetP& other);

    bool IsSorted() const noexcept { return m_bSorted; }
    int Size() const noexcept { return static_cast<int>(m_Data.size()); }

    /// The object; for a position outside (and for null) a default one that all sets of the type share.
    const T& GetConstRefAt(int position) const;
    T& GetRefAt(int position);
    /// The pointer, null outside.
    T* GetAt(int position);
    const T* GetConstAt(int position) const;
    /// @throws XException  position outside
    bool GetFlag(int position) const;
    /// The objects in stored order, each as GetConstRefAt: `for (const T& object : set)`.
    veltrane::detail::XSetIterator<XSetP, T> begin() const noexcept { return {*this, 0}; }
    veltrane::detail::XSetIterator<XSetP, T> end() const noexcept { return {*this, Size()}; }

    /// Position of an equal object, which is neither less nor greater; -1 if none. A set marked sorted is searched from
    /// start on, or by binary search when start is below 0; any other set from its front, whatever start is.
    int FindPos(const T* object, int start) const;
    int FindPos(const T& object, int start) const { return FindPos(&object, start); }
    /// The object at FindPos, null if none.
    T* Find(const T* object, int start) { return GetAt(FindPos(object, start)); }
    T* Find(const T& object, int start) { return Find(&object, start); }

    /// The difference of the sizes; among equal sizes T's Compare (FullCompare) of the first objects that differ.
    int Compare(const XSetP& other) const;
    int FullCompare(const XSetP& other) const;
    /// A set with fewer objects is less; among equal sizes the first different object decides.
    bool operator<(const XSetP& other) const;

    /// Appends an object, which the set then owns, and clears the sorted mark. If the set cannot grow, it raises an
    /// error and the caller keeps the object. @return true
    bool Insert(T* const& object);
    void DeleteObj(int position);      ///< keeps the sorted mark; does nothing outside
    void DeleteData(const T& object);  ///< DeleteObj of its FindPos
    /// Deletes the objects that fit and keeps the sorted mark, in one pass; a null does not fit. A destructor that
    /// throws ends it: the objects not deleted yet are then at the end of the set, which is no longer marked sorted.
    template <class Fits>
    void DeleteIf(Fits fits);
    void SetFlag(int position, bool flag);  ///< @throws XException  position outside
    void SetFlag(bool flag);
    /// Deletes all objects. The set is then empty, even when a destructor throws.
    void Clear();
    /// Sorts two or more objects by T's `<` and marks the set, unless it is marked.
    void Sort();

    /// Replaces the objects by copies; on failure the set holds the copies made so far. A set copied onto itself stays
    /// as it is.
    void Copy(const XSetP& other);
    void Copy(const XSetP* other);  ///< null does nothing
    /// Replaces out by copies of the objects whose flag is the given one.
    void GetSubset(XSetP& out, bool flag);
    /// Append copies of a - b and a ∩ b, duplicates matched one to one by T's Compare; a and b are sorted and stay so.
    void Sub(XSetP& a, XSetP& b);
    void Intersection(XSetP& a, XSetP& b);

protected:
    using Owned = std::unique_ptr<T>;

    const std::vector<T*>& Objects() const noexcept { return m_Data; }
    /// Insert of an object that is deleted when the set cannot take it.
    void Adopt(Owned object);

private:
    template <class... Args>
    using Failure = veltrane::XFailure<Args...>;

    static constexpr veltrane::detail::XGuarded Guarded{};

    static constexpr Failure<> COPYING{L"Error copying a XSetP<T>!",
                                       L"An unknown exception occured when copying a XSetP<T>!"};
    static constexpr Failure<> SORTING{L"Error sorting a XSetP<T>!",
                                       L"An unknown exception occured when sorting a XSetP<T>!"};
    static constexpr Failure<> INSERTING{L"Error inserting an element in a XSetP<T>!",
                                         L"An unknown exception occured when inserting an element in a XSetP<T>!"};
    static constexpr Failure<> DELETING{L"Error deleting an element from a XSetP<T>!",
                                        L"An unknown exception occured when deleting an element from a XSetP<T>!"};
    static constexpr Failure<> CLEARING{L"Error cleaning-up a XSetP<T>!",
                                        L"An unknown exception occured when cleaning-up a XSetP<T>!"};
    static constexpr Failure<> SETTING_ALL{
        L"Error setting the flag for all elements of a XSetP<T>!",
        L"An unknown exception occured when setting the flag for all elements of a XSetP<T>!"};
    static constexpr Failure<int> SETTING{
        L"Error setting the flag for element #%d of a XSetP<T>!",
        L"An unknown exception occured when setting the flag for element #%d of a XSetP<T>!"};
    static constexpr Failure<int> GETTING{
        L"Error getting the flag of element #%d of a XSetP<T>!",
        L"An unknown exception occured when getting the flag of element #%d of a XSetP<T>!"};
    static constexpr Failure<> COMPARING{L"Error comparing two XSetP<T>!",
                                         L"An unknown exception occured when comparing two XSetP<T>!"};

    template <veltrane::detail::Literal Operation>
    static constexpr veltrane::XSite Here(int line = __builtin_LINE()) {
        return {L".\\XSet", veltrane::detail::MethodName<T, "XSetP", Operation>.data(), line};
    }

    bool Contains(int position) const noexcept { return position >= 0 && position < Size(); }
    T* At(int position) const noexcept { return m_Data[static_cast<std::size_t>(position)]; }
    T* ObjectAt(int position) const noexcept { return Contains(position) ? At(position) : nullptr; }
    T& Checked(int position) const;

    static bool Smaller(const T* a, const T* b) { return a && b ? *a < *b : !a && b; }
    template <class Comparison>
    static int CompareObjects(const T* a, const T* b, Comparison compare);
    template <class Comparison>
    int CompareWith(const XSetP& other, Comparison compare) const;
    int FindFrom(const T* object, int start) const;
    int FindInHalves(const T* object) const;

    static Owned Clone(const T* object) { return object ? std::make_unique<T>(*object) : nullptr; }
    void CopyFrom(const XSetP& other, const std::vector<int>& positions);
    static veltrane::detail::XMatch Match(XSetP& a, XSetP& b);

    // Out of line: inlined into a host, it could become a second object beside the library's.
    [[gnu::noinline]] static veltrane::detail::XSharedEmpty<T>& Empty() {
        static veltrane::detail::XLasting<veltrane::detail::XSharedEmpty<T>> tEmpty;
        return tEmpty.value;
    }

    bool m_bSorted = false;
    std::vector<T*> m_Data;
};

// Both copies start from a complete empty set: when they fail, its destructor deletes what has been copied.
template <class T>
XSetP<T>::XSetP(const XSetP& other) : XSetP() {
    WithReason(Here<"XSetP">(), COPYING, [&] { Copy(other); });
}

template <class T>
XSetP<T>::XSetP(const XSetP* other) : XSetP() {
    WithReason(Here<"XSetP">(), COPYING, [&] { Copy(other); });
}

template <class T>
XSetP<T>::~XSetP() {
    Guarded(L"Exception in 'XSetP<T>::~XSetP()'", [&] { Clear(); });
}

template <class T>
XSetP<T>& XSetP<T>::operator=(const XSetP& other) {
    WithReason(Here<"operator =">(), COPYING, [&] { Copy(other); });
    return *this;
}

template <class T>
const T& XSetP<T>::GetConstRefAt(int position) const {
    const auto empty = []() -> const T& { return Empty().constant; };
    return Guarded(L"Exception in 'XSetP<T>::GetConstRefAt()'", empty, [&]() -> const T& {
        const T* object = ObjectAt(position);
        return object ? *object : empty();
    });
}

template <class T>
T& XSetP<T>::GetRefAt(int position) {
    const auto empty = []() -> T& { return Empty().writable; };
    return Guarded(L"Exception in 'XSetP<T>::GetRefAt()'", empty, [&]() -> T& {
        T* object = ObjectAt(position);
        return object ? *object : empty();
    });
}

template <class T>
T* XSetP<T>::GetAt(int position) {
    return Guarded(L"Exception in 'XSetP<T>::GetAt()'", /*fallback*/ nullptr, [&] { return ObjectAt(position); });
}

template <class T>
const T* XSetP<T>::GetConstAt(int position) const {
    return Guarded(L"Exception in 'XSetP<T>::GetAt()'", /*fallback*/ nullptr, [&] { return ObjectAt(position); });
}

template <class T>
bool XSetP<T>::GetFlag(int position) const {
    return WithReason(
        Here<"GetFlag">(), GETTING, [&]() -> bool { return std::as_const(Checked(position)).GetFlag(); }, position);
}

template <class T>
T& XSetP<T>::Checked(int position) const {
    if (!Contains(position))
        throw veltrane::MakeError(Here<"CheckLimits">(), L"Index <%d> is out of bounds [%d,%d]!", position, 0,
                                  Size() - 1);
    if (T* object = At(position)) return *object;
    throw veltrane::MakeError(Here<"CheckLimits">(), L"Index <%d> holds no object!", position);
}

template <class T>
int XSetP<T>::FindPos(const T* object, int start) const {
    return Guarded(L"Exception in 'XSetP<T>::Find()'", /*fallback*/ -1, [&] {
        if (!m_bSorted) {
            for (int i = 0; i < Size(); ++i) {
                if (!Smaller(At(i), object) && !Smaller(object, At(i))) return i;
            }
            return -1;
        }
        return start < 0 ? FindInHalves(object) : FindFrom(object, start);
    });
}

template <class T>
int XSetP<T>::FindFrom(const T* object, int start) const {
    int position = start;
    while (position < Size() && Smaller(At(position), object)) ++position;
    return position >= Size() || Smaller(object, At(position)) ? -1 : position;
}

template <class T>
int XSetP<T>::FindInHalves(const T* object) const {
    return veltrane::detail::FindInHalves(
        Size(), [&](int position) { return At(position); },
        [&](const T* other) { return Smaller(object, other)   ? -1
                                     : Smaller(other, object) ? 1
                                                              : 0; });
}

template <class T>
int XSetP<T>::Compare(const XSetP& other) const {
    return CompareWith(other, [](const T& a, const T& b) { return a.Compare(b); });
}

template <class T>
int XSetP<T>::FullCompare(const XSetP& other) const {
    return CompareWith(other, [](const T& a, const T& b) { return a.FullCompare(b); });
}

template <class T>
template <class Comparison>
int XSetP<T>::CompareWith(const XSetP& other, Comparison compare) const {
    if (Size() != other.Size()) return Size() - other.Size();
    for (int i = 0; i < Size(); ++i) {
        if (const int order = CompareObjects(At(i), other.At(i), compare); order != 0) return order;
    }
    return 0;
}

template <class T>
template <class Comparison>
int XSetP<T>::CompareObjects(const T* a, const T* b, Comparison compare) {
    return a && b ? compare(*a, *b) : (a ? 1 : 0) - (b ? 1 : 0);
}

template <class T>
bool XSetP<T>::operator<(const XSetP& other) const {
    return WithReason(Here<"operator <">(), COMPARING, [&] {
        if (Size() != other.Size()) return Size() < other.Size();
        for (int i = 0; i < Size(); ++i) {
            if (Smaller(At(i), other.At(i))) return true;
            if (Smaller(other.At(i), At(i))) return false;
        }
        return false;
    });
}

template <class T>
bool XSetP<T>::Insert(T* const& object) {
    return WithReason(Here<"Insert">(), INSERTING, [&] {
        if (m_Data.size() >= std::size_t{INT_MAX}) throw std::length_error("XSetP");  // positions are ints
        m_Data.push_back(object);
        m_bSorted = false;
        return true;
    });
}

template <class T>
void XSetP<T>::DeleteObj(int position) {
    WithReason(Here<"DeleteObj">(), DELETING, [&] {
        if (!Contains(position)) return;
        T* object = At(position);
        m_Data.erase(m_Data.begin() + position);  // erased first: a destructor that throws must not be called again
        delete object;
    });
}

template <class T>
void XSetP<T>::DeleteData(const T& object) {
    WithReason(Here<"DeleteData">(), DELETING, [&] { DeleteObj(FindPos(object, -1)); });
}

template <class T>
template <class Fits>
void XSetP<T>::DeleteIf(Fits fits) {
    WithReason(Here<"DeleteIf">(), DELETING, [&] {
        const bool isSorted = std::exchange(m_bSorted, false);
        auto kept = m_Data.begin();
        for (auto object = kept; object != m_Data.end(); ++object) {
            if (!*object || !fits(std::as_const(**object))) std::iter_swap(kept++, object);
        }
        for (const auto size = kept - m_Data.begin(); Size() > size;) DeleteObj(Size() - 1);
        m_bSorted = isSorted;
    });
}

template <class T>
void XSetP<T>::SetFlag(int position, bool flag) {
    WithReason(
        Here<"SetFlag">(), SETTING, [&] { Checked(position).SetFlag(flag); }, position);
}

template <class T>
void XSetP<T>::SetFlag(bool flag) {
    WithReason(Here<"SetFlag">(), SETTING_ALL, [&] {
        for (int i = 0; i < Size(); ++i) SetFlag(i, flag);
    });
}

template <class T>
void XSetP<T>::Clear() {
    WithReason(Here<"Clear">(), CLEARING, [&] {
        m_bSorted = false;
        std::exception_ptr failure;
        for (T* object : std::exchange(m_Data, {})) {
            try {
                delete object;
            } catch (...) {  // the others are deleted all the same
                failure = std::current_exception();
            }
        }
        if (failure) std::rethrow_exception(failure);
    });
}

template <class T>
void XSetP<T>::Sort() {
    WithReason(Here<"Sort">(), SORTING, [&] {
        if (m_bSorted || Size() < 2) return;
        m_Data = veltrane::detail::MergeSorted(m_Data, Smaller);
        m_bSorted = true;
    });
}

template <class T>
void XSetP<T>::Copy(const XSetP& other) {
    WithReason(Here<"Copy">(), COPYING, [&] {
        if (&other == this) return;
        Clear();
        for (const T* object : other.m_Data) Adopt(Clone(object));
    });
}

template <class T>
void XSetP<T>::Copy(const XSetP* other) {
    if (other) Copy(*other);
}

template <class T>
void XSetP<T>::Adopt(Owned object) {
    Insert(object.get());
    static_cast<void>(object.release());
}

template <class T>
void XSetP<T>::CopyFrom(const XSetP& other, const std::vector<int>& positions) {
    for (const int position : positions) Adopt(Clone(other.At(position)));
}

template <class T>
veltrane::detail::XMatch XSetP<T>::Match(XSetP& a, XSetP& b) {
    a.Sort();
    b.Sort();
    const auto compare = [](const T& x, const T& y) { return x.Compare(y); };
    return veltrane::detail::MatchSorted(a.Size(), b.Size(),
                                         [&](int i, int j) { return CompareObjects(a.At(i), b.At(j), compare); });
}

template <class T>
void XSetP<T>::GetSubset(XSetP& out, bool flag) {
    Guarded(L"Exception in 'XSetP<T>::GetSubset()'", [&] {
        XSetP own;  // the objects while they are copied, when out is this set
        if (&out == this) own.m_Data.swap(m_Data);
        const std::vector<T*>& source = &out == this ? own.m_Data : m_Data;
        out.Clear();
        for (const T* object : source) {
            if (object && object->GetFlag() == flag) out.Adopt(Clone(object));
        }
    });
}

template <class T>
void XSetP<T>::Sub(XSetP& a, XSetP& b) {
    CopyFrom(a, Match(a, b).onlyFirst);
}

template <class T>
void XSetP<T>::Intersection(XSetP& a, XSetP& b) {
    CopyFrom(a, Match(a, b).both);
}
