#include "veltrane/options/xoption.h"

#include "veltrane/options/detail/optionlookup.h"
#include "veltrane/options/detail/xoptionlocation.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

// Without a definition every item counts.
bool IsOf(const XOptionItem& item, const XOptionDefinition* definition) {
    return !definition || item.GetID() == definition->eOption;
}

}  // namespace

XOption::XOption() : m_SingleItems(std::make_unique<XOptionItem*[]>(OPTION_COUNT)) {}

XOption::~XOption() {
    try {
        m_OptionItems.Clear();
        m_pRegistry.reset();
        m_pUserConfiguration.reset();
        m_pBasicConfiguration.reset();
    } catch (...) {  // NOLINT(bugprone-empty-catch): nobody is left to be told
    }
}

XOptionDefinition* XOption::GetOptionDefinition(const CString& name) {
    if (name.IsEmpty()) return nullptr;
    XOptionDefinition* const definition = FindOptionDefinition(name);
    if (!definition) {
        throw MakeError(Here(L"XOption::GetOptionDefinition"), L"The option <%s> is not known by the system!", name);
    }
    return definition;
}

XOptionItem* XOption::InsertOptionItem(const CString& name, const CString& value, int index) {
    return InsertOptionItem(GetOptionDefinition(name), value, index);
}

XOptionItem* XOption::InsertOptionItem(XOptionDefinition* definition, const CString& value, int index) {
    if (!definition) return nullptr;
    if (definition->IsSingle()) {
        if (XOptionItem* const item = GetFirstOptionItem(definition)) {
            item->SetOptionValue(value);
            return item;
        }
    }
    auto item = std::make_unique<XOptionItem>(definition, value, index);
    m_OptionItems.Insert(item.get());
    if (definition->IsSingle()) SingleItem(*definition) = item.get();
    return item.release();  // the set owns it now
}

XOptionItem* XOption::GetFirstOptionItem(const CString& name) {
    return GetFirstOptionItem(GetOptionDefinition(name));
}

XOptionItem* XOption::GetNextOptionItem(const CString& name) {
    return GetNextOptionItem(GetOptionDefinition(name));
}

XOptionItem* XOption::GetFirstOptionItem(XOptionDefinition* definition) {
    if (definition && definition->IsSingle()) {
        XOptionItem* const item = SingleItem(*definition);
        if (item) item->SetFlag(true);
        return item;
    }
    for (int i = 0; i < m_OptionItems.Size(); ++i) {
        XOptionItem* const item = m_OptionItems.GetAt(i);
        if (IsOf(*item, definition)) item->SetFlag(false);
    }
    return GetNextOptionItem(definition);
}

XOptionItem* XOption::GetNextOptionItem(XOptionDefinition* definition) {
    for (int i = 0; i < m_OptionItems.Size(); ++i) {
        XOptionItem* const item = m_OptionItems.GetAt(i);
        if (!IsOf(*item, definition) || item->GetFlag()) continue;
        item->SetFlag(true);
        return item;
    }
    return nullptr;
}

XOptionItem* XOption::GetOptionItem(const CString& name, int index) {
    return GetOptionItem(GetOptionDefinition(name), index);
}

XOptionItem* XOption::GetOptionItem(XOptionDefinition* definition, int index) {
    if (!definition) return nullptr;
    if (!definition->IsSingle() && index < 0) {
        XException error =
            MakeError(Here(L"XOption::GetOptionItem"),
                      L"Use either 'GetFirstOption()' and/or 'GetNextOption()' or specify an index value!");
        AddReasonAt(error, Here(L"XOption::GetOptionItem"),
                    L"Cannot get value for option <%s>, because it is a multiple option and you haven't specified an "
                    L"index!",
                    definition->szLongName);
        throw error;
    }
    const auto isWanted = [index](const XOptionItem& item) { return index < 0 || item.GetOptionIndex() == index; };
    if (definition->IsSingle()) {
        XOptionItem* const item = SingleItem(*definition);
        if (item && isWanted(*item)) return item;
    } else {
        for (int i = 0; i < m_OptionItems.Size(); ++i) {
            XOptionItem* const item = m_OptionItems.GetAt(i);
            if (IsOf(*item, definition) && isWanted(*item)) return item;
        }
    }
    if (definition->IsMandatory()) {
        throw MakeError(Here(L"XOption::GetOptionItem"),
                        L"The mandatory option <%s> could not be found in the program option registry!",
                        definition->szLongName);
    }
    return nullptr;
}

void XOption::DeleteOption(const CString& name) {
    XOptionDefinition* const definition = GetOptionDefinition(name);
    if (!definition) return;
    if (definition->IsSingle()) SingleItem(*definition) = nullptr;
    for (int i = 0; i < m_OptionItems.Size();) {
        if (IsOf(*m_OptionItems.GetAt(i), definition)) {
            m_OptionItems.DeleteObj(i);
        } else {
            ++i;
        }
    }
}

void XOption::ReplaceTableName(CString& name, int version, bool keepCase) {
    m_TableNameRules.ReplaceName(name, version, keepCase);
}

void XOption::ReplaceColumnsName(CString& name, int version, bool keepCase) {
    m_ColumnNameRules.ReplaceName(name, version, keepCase);
}

// Where the item of a single option is kept, so that nobody has to look for it among all items.
XOptionItem*& XOption::SingleItem(const XOptionDefinition& definition) {
    const int row = OptionRow(definition);
    if (row < 0) {
        throw MakeError(Here(L"XOption::GetOptionDefinition"), L"The option <%s> is not known by the system!",
                        definition.szLongName);
    }
    return m_SingleItems[static_cast<std::size_t>(row)];
}
