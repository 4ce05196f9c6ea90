#include "veltrane/options/xoption.h"

#include "veltrane/options/detail/xoptiongetter.h"
#include "veltrane/options/detail/xoptionretrieval.h"

using namespace veltrane;
using namespace veltrane::detail;

XOption::XOption()
    : m_pItems(std::make_unique<XOptionItems>()),
      m_pSources(std::make_unique<XOptionSources>()),
      m_pOrigins(std::make_unique<XOptionOrigins>()),
      m_pRetrieval(std::make_unique<XOptionRetrieval>(*m_pItems, *m_pSources, *m_pOrigins)) {
    OptionRegistry::StoreMade();
}

XOption::~XOption() {
    try {
        m_pItems->Clear();
        m_pSources->registry.reset();
        m_pSources->userFile.reset();
        m_pSources->basicFile.reset();
    } catch (...) {  // NOLINT(bugprone-empty-catch): nobody is left to be told
    }
    OptionRegistry::StoreGone();
}

XOptionDefinition* XOption::GetOptionDefinition(const CString& name) {
    return KnownOption(name);
}

void XOption::RetrieveOption(const CString& name) {
    RetrieveOption(GetOptionDefinition(name));
}

void XOption::RetrieveOption(XOptionDefinition* definition) {
    if (definition) m_pRetrieval->Retrieve(*definition);
}

XOptionItem* XOption::InsertOptionItem(const CString& name, const CString& value, int index) {
    XOptionDefinition* const definition = GetOptionDefinition(name);
    if (!definition) return nullptr;
    return m_pRetrieval->Insert(*definition, value, index, OptionLayer::Host);
}

XOptionItem* XOption::GetFirstOptionItem(const CString& name) {
    return m_pItems->GetFirst(GetOptionDefinition(name));
}

XOptionItem* XOption::GetNextOptionItem(const CString& name) {
    return m_pItems->GetNext(GetOptionDefinition(name));
}

XOptionItem* XOption::GetOptionItem(const CString& name, int index) {
    const XOptionDefinition* const definition = GetOptionDefinition(name);
    return definition ? m_pItems->Get(*definition, index) : nullptr;
}

void XOption::DeleteOption(const CString& name) {
    const XOptionDefinition* const definition = GetOptionDefinition(name);
    if (!definition) return;
    for (const XOptionItem* item : m_pItems->ItemsOf(definition)) m_pOrigins->Forget(*item);
    m_pItems->Delete(*definition);
}

std::span<XOptionItem* const> XOption::GetOptionItems(const XOptionDefinition& option) const {
    return m_pItems->ItemsOf(&option);
}

XOptionItem* XOption::FindOptionItem(const XOptionDefinition& option, int index) const {
    return m_pItems->Find(option, index);
}

void XOption::ReplaceTableName(CString& name, int version, bool keepCase) {
    m_TableNameRules.ReplaceName(name, version, keepCase);
}

void XOption::ReplaceColumnsName(CString& name, int version, bool keepCase) {
    m_ColumnNameRules.ReplaceName(name, version, keepCase);
}
