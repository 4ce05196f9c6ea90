#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "veltrane/options/xoptionorigin.h"

namespace veltrane::detail {

/// Notes how a value comes about, step by step, while references are replaced. A step is begun when its question is
/// asked and gets its text when the answer is in, with the steps of the answer's own references in between.
class XOptionRecord {
public:
    const std::vector<OptionStep>& Steps() const noexcept { return m_Steps; }
    std::vector<OptionStep> Take() { return std::exchange(m_Steps, {}); }

    /// @return number of the step, for End
    std::size_t Begin(OptionStep::Kind kind, const CString& reference, int depth) {
        m_Steps.push_back({kind, depth, reference});
        m_Open.push_back(m_Steps.size() - 1);
        return m_Open.back();
    }
    void End(std::size_t step, const CString& text) {
        m_Open.pop_back();
        m_nHeld += text.GetLength();
        if (m_nHeld <= MAX_HELD) m_Steps[step].text = text;
    }
    void Add(OptionStep::Kind kind, const CString& text) { m_Steps.push_back({kind, 0, {}, {}, text}); }

    /// Where the places of the step begun last go.
    std::vector<OptionPlace>* Places() { return m_Open.empty() ? nullptr : &m_Steps[m_Open.back()].places; }

private:
    // Elements of all texts together: a value that grows with every reference would fill the memory with its stages.
    static constexpr std::int64_t MAX_HELD = 1 << 22;

    std::int64_t m_nHeld = 0;
    std::vector<OptionStep> m_Steps;
    std::vector<std::size_t> m_Open;
};

}  // namespace veltrane::detail
