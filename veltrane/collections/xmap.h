#pragma once

#include <map>

#include "veltrane/collections/cursormap.h"
#include "veltrane/collections/xsetint.h"
#include "veltrane/platform/text/cstring.h"

/// Ordered map from int to string with a cursor of its own.
/// @code
/// CString text;
/// for (int key = map.GetFirst(text); key >= 0; key = map.GetNext(text)) Use(key, text);
/// @endcode
class VELTRANE_API XMapInt2CString {
public:
    XMapInt2CString() = default;
    XMapInt2CString(const XMapInt2CString&) = default;
    XMapInt2CString& operator=(const XMapInt2CString&) = default;
    virtual ~XMapInt2CString();

    /// Stores a text under a key unless Get already gives it: an empty text makes no entry, and empties one.
    void Insert(int key, const CString& text);
    /// The smallest key with exactly this text, -1 if none; leaves the cursor alone.
    int Find(const CString& text) const;
    /// The text under a key, valid until the entry changes; the empty text without one.
    const CString& Get(int key) const;
    /// GetFirst puts the cursor on the smallest key, GetNext on the next one. @return the key; -1 with an empty text at
    /// the end, before GetFirst and after Clear
    int GetFirst(CString& out);
    int GetNext(CString& out);
    /// The largest key; -1 for an empty map and for one that holds a negative key. Moves the cursor to the end, or to
    /// the negative key.
    int GetMaxKey();
    int Size() const noexcept { return static_cast<int>(m_Map.All().size()); }
    /// The entries, `for (const auto& [key, text] : map)`; leaves the cursor alone.
    auto begin() const noexcept { return m_Map.All().begin(); }
    auto end() const noexcept { return m_Map.All().end(); }
    void Clear() noexcept { m_Map.Clear(); }

private:
    veltrane::detail::XCursorMap<int, CString> m_Map;
};

/// Ordered map from int to sets of integers, which the map deletes when it is destroyed. A set may be under one key
/// only.
/// @code
/// XMapInt2SetOfInt columns;
/// columns.Insert(5, L"1, 3, 7");
/// if (const XSetInt* set = columns.Find(5)) Use(*set);
/// @endcode
class VELTRANE_API XMapInt2SetOfInt {
public:
    XMapInt2SetOfInt() = default;
    XMapInt2SetOfInt(const XMapInt2SetOfInt&) = delete;
    XMapInt2SetOfInt& operator=(const XMapInt2SetOfInt&) = delete;
    virtual ~XMapInt2SetOfInt();

    /// The map's set under a key; null without one.
    XSetInt* Find(int key) const;
    /// The entries, `for (const auto& [key, set] : map)`; the sets stay the map's.
    auto begin() const noexcept { return m_Map.begin(); }
    auto end() const noexcept { return m_Map.end(); }
    /// The map now owns this set, and no longer the one that was under the key. Null does nothing.
    void Insert(int key, XSetInt* set);
    /// Makes a set of an integer list (XSetInt::BuildSet); a list without numbers makes none.
    /// @throws XException  the key has a set already
    void Insert(int key, const CString& list);

private:
    std::map<int, XSetInt*> m_Map;
};

/// Ordered map from int to a pair of numbers with a cursor of its own; a pair of zeros counts as none.
/// @code
/// XMapInt2IntTupel::IntTupel pair;
/// for (int key = map.GetFirst(pair); key >= 0; key = map.GetNext(pair)) Use(key, pair.nFirst, pair.nSecond);
/// @endcode
class VELTRANE_API XMapInt2IntTupel {
public:
    struct IntTupel {
        IntTupel() = default;
        IntTupel(int first, int second) : nFirst(first), nSecond(second) {}

        int nFirst = 0;
        int nSecond = 0;
    };

    XMapInt2IntTupel() = default;
    XMapInt2IntTupel(const XMapInt2IntTupel&) = default;
    XMapInt2IntTupel& operator=(const XMapInt2IntTupel&) = default;
    virtual ~XMapInt2IntTupel();

    /// Stores two numbers under a key unless numbers other than (0, 0) are there.
    void Insert(int key, int first, int second);
    /// GetFirst puts the cursor on the smallest key, GetNext on the next one. @return the key; -1 with (0, 0) at the
    /// end, before GetFirst and after Clear
    int GetFirst(IntTupel& out);
    int GetNext(IntTupel& out);
    /// The entries, `for (const auto& [key, pair] : map)`; leaves the cursor alone.
    auto begin() const noexcept { return m_Map.All().begin(); }
    auto end() const noexcept { return m_Map.All().end(); }
    void Clear() noexcept { m_Map.Clear(); }

private:
    veltrane::detail::XCursorMap<int, IntTupel> m_Map;
};
