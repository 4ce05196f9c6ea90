#include <algorithm>

#include "askedoption.h"
#include "commands.h"
#include "places.h"
#include "printable.h"
#include "rules.h"
#include "startupfiles.h"
#include "veltrane/foundation/xstring.h"

namespace veltrane::config {

namespace {

/// One value of an option, or the lack of one, with all that is known about it.
struct Shown {
    enum class State {
        Stored,      // by the store, which may have none
        GivenTwice,  // the index is given twice: the tool stops
        Unread,      // another index of its family is given twice: the store has none of them
    };
    const XOptionDefinition* row;
    int index;
    const XOptionItem* item;  // null without a value
    OptionCandidates found;
    State state = State::Stored;
    std::vector<CString> notes = {};

    bool HasWinner() const { return (item || state == State::Unread) && !found.candidates.empty(); }
    const OptionOrigin* Winner() const { return HasWinner() ? &found.candidates[0] : nullptr; }
    /// A mandatory option that start-up asks for and no source has.
    bool IsMissing() const { return !item && row->IsMandatory() && row->eSection != eSectionNone; }
    /// Whether it is shown without being asked for.
    bool IsSet() const { return item || IsMissing() || state != State::Stored; }
};

CString KindOf(const XOptionDefinition& row) {
    if (row.IsBoolean()) return L"boolean";
    if (row.IsTrillian()) return L"tri-state";
    if (row.IsIList()) return L"list";
    return row.IsString() ? L"text" : L"command";
}

CString ListText(const XSetInt& list) {
    CString text;
    for (int i = 0; i < list.Size(); ++i) AddString(text, FormatText(L"%d", list.GetConstRefAt(i)));
    return text;
}

// How the program reads the text of a flag or a list; empty for any other option.
CString MeaningOf(const XOptionItem& item) {
    if (item.IsBoolean()) return g_BooleanStrings[item.GetOptionBoolean() ? 1 : 0];
    if (item.IsTrillian()) return g_TrillianStrings[item.GetOptionTrillian()];
    const bool isList = item.GetID() == eOptionObsoleteClasses;
    return isList ? ListText(*item.GetOptionIList()) : CString{};
}

bool IsSame(const OptionOrigin& left, const OptionOrigin& right) {
    return left.layer == right.layer && left.line == right.line && left.file == right.file && left.key == right.key;
}

bool IsAsked(const Shown& shown, OptionLayer layer) {
    const auto isOf = [layer](const OptionOrigin& origin) { return origin.layer == layer; };
    return std::ranges::any_of(shown.found.places, isOf) || std::ranges::any_of(shown.found.candidates, isOf);
}

// The sources that are never asked for this option.
std::vector<OptionLayer> NotAsked(const Shown& shown) {
    std::vector<OptionLayer> layers;
    for (const OptionLayerRow& row : OPTION_SOURCES) {
        if (!IsAsked(shown, row.layer)) layers.push_back(row.layer);
    }
    return layers;
}

CString AnswerText(const OptionOrigin& origin) {
    const CString key = origin.key.IsEmpty() ? CString{} : origin.key + L" = ";
    if (IsEmptyAnswer(origin)) return key + EMPTY_ANSWER;
    const bool isHeader = origin.text.IsEmpty() && origin.line > 0;
    return isHeader ? CString{L"(section given again)"} : key + Printable(origin.text);
}

std::vector<CString> FoundRow(const OptionOrigin& origin, bool isWinner) {
    const CString layer = CString{isWinner ? L"> " : L"  "} + LayerName(origin.layer);
    const CString place = origin.word < 0 ? PlaceText(origin) : CString{FormatText(L"word %d", origin.word)};
    return {layer, place, AnswerText(origin)};
}

std::vector<CString> MissedRow(const OptionPlace& place, const StartupFiles& files) {
    const CString layer = CString{L"  "} + LayerName(place.layer);
    const CString fault = files.FaultOf(place.layer);
    if (!fault.IsEmpty()) return {layer, UnreadableText(DisplayPath(place.file), fault)};
    const CString text = PlaceText(place);
    return {layer, text.IsEmpty() ? L"-" : L"-  " + text};
}

void AddPlaces(Answer& answer, const Shown& shown, const StartupFiles& files) {
    Columns columns;
    const auto& [candidates, places] = shown.found;
    const OptionOrigin* const winner = shown.Winner();
    for (const OptionOrigin& candidate : candidates) {
        const bool isPlace =
            std::ranges::any_of(places, [&](const OptionPlace& place) { return IsSame(place, candidate); });
        if (!isPlace) columns.Add(FoundRow(candidate, &candidate == winner));
    }
    for (const OptionPlace& place : places) {
        const bool isWinner = winner && IsSame(place, *winner);
        columns.Add(place.found ? FoundRow(place, isWinner) : MissedRow(place, files));
    }
    for (const OptionLayer layer : NotAsked(shown)) columns.Add({CString{L"  "} + LayerName(layer), L"not used"});
    columns.Print(answer, 2);
}

CString ValueText(const Shown& shown) {
    if (shown.state == Shown::State::GivenTwice) return L"no value";
    if (shown.state == Shown::State::Unread) return Printable(shown.Winner()->text);
    if (shown.IsMissing()) return L"no value, but mandatory: the tool stops here";
    if (!shown.item) return L"no value";
    const CString value = Printable(shown.item->GetOptionValue());
    const CString meaning = MeaningOf(*shown.item);
    const bool isPlain = meaning.IsEmpty() || meaning == value;
    return isPlain ? value : value + L", means " + meaning;
}

void AddDetails(Answer& answer, Shown& shown, const StartupFiles& files) {
    const CString hint = shown.HasWinner() ? CString{} : files.SectionHint(*shown.row);
    if (!hint.IsEmpty()) shown.notes.push_back(hint);
    answer.AddLine(LabelOf(*shown.row, shown.index) + (shown.HasWinner() ? L" = " : L": ") + ValueText(shown));
    AddPlaces(answer, shown, files);
    for (const CString& note : shown.notes) AddNote(answer, note);
}

// The value as far as it is known: if the store has not read it, its references are not replaced.
Json ValueJson(const Shown& shown) {
    if (shown.item) return ToUtf8(shown.item->GetOptionValue());
    const bool isPlain = shown.state == Shown::State::Unread && shown.Winner()->text.Find(L'%') < 0;
    return isPlain ? Json(ToUtf8(shown.Winner()->text)) : Json(nullptr);
}

Json OptionJson(const Shown& shown) {
    Json option{{"name", ToUtf8(shown.row->szLongName)}};
    if (!shown.row->IsSingle() && shown.IsSet()) option["index"] = shown.index;
    option["kind"] = ToUtf8(KindOf(*shown.row));
    option["mandatory"] = shown.row->IsMandatory();
    option["value"] = ValueJson(shown);
    if (shown.item && !MeaningOf(*shown.item).IsEmpty()) option["means"] = ToUtf8(MeaningOf(*shown.item));
    option["candidates"] = Json::array();
    for (const OptionOrigin& candidate : shown.found.candidates) {
        Json place = PlaceJson(candidate);
        place["raw"] = ToUtf8(candidate.text);
        place["wins"] = &candidate == shown.Winner();
        option["candidates"].push_back(std::move(place));
    }
    option["not_asked"] = Json::array();
    for (const OptionLayer layer : NotAsked(shown)) option["not_asked"].push_back(ToUtf8(LayerName(layer)));
    for (const CString& note : shown.notes) option["notes"].push_back(ToUtf8(note));
    return option;
}

class Collection {
public:
    Collection(Startup& startup, const StartupFiles& files) : m_Options(startup.options), m_Files(files) {}

