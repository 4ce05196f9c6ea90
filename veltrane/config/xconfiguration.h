#pragma once

#include <optional>
#include <vector>

#include "veltrane/collections/xmap.h"
#include "veltrane/collections/xsetint.h"
#include "veltrane/platform/sources/sourceplace.h"
#include "veltrane/platform/text/cstring.h"

/// Reads one INI file: single values, and families of values that carry an index. A family is either keys of one
/// section ("file-1", "file-2" for the pattern "file"; a bare "file" takes the next free index) or sections of one form
/// ("FILES\1", "FILES\2" for the section "FILES\%d") with a key each.
///
/// Keeps only the path: each question reads the file, and a missing file, section or key is not an error. Lists end
/// after MAX_LIST characters, values after MAX_VALUE.
/// @code
/// XMapInt2CString files;
/// XConfiguration{L"D:\\config\\tool.ini"}.GetKeyValueSet(files, L"ROOT", L"file");
/// @endcode
class VELTRANE_API XConfiguration {
public:
    static constexpr int MAX_VALUE = 2047;  ///< elements of a value that are read
    static constexpr int MAX_LIST = 2046;   ///< elements of a list of names, commas included

    explicit XConfiguration(const CString& fileName);
    XConfiguration(const XConfiguration&) = default;
    XConfiguration& operator=(const XConfiguration&) = default;
    virtual ~XConfiguration();

    const CString& GetFileName() const noexcept { return m_FileName; }

    /// The value of a key; without a key the comma-separated names of the section's keys, without a section those of
    /// all sections.
    /// @param assignEmpty  whether a missing or empty value counts as found and empties value
    /// @param place  receives the place of the value when it was found; may be null
    /// @return found; otherwise value keeps what it held
    bool GetKeyValue(CString& value, const CString& section, const CString& key, bool assignEmpty,
                     veltrane::SourcePlace* place = nullptr) const;

    /// Adds the indexes of a family, in file order. @return whether the set holds any index afterwards
    /// @throws XException  empty pattern; an index that the set holds already; those before it are added
    bool GetKeyIndexSet(XSetInt& indexes, const CString& section, const CString& pattern) const;

    /// Adds the values of a family by their index; an empty value adds nothing. @return whether the map holds any value
    /// @param places  receives the place of each value that is added, and of the one whose index is given twice; may be
    /// null
    /// @throws XException  empty pattern; an index with a value already; those before it are added
    bool GetKeyValueSet(XMapInt2CString& values, const CString& section, const CString& pattern,
                        std::vector<veltrane::IndexedPlace>* places = nullptr) const;

    /// Whether a key belongs to the family of a pattern within a section, as the two above read it.
    /// @param index  receives the index; none for a bare key, which takes the next free one
    static bool IsFamilyKey(const CString& key, const CString& pattern, std::optional<int>& index);

    /// Adds, for each section of one form, the comma-separated names of its keys. @return always true
    bool GetOptionNameSet(XMapInt2CString& names, const CString& sectionFormat) const;

private:
    struct Answer;
    struct Family;

    Answer Ask(const CString& section, const CString& key, int* line = nullptr) const;
    Family FindFamily(const CString& section, const CString& pattern) const;

    CString m_FileName;
};
