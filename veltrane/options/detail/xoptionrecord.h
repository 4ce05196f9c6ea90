#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "veltrane/options/xoptionorigin.h"

namespace veltrane::detail {

/// Records the steps by which a value comes about while its references are replaced. A step begins with its question
/// and gets its text with the answer; the steps of the answer's own references are in between.
class XOptionRecord {
public:
    std::vector<OptionStep> Release() { return std::exchange(m_Steps, {}); }

    /// @return number of the step, for End
    std::size_t Begin(OptionStep::Kind kind, const CString& reference, int depth) {
        m_Steps.push_back({kind, depth, reference});
        m_Open.push_back(m_Steps.size() - 1);
        return m_Open.back();
    }
    /// @param compose  gives the text of that length; called only if the text is kept
    template <class Compose>
    void End(std::size_t step, int length, Compose compose) {
        m_Open.pop_back();
        m_nHeld += length;
        if (m_nHeld <= MAX_HELD) m_Steps[step].text = compose();
    }
    void Add(OptionStep::Kind kind, const CString& text, const std::vector<OptionPlace>& places) {
        m_Steps.push_back({kind, 0, {}, places, text});
    }

    /// Adds the places that were asked in the open step.
    void AddPlaces(const std::vector<OptionPlace>& asked) {
        std::vector<OptionPlace>& places = m_Steps[m_Open.back()].places;
        places.insert(places.end(), asked.begin(), asked.end());
    }

private:
    // Elements of all texts together: the stages of a value that grows with every reference would fill the memory.
    static constexpr std::int64_t MAX_HELD = 1 << 22;

    std::int64_t m_nHeld = 0;
    std::vector<OptionStep> m_Steps;
    std::vector<std::size_t> m_Open;
};

}  // namespace veltrane::detail
