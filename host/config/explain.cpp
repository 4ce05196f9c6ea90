// How a value came about, step by step.
#include <algorithm>

#include "commands.h"
#include "printable.h"
#include "veltrane/foundation/xstring.h"

namespace veltrane::config {

namespace {

constexpr const char* KINDS[] = {"given", "reference", "folder", "value"};

const char* NameOf(OptionStep::Kind kind) {
    return KINDS[static_cast<std::size_t>(kind)];
}

CString PlaceName(const OptionOrigin& place) {
    if (place.word >= 0) return FormatText(L"%s, word %d", LayerName(place.layer), place.word);
    const CString text = PlaceText(place);
    return text.IsEmpty() ? CString{LayerName(place.layer)} : text;
}

CString TitleOf(const OptionStep& step) {
    switch (step.kind) {
        case OptionStep::Kind::Given:
            return L"given";
        case OptionStep::Kind::Reference:
            return CString{L' ', 2 * step.depth} + L"%" + step.reference + L"%";
        default:
            return L"below its folder";
    }
}

/// The places of one section that were asked one after the other, and have nothing.
struct Misses {
    CString section;
    CString layers;
    OptionLayer last;
};

// The files are asked from the weakest layer on: one that is not stronger than the one before begins a new section.
std::vector<Misses> CollectMisses(const std::vector<OptionPlace>& places) {
    std::vector<Misses> all;
    bool isAnswered = false;
    for (const OptionPlace& place : places) {
        const bool isNew = all.empty() || place.layer >= all.back().last || place.file.IsEmpty();
        if (isNew && isAnswered) all.pop_back();
        if (isNew) all.push_back({place.file.IsEmpty() ? CString{} : L"[" + place.section + L"]", {}, place.layer});
        isAnswered = place.found || (isAnswered && !isNew);
        all.back().last = place.layer;
        AddString(all.back().layers, LayerName(place.layer));
    }
    if (isAnswered) all.pop_back();
    return all;
}

// Where nothing was found, then the place that answered and the text after the step.
void AddStep(Columns& columns, const OptionStep& step, int number) {
    CString title = TitleOf(step);
    CString count = FormatText(L"%d", number);
    const auto add = [&](const CString& place, const CString& text) {
        columns.Add({std::exchange(count, {}), std::exchange(title, {}), place, text});
    };
    for (const Misses& misses : CollectMisses(step.places)) {
        add(misses.section.IsEmpty() ? misses.layers : misses.section,
            misses.section.IsEmpty() ? CString{L"-"} : L"-  (" + misses.layers + L")");
    }
    const auto winner =
        std::find_if(step.places.rbegin(), step.places.rend(), [](const auto& place) { return place.found; });
    if (winner != step.places.rend()) {
        add(PlaceName(*winner), Printable(step.text));
    } else if (step.places.empty()) {
        add({}, Printable(step.text));
    }
}

Json StepJson(const OptionStep& step) {
    Json json{{"kind", NameOf(step.kind)}, {"depth", step.depth}};
    if (step.kind == OptionStep::Kind::Reference) json["reference"] = ToUtf8(step.reference);
    json["places"] = Json::array();
    for (const OptionPlace& asked : step.places) {
        Json place = PlaceJson(asked);
        place["found"] = asked.found;
        if (asked.found) place["raw"] = ToUtf8(asked.text);
        json["places"].push_back(std::move(place));
    }
    json["text"] = ToUtf8(step.text);
    return json;
}

// A reference asks the configuration first, whatever was typed for the option of its name.
CString RemarkOf(XOption& options, const OptionStep& step) {
    if (step.kind != OptionStep::Kind::Reference || step.places.empty()) return {};
    const XOptionDefinition* const row = step.reference.IsEmpty() ? nullptr : FindOptionDefinition(step.reference);
    const XOptionItem* const item = row ? options.GetFirstOptionItem(row->szLongName) : nullptr;
    if (!item || options.GetOptionOrigin(item).layer != OptionLayer::CommandLine) return {};
    const auto place = std::ranges::find(step.places, true, &OptionPlace::found);
    const bool isOther =
        place != step.places.end() && place->layer != OptionLayer::CommandLine && place->text != item->GetOptionValue();
    if (!isOther) return {};
    return FormatText(L"%%%s%% took the configured value; the command line says '%s'", step.reference,
                      Printable(item->GetOptionValue()));
}

void Explain(Answer& answer, XOption& options, const XOptionDefinition& row, int index) {
    const CString label = LabelOf(row, index);
    const OptionExplanation explanation = options.ExplainOption(row.szLongName, index);
    const CString value = explanation.hasValue ? L" = " + Printable(explanation.value) : CString{L": no value"};
    answer.AddLine(label + value);
    Json json{{"name", ToUtf8(row.szLongName)}};
    if (!row.IsSingle()) json["index"] = index;
    json["value"] = explanation.hasValue ? Json(ToUtf8(explanation.value)) : Json(nullptr);
    json["steps"] = Json::array();
    json["notes"] = Json::array();
    Columns columns;
    int number = 0;
    for (const OptionStep& step : explanation.steps) {
        if (step.kind != OptionStep::Kind::Value) AddStep(columns, step, ++number);
        json["steps"].push_back(StepJson(step));
        const CString remark = RemarkOf(options, step);
        if (!remark.IsEmpty()) json["notes"].push_back(ToUtf8(remark));
    }
    columns.Print(answer, L"    ");
    for (const Json& note : json["notes"]) answer.text += "    note: " + note.get<std::string>() + '\n';
    if (!explanation.error.IsEmpty()) {
        json["error"] = ErrorJson(-1, {}, explanation.error);
        answer.text += "    error: " + json["error"]["message"].get<std::string>() + '\n';
    }
    answer.document["options"].push_back(std::move(json));
    if (!explanation.hasValue) answer.hasFindings = true;
}

}  // namespace

Answer ExplainOptions(const Request& request, Startup& startup) {
    if (request.words.empty()) throw Refusal{L"explain which option?"};
    Answer answer;
    answer.document["options"] = Json::array();
    for (const std::string& word : request.words) {
        const auto [row, index] = ParseOption(word);
        std::vector<int> indexes;
        if (index) indexes.push_back(*index);
        const CString name = row->szLongName;
        for (const auto* item = startup.options.GetFirstOptionItem(name); item && !index;
             item = startup.options.GetNextOptionItem(name)) {
            indexes.push_back(item->GetOptionIndex());
        }
        if (indexes.empty()) indexes.push_back(row->IsSingle() ? -1 : 0);
        for (const int at : indexes) Explain(answer, startup.options, *row, at);
    }
    return answer;
}

}  // namespace veltrane::config
