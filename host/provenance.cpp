#include "provenance.h"

#include <algorithm>
#include <utility>

#include "veltrane/foundation/xpath.h"
#include "veltrane/options/xcommandline.h"
#include "veltrane/platform/text/indexformat.h"

using namespace veltrane;

namespace {

bool IsFolderOfStartUp(const CString& name) {
    return name == L"metadata" || name == L"config" || name == L"changefile-root" || name == L"logging";
}

// What was typed for each option, the last word of those typed more than once.
std::map<CString, CString> TypedValues() {
    std::map<CString, CString> values;
    XCommandLine line;
    CString value;
    for (auto* option = line.GetFirst(value); option; option = line.GetNext(value)) values[option->szLongName] = value;
    return values;
}

CString SectionName(XOption& options, enumCfgSection section) {
    const XConfigSection* const row = FindConfigSection(section);
    if (!row) return {};
    CString own = row->szName;
    if (own.Left(2) == L"--") own = options.GetOptionString(own, -1);
    const CString parent = SectionName(options, row->eParent);
    return parent.IsEmpty() || own.IsEmpty() ? own : parent + L"\\" + own;
}

// The registry is asked for a section below the key of the tool, the environment for options of ROOT only.
bool IsSection(const SourceEvent& answer, const CString& section) {
    switch (answer.source) {
        case SourceEvent::Source::Environment:
            return section == FindConfigSection(eSectionRoot)->szName;
        case SourceEvent::Source::Registry:
            return answer.section.Right(section.GetLength() + 1) == L"\\" + section;
        case SourceEvent::Source::Profile:
            break;
    }
    return answer.section.CompareNoCase(section) == 0;
}

bool HasIndex(CString text, CString format, int index) {
    int found = 0;
    return MatchIndex(text.MakeLower(), format.MakeLower(), found) && found == index;
}

// Whether an answer is the value of an item by the section and the key that were asked for.
bool IsNamed(const SourceEvent& answer, const XOptionItem& item, const CString& name, const CString& section) {
    if (answer.value.IsEmpty()) return false;
    if (item.GetOptionIndex() == -1) return answer.key == name && IsSection(answer, section);
    if (section.Find(L"%d") >= 0) return answer.key == name && HasIndex(answer.section, section, item.GetOptionIndex());
    return IsSection(answer, section) && HasIndex(answer.key, name + L"-%d", item.GetOptionIndex());
}

// Whether an answer is that of a key without index: the name of a family or a beginning of it.
bool IsBare(const SourceEvent& answer, const CString& name, const CString& section) {
    return !answer.key.IsEmpty() && (name + L"-").Find(answer.key) == 0 && IsSection(answer, section);
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
    if (m_Origins.empty()) m_Typed = TypedValues();
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

Origin Provenance::Find(XOption& options, const XOptionItem& item) {
    CString name;
    item.GetOptionName(name);
    const auto typed = m_Typed.find(name);
    const SourceEvent* const answer = typed == m_Typed.end() ? AnswerFor(options, item, name) : nullptr;
    const CString given = typed != m_Typed.end() ? typed->second : answer ? answer->value : CString{};

    if (IsFolderOfStartUp(name) && IsCompleted(options, name, given, item.GetOptionValue())) return {L"start-up"};
    if (typed != m_Typed.end()) return {L"command line"};
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

// Whether start-up has put a folder below its base, as it does when what was given is not absolute.
bool Provenance::IsCompleted(XOption& options, const CString& name, const CString& given, const CString& value) const {
    const CString base = options.GetOptionString(name == L"metadata" ? L"exe-path" : L"data", -1);
    const CString below = BuildFileName(base, L"");
    if (base.IsEmpty() || value.Left(below.GetLength()) != below || IsAbsolutePath(given)) return false;
    if (given[0] != L'%') return true;
    const CString reference = given.Mid(1, given.Find(L'%', 1) - 1);  // what it leads to decides
    const auto led = std::find_if(m_Answers.rbegin(), m_Answers.rend(),
                                  [&](const SourceEvent& answer) { return answer.key == reference; });
    return led != m_Answers.rend() && !IsAbsolutePath(led->value);
}

// Of the answers of this step the last one won.
const SourceEvent* Provenance::AnswerFor(XOption& options, const XOptionItem& item, const CString& name) {
    const enumCfgSection row = FindOptionDefinition(name)->eSection;
    if (row == eSectionNone) return nullptr;
    const CString section = SectionName(options, row);
    for (std::size_t i = m_Answers.size(); i > m_nStep; --i) {
        if (IsNamed(m_Answers[i - 1], item, name, section)) return &m_Answers[i - 1];
    }
    return item.GetOptionIndex() == -1 ? nullptr : ClaimBare(item.GetOptionValue(), name, section);
}

// Keys without index got the next free ones, one after the other. Their values tell them, as far as references leave
// them recognisable.
const SourceEvent* Provenance::ClaimBare(const CString& value, const CString& name, const CString& section) {
    const auto claim = [&](auto isValue) -> const SourceEvent* {
        for (std::size_t i = m_nStep; i < m_Answers.size(); ++i) {
            const SourceEvent& answer = m_Answers[i];
            if (!IsBare(answer, name, section) || !isValue(answer.value) || !m_Claimed.insert(i).second) continue;
            return &answer;
        }
        return nullptr;
    };
    const SourceEvent* const same = claim([&](const CString& found) { return found == value; });
    return same ? same : claim([](const CString& found) { return found.Find(L'%') >= 0; });
}

const SourceEvent* Provenance::AnswerBehind(const std::vector<CString>& texts) const {
    const auto isBehindAny = [&](const SourceEvent& answer) {
        const auto isBehind = [&](const CString& text) {
            return answer.key == text || answer.value.Find(L"%" + text + L"%") >= 0 ||
                   (answer.value.GetLength() > 1 && text.Right(answer.value.GetLength()) == answer.value);
        };
        return answer.line > 0 && std::ranges::any_of(texts, isBehind);
    };
    const auto newest = std::find_if(m_Answers.rbegin(), m_Answers.rend(), isBehindAny);
    return newest == m_Answers.rend() ? nullptr : &*newest;
}
