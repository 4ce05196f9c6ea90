#include "provenance.h"

#include <algorithm>
#include <ranges>
#include <utility>

#include "foundation/xpath.h"
#include "options/xcommandline.h"
#include "platform/indexformat.h"

namespace {

bool IsFolderOfStartUp(const CString& name) {
    return name == L"metadata" || name == L"config" || name == L"changefile-root" || name == L"logging";
}

// What was typed for an option, the last word if it was typed more than once.
bool FindTyped(const CString& name, CString& typed) {
    bool isTyped = false;
    XCommandLine line;
    CString value;
    for (auto* option = line.GetFirst(value); option; option = line.GetNext(value)) {
        if (name != option->szLongName) continue;
        isTyped = true;
        typed = value;
    }
    return isTyped;
}

CString SectionName(XOption& options, enumCfgSection section) {
    const XConfigSection* const row = FindConfigSection(section);
    if (!row) return {};
    CString own = row->szName;
    if (own.Left(2) == L"--") own = options.GetOptionString(own, -1);
    const CString parent = SectionName(options, row->eParent);
    return parent.IsEmpty() || own.IsEmpty() ? own : BuildFileName(parent, own);
}

// The registry is asked for a section below the key of the tool.
bool IsSection(const SourceEvent& answer, const CString& section) {
    if (answer.source == SourceEvent::Source::Environment) return true;
    if (answer.source == SourceEvent::Source::Registry) {
        return answer.section.Right(section.GetLength() + 1) == L"\\" + section;
    }
    return answer.section.CompareNoCase(section) == 0;
}

bool HasIndex(CString text, CString format, int index) {
    int found = 0;
    return MatchIndex(text.MakeLower(), format.MakeLower(), found) && found == index;
}

bool Answers(const SourceEvent& answer, const XOptionItem& item, const CString& name, const CString& section) {
    if (answer.value.IsEmpty()) return false;
    if (item.GetOptionIndex() < 0) return answer.key == name && IsSection(answer, section);
    if (section.Find(L"%d") >= 0) return answer.key == name && HasIndex(answer.section, section, item.GetOptionIndex());
    // A key without index got the next free one, so its value is what tells it.
    const bool isBare = answer.key.CompareNoCase(name) == 0 && answer.value == item.GetOptionValue();
    return IsSection(answer, section) && (isBare || HasIndex(answer.key, name + L"-%d", item.GetOptionIndex()));
}

}  // namespace

Provenance::Provenance()
    : m_Before(SetSourceTrace([this](const SourceEvent& event) {
          if (event.found) m_Answers.push_back(event);
      })) {}

Provenance::~Provenance() {
    SetSourceTrace(std::move(m_Before));
}

void Provenance::Settle(XOption& options) {
    m_BasicFile = BuildFileName(options.GetOptionString(L"metadata", -1), options.GetOptionString(L"exe-name", -1));
    m_BasicFile.Replace(L".exe", L"");
    m_BasicFile += L".ini";
    m_BasicFile.MakeLower();
    for (const auto* item = options.GetFirstOptionItem(L""); item; item = options.GetNextOptionItem(L"")) {
        if (!m_Origins.contains(item)) m_Origins.emplace(item, Find(options, *item));
    }
    m_nStep = m_Answers.size();
}

const Origin& Provenance::Of(const XOptionItem* item) const {
    static const Origin host{L"host"};
    const auto found = m_Origins.find(item);
    return found == m_Origins.end() ? host : found->second;
}

Origin Provenance::Find(XOption& options, const XOptionItem& item) const {
    CString name;
    item.GetOptionName(name);
    CString given;
    const bool isTyped = FindTyped(name, given);
    const SourceEvent* const answer = isTyped ? nullptr : AnswerFor(options, item, name);
    if (answer) given = answer->value;

    // A folder that is neither absolute nor as it was given was completed by start-up.
    const bool isCompleted = given != item.GetOptionValue() && !IsAbsolutePath(given) && given[0] != L'%';
    if (IsFolderOfStartUp(name) && isCompleted) return {L"start-up"};
    if (isTyped) return {L"command line"};
    if (!answer) return {L"host"};
    switch (answer->source) {
        case SourceEvent::Source::Environment:
            return {L"environment"};
        case SourceEvent::Source::Registry:
            return {L"registry", answer->file, answer->line, answer->section};
        case SourceEvent::Source::Profile:
            break;
    }
    return {answer->file == m_BasicFile ? L"basic file" : L"user file", answer->file, answer->line, answer->section};
}

// Of the answers of this step the last one won.
const SourceEvent* Provenance::AnswerFor(XOption& options, const XOptionItem& item, const CString& name) const {
    const CString section = SectionName(options, FindOptionDefinition(name)->eSection);
    for (std::size_t i = m_Answers.size(); i > m_nStep; --i) {
        if (Answers(m_Answers[i - 1], item, name, section)) return &m_Answers[i - 1];
    }
    return nullptr;
}

const SourceEvent* Provenance::AnswerBehind(const std::vector<CString>& texts) const {
    for (const SourceEvent& answer : m_Answers | std::views::reverse) {
        if (answer.line == 0) continue;
        const auto isBehind = [&](const CString& text) {
            return answer.key == text || answer.value.Find(L"%" + text + L"%") >= 0 ||
                   (answer.value.GetLength() > 1 && text.Right(answer.value.GetLength()) == answer.value);
        };
        if (std::ranges::any_of(texts, isBehind)) return &answer;
    }
    return nullptr;
}
