#pragma once

#include <cstddef>
#include <vector>

#include "veltrane/collections/cursormap.h"
#include "veltrane/platform/text/cstring.h"

/// Strings in the order of appending, with a cursor of its own.
/// @code
/// CString line;
/// for (bool more = lines.First(line); more; more = lines.Next(line)) Use(line);
/// @endcode
class VELTRANE_API XStringVector {
public:
    XStringVector() = default;
    XStringVector(const XStringVector&) = default;
    XStringVector& operator=(const XStringVector&) = default;
    virtual ~XStringVector();

    void Append(const CString& text);
    int GetSize() const noexcept { return static_cast<int>(m_Vector.size()); }
    /// First puts the cursor on the first string, Next on the next one. @return false, with out untouched, at the end,
    /// before First and after Append or Clear
    bool First(CString& out);
    bool Next(CString& out);
    /// The strings, `for (const CString& text : vector)`; leaves the cursor alone.
    auto begin() const noexcept { return m_Vector.begin(); }
    auto end() const noexcept { return m_Vector.end(); }
    void Clear() noexcept;

    /// -1 for fewer strings than the other holds, 1 for more or when other is null; among equal sizes CString::Compare
    /// of the first strings that differ, else 0.
    int Compare(const XStringVector* other) const;
    int FullCompare(const XStringVector* other) const { return Compare(other); }

private:
    bool Read(CString& out) const;

    std::vector<CString> m_Vector;
    std::size_t m_itAct = 0;
    std::size_t m_itEnd = 0;  // equal to m_itAct at the end
};

/// Ordered map from string to vectors, which the map deletes when it is destroyed. It has a cursor of its own.
/// @code
/// for (bool more = map.First(); more; more = map.Next()) Use(map.GetActKey(), *map.GetActValue());
/// @endcode
class VELTRANE_API XStringMap {
public:
    XStringMap() = default;
    XStringMap(const XStringMap&) = delete;
    XStringMap& operator=(const XStringMap&) = delete;
    virtual ~XStringMap();

    /// Takes ownership of a vector, unless the key exists: then nothing changes and the caller keeps the vector.
    void Insert(const CString& key, XStringVector* vector);
    /// Find puts the cursor on a key (case counts), First on the smallest one, Next on the next one. @return false when
    /// there is none
    bool Find(const CString& key) { return m_Map.Find(key) != nullptr; }
    bool First() { return m_Map.First() != nullptr; }
    bool Next() { return m_Map.Next() != nullptr; }
    /// Key and vector at the cursor; the empty text and null when the cursor is on no entry.
    const CString& GetActKey() const;
    XStringVector* GetActValue() const;
    int GetSize() const noexcept { return static_cast<int>(m_Map.All().size()); }
    /// The entries, `for (const auto& [key, vector] : map)`; leaves the cursor alone.
    auto begin() const noexcept { return m_Map.All().begin(); }
    auto end() const noexcept { return m_Map.All().end(); }

private:
    veltrane::detail::XCursorMap<CString, XStringVector*> m_Map;
};
