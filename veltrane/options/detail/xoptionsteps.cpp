#include "veltrane/options/detail/xoptionsteps.h"

#include "veltrane/foundation/xexception.h"
#include "veltrane/options/detail/xoptionexpansion.h"
#include "veltrane/options/detail/xoptionsources.h"

namespace veltrane::detail {

namespace {

// The place of the value gets back the text that the origin has kept for it.
std::vector<OptionPlace> PlacesOf(const XKeptOrigin& kept) {
    std::vector<OptionPlace> places = kept.answers.front().places;
    OptionPlace* const last = LastFound(places);
    if (last && last->text.IsEmpty()) last->text = kept.origin.text;
    return places;
}

}  // namespace

std::vector<OptionStep> StepsOf(const XKeptOrigin& kept, const CString& key) {
    if (kept.answers.empty()) return {};
    XOptionRecord record;
    auto next = kept.answers.begin();
    CString value = kept.origin.text;
    record.Add(OptionStep::Kind::Given, value, PlacesOf(kept));
    XOptionExpansion expansion{[&](const CString&, const CString&) {
                                   if (++next == kept.answers.end()) throw XException{};
                                   record.AddPlaces(next->places);
                                   if (!next->isWhole) throw XException{};
                                   return next->text;
                               },
                               &record};
    try {
        if (key.IsEmpty()) {
            expansion.Expand(value, kept.section);
        } else {
            expansion.Expand(value, kept.section, key);
        }
    } catch (const XException&) {  // NOLINT(bugprone-empty-catch): the retrieval has ended here, too
    }
    return record.Take();
}

std::vector<OptionStep> StepsOf(const std::vector<XKeptOrigin>& values) {
    const CString& value = values.back().value;
    const bool isFolder = values.back().origin.layer == OptionLayer::StartUp;
    const bool isGiven = !isFolder || values.size() > 1;
    std::vector<OptionStep> steps;
    if (isGiven) {
        const XKeptOrigin& given = isFolder ? values[values.size() - 2] : values.back();
        steps = StepsOf(given);
        if (steps.empty()) steps.push_back({OptionStep::Kind::Given, 0, {}, {}, given.origin.text});
        if (steps.front().places.empty()) steps.front().places.push_back({given.origin, true});
    }
    if (isFolder) steps.push_back({OptionStep::Kind::Folder, 0, {}, {}, value});
    return steps;
}

}  // namespace veltrane::detail
