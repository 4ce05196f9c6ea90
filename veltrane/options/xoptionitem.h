#pragma once

#include <cstddef>
#include <memory>

#include "veltrane/collections/xsetint.h"
#include "veltrane/options/xoptiondefinition.h"
#include "veltrane/platform/text/cstring.h"

namespace veltrane::detail {

class XOptionItems;

/// How far a walk over items has come: all before the place are marked. Clearing a mark restarts the option's walk and
/// the walk over all items.
struct XOptionWalk {
    std::size_t next = 0;
    XOptionWalk* all = nullptr;
};

}  // namespace veltrane::detail

/// One value of one option: its row of the option table, its text and, for an option with several values, its index.
/// The text is converted on request; what was stored is never checked, so a wrong word reads as false or as auto.
/// @code
/// XOptionItem item{FindOptionDefinition(L"logfile"), L"run.log", -1};
/// Use(item.GetOptionString());
/// @endcode
class VELTRANE_API XOptionItem {
public:
    /// @param index  number of the value from 0; -1 for a single option
    /// @throws XException  definition is null
    XOptionItem(XOptionDefinition* definition, const CString& value, int index);
    XOptionItem(const XOptionItem& other);  ///< with an integer list of its own
    XOptionItem& operator=(const XOptionItem&) = delete;
    ~XOptionItem();

    enumOption GetID() const { return m_pDefinition ? m_pDefinition->eOption : enumOption{}; }
    const CString& GetOptionValue() const { return m_Value; }  ///< the text, whatever the type
    int GetOptionIndex() const { return m_nIndex; }
    /// The mark of the store's walks: an item whose mark is cleared is met again.
    void SetFlag(bool flag);
    bool GetFlag() const { return m_bFlag; }

    bool IsBoolean() const { return m_pDefinition && m_pDefinition->IsBoolean(); }
    bool IsTrillian() const { return m_pDefinition && m_pDefinition->IsTrillian(); }
    bool IsFlag() const { return IsBoolean() || IsTrillian(); }
    bool IsString() const { return m_pDefinition && m_pDefinition->IsString(); }
    bool IsCommand() const { return m_pDefinition && m_pDefinition->IsCommand(); }
    int GetNrTabulators() const { return m_pDefinition ? m_pDefinition->nTabulators : -1; }
    void GetOptionName(CString& name) const;         ///< the long name
    void GetOptionDescription(CString& text) const;  ///< with its tabulators and line breaks

    /// Replaces the text; the numbers of an integer list are added to those already there.
    void SetOptionValue(const CString& value);

    // The typed getters throw an XException when the option is not of their type.
    const CString& GetOptionCommand() const;
    const CString& GetOptionString() const;
    bool GetOptionBoolean() const;          ///< whether the text is "true" in any case
    enumFlags GetOptionTrillian() const;    ///< eFlagAuto for every text but "true" and "false"
    const XSetInt* GetOptionIList() const;  ///< belongs to the item
    void SetOptionIList(XSetInt& list);     ///< takes a copy in place of the list so far; the text stays

private:
    friend class veltrane::detail::XOptionItems;

    XOptionDefinition* m_pDefinition;  // a row of the table
    CString m_Value;
    std::unique_ptr<XSetInt> m_pIList;  // integer-list options only
    int m_nIndex;
    bool m_bFlag = false;
    veltrane::detail::XOptionWalk* m_pWalk = nullptr;  // of the store that holds the item; a copy is in none
};