    /// Adds the values of an option, or the one with an index; one without an item when there is none.
    void Add(const XOptionDefinition& row, const std::optional<int>& index) {
        const std::size_t count = m_All.size();
        auto item = m_Options.GetOptionItems(row).begin();
        for (OptionCandidates& found : m_Options.GetAllOptionCandidates(row.szLongName)) {
            const int at = (*item)->GetOptionIndex();
            if (!index || *index == at) m_All.push_back({&row, at, *item, std::move(found)});
            ++item;
        }
        if (m_All.size() == count) AddLost(row, index);
        if (m_All.size() == count) AddUnset(row, index);
        if (!IsRule(row)) return;
        for (std::size_t i = count; i < m_All.size(); ++i) m_All[i].found.places.clear();
    }

    std::vector<Shown> Release() { return std::move(m_All); }

private:
    void AddLost(const XOptionDefinition& row, const std::optional<int>& index) {
        for (const auto& [at, places] : m_Files.LostFamily(row)) {
            if (index && *index != at) continue;
            Shown shown{&row, at, nullptr, {{places.rbegin(), places.rend()}, AllPlaces(row, at, places)}};
            shown.state = places.size() > 1 ? Shown::State::GivenTwice : Shown::State::Unread;
            shown.notes.push_back(LossNote(places));
            m_All.push_back(std::move(shown));
        }
    }

