#include "veltrane/options/detail/xoptionsteps.h"

#include "veltrane/foundation/xexception.h"
#include "veltrane/options/detail/xoptionexpansion.h"
#include "veltrane/options/detail/xoptionsources.h"

namespace veltrane::detail {

namespace {

// The place of the value gets its text back, which the origin keeps.
std::vector<OptionPlace> PlacesOf(const XKeptOrigin& kept) {
    std::vector<OptionPlace> places = kept.answers.front().places;
    OptionPlace* const last = LastFound(places);
    if (last && last->text.IsEmpty()) last->text = kept.origin.text;
    return places;
}

/// Replaces references once more by the answers that were kept. The first of them is the value itself.
class RepeatedExpansion final : public XOptionExpansion {
public:
    RepeatedExpansion(const XKeptOrigin& kept, XOptionRecord& record)
        : XOptionExpansion(&record), m_Kept(kept), m_Record(record) {}

private:
    CString KeyText(const CString&, const CString&) override {
        if (++m_nAnswer == m_Kept.answers.size()) throw XException{};
        const XKeptAnswer& answer = m_Kept.answers[m_nAnswer];
        m_Record.AddPlaces(answer.places);
        if (!answer.isWhole) throw XException{};
        return answer.text;
    }

    const XKeptOrigin& m_Kept;
    XOptionRecord& m_Record;
    std::size_t m_nAnswer = 0;
};

}  // namespace

std::vector<OptionStep> StepsOf(const XKeptOrigin& kept, const CString& key) {
    if (kept.answers.empty()) return {};
    XOptionRecord record;
    CString value = kept.origin.text;
    record.Add(OptionStep::Kind::Given, value, PlacesOf(kept));
    RepeatedExpansion expansion{kept, record};
    try {
        if (key.IsEmpty()) {
            expansion.Expand(value, kept.section);
        } else {
            expansion.Expand(value, kept.section, key);
        }
    } catch (const XException&) {  // NOLINT(bugprone-empty-catch): the retrieval has ended here, too
    }
    return record.Release();
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
