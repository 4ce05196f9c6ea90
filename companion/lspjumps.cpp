// Jumps from a reference to its value, between a value and the one that it overrides, and to all places of a name.
#include <algorithm>

#include "lsplookup.h"
#include "lspparams.h"
#include "lsprequests.h"
#include "lspuri.h"

namespace veltrane::config {

namespace {

using Kind = SourceLine::Kind;

LspJson Locations(const LspWorld& world, const LspView& view, const std::vector<PlacedLine>& lines) {
    LspJson locations = LspJson::array();
    for (const PlacedLine& placed : lines) {
        const auto number = static_cast<std::size_t>(placed.source - view.analysis.run.sources.data());
        const std::string& path = view.analysis.paths[number];
        const OpenDocument* const document = world.documents.FindPath(path);
        const LineUnits units{view.unit, document ? &document->text : nullptr};
        locations.push_back({{"uri", document ? document->uri : UriOfPath(path)},
                             {"range", RangeJson(RangeOf(placed, LinePart::Key, units))}});
    }
    return locations;
}

// The lines of a key or a section, the one in force first, as far as the store tells it.
std::vector<PlacedLine> Rivals(LspAnalysis& analysis, const PlacedLine& placed) {
    std::vector<PlacedLine> lines;
    if (const std::optional<LineOption> option = OptionOf(analysis, placed)) {
        const XOption& options = analysis.startup.options;
        for (const OptionOrigin& origin :
             options.GetOptionCandidates(option->row->szLongName, option->index).candidates) {
            if (const std::optional<PlacedLine> line = LineAt(analysis, origin)) lines.push_back(*line);
        }
    }
    const CString key = placed.line->kind == Kind::Entry ? placed.line->key : CString{};
    const std::optional<CString> section = SectionOf(analysis, placed);
    for (const PlacedLine& line : section ? LinesOf(analysis, *section, key) : std::vector<PlacedLine>{}) {
        if (std::ranges::find(lines, line) == lines.end()) lines.push_back(line);
    }
    return lines;
}

std::optional<LspSpot> SpotIn(const LspView& view, const LspJson& params) {
    const std::optional<LspSpot> spot = SpotAt(view, PositionIn(params.at("position")));
    return spot && spot->part != LinePart::Line ? spot : std::nullopt;
}

}  // namespace

// A line in force leads to the one that it overrides, any other to the one that hides it.
LspJson GoToDefinition(LspWorld& world, const LspView& view, const LspJson& params) {
    const std::optional<LspSpot> spot = SpotIn(view, params);
    if (!spot) return {};
    if (!spot->reference.IsEmpty()) {
        std::vector<PlacedLine> lines = LinesOfReference(view.analysis, spot->placed, spot->reference);
        lines.resize(std::min<std::size_t>(lines.size(), 1));
        return Locations(world, view, lines);
    }
    const std::vector<PlacedLine> rivals = Rivals(view.analysis, spot->placed);
    if (rivals.size() < 2) return LspJson::array();
    return Locations(world, view, {rivals[rivals.front() == spot->placed ? 1 : 0]});
}

LspJson FindReferences(LspWorld& world, const LspView& view, const LspJson& params) {
    const LspJson context = params.value("context", LspJson{});
    const bool withOwn = !context.is_object() || context.value("includeDeclaration", LspJson{true}) == true;
    const std::optional<LspSpot> spot = SpotIn(view, params);
    if (!spot) return {};
    const bool isReference = !spot->reference.IsEmpty();
    const CString name = isReference ? spot->reference : spot->placed.line->key;
    std::vector<PlacedLine> lines;
    if (withOwn)
        lines = isReference ? LinesOfReference(view.analysis, spot->placed, name) : Rivals(view.analysis, spot->placed);
    if (!name.IsEmpty()) {
        const std::vector<PlacedLine> holders = LinesReferringTo(view.analysis, name);
        lines.insert(lines.end(), holders.begin(), holders.end());
    }
    return Locations(world, view, lines);
}

}  // namespace veltrane::config