    /// The places that have something, and one for each other source that is asked; the strongest first.
    std::vector<OptionPlace> AllPlaces(const XOptionDefinition& row, int index, const std::vector<OptionPlace>& found) {
        std::vector<OptionPlace> all{found.rbegin(), found.rend()};
        for (const OptionPlace& asked : m_Options.GetOptionCandidates(row.szLongName, index).places) {
            if (std::ranges::find(all, asked.layer, &OptionPlace::layer) == all.end()) all.push_back(asked);
        }
        std::ranges::stable_sort(all, {}, &OptionPlace::layer);
        return all;
    }

    void AddUnset(const XOptionDefinition& row, const std::optional<int>& index) {
        Shown shown{&row, index.value_or(-1), nullptr, {}};
        shown.found = m_Options.GetOptionCandidates(row.szLongName, shown.index);
        if (!row.IsSingle() && !index) shown.found.places = FamilyPlaces(m_Options, row);
        if (IsRule(row)) shown.notes.emplace_back(L"'names --rules' lists the rules of the files");
        m_All.push_back(std::move(shown));
    }

    XOption& m_Options;
    const StartupFiles& m_Files;
    std::vector<Shown> m_All;
};

// Naming rules count only if they were typed.
std::vector<Shown> CollectTable(Collection collection, bool withUnset, const CString& layer) {
    for (int i = 0; const auto* row = GetOptionDefinitionAt(i); ++i) {
        if (row->eOption != eOptionTitle) collection.Add(*row, {});
    }
    std::vector<Shown> all = collection.Release();
    std::erase_if(all, [&](const Shown& shown) {
        const bool isOfLayer = layer.IsEmpty() || (shown.Winner() && layer == LayerName(shown.Winner()->layer));
        return !isOfLayer || (!shown.IsSet() && (!withUnset || IsRule(*shown.row)));
    });
    return all;
}

void AddTable(Answer& answer, const std::vector<Shown>& all) {
    Columns columns;
    for (const Shown& shown : all) {
        const OptionOrigin* const winner = shown.Winner();
        CString origin = winner ? LayerName(winner->layer) : L"";
        if (winner && !winner->file.IsEmpty()) origin += FormatText(L" %s:%d", DisplayPath(winner->file), winner->line);
        columns.Add({LabelOf(*shown.row, shown.index), ValueText(shown), origin});
    }
    columns.PrintUnbroken(answer);
}

CString LayerOf(const Request& request) {
    CString layer = FromUtf8(request.Value("--only"));
    CString names;
    for (const OptionLayerRow& row : OPTION_LAYERS) {
        const bool isLast = &row == &OPTION_SOURCES.back();
        if (layer.IsEmpty() || layer == row.word) return layer;
        names += (names.IsEmpty() ? L"" : isLast ? L" or " : L", ") + CString{row.word};
    }
    throw Refusal{L"--only must be " + names};
}

// With the rules one document describes a whole machine.
void AddRules(Answer& answer, const XOption& options) {
    answer.document["rules"] = Json::array();
    for (const OptionRule& rule : AllRules(options)) answer.document["rules"].push_back(RuleJson(rule));
}

}  // namespace

Answer Show(const Request& request, Startup& startup) {
    Answer answer;
    const StartupFiles files{startup};
    Collection collection{startup, files};
    for (const std::string& word : request.words) {
        const AskedOption asked = ParseOption(word);
        collection.Add(*asked.row, asked.index);
    }
    const bool isTable = request.words.empty();
    std::vector<Shown> all =
        isTable ? CollectTable(collection, request.Has("--all"), LayerOf(request)) : collection.Release();
    if (isTable) AddTable(answer, all);
    answer.document["options"] = Json::array();
    for (Shown& shown : all) {
        if (!isTable) AddDetails(answer, shown, files);
        if (!isTable && !shown.item) answer.hasFindings = true;
        answer.document["options"].push_back(OptionJson(shown));
    }
    if (isTable && request.Has("--all") && !request.Has("--only")) AddRules(answer, startup.options);
    files.AddFaults(answer);
    return answer;
}

}  // namespace veltrane::config
