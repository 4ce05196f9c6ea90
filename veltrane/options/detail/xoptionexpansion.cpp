#include "veltrane/options/detail/xoptionexpansion.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "veltrane/options/detail/xoptionlocation.h"
#include "veltrane/options/xoptiondefinition.h"

namespace veltrane::detail {

namespace {

constexpr wchar_t MARK = L'%';

void CheckLength(std::int64_t length) {
    if (length <= XOptionExpansion::MAX_LENGTH) return;
    throw MakeError(Here(L"XOption::ExpandOptionValue"),
                    L"The value gets longer than %d characters when its references are replaced!",
                    XOptionExpansion::MAX_LENGTH);
}

}  // namespace

void XOptionExpansion::Retrieve(CString& value, const CString& section, const CString& key) {
    value = KeyText(section, key);
    Expand(value, section, key);
}

void XOptionExpansion::Expand(CString& value, const CString& section, const CString& key) {
    if (value.Find(MARK) < 0) return;
    Enter({section, key});
    Expand(value, section);
    m_Open.pop_back();
}

// A replacement is expanded itself, so it holds at most one mark, and that one opens the next reference. Reading on
// from there gives what starting again at the front of the new value would give, in linear time.
void XOptionExpansion::Expand(CString& value, const CString& section) {
    CString done;  // holds no mark
    CString name;  // the text after an open mark
    bool isOpen = false;
    bool isReplaced = false;
    int begin = 0;
    for (int mark = value.Find(MARK); mark >= 0; mark = value.Find(MARK, begin)) {
        (isOpen ? name : done) += value.Mid(begin, mark - begin);
        begin = mark + 1;
        isReplaced |= isOpen;
        if (!std::exchange(isOpen, true)) continue;
        const int held = done.GetLength();
        m_nHeld += held;  // nested values share one limit: each becomes part of the one around it
        const std::size_t step = m_Record ? m_Record->Begin(OptionStep::Kind::Reference, name, m_Nesting) : 0;
        const CString& replacement = Replacement(section, name);
        m_nHeld -= held;
        const int next = replacement.Find(MARK);
        isOpen = next >= 0;
        done += isOpen ? replacement.Left(next) : replacement;
        name = isOpen ? replacement.Mid(next + 1) : CString{};
        CheckLength(m_nHeld + done.GetLength() + name.GetLength());
        if (!m_Record) continue;
        const CString front = isOpen ? CString{MARK, 1} + name : CString{};
        const int length = done.GetLength() + front.GetLength() + value.GetLength() - begin;
        m_Record->End(step, length, [&] { return done + front + value.Mid(begin); });
    }
    if (isOpen) done += CString{MARK, 1} + name;
    done += value.Mid(begin);
    if (isReplaced) CheckLength(done.GetLength());
    value = done;
}

// The text that a reference leads to, looked up once.
const CString& XOptionExpansion::Replacement(const CString& section, const CString& name) {
    const auto known = m_Known.find({section, name});
    if (known != m_Known.end()) return known->second;
    if (m_Nesting >= MAX_NESTING) {
        throw MakeError(Here(L"XOption::ExpandOptionValue"), L"The reference <%s> is nested deeper than %d levels: %s!",
                        name, MAX_NESTING, OpenChain(m_Open.begin()));
    }
    ++m_Nesting;
    CString text = LookUp(section, name);
    --m_Nesting;
    return m_Known.emplace(Key{section, name}, std::move(text)).first->second;
}

CString XOptionExpansion::LookUp(const CString& section, const CString& name) {
    const CString root = FindConfigSection(eSectionRoot)->szName;
    CString text;
    try {
        Retrieve(text, section, name);
        if (text.IsEmpty() && section != root) Retrieve(text, root, name);
        if (text.IsEmpty() && !section.IsEmpty()) Retrieve(text, {}, name);
    } catch (XException& error) {
        error.AddSubject({.reference = name});
        throw;
    }
    return text;
}

void XOptionExpansion::Enter(const Key& key) {
    const auto same = std::ranges::find(m_Open, key);
    if (same != m_Open.end()) {
        throw MakeError(Here(L"XOption::ExpandOptionValue"), L"The reference <%s> leads back to itself: %s -> <%s>!",
                        key.second, OpenChain(same), key.second);
    }
    m_Open.push_back(key);
}

// The names of the open references from one on, as a chain.
CString XOptionExpansion::OpenChain(std::vector<Key>::const_iterator from) const {
    CString chain;
    for (; from != m_Open.end(); ++from) {
        chain += FormatText(L"%s<%s>", chain.IsEmpty() ? L"" : L" -> ", from->second);
    }
    return chain;
}

}  // namespace veltrane::detail
