#include "lsplookup.h"

#include <algorithm>

#include "nametext.h"

namespace veltrane::config {

namespace {

using Kind = SourceLine::Kind;

void AddOnce(std::vector<PlacedLine>& lines, const PlacedLine& placed) {
    if (std::ranges::find(lines, placed) == lines.end()) lines.push_back(placed);
}

}  // namespace

std::optional<LspSpot> SpotAt(const LspView& view, const TextPosition& position) {
    const std::vector<SourceLine>& lines = view.source.view.lines;
    if (position.line >= static_cast<int>(lines.size())) return {};
    LspSpot spot{{&view.source, &lines[static_cast<std::size_t>(position.line)]}};
    for (const auto& [name, range] : ReferencesIn(spot.placed, view.Units())) {
        if (!Holds(range, position)) continue;
        spot.part = LinePart::Value;
        spot.reference = name;
        spot.range = range;
        return spot;
    }
    for (const LinePart part : {LinePart::Section, LinePart::Key, LinePart::Value}) {
        spot.range = RangeOf(spot.placed, part, view.Units());
        const bool isThere = (spot.placed.line->kind == Kind::Section) == (part == LinePart::Section);
        if (isThere && Holds(spot.range, position)) {
            spot.part = part;
            break;
        }
    }
    return spot;
}

std::optional<CString> SectionOf(const LspAnalysis& analysis, const PlacedLine& placed) {
    return analysis.run.SectionOf(*placed.source, *placed.line);
}

std::optional<LineOption> OptionOf(LspAnalysis& analysis, const PlacedLine& placed) {
    const std::optional<CString> section = SectionOf(analysis, placed);
    if (placed.line->kind != Kind::Entry || !section) return {};
    const SectionUse use = analysis.run.FindSection(*section);
    const KeyUse key = use.isKnown && !use.isOfOtherDatabase ? analysis.run.FindKey(use, placed.line->key) : KeyUse{};
    if (!key.row || analysis.run.HoldsRules(use.section)) return {};
    LineOption option{key.row, key.index.value_or(-1)};
    XOption& options = analysis.startup.options;
    for (const XOptionItem* const item : options.GetOptionItems(*key.row)) {
        if (!IsAt(options.GetOptionOrigin(item), placed)) continue;
        option.isInForce = true;
        if (!key.row->IsSingle()) option.index = item->GetOptionIndex();
    }
    return option;
}

// Each layer has one file, which places may spell differently.
bool IsAt(const OptionOrigin& place, const PlacedLine& placed) {
    return place.line == placed.line->number && place.layer == placed.source->layer;
}

std::optional<PlacedLine> LineAt(const LspAnalysis& analysis, const OptionOrigin& place) {
    const auto source = std::ranges::find(analysis.run.sources, place.layer, &StartupSource::layer);
    const bool isSource = source != analysis.run.sources.end();
    const SourceLine* const line = isSource ? FindLine(source->view, place.line) : nullptr;
    return line ? std::optional{PlacedLine{&*source, line}} : std::nullopt;
}

std::vector<PlacedLine> LinesOf(const LspAnalysis& analysis, const CString& section, const CString& key) {
    std::vector<PlacedLine> found;
    const Kind kind = key.IsEmpty() ? Kind::Section : Kind::Entry;
    for (auto source = analysis.run.sources.rbegin(); source != analysis.run.sources.rend(); ++source) {
        for (const SourceLine& line : source->view.lines) {
            const PlacedLine placed{&*source, &line};
            if (line.kind != kind || (!key.IsEmpty() && !IsSameName(line.key, key))) continue;
            const std::optional<CString> own = SectionOf(analysis, placed);
            if (own && IsSameName(*own, section)) found.push_back(placed);
        }
    }
    return found;
}

std::vector<PlacedLine> LinesOfReference(LspAnalysis& analysis, const PlacedLine& holder, const CString& name) {
    std::vector<PlacedLine> found;
    XOption& options = analysis.startup.options;
    const std::optional<LineOption> option = OptionOf(analysis, holder);
    if (option && option->isInForce) {
        for (const OptionStep& step : options.ExplainOption(option->row->szLongName, option->index).steps) {
            if (step.kind != OptionStep::Kind::Reference || !IsSameName(step.reference, name)) continue;
            for (auto place = step.places.rbegin(); place != step.places.rend(); ++place) {  // the last answer counts
                const std::optional<PlacedLine> line = place->found ? LineAt(analysis, *place) : std::nullopt;
                if (line) AddOnce(found, *line);
            }
        }
    }
    for (const CString& section :
         {SectionOf(analysis, holder).value_or(CString{}), options.GetSectionName(eSectionRoot)}) {
        for (const PlacedLine& line : LinesOf(analysis, section, name)) {
            if (line.line->answers) AddOnce(found, line);
        }
    }
    return found;
}

std::vector<PlacedLine> LinesReferringTo(const LspAnalysis& analysis, const CString& name) {
    std::vector<PlacedLine> found;
    for (const StartupSource& source : analysis.run.sources) {
        for (const SourceLine& line : source.view.lines) {
            const auto isName = [&](const CString& reference) { return IsSameName(reference, name); };
            if (line.kind == Kind::Entry && std::ranges::any_of(ReferencesOf(line.value), isName))
                found.push_back({&source, &line});
        }
    }
    return found;
}

}  // namespace veltrane::config
