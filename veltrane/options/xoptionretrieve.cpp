// Asking the configuration sources for the value of an option.
#include "veltrane/options/detail/xoptionexpansion.h"
#include "veltrane/options/detail/xoptionlocation.h"
#include "veltrane/options/xoption.h"
#include "veltrane/platform/sources/environment.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

constexpr XFailure<const wchar_t*> RETRIEVAL{L"Error retrieving option <%s>!",
                                             L"An unknown exception occured while retrieving option <%s>!"};

}  // namespace

// Asks the basic file, then the user file, into the same result.
template <class Ask>
bool XOption::AskConfigurations(Ask ask) {
    bool isFound = false;
    for (const XConfiguration* reader : {m_pBasicConfiguration.get(), m_pUserConfiguration.get()}) {
        if (reader && ask(*reader)) isFound = true;
    }
    return isFound;
}

bool XOption::GetKeyValue(CString& value, const CString& section, const CString& key, bool assignEmpty) {
    // Only the weakest source may answer with nothing: a stronger one must not wipe out what it found.
    bool isFound = AskConfigurations([&](const XConfiguration& reader) {
        return reader.GetKeyValue(value, section, key, assignEmpty && &reader == m_pBasicConfiguration.get());
    });
    if (m_pRegistry && m_pRegistry->GetValue(value, section, key)) isFound = true;
    return isFound;
}

bool XOption::GetKeyValueSet(XMapInt2CString& values, const CString& section, const CString& pattern) {
    return AskConfigurations(
        [&](const XConfiguration& reader) { return reader.GetKeyValueSet(values, section, pattern); });
}

bool XOption::GetKeyIndexSet(XSetInt& indexes, const CString& section, const CString& pattern) {
    return AskConfigurations(
        [&](const XConfiguration& reader) { return reader.GetKeyIndexSet(indexes, section, pattern); });
}

bool XOption::GetOptionNameSet(XMapInt2CString& names, const CString& sectionFormat) {
    return AskConfigurations(
        [&](const XConfiguration& reader) { return reader.GetOptionNameSet(names, sectionFormat); });
}

CString XOption::RetrieveSectionName(enumCfgSection section) {
    const XConfigSection* const row = FindConfigSection(section);
    if (!row) return {};
    const CString parent = RetrieveSectionName(row->eParent);
    CString own = row->szName;
    if (own.Left(2) == L"--") {
        const CString option = own.Mid(2);
        RetrieveOption(option);
        own = GetOptionString(option, -1);
    }
    return parent.IsEmpty() || own.IsEmpty() ? own : FormatText(L"%s\\%s", parent, own);
}

void XOption::RetrieveOption(const CString& name) {
    RetrieveOption(GetOptionDefinition(name));
}

void XOption::RetrieveOption(XOptionDefinition* definition) {
    if (!definition) return;
    const wchar_t* const name = definition->szLongName;
    WithReason(
        Here(L"XOption::RetrieveOption"), RETRIEVAL,
        [&] {
            if (GetFirstOptionItem(definition) || definition->eSection == eSectionNone) return;
            const CString section = RetrieveSectionName(definition->eSection);
            if (definition->IsSingle()) {
                RetrieveSingle(*definition, section);
            } else {
                RetrieveMultiple(*definition, section);
            }
        },
        name);
}

void XOption::RetrieveSingle(XOptionDefinition& definition, const CString& section) {
    CString value;
    RetrieveOptionInternal(value, section, definition.szLongName);
    if (!value.IsEmpty()) {
        InsertOptionItem(&definition, value, -1);
    } else if (definition.IsMandatory()) {
        throw MakeError(Here(L"XOption::RetrieveOption"), L"The option <%s> must exist but could not be found!",
                        definition.szLongName);
    }
}

void XOption::RetrieveMultiple(XOptionDefinition& definition, const CString& section) {
    XMapInt2CString values;
    if (!RetrieveOptionSetInternal(values, section, definition.szLongName)) return;
    CString value;
    for (int index = values.GetFirst(value); index != -1; index = values.GetNext(value)) {
        if (value.IsEmpty()) continue;
        ExpandOptionValue(value, section);
        InsertOptionItem(&definition, value, index);
    }
}

// A key's own text; a ROOT option that no file and no registry knows is taken from the environment, then from the
// store.
CString XOption::SourceValue(const CString& section, const CString& key) {
    CString value;
    GetKeyValue(value, section, key, false);
    if (!value.IsEmpty() || section != FindConfigSection(eSectionRoot)->szName) return value;
    GetEnvironmentText(value, key);
    return value.IsEmpty() ? GetOptionString(key, -1) : value;
}

XOptionExpansion XOption::NewExpansion() {
    return XOptionExpansion{[this](const CString& section, const CString& key) { return SourceValue(section, key); }};
}

void XOption::RetrieveOptionInternal(CString& value, const CString& section, const CString& key) {
    NewExpansion().Retrieve(value, section, key);
}

bool XOption::RetrieveOptionSetInternal(XMapInt2CString& values, const CString& section, const CString& key) {
    return GetKeyValueSet(values, section, key);
}

void XOption::ExpandOptionValue(CString& value, const CString& section) {
    NewExpansion().Expand(value, section);
}
