#include "veltrane/options/detail/xoptionsteps.h"

#include "veltrane/foundation/xexception.h"
#include "veltrane/options/detail/xoptionexpansion.h"

namespace veltrane::detail {

std::vector<OptionStep> StepsOf(const XKeptOrigin& kept, const CString& key) {
    if (kept.answers.empty()) return {};
    XOptionRecord record;
    auto next = kept.answers.begin();
    CString value = next->text;
    record.Add(OptionStep::Kind::Given, value, next->places);
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
