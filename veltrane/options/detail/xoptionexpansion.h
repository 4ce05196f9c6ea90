#pragma once

#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "veltrane/options/detail/xoptionrecord.h"
#include "veltrane/platform/text/cstring.h"

namespace veltrane::detail {

/// Replaces the references between percent signs in one value, and in the values that they lead to. Used for one value:
/// it remembers what a reference led to, so values that name each other many times cost no more than their texts. A
/// derived class gives the texts of the keys.
class XOptionExpansion {
public:
    /// References inside references: far more than people write, few enough for a stack of 1 MiB.
    static constexpr int MAX_NESTING = 200;
    /// Elements of a value with its references replaced: values that multiply each other cannot fill the memory.
    static constexpr int MAX_LENGTH = 1'048'576;

    /// The text of a key with its references replaced. @throws XException as Expand, and what KeyText throws
    void Retrieve(CString& value, const CString& section, const CString& key);

    /// Replaces the references in a value of a section: '%name%' is the key of that name in the value's own section,
    /// else in ROOT, else in the unnamed section; one that leads to nothing is removed, and a '%' without partner
    /// stays.
    /// @throws XException  a reference leads back to itself; too deep; too long; value then is as before
    void Expand(CString& value, const CString& section);
    /// Likewise in the value of a key; a reference to the key then leads back to itself.
    void Expand(CString& value, const CString& section, const CString& key);

protected:
    /// @param record  gets the steps; may be null
    explicit XOptionExpansion(XOptionRecord* record = nullptr) : m_Record(record) {}
    ~XOptionExpansion() = default;

private:
    /// The text of a key as the sources have it; empty when none has it.
    virtual CString KeyText(const CString& section, const CString& key) = 0;

    using Key = std::pair<CString, CString>;  // section, name

    const CString& Replacement(const CString& section, const CString& name);
    CString LookUp(const CString& section, const CString& name);
    void Enter(const Key& key);
    CString OpenChain(std::vector<Key>::const_iterator from) const;

    XOptionRecord* m_Record;
    std::map<Key, CString> m_Known;  // replacement of each reference met so far
    std::vector<Key> m_Open;         // keys whose values are being expanded, outermost first
    int m_Nesting = 0;
    std::int64_t m_nHeld = 0;  // elements that all values being expanded have so far
};

}  // namespace veltrane::detail
