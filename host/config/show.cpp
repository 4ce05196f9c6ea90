#include <algorithm>

#include "commands.h"
#include "printable.h"
#include "veltrane/foundation/xstring.h"

namespace veltrane::config {

namespace {

/// One value of an option, or the lack of one, with all that is known of it.
struct Shown {
    const XOptionDefinition* row;
    int index;
    const XOptionItem* item;  // null without a value
    OptionCandidates found;

    const OptionOrigin* Winner() const { return item && !found.candidates.empty() ? &found.candidates[0] : nullptr; }
    /// A mandatory option that start-up asks for and nobody has.
    bool IsMissing() const { return !item && row->IsMandatory() && row->eSection != eSectionNone; }
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

// What the program makes of the text of a flag or a list; empty for all else.
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
    for (const OptionLayer layer :
         {OptionLayer::Registry, OptionLayer::UserFile, OptionLayer::BasicFile, OptionLayer::Environment}) {
        if (!IsAsked(shown, layer)) layers.push_back(layer);
    }
    return layers;
}

std::vector<CString> PlaceRow(const OptionOrigin& origin, bool isFound, bool isWinner) {
    const CString layer = CString{isWinner ? L"> " : L"  "} + LayerName(origin.layer);
    const CString place = origin.word < 0 ? PlaceText(origin) : CString{FormatText(L"word %d", origin.word)};
    const CString key = origin.key.IsEmpty() ? CString{} : origin.key + L" = ";
    return {layer, place, isFound ? key + Printable(origin.text) : CString{L"-"}};
}

void AddPlaces(Answer& answer, const Shown& shown) {
    Columns columns;
    const auto& [candidates, places] = shown.found;
    const OptionOrigin* const winner = shown.Winner();
    for (const OptionOrigin& candidate : candidates) {
        const bool isPlace =
            std::ranges::any_of(places, [&](const OptionPlace& place) { return IsSame(place, candidate); });
        if (!isPlace) columns.Add(PlaceRow(candidate, /*isFound*/ true, &candidate == winner));
    }
    for (const OptionPlace& place : places) {
        columns.Add(PlaceRow(place, place.found, winner && IsSame(place, *winner)));
    }
    for (const OptionLayer layer : NotAsked(shown)) columns.Add({CString{L"  "} + LayerName(layer), L"not asked"});
    columns.Print(answer, L"  ");
}

CString ValueText(const Shown& shown) {
    if (shown.IsMissing()) return L"no value, mandatory: the tool stops here";
    if (!shown.item) return L"no value";
    const CString value = Printable(shown.item->GetOptionValue());
    const CString meaning = MeaningOf(*shown.item);
    const bool isPlain = meaning.IsEmpty() || meaning == value;
    return isPlain ? value : value + L", means " + meaning;
}

void AddDetails(Answer& answer, const Shown& shown) {
    answer.AddLine(LabelOf(*shown.row, shown.index) + (shown.item ? L" = " : L": ") + ValueText(shown));
    AddPlaces(answer, shown);
}

Json OptionJson(const Shown& shown) {
    Json option{{"name", ToUtf8(shown.row->szLongName)}};
    if (!shown.row->IsSingle() && shown.item) option["index"] = shown.index;
    option["kind"] = ToUtf8(KindOf(*shown.row));
    option["mandatory"] = shown.row->IsMandatory();
    option["value"] = shown.item ? Json(ToUtf8(shown.item->GetOptionValue())) : Json(nullptr);
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
    return option;
}

// The values of an option, or the one with an index; one without an item when there is none.
void Collect(std::vector<Shown>& all, XOption& options, const XOptionDefinition& row, const std::optional<int>& index) {
    const std::size_t count = all.size();
    const CString name = row.szLongName;
    std::vector<const XOptionItem*> items;
    for (const auto* item = options.GetFirstOptionItem(name); item; item = options.GetNextOptionItem(name)) {
        if (!index || *index == item->GetOptionIndex()) items.push_back(item);
    }
    for (const XOptionItem* item : items) {
        const int at = item->GetOptionIndex();
        all.push_back({&row, at, item, options.GetOptionCandidates(name, at)});
    }
    if (all.size() > count) return;
    const int at = index.value_or(row.IsSingle() ? -1 : 0);
    all.push_back({&row, at, nullptr, options.GetOptionCandidates(name, at)});
}

std::vector<Shown> CollectTable(XOption& options, bool withUnset, const CString& layer) {
    std::vector<Shown> all;
    for (int i = 0; const auto* row = GetOptionDefinitionAt(i); ++i) {
        if (row->HasOptionNumber()) Collect(all, options, *row, {});
    }
    std::erase_if(all, [&](const Shown& shown) {
        const bool isOfLayer = layer.IsEmpty() || (shown.Winner() && layer == LayerName(shown.Winner()->layer));
        return !isOfLayer || (!shown.item && !withUnset && !shown.IsMissing());
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
    columns.Print(answer);
}

CString LayerOf(const Request& request) {
    CString layer = FromUtf8(request.Value("--only"));
    constexpr auto last = static_cast<int>(OptionLayer::Environment);
    for (int i = 0; i <= last; ++i) {
        if (layer.IsEmpty() || layer == LayerName(static_cast<OptionLayer>(i))) return layer;
    }
    throw Refusal{FormatText(L"no layer is called '%s'", layer)};
}

}  // namespace

Answer Show(const Request& request, Startup& startup) {
    Answer answer;
    std::vector<Shown> all;
    if (request.words.empty()) {
        all = CollectTable(startup.options, request.Has("--all"), LayerOf(request));
        AddTable(answer, all);
    }
    for (const std::string& word : request.words) {
        const AskedOption asked = ParseOption(word);
        const std::size_t first = all.size();
        Collect(all, startup.options, *asked.row, asked.index);
        for (std::size_t i = first; i < all.size(); ++i) {
            AddDetails(answer, all[i]);
            if (!all[i].item) answer.hasFindings = true;
        }
    }
    answer.document["options"] = Json::array();
    for (const Shown& shown : all) answer.document["options"].push_back(OptionJson(shown));
    return answer;
}

}  // namespace veltrane::config
