// How a value came about, step by step.
#include <algorithm>

#include "askedoption.h"
#include "commands.h"
#include "errorjson.h"
#include "places.h"
#include "printable.h"
#include "startupfiles.h"
#include "veltrane/foundation/xstring.h"

namespace veltrane::config {

namespace {

constexpr int STEP_INDENT = 4;
constexpr const char* STEP_KINDS[] = {"given", "reference", "folder", "value"};

CString TitleOf(const OptionStep& step) {
    if (step.kind == OptionStep::Kind::Given) return L"given";
    const bool isReference = step.kind == OptionStep::Kind::Reference;
    return isReference ? CString{L' ', 2 * step.depth} + L"%" + step.reference + L"%" : L"below its folder";
}

/// The places of one section that were asked in turn and have nothing.
struct Misses {
    CString section;
    CString layers;
    OptionLayer last;
};

// The files are asked from the weakest layer on: a layer that is not stronger than the one before begins a new section.
std::vector<Misses> CollectMisses(const std::vector<OptionPlace>& places, const StartupFiles& files) {
    std::vector<Misses> all;
    bool isAnswered = false;
    for (const OptionPlace& place : places) {
        if (!place.found && !files.FaultOf(place.layer).IsEmpty()) continue;
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

// The places that cannot answer, each file once.
std::vector<CString> UnreadablePlaces(const std::vector<OptionPlace>& places, const StartupFiles& files) {
    std::vector<CString> texts;
    for (const OptionPlace& place : places) {
        const CString fault = place.found ? CString{} : files.FaultOf(place.layer);
        const CString text = UnreadableText(DisplayPath(place.file), fault);
        if (!fault.IsEmpty() && std::ranges::find(texts, text) == texts.end()) texts.push_back(text);
    }
    return texts;
}

// Where nothing was found, then the place that answered and the text after the step.
void AddStep(Columns& columns, const OptionStep& step, int number, const StartupFiles& files) {
    CString title = TitleOf(step);
    CString count = FormatText(L"%d", number);
    const auto add = [&](const CString& place, const CString& text) {
        std::vector<CString> row{std::exchange(count, {}), std::exchange(title, {}), place};
        if (!text.IsEmpty()) row.push_back(text);
        columns.Add(std::move(row));
    };
    for (const CString& text : UnreadablePlaces(step.places, files)) add(text, {});
    for (const auto& [section, layers, last] : CollectMisses(step.places, files)) {
        add(section.IsEmpty() ? L"-  " + layers : L"-  " + section + L" (" + layers + L")", {});
    }
    const auto winner =
        std::find_if(step.places.rbegin(), step.places.rend(), [](const auto& place) { return place.found; });
    if (winner != step.places.rend()) {
        add(PlaceName(*winner), IsEmptyAnswer(*winner) ? CString{EMPTY_ANSWER} : Printable(step.text));
    } else if (step.places.empty()) {
        add(Printable(step.text), {});
    }
}

Json StepJson(const OptionStep& step) {
    Json json{{"kind", STEP_KINDS[static_cast<std::size_t>(step.kind)]}, {"depth", step.depth}};
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

// A reference asks the configuration first, even if the option of its name was typed.
CString RemarkOf(XOption& options, const OptionStep& step) {
    if (step.kind != OptionStep::Kind::Reference || step.places.empty()) return {};
    const XOptionDefinition* const row = step.reference.IsEmpty() ? nullptr : FindOptionDefinition(step.reference);
    const XOptionItem* const item = row ? options.GetFirstOptionItem(row->szLongName) : nullptr;
    if (!item || options.GetOptionOrigin(item).layer != OptionLayer::CommandLine) return {};
    const auto place = std::ranges::find(step.places, true, &OptionPlace::found);
    const bool isAnotherValue =
        place != step.places.end() && place->layer != OptionLayer::CommandLine && place->text != item->GetOptionValue();
    if (!isAnotherValue) return {};
    return FormatText(L"%%%s%% is the configured value here; the command line says '%s'", step.reference,
                      Printable(item->GetOptionValue()));
}

/// An explanation, with what the store does not know about it.
struct Explained : OptionExplanation {
    const XOptionDefinition* row = nullptr;
    int index = -1;
    std::vector<CString> notes = {};
};

// A value that the store has, or none.
Explained Stored(Startup& startup, const StartupFiles& files, const XOptionDefinition& row, int index) {
    XOption& options = startup.options;
    Explained explained{options.ExplainOption(row.szLongName, index), &row, index};
    if (explained.hasValue) return explained;
    const CString hint = files.SectionHint(row);
    if (!hint.IsEmpty()) explained.notes.push_back(hint);
    if (row.IsSingle() || !explained.error.IsEmpty()) return explained;
    auto places = index < 0 ? FamilyPlaces(options, row) : options.GetOptionCandidates(row.szLongName, index).places;
    std::ranges::reverse(places);
    explained.steps = {{OptionStep::Kind::Given, 0, {}, std::move(places)}};
    return explained;
}

// A value of a family that the store has not read, at each of its places.
Explained Lost(const XOptionDefinition& row, int index, const std::vector<OptionPlace>& places) {
    Explained explained{{}, &row, index};
    for (const OptionPlace& place : places)
        explained.steps.push_back({OptionStep::Kind::Given, 0, {}, {place}, place.text});
    const bool isGivenTwice = places.size() > 1;
    explained.hasValue = !isGivenTwice && places[0].text.Find(L'%') < 0;
    if (explained.hasValue) explained.value = places[0].text;
    explained.notes.push_back(LossNote(places));
    return explained;
}

// The values of an option, or the one with an index; one without a value when there is none.
std::vector<Explained> Collect(Startup& startup, const StartupFiles& files, const AskedOption& asked) {
    const auto& [row, index] = asked;
    std::vector<Explained> all;
    for (const auto& [at, places] : files.LostFamily(*row)) {
        if (!index || *index == at) all.push_back(Lost(*row, at, places));
    }
    std::vector<int> indexes;
    for (const XOptionItem* const item : startup.options.GetOptionItems(*row)) {
        if (!index) indexes.push_back(item->GetOptionIndex());
    }
    if (all.empty() && indexes.empty()) indexes.push_back(index.value_or(-1));
    for (const int at : indexes) all.push_back(Stored(startup, files, *row, at));
    return all;
}

Json ExplainedJson(XOption& options, Explained& explained) {
    Json json{{"name", ToUtf8(explained.row->szLongName)}};
    if (!explained.row->IsSingle() && explained.index >= 0) json["index"] = explained.index;
    json["value"] = explained.hasValue ? Json(ToUtf8(explained.value)) : Json(nullptr);
    json["steps"] = Json::array();
    json["notes"] = Json::array();
    for (const OptionStep& step : explained.steps) {
        json["steps"].push_back(StepJson(step));
        const CString remark = RemarkOf(options, step);
        if (!remark.IsEmpty()) explained.notes.push_back(remark);
    }
    for (const CString& note : explained.notes) json["notes"].push_back(ToUtf8(note));
    if (!explained.error.IsEmpty()) json["error"] = ErrorJson(-1, {}, explained.error);
    return json;
}

void Explain(Answer& answer, XOption& options, const StartupFiles& files, Explained explained) {
    const CString value = explained.hasValue ? L" = " + Printable(explained.value) : CString{L": no value"};
    answer.AddLine(LabelOf(*explained.row, explained.index) + value);
    Json json = ExplainedJson(options, explained);
    Columns columns;
    int number = 0;
    for (const OptionStep& step : explained.steps) {
        if (step.kind != OptionStep::Kind::Value) AddStep(columns, step, ++number, files);
    }
    columns.Print(answer, STEP_INDENT, /*hanging*/ 2);
    for (const CString& note : explained.notes) AddNote(answer, note);
    if (json.contains("error")) answer.text += "    error: " + json["error"]["message"].get<std::string>() + '\n';
    answer.document["options"].push_back(std::move(json));
    if (!explained.hasValue) answer.hasFindings = true;
}

}  // namespace

Answer ExplainOptions(const Request& request, Startup& startup) {
    if (request.words.empty()) throw Refusal{L"missing option name"};
    Answer answer;
    const StartupFiles files{startup};
    answer.document["options"] = Json::array();
    for (const std::string& word : request.words) {
        for (Explained& explained : Collect(startup, files, ParseOption(word))) {
            Explain(answer, startup.options, files, std::move(explained));
        }
    }
    files.AddFaults(answer);
    return answer;
}

}  // namespace veltrane::config
