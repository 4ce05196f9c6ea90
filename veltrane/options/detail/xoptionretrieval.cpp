#include "veltrane/options/detail/xoptionretrieval.h"

#include <map>
#include <optional>
#include <utility>

#include "veltrane/options/detail/optionregistry.h"
#include "veltrane/options/detail/xoptionlocation.h"
#include "veltrane/options/xoption.h"

namespace veltrane::detail {

namespace {

constexpr XFailure<const wchar_t*> RETRIEVAL{L"Error retrieving option <%s>!",
                                             L"An unknown exception occured while retrieving option <%s>!"};

}  // namespace

XOptionRetrieval::XOptionRetrieval(XOption& store, XOptionItems& items, XOptionSources& sources,
                                   XOptionOrigins& origins)
    : m_Store(store), m_Items(items), m_Sources(sources), m_Origins(origins) {}

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
    const auto add = [&](const OptionPlace& place) {
        subject.places.push_back({place, LayerName(place.layer), place.found});
    };
    if (definition.IsSingle()) {
        for (const OptionPlace& place : m_Sources.AskEach(section, definition.szLongName, /*withFiles*/ true))
            add(place);
    } else {
        const int index = error.GetSubject() ? error.GetSubject()->index : -1;
        for (const auto& [at, origin] : m_Sources.FindFamily(section, definition.szLongName)) {
            if (at == index) add({origin, true});
        }
    }
    error.AddSubject(subject);
}

XOptionItem* XOptionRetrieval::Insert(XOptionDefinition& definition, const CString& value, int index,
                                      XKeptOrigin origin) {
    XOptionItem* const item = m_Items.Insert(definition, value, index);
    m_Origins.Note(*item, std::move(origin));
    return item;
}

CString XOptionRetrieval::SectionName(enumCfgSection section, bool isStoring) {
    const XConfigSection* const row = FindConfigSection(section);
    if (!row) return {};
    const CString parent = SectionName(row->eParent, isStoring);
    CString own = row->szName;
    if (own.Left(2) == L"--") {
        const CString option = own.Mid(2);
        XOptionDefinition* const definition = m_Store.GetOptionDefinition(option);
        if (isStoring) Retrieve(*definition);
        own = isStoring || m_Items.Find(*definition, -1)
                  ? m_Store.GetOptionString(option, -1)
                  : Value(SectionName(definition->eSection, isStoring), option, nullptr);
    }
    return parent.IsEmpty() || own.IsEmpty() ? own : FormatText(L"%s\\%s", parent, own);
}

void XOptionRetrieval::RetrieveSingle(XOptionDefinition& definition, const CString& section) {
    std::optional<Notes> notes;
    if (m_Origins.AreKept()) notes.emplace();
    const CString value = Value(section, definition.szLongName, notes ? &*notes : nullptr);
    if (!value.IsEmpty()) {
        XKeptOrigin origin;
        if (notes) origin = {std::move(notes->origin), {}, notes->record.Take()};
        Insert(definition, value, -1, std::move(origin));
    } else if (definition.IsMandatory()) {
        throw MakeError(Here(L"XOption::RetrieveOption"), L"The option <%s> must exist but could not be found!",
                        definition.szLongName);
    }
}

void XOptionRetrieval::RetrieveMultiple(XOptionDefinition& definition, const CString& section) {
    XMapInt2CString values;
    std::vector<XOptionSources::IndexedOrigin> origins;
    const bool areKept = m_Origins.AreKept();
    if (!m_Sources.GetKeyValueSet(values, section, definition.szLongName, areKept ? &origins : nullptr)) return;
    std::map<int, OptionOrigin> winners;  // of each index the one found first
    for (auto& [index, origin] : origins) winners.try_emplace(index, std::move(origin));
    CString value;
    for (int index = values.GetFirst(value); index != -1; index = values.GetNext(value)) {
        if (value.IsEmpty()) continue;
        XKeptOrigin origin;
        XOptionRecord record;
        if (areKept) {
            origin.origin = std::move(winners.at(index));
            record.Add(OptionStep::Kind::Given, value);
        }
        Expand(value, section, areKept ? &record : nullptr);
        origin.steps = record.Take();
        Insert(definition, value, index, std::move(origin));
    }
}

CString XOptionRetrieval::Value(const CString& section, const CString& key, Notes* notes) {
    CString value;
    NewExpansion(notes, notes ? &notes->record : nullptr).Retrieve(value, section, key);
    return value;
}

void XOptionRetrieval::Expand(CString& value, const CString& section, XOptionRecord* record) {
    NewExpansion(nullptr, record).Expand(value, section);
}

XOptionExpansion XOptionRetrieval::NewExpansion(Notes* notes, XOptionRecord* record) {
    // What it holds is small enough to need no memory of its own.
    return {[this, notes](const CString& section, const CString& key, XOptionRecord* own) {
                return SourceValue(section, key, notes, own);
            },
            record};
}

// A key's own text; a ROOT option that no file and no registry knows is taken from the environment, then from the
// store. The first question is that of the value itself, all others are those of references.
CString XOptionRetrieval::SourceValue(const CString& section, const CString& key, Notes* notes, XOptionRecord* record) {
    CString value;
    const bool isFirst = notes && record->Steps().empty();
    const std::size_t step = isFirst ? record->Begin(OptionStep::Kind::Given, {}, 0) : 0;
    std::vector<OptionPlace>* const places = record ? record->Places() : nullptr;
    m_Sources.GetValue(value, section, key, isFirst ? &notes->origin : nullptr, places);
    if (value.IsEmpty() && IsRootSection(section)) value = ItemValue(key, places);
    if (isFirst) record->End(step, value);
    return value;
}

// The text of an item, told as the place that its option comes from.
CString XOptionRetrieval::ItemValue(const CString& key, std::vector<OptionPlace>* places) {
    const OptionRegistry* const registry = OptionRegistry::Registered();
    const XOptionDefinition* const own = registry ? registry->FindLong(key.View()) : nullptr;
    // The getter takes plain texts alone, and all of the library's ROOT are; of others no item is no value.
    const bool isPlainText = !own || (own->IsString() && !own->IsValueOptional());
    if (!isPlainText && own->IsSingle() && !m_Items.Find(*own, -1)) return {};
    CString value = m_Store.GetOptionString(key, -1);
    const XOptionDefinition* const definition = places ? m_Store.GetOptionDefinition(key) : nullptr;
    const XOptionItem* const item = definition ? m_Items.Find(*definition, -1) : nullptr;
    if (!item) return value;
    OptionPlace place{m_Store.GetOptionOrigin(item), true};
    place.text = value;
    places->push_back(place);
    return value;
}

}  // namespace veltrane::detail
