#include "veltrane/options/detail/xoptionretrieval.h"

#include <exception>
#include <optional>
#include <utility>

#include "veltrane/options/detail/optionregistry.h"
#include "veltrane/options/detail/startupfolders.h"
#include "veltrane/options/detail/xoptiongetter.h"

namespace veltrane::detail {

namespace {

constexpr XFailure<const wchar_t*> RETRIEVAL{L"Error retrieving option <%s>!",
                                             L"An unknown exception occured while retrieving option <%s>!"};

}  // namespace

/// Replaces references by what the sources hold. @param kept  receives the answers; may be null
class XOptionRetrieval::Expansion final : public XOptionExpansion {
public:
    Expansion(XOptionRetrieval& retrieval, XKeptOrigin* kept) : m_Retrieval(retrieval), m_Kept(kept) {}

private:
    CString KeyText(const CString& section, const CString& key) override {
        return m_Retrieval.SourceValue(section, key, m_Kept);
    }

    XOptionRetrieval& m_Retrieval;
    XKeptOrigin* m_Kept;
};

XOptionRetrieval::XOptionRetrieval(XOptionItems& items, XOptionSources& sources, XOptionOrigins& origins)
    : m_Items(items), m_Sources(sources), m_Origins(origins) {}

void XOptionRetrieval::Retrieve(XOptionDefinition& definition) {
    const wchar_t* const name = definition.szLongName;
    WithReason(
        Here(L"XOption::RetrieveOption"), RETRIEVAL,
        [&] {
            if (m_Items.GetFirst(&definition) || definition.eSection == eSectionNone) return;
            const CString section = SectionName(definition.eSection, /*isStoring*/ true);
            try {
                if (definition.IsSingle()) {
                    RetrieveSingle(definition, section);
                } else {
                    RetrieveMultiple(definition, section);
                }
            } catch (XException& error) {
                AddSubject(error, definition, section);
                throw;
            }
        },
        name);
}

// The option and the places that were asked for it.
void XOptionRetrieval::AddSubject(XException& error, const XOptionDefinition& definition, const CString& section) {
    ErrorSubject subject{.option = definition.szLongName};
    if (definition.IsSingle()) {
        subject.places = m_Sources.AskEach(section, definition.szLongName, /*withFiles*/ true);
    } else if (error.GetSubject() && error.GetSubject()->reference.IsEmpty()) {  // an index is given twice
        const XOptionFamily family = m_Sources.ReadFamily(section, definition.szLongName, /*withPlaces*/ true);
        const auto [first, last] = family.places.equal_range(error.GetSubject()->index);
        for (auto place = first; place != last; ++place) subject.places.push_back({place->second, true});
    }
    error.AddSubject(subject);
}

XOptionItem* XOptionRetrieval::Insert(XOptionDefinition& definition, const CString& value, int index,
                                      XKeptOrigin origin) {
    XOptionItem* const item = m_Items.Insert(definition, value, index);
    m_Origins.Note(*item, std::move(origin));
    return item;
}

XOptionItem* XOptionRetrieval::Insert(XOptionDefinition& definition, const CString& value, int index,
                                      OptionLayer layer) {
    return Insert(definition, value, index, XKeptOrigin{{{{}, 0, {}, {}, value}, layer}});
}

CString XOptionRetrieval::SectionName(enumCfgSection section, bool isStoring) {
    const XConfigSection* const row = FindConfigSection(section);
    if (!row) return {};
    const CString parent = SectionName(row->eParent, isStoring);
    CString own = row->szName;
    if (own.Left(2) == L"--") {
        const CString option = own.Mid(2);
        XOptionDefinition* const definition = KnownOption(option);
        if (isStoring) Retrieve(*definition);
        own = isStoring || m_Items.Find(*definition, -1)
                  ? OptionText(m_Items, option, -1)
                  : Value(SectionName(definition->eSection, isStoring), option, nullptr);
    }
    return parent.IsEmpty() || own.IsEmpty() ? own : FormatText(L"%s\\%s", parent, own);
}

void XOptionRetrieval::RetrieveSingle(XOptionDefinition& definition, const CString& section) {
    std::optional<XKeptOrigin> kept;
    if (m_Origins.AreKept()) kept.emplace();
    const CString value = Value(section, definition.szLongName, kept ? &*kept : nullptr);
    if (!value.IsEmpty()) {
        Insert(definition, value, -1, kept ? std::move(*kept) : XKeptOrigin{});
    } else if (definition.IsMandatory()) {
        throw MakeError(Here(L"XOption::RetrieveOption"), L"The option <%s> must exist but could not be found!",
                        definition.szLongName);
    }
}

void XOptionRetrieval::RetrieveMultiple(XOptionDefinition& definition, const CString& section) {
    const bool areKept = m_Origins.AreKept();
    XOptionFamily family = m_Sources.ReadFamily(section, definition.szLongName, areKept);
    if (family.fault) std::rethrow_exception(family.fault);
    CString value;
    for (int index = family.values.GetFirst(value); index != -1; index = family.values.GetNext(value)) {
        if (value.IsEmpty()) continue;
        XKeptOrigin kept;
        if (areKept) kept.origin = std::move(family.places.find(index)->second);
        Expand(value, section, areKept ? &kept : nullptr);
        Insert(definition, value, index, std::move(kept));
    }
}

CString XOptionRetrieval::Value(const CString& section, const CString& key, XKeptOrigin* kept) {
    CString value;
    if (kept) kept->section = section;
    Expansion{*this, kept}.Retrieve(value, section, key);
    return value;
}

void XOptionRetrieval::Expand(CString& value, const CString& section, XKeptOrigin* kept) {
    if (kept) {
        kept->section = section;
        if (kept->answers.empty()) kept->answers.push_back({.isWhole = true});
    }
    Expansion{*this, kept}.Expand(value, section);
}

bool XOptionRetrieval::GivesEarly(CString text) {
    struct Closed {  // closes both files during the question
        XOptionSources& sources;
        bool& isEarly;
        std::unique_ptr<XConfiguration> userFile = std::move(sources.userFile);
        std::unique_ptr<XConfiguration> basicFile = std::move(sources.basicFile);
        ~Closed() {
            isEarly = false;
            sources.userFile = std::move(userFile);
            sources.basicFile = std::move(basicFile);
        }
    } closed{m_Sources, m_bEarly};
    m_bEarly = true;
    try {
        Expand(text, FindConfigSection(eSectionRoot)->szName, nullptr);
    } catch (const XException&) {
        return true;
    }
    return !text.IsEmpty();
}

// A key's own text; a ROOT option that no file and no registry knows is taken from the environment, then from the
// store.
CString XOptionRetrieval::SourceValue(const CString& section, const CString& key, XKeptOrigin* kept) {
    CString value;
    XKeptAnswer* const answer = kept ? &kept->answers.emplace_back() : nullptr;
    std::vector<OptionPlace>* const places = answer ? &answer->places : nullptr;
    m_Sources.GetValue(value, section, key, places);
    if (value.IsEmpty() && IsRootSection(section)) value = ItemValue(key, places);
    if (!answer) return value;
    answer->isWhole = true;
    if (kept->answers.size() == 1) {
        kept->origin = ReleaseOrigin(*places);
    } else {
        answer->text = value;
    }
    return value;
}

// The text of an item, noted as the place that its option comes from.
CString XOptionRetrieval::ItemValue(const CString& key, std::vector<OptionPlace>* places) {
    const OptionRegistry* const registry = OptionRegistry::Registered();
    const XOptionDefinition* const own = registry ? registry->FindLong(key.View()) : nullptr;
    // The getter accepts only plain texts, which all options of the library in ROOT are; any other option without an
    // item has no value.
    const bool isPlainText = !own || (own->IsString() && !own->IsValueOptional());
    if (!isPlainText && own->IsSingle() && !m_Items.Find(*own, -1)) return {};
    if (m_bEarly && IsReadLater(key)) return {};
    CString value = OptionText(m_Items, key, -1);
    const XOptionDefinition* const definition = places ? KnownOption(key) : nullptr;
    const XOptionItem* const item = definition ? m_Items.Find(*definition, -1) : nullptr;
    if (!item) return value;
    OptionPlace place{m_Origins.LastOf(*item), true};
    place.text = value;
    places->push_back(place);
    return value;
}

// Whether the item of an option was not there yet when start-up determined the folders. A mandatory one made that an
// error, which counts as a value like the item's.
bool XOptionRetrieval::IsReadLater(const CString& name) const {
    const XOptionDefinition* const definition = FindOptionDefinition(name);
    if (!definition || definition->IsMandatory() || IsStartupFolder(*definition)) return false;
    const XOptionItem* const item = m_Items.Find(*definition, -1);
    return item && IsSource(m_Origins.LastOf(*item).layer);
}

}  // namespace veltrane::detail
