#include "veltrane/config/xconfiguration.h"

#include <algorithm>
#include <string_view>

#include "veltrane/foundation/xraise.h"
#include "veltrane/platform/sources/internal/linenumbers.h"
#include "veltrane/platform/sources/profile.h"
#include "veltrane/platform/text/internal/indexformat.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

constexpr XSource Here{L".\\xconfiguration"};

constexpr unsigned CAPACITY = XConfiguration::MAX_VALUE + 1;  // of an answer, terminators included
static_assert(XConfiguration::MAX_LIST == CAPACITY - 2);

/// Walks over the fields of a comma-separated text in one pass; an empty field ends it.
class FieldWalk {
public:
    explicit FieldWalk(const CString& text) : m_Text(text) {}

    bool Next(CString& field) {
        field.Empty();  // keeps its memory
        const std::wstring_view rest = m_Text.View().substr(std::min(m_At, m_Text.View().size()));
        const std::wstring_view next = rest.substr(0, rest.find(L','));
        field += next;
        m_At += next.size() + 1;
        return !next.empty();
    }

private:
    const CString& m_Text;
    std::size_t m_At = 0;
};

void RequirePattern(const wchar_t* method, XFormat<CString> message, const CString& section, const CString& pattern) {
    if (!pattern.IsEmpty()) return;
    XException error = MakeError(Here(method), message, section);
    AddReasonAt(error, Here(method), L"No pattern given which the keys should match!");
    throw error;
}

XException GivenTwice(const XSite& site, const CString& pattern, int index) {
    return About({.option = pattern, .index = index},
                 MakeError(site, L"Multiple options <%s> for index <%d>!", pattern, index));
}

CString KeyFormat(const CString& pattern) {
    return pattern + L"-%d";
}

}  // namespace

struct XConfiguration::Answer {
    unsigned count;
    CString text;
};

/// Names that may belong to a family, and the form they have then, both in lower case.
struct XConfiguration::Family {
    CString names;
    CString format;
    bool isOfSections;

    /// Calls visit(name, index) for each name of the family, next() for the index of a bare name.
    template <class NextIndex, class Visit>
    void ForEach(NextIndex&& next, Visit&& visit) {
        names.MakeLower();
        format.MakeLower();
        FieldWalk walk{names};
        for (CString name; walk.Next(name);) {
            std::optional<int> index;
            if (Holds(name, index)) visit(name, index ? *index : next());
        }
    }

    /// Whether a name in lower case belongs to the family. @param index  none for a bare key
    bool Holds(const CString& name, std::optional<int>& index) const {
        int number = 0;
        const bool isIndexed = MatchIndex(name, format, number);
        index = isIndexed ? std::optional{number} : std::nullopt;
        return isIndexed || (!isOfSections && format.Find(name) == 0);
    }
};

XConfiguration::XConfiguration(const CString& fileName) : m_FileName(fileName) {}

XConfiguration::~XConfiguration() = default;

bool XConfiguration::GetKeyValue(CString& value, const CString& section, const CString& key, bool assignEmpty,
                                 SourcePlace* place) const {
    int line = 0;
    Answer answer = Ask(section, key, place ? &line : nullptr);
    if (answer.count == 0 && !assignEmpty) return false;
    if (place) *place = {m_FileName, line, section, key, answer.text};
    value = std::move(answer.text);
    return true;
}

bool XConfiguration::GetKeyIndexSet(XSetInt& indexes, const CString& section, const CString& pattern) const {
    constexpr auto method = L"XConfiguration::GetKeyIndexSet";
    RequirePattern(method, L"Error getting a set of key indexes from config section <%s>!", section, pattern);
    FindFamily(section, pattern)
        .ForEach([&] { return Successor(indexes.GetMax()); },
                 [&](const CString&, int index) {
                     if (indexes.Find(index, XSetInt::Comp) >= 0) throw GivenTwice(Here(method), pattern, index);
                     indexes.Insert(index);
                 });
    return !indexes.IsEmpty();
}

bool XConfiguration::GetKeyValueSet(XMapInt2CString& values, const CString& section, const CString& pattern,
                                    std::vector<IndexedPlace>* places) const {
    constexpr auto method = L"XConfiguration::GetKeyValueSet";
    RequirePattern(method, L"Error getting a set of key from config section <%s>!", section, pattern);
    Family family = FindFamily(section, pattern);
    family.ForEach([&] { return Successor(values.GetMaxKey()); },
                   [&](const CString& name, int index) {
                       const bool isTwice = !values.Get(index).IsEmpty();
                       const CString& inSection = family.isOfSections ? name : section;
                       const CString& key = family.isOfSections ? pattern : name;
                       int line = 0;
                       CString text;
                       if (places || !isTwice) text = Ask(inSection, key, places ? &line : nullptr).text;
                       if (places && (isTwice || !text.IsEmpty())) {
                           places->push_back({index, {m_FileName, line, inSection, key, text}});
                       }
                       if (isTwice) throw GivenTwice(Here(method), pattern, index);
                       if (!text.IsEmpty()) values.Insert(index, text);
                   });
    return values.Size() > 0;
}

bool XConfiguration::IsFamilyKey(const CString& key, const CString& pattern, std::optional<int>& index) {
    Family family{{}, KeyFormat(pattern), /*isOfSections*/ false};
    family.format.MakeLower();
    return !key.IsEmpty() && family.Holds(CString{key}.MakeLower(), index);
}

bool XConfiguration::GetOptionNameSet(XMapInt2CString& names, const CString& sectionFormat) const {
    Family family{Ask({}, {}).text, sectionFormat, /*isOfSections*/ true};
    family.ForEach([] { return 0; }, [&](const CString& name, int index) { names.Insert(index, Ask(name, {}).text); });
    return true;
}

/// A value or, where section or key is empty, a list of names.
XConfiguration::Answer XConfiguration::Ask(const CString& section, const CString& key, int* line) const {
    wchar_t buffer[CAPACITY];  // filled as far as it is read: every answer ends with a NUL
    const wchar_t* const askedSection = section.IsEmpty() ? nullptr : section.GetString();
    const wchar_t* const askedKey = key.IsEmpty() ? nullptr : key.GetString();
    const wchar_t* const file = m_FileName.GetString();
    const unsigned count = line ? GetProfileStringAndLine(askedSection, askedKey, L"", buffer, CAPACITY, file, *line)
                                : GetPrivateProfileStringW(askedSection, askedKey, L"", buffer, CAPACITY, file);
    if (askedSection && askedKey) return {count, std::wstring_view{buffer, count}};
    // The NUL that ends a list stays, so the text ends with its last name.
    if (count > 0) std::replace(buffer, buffer + count - 1, L'\0', L',');
    return {count, buffer};
}

XConfiguration::Family XConfiguration::FindFamily(const CString& section, const CString& pattern) const {
    const bool isOfSections = section.IsEmpty() || section.Find(L"%d") >= 0;
    if (isOfSections) return {Ask({}, {}).text, section, isOfSections};
    return {Ask(section, {}).text, KeyFormat(pattern), isOfSections};
}
